#include "common/TestUtils.h"

#include <QvXmlLib16/QvXmlLib16.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

using namespace QvXmlLib16;
using qvtest::ExpectThrowMsg;

namespace {

struct MatchCase {
    const wchar_t* pattern;
    const wchar_t* value;
    bool matches;
};

void ExpectMatches(const MatchCase* begin, const MatchCase* end) {
    for (const MatchCase* tc = begin; tc != end; ++tc) {
        SCOPED_TRACE(qvtest::Narrow(std::wstring(tc->pattern) + L" ~ " + tc->value));
        EXPECT_EQ(CXmlObjectHelper::TestRegEx(tc->pattern, tc->value), tc->matches);
    }
}

} // namespace

TEST(XsdPattern, RealWorldFacets) {
    const MatchCase cases[] = {
        {L"\\d{5}(-\\d{4})?", L"12345", true},
        {L"\\d{5}(-\\d{4})?", L"12345-6789", true},
        {L"\\d{5}(-\\d{4})?", L"1234", false},
        {L"\\d{5}(-\\d{4})?", L"12345-678", false},
        {L"[A-Z]{1,2}[0-9][0-9A-Z]? [0-9][A-Z]{2}", L"SW1A 1AA", true},
        {L"[A-Z]{1,2}[0-9][0-9A-Z]? [0-9][A-Z]{2}", L"sw1a 1aa", false},
        {L"[^@]+@[^\\.]+\\..+", L"jane.doe@example.com", true},
        {L"[^@]+@[^\\.]+\\..+", L"jane.doe.example.com", false},
        {L"[A-Z]{3}", L"EUR", true},
        {L"[A-Z]{3}", L"EURO", false},
        {L"[A-Z]{3}", L"eur", false},
        {L"\\d{4}-\\d{2}-\\d{2}", L"2026-11-21", true},
        {L"\\d{4}-\\d{2}-\\d{2}", L"2026-11-21T00:00", false},
        {L"\\p{L}+", L"\u00c9l\u00e8ve\u65e5\u672c", true},
        {L"\\p{L}+", L"abc1", false},
        {L"\\+?[0-9 ()-]{7,20}", L"+44 (20) 7946-0958", true},
        {L"(Mon|Tue|Wed)day", L"Tueday", true},
        {L"(Mon|Tue|Wed)day", L"Monday ", false},
    };
    ExpectMatches(std::begin(cases), std::end(cases));
}

TEST(XsdPattern, AnchorsAndPcreMetacharactersAreOrdinary) {
    const MatchCase cases[] = {
        // The whole value must match; ^ and $ are plain characters.
        {L"abc", L"xabc", false},
        {L"abc", L"abcx", false},
        {L"abc", L"abc\n", false},
        {L"a^b$", L"a^b$", true},
        {L"a^b$", L"ab", false},
        {L"^a", L"a", false},
        {L"[$^]+", L"$^$", true},
        {L"a#b", L"a#b", true},
        {L"a\\.b", L"a.b", true},
        {L"a\\.b", L"axb", false},
        // '.' is anything but a line end.
        {L"a.c", L"a\u20acc", true},
        {L"a.c", L"a\nc", false},
        {L"a.c", L"a\rc", false},
        {L"\\(\\)\\[\\]\\{\\}\\|\\?\\*\\+\\-\\^\\\\", L"()[]{}|?*+-^\\", true},
        {L"\\n\\r\\t", L"\n\r\t", true},
        {L"\U0001F600+", L"\U0001F600\U0001F600", true},
        // A group captures nothing XSD could refer back to; nesting still works.
        {L"((a|b)c)+", L"acbc", true},
        {L"x{2}y{1,}z{0,1}", L"xxyyy", true},
        {L"x{2}y{1,}z{0,1}", L"xyz", false},
    };
    ExpectMatches(std::begin(cases), std::end(cases));
}

