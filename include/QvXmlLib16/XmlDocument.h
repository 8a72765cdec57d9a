#pragma once

#include <QvXmlLib16/Export.h>
#include <QvXmlLib16/InstanceMonitor.h>
#include <QvXmlLib16/XmlElement.h>

#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace QvXmlLib16 {

class CSerializationContext;

// The tree every input is read into. Built by a reader through AddDocElement,
// AddChildElement, AddElementAttribute, AppendTextExcludingCR and EndElement.
class QVXML_API CXmlDocument : public CInstanceMonitor {
public:
    // Called as each element ends; returning true removes and deletes the element, so a
    // large document can be consumed while it is read.
    using ElementCompletedCallback = bool (*)(CXmlElement*);

    CXmlDocument();
    explicit CXmlDocument(const CSerializationContext& context);
    explicit CXmlDocument(ElementCompletedCallback callback);
    CXmlDocument(ElementCompletedCallback callback, const CSerializationContext& context);
    virtual ~CXmlDocument();
    CXmlDocument(const CXmlDocument&) = delete;
    CXmlDocument& operator=(const CXmlDocument&) = delete;

    void Init();
    void Cleanup();

    CXmlElement* GetDocumentElement() const { return m_documentElement.get(); }

    const CSerializationContext& GetContext() const { return *m_context; }

    // Reads a whole file and parses it (compressed or not).
    void Load(const wchar_t* fileName);
    // Wide text is already decoded: any encoding its declaration names is ignored.
    void LoadXml(const wchar_t* text);
    // Bytes whose encoding the parser takes from the declaration or byte order mark.
    void LoadXml(const char* text);
    // Bytes, possibly compressed; the caller keeps its buffer.
    void LoadXmlStream(unsigned char* data, unsigned long size);

    CXmlElement* AddDocElement(const wchar_t* ns, const wchar_t* localName);
    CXmlElement* AddChildElement(const wchar_t* ns, const wchar_t* localName);
    void AddElementAttribute(CXmlElement* element, const std::wstring& localName,
                             const std::wstring& value, const std::wstring& ns);
    void AppendTextExcludingCR(CXmlElement* element, const wchar_t* text, unsigned long length);
    void AppendTextExcludingCR(CXmlElement* element, const wchar_t* text);
    void EndElement();
    // The element being built (top of the open-element stack), or null.
    CXmlElement* GetOpenElement() const;

    std::wstring LookupAliasFromNamespace(const wchar_t* ns) const;
    std::wstring LookupNamespaceFromAlias(const wchar_t* alias) const;

    const std::map<std::wstring, std::wstring>& GetAliasMap() const { return m_aliases; }

    // Records a namespace declaration; a later one for the same prefix wins.
    void SetAlias(const std::wstring& prefix, const std::wstring& ns) { m_aliases[prefix] = ns; }

    // One shared string per distinct name, so large documents do not repeat them.
    detail::CSharedName InternName(const wchar_t* text, size_t length) const;

    void Parse();
    void ParseText();

private:
    // A child of the open element, or the document element when none is open; pushed.
    CXmlElement* StartElement(const detail::CSharedName& ns, const detail::CSharedName& localName);
    void SetInput(const unsigned char* data, unsigned long size);
    void DropTree();

    std::unique_ptr<CXmlElement> m_documentElement;
    std::vector<CXmlElement*> m_openElements;
    std::map<std::wstring, std::wstring> m_aliases; // prefix -> namespace URI
    std::unique_ptr<unsigned char[]> m_input;       // bytes the document had to make
    const unsigned char* m_source = nullptr;        // the bytes to parse: m_input's or the caller's
    unsigned long m_inputLength = 0;                // of m_source
    bool m_inputIsUtf8 = false; // wide text converted by LoadXml: declarations do not apply
    unsigned m_schemaType = 0;
    ElementCompletedCallback m_callback = nullptr;
    const CSerializationContext* m_context;
    detail::CTreeStore* m_store = nullptr; // the tree's nodes; none while a callback consumes them
    mutable std::unordered_map<std::wstring, detail::CSharedName> m_names;
    mutable std::wstring m_nameKey; // reused so a lookup does not allocate

    friend class CExpatReader;
};

} // namespace QvXmlLib16
