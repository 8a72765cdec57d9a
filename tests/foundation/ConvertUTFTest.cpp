#include "common/TestUtils.h"

#include <algorithm>
#include <deque>

using qvtest::ExactBuffer;
using Bytes = std::vector<unsigned char>;
using Units16 = std::vector<char16_t>;
using Units32 = std::vector<wchar_t>;

namespace {

constexpr long kExact = -1;

template <class Src, class Dst>
struct ConvCase {
    const char* name;
    std::vector<Src> source;
    std::vector<Dst> written;
    long targetSize = kExact; // kExact: room for exactly what is written
    long counted = kExact;    // kExact: the counting call answers written.size()
};

// Source and target are exact-size heap arrays, so a read or write past either end is an
// AddressSanitizer error rather than a silent pass.
template <class Src, class Dst, class Fn>
void RunCases(Fn convert, const std::vector<ConvCase<Src, Dst>>& cases) {
    const Dst untouched = static_cast<Dst>(0xAA);
    for (const auto& tc : cases) {
        SCOPED_TRACE(tc.name);
        ExactBuffer<Src> source(tc.source);
        const size_t targetSize = tc.targetSize == kExact ? tc.written.size() : tc.targetSize;
        ExactBuffer<Dst> target(targetSize, untouched);
        const unsigned long written =
            convert(source.begin(), source.end(), target.begin(), target.end());
        ASSERT_EQ(written, tc.written.size());
        EXPECT_EQ(target.Head(written), tc.written);
        EXPECT_TRUE(std::all_of(target.begin() + written, target.end(), [&](Dst unit) {
            return unit == untouched;
        })) << "a unit beyond the count was written";

        const unsigned long counted = convert(source.begin(), source.end(), nullptr, nullptr);
        EXPECT_EQ(counted,
                  tc.counted == kExact ? tc.written.size() : static_cast<size_t>(tc.counted));
    }
}

// The prefix "A" and suffix "B" around an ill-formed UTF-8 sequence: only the "A" comes out.
ConvCase<unsigned char, wchar_t> BadUtf8(const char* name, Bytes bad, bool atEnd = false) {
    Bytes source{0x41};
    source.insert(source.end(), bad.begin(), bad.end());
    if (!atEnd)
        source.push_back(0x42);
    return {name, source, {0x41}};
}

} // namespace

TEST(ConvertUTF, Utf32ToUtf8) {
    RunCases<wchar_t, unsigned char>(
        ConvertUTF32toUTF8,
        {
            {"one to four bytes, at each bound",
             {0x7F, 0x80, 0x7FF, 0x800, 0xD7FF, 0xE000, 0xFFFF, 0x10000, 0x10FFFF},
             {0x7F, 0xC2, 0x80, 0xDF, 0xBF, 0xE0, 0xA0, 0x80, 0xED, 0x9F, 0xBF, 0xEE, 0x80,
              0x80, 0xEF, 0xBF, 0xBF, 0xF0, 0x90, 0x80, 0x80, 0xF4, 0x8F, 0xBF, 0xBF}},
            {"NUL is a character", {0x41, 0x0, 0x42}, {0x41, 0x00, 0x42}},
            {"empty", {}, {}},
            {"above U+10FFFF becomes U+FFFD",
             {0x41, 0x110000, 0x42},
             {0x41, 0xEF, 0xBF, 0xBD, 0x42}},
            {"negative unit is above U+10FFFF", {wchar_t(-1)}, {0xEF, 0xBF, 0xBD}},
            {"high surrogate ends", {0x41, 0xD800, 0x42}, {0x41}, kExact, 0},
            {"low surrogate first", {0xDFFF, 0x41}, {}, kExact, 0},
            {"no room at all", {0x61, 0xE9, 0x20AC}, {}, 0, 6},
            {"two-byte character does not fit", {0x61, 0xE9, 0x20AC}, {0x61}, 2, 6},
            {"three-byte character does not fit", {0x61, 0xE9, 0x20AC}, {0x61, 0xC3, 0xA9}, 5, 6},
            {"four-byte character does not fit", {0x1F600}, {}, 3, 4},
            {"replacement character does not fit", {0x110000}, {}, 2, 3},
        });
}