TEST(XsdPattern, MultiCharacterEscapes) {
    const MatchCase cases[] = {
        {L"\\d+", L"0123456789", true},
        {L"\\d", L"\u0663", true}, // ARABIC-INDIC DIGIT THREE
        {L"\\d", L"a", false},
        {L"\\D", L"a", true},
        {L"\\D", L"5", false},
        {L"\\s+", L" \t\n\r", true},
        {L"\\s", L"\u00a0", false}, // no-break space is not XML white space
        {L"\\S+", L"ab", true},
        {L"\\S", L" ", false},
        // \w is everything but punctuation, separators and others: '_' is punctuation.
        {L"\\w+", L"a\u00e9\u20ac1", true},
        {L"\\w", L"_", false},
        {L"\\w", L"-", false},
        {L"\\W", L"_", true},
        {L"\\W", L" ", true},
        {L"\\i\\c*", L"_a1.b-c", true},
        {L"\\i\\c*", L"x:y", true},
        {L"\\i\\c*", L"1a", false},
        {L"\\i\\c*", L"-a", false},
        {L"\\I", L"1", true},
        {L"\\I", L"a", false},
        {L"\\C", L" ", true},
        {L"\\C", L"a", false},
    };
    ExpectMatches(std::begin(cases), std::end(cases));
}

TEST(XsdPattern, CategoriesAndBlocks) {
    const MatchCase cases[] = {
        {L"\\p{Lu}\\p{Ll}+", L"\u00c9cole", true},
        {L"\\p{Lu}\\p{Ll}+", L"\u00e9cole", false},
        {L"\\P{L}+", L"123 !", true},
        {L"\\p{Nd}{2}", L"42", true},
        {L"\\p{Sc}", L"\u20ac", true},
        {L"\\p{IsBasicLatin}+", L"abc~", true},
        {L"\\p{IsBasicLatin}+", L"ab\u00e9", false},
        {L"\\p{IsLatin-1Supplement}", L"\u00e9", true},
        {L"\\p{IsLatinExtended-A}", L"\u0153", true},
        {L"\\p{IsLatinExtended-B}", L"\u0180", true},
        {L"\\p{IsGreek}+", L"\u03b1\u03b2", true},
        {L"\\p{IsCJKUnifiedIdeographs}", L"\u65e5", true},
        {L"\\p{IsPrivateUse}", L"\U000F0001", true},
        {L"\\P{IsBasicLatin}", L"\u00e9", true},
        {L"\\P{IsBasicLatin}", L"e", false},
        {L"[\\P{IsBasicLatin}a]+", L"a\u00e9a", true},
        {L"[\\P{IsBasicLatin}a]+", L"ab", false},
        // Surrogate blocks can hold no character of a value.
        {L"\\p{IsHighSurrogates}", L"a", false},
        {L"[\\p{IsHighSurrogates}a]", L"a", true},
    };
    ExpectMatches(std::begin(cases), std::end(cases));
}

TEST(XsdPattern, CharacterClasses) {
    const MatchCase cases[] = {
        {L"[a-z-[aeiou]]+", L"xyz", true},
        {L"[a-z-[aeiou]]+", L"xaz", false},
        {L"[a-z-[aeiou-[u]]]+", L"xuz", true},
        {L"[a-z-[aeiou-[u]]]+", L"xoz", false},
        {L"[^a-c]+", L"xyz", true},
        {L"[^a-c]+", L"xbz", false},
        {L"[^a-z-[x]]", L"x", false},
        {L"[^a-z-[x]]", L"A", true},
        {L"[-a]+", L"-a-", true},
        {L"[a-]+", L"-a-", true},
        {L"[\\-\\]\\[]+", L"-][", true},
        {L"[\\d\\s]+", L"1 2", true},
        {L"[\\S-]+", L"ab-c", true},
        {L"[\\S]", L" ", false},
        {L"[^\\S]+", L" \t", true},
        {L"[^\\S]", L"a", false},
        {L"[^\\s]+", L"ab", true},
        {L"[^\\s]+", L"a b", false},
        {L"[\\I\\d]", L"5", true},
        {L"[\\I\\d]", L"a", false},
        {L"[\\w-[\\d]]+", L"abc", true},
        {L"[\\w-[\\d]]+", L"ab1", false},
        {L"[:]+", L"::", true},
        {L"[[:]", L"x", false},
    };
    // "[[:]" is not valid: '[' must be escaped inside a class.
    ExpectMatches(std::begin(cases), std::end(cases) - 1);
    ExpectThrowMsg<CQvException>(
        [] { CXmlObjectHelper::TestRegEx(L"[[:]", L"x"); },
        L"Invalid Regular Expression: [[:] Error: 'unescaped '[' in a class'");
}

