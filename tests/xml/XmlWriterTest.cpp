#include "common/TestUtils.h"

#include <functional>

using namespace QvXmlLib16;
using qvtest::ExpectThrowMsg;

namespace {

const std::wstring kXmlNs = L"http://www.w3.org/XML/1998/namespace";

// Turns each call into a line of text with the prefix the base chose, so a test can read the
// namespace bookkeeping without the text writer's formatting.
class RecordingWriter : public CXmlWriter {
public:
    RecordingWriter() : CXmlWriter(L"RecordingWriter") {}

    void WriteStartElement(const std::wstring& localName, const std::wstring& ns) override {
        const PrefixChoice choice = EnterElement(localName, ns);
        m_log += L"<" + QName(choice.prefix, localName) + Declaration(choice, ns) + L">";
    }

    void WriteEndElement() override {
        const CXmlWriterContext& context = *GetCurrentContext();
        m_log += L"</" + QName(context.m_prefix, context.m_localName) + L">";
        PopContext();
    }

    void WriteAttributeString(const std::wstring& localName, const std::wstring& ns,
                              const std::wstring& value, ItemType) override {
        const PrefixChoice choice = AttributePrefix(ns);
        m_log += L"@" + QName(choice.prefix, localName) + L"=" + value + Declaration(choice, ns);
    }

    void WriteString(const std::wstring& text, ItemType, bool) override { m_log += text; }

    void WriteAttributeType(const std::wstring&, const std::wstring&, ItemType) override {}

    void WriteAttributeNil() override {}

    void WriteComment(const std::wstring&) override {}

    void WritePI(const std::wstring&) override {}

    void WriteInlineSchema(const std::wstring&) override {}

    const std::wstring& Log() const { return m_log; }

private:
    static std::wstring QName(const std::wstring& prefix, const std::wstring& localName) {
        return prefix.empty() ? localName : prefix + L":" + localName;
    }

    static std::wstring Declaration(const PrefixChoice& choice, const std::wstring& ns) {
        return choice.declare ? L" xmlns:" + choice.prefix + L"=" + ns : L"";
    }

    std::wstring m_log;
};

void Start(CXmlWriter& w, const wchar_t* name, const wchar_t* ns = L"") {
    w.WriteStartElement(name, ns);
}

void End(CXmlWriter& w) {
    w.WriteEndElement();
}

void Attr(CXmlWriter& w, const wchar_t* name, const wchar_t* ns) {
    w.WriteAttributeString(name, ns, L"v", ItemType_string);
}

} // namespace

