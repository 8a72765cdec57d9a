#include "xml/CompactText.h"
#include "xml/TreeStore.h"
#include "xml/XmlMessages.h"

#include <QvXmlLib16/ConvertUTF.h>
#include <QvXmlLib16/ExpatReader.h>
#include <QvXmlLib16/Format.h>
#include <QvXmlLib16/QvException.h>
#include <QvXmlLib16/QvZip.h>
#include <QvXmlLib16/SerializationContext.h>
#include <QvXmlLib16/XmlDocument.h>

#include <cstdio>
#include <cstring>
#include <cwchar>

namespace QvXmlLib16 {

namespace {
size_t LengthOf(const wchar_t* s) {
    return s ? std::wcslen(s) : 0;
}
} // namespace

CXmlDocument::CXmlDocument() : CXmlDocument(nullptr, CSerializationContext::m_defaultContext) {}

CXmlDocument::CXmlDocument(const CSerializationContext& context) : CXmlDocument(nullptr, context) {}

CXmlDocument::CXmlDocument(ElementCompletedCallback callback)
    : CXmlDocument(callback, CSerializationContext::m_defaultContext) {}

CXmlDocument::CXmlDocument(ElementCompletedCallback callback, const CSerializationContext& context)
    : CInstanceMonitor(L"CXmlDocument"),
      m_callback(callback),
      m_context(&context) {
    m_schemaType = context.GetSchemaType();
}

CXmlDocument::~CXmlDocument() {
    Cleanup();
}

void CXmlDocument::Init() {
    Cleanup();
    m_schemaType = m_context->GetSchemaType();
}

void CXmlDocument::Cleanup() {
    m_openElements.clear();
    DropTree();
    if (m_store) {
        m_store->Release();
        m_store = nullptr;
    }
    m_input.reset();
    m_source = nullptr;
    m_inputLength = 0;
    m_inputIsUtf8 = false;
    m_aliases.clear();
}

// The caller's bytes are parsed where they are: a parse finishes before the load returns.
void CXmlDocument::SetInput(const unsigned char* data, unsigned long size) {
    m_source = data;
    m_inputLength = size;
}

void CXmlDocument::Load(const wchar_t* fileName) {
    Init();
    const wchar_t* name = fileName ? fileName : L"";
    FILE* file = std::fopen(UnicodeToMultiByte(name).c_str(), "rt");
    if (!file)
        throw CQvException(FormatString(msg::kFileOpenFailedFmt, name));
    const long length = _filelength(file);
    if (length < 0) {
        std::fclose(file);
        throw CQvException(FormatString(msg::kFileSizeFailedFmt, name));
    }
    std::unique_ptr<unsigned char[]> bytes(new unsigned char[length > 0 ? length : 1]);
    const size_t read = std::fread(bytes.get(), 1, static_cast<size_t>(length), file);
    std::fclose(file);
    if (read == 0 || read < static_cast<size_t>(length))
        throw CQvException(FormatString(msg::kFileReadFailedFmt, name));
    m_input = std::move(bytes);
    m_source = m_input.get();
    m_inputLength = static_cast<unsigned long>(length);
    Parse();
}

void CXmlDocument::LoadXml(const wchar_t* text) {
    if (!text || !*text)
        throw CQvException(msg::kXmlStringEmpty);
    Init();
    // Already decoded: expat gets UTF-8 and is told so, whatever the declaration says.
    const unsigned long length = static_cast<unsigned long>(std::wcslen(text));
    const unsigned long size = UnicodeToUTF8(text, length, nullptr, 0);
    m_input.reset(new unsigned char[size > 0 ? size : 1]);
    m_inputLength = UnicodeToUTF8(text, length, m_input.get(), size);
    m_source = m_input.get();
    m_inputIsUtf8 = true;
    ParseText();
}

void CXmlDocument::LoadXml(const char* text) {
    if (!text || !*text)
        throw CQvException(msg::kXmlStringEmpty);
    Init();
    SetInput(reinterpret_cast<const unsigned char*>(text),
             static_cast<unsigned long>(std::strlen(text)));
    ParseText();
}

void CXmlDocument::LoadXmlStream(unsigned char* data, unsigned long size) {
    if (!data || size == 0)
        throw CQvException(msg::kXmlStreamEmpty);
    Init();
    SetInput(data, size);
    Parse();
}

void CXmlDocument::Parse() {
    // Decompression only reads the bytes, and hands back new ones when they were compressed.
    unsigned char* data = const_cast<unsigned char*>(m_source);
    unsigned long length = m_inputLength;
    CQvZip::Decompress(&data, &length);
    if (data != m_source) {
        m_input.reset(data);
        m_source = data;
        m_inputLength = length;
    }
    // Fast Infoset input is recognised here once its reader exists; until then every input
    // goes to the XML text reader.
    ParseText();
}

void CXmlDocument::ParseText() {
    CExpatReader reader(*this);
    reader.CreateParser();

    // The input is not needed once the tree holds it; drop it on every path.
    struct DropInput {
        CXmlDocument& document;

        ~DropInput() {
            document.m_input.reset();
            document.m_source = nullptr;
            document.m_inputLength = 0;
        }
    } dropInput{*this};

    reader.Parse(true);
}

// A tree in the store goes with the store, unvisited: its nodes hold nothing else.
void CXmlDocument::DropTree() {
    if (m_documentElement && m_documentElement->Store())
        m_documentElement.release();
    m_documentElement.reset();
}

CXmlElement* CXmlDocument::StartElement(const detail::CSharedName& ns,
                                        const detail::CSharedName& localName) {
    CXmlElement* parent = GetOpenElement();
    CXmlElement* element;
    if (parent) {
        element = parent->CreateNewChildElement();
    } else {
        m_openElements.clear();
        DropTree();
        // Elements a callback consumes are freed one by one, so memory stays flat: those
        // live on the heap. Otherwise the whole tree goes into one store.
        if (!m_callback && !m_store)
            m_store = new detail::CTreeStore(this);
        m_documentElement.reset(new (m_store) CXmlElement(this, nullptr, m_store));
        element = m_documentElement.get();
    }
    element->m_namespace = detail::NodeName(ns, m_store);
    element->m_localName = detail::NodeName(localName, m_store);
    m_openElements.push_back(element);
    return element;
}

CXmlElement* CXmlDocument::AddDocElement(const wchar_t* ns, const wchar_t* localName) {
    m_openElements.clear();
    return StartElement(InternName(ns, LengthOf(ns)), InternName(localName, LengthOf(localName)));
}

CXmlElement* CXmlDocument::AddChildElement(const wchar_t* ns, const wchar_t* localName) {
    return StartElement(InternName(ns, LengthOf(ns)), InternName(localName, LengthOf(localName)));
}

void CXmlDocument::AddElementAttribute(CXmlElement* element, const std::wstring& localName,
                                       const std::wstring& value, const std::wstring& ns) {
    element->AddAttribute(localName, value, ns);
}

void CXmlDocument::AppendTextExcludingCR(CXmlElement* element, const wchar_t* text,
                                         unsigned long length) {
    if (element && text) {
        detail::CTextSink sink(element->m_text, element->Store());
        detail::AppendWide(sink, text, length, true);
    }
}

void CXmlDocument::AppendTextExcludingCR(CXmlElement* element, const wchar_t* text) {
    if (text)
        AppendTextExcludingCR(element, text, static_cast<unsigned long>(std::wcslen(text)));
}

CXmlElement* CXmlDocument::GetOpenElement() const {
    return m_openElements.empty() ? nullptr : m_openElements.back();
}

void CXmlDocument::EndElement() {
    if (m_openElements.empty())
        return;
    CXmlElement* element = m_openElements.back();
    m_openElements.pop_back();
    if (!m_callback || !m_callback(element) || m_openElements.empty())
        return;
    // The element that just ended is its parent's last child: nothing was added after it.
    delete m_openElements.back()->RemoveLastChildElement();
}

std::wstring CXmlDocument::LookupAliasFromNamespace(const wchar_t* ns) const {
    if (!ns)
        return std::wstring();
    for (const auto& [prefix, uri] : m_aliases) {
        if (uri == ns)
            return prefix;
    }
    return std::wstring();
}

std::wstring CXmlDocument::LookupNamespaceFromAlias(const wchar_t* alias) const {
    const auto it = m_aliases.find(alias ? alias : L"");
    return it == m_aliases.end() ? std::wstring() : it->second;
}

detail::CSharedName CXmlDocument::InternName(const wchar_t* text, size_t length) const {
    if (!text || length == 0)
        return detail::CSharedName();
    m_nameKey.assign(text, length);
    auto it = m_names.find(m_nameKey);
    if (it == m_names.end())
        it = m_names.emplace(m_nameKey, detail::CSharedName(text, length)).first;
    return it->second;
}

} // namespace QvXmlLib16
