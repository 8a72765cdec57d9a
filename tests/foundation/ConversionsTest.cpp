#include "common/TestUtils.h"

#include <QvXmlLib16/Conversions.h>
#include <QvXmlLib16/Variant.h>

#include <cmath>
#include <functional>
#include <limits>

using namespace QvXmlLib16;
using qvtest::ExpectThrowMsg;
using C = CConversions;

namespace {

constexpr auto kNone = CWhitespaceUtils::WhitespaceRule_None;
constexpr auto kCollapse = CWhitespaceUtils::WhitespaceRule_Collapse;

struct LexicalCase {
    ItemType type;
    const wchar_t* text;
    C::Rule rule;
    const wchar_t* expected; // the value written back, or the exact error message
};

std::string Trace(const LexicalCase& tc) {
    return "type " + std::to_string(tc.type) + " [" + qvtest::Narrow(tc.text) + "]";
}

// Reads through the variant, which calls the xFromString of the type, and writes back.
std::wstring ReadWrite(const LexicalCase& tc) {
    QvVariant v;
    v.FromString(tc.text, tc.type, tc.rule);
    return v.ToString();
}

} // namespace

TEST(Conversions, ReadEdgesAndWriteBack) {
    const LexicalCase cases[] = {
        {ItemType_i4, L" 12 ", kCollapse, L"12"},
        {ItemType_i4, L" \t+42", kNone, L"42"}, // the C library skips leading space
        {ItemType_i4, L"-9223372036854775808", kNone, L"-9223372036854775808"}, // 64-bit long
        {ItemType_ui4, L"18446744073709551615", kNone, L"18446744073709551615"},
        {ItemType_ui4, L"-1", kNone, L"18446744073709551615"}, // wraps, as designed
        {ItemType_ui8, L"-1", kNone, L"18446744073709551615"},
        {ItemType_i1, L"-128", kNone, L"-128"},
        {ItemType_i2, L"32767", kNone, L"32767"},
        {ItemType_ui1, L"255", kNone, L"255"},
        {ItemType_ui2, L"65535", kNone, L"65535"},
        {ItemType_r8, L"INF", kNone, L"INF"},
        {ItemType_r8, L"-INF", kNone, L"-INF"},
        {ItemType_r8, L"inf", kNone, L"INF"}, // not an exact match, but wcstod reads it
        {ItemType_r8, L"1.#QNAN", kNone, L"NaN"},
        {ItemType_r8, L"-NAN", kNone, L"NaN"},
        {ItemType_r8, L"0.1", kNone, L"0.1"},
        {ItemType_r8, L" 1e400 ", kCollapse, L"INF"},
        {ItemType_r8, L"-1.7976931348623157e308", kNone, L"-1.797693134862316e+308"},
        {ItemType_r4, L"3.4028235e38", kNone, L"3.402823e+38"},
        {ItemType_r4, L"1e39", kNone, L"INF"}, // narrowing gives an infinity, no error
        {ItemType_r4, L"0.333333333", kNone, L"0.3333333"},
        {ItemType_boolean, L"TRUE", kNone, L"true"},
        {ItemType_boolean, L"False", kNone, L"false"},
        {ItemType_boolean, L"0", kNone, L"false"},
        {ItemType_boolean, L" 1\n", kCollapse, L"true"},
        {ItemType_char, L" \u20ac ", kCollapse, L"\u20ac"},
        {ItemType_string, L"a\tb\r\nc", CWhitespaceUtils::WhitespaceRule_Replace, L"a b c"},
        {ItemType_year, L"0005", kNone, L"5"},
        {ItemType_year, L"1999-12-31", kNone, L"1999"}, // the text decides the date kind
        {ItemType_month, L"--05", kNone, L"--05"},
        {ItemType_day, L"---07", kNone, L"---07"},
        {ItemType_base64Binary, L" AQID\n", kCollapse, L"AQID"},
        {ItemType_hexBinary, L"0aFf", kNone, L"0AFF"},
        {ItemType_decimal, L" -0.50 ", kCollapse, L"-0.50"},
    };
    for (const LexicalCase& tc : cases) {
        SCOPED_TRACE(Trace(tc));
        EXPECT_EQ(qvtest::Narrow(ReadWrite(tc)), qvtest::Narrow(tc.expected));
    }
    EXPECT_TRUE(std::isnan(C::r8FromString(L"NaN", kNone)));
    EXPECT_TRUE(std::isnan(C::r4FromString(L"NaN", kNone)));
}

