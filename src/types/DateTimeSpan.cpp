#include "types/Calendar.h"
#include "types/TypesMessages.h"

#include <QvXmlLib16/DateTimeSpan.h>
#include <QvXmlLib16/Format.h>
#include <QvXmlLib16/QvException.h>

#include <limits>
#include <string>

namespace QvXmlLib16 {

using detail::Int128;

namespace {

void CheckFraction(unsigned short value, const wchar_t* format) {
    if (value > 999)
        throw CQvInvalidValueException(FormatString(format, value));
}

// Reads a duration item by item, remembering the last designator so order and repeats fail.
class DurationReader {
public:
    DurationReader(const wchar_t* text, CDateTimeSpan& span) : m_text(text), m_span(span) {}

    void Read() {
        size_t pos = 0;
        if (At(pos) == L'-') {
            m_span.Negate();
            ++pos;
        }
        if (At(pos++) != L'P')
            Fail();
        bool inTime = false, any = false, timeItem = false;
        int last = -1; // index of the last designator in "YMD" or "HMS"
        while (pos < m_text.size()) {
            if (At(pos) == L'T') {
                if (inTime)
                    Fail();
                inTime = true;
                last = -1;
                ++pos;
                continue;
            }
            ReadItem(pos, inTime, last);
            any = true;
            timeItem = timeItem || inTime;
        }
        if (!any || (inTime && !timeItem))
            Fail();
    }

private:
    wchar_t At(size_t pos) const { return pos < m_text.size() ? m_text[pos] : L'\0'; }

    [[noreturn]] void Fail() const {
        throw CQvInvalidValueException(FormatString(msg::kInvalidXsdDurationFmt, m_text.c_str()));
    }

    unsigned long long ReadNumber(size_t& pos, unsigned long long max) const {
        unsigned long long value = 0;
        for (; At(pos) >= L'0' && At(pos) <= L'9'; ++pos) {
            const unsigned digit = At(pos) - L'0';
            if (value > (max - digit) / 10)
                Fail();
            value = value * 10 + digit;
        }
        return value;
    }

    // Fraction digits after '.', as nanoseconds.
    long ReadFraction(size_t& pos) const {
        const size_t first = pos;
        long nanos = 0;
        for (; At(pos) >= L'0' && At(pos) <= L'9'; ++pos) {
            if (pos - first == 9)
                throw CQvInvalidValueException(
                    FormatString(msg::kDurationFractionTooLongFmt, m_text.c_str()));
            nanos = nanos * 10 + (At(pos) - L'0');
        }
        if (pos == first)
            Fail();
        for (size_t n = pos - first; n < 9; ++n)
            nanos *= 10;
        return nanos;
    }

    void ReadItem(size_t& pos, bool inTime, int& last) {
        constexpr unsigned long long kMax = std::numeric_limits<unsigned long long>::max();
        const unsigned long long value = ReadNumber(pos, kMax);
        long fraction = -1;
        if (At(pos) == L'.') {
            ++pos;
            fraction = ReadFraction(pos);
        }
        const wchar_t designator = At(pos++);
        const std::wstring order = inTime ? L"HMS" : L"YMD";
        const size_t index = designator ? order.find(designator) : std::wstring::npos;
        if (index == std::wstring::npos || static_cast<int>(index) <= last
            || (fraction >= 0 && designator != L'S'))
            Fail();
        last = static_cast<int>(index);
        Store(inTime ? designator : static_cast<wchar_t>(L'a' + index), value);
        if (fraction >= 0) {
            m_span.SetMilliSeconds(static_cast<unsigned short>(fraction / 1000000));
            m_span.SetMicroSeconds(static_cast<unsigned short>(fraction / 1000 % 1000));
            m_span.SetNanoSeconds(static_cast<unsigned short>(fraction % 1000));
        }
    }

    // Date designators arrive as 'a' (years), 'b' (months), 'c' (days) so "M" stays unambiguous.
    void Store(wchar_t field, unsigned long long value) {
        switch (field) {
        case L'a':
            if (value > std::numeric_limits<unsigned short>::max())
                Fail();
            m_span.SetYears(static_cast<unsigned short>(value));
            break;
        case L'b': m_span.SetMonths(static_cast<unsigned long>(value)); break;
        case L'c': m_span.SetDays(static_cast<unsigned long>(value)); break;
        case L'H': m_span.SetHours(static_cast<unsigned long>(value)); break;
        case L'M': m_span.SetMinutes(value); break;
        default: m_span.SetSeconds(value); break;
        }
    }

