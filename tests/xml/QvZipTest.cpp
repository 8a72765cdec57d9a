#include "common/TestUtils.h"

#include <memory>
#include <random>

using namespace QvXmlLib16;
using qvtest::ExpectThrowMsg;
using ByteVec = std::vector<unsigned char>;

namespace {

const ByteVec kText{0x3C, 0x61, 0x3E, 0x68, 0x65, 0x6C, 0x6C, 0x6F, 0x20, 0x68, 0x65, 0x6C,
                    0x6C, 0x6F, 0x20, 0x68, 0x65, 0x6C, 0x6C, 0x6F, 0x3C, 0x2F, 0x61, 0x3E};
// kText deflated by another zlib user at level 9, in both wrappers, and stored uncompressed.
const ByteVec kTextZlib{0x78, 0xDA, 0xB3, 0x49, 0xB4, 0xCB, 0x48, 0xCD, 0xC9, 0xC9, 0x57,
                        0x40, 0x22, 0x6D, 0xF4, 0x13, 0xED, 0x00, 0x6A, 0x4D, 0x08, 0x62};
const ByteVec kTextGzip{0x1F, 0x8B, 0x08, 0x00, 0x00, 0x00, 0x00, 0x00, 0x02, 0x03, 0xB3, 0x49,
                        0xB4, 0xCB, 0x48, 0xCD, 0xC9, 0xC9, 0x57, 0x40, 0x22, 0x6D, 0xF4, 0x13,
                        0xED, 0x00, 0xE6, 0x19, 0xBB, 0xAC, 0x18, 0x00, 0x00, 0x00};
const ByteVec kTextStored{0x78, 0x01, 0x01, 0x18, 0x00, 0xE7, 0xFF, 0x3C, 0x61, 0x3E, 0x68, 0x65,
                          0x6C, 0x6C, 0x6F, 0x20, 0x68, 0x65, 0x6C, 0x6C, 0x6F, 0x20, 0x68, 0x65,
                          0x6C, 0x6C, 0x6F, 0x3C, 0x2F, 0x61, 0x3E, 0x6A, 0x4D, 0x08, 0x62};

ByteVec Xml(size_t size) {
    const std::string item = "<item id=\"42\">some text</item>\n";
    ByteVec out(size);
    for (size_t i = 0; i < size; ++i)
        out[i] = static_cast<unsigned char>(item[i % item.size()]);
    return out;
}

ByteVec Random(size_t size) {
    std::mt19937 random(99);
    ByteVec out(size);
    for (unsigned char& b : out)
        b = static_cast<unsigned char>(random());
    return out;
}

struct Outcome {
    bool replaced;
    ByteVec bytes;
};

// Calls op on a new[] copy of input and frees whatever arrays exist afterwards (old and new).
template <class Op>
Outcome Run(const ByteVec& input, Op op) {
    std::unique_ptr<unsigned char[]> original(qvtest::NewArray(input));
    unsigned char* data = original.get();
    unsigned long length = static_cast<unsigned long>(input.size());
    op(&data, &length);
    std::unique_ptr<unsigned char[]> result(data != original.get() ? data : nullptr);
    if (!result) {
        EXPECT_EQ(length, input.size()) << "length changed without a new buffer";
    }
    return {result != nullptr, ByteVec(data, data + length)};
}

Outcome Compress(const ByteVec& input, CompressionType type) {
    return Run(input, [&](unsigned char** d, unsigned long* n) { CQvZip::Compress(d, n, type); });
}

Outcome Decompress(const ByteVec& input,
                   unsigned long long maxOutput = CQvZip::kDefaultMaxDecompressed) {
    return Run(input,
               [&](unsigned char** d, unsigned long* n) { CQvZip::Decompress(d, n, maxOutput); });
}

CBinaryData Binary(const ByteVec& bytes) {
    return CBinaryData(qvtest::NewArray(bytes), static_cast<unsigned long>(bytes.size()), true);
}

ByteVec Compressed(const ByteVec& input, CompressionType type) {
    Outcome out = Compress(input, type);
    EXPECT_TRUE(out.replaced);
    return out.bytes;
}

} // namespace

TEST(QvZip, CompressThenDecompress) {
    struct Kind {
        const char* name;
        CompressionType type;
        ByteVec header; // level 1: zlib FLEVEL 0, gzip XFL 4
        size_t levelByte;
        unsigned char levelValue;
    };

    const Kind kinds[] = {
        {"gzip", Compression_GZip, {0x1F, 0x8B, 0x08}, 8, 0x04},
        {"zlib", Compression_ZLib, {0x78, 0x01}, 1, 0x01},
    };
    for (const Kind& kind : kinds) {
        for (size_t size : {200u, 1000u, 65536u, 65537u, 300000u}) {
            SCOPED_TRACE(std::string(kind.name) + " " + std::to_string(size));
            const ByteVec input = Xml(size);
            const Outcome packed = Compress(input, kind.type);
            ASSERT_TRUE(packed.replaced);
            ASSERT_GT(packed.bytes.size(), kind.header.size() + 8);
            EXPECT_LT(packed.bytes.size(), input.size());
            EXPECT_EQ(ByteVec(packed.bytes.begin(), packed.bytes.begin() + kind.header.size()),
                      kind.header);
            EXPECT_EQ(packed.bytes[kind.levelByte], kind.levelValue);

            const Outcome unpacked = Decompress(packed.bytes);
            EXPECT_TRUE(unpacked.replaced);
            EXPECT_EQ(unpacked.bytes, input);
        }
    }
}

