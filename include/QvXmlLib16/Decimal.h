#pragma once

#include <QvXmlLib16/BigInteger.h>
#include <QvXmlLib16/Export.h>

#include <string>

namespace QvXmlLib16 {

// A signed decimal number of any precision, kept exactly as an integer and a count of fraction
// digits ("1.50" has two). Digits are only ever dropped by ChangeFractionalDivider and by
// division, and both truncate toward zero.
class QVXML_API CDecimal {
public:
    // The most fraction digits a division keeps.
    static int m_maxDivider;

    CDecimal();
    CDecimal(int value);
    CDecimal(long value);
    CDecimal(unsigned long value);
    CDecimal(long long value);
    CDecimal(unsigned long long value);
    CDecimal(const CBigInteger& value);
    // integerPart + fractionPart / 10^scale, negative when either part is.
    CDecimal(const CBigInteger& integerPart, const CBigInteger& fractionPart, int scale);
    CDecimal(double value); // through its "%.13f" text
    explicit CDecimal(const wchar_t* text);
    CDecimal(const CDecimal& other);
    CDecimal& operator=(const CDecimal& other);
    CDecimal(CDecimal&& other) noexcept;
    CDecimal& operator=(CDecimal&& other) noexcept;
    virtual ~CDecimal();

    // [white space][+|-]digits[.digits][(e|E)[+|-]digits][white space], at least one digit before
    // the exponent; the exponent moves the point by at most 10,000 places.
    void Parse(const wchar_t* text);
    // No point when there are no fraction digits; a negative value keeps its "-" before "0.".
    std::wstring ToString() const;
    // With exactly digits fraction digits (truncated or zero-filled); a negative count prints as
    // ToString() does.
    std::wstring ToString(int digits) const;

    CDecimal& Rationalise();
    CDecimal& ChangeFractionalDivider(int scale);
    static int Normalize(CDecimal& a, CDecimal& b);

    CBigInteger GetIntegerPart() const;  // truncated toward zero, with the sign
    CBigInteger GetFractionPart() const; // the fraction digits as a non-negative integer

    int GetScale() const { return m_scale; }

    int CompareTo(const CDecimal& other) const;
    CDecimal GetNegative() const;
    CDecimal& Negate();

    CDecimal& operator+=(const CDecimal& other);
    CDecimal& operator-=(const CDecimal& other);
    CDecimal& operator*=(const CDecimal& other);
    CDecimal& operator/=(const CDecimal& other);
    CDecimal& operator++();
    CDecimal operator++(int);
    CDecimal& operator--();
    CDecimal operator--(int);

    double ToDouble() const;      // beyond +-1.7E+308: CQvOverFlowException
    long long ToLongLong() const; // the integer part; CQvOverFlowException beyond 64 bits
    long ToLong() const;          // the integer part; CQvOverFlowException beyond 32 bits
    CBigInteger ToBigInteger() const;

private:
    CBigInteger m_value; // the number times 10^m_scale
    int m_scale = 0;
};

QVXML_API CDecimal operator+(const CDecimal& a, const CDecimal& b);
QVXML_API CDecimal operator-(const CDecimal& a, const CDecimal& b);
QVXML_API CDecimal operator*(const CDecimal& a, const CDecimal& b);
QVXML_API CDecimal operator/(const CDecimal& a, const CDecimal& b);

inline bool operator==(const CDecimal& a, const CDecimal& b) {
    return a.CompareTo(b) == 0;
}

inline bool operator!=(const CDecimal& a, const CDecimal& b) {
    return a.CompareTo(b) != 0;
}

inline bool operator<(const CDecimal& a, const CDecimal& b) {
    return a.CompareTo(b) < 0;
}

inline bool operator>(const CDecimal& a, const CDecimal& b) {
    return a.CompareTo(b) > 0;
}

inline bool operator<=(const CDecimal& a, const CDecimal& b) {
    return a.CompareTo(b) <= 0;
}

inline bool operator>=(const CDecimal& a, const CDecimal& b) {
    return a.CompareTo(b) >= 0;
}

} // namespace QvXmlLib16
