#include "types/TypesTestUtils.h"

#include <QvXmlLib16/DateTime.h>
#include <QvXmlLib16/DateTimeSpan.h>

#include <algorithm>
#include <functional>
#include <random>

using namespace QvXmlLib16;
using qvtest::ExpectThrowMsg;
using qvtest::Span;

namespace {

std::string Fields(const CDateTimeSpan& s) {
    return std::string(s.IsNegative() ? "-" : "+") + std::to_string(s.GetYears()) + "Y "
           + std::to_string(s.GetMonths()) + "M " + std::to_string(s.GetDays()) + "D "
           + std::to_string(s.GetHours()) + "H " + std::to_string(s.GetMinutes()) + "m "
           + std::to_string(s.GetSeconds()) + "s " + std::to_string(s.GetMilliSeconds()) + "."
           + std::to_string(s.GetMicroSeconds()) + "." + std::to_string(s.GetNanoSeconds());
}

} // namespace

TEST(CDateTimeSpan, ParsesAndPrints) {
    struct Case {
        const wchar_t* text;
        const char* fields;
        const wchar_t* printed;
    };

    const Case cases[] = {
        {L"P1Y2M3DT4H5M6.789S", "+1Y 2M 3D 4H 5m 6s 789.0.0", L"P1Y2M3DT4H5M6.789S"},
        {L"-PT1M", "-0Y 0M 0D 0H 1m 0s 0.0.0", L"-PT1M"},
        {L"P1M", "+0Y 1M 0D 0H 0m 0s 0.0.0", L"P1M"},
        {L"PT1M", "+0Y 0M 0D 0H 1m 0s 0.0.0", L"PT1M"},
        {L"PT0S", "+0Y 0M 0D 0H 0m 0s 0.0.0", L"PT0S"},
        {L"P0D", "+0Y 0M 0D 0H 0m 0s 0.0.0", L"PT0S"},
        {L"-P0Y", "-0Y 0M 0D 0H 0m 0s 0.0.0", L"-PT0S"},
        {L"PY", "+0Y 0M 0D 0H 0m 0s 0.0.0", L"PT0S"},
        {L"PTS", "+0Y 0M 0D 0H 0m 0s 0.0.0", L"PT0S"},
        {L"PT1.1S", "+0Y 0M 0D 0H 0m 1s 100.0.0", L"PT1.1S"},
        {L"PT.5S", "+0Y 0M 0D 0H 0m 0s 500.0.0", L"PT0.5S"},
        {L"PT0.000000001S", "+0Y 0M 0D 0H 0m 0s 0.0.1", L"PT0.000000001S"},
        {L"PT2.0450S", "+0Y 0M 0D 0H 0m 2s 45.0.0", L"PT2.045S"},
        {L"PT7.123456S", "+0Y 0M 0D 0H 0m 7s 123.456.0", L"PT7.123456S"},
        {L"PT36H", "+0Y 0M 0D 36H 0m 0s 0.0.0", L"PT36H"},
        {L"P2Y0M", "+2Y 0M 0D 0H 0m 0s 0.0.0", L"P2Y"},
        {L"P1DT0H", "+0Y 0M 1D 0H 0m 0s 0.0.0", L"P1D"},
        {L"P0001Y", "+1Y 0M 0D 0H 0m 0s 0.0.0", L"P1Y"},
        {L"P65535Y", "+65535Y 0M 0D 0H 0m 0s 0.0.0", L"P65535Y"},
        {L"P18446744073709551615D", "+0Y 0M 18446744073709551615D 0H 0m 0s 0.0.0",
         L"P18446744073709551615D"},
        {L"-PT18446744073709551615.999999999S", "-0Y 0M 0D 0H 0m 18446744073709551615s 999.999.999",
         L"-PT18446744073709551615.999999999S"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(qvtest::Narrow(tc.text));
        const CDateTimeSpan span = Span(tc.text);
        EXPECT_EQ(Fields(span), tc.fields);
        EXPECT_EQ(span.ToString(), tc.printed);
    }
}

TEST(CDateTimeSpan, ParseFailures) {
    const auto expected = [](const std::wstring& text) {
        return L"Invalid XSD Duration [" + text + L"] expected [-]P[nY][nM][nD][T[nH][nM][nS.ff]]";
    };
    std::vector<const wchar_t*> malformed = {
        L"P",       L"PT",    L"P1DT",    L"P1H",    L"1Y",     L"-",     L"--P1Y",   L"+P1Y",
        L"P1Y1Y",   L"P1M1Y", L"P1D1M",   L"PT1S1M", L"PT1H1H", L"P1.5D", L"PT1.5M",  L"PT1.S",
        L"P1Y ",    L" P1Y",  L"P1YT1D",  L"PT1H2",  L"P-1Y",   L"P1e2Y", L"PT1..5S", L"PT1.5",
        L"P65536Y", L"TP1Y",  L"P1DTT1H", L"p1Y",    L"P1y",    L"P1W"};
    // Numbers too large for their fields.
    malformed.insert(malformed.end(), {L"P18446744073709551616D", L"PT99999999999999999999M"});
    for (const wchar_t* text : malformed) {
        SCOPED_TRACE(qvtest::Narrow(text));
        ExpectThrowMsg<CQvInvalidValueException>([&] { Span(text); }, expected(text));
    }

    struct Case {
        const wchar_t* text;
        const wchar_t* message;
    };

    const Case cases[] = {
        {nullptr, L"Invalid XSD Duration (Null String)"},
        {L"", L"Invalid XSD Duration (Empty String)"},
        {L"PT1.1234567891S", L"Invalid XSD Duration [PT1.1234567891S] Fraction part too long"},
        {L"PT.0000000000S", L"Invalid XSD Duration [PT.0000000000S] Fraction part too long"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.text ? qvtest::Narrow(tc.text) : "(null)");
        ExpectThrowMsg<CQvInvalidValueException>([&] { Span(tc.text); }, tc.message);
    }
    // A failed parse starts from a cleared value, so no old field survives.
    CDateTimeSpan span = Span(L"-P5Y");
    EXPECT_THROW(span.ParseXSDDuration(L"PT1H1H"), CQvInvalidValueException);
    span.ParseXSDDuration(L"PT1H");
    EXPECT_EQ(Fields(span), "+0Y 0M 0D 1H 0m 0s 0.0.0");
}

TEST(CDateTimeSpan, ConstructionSignAndFractionChecks) {
    EXPECT_EQ(Fields(CDateTimeSpan(1, 2, 3)), "+0Y 0M 1D 0H 2m 3s 0.0.0");
    EXPECT_EQ(CDateTimeSpan(1, 2, 3).ToString(), L"P1DT2M3S");
    const CDateTimeSpan full(1, 2, 3, 4, 5, 6, 7, 8, 9, true);
    EXPECT_EQ(full.ToString(), L"-P1Y2M3DT4H5M6.007008009S");
    EXPECT_EQ(CDateTimeSpan(0, 0, 0, 0, 0, 0, 5).ToString(), L"PT0.005S");
    EXPECT_EQ(full.GetAsNegative().ToString(), L"P1Y2M3DT4H5M6.007008009S");
    EXPECT_TRUE(full.IsNegative());
    CDateTimeSpan copy(full);
    copy.Negate();
    EXPECT_FALSE(copy.IsNegative());
    copy.SetDateTimeSpan(10, 20, 30);
    EXPECT_EQ(Fields(copy), "+0Y 0M 10D 0H 20m 30s 0.0.0");
    copy.Clear();
    EXPECT_EQ(copy.ToString(), L"PT0S");

    struct Case {
        const char* name;
        std::function<void()> call;
        const wchar_t* message;
    };

    const Case cases[] = {
        {"milli", [] { CDateTimeSpan().SetMilliSeconds(1000); },
         L"Invalid Milli-Second [1000] (0 <= milli <= 999)"},
        {"micro", [] { CDateTimeSpan(0, 0, 0, 0, 0, 0, 0, 1000); },
         L"Invalid Micro-Second [1000] (0 <= micro <= 999)"},
        {"nano", [] { CDateTimeSpan().SetNanoSeconds(65535); },
         L"Invalid Nano-Second [65535] (0 <= nano <= 999)"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        ExpectThrowMsg<CQvInvalidValueException>(tc.call, tc.message);
    }
}

TEST(CDateTimeSpan, RoundTripOfRandomValues) {
    std::mt19937_64 rng(7);
    const auto chance = [&rng] { return rng() % 3 == 0; };
    const auto number = [&rng](unsigned long long limit) { return rng() % limit; };
    for (int i = 0; i < 3000; ++i) {
        std::string text = rng() % 2 ? "-P" : "P";
        bool any = false;
        const auto item = [&](unsigned long long limit, const char* designator) {
            if (chance()) {
                text += std::to_string(number(limit)) + designator;
                any = true;
            }
        };
        item(65536, "Y");
        item(100000000000ULL, "M");
        item(100000, "D");
        std::string time;
        if (chance())
            time += std::to_string(number(1000)) + "H";
        if (chance())
            time += std::to_string(number(~0ULL)) + "M";
        if (chance()) {
            time += std::to_string(number(100000));
            if (chance()) {
                time += ".";
                for (unsigned d = 0, n = 1 + unsigned(number(9)); d < n; ++d)
                    time += char('0' + number(10));
            }
            time += "S";
        }
        if (!time.empty())
            text += "T" + time;
        else if (!any)
            text += "0D";
        SCOPED_TRACE(text);
        const std::wstring wide(text.begin(), text.end());
        const CDateTimeSpan first = Span(wide.c_str());
        const std::wstring printed = first.ToString();
        const CDateTimeSpan second = Span(printed.c_str());
        EXPECT_EQ(Fields(second), Fields(first));
        EXPECT_EQ(second.ToString(), printed);
        EXPECT_TRUE(first == second);
    }
}

TEST(CDateTimeSpan, OrderFollowsTheReferencePoints) {
    struct Case {
        const wchar_t* a;
        const wchar_t* b;
        int expected;
    };

    const Case cases[] = {
        // Equal by folding fields.
        {L"P1Y", L"P12M", 0},
        {L"P1D", L"PT24H", 0},
        {L"PT1H", L"PT60M", 0},
        {L"PT1M", L"PT60S", 0},
        {L"PT0S", L"-PT0S", 0},
        {L"P65535Y", L"P786420M", 0},
        // Decided by the partial order.
        {L"P1Y", L"P364D", 1},
        {L"P1Y", L"P367D", -1},
        {L"P1M", L"P27D", 1},
        {L"P1M", L"P32D", -1},
        {L"-P1D", L"PT0S", -1},
        {L"-P1D", L"-PT23H", -1},
        {L"PT0.000000001S", L"PT0S", 1},
        {L"P18446744073709551615M", L"P65535Y", 1},
        {L"PT18446744073709551615S", L"P213503982334601D", 1},
        {L"P2M", L"P63D", -1},
        // Incomparable in XML Schema; decided by the sum over the references, then months.
        {L"P1Y", L"P365D", 1},
        {L"P1Y", L"P366D", -1},
        {L"P1M", L"P28D", 1},
        {L"P1M", L"P30D", 1},
        {L"P1M", L"P31D", -1},
        {L"-P1M", L"-P30D", -1},
        {L"P400Y", L"P146097D", 1},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(qvtest::Narrow(tc.a) + " vs " + qvtest::Narrow(tc.b));
        qvtest::ExpectOrder(Span(tc.a), Span(tc.b), tc.expected);
    }
}

// Cross-checks CompareTo against the definition: add both spans to the four reference
// dateTimes with CDateTime arithmetic and see whether all four agree.
TEST(CDateTimeSpan, OrderAgreesWithTheDefinitionAndIsTotal) {
    const CDateTime refs[] = {
        CDateTime(L"1696-09-01T00:00:00Z"), CDateTime(L"1697-02-01T00:00:00Z"),
        CDateTime(L"1903-03-01T00:00:00Z"), CDateTime(L"1903-07-01T00:00:00Z")};
    std::mt19937 rng(99);
    std::vector<CDateTimeSpan> spans;
    for (int i = 0; i < 120; ++i) {
        const bool negative = rng() % 2;
        spans.emplace_back(0, rng() % 30, rng() % 800, rng() % 30, rng() % 200, rng() % 100, 0, 0,
                           0, negative);
    }
    for (const CDateTimeSpan& a : spans)
        for (const CDateTimeSpan& b : spans) {
            int less = 0, greater = 0;
            for (const CDateTime& ref : refs) {
                const int c = (ref + a).CompareTo(ref + b);
                less += c < 0;
                greater += c > 0;
            }
            const int order = a.CompareTo(b);
            ASSERT_EQ(order, -b.CompareTo(a)) << qvtest::Narrow(a.ToString() + L" " + b.ToString());
            if (less == 4) {
                ASSERT_EQ(order, -1) << qvtest::Narrow(a.ToString() + L" " + b.ToString());
            }
            if (greater == 4) {
                ASSERT_EQ(order, 1) << qvtest::Narrow(a.ToString() + L" " + b.ToString());
            }
        }
    // Transitivity over the sorted list: sorting must leave every neighbour pair ordered.
    std::sort(spans.begin(), spans.end());
    for (size_t i = 0; i + 1 < spans.size(); ++i)
        for (size_t j = i + 1; j < spans.size(); ++j)
            ASSERT_LE(spans[i].CompareTo(spans[j]), 0);
}
