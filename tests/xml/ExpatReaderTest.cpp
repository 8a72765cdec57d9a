#include "common/TestUtils.h"

#include <functional>

using namespace QvXmlLib16;
using qvtest::ExpectThrowMsg;

namespace {

// One line per tree: {ns}name[attributes]'text'(children).
std::wstring Dump(const CXmlElement* e) {
    auto name = [](const std::wstring& ns, const std::wstring& local) {
        return ns.empty() ? local : L"{" + ns + L"}" + local;
    };
    std::wstring out = name(e->GetNamespaceURI(), e->GetLocalName());
    if (!e->GetAttributes().empty()) {
        out += L"[";
        for (const CXmlAttribute* a : e->GetAttributes()) {
            out += out.back() == L'[' ? L"" : L";";
            out += name(a->GetNamespaceURI(), a->GetLocalName()) + L"=" + a->GetValue();
        }
        out += L"]";
    }
    if (!e->GetText().empty())
        out += L"'" + e->GetText() + L"'";
    if (e->GetFirstElement()) {
        out += L"(";
        for (const CXmlElement* c = e->GetFirstElement(); c; c = c->GetNextSiblingElement())
            out += (c == e->GetFirstElement() ? L"" : L",") + Dump(c);
        out += L")";
    }
    return out;
}

std::wstring Aliases(const CXmlDocument& doc) {
    std::wstring out;
    for (const auto& [prefix, uri] : doc.GetAliasMap())
        out += (out.empty() ? L"" : L";") + prefix + L"=" + uri;
    return out;
}

void LoadBytes(CXmlDocument& doc, std::vector<unsigned char> bytes) {
    doc.LoadXmlStream(bytes.data(), static_cast<unsigned long>(bytes.size()));
}

std::vector<unsigned char> Utf16(const std::u16string& text, bool bigEndian) {
    std::vector<unsigned char> out =
        bigEndian ? qvtest::Bytes({0xFE, 0xFF}) : qvtest::Bytes({0xFF, 0xFE});
    for (char16_t unit : text) {
        const unsigned char high = static_cast<unsigned char>(unit >> 8);
        const unsigned char low = static_cast<unsigned char>(unit & 0xFF);
        out.push_back(bigEndian ? high : low);
        out.push_back(bigEndian ? low : high);
    }
    return out;
}

} // namespace

TEST(ExpatReader, TreeAndAliases) {
    struct Case {
        const char* name;
        const char* xml;
        SchemaType schemaType;
        bool stripCData;
        const wchar_t* tree;
        const wchar_t* aliases;
    };

    const Case cases[] = {
        {"default namespace", "<a xmlns=\"urn:x\"><b/></a>", SchemaType_Default, true,
         L"{urn:x}a({urn:x}b)", L"=urn:x"},
        {"prefixed names and attributes", "<p:a xmlns:p='urn:p' p:x='1' y='2'><b xmlns=''/></p:a>",
         SchemaType_Default, true, L"{urn:p}a[{urn:p}x=1;y=2](b)", L"=;p=urn:p"},
        {"a later declaration of a prefix wins",
         "<r xmlns:p='urn:1'><p:a/><s xmlns:p='urn:2'><p:b/></s></r>", SchemaType_Alternate, true,
         L"r({urn:1}a,s({urn:2}b))", L"p=urn:2"},
        {"xml prefix needs no declaration", "<a xml:lang='en'/>", SchemaType_Default, true,
         L"a[{http://www.w3.org/XML/1998/namespace}lang=en]", L""},
        {"namespace URI containing | without namespace processing",
         "<a xmlns='urn:a|b' xmlns:p='x|y|z' p:t='v'><b/></a>", SchemaType_NoNamespaces, true,
         L"a[t=v](b)", L"=urn:a|b;p=x|y|z"},
        {"references", "<a t='&lt;&amp;&#x41;'>&lt;&gt;&amp;&quot;&apos;&#233;</a>",
         SchemaType_Default, true, L"a[t=<&A]'<>&\"'\u00e9'", L""},
        {"CDATA stripped", "<a>x<![CDATA[<y>&]]>z</a>", SchemaType_Default, true, L"a'x<y>&z'",
         L""},
        {"CDATA kept", "<a>x<![CDATA[<y>&]]>z</a>", SchemaType_Default, false,
         L"a'x<![CDATA[<y>&]]>z'", L""},
        {"empty CDATA kept", "<a><![CDATA[]]></a>", SchemaType_Default, false, L"a'<![CDATA[]]>'",
         L""},
        {"no namespace processing",
         "<p:a xmlns:p='urn:p' xmlns='urn:d' p:x='1' y='2'><p:b/><c:d:e/></p:a>",
         SchemaType_NoNamespaces, true, L"a[x=1;y=2](b,e)", L"=urn:d;p=urn:p"},
        {"non-ASCII names and text", "<\xC3\xA4 b='\xC3\xB6'>\xE2\x82\xAC</\xC3\xA4>",
         SchemaType_Default, true, L"\u00e4[b=\u00f6]'\u20ac'", L""},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        CSerializationContext context;
        context.SetSchemaType(tc.schemaType);
        context.SetStripCDATA(tc.stripCData);
        CXmlDocument doc(context);
        doc.LoadXml(tc.xml);
        EXPECT_EQ(Dump(doc.GetDocumentElement()), tc.tree);
        EXPECT_EQ(Aliases(doc), tc.aliases);
    }
}

