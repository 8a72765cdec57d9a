#include <QvXmlLib16/ConvertUTF.h>
#include <QvXmlLib16/Encoder.h>

#include <cwchar>

namespace QvXmlLib16 {

std::wstring CEncoder::Utf8ToUnicode(unsigned char* data, int len) {
    if (!data || len <= 0)
        return std::wstring();
    const unsigned long length = static_cast<unsigned long>(len);
    // Pure ASCII needs no counting pass: one character per byte.
    const unsigned long size = DoesUTF8StrContainAnyCharsLargerThanOneByte(data, length)
                                   ? UTF8ToUnicode(data, length, nullptr, 0)
                                   : length;
    std::wstring out(size, L'\0');
    const unsigned long written = UTF8ToUnicode(data, length, out.data(), size);
    out.resize(written);
    return out;
}

std::wstring CEncoder::Utf16ToUnicode(unsigned char* data, int len) {
    if (!data || len <= 0)
        return std::wstring();
    const unsigned long length = static_cast<unsigned long>(len);
    const unsigned long size = UTF8ToUnicode(data, length, nullptr, 0);
    std::wstring out(size, L'\0');
    out.resize(UTF8ToUnicode(data, length, out.data(), size));
    return out;
}

CBinaryData CEncoder::UnicodeToUtf8Binary(const wchar_t* s) {
    if (!s || !*s)
        return CBinaryData();
    const unsigned long length = static_cast<unsigned long>(std::wcslen(s));
    const unsigned long size =
        DoesUnicodeStrContainAnyUTF8CharsLargerThanOneByte(s, static_cast<int>(length))
            ? UnicodeToUTF8(s, length, nullptr, 0)
            : length;
    if (size == 0)
        return CBinaryData();
    unsigned char* bytes = new unsigned char[size];
    const unsigned long written = UnicodeToUTF8(s, length, bytes, size);
    return CBinaryData(bytes, written, true);
}

} // namespace QvXmlLib16
