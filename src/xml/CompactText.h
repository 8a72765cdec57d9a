#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// Element text and attribute values are kept as bytes, a quarter of their wide size for the
// usual ASCII-heavy document, and short ones fit inside the string object itself. The form is
// UTF-8 extended so that any 32-bit wide character round-trips (lone surrogates, values past
// U+10FFFF), which wide text coming from applications may hold. Only this library reads it.
namespace QvXmlLib16::detail {

inline void AppendCodePoint(std::string& out, std::uint32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
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
inline void AppendWide(std::string& out, const wchar_t* s, size_t count, bool excludingCR) {
    for (size_t i = 0; i < count; ++i) {
        const std::uint32_t c = static_cast<std::uint32_t>(s[i]);
        if (excludingCR && c == 0)
            return;
        if (excludingCR && c == '\r')
            continue;
        AppendCodePoint(out, c);
    }
}

// The same from UTF-16. Valid pairs join into one character; unpaired surrogates stay single
// units.
inline void AppendUtf16(std::string& out, const char16_t* s, size_t count, bool excludingCR) {
    size_t i = 0;
    while (i < count) {
        // Runs of ASCII go in one append; eight units are tested at a time while they last.
        size_t run = i;
        while (count - run >= 8) {
            unsigned high = 0, special = 0;
            for (int k = 0; k < 8; ++k) {
                high |= s[run + k];
                special |= (s[run + k] == u'\r') | (s[run + k] == 0);
            }
            if (high >= 0x80 || special)
                break;
            run += 8;
        }
        while (run < count && s[run] < 0x80 && s[run] != u'\r' && s[run] != 0)
            ++run;
        if (run > i) {
            // Narrowed through a small buffer: growing the string first would zero it.
            char chunk[256];
            while (i < run) {
                const size_t n = run - i < sizeof chunk ? run - i : sizeof chunk;
                for (size_t k = 0; k < n; ++k)
                    chunk[k] = static_cast<char>(s[i + k]);
                out.append(chunk, n);
                i += n;
            }
            continue;
        }
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

inline std::wstring Expand(const std::string& text) {
    std::wstring out(text.size(), L'\0');
    size_t n = 0;
    const unsigned char* p = reinterpret_cast<const unsigned char*>(text.data());
    const unsigned char* end = p + text.size();
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
    return out;
}

inline std::string Compact(const wchar_t* s, size_t count) {
    std::string out;
    out.reserve(count);
    AppendWide(out, s, count, false);
    return out;
}

} // namespace QvXmlLib16::detail
