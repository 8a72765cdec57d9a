#pragma once

#include <QvXmlLib16/Export.h>
#include <QvXmlLib16/InstanceMonitor.h>

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

    void Append(wchar_t c);

    // count characters from s, zero characters included.
    void Append(const wchar_t* s, unsigned long count) { AppendRange(s, count); }

    void SetText(const wchar_t* s);
    // The whole text, owned by the buffer, valid until the next change.
    const wchar_t* GetText();
    // Keeps a single block for reuse; otherwise as Clear().
    void Empty();
    void Clear();

    // Number of blocks in the chain, for callers that tune the block size.
    size_t GetBlockCount() const { return m_blocks.size(); }

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
