#include "common/TestUtils.h"

using namespace QvXmlLib16;
using WS = CWhitespaceUtils;

namespace {

struct TextCase {
    const char* name;
    std::wstring input;
    std::wstring expected;
};

} // namespace

TEST(WhitespaceUtils, IsWhiteSpace) {
    const wchar_t yes[] = {L' ', L'\t', L'\r', L'\n'};
    const wchar_t no[] = {L'a', L'\0', L'\v', L'\f', L'\u00a0', L'\u0085', L'\u2028', L'\u3000'};
    for (wchar_t c : yes) {
        SCOPED_TRACE(static_cast<int>(c));
        EXPECT_TRUE(WS::IsWhiteSpace(c));
    }
    for (wchar_t c : no) {
        SCOPED_TRACE(static_cast<int>(c));
        EXPECT_FALSE(WS::IsWhiteSpace(c));
    }
}

TEST(WhitespaceUtils, Preserve) {
    const TextCase cases[] = {
        {"CR LF pair", L"a\r\nb", L"a\nb"},
        {"CR then CR LF", L"a\r\r\nb", L"a\n\nb"},
        {"lone CR", L"a\rb", L"a\nb"},
        {"only CR", L"\r", L"\n"},
        {"trailing CR", L"ab\r", L"ab\n"},
        {"two pairs", L"\r\n\r\n", L"\n\n"},
        {"LF then CR", L"\n\r", L"\n\n"},
        {"tabs and spaces untouched", L" a\tb\n ", L" a\tb\n "},
        {"empty", L"", L""},
        {"non-ASCII kept", L"\u00e9\r\n\U0001F600", L"\u00e9\n\U0001F600"},
    };
    for (const TextCase& tc : cases) {
        SCOPED_TRACE(tc.name);
        EXPECT_EQ(WS::Preserve(tc.input), tc.expected);
        EXPECT_EQ(WS::Preserve(tc.input.c_str(), static_cast<int>(tc.input.size())), tc.expected);
    }
    // The pointer form reads exactly len characters.
    qvtest::ExactBuffer<wchar_t> prefix(std::vector<wchar_t>{L'a', L'\r', L'\n', L'b', L'\r'});
    EXPECT_EQ(WS::Preserve(prefix.begin(), 4), L"a\nb");
    EXPECT_EQ(WS::Preserve(prefix.begin(), 5), L"a\nb\n");
    EXPECT_EQ(WS::Preserve(prefix.begin(), 2), L"a\n");
}

TEST(WhitespaceUtils, Replace) {
    const TextCase cases[] = {
        {"CR LF pair is one space", L"a\r\nb", L"a b"},
        {"two CRs are two spaces", L"a\r\rb", L"a  b"},
        {"TAB and LF", L"a\tb\nc", L"a b c"},
        {"two pairs", L"\r\n\r\n", L"  "},
        {"LF then CR", L"\n\r", L"  "},
        {"lone CR", L"\r", L" "},
        {"CR CR LF", L"x\r\r\ny", L"x  y"},
        {"spaces untouched", L" a  b ", L" a  b "},
        {"nothing to replace", L"abc", L"abc"},
        {"empty", L"", L""},
        {"other controls untouched", L"a\vb\u00a0", L"a\vb\u00a0"},
    };
    for (const TextCase& tc : cases) {
        SCOPED_TRACE(tc.name);
        EXPECT_EQ(WS::Replace(tc.input), tc.expected);
    }
}

TEST(WhitespaceUtils, Collapse) {
    const TextCase cases[] = {
        {"mixed runs", L"  a \t\n b  ", L"a b"},
        {"only spaces", L"   ", L""},
        {"only TAB", L"\t", L""},
        {"empty", L"", L""},
        {"single character", L"a", L"a"},
        {"CR LF is whitespace", L"\r\na\r\nb\r\n", L"a b"},
        {"inner runs", L"a  b   c", L"a b c"},
        {"one trailing space", L"ab ", L"ab"},
        {"one leading space", L" a", L"a"},
        {"no-break space is not whitespace", L" a\u00a0 b", L"a\u00a0 b"},
        {"already collapsed", L"a b", L"a b"},
    };
    for (const TextCase& tc : cases) {
        SCOPED_TRACE(tc.name);
        EXPECT_EQ(WS::Collapse(tc.input), tc.expected);
    }
}

TEST(WhitespaceUtils, ApplyRule) {
    const std::wstring input = L" a\r\n\tb ";

    struct Case {
        WS::WhitespaceRule rule;
        std::wstring expected;
    };

    const Case cases[] = {
        {WS::WhitespaceRule(0), L" a\r\n\tb "},
        {WS::WhitespaceRule(1), L" a\n\tb "},
        {WS::WhitespaceRule(2), L" a  b "},
        {WS::WhitespaceRule(3), L"a b"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(static_cast<int>(tc.rule));
        EXPECT_EQ(WS::ApplyRule(tc.rule, input), tc.expected);
    }
    // Generated code stores the rule as a number, so any int can arrive.
    for (int bad : {4, -1, 100}) {
        SCOPED_TRACE(bad);
        qvtest::ExpectThrowMsg<CQvException>(
            [&] { WS::ApplyRule(static_cast<WS::WhitespaceRule>(bad), input); },
            L"Unknown WhitespaceRule");
    }
}
