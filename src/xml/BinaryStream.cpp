#include "xml/FileOutput.h"
#include "xml/XmlMessages.h"

#include <QvXmlLib16/BinaryStream.h>
#include <QvXmlLib16/Format.h>
#include <QvXmlLib16/QvException.h>

#include <cstdio>

namespace QvXmlLib16 {

CBinaryStream::CBinaryStream() : CInstanceMonitor(L"CBinaryStream"), m_target(&m_own) {}

CBinaryStream::CBinaryStream(CBinaryData& target)
    : CInstanceMonitor(L"CBinaryStream"),
      m_target(&target) {}

CBinaryStream::CBinaryStream(const wchar_t* name, CBinaryData* target)
    : CInstanceMonitor(L"CBinaryStream"),
      m_target(target ? target : &m_own),
      m_name(name ? name : L"") {}

CBinaryStream::~CBinaryStream() = default;

CFileBinaryStream::CFileBinaryStream(const wchar_t* fileName, XmlEncoding encoding)
    : CBinaryStream(fileName, nullptr),
      m_encoding(encoding) {}

CFileBinaryStream::CFileBinaryStream(const wchar_t* fileName, XmlEncoding encoding,
                                     CBinaryData& target)
    : CBinaryStream(fileName, &target),
      m_encoding(encoding) {}

CFileBinaryStream::~CFileBinaryStream() = default;

void CFileBinaryStream::ToFile() {
    FILE* file = std::fopen(UnicodeToMultiByte(GetName().c_str()).c_str(), "wt");
    bool ok = file != nullptr && detail::WriteByteOrderMark(file, m_encoding);
    const CBinaryData& bytes = GetBinaryStream();
    if (ok && bytes.GetLength() > 0)
        ok = std::fwrite(bytes.GetData(), 1, bytes.GetLength(), file) == bytes.GetLength();
    if (file && std::fclose(file) != 0)
        ok = false;
    if (!ok)
        throw CQvException(FormatString(msg::kFileWriteFailedFmt, GetName().c_str()));
}

} // namespace QvXmlLib16
