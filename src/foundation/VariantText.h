#pragma once

#include <QvXmlLib16/Variant.h>

#include <string>

namespace QvXmlLib16::detail {

// The value's text as ToString gives it. The writers only read it, so a string is used where
// it lies in the variant; other types are converted into scratch.
inline const std::wstring& VariantText(const QvVariant& value, const wchar_t* format,
                                       std::wstring& scratch) {
    if (value.GetItemType() == ItemType_string && !value.IsNil())
        return value.GetStringRef();
    scratch = value.ToString(format);
    return scratch;
}

} // namespace QvXmlLib16::detail
