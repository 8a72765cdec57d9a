#include "foundation/FoundationMessages.h"
#include "foundation/RuleApplied.h"

#include <QvXmlLib16/QvException.h>
#include <QvXmlLib16/WhitespaceUtils.h>

namespace QvXmlLib16 {

std::wstring CWhitespaceUtils::Preserve(const std::wstring& s) {
    if (detail::RuleLeavesText(WhitespaceRule_Preserve, s))
        return s;
    return Preserve(s.data(), static_cast<int>(s.size()));
}

std::wstring CWhitespaceUtils::Preserve(const wchar_t* s, int len) {
    std::wstring out;
    if (!s || len <= 0)
        return out;
    out.reserve(static_cast<size_t>(len));
    for (int i = 0; i < len; ++i) {
        if (s[i] != L'\r') {
            out += s[i];
            continue;
        }
        out += L'\n';
        if (i + 1 < len && s[i + 1] == L'\n')
            ++i;
    }
    return out;
}

std::wstring CWhitespaceUtils::Replace(const std::wstring& s) {
    if (detail::RuleLeavesText(WhitespaceRule_Replace, s))
        return s;
    std::wstring out;
    out.reserve(s.size());
    for (size_t i = 0; i < s.size(); ++i) {
        const wchar_t c = s[i];
        if (c == L'\r' && i + 1 < s.size() && s[i + 1] == L'\n')
            ++i; // a CR LF pair is one line end, so one space
        out += (c == L'\t' || c == L'\n' || c == L'\r') ? L' ' : c;
    }
    return out;
}

std::wstring CWhitespaceUtils::Collapse(const std::wstring& s) {
    std::wstring out;
    out.reserve(s.size());
    bool pendingSpace = false;
    for (wchar_t c : s) {
        if (IsWhiteSpace(c)) {
            pendingSpace = !out.empty();
            continue;
        }
        if (pendingSpace)
            out += L' ';
        pendingSpace = false;
        out += c;
    }
    return out;
}

std::wstring CWhitespaceUtils::ApplyRule(WhitespaceRule rule, const std::wstring& s) {
    switch (rule) {
    case WhitespaceRule_None: return s;
    case WhitespaceRule_Preserve: return Preserve(s);
    case WhitespaceRule_Replace: return Replace(s);
    case WhitespaceRule_Collapse: return Collapse(s);
    }
    throw CQvException(msg::kUnknownWhitespaceRule);
}

} // namespace QvXmlLib16
