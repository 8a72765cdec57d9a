#include "binding-fixtures/ExpectThrown.h"

#include <QvXmlLib16/QvXmlLib16.h>

#include <gtest/gtest.h>

#include <functional>

using namespace QvXmlLib16;
using fixtures::ExpectThrown;
using fixtures::Thrown;

TEST(NameMatching, NamespaceRestrictions) {
    struct Case {
        const wchar_t* ns;
        const wchar_t* restriction;
        const wchar_t* target;
        bool valid;
    };

    const Case cases[] = {
        {L"urn:x", L"##any", L"urn:t", true},
        {L"", L"##any", L"urn:t", true},
        {L"urn:t", L"##other", L"urn:t", false},
        {L"", L"##other", L"urn:t", true},
        {L"urn:x", L"##other", L"urn:t", true},
        {L"", L"##local", L"urn:t", true},
        {L"urn:x", L"##local", L"urn:t", false},
        {L"urn:t", L"##targetNamespace", L"urn:t", true},
        {L"urn:x", L"##targetNamespace", L"urn:t", false},
        // A URI admits itself and the empty namespace.
        {L"", L"urn:a", L"urn:t", true},
        {L"urn:a", L"urn:a", L"urn:t", true},
        {L"urn:b", L"urn:a", L"urn:t", false},
        // Lists: each token in turn.
        {L"urn:t", L"##local ##targetNamespace", L"urn:t", true},
        {L"urn:x", L"##local ##targetNamespace", L"urn:t", false},
        {L"urn:b", L"urn:a urn:b", L"urn:t", true},
        {L"urn:c", L"urn:a urn:b", L"urn:t", false},
        {L"urn:t", L"##other urn:t", L"urn:t", true},
        {L"urn:x", L"##targetNamespace  ##local", L"urn:t", false},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(qvtest::Narrow(std::wstring(tc.ns) + L" in " + tc.restriction));
        EXPECT_EQ(CXmlObjectHelper::IsNamespaceValid(tc.ns, tc.restriction, tc.target), tc.valid);
        EXPECT_EQ(CXmlObjectBase::IsNamespaceValid(tc.ns, tc.restriction, tc.target), tc.valid);
        // The same answer as an exception, with no path.
        const Thrown refused(&typeid(CQvInvalidNamespaceException),
                             L"Invalid namespace [" + std::wstring(tc.ns)
                                 + L"]. The namespace must be one of [" + tc.restriction
                                 + L"] where the target namespace is [" + tc.target + L"].",
                             L"");
        const std::function<void()> tests[] = {
            [&] { CXmlObjectHelper::TestNamespace(tc.ns, tc.restriction, tc.target); },
            [&] { CXmlObjectBase::TestNamespace(tc.ns, tc.restriction, tc.target); }};
        for (const std::function<void()>& test : tests) {
            if (tc.valid)
                test();
            else
                ExpectThrown(test, refused);
        }
    }
}

TEST(NameMatching, ElementNames) {
    CXmlDocument document;
    document.LoadXml(L"<a:Item xmlns:a='urn:a'/>");
    const CXmlElement* element = document.GetDocumentElement();

    struct Case {
        const char* name;
        bool ignoreNamespaces;
        SchemaType schema;
        const wchar_t* localName;
        const wchar_t* ns;
        bool matches;
    };

    const Case cases[] = {
        {"same name and namespace", false, SchemaType_Default, L"Item", L"urn:a", true},
        {"other namespace", false, SchemaType_Default, L"Item", L"urn:b", false},
        {"other name", false, SchemaType_Default, L"item", L"urn:a", false},
        {"namespaces ignored", true, SchemaType_Default, L"Item", L"urn:b", true},
        {"no namespaces schema", false, SchemaType_NoNamespaces, L"Item", L"", true},
        {"no namespaces schema, other name", false, SchemaType_NoNamespaces, L"Other", L"", false},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        CSerializationContext ctx;
        ctx.SetIgnoreNamespaces(tc.ignoreNamespaces);
        ctx.SetSchemaType(tc.schema);
        EXPECT_EQ(CXmlObjectHelper::DoesElementNameMatch(ctx, element, tc.localName, tc.ns),
                  tc.matches);
        EXPECT_EQ(CXmlObjectBase::DoesElementNameMatch(ctx, element, tc.localName, tc.ns),
                  tc.matches);
    }
    EXPECT_FALSE(CXmlObjectHelper::DoesElementNameMatch(CSerializationContext(), nullptr, L"Item",
                                                        L"urn:a"));
}
