#include <QvXmlLib16/StringBuffer.h>

#include <algorithm>
#include <cstring>
#include <cwchar>

namespace QvXmlLib16 {

namespace {
constexpr unsigned long kDefaultBlockCapacity = 4095;
const wchar_t kEmptyText[] = L"";
} // namespace

CStringBuffer::CStringBuffer()
    : CInstanceMonitor(L"CStringBuffer"),
      m_blockCapacity(kDefaultBlockCapacity) {}

// A block size of 0 or 1 would give blocks that hold nothing; keep at least one character.
CStringBuffer::CStringBuffer(unsigned long blockSize)
    : CInstanceMonitor(L"CStringBuffer"),
      m_blockCapacity(blockSize > 1 ? blockSize - 1 : 1) {}

CStringBuffer::~CStringBuffer() {
    Clear();
}

// Blocks get one character more than their capacity, and the character after the last one
// written is kept zero, so the last block always reads as a terminated string. (Zeroing whole
// blocks up front would cost a pass over every byte the writers produce.)
void CStringBuffer::AddBlock(unsigned long capacity) {
    m_blocks.emplace_back(new wchar_t[capacity + 1]);
    m_blocks.back()[0] = L'\0';
    m_blockSizes.push_back(capacity);
    m_last = m_blocks.back().get();
    m_lastCapacity = capacity;
    m_position = 0;
}

void CStringBuffer::AppendRange(const wchar_t* s, size_t count) {
    m_length += count;
    while (count > 0) {
        if (m_position == m_lastCapacity)
            AddBlock(m_blockCapacity);
        const size_t chunk = std::min<size_t>(count, m_lastCapacity - m_position);
        std::memcpy(m_last + m_position, s, chunk * sizeof(wchar_t));
        m_position += chunk;
        m_last[m_position] = L'\0';
        s += chunk;
        count -= chunk;
    }
}

void CStringBuffer::Append(const wchar_t* s) {
    if (s)
        AppendRange(s, std::wcslen(s));
}

void CStringBuffer::SetText(const wchar_t* s) {
    Clear();
    Append(s);
}

const wchar_t* CStringBuffer::GetText() {
    if (m_blocks.empty())
        return kEmptyText;
    if (m_blocks.size() > 1) {
        std::unique_ptr<wchar_t[]> joined(new wchar_t[m_length + 1]);
        wchar_t* out = joined.get();
        for (size_t i = 0; i + 1 < m_blocks.size(); ++i) {
            std::wmemcpy(out, m_blocks[i].get(), m_blockSizes[i]);
            out += m_blockSizes[i];
        }
        std::wmemcpy(out, m_last, m_position);
        out[m_position] = L'\0';
        const unsigned long total = m_length;
        Clear();
        m_blocks.push_back(std::move(joined));
        m_blockSizes.push_back(total);
        m_last = m_blocks.back().get();
        m_lastCapacity = m_position = m_length = total;
    }
    return m_last;
}

void CStringBuffer::Empty() {
    if (m_blocks.size() != 1) {
        Clear();
        return;
    }
    m_last[0] = L'\0';
    m_position = 0;
    m_length = 0;
}

void CStringBuffer::Clear() {
    while (!m_blocks.empty())
        m_blocks.pop_back();
    m_blockSizes.clear();
    m_position = m_lastCapacity = m_length = 0;
    m_last = nullptr;
}

} // namespace QvXmlLib16
