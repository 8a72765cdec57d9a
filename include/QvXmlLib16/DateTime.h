#pragma once

#include <QvXmlLib16/Export.h>

#include <string>

namespace QvXmlLib16 {

class CDateTimeSpan;

// Days in each month; February 29 is allowed only when IsLeapYear says so.
inline constexpr unsigned char g_monthMax[12] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
// Days of a common year that come before each month (index 12 is the length of the year).
inline constexpr unsigned short g_monthDayInYear[13] = {0,   31,  59,  90,  120, 151, 181,
                                                        212, 243, 273, 304, 334, 365};

// One value of any of the eight XML Schema date and time types; the kind says which fields count.
//
// Years run -9999..-1, 1..9999 with no year zero: -0001 is followed by 0001, and the Gregorian
// leap rule applies to the written number (so -0004 is a leap year).
//
// Ordering: values are placed on one timeline. Fields a kind does not use are filled in as year
// 1972, month 1, day 1 and midnight; values with a zone are taken at their UTC instant. A value
// without a zone against one with a zone is decided the XML Schema way (it may sit anywhere from
// -14:00 to +14:00); when that leaves the pair indeterminate, the value without a zone is taken
// as UTC, and if the instants then tie, the value without a zone is the greater one. Values of
// different kinds on the same instant order by kind number. So CompareTo is a total order that
// agrees with every pair the XML Schema relation decides.
class QVXML_API CDateTime {
public:
    enum DTType : int {
        DTType_None = 0,
        DTType_dateTime = 1,
        DTType_date = 2,
        DTType_gYearMonth = 3,
        DTType_gYear = 4,
        DTType_time = 5,
        DTType_gDay = 6,
        DTType_gMonth = 7,
        DTType_gMonthDay = 8
    };

    static constexpr short MIN_YEAR = -9999;
    static constexpr short MAX_YEAR = 9999;

    CDateTime();
    explicit CDateTime(DTType kind);
    explicit CDateTime(const wchar_t* text); // a dateTime in lexical form
    CDateTime(short year, unsigned char month, unsigned char day);
    CDateTime(short year, unsigned char month, unsigned char day, unsigned char hour,
              unsigned char minute, unsigned char second);
    CDateTime(short year, unsigned char month, unsigned char day, unsigned char hour,
              unsigned char minute, unsigned char second, unsigned short milli,
              unsigned short micro, unsigned short nano);
    // Local time of a time value in seconds, as a dateTime without zone.
    explicit CDateTime(const long& timeValue);
    CDateTime& operator=(const long& timeValue);
    virtual ~CDateTime();

    // Local time now, as a dateTime without zone.
    static CDateTime GetCurrentTime();
    static bool IsLeapYear(int year);
    static std::wstring GetTypeAsString(DTType kind);

    // Kind-setting setters keep the zone and reset every other field.
    void SetDateTime(short year, unsigned char month, unsigned char day, unsigned char hour,
                     unsigned char minute, unsigned char second);
    void SetDateTime(short year, unsigned char month, unsigned char day, unsigned char hour,
                     unsigned char minute, unsigned char second, unsigned short milli,
                     unsigned short micro, unsigned short nano);
    // Fails unless every non-zero field given is one that kind uses.
    void SetDateTime(DTType kind, short year, unsigned char month, unsigned char day,
                     unsigned char hour, unsigned char minute, unsigned char second);
    void SetDateTime(DTType kind, short year, unsigned char month, unsigned char day,
                     unsigned char hour, unsigned char minute, unsigned char second,
                     unsigned short milli, unsigned short micro, unsigned short nano);
    // Copies the fields (and the zone) that kind uses, when src holds them.
    void SetDateTime(const CDateTime& src, DTType kind);
    void SetDate(short year, unsigned char month, unsigned char day);
    void SetTime(unsigned char hour, unsigned char minute, unsigned char second);
    void SetTime(unsigned char hour, unsigned char minute, unsigned char second,
                 unsigned short milli, unsigned short micro, unsigned short nano);
    // Sets the fraction of a dateTime or time; a value of kind 0 becomes a time.
    void SetFracTime(unsigned short milli, unsigned short micro, unsigned short nano);
    void SetGYear(short year);
    void SetGYearMonth(short year, unsigned char month);
    void SetGMonth(unsigned char month);
    void SetGMonthDay(unsigned char month, unsigned char day);
    void SetGDay(unsigned char day);

