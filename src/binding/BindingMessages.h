#pragma once

// Message texts of the binding core. Verbatim, odd spelling included: callers match on them.
namespace QvXmlLib16::msg {

// Serialization context
inline constexpr wchar_t kIgnoreUnknownWhileMissing[] =
    L"The parser can only ignore additional elements, or ignore the fact that some required ones "
    L"are missing, you can not ignore both\nSet IgnoreMissingMandatoryElements to false before "
    L"setting IgnoreUnknownElements to true";
inline constexpr wchar_t kIgnoreMissingWhileUnknown[] =
    L"The parser can only ignore additional elements, or ignore the fact that some required ones "
    L"are missing, you can not ignore both\nSet IgnoreUnknownElements to false before setting "
    L"IgnoreMissingMandatoryElements to true";
inline constexpr wchar_t kIndentCharsInvalid[] =
    L"IndentChars can only contain Whitespace characters, i.e. \\t or spaces";
inline constexpr wchar_t kAliasNotFoundFmt[] = L"Namespace alias [%ls] not found";

// Collections and indexed lookups
inline constexpr wchar_t kIndexOutOfRangeFmt[] = L"Index %d is out of range, use 0 - %d";

} // namespace QvXmlLib16::msg
