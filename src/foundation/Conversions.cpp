#include "foundation/BooleanText.h"
#include "foundation/FoundationMessages.h"
#include "foundation/RuleApplied.h"

#include <QvXmlLib16/Conversions.h>
#include <QvXmlLib16/Format.h>
#include <QvXmlLib16/QvException.h>

#include <cwchar>
#include <limits>

namespace QvXmlLib16 {

namespace {

CDateTime ParseDate(const std::wstring& raw, CConversions::Rule rule, CDateTime::DTType kind,
                    void (CDateTime::*parse)(const wchar_t*)) {
    const detail::CRuleApplied ruled(rule, raw);
    const std::wstring& text = ruled.Text();
    CDateTime value(kind);
    (value.*parse)(text.c_str());
    return value;
}

} // namespace

bool CConversions::booleanFromString(const std::wstring& raw, Rule rule) {
    const detail::CRuleApplied ruled(rule, raw);
    const std::wstring& text = ruled.Text();
    switch (detail::ReadBooleanText(text)) {
    case detail::BooleanText::True: return true;
    case detail::BooleanText::False: return false;
    case detail::BooleanText::Invalid: break;
    }
    throw CQvInvalidValueException(FormatString(msg::kInvalidBooleanFmt, raw.c_str()));
}

wchar_t CConversions::charFromString(const std::wstring& raw, Rule rule) {
    const detail::CRuleApplied ruled(rule, raw);
    const std::wstring& text = ruled.Text();
    if (text.size() != 1)
        throw CQvInvalidValueException(FormatString(msg::kInvalidCharFmt, text.c_str()));
    return text[0];
}

std::wstring CConversions::stringFromString(const std::wstring& text, Rule rule) {
    return CWhitespaceUtils::ApplyRule(rule, text);
}

CDecimal CConversions::decimalFromString(const std::wstring& text, Rule rule) {
    return CDecimal(detail::CRuleApplied(rule, text).c_str());
}

CBigInteger CConversions::integerFromString(const std::wstring& text, Rule rule) {
    return CBigInteger(detail::CRuleApplied(rule, text).c_str());
}

CBinaryData CConversions::hexBinaryFromString(const std::wstring& text, Rule rule) {
    CBinaryData value;
    value.SetAsHexString(detail::CRuleApplied(rule, text).c_str());
    return value;
}

CBinaryData CConversions::base64BinaryFromString(const std::wstring& text, Rule rule) {
    CBinaryData value;
    value.SetAsBase64(detail::CRuleApplied(rule, text).c_str());
    return value;
}

CDateTimeSpan CConversions::durationFromString(const std::wstring& text, Rule rule) {
    CDateTimeSpan value;
    value.ParseXSDDuration(detail::CRuleApplied(rule, text).c_str());
    return value;
}

CDateTime CConversions::datetimeFromString(const std::wstring& text, Rule rule) {
    return ParseDate(text, rule, CDateTime::DTType_dateTime, &CDateTime::ParseXSDDateTime);
}

CDateTime CConversions::dateFromString(const std::wstring& text, Rule rule) {
    return ParseDate(text, rule, CDateTime::DTType_date, &CDateTime::ParseXSDDate);
}

CDateTime CConversions::yearMonthFromString(const std::wstring& text, Rule rule) {
    return ParseDate(text, rule, CDateTime::DTType_gYearMonth, &CDateTime::ParseXSDDate);
}

CDateTime CConversions::timeFromString(const std::wstring& text, Rule rule) {
    return ParseDate(text, rule, CDateTime::DTType_time, &CDateTime::ParseXSDTime);
}

CDateTime CConversions::monthDayFromString(const std::wstring& text, Rule rule) {
    return ParseDate(text, rule, CDateTime::DTType_gMonthDay, &CDateTime::ParseXSDDate);
}

// Text of another shape parses as its own kind, and asking it for a field it lacks fails
// with CDateTime's accessor message ("--05" read as a year).
unsigned short CConversions::yearFromString(const std::wstring& text, Rule rule) {
    const CDateTime value =
        ParseDate(text, rule, CDateTime::DTType_gYear, &CDateTime::ParseXSDDate);
    return static_cast<unsigned short>(value.GetYear());
}

unsigned char CConversions::monthFromString(const std::wstring& text, Rule rule) {
    return ParseDate(text, rule, CDateTime::DTType_gMonth, &CDateTime::ParseXSDDate).GetMonth();
}

unsigned char CConversions::dayFromString(const std::wstring& text, Rule rule) {
    return ParseDate(text, rule, CDateTime::DTType_gDay, &CDateTime::ParseXSDDate).GetDay();
}

std::wstring CConversions::booleanToString(bool value) {
    return value ? L"true" : L"false";
}

std::wstring CConversions::charToString(wchar_t value) {
    return std::wstring(1, value);
}

std::wstring CConversions::stringToString(const std::wstring& value) {
    return value;
}

std::wstring CConversions::decimalToString(const CDecimal& value) {
    return decimalToString(value, std::wstring());
}

std::wstring CConversions::decimalToString(const CDecimal& value, const std::wstring& format) {
    if (format.empty())
        return value.ToString();
    // A negative count prints the value as it is, so the far side of int does too.
    const long digits = std::wcstol(format.c_str(), nullptr, 10);
    if (digits < 0 || digits > std::numeric_limits<int>::max())
        return value.ToString();
    return value.ToString(static_cast<int>(digits));
}

std::wstring CConversions::integerToString(const CBigInteger& value) {
    return value.ToString();
}

std::wstring CConversions::hexBinaryToString(const CBinaryData& value) {
    return value.GetAsHexString();
}

std::wstring CConversions::base64BinaryToString(const CBinaryData& value) {
    return value.GetAsBase64();
}

std::wstring CConversions::durationToString(const CDateTimeSpan& value) {
    return value.ToString();
}

std::wstring CConversions::datetimeToString(const CDateTime& value) {
    return value.ToString(L"s");
}

std::wstring CConversions::dateToString(const CDateTime& value) {
    return value.ToString(L"s");
}

std::wstring CConversions::yearMonthToString(const CDateTime& value) {
    return value.ToString(L"s");
}

std::wstring CConversions::timeToString(const CDateTime& value) {
    return value.ToString(L"s");
}

std::wstring CConversions::monthDayToString(const CDateTime& value) {
    return value.ToString(L"s");
}

} // namespace QvXmlLib16
