#include "types/BigMagnitude.h"
#include "types/TypesMessages.h"

#include <QvXmlLib16/Decimal.h>
#include <QvXmlLib16/Format.h>
#include <QvXmlLib16/QvException.h>

#include <algorithm>
#include <cwchar>
#include <string>

namespace QvXmlLib16 {

int CDecimal::m_maxDivider = 30;

namespace {

// An exponent may move the point this far and no further, so "1e999999999" fails at once.
constexpr long kMaxExponent = 10000;

bool IsSpace(wchar_t c) {
    return c == L' ' || c == L'\t' || c == L'\n' || c == L'\r';
}

bool IsDigit(wchar_t c) {
    return c >= L'0' && c <= L'9';
}

[[noreturn]] void ThrowInvalidChar(size_t position, const wchar_t* text) {
    throw CQvInvalidValueException(
        FormatString(msg::kDecimalInvalidCharFmt, static_cast<int>(position), text));
}

void CheckScale(int scale) {
    if (scale < 0)
        throw CQvInvalidParamException(FormatString(msg::kInvalidScaleFmt, scale));
}

// What Parse learns from the text before building the number.
struct DecimalText {
    bool negative = false;
    const wchar_t* integer = nullptr; // the integer digits
    size_t integerCount = 0;
    const wchar_t* fraction = nullptr; // the fraction digits
    size_t fractionCount = 0;
    long scale = 0; // fraction digits minus the exponent
};

// Reads the exponent after 'e' at pos; refuses one that moves the point too far.
long ReadExponent(const wchar_t* text, size_t& pos) {
    const size_t letter = pos++;
    const bool negative = text[pos] == L'-';
    if (text[pos] == L'-' || text[pos] == L'+')
        ++pos;
    if (!IsDigit(text[pos]))
        ThrowInvalidChar(pos, text);
    long value = 0;
    for (; IsDigit(text[pos]); ++pos) {
        value = value * 10 + (text[pos] - L'0');
        if (value > kMaxExponent)
            ThrowInvalidChar(letter, text);
    }
    return negative ? -value : value;
}

DecimalText ReadDecimalText(const wchar_t* text) {
    DecimalText out;
    size_t pos = 0;
    while (IsSpace(text[pos]))
        ++pos;
    out.negative = text[pos] == L'-';
    if (text[pos] == L'-' || text[pos] == L'+')
        ++pos;
    const size_t intStart = pos;
    while (IsDigit(text[pos]))
        ++pos;
    out.integer = text + intStart;
    out.integerCount = pos - intStart;
    if (text[pos] == L'.') {
        const size_t fracStart = ++pos;
        while (IsDigit(text[pos]))
            ++pos;
        out.fraction = text + fracStart;
        out.fractionCount = pos - fracStart;
        out.scale = static_cast<long>(pos - fracStart);
    }
    if (out.integerCount + out.fractionCount == 0)
        ThrowInvalidChar(pos, text);
    if (text[pos] == L'e' || text[pos] == L'E')
        out.scale -= ReadExponent(text, pos);
    while (IsSpace(text[pos]))
        ++pos;
    if (text[pos] != L'\0')
        ThrowInvalidChar(pos, text);
    return out;
}

} // namespace

CDecimal::CDecimal() = default;

CDecimal::CDecimal(int value) : m_value(value) {}

CDecimal::CDecimal(long value) : m_value(value) {}

CDecimal::CDecimal(unsigned long value) : m_value(value) {}

CDecimal::CDecimal(long long value) : m_value(value) {}

CDecimal::CDecimal(unsigned long long value) : m_value(value) {}

CDecimal::CDecimal(const CBigInteger& value) : m_value(value) {}

CDecimal::CDecimal(const CBigInteger& integerPart, const CBigInteger& fractionPart, int scale)
    : m_scale(scale) {
    CheckScale(scale);
    const bool negative = integerPart.IsNegative() || fractionPart.IsNegative();
    m_value = BigIntegerAccess::ShiftDecimal(integerPart.GetAbs(), scale) + fractionPart.GetAbs();
    if (negative)
        m_value.Negate();
}

CDecimal::CDecimal(double value) {
    Parse(FormatString(L"%.13f\n", value).c_str());
}

CDecimal::CDecimal(const wchar_t* text) {
    Parse(text);
}

CDecimal::CDecimal(const CDecimal& other) = default;
CDecimal& CDecimal::operator=(const CDecimal& other) = default;
CDecimal::CDecimal(CDecimal&& other) noexcept = default;
CDecimal& CDecimal::operator=(CDecimal&& other) noexcept = default;
CDecimal::~CDecimal() = default;

void CDecimal::Parse(const wchar_t* text) {
    DecimalText read = ReadDecimalText(text ? text : L"");
    // The digits without the point, and the zeros a negative scale asks for; ordinary values
    // fit the local buffer.
    const size_t zeros = read.scale < 0 ? static_cast<size_t>(-read.scale) : 0;
    const size_t count = read.integerCount + read.fractionCount + zeros;
    wchar_t local[64];
    std::wstring large;
    wchar_t* digits = local;
    if (count > sizeof local / sizeof *local) {
        large.resize(count);
        digits = large.data();
    }
    std::wmemcpy(digits, read.integer, read.integerCount);
    if (read.fractionCount > 0)
        std::wmemcpy(digits + read.integerCount, read.fraction, read.fractionCount);
    std::wmemset(digits + read.integerCount + read.fractionCount, L'0', zeros);
    m_value = BigIntegerAccess::Make(detail::MagFromDigits(digits, digits + count), read.negative);
    m_scale = static_cast<int>(read.scale < 0 ? 0 : read.scale);
}

// Built in place: the digits are written right-aligned without the point, zeros before them
// where the scale asks for more, and the fraction then moves one place right to make room.
std::wstring CDecimal::ToString() const {
    const detail::Limbs& mag = BigIntegerAccess::Mag(m_value);
    const size_t scale = static_cast<size_t>(m_scale);
    const size_t count = std::max<size_t>(detail::DecimalDigitCount(mag), 1);
    const size_t integerDigits = count > scale ? count - scale : 1;
    const size_t sign = m_value.IsNegative() ? 1 : 0;
    std::wstring out(sign + integerDigits + (scale > 0 ? scale + 1 : 0), L'0');
    wchar_t* const digitsEnd = out.data() + sign + integerDigits + scale;
    detail::MagDigitsBefore(mag, digitsEnd);
    if (scale > 0) {
        std::wmemmove(digitsEnd - scale + 1, digitsEnd - scale, scale);
        digitsEnd[-static_cast<std::ptrdiff_t>(scale)] = L'.';
    }
    if (sign)
        out[0] = L'-';
    return out;
}

std::wstring CDecimal::ToString(int digits) const {
    if (digits < 0)
        return ToString();
    return CDecimal(*this).ChangeFractionalDivider(digits).ToString();
}

CDecimal& CDecimal::Rationalise() {
    const size_t zeros = detail::TrailingDecimalZeros(BigIntegerAccess::Mag(m_value));
    const int drop = static_cast<int>(std::min<size_t>(zeros, static_cast<size_t>(m_scale)));
    m_value = BigIntegerAccess::ShiftDecimal(m_value, -drop);
    m_scale -= drop;
    if (m_value.IsZero())
        m_scale = 0;
    return *this;
}

CDecimal& CDecimal::ChangeFractionalDivider(int scale) {
    CheckScale(scale);
    m_value = BigIntegerAccess::ShiftDecimal(m_value, static_cast<long long>(scale) - m_scale);
    m_scale = scale;
    return *this;
}

int CDecimal::Normalize(CDecimal& a, CDecimal& b) {
    const int scale = std::max(a.m_scale, b.m_scale);
    a.ChangeFractionalDivider(scale);
    b.ChangeFractionalDivider(scale);
    return scale;
}

CBigInteger CDecimal::GetIntegerPart() const {
    return BigIntegerAccess::ShiftDecimal(m_value, -static_cast<long long>(m_scale));
}

CBigInteger CDecimal::GetFractionPart() const {
    const CBigInteger whole = BigIntegerAccess::ShiftDecimal(GetIntegerPart(), m_scale);
    return (m_value - whole).Abs();
}

int CDecimal::CompareTo(const CDecimal& other) const {
    if (m_scale == other.m_scale)
        return m_value.CompareTo(other.m_value);
    CDecimal a = *this, b = other;
    Normalize(a, b);
    return a.m_value.CompareTo(b.m_value);
}

CDecimal CDecimal::GetNegative() const {
    return CDecimal(*this).Negate();
}

CDecimal& CDecimal::Negate() {
    m_value.Negate();
    return *this;
}

CDecimal& CDecimal::operator+=(const CDecimal& other) {
    CDecimal addend = other;
    Normalize(*this, addend);
    m_value += addend.m_value;
    return *this;
}

CDecimal& CDecimal::operator-=(const CDecimal& other) {
    return *this += other.GetNegative();
}

CDecimal& CDecimal::operator*=(const CDecimal& other) {
    m_value *= other.m_value;
    m_scale += other.m_scale;
    return *this;
}

// Both operands are brought to one scale, so the quotient of the scaled integers is the
// quotient of the numbers; two guard digits are computed and then cut to m_maxDivider.
CDecimal& CDecimal::operator/=(const CDecimal& other) {
    CDecimal divisor = other;
    Normalize(*this, divisor);
    const int keep = std::max(m_maxDivider, 0);
    m_value = BigIntegerAccess::ShiftDecimal(m_value, keep + 2) / divisor.m_value;
    m_scale = keep + 2;
    Rationalise();
    if (m_scale > keep)
        ChangeFractionalDivider(keep);
    return *this;
}

CDecimal& CDecimal::operator++() {
    return *this += CDecimal(1);
}

CDecimal CDecimal::operator++(int) {
    const CDecimal before = *this;
    ++*this;
    return before;
}

CDecimal& CDecimal::operator--() {
    return *this -= CDecimal(1);
}

CDecimal CDecimal::operator--(int) {
    const CDecimal before = *this;
    --*this;
    return before;
}

CDecimal operator+(const CDecimal& a, const CDecimal& b) {
    return CDecimal(a) += b;
}

CDecimal operator-(const CDecimal& a, const CDecimal& b) {
    return CDecimal(a) -= b;
}

CDecimal operator*(const CDecimal& a, const CDecimal& b) {
    return CDecimal(a) *= b;
}

CDecimal operator/(const CDecimal& a, const CDecimal& b) {
    return CDecimal(a) /= b;
}

double CDecimal::ToDouble() const {
    if (*this > CDecimal(CBigInteger::MAX_DOUBLE) || *this < CDecimal(CBigInteger::MIN_DOUBLE))
        throw CQvOverFlowException(msg::kDecimalTooLargeForDouble);
    return std::wcstod(ToString().c_str(), nullptr);
}

long long CDecimal::ToLongLong() const {
    const CBigInteger whole = GetIntegerPart();
    if (whole > CBigInteger::MAX_LONGLONG || whole < CBigInteger::MIN_LONGLONG)
        throw CQvOverFlowException(msg::kDecimalTooLargeForLongLong);
    return static_cast<long long>(whole);
}

long CDecimal::ToLong() const {
    const CBigInteger whole = GetIntegerPart();
    if (whole > CBigInteger::MAX_LONG || whole < CBigInteger::MIN_LONG)
        throw CQvOverFlowException(msg::kDecimalTooLargeForLong);
    return static_cast<int>(whole);
}

CBigInteger CDecimal::ToBigInteger() const {
    return GetIntegerPart();
}

} // namespace QvXmlLib16
