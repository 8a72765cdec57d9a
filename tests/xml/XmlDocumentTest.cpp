#include "common/TestUtils.h"

#include <functional>

using namespace QvXmlLib16;
using qvtest::ExpectThrowMsg;

namespace {

const std::wstring kXsi = L"http://www.w3.org/2001/XMLSchema-instance";
const std::wstring kXmlnsNs = L"http://www.w3.org/2000/xmlns/";

std::vector<const CXmlElement*> Children(const CXmlElement* element) {
    std::vector<const CXmlElement*> out;
    for (const CXmlElement* c = element->GetFirstElement(); c; c = c->GetNextSiblingElement())
        out.push_back(c);
    return out;
}

std::wstring ChildNames(const CXmlElement* element) {
    std::wstring out;
    for (const CXmlElement* c : Children(element))
        out += (out.empty() ? L"" : L",") + c->GetLocalName();
    return out;
}

std::vector<std::wstring> g_completed;

bool RecordAndRemove(CXmlElement* element) {
    g_completed.push_back(element->GetLocalName());
    return true;
}

bool RemoveItems(CXmlElement* element) {
    return element->GetLocalName() == L"Item";
}

} // namespace

TEST(XmlDocument, Building) {
    CXmlDocument doc;
    EXPECT_EQ(doc.GetDocumentElement(), nullptr);
    EXPECT_EQ(doc.GetOpenElement(), nullptr);

    CXmlElement* root = doc.AddDocElement(L"urn:o", L"Order");
    doc.AddElementAttribute(root, L"id", L"7", L"");
    doc.AddElementAttribute(root, L"id", L"8", L"urn:q");
    CXmlElement* item = doc.AddChildElement(L"", L"Item");
    EXPECT_EQ(doc.GetOpenElement(), item);
    doc.AppendTextExcludingCR(item, L"a\r\nb");
    doc.EndElement();
    doc.AppendTextExcludingCR(root, L"tail");
    CXmlElement* note = doc.AddChildElement(nullptr, L"Note");
    doc.EndElement();
    doc.EndElement();
    doc.EndElement(); // nothing open: ignored

    EXPECT_EQ(doc.GetDocumentElement(), root);
    EXPECT_EQ(doc.GetOpenElement(), nullptr);
    EXPECT_EQ(root->GetNamespaceURI(), L"urn:o");
    EXPECT_EQ(root->GetLocalName(), L"Order");
    EXPECT_EQ(root->GetParentElement(), nullptr);
    EXPECT_EQ(root->GetText(), L"tail");
    EXPECT_EQ(Children(root), (std::vector<const CXmlElement*>{item, note}));
    EXPECT_EQ(item->GetParentElement(), root);
    EXPECT_EQ(item->GetNamespaceURI(), L"");
    EXPECT_EQ(item->GetText(), L"a\nb");
    EXPECT_EQ(note->GetNamespaceURI(), L"");

    ASSERT_EQ(root->GetAttributes().size(), 2u);
    EXPECT_EQ(root->GetAttributes()[0]->GetOwner(), root);
    EXPECT_EQ(root->GetAttribute(L"", L"id")->GetValue(), L"7");
    EXPECT_EQ(root->GetAttribute(L"urn:q", L"id")->GetValue(), L"8");
    EXPECT_EQ(root->GetAttribute(L"urn:x", L"id"), nullptr);
    EXPECT_EQ(root->GetAttribute(L"id", L""), nullptr);

    // A second document element replaces the first.
    doc.AddDocElement(L"", L"Other");
    doc.EndElement();
    EXPECT_EQ(doc.GetDocumentElement()->GetLocalName(), L"Other");
}

