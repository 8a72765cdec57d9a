#include "common/TestUtils.h"

using namespace QvXmlLib16;
using qvtest::ExpectThrowMsg;
using ByteVec = std::vector<unsigned char>;

namespace {

void Fill(CBinaryStream& stream) {
    stream.Append(static_cast<unsigned char>(0x3C));
    const unsigned char middle[] = {0x61, 0x2F};
    stream.Append(middle, 2);
    stream.Append(CBinaryData(qvtest::NewArray({0x3E}), 1, true));
    stream.Append(CBinaryData());
}

} // namespace

TEST(BinaryStream, OwnAndLentBuffers) {
    CBinaryStream own;
    Fill(own);
    EXPECT_EQ(qvtest::Bytes(own.GetBinaryStream()), (ByteVec{0x3C, 0x61, 0x2F, 0x3E}));

    CBinaryData lent(qvtest::NewArray({0x78, 0x79}), 2, true);
    const CBinaryData before = lent;
    {
        CBinaryStream stream(lent);
        Fill(stream);
        EXPECT_EQ(&stream.GetBinaryStream(), &lent);
    }
    // The caller's value holds the bytes after the stream is gone; a copy taken earlier doesn't.
    EXPECT_EQ(qvtest::Bytes(lent), (ByteVec{0x78, 0x79, 0x3C, 0x61, 0x2F, 0x3E}));
    EXPECT_EQ(qvtest::Bytes(before), (ByteVec{0x78, 0x79}));
}

TEST(FileBinaryStream, ToFile) {
    struct Case {
        const char* name;
        XmlEncoding encoding;
        bool lend;
        ByteVec file;
    };

    const Case cases[] = {
        {"UTF-8, own buffer", Encoding_UTF8, false, {0x3C, 0x61, 0x2F, 0x3E}},
        {"UTF-8, lent buffer", Encoding_UTF8, true, {0x3C, 0x61, 0x2F, 0x3E}},
        {"UTF-16 gets FF FE", Encoding_UTF16, false, {0xFF, 0xFE, 0x3C, 0x61, 0x2F, 0x3E}},
        {"native gets FF FE", Encoding_Native, true, {0xFF, 0xFE, 0x3C, 0x61, 0x2F, 0x3E}},
        {"unknown gets no mark", Encoding_Unknown, false, {0x3C, 0x61, 0x2F, 0x3E}},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        qvtest::TempDir dir;
        const std::wstring path = dir.WFile("out.bin");
        CBinaryData lent;
        std::unique_ptr<CFileBinaryStream> stream =
            tc.lend ? std::make_unique<CFileBinaryStream>(path.c_str(), tc.encoding, lent)
                    : std::make_unique<CFileBinaryStream>(path.c_str(), tc.encoding);
        Fill(*stream);
        stream->ToFile();
        EXPECT_EQ(qvtest::ReadFileBytes(dir.File("out.bin")), tc.file);
        // Writing again replaces the file rather than adding to it.
        stream->ToFile();
        EXPECT_EQ(qvtest::ReadFileBytes(dir.File("out.bin")), tc.file);
        if (tc.lend) {
            EXPECT_EQ(qvtest::Bytes(lent), (ByteVec{0x3C, 0x61, 0x2F, 0x3E}));
        }
    }

    qvtest::TempDir dir;

    struct Empty {
        XmlEncoding encoding;
        ByteVec file;
    };

    for (const Empty& tc : {Empty{Encoding_UTF8, {}}, Empty{Encoding_UTF16, {0xFF, 0xFE}}}) {
        SCOPED_TRACE(static_cast<int>(tc.encoding));
        const std::wstring path = dir.WFile("empty.bin");
        CFileBinaryStream stream(path.c_str(), tc.encoding);
        stream.ToFile();
        EXPECT_EQ(access(dir.File("empty.bin").c_str(), F_OK), 0) << "no file written";
        EXPECT_EQ(qvtest::ReadFileBytes(dir.File("empty.bin")), tc.file);
    }
}

TEST(FileBinaryStream, UnwritablePath) {
    qvtest::TempDir dir;
    for (const std::wstring& path : {dir.WFile("missing/out.bin"), dir.WFile("")}) {
        SCOPED_TRACE(qvtest::Narrow(path));
        CFileBinaryStream stream(path.c_str(), Encoding_UTF16);
        stream.Append(static_cast<unsigned char>(1));
        ExpectThrowMsg<CQvException>([&] { stream.ToFile(); },
                                     L"Failed to write data to the file [" + path + L"].");
    }
}

TEST(FileBinaryStream, FailedWrite) {
    if (access("/dev/full", W_OK) != 0)
        GTEST_SKIP() << "no /dev/full";
    CFileBinaryStream stream(L"/dev/full", Encoding_UTF8);
    const ByteVec bytes(10000, 0x78);
    stream.Append(bytes.data(), static_cast<unsigned long>(bytes.size()));
    ExpectThrowMsg<CQvException>([&] { stream.ToFile(); },
                                 L"Failed to write data to the file [/dev/full].");
}
