#include "xml/FileOutput.h"
#include "xml/XmlMessages.h"

#include <QvXmlLib16/ConvertUTF.h>
#include <QvXmlLib16/Format.h>
#include <QvXmlLib16/QvException.h>
#include <QvXmlLib16/TextStream.h>

#include <cstring>
#include <cwchar>
#include <utility>
#include <vector>

namespace QvXmlLib16 {

namespace {

// Two bytes per character where unit i is byte i of the text's in-memory form: the UTF-16
// output this library has always produced.
CBinaryData ByteWiseUnits(const wchar_t* text, unsigned long length) {
    if (length == 0)
        return CBinaryData();
    const unsigned char* bytes = reinterpret_cast<const unsigned char*>(text);
    unsigned char* out = new unsigned char[2 * length];
    for (unsigned long i = 0; i < length; ++i) {
        const char16_t unit = bytes[i];
        std::memcpy(out + 2 * i, &unit, 2);
    }
    return CBinaryData(out, 2 * length, true);
}

// The same bytes as CEncoder::UnicodeToUtf8Binary(GetText()) - the text ends at its first NUL
// and a surrogate anywhere leaves nothing - without joining the blocks into one copy first.
CBinaryData Utf8FromBlocks(const CStringBuffer& buffer) {
    std::vector<std::pair<const wchar_t*, unsigned long>> pieces;
    unsigned long size = 0;
    bool ended = false, surrogate = false;
    buffer.ForEachBlock([&](const wchar_t* text, unsigned long count) {
        if (ended)
            return;
        if (const wchar_t* nul = std::wmemchr(text, L'\0', count)) {
            count = static_cast<unsigned long>(nul - text);
            ended = true;
        }
        const unsigned long bytes = UnicodeToUTF8(text, count, nullptr, 0);
        if (bytes == 0 && count > 0)
            surrogate = ended = true;
        size += bytes;
        pieces.emplace_back(text, count);
    });
    if (surrogate || size == 0)
        return CBinaryData();
    unsigned char* out = new unsigned char[size];
    unsigned long written = 0;
    for (const auto& [text, count] : pieces)
        written += UnicodeToUTF8(text, count, out + written, size - written);
    return CBinaryData(out, written, true);
}

} // namespace

CTextStream::CTextStream() : CInstanceMonitor(L"CTextStream") {}

CTextStream::CTextStream(XmlEncoding encoding)
    : CInstanceMonitor(L"CTextStream"),
      m_encoding(encoding) {}

CTextStream::CTextStream(const wchar_t* text, XmlEncoding encoding)
    : CInstanceMonitor(L"CTextStream"),
      m_encoding(encoding) {
    m_buffer.Append(text);
}

CTextStream::~CTextStream() = default;

CBinaryData CTextStream::GetEncodedStream() {
    switch (m_encoding) {
    case Encoding_UTF8: return Utf8FromBlocks(m_buffer);
    case Encoding_UTF16: {
        const unsigned long length = GetLength();
        return ByteWiseUnits(GetText(), length);
    }
    case Encoding_Native: return CBinaryData(GetText());
    default: throw CQvException(msg::kUnknownEncoding);
    }
}

// ---- CFileTextStream ----

CFileTextStream::CFileTextStream(const wchar_t* fileName, XmlEncoding encoding)
    : CTextStream(encoding),
      m_fileName(fileName ? fileName : L"") {}

CFileTextStream::~CFileTextStream() {
    // Destructors must not throw: a failed final flush is lost here, Close() reports it.
    try {
        if (m_file)
            Close();
    } catch (const CQvException&) {
        CloseFile();
    }
}

void CFileTextStream::CloseFile() {
    if (m_file)
        std::fclose(m_file);
    m_file = nullptr;
}

void CFileTextStream::Open() {
    CTextStream::Open();
    CloseFile();
    m_file = std::fopen(UnicodeToMultiByte(m_fileName.c_str()).c_str(), "wt");
    if (m_file && !detail::WriteByteOrderMark(m_file, GetEncoding()))
        CloseFile();
    if (!m_file)
        throw CQvException(FormatString(msg::kFileWriteFailedFmt, m_fileName.c_str()));
}

void CFileTextStream::Flush() {
    if (GetLength() == 0)
        return;
    m_scratch = GetEncodedStream();
    const unsigned long length = m_scratch.GetLength();
    const unsigned char* bytes = static_cast<const CBinaryData&>(m_scratch).GetData();
    if (length > 0 && (!m_file || std::fwrite(bytes, 1, length, m_file) == 0)) {
        CloseFile();
        throw CQvException(msg::kFileChunkWriteFailed);
    }
    m_scratch.Clear();
    EmptyBuffer();
}

void CFileTextStream::Close() {
    Flush();
    CloseFile();
    CTextStream::Close();
}

} // namespace QvXmlLib16
