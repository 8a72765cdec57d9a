#include "xml/FileOutput.h"
#include "xml/XmlMessages.h"

#include <QvXmlLib16/Encoder.h>
#include <QvXmlLib16/Format.h>
#include <QvXmlLib16/QvException.h>
#include <QvXmlLib16/TextStream.h>

#include <cstring>

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
    case Encoding_UTF8: return CEncoder::UnicodeToUtf8Binary(GetText());
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