// Long ASCII runs go sixteen characters at a time: one character that is not ASCII in any lane
// of any block, and a target that ends inside a block, must come out as they do one by one.
TEST(ConvertUTF, Utf32ToUtf8AsciiRuns) {
    struct Odd {
        wchar_t unit;
        Bytes encoded;
    };

    const Odd odds[] = {
        {0x80, {0xC2, 0x80}}, {wchar_t(-1), {0xEF, 0xBF, 0xBD}}, {wchar_t(0x100), {0xC4, 0x80}}};
    std::vector<ConvCase<wchar_t, unsigned char>> cases;
    std::deque<std::string> names; // the cases point into it: it must not move them
    for (const Odd& odd : odds) {
        for (size_t at = 0; at < 40; ++at) {
            Units32 source;
            Bytes written;
            for (size_t i = 0; i < 40; ++i) {
                const wchar_t ascii = static_cast<wchar_t>(0x21 + (i * 7) % 94);
                source.push_back(i == at ? odd.unit : ascii);
                if (i == at)
                    written.insert(written.end(), odd.encoded.begin(), odd.encoded.end());
                else
                    written.push_back(static_cast<unsigned char>(ascii));
            }
            names.push_back("unit " + std::to_string(unsigned(odd.unit)) + " at "
                            + std::to_string(at));
            cases.push_back({names.back().c_str(), source, written});
        }
    }
    Units32 ascii(40);
    for (size_t i = 0; i < ascii.size(); ++i)
        ascii[i] = static_cast<wchar_t>(L'a' + i % 26);
    for (long room = 0; room <= 40; ++room) {
        names.push_back("room for " + std::to_string(room));
        Bytes written(ascii.begin(), ascii.begin() + room);
        cases.push_back({names.back().c_str(), ascii, written, room, 40});
    }
    RunCases<wchar_t, unsigned char>(ConvertUTF32toUTF8, cases);
}

TEST(ConvertUTF, Utf8ToUtf32) {
    RunCases<unsigned char, wchar_t>(
        ConvertUTF8toUTF32,
        {
            {"ASCII", {0x41, 0x00, 0x7F}, {0x41, 0x00, 0x7F}},
            {"two bytes", {0xC2, 0x80, 0xC3, 0xA9, 0xDF, 0xBF}, {0x80, 0xE9, 0x7FF}},
            {"three bytes",
             {0xE0, 0xA0, 0x80, 0xE2, 0x82, 0xAC, 0xED, 0x9F, 0xBF, 0xEF, 0xBF, 0xBF},
             {0x800, 0x20AC, 0xD7FF, 0xFFFF}},
            {"four bytes",
             {0xF0, 0x90, 0x80, 0x80, 0xF0, 0x9F, 0x98, 0x80, 0xF4, 0x8F, 0xBF, 0xBF},
             {0x10000, 0x1F600, 0x10FFFF}},
            {"empty", {}, {}},
            BadUtf8("lone continuation byte", {0x80}),
            BadUtf8("overlong two-byte C0", {0xC0, 0x80}),
            BadUtf8("overlong three-byte U+07FF", {0xE0, 0x9F, 0xBF}),
            BadUtf8("overlong four-byte U+FFFF", {0xF0, 0x8F, 0xBF, 0xBF}),
            BadUtf8("encoded high surrogate", {0xED, 0xA0, 0x80}),
            BadUtf8("above U+10FFFF", {0xF4, 0x90, 0x80, 0x80}),
            BadUtf8("lead byte F5", {0xF5, 0x80, 0x80, 0x80}),
            BadUtf8("five-byte form", {0xF8, 0x88, 0x80, 0x80, 0x80}),
            BadUtf8("byte FF", {0xFF}),
            BadUtf8("ASCII where a continuation belongs", {0xC3}),
            BadUtf8("bad third of four", {0xF0, 0x9F, 0x41, 0x80}),
            BadUtf8("truncated two-byte at the end", {0xC3}, true),
            BadUtf8("truncated four-byte at the end", {0xF0, 0x9F, 0x98}, true),
            {"no room at all", {0x61, 0xC3, 0xA9, 0xF0, 0x9F, 0x98, 0x80}, {}, 0, 3},
            {"room for two", {0x61, 0xC3, 0xA9, 0xF0, 0x9F, 0x98, 0x80}, {0x61, 0xE9}, 2, 3},
        });
}

TEST(ConvertUTF, Utf32ToUtf16) {
    RunCases<wchar_t, char16_t>(
        ConvertUTF32toUTF16,
        {
            {"BMP", {0x41, 0xD7FF, 0xE000, 0xFFFF}, {0x41, 0xD7FF, 0xE000, 0xFFFF}},
            {"first pair", {0x10000}, {0xD800, 0xDC00}},
            {"emoji", {0x1F600}, {0xD83D, 0xDE00}},
            {"last pair", {0x10FFFF}, {0xDBFF, 0xDFFF}},
            {"empty", {}, {}},
            {"high surrogate ends", {0x41, 0xD800, 0x42}, {0x41}, kExact, 0},
            {"above U+10FFFF ends", {0x41, 0x110000, 0x42}, {0x41}, kExact, 0},
            {"negative unit ends", {wchar_t(-1)}, {}, kExact, 0},
            {"pair needs two units", {0x41, 0x1F600}, {0x41}, 2, 3},
            {"no room for half a pair", {0x1F600}, {}, 1, 2},
            {"no room at all", {0x41}, {}, 0, 1},
        });
}

