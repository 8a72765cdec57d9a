#include "common/TestUtils.h"

#include <QvXmlLib16/QvXmlLib16.h>

#include <gtest/gtest.h>

using namespace QvXmlLib16;
using namespace QvXmlLib16Data;
using qvtest::ExpectThrowMsg;

TEST(ElementInfo, AnyDefaultNamespace) {
    struct Case {
        const wchar_t* restriction;
        const wchar_t* defaultNamespace;
        const wchar_t* expected;
    };

    const Case cases[] = {
        {L"##any", L"urn:d", L"urn:d"},
        {L"##other", L"", L"DefaultNamespace"},
        {L"##other", L"urn:d", L""},
        {L"##local", L"urn:d", L""},
        {L"##targetNamespace", L"urn:d", L"urn:t"},
        {L"##targetNamespace ##local", L"urn:d", L"urn:t"},
        {L"##any urn:x", L"urn:d", L"urn:d"},
        {L"urn:x ##any", L"urn:d", L""},
        {L"urn:x", L"urn:d", L""},
        {L"", L"urn:d", L""},
        {nullptr, nullptr, L""},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(qvtest::Narrow(tc.restriction ? tc.restriction : L"(null)"));
        EXPECT_EQ(
            CElementInfo::GetAnyDefaultNamespace(tc.restriction, tc.defaultNamespace, L"urn:t"),
            tc.expected);
    }
}

TEST(ElementInfo, BaseOperations) {
    CElementInfoSeqClsOpt cls(L"A", nullptr, 0, XmlElementType_Element, nullptr, 0);
    CElementInfoSeqPrimOpt prim(
        L"A", L"urn:a", 0, false, ItemType_i4, nullptr, CWhitespaceUtils::WhitespaceRule_Collapse,
        CPrimitiveRestrictions(nullptr, -1, -1, nullptr, L"9", nullptr, nullptr, -1, -1, -1),
        nullptr);
    EXPECT_EQ(cls.GetNamespace(), L""); // null stores empty
    QvVariant value;
    value.SetI4(10);
    ExpectThrowMsg<CQvException>([&] { cls.CheckRestriction(value); },
                                 L"Cannot CheckRestriction for type: " + value.GetType());
    ExpectThrowMsg<CQvException>([&] { prim.CheckRestriction(value); },
                                 L"Invalid Value for A [10]");
    value.SetI4(9);
    prim.CheckRestriction(value);
    ExpectThrowMsg<CQvException>(
        [&] { cls.Validate(CSerializationContext::m_defaultContext, nullptr, true, true); },
        L"Not implemented, should never be called");
}