    // Field access; each fails when the kind does not use the field. Ranges are Validate's job.
    short GetYear() const;
    void SetYear(short year);
    unsigned char GetMonth() const;
    void SetMonth(unsigned char month);
    unsigned char GetDay() const;
    void SetDay(unsigned char day);
    unsigned char GetHour() const;
    void SetHour(unsigned char hour);
    unsigned char GetMinute() const;
    void SetMinute(unsigned char minute);
    unsigned char GetSecond() const;
    void SetSecond(unsigned char second);
    unsigned short GetMilliSecond() const;
    void SetMilliSecond(unsigned short milli);
    unsigned short GetMicroSecond() const;
    void SetMicroSecond(unsigned short micro);
    unsigned short GetNanoSecond() const;
    void SetNanoSecond(unsigned short nano);
    double GetRealSecond() const;
    int GetDayOfYear() const; // 1 for January 1
    int GetDayOfWeek() const; // 0 for Sunday
    long GetTime() const;     // time value in seconds; without a zone the value is local time

    bool HasTimeZone() const { return m_hasTimeZone; }

    bool IsUTC() const { return m_isUTC; }

    short GetZoneHour() const;
    unsigned char GetZoneMinute() const;
    // A negative hours value makes the whole offset negative.
    void SetTimeZone(short hours, unsigned char minutes);
    void SetUTC();
    void SetZone(const wchar_t* text);

    void ParseXSDDateTime(const wchar_t* text);
    void ParseXSDDate(const wchar_t* text);
    void ParseXSDTime(const wchar_t* text);
    void SetXSDDate(const wchar_t* text);
    void SetXSDTime(const wchar_t* text);

    void Validate() const;
    bool CheckConversion(DTType from, DTType to) const;

    DTType GetType() const { return m_type; }

    std::wstring GetTypeAsString() const;
    // The same point in UTC (zone "Z"); a value without a zone is returned unchanged. Kinds
    // without a time move their first instant, so 2024-01-01+05:00 becomes 2023-12-31Z.
    CDateTime GetNormalized() const;
    void Clear();

    std::wstring ToString() const;
    std::wstring ToString(const wchar_t* format) const;

    int CompareTo(const CDateTime& other) const;

    bool operator==(const CDateTime& other) const { return CompareTo(other) == 0; }

    bool operator!=(const CDateTime& other) const { return CompareTo(other) != 0; }

    bool operator<(const CDateTime& other) const { return CompareTo(other) < 0; }

    bool operator<=(const CDateTime& other) const { return CompareTo(other) <= 0; }

    bool operator>(const CDateTime& other) const { return CompareTo(other) > 0; }

    bool operator>=(const CDateTime& other) const { return CompareTo(other) >= 0; }

    // Adds the way XML Schema adds a duration: months first with the day clamped to the new
    // month, then the time with carries through every field.
    void AddDateTimeSpan(const CDateTimeSpan& span);
    CDateTime operator+(const CDateTimeSpan& span) const;
    CDateTime& operator+=(const CDateTimeSpan& span);
    CDateTime operator-(const CDateTimeSpan& span) const;
    CDateTime& operator-=(const CDateTimeSpan& span);
    // The span d, in days and time only, for which other + d is this value. Both must be of one
    // kind; a value without a zone is taken as UTC when the other has one.
    CDateTimeSpan operator-(const CDateTime& other) const;

private:
    friend struct DateTimeAccess;

    DTType m_type = DTType_None;
    short m_year = 0;
    unsigned char m_month = 0;
    unsigned char m_day = 0;
    unsigned char m_hour = 0;
    unsigned char m_minute = 0;
    unsigned char m_second = 0;
    unsigned short m_milli = 0;
    unsigned short m_micro = 0;
    unsigned short m_nano = 0;
    bool m_hasTimeZone = false;
    bool m_isUTC = false;
    short m_zoneHour = 0;
    unsigned char m_zoneMinute = 0;
    bool m_zoneNegative = false; // "-00:30" has an hour of 0 and still lies west of UTC
};

QVXML_API int Compare(const CDateTime& a, const CDateTime& b);

} // namespace QvXmlLib16
