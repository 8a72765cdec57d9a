#pragma once

#include <QvXmlLib16/Export.h>

#include <string>

namespace QvXmlLib16 {

// An XML Schema duration, kept field by field as written; the sign lives only in the flag.
//
// Ordering: years fold into months and days, hours and minutes into seconds. Where the XML Schema
// partial order decides a pair (the same answer when both are added to 1696-09-01, 1697-02-01,
// 1903-03-01 and 1903-07-01), CompareTo gives that answer. Pairs it leaves incomparable (P1M
// against P30D) are decided by the sum of the four results, then by the months, then by the
// seconds. Two spans are equal exactly when their months and their seconds are equal, so P1Y
// equals P12M and P1D equals PT24H, while P1M and P30D differ.
class QVXML_API CDateTimeSpan {
public:
    CDateTimeSpan();
    CDateTimeSpan(unsigned short years, unsigned long months, unsigned long days,
                  unsigned long hours, unsigned long long minutes, unsigned long long seconds,
                  unsigned short milliSeconds = 0, unsigned short microSeconds = 0,
                  unsigned short nanoSeconds = 0, bool negative = false);
    CDateTimeSpan(unsigned long days, unsigned long long minutes, unsigned long long seconds);
    CDateTimeSpan(const CDateTimeSpan& other);
    CDateTimeSpan& operator=(const CDateTimeSpan& other);
    virtual ~CDateTimeSpan();

    void SetDateTimeSpan(unsigned short years, unsigned long months, unsigned long days,
                         unsigned long hours, unsigned long long minutes,
                         unsigned long long seconds, unsigned short milliSeconds = 0,
                         unsigned short microSeconds = 0, unsigned short nanoSeconds = 0,
                         bool negative = false);
    void SetDateTimeSpan(unsigned long days, unsigned long long minutes,
                         unsigned long long seconds);
    void Clear();

    unsigned short GetYears() const { return m_years; }

    void SetYears(unsigned short years) { m_years = years; }

    unsigned long GetMonths() const { return m_months; }

    void SetMonths(unsigned long months) { m_months = months; }

    unsigned long GetDays() const { return m_days; }

    void SetDays(unsigned long days) { m_days = days; }

    unsigned long GetHours() const { return m_hours; }

    void SetHours(unsigned long hours) { m_hours = hours; }

    unsigned long long GetMinutes() const { return m_minutes; }

    void SetMinutes(unsigned long long minutes) { m_minutes = minutes; }

    unsigned long long GetSeconds() const { return m_seconds; }

    void SetSeconds(unsigned long long seconds) { m_seconds = seconds; }

    unsigned short GetMilliSeconds() const { return m_milliSeconds; }

    void SetMilliSeconds(unsigned short milliSeconds); // 0..999

    unsigned short GetMicroSeconds() const { return m_microSeconds; }

    void SetMicroSeconds(unsigned short microSeconds); // 0..999

    unsigned short GetNanoSeconds() const { return m_nanoSeconds; }

    void SetNanoSeconds(unsigned short nanoSeconds); // 0..999

    bool IsNegative() const { return m_negative; }

    void Negate() { m_negative = !m_negative; }

    CDateTimeSpan GetAsNegative() const;

    void ParseXSDDuration(const wchar_t* text);
    // The all-zero span prints as "PT0S" ("-PT0S" when negative).
    std::wstring ToString() const;

    int CompareTo(const CDateTimeSpan& other) const;

    bool operator==(const CDateTimeSpan& other) const { return CompareTo(other) == 0; }

    bool operator!=(const CDateTimeSpan& other) const { return CompareTo(other) != 0; }

    bool operator<(const CDateTimeSpan& other) const { return CompareTo(other) < 0; }

    bool operator<=(const CDateTimeSpan& other) const { return CompareTo(other) <= 0; }

    bool operator>(const CDateTimeSpan& other) const { return CompareTo(other) > 0; }

    bool operator>=(const CDateTimeSpan& other) const { return CompareTo(other) >= 0; }

private:
    unsigned short m_years = 0;
    unsigned long m_months = 0;
    unsigned long m_days = 0;
    unsigned long m_hours = 0;
    unsigned long long m_minutes = 0;
    unsigned long long m_seconds = 0;
    unsigned short m_milliSeconds = 0;
    unsigned short m_microSeconds = 0;
    unsigned short m_nanoSeconds = 0;
    bool m_negative = false;
};

} // namespace QvXmlLib16