TEST(XmlDocument, AppendTextExcludingCR) {
    struct Case {
        const char* name;
        std::wstring before;
        std::wstring text; // may hold NULs
        unsigned long length;
        const wchar_t* after;
    };

    const Case cases[] = {
        {"CR LF", L"", L"a\r\nb", 4, L"a\nb"},
        {"only CRs", L"x", L"\r\r\r", 3, L"x"},
        {"CR at both ends", L"", L"\rab\r", 4, L"ab"},
        {"length bounds the scan", L"", L"abcdef", 3, L"abc"},
        {"length zero", L"x", L"abc", 0, L"x"},
        {"NUL ends early", L"", std::wstring(L"ab\0cd", 5), 5, L"ab"},
        {"NUL after a CR", L"", std::wstring(L"a\r\0b", 4), 4, L"a"},
        {"appends to earlier text", L"start ", L"\r\nend", 5, L"start \nend"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        CXmlDocument doc;
        CXmlElement* element = doc.AddDocElement(L"", L"e");
        element->AppendText(tc.before.c_str());
        doc.AppendTextExcludingCR(element, tc.text.c_str(), tc.length);
        EXPECT_EQ(element->GetText(), tc.after);
    }

    CXmlDocument doc;
    CXmlElement* element = doc.AddDocElement(L"", L"e");
    doc.AppendTextExcludingCR(element, L"x\ry\r\n");
    doc.AppendTextExcludingCR(element, nullptr);
    element->AppendText(L"abc", 2);
    element->AppendText(L"abc", -1);
    EXPECT_EQ(element->GetText(), L"xy\nab");
}

TEST(XmlDocument, ChildListEditing) {
    CXmlElement parent(nullptr, nullptr);
    EXPECT_EQ(parent.RemoveLastChildElement(), nullptr);
    CXmlElement* c = nullptr;
    for (const wchar_t* name : {L"a", L"b", L"c"})
        (c = parent.CreateNewChildElement())->SetElementName(name);
    EXPECT_EQ(c->GetParentElement(), &parent);
    EXPECT_EQ(ChildNames(&parent), L"a,b,c");

    std::unique_ptr<CXmlElement> removed(parent.RemoveLastChildElement());
    EXPECT_EQ(removed.get(), c);
    EXPECT_EQ(ChildNames(&parent), L"a,b");
    // The list stays appendable after a removal.
    parent.CreateNewChildElement()->SetElementName(L"d");
    EXPECT_EQ(ChildNames(&parent), L"a,b,d");
    for (int i = 0; i < 3; ++i)
        delete parent.RemoveLastChildElement();
    EXPECT_EQ(parent.GetFirstElement(), nullptr);
    EXPECT_EQ(parent.RemoveLastChildElement(), nullptr);
    parent.CreateNewChildElement()->SetElementName(L"e");
    EXPECT_EQ(ChildNames(&parent), L"e");
}

TEST(XmlDocument, NamesAndPaths) {
    CXmlDocument doc;
    doc.LoadXml("<Order xmlns:q='urn:q' xmlns:b='urn:q' xmlns:a='urn:q'>"
                "<Item q:id='1'/><Note/><Item n='2'/><Item/><q:Item/>"
                "<x xmlns='urn:d'><y/><y/></x></Order>");
    const CXmlElement* order = doc.GetDocumentElement();
    const std::vector<const CXmlElement*> kids = Children(order);
    ASSERT_EQ(kids.size(), 6u);
    const std::vector<const CXmlElement*> ys = Children(kids[5]);
    ASSERT_EQ(ys.size(), 2u);

    struct Case {
        const char* name;
        const CXmlElement* element;
        const wchar_t* qname;
        const wchar_t* withPredicate;
        const wchar_t* xpath;
    };

    // urn:q has the prefixes a, b and q: the first in prefix order names it.
    const Case cases[] = {
        {"root", order, L"Order", L"Order", L"/Order"},
        {"first of three", kids[0], L"Item", L"Item[1]", L"/Order/Item[1]"},
        {"unique sibling", kids[1], L"Note", L"Note", L"/Order/Note"},
        {"third of three", kids[3], L"Item", L"Item[3]", L"/Order/Item[3]"},
        {"same local name, other QName", kids[4], L"a:Item", L"a:Item", L"/Order/a:Item"},
        {"default namespace has the empty prefix", kids[5], L"x", L"x", L"/Order/x"},
        {"nested predicate", ys[1], L"y", L"y[2]", L"/Order/x/y[2]"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        EXPECT_EQ(tc.element->GetQName(), tc.qname);
        EXPECT_EQ(tc.element->GetNameWithPredicate(), tc.withPredicate);
        EXPECT_EQ(tc.element->GetXPath(), tc.xpath);
    }
    EXPECT_EQ(kids[0]->GetAttributes()[0]->GetXPath(), L"/Order/Item[1]/@a:id");
    EXPECT_EQ(kids[2]->GetAttributes()[0]->GetXPath(), L"/Order/Item[2]/@n");
    EXPECT_EQ(doc.LookupAliasFromNamespace(L"urn:q"), L"a");
    EXPECT_EQ(doc.LookupAliasFromNamespace(L"urn:none"), L"");
    EXPECT_EQ(doc.LookupNamespaceFromAlias(L"b"), L"urn:q");
    EXPECT_EQ(doc.LookupNamespaceFromAlias(L""), L"urn:d");
    EXPECT_EQ(doc.LookupNamespaceFromAlias(L"zz"), L"");

    // Without a known prefix the namespace does not show.
    CXmlDocument built;
    CXmlElement* root = built.AddDocElement(L"urn:nowhere", L"R");
    built.AddElementAttribute(root, L"a", L"1", L"urn:nowhere");
    EXPECT_EQ(root->GetXPath(), L"/R");
    EXPECT_EQ(root->GetAttributes()[0]->GetXPath(), L"/R/@a");
}

TEST(XmlDocument, AttributeKinds) {
    struct Case {
        const char* name;
        std::wstring ns;
        const wchar_t* localName;
        bool isNamespace;
        bool isNil;
    };

    const Case cases[] = {
        {"xsi:type", kXsi, L"type", true, false},
        {"xsi:schemaLocation", kXsi, L"schemaLocation", true, false},
        {"xsi:noNamespaceSchemaLocation", kXsi, L"noNamespaceSchemaLocation", true, false},
        {"xmlns", kXmlnsNs, L"xmlns", true, false},
        {"xmlns namespace, other name", kXmlnsNs, L"p", false, false},
        {"xsi:nil", kXsi, L"nil", false, true},
        {"xsi:Nil", kXsi, L"Nil", false, false},
        {"nil without namespace", L"", L"nil", false, false},
        {"type without namespace", L"", L"type", false, false},
        {"type in another namespace", L"urn:x", L"type", false, false},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        const CXmlAttribute attribute(nullptr, tc.localName, L"v", tc.ns);
        EXPECT_EQ(attribute.IsNamespaceAttribute(), tc.isNamespace);
        EXPECT_EQ(attribute.IsNilAttribute(), tc.isNil);
    }
}

TEST(XmlDocument, CompletedCallback) {
    const char* xml = "<r><Item><a/></Item><Note>n<b/></Note><Item/></r>";
    g_completed.clear();
    CXmlDocument all(RecordAndRemove);
    all.LoadXml(xml);
    EXPECT_EQ(g_completed,
              (std::vector<std::wstring>{L"a", L"Item", L"b", L"Note", L"Item", L"r"}));
    ASSERT_NE(all.GetDocumentElement(), nullptr);
    EXPECT_EQ(all.GetDocumentElement()->GetFirstElement(), nullptr);

    CXmlDocument some(RemoveItems, CSerializationContext::m_defaultContext);
    some.LoadXml(xml);
    EXPECT_EQ(ChildNames(some.GetDocumentElement()), L"Note");
    EXPECT_EQ(ChildNames(some.GetDocumentElement()->GetFirstElement()), L"b");

    // A callback that throws stops the parse; its exception reaches the caller unchanged and the
    // document can load again.
    auto refuseNote = [](CXmlElement* element) -> bool {
        if (element->GetLocalName() == L"Note")
            throw CQvInvalidValueException(L"no notes");
        return false;
    };
    CXmlDocument refusing(+refuseNote);
    ExpectThrowMsg<CQvInvalidValueException>([&] { refusing.LoadXml(xml); }, L"no notes");
    refusing.LoadXml("<r><Item/></r>");
    EXPECT_EQ(ChildNames(refusing.GetDocumentElement()), L"Item");
}

TEST(XmlDocument, LoadFailures) {
    qvtest::TempDir dir;
    const std::wstring empty = dir.WFile("empty.xml");
    std::fclose(std::fopen(dir.File("empty.xml").c_str(), "w"));
    const std::wstring missing = dir.WFile("missing/none.xml");
    unsigned char byte = '<';

    struct Case {
        const char* name;
        std::function<void(CXmlDocument&)> call;
        std::wstring message;
    };

    const Case cases[] = {
        {"empty wide string", [](CXmlDocument& d) { d.LoadXml(L""); }, L"XML String is empty!"},
        {"null wide string",
         [](CXmlDocument& d) { d.LoadXml(static_cast<const wchar_t*>(nullptr)); },
         L"XML String is empty!"},
        {"empty narrow string", [](CXmlDocument& d) { d.LoadXml(""); }, L"XML String is empty!"},
        {"no bytes", [&](CXmlDocument& d) { d.LoadXmlStream(&byte, 0); }, L"XML Stream is empty!"},
        {"null bytes", [](CXmlDocument& d) { d.LoadXmlStream(nullptr, 3); },
         L"XML Stream is empty!"},
        {"missing file", [&](CXmlDocument& d) { d.Load(missing.c_str()); },
         L"Failed to open the file [" + missing + L"]."},
        {"empty file", [&](CXmlDocument& d) { d.Load(empty.c_str()); },
         L"Failed to read the contents of the file [" + empty + L"] Error [%n]"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        CXmlDocument doc;
        ExpectThrowMsg<CQvException>([&] { tc.call(doc); }, tc.message);
    }

    // Load clears the document before it opens the file.
    CXmlDocument doc;
    doc.LoadXml("<old/>");
    ExpectThrowMsg<CQvException>([&] { doc.Load(missing.c_str()); },
                                 L"Failed to open the file [" + missing + L"].");
    EXPECT_EQ(doc.GetDocumentElement(), nullptr);
}

TEST(XmlDocument, LoadSources) {
    const std::string xml = "<?xml version='1.0' encoding='UTF-8'?>\n<list>" + [] {
        std::string items;
        for (int i = 0; i < 200; ++i)
            items += "<i>caf\xC3\xA9</i>";
        return items;
    }() + "</list>\n";
    qvtest::TempDir dir;
    FILE* file = std::fopen(dir.File("doc.xml").c_str(), "wb");
    std::fwrite(xml.data(), 1, xml.size(), file);
    std::fclose(file);

    // The reader inflates what it is handed, and leaves the caller's buffer as it was.
    std::vector<unsigned char> plain(xml.begin(), xml.end());
    CBinaryData packed(plain.data(), static_cast<unsigned long>(plain.size()), false);
    CQvZip::CompressData(packed, Compression_GZip);
    const std::vector<unsigned char> gzip = qvtest::Bytes(packed);
    ASSERT_LT(gzip.size(), xml.size());

    struct Case {
        const char* name;
        std::function<void(CXmlDocument&)> load;
    };

    const Case cases[] = {
        {"file", [&](CXmlDocument& d) { d.Load(dir.WFile("doc.xml").c_str()); }},
        {"gzip bytes",
         [&](CXmlDocument& d) {
             std::vector<unsigned char> copy = gzip;
             d.LoadXmlStream(copy.data(), copy.size());
             EXPECT_EQ(copy, gzip);
         }},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        CXmlDocument doc;
        doc.LoadXml("<old/>");
        tc.load(doc);
        const CXmlElement* root = doc.GetDocumentElement();
        ASSERT_NE(root, nullptr);
        EXPECT_EQ(root->GetLocalName(), L"list");
        const std::vector<const CXmlElement*> items = Children(root);
        ASSERT_EQ(items.size(), 200u);
        EXPECT_EQ(items[199]->GetText(), L"caf\u00e9");
    }
}

// A store drops its tree unvisited; a callback document's heap tree is freed without recursion.
TEST(XmlDocument, MillionNestedElements) {
    const int depth = 1000000;
    std::string xml;
    std::wstring path;
    for (int i = 0; i < depth; ++i)
        xml += "<a>", path += L"/a";
    xml += "x";
    for (int i = 0; i < depth; ++i)
        xml += "</a>";
    CXmlDocument stored;
    CXmlDocument heap([](CXmlElement*) { return false; });
    for (CXmlDocument* doc : {&stored, &heap}) {
        doc->LoadXml(xml.c_str());
        int levels = 0;
        const CXmlElement* e = doc->GetDocumentElement();
        for (; e->GetFirstElement(); e = e->GetFirstElement())
            ++levels;
        EXPECT_EQ(levels, depth - 1);
        EXPECT_EQ(e->GetText(), L"x");
        EXPECT_EQ(e->GetXPath(), path);
        doc->Cleanup();
    }
}

TEST(XmlDocument, PathsInAWideTree) {
    std::string xml = "<r>";
    for (int i = 0; i < 100000; ++i)
        xml += "<i/>";
    xml += "<j/></r>";
    CXmlDocument wide;
    wide.LoadXml(xml.c_str());
    const std::vector<const CXmlElement*> kids = Children(wide.GetDocumentElement());
    ASSERT_EQ(kids.size(), 100001u);
    EXPECT_EQ(kids[0]->GetXPath(), L"/r/i[1]");
    EXPECT_EQ(kids[49999]->GetXPath(), L"/r/i[50000]");
    EXPECT_EQ(kids[99999]->GetXPath(), L"/r/i[100000]");
    EXPECT_EQ(kids[100000]->GetXPath(), L"/r/j");
}
