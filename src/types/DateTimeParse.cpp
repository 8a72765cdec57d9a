#include "types/TypesMessages.h"

#include <QvXmlLib16/DateTime.h>
#include <QvXmlLib16/Format.h>
#include <QvXmlLib16/QvException.h>

#include <string>

namespace QvXmlLib16 {

namespace {

// Reads count digits at pos; false when the text is shorter or holds something else there.
bool ReadDigits(const std::wstring& s, size_t pos, size_t count, int& value) {
    if (pos + count > s.size())
        return false;
    value = 0;
    for (size_t i = pos; i < pos + count; ++i) {
        if (s[i] < L'0' || s[i] > L'9')
            return false;
        value = value * 10 + (s[i] - L'0');
    }
    return true;
}

struct DateFields {
    CDateTime::DTType kind = CDateTime::DTType_None;
    int year = 0, month = 0, day = 0;
};

bool ReadMonthDay(const std::wstring& s, size_t pos, DateFields& f) {
    return ReadDigits(s, pos, 2, f.month) && s[pos + 2] == L'-' && ReadDigits(s, pos + 3, 2, f.day);
}

// --MM, ---DD, --MM-DD
bool ReadYearlessDate(const std::wstring& s, DateFields& f) {
    switch (s.size()) {
    case 4: f.kind = CDateTime::DTType_gMonth; return ReadDigits(s, 2, 2, f.month);
    case 5: f.kind = CDateTime::DTType_gDay; return s[2] == L'-' && ReadDigits(s, 3, 2, f.day);
    case 7: f.kind = CDateTime::DTType_gMonthDay; return ReadMonthDay(s, 2, f);
    default: return false;
    }
}

// [-]CCYY, [-]CCYY-MM, [-]CCYY-MM-DD
bool ReadDatedDate(const std::wstring& s, DateFields& f) {
    const size_t start = !s.empty() && s[0] == L'-' ? 1 : 0;
    if (!ReadDigits(s, start, 4, f.year))
        return false;
    if (start == 1)
        f.year = -f.year;
    const size_t n = s.size() - start;
    const size_t pos = start + 4;
    switch (n) {
    case 4: f.kind = CDateTime::DTType_gYear; return true;
    case 7:
        f.kind = CDateTime::DTType_gYearMonth;
        return s[pos] == L'-' && ReadDigits(s, pos + 1, 2, f.month);
    case 10: f.kind = CDateTime::DTType_date; return s[pos] == L'-' && ReadMonthDay(s, pos + 1, f);
    default: return false;
    }
}

[[noreturn]] void ThrowFmt(const wchar_t* format, const wchar_t* text) {
    throw CQvInvalidValueException(FormatString(format, text));
}

} // namespace

void CDateTime::SetXSDDate(const wchar_t* text) {
    if (!text)
        throw CQvInvalidValueException(msg::kDateNullString);
    std::wstring date(text);
    if (date.empty())
        throw CQvInvalidValueException(msg::kDateEmptyString);
    if (date.find(L'T') != std::wstring::npos)
        throw CQvInvalidValueException(msg::kDateTNotAllowed);
    const bool hasColon = date.find(L':') != std::wstring::npos;
    std::wstring zone;
    if (date.back() == L'Z') {
        if (hasColon)
            throw CQvInvalidValueException(msg::kDateBadZone);
        zone = L"Z";
        date.pop_back();
    } else if (hasColon) {
        if (date.size() < 6)
            ThrowFmt(msg::kInvalidXsdDateFmt, text);
        zone = date.substr(date.size() - 6);
        date.resize(date.size() - 6);
    }
    DateFields f;
    const bool yearless = date.compare(0, 2, L"--") == 0;
    if (!(yearless ? ReadYearlessDate(date, f) : ReadDatedDate(date, f)))
        ThrowFmt(msg::kInvalidXsdDateFmt, text);
    m_type = f.kind;
    m_year = static_cast<short>(f.year);
    m_month = static_cast<unsigned char>(f.month);
    m_day = static_cast<unsigned char>(f.day);
    m_hasTimeZone = m_isUTC = m_zoneNegative = false;
    m_zoneHour = 0;
    m_zoneMinute = 0;
    if (!zone.empty())
        SetZone(zone.c_str());
}

void CDateTime::SetZone(const wchar_t* text) {
    const std::wstring zone(text ? text : L"");
    if (zone == L"Z") {
        SetUTC();
        return;
    }
    int hours = 0, minutes = 0;
    const bool signOk = zone.size() == 6 && (zone[0] == L'+' || zone[0] == L'-');
    if (!signOk || !ReadDigits(zone, 1, 2, hours) || zone[3] != L':'
        || !ReadDigits(zone, 4, 2, minutes))
        ThrowFmt(msg::kInvalidXsdTimeZoneFmt, zone.c_str());
    const bool negative = zone[0] == L'-';
    SetTimeZone(static_cast<short>(negative ? -hours : hours), static_cast<unsigned char>(minutes));
    m_zoneNegative = negative;
}

void CDateTime::SetXSDTime(const wchar_t* text) {
    if (!text)
        throw CQvInvalidValueException(msg::kTimeNullString);
    const std::wstring time(text);
    if (time.empty())
        throw CQvInvalidValueException(msg::kTimeEmptyString);
    int hour = 0, minute = 0, second = 0;
    if (!ReadDigits(time, 0, 2, hour) || time.size() < 8 || time[2] != L':'
        || !ReadDigits(time, 3, 2, minute) || time[5] != L':' || !ReadDigits(time, 6, 2, second)
        || hour > 23 || minute > 59 || second > 59)
        ThrowFmt(msg::kInvalidXsdTimeFmt, text);
    size_t pos = 8;
    long fraction = 0; // nanoseconds
    if (pos < time.size() && time[pos] == L'.') {
        const size_t first = ++pos;
        while (pos < time.size() && time[pos] >= L'0' && time[pos] <= L'9')
            ++pos;
        if (pos == first)
            ThrowFmt(msg::kInvalidXsdTimeFmt, text);
        if (pos - first > 9)
            ThrowFmt(msg::kTimeFractionTooLongFmt, text);
        for (size_t i = first; i < first + 9; ++i)
            fraction = fraction * 10 + (i < pos ? time[i] - L'0' : 0);
    }
    m_type = DTType_time;
    m_hour = static_cast<unsigned char>(hour);
    m_minute = static_cast<unsigned char>(minute);
    m_second = static_cast<unsigned char>(second);
    m_milli = static_cast<unsigned short>(fraction / 1000000);
    m_micro = static_cast<unsigned short>(fraction / 1000 % 1000);
    m_nano = static_cast<unsigned short>(fraction % 1000);
    m_hasTimeZone = m_isUTC = m_zoneNegative = false;
    m_zoneHour = 0;
    m_zoneMinute = 0;
    if (pos < time.size())
        SetZone(time.c_str() + pos);
}

void CDateTime::ParseXSDDate(const wchar_t* text) {
    Clear();
    SetXSDDate(text);
    Validate();
}

void CDateTime::ParseXSDTime(const wchar_t* text) {
    Clear();
    SetXSDTime(text);
    Validate();
}

void CDateTime::ParseXSDDateTime(const wchar_t* text) {
    if (!text)
        throw CQvInvalidValueException(msg::kDateTimeNullString);
    Clear();
    const std::wstring whole(text);
    const size_t t = whole.find(L'T');
    if (t == std::wstring::npos)
        ThrowFmt(msg::kInvalidXsdDateTimeFmt, text);
    // The zone belongs after the time, so a date part carrying one is no date here.
    try {
        SetXSDDate(whole.substr(0, t).c_str());
    } catch (const CQvInvalidValueException&) {
        ThrowFmt(msg::kInvalidXsdDateTimeExpectedFmt, text);
    }
    if (m_type != DTType_date || m_hasTimeZone)
        ThrowFmt(msg::kInvalidXsdDateTimeExpectedFmt, text);
    SetXSDTime(whole.c_str() + t + 1);
    m_type = DTType_dateTime;
    Validate();
}

} // namespace QvXmlLib16
