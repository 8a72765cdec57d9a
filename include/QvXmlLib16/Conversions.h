#pragma once

#include <QvXmlLib16/BigInteger.h>
#include <QvXmlLib16/BinaryData.h>
#include <QvXmlLib16/DateTime.h>
#include <QvXmlLib16/DateTimeSpan.h>
#include <QvXmlLib16/Decimal.h>
#include <QvXmlLib16/Export.h>
#include <QvXmlLib16/WhitespaceUtils.h>

#include <string>

namespace QvXmlLib16 {

// Lexical forms of the XML Schema primitives. Every xFromString applies the whitespace rule
// first and throws CQvInvalidValueException on bad text (errors of the value classes pass
// through as they are). Numbers are read and written as in the C locale, whatever the
// process locale is.
class QVXML_API CConversions {
public:
    using Rule = CWhitespaceUtils::WhitespaceRule;

    // i4/ui4 are the platform's long (64 bits here). The narrow types are read with the wide
    // parser of their signedness, so text that is no number reports the i4/ui4 message, and
    // "-1" read as ui4/ui8 wraps to the largest value while ui1/ui2 call it too large.
    static char i1FromString(const std::wstring& text, Rule rule);
    static short i2FromString(const std::wstring& text, Rule rule);
    static long i4FromString(const std::wstring& text, Rule rule);
    static long long i8FromString(const std::wstring& text, Rule rule);
    static unsigned char ui1FromString(const std::wstring& text, Rule rule);
    static unsigned short ui2FromString(const std::wstring& text, Rule rule);
    static unsigned long ui4FromString(const std::wstring& text, Rule rule);
    static unsigned long long ui8FromString(const std::wstring& text, Rule rule);
    // "NaN", "1.#QNAN", "-NAN", "INF" and "-INF" exactly; anything else goes to wcstod.
    static float r4FromString(const std::wstring& text, Rule rule);
    static double r8FromString(const std::wstring& text, Rule rule);
    // "true", "false", "1" or "0", in any case.
    static bool booleanFromString(const std::wstring& text, Rule rule);
    static wchar_t charFromString(const std::wstring& text, Rule rule);
    static std::wstring stringFromString(const std::wstring& text, Rule rule);
    static CDecimal decimalFromString(const std::wstring& text, Rule rule);
    static CBigInteger integerFromString(const std::wstring& text, Rule rule);
    static CBinaryData hexBinaryFromString(const std::wstring& text, Rule rule);
    static CBinaryData base64BinaryFromString(const std::wstring& text, Rule rule);
    static CDateTimeSpan durationFromString(const std::wstring& text, Rule rule);
    // The date parsers take the kind from the shape of the text, as CDateTime does.
    static CDateTime datetimeFromString(const std::wstring& text, Rule rule);
    static CDateTime dateFromString(const std::wstring& text, Rule rule);
    static CDateTime yearMonthFromString(const std::wstring& text, Rule rule);
    static CDateTime timeFromString(const std::wstring& text, Rule rule);
    static CDateTime monthDayFromString(const std::wstring& text, Rule rule);
    static unsigned short yearFromString(const std::wstring& text, Rule rule);
    static unsigned char monthFromString(const std::wstring& text, Rule rule);
    static unsigned char dayFromString(const std::wstring& text, Rule rule);

    static std::wstring i1ToString(char value);
    static std::wstring i2ToString(short value);
    static std::wstring i4ToString(long value);
    static std::wstring i8ToString(long long value);
    static std::wstring ui1ToString(unsigned char value);
    static std::wstring ui2ToString(unsigned short value);
    static std::wstring ui4ToString(unsigned long value);
    static std::wstring ui8ToString(unsigned long long value);
    // NaN, "-INF", "INF", else a printf format with one floating conversion ("%.7g" and
    // "%.16g" when empty). Any other format throws CQvInvalidParamException.
    static std::wstring r4ToString(float value);
    static std::wstring r4ToString(float value, const std::wstring& format);
    static std::wstring r8ToString(double value);
    static std::wstring r8ToString(double value, const std::wstring& format);
    static std::wstring booleanToString(bool value);
    static std::wstring charToString(wchar_t value);
    static std::wstring stringToString(const std::wstring& value);
    // A non-empty format is read as a number (wcstol): the count of fraction digits.
    static std::wstring decimalToString(const CDecimal& value);
    static std::wstring decimalToString(const CDecimal& value, const std::wstring& format);
    static std::wstring integerToString(const CBigInteger& value);
    static std::wstring hexBinaryToString(const CBinaryData& value);
    static std::wstring base64BinaryToString(const CBinaryData& value);
    static std::wstring durationToString(const CDateTimeSpan& value);
    // The value's own kind decides the form.
    static std::wstring datetimeToString(const CDateTime& value);
    static std::wstring dateToString(const CDateTime& value);
    static std::wstring yearMonthToString(const CDateTime& value);
    static std::wstring timeToString(const CDateTime& value);
    static std::wstring monthDayToString(const CDateTime& value);
    static std::wstring yearToString(unsigned short value);
    static std::wstring monthToString(unsigned char value);
    static std::wstring dayToString(unsigned char value);
};

} // namespace QvXmlLib16
