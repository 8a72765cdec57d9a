#include "common/TestUtils.h"

#include <QvXmlLib16/PrimitiveRestrictions.h>
#include <QvXmlLib16/Variant.h>
#include <QvXmlLib16/XmlObjectHelper.h>

using namespace QvXmlLib16;
using qvtest::ExpectThrowMsg;
using H = CXmlObjectHelper;

namespace {

constexpr auto kNone = CWhitespaceUtils::WhitespaceRule_None;

// Facets named in the order of the 10-argument constructor; each case overrides a few.
struct Facets {
    const wchar_t* pattern = nullptr;
    long long minLength = -1, maxLength = -1;
    const wchar_t* minInclusive = nullptr;
    const wchar_t* maxInclusive = nullptr;
    const wchar_t* minExclusive = nullptr;
    const wchar_t* maxExclusive = nullptr;
    long long length = -1, totalDigits = -1, fractionDigits = -1;

    // Chainable: Facets().MinIncl(L"1").Digits(2) sets two facets and leaves the rest absent.
    template <class T>
    Facets With(T Facets::*field, T value) const {
        Facets f = *this;
        f.*field = value;
        return f;
    }

    Facets Pattern(const wchar_t* p) const { return With(&Facets::pattern, p); }

    Facets MinIncl(const wchar_t* b) const { return With(&Facets::minInclusive, b); }

    Facets MaxIncl(const wchar_t* b) const { return With(&Facets::maxInclusive, b); }

    Facets MinExcl(const wchar_t* b) const { return With(&Facets::minExclusive, b); }

    Facets MaxExcl(const wchar_t* b) const { return With(&Facets::maxExclusive, b); }

    Facets Digits(long long n) const { return With(&Facets::totalDigits, n); }

    Facets Fraction(long long n) const { return With(&Facets::fractionDigits, n); }

    Facets Length(long long n) const { return With(&Facets::length, n); }

    Facets MinLength(long long n) const { return With(&Facets::minLength, n); }

    Facets MaxLength(long long n) const { return With(&Facets::maxLength, n); }

    CPrimitiveRestrictions Make() const {
        return CPrimitiveRestrictions(pattern, minLength, maxLength, minInclusive, maxInclusive,
                                      minExclusive, maxExclusive, length, totalDigits,
                                      fractionDigits);
    }
};

QvVariant Parsed(ItemType type, const wchar_t* text) {
    QvVariant v;
    v.FromString(text, type, kNone);
    return v;
}

// A value checked through CheckRestriction; message null means the check passes.
struct Case {
    const char* name;
    ItemType type;
    const wchar_t* value;
    Facets facets;
    const wchar_t* message;
    bool badBound = false; // the message is the bound parser's CQvInvalidValueException
};

void ExpectChecks(const Case* begin, const Case* end) {
    for (const Case* tc = begin; tc != end; ++tc) {
        SCOPED_TRACE(tc->name);
        const QvVariant value = Parsed(tc->type, tc->value);
        const CPrimitiveRestrictions r = tc->facets.Make();
        auto check = [&] { H::CheckRestriction(L"n", value, tc->type, r); };
        if (tc->badBound)
            ExpectThrowMsg<CQvInvalidValueException>(check, tc->message);
        else if (tc->message)
            ExpectThrowMsg<CQvException>(check, tc->message);
        else
            EXPECT_NO_THROW(check());
    }
}

} // namespace

