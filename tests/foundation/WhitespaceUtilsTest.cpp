#include "common/TestUtils.h"

using namespace QvXmlLib16;
using WS = CWhitespaceUtils;

TEST(WhitespaceUtils, IsWhiteSpace) {
    for (wchar_t c : {L' ', L'\t', L'\r', L'\n'}) {
        SCOPED_TRACE(static_cast<int>(c));
        EXPECT_TRUE(WS::IsWhiteSpace(c));
    }
    for (wchar_t c : {L'a', L'\0', L'\v', L'\f', L'\u00a0', L'\u0085', L'\u2028', L'\u3000'}) {
        SCOPED_TRACE(static_cast<int>(c));
        EXPECT_FALSE(WS::IsWhiteSpace(c));
    }
}

// Each input with what preserve, replace and collapse make of it; the rule numbers as generated
// code stores them pick the same functions.
TEST(WhitespaceUtils, Rules) {
    struct Case {
        const char* name;
        std::wstring input, preserve, replace, collapse;
    };

    const Case cases[] = {
        {"empty", L"", L"", L"", L""},
        {"nothing to change", L"a b", L"a b", L"a b", L"a b"},
        {"CR LF pair", L"a\r\nb", L"a\nb", L"a b", L"a b"},
        {"CR then CR LF", L"x\r\r\ny", L"x\n\ny", L"x  y", L"x y"},
        {"lone CR, trailing", L"ab\r", L"ab\n", L"ab ", L"ab"},
        {"LF then CR", L"\n\r", L"\n\n", L"  ", L""},
        {"two pairs", L"\r\n\r\n", L"\n\n", L"  ", L""},
        {"mixed runs", L"  a \t\n b  ", L"  a \t\n b  ", L"  a    b  ", L"a b"},
        {"inner runs", L"a  b   c", L"a  b   c", L"a  b   c", L"a b c"},
        {"one leading space", L" a", L" a", L" a", L"a"},
        {"only TAB", L"\t", L"\t", L" ", L""},
        {"other controls and no-break space kept", L" a\v\u00a0 b", L" a\v\u00a0 b",
         L" a\v\u00a0 b", L"a\v\u00a0 b"},
        {"non-ASCII kept", L"\u00e9\r\n\U0001F600", L"\u00e9\n\U0001F600", L"\u00e9 \U0001F600",
         L"\u00e9 \U0001F600"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        EXPECT_EQ(WS::Preserve(tc.input), tc.preserve);
        EXPECT_EQ(WS::Preserve(tc.input.c_str(), static_cast<int>(tc.input.size())), tc.preserve);
        EXPECT_EQ(WS::Replace(tc.input), tc.replace);
        EXPECT_EQ(WS::Collapse(tc.input), tc.collapse);
        EXPECT_EQ(WS::ApplyRule(WS::WhitespaceRule(0), tc.input), tc.input);
        EXPECT_EQ(WS::ApplyRule(WS::WhitespaceRule(1), tc.input), tc.preserve);
        EXPECT_EQ(WS::ApplyRule(WS::WhitespaceRule(2), tc.input), tc.replace);
        EXPECT_EQ(WS::ApplyRule(WS::WhitespaceRule(3), tc.input), tc.collapse);
    }
    // The pointer form reads exactly len characters.
    qvtest::ExactBuffer<wchar_t> prefix(std::vector<wchar_t>{L'a', L'\r', L'\n', L'b', L'\r'});
    EXPECT_EQ(WS::Preserve(prefix.begin(), 5), L"a\nb\n");
    EXPECT_EQ(WS::Preserve(prefix.begin(), 2), L"a\n");
    // Generated code stores the rule as a number, so any int can arrive.
    for (int bad : {4, -1, 100}) {
        SCOPED_TRACE(bad);
        qvtest::ExpectThrowMsg<CQvException>(
            [&] { WS::ApplyRule(static_cast<WS::WhitespaceRule>(bad), L"a"); },
            L"Unknown WhitespaceRule");
    }
}
