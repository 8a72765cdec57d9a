#include "binding/BindingMessages.h"

#include <QvXmlLib16/BinaryStream.h>
#include <QvXmlLib16/Format.h>
#include <QvXmlLib16/QvException.h>
#include <QvXmlLib16/TextStream.h>
#include <QvXmlLib16/XmlDocument.h>
#include <QvXmlLib16/XmlObjectBase.h>
#include <QvXmlLib16/XmlTextWriter.h>

#include <atomic>

namespace QvXmlLib16 {

namespace {
std::atomic<bool> g_asyncToXmlFile{false};
} // namespace

void AsyncToXmlFile(bool async) {
    g_asyncToXmlFile = async;
}

IEventSink::~IEventSink() = default;

CXmlObjectBase::CXmlObjectBase() = default;

CXmlObjectBase::CXmlObjectBase(const CXmlObjectBase& other)
    : IEventSink(other),
      m_elementName(other.m_elementName) {}

CXmlObjectBase& CXmlObjectBase::operator=(const CXmlObjectBase& other) {
    m_elementName = other.m_elementName;
    return *this;
}

CXmlObjectBase::~CXmlObjectBase() = default;

long CXmlObjectBase::AddRef() {
    CQVCriticalSection::CScopedLock lock(m_lock);
    return ++m_refCount;
}

long CXmlObjectBase::Release() {
    long count;
    {
        CQVCriticalSection::CScopedLock lock(m_lock);
        count = --m_refCount;
    }
    if (count == 0)
        delete this;
    return count;
}

void CXmlObjectBase::OnEvent(CXmlObjectBase*, MsgType, void*) {}

void CXmlObjectBase::AttributesToXml_Int(CXmlWriter*, const CSerializationContext&) const {}

// ---- writing ----

void CXmlObjectBase::WriteXml(CTextStream& stream, bool includeDocHeader, bool formatted,
                              EOLType eol, const CSerializationContext& ctx) const {
    CXmlTextWriter writer(stream);
    writer.Open();
    writer.SetFormat(formatted);
    const std::wstring indent = ctx.GetIndentChars();
    writer.SetIndentChars(indent.c_str());
    writer.SetEOLType(eol);
    writer.SetWriteDefaultElementValues(ctx.GetWriteDefaultElementValues());
    if (includeDocHeader)
        writer.WriteStartDocument();
    ToXml_Int(&writer, true, GetTargetNamespace().c_str(), ctx, false);
    writer.Close();
}

std::wstring CXmlObjectBase::ToXml(bool includeDocHeader, bool formatted, EOLType eol,
                                   const CSerializationContext& ctx) const {
    CTextStream stream;
    WriteXml(stream, includeDocHeader, formatted, eol, ctx);
    return stream.GetText();
}

CBinaryData CXmlObjectBase::ToXmlStream(bool includeDocHeader, bool formatted, XmlEncoding encoding,
                                        EOLType eol, const CSerializationContext& ctx,
                                        CompressionType compression) const {
    CTextStream stream(encoding);
    WriteXml(stream, includeDocHeader, formatted, eol, ctx);
    CBinaryData bytes = stream.GetEncodedStream();
    if (compression != Compression_None)
        CQvZip::CompressData(bytes, compression);
    return bytes;
}

void CXmlObjectBase::ToXmlFile(const wchar_t* path, bool includeDocHeader, bool formatted,
                               XmlEncoding encoding, EOLType eol, const CSerializationContext& ctx,
                               CompressionType compression) const {
    if (compression == Compression_ZLib)
        throw CQvException(msg::kZlibStreamsOnly);
    if (g_asyncToXmlFile && compression == Compression_None) {
        CFileTextStream stream(path, encoding);
        WriteXml(stream, includeDocHeader, formatted, eol, ctx);
        return;
    }
    CBinaryData bytes = ToXmlStream(includeDocHeader, formatted, encoding, eol, ctx, compression);
    CFileBinaryStream(path, encoding, bytes).ToFile();
}

// ---- reading ----

// The root's name is not compared with the class: it becomes the object's element name.
void CXmlObjectBase::ReadDocument(CXmlDocument& document, const CSerializationContext& ctx) {
    CXmlElement* root = document.GetDocumentElement();
    FromXml_Int(root, root ? root->GetFirstElement() : nullptr, ctx, false);
}

void CXmlObjectBase::FromXml(const char* text, const CSerializationContext& ctx) {
    CXmlDocument document(ctx);
    document.LoadXml(text);
    ReadDocument(document, ctx);
}

void CXmlObjectBase::FromXml(const wchar_t* text, const CSerializationContext& ctx) {
    CXmlDocument document(ctx);
    document.LoadXml(text);
    ReadDocument(document, ctx);
}

void CXmlObjectBase::FromXmlFile(const wchar_t* path, const CSerializationContext& ctx) {
    CXmlDocument document(ctx);
    document.Load(path);
    ReadDocument(document, ctx);
}

void CXmlObjectBase::FromXmlStream(const unsigned char* data, unsigned long length,
                                   const CSerializationContext& ctx) {
    CXmlDocument document(ctx);
    // The document copies the bytes; it never changes the caller's.
    document.LoadXmlStream(const_cast<unsigned char*>(data), length);
    ReadDocument(document, ctx);
}

void CXmlObjectBase::FromXmlStream(const CBinaryData& data, const CSerializationContext& ctx) {
    FromXmlStream(data.GetData(), data.GetLength(), ctx);
}

void CXmlObjectBase::FromXmlElement(const CXmlElement* element, const CSerializationContext& ctx) {
    CXmlElement* e = const_cast<CXmlElement*>(element);
    FromXml_Int(e, e ? e->GetFirstElement() : nullptr, ctx, false);
}

// ---- helpers for generated code ----

void CXmlObjectBase::Choice_SelectElement(const wchar_t* name, CXmlObjectBase* value,
                                          std::wstring& selected) {
    if (selected == name)
        return;
    if (selected.empty()) {
        selected = name;
        return;
    }
    if (value)
        throw CQvInvalidStateException(FormatString(msg::kPropertyAlreadySetFmt, selected.c_str()));
    selected.clear(); // another member set to null
}

// Unlike Choice_SelectElement, valid true with nothing selected yet throws too.
void CXmlObjectBase::Choice_SetElementValid(bool valid, const wchar_t* name,
                                            std::wstring& selected) {
    if (!valid) {
        selected.clear();
        return;
    }
    if (selected != name)
        throw CQvInvalidStateException(
            FormatString(msg::kPropertyAlreadySetValidFmt, selected.c_str()));
}

void CXmlObjectBase::Choice_CollectionChanged(const wchar_t* name, long count,
                                              std::wstring& selected) {
    if (selected == name) {
        if (count == 0)
            selected.clear();
    } else if (selected.empty()) {
        if (count > 0)
            selected = name;
    } else if (count != 0) {
        throw CQvInvalidStateException(FormatString(msg::kPropertyAlreadySetFmt, selected.c_str()));
    }
}

void CXmlObjectBase::Throw_IfPropertyIsNull(CXmlObjectBase* value, const wchar_t* name) {
    if (!value)
        throw CQvInvalidParamException(FormatString(msg::kPropertyMandatoryNodeFmt, name));
}

void CXmlObjectBase::Throw_IfElementNameDiffers(CXmlObjectBase* value, const wchar_t* name) {
    if (!value)
        return;
    const std::wstring actual = value->GetBase()->GetElementName();
    if (actual != name)
        throw CQvInvalidParamException(
            FormatString(msg::kElementNameDiffersFmt, name, actual.c_str()));
}

void CXmlObjectBase::AttributesToXml_Int(const CXmlObjectBase* object, CXmlWriter* writer,
                                         const CSerializationContext& ctx) {
    object->AttributesToXml_Int(writer, ctx);
}

void CXmlObjectBase::ToXml_Int(const CXmlObjectBase* object, CXmlWriter* writer, bool isRoot,
                               const wchar_t* namespaceUri, const CSerializationContext& ctx,
                               bool optionalChoice) {
    object->ToXml_Int(writer, isRoot, namespaceUri, ctx, optionalChoice);
}

CXmlElement* CXmlObjectBase::FromXml_Int(CXmlObjectBase* object, CXmlElement* element,
                                         CXmlElement* cursor, const CSerializationContext& ctx,
                                         bool optionalChoice) {
    return object->FromXml_Int(element, cursor, ctx, optionalChoice);
}

} // namespace QvXmlLib16
