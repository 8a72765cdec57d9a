#pragma once

#include <QvXmlLib16/Export.h>
#include <QvXmlLib16/InstanceMonitor.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace QvXmlLib16 {

class CXmlDocument;
class CXmlElement;

namespace detail {
class CTreeStore;

// Where tree nodes live. The nodes a document builds are placed in its store, an arena the
// document frees in one go; nodes made with a plain new live on the heap. Either way delete
// is right: the word in front of each node tells which.
class QVXML_API CTreeNodeStorage {
public:
    static void* operator new(std::size_t size);
    static void* operator new(std::size_t size, CTreeStore* store);
    static void operator delete(void* node) noexcept;
    static void operator delete(void* node, CTreeStore* store) noexcept;
};

// Text bytes of a node, in its store or on the heap. The owner frees them, knowing which.
class QVXML_API CCompactText {
public:
    bool IsEmpty() const { return m_size == 0; }

    const char* GetData() const { return m_data; }

    std::size_t GetSize() const { return m_size; }

    void Append(CTreeStore* store, const char* bytes, std::size_t count);

    // Makes count more bytes for the caller to write; GiveBack returns an unwritten tail.
    char* Extend(CTreeStore* store, std::size_t count) {
        if (m_capacity - m_size < count)
            Reserve(store, m_size + count);
        char* room = m_data + m_size;
        m_size += static_cast<std::uint32_t>(count);
        return room;
    }

    void GiveBack(std::size_t count) { m_size -= static_cast<std::uint32_t>(count); }

    void Reserve(CTreeStore* store, std::size_t capacity);
    void Free(CTreeStore* store) noexcept;

private:
    char* m_data = nullptr;
    std::uint32_t m_size = 0; // node text stops at 4 GiB, so the node stays small
    std::uint32_t m_capacity = 0;
};

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

    // An uncounted copy, for the nodes in a document's store: the document's name table
    // outlives them, and they are dropped without running their destructors. Copies made
    // from it are counted again.
    CSharedName Borrowed() const;

private:
    struct Rep;
    Rep* Target() const;
    Rep* m_rep = nullptr; // the low bit marks an uncounted copy
};
} // namespace detail

class QVXML_API CXmlAttribute : public CInstanceMonitor, public detail::CTreeNodeStorage {
public:
    CXmlAttribute(const CXmlElement* owner, const std::wstring& localName,
                  const std::wstring& value, const std::wstring& ns);
    ~CXmlAttribute();
    CXmlAttribute(const CXmlAttribute&) = delete;
    CXmlAttribute& operator=(const CXmlAttribute&) = delete;

    const std::wstring& GetNamespaceURI() const;
    const std::wstring& GetLocalName() const;
    std::wstring GetValue() const;
    // The same into value, reusing its room.
    void GetValue(std::wstring& value) const;

    const CXmlElement* GetOwner() const { return m_owner; }

    // The owner's path + "/@" + the prefixed name.
    std::wstring GetXPath() const;
    // xmlns declarations and xsi:type, xsi:schemaLocation, xsi:noNamespaceSchemaLocation.
    bool IsNamespaceAttribute() const;
    bool IsNilAttribute() const;

private:
    friend class CXmlElement;
    friend class CExpatReader;
    static detail::CSharedName NameFor(const CXmlElement* owner, const std::wstring& name);
    CXmlAttribute(const CXmlElement* owner, detail::CSharedName localName, detail::CSharedName ns,
                  detail::CTreeStore* store);

    detail::CTreeStore* m_store = nullptr; // where the value lives; null for the heap
    const CXmlElement* m_owner;
    detail::CSharedName m_localName;
    detail::CSharedName m_namespace;
    detail::CCompactText m_value; // see GetValue
};

// One element of the tree: name, namespace, all its character data concatenated, attributes
// in document order, and its children. Destroying an element destroys its subtree, without
// recursion, however deep. Text is held compactly and widened on each GetText().
class QVXML_API CXmlElement : public CInstanceMonitor, public detail::CTreeNodeStorage {
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

    const CXmlDocument* GetDocument() const;

    const std::wstring& GetNamespaceURI() const;
    const std::wstring& GetLocalName() const;
    std::wstring GetText() const;
    // The same into text, reusing its room.
    void GetText(std::wstring& text) const;

    bool HasText() const { return !m_text.IsEmpty(); }

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
    CXmlElement(const CXmlDocument* document, const CXmlElement* parent, detail::CTreeStore* store);
    void DestroyChildren();
    void CountNamesOfSubtree();
    detail::CSharedName MakeName(const wchar_t* text, size_t length) const;
    // An attribute with an empty value, for the caller to fill.
    CXmlAttribute* AddAttribute(detail::CSharedName localName, detail::CSharedName ns);

    // The document's store (tagged with the low bit), which knows the document; or, for a heap
    // node, the document itself.
    detail::CTreeStore* Store() const {
        return m_home & 1 ? reinterpret_cast<detail::CTreeStore*>(m_home & ~std::uintptr_t{1})
                          : nullptr;
    }

    std::uintptr_t m_home;
    const CXmlElement* m_parent;
    CXmlElement* m_nextSibling = nullptr;
    CXmlElement* m_firstChild = nullptr;
    CXmlElement* m_lastChild = nullptr;
    std::vector<CXmlAttribute*>* m_attributes = nullptr; // most elements have none
    detail::CCompactText m_text;                         // see GetText
    detail::CSharedName m_localName;
    detail::CSharedName m_namespace;
};

} // namespace QvXmlLib16