TEST(XsdPattern, InvalidPatternsThrow) {
    struct Case {
        const wchar_t* pattern;
        const wchar_t* message;
    };

    const Case cases[] = {
        {L"[a-", L"Invalid Regular Expression: [a- Error: 'missing ']''"},
        {L"a{2,", L"Invalid Regular Expression: a{2, Error: 'malformed quantifier'"},
        {L"a{,2}", L"Invalid Regular Expression: a{,2} Error: 'malformed quantifier'"},
        {L"\\q", L"Invalid Regular Expression: \\q Error: 'invalid escape'"},
        {L"*a", L"Invalid Regular Expression: *a Error: 'quantifier without an atom'"},
        {L"(ab", L"Invalid Regular Expression: (ab Error: 'missing ')''"},
        {L"ab)", L"Invalid Regular Expression: ab) Error: 'unmatched ')''"},
        {L"[z-a]", L"Invalid Regular Expression: [z-a] Error: 'range out of order'"},
        {L"\\p{Foo}", L"Invalid Regular Expression: \\p{Foo} Error: 'unknown property name'"},
        {L"\\p{IsFoo}", L"Invalid Regular Expression: \\p{IsFoo} Error: 'unknown block name'"},
        {L"\\p{L", L"Invalid Regular Expression: \\p{L Error: 'malformed property escape'"},
        {L"[a-z-[b]c]",
         L"Invalid Regular Expression: [a-z-[b]c] Error: 'subtraction must end the class'"},
        {L"[a-\\d]", L"Invalid Regular Expression: [a-\\d] Error: 'range ends in a class escape'"},
        {L"a{3,1}",
         L"Invalid Regular Expression: a{3,1} Error: 'numbers out of order in {} quantifier'"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(qvtest::Narrow(tc.pattern));
        ExpectThrowMsg<CQvException>([&] { CXmlObjectHelper::TestRegEx(tc.pattern, L"a"); },
                                     tc.message);
        // A bad pattern stays bad: the failure is not cached as a success.
        ExpectThrowMsg<CQvException>([&] { CXmlObjectHelper::TestRegEx(tc.pattern, L"b"); },
                                     tc.message);
    }
}

TEST(XsdPattern, CatastrophicBacktrackingFailsInsteadOfHanging) {
    const std::wstring value = std::wstring(40, L'a') + L"xb";
    ExpectThrowMsg<CQvException>(
        [&] { CXmlObjectHelper::TestRegEx(L"(a+)+b", value); },
        L"Invalid Regular Expression: (a+)+b Error: 'match limit exceeded'");
    // The same pattern still answers ordinary values.
    EXPECT_TRUE(CXmlObjectHelper::TestRegEx(L"(a+)+b", L"aaab"));
}

TEST(XsdPattern, ValueWithLoneSurrogateNeverMatches) {
    const std::wstring value(1, static_cast<wchar_t>(0xD800));
    EXPECT_FALSE(CXmlObjectHelper::TestRegEx(L".*", value));
}

TEST(XsdPatternThreads, ConcurrentChecksShareTheCache) {
    const wchar_t* patterns[] = {L"[A-Z]{3}", L"\\d{5}(-\\d{4})?", L"\\i\\c*", L"[a-z-[aeiou]]+"};
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < 2000; ++i) {
                const wchar_t* pattern = patterns[(i + t) % 4];
                const bool a = CXmlObjectHelper::TestRegEx(pattern, L"EUR");
                const bool b = CXmlObjectHelper::TestRegEx(pattern, L"12345");
                const bool expectA = pattern == patterns[0] || pattern == patterns[2];
                const bool expectB = pattern == patterns[1];
                if (a != expectA || b != expectB)
                    ++wrong;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong.load(), 0);
}
