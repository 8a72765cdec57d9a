#include <QvXmlLib16/Namespaces.h>
#include <QvXmlLib16/XmlDocument.h>
#include <QvXmlLib16/XmlElement.h>

#include <cwchar>

namespace QvXmlLib16 {

namespace {

const std::wstring kEmpty;

const std::wstring& NameOrEmpty(const SharedName& name) {
    return name ? *name : kEmpty;
}

// Through the element's document when it has one, so equal names share one string.
SharedName MakeName(const CXmlElement* element, const wchar_t* text, size_t length) {
    if (length == 0)
        return nullptr;
    if (element && element->GetDocument())
        return element->GetDocument()->InternName(text, length);
    return std::make_shared<const std::wstring>(text, length);
}

SharedName MakeName(const CXmlElement* element, const std::wstring& text) {
    return MakeName(element, text.data(), text.size());
}

} // namespace

// ---- CXmlAttribute ----

CXmlAttribute::CXmlAttribute(const CXmlElement* owner, const std::wstring& localName,
                             const std::wstring& value, const std::wstring& ns)
    : CXmlAttribute(owner, MakeName(owner, localName), value, MakeName(owner, ns)) {}

CXmlAttribute::CXmlAttribute(const CXmlElement* owner, SharedName localName, std::wstring value,
                             SharedName ns)
    : CInstanceMonitor(L"CXmlAttribute"),
      m_owner(owner),
      m_localName(std::move(localName)),
      m_value(std::move(value)),
      m_namespace(std::move(ns)) {}

const std::wstring& CXmlAttribute::GetNamespaceURI() const {
    return NameOrEmpty(m_namespace);
}

const std::wstring& CXmlAttribute::GetLocalName() const {
    return NameOrEmpty(m_localName);
}

std::wstring CXmlAttribute::GetXPath() const {
    std::wstring path = m_owner ? m_owner->GetXPath() : std::wstring();
    path += L"/@";
    const CXmlDocument* document = m_owner ? m_owner->GetDocument() : nullptr;
    if (document && m_namespace) {
        const std::wstring prefix = document->LookupAliasFromNamespace(m_namespace->c_str());
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
    for (CXmlAttribute* attribute : m_attributes)
        delete attribute;
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
    if (!text || length <= 0)
        return;
    // Geometric growth keeps text that arrives in many small pieces linear overall.
    const size_t needed = m_text.size() + static_cast<size_t>(length);
    if (!m_text.empty() && needed > m_text.capacity())
        m_text.reserve(std::max(2 * m_text.capacity(), needed));
    m_text.append(text, static_cast<size_t>(length));
}

void CXmlElement::AppendText(const wchar_t* text) {
    if (text)
        AppendText(text, static_cast<int>(std::wcslen(text)));
}

void CXmlElement::SetElementName(const wchar_t* localName) {
    m_localName =
        MakeName(this, localName ? localName : L"", localName ? std::wcslen(localName) : 0);
}

void CXmlElement::SetNamespace(const wchar_t* ns) {
    m_namespace = MakeName(this, ns ? ns : L"", ns ? std::wcslen(ns) : 0);
}

CXmlAttribute* CXmlElement::AddAttribute(const std::wstring& localName, const std::wstring& value,
                                         const std::wstring& ns) {
    return AddAttribute(MakeName(this, localName), value, MakeName(this, ns));
}

CXmlAttribute* CXmlElement::AddAttribute(SharedName localName, std::wstring value, SharedName ns) {
    m_attributes.push_back(
        new CXmlAttribute(this, std::move(localName), std::move(value), std::move(ns)));
    return m_attributes.back();
}

const std::wstring& CXmlElement::GetNamespaceURI() const {
    return NameOrEmpty(m_namespace);
}

const std::wstring& CXmlElement::GetLocalName() const {
    return NameOrEmpty(m_localName);
}

const CXmlAttribute* CXmlElement::GetAttribute(const std::wstring& ns,
                                               const std::wstring& localName) const {
    for (const CXmlAttribute* attribute : m_attributes) {
        if (attribute->GetLocalName() == localName && attribute->GetNamespaceURI() == ns)
            return attribute;
    }
    return nullptr;
}

std::wstring CXmlElement::GetQName() const {
    if (m_namespace && m_document) {
        const std::wstring prefix = m_document->LookupAliasFromNamespace(m_namespace->c_str());
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
