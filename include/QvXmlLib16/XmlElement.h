#pragma once

#include <QvXmlLib16/Export.h>
#include <QvXmlLib16/InstanceMonitor.h>

#include <memory>
#include <string>
#include <vector>

namespace QvXmlLib16 {

class CXmlDocument;
class CXmlElement;

// Element and attribute names are shared between nodes: a document gives every node with the
// same name the same string.
using SharedName = std::shared_ptr<const std::wstring>;

class QVXML_API CXmlAttribute : public CInstanceMonitor {
public:
    CXmlAttribute(const CXmlElement* owner, const std::wstring& localName,
                  const std::wstring& value, const std::wstring& ns);
    CXmlAttribute(const CXmlElement* owner, SharedName localName, std::wstring value,
                  SharedName ns);

    const std::wstring& GetNamespaceURI() const;
    const std::wstring& GetLocalName() const;

    const std::wstring& GetValue() const { return m_value; }

    const CXmlElement* GetOwner() const { return m_owner; }

    // The owner's path + "/@" + the prefixed name.
    std::wstring GetXPath() const;
    // xmlns declarations and xsi:type, xsi:schemaLocation, xsi:noNamespaceSchemaLocation.
    bool IsNamespaceAttribute() const;
    bool IsNilAttribute() const;

private:
    const CXmlElement* m_owner;
    SharedName m_localName;
    std::wstring m_value;
    SharedName m_namespace;
};

// One element of the tree: name, namespace, all its character data concatenated, attributes
// in document order, and its children. Destroying an element destroys its subtree, without
// recursion, however deep.
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

    void SetElementName(SharedName localName) { m_localName = std::move(localName); }

    void SetNamespace(SharedName ns) { m_namespace = std::move(ns); }

    CXmlAttribute* AddAttribute(const std::wstring& localName, const std::wstring& value,
                                const std::wstring& ns);
    CXmlAttribute* AddAttribute(SharedName localName, std::wstring value, SharedName ns);

    CXmlElement* GetFirstElement() const { return m_firstChild; }

    CXmlElement* GetNextSiblingElement() const { return m_nextSibling; }

    const CXmlElement* GetParentElement() const { return m_parent; }

    const CXmlDocument* GetDocument() const { return m_document; }

    const std::wstring& GetNamespaceURI() const;
    const std::wstring& GetLocalName() const;

    const std::wstring& GetText() const { return m_text; }

    const std::vector<CXmlAttribute*>& GetAttributes() const { return m_attributes; }

    // The first attribute with this namespace and local name, or null.
    const CXmlAttribute* GetAttribute(const std::wstring& ns, const std::wstring& localName) const;

    // prefix:local when the document knows a prefix for the namespace, else the local name.
    std::wstring GetQName() const;
    // The QName with "[n]" when the parent has other children of the same QName.
    std::wstring GetNameWithPredicate() const;
    // "/Order/Item[3]". Costs the depth times the siblings per level: only for messages.
    std::wstring GetXPath() const;

private:
    void DestroyChildren();

    const CXmlDocument* m_document;
    const CXmlElement* m_parent;
    CXmlElement* m_nextSibling = nullptr;
    CXmlElement* m_firstChild = nullptr;
    CXmlElement* m_lastChild = nullptr;
    std::vector<CXmlAttribute*> m_attributes;
    std::wstring m_text;
    SharedName m_localName;
    SharedName m_namespace;
};

} // namespace QvXmlLib16