TEST(Restrictions, IntegerBoundsAndTotalDigits) {
    const Case cases[] = {
        {"-12 has three digits", ItemType_i4, L"-12", Facets().Digits(2),
         L"Invalid Value for n [-12]"},
        {"12 has two", ItemType_i4, L"12", Facets().Digits(2), nullptr},
        {"below min inclusive", ItemType_i4, L"9", Facets().MinIncl(L"10"),
         L"Invalid Value for n [9]"},
        {"at min inclusive", ItemType_i4, L"10", Facets().MinIncl(L"10"), nullptr},
        {"above max inclusive", ItemType_i4, L"11", Facets().MaxIncl(L"10"),
         L"Invalid Value for n [11]"},
        {"at min exclusive", ItemType_i4, L"10", Facets().MinExcl(L"10"),
         L"Invalid Value for n [10]"},
        {"at max exclusive", ItemType_i4, L"10", Facets().MaxExcl(L"10"),
         L"Invalid Value for n [10]"},
        {"below max exclusive", ItemType_i4, L"9", Facets().MaxExcl(L"10"), nullptr},
        {"bound collapsed", ItemType_i4, L"10", Facets().MinIncl(L" 11\t"),
         L"Invalid Value for n [10]"},
        {"empty bound absent", ItemType_i4, L"-99999", Facets().MinIncl(L""), nullptr},
        {"i1", ItemType_i1, L"-5", Facets().MinIncl(L"0"), L"Invalid Value for n [-5]"},
        {"i2 digits", ItemType_i2, L"1234", Facets().Digits(3), L"Invalid Value for n [1234]"},
        {"ui1", ItemType_ui1, L"200", Facets().MaxExcl(L"200"), L"Invalid Value for n [200]"},
        {"ui2", ItemType_ui2, L"7", Facets().MinExcl(L"7"), L"Invalid Value for n [7]"},
        // "%d" gets the value cast to int, so a large ui4 prints its low 32 bits.
        {"ui4 beyond int", ItemType_ui4, L"5000000000", Facets().MaxIncl(L"4000000000"),
         L"Invalid Value for n [705032704]"},
        {"i8 quotes text", ItemType_i8, L"-5", Facets().MinIncl(L"0"),
         L"Invalid Value for n [-5]."},
        {"i8 digits", ItemType_i8, L"-100", Facets().Digits(3), L"Invalid Value for n [-100]."},
        {"ui8 quotes text", ItemType_ui8, L"18446744073709551615", Facets().MaxIncl(L"1"),
         L"Invalid Value for n [18446744073709551615]."},
        {"year", ItemType_year, L"1999", Facets().MinIncl(L"2000"), L"Invalid Value for n [1999]"},
        {"year has no digit facet", ItemType_year, L"1999", Facets().Digits(1), nullptr},
        {"month", ItemType_month, L"--02", Facets().MaxIncl(L"--01"), L"Invalid Value for n [2]"},
        {"day", ItemType_day, L"---31", Facets().MaxExcl(L"---31"), L"Invalid Value for n [31]"},
        {"integer digits", ItemType_integer, L"-99", Facets().Digits(2),
         L"Invalid Value for n [-99]."},
        {"integer bound", ItemType_integer, L"100000000000000000000",
         Facets().MaxIncl(L"99999999999999999999"),
         L"Invalid Value for n [100000000000000000000]."},
    };
    ExpectChecks(std::begin(cases), std::end(cases));
}

TEST(Restrictions, RealsDurationsAndDates) {
    const Case cases[] = {
        {"r4", ItemType_r4, L"1.5", Facets().MaxIncl(L"1"), L"Invalid Value for n [1.500000]"},
        {"r8", ItemType_r8, L"-0.25", Facets().MinExcl(L"0"), L"Invalid Value for n [-0.250000]"},
        {"r8 INF bound", ItemType_r8, L"1e308", Facets().MaxExcl(L"INF"), nullptr},
        {"r8 NaN passes bounds", ItemType_r8, L"NaN", Facets().MinIncl(L"0"), nullptr},
        {"r8 has no digit facet", ItemType_r8, L"123.456", Facets().Digits(1).Fraction(1), nullptr},
        {"duration", ItemType_duration, L"P2D", Facets().MaxIncl(L"P1D"),
         L"Invalid Value for n [P2D]."},
        {"duration equal", ItemType_duration, L"PT24H", Facets().MaxIncl(L"P1D"), nullptr},
        {"date", ItemType_date, L"2024-01-01", Facets().MinIncl(L"2024-06-01"),
         L"Invalid Value for n [2024-01-01]."},
        {"datetime", ItemType_datetime, L"2024-01-01T10:00:00Z",
         Facets().MaxExcl(L"2024-01-01T10:00:00Z"), L"Invalid Value for n [2024-01-01T10:00:00Z]."},
        {"datetime zones", ItemType_datetime, L"2024-01-01T10:00:00+01:00",
         Facets().MaxExcl(L"2024-01-01T10:00:00Z"), nullptr},
        {"time", ItemType_time, L"23:00:00", Facets().MaxIncl(L"22:00:00"),
         L"Invalid Value for n [23:00:00]."},
        {"yearMonth", ItemType_yearMonth, L"2023-12", Facets().MinExcl(L"2023-12"),
         L"Invalid Value for n [2023-12]."},
        {"monthDay", ItemType_monthDay, L"--02-29", Facets().MaxIncl(L"--02-28"),
         L"Invalid Value for n [--02-29]."},
    };
    ExpectChecks(std::begin(cases), std::end(cases));
}

