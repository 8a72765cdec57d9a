#include "binding/BindingMessages.h"

#include <QvXmlLib16/Format.h>
#include <QvXmlLib16/NamespaceAliasMap.h>
#include <QvXmlLib16/QvException.h>

#include <iterator>

namespace QvXmlLib16 {

namespace {
const wchar_t* OrEmpty(const wchar_t* s) {
    return s ? s : L"";
}
} // namespace

CNamespaceAliasMap::~CNamespaceAliasMap() = default;

void CNamespaceAliasMap::Add(const wchar_t* alias, const wchar_t* namespaceUri) {
    m_map[OrEmpty(namespaceUri)] = OrEmpty(alias);
}

std::wstring CNamespaceAliasMap::GetAliasFromNamespace(const wchar_t* namespaceUri) const {
    return m_map[OrEmpty(namespaceUri)];
}

std::wstring CNamespaceAliasMap::GetNamespaceFromAlias(const wchar_t* alias) const {
    for (const auto& [uri, entryAlias] : m_map) {
        if (entryAlias == OrEmpty(alias))
            return uri;
    }
    throw CQvException(FormatString(msg::kAliasNotFoundFmt, OrEmpty(alias)));
}

bool CNamespaceAliasMap::DoesNamespaceExist(const wchar_t* namespaceUri) const {
    return m_map.find(OrEmpty(namespaceUri)) != m_map.end();
}

bool CNamespaceAliasMap::DoesAliasExist(const wchar_t* alias) const {
    for (const auto& entry : m_map) {
        if (entry.second == OrEmpty(alias))
            return true;
    }
    return false;
}

void CNamespaceAliasMap::RemoveNamespace(const wchar_t* namespaceUri) {
    m_map.erase(OrEmpty(namespaceUri));
}

std::wstring CNamespaceAliasMap::GetNamespaceAt(int index) const {
    if (index < 0 || index >= GetNamespaceCount())
        throw CQvInvalidParamException(
            FormatString(msg::kIndexOutOfRangeFmt, index, GetNamespaceCount()));
    return std::next(m_map.begin(), index)->first;
}

} // namespace QvXmlLib16
