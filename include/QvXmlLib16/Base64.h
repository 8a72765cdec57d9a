#pragma once

#include <QvXmlLib16/Export.h>

#include <cstdint>
#include <string>

// Base64 with the standard alphabet and padding, never any line breaks.
class QVXML_API CBase64 {
public:
    // Empty for null data or len <= 0.
    std::wstring Encode(unsigned char* data, int len);
    // Writes the bytes into out, which must hold wcslen(text) + 1 bytes, and returns their count.
    // White space and '=' are skipped wherever they stand; a character is looked up by its low
    // seven bits; any other character stops decoding and 0 is returned.
    int Decode(const wchar_t* text, unsigned char* out);

    // Starts a bit reader over data (Encode does this itself) and clears the bit writer.
    void SetInput(const unsigned char* data, int len);
    // Bit reader over the input: returns the next bits (most significant first)
    // with *got telling how many were available; missing bits are zero on the right.
    unsigned int Read(int bits, int* got, int& inputIndex);
    // Bit writer: appends the low bits of value; each complete byte goes to out[outIndex++].
    void Write(unsigned int value, int bits, unsigned char* out, int& outIndex);

    static const wchar_t m_sBase64Alphabet[65];
    static const int m_nMask[9];

private:
    const unsigned char* m_input = nullptr;
    int m_inputLength = 0;
    int m_bitCount = 0;
    std::uint64_t m_bits = 0;
};
