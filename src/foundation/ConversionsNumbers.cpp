#include "foundation/FoundationMessages.h"
#include "foundation/NumericLocale.h"
#include "foundation/RuleApplied.h"

#include <QvXmlLib16/Conversions.h>
#include <QvXmlLib16/Format.h>
#include <QvXmlLib16/QvException.h>

#include <cerrno>
#include <cmath>
#include <cwchar>
#include <limits>
#include <type_traits>
#include <vector>

namespace QvXmlLib16 {

namespace {

[[noreturn]] void ThrowNotConvertible(const std::wstring& text, const wchar_t* type) {
    throw CQvInvalidValueException(FormatString(msg::kNotConvertibleFmt, text.c_str(), type));
}

[[noreturn]] void ThrowTooLarge(const std::wstring& text, const wchar_t* type) {
    throw CQvInvalidValueException(FormatString(msg::kTooLargeFmt, text.c_str(), type));
}

// Text the parser stopped before: anything but the terminator (an embedded NUL ends the
// number, as it would for the C library).
bool HasTrailing(const std::wstring& text, const wchar_t* end) {
    return *end != L'\0' && end < text.c_str() + text.size();
}

// The four base parsers: the C library does the reading, sign and leading space included.
template <class T>
T ParseWide(const std::wstring& raw, CConversions::Rule rule, const wchar_t* type,
            T (*parse)(const wchar_t*, wchar_t**, int)) {
    const detail::CRuleApplied ruled(rule, raw);
    const std::wstring& text = ruled.Text();
    if (text.empty())
        ThrowNotConvertible(text, type);
    wchar_t* end = nullptr;
    errno = 0;
    const T value = parse(text.c_str(), &end, 10);
    if (errno == ERANGE)
        ThrowTooLarge(text, type);
    if (HasTrailing(text, end))
        ThrowNotConvertible(text, type);
    return value;
}

// The narrow types range-check what the wide parser of their signedness read; their own
// message quotes the caller's text as given.
template <class Narrow, class Wide>
Narrow ParseNarrow(const std::wstring& raw, CConversions::Rule rule, const wchar_t* type,
                   Wide (*wide)(const std::wstring&, CConversions::Rule)) {
    const Wide value = wide(raw, rule);
    if (value < static_cast<Wide>(std::numeric_limits<Narrow>::min())
        || value > static_cast<Wide>(std::numeric_limits<Narrow>::max()))
        ThrowTooLarge(raw, type);
    return static_cast<Narrow>(value);
}

double ParseReal(const std::wstring& raw, CConversions::Rule rule, const wchar_t* type) {
    const detail::CRuleApplied ruled(rule, raw);
    const std::wstring& text = ruled.Text();
    if (text.empty())
        ThrowNotConvertible(text, type);
    if (text == L"NaN" || text == L"1.#QNAN" || text == L"-NAN")
        return std::numeric_limits<double>::quiet_NaN();
    if (text == L"-INF")
        return -std::numeric_limits<double>::infinity();
    if (text == L"INF")
        return std::numeric_limits<double>::infinity();
    wchar_t* end = nullptr;
    const double value = detail::RunInCLocale([&] { return std::wcstod(text.c_str(), &end); });
    if (HasTrailing(text, end))
        ThrowNotConvertible(text, type);
    return value;
}

bool IsOneOf(wchar_t c, const wchar_t* set) {
    return c != L'\0' && std::wcschr(set, c) != nullptr;
}

// A caller's format reaches swprintf with one double argument, so it may hold at most one
// conversion and that one must take a double; anything else would read a missing argument.
bool IsRealFormat(const std::wstring& format) {
    int conversions = 0;
    for (size_t i = 0; i < format.size(); ++i) {
        if (format[i] != L'%')
            continue;
        if (++i < format.size() && format[i] == L'%')
            continue;
        while (i < format.size() && IsOneOf(format[i], L"-+ #0'"))
            ++i;
        while (i < format.size() && ((format[i] >= L'0' && format[i] <= L'9') || format[i] == L'.'))
            ++i;
        if (i < format.size() && format[i] == L'l')
            ++i;
        if (i >= format.size() || !IsOneOf(format[i], L"aAeEfFgG"))
            return false;
        ++conversions;
    }
    return conversions <= 1;
}

template <class T>
std::wstring FormatReal(T value, const std::wstring& format, const wchar_t* defaultFormat,
                        size_t bufferSize) {
    if (std::isnan(value))
        return L"NaN";
    if (value < std::numeric_limits<T>::lowest())
        return L"-INF";
    if (value > std::numeric_limits<T>::max())
        return L"INF";
    if (!format.empty() && !IsRealFormat(format))
        throw CQvInvalidParamException(FormatString(msg::kInvalidNumberFormatFmt, format.c_str()));
    const wchar_t* used = format.empty() ? defaultFormat : format.c_str();
    auto print = [&](wchar_t* buffer, size_t size) {
        return detail::RunInCLocale(
            [&] { return std::swprintf(buffer, size, used, static_cast<double>(value)); });
    };
    // The default formats always fit the first buffer; a caller's wide format gets the room
    // it needs.
    wchar_t first[48];
    int written = print(first, bufferSize);
    if (written >= 0)
        return std::wstring(first, static_cast<size_t>(written));
    std::vector<wchar_t> buffer(bufferSize);
    while (written < 0) {
        if (buffer.size() >= (1u << 20))
            throw CQvInvalidParamException(FormatString(msg::kInvalidNumberFormatFmt, used));
        buffer.resize(buffer.size() * 4);
        written = print(buffer.data(), buffer.size());
    }
    return std::wstring(buffer.data(), static_cast<size_t>(written));
}

// Decimal digits of any built-in integer, as "%d"/"%u" and their long forms print them.
template <class T>
std::wstring IntegerText(T value) {
    wchar_t buffer[24];
    wchar_t* p = buffer + 24;
    // Work on the magnitude as unsigned so the most negative value does not overflow.
    using U = std::make_unsigned_t<T>;
    const bool negative = value < 0;
    U magnitude = negative ? U(0) - static_cast<U>(value) : static_cast<U>(value);
    do {
        *--p = static_cast<wchar_t>(L'0' + magnitude % 10);
        magnitude /= 10;
    } while (magnitude != 0);
    if (negative)
        *--p = L'-';
    return std::wstring(p, buffer + 24);
}

// "%02u"
std::wstring TwoDigits(unsigned char value) {
    std::wstring text = IntegerText(value);
    if (text.size() < 2)
        text.insert(text.begin(), L'0');
    return text;
}

} // namespace

long CConversions::i4FromString(const std::wstring& text, Rule rule) {
    return ParseWide<long>(text, rule, L"i4", std::wcstol);
}

long long CConversions::i8FromString(const std::wstring& text, Rule rule) {
    return ParseWide<long long>(text, rule, L"i8", std::wcstoll);
}

unsigned long CConversions::ui4FromString(const std::wstring& text, Rule rule) {
    return ParseWide<unsigned long>(text, rule, L"ui4", std::wcstoul);
}

unsigned long long CConversions::ui8FromString(const std::wstring& text, Rule rule) {
    return ParseWide<unsigned long long>(text, rule, L"ui8", std::wcstoull);
}

char CConversions::i1FromString(const std::wstring& text, Rule rule) {
    return ParseNarrow<char>(text, rule, L"i1", &CConversions::i4FromString);
}

short CConversions::i2FromString(const std::wstring& text, Rule rule) {
    return ParseNarrow<short>(text, rule, L"i2", &CConversions::i4FromString);
}

unsigned char CConversions::ui1FromString(const std::wstring& text, Rule rule) {
    return ParseNarrow<unsigned char>(text, rule, L"ui1", &CConversions::ui4FromString);
}

unsigned short CConversions::ui2FromString(const std::wstring& text, Rule rule) {
    return ParseNarrow<unsigned short>(text, rule, L"ui2", &CConversions::ui4FromString);
}

float CConversions::r4FromString(const std::wstring& text, Rule rule) {
    // Out of float range becomes an infinity, as the narrowing does.
    return static_cast<float>(ParseReal(text, rule, L"r4"));
}

double CConversions::r8FromString(const std::wstring& text, Rule rule) {
    return ParseReal(text, rule, L"r8");
}

std::wstring CConversions::i1ToString(char value) {
    return IntegerText(value);
}

std::wstring CConversions::i2ToString(short value) {
    return IntegerText(value);
}

std::wstring CConversions::i4ToString(long value) {
    return IntegerText(value);
}

std::wstring CConversions::i8ToString(long long value) {
    return IntegerText(value);
}

std::wstring CConversions::ui1ToString(unsigned char value) {
    return IntegerText(value);
}

std::wstring CConversions::ui2ToString(unsigned short value) {
    return IntegerText(value);
}

std::wstring CConversions::ui4ToString(unsigned long value) {
    return IntegerText(value);
}

std::wstring CConversions::ui8ToString(unsigned long long value) {
    return IntegerText(value);
}

std::wstring CConversions::r4ToString(float value) {
    return r4ToString(value, std::wstring());
}

std::wstring CConversions::r4ToString(float value, const std::wstring& format) {
    return FormatReal(value, format, L"%.7g", 32);
}

std::wstring CConversions::r8ToString(double value) {
    return r8ToString(value, std::wstring());
}

std::wstring CConversions::r8ToString(double value, const std::wstring& format) {
    return FormatReal(value, format, L"%.16g", 48);
}

std::wstring CConversions::yearToString(unsigned short value) {
    return IntegerText(value);
}

std::wstring CConversions::monthToString(unsigned char value) {
    return L"--" + TwoDigits(value);
}

std::wstring CConversions::dayToString(unsigned char value) {
    return L"---" + TwoDigits(value);
}

} // namespace QvXmlLib16
