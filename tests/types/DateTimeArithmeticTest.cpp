#include "types/TypesTestUtils.h"

#include <QvXmlLib16/DateTime.h>
#include <QvXmlLib16/DateTimeSpan.h>

#include <cstdlib>
#include <ctime>
#include <functional>
#include <random>

using namespace QvXmlLib16;
using qvtest::DateValue;
using qvtest::ExpectThrowMsg;
using qvtest::Span;

namespace {

// Sets TZ for one scope and puts the old value back.
class ScopedTimeZone {
public:
    explicit ScopedTimeZone(const char* zone) {
        const char* old = std::getenv("TZ");
        m_had = old != nullptr;
        m_old = old ? old : "";
        setenv("TZ", zone, 1);
        tzset();
    }

    ~ScopedTimeZone() {
        if (m_had)
            setenv("TZ", m_old.c_str(), 1);
        else
            unsetenv("TZ");
        tzset();
    }

private:
    bool m_had = false;
    std::string m_old;
};

// Seconds from the epoch of a proleptic Gregorian UTC date, through glibc.
long long Timegm(int year, int month, int day, int hour, int minute, int second) {
    std::tm t{};
    t.tm_year = year - 1900;
    t.tm_mon = month - 1;
    t.tm_mday = day;
    t.tm_hour = hour;
    t.tm_min = minute;
    t.tm_sec = second;
    return static_cast<long long>(timegm(&t));
}

} // namespace

