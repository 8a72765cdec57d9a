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

CBigInteger Big(const std::wstring& text) {
    return CBigInteger(text.c_str());
}

std::wstring InvalidChar(int position, const std::wstring& text) {
    return L"The string representing a Decimal, contained an invalid char at position "
           + std::to_wstring(position) + L" [" + text + L"].";
}

// Schoolbook product of two digit strings, written independently of the library.
std::wstring MultiplyDigits(const std::wstring& a, const std::wstring& b) {
    std::vector<int> acc(a.size() + b.size(), 0);
    for (size_t i = a.size(); i-- > 0;)
        for (size_t j = b.size(); j-- > 0;)
            acc[i + j + 1] += (a[i] - L'0') * (b[j] - L'0');
    for (size_t k = acc.size(); k-- > 1;) {
        acc[k - 1] += acc[k] / 10;
        acc[k] %= 10;
    }
    std::wstring out;
    for (int d : acc)
        if (!out.empty() || d != 0)
            out += static_cast<wchar_t>(L'0' + d);
    return out.empty() ? L"0" : out;
}

std::wstring RandomDigits(std::mt19937_64& rng, size_t count) {
    std::wstring out(1, static_cast<wchar_t>(L'1' + rng() % 9));
    while (out.size() < count)
        out += static_cast<wchar_t>(L'0' + rng() % 10);
    return out;
}

} // namespace

TEST(CBigInteger, MovedFromValueIsZero) {
    CBigInteger negative(L"-123456789012345678901234567890");
    CBigInteger taken(std::move(negative));
    EXPECT_EQ(taken.ToString(), L"-123456789012345678901234567890");
    EXPECT_EQ(negative.ToString(), L"0"); // NOLINT(bugprone-use-after-move): the state is defined
    EXPECT_FALSE(negative.IsNegative());
    CBigInteger assigned(L"5");
    assigned = std::move(taken);
    EXPECT_EQ(assigned.ToString(), L"-123456789012345678901234567890");
    EXPECT_TRUE(taken.IsZero()); // NOLINT(bugprone-use-after-move)
    CDecimal decimal(L"-2.50");
    CDecimal movedDecimal(std::move(decimal));
    EXPECT_EQ(movedDecimal.ToString(), L"-2.50");
}

