#include "types/BigMagnitude.h"
#include "types/TypesMessages.h"

#include <QvXmlLib16/BigInteger.h>
#include <QvXmlLib16/Decimal.h>
#include <QvXmlLib16/QvException.h>

#include <algorithm>
#include <cmath>
#include <cwchar>

namespace QvXmlLib16 {

using detail::Limbs;

// Built from text in this one file; they read no other file's statics.
const CBigInteger CBigInteger::MAX_LONG(CDecimal(L"2147483647"));
const CBigInteger CBigInteger::MIN_LONG(CDecimal(L"-2147483648"));
const CBigInteger CBigInteger::MAX_LONGLONG(CDecimal(L"9223372036854775807"));
const CBigInteger CBigInteger::MIN_LONGLONG(CDecimal(L"-9223372036854775808"));
const CBigInteger CBigInteger::MAX_DOUBLE(CDecimal(L"1.7E+308"));
const CBigInteger CBigInteger::MIN_DOUBLE(CDecimal(L"-1.7E+308"));

namespace {

bool IsSpace(wchar_t c) {
    return c == L' ' || c == L'\t' || c == L'\n' || c == L'\r';
}

bool IsDigit(wchar_t c) {
    return c >= L'0' && c <= L'9';
}

// The value as a signed 128-bit number when it has at most three limbs (below 10^27).
bool ToInt128(const CBigInteger& v, __int128& out) {
    const Limbs& mag = BigIntegerAccess::Mag(v);
    if (mag.size() > 3)
        return false;
    out = 0;
    for (size_t i = mag.size(); i-- > 0;)
        out = out * detail::kLimbBase + mag[i];
    if (v.IsNegative())
        out = -out;
    return true;
}

void CheckDivisor(const CBigInteger& divisor, const wchar_t* message) {
    if (divisor.IsZero())
        throw CQvInvalidValueException(message);
}

CBigInteger Quotient(const CBigInteger& a, const CBigInteger& b) {
    Limbs q, r;
    detail::DivModMag(BigIntegerAccess::Mag(a), BigIntegerAccess::Mag(b), q, r);
    return BigIntegerAccess::Make(std::move(q), a.IsNegative() != b.IsNegative());
}

CBigInteger Remainder(const CBigInteger& a, const CBigInteger& b) {
    Limbs q, r;
    detail::DivModMag(BigIntegerAccess::Mag(a), BigIntegerAccess::Mag(b), q, r);
    return BigIntegerAccess::Make(std::move(r), a.IsNegative());
}

} // namespace

CBigInteger BigIntegerAccess::Make(Limbs mag, bool negative) {
    CBigInteger v;
    detail::Trim(mag);
    v.m_limbs = std::move(mag);
    v.m_sign = negative && !v.m_limbs.empty() ? -1 : 1;
    return v;
}

CBigInteger BigIntegerAccess::ShiftDecimal(const CBigInteger& v, long long n) {
    const Limbs& mag = v.m_limbs;
    return Make(n >= 0 ? detail::ShiftLeftDecimal(mag, static_cast<size_t>(n))
                       : detail::ShiftRightDecimal(mag, static_cast<size_t>(-n)),
                v.IsNegative());
}

CBigInteger::CBigInteger() = default;

CBigInteger::CBigInteger(int value) : CBigInteger(static_cast<long long>(value)) {}

CBigInteger::CBigInteger(unsigned int value)
    : CBigInteger(static_cast<unsigned long long>(value)) {}

CBigInteger::CBigInteger(long value) : CBigInteger(static_cast<long long>(value)) {}

CBigInteger::CBigInteger(unsigned long value)
    : CBigInteger(static_cast<unsigned long long>(value)) {}

// The magnitude goes through unsigned arithmetic so the most negative value needs no special case.
CBigInteger::CBigInteger(long long value) {
    const unsigned long long mag = value < 0 ? 0ULL - static_cast<unsigned long long>(value)
                                             : static_cast<unsigned long long>(value);
    *this = BigIntegerAccess::Make(detail::MagFromUnsigned(mag), value < 0);
}

CBigInteger::CBigInteger(unsigned long long value) : m_limbs(detail::MagFromUnsigned(value)) {}

CBigInteger::CBigInteger(double value) {
    if (!std::isfinite(value))
        throw CQvInvalidValueException(msg::kBigIntegerNotFinite);
    *this = CBigInteger(CDecimal(value));
}

CBigInteger::CBigInteger(const CDecimal& value) {
    *this = value.GetIntegerPart();
}

CBigInteger::CBigInteger(const wchar_t* text) {
    Parse(text);
}

CBigInteger::CBigInteger(const CBigInteger& other) = default;
CBigInteger& CBigInteger::operator=(const CBigInteger& other) = default;

// A moved-from value is zero.
CBigInteger::CBigInteger(CBigInteger&& other) noexcept
    : m_sign(other.m_sign),
      m_limbs(std::move(other.m_limbs)) {
    other.m_sign = 1;
    other.m_limbs.clear();
}

CBigInteger& CBigInteger::operator=(CBigInteger&& other) noexcept {
    m_sign = other.m_sign;
    m_limbs = std::move(other.m_limbs);
    other.m_sign = 1;
    other.m_limbs.clear();
    return *this;
}

CBigInteger::~CBigInteger() = default;

void CBigInteger::Parse(const wchar_t* text) {
    const wchar_t* first = text ? text : L"";
    const wchar_t* last = first + std::wcslen(first);
    while (first < last && IsSpace(*first))
        ++first;
    while (last > first && IsSpace(last[-1]))
        --last;
    const bool negative = first < last && *first == L'-';
    const wchar_t* digits = first < last && (*first == L'-' || *first == L'+') ? first + 1 : first;
    bool plain = digits < last;
    for (const wchar_t* p = digits; plain && p < last; ++p)
        plain = IsDigit(*p);
    if (plain)
        *this = BigIntegerAccess::Make(detail::MagFromDigits(digits, last), negative);
    else
        *this = CBigInteger(CDecimal(text ? text : L""));
}

std::wstring CBigInteger::ToString() const {
    const size_t sign = m_sign < 0 ? 1 : 0;
    std::wstring out(sign + std::max<size_t>(detail::DecimalDigitCount(m_limbs), 1), L'-');
    detail::MagDigitsBefore(m_limbs, out.data() + out.size());
    return out;
}

CBigInteger& CBigInteger::Abs() {
    m_sign = 1;
    return *this;
}

CBigInteger CBigInteger::GetAbs() const {
    return CBigInteger(*this).Abs();
}

CBigInteger& CBigInteger::Negate() {
    if (!m_limbs.empty())
        m_sign = -m_sign;
    return *this;
}

CBigInteger CBigInteger::GetNegative() const {
    return CBigInteger(*this).Negate();
}

CBigInteger CBigInteger::operator-() const {
    return GetNegative();
}

int CBigInteger::CompareTo(const CBigInteger& other) const {
    if (m_sign != other.m_sign)
        return m_sign < other.m_sign ? -1 : 1;
    const int byMagnitude = detail::CompareMag(m_limbs, other.m_limbs);
    return m_sign < 0 ? -byMagnitude : byMagnitude;
}

CBigInteger& CBigInteger::operator+=(const CBigInteger& other) {
    if (m_sign == other.m_sign) {
        m_limbs = detail::AddMag(m_limbs, other.m_limbs);
        return *this;
    }
    if (detail::CompareMag(m_limbs, other.m_limbs) >= 0)
        return *this = BigIntegerAccess::Make(detail::SubMag(m_limbs, other.m_limbs), m_sign < 0);
    return *this = BigIntegerAccess::Make(detail::SubMag(other.m_limbs, m_limbs), other.m_sign < 0);
}

CBigInteger& CBigInteger::operator-=(const CBigInteger& other) {
    return *this += other.GetNegative();
}

CBigInteger& CBigInteger::operator*=(const CBigInteger& other) {
    return *this = BigIntegerAccess::Make(detail::MulMag(m_limbs, other.m_limbs),
                                          m_sign != other.m_sign);
}

CBigInteger& CBigInteger::operator/=(const CBigInteger& other) {
    CheckDivisor(other, msg::kOverflowDivideAssign);
    return *this = Quotient(*this, other);
}

CBigInteger& CBigInteger::operator%=(const CBigInteger& other) {
    CheckDivisor(other, msg::kOverflowModuloAssign);
    return *this = Remainder(*this, other);
}

CBigInteger operator+(const CBigInteger& a, const CBigInteger& b) {
    return CBigInteger(a) += b;
}

CBigInteger operator-(const CBigInteger& a, const CBigInteger& b) {
    return CBigInteger(a) -= b;
}

CBigInteger operator*(const CBigInteger& a, const CBigInteger& b) {
    return CBigInteger(a) *= b;
}

CBigInteger operator/(const CBigInteger& a, const CBigInteger& b) {
    CheckDivisor(b, msg::kOverflowDivide);
    return Quotient(a, b);
}

CBigInteger operator%(const CBigInteger& a, const CBigInteger& b) {
    CheckDivisor(b, msg::kOverflowModulo);
    return Remainder(a, b);
}

CBigInteger CBigInteger::Pow10(unsigned n) {
    return BigIntegerAccess::Make(detail::ShiftLeftDecimal(Limbs{1}, n), false);
}

// Newton's iteration from a power of ten above the root; it falls monotonically to the floor.
CBigInteger CBigInteger::SquareRoot() const {
    if (m_sign < 0)
        throw CQvInvalidValueException(msg::kSquareRootNegative);
    if (m_limbs.empty())
        return *this;
    const size_t digits = detail::DecimalDigitCount(m_limbs);
    CBigInteger x = Pow10(static_cast<unsigned>((digits + 1) / 2));
    for (;;) {
        CBigInteger next = Quotient(x + Quotient(*this, x), CBigInteger(2));
        if (next >= x)
            return x;
        x = next;
    }
}

CBigInteger::operator int() const {
    __int128 value = 0;
    if (!ToInt128(*this, value) || value < INT32_MIN || value > INT32_MAX)
        throw CQvInvalidValueException(msg::kIntOutOfBound);
    return static_cast<int>(value);
}

CBigInteger::operator long long() const {
    __int128 value = 0;
    if (!ToInt128(*this, value) || value < INT64_MIN || value > INT64_MAX)
        throw CQvInvalidValueException(msg::kLongLongOutOfBound);
    return static_cast<long long>(value);
}

} // namespace QvXmlLib16
