#include "common/TestUtils.h"

#include <functional>

using namespace QvXmlLib16;
using qvtest::ExpectThrowMsg;

namespace {

#define XSI L"http://www.w3.org/2001/XMLSchema-instance"

using Script = std::function<void(CXmlTextWriter&)>;

// Keeps what the writer flushes and counts closes, so flushing and closing can be observed.
class CountingStream : public CTextStream {
public:
    CountingStream() : CTextStream(Encoding_UTF8) {}

    void Flush() override {
        flushedAt.push_back(GetLength());
        flushed += GetText();
        EmptyBuffer();
    }

    void Close() override { ++closes; }

    std::vector<unsigned long> flushedAt;
    std::wstring flushed;
    int closes = 0;
};

std::wstring Written(const Script& script, XmlEncoding encoding = Encoding_UTF8) {
    CTextStream stream(encoding);
    CXmlTextWriter writer(stream);
    writer.Open();
    script(writer);
    return stream.GetText();
}

void Start(CXmlTextWriter& w, const wchar_t* name, const wchar_t* ns = L"") {
    w.WriteStartElement(name, ns);
}

void End(CXmlTextWriter& w) {
    w.WriteEndElement();
}

void Text(CXmlTextWriter& w, const wchar_t* text) {
    w.WriteString(text, ItemType_string, false);
}

void Attr(CXmlTextWriter& w, const wchar_t* name, const wchar_t* ns, const wchar_t* value) {
    w.WriteAttributeString(name, ns, value, ItemType_string);
}

// An element holding only the given text.
Script TextElement(const wchar_t* text) {
    return [text](CXmlTextWriter& w) { Start(w, L"r"), Text(w, text), End(w); };
}

const wchar_t kAwkward[] = L"a&b<c>d\"e'f\rg\nh\ti\u00e9\U0001F600";
// Units whose low bits look like markup, and a negative one: none is replaced.
const wchar_t kFarAbove[] = {L'\x1000', L'<', wchar_t(-60), wchar_t(0x40000026), L'\0'};

} // namespace