TEST(ConvertUTF, Utf16ToUtf32) {
    RunCases<char16_t, wchar_t>(
        ConvertUTF16toUTF32,
        {
            {"BMP", {0x41, 0xE9, 0xE000, 0xFFFF}, {0x41, 0xE9, 0xE000, 0xFFFF}},
            {"pairs",
             {0xD800, 0xDC00, 0xD83D, 0xDE00, 0xDBFF, 0xDFFF},
             {0x10000, 0x1F600, 0x10FFFF}},
            {"empty", {}, {}},
            {"high surrogate at the end", {0x41, 0xD800}, {0x41}},
            {"high surrogate before a letter", {0x41, 0xD800, 0x42}, {0x41}},
            {"lone low surrogate", {0x41, 0xDC00, 0x42}, {0x41}},
            {"pair reversed", {0xDE00, 0xD83D}, {}},
            {"room for one", {0x41, 0xD83D, 0xDE00}, {0x41}, 1, 2},
        });
}

TEST(ConvertUTF, Utf16ToUtf8) {
    RunCases<char16_t, unsigned char>(ConvertUTF16toUTF8,
                                      {
                                          {"one to three bytes",
                                           {0x41, 0xE9, 0x20AC, 0xFFFF},
                                           {0x41, 0xC3, 0xA9, 0xE2, 0x82, 0xAC, 0xEF, 0xBF, 0xBF}},
                                          {"pair", {0xD83D, 0xDE00}, {0xF0, 0x9F, 0x98, 0x80}},
                                          {"empty", {}, {}},
                                          {"high surrogate at the end", {0x41, 0xD800}, {0x41}},
                                          {"four bytes need four", {0xD83D, 0xDE00}, {}, 3, 4},
                                          {"two bytes need two", {0x41, 0xE9}, {0x41}, 2, 3},
                                      });
}

TEST(ConvertUTF, Utf8ToUtf16) {
    RunCases<unsigned char, char16_t>(
        ConvertUTF8toUTF16,
        {
            {"BMP", {0x41, 0xC3, 0xA9, 0xEF, 0xBF, 0xBF}, {0x41, 0xE9, 0xFFFF}},
            {"pairs",
             {0xF0, 0x9F, 0x98, 0x80, 0xF4, 0x8F, 0xBF, 0xBF},
             {0xD83D, 0xDE00, 0xDBFF, 0xDFFF}},
            {"empty", {}, {}},
            {"encoded surrogate", {0x41, 0xED, 0xA0, 0x80, 0x42}, {0x41}},
            {"truncated at the end", {0x41, 0xF0, 0x9F}, {0x41}},
            {"no room for half a pair", {0xF0, 0x9F, 0x98, 0x80}, {}, 1, 2},
            {"pair after a letter", {0x41, 0xF0, 0x9F, 0x98, 0x80}, {0x41}, 2, 3},
        });
}

TEST(ConvertUTF, LengthWrappers) {
    // The wrappers in the four-pointer shape, so the same exact-size checks apply.
    RunCases<wchar_t, unsigned char>(
        [](const wchar_t* b, const wchar_t* e, unsigned char* tb, unsigned char* te) {
            return UnicodeToUTF8(b, e - b, tb, te - tb);
        },
        {{"UnicodeToUTF8", {0x61, 0xE9, 0x1F600}, {0x61, 0xC3, 0xA9, 0xF0, 0x9F, 0x98, 0x80}},
         {"UnicodeToUTF8 short", {0x61, 0xE9, 0x1F600}, {0x61, 0xC3, 0xA9}, 6, 7}});
    RunCases<unsigned char, wchar_t>(
        [](const unsigned char* b, const unsigned char* e, wchar_t* tb, wchar_t* te) {
            return UTF8ToUnicode(const_cast<unsigned char*>(b), e - b, tb, te - tb);
        },
        {{"UTF8ToUnicode", {0x61, 0xC3, 0xA9, 0xF0, 0x9F, 0x98, 0x80}, {0x61, 0xE9, 0x1F600}},
         {"UTF8ToUnicode short", {0x61, 0xC3, 0xA9, 0xF0, 0x9F, 0x98, 0x80}, {0x61, 0xE9}, 2, 3}});
    RunCases<wchar_t, char16_t>(
        [](const wchar_t* b, const wchar_t* e, char16_t* tb, char16_t* te) {
            return UnicodeToUTF16(b, e - b, reinterpret_cast<unsigned char*>(tb), te - tb);
        },
        {{"UnicodeToUTF16", {0x41, 0x1F600}, {0x41, 0xD83D, 0xDE00}},
         {"UnicodeToUTF16 short", {0x41, 0x1F600}, {0x41}, 2, 3}});
    RunCases<char16_t, wchar_t>(
        [](const char16_t* b, const char16_t* e, wchar_t* tb, wchar_t* te) {
            auto* bytes = reinterpret_cast<unsigned char*>(const_cast<char16_t*>(b));
            return UTF16ToUnicode(bytes, e - b, tb, te - tb);
        },
        {{"UTF16ToUnicode", {0x41, 0xD83D, 0xDE00}, {0x41, 0x1F600}},
         {"UTF16ToUnicode short", {0x41, 0xD83D, 0xDE00}, {0x41}, 1, 2}});

    // The UTF-16 wrappers work on bytes holding units in host (little-endian) order.
    const wchar_t text[] = L"A\U0001F600";
    ExactBuffer<unsigned char> units(6);
    ASSERT_EQ(UnicodeToUTF16(text, 2, units.begin(), 3), 3u);
    EXPECT_EQ(units.Head(6), (Bytes{0x41, 0x00, 0x3D, 0xD8, 0x00, 0xDE}));
}

