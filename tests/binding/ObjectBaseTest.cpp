#include "binding-fixtures/OrderBinding.h"
#include "common/TestUtils.h"

#include <gtest/gtest.h>

#include <functional>

using namespace fixtures;
using qvtest::ExpectThrowMsg;

namespace {

class CTrackedAddress : public CAddress {
public:
    explicit CTrackedAddress(bool& deleted) : m_deleted(deleted) {}

    ~CTrackedAddress() override { m_deleted = true; }

private:
    bool& m_deleted;
};

} // namespace

TEST(XmlObjectBase, ReferenceCount) {
    bool deleted = false;
    CXmlObjectBase* object = new CTrackedAddress(deleted);
    EXPECT_EQ(object->AddRef(), 1);
    EXPECT_EQ(object->AddRef(), 2);
    EXPECT_EQ(object->Release(), 1);
    EXPECT_FALSE(deleted);
    EXPECT_EQ(object->Release(), 0);
    EXPECT_TRUE(deleted);
}

TEST(VariantReferences, ObjectsAndCollectionsAreCounted) {
    bool deleted = false;
    {
        QvVariant value;
        CAddress* object = new CTrackedAddress(deleted);
        value.SetXmlObject(object);
        EXPECT_EQ(value.GetItemType(), ItemType_XmlObject);
        {
            QvVariant copy(value); // a copy shares the object
            EXPECT_EQ(copy.GetXmlObject().Ptr(), object);
            value.SetXmlObject(object); // setting the object held now keeps it alive
        }
        EXPECT_FALSE(deleted);
        ExpectThrowMsg<CQvException>([&] { value.GetXmlCollection(); }, L"Invalid Type 27");
        ExpectThrowMsg<CQvException>([&] { value.ToString(); },
                                     L"Invalid Type 27 to convert to string");
    }
    EXPECT_TRUE(deleted);

    QvVariant collectionValue;
    Ci4Col* collection = new Ci4Col(L"i", kNs, 0, -1);
    collection->Add(3);
    collectionValue.SetXmlCollection(collection);
    EXPECT_EQ(collectionValue.GetXmlCollection()->GetCount(), 1);
    ExpectThrowMsg<CQvException>([&] { collectionValue.GetXmlObject(); }, L"Invalid Type 28");
    collectionValue.SetXmlObject(nullptr);
    EXPECT_TRUE(collectionValue.GetXmlObject().IsNull());
}

TEST(XmlObjectBase, ChoiceHelpers) {
    using Call = std::function<void(std::wstring&, CXmlObjectBase*)>;
    const auto select = [](const wchar_t* name, bool withValue) {
        return Call([=](std::wstring& selected, CXmlObjectBase* value) {
            CXmlObjectBase::Choice_SelectElement(name, withValue ? value : nullptr, selected);
        });
    };
    const auto setValid = [](bool valid, const wchar_t* name) {
        return Call([=](std::wstring& selected, CXmlObjectBase*) {
            CXmlObjectBase::Choice_SetElementValid(valid, name, selected);
        });
    };
    const auto collectionChanged = [](const wchar_t* name, long count) {
        return Call([=](std::wstring& selected, CXmlObjectBase*) {
            CXmlObjectBase::Choice_CollectionChanged(name, count, selected);
        });
    };
    const std::wstring bracketed =
        L"The Property [A] is already set. Only one element within this class bay be set at a time";
    const std::wstring bare =
        L"The Property A is already set. Only one element within this class bay be set at a time";
    const std::wstring bareEmpty =
        L"The Property  is already set. Only one element within this class bay be set at a time";

    struct Case {
        const char* name;
        const wchar_t* before;
        Call call;
        const wchar_t* after; // the selection afterwards (unchanged when it throws)
        std::wstring message; // empty: no exception
    };

    const Case cases[] = {
        {"select the selected one", L"A", select(L"A", true), L"A", L""},
        {"select with none selected", L"", select(L"B", true), L"B", L""},
        {"select null with none selected", L"", select(L"B", false), L"B", L""},
        {"select another", L"A", select(L"B", true), L"A", bracketed},
        {"set another to null", L"A", select(L"B", false), L"", L""},
        {"valid false", L"A", setValid(false, L"B"), L"", L""},
        {"valid true, same", L"A", setValid(true, L"A"), L"A", L""},
        {"valid true, another", L"A", setValid(true, L"B"), L"A", bare},
        {"valid true, none selected", L"", setValid(true, L"B"), L"", bareEmpty},
        {"collection emptied", L"A", collectionChanged(L"A", 0), L"", L""},
        {"collection grows", L"A", collectionChanged(L"A", 3), L"A", L""},
        {"first items", L"", collectionChanged(L"B", 2), L"B", L""},
        {"still empty", L"", collectionChanged(L"B", 0), L"", L""},
        {"another emptied", L"A", collectionChanged(L"B", 0), L"A", L""},
        {"another filled", L"A", collectionChanged(L"B", 1), L"A", bracketed},
        {"another negative", L"A", collectionChanged(L"B", -1), L"A", bracketed},
    };
    CSmartPtr<CAddress> value = new CAddress();
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        std::wstring selected = tc.before;
        if (tc.message.empty())
            tc.call(selected, value);
        else
            ExpectThrowMsg<CQvInvalidStateException>([&] { tc.call(selected, value); }, tc.message);
        EXPECT_EQ(selected, tc.after);
    }
}

