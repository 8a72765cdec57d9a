#pragma once

// Unsigned arithmetic on magnitudes held as base-10^9 limbs, least significant first, with no
// leading zero limb (zero is the empty vector). CBigInteger adds the sign; CDecimal reaches the
// digit shifts through BigIntegerAccess.

#include <QvXmlLib16/BigInteger.h>

#include <cstdint>
#include <string>
#include <vector>

namespace QvXmlLib16::detail {

using Limbs = std::vector<uint32_t>;

inline constexpr uint32_t kLimbBase = 1000000000u;
inline constexpr unsigned kLimbDigits = 9;

void Trim(Limbs& a);
int CompareMag(const Limbs& a, const Limbs& b);
Limbs AddMag(const Limbs& a, const Limbs& b);
Limbs SubMag(const Limbs& a, const Limbs& b); // a >= b
Limbs MulMag(const Limbs& a, const Limbs& b);
// b must not be zero.
void DivModMag(const Limbs& a, const Limbs& b, Limbs& quotient, Limbs& remainder);
// a * 10^n, and a / 10^n truncated.
Limbs ShiftLeftDecimal(const Limbs& a, size_t n);
Limbs ShiftRightDecimal(const Limbs& a, size_t n);
// Number of decimal zeros at the low end (0 for zero).
size_t TrailingDecimalZeros(const Limbs& a);
size_t DecimalDigitCount(const Limbs& a);

// digits: ASCII or wide decimal digits only, most significant first.
Limbs MagFromDigits(const wchar_t* first, const wchar_t* last);
Limbs MagFromUnsigned(unsigned long long value);
std::wstring MagToString(const Limbs& a);
// Writes a's digits ("0" for zero) so the last one lands just before end; returns the first.
// There must be room for DecimalDigitCount(a) digits, and for one at least.
wchar_t* MagDigitsBefore(const Limbs& a, wchar_t* end);

} // namespace QvXmlLib16::detail

namespace QvXmlLib16 {

// The one door from CDecimal into CBigInteger's limbs.
struct BigIntegerAccess {
    static const detail::Limbs& Mag(const CBigInteger& v) { return v.m_limbs; }

    static CBigInteger Make(detail::Limbs mag, bool negative);
    // v * 10^n for n >= 0, v / 10^-n truncated toward zero for n < 0.
    static CBigInteger ShiftDecimal(const CBigInteger& v, long long n);
};

} // namespace QvXmlLib16
