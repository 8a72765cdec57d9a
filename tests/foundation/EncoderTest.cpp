#include "common/TestUtils.h"

using namespace QvXmlLib16;
using qvtest::ExactBuffer;
using Bytes = std::vector<unsigned char>;

namespace {

struct DecodeCase {
    const char* name;
    Bytes bytes;
    std::wstring expected;
};

} // namespace

TEST(Encoder, Utf8ToUnicode) {
    Bytes longInput;
    std::wstring longExpected;
    for (int i = 0; i < 3000; ++i) {
        longInput.insert(longInput.end(), {0x78, 0xC3, 0xA9, 0xE2, 0x82, 0xAC});
        longExpected += L"x\u00e9\u20ac";
    }
    const DecodeCase cases[] = {
        {"ASCII", {0x61, 0x62, 0x63}, L"abc"},
        {"ASCII with NUL", {0x61, 0x00, 0x62}, std::wstring(L"a\0b", 3)},
        {"multi-byte",
         {0xC3, 0xA9, 0xE2, 0x82, 0xAC, 0xF0, 0x9F, 0x98, 0x80},
         L"\u00e9\u20ac\U0001F600"},
        {"stops at an ill-formed sequence", {0x41, 0xC3, 0x28, 0x42}, L"A"},
        {"stops at a truncated sequence", {0x41, 0xE2, 0x82}, L"A"},
        {"nothing well-formed", {0xFF, 0x41}, L""},
        {"long", longInput, longExpected},
    };
    for (const DecodeCase& tc : cases) {
        SCOPED_TRACE(tc.name);
        ExactBuffer<unsigned char> bytes(tc.bytes);
        EXPECT_EQ(CEncoder::Utf8ToUnicode(bytes.begin(), static_cast<int>(bytes.size())),
                  tc.expected);
    }
    EXPECT_EQ(CEncoder::Utf8ToUnicode(nullptr, 0), L"");
}

TEST(Encoder, Utf16ToUnicodeDecodesUtf8) {
    const DecodeCase cases[] = {
        {"ASCII", {0x61, 0x62, 0x63}, L"abc"},
        {"UTF-8 bytes", {0xC3, 0xA9}, L"\u00e9"},
        {"UTF-16LE bytes read as UTF-8", {0x41, 0x00, 0x42, 0x00}, std::wstring(L"A\0B\0", 4)},
        {"byte order mark is ill-formed UTF-8", {0xFF, 0xFE, 0x41, 0x00}, L""},
    };
    for (const DecodeCase& tc : cases) {
        SCOPED_TRACE(tc.name);
        ExactBuffer<unsigned char> bytes(tc.bytes);
        EXPECT_EQ(CEncoder::Utf16ToUnicode(bytes.begin(), static_cast<int>(bytes.size())),
                  tc.expected);
    }
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
        {"surrogate first", std::wstring{wchar_t(0xDC00)}, {}},
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
