#include "types/TypesTestUtils.h"

#include <QvXmlLib16/BigInteger.h>
#include <QvXmlLib16/Decimal.h>

#include <climits>
#include <cmath>
#include <functional>
#include <random>

using namespace QvXmlLib16;
using qvtest::ExpectThrowMsg;
using qvtest::ScaledText;

namespace {

CDecimal Dec(const std::wstring& text) {
    return CDecimal(text.c_str());
}

std::wstring InvalidChar(int position, const std::wstring& text) {
    return L"The string representing a Decimal, contained an invalid char at position "
           + std::to_wstring(position) + L" [" + text + L"].";
}

// Restores the division precision at the end of a scope.
struct MaxDividerGuard {
    int saved = CDecimal::m_maxDivider;

    ~MaxDividerGuard() { CDecimal::m_maxDivider = saved; }
};

} // namespace

TEST(CDecimal, ParsesAndPrints) {
    struct Case {
        const wchar_t* text;
        const wchar_t* printed;
    };

    const Case cases[] = {
        {L"0", L"0"},
        {L"1.50", L"1.50"},
        {L"-0.5", L"-0.5"},
        {L"-0.05", L"-0.05"},
        {L".5", L"0.5"},
        {L"5.", L"5"},
        {L"+3.25", L"3.25"},
        {L"  7.0\t\n", L"7.0"},
        {L"1.5e3", L"1500"},
        {L"1.50e1", L"15.0"},
        {L"1e-3", L"0.001"},
        {L"-1E-2", L"-0.01"},
        {L"12345.6789e-2", L"123.456789"},
        {L"1e+2", L"100"},
        {L"0.000", L"0.000"},
        {L"-0.0", L"0.0"},
        {L"00012.3400", L"12.3400"},
        {L"-123456789012345678901234567890.123456789012345678901234567890",
         L"-123456789012345678901234567890.123456789012345678901234567890"},
        // Past the 64 digits that are read without allocating, with and without exponent zeros.
        {L"1234567890123456789012345678901234567890.1234567890123456789012345678901234567890",
         L"1234567890123456789012345678901234567890.1234567890123456789012345678901234567890"},
        {L"1.5e80",
         L"15000000000000000000000000000000000000000000000000000000000000000000000000000000"
         L"0"},
        {L"123456789012345678901234567890123456789012345678901234567890.5e5",
         L"12345678901234567890123456789012345678901234567890123456789050000"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(qvtest::Narrow(tc.text));
        const CDecimal value = Dec(tc.text);
        EXPECT_EQ(value.ToString(), tc.printed);
        EXPECT_EQ(Dec(value.ToString()).ToString(), tc.printed); // round trip
    }
    EXPECT_EQ(Dec(L"1e10000").ToString(), L"1" + std::wstring(10000, L'0'));
    EXPECT_EQ(Dec(L"1e-10000").ToString(), L"0." + std::wstring(9999, L'0') + L"1");
}

// Every digit count around the nine-digit limb boundaries, with the point anywhere and beyond.
TEST(CDecimal, PrintsEveryDigitCountAndScale) {
    __int128 power = 1;
    for (int k = 0; k <= 37; ++k, power *= 10) {
        for (const __int128 value : {power, power - 1, -power, -(power - 1), power + 7}) {
            for (int scale = 0; scale <= k + 2; ++scale) {
                const std::wstring expected = ScaledText(value, scale);
                SCOPED_TRACE(qvtest::Narrow(expected));
                const CDecimal parsed = Dec(ScaledText(value, 0) + L"e-" + std::to_wstring(scale));
                ASSERT_EQ(parsed.ToString(), expected);
            }
        }
    }
}

TEST(CDecimal, ParseFailures) {
    struct Case {
        const wchar_t* text;
        int position;
    };

    const Case cases[] = {
        {L"", 0},       {L"-", 1},       {L".", 1},           {L"1.2.3", 3},    {L"1e", 2},
        {L"1e+", 3},    {L"e5", 0},      {L"1,5", 1},         {L"1 2", 2},      {L"0x10", 1},
        {L"\x0661", 0}, {L"1e10001", 1}, {L"1e999999999", 1}, {L"1e-10001", 1}, {L"inf", 0},
        {L"NaN", 0},    {L"++1", 1},     {L"1.5e2.5", 5},     {L" ", 1},        {L"1-", 1},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(qvtest::Narrow(tc.text));
        ExpectThrowMsg<CQvInvalidValueException>([&] { Dec(tc.text); },
                                                 InvalidChar(tc.position, tc.text));
    }
    ExpectThrowMsg<CQvInvalidValueException>(
        [] { CDecimal value(static_cast<const wchar_t*>(nullptr)); }, InvalidChar(0, L""));
    ExpectThrowMsg<CQvInvalidValueException>([] { CDecimal value(std::nan("")); },
                                             InvalidChar(0, L"nan\n"));
    ExpectThrowMsg<CQvInvalidValueException>([] { CDecimal value(-INFINITY); },
                                             InvalidChar(1, L"-inf\n"));
}

TEST(CDecimal, ConstructionAndDigits) {
    struct Case {
        const char* name;
        CDecimal value;
        const wchar_t* printed;
    };

    const Case cases[] = {
        {"default", CDecimal(), L"0"},
        {"int", CDecimal(-42), L"-42"},
        {"long", CDecimal(LONG_MIN), L"-9223372036854775808"},
        {"long long", CDecimal(LLONG_MAX), L"9223372036854775807"},
        {"unsigned long long", CDecimal(ULLONG_MAX), L"18446744073709551615"},
        {"big integer", CDecimal(CBigInteger(L"-123456789012345678901")),
         L"-123456789012345678901"},
        {"parts", CDecimal(CBigInteger(12), CBigInteger(5), 3), L"12.005"},
        {"negative parts", CDecimal(CBigInteger(-12), CBigInteger(5), 3), L"-12.005"},
        {"negative fraction", CDecimal(CBigInteger(0), CBigInteger(-5), 1), L"-0.5"},
        {"fraction overflowing its scale", CDecimal(CBigInteger(1), CBigInteger(123), 2), L"2.23"},
        {"double", CDecimal(0.1), L"0.1000000000000"},
        {"negative double", CDecimal(-2.5), L"-2.5000000000000"},
        {"large double", CDecimal(1e20), L"100000000000000000000.0000000000000"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        EXPECT_EQ(tc.value.ToString(), tc.printed);
    }
    const CDecimal pi = Dec(L"3.14159");
    EXPECT_EQ(pi.GetIntegerPart().ToString(), L"3");
    EXPECT_EQ(pi.GetFractionPart().ToString(), L"14159");
    EXPECT_EQ(pi.GetScale(), 5);
    EXPECT_EQ(Dec(L"-12.0045").GetFractionPart().ToString(), L"45");
    EXPECT_EQ(Dec(L"-12.0045").GetIntegerPart().ToString(), L"-12");

    struct Digits {
        const wchar_t* value;
        int digits;
        const wchar_t* printed;
    };

    const Digits digits[] = {
        {L"3.14159", 2, L"3.14"}, {L"3.14159", 0, L"3"},    {L"3.14159", 7, L"3.1415900"},
        {L"-0.5", 3, L"-0.500"},  {L"0.001", 2, L"0.00"},   {L"-2.999", 1, L"-2.9"},
        {L"42", 2, L"42.00"},     {L"-1.25", -1, L"-1.25"}, {L"0.5", 1, L"0.5"},
    };
    for (const Digits& tc : digits) {
        SCOPED_TRACE(qvtest::Narrow(tc.value) + " to " + std::to_string(tc.digits));
        EXPECT_EQ(Dec(tc.value).ToString(tc.digits), tc.printed);
    }
}

TEST(CDecimal, ScaleOperations) {
    CDecimal value = Dec(L"1.2300");
    EXPECT_EQ(value.Rationalise().ToString(), L"1.23");
    EXPECT_EQ(Dec(L"100").Rationalise().ToString(), L"100");
    EXPECT_EQ(Dec(L"0.000").Rationalise().ToString(), L"0");
    EXPECT_EQ(Dec(L"-10.100").Rationalise().ToString(), L"-10.1");
    EXPECT_EQ(Dec(L"1.5").ChangeFractionalDivider(5).ToString(), L"1.50000");
    EXPECT_EQ(Dec(L"-12.7").ChangeFractionalDivider(0).ToString(), L"-12");
    EXPECT_EQ(Dec(L"-0.07").ChangeFractionalDivider(1).ToString(), L"0.0");
    CDecimal a = Dec(L"1.5"), b = Dec(L"2.125");
    EXPECT_EQ(CDecimal::Normalize(a, b), 3);
    EXPECT_EQ(a.ToString(), L"1.500");
    EXPECT_EQ(b.ToString(), L"2.125");
    ExpectThrowMsg<CQvInvalidParamException>([] { Dec(L"1").ChangeFractionalDivider(-1); },
                                             L"Invalid number of fraction digits [-1].");
    ExpectThrowMsg<CQvInvalidParamException>([] { CDecimal(CBigInteger(1), CBigInteger(0), -3); },
                                             L"Invalid number of fraction digits [-3].");
}

TEST(CDecimal, Comparison) {
    struct Case {
        const wchar_t* a;
        const wchar_t* b;
        int expected;
    };

    const Case cases[] = {
        {L"1.5", L"1.50", 0},
        {L"-0.5", L"0", -1},
        {L"-0.5", L"-0.6", 1},
        {L"0.0", L"-0.0", 0},
        {L"10", L"9.999", 1},
        {L"-10", L"-9.999", -1},
        {L"1e2", L"100.0", 0},
        {L"0.1", L"0.01", 1},
        {L"123456789012345678901.5", L"123456789012345678901.49", 1},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(qvtest::Narrow(tc.a) + " vs " + qvtest::Narrow(tc.b));
        qvtest::ExpectOrder(Dec(tc.a), Dec(tc.b), tc.expected);
    }
    EXPECT_EQ(Dec(L"-2.5").GetNegative().ToString(), L"2.5");
    EXPECT_EQ(Dec(L"2.5").Negate().ToString(), L"-2.5");
}

// Random operands of up to 12 integer and 6 fraction digits, checked against scaled __int128.
TEST(CDecimal, ArithmeticMatchesScaledInt128) {
    std::mt19937_64 rng(11);
    const auto pow10 = [](int n) {
        __int128 p = 1;
        while (n-- > 0)
            p *= 10;
        return p;
    };
    for (int i = 0; i < 5000; ++i) {
        const int sa = int(rng() % 7), sb = int(rng() % 7);
        __int128 a = static_cast<__int128>(rng() % 1000000000000000000ULL);
        __int128 b = static_cast<__int128>(rng() % (i % 4 == 0 ? 1000ULL : 1000000000000000000ULL));
        if (rng() % 2)
            a = -a;
        if (rng() % 2)
            b = -b;
        const CDecimal x = Dec(ScaledText(a, sa)), y = Dec(ScaledText(b, sb));
        SCOPED_TRACE(qvtest::Narrow(x.ToString() + L" op " + y.ToString()));
        const int s = std::max(sa, sb);
        const __int128 an = a * pow10(s - sa), bn = b * pow10(s - sb);
        ASSERT_EQ((x + y).ToString(), ScaledText(an + bn, s));
        ASSERT_EQ((x - y).ToString(), ScaledText(an - bn, s));
        ASSERT_EQ((x * y).ToString(), ScaledText(a * b, sa + sb));
        if (b == 0)
            continue;
        // The quotient is a / b truncated to 30 fraction digits, then without trailing zeros:
        // q * b differs from a by less than one unit of the 30th digit times b, toward zero.
        const CDecimal q = x / y;
        ASSERT_LE(q.GetScale(), 30);
        const CDecimal rest = x - q * y;
        const CDecimal unit = Dec(L"1e-30") * y;
        ASSERT_TRUE((rest < 0 ? rest.GetNegative() : rest)
                    < (unit < 0 ? unit.GetNegative() : unit));
        ASSERT_TRUE(rest == 0 || (rest < 0) == (x < 0));
    }
}

TEST(CDecimal, Division) {
    MaxDividerGuard guard;

    struct Case {
        const wchar_t* a;
        const wchar_t* b;
        const wchar_t* quotient;
    };

    const Case cases[] = {
        {L"1", L"3", L"0.333333333333333333333333333333"},
        {L"2", L"3", L"0.666666666666666666666666666666"},
        {L"1", L"-3", L"-0.333333333333333333333333333333"},
        {L"1", L"8", L"0.125"},
        {L"10", L"4", L"2.5"},
        {L"-7", L"2", L"-3.5"},
        {L"0", L"5", L"0"},
        {L"6", L"3", L"2"},
        {L"1.5", L"0.5", L"3"},
        {L"0.001", L"1000", L"0.000001"},
        {L"1", L"1e30", L"0.000000000000000000000000000001"},
        // Rationalised first and cut afterwards, so the cut can leave zeros.
        {L"1", L"1e31", L"0.000000000000000000000000000000"},
        {L"123456789012345678901234567890", L"0.1", L"1234567890123456789012345678900"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(qvtest::Narrow(tc.a) + " / " + qvtest::Narrow(tc.b));
        EXPECT_EQ((Dec(tc.a) / Dec(tc.b)).ToString(), tc.quotient);
        CDecimal assigned = Dec(tc.a);
        assigned /= Dec(tc.b);
        EXPECT_EQ(assigned.ToString(), tc.quotient);
    }
    CDecimal::m_maxDivider = 5;
    EXPECT_EQ((Dec(L"1") / Dec(L"3")).ToString(), L"0.33333");
    CDecimal::m_maxDivider = 0;
    EXPECT_EQ((Dec(L"7") / Dec(L"2")).ToString(), L"3");
    ExpectThrowMsg<CQvInvalidValueException>([] { Dec(L"1") / Dec(L"0.000"); },
                                             L"ERROR: Overflow in operator/.");
    ExpectThrowMsg<CQvInvalidValueException>(
        [] {
            CDecimal value(1);
            value /= CDecimal(0);
        },
        L"ERROR: Overflow in operator/.");
}

TEST(CDecimal, IncrementAndAssignments) {
    CDecimal value = Dec(L"-0.5");
    EXPECT_EQ((value++).ToString(), L"-0.5");
    EXPECT_EQ(value.ToString(), L"0.5");
    EXPECT_EQ((++value).ToString(), L"1.5");
    EXPECT_EQ((value--).ToString(), L"1.5");
    EXPECT_EQ((--value).ToString(), L"-0.5");
    value += Dec(L"0.25");
    EXPECT_EQ(value.ToString(), L"-0.25");
    value -= Dec(L"1");
    EXPECT_EQ(value.ToString(), L"-1.25");
    value *= Dec(L"-2.0");
    EXPECT_EQ(value.ToString(), L"2.500");
    EXPECT_EQ((value + CBigInteger(2)).ToString(), L"4.500");
}

TEST(CDecimal, Conversions) {
    EXPECT_EQ(Dec(L"1.5").ToDouble(), 1.5);
    EXPECT_EQ(Dec(L"-1.7E+308").ToDouble(), -1.7e308);
    EXPECT_EQ(Dec(L"-2147483648.9").ToLong(), -2147483648L);
    EXPECT_EQ(Dec(L"2147483647.9").ToLong(), 2147483647L);
    EXPECT_EQ(Dec(L"-9223372036854775808.5").ToLongLong(), LLONG_MIN);
    EXPECT_EQ(Dec(L"-12.7").ToBigInteger().ToString(), L"-12");
    EXPECT_EQ(CBigInteger(Dec(L"12.7")).ToString(), L"12");

    struct Case {
        const char* name;
        std::function<void()> call;
        const wchar_t* message;
    };

    const Case cases[] = {
        {"double above", [] { Dec(L"1.7000000001E+308").ToDouble(); },
         L"The Decimal value if to large to fit into a Double"},
        {"double below", [] { Dec(L"-1.8E+308").ToDouble(); },
         L"The Decimal value if to large to fit into a Double"},
        {"long", [] { Dec(L"3000000000").ToLong(); },
         L"The Decimal value if to large to fit into a LONG"},
        {"long below", [] { Dec(L"-2147483649").ToLong(); },
         L"The Decimal value if to large to fit into a LONG"},
        {"long long", [] { Dec(L"9223372036854775808").ToLongLong(); },
         L"The Decimal value if to large to fit into a LONGLONG"},
        {"long long below", [] { Dec(L"-9223372036854775809.1").ToLongLong(); },
         L"The Decimal value if to large to fit into a LONGLONG"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        ExpectThrowMsg<CQvOverFlowException>(tc.call, tc.message);
    }
}

TEST(CDecimal, HostileInput) {
    const std::wstring digits(1000000, L'3');
    const CDecimal big = Dec(L"0." + digits);
    EXPECT_EQ(big.GetScale(), 1000000);
    EXPECT_EQ(big.ToString(), L"0." + digits);
    EXPECT_EQ((big + big).ToString(), L"0." + std::wstring(1000000, L'6'));
    EXPECT_TRUE(big < Dec(L"0.34"));
    ExpectThrowMsg<CQvInvalidValueException>([] { Dec(L"-5E-99999999999999999999999"); },
                                             InvalidChar(2, L"-5E-99999999999999999999999"));
}
