#include "types/TypesMessages.h"

#include <QvXmlLib16/Base64.h>
#include <QvXmlLib16/BinaryData.h>
#include <QvXmlLib16/Format.h>
#include <QvXmlLib16/QvException.h>

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <memory>

namespace QvXmlLib16 {

namespace {

constexpr unsigned long kMinCopyCapacity = 8192;

unsigned long CopyCapacity(unsigned long length) {
    return std::max(2 * length, kMinCopyCapacity);
}

int HexDigit(wchar_t c) {
    if (c >= L'0' && c <= L'9')
        return c - L'0';
    if (c >= L'A' && c <= L'F')
        return c - L'A' + 10;
    if (c >= L'a' && c <= L'f')
        return c - L'a' + 10;
    return -1;
}

} // namespace

// ---- CDataHolder ----

CBinaryData::CDataHolder::CDataHolder(unsigned char* data, unsigned long length, bool adopt)
    : m_length(length) {
    if (adopt) {
        m_data = data;
        m_capacity = length;
        return;
    }
    m_capacity = CopyCapacity(length);
    m_data = new unsigned char[m_capacity];
    if (length > 0)
        std::memcpy(m_data, data, length);
}

CBinaryData::CDataHolder::~CDataHolder() {
    delete[] m_data;
}

void CBinaryData::CDataHolder::AddRef() {
    CQVCriticalSection::CScopedLock lock(m_lock);
    m_refCount.fetch_add(1, std::memory_order_relaxed);
}

void CBinaryData::CDataHolder::Release(bool mustBeLast) {
    long long remaining;
    {
        CQVCriticalSection::CScopedLock lock(m_lock);
        remaining = m_refCount.fetch_sub(1, std::memory_order_acq_rel) - 1;
    }
    if (mustBeLast && remaining > 0)
        throw CQvException(FormatString(msg::kReleaseNotLastFmt, static_cast<int>(remaining)));
    // Nobody else holds a reference, so nobody else can be inside the lock either.
    if (remaining == 0)
        delete this;
}

void CBinaryData::CDataHolder::Grow(unsigned long needed) {
    const unsigned long capacity = 2 * needed;
    unsigned char* bigger = new unsigned char[capacity];
    if (m_length > 0)
        std::memcpy(bigger, m_data, m_length);
    delete[] m_data;
    m_data = bigger;
    m_capacity = capacity;
}

// A count of 1 means the caller holds the only reference: no other thread can reach the
// holder, so the lock is skipped. Byte-at-a-time writers depend on this.
void CBinaryData::CDataHolder::Append(const unsigned char* data, unsigned long length) {
    if (m_refCount.load(std::memory_order_acquire) == 1) {
        AppendUnlocked(data, length);
        return;
    }
    CQVCriticalSection::CScopedLock lock(m_lock);
    const long long count = m_refCount.load(std::memory_order_relaxed);
    if (count >= 2)
        throw CQvException(FormatString(msg::kAppendSharedFmt, static_cast<int>(count)));
    AppendUnlocked(data, length);
}

void CBinaryData::CDataHolder::AppendUnlocked(const unsigned char* data, unsigned long length) {
    if (m_length + length > m_capacity)
        Grow(m_length + length);
    std::memcpy(m_data + m_length, data, length);
    m_length += length;
}

CBinaryData::CDataHolder* CBinaryData::CDataHolder::GetExclusiveCopy() {
    if (m_refCount.load(std::memory_order_acquire) == 1)
        return this;
    CDataHolder* copy;
    {
        CQVCriticalSection::CScopedLock lock(m_lock);
        if (m_refCount.load(std::memory_order_relaxed) < 2)
            return this;
        copy = new CDataHolder(m_data, m_length, false);
    }
    Release(false);
    return copy;
}

// ---- CBinaryData ----

CBinaryData::CBinaryData(const CBinaryData& other) : m_holder(other.m_holder) {
    if (m_holder)
        m_holder->AddRef();
}

CBinaryData::CBinaryData(CBinaryData&& other) noexcept : m_holder(other.m_holder) {
    other.m_holder = nullptr;
}

CBinaryData::CBinaryData(unsigned char* data, unsigned long length, bool adopt) {
    if (length > 0 && data)
        m_holder = new CDataHolder(data, length, adopt);
    else if (adopt)
        delete[] data;
}

CBinaryData::CBinaryData(const wchar_t* s) {
    SetBuffer(s);
}

CBinaryData& CBinaryData::operator=(const CBinaryData& other) {
    if (other.m_holder != m_holder) {
        if (other.m_holder)
            other.m_holder->AddRef();
        ReleaseData();
        m_holder = other.m_holder;
    }
    return *this;
}

CBinaryData& CBinaryData::operator=(CBinaryData&& other) noexcept {
    if (this != &other) {
        ReleaseData();
        m_holder = other.m_holder;
        other.m_holder = nullptr;
    }
    return *this;
}

CBinaryData::~CBinaryData() {
    ReleaseData();
}

void CBinaryData::ReleaseData() {
    if (m_holder) {
        CDataHolder* holder = m_holder;
        m_holder = nullptr;
        holder->Release(false);
    }
}

void CBinaryData::Adopt(unsigned char* data, unsigned long length) {
    ReleaseData();
    if (length > 0)
        m_holder = new CDataHolder(data, length, true);
    else
        delete[] data;
}

unsigned char* CBinaryData::GetData() {
    if (!m_holder)
        return nullptr;
    m_holder = m_holder->GetExclusiveCopy();
    return m_holder->GetData();
}

unsigned char CBinaryData::operator[](unsigned long index) const {
    if (index >= GetLength())
        throw CQvException(FormatString(msg::kIndexOutOfRangeBinaryFmt, static_cast<int>(index)));
    return m_holder->GetData()[index];
}

unsigned char& CBinaryData::operator[](unsigned long index) {
    if (index >= GetLength())
        throw CQvException(FormatString(msg::kIndexOutOfRangeBinaryFmt, static_cast<int>(index)));
    return GetData()[index];
}

void CBinaryData::SetBuffer(const unsigned char* data, unsigned long length) {
    ReleaseData();
    if (data && length > 0)
        m_holder = new CDataHolder(const_cast<unsigned char*>(data), length, false);
}

void CBinaryData::SetBuffer(const wchar_t* s) {
    ReleaseData();
    Append(s);
}

void CBinaryData::Append(const unsigned char* data, unsigned long length) {
    if (length == 0 || !data)
        return;
    if (!m_holder) {
        m_holder = new CDataHolder(const_cast<unsigned char*>(data), length, false);
        return;
    }
    m_holder = m_holder->GetExclusiveCopy();
    m_holder->Append(data, length);
}

void CBinaryData::Append(unsigned char byte) {
    Append(&byte, 1);
}

void CBinaryData::Append(wchar_t c) {
    Append(reinterpret_cast<const unsigned char*>(&c), sizeof(wchar_t));
}

void CBinaryData::Append(const wchar_t* s) {
    if (s)
        Append(reinterpret_cast<const unsigned char*>(s), std::wcslen(s) * sizeof(wchar_t));
}

void CBinaryData::Append(const CBinaryData& other) {
    if (other.m_holder == m_holder) {
        // Appending a value to itself: keep the source alive and unchanged while copying.
        const CBinaryData source(other);
        Append(source.GetData(), source.GetLength());
        return;
    }
    Append(other.GetData(), other.GetLength());
}

std::wstring CBinaryData::GetAsHexString(const unsigned char* data, unsigned long length) {
    static const wchar_t kDigits[] = L"0123456789ABCDEF";
    if (!data || length == 0)
        return std::wstring();
    std::wstring out(2 * static_cast<size_t>(length), L'0');
    for (unsigned long i = 0; i < length; ++i) {
        out[2 * i] = kDigits[data[i] >> 4];
        out[2 * i + 1] = kDigits[data[i] & 0x0F];
    }
    return out;
}

std::wstring CBinaryData::GetAsHexString() const {
    return GetAsHexString(GetData(), GetLength());
}

unsigned long CBinaryData::ConvertToHexData(const wchar_t* text, unsigned char** out) {
    *out = nullptr;
    const size_t length = text ? std::wcslen(text) : 0;
    if (length % 2 != 0)
        throw CQvException(msg::kHexInvalidLength);
    if (length == 0)
        return 0;
    std::unique_ptr<unsigned char[]> bytes(new unsigned char[length / 2]);
    for (size_t i = 0; i < length; ++i) {
        const int digit = HexDigit(text[i]);
        if (digit < 0)
            throw CQvException(FormatString(msg::kHexInvalidCharFmt, static_cast<wint_t>(text[i])));
        if (i % 2 == 0)
            bytes[i / 2] = static_cast<unsigned char>(digit << 4);
        else
            bytes[i / 2] |= static_cast<unsigned char>(digit);
    }
    *out = bytes.release();
    return static_cast<unsigned long>(length / 2);
}

void CBinaryData::SetAsHexString(const wchar_t* text) {
    unsigned char* bytes = nullptr;
    const unsigned long length = ConvertToHexData(text, &bytes);
    Adopt(bytes, length);
}

std::wstring CBinaryData::GetAsBase64() const {
    CBase64 encoder;
    return encoder.Encode(const_cast<unsigned char*>(GetData()), static_cast<int>(GetLength()));
}

void CBinaryData::SetAsBase64(const wchar_t* text) {
    ReleaseData();
    if (!text || !*text)
        return;
    // Decode needs room for wcslen + 1 bytes; keep only what it produced.
    std::unique_ptr<unsigned char[]> scratch(new unsigned char[std::wcslen(text) + 1]);
    CBase64 decoder;
    const int length = decoder.Decode(text, scratch.get());
    if (length <= 0)
        return;
    unsigned char* exact = new unsigned char[length];
    std::memcpy(exact, scratch.get(), static_cast<size_t>(length));
    Adopt(exact, static_cast<unsigned long>(length));
}

bool CBinaryData::operator==(const CBinaryData& other) const {
    const unsigned long length = GetLength();
    if (length != other.GetLength())
        return false;
    return length == 0 || std::memcmp(GetData(), other.GetData(), length) == 0;
}

} // namespace QvXmlLib16
