#include "binding-fixtures/CatalogBinding.h"
#include "common/TestUtils.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace fixtures;
using qvtest::ExpectThrowMsg;

namespace {

CSmartPtr<CItem> NewItem(const wchar_t* name) {
    CSmartPtr<CItem> item = new CItem();
    item->Name = name;
    return item;
}

std::wstring Names(const TXmlObjectCol<CItem>& items) {
    std::wstring names;
    for (CItem* item : items)
        names += item->Name;
    return names;
}

// Records the events a collection sends, with their data.
class Listener : public IEventSink {
public:
    void OnEvent(CXmlObjectBase*, MsgType type, void* data) override {
        std::wstring entry = std::to_wstring(static_cast<int>(type));
        if (type == MsgType_CollectionAdd || type == MsgType_CollectionAddComplete)
            entry += L":" + static_cast<CItem*>(data)->Name;
        else if (type != MsgType_CollectionChange)
            entry += L":" + std::to_wstring(*static_cast<int*>(data));
        log.push_back(entry);
    }

    std::vector<std::wstring> log;
};

const wchar_t kCatalogXml[] =
    L"<Catalog xmlns=\"urn:test:po\">\n"
    L"\t<Item>\n\t\t<Name>a</Name>\n\t</Item>\n"
    L"\t<Item>\n\t\t<Name>b</Name>\n\t</Item>\n"
    L"\t<Shape xmlns:AA=\"http://www.w3.org/2001/XMLSchema-instance\" AA:type=\"SquareType\">\n"
    L"\t\t<Side>3</Side>\n\t</Shape>\n"
    L"\t<Shape xmlns:AA=\"http://www.w3.org/2001/XMLSchema-instance\" AA:type=\"CircleType\">\n"
    L"\t\t<Radius>1</Radius>\n\t</Shape>\n"
    L"</Catalog>\n";

CSerializationContext DefaultNs() {
    CSerializationContext ctx;
    ctx.SetDefaultNamespaceURI(kNs);
    return ctx;
}

} // namespace

TEST(ObjectCollection, AddFindAndRemove) {
    TXmlObjectCol<CItem> items(L"Item", kNs, 0, -1);
    CSmartPtr<CItem> b = NewItem(L"b");
    items.Add(b);
    items.PrependItem(NewItem(L"a"));
    items.AddItemAt(2, NewItem(L"d"));
    items.AddBeforeItem(items.Item(2), NewItem(L"c"));
    items.AddAfterItem(items.Item(3), NewItem(L"e"));
    items.AddAfterItem(nullptr, NewItem(L"f"));
    EXPECT_EQ(Names(items), L"abcdef");
    EXPECT_EQ(items.GetCount(), 6);
    EXPECT_EQ(items.GetNodeForItem(b)->item.Ptr(), b.Ptr());

    items.Remove(0);
    items.RemoveNode(items.GetNodeForItem(b));
    EXPECT_EQ(Names(items), L"cdef");
    items.Clear();
    EXPECT_EQ(items.GetCount(), 0);
    EXPECT_EQ(items.begin() != items.end(), false);
}

TEST(ObjectCollection, IndexAndLookupErrors) {
    TXmlObjectCol<CItem> items(L"Item", kNs, 0, -1);
    for (const wchar_t* name : {L"a", L"b", L"c"})
        items.Add(NewItem(name));
    ExpectThrowMsg<CQvInvalidParamException>([&] { items.GetNodeAtIndex(3); },
                                             L"Index 3 is out of range, use 0 - 3");
    ExpectThrowMsg<CQvInvalidParamException>([&] { items.Remove(-1); },
                                             L"Index -1 is out of range, use 0 - 3");
    ExpectThrowMsg<CQvInvalidParamException>([&] { items.AddItemAt(4, NewItem(L"x")); },
                                             L"Index out of range");
    CSmartPtr<CItem> stranger = NewItem(L"z");
    ExpectThrowMsg<CQvInvalidParamException>([&] { items.GetNodeForItem(stranger); },
                                             L"The object was not found in the collection");
    items.AddItemAt(3, NewItem(L"d")); // the count itself appends
    EXPECT_EQ(Names(items), L"abcd");
}

TEST(ObjectCollection, EventsInOrder) {
    TXmlObjectCol<CItem> items(L"Item", kNs, 0, -1);
    Listener listener;
    items.AddEventListener(&listener);
    items.Add(NewItem(L"a"));
    items.AddItemAt(0, NewItem(L"b"));
    items.Remove(1);
    const std::vector<std::wstring> expected = {L"1:a", L"2:a",  L"0",    L"1:b", L"2:b",
                                                L"0",   L"3:-1", L"4:-1", L"0"};
    EXPECT_EQ(listener.log, expected);
}

