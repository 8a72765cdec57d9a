#pragma once

#include <QvXmlLib16/Export.h>
#include <QvXmlLib16/XmlObjectBase.h>

#include <string>
#include <vector>

namespace QvXmlLib16 {

// What every collection of repeated members shares: the items' element name (the object's
// element name) and namespace, the minimum and maximum occurrence (-1: unbounded), the
// occurrence checks and the change events sent to listeners.
class QVXML_API CXmlCollectionBase : public CXmlObjectBase {
public:
    CXmlCollectionBase();
    CXmlCollectionBase(const wchar_t* elementName, const wchar_t* namespaceUri, int minOccurs,
                       int maxOccurs);
    ~CXmlCollectionBase() override;

    // A collection answers for itself.
    CXmlObjectBase* GetBase() override { return this; }

    // Program logic error: throws CQvException.
    std::wstring GetTargetNamespace() const override;

    // The items' namespace.
    std::wstring GetNamespace() const override { return m_namespaceUri; }

    virtual int GetCount() const = 0;
    virtual void Clear() = 0;
    virtual void Remove(int index) = 0;
    // CQvValidationException when the count is outside minimum..maximum (unless the context
    // ignores collection counts).
    virtual void ValidateCount(const CSerializationContext& ctx) const;
    virtual bool IsValidCount(const CSerializationContext& ctx) const;

    int GetMinOccurs() const { return m_minOccurs; }

    int GetMaxOccurs() const { return m_maxOccurs; }

    // Listeners are not counted; they are told in the order they registered.
    void AddEventListener(IEventSink* listener);
    void RemoveEventListener(IEventSink* listener);
    void FireOnCollectionChange();
    void FireOnCollectionAdd(void* item);
    void FireOnCollectionAddComplete(void* item);
    void FireOnCollectionRemove(int index);
    void FireOnCollectionRemoveComplete(int index);

private:
    std::wstring m_namespaceUri;
    std::vector<IEventSink*> m_listeners;
    int m_minOccurs = 0;
    int m_maxOccurs = -1;
};

} // namespace QvXmlLib16
