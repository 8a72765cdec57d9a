#pragma once

#include <QvXmlLib16/Export.h>

// Conversions between UTF-8, UTF-16 and UTF-32 (wchar_t, one code point per character).
// Each four-pointer routine takes (source start, source end, target start, target end), writes
// what fits and returns the number of target units written; a null target start asks for the
// number of units the conversion needs. Ill-formed input ends the conversion early: the
// routines never throw.
//
// UTF-32 to UTF-8: above U+10FFFF becomes U+FFFD; a surrogate ends the conversion (a counting
// call then answers 0). UTF-32 to UTF-16: a surrogate or a value above U+10FFFF ends it (a
// counting call answers 0). From UTF-8: an illegal, truncated or surrogate sequence ends it.
// From UTF-16: an unpaired surrogate ends it.

QVXML_API unsigned long ConvertUTF32toUTF8(const wchar_t* sourceStart, const wchar_t* sourceEnd,
                                           unsigned char* targetStart, unsigned char* targetEnd);
QVXML_API unsigned long ConvertUTF8toUTF32(const unsigned char* sourceStart,
                                           const unsigned char* sourceEnd, wchar_t* targetStart,
                                           wchar_t* targetEnd);
QVXML_API unsigned long ConvertUTF32toUTF16(const wchar_t* sourceStart, const wchar_t* sourceEnd,
                                            char16_t* targetStart, char16_t* targetEnd);
QVXML_API unsigned long ConvertUTF16toUTF32(const char16_t* sourceStart, const char16_t* sourceEnd,
                                            wchar_t* targetStart, wchar_t* targetEnd);
QVXML_API unsigned long ConvertUTF16toUTF8(const char16_t* sourceStart, const char16_t* sourceEnd,
                                           unsigned char* targetStart, unsigned char* targetEnd);
QVXML_API unsigned long ConvertUTF8toUTF16(const unsigned char* sourceStart,
                                           const unsigned char* sourceEnd, char16_t* targetStart,
                                           char16_t* targetEnd);

// The legality test of one sequence of length bytes (1 to 4).
QVXML_API bool IsLegalUTF8(const unsigned char* p, int length);
// The sequence starting at start, with its length taken from its lead byte, fits before end and
// is legal.
QVXML_API bool IsLegalUTF8Sequence(const unsigned char* start, const unsigned char* end);

// Length-based forms; lengths count units of the respective encoding. A null dst counts.
QVXML_API unsigned long UnicodeToUTF8(const wchar_t* src, unsigned long srcLen, unsigned char* dst,
                                      unsigned long dstLen);
QVXML_API unsigned long UTF8ToUnicode(unsigned char* src, unsigned long srcLen, wchar_t* dst,
                                      unsigned long dstLen);
// dst holds 16-bit units in host byte order; dstLen16 counts them.
QVXML_API unsigned long UnicodeToUTF16(const wchar_t* src, unsigned long srcLen, unsigned char* dst,
                                       unsigned long dstLen16);
// src holds srcLen16 16-bit units in host byte order.
QVXML_API unsigned long UTF16ToUnicode(unsigned char* src, unsigned long srcLen16, wchar_t* dst,
                                       unsigned long dstLen);

// True when a character is above 127.
QVXML_API bool DoesUnicodeStrContainAnyUTF8CharsLargerThanOneByte(const wchar_t* s, int len);
// True when a byte is above 127; false for length 0.
QVXML_API bool DoesUTF8StrContainAnyCharsLargerThanOneByte(unsigned char* s, unsigned long len);
