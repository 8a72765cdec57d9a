#pragma once

#include <QvXmlLib16/Export.h>

#include <string>

namespace QvXmlLib16 {

class QVXML_API CWhitespaceUtils {
public:
    // Stored by generated code and metadata: the numbers are fixed.
    enum WhitespaceRule : int {
        WhitespaceRule_None = 0,
        WhitespaceRule_Preserve = 1,
        WhitespaceRule_Replace = 2,
        WhitespaceRule_Collapse = 3
    };

    // Space, TAB, CR and LF only.
    static bool IsWhiteSpace(wchar_t c) {
        return c == L' ' || c == L'\t' || c == L'\r' || c == L'\n';
    }

    // CR LF and lone CR become LF.
    static std::wstring Preserve(const std::wstring& s);
    static std::wstring Preserve(const wchar_t* s, int len);
    // TAB, LF, CR and each CR LF pair become one space.
    static std::wstring Replace(const std::wstring& s);
    // Runs of whitespace become one space; leading and trailing whitespace goes.
    static std::wstring Collapse(const std::wstring& s);
    // Throws CQvException "Unknown WhitespaceRule" for a value outside 0..3.
    static std::wstring ApplyRule(WhitespaceRule rule, const std::wstring& s);
};

} // namespace QvXmlLib16
