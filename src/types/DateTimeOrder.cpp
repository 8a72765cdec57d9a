// Ordering, normalisation, duration arithmetic and time values of CDateTime.

#include "types/Calendar.h"
#include "types/TypesMessages.h"

#include <QvXmlLib16/DateTime.h>
#include <QvXmlLib16/DateTimeSpan.h>
#include <QvXmlLib16/Format.h>
#include <QvXmlLib16/QvException.h>

#include <ctime>

namespace QvXmlLib16 {

using detail::Int128;
using detail::kNanosPerDay;
using detail::kNanosPerSecond;
using detail::Moment;

namespace {

int Sign(Int128 v) {
    return v < 0 ? -1 : (v > 0 ? 1 : 0);
}

// Nanoseconds from 0001-01-01T00:00:00Z, the origin of Moment::Instant, to the Unix epoch.
Int128 EpochNanos() {
    return detail::DaysFromCivil(1970, 1, 1) * kNanosPerDay;
}

} // namespace

// XML Schema orders a zoned P against an unzoned Q as P < Q when P < Q+14:00, P > Q when
// P > Q-14:00, and leaves the rest indeterminate. Both decided cases agree with comparing P to Q
// read as UTC, so that comparison gives every answer; an exact tie puts the unzoned value last.
int CDateTime::CompareTo(const CDateTime& other) const {
    Validate();
    other.Validate();
    const Moment a = DateTimeAccess::ToMoment(*this);
    const Moment b = DateTimeAccess::ToMoment(other);
    if (const int byInstant = Sign(a.Instant() - b.Instant()))
        return byInstant;
    if (a.hasZone != b.hasZone)
        return a.hasZone ? -1 : 1;
    return Sign(Int128(m_type) - other.m_type);
}

int Compare(const CDateTime& a, const CDateTime& b) {
    return a.CompareTo(b);
}

CDateTime CDateTime::GetNormalized() const {
    Validate();
    if (!m_hasTimeZone)
        return *this;
    const Moment local = DateTimeAccess::ToMoment(*this);
    Moment utc = detail::AddToMoment(local, 0, -Int128(local.zoneMinutes) * 60 * kNanosPerSecond);
    CDateTime result = *this;
    if (!DateTimeAccess::FromMoment(utc, result))
        throw CQvInvalidValueException(
            FormatString(msg::kInvalidYearFmt, static_cast<int>(utc.year), MIN_YEAR, MAX_YEAR));
    result.SetUTC();
    return result;
}

void CDateTime::AddDateTimeSpan(const CDateTimeSpan& span) {
    if (m_type == DTType_None)
        throw CQvInvalidValueException(
            FormatString(msg::kAccessorKindFmt, L"AddDateTimeSpan", detail::KindName(m_type)));
    Validate();
    const Moment moved = detail::AddToMoment(DateTimeAccess::ToMoment(*this),
                                             detail::SpanMonths(span), detail::SpanNanos(span));
    CDateTime result = *this;
    if (!DateTimeAccess::FromMoment(moved, result))
        throw CQvOverFlowException(FormatString(msg::kDateArithmeticOverflowFmt, ToString().c_str(),
                                                span.ToString().c_str()));
    *this = result;
}

CDateTime CDateTime::operator+(const CDateTimeSpan& span) const {
    CDateTime result = *this;
    result.AddDateTimeSpan(span);
    return result;
}

CDateTime& CDateTime::operator+=(const CDateTimeSpan& span) {
    AddDateTimeSpan(span);
    return *this;
}

CDateTime CDateTime::operator-(const CDateTimeSpan& span) const {
    return *this + span.GetAsNegative();
}

CDateTime& CDateTime::operator-=(const CDateTimeSpan& span) {
    AddDateTimeSpan(span.GetAsNegative());
    return *this;
}

CDateTimeSpan CDateTime::operator-(const CDateTime& other) const {
    if (m_type != other.m_type)
        throw CQvInvalidValueException(FormatString(
            msg::kSubtractKindsFmt, detail::KindName(other.m_type), detail::KindName(m_type)));
    if (m_type == DTType_None)
        throw CQvInvalidValueException(
            FormatString(msg::kAccessorKindFmt, L"operator-", detail::KindName(m_type)));
    Validate();
    other.Validate();
    const Int128 diff =
        DateTimeAccess::ToMoment(*this).Instant() - DateTimeAccess::ToMoment(other).Instant();
    const Int128 nanos = diff < 0 ? -diff : diff;
    const Int128 seconds = nanos / kNanosPerSecond;
    const long long fraction = static_cast<long long>(nanos % kNanosPerSecond);
    return CDateTimeSpan(0, 0, static_cast<unsigned long>(seconds / 86400),
                         static_cast<unsigned long>(seconds % 86400 / 3600),
                         static_cast<unsigned long long>(seconds % 3600 / 60),
                         static_cast<unsigned long long>(seconds % 60),
                         static_cast<unsigned short>(fraction / 1000000),
                         static_cast<unsigned short>(fraction / 1000 % 1000),
                         static_cast<unsigned short>(fraction % 1000), diff < 0);
}

CDateTime::CDateTime(const long& timeValue) {
    const std::time_t t = static_cast<std::time_t>(timeValue);
    std::tm local{};
    if (!localtime_r(&t, &local) || local.tm_year < 1 - 1900 || local.tm_year > 9999 - 1900)
        throw CQvInvalidValueException(FormatString(msg::kTimeValueOutOfRangeFmt, timeValue));
    SetDateTime(static_cast<short>(local.tm_year + 1900),
                static_cast<unsigned char>(local.tm_mon + 1),
                static_cast<unsigned char>(local.tm_mday),
                static_cast<unsigned char>(local.tm_hour), static_cast<unsigned char>(local.tm_min),
                static_cast<unsigned char>(local.tm_sec > 59 ? 59 : local.tm_sec));
}

CDateTime& CDateTime::operator=(const long& timeValue) {
    *this = CDateTime(timeValue);
    return *this;
}

CDateTime CDateTime::GetCurrentTime() {
    return CDateTime(static_cast<long>(std::time(nullptr)));
}

long CDateTime::GetTime() const {
    if (m_type != DTType_dateTime && m_type != DTType_date)
        throw CQvInvalidValueException(
            FormatString(msg::kGetTimeKindFmt, detail::KindName(m_type)));
    Validate();
    if (m_hasTimeZone) {
        const Int128 nanos = DateTimeAccess::ToMoment(*this).Instant() - EpochNanos();
        return static_cast<long>(detail::FloorDiv(nanos, kNanosPerSecond));
    }
    std::tm local{};
    local.tm_year = (m_year > 0 ? m_year : m_year + 1) - 1900; // struct tm counts a year zero
    local.tm_mon = m_month - 1;
    local.tm_mday = m_day;
    local.tm_hour = m_hour;
    local.tm_min = m_minute;
    local.tm_sec = m_second;
    local.tm_isdst = -1;
    return static_cast<long>(std::mktime(&local));
}

} // namespace QvXmlLib16
