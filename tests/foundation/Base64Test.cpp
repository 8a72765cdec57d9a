#include "common/TestUtils.h"

#include <cwchar>
#include <random>

using qvtest::ExactBuffer;
using Bytes = std::vector<unsigned char>;

namespace {

std::wstring EncodeExact(CBase64& base64, const Bytes& bytes) {
    ExactBuffer<unsigned char> input(bytes);
    return base64.Encode(input.begin(), static_cast<int>(input.size()));
}

struct Decoded {
    int count;
    Bytes out; // the whole output buffer, wcslen(text) + 1 bytes
};

// The output buffer is exactly as large as the caller must provide and starts dirty, so both
// the zeroing and any write past it show.
Decoded DecodeExact(CBase64& base64, const wchar_t* text) {
    ExactBuffer<unsigned char> out(std::wcslen(text) + 1, 0xEE);
    const int count = base64.Decode(text, out.begin());
    return {count, out.Head(out.size())};
}

Bytes Padded(Bytes bytes, size_t size) {
    bytes.resize(size, 0x00);
    return bytes;
}

} // namespace

TEST(Base64, Encode) {
    struct Case {
        const char* name;
        Bytes bytes;
        std::wstring expected;
    };

    const Case cases[] = {
        {"no bytes", {}, L""},
        {"f", {'f'}, L"Zg=="},
        {"fo", {'f', 'o'}, L"Zm8="},
        {"foo", {'f', 'o', 'o'}, L"Zm9v"},
        {"foob", {'f', 'o', 'o', 'b'}, L"Zm9vYg=="},
        {"fooba", {'f', 'o', 'o', 'b', 'a'}, L"Zm9vYmE="},
        {"foobar", {'f', 'o', 'o', 'b', 'a', 'r'}, L"Zm9vYmFy"},
        {"plus and slash", {0xFB, 0xFF}, L"+/8="},
        {"no line breaks in long output", Bytes(120, 0x00), std::wstring(160, L'A')},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        CBase64 base64;
        EXPECT_EQ(EncodeExact(base64, tc.bytes), tc.expected);
    }
    CBase64 base64;
    unsigned char some[] = {0x41};
    EXPECT_EQ(base64.Encode(nullptr, 3), L"");
    EXPECT_EQ(base64.Encode(some, -1), L"");

    // Every character of the alphabet, each in its place.
    const wchar_t alphabet[] = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    const Decoded all = DecodeExact(base64, alphabet);
    ASSERT_EQ(all.count, 48);
    EXPECT_EQ(EncodeExact(base64, Bytes(all.out.begin(), all.out.begin() + 48)), alphabet);
}

TEST(Base64, Decode) {
    struct Case {
        const char* name;
        const wchar_t* text;
        int count;
        Bytes written; // the first bytes of the output; the rest of it must be zero
    };

    const Case cases[] = {
        {"equals sign in the middle is skipped", L"QU=JD", 3, {0x41, 0x42, 0x43}},
        {"padding between groups", L"QUJD=QUJD", 6, {0x41, 0x42, 0x43, 0x41, 0x42, 0x43}},
        {"one byte", L"QQ==", 1, {0x41}},
        {"unpadded", L"QQ", 1, {0x41}},
        {"six bits make no byte", L"Q", 0, {}},
        {"white space anywhere", L" Q U\tJ\r\nD ", 3, {0x41, 0x42, 0x43}},
        {"only padding", L"====", 0, {}},
        {"foobar", L"Zm9vYmFy", 6, {'f', 'o', 'o', 'b', 'a', 'r'}},
        {"plus and slash", L"+/8=", 2, {0xFB, 0xFF}},
        // Bytes decoded before the bad character stay in the output.
        {"invalid character at the end", L"QUJD!", 0, {0x41, 0x42, 0x43}},
        {"invalid character first", L"!QUJD", 0, {}},
        {"URL-safe alphabet is invalid", L"-_", 0, {}},
        {"NUL-free control character", L"QU\vJD", 0, {0x41}},
        // A character above 127 is looked up by its low seven bits.
        {"U+00D1 reads as Q", L"\u00d1UJD", 3, {0x41, 0x42, 0x43}},
        {"U+00BD reads as an equals sign", L"QU\u00bdJD", 3, {0x41, 0x42, 0x43}},
        {"U+00A0 reads as a space", L"QU\u00a0JD", 3, {0x41, 0x42, 0x43}},
        {"U+00A1 reads as an exclamation mark", L"QUJD\u00a1", 0, {0x41, 0x42, 0x43}},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        CBase64 base64;
        const Decoded result = DecodeExact(base64, tc.text);
        EXPECT_EQ(result.count, tc.count);
        EXPECT_EQ(result.out, Padded(tc.written, std::wcslen(tc.text) + 1));
    }

    // Nothing to decode: the output is not touched at all.
    CBase64 base64;
    unsigned char out[2] = {0xEE, 0xEE};
    EXPECT_EQ(base64.Decode(L"", out), 0);
    EXPECT_EQ(out[0], 0xEE);
    EXPECT_EQ(base64.Decode(nullptr, out), 0);
    EXPECT_EQ(out[0], 0xEE);
    EXPECT_EQ(base64.Decode(L"QUJD", nullptr), 0);
}

