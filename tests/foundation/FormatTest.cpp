#include "common/TestUtils.h"

#include <climits>
#include <clocale>
#include <cstdarg>
#include <unistd.h>

using namespace QvXmlLib16;

namespace {

std::wstring ThroughFormatV(const wchar_t* format, ...) {
    va_list args;
    va_start(args, format);
    std::wstring out = FormatV(format, args);
    va_end(args);
    return out;
}

// A text long enough to overrun any fixed estimate, with a non-repeating tail so a cut shows.
std::wstring LongText(size_t length, wchar_t first) {
    std::wstring s(length, first);
    for (size_t i = 0; i < length; i += 997)
        s[i] = static_cast<wchar_t>(L'a' + (i / 997) % 26);
    s[length - 1] = L'Z';
    return s;
}

struct FormatCase {
    const char* name;
    std::wstring actual;
    std::wstring expected;
};

void Check(const std::vector<FormatCase>& cases) {
    for (const FormatCase& tc : cases) {
        SCOPED_TRACE(tc.name);
        EXPECT_EQ(tc.actual.size(), tc.expected.size());
        EXPECT_EQ(tc.actual, tc.expected);
    }
}

class LocaleGuard {
public:
    LocaleGuard() : m_saved(std::setlocale(LC_CTYPE, nullptr)) {}

    ~LocaleGuard() { std::setlocale(LC_CTYPE, m_saved.c_str()); }

private:
    std::string m_saved;
};

} // namespace

TEST(Format, FormatStringConversions) {
    Check({
        {"wide string and int", FormatString(L"%ls: %d", L"x", 5), L"x: 5"},
        {"empty format", FormatString(L""), L""},
        {"plain text", FormatString(L"no conversions"), L"no conversions"},
        {"doubled percent", FormatString(L"100%% of %d%%", 7), L"100% of 7%"},
        {"percent before n is text", FormatString(L"%%n"), L"%n"},
        {"wide character above ASCII", FormatString(L"[%lc]", L'\u00e9'), L"[\u00e9]"},
        {"narrow character", FormatString(L"[%c]", 'q'), L"[q]"},
        {"non-ASCII wide string", FormatString(L"<%ls>", L"\u00e9\u20ac\U0001F600"),
         L"<\u00e9\u20ac\U0001F600>"},
        {"empty wide string", FormatString(L"[%ls]", L""), L"[]"},
        {"null wide string", FormatString(L"[%ls]", static_cast<const wchar_t*>(nullptr)),
         L"[(null)]"},
        {"negative and width", FormatString(L"[%d|%5d|%-5d|%05d]", -12, 42, 42, -42),
         L"[-12|   42|42   |-0042]"},
        {"long long", FormatString(L"%lld", -9223372036854775807LL - 1), L"-9223372036854775808"},
        {"unsigned and hex", FormatString(L"%u %x %X %o", 4294967295u, 255, 48879, 8),
         L"4294967295 ff BEEF 10"},
        {"width from the arguments", FormatString(L"[%*d]", 6, 42), L"[    42]"},
        {"precision from the arguments", FormatString(L"[%.*ls]", 3, L"abcdef"), L"[abc]"},
        {"string width and precision", FormatString(L"[%8.2ls|%-4ls]", L"wxyz", L"k"),
         L"[      wx|k   ]"},
        {"sixteen significant digits", FormatString(L"%.16g", 1.0 / 3.0), L"0.3333333333333333"},
        {"fixed", FormatString(L"%f|%.2f|%10.3f", 1.5, -2.346, 3.14159),
         L"1.500000|-2.35|     3.142"},
        {"exponent", FormatString(L"%e|%G", 12345.678, 0.00001), L"1.234568e+04|1E-05"},
        {"alternate form", FormatString(L"%#x|%#o", 255, 8), L"0xff|010"},
        {"null pointer", FormatString(L"%p", static_cast<void*>(nullptr)), L"(nil)"},
    });
}

