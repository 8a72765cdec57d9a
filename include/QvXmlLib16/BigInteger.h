#pragma once

#include <QvXmlLib16/Export.h>

#include <cstdint>
#include <string>
#include <vector>

namespace QvXmlLib16 {

class CDecimal;

// A signed integer of any length. Division truncates toward zero and the remainder takes the
// dividend's sign, as for built-in integers, so (a / b) * b + a % b == a.
class QVXML_API CBigInteger {
public:
    // The LONG bounds are the 32-bit ones on purpose, although long has 64 bits here.
    static const CBigInteger MAX_LONG;
    static const CBigInteger MIN_LONG;
    static const CBigInteger MAX_LONGLONG;
    static const CBigInteger MIN_LONGLONG;
    static const CBigInteger MAX_DOUBLE; // 1.7E+308
    static const CBigInteger MIN_DOUBLE;

    CBigInteger();
    CBigInteger(int value);
    CBigInteger(unsigned int value);
    CBigInteger(long value);
    CBigInteger(unsigned long value);
    CBigInteger(long long value);
    CBigInteger(unsigned long long value);
    CBigInteger(double value);                   // the integer part; infinities and NaN fail
    explicit CBigInteger(const CDecimal& value); // the integer part, truncated toward zero
    explicit CBigInteger(const wchar_t* text);
    CBigInteger(const CBigInteger& other);
    CBigInteger& operator=(const CBigInteger& other);
    CBigInteger(CBigInteger&& other) noexcept;
    CBigInteger& operator=(CBigInteger&& other) noexcept;
    virtual ~CBigInteger();

    // Plain integer text ([+|-]digits within white space) is read directly; anything else goes
    // through CDecimal's parser and is truncated to its integer part.
    void Parse(const wchar_t* text);
    std::wstring ToString() const;

    CBigInteger& Abs();
    CBigInteger GetAbs() const;
    CBigInteger& Negate();
    CBigInteger GetNegative() const;
    CBigInteger operator-() const;

    bool IsZero() const { return m_limbs.empty(); }

    bool IsNegative() const { return m_sign < 0; }

    int CompareTo(const CBigInteger& other) const;

    CBigInteger& operator+=(const CBigInteger& other);
    CBigInteger& operator-=(const CBigInteger& other);
    CBigInteger& operator*=(const CBigInteger& other);
    CBigInteger& operator/=(const CBigInteger& other);
    CBigInteger& operator%=(const CBigInteger& other);

    static CBigInteger Pow10(unsigned n);
    // The largest integer whose square does not exceed this value.
    CBigInteger SquareRoot() const;

    explicit operator int() const;       // 32-bit range, else CQvInvalidValueException
    explicit operator long long() const; // 64-bit range, else CQvInvalidValueException

private:
    friend struct BigIntegerAccess;

    int m_sign = 1;                // +1 or -1; zero is +1
    std::vector<uint32_t> m_limbs; // base 10^9, least significant first; empty for zero
};

QVXML_API CBigInteger operator+(const CBigInteger& a, const CBigInteger& b);
QVXML_API CBigInteger operator-(const CBigInteger& a, const CBigInteger& b);
QVXML_API CBigInteger operator*(const CBigInteger& a, const CBigInteger& b);
QVXML_API CBigInteger operator/(const CBigInteger& a, const CBigInteger& b);
QVXML_API CBigInteger operator%(const CBigInteger& a, const CBigInteger& b);

inline bool operator==(const CBigInteger& a, const CBigInteger& b) {
    return a.CompareTo(b) == 0;
}

inline bool operator!=(const CBigInteger& a, const CBigInteger& b) {
    return a.CompareTo(b) != 0;
}

inline bool operator<(const CBigInteger& a, const CBigInteger& b) {
    return a.CompareTo(b) < 0;
}

inline bool operator>(const CBigInteger& a, const CBigInteger& b) {
    return a.CompareTo(b) > 0;
}

inline bool operator<=(const CBigInteger& a, const CBigInteger& b) {
    return a.CompareTo(b) <= 0;
}

inline bool operator>=(const CBigInteger& a, const CBigInteger& b) {
    return a.CompareTo(b) >= 0;
}

} // namespace QvXmlLib16
