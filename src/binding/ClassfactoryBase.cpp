#include <QvXmlLib16/ClassfactoryBase.h>
#include <QvXmlLib16/Namespaces.h>
#include <QvXmlLib16/XmlDocument.h>
#include <QvXmlLib16/XmlElement.h>

namespace QvXmlLib16 {

namespace {

std::wstring TypeValue(const CXmlElement* element) {
    const CXmlAttribute* type = element ? element->GetAttribute(ns::kXsi, L"type") : nullptr;
    return type ? type->GetValue() : std::wstring();
}

} // namespace

CClassfactoryBase::~CClassfactoryBase() = default;

std::wstring CClassfactoryBase::GetElementType(const CXmlElement* element) {
    const std::wstring value = TypeValue(element);
    const size_t colon = value.find(L':');
    return colon == std::wstring::npos ? value : value.substr(colon + 1);
}

std::wstring CClassfactoryBase::GetElementTypeNamespaceUri(const CXmlElement* element) {
    const std::wstring value = TypeValue(element);
    const size_t colon = value.find(L':');
    if (colon == std::wstring::npos || !element->GetDocument())
        return std::wstring();
    return element->GetDocument()->LookupNamespaceFromAlias(value.substr(0, colon).c_str());
}

} // namespace QvXmlLib16