TEST(Format, PercentNIsLiteralText) {
    Check({
        {"file template",
         FormatString(L"Failed to get the size of the file [%ls] Error [%n]", L"a.xml"),
         L"Failed to get the size of the file [a.xml] Error [%n]"},
        {"alone", FormatString(L"%n"), L"%n"},
        {"after an int", FormatString(L"%d%n", 5), L"5%n"},
        {"twice, between conversions", FormatString(L"%n%ls%n%d", L"x", 3), L"%nx%n3"},
        {"through FormatV", ThroughFormatV(L"[%ls] Error [%n]", L"b.xml"), L"[b.xml] Error [%n]"},
    });
}

TEST(Format, LongArgumentsAreNeverCut) {
    const std::wstring big = LongText(100000, L'x');
    const std::wstring other = LongText(70001, L'\u20ac');
    const std::wstring longFormat = LongText(50000, L'f');
    Check({
        {"one long string", FormatString(L"<%ls>", big.c_str()), L"<" + big + L">"},
        {"two long strings", FormatString(L"%ls|%ls|%d", big.c_str(), other.c_str(), 9),
         big + L"|" + other + L"|9"},
        {"long string in a message template",
         FormatString(L"Failed to write data to the file [%ls].", big.c_str()),
         L"Failed to write data to the file [" + big + L"]."},
        {"long format", FormatString(longFormat.c_str()), longFormat},
        {"long format with a conversion", FormatString((longFormat + L"%d").c_str(), 12),
         longFormat + L"12"},
        {"precision cuts on purpose", FormatString(L"%.5ls", big.c_str()), big.substr(0, 5)},
        {"huge width", FormatString(L"%20000d", 1), std::wstring(19999, L' ') + L"1"},
        {"through FormatV", ThroughFormatV(L"[%ls][%ls]", big.c_str(), other.c_str()),
         L"[" + big + L"][" + other + L"]"},
    });
    // 1e300 printed in full: 301 digits, a point and six decimals.
    const std::wstring fixed = FormatString(L"%f", 1e300);
    EXPECT_EQ(fixed.size(), 308u);
    EXPECT_EQ(fixed.substr(0, 20), L"10000000000000000525");
    EXPECT_EQ(fixed.substr(fixed.size() - 7), L".000000");
}