TEST(QvZip, DecompressesForeignStreams) {
    struct Case {
        const char* name;
        ByteVec input;
    };

    const Case cases[] = {
        {"zlib", kTextZlib},
        {"gzip", kTextGzip},
        {"stored block", kTextStored},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        const Outcome out = Decompress(tc.input);
        EXPECT_TRUE(out.replaced);
        EXPECT_EQ(out.bytes, kText);
    }
}

TEST(QvZip, OtherTypesChangeNothing) {
    for (int type : {0, 3, -1}) {
        SCOPED_TRACE(type);
        const Outcome out = Compress(Xml(1000), static_cast<CompressionType>(type));
        EXPECT_FALSE(out.replaced);
        EXPECT_EQ(out.bytes, Xml(1000));
    }
}

TEST(QvZip, CompressFailsWhenOutputWouldGrow) {
    struct Case {
        const char* name;
        CompressionType type;
        ByteVec input;
        const wchar_t* message;
    };

    const Case cases[] = {
        {"gzip of one byte",
         Compression_GZip,
         {0x61},
         L"Failed to compress data. [Error Code: -5]"},
        {"zlib of random bytes", Compression_ZLib, Random(4096),
         L"Failed to compress data. [Error Code: 0]"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        std::unique_ptr<unsigned char[]> original(qvtest::NewArray(tc.input));
        unsigned char* data = original.get();
        unsigned long length = static_cast<unsigned long>(tc.input.size());
        ExpectThrowMsg<CQvException>([&] { CQvZip::Compress(&data, &length, tc.type); },
                                     tc.message);
        EXPECT_EQ(data, original.get());
        EXPECT_EQ(length, tc.input.size());
        EXPECT_EQ(ByteVec(data, data + length), tc.input);
    }
}

TEST(QvZip, DecompressLeavesOtherInputAlone) {
    const ByteVec gzip = Compressed(Xml(20000), Compression_GZip);
    const ByteVec zlib = Compressed(Xml(20000), Compression_ZLib);
    auto cut = [](const ByteVec& v, size_t n) { return ByteVec(v.begin(), v.begin() + n); };
    auto flipLast = [](ByteVec v) {
        v.back() ^= 0xFF;
        return v;
    };

    struct Case {
        const char* name;
        ByteVec input;
    };

    const Case cases[] = {
        {"plain XML", {0x3C, 0x61, 0x2F, 0x3E}},
        {"empty", {}},
        {"random bytes", Random(1000)},
        {"raw deflate without a wrapper", ByteVec(kTextZlib.begin() + 2, kTextZlib.end() - 4)},
        {"gzip cut in half", cut(gzip, gzip.size() / 2)},
        {"zlib header only", cut(zlib, 2)},
        {"gzip without its trailer", cut(kTextGzip, kTextGzip.size() - 8)},
        {"gzip with a wrong length", flipLast(kTextGzip)},
        {"zlib with a wrong checksum", flipLast(kTextZlib)},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        const Outcome out = Decompress(tc.input);
        EXPECT_FALSE(out.replaced);
        EXPECT_EQ(out.bytes, tc.input);
    }
}

TEST(QvZip, DecompressStopsAtTheOutputLimit) {
    const ByteVec zeros(2000000, 0x00);

    struct Case {
        const char* name;
        CompressionType type;
        unsigned long long maxOutput;
        bool inflated;
    };

    const Case cases[] = {
        {"gzip far above the limit", Compression_GZip, 1000000, false},
        {"zlib one byte above the limit", Compression_ZLib, 1999999, false},
        {"gzip exactly at the limit", Compression_GZip, 2000000, true},
        {"zlib under the default limit", Compression_ZLib, CQvZip::kDefaultMaxDecompressed, true},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        const ByteVec packed = Compressed(zeros, tc.type);
        const Outcome out = Decompress(packed, tc.maxOutput);
        EXPECT_EQ(out.replaced, tc.inflated);
        if (tc.inflated) {
            EXPECT_EQ(out.bytes, zeros);
        } else {
            EXPECT_EQ(out.bytes, packed);
        }
    }
}

TEST(QvZip, CompressData) {
    const ByteVec input = Xml(10000);

    struct Case {
        const char* name;
        CompressionType type;
        ByteVec header;
    };

    const Case cases[] = {
        {"gzip", Compression_GZip, {0x1F, 0x8B}},
        {"zlib", Compression_ZLib, {0x78, 0x01}},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        CBinaryData binary = Binary(input);
        const CBinaryData earlierCopy = binary;
        CQvZip::CompressData(binary, tc.type);
        const ByteVec packed = qvtest::Bytes(binary);
        ASSERT_GT(packed.size(), 2u);
        EXPECT_LT(packed.size(), input.size());
        EXPECT_EQ(ByteVec(packed.begin(), packed.begin() + 2), tc.header);
        EXPECT_EQ(Decompress(packed).bytes, input);
        // Copies share bytes until one changes: the copy keeps the plain text.
        EXPECT_EQ(qvtest::Bytes(earlierCopy), input);
    }

    CBinaryData empty;
    CQvZip::CompressData(empty, Compression_GZip);
    EXPECT_EQ(empty.GetLength(), 0u);

    CBinaryData untouched = Binary(input);
    CQvZip::CompressData(untouched, Compression_None);
    EXPECT_EQ(qvtest::Bytes(untouched), input);

    const ByteVec noise = Random(4096);
    CBinaryData incompressible = Binary(noise);
    ExpectThrowMsg<CQvException>([&] { CQvZip::CompressData(incompressible, Compression_ZLib); },
                                 L"Failed to compress data. [Error Code: 0]");
    EXPECT_EQ(qvtest::Bytes(incompressible), noise);
}
