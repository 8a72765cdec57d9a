#include <QvXmlLib16/ConvertUTF.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

#if defined(__SSE2__)
#include <emmintrin.h> // the ASCII runs of ConvertUTF32toUTF8
#endif

// Decoding follows the Unicode Consortium's reference conversion routines (trailing-byte and
// offset tables, legality test), with a calling form of our own: units written are returned,
// a null target counts, and ill-formed input ends the conversion.

static_assert(sizeof(wchar_t) == 4, "wide characters must hold one code point");

namespace {

constexpr unsigned long kReplacementChar = 0xFFFD;
constexpr unsigned long kMaxLegalUTF32 = 0x10FFFF;
constexpr unsigned long kSurHighStart = 0xD800, kSurHighEnd = 0xDBFF;
constexpr unsigned long kSurLowStart = 0xDC00, kSurLowEnd = 0xDFFF;
constexpr int kHalfShift = 10;
constexpr unsigned long kHalfBase = 0x10000, kHalfMask = 0x3FF;

const unsigned char kTrailingBytesForUTF8[256] = {
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
    1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1,
    2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 3, 3, 3, 3, 3, 3, 3, 3, 4, 4, 4, 4, 5, 5, 5, 5};

const std::uint32_t kOffsetsFromUTF8[6] = {0x00000000UL, 0x00003080UL, 0x000E2080UL,
                                           0x03C82080UL, 0xFA082080UL, 0x82082080UL};

const unsigned char kFirstByteMark[7] = {0x00, 0x00, 0xC0, 0xE0, 0xF0, 0xF8, 0xFC};

bool IsSurrogate(unsigned long c) {
    return c >= kSurHighStart && c <= kSurLowEnd;
}

// Length of the run of ASCII bytes at the start of [p, end), eight bytes at a time.
size_t AsciiPrefix(const unsigned char* p, const unsigned char* end) {
    const unsigned char* start = p;
    while (end - p >= 8) {
        std::uint64_t word;
        std::memcpy(&word, p, 8);
        if (word & 0x8080808080808080ULL)
            break;
        p += 8;
    }
    while (p < end && *p < 0x80)
        ++p;
    return static_cast<size_t>(p - start);
}

// Decodes one legal sequence of 1 + extra bytes.
std::uint32_t DecodeUTF8(const unsigned char* p, int extra) {
    std::uint32_t ch = 0;
    for (int i = 0; i <= extra; ++i) {
        ch += p[i];
        if (i < extra)
            ch <<= 6;
    }
    return ch - kOffsetsFromUTF8[extra];
}

// Number of bytes the UTF-8 form of ch takes; 0 for a surrogate (the caller stops).
int UTF8Length(unsigned long ch) {
    if (ch < 0x80)
        return 1;
    if (ch < 0x800)
        return 2;
    if (IsSurrogate(ch))
        return 0;
    if (ch < 0x10000)
        return 3;
    if (ch <= kMaxLegalUTF32)
        return 4;
    return 3; // written as U+FFFD
}

void EncodeUTF8(unsigned long ch, int length, unsigned char* target) {
    if (ch > kMaxLegalUTF32)
        ch = kReplacementChar;
    for (int i = length - 1; i > 0; --i) {
        target[i] = static_cast<unsigned char>((ch | 0x80) & 0xBF);
        ch >>= 6;
    }
    target[0] = static_cast<unsigned char>(ch | kFirstByteMark[length]);
}

// Reads one code point from UTF-16 in strict mode; 0 units consumed means the input is
// ill-formed or ends inside a pair.
int ReadUTF16(const char16_t* p, const char16_t* end, unsigned long& ch) {
    ch = *p;
    if (ch >= kSurHighStart && ch <= kSurHighEnd) {
        if (p + 1 >= end)
            return 0;
        const unsigned long low = p[1];
        if (low < kSurLowStart || low > kSurLowEnd)
            return 0;
        ch = ((ch - kSurHighStart) << kHalfShift) + (low - kSurLowStart) + kHalfBase;
        return 2;
    }
    return (ch >= kSurLowStart && ch <= kSurLowEnd) ? 0 : 1;
}

// Writes ch as one unit or a surrogate pair; the caller has checked the room.
void PutUTF16(char16_t*& target, unsigned long ch) {
    if (ch < kHalfBase) {
        *target++ = static_cast<char16_t>(ch);
        return;
    }
    const unsigned long v = ch - kHalfBase;
    *target++ = static_cast<char16_t>((v >> kHalfShift) + kSurHighStart);
    *target++ = static_cast<char16_t>((v & kHalfMask) + kSurLowStart);
}

} // namespace

