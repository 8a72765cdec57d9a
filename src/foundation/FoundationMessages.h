#pragma once

// Message texts of the foundation. Verbatim, odd spelling included: callers match on them.
namespace QvXmlLib16::msg {

inline constexpr wchar_t kUnknownWhitespaceRule[] = L"Unknown WhitespaceRule";

} // namespace QvXmlLib16::msg

namespace QvXmlLib16::msg {

// Pattern facets
inline constexpr wchar_t kInvalidRegexFmt[] = L"Invalid Regular Expression: %ls Error: '%ls'";

} // namespace QvXmlLib16::msg

namespace QvXmlLib16::msg {

// Lexical conversions; the last %ls is the type's short name ("i4", "r8", ...).
inline constexpr wchar_t kNotConvertibleFmt[] = L"The value [%ls] can not be converted to a %ls";
inline constexpr wchar_t kTooLargeFmt[] = L"The value [%ls] is to large to fit in a %ls";
inline constexpr wchar_t kInvalidBooleanFmt[] =
    L"A Boolean Value read from an XML document was invalid [%ls]. Valid values are 'true', "
    L"'false', '1', or '0'";
inline constexpr wchar_t kInvalidCharFmt[] =
    L"The value [%ls] can not be a char as it is either empty of greater than 1 char long";
inline constexpr wchar_t kInvalidNumberFormatFmt[] =
    L"Invalid number format [%ls]: expected one floating-point conversion";

// Variant
inline constexpr wchar_t kInvalidTypeFmt[] = L"Invalid Type %d";
inline constexpr wchar_t kInvalidTypeToStringFmt[] = L"Invalid Type %d to convert to string";

// Restriction facets
inline constexpr wchar_t kInvalidValueNumberFmt[] = L"Invalid Value for %ls [%d]";
inline constexpr wchar_t kInvalidValueRealFmt[] = L"Invalid Value for %ls [%f]";
inline constexpr wchar_t kInvalidValueTextFmt[] = L"Invalid Value for %ls [%ls].";
// The pattern's own error comes first.
inline constexpr wchar_t kInvalidValueBadPatternFmt[] = L"%ls\nInvalid Value for %ls [%ls].";
inline constexpr wchar_t kUnknownTypeFmt[] = L"Unknown type [%ls].";

} // namespace QvXmlLib16::msg