TEST(Base64, InstanceReuseStartsClean) {
    CBase64 base64;
    // "QQ" leaves four bits over and "Q" six; neither may leak into the next call.
    EXPECT_EQ(DecodeExact(base64, L"QQ").count, 1);
    const Decoded second = DecodeExact(base64, L"QUJD");
    EXPECT_EQ(second.count, 3);
    EXPECT_EQ(second.out, (Bytes{0x41, 0x42, 0x43, 0x00, 0x00}));
    EXPECT_EQ(DecodeExact(base64, L"Q").count, 0);
    EXPECT_EQ(EncodeExact(base64, {0x41}), L"QQ==");
    EXPECT_EQ(EncodeExact(base64, {0x41, 0x42, 0x43}), L"QUJD");
    EXPECT_EQ(DecodeExact(base64, L"QUI=").out, (Bytes{0x41, 0x42, 0x00, 0x00, 0x00}));
}

TEST(Base64, BitReader) {
    struct Read {
        int bits;
        unsigned int value;
        int got;
    };

    struct Case {
        const char* name;
        Bytes input;
        std::vector<Read> reads;
    };

    const Case cases[] = {
        {"six-bit groups of one byte", {0x41}, {{6, 16, 6}, {6, 16, 2}, {6, 0, 0}}},
        {"six-bit groups of three bytes",
         {0x41, 0x42, 0x43},
         {{6, 16, 6}, {6, 20, 6}, {6, 9, 6}, {6, 3, 6}, {6, 0, 0}}},
        {"bytes and nibbles", {0xDE, 0xAD}, {{8, 0xDE, 8}, {4, 0xA, 4}, {8, 0xD0, 4}, {3, 0, 0}}},
        {"single bits", {0xA0}, {{1, 1, 1}, {1, 0, 1}, {1, 1, 1}, {1, 0, 1}, {4, 0, 4}}},
        {"empty input", {}, {{6, 0, 0}}},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        ExactBuffer<unsigned char> input(tc.input);
        CBase64 reader;
        reader.SetInput(input.begin(), static_cast<int>(input.size()));
        int index = 0;
        for (size_t i = 0; i < tc.reads.size(); ++i) {
            SCOPED_TRACE("read " + std::to_string(i));
            int got = -1;
            const unsigned int value = reader.Read(tc.reads[i].bits, &got, index);
            EXPECT_EQ(got, tc.reads[i].got);
            EXPECT_EQ(value, tc.reads[i].value);
        }
        EXPECT_EQ(index, static_cast<int>(tc.input.size()));
    }
}

TEST(Base64, BitWriter) {
    struct Write {
        unsigned int value;
        int bits;
    };

    struct Case {
        const char* name;
        std::vector<Write> writes;
        Bytes out;
    };

    const Case cases[] = {
        {"four six-bit groups", {{16, 6}, {20, 6}, {9, 6}, {3, 6}}, {0x41, 0x42, 0x43}},
        {"two nibbles", {{0xA, 4}, {0xB, 4}}, {0xAB}},
        {"only the low bits count", {{0x1F, 4}, {0xF0, 4}}, {0xF0}},
        {"left-over bits are not written", {{0xFF, 8}, {5, 3}}, {0xFF}},
        {"whole bytes", {{0x12, 8}, {0x34, 8}}, {0x12, 0x34}},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        CBase64 writer;
        writer.SetInput(nullptr, 0);
        ExactBuffer<unsigned char> out(tc.out.size(), 0xEE);
        int index = 0;
        for (const Write& w : tc.writes)
            writer.Write(w.value, w.bits, out.begin(), index);
        EXPECT_EQ(index, static_cast<int>(tc.out.size()));
        EXPECT_EQ(out.Head(out.size()), tc.out);
    }

    // SetInput clears bits the writer still held.
    CBase64 writer;
    ExactBuffer<unsigned char> out(1);
    int index = 0;
    writer.Write(1, 3, out.begin(), index);
    writer.SetInput(nullptr, 0);
    writer.Write(0xAB, 8, out.begin(), index);
    EXPECT_EQ(index, 1);
    EXPECT_EQ(out.Head(1), (Bytes{0xAB}));
}

TEST(Base64, RoundTripOfRandomData) {
    std::mt19937 random(20240611);
    std::vector<size_t> lengths;
    for (size_t n = 0; n <= 300; ++n)
        lengths.push_back(n);
    for (size_t n : {1023u, 1024u, 1025u, 4096u, 65537u})
        lengths.push_back(n);
    for (size_t n : lengths) {
        SCOPED_TRACE(n);
        Bytes data(n);
        for (unsigned char& b : data)
            b = static_cast<unsigned char>(random());
        CBase64 base64;
        const std::wstring text = EncodeExact(base64, data);
        ASSERT_EQ(text.size(), (n + 2) / 3 * 4);
        ASSERT_EQ(text.find_first_not_of(
                      L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/="),
                  std::wstring::npos);
        const Decoded back = DecodeExact(base64, text.c_str());
        ASSERT_EQ(back.count, static_cast<int>(n));
        EXPECT_EQ(Bytes(back.out.begin(), back.out.begin() + n), data);
    }
}