TEST(XmlWriter, PrefixScopes) {
    struct Case {
        const char* name;
        std::function<void(CXmlWriter&)> script;
        const wchar_t* log;
    };

    const Case cases[] = {
        {"undeclared namespace at the root gets AA",
         [](CXmlWriter& w) { Start(w, L"r", L"urn:a"), End(w); }, L"<AA:r xmlns:AA=urn:a></AA:r>"},
        {"second namespace gets AB, its sibling may reuse AB",
         [](CXmlWriter& w) {
             Start(w, L"r", L"urn:a");
             Start(w, L"c1", L"urn:b"), Start(w, L"g", L"urn:b"), End(w), End(w);
             Start(w, L"c2", L"urn:c"), End(w);
             Start(w, L"c3", L"urn:b"), End(w);
             End(w);
         },
         L"<AA:r xmlns:AA=urn:a><AB:c1 xmlns:AB=urn:b><AB:g></AB:g></AB:c1>"
         L"<AB:c2 xmlns:AB=urn:c></AB:c2><AB:c3 xmlns:AB=urn:b></AB:c3></AA:r>"},
        {"default namespace of the writer needs no prefix",
         [](CXmlWriter& w) {
             w.SetDefaultNamespace(L"urn:d");
             Start(w, L"r", L"urn:d"), Start(w, L"c", L"urn:d"), End(w), End(w);
         },
         L"<r><c></c></r>"},
        {"default namespace set on an element reaches its children, not its siblings",
         [](CXmlWriter& w) {
             Start(w, L"r");
             Start(w, L"a"), w.SetDefaultNamespace(L"urn:d"), Start(w, L"c", L"urn:d"), End(w);
             End(w);
             Start(w, L"b", L"urn:d"), End(w);
             End(w);
         },
         L"<r><a><c></c></a><AA:b xmlns:AA=urn:d></AA:b></r>"},
        {"AddNamespace before the root names it without a new declaration",
         [](CXmlWriter& w) {
             w.AddNamespace(L"p", L"urn:p");
             Start(w, L"r", L"urn:p"), Attr(w, L"a", L"urn:p"), End(w);
         },
         L"<p:r>@p:a=v</p:r>"},
        {"AddNamespace inside an element reaches its children only",
         [](CXmlWriter& w) {
             Start(w, L"r");
             Start(w, L"a"), w.AddNamespace(L"z", L"urn:z"), Start(w, L"c", L"urn:z"), End(w);
             End(w);
             Start(w, L"b", L"urn:z"), End(w);
             End(w);
         },
         L"<r><a><z:c></z:c></a><AA:b xmlns:AA=urn:z></AA:b></r>"},
        {"a user prefix AA pushes generation on to AB",
         [](CXmlWriter& w) {
             w.AddNamespace(L"AA", L"urn:user");
             Start(w, L"r", L"urn:other"), End(w);
         },
         L"<AB:r xmlns:AB=urn:other></AB:r>"},
        {"an empty prefix is no prefix: one is generated",
         [](CXmlWriter& w) {
             w.AddNamespace(L"", L"urn:e");
             Start(w, L"r", L"urn:e"), Attr(w, L"a", L"urn:e"), End(w);
         },
         L"<AA:r xmlns:AA=urn:e>@AA:a=v</AA:r>"},
        {"attributes: none without namespace, always one with the default namespace",
         [](CXmlWriter& w) {
             w.SetDefaultNamespace(L"urn:d");
             Start(w, L"r", L"urn:d"), Attr(w, L"a", L""), Attr(w, L"b", L"urn:d"), End(w);
         },
         L"<r>@a=v@AA:b=v xmlns:AA=urn:d</r>"},
        {"the xml namespace is bound to xml from the start",
         [](CXmlWriter& w) { Start(w, L"r"), Attr(w, L"lang", kXmlNs.c_str()), End(w); },
         L"<r>@xml:lang=v</r>"},
        {"an attribute's generated prefix serves the element's children",
         [](CXmlWriter& w) {
             Start(w, L"r"), Attr(w, L"a", L"urn:q"), Start(w, L"c", L"urn:q"), End(w), End(w);
         },
         L"<r>@AA:a=v xmlns:AA=urn:q<AA:c></AA:c></r>"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        RecordingWriter writer;
        tc.script(writer);
        EXPECT_EQ(writer.Log(), tc.log);
        EXPECT_EQ(writer.GetCurrentContext(), nullptr);
        writer.Close();
    }
}

TEST(XmlWriter, WriterLevelNamespaces) {
    RecordingWriter writer;
    EXPECT_EQ(writer.GetWriterNamespaceMap(), (CXmlWriter::NamespaceMap{{kXmlNs, L"xml"}}));
    EXPECT_EQ(std::wstring(CXmlWriter::XML_NAMESPACE), kXmlNs);

    writer.SetDefaultNamespace(L"urn:d");
    writer.AddNamespace(L"p", L"urn:p");
    writer.AddNamespace(L"q", L"urn:p");
    EXPECT_EQ(writer.GetWriterDefaultNamespace(), L"urn:d");
    EXPECT_EQ(writer.GetWriterNamespaceMap(),
              (CXmlWriter::NamespaceMap{{kXmlNs, L"xml"}, {L"urn:p", L"q"}}));

    // Inside an element the calls go to its context and leave the writer's data alone.
    writer.WriteStartElement(L"r", L"");
    writer.SetDefaultNamespace(L"urn:e");
    writer.AddNamespace(L"z", L"urn:z");
    EXPECT_EQ(writer.GetWriterDefaultNamespace(), L"urn:d");
    EXPECT_EQ(writer.GetWriterNamespaceMap().count(L"urn:z"), 0u);
    EXPECT_EQ(writer.GetCurrentContext()->GetDefaultNamespace(), L"urn:e");
    EXPECT_EQ(writer.GetCurrentContext()->GetNamespaceMap()->at(L"urn:z"), L"z");
    writer.WriteEndElement();
}

TEST(XmlWriter, GeneratedPrefixes) {
    RecordingWriter writer;
    const std::pair<int, const wchar_t*> numbers[] = {
        {0, L"AA"}, {1, L"AB"}, {25, L"AZ"}, {26, L"BA"}, {675, L"ZZ"}, {676, L"[A"},
    };
    for (const auto& [n, prefix] : numbers) {
        SCOPED_TRACE(n);
        EXPECT_EQ(writer.NsIntToString(n), prefix);
    }

    struct Case {
        const char* name;
        CXmlWriter::NamespaceMap map;
        const wchar_t* prefix;
    };

    CXmlWriter::NamespaceMap fullFirstRow;
    for (int n = 0; n < 26; ++n)
        fullFirstRow[L"urn:" + std::to_wstring(n)] = writer.NsIntToString(n);
    const Case cases[] = {
        {"empty map", {}, L"AA"},
        {"AA taken", {{L"urn:a", L"AA"}}, L"AB"},
        {"first gap wins", {{L"urn:a", L"AA"}, {L"urn:c", L"AC"}}, L"AB"},
        {"keys are not compared", {{L"AA", L"p"}}, L"AA"},
        {"other prefixes ignored", {{L"urn:x", L"xml"}, {L"urn:y", L""}}, L"AA"},
        {"AA to AZ taken", fullFirstRow, L"BA"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        EXPECT_EQ(writer.GetUniquePrefix(tc.map), tc.prefix);
    }
}

TEST(XmlWriter, ContextCopyOnWrite) {
    RecordingWriter writer;
    writer.AddNamespace(L"p", L"urn:p");
    writer.WriteStartElement(L"r", L"");
    CXmlWriter::CXmlWriterContext* root = writer.GetCurrentContext();
    writer.WriteStartElement(L"c", L"");
    CXmlWriter::CXmlWriterContext* child = writer.GetCurrentContext();
    EXPECT_EQ(root->m_depth, 0u);
    EXPECT_EQ(child->m_depth, 1u);
    EXPECT_EQ(child->m_parent, root);
    EXPECT_EQ(child->GetNamespaceMap(), root->GetNamespaceMap());

    // A lookup of an unknown namespace leaves an empty entry behind, in the map the child
    // shares with its ancestor.
    EXPECT_EQ(child->GetNamespaceMapValue(L"urn:unknown"), L"");
    EXPECT_EQ(root->GetNamespaceMap()->count(L"urn:unknown"), 1u);
    EXPECT_EQ(child->GetNamespaceMapValue(std::wstring(L"urn:p")), L"p");
    EXPECT_EQ(child->GetNamespaceMap(), root->GetNamespaceMap());

    child->SetNamespaceMapValue(L"urn:c", L"c");
    EXPECT_NE(child->GetNamespaceMap(), root->GetNamespaceMap());
    EXPECT_EQ(root->GetNamespaceMap()->count(L"urn:c"), 0u);
    EXPECT_EQ(child->GetNamespaceMap()->at(L"urn:p"), L"p");

    writer.WriteStartElement(L"g", L"");
    CXmlWriter::CXmlWriterContext* grandchild = writer.GetCurrentContext();
    grandchild->SetDefaultNamespace(L"urn:g");
    EXPECT_EQ(grandchild->GetNamespaceMap()->at(L"urn:c"), L"c");
    EXPECT_EQ(child->GetDefaultNamespace(), L"");
    EXPECT_EQ(grandchild->GetDefaultNamespace(), L"urn:g");
    writer.WriteEndElement();
    writer.WriteEndElement();
    writer.WriteEndElement();
}

TEST(XmlWriter, ContextStateAndClose) {
    RecordingWriter writer;
    writer.SetContextState(CXmlWriter::ContextState_CollectionStart);
    EXPECT_EQ(writer.GetCurrentContext(), nullptr);

    writer.WriteStartElement(L"r", L"");
    EXPECT_EQ(writer.GetCurrentContext()->m_state, CXmlWriter::ContextState_Initial);
    writer.SetContextState(CXmlWriter::ContextState_CollectionEnd);
    EXPECT_EQ(writer.GetCurrentContext()->m_state, CXmlWriter::ContextState_CollectionEnd);
    writer.WriteStartElement(L"c", L"");
    EXPECT_EQ(writer.GetCurrentContext()->m_state, CXmlWriter::ContextState_Initial);

    ExpectThrowMsg<CQvException>([&] { writer.Close(); }, L"An Element has not been closed.");
    writer.WriteEndElement();
    ExpectThrowMsg<CQvException>([&] { writer.Close(); }, L"An Element has not been closed.");
    writer.WriteEndElement();
    writer.Close();
}

TEST(XmlWriter, DeepContextChainIsReleased) {
    // Left open on purpose: the destructor deletes the whole chain without recursing.
    RecordingWriter writer;
    for (int i = 0; i < 300000; ++i)
        writer.WriteStartElement(L"e", L"");
    EXPECT_EQ(writer.GetCurrentContext()->m_depth, 299999u);
}
