#pragma once

#include <QvXmlLib16/Export.h>
#include <QvXmlLib16/SmartPtr.h>
#include <QvXmlLib16/XmlCollectionBase.h>

#include <functional>
#include <type_traits>

namespace QvXmlLib16 {

// Bindable objects (generated classes, untyped elements) held in a doubly linked list, each by
// a counted reference. Adding fires Add, then AddComplete and Change; removing fires Remove
// and RemoveComplete with the index -1, then Change.
class QVXML_API CXmlCollection : public CXmlCollectionBase {
public:
    struct CNode {
        CSmartPtr<CXmlObjectBase> item;
        CNode* next = nullptr;
        CNode* previous = nullptr;
    };

    CXmlCollection(const wchar_t* elementName, const wchar_t* namespaceUri, int minOccurs,
                   int maxOccurs);
    ~CXmlCollection() override;
    CXmlCollection(const CXmlCollection&) = delete;
    CXmlCollection& operator=(const CXmlCollection&) = delete;

    void AppendItem(CXmlObjectBase* item);
    void PrependItem(CXmlObjectBase* item);
    // 0..count; count appends. Otherwise CQvInvalidParamException "Index out of range".
    void AddItemAt(int index, CXmlObjectBase* item);
    // Next to the node holding existing; a null existing appends (After) or prepends (Before).
    void AddAfterItem(const CXmlObjectBase* existing, CXmlObjectBase* item);
    void AddBeforeItem(const CXmlObjectBase* existing, CXmlObjectBase* item);
    void Remove(int index) override;
    void RemoveNode(CNode* node);
    // CQvInvalidParamException "Index %d is out of range, use 0 - %d" outside 0..count-1.
    CNode* GetNodeAtIndex(int index) const;
    // By GetBase(); CQvInvalidParamException "The object was not found in the collection".
    CNode* GetNodeForItem(const CXmlObjectBase* item) const;

    int GetCount() const override { return m_count; }

    // Removes every item; listeners hear one Change.
    void Clear() override;

    CNode* GetFirstNode() const { return m_first; }

protected:
    // Items that stand in for pseudo elements write their attributes on the parent's element.
    void AttributesToXml_Int(CXmlWriter* writer, const CSerializationContext& ctx) const override;
    // Each item as an element of its own.
    void ToXml_Int(CXmlWriter* writer, bool isRoot, const wchar_t* namespaceUri,
                   const CSerializationContext& ctx, bool optionalChoice) const override;
    using CXmlObjectBase::AttributesToXml_Int;
    using CXmlObjectBase::ToXml_Int;

    // Reads items made by create from cursor on while the elements carry the collection's name
    // and namespace; returns the first element that does not.
    CXmlElement* ReadItems(CXmlElement* cursor, const CSerializationContext& ctx,
                           const std::function<CSmartPtr<CXmlObjectBase>(CXmlElement*)>& create);

private:
    void Link(CNode* node, CNode* before);
    CNode* NewNode(CXmlObjectBase* item);

    CNode* m_first = nullptr;
    CNode* m_last = nullptr;
    int m_count = 0;
};

// The collection generated classes hold repeated class members in. Items are T; an element
// factory (for abstract T) picks the class of each item read.
template <class T>
class TXmlObjectCol : public CXmlCollection {
public:
    using ElementFactory = CSmartPtr<CXmlObjectBase> (*)(CXmlElement*);

    TXmlObjectCol(const wchar_t* elementName, const wchar_t* namespaceUri, int minOccurs,
                  int maxOccurs, ElementFactory factory = nullptr)
        : CXmlCollection(elementName, namespaceUri, minOccurs, maxOccurs),
          m_factory(factory) {}

    void Add(T* item) { AppendItem(item); }

    T* Item(int index) const { return static_cast<T*>(GetNodeAtIndex(index)->item.Ptr()); }

    // Range-for over the items.
    class Iterator {
    public:
        explicit Iterator(CNode* node) : m_node(node) {}

        T* operator*() const { return static_cast<T*>(m_node->item.Ptr()); }

        Iterator& operator++() {
            m_node = m_node->next;
            return *this;
        }

        bool operator!=(const Iterator& other) const { return m_node != other.m_node; }

    private:
        CNode* m_node;
    };

    Iterator begin() const { return Iterator(GetFirstNode()); }

    Iterator end() const { return Iterator(nullptr); }

protected:
    // Takes every element from cursor on that carries the collection's name and namespace.
    CXmlElement* FromXml_Int(CXmlElement*, CXmlElement* cursor, const CSerializationContext& ctx,
                             bool) override {
        return ReadItems(cursor, ctx, [this](CXmlElement* e) -> CSmartPtr<CXmlObjectBase> {
            if (m_factory)
                return m_factory(e);
            if constexpr (std::is_abstract_v<T>)
                return nullptr; // an abstract item needs the factory
            else
                return new T();
        });
    }

private:
    ElementFactory m_factory;
};

} // namespace QvXmlLib16