TEST(ObjectCollection, ItemsAreCountedReferences) {
    bool alive = true;

    struct Watched : CItem {
        explicit Watched(bool* flag) : m_flag(flag) {}

        ~Watched() override { *m_flag = false; }

        bool* m_flag;
    };

    {
        TXmlObjectCol<CItem> items(L"Item", kNs, 0, -1);
        items.Add(new Watched(&alive));
        EXPECT_TRUE(alive);
        items.Remove(0);
        EXPECT_FALSE(alive);
        alive = true;
        items.Add(new Watched(&alive));
    }
    EXPECT_FALSE(alive); // the collection released it
}

TEST(ObjectCollection, WritesAndReadsRepeatedMembers) {
    CSmartPtr<CCatalog> catalog = new CCatalog();
    catalog->Items->Add(NewItem(L"a"));
    catalog->Items->Add(NewItem(L"b"));
    CSmartPtr<CSquare> square = new CSquare();
    square->SetElementName(L"Shape");
    square->Side = 3;
    CSmartPtr<CCircle> circle = new CCircle();
    circle->SetElementName(L"Shape");
    circle->Radius = 1;
    catalog->Shapes->Add(square);
    catalog->Shapes->Add(circle);
    EXPECT_EQ(catalog->ToXml(false, true, EOL_LF, DefaultNs()), kCatalogXml);

    CSmartPtr<CCatalog> back = new CCatalog();
    back->FromXml(kCatalogXml);
    EXPECT_EQ(Names(*back->Items), L"ab");
    ASSERT_EQ(back->Shapes->GetCount(), 2);
    EXPECT_NE(dynamic_cast<CSquare*>(back->Shapes->Item(0)), nullptr);
    EXPECT_EQ(dynamic_cast<CCircle*>(back->Shapes->Item(1))->Radius, 1);
    // Reading again starts from empty collections.
    back->FromXml(kCatalogXml);
    EXPECT_EQ(back->Items->GetCount(), 2);
}

TEST(ObjectCollection, CountsAndTypesOnReadAndWrite) {
    struct Case {
        const char* name;
        const wchar_t* xml;
        const wchar_t* message;
    };

    const Case cases[] = {
        {"too few items", L"<Catalog xmlns='urn:test:po'/>",
         L"Failed to process the element.\nPath: /Catalog\n"
         L"The Minimum number of [Item] elements allowed in this collection is 1"},
        {"too many items",
         L"<Catalog xmlns='urn:test:po'><Item><Name/></Item><Item><Name/></Item>"
         L"<Item><Name/></Item><Item><Name/></Item></Catalog>",
         L"Failed to process the element.\nPath: /Catalog\n"
         L"The Maximum number of [Item] elements allowed in this collection is 3"},
        {"unknown xsi:type",
         L"<Catalog xmlns='urn:test:po' xmlns:x='http://www.w3.org/2001/XMLSchema-instance'>"
         L"<Item><Name/></Item><Shape x:type='Triangle'/></Catalog>",
         L"Failed to find a suitable substitution element for [Shape].\n"
         L"Path: /Catalog/Shape"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        CSmartPtr<CCatalog> catalog = new CCatalog();
        try {
            catalog->FromXml(tc.xml);
            ADD_FAILURE() << "nothing thrown";
        } catch (const CQvException& e) {
            EXPECT_EQ(e.GetFullMessage(), tc.message);
        }
    }
    CSerializationContext ignoring;
    ignoring.SetIgnoreInvalidCollectionCounts(true);
    CSmartPtr<CCatalog> empty = new CCatalog();
    empty->FromXml(L"<Catalog xmlns='urn:test:po'/>", ignoring);
    EXPECT_EQ(empty->Items->GetCount(), 0);
    try {
        empty->ToXml();
        ADD_FAILURE() << "nothing thrown";
    } catch (const CQvException& e) {
        EXPECT_EQ(e.GetFullMessage(),
                  L"Failed to convert the element [Catalog] to XML\n"
                  L"The Minimum number of [Item] elements allowed in this collection is 1");
    }
    EXPECT_EQ(empty->ToXml(false, false, EOL_LF, ignoring),
              L"<AA:Catalog xmlns:AA=\"urn:test:po\"/>");
}

TEST(ClassFactory, TypeNameAndNamespaceFromXsiType) {
    CXmlDocument document;
    document.LoadXml(L"<r xmlns:x='http://www.w3.org/2001/XMLSchema-instance' xmlns:p='urn:p'>"
                     L"<a x:type='p:T'/><b x:type='U'/><c/></r>");
    const CXmlElement* a = document.GetDocumentElement()->GetFirstElement();
    const CXmlElement* b = a->GetNextSiblingElement();
    const CXmlElement* c = b->GetNextSiblingElement();
    EXPECT_EQ(CClassfactoryBase::GetElementType(a), L"T");
    EXPECT_EQ(CClassfactoryBase::GetElementTypeNamespaceUri(a), L"urn:p");
    EXPECT_EQ(CClassfactoryBase::GetElementType(b), L"U");
    EXPECT_EQ(CClassfactoryBase::GetElementTypeNamespaceUri(b), L"");
    EXPECT_EQ(CClassfactoryBase::GetElementType(c), L"");
}
