#include "binding-fixtures/CatalogBinding.h"
#include "binding-fixtures/ExpectThrown.h"

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
    void OnEvent(CXmlObjectBase* from, MsgType type, void* data) override {
        std::wstring entry = std::to_wstring(static_cast<int>(type));
        if (type == MsgType_CollectionAdd || type == MsgType_CollectionAddComplete)
            entry += L":" + static_cast<CItem*>(data)->Name;
        else if (type != MsgType_CollectionChange)
            entry += L":" + std::to_wstring(*static_cast<int*>(data));
        log.push_back(entry);
        source = from;
    }

    std::vector<std::wstring> log;
    CXmlObjectBase* source = nullptr;
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
    items.AddItemAt(2, NewItem(L"d")); // the count itself appends
    items.AddBeforeItem(items.Item(2), NewItem(L"c"));
    items.AddAfterItem(items.Item(3), NewItem(L"e"));
    items.AddAfterItem(nullptr, NewItem(L"f"));
    EXPECT_EQ(Names(items), L"abcdef");
    EXPECT_EQ(items.GetNodeForItem(b)->item.Ptr(), b.Ptr());

    ExpectThrowMsg<CQvInvalidParamException>([&] { items.GetNodeAtIndex(6); },
                                             L"Index 6 is out of range, use 0 - 6");
    ExpectThrowMsg<CQvInvalidParamException>([&] { items.Remove(-1); },
                                             L"Index -1 is out of range, use 0 - 6");
    ExpectThrowMsg<CQvInvalidParamException>([&] { items.AddItemAt(7, NewItem(L"x")); },
                                             L"Index out of range");
    ExpectThrowMsg<CQvInvalidParamException>([&] { items.GetNodeForItem(NewItem(L"z")); },
                                             L"The object was not found in the collection");
    EXPECT_EQ(Names(items), L"abcdef");
    items.Remove(0);
    items.RemoveNode(items.GetNodeForItem(b));
    EXPECT_EQ(Names(items), L"cdef");
    items.Clear();
    EXPECT_EQ(items.GetCount(), 0);
    EXPECT_FALSE(items.begin() != items.end());
}

TEST(ObjectCollection, EventsReachEachListenerInOrder) {
    TXmlObjectCol<CItem> items(L"Item", kNs, 0, -1);
    Listener first, second;
    items.AddEventListener(&first);
    items.AddEventListener(&second);
    items.Add(NewItem(L"a"));
    items.AddItemAt(0, NewItem(L"b"));
    items.Remove(1);
    const std::vector<std::wstring> expected = {L"1:a", L"2:a",  L"0",    L"1:b", L"2:b",
                                                L"0",   L"3:-1", L"4:-1", L"0"};
    EXPECT_EQ(first.log, expected);
    EXPECT_EQ(second.log, expected);
    EXPECT_EQ(first.source, &items);
    items.RemoveEventListener(&first);
    items.Clear();
    EXPECT_EQ(first.log.size(), 9u);
    EXPECT_EQ(second.log.size(), 10u);
}

TEST(ObjectCollection, ItemsAreCountedReferences) {
    struct Watched : CItem {
        explicit Watched(bool* flag) : m_flag(flag) {}

        ~Watched() override { *m_flag = false; }

        bool* m_flag;
    };

    bool removed = true, held = true;
    {
        TXmlObjectCol<CItem> items(L"Item", kNs, 0, -1);
        items.Add(new Watched(&removed));
        items.Add(new Watched(&held));
        EXPECT_TRUE(removed);
        items.Remove(0);
        EXPECT_FALSE(removed);
        EXPECT_TRUE(held);
    }
    EXPECT_FALSE(held); // the collection released it
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
    const auto read = [](const std::wstring& body) {
        CSmartPtr<CCatalog> catalog = new CCatalog();
        catalog->FromXml((L"<Catalog xmlns='urn:test:po' xmlns:x='http://www.w3.org/2001/"
                          L"XMLSchema-instance'>"
                          + body + L"</Catalog>")
                             .c_str());
    };
    const auto counted = [](const wchar_t* message) {
        return Thrown(&typeid(CQvValidationException),
                      L"Failed to process the element.\nPath: /Catalog", L"/Catalog",
                      &typeid(CQvValidationException), message);
    };
    const std::wstring item = L"<Item><Name/></Item>";
    ExpectThrown([&] { read(L""); },
                 counted(L"The Minimum number of [Item] elements allowed in this collection is 1"));
    ExpectThrown([&] { read(item + item + item + item); },
                 counted(L"The Maximum number of [Item] elements allowed in this collection is 3"));
    ExpectThrown([&] { read(item + L"<Shape x:type='Triangle'/>"); },
                 Thrown(&typeid(CQvException),
                        L"Failed to find a suitable substitution element for [Shape].\n"
                        L"Path: /Catalog/Shape",
                        L"/Catalog/Shape"));

    CSerializationContext ignoring;
    ignoring.SetIgnoreInvalidCollectionCounts(true);
    CSmartPtr<CCatalog> empty = new CCatalog();
    empty->FromXml(L"<Catalog xmlns='urn:test:po'/>", ignoring);
    EXPECT_EQ(empty->Items->GetCount(), 0);
    ExpectThrown([&] { empty->ToXml(); },
                 Thrown(&typeid(CQvValidationException),
                        L"Failed to convert the element [Catalog] to XML", L"",
                        &typeid(CQvValidationException),
                        L"The Minimum number of [Item] elements allowed in this collection is 1"));
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
