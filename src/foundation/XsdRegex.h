#pragma once

#include <string>

// Pattern facets: XML Schema regular expressions run on PCRE2.
namespace QvXmlLib16::detail {

// The PCRE2 form (UTF-8) of an XML Schema pattern, anchored at both ends. Throws
// CQvException "Invalid Regular Expression: %ls Error: '%ls'" when the pattern is not valid.
std::string TranslateXsdPattern(const std::wstring& pattern);

// Whether the whole of value matches pattern. Compiled patterns are cached process-wide
// (safe across threads); a match that exceeds the backtracking limits throws like a bad
// pattern rather than running on.
bool MatchXsdPattern(const std::wstring& pattern, const std::wstring& value);

} // namespace QvXmlLib16::detail