TEST(XmlTextWriter, DocumentShape) {
    struct Case {
        const char* name;
        XmlEncoding encoding;
        Script script;
        std::wstring output;
    };

    const Case cases[] = {
        {"declaration UTF-16", Encoding_UTF16, [](CXmlTextWriter& w) { w.WriteStartDocument(); },
         L"<?xml version=\"1.0\" encoding=\"UTF-16\"?>\n"},
        {"declaration unknown", Encoding_Unknown, [](CXmlTextWriter& w) { w.WriteStartDocument(); },
         L"<?xml version=\"1.0\"?>\n"},
        {"empty element", Encoding_UTF8, [](CXmlTextWriter& w) { Start(w, L"r"), End(w); },
         L"<r/>\n"},
        {"text only stays on one line", Encoding_UTF8, TextElement(L"text"), L"<r>text</r>\n"},
        {"children indented, end tag on its own line", Encoding_UTF8,
         [](CXmlTextWriter& w) {
             Start(w, L"r");
             Start(w, L"a"), Text(w, L"x"), End(w);
             Start(w, L"b"), End(w);
             Start(w, L"c"), Start(w, L"d"), End(w), End(w);
             End(w);
         },
         L"<r>\n\t<a>x</a>\n\t<b/>\n\t<c>\n\t\t<d/>\n\t</c>\n</r>\n"},
        {"CR LF line ends", Encoding_UTF8,
         [](CXmlTextWriter& w) {
             w.SetEOLType(EOL_CRLF);
             Start(w, L"r"), Start(w, L"a"), End(w), End(w);
         },
         L"<r>\r\n\t<a/>\r\n</r>\r\n"},
        {"deep nesting indents one tab a level", Encoding_UTF8,
         [](CXmlTextWriter& w) {
             for (int i = 0; i < 12; ++i)
                 Start(w, L"e");
             for (int i = 0; i < 12; ++i)
                 End(w);
         },
         [] {
             std::wstring out;
             for (int i = 0; i < 11; ++i)
                 out += std::wstring(i, L'\t') + L"<e>\n";
             out += std::wstring(11, L'\t') + L"<e/>\n";
             for (int i = 10; i >= 0; --i)
                 out += std::wstring(i, L'\t') + L"</e>\n";
             return out;
         }()},
        {"own indent characters", Encoding_UTF8,
         [](CXmlTextWriter& w) {
             w.SetIndentChars(L"  ");
             Start(w, L"r"), Start(w, L"a"), Start(w, L"b"), End(w), End(w), End(w);
         },
         L"<r>\n  <a>\n    <b/>\n  </a>\n</r>\n"},
        {"format off keeps line ends after declaration, comment and PI", Encoding_UTF8,
         [](CXmlTextWriter& w) {
             w.SetFormat(false);
             w.WriteStartDocument();
             w.WriteComment(L"c");
             Start(w, L"r"), Start(w, L"a"), Text(w, L"x"), End(w), Start(w, L"b"), End(w);
             End(w);
             w.WritePI(L"<?p?>");
         },
         L"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!--c-->\n<r><a>x</a><b/></r><?p?>\n\n"},
        {"text before a child", Encoding_UTF8,
         [](CXmlTextWriter& w) { Start(w, L"r"), Text(w, L"t"), Start(w, L"a"), End(w), End(w); },
         L"<r>t\t<a/>\n</r>\n"},
        {"default value skipped", Encoding_UTF8,
         [](CXmlTextWriter& w) { Start(w, L"r"), w.WriteString(L"0", ItemType_i4, true), End(w); },
         L"<r/>\n"},
        {"default value written when asked", Encoding_UTF8,
         [](CXmlTextWriter& w) {
             w.SetWriteDefaultElementValues(true);
             Start(w, L"r"), w.WriteString(L"0", ItemType_i4, true), End(w);
         },
         L"<r>0</r>\n"},
        {"empty text writes nothing", Encoding_UTF8, TextElement(L""), L"<r/>\n"},
        {"header directives before the root", Encoding_UTF8,
         [](CXmlTextWriter& w) {
             w.WriteStartDocument();
             w.WriteHeaderDirective(L"<!DOCTYPE r>");
             w.WriteHeaderDirective(L"<?xml-stylesheet href=\"s.xsl\"?>");
             Start(w, L"r"), End(w);
         },
         L"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE r>\n"
         L"<?xml-stylesheet href=\"s.xsl\"?>\n<r/>\n"},
        {"comment escaped", Encoding_UTF8, [](CXmlTextWriter& w) { w.WriteComment(L"a<b&\"c\nd"); },
         L"<!--a&lt;b&amp;\"c\nd-->\n"},
        {"comment after a child", Encoding_UTF8,
         [](CXmlTextWriter& w) {
             Start(w, L"r"), Start(w, L"a"), End(w), w.WriteComment(L"c"), End(w);
         },
         L"<r>\n\t<a/>\n<!--c-->\n</r>\n"},
        {"PI followed by two line ends", Encoding_UTF8,
         [](CXmlTextWriter& w) { w.SetEOLType(EOL_CRLF), w.WritePI(L"<?pi x&y?>"); },
         L"<?pi x&y?>\r\n\r\n"},
        {"inline schema", Encoding_UTF8,
         [](CXmlTextWriter& w) { w.WriteInlineSchema(L"<xs:schema a=\"&\"/>"); },
         L" \n<xs:schema a=\"&\"/>\n"},
        {"raw element after closing the start tag", Encoding_UTF8,
         [](CXmlTextWriter& w) {
             Start(w, L"r"), w.CloseParentElm(), w.WriteRawElement(L"<x>&amp;</x>"), End(w);
         },
         L"<r>\n<x>&amp;</x></r>\n"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        EXPECT_EQ(Written(tc.script, tc.encoding), tc.output);
    }
}

TEST(XmlTextWriter, Escaping) {
    struct Case {
        const char* name;
        Script script;
        std::wstring output;
    };

    const Case cases[] = {
        {"text, LF", TextElement(kAwkward),
         L"<r>a&amp;b&lt;c&gt;d\"e'fg\nh\ti\u00e9\U0001F600</r>\n"},
        {"text, CR LF", [](CXmlTextWriter& w) { w.SetEOLType(EOL_CRLF), TextElement(kAwkward)(w); },
         L"<r>a&amp;b&lt;c&gt;d\"e'fg\r\nh\ti\u00e9\U0001F600</r>\r\n"},
        {"attribute",
         [](CXmlTextWriter& w) { Start(w, L"r"), Attr(w, L"t", L"", kAwkward), End(w); },
         L"<r t=\"a&amp;b&lt;c&gt;d&quot;e'fg&#xA;h\ti\u00e9\U0001F600\"/>\n"},
        {"attribute, CR LF",
         [](CXmlTextWriter& w) {
             w.SetEOLType(EOL_CRLF), Start(w, L"r"), Attr(w, L"t", L"", L"a\r\nb"), End(w);
         },
         L"<r t=\"a&#xA;b\"/>\r\n"},
        {"CDATA written verbatim", TextElement(L"<![CDATA[a&<b]]>"), L"<r><![CDATA[a&<b]]></r>\n"},
        {"CDATA marker later in the text is escaped", TextElement(L"x<![CDATA[y]]>"),
         L"<r>x&lt;![CDATA[y]]&gt;</r>\n"},
        {"a lone < is not CDATA", TextElement(L"<"), L"<r>&lt;</r>\n"},
        {"long runs and characters below 64 that stay",
         TextElement(L"&0123456789 !#$%'()*+,-./:;=?@ABCDEFGHIJKLMNOPQRSTUVWXYZ&\x1\x1F\x3F\x40&"),
         L"<r>&amp;0123456789 !#$%'()*+,-./:;=?@ABCDEFGHIJKLMNOPQRSTUVWXYZ&amp;\x1\x1F\x3F\x40&amp;"
         L"</r>\n"},
        {"characters far above ASCII and negative units stay", TextElement(kFarAbove),
         std::wstring(L"<r>\x1000&lt;") + wchar_t(-60) + wchar_t(0x40000026) + L"</r>\n"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        EXPECT_EQ(Written(tc.script), tc.output);
    }
}

// Text is scanned several characters at a time: a character to replace, or a zero character
// that ends the text, in any position of a long value must come out as it does alone.
TEST(XmlTextWriter, EscapesAtEveryPosition) {
    struct Special {
        wchar_t c;
        const wchar_t* inText;
        const wchar_t* inAttribute;
    };

    const Special specials[] = {{L'&', L"&amp;", L"&amp;"}, {L'<', L"&lt;", L"&lt;"},
                                {L'>', L"&gt;", L"&gt;"},   {L'"', L"\"", L"&quot;"},
                                {L'\n', L"\n", L"&#xA;"},   {L'\r', L"", L""},
                                {L'\0', nullptr, nullptr}};
    const std::wstring plain = L"Plain text: 0123456789 abcdefghijklmnop-QRSTUV.";
    for (const Special& special : specials) {
        for (size_t at = 0; at < plain.size(); ++at) {
            SCOPED_TRACE("unit " + std::to_string(unsigned(special.c)) + " at "
                         + std::to_string(at));
            std::wstring value = plain;
            value[at] = special.c;
            const std::wstring before = plain.substr(0, at);
            const std::wstring after = special.inText ? plain.substr(at + 1) : L"";
            const wchar_t* inText = special.inText ? special.inText : L"";
            const wchar_t* inAttribute = special.inAttribute ? special.inAttribute : L"";
            EXPECT_EQ(Written([&](CXmlTextWriter& w) {
                          Start(w, L"r"), w.WriteString(value, ItemType_string, false), End(w);
                      }),
                      L"<r>" + before + inText + after + L"</r>\n");
            EXPECT_EQ(Written([&](CXmlTextWriter& w) {
                          Start(w, L"r");
                          w.WriteAttributeString(L"a", L"", value, ItemType_string);
                          End(w);
                      }),
                      L"<r a=\"" + before + inAttribute + after + L"\"/>\n");
        }
    }
}

TEST(XmlTextWriter, NamespacesAndSchemaAttributes) {
    struct Case {
        const char* name;
        Script script;
        const wchar_t* output;
    };

    const Case cases[] = {
        {"root declarations: default first, then by namespace URI",
         [](CXmlTextWriter& w) {
             w.SetDefaultNamespace(L"urn:d");
             w.AddNamespace(L"z", L"urn:a"), w.AddNamespace(L"b", L"urn:c");
             w.AddNamespace(L"a", L"urn:b");
             Start(w, L"r", L"urn:d"), End(w);
         },
         L"<r xmlns=\"urn:d\" xmlns:z=\"urn:a\" xmlns:a=\"urn:b\" xmlns:b=\"urn:c\"/>\n"},
        {"before the root: an empty prefix declares nothing",
         [](CXmlTextWriter& w) {
             w.AddNamespace(L"", L"urn:e");
             Start(w, L"root", L"urn:e"), Text(w, L"x"), End(w);
         },
         L"<AA:root xmlns:AA=\"urn:e\">x</AA:root>\n"},
        {"nested prefixes and end tags",
         [](CXmlTextWriter& w) {
             Start(w, L"r", L"urn:a");
             Start(w, L"c", L"urn:b"), Start(w, L"g", L"urn:a"), Text(w, L"x"), End(w), End(w);
             Start(w, L"d", L"urn:c"), End(w);
             End(w);
         },
         L"<AA:r xmlns:AA=\"urn:a\">\n\t<AB:c xmlns:AB=\"urn:b\">\n\t\t<AA:g>x</AA:g>\n\t</AB:c>\n"
         L"\t<AB:d xmlns:AB=\"urn:c\"/>\n</AA:r>\n"},
        {"namespace URIs escaped in declarations",
         [](CXmlTextWriter& w) {
             w.SetDefaultNamespace(L"urn:d&");
             Start(w, L"r", L"urn:d&"), Attr(w, L"a", L"urn:<q>", L"1"), End(w);
         },
         L"<r xmlns=\"urn:d&amp;\" xmlns:AA=\"urn:&lt;q&gt;\" AA:a=\"1\"/>\n"},
        {"namespaced attributes share one declaration",
         [](CXmlTextWriter& w) {
             Start(w, L"r"), Attr(w, L"a", L"urn:q", L"1"), Attr(w, L"b", L"urn:q", L"2"), End(w);
         },
         L"<r xmlns:AA=\"urn:q\" AA:a=\"1\" AA:b=\"2\"/>\n"},
        {"xsi:type, no type namespace",
         [](CXmlTextWriter& w) {
             w.AddNamespace(L"xsi", XSI);
             Start(w, L"r"), w.WriteAttributeType(L"T", L"", ItemType_XmlObject), End(w);
         },
         L"<r xmlns:xsi=\"" XSI L"\" xsi:type=\"T\"/>\n"},
        {"xsi:type, undeclared type namespace (double blank)",
         [](CXmlTextWriter& w) {
             w.AddNamespace(L"xsi", XSI);
             Start(w, L"r"), w.WriteAttributeType(L"T", L"urn:t", ItemType_XmlObject), End(w);
         },
         L"<r xmlns:xsi=\"" XSI L"\" xmlns:AA=\"urn:t\"  xsi:type=\"AA:T\"/>\n"},
        {"xsi:type, both namespaces undeclared",
         [](CXmlTextWriter& w) {
             Start(w, L"r"), w.WriteAttributeType(L"T", L"urn:t", ItemType_XmlObject), End(w);
         },
         L"<r xmlns:AA=\"urn:t\"  xmlns:AB=\"" XSI L"\" AB:type=\"AA:T\"/>\n"},
        {"xsi:type, declared type namespace",
         [](CXmlTextWriter& w) {
             w.AddNamespace(L"xsi", XSI), w.AddNamespace(L"t", L"urn:t");
             Start(w, L"r"), w.WriteAttributeType(L"T", L"urn:t", ItemType_XmlObject), End(w);
         },
         L"<r xmlns:xsi=\"" XSI L"\" xmlns:t=\"urn:t\" xsi:type=\"t:T\"/>\n"},
        {"xsi:type in the default namespace",
         [](CXmlTextWriter& w) {
             w.SetDefaultNamespace(L"urn:t"), w.AddNamespace(L"xsi", XSI);
             Start(w, L"r", L"urn:t"), w.WriteAttributeType(L"T", L"urn:t", ItemType_XmlObject);
             End(w);
         },
         L"<r xmlns=\"urn:t\" xmlns:xsi=\"" XSI L"\" xsi:type=\"T\"/>\n"},
        {"xsi:nil",
         [](CXmlTextWriter& w) {
             w.AddNamespace(L"xsi", XSI);
             Start(w, L"r"), w.WriteAttributeNil(), End(w);
         },
         L"<r xmlns:xsi=\"" XSI L"\" xsi:nil=\"true\"/>\n"},
        // Added on an open element: declared on it at once, so what uses them later is well
        // formed; the element keeps the prefix it was written with.
        {"open element: prefix used by a child",
         [](CXmlTextWriter& w) {
             Start(w, L"r"), w.AddNamespace(L"p", L"urn:p"), Start(w, L"c", L"urn:p"), End(w),
                 End(w);
         },
         L"<r xmlns:p=\"urn:p\">\n\t<p:c/>\n</r>\n"},
        {"open element: default namespace set on a prefixed one",
         [](CXmlTextWriter& w) {
             Start(w, L"r", L"N"), w.SetDefaultNamespace(L"N"), Text(w, L"x"), End(w);
         },
         L"<AA:r xmlns:AA=\"N\" xmlns=\"N\">x</AA:r>\n"},
        {"open element: an empty prefix declares nothing",
         [](CXmlTextWriter& w) {
             Start(w, L"r"), w.AddNamespace(L"", L"urn:e"), Start(w, L"c", L"urn:e"), End(w),
                 End(w);
         },
         L"<r>\n\t<AA:c xmlns:AA=\"urn:e\"/>\n</r>\n"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        EXPECT_EQ(Written(tc.script), tc.output);
    }
}

TEST(XmlTextWriter, Failures) {
    struct Case {
        const char* name;
        Script script;
        const wchar_t* message;
        const wchar_t* outputBefore;
    };

    const Case cases[] = {
        {"attribute after text",
         [](CXmlTextWriter& w) { Start(w, L"r"), Text(w, L"x"), Attr(w, L"a", L"", L"1"); },
         L"Attributes must be added before elements", L"<r>x"},
        {"attribute after a child",
         [](CXmlTextWriter& w) {
             Start(w, L"r"), Start(w, L"c"), End(w), Attr(w, L"a", L"", L"1");
         },
         L"Attributes must be added before elements", L"<r>\n\t<c/>\n"},
        {"xsi:type after a child",
         [](CXmlTextWriter& w) {
             Start(w, L"r"), Start(w, L"c"), End(w);
             w.WriteAttributeType(L"T", L"urn:t", ItemType_XmlObject);
         },
         L"Attributes must be added before elements", L"<r>\n\t<c/>\n"},
        {"header directive inside the root",
         [](CXmlTextWriter& w) { Start(w, L"r"), w.WriteHeaderDirective(L"<!DOCTYPE r>"); },
         L"Headed directives must appear before an Element has been added.", L"<r"},
        {"EOL type 2", [](CXmlTextWriter& w) { w.SetEOLType(static_cast<EOLType>(2)); },
         L"Invalid EOL type.", L""},
        {"EOL type -1", [](CXmlTextWriter& w) { w.SetEOLType(static_cast<EOLType>(-1)); },
         L"Invalid EOL type.", L""},
        {"text with no element", [](CXmlTextWriter& w) { Text(w, L"x"); }, L"No Element is open.",
         L""},
        {"attribute with no element", [](CXmlTextWriter& w) { Attr(w, L"a", L"", L"1"); },
         L"No Element is open.", L""},
        {"xsi:nil with no element", [](CXmlTextWriter& w) { w.WriteAttributeNil(); },
         L"No Element is open.", L""},
        {"end with no element", [](CXmlTextWriter& w) { Start(w, L"r"), End(w), End(w); },
         L"No Element is open.", L"<r/>\n"},
        {"namespace after a child",
         [](CXmlTextWriter& w) {
             Start(w, L"r"), Start(w, L"c"), End(w), w.AddNamespace(L"p", L"urn:p");
         },
         L"Attributes must be added before elements", L"<r>\n\t<c/>\n"},
        {"default namespace after text",
         [](CXmlTextWriter& w) { Start(w, L"r"), Text(w, L"x"), w.SetDefaultNamespace(L"N"); },
         L"Attributes must be added before elements", L"<r>x"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        CTextStream stream(Encoding_UTF8);
        CXmlTextWriter writer(stream);
        ExpectThrowMsg<CQvException>([&] { tc.script(writer); }, tc.message);
        EXPECT_EQ(std::wstring(stream.GetText()), tc.outputBefore);
        EXPECT_EQ(writer.GetEOLType(), EOL_LF);
    }
}

TEST(XmlTextWriter, SettingsAndClose) {
    CountingStream stream;
    CXmlTextWriter writer(stream);
    EXPECT_TRUE(writer.GetFormat());
    EXPECT_EQ(writer.GetEOLType(), EOL_LF);
    EXPECT_EQ(writer.GetIndentChars(), L"\t");
    EXPECT_FALSE(writer.GetWriteDefaultElementValues());
    writer.SetIndentChars(nullptr);
    EXPECT_EQ(writer.GetIndentChars(), L"");

    // The stream is closed even when the writer then complains.
    writer.WriteStartElement(L"r", L"");
    ExpectThrowMsg<CQvException>([&] { writer.Close(); }, L"An Element has not been closed.");
    EXPECT_EQ(stream.closes, 1);
    EXPECT_EQ(std::wstring(stream.GetText()), L"<r");
    writer.WriteEndElement();
    writer.Close();
    EXPECT_EQ(stream.closes, 2);
}

TEST(XmlTextWriter, FlushesPast4095Characters) {
    CountingStream stream;
    CXmlTextWriter writer(stream);
    writer.WriteRawElement(std::wstring(4095, L'x'));
    EXPECT_TRUE(stream.flushedAt.empty());
    writer.WriteRawElement(L"y");
    EXPECT_EQ(stream.flushedAt, std::vector<unsigned long>{4096});
    EXPECT_EQ(stream.flushed, std::wstring(4095, L'x') + L"y");
    EXPECT_EQ(stream.GetLength(), 0u);

    // Every kind of call checks the size, so no more than 4095 characters ever wait.
    std::wstring expected = stream.flushed + L"<list>\n";
    unsigned long longest = 0;
    auto watch = [&] { longest = std::max(longest, stream.GetLength()); };
    writer.WriteStartElement(L"list", L"");
    for (int i = 0; i < 3000; ++i) {
        const std::wstring n = std::to_wstring(i);
        writer.WriteStartElement(L"item", L"");
        watch();
        writer.WriteAttributeString(L"n", L"", n, ItemType_i4);
        watch();
        writer.WriteString(L"caf\u00e9 <" + n + L">", ItemType_string, false);
        watch();
        writer.WriteEndElement();
        watch();
        expected += L"\t<item n=\"" + n + L"\">caf\u00e9 &lt;" + n + L"&gt;</item>\n";
    }
    writer.WriteEndElement();
    expected += L"</list>\n";
    EXPECT_LE(longest, 4095u);
    EXPECT_GE(stream.flushedAt.size(), 20u);
    for (unsigned long at : stream.flushedAt)
        EXPECT_GT(at, 4095u);
    EXPECT_EQ(stream.flushed + stream.GetText(), expected);
}
