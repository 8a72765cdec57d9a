#include "binding/BindingMessages.h"

#include <QvXmlLib16/Format.h>
#include <QvXmlLib16/QvException.h>
#include <QvXmlLib16/SerializationContext.h>
#include <QvXmlLib16/XmlElement.h>
#include <QvXmlLib16/XmlObjectBase.h>
#include <QvXmlLib16/XmlObjectHelper.h>

namespace QvXmlLib16 {

namespace {

// One token of a namespace restriction. A URI token admits itself and the empty namespace;
// the first token of a list compares with the whole text, as single-token lists always have.
bool TokenAdmits(const std::wstring& token, const std::wstring& uriToCompare,
                 const std::wstring& ns, const std::wstring& target) {
    if (token == L"##any")
        return true;
    if (token == L"##other")
        return ns != target;
    if (token == L"##local")
        return ns.empty();
    if (token == L"##targetNamespace")
        return ns == target;
    return ns == uriToCompare || ns.empty();
}

} // namespace

bool CXmlObjectHelper::DoesElementNameMatch(const CSerializationContext& ctx,
                                            const CXmlElement* element, const std::wstring& name,
                                            const std::wstring& namespaceUri) {
    if (!element || element->GetLocalName() != name)
        return false;
    if (ctx.GetSchemaType() == SchemaType_NoNamespaces || ctx.GetIgnoreNamespaces())
        return true;
    return element->GetNamespaceURI() == namespaceUri;
}

bool CXmlObjectHelper::IsNamespaceValid(const std::wstring& namespaceUri,
                                        const std::wstring& restriction,
                                        const std::wstring& targetNamespace) {
    size_t end = restriction.find(L' ');
    const std::wstring first = restriction.substr(0, end);
    if (TokenAdmits(first, restriction, namespaceUri, targetNamespace))
        return true;
    while (end != std::wstring::npos) {
        const size_t start = end + 1;
        end = restriction.find(L' ', start);
        const std::wstring token = restriction.substr(start, end - start);
        if (!token.empty() && TokenAdmits(token, token, namespaceUri, targetNamespace))
            return true;
    }
    return false;
}

void CXmlObjectHelper::TestNamespace(const std::wstring& namespaceUri,
                                     const std::wstring& restriction,
                                     const std::wstring& targetNamespace) {
    if (!IsNamespaceValid(namespaceUri, restriction, targetNamespace))
        throw CQvInvalidNamespaceException(FormatString(msg::kInvalidNamespaceFmt,
                                                        namespaceUri.c_str(), restriction.c_str(),
                                                        targetNamespace.c_str()),
                                           L"");
}

// ---- the object base's forwarders ----

bool CXmlObjectBase::DoesElementNameMatch(const CSerializationContext& ctx,
                                          const CXmlElement* element, const wchar_t* name,
                                          const wchar_t* namespaceUri) {
    return CXmlObjectHelper::DoesElementNameMatch(ctx, element, name ? name : L"",
                                                  namespaceUri ? namespaceUri : L"");
}

bool CXmlObjectBase::IsNamespaceValid(const wchar_t* namespaceUri, const wchar_t* restriction,
                                      const wchar_t* targetNamespace) {
    return CXmlObjectHelper::IsNamespaceValid(namespaceUri ? namespaceUri : L"",
                                              restriction ? restriction : L"",
                                              targetNamespace ? targetNamespace : L"");
}

void CXmlObjectBase::TestNamespace(const wchar_t* namespaceUri, const wchar_t* restriction,
                                   const wchar_t* targetNamespace) {
    CXmlObjectHelper::TestNamespace(namespaceUri ? namespaceUri : L"",
                                    restriction ? restriction : L"",
                                    targetNamespace ? targetNamespace : L"");
}

} // namespace QvXmlLib16