TEST(Restrictions, DecimalDigits) {
    const Case cases[] = {
        {"0.25 within 2 digits", ItemType_decimal, L"0.25", Facets().Digits(2), nullptr},
        {"0.25 has 2 fraction digits", ItemType_decimal, L"0.25", Facets().Fraction(1),
         L"Invalid Value for n [0.25]."},
        {"123.4 has 4 digits", ItemType_decimal, L"123.4", Facets().Digits(3),
         L"Invalid Value for n [123.4]."},
        {"trailing zeros do not count", ItemType_decimal, L"1.50", Facets().Digits(2).Fraction(1),
         nullptr},
        {"sign does not count", ItemType_decimal, L"-100", Facets().Digits(3).Fraction(0), nullptr},
        {"1000 has 4", ItemType_decimal, L"1000", Facets().Digits(3),
         L"Invalid Value for n [1000]."},
        {"bound", ItemType_decimal, L"-0.5", Facets().MinIncl(L"-0.49"),
         L"Invalid Value for n [-0.5]."},
        {"exclusive bound", ItemType_decimal, L"2.50", Facets().MaxExcl(L"2.5"),
         L"Invalid Value for n [2.50]."},
    };
    ExpectChecks(std::begin(cases), std::end(cases));

    struct Len {
        const wchar_t* text;
        int integerDigits, fractionDigits;
    };

    const Len lens[] = {{L"0.25", 0, 2},   {L"-123.450", 3, 2}, {L"0", 0, 0},      {L"1000", 4, 0},
                        {L"-0.001", 0, 3}, {L"1e3", 4, 0},      {L"12.000", 2, 0}, {L"-9.9", 1, 1}};
    for (const Len& tc : lens) {
        SCOPED_TRACE(qvtest::Narrow(tc.text));
        EXPECT_EQ(H::GetDecimalIntegerPartLen(CDecimal(tc.text)), tc.integerDigits);
        EXPECT_EQ(H::GetDecimalFractionPartLen(CDecimal(tc.text)), tc.fractionDigits);
    }
}

TEST(Restrictions, LengthsPatternsBinaryAndBoolean) {
    const Facets pattern = Facets().Pattern(L"[a-c]+");
    const Facets everything = Facets().Length(0).MinLength(5).MinIncl(L"x").Pattern(L"(");
    const Case cases[] = {
        {"shorter than min", ItemType_string, L"abc", Facets().MinLength(4),
         L"Invalid Value for n [abc]."},
        {"longer than max", ItemType_string, L"abc", Facets().MaxLength(2),
         L"Invalid Value for n [abc]."},
        {"exact length", ItemType_string, L"abc", Facets().Length(3).MinLength(3).MaxLength(3),
         nullptr},
        {"wrong length", ItemType_string, L"abcd", Facets().Length(3),
         L"Invalid Value for n [abcd]."},
        {"length counts characters", ItemType_string, L"\u00e9\U0001F600", Facets().Length(2),
         nullptr},
        {"pattern matches", ItemType_string, L"abc", pattern, nullptr},
        {"pattern fails", ItemType_string, L"abd", pattern, L"Invalid Value for n [abd]."},
        {"hex length", ItemType_hexBinary, L"010203", Facets().Length(2),
         L"Invalid Value for n [010203]."},
        {"hex within", ItemType_hexBinary, L"0102", Facets().Length(2).MinLength(1).MaxLength(2),
         nullptr},
        {"hex ignores pattern and bounds", ItemType_hexBinary, L"0102", pattern, nullptr},
        {"base64 max length", ItemType_base64Binary, L"AQID", Facets().MaxLength(2),
         L"Invalid Value for n [AQID]."},
        {"boolean never fails", ItemType_boolean, L"true", everything, nullptr},
    };
    ExpectChecks(std::begin(cases), std::end(cases));
}

TEST(Restrictions, BadPatternReportsItsErrorFirst) {
    const CPrimitiveRestrictions r(L"(ab", -1, -1, nullptr, nullptr, nullptr, nullptr, -1, -1, -1);
    ExpectThrowMsg<CQvException>(
        [&] { H::CheckRestrictionForstring(L"code", L"ab", r); },
        L"Invalid Regular Expression: (ab Error: 'missing ')''\nInvalid Value for code [ab].");
    // A length failure comes first and never reaches the pattern.
    const CPrimitiveRestrictions shortMax(L"(ab", -1, 1, nullptr, nullptr, nullptr, nullptr, -1, -1,
                                          -1);
    ExpectThrowMsg<CQvException>([&] { H::CheckRestrictionForstring(L"code", L"ab", shortMax); },
                                 L"Invalid Value for code [ab].");
}

