#pragma once

#include <string>

namespace QvXmlLib16::detail {

// The XML Schema boolean forms: "true" or "1", "false" or "0", letters in any case. xsi:nil
// values and boolean members read the same words.
enum class BooleanText { True, False, Invalid };

inline BooleanText ReadBooleanText(const std::wstring& text) {
    // ASCII folding only, so no locale can fold another letter onto the words.
    auto equalsIgnoringCase = [&text](const wchar_t* word) {
        size_t i = 0;
        for (; i < text.size() && word[i] != L'\0'; ++i) {
            const wchar_t c =
                text[i] >= L'A' && text[i] <= L'Z' ? text[i] + (L'a' - L'A') : text[i];
            if (c != word[i])
                return false;
        }
        return i == text.size() && word[i] == L'\0';
    };
    if (equalsIgnoringCase(L"true") || text == L"1")
        return BooleanText::True;
    if (equalsIgnoringCase(L"false") || text == L"0")
        return BooleanText::False;
    return BooleanText::Invalid;
}

} // namespace QvXmlLib16::detail