    std::wstring m_text;
    CDateTimeSpan& m_span;
};

// The reference points XML Schema orders durations by.
const detail::Moment* ReferenceMoments() {
    static const detail::Moment refs[4] = {{1696, 9, 1, 0, 0, true},
                                           {1697, 2, 1, 0, 0, true},
                                           {1903, 3, 1, 0, 0, true},
                                           {1903, 7, 1, 0, 0, true}};
    return refs;
}

int Sign(Int128 v) {
    return v < 0 ? -1 : (v > 0 ? 1 : 0);
}

} // namespace

CDateTimeSpan::CDateTimeSpan() = default;

CDateTimeSpan::CDateTimeSpan(unsigned short years, unsigned long months, unsigned long days,
                             unsigned long hours, unsigned long long minutes,
                             unsigned long long seconds, unsigned short milliSeconds,
                             unsigned short microSeconds, unsigned short nanoSeconds,
                             bool negative) {
    SetDateTimeSpan(years, months, days, hours, minutes, seconds, milliSeconds, microSeconds,
                    nanoSeconds, negative);
}

CDateTimeSpan::CDateTimeSpan(unsigned long days, unsigned long long minutes,
                             unsigned long long seconds) {
    SetDateTimeSpan(days, minutes, seconds);
}

CDateTimeSpan::CDateTimeSpan(const CDateTimeSpan& other) = default;
CDateTimeSpan& CDateTimeSpan::operator=(const CDateTimeSpan& other) = default;
CDateTimeSpan::~CDateTimeSpan() = default;

void CDateTimeSpan::SetDateTimeSpan(unsigned short years, unsigned long months, unsigned long days,
                                    unsigned long hours, unsigned long long minutes,
                                    unsigned long long seconds, unsigned short milliSeconds,
                                    unsigned short microSeconds, unsigned short nanoSeconds,
                                    bool negative) {
    CheckFraction(milliSeconds, msg::kInvalidMilliFmt);
    CheckFraction(microSeconds, msg::kInvalidMicroFmt);
    CheckFraction(nanoSeconds, msg::kInvalidNanoFmt);
    m_years = years;
    m_months = months;
    m_days = days;
    m_hours = hours;
    m_minutes = minutes;
    m_seconds = seconds;
    m_milliSeconds = milliSeconds;
    m_microSeconds = microSeconds;
    m_nanoSeconds = nanoSeconds;
    m_negative = negative;
}

void CDateTimeSpan::SetDateTimeSpan(unsigned long days, unsigned long long minutes,
                                    unsigned long long seconds) {
    SetDateTimeSpan(0, 0, days, 0, minutes, seconds);
}

void CDateTimeSpan::Clear() {
    *this = CDateTimeSpan();
}

void CDateTimeSpan::SetMilliSeconds(unsigned short milliSeconds) {
    CheckFraction(milliSeconds, msg::kInvalidMilliFmt);
    m_milliSeconds = milliSeconds;
}

void CDateTimeSpan::SetMicroSeconds(unsigned short microSeconds) {
    CheckFraction(microSeconds, msg::kInvalidMicroFmt);
    m_microSeconds = microSeconds;
}

void CDateTimeSpan::SetNanoSeconds(unsigned short nanoSeconds) {
    CheckFraction(nanoSeconds, msg::kInvalidNanoFmt);
    m_nanoSeconds = nanoSeconds;
}

CDateTimeSpan CDateTimeSpan::GetAsNegative() const {
    CDateTimeSpan copy = *this;
    copy.Negate();
    return copy;
}

void CDateTimeSpan::ParseXSDDuration(const wchar_t* text) {
    Clear();
    if (!text)
        throw CQvInvalidValueException(msg::kDurationNullString);
    if (!*text)
        throw CQvInvalidValueException(msg::kDurationEmptyString);
    DurationReader(text, *this).Read();
}

std::wstring CDateTimeSpan::ToString() const {
    std::wstring out = m_negative ? L"-P" : L"P";
    const auto item = [&out](unsigned long long value, wchar_t designator) {
        if (value != 0)
            out += std::to_wstring(value) + designator;
    };
    item(m_years, L'Y');
    item(m_months, L'M');
    item(m_days, L'D');
    const bool hasFraction = m_milliSeconds || m_microSeconds || m_nanoSeconds;
    if (m_hours || m_minutes || m_seconds || hasFraction) {
        out += L'T';
        item(m_hours, L'H');
        item(m_minutes, L'M');
        if (m_seconds || hasFraction)
            out += std::to_wstring(m_seconds)
                   + ToFracString(m_milliSeconds, m_microSeconds, m_nanoSeconds) + L'S';
    } else if (out.back() == L'P') {
        out += L"T0S"; // the all-zero span
    }
    return out;
}

int CDateTimeSpan::CompareTo(const CDateTimeSpan& other) const {
    const Int128 months = detail::SpanMonths(*this), otherMonths = detail::SpanMonths(other);
    const Int128 nanos = detail::SpanNanos(*this), otherNanos = detail::SpanNanos(other);
    if (months == otherMonths)
        return Sign(nanos - otherNanos);
    // Summing over the reference points keeps every pair the partial order decides.
    Int128 sum = 0;
    const detail::Moment* refs = ReferenceMoments();
    for (int i = 0; i < 4; ++i)
        sum += detail::AddToMoment(refs[i], months, nanos).Instant()
               - detail::AddToMoment(refs[i], otherMonths, otherNanos).Instant();
    if (const int bySum = Sign(sum))
        return bySum;
    return Sign(months - otherMonths);
}

} // namespace QvXmlLib16
