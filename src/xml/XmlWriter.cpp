#include "xml/XmlMessages.h"

#include <QvXmlLib16/Namespaces.h>
#include <QvXmlLib16/QvException.h>
#include <QvXmlLib16/XmlWriter.h>

namespace QvXmlLib16 {

const wchar_t* const CXmlWriter::XML_NAMESPACE = ns::kXml;

// ---- CXmlWriterContext ----

CXmlWriter::CXmlWriterContext::CXmlWriterContext(const std::wstring& localName,
                                                 const std::wstring& ns, CXmlWriterContext* parent)
    : CInstanceMonitor(L"CXmlWriterContext"),
      m_depth(parent ? parent->m_depth + 1 : 0),
      m_namespaceUri(ns),
      m_localName(localName),
      m_parent(parent),
      m_effective(parent ? parent->m_effective : this) {
    if (!parent) {
        // Nothing to inherit from: start with an empty map of our own.
        m_map = new NamespaceMap();
        m_inherits = false;
        m_ownsMap = true;
    }
}

CXmlWriter::CXmlWriterContext::CXmlWriterContext(const std::wstring& localName,
                                                 const std::wstring& ns,
                                                 const std::wstring& defaultNs, NamespaceMap* map,
                                                 CXmlWriterContext* parent)
    : CInstanceMonitor(L"CXmlWriterContext"),
      m_depth(0),
      m_namespaceUri(ns),
      m_localName(localName),
      m_parent(parent),
      m_defaultNamespace(defaultNs),
      m_map(new NamespaceMap(map ? *map : NamespaceMap())),
      m_inherits(false),
      m_ownsMap(true) {}

void CXmlWriter::CXmlWriterContext::Reset(const std::wstring& localName, const std::wstring& ns,
                                          CXmlWriterContext* parent) {
    ReleaseMap();
    m_childCount = 0;
    m_startTagOpen = true;
    m_depth = parent->m_depth + 1;
    // A spare context is taken again at its own depth, where the namespace seldom changes.
    if (m_namespaceUri != ns)
        m_namespaceUri.assign(ns);
    m_localName.assign(localName);
    m_parent = parent;
    m_state = ContextState_Initial;
    m_writerData = 0;
    m_prefix.clear();
    m_defaultNamespace.clear();
    m_inherits = true;
    m_effective = parent->m_effective;
}

void CXmlWriter::CXmlWriterContext::ReleaseMap() {
    if (m_ownsMap)
        delete m_map;
    m_map = nullptr;
    m_ownsMap = false;
}

CXmlWriter::CXmlWriterContext::~CXmlWriterContext() {
    ReleaseMap();
    // The chain above goes too; a loop, so a deep chain costs no stack.
    CXmlWriterContext* parent = m_parent;
    while (parent) {
        CXmlWriterContext* next = parent->m_parent;
        parent->m_parent = nullptr;
        delete parent;
        parent = next;
    }
}

const std::wstring& CXmlWriter::CXmlWriterContext::GetDefaultNamespace() const {
    return Effective().m_defaultNamespace;
}

CXmlWriter::NamespaceMap* CXmlWriter::CXmlWriterContext::GetNamespaceMap() const {
    return Effective().m_map;
}

void CXmlWriter::CXmlWriterContext::StopInheriting() {
    if (!m_inherits)
        return;
    const CXmlWriterContext& source = Effective();
    m_map = new NamespaceMap(*source.m_map);
    m_defaultNamespace = source.m_defaultNamespace;
    m_ownsMap = true;
    m_inherits = false;
    m_effective = this;
}

void CXmlWriter::CXmlWriterContext::SetDefaultNamespace(const std::wstring& ns) {
    StopInheriting();
    m_defaultNamespace = ns;
}

void CXmlWriter::CXmlWriterContext::SetNamespaceMapValue(const std::wstring& ns,
                                                         const std::wstring& prefix) {
    StopInheriting();
    (*m_map)[ns] = prefix;
}

std::wstring& CXmlWriter::CXmlWriterContext::GetNamespaceMapValue(const std::wstring& ns) {
    return (*GetNamespaceMap())[ns];
}

std::wstring& CXmlWriter::CXmlWriterContext::GetNamespaceMapValue(const wchar_t* ns) {
    return GetNamespaceMapValue(std::wstring(ns ? ns : L""));
}

// ---- CXmlWriter ----

CXmlWriter::CXmlWriter(const wchar_t* className) : CInstanceMonitor(className) {
    m_namespaceMap[ns::kXml] = L"xml";
}

CXmlWriter::~CXmlWriter() {
    delete m_current;
    for (CXmlWriterContext* spare : m_spareContexts)
        delete spare;
}

void CXmlWriter::Close() {
    if (m_current)
        throw CQvException(msg::kElementNotClosed);
}

void CXmlWriter::SetDefaultNamespace(const std::wstring& ns) {
    if (m_current)
        m_current->SetDefaultNamespace(ns);
    else
        m_defaultNamespace = ns;
}

void CXmlWriter::AddNamespace(const std::wstring& prefix, const std::wstring& ns) {
    if (m_current)
        m_current->SetNamespaceMapValue(ns, prefix);
    else
        m_namespaceMap[ns] = prefix;
}

void CXmlWriter::SetContextState(ContextState state) {
    if (m_current)
        m_current->m_state = state;
}

std::wstring CXmlWriter::NsIntToString(int n) {
    std::wstring prefix(2, L'A');
    prefix[0] = static_cast<wchar_t>(L'A' + n / 26);
    prefix[1] = static_cast<wchar_t>(L'A' + n % 26);
    return prefix;
}

std::wstring CXmlWriter::GetUniquePrefix(const NamespaceMap& map) {
    for (int n = 0;; ++n) {
        std::wstring candidate = NsIntToString(n);
        bool used = false;
        for (const auto& entry : map) {
            if (entry.second == candidate) {
                used = true;
                break;
            }
        }
        if (!used)
            return candidate;
    }
}

CXmlWriter::CXmlWriterContext& CXmlWriter::PushContext(const std::wstring& localName,
                                                       const std::wstring& ns) {
    if (m_current && !m_spareContexts.empty()) {
        CXmlWriterContext* context = m_spareContexts.back();
        m_spareContexts.pop_back();
        context->Reset(localName, ns, m_current);
        m_current = context;
    } else if (m_current) {
        m_current = new CXmlWriterContext(localName, ns, m_current);
    } else
        m_current =
            new CXmlWriterContext(localName, ns, m_defaultNamespace, &m_namespaceMap, nullptr);
    return *m_current;
}

void CXmlWriter::PopContext() {
    CXmlWriterContext* popped = m_current;
    if (!popped)
        return;
    m_current = popped->m_parent;
    popped->m_parent = nullptr;
    // Child contexts are kept for reuse; as many as the deepest nesting so far.
    if (m_current && m_spareContexts.size() < 256)
        m_spareContexts.push_back(popped);
    else
        delete popped;
}

CXmlWriter::PrefixChoice CXmlWriter::EnterElement(const std::wstring& localName,
                                                  const std::wstring& ns) {
    CXmlWriterContext& context = PushContext(localName, ns);
    PrefixChoice choice = ElementPrefix(ns);
    if (!choice.prefix.empty()) // a pushed context starts without one
        context.m_prefix = choice.prefix;
    return choice;
}

// An empty prefix in a map means "no prefix": such an entry never names an element or
// attribute, so a real one is generated in its place.
CXmlWriter::PrefixChoice CXmlWriter::MappedOrGeneratedPrefix(const std::wstring& ns) {
    const NamespaceMap& map = *m_current->GetNamespaceMap();
    const auto it = map.find(ns);
    if (it != map.end() && !it->second.empty())
        return {it->second, false};
    std::wstring prefix = GetUniquePrefix(map);
    m_current->SetNamespaceMapValue(ns, prefix);
    return {prefix, true};
}

CXmlWriter::PrefixChoice CXmlWriter::ElementPrefix(const std::wstring& ns) {
    if (ns.empty() || ns == m_current->GetDefaultNamespace())
        return {std::wstring(), false};
    return MappedOrGeneratedPrefix(ns);
}

CXmlWriter::PrefixChoice CXmlWriter::AttributePrefix(const std::wstring& ns) {
    if (ns.empty())
        return {std::wstring(), false};
    return MappedOrGeneratedPrefix(ns);
}

} // namespace QvXmlLib16
