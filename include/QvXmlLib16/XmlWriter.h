#pragma once

#include <QvXmlLib16/Export.h>
#include <QvXmlLib16/InstanceMonitor.h>
#include <QvXmlLib16/ItemType.h>

#include <map>
#include <string>
#include <vector>

namespace QvXmlLib16 {

// The sink every bindable object writes itself into. Owns the namespace bookkeeping shared by
// the XML, JSON and Fast Infoset writers: one context per open element, each with a
// namespace-to-prefix map and a default namespace inherited from its parent until changed.
class QVXML_API CXmlWriter : public CInstanceMonitor {
public:
    using NamespaceMap = std::map<std::wstring, std::wstring>; // namespace URI -> prefix

    // Set by callers around the items of a repeated element: 1 before, 3 after. The JSON
    // writer uses 2 for "array open".
    enum ContextState : int {
        ContextState_Initial = 0,
        ContextState_CollectionStart = 1,
        ContextState_ArrayOpen = 2,
        ContextState_CollectionEnd = 3
    };

    class QVXML_API CXmlWriterContext : public CInstanceMonitor {
    public:
        // A child context: inherits its parent's namespaces until it changes them.
        CXmlWriterContext(const std::wstring& localName, const std::wstring& ns,
                          CXmlWriterContext* parent);
        // A root context: a private copy of map and the given default namespace.
        CXmlWriterContext(const std::wstring& localName, const std::wstring& ns,
                          const std::wstring& defaultNs, NamespaceMap* map,
                          CXmlWriterContext* parent);
        // Deletes the parent chain too; the writer detaches the parent before popping.
        ~CXmlWriterContext();
        CXmlWriterContext(const CXmlWriterContext&) = delete;
        CXmlWriterContext& operator=(const CXmlWriterContext&) = delete;

        const std::wstring& GetDefaultNamespace() const;
        NamespaceMap* GetNamespaceMap() const;
        void SetDefaultNamespace(const std::wstring& ns);
        void SetNamespaceMapValue(const std::wstring& ns, const std::wstring& prefix);
        // Inserts an empty prefix for an unknown namespace, like a map subscript: test with
        // GetNamespaceMap()->find first.
        std::wstring& GetNamespaceMapValue(const std::wstring& ns);
        std::wstring& GetNamespaceMapValue(const wchar_t* ns);

        // Reuses a spare context for a new child element (no allocation per element).
        void Reset(const std::wstring& localName, const std::wstring& ns,
                   CXmlWriterContext* parent);

        unsigned m_childCount = 0;
        bool m_startTagOpen = true;
        unsigned m_depth = 0;
        std::wstring m_namespaceUri;
        std::wstring m_localName;
        CXmlWriterContext* m_parent = nullptr;
        ContextState m_state = ContextState_Initial;
        int m_writerData = 0;  // the concrete writer's own per-element counter
        std::wstring m_prefix; // what the element's name was written with, for its end tag

    private:
        const CXmlWriterContext& Effective() const { return *m_effective; }

        void StopInheriting();
        void ReleaseMap();

        std::wstring m_defaultNamespace;
        NamespaceMap* m_map = nullptr;
        bool m_inherits = true;
        bool m_ownsMap = false;
        // The nearest context that does not inherit (this one when it does not). An ancestor
        // cannot change its namespaces once it has a child, so the pointer stays right.
        const CXmlWriterContext* m_effective = this;
    };

    // The namespace bound to the prefix xml.
    static const wchar_t* const XML_NAMESPACE;

    explicit CXmlWriter(const wchar_t* className);
    virtual ~CXmlWriter();
    CXmlWriter(const CXmlWriter&) = delete;
    CXmlWriter& operator=(const CXmlWriter&) = delete;

    virtual void Open() {}

    // Throws CQvException "An Element has not been closed." while an element is open.
    virtual void Close();
    virtual void SetDefaultNamespace(const std::wstring& ns);
    virtual void AddNamespace(const std::wstring& prefix, const std::wstring& ns);
    virtual void WriteComment(const std::wstring& text) = 0;
    virtual void WritePI(const std::wstring& text) = 0;
    virtual void WriteInlineSchema(const std::wstring& text) = 0;
    virtual void WriteStartElement(const std::wstring& localName, const std::wstring& ns) = 0;
    virtual void WriteString(const std::wstring& text, ItemType type, bool isDefaultValue) = 0;
    virtual void WriteEndElement() = 0;
    virtual void WriteAttributeString(const std::wstring& localName, const std::wstring& ns,
                                      const std::wstring& value, ItemType type) = 0;
    virtual void WriteAttributeType(const std::wstring& typeName, const std::wstring& typeNs,
                                    ItemType type) = 0;
    virtual void WriteAttributeNil() = 0;

    void SetContextState(ContextState state);
    // The first generated prefix ("AA", "AB", ...) not used as a prefix in map.
    std::wstring GetUniquePrefix(const NamespaceMap& map);
    // "AA" for 0, "AB" for 1, ..., "BA" for 26.
    std::wstring NsIntToString(int n);

    CXmlWriterContext* GetCurrentContext() const { return m_current; }

    const std::wstring& GetWriterDefaultNamespace() const { return m_defaultNamespace; }

    const NamespaceMap& GetWriterNamespaceMap() const { return m_namespaceMap; }

protected:
    // How a name in a namespace is written at the current element.
    struct PrefixChoice {
        std::wstring prefix; // empty: the name is written without one
        bool declare;        // the prefix was generated here and must be declared
    };

    // Pushes a context for a new element: a root context before the first element.
    CXmlWriterContext& PushContext(const std::wstring& localName, const std::wstring& ns);
    // Pushes the context and settles the element's prefix (stored in the context as m_prefix).
    PrefixChoice EnterElement(const std::wstring& localName, const std::wstring& ns);
    // Pops the current context; its parent becomes current.
    void PopContext();
    // Element names: no prefix for no namespace or the default one; else the mapped prefix,
    // generated and stored in the current context when there is none.
    PrefixChoice ElementPrefix(const std::wstring& ns);
    // Attribute names always carry a prefix when they have a namespace.
    PrefixChoice AttributePrefix(const std::wstring& ns);

private:
    PrefixChoice MappedOrGeneratedPrefix(const std::wstring& ns);

    std::wstring m_defaultNamespace;
    CXmlWriterContext* m_current = nullptr;
    NamespaceMap m_namespaceMap;
    std::vector<CXmlWriterContext*> m_spareContexts;
};

} // namespace QvXmlLib16
