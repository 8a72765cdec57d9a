#include "common/TestUtils.h"

using namespace QvXmlLib16;
using qvtest::ExpectThrowMsg;
using ByteVec = std::vector<unsigned char>;

namespace {

ByteVec Concat(std::initializer_list<ByteVec> parts) {
    ByteVec all;
    for (const ByteVec& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

} // namespace

TEST(TextStream, EncodedStream) {
    const std::wstring longText = std::wstring(10000, L'x') + L"\u00e9";

    struct Case {
        const char* name;
        XmlEncoding encoding;
        std::wstring text;
        ByteVec bytes;
    };

    const Case cases[] = {
        {"UTF-8 multi-byte",
         Encoding_UTF8,
         L"<a>\u00e9\u20ac\U0001F600</a>",
         {0x3C, 0x61, 0x3E, 0xC3, 0xA9, 0xE2, 0x82, 0xAC, 0xF0, 0x9F, 0x98, 0x80, 0x3C, 0x2F, 0x61,
          0x3E}},
        {"UTF-8 across buffer blocks", Encoding_UTF8, longText,
         Concat({ByteVec(10000, 0x78), {0xC3, 0xA9}})},
        {"UTF-8 empty", Encoding_UTF8, L"", {}},
        // Unit i is byte i of the wide text in memory, not character i.
        {"UTF-16 two characters", Encoding_UTF16, L"AB", {0x41, 0x00, 0x00, 0x00}},
        {"UTF-16 euro and letter", Encoding_UTF16, L"\u20acX", {0xAC, 0x00, 0x20, 0x00}},
        {"UTF-16 outside the BMP", Encoding_UTF16, L"\U0001F600", {0x00, 0x00}},
        {"UTF-16 empty", Encoding_UTF16, L"", {}},
        {"native 4-byte units", Encoding_Native, L"A\U0001F600", {0x41, 0, 0, 0, 0, 0xF6, 0x01, 0}},
        {"native empty", Encoding_Native, L"", {}},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        CTextStream whole(tc.text.c_str(), tc.encoding);
        EXPECT_EQ(whole.GetEncoding(), tc.encoding);
        EXPECT_EQ(whole.GetLength(), tc.text.size());
        EXPECT_EQ(qvtest::Bytes(whole.GetEncodedStream()), tc.bytes);

        CTextStream pieces(tc.encoding);
        const size_t half = tc.text.size() / 2;
        pieces.Append(tc.text.substr(0, half));
        if (half < tc.text.size())
            pieces.Append(tc.text[half]);
        pieces.Append(
            tc.text.substr(half + 1 < tc.text.size() ? half + 1 : tc.text.size()).c_str());
        EXPECT_EQ(std::wstring(pieces.GetText()), tc.text);
        EXPECT_EQ(qvtest::Bytes(pieces.GetEncodedStream()), tc.bytes);
    }
}

TEST(TextStream, UnknownEncoding) {
    CTextStream unset;
    unset.Append(L"a");
    EXPECT_EQ(unset.GetEncoding(), Encoding_Unknown);
    CTextStream above(L"a", XmlEncoding(4)), below(L"a", XmlEncoding(-1));
    for (CTextStream* stream : {&unset, &above, &below}) {
        SCOPED_TRACE(static_cast<int>(stream->GetEncoding()));
        ExpectThrowMsg<CQvException>([&] { stream->GetEncodedStream(); },
                                     L"Unknown Encoding, select UTF-8 (contact our support team)");
    }
}

TEST(TextStream, BaseOperationsKeepTheText) {
    CTextStream stream(Encoding_UTF8);
    stream.Open();
    stream.Append(L'<');
    stream.Append(L"a/");
    stream.Append(std::wstring(L">"));
    stream.Flush();
    stream.Close();
    EXPECT_EQ(stream.GetLength(), 4u);
    EXPECT_EQ(std::wstring(stream.GetText()), L"<a/>");
}

TEST(FileTextStream, WritesChunks) {
    struct Case {
        const char* name;
        XmlEncoding encoding;
        std::vector<std::wstring> chunks;
        ByteVec file;
    };

    const Case cases[] = {
        {"UTF-8 has no byte order mark",
         Encoding_UTF8,
         {L"<a>\u00e9", L"</a>"},
         {0x3C, 0x61, 0x3E, 0xC3, 0xA9, 0x3C, 0x2F, 0x61, 0x3E}},
        {"UTF-16 starts with FF FE",
         Encoding_UTF16,
         {L"AB", L"C"},
         {0xFF, 0xFE, 0x41, 0x00, 0x00, 0x00, 0x43, 0x00}},
        {"native starts with FF FE",
         Encoding_Native,
         {L"A", L"B"},
         {0xFF, 0xFE, 0x41, 0, 0, 0, 0x42, 0, 0, 0}},
        {"UTF-8 without text", Encoding_UTF8, {}, {}},
        {"UTF-16 without text", Encoding_UTF16, {}, {0xFF, 0xFE}},
        {"large chunks",
         Encoding_UTF8,
         {std::wstring(5000, L'x'), std::wstring(5000, L'y')},
         Concat({ByteVec(5000, 0x78), ByteVec(5000, 0x79)})},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        qvtest::TempDir dir;
        const std::wstring path = dir.WFile("out.xml");
        {
            CFileTextStream stream(path.c_str(), tc.encoding);
            stream.Open();
            for (const std::wstring& chunk : tc.chunks) {
                stream.Append(chunk);
                stream.Flush();
                EXPECT_EQ(stream.GetLength(), 0u);
                EXPECT_EQ(std::wstring(stream.GetText()), L"");
            }
            stream.Flush();
            stream.Close();
        }
        EXPECT_EQ(access(dir.File("out.xml").c_str(), F_OK), 0) << "no file written";
        EXPECT_EQ(qvtest::ReadFileBytes(dir.File("out.xml")), tc.file);
    }

    // Close writes what is still buffered.
    qvtest::TempDir dir;
    const std::wstring path = dir.WFile("close.xml");
    CFileTextStream stream(path.c_str(), Encoding_UTF8);
    stream.Open();
    stream.Append(L"ab");
    stream.Flush();
    stream.Append(L"cd");
    stream.Close();
    EXPECT_EQ(qvtest::ReadFileBytes(dir.File("close.xml")), (ByteVec{0x61, 0x62, 0x63, 0x64}));
}

TEST(FileTextStream, UnopenablePath) {
    qvtest::TempDir dir;
    for (const std::wstring& path : {dir.WFile("missing/sub/out.xml"), dir.WFile("")}) {
        SCOPED_TRACE(qvtest::Narrow(path));
        CFileTextStream stream(path.c_str(), Encoding_UTF16);
        ExpectThrowMsg<CQvException>([&] { stream.Open(); },
                                     L"Failed to write data to the file [" + path + L"].");
    }
}

TEST(FileTextStream, FailedChunkWrite) {
    if (access("/dev/full", W_OK) != 0)
        GTEST_SKIP() << "no /dev/full";
    // A chunk larger than the stdio buffer goes straight to the device and fails there.
    CFileTextStream stream(L"/dev/full", Encoding_UTF8);
    stream.Open();
    stream.Append(std::wstring(10000, L'x'));
    ExpectThrowMsg<CQvException>([&] { stream.Flush(); }, L"Failed to write data to the file");
}
