#pragma once

// Message texts of the foundation. Verbatim, odd spelling included: callers match on them.
namespace QvXmlLib16::msg {

inline constexpr wchar_t kUnknownWhitespaceRule[] = L"Unknown WhitespaceRule";

} // namespace QvXmlLib16::msg

namespace QvXmlLib16::msg {

// Pattern facets
inline constexpr wchar_t kInvalidRegexFmt[] = L"Invalid Regular Expression: %ls Error: '%ls'";

} // namespace QvXmlLib16::msg
