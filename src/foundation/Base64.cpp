#include <QvXmlLib16/Base64.h>

#include <cwchar>

const wchar_t CBase64::m_sBase64Alphabet[65] =
    L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
const int CBase64::m_nMask[9] = {0, 1, 3, 7, 15, 31, 63, 127, 255};

namespace {

constexpr unsigned char kInvalid = 0xFF;
constexpr unsigned char kSkip = 0xFE;

struct DecodeTable {
    unsigned char entries[256];

    DecodeTable() {
        for (unsigned char& e : entries)
            e = kInvalid;
        for (int i = 0; i < 64; ++i) {
            const unsigned c = static_cast<unsigned>(CBase64::m_sBase64Alphabet[i]);
            entries[c] = entries[c | 0x80] = static_cast<unsigned char>(i);
        }
        for (unsigned c : {'=', ' ', '\t', '\r', '\n'})
            entries[c] = kSkip;
        entries['=' | 0x80] = kSkip;
    }
};

// Collects 6-bit groups and hands out whole bytes, most significant bits first. Only the low
// bitCount bits of bits matter, so the shift may drop the rest.
struct BitSink {
    std::uint64_t bits;
    int bitCount;

    void Put(unsigned int value, int width, unsigned char* out, int& outIndex) {
        bits = (bits << width) | (value & static_cast<unsigned int>(CBase64::m_nMask[width]));
        bitCount += width;
        while (bitCount >= 8) {
            bitCount -= 8;
            out[outIndex++] = static_cast<unsigned char>(bits >> bitCount);
        }
    }

    // 24 bits in, three bytes out: the pending bits stay as they were.
    void PutThreeBytes(unsigned int value, unsigned char* out, int& outIndex) {
        bits = (bits << 24) | value;
        out[outIndex] = static_cast<unsigned char>(bits >> (bitCount + 16));
        out[outIndex + 1] = static_cast<unsigned char>(bits >> (bitCount + 8));
        out[outIndex + 2] = static_cast<unsigned char>(bits >> bitCount);
        outIndex += 3;
    }
};

const DecodeTable& Table() {
    static const DecodeTable table;
    return table;
}

} // namespace

void CBase64::SetInput(const unsigned char* data, int len) {
    m_input = data;
    m_inputLength = len;
    m_bitCount = 0;
    m_bits = 0;
}

unsigned int CBase64::Read(int bits, int* got, int& inputIndex) {
    while (m_bitCount < bits && inputIndex < m_inputLength) {
        m_bits = (m_bits << 8) | m_input[inputIndex++];
        m_bitCount += 8;
    }
    const int available = m_bitCount < bits ? m_bitCount : bits;
    if (got)
        *got = available;
    // Short reads are filled with zero bits on the right.
    const unsigned int value =
        static_cast<unsigned int>((m_bits << (bits - available)) >> (m_bitCount - available))
        & static_cast<unsigned int>(m_nMask[bits]);
    m_bitCount -= available;
    m_bits &= (std::uint64_t(1) << m_bitCount) - 1;
    return value;
}

void CBase64::Write(unsigned int value, int bits, unsigned char* out, int& outIndex) {
    BitSink sink{m_bits, m_bitCount};
    sink.Put(value, bits, out, outIndex);
    m_bitCount = sink.bitCount;
    m_bits = sink.bits & ((std::uint64_t(1) << m_bitCount) - 1);
}

std::wstring CBase64::Encode(unsigned char* data, int len) {
    if (!data || len <= 0)
        return std::wstring();
    const size_t groups = (static_cast<size_t>(len) * 8 + 5) / 6;
    std::wstring out((groups + 3) / 4 * 4, L'=');
    wchar_t* o = out.data();
    const wchar_t* alphabet = m_sBase64Alphabet;
    // Whole three-byte blocks by table; the short tail through the bit reader.
    int i = 0;
    for (; i + 3 <= len; i += 3) {
        const unsigned v = (unsigned(data[i]) << 16) | (unsigned(data[i + 1]) << 8) | data[i + 2];
        o[0] = alphabet[v >> 18];
        o[1] = alphabet[(v >> 12) & 63];
        o[2] = alphabet[(v >> 6) & 63];
        o[3] = alphabet[v & 63];
        o += 4;
    }
    SetInput(data, len);
    int got = 6;
    for (int index = i; got == 6;) {
        const unsigned value = Read(6, &got, index);
        if (got > 0)
            *o++ = alphabet[value];
    }
    return out;
}

int CBase64::Decode(const wchar_t* text, unsigned char* out) {
    if (!text || !out || !*text)
        return 0;
    const size_t length = std::wcslen(text);
    for (size_t i = 0; i <= length; ++i)
        out[i] = 0;
    const unsigned char* table = Table().entries;
    // The sink lives in locals here: stores through out could alias the members and would
    // force a reload per character.
    BitSink sink{0, 0};
    int written = 0;
    // Only the low seven bits of a character choose its entry.
    auto entryOf = [table](wchar_t c) { return table[static_cast<unsigned>(c) & 0x7F]; };
    for (const wchar_t* p = text; *p;) {
        // Four alphabet characters make three whole bytes.
        if (p[1] && p[2] && p[3]) {
            const unsigned a = entryOf(p[0]), b = entryOf(p[1]), c = entryOf(p[2]),
                           d = entryOf(p[3]);
            if ((a | b | c | d) < 64) {
                sink.PutThreeBytes((a << 18) | (b << 12) | (c << 6) | d, out, written);
                p += 4;
                continue;
            }
        }
        const unsigned char entry = entryOf(*p++);
        if (entry == kSkip)
            continue;
        if (entry == kInvalid)
            return 0;
        sink.Put(entry, 6, out, written);
    }
    m_bits = 0;
    m_bitCount = 0;
    return written;
}
