#pragma once

#include <QvXmlLib16/Export.h>
#include <QvXmlLib16/InstanceMonitor.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace QvXmlLib16 {

class CXmlDocument;
class CXmlElement;

namespace detail {
// One name string shared, with a count, by every node of a document that carries it.
class CSharedName {
public:
    CSharedName() = default;
    CSharedName(const wchar_t* text, size_t length);
    CSharedName(const CSharedName& other);
    CSharedName(CSharedName&& other) noexcept;
    CSharedName& operator=(CSharedName other) noexcept;
    ~CSharedName();

    // The empty string for a null name.
    const std::wstring& Get() const;

    bool IsEmpty() const { return m_rep == nullptr; }

private:
    struct Rep;
    Rep* m_rep = nullptr;
};
} // namespace detail

class QVXML_API CXmlAttribute : public CInstanceMonitor {
public:
    CXmlAttribute(const CXmlElement* owner, const std::wstring& localName,
                  const std::wstring& value, const std::wstring& ns);
    ~CXmlAttribute();
    CXmlAttribute(const CXmlAttribute&) = delete;
    CXmlAttribute& operator=(const CXmlAttribute&) = delete;

    const std::wstring& GetNamespaceURI() const;
    const std::wstring& GetLocalName() const;
    std::wstring GetValue() const;

    const CXmlElement* GetOwner() const { return m_owner; }

    // The owner's path + "/@" + the prefixed name.
    std::wstring GetXPath() const;
    // xmlns declarations and xsi:type, xsi:schemaLocation, xsi:noNamespaceSchemaLocation.
    bool IsNamespaceAttribute() const;
    bool IsNilAttribute() const;

private:
    friend class CXmlElement;
    static detail::CSharedName NameFor(const CXmlElement* owner, const std::wstring& name);
    CXmlAttribute(const CXmlElement* owner, detail::CSharedName localName, std::string value,
                  detail::CSharedName ns);

    const CXmlElement* m_owner;
    detail::CSharedName m_localName;
    detail::CSharedName m_namespace;
    std::string m_value; // compact form, see GetValue
};

// One element of the tree: name, namespace, all its character data concatenated, attributes
// in document order, and its children. Destroying an element destroys its subtree, without
// recursion, however deep. Text is held compactly and widened on each GetText().
class QVXML_API CXmlElement : public CInstanceMonitor {
public:
    CXmlElement(const CXmlDocument* document, const CXmlElement* parent);
    ~CXmlElement();
    CXmlElement(const CXmlElement&) = delete;
    CXmlElement& operator=(const CXmlElement&) = delete;

    CXmlElement* CreateNewChildElement();
    // Unlinks the last child and hands it to the caller; null when there is none.
    CXmlElement* RemoveLastChildElement();
    void AppendText(const wchar_t* text, int length);
    void AppendText(const wchar_t* text);
    void SetElementName(const wchar_t* localName);
    void SetNamespace(const wchar_t* ns);
    CXmlAttribute* AddAttribute(const std::wstring& localName, const std::wstring& value,
                                const std::wstring& ns);

    CXmlElement* GetFirstElement() const { return m_firstChild; }

    CXmlElement* GetNextSiblingElement() const { return m_nextSibling; }

    const CXmlElement* GetParentElement() const { return m_parent; }

    const CXmlDocument* GetDocument() const { return m_document; }

    const std::wstring& GetNamespaceURI() const;
    const std::wstring& GetLocalName() const;
    std::wstring GetText() const;

    bool HasText() const { return !m_text.empty(); }

    const std::vector<CXmlAttribute*>& GetAttributes() const;
    // The first attribute with this namespace and local name, or null.
    const CXmlAttribute* GetAttribute(const std::wstring& ns, const std::wstring& localName) const;

    // prefix:local when the document knows a prefix for the namespace, else the local name.
    std::wstring GetQName() const;
    // The QName with "[n]" when the parent has other children of the same QName.
    std::wstring GetNameWithPredicate() const;
    // "/Order/Item[3]". Costs the depth times the siblings per level: only for messages.
    std::wstring GetXPath() const;

private:
    friend class CXmlAttribute;
    friend class CXmlDocument;
    friend class CExpatReader;
    void DestroyChildren();
    detail::CSharedName MakeName(const wchar_t* text, size_t length) const;
    CXmlAttribute* AddAttribute(detail::CSharedName localName, std::string value,
                                detail::CSharedName ns);

    const CXmlDocument* m_document;
    const CXmlElement* m_parent;
    CXmlElement* m_nextSibling = nullptr;
    CXmlElement* m_firstChild = nullptr;
    CXmlElement* m_lastChild = nullptr;
    std::unique_ptr<std::vector<CXmlAttribute*>> m_attributes; // most elements have none
    std::string m_text;                                        // compact form, see GetText
    detail::CSharedName m_localName;
    detail::CSharedName m_namespace;
};

} // namespace QvXmlLib16
