#include "types/Calendar.h"

#include "types/TypesMessages.h"

#include <QvXmlLib16/Format.h>
#include <QvXmlLib16/QvException.h>

namespace QvXmlLib16::detail {

namespace {

constexpr Int128 kDaysPer400Years = 146097;
constexpr Int128 kDaysPer100Years = 36524;
constexpr Int128 kDaysPer4Years = 1461;

bool Leap(Int128 year) {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

// Days in the years 1..n-1 (n >= 1); by symmetry also the days in -1..-(n-1).
Int128 DaysInFirstYears(Int128 n) {
    const Int128 l = n - 1;
    return 365 * l + l / 4 - l / 100 + l / 400;
}

// The year n >= 1 that holds day e >= 0 counted from 0001-01-01, and e's offset in it.
void Decompose(Int128 e, Int128& n, Int128& offset) {
    n = 1 + 400 * (e / kDaysPer400Years);
    e %= kDaysPer400Years;
    Int128 centuries = e / kDaysPer100Years;
    if (centuries == 4) // the last day of a leap 400th year
        centuries = 3;
    e -= centuries * kDaysPer100Years;
    n += 100 * centuries;
    n += 4 * (e / kDaysPer4Years);
    e %= kDaysPer4Years;
    Int128 years = e / 365;
    if (years == 4)
        years = 3;
    e -= 365 * years;
    n += years;
    offset = e;
}

int MonthStart(int month, bool leap) {
    return g_monthDayInYear[month - 1] + (leap && month > 2 ? 1 : 0);
}

Int128 LinearYear(Int128 year) {
    return year > 0 ? year - 1 : year;
}

Int128 YearOfLinear(Int128 linear) {
    return linear >= 0 ? linear + 1 : linear;
}

} // namespace

int DaysInMonth(Int128 year, int month) {
    return month == 2 && !Leap(year) ? 28 : g_monthMax[month - 1];
}

Int128 DaysFromCivil(Int128 year, int month, int day) {
    const Int128 before = year > 0 ? DaysInFirstYears(year) : -DaysInFirstYears(1 - year);
    return before + MonthStart(month, Leap(year)) + day - 1;
}

void CivilFromDays(Int128 days, Int128& year, int& month, int& day) {
    Int128 n = 0, offset = 0;
    if (days >= 0) {
        Decompose(days, n, offset);
        year = n;
    } else {
        // Count back from 0001-01-01: year -n has the length of year n.
        Decompose(-days - 1, n, offset);
        year = -n;
        offset = (Leap(n) ? 365 : 364) - offset;
    }
    const bool leap = Leap(year);
    month = 12;
    while (MonthStart(month, leap) > offset)
        --month;
    day = static_cast<int>(offset) - MonthStart(month, leap) + 1;
}

void AddMonths(Int128& year, int& month, Int128 months) {
    const Int128 index = LinearYear(year) * 12 + (month - 1) + months;
    year = YearOfLinear(FloorDiv(index, 12));
    month = static_cast<int>(FloorMod(index, 12)) + 1;
}

Int128 SpanMonths(const CDateTimeSpan& span) {
    const Int128 months = Int128(span.GetYears()) * 12 + span.GetMonths();
    return span.IsNegative() ? -months : months;
}

Int128 SpanNanos(const CDateTimeSpan& span) {
    const Int128 minutes = (Int128(span.GetDays()) * 24 + span.GetHours()) * 60 + span.GetMinutes();
    const Int128 seconds = minutes * 60 + span.GetSeconds();
    const Int128 nanos = seconds * kNanosPerSecond + Int128(span.GetMilliSeconds()) * 1000000
                         + Int128(span.GetMicroSeconds()) * 1000 + span.GetNanoSeconds();
    return span.IsNegative() ? -nanos : nanos;
}

Int128 Moment::Instant() const {
    return DaysFromCivil(year, month, day) * kNanosPerDay + nanosOfDay
           - Int128(zoneMinutes) * 60 * kNanosPerSecond;
}

Moment AddToMoment(Moment m, Int128 months, Int128 nanos) {
    AddMonths(m.year, m.month, months);
    const int maxDay = DaysInMonth(m.year, m.month);
    const int day = m.day > maxDay ? maxDay : m.day;
    const Int128 total = m.nanosOfDay + nanos;
    m.nanosOfDay = FloorMod(total, kNanosPerDay);
    CivilFromDays(DaysFromCivil(m.year, m.month, day) + FloorDiv(total, kNanosPerDay), m.year,
                  m.month, m.day);
    return m;
}

KindFields FieldsOf(CDateTime::DTType kind) {
    switch (kind) {
    case CDateTime::DTType_dateTime: return {true, true, true, true};
    case CDateTime::DTType_date: return {true, true, true, false};
    case CDateTime::DTType_gYearMonth: return {true, true, false, false};
    case CDateTime::DTType_gYear: return {true, false, false, false};
    case CDateTime::DTType_time: return {false, false, false, true};
    case CDateTime::DTType_gDay: return {false, false, true, false};
    case CDateTime::DTType_gMonth: return {false, true, false, false};
    case CDateTime::DTType_gMonthDay: return {false, true, true, false};
    default: return {false, false, false, false};
    }
}

const wchar_t* KindName(int kind) {
    static const wchar_t* const names[] = {L"yearZero",   L"dateTime", L"date",
                                           L"gYearMonth", L"gYear",    L"time",
                                           L"gDay",       L"gMonth",   L"gMonthDay"};
    if (kind < 0 || kind > 8)
        throw CQvInvalidValueException(FormatString(msg::kUnknownDateTypeFmt, kind));
    return names[kind];
}

} // namespace QvXmlLib16::detail

namespace QvXmlLib16 {

using detail::Int128;

int DateTimeAccess::ZoneMinutes(const CDateTime& v) {
    if (!v.m_hasTimeZone)
        return 0;
    const int hours = v.m_zoneHour < 0 ? -v.m_zoneHour : v.m_zoneHour;
    const int minutes = hours * 60 + v.m_zoneMinute;
    return v.m_zoneNegative ? -minutes : minutes;
}

detail::Moment DateTimeAccess::ToMoment(const CDateTime& v) {
    const detail::KindFields used = detail::FieldsOf(v.m_type);
    detail::Moment m;
    if (used.year)
        m.year = v.m_year;
    if (used.month)
        m.month = v.m_month;
    if (used.day)
        m.day = v.m_day;
    if (used.time) {
        const Int128 seconds = (Int128(v.m_hour) * 60 + v.m_minute) * 60 + v.m_second;
        m.nanosOfDay = seconds * detail::kNanosPerSecond + Int128(v.m_milli) * 1000000
                       + Int128(v.m_micro) * 1000 + v.m_nano;
    }
    m.hasZone = v.m_hasTimeZone;
    m.zoneMinutes = ZoneMinutes(v);
    return m;
}

bool DateTimeAccess::FromMoment(const detail::Moment& m, CDateTime& v) {
    const detail::KindFields used = detail::FieldsOf(v.m_type);
    if (used.year) {
        if (m.year < CDateTime::MIN_YEAR || m.year > CDateTime::MAX_YEAR)
            return false;
        v.m_year = static_cast<short>(m.year);
    }
    if (used.month)
        v.m_month = static_cast<unsigned char>(m.month);
    if (used.day)
        v.m_day = static_cast<unsigned char>(m.day);
    if (used.time) {
        long long rest = static_cast<long long>(m.nanosOfDay);
        v.m_nano = static_cast<unsigned short>(rest % 1000);
        v.m_micro = static_cast<unsigned short>(rest / 1000 % 1000);
        v.m_milli = static_cast<unsigned short>(rest / 1000000 % 1000);
        rest /= detail::kNanosPerSecond;
        v.m_second = static_cast<unsigned char>(rest % 60);
        v.m_minute = static_cast<unsigned char>(rest / 60 % 60);
        v.m_hour = static_cast<unsigned char>(rest / 3600);
    }
    return true;
}

} // namespace QvXmlLib16
