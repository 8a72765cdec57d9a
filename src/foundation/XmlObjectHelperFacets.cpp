#include "foundation/FoundationMessages.h"

#include <QvXmlLib16/Conversions.h>
#include <QvXmlLib16/Format.h>
#include <QvXmlLib16/PrimitiveRestrictions.h>
#include <QvXmlLib16/QvException.h>
#include <QvXmlLib16/Variant.h>
#include <QvXmlLib16/XmlObjectHelper.h>

namespace QvXmlLib16 {

namespace {

using Restrictions = CPrimitiveRestrictions;
using C = CConversions;

const wchar_t* NameText(const wchar_t* name) {
    return name ? name : L"";
}

// The lexical form used by total digits and by the "[%ls]." messages.
std::wstring Lexical(char v) {
    return C::i1ToString(v);
}

std::wstring Lexical(short v) {
    return C::i2ToString(v);
}

std::wstring Lexical(long v) {
    return C::i4ToString(v);
}

std::wstring Lexical(long long v) {
    return C::i8ToString(v);
}

std::wstring Lexical(unsigned char v) {
    return C::ui1ToString(v);
}

std::wstring Lexical(unsigned short v) {
    return C::ui2ToString(v);
}

std::wstring Lexical(unsigned long v) {
    return C::ui4ToString(v);
}

std::wstring Lexical(unsigned long long v) {
    return C::ui8ToString(v);
}

std::wstring Lexical(const CDecimal& v) {
    return v.ToString();
}

std::wstring Lexical(const CBigInteger& v) {
    return v.ToString();
}

std::wstring Lexical(const CDateTime& v) {
    return v.ToString();
}

std::wstring Lexical(const CDateTimeSpan& v) {
    return v.ToString();
}

// How a failure quotes the value: "[%d]", "[%f]" or "[%ls].".
enum class Quote { Number, Real, Text };
// What "total digits" measures: nothing, the lexical form, or the decimal's digit counts.
enum class Digits { None, Lexical, Decimal };

template <Quote kQuote, class V>
[[noreturn]] void Fail(const wchar_t* name, const V& value) {
    if constexpr (kQuote == Quote::Number)
        throw CQvException(
            FormatString(msg::kInvalidValueNumberFmt, NameText(name), static_cast<int>(value)));
    else if constexpr (kQuote == Quote::Real)
        throw CQvException(
            FormatString(msg::kInvalidValueRealFmt, NameText(name), static_cast<double>(value)));
    else
        throw CQvException(
            FormatString(msg::kInvalidValueTextFmt, NameText(name), Lexical(value).c_str()));
}

// Each bound is parsed only when the one before it held.
template <class V, V (*Parse)(const std::wstring&, C::Rule)>
bool BoundsHold(const V& value, const Restrictions& r) {
    constexpr C::Rule kRule = CWhitespaceUtils::WhitespaceRule_Collapse;
    return (r.m_minInclusive.empty() || !(Parse(r.m_minInclusive, kRule) > value))
           && (r.m_maxInclusive.empty() || !(value > Parse(r.m_maxInclusive, kRule)))
           && (r.m_minExclusive.empty() || !(value <= Parse(r.m_minExclusive, kRule)))
           && (r.m_maxExclusive.empty() || !(value >= Parse(r.m_maxExclusive, kRule)));
}

template <Digits kDigits, class V>
bool DigitsHold(const V& value, const Restrictions& r) {
    if constexpr (kDigits == Digits::Lexical) {
        return r.m_totalDigits == -1
               || r.m_totalDigits >= static_cast<long long>(Lexical(value).size());
    } else if constexpr (kDigits == Digits::Decimal) {
        // Counting the digits builds and trims big numbers: only do it for a facet that asks.
        if (r.m_totalDigits == -1 && r.m_fractionDigits == -1)
            return true;
        const long long fraction = CXmlObjectHelper::GetDecimalFractionPartLen(value);
        const long long total = CXmlObjectHelper::GetDecimalIntegerPartLen(value) + fraction;
        return (r.m_totalDigits == -1 || total <= r.m_totalDigits)
               && (r.m_fractionDigits == -1 || fraction <= r.m_fractionDigits);
    } else {
        return true;
    }
}

// The one check behind every ordered type; the parameters are all that differs per type.
template <class V, V (*Parse)(const std::wstring&, C::Rule), Quote kQuote, Digits kDigits>
void CheckOrdered(const wchar_t* name, const V& value, const Restrictions& r) {
    if (!BoundsHold<V, Parse>(value, r) || !DigitsHold<kDigits>(value, r))
        Fail<kQuote>(name, value);
}

bool LengthsHold(long long length, const Restrictions& r) {
    return (r.m_length == -1 || r.m_length == length)
           && (r.m_minLength == -1 || r.m_minLength <= length)
           && (r.m_maxLength == -1 || r.m_maxLength >= length);
}

void CheckBinary(const wchar_t* name, const CBinaryData& value, const Restrictions& r,
                 std::wstring (CBinaryData::*text)() const) {
    if (!LengthsHold(static_cast<long long>(value.GetLength()), r))
        throw CQvException(
            FormatString(msg::kInvalidValueTextFmt, NameText(name), (value.*text)().c_str()));
}

bool HasFacets(const Restrictions& r) {
    return !r.m_pattern.empty() || r.m_minLength != -1 || r.m_maxLength != -1
           || !r.m_minInclusive.empty() || !r.m_maxInclusive.empty() || !r.m_minExclusive.empty()
           || !r.m_maxExclusive.empty() || r.m_length != -1 || r.m_totalDigits != -1
           || r.m_fractionDigits != -1;
}

// Types whose getter copies a heap value and refuses a variant of another type.
bool IsOwnedType(ItemType type) {
    switch (type) {
    case ItemType_hexBinary:
    case ItemType_base64Binary:
    case ItemType_duration:
    case ItemType_yearMonth:
    case ItemType_monthDay:
    case ItemType_date:
    case ItemType_datetime:
    case ItemType_time:
    case ItemType_string:
    case ItemType_decimal:
    case ItemType_integer: return true;
    default: return false;
    }
}

} // namespace

void CXmlObjectHelper::CheckRestrictionForhexBinary(const wchar_t* name, const CBinaryData& value,
                                                    const Restrictions& r) {
    CheckBinary(name, value, r, &CBinaryData::GetAsHexString);
}

void CXmlObjectHelper::CheckRestrictionForbase64Binary(const wchar_t* name,
                                                       const CBinaryData& value,
                                                       const Restrictions& r) {
    CheckBinary(name, value, r, &CBinaryData::GetAsBase64);
}

void CXmlObjectHelper::CheckRestrictionFori1(const wchar_t* name, char value,
                                             const Restrictions& r) {
    CheckOrdered<char, &C::i1FromString, Quote::Number, Digits::Lexical>(name, value, r);
}

void CXmlObjectHelper::CheckRestrictionFori2(const wchar_t* name, short value,
                                             const Restrictions& r) {
    CheckOrdered<short, &C::i2FromString, Quote::Number, Digits::Lexical>(name, value, r);
}

void CXmlObjectHelper::CheckRestrictionFori4(const wchar_t* name, long value,
                                             const Restrictions& r) {
    CheckOrdered<long, &C::i4FromString, Quote::Number, Digits::Lexical>(name, value, r);
}

void CXmlObjectHelper::CheckRestrictionFori8(const wchar_t* name, long long value,
                                             const Restrictions& r) {
    CheckOrdered<long long, &C::i8FromString, Quote::Text, Digits::Lexical>(name, value, r);
}

void CXmlObjectHelper::CheckRestrictionForui1(const wchar_t* name, unsigned char value,
                                              const Restrictions& r) {
    CheckOrdered<unsigned char, &C::ui1FromString, Quote::Number, Digits::Lexical>(name, value, r);
}

void CXmlObjectHelper::CheckRestrictionForui2(const wchar_t* name, unsigned short value,
                                              const Restrictions& r) {
    CheckOrdered<unsigned short, &C::ui2FromString, Quote::Number, Digits::Lexical>(name, value, r);
}

void CXmlObjectHelper::CheckRestrictionForui4(const wchar_t* name, unsigned long value,
                                              const Restrictions& r) {
    CheckOrdered<unsigned long, &C::ui4FromString, Quote::Number, Digits::Lexical>(name, value, r);
}

void CXmlObjectHelper::CheckRestrictionForui8(const wchar_t* name, unsigned long long value,
                                              const Restrictions& r) {
    CheckOrdered<unsigned long long, &C::ui8FromString, Quote::Text, Digits::Lexical>(name, value,
                                                                                      r);
}

void CXmlObjectHelper::CheckRestrictionForr4(const wchar_t* name, float value,
                                             const Restrictions& r) {
    CheckOrdered<float, &C::r4FromString, Quote::Real, Digits::None>(name, value, r);
}

void CXmlObjectHelper::CheckRestrictionForr8(const wchar_t* name, double value,
                                             const Restrictions& r) {
    CheckOrdered<double, &C::r8FromString, Quote::Real, Digits::None>(name, value, r);
}

void CXmlObjectHelper::CheckRestrictionForduration(const wchar_t* name, const CDateTimeSpan& value,
                                                   const Restrictions& r) {
    CheckOrdered<CDateTimeSpan, &C::durationFromString, Quote::Text, Digits::None>(name, value, r);
}

void CXmlObjectHelper::CheckRestrictionForyearMonth(const wchar_t* name, const CDateTime& value,
                                                    const Restrictions& r) {
    CheckRestrictionFormonthYear(name, value, r);
}

void CXmlObjectHelper::CheckRestrictionFormonthYear(const wchar_t* name, const CDateTime& value,
                                                    const Restrictions& r) {
    CheckOrdered<CDateTime, &C::yearMonthFromString, Quote::Text, Digits::None>(name, value, r);
}

void CXmlObjectHelper::CheckRestrictionFormonthDay(const wchar_t* name, const CDateTime& value,
                                                   const Restrictions& r) {
    CheckOrdered<CDateTime, &C::monthDayFromString, Quote::Text, Digits::None>(name, value, r);
}

void CXmlObjectHelper::CheckRestrictionFordate(const wchar_t* name, const CDateTime& value,
                                               const Restrictions& r) {
    CheckOrdered<CDateTime, &C::dateFromString, Quote::Text, Digits::None>(name, value, r);
}

void CXmlObjectHelper::CheckRestrictionFordatetime(const wchar_t* name, const CDateTime& value,
                                                   const Restrictions& r) {
    CheckOrdered<CDateTime, &C::datetimeFromString, Quote::Text, Digits::None>(name, value, r);
}

void CXmlObjectHelper::CheckRestrictionFortime(const wchar_t* name, const CDateTime& value,
                                               const Restrictions& r) {
    CheckOrdered<CDateTime, &C::timeFromString, Quote::Text, Digits::None>(name, value, r);
}

void CXmlObjectHelper::CheckRestrictionForyear(const wchar_t* name, unsigned short value,
                                               const Restrictions& r) {
    CheckOrdered<unsigned short, &C::yearFromString, Quote::Number, Digits::None>(name, value, r);
}

void CXmlObjectHelper::CheckRestrictionFormonth(const wchar_t* name, unsigned char value,
                                                const Restrictions& r) {
    CheckOrdered<unsigned char, &C::monthFromString, Quote::Number, Digits::None>(name, value, r);
}

void CXmlObjectHelper::CheckRestrictionForday(const wchar_t* name, unsigned char value,
                                              const Restrictions& r) {
    CheckOrdered<unsigned char, &C::dayFromString, Quote::Number, Digits::None>(name, value, r);
}

void CXmlObjectHelper::CheckRestrictionForstring(const wchar_t* name, std::wstring value,
                                                 const Restrictions& r) {
    bool holds = LengthsHold(static_cast<long long>(value.size()), r);
    if (holds && !r.m_pattern.empty()) {
        try {
            holds = TestRegEx(r.m_pattern, value);
        } catch (const CQvException& e) {
            throw CQvException(FormatString(msg::kInvalidValueBadPatternFmt,
                                            e.GetFullMessage().c_str(), NameText(name),
                                            value.c_str()));
        }
    }
    if (!holds)
        throw CQvException(FormatString(msg::kInvalidValueTextFmt, NameText(name), value.c_str()));
}

void CXmlObjectHelper::CheckRestrictionForboolean(const wchar_t*, bool, const Restrictions&) {}

void CXmlObjectHelper::CheckRestrictionFordecimal(const wchar_t* name, const CDecimal& value,
                                                  const Restrictions& r) {
    CheckOrdered<CDecimal, &C::decimalFromString, Quote::Text, Digits::Decimal>(name, value, r);
}

void CXmlObjectHelper::CheckRestrictionForinteger(const wchar_t* name, const CBigInteger& value,
                                                  const Restrictions& r) {
    CheckOrdered<CBigInteger, &C::integerFromString, Quote::Text, Digits::Lexical>(name, value, r);
}

int CXmlObjectHelper::GetDecimalIntegerPartLen(const CDecimal& value) {
    const CBigInteger whole = value.GetIntegerPart().GetAbs();
    return whole.IsZero() ? 0 : static_cast<int>(whole.ToString().size());
}

int CXmlObjectHelper::GetDecimalFractionPartLen(const CDecimal& value) {
    return CDecimal(value).Rationalise().GetScale();
}

void CXmlObjectHelper::CheckRestriction(const wchar_t* name, const QvVariant& value, ItemType type,
                                        const Restrictions& r) {
    // Without facets every value holds; what is left to report is a variant of the wrong
    // type, which the getters below throw for, and a type with no check at all (char too).
    if (!HasFacets(r) && type > ItemType_Invalid && type <= ItemType_integer
        && type != ItemType_char && (!IsOwnedType(type) || value.GetItemType() == type))
        return;
    switch (type) {
    case ItemType_hexBinary: return CheckRestrictionForhexBinary(name, value.GetHexBinary(), r);
    case ItemType_base64Binary:
        return CheckRestrictionForbase64Binary(name, value.GetBase64Binary(), r);
    case ItemType_i1: return CheckRestrictionFori1(name, value.GetI1(), r);
    case ItemType_i2: return CheckRestrictionFori2(name, value.GetI2(), r);
    case ItemType_i4: return CheckRestrictionFori4(name, value.GetI4(), r);
    case ItemType_i8: return CheckRestrictionFori8(name, value.GetI8(), r);
    case ItemType_ui1: return CheckRestrictionForui1(name, value.GetUI1(), r);
    case ItemType_ui2: return CheckRestrictionForui2(name, value.GetUI2(), r);
    case ItemType_ui4: return CheckRestrictionForui4(name, value.GetUI4(), r);
    case ItemType_ui8: return CheckRestrictionForui8(name, value.GetUI8(), r);
    case ItemType_r4: return CheckRestrictionForr4(name, value.GetR4(), r);
    case ItemType_r8: return CheckRestrictionForr8(name, value.GetR8(), r);
    case ItemType_duration: return CheckRestrictionForduration(name, value.GetDuration(), r);
    case ItemType_yearMonth: return CheckRestrictionForyearMonth(name, value.GetYearMonth(), r);
    case ItemType_monthDay: return CheckRestrictionFormonthDay(name, value.GetMonthDay(), r);
    case ItemType_year: return CheckRestrictionForyear(name, value.GetYear(), r);
    case ItemType_month: return CheckRestrictionFormonth(name, value.GetMonth(), r);
    case ItemType_day: return CheckRestrictionForday(name, value.GetDay(), r);
    case ItemType_date: return CheckRestrictionFordate(name, value.GetDate(), r);
    case ItemType_datetime: return CheckRestrictionFordatetime(name, value.GetDateTime(), r);
    case ItemType_time: return CheckRestrictionFortime(name, value.GetTime(), r);
    case ItemType_string: return CheckRestrictionForstring(name, value.GetString(), r);
    case ItemType_boolean: return CheckRestrictionForboolean(name, value.GetBoolean(), r);
    case ItemType_decimal: return CheckRestrictionFordecimal(name, value.GetDecimal(), r);
    case ItemType_integer: return CheckRestrictionForinteger(name, value.GetInteger(), r);
    default:
        // GetType itself throws "Invalid Type %d" when the variant holds no primitive.
        throw CQvInvalidValueException(FormatString(msg::kUnknownTypeFmt, value.GetType().c_str()));
    }
}

} // namespace QvXmlLib16
