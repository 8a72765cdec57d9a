#include "xml/CompactText.h"

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

CSharedName::CSharedName(const CSharedName& other) : m_rep(other.m_rep) {
    if (m_rep)
        m_rep->references.fetch_add(1, std::memory_order_relaxed);
}

CSharedName::CSharedName(CSharedName&& other) noexcept : m_rep(other.m_rep) {
    other.m_rep = nullptr;
}

CSharedName& CSharedName::operator=(CSharedName other) noexcept {
    std::swap(m_rep, other.m_rep);
    return *this;
}

CSharedName::~CSharedName() {
    if (m_rep && m_rep->references.fetch_sub(1, std::memory_order_acq_rel) == 1)
        delete m_rep;
}

const std::wstring& CSharedName::Get() const {
    return m_rep ? m_rep->text : kEmpty;
}

} // namespace detail

// ---- CXmlAttribute ----

CXmlAttribute::CXmlAttribute(const CXmlElement* owner, const std::wstring& localName,
                             const std::wstring& value, const std::wstring& ns)
    : CXmlAttribute(owner, NameFor(owner, localName), detail::Compact(value.data(), value.size()),
                    NameFor(owner, ns)) {}

detail::CSharedName CXmlAttribute::NameFor(const CXmlElement* owner, const std::wstring& name) {
    return owner ? owner->MakeName(name.data(), name.size())
                 : detail::CSharedName(name.data(), name.size());
}

CXmlAttribute::CXmlAttribute(const CXmlElement* owner, detail::CSharedName localName,
                             std::string value, detail::CSharedName ns)
    : CInstanceMonitor(L"CXmlAttribute"),
      m_owner(owner),
      m_localName(std::move(localName)),
      m_namespace(std::move(ns)),
      m_value(std::move(value)) {}

CXmlAttribute::~CXmlAttribute() = default;

const std::wstring& CXmlAttribute::GetNamespaceURI() const {
    return m_namespace.Get();
}

const std::wstring& CXmlAttribute::GetLocalName() const {
    return m_localName.Get();
}

std::wstring CXmlAttribute::GetValue() const {
    return detail::Expand(m_value);
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

bool CXmlAttribute::IsNamespaceAttribute() const {
    const std::wstring& ns = GetNamespaceURI();
    if (ns != ns::kXsi && ns != ns::kXmlns)
        return false;
    const std::wstring& name = GetLocalName();
    return name == L"xmlns" || name == L"type" || name == L"schemaLocation"
           || name == L"noNamespaceSchemaLocation";
}

bool CXmlAttribute::IsNilAttribute() const {
    return GetLocalName() == L"nil" && GetNamespaceURI() == ns::kXsi;
}

// ---- CXmlElement ----

CXmlElement::CXmlElement(const CXmlDocument* document, const CXmlElement* parent)
    : CInstanceMonitor(L"CXmlElement"),
      m_document(document),
      m_parent(parent) {}

CXmlElement::~CXmlElement() {
    DestroyChildren();
    if (m_attributes) {
        for (CXmlAttribute* attribute : *m_attributes)
            delete attribute;
    }
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

// Through the document when there is one, so equal names share one string.
detail::CSharedName CXmlElement::MakeName(const wchar_t* text, size_t length) const {
    if (m_document)
        return m_document->InternName(text, length);
    return detail::CSharedName(text, length);
}

CXmlElement* CXmlElement::CreateNewChildElement() {
    CXmlElement* child = new CXmlElement(m_document, this);
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
    if (text && length > 0)
        detail::AppendWide(m_text, text, static_cast<size_t>(length), false);
}

void CXmlElement::AppendText(const wchar_t* text) {
    if (text)
        AppendText(text, static_cast<int>(std::wcslen(text)));
}

std::wstring CXmlElement::GetText() const {
    return detail::Expand(m_text);
}

void CXmlElement::SetElementName(const wchar_t* localName) {
    m_localName = MakeName(localName, localName ? std::wcslen(localName) : 0);
}

void CXmlElement::SetNamespace(const wchar_t* ns) {
    m_namespace = MakeName(ns, ns ? std::wcslen(ns) : 0);
}

CXmlAttribute* CXmlElement::AddAttribute(const std::wstring& localName, const std::wstring& value,
                                         const std::wstring& ns) {
    return AddAttribute(MakeName(localName.data(), localName.size()),
                        detail::Compact(value.data(), value.size()),
                        MakeName(ns.data(), ns.size()));
}

CXmlAttribute* CXmlElement::AddAttribute(detail::CSharedName localName, std::string value,
                                         detail::CSharedName ns) {
    if (!m_attributes)
        m_attributes.reset(new std::vector<CXmlAttribute*>());
    m_attributes->push_back(
        new CXmlAttribute(this, std::move(localName), std::move(value), std::move(ns)));
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
    if (!m_namespace.IsEmpty() && m_document) {
        const std::wstring prefix = m_document->LookupAliasFromNamespace(GetNamespaceURI().c_str());
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
