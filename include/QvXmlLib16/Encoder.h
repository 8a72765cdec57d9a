#pragma once

#include <QvXmlLib16/BinaryData.h>
#include <QvXmlLib16/Export.h>

#include <string>

namespace QvXmlLib16 {

class QVXML_API CEncoder {
public:
    // Decodes UTF-8; decoding stops at the first ill-formed sequence.
    static std::wstring Utf8ToUnicode(unsigned char* data, int len);
    // Decodes its bytes as UTF-8 too, exactly as Utf8ToUnicode: callers depend on that.
    static std::wstring Utf16ToUnicode(unsigned char* data, int len);
    // UTF-8 bytes of s; empty when s is empty or holds a surrogate.
    static CBinaryData UnicodeToUtf8Binary(const wchar_t* s);
};

} // namespace QvXmlLib16
