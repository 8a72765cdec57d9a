#pragma once

#include <QvXmlLib16/Export.h>

#include <map>
#include <string>

namespace QvXmlLib16 {

// Namespace URI -> alias (prefix), ordered by URI. Declared on the root element when writing.
class QVXML_API CNamespaceAliasMap {
public:
    CNamespaceAliasMap() = default;
    CNamespaceAliasMap(const CNamespaceAliasMap&) = default;
    CNamespaceAliasMap& operator=(const CNamespaceAliasMap&) = default;
    virtual ~CNamespaceAliasMap();

    // An existing entry for the namespace takes the new alias.
    void Add(const wchar_t* alias, const wchar_t* namespaceUri);
    // Like a map subscript: an unknown namespace is added with an empty alias.
    std::wstring GetAliasFromNamespace(const wchar_t* namespaceUri) const;
    // The namespace of the first entry (in URI order) with this alias; throws CQvException
    // "Namespace alias [%ls] not found" when there is none.
    std::wstring GetNamespaceFromAlias(const wchar_t* alias) const;
    bool DoesNamespaceExist(const wchar_t* namespaceUri) const;
    bool DoesAliasExist(const wchar_t* alias) const;
    void RemoveNamespace(const wchar_t* namespaceUri);

    int GetNamespaceCount() const { return static_cast<int>(m_map.size()); }

    // Throws CQvInvalidParamException "Index %d is out of range, use 0 - %d" outside
    // 0..count-1.
    std::wstring GetNamespaceAt(int index) const;

    const std::map<std::wstring, std::wstring>& GetMap() const { return m_map; }

private:
    mutable std::map<std::wstring, std::wstring> m_map;
};

} // namespace QvXmlLib16