TEST(CDateTimeArithmetic, AddsSpansTheXmlSchemaWay) {
    struct Case {
        const wchar_t* start;
        const wchar_t* span;
        const wchar_t* result;
    };

    const Case cases[] = {
        {L"2000-01-12T12:13:14Z", L"P1Y3M5DT7H10M3.3S", L"2001-04-17T19:23:17.3Z"},
        {L"2000-01", L"-P3M", L"1999-10"},
        {L"2000-01-12", L"PT33H", L"2000-01-13"},
        {L"2000-01-31T00:00:00", L"P1M", L"2000-02-29T00:00:00"},
        {L"2001-01-31T00:00:00", L"P1M", L"2001-02-28T00:00:00"},
        {L"2000-03-31T00:00:00", L"-P1M", L"2000-02-29T00:00:00"},
        {L"2024-01-31", L"P1M1D", L"2024-03-01"},
        {L"2024-02-29", L"P1Y", L"2025-02-28"},
        {L"2024-02-29", L"P4Y", L"2028-02-29"},
        {L"2000-02-28T23:59:59.999999999", L"PT0.000000001S", L"2000-02-29T00:00:00"},
        {L"2000-12-31T23:59:59.5+05:00", L"PT0.5S", L"2001-01-01T00:00:00+05:00"},
        {L"2000-01-01T00:00:00", L"-PT0.000000001S", L"1999-12-31T23:59:59.999999999"},
        {L"-0001-12-31T23:00:00", L"PT1H", L"0001-01-01T00:00:00"},
        {L"0001-01-01", L"-P1D", L"-0001-12-31"},
        {L"-0004-02-28", L"P1D", L"-0004-02-29"},
        {L"-0001-02-28", L"P1D", L"-0001-03-01"},
        {L"-0001", L"P1Y", L"0001"},
        {L"0001-03", L"-P3M", L"-0001-12"},
        {L"2024-03-10T10:00:00", L"PT1000000H", L"2138-04-09T02:00:00"},
        {L"2024-03-10T10:00:00", L"-P36500D", L"1924-04-04T10:00:00"},
        {L"1970-01-01T00:00:00Z", L"PT1000000000S", L"2001-09-09T01:46:40Z"},
        {L"23:30:00+05:00", L"PT1H", L"00:30:00+05:00"},
        {L"00:00:00", L"-PT1S", L"23:59:59"},
        {L"12:00:00", L"P1Y2M3D", L"12:00:00"},
        {L"2024", L"P1M", L"2024"},
        {L"2024", L"P12M", L"2025"},
        {L"--01-31", L"P1M", L"--02-29"},
        {L"---31", L"P1D", L"---01"},
        {L"--12", L"P1M", L"--01"},
        {L"2024-01-01", L"PT0S", L"2024-01-01"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(qvtest::Narrow(tc.start) + " + " + qvtest::Narrow(tc.span));
        const CDateTime start = DateValue(tc.start);
        const CDateTimeSpan span = Span(tc.span);
        EXPECT_EQ((start + span).ToString(), tc.result);
        CDateTime moved = start;
        moved += span;
        EXPECT_EQ(moved.ToString(), tc.result);
        CDateTime again = start;
        again.AddDateTimeSpan(span);
        EXPECT_EQ(again.ToString(), tc.result);
        EXPECT_EQ((start - span.GetAsNegative()).ToString(), tc.result);
    }
}

TEST(CDateTimeArithmetic, AdditionFailures) {
    struct Case {
        const char* name;
        std::function<void()> call;
        const wchar_t* message;
    };

    const Case invalid[] = {
        {"unset", [] { CDateTime() + Span(L"P1D"); },
         L"Failed to AddDateTimeSpan. Invalid Date Type: yearZero."},
        {"invalid day",
         [] {
             CDateTime value;
             value.SetDate(2023, 2, 29);
             value += Span(L"P1D");
         },
         L"Invalid Day [29] (1 <= day <= days in month"},
        {"kinds differ", [] { DateValue(L"2024-01-01T00:00:00") - DateValue(L"2024-01-01"); },
         L"Cannot subtract a date from a dateTime."},
        {"unset difference", [] { CDateTime() - CDateTime(); },
         L"Failed to operator-. Invalid Date Type: yearZero."},
    };
    for (const Case& tc : invalid) {
        SCOPED_TRACE(tc.name);
        ExpectThrowMsg<CQvInvalidValueException>(tc.call, tc.message);
    }
    const Case overflow[] = {
        {"past 9999", [] { DateValue(L"9999-12-31T23:59:59") + Span(L"PT1S"); },
         L"The date 9999-12-31T23:59:59 moved by PT1S falls outside the years -9999 to 9999."},
        {"before -9999", [] { DateValue(L"-9999-01") - Span(L"P1M"); },
         L"The date -9999-01 moved by -P1M falls outside the years -9999 to 9999."},
        {"huge days", [] { DateValue(L"2000-01-01") + Span(L"P18446744073709551615D"); },
         L"The date 2000-01-01 moved by P18446744073709551615D falls outside the years -9999 to "
         L"9999."},
        {"huge months", [] { DateValue(L"2000") - Span(L"P65535Y18446744073709551615M"); },
         L"The date 2000 moved by -P65535Y18446744073709551615M falls outside the years -9999 "
         L"to 9999."},
        {"huge seconds",
         [] { DateValue(L"2000-01-01T00:00:00Z") + Span(L"PT18446744073709551615S"); },
         L"The date 2000-01-01T00:00:00Z moved by PT18446744073709551615S falls outside the "
         L"years -9999 to 9999."},
    };
    for (const Case& tc : overflow) {
        SCOPED_TRACE(tc.name);
        ExpectThrowMsg<CQvOverFlowException>(tc.call, tc.message);
    }
    // A time has no year to run out of.
    EXPECT_EQ((DateValue(L"10:00:00") + Span(L"PT18446744073709551615S")).ToString(), L"17:00:15");
}

TEST(CDateTimeArithmetic, DifferenceAddsBack) {
    struct Case {
        const wchar_t* a;
        const wchar_t* b;
        const wchar_t* span;
    };

    const Case cases[] = {
        {L"2000-03-01T00:00:00", L"2000-02-28T12:00:00", L"P1DT12H"},
        {L"2024-01-01T00:00:00Z", L"2024-01-01T05:00:00+05:00", L"PT0S"},
        {L"2000-01-01", L"2000-01-02", L"-P1D"},
        {L"01:00:00", L"23:00:00", L"-PT22H"},
        {L"00:00:00.000000001", L"23:59:59.999999999", L"-PT23H59M59.999999998S"},
        {L"0001-01-01", L"-0001-12-31", L"P1D"},
        {L"9999-12-31T23:59:59.999999999Z", L"-9999-01-01T00:00:00Z",
         L"P7304117DT23H59M59.999999999S"},
        {L"2025", L"2024", L"P366D"},
        {L"--03", L"--01", L"P60D"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(qvtest::Narrow(tc.a) + " - " + qvtest::Narrow(tc.b));
        const CDateTime a = DateValue(tc.a), b = DateValue(tc.b);
        const CDateTimeSpan d = a - b;
        EXPECT_EQ(d.ToString(), tc.span);
        EXPECT_EQ((b + d).CompareTo(a), 0);
        EXPECT_EQ((a - d).CompareTo(b), 0);
    }
}

// Random dateTimes: the difference matches glibc's timegm and adding it back gives the value.
TEST(CDateTimeArithmetic, RandomDifferencesAgreeWithTimegm) {
    std::mt19937 rng(1234);
    const auto pick = [&rng](int low, int high) {
        return std::uniform_int_distribution<int>(low, high)(rng);
    };
    const auto random = [&](int zoneHours) {
        const int y = pick(1, 9999), mo = pick(1, 12), d = pick(1, 28), h = pick(0, 23),
                  mi = pick(0, 59), s = pick(0, 59);
        CDateTime value(static_cast<short>(y), static_cast<unsigned char>(mo),
                        static_cast<unsigned char>(d), static_cast<unsigned char>(h),
                        static_cast<unsigned char>(mi), static_cast<unsigned char>(s));
        value.SetTimeZone(static_cast<short>(zoneHours), 0);
        const long long utc = Timegm(y, mo, d, h, mi, s) - zoneHours * 3600LL;
        return std::make_pair(value, utc);
    };
    for (int i = 0; i < 2000; ++i) {
        const auto [a, aSeconds] = random(pick(-14, 14));
        const bool sameZone = i % 2 == 0;
        const auto [b, bSeconds] = random(sameZone ? a.GetZoneHour() : pick(-14, 14));
        SCOPED_TRACE(qvtest::Narrow(a.ToString() + L" - " + b.ToString()));
        const CDateTimeSpan d = a - b;
        const long long magnitude = ((static_cast<long long>(d.GetDays()) * 24 + d.GetHours()) * 60
                                     + static_cast<long long>(d.GetMinutes()))
                                        * 60
                                    + static_cast<long long>(d.GetSeconds());
        EXPECT_EQ(d.IsNegative() ? -magnitude : magnitude, aSeconds - bSeconds);
        EXPECT_EQ(a.GetTime(), aSeconds);
        const CDateTime back = b + d;
        EXPECT_EQ(back.CompareTo(a), 0);
        if (sameZone) {
            EXPECT_EQ(back.ToString(), a.ToString());
        }
        EXPECT_EQ(a.CompareTo(b), aSeconds < bSeconds ? -1 : (aSeconds > bSeconds ? 1 : 0));
    }
}

TEST(CDateTimeArithmetic, CompareFollowsTheOrderRelation) {
    struct Case {
        const wchar_t* a;
        const wchar_t* b;
        int expected;
    };

    const Case cases[] = {
        {L"2024-01-01T12:00:00Z", L"2024-01-01T13:00:00+01:00", 0},
        {L"2024-01-01T12:00:00-00:30", L"2024-01-01T12:30:00Z", 0},
        {L"2024-01-01T12:00:00", L"2024-01-01T12:00:00", 0},
        {L"2024-01-01T12:00:00.000000001", L"2024-01-01T12:00:00", 1},
        // Zoned against unzoned: decided outside the 14-hour band.
        {L"2024-01-01T12:00:00Z", L"2024-01-02T02:00:01", -1},
        {L"2024-01-02T12:00:01Z", L"2024-01-01T22:00:00", 1},
        // Indeterminate: the unzoned value is read as UTC, and a tie puts it last.
        {L"2024-01-01T12:00:00Z", L"2024-01-01T20:00:00", -1},
        {L"2024-01-02T12:00:00Z", L"2024-01-01T22:00:00", 1},
        {L"2024-01-01T12:00:00Z", L"2024-01-01T12:00:00", -1},
        {L"2024-01-01T12:00:00", L"2024-01-01T13:00:00+01:00", 1},
        {L"2024-01-01", L"2024-01-02", -1},
        {L"2024-01-01+05:00", L"2023-12-31Z", 1},
        {L"2024-01-01+14:00", L"2023-12-31-10:00", 0},
        {L"10:00:00+02:00", L"08:00:00Z", 0},
        {L"23:00:00-02:00", L"00:30:00Z", 1},
        {L"2024", L"2025", -1},
        {L"-0001-12-31", L"0001-01-01", -1},
        {L"-9999", L"9999", -1},
        {L"--02-29", L"--03-01", -1},
        {L"---15", L"---14", 1},
        // Other kinds sit on the same timeline; a tie goes by kind number.
        {L"2024-01-01", L"2024-01-01T00:00:00", 1},
        {L"2024-01-01", L"2024-01-01T00:00:01", -1},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(qvtest::Narrow(tc.a) + " vs " + qvtest::Narrow(tc.b));
        const CDateTime a = DateValue(tc.a), b = DateValue(tc.b);
        qvtest::ExpectOrder(a, b, tc.expected);
        EXPECT_EQ(Compare(a, b), tc.expected);
    }
    CDateTime invalid;
    invalid.SetDate(2023, 2, 29);
    ExpectThrowMsg<CQvInvalidValueException>([&] { invalid.CompareTo(DateValue(L"2023-01-01")); },
                                             L"Invalid Day [29] (1 <= day <= days in month");
}

// Against unzoned values, a zoned one is decided exactly when it lies outside +-14 hours.
TEST(CDateTimeArithmetic, FourteenHourRuleOnRandomPairs) {
    std::mt19937 rng(77);
    const auto pick = [&rng](int low, int high) {
        return std::uniform_int_distribution<int>(low, high)(rng);
    };
    int decided = 0;
    for (int i = 0; i < 3000; ++i) {
        const int zone = pick(-14, 14);
        const int hour1 = pick(0, 23), hour2 = pick(0, 23), day1 = pick(1, 3), day2 = pick(1, 3);
        CDateTime p(2024, 5, static_cast<unsigned char>(day1), static_cast<unsigned char>(hour1), 0,
                    0);
        p.SetTimeZone(static_cast<short>(zone), 0);
        const CDateTime q(2024, 5, static_cast<unsigned char>(day2),
                          static_cast<unsigned char>(hour2), 0, 0);
        const long long pUtc = Timegm(2024, 5, day1, hour1, 0, 0) - zone * 3600LL;
        const long long qLocal = Timegm(2024, 5, day2, hour2, 0, 0);
        SCOPED_TRACE(qvtest::Narrow(p.ToString() + L" vs " + q.ToString()));
        if (pUtc < qLocal - 14 * 3600) {
            EXPECT_LT(p.CompareTo(q), 0);
            ++decided;
        } else if (pUtc > qLocal + 14 * 3600) {
            EXPECT_GT(p.CompareTo(q), 0);
            ++decided;
        } else {
            EXPECT_EQ(p.CompareTo(q), pUtc <= qLocal ? -1 : 1);
        }
    }
    EXPECT_GT(decided, 300);
}

TEST(CDateTimeArithmetic, NormalizedIsTheUtcForm) {
    struct Case {
        const wchar_t* value;
        const wchar_t* normalized;
    };

    const Case cases[] = {
        {L"2024-01-01T02:00:00+05:00", L"2023-12-31T21:00:00Z"},
        {L"2024-02-28T23:30:00.5-00:30", L"2024-02-29T00:00:00.5Z"},
        {L"-0001-12-31T23:00:00-01:00", L"0001-01-01T00:00:00Z"},
        {L"23:30:00-01:00", L"00:30:00Z"},
        {L"2024-03-01-00:30", L"2024-03-01Z"},
        {L"2024-03-01+00:30", L"2024-02-29Z"},
        {L"2024-01-01T02:00:00", L"2024-01-01T02:00:00"},
        {L"2024-01-01T02:00:00Z", L"2024-01-01T02:00:00Z"},
        {L"2024-01-01T02:00:00+00:00", L"2024-01-01T02:00:00Z"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(qvtest::Narrow(tc.value));
        const CDateTime value = DateValue(tc.value);
        const CDateTime normalized = value.GetNormalized();
        EXPECT_EQ(normalized.ToString(), tc.normalized);
        EXPECT_EQ(normalized.GetType(), value.GetType());
    }
    ExpectThrowMsg<CQvInvalidValueException>(
        [] { DateValue(L"9999-12-31T23:00:00-05:00").GetNormalized(); },
        L"Invalid Year [10000] (-9999 <= year <= 9999 && year != 0)");
}

TEST(CDateTimeArithmetic, DayOfWeekAndYear) {
    struct Case {
        const wchar_t* date;
        int dayOfWeek;
        int dayOfYear;
    };

    const Case cases[] = {
        {L"2024-01-01", 1, 1},  {L"2000-12-31", 0, 366},         {L"1970-01-01", 4, 1},
        {L"0001-01-01", 1, 1},  {L"-0001-12-31", 0, 365},        {L"2023-12-31", 0, 365},
        {L"1900-03-01", 4, 60}, {L"2024-03-01T23:59:59", 5, 61},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(qvtest::Narrow(tc.date));
        const CDateTime value = DateValue(tc.date);
        EXPECT_EQ(value.GetDayOfWeek(), tc.dayOfWeek);
        EXPECT_EQ(value.GetDayOfYear(), tc.dayOfYear);
    }
}

TEST(CDateTimeArithmetic, TimeValues) {
    {
        ScopedTimeZone utc("UTC0");
        EXPECT_EQ(CDateTime(0L).ToString(), L"1970-01-01T00:00:00");
        EXPECT_EQ(CDateTime(951782400L).ToString(), L"2000-02-29T00:00:00");
        EXPECT_EQ(CDateTime(-62135596800L).ToString(), L"0001-01-01T00:00:00");
        EXPECT_EQ(DateValue(L"2000-02-29T00:00:00").GetTime(), 951782400L);
        EXPECT_EQ(DateValue(L"2000-02-29").GetTime(), 951782400L);
        ExpectThrowMsg<CQvInvalidValueException>(
            [] { CDateTime(-62135596801L); },
            L"The time value -62135596801 is outside the years 1 to 9999.");
        ExpectThrowMsg<CQvInvalidValueException>(
            [] { CDateTime(253402300800L); },
            L"The time value 253402300800 is outside the years 1 to 9999.");
        ExpectThrowMsg<CQvInvalidValueException>(
            [] { CDateTime(9000000000000000000L); },
            L"The time value 9000000000000000000 is outside the years 1 to 9999.");
    }
    {
        ScopedTimeZone est("EST5");
        CDateTime value;
        value = 0L;
        EXPECT_EQ(value.ToString(), L"1969-12-31T19:00:00");
        EXPECT_EQ(value.GetTime(), 0L);
        // A zone makes the value an instant, whatever the local zone.
        EXPECT_EQ(DateValue(L"1970-01-01T00:00:00Z").GetTime(), 0L);
        EXPECT_EQ(DateValue(L"1970-01-01T00:00:00+01:00").GetTime(), -3600L);
        EXPECT_EQ(DateValue(L"1969-12-31T23:59:59.9Z").GetTime(), -1L);
        const long now = static_cast<long>(std::time(nullptr));
        const CDateTime current = CDateTime::GetCurrentTime();
        EXPECT_EQ(current.GetType(), CDateTime::DTType_dateTime);
        EXPECT_FALSE(current.HasTimeZone());
        EXPECT_LE(current.GetTime() - now, 2L);
        EXPECT_GE(current.GetTime() - now, 0L);
    }
}
