#pragma once

#include <QvXmlLib16/Export.h>

#include <cstdarg>
#include <cstdio>
#include <string>

namespace QvXmlLib16 {

// Wide printf-style formatting: "%ls" for wide strings, "%d" for int, "%lc" for a character.
// The output is never truncated, and a "%n" conversion is written out as the text "%n".
QVXML_API std::wstring FormatString(const wchar_t* format, ...);
QVXML_API std::wstring FormatV(const wchar_t* format, va_list args);

// value in decimal, zero-padded to width digits; a minus sign counts towards the width.
QVXML_API std::wstring PadZero(int value, unsigned char width);
// s without trailing '0' characters, but never shorter than one character.
QVXML_API std::wstring TrimTrainingZeros(std::wstring s);
// The fraction after the seconds of a time ("" when all three are zero, else "." and digits).
QVXML_API std::wstring ToFracString(unsigned short millis, unsigned short micros,
                                    unsigned short nanos);

// Replaces every occurrence of find, rescanning text that a replacement may have joined up.
// An empty find changes nothing.
QVXML_API void FindReplace(std::string& s, const std::string& find, const std::string& replace);
QVXML_API void FindReplace(std::wstring& s, const std::wstring& find, const std::wstring& replace);

// text in the current C locale's multibyte encoding; unconvertible characters become '?'.
QVXML_API std::string UnicodeToMultiByte(const wchar_t* text);
// Upper-cases s in place (C locale) and returns it.
QVXML_API char* strupr(char* s);
// Length in bytes of an open file, -1 when it cannot be taken. The file position is kept.
QVXML_API long _filelength(FILE* f);

} // namespace QvXmlLib16