TEST(XmlObjectBase, PropertyChecks) {
    CSmartPtr<CAddress> shipTo = new CAddress();
    shipTo->SetElementName(L"ShipTo");
    CXmlObjectBase::Throw_IfPropertyIsNull(shipTo, L"ShipTo");
    CXmlObjectBase::Throw_IfElementNameDiffers(shipTo, L"ShipTo");
    CXmlObjectBase::Throw_IfElementNameDiffers(nullptr, L"ShipTo");
    ExpectThrowMsg<CQvInvalidParamException>(
        [] { CXmlObjectBase::Throw_IfPropertyIsNull(nullptr, L"ShipTo"); },
        L"The Property [ShipTo] is mandatory, it may node be NULL");
    ExpectThrowMsg<CQvInvalidParamException>(
        [&] { CXmlObjectBase::Throw_IfElementNameDiffers(shipTo, L"shipTo"); },
        L"This property requires an element with the name shipTo the element being set has the "
        L"element name ShipTo");
}

TEST(XmlGeneratedClass, CleanMetaData) {
    CParentElementInfo* classInfo =
        new CParentElementInfo(XmlElementGroupType_Sequence, XmlElementType_Element, L"T", kNs,
                               true, false, -1, ItemType_Invalid, nullptr, false);
    CElementInfo** elements = new CElementInfo*[3];
    elements[0] = new CElementInfoSeqClsOpt(L"A", kNs, 0, XmlElementType_Element, CreateClass, 1);
    elements[1] =
        new CElementInfoSeqEnumOpt(L"B", kNs, 1, false, StatusToString, StatusFromString, nullptr);
    elements[2] = nullptr;
    CAttributeInfo** attributes = new CAttributeInfo*[1];
    attributes[0] = nullptr;
    CXmlGeneratedClass::CleanMetaData(classInfo, elements, attributes);
    EXPECT_EQ(classInfo, nullptr);
    EXPECT_EQ(elements, nullptr);
    EXPECT_EQ(attributes, nullptr);
    // AddressSanitizer reports any info left behind.

    CXmlGeneratedClass::CleanMetaData(classInfo, elements, attributes); // all null: nothing
}

TEST(XmlGeneratedClass, MetadataQueries) {
    CSmartPtr<COrder> order = new COrder();
    EXPECT_EQ(order->GetClassElementInfoCount(), 11);
    CXmlDocument doc;
    doc.LoadXml(L"<Order xmlns='urn:test:po'><Note/><Phone/></Order>");
    CXmlElement* note = doc.GetDocumentElement()->GetFirstElement();
    EXPECT_TRUE(order->IsElementInList(CSerializationContext::m_defaultContext, note));
    // Phone belongs to the pseudo element, not to the order's own list.
    EXPECT_FALSE(order->IsElementInList(CSerializationContext::m_defaultContext,
                                        note->GetNextSiblingElement()));
}
