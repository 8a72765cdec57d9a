#include "types/Calendar.h"
#include "types/TypesMessages.h"

#include <QvXmlLib16/DateTime.h>
#include <QvXmlLib16/Format.h>
#include <QvXmlLib16/QvException.h>

#include <cwchar>

namespace QvXmlLib16 {

namespace {

using detail::FieldsOf;
using detail::KindFields;
using detail::KindName;

[[noreturn]] void ThrowAccessor(const wchar_t* accessor, CDateTime::DTType kind) {
    throw CQvInvalidValueException(FormatString(msg::kAccessorKindFmt, accessor, KindName(kind)));
}

void RequireField(bool used, const wchar_t* accessor, CDateTime::DTType kind) {
    if (!used)
        ThrowAccessor(accessor, kind);
}

void RequireYearNotZero(short year) {
    if (year == 0)
        throw CQvInvalidValueException(msg::kInvalidYearZero);
}

// The narrowest kind whose fields cover the ones given.
CDateTime::DTType KindFor(bool year, bool month, bool day, bool time) {
    if (time)
        return year || month || day ? CDateTime::DTType_dateTime : CDateTime::DTType_time;
    if (year && day)
        return CDateTime::DTType_date;
    if (year)
        return month ? CDateTime::DTType_gYearMonth : CDateTime::DTType_gYear;
    if (month)
        return day ? CDateTime::DTType_gMonthDay : CDateTime::DTType_gMonth;
    return day ? CDateTime::DTType_gDay : CDateTime::DTType_None;
}

bool Covers(const KindFields& outer, const KindFields& inner) {
    return (outer.year || !inner.year) && (outer.month || !inner.month) && (outer.day || !inner.day)
           && (outer.time || !inner.time);
}

void CheckFieldNotUsed(const wchar_t* field, int value, CDateTime::DTType kind) {
    if (value != 0)
        throw CQvInvalidValueException(
            FormatString(msg::kFieldNotForTypeFmt, field, value, KindName(kind)));
}

void CheckRange(int value, int low, int high, const wchar_t* format) {
    if (value < low || value > high)
        throw CQvInvalidValueException(FormatString(format, value));
}

// As PadZero(value, width) for a value that is not negative, written forward at p.
wchar_t* PutPadded(wchar_t* p, unsigned value, unsigned width) {
    wchar_t digits[10];
    unsigned count = 0;
    do {
        digits[count++] = static_cast<wchar_t>(L'0' + value % 10);
        value /= 10;
    } while (value != 0);
    for (; width > count; --width)
        *p++ = L'0';
    while (count > 0)
        *p++ = digits[--count];
    return p;
}

} // namespace

CDateTime::CDateTime() = default;

CDateTime::CDateTime(DTType kind) {
    KindName(kind); // refuses kinds outside 0-8
    m_type = kind;
}

CDateTime::CDateTime(const wchar_t* text) {
    ParseXSDDateTime(text);
}

CDateTime::CDateTime(short year, unsigned char month, unsigned char day) {
    SetDate(year, month, day);
}

CDateTime::CDateTime(short year, unsigned char month, unsigned char day, unsigned char hour,
                     unsigned char minute, unsigned char second) {
    SetDateTime(year, month, day, hour, minute, second);
}

CDateTime::CDateTime(short year, unsigned char month, unsigned char day, unsigned char hour,
                     unsigned char minute, unsigned char second, unsigned short milli,
                     unsigned short micro, unsigned short nano) {
    SetDateTime(year, month, day, hour, minute, second, milli, micro, nano);
}

CDateTime::~CDateTime() = default;

bool CDateTime::IsLeapYear(int year) {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

std::wstring CDateTime::GetTypeAsString(DTType kind) {
    return KindName(kind);
}

std::wstring CDateTime::GetTypeAsString() const {
    return KindName(m_type);
}

void CDateTime::Clear() {
    *this = CDateTime();
}

void CDateTime::SetDateTime(short year, unsigned char month, unsigned char day, unsigned char hour,
                            unsigned char minute, unsigned char second) {
    SetDateTime(DTType_dateTime, year, month, day, hour, minute, second, 0, 0, 0);
}

void CDateTime::SetDateTime(short year, unsigned char month, unsigned char day, unsigned char hour,
                            unsigned char minute, unsigned char second, unsigned short milli,
                            unsigned short micro, unsigned short nano) {
    SetDateTime(DTType_dateTime, year, month, day, hour, minute, second, milli, micro, nano);
}

void CDateTime::SetDateTime(DTType kind, short year, unsigned char month, unsigned char day,
                            unsigned char hour, unsigned char minute, unsigned char second) {
    SetDateTime(kind, year, month, day, hour, minute, second, 0, 0, 0);
}

// Every kind-setting setter ends up here: fields are reset, the zone is kept.
void CDateTime::SetDateTime(DTType kind, short year, unsigned char month, unsigned char day,
                            unsigned char hour, unsigned char minute, unsigned char second,
                            unsigned short milli, unsigned short micro, unsigned short nano) {
    KindName(kind); // refuses kinds outside 0-8
    const KindFields used = FieldsOf(kind);
    const bool hasTime = hour || minute || second || milli || micro || nano;
    const DTType needed = KindFor(year != 0, month != 0, day != 0, hasTime);
    if (!Covers(used, FieldsOf(needed)))
        throw CQvInvalidValueException(
            FormatString(msg::kCopyInvalidTypeFmt, KindName(kind), KindName(needed)));
    if (used.year)
        RequireYearNotZero(year);
    m_type = kind;
    m_year = year;
    m_month = month;
    m_day = day;
    m_hour = hour;
    m_minute = minute;
    m_second = second;
    m_milli = milli;
    m_micro = micro;
    m_nano = nano;
}

void CDateTime::SetDateTime(const CDateTime& src, DTType kind) {
    if (!CheckConversion(src.m_type, kind))
        throw CQvInvalidValueException(
            FormatString(msg::kConversionNotPossibleFmt, KindName(kind), KindName(src.m_type)));
    const KindFields used = FieldsOf(kind);
    const CDateTime copy = src; // src may be *this
    Clear();
    m_type = kind;
    m_year = used.year ? copy.m_year : 0;
    m_month = used.month ? copy.m_month : 0;
    m_day = used.day ? copy.m_day : 0;
    if (used.time) {
        m_hour = copy.m_hour;
        m_minute = copy.m_minute;
        m_second = copy.m_second;
        m_milli = copy.m_milli;
        m_micro = copy.m_micro;
        m_nano = copy.m_nano;
    }
    if (kind != DTType_None) {
        m_hasTimeZone = copy.m_hasTimeZone;
        m_isUTC = copy.m_isUTC;
        m_zoneHour = copy.m_zoneHour;
        m_zoneMinute = copy.m_zoneMinute;
        m_zoneNegative = copy.m_zoneNegative;
    }
}

void CDateTime::SetDate(short year, unsigned char month, unsigned char day) {
    SetDateTime(DTType_date, year, month, day, 0, 0, 0, 0, 0, 0);
}

void CDateTime::SetTime(unsigned char hour, unsigned char minute, unsigned char second) {
    SetDateTime(DTType_time, 0, 0, 0, hour, minute, second, 0, 0, 0);
}

void CDateTime::SetTime(unsigned char hour, unsigned char minute, unsigned char second,
                        unsigned short milli, unsigned short micro, unsigned short nano) {
    SetDateTime(DTType_time, 0, 0, 0, hour, minute, second, milli, micro, nano);
}

void CDateTime::SetFracTime(unsigned short milli, unsigned short micro, unsigned short nano) {
    if (m_type == DTType_None)
        m_type = DTType_time;
    RequireField(FieldsOf(m_type).time, L"GetMilliSecond", m_type);
    m_milli = milli;
    m_micro = micro;
    m_nano = nano;
}

void CDateTime::SetGYear(short year) {
    SetDateTime(DTType_gYear, year, 0, 0, 0, 0, 0, 0, 0, 0);
}

void CDateTime::SetGYearMonth(short year, unsigned char month) {
    SetDateTime(DTType_gYearMonth, year, month, 0, 0, 0, 0, 0, 0, 0);
}

void CDateTime::SetGMonth(unsigned char month) {
    SetDateTime(DTType_gMonth, 0, month, 0, 0, 0, 0, 0, 0, 0);
}

void CDateTime::SetGMonthDay(unsigned char month, unsigned char day) {
    SetDateTime(DTType_gMonthDay, 0, month, day, 0, 0, 0, 0, 0, 0);
}

void CDateTime::SetGDay(unsigned char day) {
    SetDateTime(DTType_gDay, 0, 0, day, 0, 0, 0, 0, 0, 0);
}

short CDateTime::GetYear() const {
    RequireField(FieldsOf(m_type).year, L"GetYear", m_type);
    return m_year;
}

void CDateTime::SetYear(short year) {
    RequireField(FieldsOf(m_type).year, L"GetYear", m_type);
    RequireYearNotZero(year);
    m_year = year;
}

unsigned char CDateTime::GetMonth() const {
    RequireField(FieldsOf(m_type).month, L"GetMonth", m_type);
    return m_month;
}

void CDateTime::SetMonth(unsigned char month) {
    RequireField(FieldsOf(m_type).month, L"GetMonth", m_type);
    m_month = month;
}

unsigned char CDateTime::GetDay() const {
    RequireField(FieldsOf(m_type).day, L"GetDay", m_type);
    return m_day;
}

void CDateTime::SetDay(unsigned char day) {
    RequireField(FieldsOf(m_type).day, L"GetDay", m_type);
    m_day = day;
}

unsigned char CDateTime::GetHour() const {
    RequireField(FieldsOf(m_type).time, L"GetHour", m_type);
    return m_hour;
}

void CDateTime::SetHour(unsigned char hour) {
    RequireField(FieldsOf(m_type).time, L"GetHour", m_type);
    m_hour = hour;
}

unsigned char CDateTime::GetMinute() const {
    RequireField(FieldsOf(m_type).time, L"GetMinute", m_type);
    return m_minute;
}

void CDateTime::SetMinute(unsigned char minute) {
    RequireField(FieldsOf(m_type).time, L"GetMinute", m_type);
    m_minute = minute;
}

unsigned char CDateTime::GetSecond() const {
    RequireField(FieldsOf(m_type).time, L"GetSecond", m_type);
    return m_second;
}

void CDateTime::SetSecond(unsigned char second) {
    RequireField(FieldsOf(m_type).time, L"GetSecond", m_type);
    m_second = second;
}

unsigned short CDateTime::GetMilliSecond() const {
    RequireField(FieldsOf(m_type).time, L"GetMilliSecond", m_type);
    return m_milli;
}

void CDateTime::SetMilliSecond(unsigned short milli) {
    RequireField(FieldsOf(m_type).time, L"GetMilliSecond", m_type);
    m_milli = milli;
}

unsigned short CDateTime::GetMicroSecond() const {
    RequireField(FieldsOf(m_type).time, L"GetMicroSecond", m_type);
    return m_micro;
}

void CDateTime::SetMicroSecond(unsigned short micro) {
    RequireField(FieldsOf(m_type).time, L"GetMicroSecond", m_type);
    m_micro = micro;
}

unsigned short CDateTime::GetNanoSecond() const {
    RequireField(FieldsOf(m_type).time, L"GetNanoSecond", m_type);
    return m_nano;
}

void CDateTime::SetNanoSecond(unsigned short nano) {
    RequireField(FieldsOf(m_type).time, L"GetNanoSecond", m_type);
    m_nano = nano;
}

double CDateTime::GetRealSecond() const {
    RequireField(FieldsOf(m_type).time, L"GetRealSecond", m_type);
    return m_second + m_milli / 1e3 + m_micro / 1e6 + m_nano / 1e9;
}

int CDateTime::GetDayOfYear() const {
    const KindFields used = FieldsOf(m_type);
    RequireField(used.year && used.day, L"GetDayOfYear", m_type);
    Validate();
    return static_cast<int>(detail::DaysFromCivil(m_year, m_month, m_day)
                            - detail::DaysFromCivil(m_year, 1, 1))
           + 1;
}

int CDateTime::GetDayOfWeek() const {
    const KindFields used = FieldsOf(m_type);
    RequireField(used.year && used.day, L"GetDayOfWeek", m_type);
    Validate();
    // 0001-01-01 was a Monday in the proleptic Gregorian calendar.
    return static_cast<int>(detail::FloorMod(detail::DaysFromCivil(m_year, m_month, m_day) + 1, 7));
}

short CDateTime::GetZoneHour() const {
    if (!m_hasTimeZone)
        throw CQvInvalidValueException(msg::kTimeZoneNotUsed);
    return m_zoneHour;
}

unsigned char CDateTime::GetZoneMinute() const {
    if (!m_hasTimeZone)
        throw CQvInvalidValueException(msg::kTimeZoneNotUsed);
    return m_zoneMinute;
}

void CDateTime::SetTimeZone(short hours, unsigned char minutes) {
    if (hours < -23 || hours > 23 || minutes > 59)
        throw CQvInvalidValueException(FormatString(msg::kInvalidTimeZoneFmt, hours, minutes));
    m_hasTimeZone = true;
    m_isUTC = false;
    m_zoneHour = hours;
    m_zoneMinute = minutes;
    m_zoneNegative = hours < 0;
}

void CDateTime::SetUTC() {
    m_hasTimeZone = true;
    m_isUTC = true;
    m_zoneHour = 0;
    m_zoneMinute = 0;
    m_zoneNegative = false;
}

bool CDateTime::CheckConversion(DTType from, DTType to) const {
    if (from < DTType_None || from > DTType_gMonthDay)
        throw CQvInvalidValueException(FormatString(msg::kUnknownDateTypeFmt, int(from)));
    if (from == to || to == DTType_None)
        return true;
    switch (from) {
    case DTType_dateTime: return to >= DTType_date && to <= DTType_gMonthDay;
    case DTType_date:
        return to == DTType_gYearMonth || to == DTType_gYear || to == DTType_gDay
               || to == DTType_gMonth || to == DTType_gMonthDay;
    case DTType_gYearMonth: return to == DTType_gYear || to == DTType_gMonth;
    case DTType_gMonthDay: return to == DTType_gDay || to == DTType_gMonth;
    default: return false;
    }
}

void CDateTime::Validate() const {
    const KindFields used = FieldsOf(m_type);
    if (used.month)
        CheckRange(m_month, 1, 12, msg::kInvalidMonthFmt);
    else
        CheckFieldNotUsed(L"Month", m_month, m_type);
    if (used.year) {
        if (m_year == 0 || m_year < MIN_YEAR || m_year > MAX_YEAR)
            throw CQvInvalidValueException(
                FormatString(msg::kInvalidYearFmt, m_year, MIN_YEAR, MAX_YEAR));
    } else {
        CheckFieldNotUsed(L"Year", m_year, m_type);
    }
    if (used.day && used.year)
        CheckRange(m_day, 1, detail::DaysInMonth(m_year, m_month), msg::kInvalidDayInMonthFmt);
    else if (used.day && used.month)
        CheckRange(m_day, 1, g_monthMax[m_month - 1], msg::kInvalidMonthDayFmt);
    else if (used.day)
        CheckRange(m_day, 1, 31, msg::kInvalidGDayFmt);
    else
        CheckFieldNotUsed(L"Day", m_day, m_type);
    if (used.time) {
        CheckRange(m_hour, 0, 23, msg::kInvalidHourFmt);
        CheckRange(m_minute, 0, 59, msg::kInvalidMinuteFmt);
        CheckRange(m_second, 0, 59, msg::kInvalidSecondFmt);
        CheckRange(m_milli, 0, 999, msg::kInvalidMilliFmt);
        CheckRange(m_micro, 0, 999, msg::kInvalidMicroFmt);
        CheckRange(m_nano, 0, 999, msg::kInvalidNanoFmt);
    } else {
        CheckFieldNotUsed(L"Hour", m_hour, m_type);
        CheckFieldNotUsed(L"Minute", m_minute, m_type);
        CheckFieldNotUsed(L"Second", m_second, m_type);
        CheckFieldNotUsed(L"Milli-Second", m_milli, m_type);
        CheckFieldNotUsed(L"Micro-Second", m_micro, m_type);
        CheckFieldNotUsed(L"Nano-Second", m_nano, m_type);
    }
}

std::wstring CDateTime::ToString() const {
    return ToString(nullptr);
}

std::wstring CDateTime::ToString(const wchar_t* format) const {
    if (format && *format && std::wcscmp(format, L"G") != 0 && std::wcscmp(format, L"s") != 0)
        return msg::kUnknownFormat + std::wstring(format);
    if (m_type == DTType_None)
        return msg::kDateNotSet;
    const KindFields used = FieldsOf(m_type);
    // The fields go into one buffer. They are printed in full even when out of range, so it
    // holds the widest each member type allows (36 characters), fractions aside.
    wchar_t text[48];
    wchar_t* p = text;
    if (used.year) {
        if (m_year < 0)
            *p++ = L'-';
        p = PutPadded(p, static_cast<unsigned>(m_year < 0 ? -m_year : m_year), 4);
    }
    if (used.month) {
        if (!used.year)
            *p++ = L'-';
        *p++ = L'-';
        p = PutPadded(p, m_month, 2);
    }
    if (used.day) {
        if (!used.month) {
            *p++ = L'-';
            *p++ = L'-';
        }
        *p++ = L'-';
        p = PutPadded(p, m_day, 2);
    }
    std::wstring out;
    if (used.time) {
        if (used.year)
            *p++ = L'T';
        p = PutPadded(p, m_hour, 2);
        *p++ = L':';
        p = PutPadded(p, m_minute, 2);
        *p++ = L':';
        p = PutPadded(p, m_second, 2);
        if (m_milli != 0 || m_micro != 0 || m_nano != 0) {
            out.assign(text, p);
            out += ToFracString(m_milli, m_micro, m_nano);
            p = text;
        }
    }
    if (m_isUTC) {
        *p++ = L'Z';
    } else if (m_hasTimeZone) {
        *p++ = m_zoneNegative ? L'-' : L'+';
        p = PutPadded(p, static_cast<unsigned>(m_zoneHour < 0 ? -m_zoneHour : m_zoneHour), 2);
        *p++ = L':';
        p = PutPadded(p, m_zoneMinute, 2);
    }
    out.append(text, p);
    return out;
}

} // namespace QvXmlLib16
