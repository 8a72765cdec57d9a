#include "binding/BindingMessages.h"
#include "metadata/MetadataMessages.h"

#include <QvXmlLib16/Format.h>
#include <QvXmlLib16/QvException.h>
#include <QvXmlLib16/XmlCollection.h>
#include <QvXmlLib16/XmlElement.h>
#include <QvXmlLib16/XmlObjectHelper.h>

namespace QvXmlLib16 {

CXmlCollection::CXmlCollection(const wchar_t* elementName, const wchar_t* namespaceUri,
                               int minOccurs, int maxOccurs)
    : CXmlCollectionBase(elementName, namespaceUri, minOccurs, maxOccurs) {}

// Nodes are freed one by one, so a long list costs no stack.
CXmlCollection::~CXmlCollection() {
    for (CNode* node = m_first; node;) {
        CNode* next = node->next;
        delete node;
        node = next;
    }
}

CXmlCollection::CNode* CXmlCollection::NewNode(CXmlObjectBase* item) {
    CNode* node = new CNode();
    node->item = item;
    return node;
}

// Puts node in front of before (at the end when before is null) and tells the listeners.
void CXmlCollection::Link(CNode* node, CNode* before) {
    node->next = before;
    node->previous = before ? before->previous : m_last;
    if (node->previous)
        node->previous->next = node;
    else
        m_first = node;
    if (before)
        before->previous = node;
    else
        m_last = node;
    ++m_count;
    FireOnCollectionAddComplete(node->item.Ptr());
    FireOnCollectionChange();
}

void CXmlCollection::AppendItem(CXmlObjectBase* item) {
    FireOnCollectionAdd(item);
    Link(NewNode(item), nullptr);
}

void CXmlCollection::PrependItem(CXmlObjectBase* item) {
    FireOnCollectionAdd(item);
    Link(NewNode(item), m_first);
}

void CXmlCollection::AddItemAt(int index, CXmlObjectBase* item) {
    if (index < 0 || index > m_count)
        throw CQvInvalidParamException(msg::kIndexOutOfRange);
    FireOnCollectionAdd(item);
    Link(NewNode(item), index == m_count ? nullptr : GetNodeAtIndex(index));
}

void CXmlCollection::AddAfterItem(const CXmlObjectBase* existing, CXmlObjectBase* item) {
    CNode* at = existing ? GetNodeForItem(existing) : nullptr;
    FireOnCollectionAdd(item);
    Link(NewNode(item), at ? at->next : nullptr);
}

void CXmlCollection::AddBeforeItem(const CXmlObjectBase* existing, CXmlObjectBase* item) {
    CNode* at = existing ? GetNodeForItem(existing) : m_first;
    FireOnCollectionAdd(item);
    Link(NewNode(item), at);
}

void CXmlCollection::Remove(int index) {
    RemoveNode(GetNodeAtIndex(index));
}

void CXmlCollection::RemoveNode(CNode* node) {
    if (!node)
        return;
    FireOnCollectionRemove(-1);
    (node->previous ? node->previous->next : m_first) = node->next;
    (node->next ? node->next->previous : m_last) = node->previous;
    delete node;
    --m_count;
    FireOnCollectionRemoveComplete(-1);
    FireOnCollectionChange();
}

CXmlCollection::CNode* CXmlCollection::GetNodeAtIndex(int index) const {
    if (index < 0 || index >= m_count)
        throw CQvInvalidParamException(FormatString(msg::kIndexOutOfRangeFmt, index, m_count));
    CNode* node = m_first;
    for (int i = 0; i < index; ++i)
        node = node->next;
    return node;
}

CXmlCollection::CNode* CXmlCollection::GetNodeForItem(const CXmlObjectBase* item) const {
    const CXmlObjectBase* wanted = item ? item->GetBase() : nullptr;
    for (CNode* node = m_first; node; node = node->next) {
        const CXmlObjectBase* held = node->item.Ptr();
        if (held && held->GetBase() == wanted)
            return node;
    }
    throw CQvInvalidParamException(msg::kObjectNotInCollection);
}

void CXmlCollection::Clear() {
    for (CNode* node = m_first; node;) {
        CNode* next = node->next;
        delete node;
        node = next;
    }
    m_first = m_last = nullptr;
    m_count = 0;
    FireOnCollectionChange();
}

void CXmlCollection::AttributesToXml_Int(CXmlWriter* writer,
                                         const CSerializationContext& ctx) const {
    for (CNode* node = m_first; node; node = node->next) {
        if (!node->item.IsNull())
            CXmlObjectBase::AttributesToXml_Int(node->item, writer, ctx);
    }
}

void CXmlCollection::ToXml_Int(CXmlWriter* writer, bool, const wchar_t* namespaceUri,
                               const CSerializationContext& ctx, bool) const {
    for (CNode* node = m_first; node; node = node->next) {
        if (!node->item.IsNull())
            CXmlObjectBase::ToXml_Int(node->item, writer, false, namespaceUri, ctx, false);
    }
}

CXmlElement*
CXmlCollection::ReadItems(CXmlElement* cursor, const CSerializationContext& ctx,
                          const std::function<CSmartPtr<CXmlObjectBase>(CXmlElement*)>& create) {
    const std::wstring name = GetElementName();
    const std::wstring ns = GetNamespace();
    while (cursor && CXmlObjectHelper::DoesElementNameMatch(ctx, cursor, name, ns)) {
        const CSmartPtr<CXmlObjectBase> item = create(cursor);
        if (item.IsNull())
            throw CQvValidationException(FormatString(msg::kNoSubstitutionFmt, name.c_str()),
                                         cursor->GetXPath());
        CXmlObjectBase::FromXml_Int(item, cursor, cursor->GetFirstElement(), ctx, false);
        AppendItem(item);
        cursor = cursor->GetNextSiblingElement();
    }
    return cursor;
}

} // namespace QvXmlLib16
