#pragma once

// Calendar arithmetic shared by CDateTime and CDateTimeSpan. Years have no zero (-1 is followed
// by 1) and the leap rule applies to the written number, so the years before 1 mirror the years
// after it. 128-bit integers keep huge durations exact.

#include <QvXmlLib16/DateTime.h>
#include <QvXmlLib16/DateTimeSpan.h>

namespace QvXmlLib16::detail {

using Int128 = __int128;

inline constexpr long long kNanosPerSecond = 1000000000LL;
inline constexpr long long kNanosPerDay = 86400LL * kNanosPerSecond;

// Floor division and the matching non-negative remainder.
inline Int128 FloorDiv(Int128 a, Int128 b) {
    Int128 q = a / b;
    return (a % b != 0 && ((a < 0) != (b < 0))) ? q - 1 : q;
}

inline Int128 FloorMod(Int128 a, Int128 b) {
    return a - FloorDiv(a, b) * b;
}

int DaysInMonth(Int128 year, int month);
// Days from 0001-01-01 (day 0) to the given date.
Int128 DaysFromCivil(Int128 year, int month, int day);
void CivilFromDays(Int128 days, Int128& year, int& month, int& day);
// Adds months to a year and month (1-12), keeping the month in 1-12 and skipping year zero.
void AddMonths(Int128& year, int& month, Int128 months);

// A span as signed totals: years fold into months; days, hours and minutes into nanoseconds.
Int128 SpanMonths(const CDateTimeSpan& span);
Int128 SpanNanos(const CDateTimeSpan& span);

// A date and time with every field present (absent ones filled in) and the zone offset.
struct Moment {
    Int128 year = 1972;
    int month = 1;
    int day = 1;
    Int128 nanosOfDay = 0; // hours, minutes, seconds and fraction
    int zoneMinutes = 0;   // east of UTC
    bool hasZone = false;

    Int128 Instant() const; // nanoseconds from 0001-01-01T00:00:00Z, zone applied
};

// Moves m by months, then by nanoseconds, in the XML Schema way.
Moment AddToMoment(Moment m, Int128 months, Int128 nanos);

// Which fields a kind uses.
struct KindFields {
    bool year, month, day, time;
};

KindFields FieldsOf(CDateTime::DTType kind);
// The kind's name; kinds outside 0-8 fail with the unknown-kind message.
const wchar_t* KindName(int kind);

} // namespace QvXmlLib16::detail

namespace QvXmlLib16 {

// The one door from the helpers into CDateTime's fields.
struct DateTimeAccess {
    static detail::Moment ToMoment(const CDateTime& value);
    // Writes the date and time fields value's kind uses; false when the year leaves the range.
    static bool FromMoment(const detail::Moment& m, CDateTime& value);
    static int ZoneMinutes(const CDateTime& value);
};

} // namespace QvXmlLib16
