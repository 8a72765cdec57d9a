// A parsed tree lives in its document's store; these cases edit it, take parts of it out and
// outlive it, and check the text the reader gathers in pieces.

#include "common/TestUtils.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

using namespace QvXmlLib16;

namespace {

std::unique_ptr<CXmlDocument> Parse(const std::string& xml) {
    auto doc = std::make_unique<CXmlDocument>();
    doc->LoadXml(xml.c_str());
    return doc;
}

std::wstring Names(const CXmlElement* parent) {
    std::wstring out;
    for (const CXmlElement* c = parent->GetFirstElement(); c; c = c->GetNextSiblingElement())
        out += (out.empty() ? L"" : L",") + c->GetLocalName();
    return out;
}

} // namespace

TEST(XmlTreeStore, UnlinkedElementOutlivesItsDocument) {
    auto doc = Parse("<r xmlns='urn:r' xmlns:p='urn:p'><x/>"
                     "<a p:k='v'>text<b>deep</b>tail</a></r>");
    std::unique_ptr<CXmlElement> a(doc->GetDocumentElement()->RemoveLastChildElement());
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(Names(doc->GetDocumentElement()), L"x");
    doc.reset();

    // Names, text, attributes and children stay readable, and the element stays editable.
    EXPECT_EQ(a->GetLocalName(), L"a");
    EXPECT_EQ(a->GetNamespaceURI(), L"urn:r");
    EXPECT_EQ(a->GetText(), L"texttail");
    ASSERT_EQ(a->GetAttributes().size(), 1u);
    EXPECT_EQ(a->GetAttributes()[0]->GetNamespaceURI(), L"urn:p");
    EXPECT_EQ(a->GetAttributes()[0]->GetValue(), L"v");
    EXPECT_EQ(a->GetFirstElement()->GetText(), L"deep");
    a->AppendText(L"+more");
    CXmlElement* added = a->CreateNewChildElement();
    added->AppendText(L"new");
    EXPECT_EQ(a->GetText(), L"texttail+more");
    EXPECT_EQ(a->GetFirstElement()->GetNextSiblingElement()->GetText(), L"new");

    // A grandchild taken out of the unlinked element keeps the store too.
    std::unique_ptr<CXmlElement> last(a->RemoveLastChildElement());
    a.reset();
    EXPECT_EQ(last->GetText(), L"new");
}

TEST(XmlTreeStore, EditsAfterParse) {
    auto doc = Parse("<r a='1'>ab<c/></r>");
    CXmlElement* root = doc->GetDocumentElement();
    root->AppendText(L"cd");
    root->AddAttribute(L"b", L"caf\u00e9", L"urn:b");
    root->SetElementName(L"renamed");
    EXPECT_EQ(root->GetText(), L"abcd");
    EXPECT_EQ(root->GetLocalName(), L"renamed");
    ASSERT_EQ(root->GetAttributes().size(), 2u);
    EXPECT_EQ(root->GetAttribute(L"urn:b", L"b")->GetValue(), L"caf\u00e9");

    // Text grown far past a chunk, in pieces, after other nodes were added behind it.
    std::wstring expected = L"ab";
    CXmlElement* child = root->GetFirstElement();
    child->AppendText(L"ab");
    for (int i = 0; i < 20000; ++i) {
        const std::wstring piece = L"piece " + std::to_wstring(i) + L"\u20ac;";
        child->AppendText(piece.c_str());
        expected += piece;
        if (i % 1000 == 0)
            root->CreateNewChildElement()->AppendText(L"between");
    }
    EXPECT_EQ(child->GetText(), expected);
    EXPECT_EQ(root->GetFirstElement()->GetNextSiblingElement()->GetText(), L"between");
}

TEST(XmlTreeStore, ReloadingReplacesTheTree) {
    CXmlDocument doc;
    doc.LoadXml("<first><a>1</a></first>");
    doc.LoadXml("<second><b>2</b><c>3</c></second>");
    EXPECT_EQ(doc.GetDocumentElement()->GetLocalName(), L"second");
    EXPECT_EQ(Names(doc.GetDocumentElement()), L"b,c");
    doc.Cleanup();
    EXPECT_EQ(doc.GetDocumentElement(), nullptr);
}

