#pragma once

// Field-by-field pictures of CDateTime values for the date and time suites.

#include "common/TestUtils.h"

#include <QvXmlLib16/DateTime.h>

#include <string>

namespace qvtest {

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