bool IsLegalUTF8(const unsigned char* source, int length) {
    if (length < 1 || length > 4)
        return false;
    const unsigned char* p = source + length;
    unsigned char a;
    switch (length) {
    case 4:
        if ((a = *--p) < 0x80 || a > 0xBF)
            return false;
        [[fallthrough]];
    case 3:
        if ((a = *--p) < 0x80 || a > 0xBF)
            return false;
        [[fallthrough]];
    case 2:
        if ((a = *--p) > 0xBF)
            return false;
        switch (*source) {
        case 0xE0:
            if (a < 0xA0)
                return false;
            break;
        case 0xED:
            if (a > 0x9F)
                return false;
            break;
        case 0xF0:
            if (a < 0x90)
                return false;
            break;
        case 0xF4:
            if (a > 0x8F)
                return false;
            break;
        default:
            if (a < 0x80)
                return false;
        }
        [[fallthrough]];
    case 1:
        if (*source >= 0x80 && *source < 0xC2)
            return false;
    }
    return *source <= 0xF4;
}

bool IsLegalUTF8Sequence(const unsigned char* start, const unsigned char* end) {
    if (!start || start >= end)
        return false;
    const int length = kTrailingBytesForUTF8[*start] + 1;
    if (length > end - start)
        return false;
    return IsLegalUTF8(start, length);
}

unsigned long ConvertUTF32toUTF8(const wchar_t* source, const wchar_t* sourceEnd,
                                 unsigned char* target, unsigned char* targetEnd) {
    unsigned long written = 0;
    const bool counting = target == nullptr;
    while (source < sourceEnd) {
        // Runs of ASCII are a plain narrowing copy.
        const wchar_t* run = source;
        const wchar_t* stop =
            counting ? sourceEnd : run + std::min<size_t>(sourceEnd - run, targetEnd - target);
#if defined(__SSE2__)
        // Sixteen characters at a time while none has a bit above 0x7F; two saturating packs
        // then narrow them exactly.
        const __m128i nonAscii = _mm_set1_epi32(~0x7F);
        while (stop - run >= 16) {
            const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(run));
            const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(run + 4));
            const __m128i c = _mm_loadu_si128(reinterpret_cast<const __m128i*>(run + 8));
            const __m128i d = _mm_loadu_si128(reinterpret_cast<const __m128i*>(run + 12));
            const __m128i any =
                _mm_and_si128(_mm_or_si128(_mm_or_si128(a, b), _mm_or_si128(c, d)), nonAscii);
            if (_mm_movemask_epi8(_mm_cmpeq_epi32(any, _mm_setzero_si128())) != 0xFFFF)
                break;
            if (!counting) {
                const __m128i bytes =
                    _mm_packus_epi16(_mm_packs_epi32(a, b), _mm_packs_epi32(c, d));
                _mm_storeu_si128(reinterpret_cast<__m128i*>(target), bytes);
                target += 16;
            }
            run += 16;
        }
#endif
        // Four characters at a time while none has a bit above 0x7F.
        while (stop - run >= 4) {
            std::uint64_t pair1, pair2;
            std::memcpy(&pair1, run, 8);
            std::memcpy(&pair2, run + 2, 8);
            if ((pair1 | pair2) & 0xFFFFFF80FFFFFF80ULL)
                break;
            if (!counting) {
                for (int k = 0; k < 4; ++k)
                    target[k] = static_cast<unsigned char>(run[k]);
                target += 4;
            }
            run += 4;
        }
        if (counting) {
            while (run < stop && static_cast<std::uint32_t>(*run) < 0x80)
                ++run;
        } else {
            while (run < stop && static_cast<std::uint32_t>(*run) < 0x80)
                *target++ = static_cast<unsigned char>(*run++);
        }
        written += static_cast<unsigned long>(run - source);
        source = run;
        if (source == sourceEnd)
            break;
        const unsigned long ch = static_cast<std::uint32_t>(*source);
        const int length = UTF8Length(ch);
        if (length == 0)
            return counting ? 0 : written;
        if (!counting) {
            if (targetEnd - target < length)
                return written;
            EncodeUTF8(ch, length, target);
            target += length;
        }
        written += static_cast<unsigned long>(length);
        ++source;
    }
    return written;
}

unsigned long ConvertUTF8toUTF32(const unsigned char* source, const unsigned char* sourceEnd,
                                 wchar_t* target, wchar_t* targetEnd) {
    unsigned long written = 0;
    const bool counting = target == nullptr;
    while (source < sourceEnd) {
        // Runs of ASCII are a plain widening copy.
        size_t run = AsciiPrefix(source, sourceEnd);
        if (run > 0) {
            if (!counting) {
                const size_t room = static_cast<size_t>(targetEnd - target);
                if (run > room)
                    run = room;
                for (size_t i = 0; i < run; ++i)
                    target[i] = static_cast<wchar_t>(source[i]);
                target += run;
                if (run == room && source + run < sourceEnd)
                    return written + static_cast<unsigned long>(run);
            }
            source += run;
            written += static_cast<unsigned long>(run);
            continue;
        }
        const int extra = kTrailingBytesForUTF8[*source];
        if (extra >= sourceEnd - source || !IsLegalUTF8(source, extra + 1))
            return written;
        const unsigned long ch = DecodeUTF8(source, extra);
        if (IsSurrogate(ch))
            return written;
        if (!counting) {
            if (target >= targetEnd)
                return written;
            *target++ = static_cast<wchar_t>(ch > kMaxLegalUTF32 ? kReplacementChar : ch);
        }
        source += extra + 1;
        ++written;
    }
    return written;
}

