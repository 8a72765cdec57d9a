#include "binding/BindingMessages.h"

#include <QvXmlLib16/Format.h>
#include <QvXmlLib16/QvException.h>
#include <QvXmlLib16/XmlCollectionBase.h>
#include <QvXmlLib16/XmlElement.h>

#include <algorithm>

namespace QvXmlLib16 {

CXmlCollectionBase::CXmlCollectionBase() = default;

CXmlCollectionBase::CXmlCollectionBase(const wchar_t* elementName, const wchar_t* namespaceUri,
                                       int minOccurs, int maxOccurs)
    : m_namespaceUri(namespaceUri ? namespaceUri : L""),
      m_minOccurs(minOccurs),
      m_maxOccurs(maxOccurs) {
    SetElementName(elementName);
}

CXmlCollectionBase::~CXmlCollectionBase() = default;

std::wstring CXmlCollectionBase::GetTargetNamespace() const {
    throw CQvException(msg::kCollectionTargetNamespace);
}

void CXmlCollectionBase::ValidateCount(const CSerializationContext& ctx) const {
    if (ctx.GetIgnoreInvalidCollectionCounts())
        return;
    const int count = GetCount();
    if (m_maxOccurs != -1 && count > m_maxOccurs)
        throw CQvValidationException(
            FormatString(msg::kCollectionMaximumFmt, GetElementName().c_str(), m_maxOccurs), L"");
    if (count < m_minOccurs)
        throw CQvValidationException(
            FormatString(msg::kCollectionMinimumFmt, GetElementName().c_str(), m_minOccurs), L"");
}

bool CXmlCollectionBase::IsValidCount(const CSerializationContext& ctx) const {
    if (ctx.GetIgnoreInvalidCollectionCounts())
        return true;
    const int count = GetCount();
    if (m_maxOccurs != -1 && count > m_maxOccurs)
        return false;
    return count >= m_minOccurs;
}

void CXmlCollectionBase::AddEventListener(IEventSink* listener) {
    m_listeners.push_back(listener);
}

void CXmlCollectionBase::RemoveEventListener(IEventSink* listener) {
    const auto it = std::find(m_listeners.begin(), m_listeners.end(), listener);
    if (it != m_listeners.end())
        m_listeners.erase(it);
}

// A copy of the list is walked, so a listener may unregister itself while it is told.
void CXmlCollectionBase::FireOnCollectionChange() {
    for (IEventSink* sink : std::vector<IEventSink*>(m_listeners))
        FireOnCollectionChangeEvent(sink, this);
}

void CXmlCollectionBase::FireOnCollectionAdd(void* item) {
    for (IEventSink* sink : std::vector<IEventSink*>(m_listeners))
        FireOnCollectionAddEvent(sink, this, item);
}

void CXmlCollectionBase::FireOnCollectionAddComplete(void* item) {
    for (IEventSink* sink : std::vector<IEventSink*>(m_listeners))
        FireOnCollectionAddCompleteEvent(sink, this, item);
}

void CXmlCollectionBase::FireOnCollectionRemove(int index) {
    for (IEventSink* sink : std::vector<IEventSink*>(m_listeners))
        FireOnCollectionRemoveEvent(sink, this, index);
}

void CXmlCollectionBase::FireOnCollectionRemoveComplete(int index) {
    for (IEventSink* sink : std::vector<IEventSink*>(m_listeners))
        FireOnCollectionRemoveCompleteEvent(sink, this, index);
}

// ---- the object base's collection helpers ----

void CXmlObjectBase::Choice_Read_Collection(CXmlCollectionBase* collection, CXmlElement* element,
                                            CXmlElement*& cursor, long& count,
                                            const CSerializationContext& ctx) {
    if (count > 0)
        return;
    CXmlElement* next = FromXml_Int(collection, element, cursor, ctx, false);
    if (next == cursor)
        return;
    cursor = next;
    collection->ValidateCount(ctx);
    ++count;
}

void CXmlObjectBase::FireOnCollectionChangeEvent(IEventSink* sink, CXmlCollectionBase* collection) {
    sink->OnEvent(collection, MsgType_CollectionChange, nullptr);
}

void CXmlObjectBase::FireOnCollectionAddEvent(IEventSink* sink, CXmlCollectionBase* collection,
                                              void* item) {
    sink->OnEvent(collection, MsgType_CollectionAdd, item);
}

void CXmlObjectBase::FireOnCollectionAddCompleteEvent(IEventSink* sink,
                                                      CXmlCollectionBase* collection, void* item) {
    sink->OnEvent(collection, MsgType_CollectionAddComplete, item);
}

void CXmlObjectBase::FireOnCollectionRemoveEvent(IEventSink* sink, CXmlCollectionBase* collection,
                                                 int index) {
    sink->OnEvent(collection, MsgType_CollectionRemove, &index);
}

void CXmlObjectBase::FireOnCollectionRemoveCompleteEvent(IEventSink* sink,
                                                         CXmlCollectionBase* collection,
                                                         int index) {
    sink->OnEvent(collection, MsgType_CollectionRemoveComplete, &index);
}

} // namespace QvXmlLib16
