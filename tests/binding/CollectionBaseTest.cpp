#include "common/TestUtils.h"

#include <QvXmlLib16/QvXmlLib16.h>

#include <gtest/gtest.h>

#include <string>

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

} // namespace

TEST(CollectionBase, OccurrenceChecks) {
    struct Case {
        int min, max, count;
        const wchar_t* message; // null when valid
    };

    const Case cases[] = {
        {1, 3, 0, L"The Minimum number of [i] elements allowed in this collection is 1"},
        {1, 3, 1, nullptr},
        {1, 3, 3, nullptr},
        {1, 3, 4, L"The Maximum number of [i] elements allowed in this collection is 3"},
        {0, -1, 1000, nullptr}, // unbounded
        {2, -1, 1, L"The Minimum number of [i] elements allowed in this collection is 2"},
    };
    CSerializationContext ignoring;
    ignoring.SetIgnoreInvalidCollectionCounts(true);
    for (const Case& tc : cases) {
        SCOPED_TRACE(std::to_string(tc.min) + ".." + std::to_string(tc.max) + " holding "
                     + std::to_string(tc.count));
        CountedCollection collection(tc.min, tc.max, tc.count);
        EXPECT_EQ(collection.IsValidCount(CSerializationContext()), tc.message == nullptr);
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
    ExpectThrowMsg<CQvException>([&] { collection.GetTargetNamespace(); },
                                 L"CXmlCollectionBase::GetTargetNamespace Should not be used from "
                                 L"within a Collection (program logic error)");
}

TEST(CollectionBase, ChoiceReadCollection) {
    CXmlDocument document;
    document.LoadXml(L"<r><i/><i/><x/></r>");
    CXmlElement* root = document.GetDocumentElement();
    CXmlElement* cursor = root->GetFirstElement();
    long count = 1;
    const auto read = [&](CXmlCollectionBase* collection) {
        CXmlObjectBase::Choice_Read_Collection(collection, root, cursor, count,
                                               CSerializationContext());
    };
    CSmartPtr<CountedCollection> collection = new CountedCollection(0, 5, 0);

    // A choice that already has a member reads nothing.
    read(collection);
    EXPECT_EQ(cursor, root->GetFirstElement());
    EXPECT_EQ(count, 1);

    count = 0;
    read(collection);
    EXPECT_EQ(cursor->GetLocalName(), L"x");
    EXPECT_EQ(collection->GetCount(), 2);
    EXPECT_EQ(count, 1);

    // Nothing taken: no count.
    count = 0;
    read(collection);
    EXPECT_EQ(count, 0);

    // What it took is checked against the collection's bounds.
    CSmartPtr<CountedCollection> small = new CountedCollection(0, 1, 0);
    cursor = root->GetFirstElement();
    ExpectThrowMsg<CQvValidationException>(
        [&] { read(small); },
        L"The Maximum number of [i] elements allowed in this collection is 1");
}
