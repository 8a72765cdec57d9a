#pragma once

#include <QvXmlLib16/WhitespaceUtils.h>

#include <string>

namespace QvXmlLib16::detail {

// Whether a whitespace rule hands the text back unchanged: the usual case for values read
// from a document, which then need no copy.
inline bool RuleLeavesText(CWhitespaceUtils::WhitespaceRule rule, const std::wstring& s) {
    switch (rule) {
    case CWhitespaceUtils::WhitespaceRule_None: return true;
    case CWhitespaceUtils::WhitespaceRule_Preserve: return s.find(L'\r') == std::wstring::npos;
    case CWhitespaceUtils::WhitespaceRule_Replace:
        return s.find_first_of(L"\t\n\r") == std::wstring::npos;
    case CWhitespaceUtils::WhitespaceRule_Collapse: {
        if (s.empty())
            return true;
        if (s.front() == L' ' || s.back() == L' ')
            return false;
        wchar_t previous = 0;
        for (const wchar_t c : s) {
            if (c == L'\t' || c == L'\n' || c == L'\r' || (c == L' ' && previous == L' '))
                return false;
            previous = c;
        }
        return true;
    }
    }
    return false; // an unknown rule: ApplyRule reports it
}

// A text with a whitespace rule applied, copied only when the rule changes it.
class CRuleApplied {
public:
    CRuleApplied(CWhitespaceUtils::WhitespaceRule rule, const std::wstring& text) : m_text(&text) {
        if (!RuleLeavesText(rule, text)) {
            m_changed = CWhitespaceUtils::ApplyRule(rule, text);
            m_text = &m_changed;
        }
    }

    CRuleApplied(const CRuleApplied&) = delete;
    CRuleApplied& operator=(const CRuleApplied&) = delete;

    const std::wstring& Text() const { return *m_text; }

    const wchar_t* c_str() const { return m_text->c_str(); }

private:
    const std::wstring* m_text;
    std::wstring m_changed;
};

} // namespace QvXmlLib16::detail
