#pragma once

#include <QvXmlLib16/BinaryData.h>
#include <QvXmlLib16/Export.h>
#include <QvXmlLib16/InstanceMonitor.h>
#include <QvXmlLib16/StringBuffer.h>
#include <QvXmlLib16/XmlEncoding.h>

#include <cstdio>
#include <string>

namespace QvXmlLib16 {

// Wide text buffered in memory, encoded at the byte boundary as its XmlEncoding says.
class QVXML_API CTextStream : public CInstanceMonitor {
public:
    CTextStream();
    explicit CTextStream(XmlEncoding encoding);
    CTextStream(const wchar_t* text, XmlEncoding encoding);
    virtual ~CTextStream();

    virtual void Open() {}

    virtual void Close() {}

    virtual void Flush() {}

    void Append(wchar_t c) { m_buffer.Append(c); }

    void Append(const wchar_t* s) { m_buffer.Append(s); }

    void Append(const std::wstring& s) { m_buffer.Append(s); }

    void Append(const wchar_t* s, unsigned long count) { m_buffer.Append(s, count); }

    void AppendRepeated(wchar_t c, unsigned long count) { m_buffer.AppendRepeated(c, count); }

    // Characters buffered (not yet flushed).
    unsigned long GetLength() const { return m_buffer.GetLength(); }

    const wchar_t* GetText() { return m_buffer.GetText(); }

    XmlEncoding GetEncoding() const { return m_encoding; }

    // The buffered text as bytes. UTF-8 is real UTF-8. UTF-16 is two bytes per character taken
    // from the text's in-memory bytes (byte i becomes unit i), a long-standing form kept as it
    // is. Native is the raw 4-byte units. Anything else throws
    // CQvException "Unknown Encoding, select UTF-8 (contact our support team)".
    CBinaryData GetEncodedStream();

protected:
    void EmptyBuffer() { m_buffer.Empty(); }

private:
    CStringBuffer m_buffer;
    XmlEncoding m_encoding = Encoding_Unknown;
};

// Text written to a file in chunks: writers call Flush() whenever more than 4095 characters
// are buffered. The file name is converted with the current C locale (UnicodeToMultiByte).
class QVXML_API CFileTextStream : public CTextStream {
public:
    CFileTextStream(const wchar_t* fileName, XmlEncoding encoding);
    ~CFileTextStream() override;
    CFileTextStream(const CFileTextStream&) = delete;
    CFileTextStream& operator=(const CFileTextStream&) = delete;

    // Creates the file; UTF-16 and Native files start with FF FE.
    void Open() override;
    void Close() override;
    void Flush() override;

private:
    void CloseFile();

    std::wstring m_fileName;
    CBinaryData m_scratch;
    FILE* m_file = nullptr;
};

} // namespace QvXmlLib16
