#include "common/TestUtils.h"

using namespace QvXmlLib16;
using qvtest::ExactBuffer;
using Bytes = std::vector<unsigned char>;

// Utf16ToUnicode has always read its bytes as UTF-8, like Utf8ToUnicode.
TEST(Encoder, Utf8AndUtf16ToUnicodeDecodeUtf8) {
    Bytes longInput;
    std::wstring longExpected;
    for (int i = 0; i < 3000; ++i) {
        longInput.insert(longInput.end(), {0x78, 0xC3, 0xA9, 0xE2, 0x82, 0xAC});
        longExpected += L"x\u00e9\u20ac";
    }

    struct Case {
        const char* name;
        Bytes bytes;
        std::wstring expected;
    };

    const Case cases[] = {
        {"ASCII", {0x61, 0x62, 0x63}, L"abc"},
        {"UTF-16LE bytes are ASCII with NULs",
         {0x41, 0x00, 0x42, 0x00},
         std::wstring(L"A\0B\0", 4)},
        {"multi-byte",
         {0xC3, 0xA9, 0xE2, 0x82, 0xAC, 0xF0, 0x9F, 0x98, 0x80},
         L"\u00e9\u20ac\U0001F600"},
        {"stops at an ill-formed sequence", {0x41, 0xC3, 0x28, 0x42}, L"A"},
        {"stops at a truncated sequence", {0x41, 0xE2, 0x82}, L"A"},
        {"byte order mark is ill-formed UTF-8", {0xFF, 0xFE, 0x41, 0x00}, L""},
        {"long", longInput, longExpected},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        ExactBuffer<unsigned char> bytes(tc.bytes);
        const int length = static_cast<int>(bytes.size());
        EXPECT_EQ(CEncoder::Utf8ToUnicode(bytes.begin(), length), tc.expected);
        EXPECT_EQ(CEncoder::Utf16ToUnicode(bytes.begin(), length), tc.expected);
    }
    EXPECT_EQ(CEncoder::Utf8ToUnicode(nullptr, 0), L"");
    EXPECT_EQ(CEncoder::Utf16ToUnicode(nullptr, 0), L"");
}

TEST(Encoder, UnicodeToUtf8Binary) {
    struct Case {
        const char* name;
        std::wstring text;
        Bytes expected;
    };

    const Case cases[] = {
        {"empty", L"", {}},
        {"ASCII", L"abc", {0x61, 0x62, 0x63}},
        {"multi-byte",
         L"\u00e9\u20ac\U0001F600",
         {0xC3, 0xA9, 0xE2, 0x82, 0xAC, 0xF0, 0x9F, 0x98, 0x80}},
        {"above U+10FFFF", std::wstring{L'a', wchar_t(0x110000)}, {0x61, 0xEF, 0xBF, 0xBD}},
        {"surrogate gives nothing", std::wstring{L'A', wchar_t(0xD800), L'B'}, {}},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        const CBinaryData data = CEncoder::UnicodeToUtf8Binary(tc.text.c_str());
        EXPECT_EQ(qvtest::Bytes(data), tc.expected);
        EXPECT_EQ(data.GetLength(), tc.expected.size());
        // Sized exactly: many small values must not cost a default-sized buffer each.
        EXPECT_EQ(data.GetCapacity(), tc.expected.size());
        if (tc.expected.empty()) {
            EXPECT_EQ(data.GetData(), nullptr);
        }
    }
}
