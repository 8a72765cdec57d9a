#include "common/TestUtils.h"

#include <atomic>
#include <thread>
#include <vector>

using namespace QvXmlLib16;
using qvtest::ExpectThrowMsg;

namespace {

// A pattern with a value it matches and one it does not; either may be null.
struct MatchCase {
    const wchar_t* pattern;
    const wchar_t* match;
    const wchar_t* miss;
};

void ExpectMatches(const MatchCase* begin, const MatchCase* end) {
    for (const MatchCase* tc = begin; tc != end; ++tc) {
        SCOPED_TRACE(qvtest::Narrow(tc->pattern));
        if (tc->match) {
            EXPECT_TRUE(CXmlObjectHelper::TestRegEx(tc->pattern, tc->match)) << "match";
        }
        if (tc->miss) {
            EXPECT_FALSE(CXmlObjectHelper::TestRegEx(tc->pattern, tc->miss)) << "miss";
        }
    }
}

} // namespace

TEST(XsdPattern, RealWorldFacets) {
    const MatchCase cases[] = {
        {L"\\d{5}(-\\d{4})?", L"12345-6789", L"12345-678"},
        {L"[A-Z]{1,2}[0-9][0-9A-Z]? [0-9][A-Z]{2}", L"SW1A 1AA", L"sw1a 1aa"},
        {L"[^@]+@[^\\.]+\\..+", L"jane.doe@example.com", L"jane.doe.example.com"},
        {L"[A-Z]{3}", L"EUR", L"eur"},
        {L"\\d{4}-\\d{2}-\\d{2}", L"2026-11-21", L"2026-11-21T00:00"},
        {L"\\p{L}+", L"\u00c9l\u00e8ve\u65e5\u672c", L"abc1"},
        {L"\\+?[0-9 ()-]{7,20}", L"+44 (20) 7946-0958", nullptr},
        {L"(Mon|Tue|Wed)day", L"Tueday", L"Monday "},
    };
    ExpectMatches(std::begin(cases), std::end(cases));
}

TEST(XsdPattern, AnchorsAndPcreMetacharactersAreOrdinary) {
    const MatchCase cases[] = {
        // The whole value must match; ^ and $ are plain characters.
        {L"abc", nullptr, L"xabc"},
        {L"abc", nullptr, L"abc\n"},
        {L"a^b$", L"a^b$", L"ab"},
        {L"^a", nullptr, L"a"},
        {L"[$^]+", L"$^$", nullptr},
        {L"a#b", L"a#b", nullptr},
        {L"a\\.b", L"a.b", L"axb"},
        // '.' is anything but a line end.
        {L"a.c", L"a\u20acc", L"a\rc"},
        {L"\\(\\)\\[\\]\\{\\}\\|\\?\\*\\+\\-\\^\\\\", L"()[]{}|?*+-^\\", nullptr},
        {L"\\n\\r\\t", L"\n\r\t", nullptr},
        {L"\U0001F600+", L"\U0001F600\U0001F600", nullptr},
        // A group captures nothing XSD could refer back to; nesting still works.
        {L"((a|b)c)+", L"acbc", nullptr},
        {L"x{2}y{1,}z{0,1}", L"xxyyy", L"xyz"},
    };
    ExpectMatches(std::begin(cases), std::end(cases));
}

TEST(XsdPattern, MultiCharacterEscapes) {
    const MatchCase cases[] = {
        {L"\\d+", L"0123456789", L"12a"},
        {L"\\d", L"\u0663", nullptr}, // ARABIC-INDIC DIGIT THREE
        {L"\\D", L"a", L"5"},
        {L"\\s+", L" \t\n\r", L"\u00a0"}, // no-break space is not XML white space
        {L"\\S+", L"ab", L"a b"},
        // \w is everything but punctuation, separators and others: '_' is punctuation.
        {L"\\w+", L"a\u00e9\u20ac1", nullptr},
        {L"\\w", nullptr, L"_"},
        {L"\\W", L" ", L"a"},
        {L"\\i\\c*", L"_a1.b-c", L"1a"},
        {L"\\i\\c*", L"x:y", L"-a"},
        {L"\\I", L"1", L"a"},
        {L"\\C", L" ", L"a"},
    };
    ExpectMatches(std::begin(cases), std::end(cases));
}

TEST(XsdPattern, CategoriesAndBlocks) {
    const MatchCase cases[] = {
        {L"\\p{Lu}\\p{Ll}+", L"\u00c9cole", L"\u00e9cole"},
        {L"\\P{L}+", L"123 !", L"1a"},
        {L"\\p{Nd}{2}", L"42", nullptr},
        {L"\\p{IsBasicLatin}+", L"abc~", L"ab\u00e9"},
        {L"\\p{IsLatin-1Supplement}", L"\u00e9", nullptr},
        {L"\\p{IsLatinExtended-A}", L"\u0153", L"\u0180"},
        {L"\\p{IsCJKUnifiedIdeographs}", L"\u65e5", nullptr},
        {L"\\p{IsPrivateUse}", L"\U000F0001", nullptr},
        {L"\\P{IsBasicLatin}", L"\u00e9", L"e"},
        {L"[\\P{IsBasicLatin}a]+", L"a\u00e9a", L"ab"},
        // Surrogate blocks can hold no character of a value, and a lone surrogate matches nothing.
        {L"[\\p{IsHighSurrogates}a]", L"a", L"b"},
        {L".*", L"", L"\xD800"},
    };
    ExpectMatches(std::begin(cases), std::end(cases));
}

TEST(XsdPattern, CharacterClasses) {
    const MatchCase cases[] = {
        {L"[a-z-[aeiou]]+", L"xyz", L"xaz"},
        {L"[a-z-[aeiou-[u]]]+", L"xuz", L"xoz"},
        {L"[^a-c]+", L"xyz", L"xbz"},
        {L"[^a-z-[x]]", L"A", L"x"},
        {L"[-a]+", L"-a-", L"b"},
        {L"[a-]+", L"-a-", nullptr},
        {L"[\\-\\]\\[]+", L"-][", nullptr},
        {L"[\\d\\s]+", L"1 2", nullptr},
        {L"[\\S-]+", L"ab-c", L"a b"},
        {L"[^\\S]+", L" \t", L"a"},
        {L"[^\\s]+", L"ab", L"a b"},
        {L"[\\I\\d]", L"5", L"a"},
        {L"[\\w-[\\d]]+", L"abc", L"ab1"},
        {L"[:]+", L"::", nullptr},
    };
    ExpectMatches(std::begin(cases), std::end(cases));
    // '[' must be escaped inside a class.
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