TEST(ConvertUTF, LegalityChecks) {
    struct Case {
        Bytes bytes;
        int length; // for IsLegalUTF8; IsLegalUTF8Sequence reads up to the end of bytes
        bool legal, legalSequence;
    };

    const Case cases[] = {
        {{0x41}, 1, true, true},
        {{0x80}, 1, false, false},
        {{0xC1, 0xBF}, 2, false, false},
        {{0xC2, 0x80}, 2, true, true},
        {{0xC3, 0x41}, 2, false, false},
        {{0xE0, 0x9F, 0xBF}, 3, false, false},
        {{0xE0, 0xA0, 0x80}, 3, true, true},
        {{0xED, 0x9F, 0xBF}, 3, true, true},
        {{0xED, 0xA0, 0x80}, 3, false, false},
        {{0xE2, 0x82, 0x41}, 3, false, false},
        {{0xF0, 0x8F, 0xBF, 0xBF}, 4, false, false},
        {{0xF0, 0x90, 0x80, 0x80}, 4, true, true},
        {{0xF4, 0x8F, 0xBF, 0xBF}, 4, true, true},
        {{0xF4, 0x90, 0x80, 0x80}, 4, false, false},
        {{0xF5, 0x80, 0x80, 0x80}, 4, false, false},
        {{0xF8, 0x88, 0x80, 0x80, 0x80}, 5, false, false},
        // IsLegalUTF8 trusts the length it is given; the sequence form takes it from the lead
        // byte, refuses what the buffer cuts short and ignores what follows.
        {{0xE2, 0x82}, 2, true, false},
        {{0xC3, 0xA9, 0xFF}, 2, true, true},
    };
    for (const Case& tc : cases) {
        std::string name;
        for (unsigned char b : tc.bytes)
            name += std::to_string(b) + " ";
        SCOPED_TRACE(name);
        ExactBuffer<unsigned char> bytes(tc.bytes);
        EXPECT_EQ(IsLegalUTF8(bytes.begin(), tc.length), tc.legal);
        EXPECT_EQ(IsLegalUTF8Sequence(bytes.begin(), bytes.end()), tc.legalSequence);
    }
}

TEST(ConvertUTF, ScanForCharactersAboveAscii) {
    // Only the first len units count; a null text of length 0 holds none.
    const Units32 wide{0x61, 0x7F, 0x80, 0x1F600};
    ExactBuffer<wchar_t> text(wide);
    EXPECT_FALSE(DoesUnicodeStrContainAnyUTF8CharsLargerThanOneByte(text.begin(), 2));
    EXPECT_TRUE(DoesUnicodeStrContainAnyUTF8CharsLargerThanOneByte(text.begin(), 3));
    EXPECT_TRUE(DoesUnicodeStrContainAnyUTF8CharsLargerThanOneByte(text.begin() + 3, 1));
    EXPECT_FALSE(DoesUnicodeStrContainAnyUTF8CharsLargerThanOneByte(nullptr, 0));

    ExactBuffer<unsigned char> bytes(Bytes{0x61, 0x7F, 0xC3, 0xA9});
    EXPECT_FALSE(DoesUTF8StrContainAnyCharsLargerThanOneByte(bytes.begin(), 2));
    EXPECT_TRUE(DoesUTF8StrContainAnyCharsLargerThanOneByte(bytes.begin(), 3));
    EXPECT_TRUE(DoesUTF8StrContainAnyCharsLargerThanOneByte(bytes.begin() + 3, 1));
    EXPECT_FALSE(DoesUTF8StrContainAnyCharsLargerThanOneByte(nullptr, 0));
}