TEST(Format, PadZero) {
    struct Case {
        int value;
        unsigned char width;
        std::wstring expected;
    };

    const Case cases[] = {
        {7, 3, L"007"},
        {-7, 3, L"-07"},
        {123, 2, L"123"},
        {0, 0, L"0"},
        {42, 6, L"000042"},
        {INT_MAX, 3, L"2147483647"},
        {INT_MIN, 12, L"-02147483648"},
        {1, 255, std::wstring(254, L'0') + L"1"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(std::to_string(tc.value) + " width " + std::to_string(tc.width));
        EXPECT_EQ(PadZero(tc.value, tc.width), tc.expected);
    }
}

TEST(Format, TrimTrainingZeros) {
    struct Case {
        const wchar_t* input;
        const wchar_t* expected;
    };

    const Case cases[] = {
        {L"5000", L"5"},  {L"000", L"0"},     {L"0", L"0"},   {L"", L""},   {L"120", L"12"},
        {L"105", L"105"}, {L"0.500", L"0.5"}, {L"a00", L"a"}, {L"7", L"7"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(qvtest::Narrow(tc.input));
        EXPECT_EQ(TrimTrainingZeros(tc.input), tc.expected);
    }
}

TEST(Format, ToFracString) {
    struct Case {
        unsigned short millis, micros, nanos;
        const wchar_t* expected;
    };

    const Case cases[] = {
        {500, 0, 0, L".5"},     {0, 250, 0, L".00025"},   {1, 2, 3, L".001002003"},
        {0, 0, 0, L""},         {0, 0, 1, L".000000001"}, {999, 999, 999, L".999999999"},
        {10, 100, 0, L".0101"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(std::to_string(tc.millis) + "," + std::to_string(tc.micros) + ","
                     + std::to_string(tc.nanos));
        EXPECT_EQ(ToFracString(tc.millis, tc.micros, tc.nanos), tc.expected);
    }
}

TEST(Format, FindReplace) {
    struct Case {
        const char* name;
        std::string text, find, replace, expected;
    };

    const Case cases[] = {
        {"every occurrence", "a-b-c", "-", "+", "a+b+c"},
        {"replacement joins a new occurrence", "aab", "ab", "b", "b"},
        {"deletion joins occurrences", "aaabbb", "ab", "", ""},
        {"longer replacement", "a.b", ".", "::", "a::b"},
        {"empty find changes nothing", "abc", "", "x", "abc"},
        {"replacement contains find", "aXa", "a", "aa", "aaXaa"},
        {"replacement repeats find", "aab", "ab", "abab", "aabab"},
        {"find longer than text", "ab", "abc", "x", "ab"},
        {"empty text", "", "a", "b", ""},
        {"whole text", "abc", "abc", "", ""},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        std::string narrow = tc.text;
        FindReplace(narrow, tc.find, tc.replace);
        EXPECT_EQ(narrow, tc.expected);

        std::wstring wide = qvtest::Widen(tc.text);
        FindReplace(wide, qvtest::Widen(tc.find), qvtest::Widen(tc.replace));
        EXPECT_EQ(wide, qvtest::Widen(tc.expected));
    }
    std::wstring nonAscii = L"\u20ac1 \u20ac2";
    FindReplace(nonAscii, std::wstring(L"\u20ac"), std::wstring(L"EUR"));
    EXPECT_EQ(nonAscii, L"EUR1 EUR2");
}

TEST(Format, UnicodeToMultiByte) {
    LocaleGuard guard;

    struct Case {
        const char* name;
        const char* locale;
        const wchar_t* text;
        std::string expected;
    };

    const Case cases[] = {
        {"ASCII", "C", L"/tmp/a b.xml", "/tmp/a b.xml"},
        {"empty", "C", L"", ""},
        {"unconvertible becomes ?", "C", L"a\u00e9b\U0001F600", "a?b?"},
        {"UTF-8 locale", "C.UTF-8", L"a\u00e9\u20ac\U0001F600",
         "a\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        ASSERT_NE(std::setlocale(LC_CTYPE, tc.locale), nullptr);
        EXPECT_EQ(UnicodeToMultiByte(tc.text), tc.expected);
    }
}

TEST(Format, StrUpr) {
    char text[] = "abc-xyz 09 MiXeD";
    EXPECT_EQ(QvXmlLib16::strupr(text), text);
    EXPECT_STREQ(text, "ABC-XYZ 09 MIXED");
    char empty[] = "";
    EXPECT_STREQ(QvXmlLib16::strupr(empty), "");
}

TEST(Format, FileLength) {
    qvtest::TempDir dir;

    struct Case {
        const char* name;
        size_t size;
        long position;
    };

    const Case cases[] = {{"empty", 0, 0}, {"position kept", 12345, 100}};
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        const std::string path = dir.File("f.bin");
        FILE* w = std::fopen(path.c_str(), "wb");
        ASSERT_NE(w, nullptr);
        const std::string content(tc.size, 'x');
        std::fwrite(content.c_str(), 1, content.size(), w);
        std::fclose(w);

        FILE* f = std::fopen(path.c_str(), "rb");
        ASSERT_NE(f, nullptr);
        std::fseek(f, tc.position, SEEK_SET);
        EXPECT_EQ(_filelength(f), static_cast<long>(tc.size));
        EXPECT_EQ(std::ftell(f), tc.position);
        std::fclose(f);
    }

    // A pipe cannot seek, so its length cannot be taken.
    int fds[2];
    ASSERT_EQ(pipe(fds), 0);
    FILE* readEnd = fdopen(fds[0], "rb");
    ASSERT_NE(readEnd, nullptr);
    EXPECT_EQ(_filelength(readEnd), -1);
    std::fclose(readEnd);
    close(fds[1]);
}
