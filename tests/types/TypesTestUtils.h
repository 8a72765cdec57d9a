#pragma once

// Helpers shared by the value-type suites: reference texts, order checks, date and time parsing.

#include "common/TestUtils.h"

#include <QvXmlLib16/DateTime.h>
#include <QvXmlLib16/DateTimeSpan.h>

#include <cwchar>
#include <string>

namespace qvtest {

// The decimal text of value / 10^scale, written independently of the library.
inline std::wstring ScaledText(__int128 value, int scale = 0) {
    const bool negative = value < 0;
    unsigned __int128 mag = negative ? 0 - static_cast<unsigned __int128>(value) : value;
    std::wstring digits;
    for (; mag; mag /= 10)
        digits.insert(digits.begin(), static_cast<wchar_t>(L'0' + int(mag % 10)));
    if (digits.size() <= static_cast<size_t>(scale))
        digits.insert(0, scale + 1 - digits.size(), L'0');
    if (scale > 0)
        digits.insert(digits.size() - scale, 1, L'.');
    return (negative ? L"-" : L"") + digits;
}

// CompareTo both ways and all six operators agree with the expected order (-1, 0 or 1).
template <class T>
void ExpectOrder(const T& a, const T& b, int expected) {
    EXPECT_EQ(a.CompareTo(b), expected);
    EXPECT_EQ(b.CompareTo(a), -expected);
    EXPECT_EQ(a == b, expected == 0);
    EXPECT_EQ(a != b, expected != 0);
    EXPECT_EQ(a < b, expected < 0);
    EXPECT_EQ(a > b, expected > 0);
    EXPECT_EQ(a <= b, expected <= 0);
    EXPECT_EQ(a >= b, expected >= 0);
}

// Parses any kind by its shape: a 'T' makes a dateTime, "hh:" a time, anything else a date.
inline QvXmlLib16::CDateTime DateValue(const wchar_t* text) {
    QvXmlLib16::CDateTime value;
    if (std::wcschr(text, L'T'))
        value.ParseXSDDateTime(text);
    else if (std::wcslen(text) >= 3 && text[2] == L':')
        value.ParseXSDTime(text);
    else
        value.ParseXSDDate(text);
    return value;
}

inline QvXmlLib16::CDateTimeSpan Span(const wchar_t* text) {
    QvXmlLib16::CDateTimeSpan span;
    span.ParseXSDDuration(text);
    return span;
}

// "date 2024-2-29 +5:0": the kind, then only the fields the kind uses, then the zone
// ("Z", "+h:m", "-h:m" or nothing).
inline std::string Describe(const QvXmlLib16::CDateTime& v) {
    using QvXmlLib16::CDateTime;
    const CDateTime::DTType kind = v.GetType();
    std::string out = Narrow(CDateTime::GetTypeAsString(kind));
    const bool year = kind >= 1 && kind <= 4;
    const bool month = kind == 1 || kind == 2 || kind == 3 || kind == 7 || kind == 8;
    const bool day = kind == 1 || kind == 2 || kind == 6 || kind == 8;
    const bool time = kind == 1 || kind == 5;
    out += " ";
    if (year)
        out += std::to_string(v.GetYear());
    if (month)
        out += "-" + std::to_string(v.GetMonth());
    if (day)
        out += "-" + std::to_string(v.GetDay());
    if (time)
        out += "T" + std::to_string(v.GetHour()) + ":" + std::to_string(v.GetMinute()) + ":"
               + std::to_string(v.GetSecond()) + "." + std::to_string(v.GetMilliSecond()) + "."
               + std::to_string(v.GetMicroSecond()) + "." + std::to_string(v.GetNanoSecond());
    if (v.IsUTC())
        out += " Z";
    else if (v.HasTimeZone()) {
        // Only the printed form tells "-00:30" from "+00:30".
        const std::wstring text = v.ToString();
        const int hours = v.GetZoneHour() < 0 ? -v.GetZoneHour() : v.GetZoneHour();
        out += " " + Narrow(text.substr(text.size() - 6, 1)) + std::to_string(hours) + ":"
               + std::to_string(v.GetZoneMinute());
    }
    return out;
}

} // namespace qvtest