TEST(Conversions, LexicalErrors) {
    const LexicalCase cases[] = {
        {ItemType_i4, L" 12 ", kNone, L"The value [ 12 ] can not be converted to a i4"},
        {ItemType_i4, L" \t ", kCollapse, L"The value [] can not be converted to a i4"},
        {ItemType_i4, L"1.5", kNone, L"The value [1.5] can not be converted to a i4"},
        {ItemType_i4, L"-", kNone, L"The value [-] can not be converted to a i4"},
        {ItemType_i4, L" 1 x ", kCollapse, L"The value [1 x] can not be converted to a i4"},
        {ItemType_i4, L"9223372036854775808", kNone,
         L"The value [9223372036854775808] is to large to fit in a i4"},
        {ItemType_i8, L"0x10", kNone, L"The value [0x10] can not be converted to a i8"},
        {ItemType_i8, L"-9223372036854775809", kNone,
         L"The value [-9223372036854775809] is to large to fit in a i8"},
        {ItemType_ui4, L"x", kNone, L"The value [x] can not be converted to a ui4"},
        {ItemType_ui4, L"18446744073709551616", kNone,
         L"The value [18446744073709551616] is to large to fit in a ui4"},
        {ItemType_ui8, L"", kNone, L"The value [] can not be converted to a ui8"},
        {ItemType_ui8, L"99999999999999999999", kNone,
         L"The value [99999999999999999999] is to large to fit in a ui8"},
        // The narrow types report the wide parser's message, and quote the caller's text in
        // their own.
        {ItemType_i1, L"128", kNone, L"The value [128] is to large to fit in a i1"},
        {ItemType_i1, L"x", kNone, L"The value [x] can not be converted to a i4"},
        {ItemType_i1, L"99999999999999999999", kNone,
         L"The value [99999999999999999999] is to large to fit in a i4"},
        {ItemType_i1, L" 200 ", kCollapse, L"The value [ 200 ] is to large to fit in a i1"},
        {ItemType_i2, L"-32769", kNone, L"The value [-32769] is to large to fit in a i2"},
        {ItemType_ui1, L"-1", kNone, L"The value [-1] is to large to fit in a ui1"},
        {ItemType_ui2, L"65536", kNone, L"The value [65536] is to large to fit in a ui2"},
        {ItemType_ui2, L"1e3", kNone, L"The value [1e3] can not be converted to a ui4"},
        {ItemType_r8, L"", kNone, L"The value [] can not be converted to a r8"},
        {ItemType_r8, L"1,5", kNone, L"The value [1,5] can not be converted to a r8"},
        {ItemType_r4, L"NaN ", kNone, L"The value [NaN ] can not be converted to a r4"},
        {ItemType_boolean, L"yes", kNone,
         L"A Boolean Value read from an XML document was invalid [yes]. Valid values are "
         L"'true', 'false', '1', or '0'"},
        {ItemType_boolean, L" no ", kCollapse,
         L"A Boolean Value read from an XML document was invalid [ no ]. Valid values are "
         L"'true', 'false', '1', or '0'"},
        {ItemType_char, L"ab", kNone,
         L"The value [ab] can not be a char as it is either empty of greater than 1 char long"},
        {ItemType_char, L"", kNone,
         L"The value [] can not be a char as it is either empty of greater than 1 char long"},
        // Errors of the value classes pass through.
        {ItemType_date, L"2023-02-29", kNone, L"Invalid Day [29] (1 <= day <= days in month"},
        {ItemType_datetime, L"2024-01-01", kNone, L"Invalid XSD DateTime [2024-01-01]."},
        {ItemType_year, L"--05", kNone, L"Failed to GetYear. Invalid Date Type: gMonth."},
        {ItemType_decimal, L"1.2.3", kNone,
         L"The string representing a Decimal, contained an invalid char at position 3 [1.2.3]."},
    };
    for (const LexicalCase& tc : cases) {
        SCOPED_TRACE(Trace(tc));
        ExpectThrowMsg<CQvInvalidValueException>([&] { ReadWrite(tc); }, tc.expected);
    }
    // CBinaryData reports bad hex with a plain CQvException.
    ExpectThrowMsg<CQvException>([] { C::hexBinaryFromString(L"ABC", kNone); },
                                 L"Invalid length in hex string");
}

TEST(Conversions, NumberFormats) {
    struct Case {
        const char* name;
        std::function<std::wstring()> call;
        const wchar_t* expected;
    };

    const Case cases[] = {
        {"r8 format", [] { return C::r8ToString(3.14159, L"%.2f"); }, L"3.14"},
        {"r8 text around", [] { return C::r8ToString(2.5, L"%%%08.3f EUR"); }, L"%0002.500 EUR"},
        {"r8 past the buffer", [] { return C::r8ToString(1e60, L"%.1f"); },
         L"999999999999999949387135297074018866963645011013410073083904.0"},
        {"r8 infinity ignores format",
         [] { return C::r8ToString(std::numeric_limits<double>::infinity(), L"%.1f"); }, L"INF"},
        {"r4 format", [] { return C::r4ToString(0.5f, L"%e"); }, L"5.000000e-01"},
        {"decimal digits", [] { return C::decimalToString(CDecimal(L"1.5"), L"3"); }, L"1.500"},
        {"decimal truncates", [] { return C::decimalToString(CDecimal(L"1.59"), L"1"); }, L"1.5"},
        {"decimal reads a number", [] { return C::decimalToString(CDecimal(L"1.59"), L"%.2f"); },
         L"1"},
        {"decimal negative count", [] { return C::decimalToString(CDecimal(L"1.59"), L"-1"); },
         L"1.59"},
        {"i4 min", [] { return C::i4ToString(std::numeric_limits<long>::min()); },
         L"-9223372036854775808"},
        {"month past two digits", [] { return C::monthToString(123); }, L"--123"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        EXPECT_EQ(qvtest::Narrow(tc.call()), qvtest::Narrow(tc.expected));
    }
    // A format that would make swprintf read an argument it was not given is refused.
    for (const wchar_t* format : {L"%ls", L"%d", L"%f%f", L"%*f", L"5%", L"%Lf"}) {
        SCOPED_TRACE(qvtest::Narrow(format));
        ExpectThrowMsg<CQvInvalidParamException>(
            [&] { C::r8ToString(1, format); }, L"Invalid number format [" + std::wstring(format)
                                                   + L"]: expected one floating-point conversion");
    }
}
