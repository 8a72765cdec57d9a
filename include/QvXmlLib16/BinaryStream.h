#pragma once

#include <QvXmlLib16/BinaryData.h>
#include <QvXmlLib16/Export.h>
#include <QvXmlLib16/InstanceMonitor.h>
#include <QvXmlLib16/XmlEncoding.h>

#include <string>

namespace QvXmlLib16 {

// Bytes collected in a CBinaryData: its own, or one the caller lends for the stream's lifetime.
class QVXML_API CBinaryStream : public CInstanceMonitor {
public:
    CBinaryStream();
    explicit CBinaryStream(CBinaryData& target);
    virtual ~CBinaryStream();
    CBinaryStream(const CBinaryStream&) = delete;
    CBinaryStream& operator=(const CBinaryStream&) = delete;

    void Append(unsigned char byte) { m_target->Append(byte); }

    void Append(const CBinaryData& data) { m_target->Append(data); }

    void Append(const unsigned char* data, unsigned long length) { m_target->Append(data, length); }

    CBinaryData& GetBinaryStream() { return *m_target; }

    const std::wstring& GetName() const { return m_name; }

protected:
    CBinaryStream(const wchar_t* name, CBinaryData* target);

private:
    CBinaryData m_own;
    CBinaryData* m_target;
    std::wstring m_name;
};

// A binary stream written to a file in one go by ToFile().
class QVXML_API CFileBinaryStream : public CBinaryStream {
public:
    CFileBinaryStream(const wchar_t* fileName, XmlEncoding encoding);
    CFileBinaryStream(const wchar_t* fileName, XmlEncoding encoding, CBinaryData& target);
    ~CFileBinaryStream() override;

    // Writes every byte (after FF FE for UTF-16 and Native); throws CQvException
    // "Failed to write data to the file [%ls]." when the file cannot be written.
    void ToFile();

private:
    XmlEncoding m_encoding;
};

} // namespace QvXmlLib16
