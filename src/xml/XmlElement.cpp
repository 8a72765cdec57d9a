#include "xml/CompactText.h"
#include "xml/TreeStore.h"

#include <QvXmlLib16/Namespaces.h>
#include <QvXmlLib16/XmlDocument.h>
#include <QvXmlLib16/XmlElement.h>

#include <atomic>
#include <cwchar>

namespace QvXmlLib16 {

namespace {
const std::wstring kEmpty;
const std::vector<CXmlAttribute*> kNoAttributes;
} // namespace

// ---- CSharedName ----

namespace detail {

struct CSharedName::Rep {
    std::atomic<long> references{1};
    std::wstring text;
};

CSharedName::CSharedName(const wchar_t* text, size_t length) {
    if (length > 0) {
        m_rep = new Rep();
        m_rep->text.assign(text, length);
    }
}

namespace {
constexpr std::uintptr_t kUncounted = 1;
} // namespace

CSharedName::Rep* CSharedName::Target() const {
    return reinterpret_cast<Rep*>(reinterpret_cast<std::uintptr_t>(m_rep) & ~kUncounted);
}

CSharedName::CSharedName(const CSharedName& other) : m_rep(other.Target()) {
    if (m_rep)
        m_rep->references.fetch_add(1, std::memory_order_relaxed);
}

CSharedName CSharedName::Borrowed() const {
    CSharedName borrowed;
    if (m_rep)
        borrowed.m_rep =
            reinterpret_cast<Rep*>(reinterpret_cast<std::uintptr_t>(Target()) | kUncounted);
    return borrowed;
}

CSharedName::CSharedName(CSharedName&& other) noexcept : m_rep(other.m_rep) {
    other.m_rep = nullptr;
}

CSharedName& CSharedName::operator=(CSharedName other) noexcept {
    std::swap(m_rep, other.m_rep);
    return *this;
}

CSharedName::~CSharedName() {
    if (m_rep && m_rep == Target()
        && m_rep->references.fetch_sub(1, std::memory_order_acq_rel) == 1)
        delete m_rep;
}

const std::wstring& CSharedName::Get() const {
    const Rep* rep = Target();
    return rep ? rep->text : kEmpty;
}

} // namespace detail

// ---- CXmlAttribute ----

CXmlAttribute::CXmlAttribute(const CXmlElement* owner, const std::wstring& localName,
                             const std::wstring& value, const std::wstring& ns)
    : CXmlAttribute(owner, NameFor(owner, localName), NameFor(owner, ns), nullptr) {
    detail::CTextSink sink(m_value, m_store);
    detail::AppendWide(sink, value.data(), value.size(), false);
}

detail::CSharedName CXmlAttribute::NameFor(const CXmlElement* owner, const std::wstring& name) {
    return owner ? owner->MakeName(name.data(), name.size())
                 : detail::CSharedName(name.data(), name.size());
}

CXmlAttribute::CXmlAttribute(const CXmlElement* owner, detail::CSharedName localName,
                             detail::CSharedName ns, detail::CTreeStore* store)
    : CInstanceMonitor(L"CXmlAttribute"),
      m_store(store),
      m_owner(owner),
      m_localName(detail::NodeName(localName, store)),
      m_namespace(detail::NodeName(ns, store)) {}

CXmlAttribute::~CXmlAttribute() {
    m_value.Free(m_store);
}

const std::wstring& CXmlAttribute::GetNamespaceURI() const {
    return m_namespace.Get();
}

const std::wstring& CXmlAttribute::GetLocalName() const {
    return m_localName.Get();
}

std::wstring CXmlAttribute::GetValue() const {
    return detail::Expand(m_value.GetData(), m_value.GetSize());
}

void CXmlAttribute::GetValue(std::wstring& value) const {
    detail::ExpandInto(m_value.GetData(), m_value.GetSize(), value);
}

std::wstring CXmlAttribute::GetXPath() const {
    std::wstring path = m_owner ? m_owner->GetXPath() : std::wstring();
    path += L"/@";
    const CXmlDocument* document = m_owner ? m_owner->GetDocument() : nullptr;
    if (document && !m_namespace.IsEmpty()) {
        const std::wstring prefix = document->LookupAliasFromNamespace(GetNamespaceURI().c_str());
        if (!prefix.empty())
            path.append(prefix).append(1, L':');
    }
    return path + GetLocalName();
}

// Most attributes have no namespace, and both checks need one.
bool CXmlAttribute::IsNamespaceAttribute() const {
    if (m_namespace.IsEmpty())
        return false;
    const std::wstring& ns = GetNamespaceURI();
    if (ns != ns::kXsi && ns != ns::kXmlns)
        return false;
    const std::wstring& name = GetLocalName();
    return name == L"xmlns" || name == L"type" || name == L"schemaLocation"
           || name == L"noNamespaceSchemaLocation";
}

bool CXmlAttribute::IsNilAttribute() const {
    return !m_namespace.IsEmpty() && GetLocalName() == L"nil" && GetNamespaceURI() == ns::kXsi;
}

// ---- CXmlElement ----

CXmlElement::CXmlElement(const CXmlDocument* document, const CXmlElement* parent)
    : CXmlElement(document, parent, nullptr) {}

CXmlElement::CXmlElement(const CXmlDocument* document, const CXmlElement* parent,
                         detail::CTreeStore* store)
    : CInstanceMonitor(L"CXmlElement"),
      m_home(store ? reinterpret_cast<std::uintptr_t>(store) | 1
                   : reinterpret_cast<std::uintptr_t>(document)),
      m_parent(parent) {}

CXmlElement::~CXmlElement() {
    DestroyChildren();
    if (m_attributes) {
        for (CXmlAttribute* attribute : *m_attributes)
            delete attribute;
        if (!Store()) // a store destroys the lists it made
            delete m_attributes;
    }
    m_text.Free(Store());
}

// Children are unlinked onto an explicit stack before they are deleted, so no destructor ever
// sees a child or a sibling: depth and breadth cost no stack.
void CXmlElement::DestroyChildren() {
    if (!m_firstChild)
        return;
    std::vector<CXmlElement*> pending;
    auto detachChildren = [&pending](CXmlElement* element) {
        for (CXmlElement* child = element->m_firstChild; child;) {
            CXmlElement* next = child->m_nextSibling;
            child->m_nextSibling = nullptr;
            pending.push_back(child);
            child = next;
        }
        element->m_firstChild = element->m_lastChild = nullptr;
    };
    detachChildren(this);
    while (!pending.empty()) {
        CXmlElement* element = pending.back();
        pending.pop_back();
        detachChildren(element);
        delete element;
    }
}

void CXmlElement::CountNamesOfSubtree() {
    std::vector<CXmlElement*> pending{this};
    while (!pending.empty()) {
        CXmlElement* element = pending.back();
        pending.pop_back();
        element->m_localName = detail::CSharedName(element->m_localName);
        element->m_namespace = detail::CSharedName(element->m_namespace);
        for (CXmlAttribute* attribute : element->GetAttributes()) {
            attribute->m_localName = detail::CSharedName(attribute->m_localName);
            attribute->m_namespace = detail::CSharedName(attribute->m_namespace);
        }
        for (CXmlElement* child = element->m_firstChild; child; child = child->m_nextSibling)
            pending.push_back(child);
    }
}

const CXmlDocument* CXmlElement::GetDocument() const {
    if (detail::CTreeStore* store = Store())
        return store->GetDocument();
    return reinterpret_cast<const CXmlDocument*>(m_home);
}

// Through the document when there is one, so equal names share one string.
detail::CSharedName CXmlElement::MakeName(const wchar_t* text, size_t length) const {
    if (const CXmlDocument* document = GetDocument())
        return detail::NodeName(document->InternName(text, length), Store());
    return detail::CSharedName(text, length);
}

// Children share their parent's storage: a tree is in its document's store or on the heap.
CXmlElement* CXmlElement::CreateNewChildElement() {
    detail::CTreeStore* store = Store();
    CXmlElement* child = new (store) CXmlElement(GetDocument(), this, store);
    if (m_lastChild)
        m_lastChild->m_nextSibling = child;
    else
        m_firstChild = child;
    m_lastChild = child;
    return child;
}

CXmlElement* CXmlElement::RemoveLastChildElement() {
    CXmlElement* last = m_lastChild;
    if (!last)
        return nullptr;
    if (last->Store()) {
        // Handed out, it may outlive the document, its name table and its tree.
        detail::KeepStoreFor(last);
        last->CountNamesOfSubtree();
    }
    if (m_firstChild == last) {
        m_firstChild = m_lastChild = nullptr;
        return last;
    }
    CXmlElement* before = m_firstChild;
    while (before->m_nextSibling != last)
        before = before->m_nextSibling;
    before->m_nextSibling = nullptr;
    m_lastChild = before;
    return last;
}

void CXmlElement::AppendText(const wchar_t* text, int length) {
    if (text && length > 0) {
        detail::CTextSink sink(m_text, Store());
        detail::AppendWide(sink, text, static_cast<size_t>(length), false);
    }
}

void CXmlElement::AppendText(const wchar_t* text) {
    if (text)
        AppendText(text, static_cast<int>(std::wcslen(text)));
}

std::wstring CXmlElement::GetText() const {
    return detail::Expand(m_text.GetData(), m_text.GetSize());
}

void CXmlElement::GetText(std::wstring& text) const {
    detail::ExpandInto(m_text.GetData(), m_text.GetSize(), text);
}

void CXmlElement::SetElementName(const wchar_t* localName) {
    m_localName = MakeName(localName, localName ? std::wcslen(localName) : 0);
}

void CXmlElement::SetNamespace(const wchar_t* ns) {
    m_namespace = MakeName(ns, ns ? std::wcslen(ns) : 0);
}

CXmlAttribute* CXmlElement::AddAttribute(const std::wstring& localName, const std::wstring& value,
                                         const std::wstring& ns) {
    CXmlAttribute* attribute =
        AddAttribute(MakeName(localName.data(), localName.size()), MakeName(ns.data(), ns.size()));
    detail::CTextSink sink(attribute->m_value, Store());
    detail::AppendWide(sink, value.data(), value.size(), false);
    return attribute;
}

CXmlAttribute* CXmlElement::AddAttribute(detail::CSharedName localName, detail::CSharedName ns) {
    detail::CTreeStore* store = Store();
    if (!m_attributes)
        m_attributes = store ? store->NewAttributeList() : new std::vector<CXmlAttribute*>();
    // Room first, so the push cannot throw and leave the new attribute unowned.
    if (m_attributes->size() == m_attributes->capacity())
        m_attributes->reserve(m_attributes->empty() ? 2 : 2 * m_attributes->size());
    m_attributes->push_back(new (store)
                                CXmlAttribute(this, std::move(localName), std::move(ns), store));
    return m_attributes->back();
}

const std::vector<CXmlAttribute*>& CXmlElement::GetAttributes() const {
    return m_attributes ? *m_attributes : kNoAttributes;
}

const std::wstring& CXmlElement::GetNamespaceURI() const {
    return m_namespace.Get();
}

const std::wstring& CXmlElement::GetLocalName() const {
    return m_localName.Get();
}

const CXmlAttribute* CXmlElement::GetAttribute(const std::wstring& ns,
                                               const std::wstring& localName) const {
    for (const CXmlAttribute* attribute : GetAttributes()) {
        if (attribute->GetLocalName() == localName && attribute->GetNamespaceURI() == ns)
            return attribute;
    }
    return nullptr;
}

std::wstring CXmlElement::GetQName() const {
    const CXmlDocument* document = GetDocument();
    if (!m_namespace.IsEmpty() && document) {
        const std::wstring prefix = document->LookupAliasFromNamespace(GetNamespaceURI().c_str());
        if (!prefix.empty())
            return prefix + L':' + GetLocalName();
    }
    return GetLocalName();
}

std::wstring CXmlElement::GetNameWithPredicate() const {
    std::wstring qname = GetQName();
    if (!m_parent)
        return qname;
    int position = 0, count = 0;
    for (const CXmlElement* sibling = m_parent->m_firstChild; sibling;
         sibling = sibling->m_nextSibling) {
        // Only siblings with the same local name can share the QName.
        if (sibling->GetLocalName() != GetLocalName()
            || (sibling != this && sibling->GetQName() != qname))
            continue;
        ++count;
        if (sibling == this)
            position = count;
    }
    if (count > 1)
        qname += L'[' + std::to_wstring(position) + L']';
    return qname;
}

std::wstring CXmlElement::GetXPath() const {
    std::vector<const CXmlElement*> chain;
    for (const CXmlElement* e = this; e; e = e->m_parent)
        chain.push_back(e);
    std::wstring path;
    for (auto it = chain.rbegin(); it != chain.rend(); ++it)
        path.append(1, L'/').append((*it)->GetNameWithPredicate());
    return path;
}

} // namespace QvXmlLib16