TEST(Restrictions, CheckOrderAndBadBounds) {
    const Facets badMax = Facets().MinIncl(L"10").MaxIncl(L"x");
    const Case cases[] = {
        // The failing min bound stops the checks before the bad max bound is read.
        {"first failure wins", ItemType_i4, L"5", badMax, L"Invalid Value for n [5]"},
        {"bounds before digits", ItemType_i4, L"10", Facets().MaxIncl(L"5").Digits(1),
         L"Invalid Value for n [10]"},
        {"i4 bound", ItemType_i4, L"15", badMax, L"The value [x] can not be converted to a i4",
         true},
        {"i1 bound range", ItemType_i1, L"1", Facets().MinIncl(L"300"),
         L"The value [300] is to large to fit in a i1", true},
        {"date bound", ItemType_date, L"2024-01-01", Facets().MaxIncl(L"2024-13-01"),
         L"Invalid Month [13] (1 <= month <= 12)", true},
        {"decimal bound", ItemType_decimal, L"1", Facets().MinExcl(L"one"),
         L"The string representing a Decimal, contained an invalid char at position 0 [one].",
         true},
    };
    ExpectChecks(std::begin(cases), std::end(cases));
}

TEST(Restrictions, DispatchErrors) {
    const CPrimitiveRestrictions none;
    QvVariant character, i4;
    character.SetChar(L'x');
    i4.SetI4(1);
    const QvVariant invalid;

    struct Case {
        const char* name;
        const QvVariant& value;
        ItemType type;
        const wchar_t* message;
        bool plain; // a plain CQvException from the variant rather than the check's own
    };

    const Case cases[] = {
        {"char", character, ItemType_char, L"Unknown type [char].", false},
        {"type 0 names the variant's type", i4, ItemType_Invalid, L"Unknown type [i4].", false},
        {"object", i4, ItemType_XmlObject, L"Unknown type [i4].", false},
        {"out of range", i4, ItemType(40), L"Unknown type [i4].", false},
        {"invalid variant has no type name", invalid, ItemType_Invalid, L"Invalid Type 0", true},
        {"getter refuses another type", i4, ItemType_string, L"Invalid Type 5", true},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        auto check = [&] { H::CheckRestriction(L"n", tc.value, tc.type, none); };
        if (tc.plain)
            ExpectThrowMsg<CQvException>(check, tc.message);
        else
            ExpectThrowMsg<CQvInvalidValueException>(check, tc.message);
    }
}

// With no facet set nothing is parsed or counted, but a variant of another type is refused as
// before, and only by the types whose getters check.
TEST(Restrictions, WithoutFacetsOnlyTheTypeIsChecked) {
    const CPrimitiveRestrictions none;
    QvVariant i4;
    i4.SetI4(7);

    struct Sample {
        ItemType type;
        const wchar_t* text;
    };

    const Sample checked[] = {
        {ItemType_hexBinary, L"00"},
        {ItemType_base64Binary, L"AA=="},
        {ItemType_duration, L"P1D"},
        {ItemType_yearMonth, L"2024-01"},
        {ItemType_monthDay, L"--01-02"},
        {ItemType_date, L"2024-01-02"},
        {ItemType_datetime, L"2024-01-02T03:04:05"},
        {ItemType_time, L"03:04:05"},
        {ItemType_string, L"s"},
        {ItemType_decimal, L"1.5"},
        {ItemType_integer, L"12"},
    };
    for (const Sample& tc : checked) {
        SCOPED_TRACE(static_cast<int>(tc.type));
        ExpectThrowMsg<CQvException>([&] { H::CheckRestriction(L"n", i4, tc.type, none); },
                                     L"Invalid Type 5");
        QvVariant value = Parsed(tc.type, tc.text);
        EXPECT_NO_THROW(H::CheckRestriction(L"n", value, tc.type, none));
        value.SetNil();
        EXPECT_NO_THROW(H::CheckRestriction(L"n", value, tc.type, none));
    }
    QvVariant text;
    text.SetString(L"x");
    const ItemType unchecked[] = {ItemType_i1,  ItemType_i2,     ItemType_i4,   ItemType_i8,
                                  ItemType_ui1, ItemType_ui2,    ItemType_ui4,  ItemType_ui8,
                                  ItemType_r4,  ItemType_r8,     ItemType_year, ItemType_month,
                                  ItemType_day, ItemType_boolean};
    for (const ItemType type : unchecked) {
        SCOPED_TRACE(static_cast<int>(type));
        EXPECT_NO_THROW(H::CheckRestriction(L"n", text, type, none));
    }
    // One facet anywhere brings every check back, the digit counts included.
    const QvVariant price = Parsed(ItemType_decimal, L"12.345");
    EXPECT_NO_THROW(
        H::CheckRestriction(L"n", price, ItemType_decimal, Facets().Pattern(L"x").Make()));
    ExpectThrowMsg<CQvException>(
        [&] { H::CheckRestriction(L"n", price, ItemType_decimal, Facets().Fraction(2).Make()); },
        L"Invalid Value for n [12.345].");
    ExpectThrowMsg<CQvException>(
        [&] { H::CheckRestriction(L"n", price, ItemType_decimal, Facets().Digits(4).Make()); },
        L"Invalid Value for n [12.345].");
}