// Expat hands text over a line at a time and around child elements; the reader narrows runs
// of ASCII eight units at a time, so the cases put the other characters at every offset of
// such a block.
TEST(XmlTreeStore, TextGatheredInPieces) {
    auto doc = Parse("<r>one\r\ntwo\rthree<c>in</c> after\n<d/>\n end</r>");
    EXPECT_EQ(doc->GetDocumentElement()->GetText(), L"one\ntwo\nthree after\n\n end");

    for (size_t at = 0; at < 18; ++at) {
        SCOPED_TRACE(at);
        std::string text(20, 'x');
        std::wstring expected(20, L'x');
        text.replace(at, 1, "\xC3\xA9"); // é
        expected[at] = L'\u00e9';
        auto one = Parse("<r>" + text + "</r>");
        EXPECT_EQ(one->GetDocumentElement()->GetText(), expected);

        std::string withPair(20, 'y');
        std::wstring expectedPair(20, L'y');
        withPair.replace(at, 1, "\xF0\x9F\x98\x80"); // U+1F600, a surrogate pair in UTF-16
        expectedPair[at] = static_cast<wchar_t>(0x1F600);
        auto two = Parse("<r a='" + withPair + "'>" + withPair + "</r>");
        EXPECT_EQ(two->GetDocumentElement()->GetText(), expectedPair);
        EXPECT_EQ(two->GetDocumentElement()->GetAttributes()[0]->GetValue(), expectedPair);

        // Parser text never keeps a carriage return, even one written as a reference.
        std::string withCR(20, 'z');
        withCR.replace(at, 1, "&#13;");
        auto three = Parse("<r>" + withCR + "</r>");
        EXPECT_EQ(three->GetDocumentElement()->GetText(), std::wstring(19, L'z'));
    }

    // Texts between the first chunk's size and the size that gets a chunk of its own.
    for (const size_t size : {5000u, 10000u, 70000u, 200000u}) {
        auto sized = Parse("<r>" + std::string(size, 's') + "</r>");
        EXPECT_EQ(sized->GetDocumentElement()->GetText(), std::wstring(size, L's'));
    }

    const std::string big(1 << 20, 'q');
    auto large = Parse("<r><a>" + big + "</a>" + big + "</r>");
    EXPECT_EQ(large->GetDocumentElement()->GetText(), std::wstring(big.size(), L'q'));
    EXPECT_EQ(large->GetDocumentElement()->GetFirstElement()->GetText().size(), big.size());
}

TEST(XmlTreeStore, CallersBytesAreReadInPlaceAndNotKept) {
    std::string xml = "<r a='value'>text<c>child</c></r>";
    std::vector<unsigned char> bytes(xml.begin(), xml.end());
    const std::vector<unsigned char> original = bytes;
    CXmlDocument doc;
    doc.LoadXmlStream(bytes.data(), static_cast<unsigned long>(bytes.size()));
    EXPECT_EQ(bytes, original);
    std::fill(bytes.begin(), bytes.end(), 'X');
    const CXmlElement* root = doc.GetDocumentElement();
    EXPECT_EQ(root->GetText(), L"text");
    EXPECT_EQ(root->GetAttributes()[0]->GetValue(), L"value");
    EXPECT_EQ(root->GetFirstElement()->GetText(), L"child");
}

TEST(XmlTreeStore, TextIntoACallersBuffer) {
    auto doc = Parse("<r a='caf\xC3\xA9'>short<c/></r>");
    const CXmlElement* root = doc->GetDocumentElement();
    std::wstring buffer = L"a longer text that was here before";
    root->GetText(buffer);
    EXPECT_EQ(buffer, L"short");
    root->GetAttributes()[0]->GetValue(buffer);
    EXPECT_EQ(buffer, L"caf\u00e9");
    root->GetFirstElement()->GetText(buffer);
    EXPECT_EQ(buffer, L"");
}

// With an element-completed callback the nodes live on the heap; the same reading must hold.
TEST(XmlTreeStore, HeapTreeOfACallbackDocument) {
    CXmlDocument doc([](CXmlElement*) { return false; });
    const std::string longText(9000, 'h');
    doc.LoadXml(
        ("<r a='1' b='caf\xC3\xA9'>one\ntwo<c d='x'>" + longText + "</c>three</r>").c_str());
    CXmlElement* root = doc.GetDocumentElement();
    EXPECT_EQ(root->GetText(), L"one\ntwothree");
    ASSERT_EQ(root->GetAttributes().size(), 2u);
    EXPECT_EQ(root->GetAttributes()[1]->GetValue(), L"caf\u00e9");
    EXPECT_EQ(root->GetFirstElement()->GetText(), std::wstring(longText.size(), L'h'));
    root->AppendText(L"+");
    root->AddAttribute(L"e", L"added", L"");
    EXPECT_EQ(root->GetText(), L"one\ntwothree+");
    EXPECT_EQ(root->GetAttribute(L"", L"e")->GetValue(), L"added");
    std::unique_ptr<CXmlElement> child(root->RemoveLastChildElement());
    EXPECT_EQ(child->GetAttributes()[0]->GetValue(), L"x");
}

// An attribute made on the heap for an element of a parsed tree counts its names, so it may
// outlive the document as an unlinked element does.
TEST(XmlTreeStore, HeapAttributeOfAStoreElementOutlivesItsDocument) {
    auto doc = Parse("<r xmlns:p='urn:p'/>");
    auto attribute =
        std::make_unique<CXmlAttribute>(doc->GetDocumentElement(), L"name", L"value", L"urn:p");
    doc.reset();
    EXPECT_EQ(attribute->GetLocalName(), L"name");
    EXPECT_EQ(attribute->GetNamespaceURI(), L"urn:p");
    EXPECT_EQ(attribute->GetValue(), L"value");
}