TEST(ExpatReader, ParseErrors) {
    std::string bomb = "<?xml version='1.0'?><!DOCTYPE l [<!ENTITY l0 'laugh'>";
    for (int i = 1; i <= 9; ++i) {
        bomb += "<!ENTITY l" + std::to_string(i) + " '";
        for (int j = 0; j < 10; ++j)
            bomb += "&l" + std::to_string(i - 1) + ";";
        bomb += "'>";
    }
    bomb += "]><l>&l9;</l>";

    struct Case {
        const char* name;
        std::string xml;
        const wchar_t* message;
        const wchar_t* builtBefore; // what stays in the document
    };

    const Case cases[] = {
        {"mismatched tag", "<a>\n<b>\n</c></a>", L"mismatched tag at line 3", L"a'\n'(b'\n')"},
        {"undeclared prefix", "<a>\n<p:b/></a>", L"unbound prefix at line 2", L"a'\n'"},
        {"truncated after a start tag", "<a><b>text", L"no element found at line 1", L"a(b'text')"},
        {"truncated inside a tag", "<a><b x='1", L"unclosed token at line 1", L"a"},
        {"no element", "<?xml version='1.0'?>", L"no element found at line 1", nullptr},
        {"second root", "<a/>\n<b/>", L"junk after document element at line 2", L"a"},
        {"bare ampersand", "<a>&</a>", L"not well-formed (invalid token) at line 1", L"a"},
        {"undefined entity", "<a>&x;</a>", L"undefined entity at line 1", L"a"},
        // Expat refuses its own separator inside a namespace URI, so expanded names never
        // become ambiguous.
        {"namespace URI containing |", "<a xmlns='urn:a|b'/>", L"syntax error at line 1", nullptr},
        {"duplicate attribute", "<a x='1' x='2'/>", L"duplicate attribute at line 1", nullptr},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        CXmlDocument doc;
        ExpectThrowMsg<CQvException>([&] { doc.LoadXml(tc.xml.c_str()); }, tc.message);
        if (tc.builtBefore)
            EXPECT_EQ(Dump(doc.GetDocumentElement()), tc.builtBefore);
        else
            EXPECT_EQ(doc.GetDocumentElement(), nullptr);
    }

    // Expat's amplification guard stops the entity expansion.
    CXmlDocument bombed;
    ExpectThrowMsg<CQvException>(
        [&] { bombed.LoadXml(bomb.c_str()); },
        L"limit on input amplification factor (from DTD and entities) breached at line 1");

    CXmlDocument wide;
    ExpectThrowMsg<CQvException>([&] { wide.LoadXml(L"<a>\n\n<b></a>"); },
                                 L"mismatched tag at line 3");
}

TEST(ExpatReader, InputEncodings) {
    const std::wstring text = L"\u00e9\u20ac\U0001F600";
    const std::wstring wide = L"<a t='" + text + L"'>" + text + L"</a>";
    const std::u16string utf16 = u"<a t='\u00e9\u20ac\U0001F600'>\u00e9\u20ac\U0001F600</a>";

    struct Case {
        const char* name;
        std::function<void(CXmlDocument&)> load;
    };

    // Wide text is decoded already: a declaration that says otherwise is not followed.
    const Case cases[] = {
        {"wide text declaring ISO-8859-1",
         [&](CXmlDocument& d) {
             d.LoadXml((L"<?xml version='1.0' encoding='ISO-8859-1'?>" + wide).c_str());
         }},
        {"UTF-8 with byte order mark",
         [](CXmlDocument& d) {
             d.LoadXml("\xEF\xBB\xBF<a t='\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80'>"
                       "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80</a>");
         }},
        {"UTF-16LE with byte order mark",
         [&](CXmlDocument& d) { LoadBytes(d, Utf16(utf16, false)); }},
        {"UTF-16BE with byte order mark",
         [&](CXmlDocument& d) { LoadBytes(d, Utf16(utf16, true)); }},
        {"ISO-8859-1 declared, references for the rest",
         [](CXmlDocument& d) {
             d.LoadXml("<?xml version='1.0' encoding='ISO-8859-1'?>"
                       "<a t='\xE9&#x20AC;&#x1F600;'>\xE9&#8364;&#128512;</a>");
         }},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        CXmlDocument doc;
        tc.load(doc);
        const CXmlElement* a = doc.GetDocumentElement();
        ASSERT_NE(a, nullptr);
        EXPECT_EQ(a->GetText(), text); // U+1F600 is one wchar_t
        ASSERT_EQ(a->GetAttributes().size(), 1u);
        EXPECT_EQ(a->GetAttributes()[0]->GetValue(), text);
    }
}
