#include "metadata/MetadataMessages.h"

#include <QvXmlLib16/AttributeInfo.h>
#include <QvXmlLib16/Format.h>
#include <QvXmlLib16/QvException.h>
#include <QvXmlLib16/SerializationContext.h>
#include <QvXmlLib16/Variant.h>
#include <QvXmlLib16/XmlElement.h>
#include <QvXmlLib16/XmlGeneratedClass.h>

namespace QvXmlLib16Data {

using namespace QvXmlLib16;

CAttributeInfo::CAttributeInfo(const wchar_t* name, const wchar_t* ns, int propertyIndex,
                               bool optional, const wchar_t* defaultValue)
    : m_attributeName(name ? name : L""),
      m_namespace(ns ? ns : L""),
      m_propertyIndex(propertyIndex),
      m_optional(optional),
      m_defaultValue(defaultValue ? defaultValue : L"") {}

CAttributeInfo::~CAttributeInfo() = default;

void CAttributeInfo::InvokePropertyGet(CXmlGeneratedClass* object, QvVariant& value) const {
    try {
        object->AccessProperty(m_propertyIndex, true, value);
    } catch (const CQvException& e) {
        throw CQvValidationException(
            FormatString(msg::kPropertyGetFailedFmt, m_attributeName.c_str()), L"", e);
    }
}

void CAttributeInfo::InvokePropertySet(CXmlGeneratedClass* object, QvVariant& value,
                                       const CXmlAttribute& attribute) const {
    try {
        object->AccessProperty(m_propertyIndex, false, value);
    } catch (const CQvException& e) {
        throw CQvValidationException(
            FormatString(msg::kAttributeSetFailedFmt, attribute.GetValue().c_str()),
            attribute.GetXPath(), e);
    }
}

void CAttributeInfo::ReadProperty(const CXmlGeneratedClass* object, QvVariant& value) const {
    InvokePropertyGet(const_cast<CXmlGeneratedClass*>(object), value);
}

bool CAttributeInfo::IsThisAttribute(const CSerializationContext& ctx,
                                     CXmlAttribute* attribute) const {
    if (!attribute || attribute->GetLocalName() != m_attributeName)
        return false;
    return ctx.GetIgnoreNamespaces() || attribute->GetNamespaceURI() == m_namespace;
}

} // namespace QvXmlLib16Data