unsigned long ConvertUTF32toUTF16(const wchar_t* source, const wchar_t* sourceEnd, char16_t* target,
                                  char16_t* targetEnd) {
    unsigned long written = 0;
    const bool counting = target == nullptr;
    for (; source < sourceEnd; ++source) {
        const unsigned long ch = static_cast<std::uint32_t>(*source);
        if (IsSurrogate(ch) || ch > kMaxLegalUTF32)
            return counting ? 0 : written;
        const int units = ch >= kHalfBase ? 2 : 1;
        if (!counting) {
            if (targetEnd - target < units)
                return written;
            PutUTF16(target, ch);
        }
        written += static_cast<unsigned long>(units);
    }
    return written;
}

unsigned long ConvertUTF16toUTF32(const char16_t* source, const char16_t* sourceEnd,
                                  wchar_t* target, wchar_t* targetEnd) {
    unsigned long written = 0;
    const bool counting = target == nullptr;
    while (source < sourceEnd) {
        unsigned long ch;
        const int used = ReadUTF16(source, sourceEnd, ch);
        if (used == 0)
            return written;
        if (!counting) {
            if (target >= targetEnd)
                return written;
            *target++ = static_cast<wchar_t>(ch);
        }
        source += used;
        ++written;
    }
    return written;
}

unsigned long ConvertUTF16toUTF8(const char16_t* source, const char16_t* sourceEnd,
                                 unsigned char* target, unsigned char* targetEnd) {
    unsigned long written = 0;
    const bool counting = target == nullptr;
    while (source < sourceEnd) {
        unsigned long ch;
        const int used = ReadUTF16(source, sourceEnd, ch);
        if (used == 0)
            return written;
        const int length = UTF8Length(ch);
        if (!counting) {
            if (targetEnd - target < length)
                return written;
            EncodeUTF8(ch, length, target);
            target += length;
        }
        source += used;
        written += static_cast<unsigned long>(length);
    }
    return written;
}

unsigned long ConvertUTF8toUTF16(const unsigned char* source, const unsigned char* sourceEnd,
                                 char16_t* target, char16_t* targetEnd) {
    unsigned long written = 0;
    const bool counting = target == nullptr;
    while (source < sourceEnd) {
        const int extra = kTrailingBytesForUTF8[*source];
        if (extra >= sourceEnd - source || !IsLegalUTF8(source, extra + 1))
            return written;
        unsigned long ch = DecodeUTF8(source, extra);
        if (IsSurrogate(ch))
            return written;
        if (ch > kMaxLegalUTF32)
            ch = kReplacementChar;
        const int units = ch >= kHalfBase ? 2 : 1;
        if (!counting) {
            if (targetEnd - target < units)
                return written;
            PutUTF16(target, ch);
        }
        source += extra + 1;
        written += static_cast<unsigned long>(units);
    }
    return written;
}

unsigned long UnicodeToUTF8(const wchar_t* src, unsigned long srcLen, unsigned char* dst,
                            unsigned long dstLen) {
    if (!src)
        return 0;
    return ConvertUTF32toUTF8(src, src + srcLen, dst, dst ? dst + dstLen : nullptr);
}

unsigned long UTF8ToUnicode(unsigned char* src, unsigned long srcLen, wchar_t* dst,
                            unsigned long dstLen) {
    if (!src)
        return 0;
    return ConvertUTF8toUTF32(src, src + srcLen, dst, dst ? dst + dstLen : nullptr);
}

// The callers' UTF-16 buffers are plain bytes, so units go through a char16_t array.
unsigned long UnicodeToUTF16(const wchar_t* src, unsigned long srcLen, unsigned char* dst,
                             unsigned long dstLen16) {
    if (!src)
        return 0;
    if (!dst)
        return ConvertUTF32toUTF16(src, src + srcLen, nullptr, nullptr);
    std::vector<char16_t> units(dstLen16);
    const unsigned long n =
        ConvertUTF32toUTF16(src, src + srcLen, units.data(), units.data() + dstLen16);
    if (n > 0)
        std::memcpy(dst, units.data(), n * sizeof(char16_t));
    return n;
}

unsigned long UTF16ToUnicode(unsigned char* src, unsigned long srcLen16, wchar_t* dst,
                             unsigned long dstLen) {
    if (!src)
        return 0;
    std::vector<char16_t> units(srcLen16);
    if (srcLen16 > 0)
        std::memcpy(units.data(), src, srcLen16 * sizeof(char16_t));
    return ConvertUTF16toUTF32(units.data(), units.data() + srcLen16, dst,
                               dst ? dst + dstLen : nullptr);
}

bool DoesUnicodeStrContainAnyUTF8CharsLargerThanOneByte(const wchar_t* s, int len) {
    if (!s)
        return false;
    for (int i = len - 1; i >= 0; --i) {
        if (static_cast<std::uint32_t>(s[i]) > 127)
            return true;
    }
    return false;
}

bool DoesUTF8StrContainAnyCharsLargerThanOneByte(unsigned char* s, unsigned long len) {
    if (!s || len == 0)
        return false;
    return AsciiPrefix(s, s + len) != len;
}
