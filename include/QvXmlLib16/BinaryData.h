#pragma once

#include <QvXmlLib16/Export.h>
#include <QvXmlLib16/QVCriticalSection.h>

#include <atomic>
#include <string>

namespace QvXmlLib16 {

// Bytes of a hexBinary or base64Binary value, and the library's general byte buffer. Copies
// share one counted holder; the bytes are copied only when a shared value is about to change.
// Holders may be shared across threads; one CBinaryData object belongs to one thread at a time.
class QVXML_API CBinaryData {
public:
    class QVXML_API CDataHolder {
    public:
        // adopt: take ownership of data (allocated with new[]), capacity = length. Otherwise
        // copy it into a new array of max(2 * length, 8192) bytes.
        CDataHolder(unsigned char* data, unsigned long length, bool adopt);
        ~CDataHolder();
        CDataHolder(const CDataHolder&) = delete;
        CDataHolder& operator=(const CDataHolder&) = delete;

        void AddRef();
        // Drops one reference and frees the holder at zero. mustBeLast: throw CQvException
        // "Failed to release data. [RefCount=%d]" when other references remain.
        void Release(bool mustBeLast);

        unsigned char* GetData() const { return m_data; }

        unsigned long GetLength() const { return m_length; }

        unsigned long GetCapacity() const { return m_capacity; }

        long long GetRefCount() const { return m_refCount.load(std::memory_order_acquire); }

        // Throws CQvException "Failed to append. [RefCount=%d]" when the holder is shared.
        void Append(const unsigned char* data, unsigned long length);
        // This holder when unshared; else a private copy, with this one released.
        CDataHolder* GetExclusiveCopy();

    private:
        void Grow(unsigned long needed);
        void AppendUnlocked(const unsigned char* data, unsigned long length);

        unsigned char* m_data;
        unsigned long m_length;
        unsigned long m_capacity;
        // Changed only under m_lock; atomic so an unshared holder can be recognised without it.
        std::atomic<long long> m_refCount{1};
        CQVCriticalSection m_lock;
    };

    CBinaryData() = default;
    CBinaryData(const CBinaryData& other);
    CBinaryData(CBinaryData&& other) noexcept;
    // length 0 gives empty data. adopt: take ownership of data (allocated with new[]).
    CBinaryData(unsigned char* data, unsigned long length, bool adopt);
    // The raw 4-byte units of s in host byte order.
    explicit CBinaryData(const wchar_t* s);
    CBinaryData& operator=(const CBinaryData& other);
    CBinaryData& operator=(CBinaryData&& other) noexcept;
    virtual ~CBinaryData();

    void ReleaseData();

    void Clear() { ReleaseData(); }

    // Null and 0 when empty. The non-const form unshares the bytes first, so writing through
    // it never changes another copy.
    const unsigned char* GetData() const { return m_holder ? m_holder->GetData() : nullptr; }

    unsigned char* GetData();

    unsigned long GetLength() const { return m_holder ? m_holder->GetLength() : 0; }

    unsigned long GetCapacity() const { return m_holder ? m_holder->GetCapacity() : 0; }

    bool IsEmpty() const { return GetLength() == 0; }

    // Throws CQvException "Index Out of range [%d]" at or beyond the length.
    unsigned char operator[](unsigned long index) const;
    unsigned char& operator[](unsigned long index);

    void SetBuffer(const unsigned char* data, unsigned long length);
    void SetBuffer(const wchar_t* s);
    void Append(const unsigned char* data, unsigned long length);
    void Append(unsigned char byte);
    // The wide forms append the raw 4-byte units of the characters, not an encoding of them.
    void Append(wchar_t c);
    void Append(const wchar_t* s);

    void Append(const std::wstring& s) { Append(s.c_str()); }

    void Append(const CBinaryData& other);

    // Upper-case hexadecimal, two digits per byte.
    std::wstring GetAsHexString() const;
    static std::wstring GetAsHexString(const unsigned char* data, unsigned long length);
    // Throws CQvException "Invalid length in hex string" or "Invalid char in hex string [%c]".
    void SetAsHexString(const wchar_t* text);
    // *out receives a new[] array (null when the count is 0); returns the byte count.
    static unsigned long ConvertToHexData(const wchar_t* text, unsigned char** out);
    std::wstring GetAsBase64() const;
    // White space and '=' are skipped; any other character outside the alphabet gives empty data.
    void SetAsBase64(const wchar_t* text);

    bool operator==(const CBinaryData& other) const;

    bool operator!=(const CBinaryData& other) const { return !(*this == other); }

private:
    void Adopt(unsigned char* data, unsigned long length);

    CDataHolder* m_holder = nullptr;
};

} // namespace QvXmlLib16
