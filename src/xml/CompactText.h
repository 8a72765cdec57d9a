#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

// Element text and attribute values are kept as bytes, a quarter of their wide size for the
// usual ASCII-heavy document. The form is
// UTF-8 extended so that any 32-bit wide character round-trips (lone surrogates, values past
// U+10FFFF), which wide text coming from applications may hold. Only this library reads it.
namespace QvXmlLib16::detail {

// Out is a text sink (TreeStore.h): append(const char*, size_t), push_back(char), and for
// AppendUtf16 Extend and GiveBack.
template <class Out>
void AppendCodePoint(Out& out, std::uint32_t c) {
    if (c < 0x80) {
        out.push_back(static_cast<char>(c));
        return;
    }
    int length;
    unsigned char lead;
    if (c < 0x800) {
        length = 2;
        lead = 0xC0;
    } else if (c < 0x10000) {
        length = 3;
        lead = 0xE0;
    } else if (c < 0x200000) {
        length = 4;
        lead = 0xF0;
    } else if (c < 0x4000000) {
        length = 5;
        lead = 0xF8;
    } else if (c < 0x80000000) {
        length = 6;
        lead = 0xFC;
    } else {
        length = 7;
        lead = 0xFE;
    }
    char bytes[7];
    for (int i = length - 1; i > 0; --i) {
        bytes[i] = static_cast<char>(0x80 | (c & 0x3F));
        c >>= 6;
    }
    bytes[0] = static_cast<char>(lead | c);
    out.append(bytes, static_cast<size_t>(length));
}

// Appends count wide characters. With excludingCR, carriage returns are left out and a NUL
// ends the text early, as for character data from a parser.
template <class Out>
void AppendWide(Out& out, const wchar_t* s, size_t count, bool excludingCR) {
    for (size_t i = 0; i < count; ++i) {
        const std::uint32_t c = static_cast<std::uint32_t>(s[i]);
        if (excludingCR && c == 0)
            return;
        if (excludingCR && c == '\r')
            continue;
        AppendCodePoint(out, c);
    }
}

// Narrows the leading run of ASCII units other than CR and NUL into out and returns its
// length: the common case of parser text, eight units at a time.
inline size_t NarrowAsciiRun(const char16_t* s, size_t count, char* out) {
    size_t i = 0;
#if defined(__SSE2__)
    const __m128i zero = _mm_setzero_si128();
    const __m128i highest = _mm_set1_epi16(0x7F);
    const __m128i cr = _mm_set1_epi16('\r');
    for (; count - i >= 8; i += 8) {
        const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i));
        const __m128i ascii = _mm_cmpeq_epi16(_mm_subs_epu16(v, highest), zero);
        const __m128i special = _mm_or_si128(_mm_cmpeq_epi16(v, cr), _mm_cmpeq_epi16(v, zero));
        if (_mm_movemask_epi8(_mm_andnot_si128(special, ascii)) != 0xFFFF)
            break;
        _mm_storel_epi64(reinterpret_cast<__m128i*>(out + i), _mm_packus_epi16(v, v));
    }
#endif
    for (; i < count; ++i) {
        const char16_t c = s[i];
        if (c >= 0x80 || c == u'\r' || c == 0)
            break;
        out[i] = static_cast<char>(c);
    }
    return i;
}

// The same from UTF-16. Valid pairs join into one character; unpaired surrogates stay single
// units.
template <class Out>
void AppendUtf16(Out& out, const char16_t* s, size_t count, bool excludingCR) {
    size_t i = 0;
    while (i < count) {
        // Room for the rest as ASCII; what the run does not fill is given back.
        char* room = out.Extend(count - i);
        const size_t run = NarrowAsciiRun(s + i, count - i, room);
        out.GiveBack(count - i - run);
        i += run;
        if (i == count)
            return;
        std::uint32_t c = s[i++];
        if (excludingCR && c == 0)
            return;
        if (excludingCR && c == '\r')
            continue;
        if (c >= 0xD800 && c <= 0xDBFF && i < count && s[i] >= 0xDC00 && s[i] <= 0xDFFF)
            c = 0x10000 + ((c - 0xD800) << 10) + (s[i++] - 0xDC00u);
        AppendCodePoint(out, c);
    }
}

// Widens the leading run of ASCII bytes into out, sixteen at a time; returns its length.
inline size_t WidenAsciiRun(const unsigned char* p, size_t count, wchar_t* out) {
    size_t i = 0;
#if defined(__SSE2__)
    static_assert(sizeof(wchar_t) == 4, "wide characters are 32 bits here");
    const __m128i zero = _mm_setzero_si128();
    for (; count - i >= 16; i += 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + i));
        if (_mm_movemask_epi8(bytes) != 0)
            break;
        const __m128i low = _mm_unpacklo_epi8(bytes, zero);
        const __m128i high = _mm_unpackhi_epi8(bytes, zero);
        __m128i* to = reinterpret_cast<__m128i*>(out + i);
        _mm_storeu_si128(to, _mm_unpacklo_epi16(low, zero));
        _mm_storeu_si128(to + 1, _mm_unpackhi_epi16(low, zero));
        _mm_storeu_si128(to + 2, _mm_unpacklo_epi16(high, zero));
        _mm_storeu_si128(to + 3, _mm_unpackhi_epi16(high, zero));
    }
#endif
    for (; i < count && p[i] < 0x80; ++i)
        out[i] = static_cast<wchar_t>(p[i]);
    return i;
}

// Widens stored text into out, replacing what it held and reusing its room.
inline void ExpandInto(const char* text, size_t size, std::wstring& out) {
    out.resize(size);
    const unsigned char* p = reinterpret_cast<const unsigned char*>(text);
    const unsigned char* end = p + size;
    size_t n = WidenAsciiRun(p, size, out.data());
    if (n == size)
        return;
    p += n;
    while (p < end) {
        const unsigned char lead = *p++;
        if (lead < 0x80) {
            out[n++] = static_cast<wchar_t>(lead);
            continue;
        }
        int extra = lead >= 0xFE   ? 6
                    : lead >= 0xFC ? 5
                    : lead >= 0xF8 ? 4
                    : lead >= 0xF0 ? 3
                    : lead >= 0xE0 ? 2
                                   : 1;
        std::uint32_t c = lead & (0x7F >> (extra + 1));
        for (; extra > 0 && p < end; --extra)
            c = (c << 6) | (*p++ & 0x3F);
        out[n++] = static_cast<wchar_t>(c);
    }
    out.resize(n);
}

inline std::wstring Expand(const char* text, size_t size) {
    std::wstring out;
    ExpandInto(text, size, out);
    return out;
}

} // namespace QvXmlLib16::detail
