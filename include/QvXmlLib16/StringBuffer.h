#pragma once

#include <QvXmlLib16/Export.h>
#include <QvXmlLib16/InstanceMonitor.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace QvXmlLib16 {

// Wide-string builder over a chain of fixed-size blocks: appending never moves what is already
// written. GetText() joins the chain into one block.
class QVXML_API CStringBuffer : public CInstanceMonitor {
public:
    CStringBuffer();
    // Blocks of blockSize - 1 characters.
    explicit CStringBuffer(unsigned long blockSize);
    virtual ~CStringBuffer();
    CStringBuffer(const CStringBuffer&) = delete;
    CStringBuffer& operator=(const CStringBuffer&) = delete;

    unsigned long GetLength() const { return m_length; }

    void Append(const wchar_t* s);

    // Appends up to the first zero character, as the pointer form does.
    void Append(const std::wstring& s) { Append(s.c_str()); }

    // Inline for the writers, which append a character or a short name at a time.
    void Append(wchar_t c) {
        if (m_position == m_lastCapacity) {
            AppendRange(&c, 1);
            return;
        }
        m_last[m_position++] = c;
        m_last[m_position] = L'\0';
        ++m_length;
    }

    // count characters from s, zero characters included.
    void Append(const wchar_t* s, unsigned long count) {
        if (count == 0 || m_lastCapacity - m_position < count) {
            AppendRange(s, count);
            return;
        }
        wchar_t* out = m_last + m_position;
        // Names and short values: two fixed-size copies that overlap in the middle.
        if (count >= 8 && count <= 16) {
            std::memcpy(out, s, 8 * sizeof(wchar_t));
            std::memcpy(out + count - 8, s + count - 8, 8 * sizeof(wchar_t));
        } else if (count >= 4 && count < 8) {
            std::memcpy(out, s, 4 * sizeof(wchar_t));
            std::memcpy(out + count - 4, s + count - 4, 4 * sizeof(wchar_t));
        } else if (count < 4) {
            for (unsigned long i = 0; i < count; ++i)
                out[i] = s[i];
        } else {
            std::memcpy(out, s, count * sizeof(wchar_t));
        }
        m_position += count;
        m_last[m_position] = L'\0';
        m_length += count;
    }

    // count copies of c, for indentation.
    void AppendRepeated(wchar_t c, unsigned long count) {
        if (count == 0)
            return;
        if (m_lastCapacity - m_position < count) {
            for (unsigned long i = 0; i < count; ++i)
                Append(c);
            return;
        }
        wchar_t* out = m_last + m_position;
        for (unsigned long i = 0; i < count; ++i)
            out[i] = c;
        m_position += count;
        m_last[m_position] = L'\0';
        m_length += count;
    }

    void SetText(const wchar_t* s);
    // The whole text, owned by the buffer, valid until the next change.
    const wchar_t* GetText();
    // Keeps a single block for reuse; otherwise as Clear().
    void Empty();
    void Clear();

    // Number of blocks in the chain, for callers that tune the block size.
    size_t GetBlockCount() const { return m_blocks.size(); }

    // Calls fn(const wchar_t* text, unsigned long count) for each block in order, so the text
    // can be consumed without joining it first.
    template <class Fn>
    void ForEachBlock(Fn&& fn) const {
        for (size_t i = 0; i < m_blocks.size(); ++i)
            fn(m_blocks[i].get(), i + 1 < m_blocks.size() ? m_blockSizes[i] : m_position);
    }

private:
    void AddBlock(unsigned long capacity);
    void AppendRange(const wchar_t* s, size_t count);

    std::vector<std::unique_ptr<wchar_t[]>> m_blocks;
    std::vector<unsigned long> m_blockSizes;
    unsigned long m_blockCapacity;
    unsigned long m_position = 0;
    unsigned long m_lastCapacity = 0;
    wchar_t* m_last = nullptr;
    unsigned long m_length = 0;
};

} // namespace QvXmlLib16
