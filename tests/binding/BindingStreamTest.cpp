#include "binding-fixtures/ExpectThrown.h"
#include "binding-fixtures/OrderBinding.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <sys/stat.h>

using namespace fixtures;
using qvtest::Bytes;
using qvtest::ReadFileBytes;
using qvtest::TempDir;

namespace {

std::wstring Text(const CXmlObjectBase& object) {
    return object.ToXml(false, false);
}

bool Exists(const std::string& path) {
    struct stat info;
    return stat(path.c_str(), &info) == 0;
}

// Resets the library-wide flag even when a test fails.
struct AsyncFileWriting {
    AsyncFileWriting() { AsyncToXmlFile(true); }

    ~AsyncFileWriting() { AsyncToXmlFile(false); }
};

} // namespace

TEST(BindingStream, RoundTrips) {
    const CSmartPtr<COrder> order = MakeFullOrder();
    const auto stream = [&](CompressionType compression) {
        return order->ToXmlStream(true, true, Encoding_UTF8, EOL_CRLF,
                                  CSerializationContext::m_defaultContext, compression);
    };
    const std::vector<unsigned char> plain = Bytes(stream(Compression_None));
    const std::string text(plain.begin(), plain.end());
    EXPECT_EQ(
        text.substr(0, text.find('\t')),
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<AA:Order xmlns:AA=\"urn:test:po\">\r\n");
    EXPECT_NE(text.find("\t\t<AA:City>Z\xc3\xbcrich</AA:City>\r\n"), std::string::npos);

    struct Case {
        const char* name;
        CompressionType compression;
        unsigned char magic;
    };

    const Case cases[] = {
        {"plain", Compression_None, '<'},
        {"gzip", Compression_GZip, 0x1f},
        {"zlib", Compression_ZLib, 0x78},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        const CBinaryData bytes = stream(tc.compression);
        EXPECT_EQ(bytes.GetData()[0], tc.magic);
        unsigned char* data = qvtest::NewArray(Bytes(bytes));
        unsigned long length = bytes.GetLength();
        unsigned char* const original = data;
        CQvZip::Decompress(&data, &length);
        EXPECT_EQ(std::vector<unsigned char>(data, data + length), plain);
        if (data != original)
            delete[] data;
        delete[] original;

        CSmartPtr<COrder> back = new COrder();
        back->FromXmlStream(bytes);
        EXPECT_EQ(Text(*back), Text(*order));
        back->FromXmlStream(bytes.GetData(), bytes.GetLength());
        EXPECT_EQ(Text(*back), Text(*order));
    }
}

TEST(BindingStream, Files) {
    const CSmartPtr<COrder> order = MakeFullOrder();
    const std::wstring expected = Text(*order);
    const std::vector<unsigned char> plain = Bytes(order->ToXmlStream());
    TempDir dir;

    struct Case {
        const char* name;
        bool async;
        CompressionType compression;
    };

    const Case cases[] = {
        {"in one go", false, Compression_None},
        {"streamed", true, Compression_None},
        {"gzip in one go", false, Compression_GZip},
        {"gzip while streaming is on", true, Compression_GZip},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        const std::wstring path = dir.WFile(tc.name);
        {
            std::optional<AsyncFileWriting> async;
            if (tc.async)
                async.emplace();
            order->ToXmlFile(path.c_str(), true, true, Encoding_UTF8, EOL_LF,
                             CSerializationContext::m_defaultContext, tc.compression);
        }
        const std::vector<unsigned char> written = ReadFileBytes(dir.File(tc.name));
        if (tc.compression == Compression_None)
            EXPECT_EQ(written, plain);
        else
            EXPECT_EQ(std::vector<unsigned char>(written.begin(), written.begin() + 2),
                      Bytes({0x1f, 0x8b}));
        CSmartPtr<COrder> back = new COrder();
        back->FromXmlFile(path.c_str());
        EXPECT_EQ(Text(*back), expected);
    }

    for (bool async : {false, true}) {
        SCOPED_TRACE(async ? "streamed" : "in one go");
        std::optional<AsyncFileWriting> streamed;
        if (async)
            streamed.emplace();
        const std::wstring path = dir.WFile("zlib");
        ExpectThrown(
            [&] {
                order->ToXmlFile(path.c_str(), true, true, Encoding_UTF8, EOL_LF,
                                 CSerializationContext::m_defaultContext, Compression_ZLib);
            },
            {&typeid(CQvException), L"ZLIB Compression only available for To Stream methods.",
             L""});
        EXPECT_FALSE(Exists(dir.File("zlib")));
        ExpectThrown([&] { order->ToXmlFile(L"/nonexistent/order.xml"); },
                     {&typeid(CQvException),
                      L"Failed to write data to the file [/nonexistent/order.xml].", L""});
    }
}

TEST(BindingStream, BadInput) {
    const std::string missing = "/nonexistent/order.xml";
    const unsigned char notXml[] = {0x00, 0x01, 0xfe, 'x'};
    const unsigned char truncatedGzip[] = {0x1f, 0x8b, 0x08, 0x00, 0x00};

    struct Case {
        const char* name;
        std::function<void(COrder&)> read;
        Thrown thrown;
    };

    const Case cases[] = {
        {"empty stream",
         [](COrder& o) { o.FromXmlStream(CBinaryData()); },
         {&typeid(CQvException), L"XML Stream is empty!", L""}},
        {"binary bytes",
         [&](COrder& o) { o.FromXmlStream(notXml, sizeof notXml); },
         {&typeid(CQvException), L"not well-formed (invalid token) at line 1", L""}},
        {"truncated gzip",
         [&](COrder& o) { o.FromXmlStream(truncatedGzip, sizeof truncatedGzip); },
         {&typeid(CQvException), L"not well-formed (invalid token) at line 1", L""}},
        {"truncated document",
         [](COrder& o) {
             const CBinaryData whole = MakeFullOrder()->ToXmlStream();
             o.FromXmlStream(whole.GetData(), whole.GetLength() / 2);
         },
         {&typeid(CQvException), L"unclosed token at line 14", L""}},
        {"empty text",
         [](COrder& o) { o.FromXml(""); },
         {&typeid(CQvException), L"XML String is empty!", L""}},
        {"missing file",
         [&](COrder& o) { o.FromXmlFile(qvtest::Widen(missing).c_str()); },
         {&typeid(CQvException), L"Failed to open the file [/nonexistent/order.xml].", L""}},
    };
    CSmartPtr<COrder> order = new COrder();
    const CBinaryData good = MakeFullOrder()->ToXmlStream();
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        ExpectThrown([&] { tc.read(*order); }, tc.thrown);
        order->FromXmlStream(good);
        EXPECT_EQ(Text(*order), Text(*MakeFullOrder()));
    }
}

TEST(BindingStream, FromXmlElement) {
    CXmlDocument doc;
    doc.LoadXml(MakeFullOrder()->ToXml().c_str());
    CXmlElement* billTo = doc.GetDocumentElement()->GetFirstElement();
    while (billTo->GetLocalName() != L"BillTo")
        billTo = billTo->GetNextSiblingElement();
    CSmartPtr<CAddress> address = new CAddress();
    address->FromXmlElement(billTo);
    EXPECT_EQ(address->GetElementName(), L"BillTo");
    EXPECT_EQ(address->City, L"Berlin");
    ExpectThrown([&] { address->FromXmlElement(doc.GetDocumentElement()); },
                 {&typeid(CQvException),
                  L"Failed to find the required child element [Street].\nPath: /AA:Order",
                  L"/AA:Order"});
}