TEST(CBigInteger, ConstructsAndPrints) {
    struct Case {
        const char* name;
        CBigInteger value;
        const wchar_t* printed;
    };

    const Case cases[] = {
        {"default", CBigInteger(), L"0"},
        {"int", CBigInteger(-5), L"-5"},
        {"int min", CBigInteger(INT_MIN), L"-2147483648"},
        {"unsigned", CBigInteger(4000000000u), L"4000000000"},
        {"long", CBigInteger(-1234567890123L), L"-1234567890123"},
        {"long long min", CBigInteger(LLONG_MIN), L"-9223372036854775808"},
        {"long long max", CBigInteger(LLONG_MAX), L"9223372036854775807"},
        {"unsigned long long", CBigInteger(ULLONG_MAX), L"18446744073709551615"},
        {"billion", CBigInteger(1000000000), L"1000000000"},
        {"double", CBigInteger(12.7), L"12"},
        {"negative double", CBigInteger(-12.7), L"-12"},
        {"small negative double", CBigInteger(-0.5), L"0"},
        {"large double", CBigInteger(1e20), L"100000000000000000000"},
        {"decimal", CBigInteger(CDecimal(L"-98765.4321")), L"-98765"},
        {"pow10 0", CBigInteger::Pow10(0), L"1"},
        {"pow10 25", CBigInteger::Pow10(25), L"10000000000000000000000000"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        EXPECT_EQ(tc.value.ToString(), tc.printed);
    }
    EXPECT_EQ(CBigInteger::MAX_DOUBLE.ToString(), L"17" + std::wstring(307, L'0'));
    EXPECT_EQ(CBigInteger::MIN_DOUBLE.ToString(), L"-17" + std::wstring(307, L'0'));
    for (const double bad : {double(INFINITY), std::nan("")})
        ExpectThrowMsg<CQvInvalidValueException>(
            [&] { CBigInteger value(bad); },
            L"A CBigInteger cannot hold an infinite or NaN double.");
}

// Every digit count around the nine-digit limb boundaries, both signs.
TEST(CBigInteger, PrintsEveryDigitCount) {
    __int128 power = 1;
    for (int k = 0; k <= 37; ++k, power *= 10) {
        for (const __int128 value : {power, power - 1, power + 1, -power, -(power - 1)}) {
            const std::wstring expected = ScaledText(value);
            SCOPED_TRACE(qvtest::Narrow(expected));
            ASSERT_EQ(Big(expected).ToString(), expected);
            ASSERT_EQ((Big(expected) * Big(L"1000000000")).ToString(),
                      value == 0 ? L"0" : expected + L"000000000");
        }
    }
}

TEST(CBigInteger, Parse) {
    struct Case {
        const wchar_t* text;
        const wchar_t* printed;
    };

    // A point or an exponent sends the text through CDecimal.
    const Case cases[] = {{L"123", L"123"},       {L"  -0042  ", L"-42"}, {L"+7", L"7"},
                          {L"\t\n 99 \r", L"99"}, {L"0000", L"0"},        {L"-0", L"0"},
                          {L"12.7", L"12"},       {L"-12.7", L"-12"},     {L"1e3", L"1000"},
                          {L"1.5E2", L"150"}};
    for (const Case& tc : cases) {
        SCOPED_TRACE(qvtest::Narrow(tc.text));
        EXPECT_EQ(Big(tc.text).ToString(), tc.printed);
        CBigInteger reused(99);
        reused.Parse(tc.text);
        EXPECT_EQ(reused.ToString(), tc.printed);
    }

    struct Bad {
        const wchar_t* text;
        int position;
    };

    const Bad bad[] = {
        {L"", 0},  {L"abc", 0}, {L"12a", 2}, {L"1 2", 2},         {L"--5", 1}, {L"+", 1},
        {L"-", 1}, {L"5-3", 1}, {L"1e", 2},  {L"1e999999999", 1}, {L"   ", 3}, {L"0x1F", 1},
    };
    for (const Bad& tc : bad) {
        SCOPED_TRACE(qvtest::Narrow(tc.text));
        ExpectThrowMsg<CQvInvalidValueException>([&] { Big(tc.text); },
                                                 InvalidChar(tc.position, tc.text));
    }
    ExpectThrowMsg<CQvInvalidValueException>(
        [] { CBigInteger value(static_cast<const wchar_t*>(nullptr)); },
        L"The string representing a Decimal, contained an invalid char at position 0 [].");
}

TEST(CBigInteger, SignAndComparison) {
    CBigInteger value(-17);
    EXPECT_EQ(value.GetAbs().ToString(), L"17");
    EXPECT_EQ(value.GetNegative().ToString(), L"17");
    EXPECT_EQ((-value).ToString(), L"17");
    EXPECT_EQ(value.ToString(), L"-17");
    value.Abs();
    EXPECT_EQ(value.ToString(), L"17");
    value.Negate();
    EXPECT_EQ(value.ToString(), L"-17");
    EXPECT_EQ(CBigInteger(0).GetNegative().ToString(), L"0");
    EXPECT_FALSE(CBigInteger(0).GetNegative().IsNegative());

    struct Case {
        const wchar_t* a;
        const wchar_t* b;
        int expected;
    };

    const Case cases[] = {
        {L"0", L"-0", 0},
        {L"5", L"5", 0},
        {L"-5", L"5", -1},
        {L"-5", L"-6", 1},
        {L"1000000000", L"999999999", 1},
        {L"-1000000000", L"-999999999", -1},
        {L"123456789012345678901234567890", L"123456789012345678901234567891", -1},
        {L"-1", L"0", -1}};
    for (const Case& tc : cases) {
        SCOPED_TRACE(qvtest::Narrow(tc.a) + " vs " + qvtest::Narrow(tc.b));
        qvtest::ExpectOrder(Big(tc.a), Big(tc.b), tc.expected);
    }
}

// Random operands within 64 bits, checked against __int128 arithmetic.
TEST(CBigInteger, ArithmeticMatchesInt128) {
    std::mt19937_64 rng(42);
    for (int i = 0; i < 20000; ++i) {
        const int bitsA = 1 + int(rng() % 63), bitsB = 1 + int(rng() % 63);
        long long a = static_cast<long long>(rng() >> (64 - bitsA));
        long long b = static_cast<long long>(rng() >> (64 - bitsB));
        if (rng() % 2)
            a = -a;
        if (rng() % 2)
            b = -b;
        if (i % 500 == 0)
            a = 0;
        SCOPED_TRACE(std::to_string(a) + " op " + std::to_string(b));
        const CBigInteger x(a), y(b);
        const __int128 wa = a, wb = b;
        ASSERT_EQ((x + y).ToString(), ScaledText(wa + wb));
        ASSERT_EQ((x - y).ToString(), ScaledText(wa - wb));
        ASSERT_EQ((x * y).ToString(), ScaledText(wa * wb));
        if (b != 0) {
            ASSERT_EQ((x / y).ToString(), ScaledText(wa / wb));
            ASSERT_EQ((x % y).ToString(), ScaledText(wa % wb));
        }
        CBigInteger z = x;
        z += y;
        z -= y;
        z *= y;
        ASSERT_EQ(z.ToString(), ScaledText(wa * wb));
        if (b != 0) {
            z /= y;
            ASSERT_EQ(z.ToString(), ScaledText(wa));
            z %= y;
            ASSERT_EQ(z.ToString(), ScaledText(wa % wb));
        }
        ASSERT_EQ(x.CompareTo(y), a < b ? -1 : (a > b ? 1 : 0));
    }
}

// Operands of hundreds to thousands of digits: products against an independent schoolbook
// multiplication, quotients through the division identity.
TEST(CBigInteger, HugeOperands) {
    std::mt19937_64 rng(2024);
    for (int i = 0; i < 60; ++i) {
        const size_t lenA = 1 + rng() % 1500, lenB = 1 + rng() % (i % 3 == 0 ? 40 : 1500);
        const std::wstring da = RandomDigits(rng, lenA), db = RandomDigits(rng, lenB);
        const bool negA = rng() % 2, negB = rng() % 2;
        SCOPED_TRACE(std::to_string(lenA) + " x " + std::to_string(lenB));
        const CBigInteger a = Big((negA ? L"-" : L"") + da), b = Big((negB ? L"-" : L"") + db);
        const std::wstring product = MultiplyDigits(da, db);
        ASSERT_EQ((a * b).ToString(), (negA != negB ? L"-" : L"") + product);
        const CBigInteger q = a / b, r = a % b;
        ASSERT_EQ(q * b + r, a);
        ASSERT_TRUE(r.GetAbs() < b.GetAbs());
        ASSERT_TRUE(r.IsZero() || r.IsNegative() == a.IsNegative());
        ASSERT_EQ((a * b) / b, a);
        ASSERT_TRUE(((a * b) % b).IsZero());
        ASSERT_EQ((a + b) - b, a);
    }
    // (10^n - 1)^2 = 99..9800..01 exercises every carry.
    for (unsigned n : {1u, 9u, 10u, 360u, 361u, 2000u}) {
        SCOPED_TRACE(n);
        const CBigInteger nines = CBigInteger::Pow10(n) - 1;
        const std::wstring expected =
            std::wstring(n - 1, L'9') + L"8" + std::wstring(n - 1, L'0') + L"1";
        EXPECT_EQ((nines * nines).ToString(), expected);
        EXPECT_EQ((nines * nines) / nines, nines);
        EXPECT_EQ(((nines * nines) + nines) % (nines + 1), CBigInteger(0));
    }
}

TEST(CBigInteger, DivisionByZeroAndConversions) {
    struct Case {
        const char* name;
        std::function<void()> call;
        const wchar_t* message;
    };

    const CBigInteger zero(L"0");
    const Case cases[] = {
        {"divide", [&] { CBigInteger(5) / zero; }, L"ERROR: Overflow in operator/."},
        {"zero by zero", [&] { zero / zero; }, L"ERROR: Overflow in operator/."},
        {"modulo", [&] { CBigInteger(5) % zero; }, L"ERROR: Overflow in operator%."},
        {"divide assign", [&] { CBigInteger(5) /= zero; }, L"ERROR: Overflow in operator /=."},
        {"modulo assign", [&] { CBigInteger(5) %= zero; }, L"ERROR: Overflow in operator%=."},
        {"square root", [] { CBigInteger(-4).SquareRoot(); },
         L"ERROR: Negative Number in function SquareRoot()."},
        {"int above", [] { (void)static_cast<int>(Big(L"2147483648")); },
         L"ERROR: Value out of bound of int."},
        {"int below", [] { (void)static_cast<int>(Big(L"-2147483649")); },
         L"ERROR: Value out of bound of int."},
        {"int huge", [] { (void)static_cast<int>(CBigInteger::Pow10(40)); },
         L"ERROR: Value out of bound of int."},
        {"long long above", [] { (void)static_cast<long long>(Big(L"9223372036854775808")); },
         L"ERROR: Value out of bound of LONGLONG."},
        {"long long below", [] { (void)static_cast<long long>(Big(L"-9223372036854775809")); },
         L"ERROR: Value out of bound of LONGLONG."},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        ExpectThrowMsg<CQvInvalidValueException>(tc.call, tc.message);
    }
    // The limits are also the constants' values.
    EXPECT_EQ(static_cast<int>(CBigInteger::MAX_LONG), INT_MAX);
    EXPECT_EQ(static_cast<int>(CBigInteger::MIN_LONG), INT_MIN);
    EXPECT_EQ(static_cast<long long>(CBigInteger::MAX_LONGLONG), LLONG_MAX);
    EXPECT_EQ(static_cast<long long>(CBigInteger::MIN_LONGLONG), LLONG_MIN);
    EXPECT_EQ(static_cast<int>(CBigInteger(0)), 0);
}

TEST(CBigInteger, SquareRoot) {
    // Perfect squares and one below them, across a limb boundary and at 39 digits.
    for (const auto& [value, root] :
         {std::pair{0, 0}, {1, 1}, {3, 1}, {4, 2}, {99, 9}, {100, 10}, {1000000000, 31622}}) {
        SCOPED_TRACE(value);
        EXPECT_EQ(CBigInteger(value).SquareRoot(), CBigInteger(root));
    }
    const std::wstring square = L"152415787532388367501905199875019052100";
    EXPECT_EQ(Big(square).SquareRoot().ToString(), L"12345678901234567890");
    EXPECT_EQ((Big(square) - 1).SquareRoot().ToString(), L"12345678901234567889");
    std::mt19937_64 rng(5);
    for (int i = 0; i < 200; ++i) {
        const CBigInteger n = Big(RandomDigits(rng, 1 + rng() % 300));
        const CBigInteger r = n.SquareRoot();
        ASSERT_TRUE(r * r <= n) << qvtest::Narrow(n.ToString());
        ASSERT_TRUE((r + 1) * (r + 1) > n) << qvtest::Narrow(n.ToString());
    }
}

// Hostile sizes finish in bounded time and memory or fail at once.
TEST(CBigInteger, HostileInput) {
    const std::wstring million(1000000, L'7');
    const CBigInteger big = Big(million);
    EXPECT_EQ(big.ToString(), million);
    EXPECT_EQ((big + 1).ToString().back(), L'8');
    EXPECT_TRUE(big > Big(million.substr(1)));
    EXPECT_EQ((big / CBigInteger(7)).ToString(), std::wstring(1000000, L'1'));
    ExpectThrowMsg<CQvInvalidValueException>([&] { Big(million + L"x"); },
                                             InvalidChar(1000000, million + L"x"));
}
