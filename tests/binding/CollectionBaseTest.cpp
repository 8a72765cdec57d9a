#include "common/TestUtils.h"

#include <QvXmlLib16/QvXmlLib16.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace QvXmlLib16;
using qvtest::ExpectThrowMsg;

namespace {

// A collection of a given size that reads by taking every child named "i".
class CountedCollection : public CXmlCollectionBase {
public:
    CountedCollection(int minOccurs, int maxOccurs, int count)
        : CXmlCollectionBase(L"i", L"urn:c", minOccurs, maxOccurs),
          m_count(count) {}

    int GetCount() const override { return m_count; }

    void Clear() override { m_count = 0; }

    void Remove(int) override { --m_count; }

protected:
    void ToXml_Int(CXmlWriter*, bool, const wchar_t*, const CSerializationContext&,
                   bool) const override {}

    CXmlElement* FromXml_Int(CXmlElement*, CXmlElement* cursor, const CSerializationContext&,
                             bool) override {
        while (cursor && cursor->GetLocalName() == L"i") {
            ++m_count;
            cursor = cursor->GetNextSiblingElement();
        }
        return cursor;
    }

private:
    int m_count;
};

// Records what it is told, with the index of removals.
class Recorder : public IEventSink {
public:
    void OnEvent(CXmlObjectBase* source, MsgType type, void* data) override {
        std::wstring entry = std::to_wstring(static_cast<int>(type));
        if (type == MsgType_CollectionRemove || type == MsgType_CollectionRemoveComplete)
            entry += L":" + std::to_wstring(*static_cast<int*>(data));
        else if (data)
            entry += L":item";
        log.push_back(entry);
        lastSource = source;
    }

    std::vector<std::wstring> log;
    CXmlObjectBase* lastSource = nullptr;
};

class Counted : public CXmlObjectBase {
public:
    explicit Counted(bool* deleted) : m_deleted(deleted) {}

    ~Counted() override { *m_deleted = true; }

    CXmlObjectBase* GetBase() override { return this; }

    std::wstring GetTargetNamespace() const override { return L""; }

    std::wstring GetNamespace() const override { return L""; }

protected:
    void ToXml_Int(CXmlWriter*, bool, const wchar_t*, const CSerializationContext&,
                   bool) const override {}

    CXmlElement* FromXml_Int(CXmlElement*, CXmlElement* cursor, const CSerializationContext&,
                             bool) override {
        return cursor;
    }

private:
    bool* m_deleted;
};

} // namespace

TEST(CollectionBase, OccurrenceChecks) {
    struct Case {
        int min, max, count;
        bool valid;
        const wchar_t* message; // null when valid
    };

    const Case cases[] = {
        {1, 3, 0, false, L"The Minimum number of [i] elements allowed in this collection is 1"},
        {1, 3, 1, true, nullptr},
        {1, 3, 3, true, nullptr},
        {1, 3, 4, false, L"The Maximum number of [i] elements allowed in this collection is 3"},
        {0, -1, 1000, true, nullptr}, // unbounded
        {2, -1, 1, false, L"The Minimum number of [i] elements allowed in this collection is 2"},
    };
    CSerializationContext ignoring;
    ignoring.SetIgnoreInvalidCollectionCounts(true);
    for (const Case& tc : cases) {
        SCOPED_TRACE(std::to_string(tc.min) + ".." + std::to_string(tc.max) + " holding "
                     + std::to_string(tc.count));
        CountedCollection collection(tc.min, tc.max, tc.count);
        EXPECT_EQ(collection.IsValidCount(CSerializationContext()), tc.valid);
        if (tc.message)
            ExpectThrowMsg<CQvValidationException>(
                [&] { collection.ValidateCount(CSerializationContext()); }, tc.message);
        else
            collection.ValidateCount(CSerializationContext());
        EXPECT_TRUE(collection.IsValidCount(ignoring));
        collection.ValidateCount(ignoring);
    }
}

TEST(CollectionBase, NamesAndTargetNamespace) {
    CountedCollection collection(0, -1, 0);
    EXPECT_EQ(collection.GetElementName(), L"i");
    EXPECT_EQ(collection.GetNamespace(), L"urn:c");
    EXPECT_EQ(collection.GetBase(), &collection);
    ExpectThrowMsg<CQvException>([&] { collection.GetTargetNamespace(); },
                                 L"CXmlCollectionBase::GetTargetNamespace Should not be used from "
                                 L"within a Collection (program logic error)");
}

TEST(CollectionBase, EventsReachListenersInOrder) {
    CountedCollection collection(0, -1, 0);
    Recorder first, second;
    collection.AddEventListener(&first);
    collection.AddEventListener(&second);
    int item = 0;
    collection.FireOnCollectionAdd(&item);
    collection.FireOnCollectionAddComplete(&item);
    collection.FireOnCollectionRemove(-1);
    collection.FireOnCollectionRemoveComplete(4);
    collection.FireOnCollectionChange();
    const std::vector<std::wstring> expected = {L"1:item", L"2:item", L"3:-1", L"4:4", L"0"};
    EXPECT_EQ(first.log, expected);
    EXPECT_EQ(second.log, expected);
    EXPECT_EQ(first.lastSource, &collection);
    collection.RemoveEventListener(&first);
    collection.FireOnCollectionChange();
    EXPECT_EQ(first.log.size(), 5u);
    EXPECT_EQ(second.log.size(), 6u);
}

TEST(CollectionBase, ChoiceReadCollection) {
    CXmlDocument document;
    document.LoadXml(L"<r><i/><i/><x/></r>");
    CXmlElement* root = document.GetDocumentElement();
    CSmartPtr<CountedCollection> collection = new CountedCollection(0, 5, 0);

    // A choice that already has a member reads nothing.
    CXmlElement* cursor = root->GetFirstElement();
    long count = 1;
    CXmlObjectBase::Choice_Read_Collection(collection, root, cursor, count,
                                           CSerializationContext());
    EXPECT_EQ(cursor, root->GetFirstElement());
    EXPECT_EQ(count, 1);

    count = 0;
    CXmlObjectBase::Choice_Read_Collection(collection, root, cursor, count,
                                           CSerializationContext());
    EXPECT_EQ(cursor->GetLocalName(), L"x");
    EXPECT_EQ(collection->GetCount(), 2);
    EXPECT_EQ(count, 1);

    // Nothing taken: no count check, no count.
    count = 0;
    CXmlObjectBase::Choice_Read_Collection(collection, root, cursor, count,
                                           CSerializationContext());
    EXPECT_EQ(count, 0);

    // What it took is checked against the collection's bounds.
    CSmartPtr<CountedCollection> small = new CountedCollection(0, 1, 0);
    cursor = root->GetFirstElement();
    ExpectThrowMsg<CQvValidationException>(
        [&] {
            CXmlObjectBase::Choice_Read_Collection(small, root, cursor, count,
                                                   CSerializationContext());
        },
        L"The Maximum number of [i] elements allowed in this collection is 1");
}

TEST(VariantReferences, ObjectsAndCollectionsAreCounted) {
    bool deleted = false;
    {
        QvVariant value;
        Counted* object = new Counted(&deleted);
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
    CountedCollection* collection = new CountedCollection(0, -1, 3);
    collectionValue.SetXmlCollection(collection);
    EXPECT_EQ(collectionValue.GetXmlCollection()->GetCount(), 3);
    ExpectThrowMsg<CQvException>([&] { collectionValue.GetXmlObject(); }, L"Invalid Type 28");
    collectionValue.SetXmlObject(nullptr);
    EXPECT_TRUE(collectionValue.GetXmlObject().IsNull());
}
