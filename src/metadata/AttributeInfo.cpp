#include "foundation/VariantText.h"
#include "metadata/MetadataMessages.h"
#include "metadata/ReadScratch.h"

#include <QvXmlLib16/AttributeInfo.h>
#include <QvXmlLib16/Format.h>
#include <QvXmlLib16/QvException.h>
#include <QvXmlLib16/SerializationContext.h>
#include <QvXmlLib16/Variant.h>
#include <QvXmlLib16/XmlElement.h>
#include <QvXmlLib16/XmlGeneratedClass.h>
#include <QvXmlLib16/XmlObjectHelper.h>
#include <QvXmlLib16/XmlWriter.h>

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

namespace QvXmlLib16Data {

using namespace QvXmlLib16;

namespace {

// Optional attributes equal to their default may be left out when the context asks for it.
bool SkipAsDefault(const CSerializationContext& ctx, bool optional,
                   const std::wstring& defaultValue, const std::wstring& text) {
    return optional && !defaultValue.empty() && ctx.GetNoOptionalAttributeDefaultOutput()
           && text == defaultValue;
}

void RequireFound(bool optional, bool found, const std::wstring& name) {
    if (!optional && !found)
        throw CQvValidationException(FormatString(msg::kRequiredAttributeMissingFmt, name.c_str()),
                                     L"");
}

} // namespace

// ---- primitive attributes ----

CAttributeInfoPrimitive::CAttributeInfoPrimitive(const wchar_t* name, const wchar_t* ns,
                                                 int propertyIndex, bool optional, ItemType type,
                                                 const wchar_t* format,
                                                 CWhitespaceUtils::WhitespaceRule rule,
                                                 const CPrimitiveRestrictions& restrictions,
                                                 const wchar_t* defaultValue)
    : CAttributeInfo(name, ns, propertyIndex, optional, defaultValue),
      m_restrictions(restrictions),
      m_itemType(type),
      m_numberFormat(format ? format : L""),
      m_whitespaceRule(rule) {}

// A required attribute skips the validity test: an unset member fails in the conversion.
void CAttributeInfoPrimitive::AttributeToXml(const CSerializationContext& ctx,
                                             const CXmlGeneratedClass* object,
                                             CXmlWriter* writer) const {
    QvVariant value;
    ReadProperty(object, value);
    if (m_optional && !value.IsValid())
        return;
    std::wstring scratch;
    const std::wstring& text = detail::VariantText(value, m_numberFormat.c_str(), scratch);
    if (SkipAsDefault(ctx, m_optional, m_defaultValue, text))
        return;
    // As CheckRestriction, without its copy of the value.
    CXmlObjectHelper::CheckRestriction(m_attributeName.c_str(), value, m_itemType, m_restrictions);
    writer->WriteAttributeString(m_attributeName, m_namespace, text, value.GetItemType());
}

bool CAttributeInfoPrimitive::AttributeFromXml(const CSerializationContext&,
                                               CXmlGeneratedClass* object,
                                               CXmlAttribute* attribute) {
    if (!attribute || attribute->GetLocalName() != m_attributeName
        || attribute->GetNamespaceURI() != m_namespace)
        return false;
    QvVariant value;
    std::wstring& text = detail::ReadScratch();
    attribute->GetValue(text);
    value.FromString(text, m_itemType, m_whitespaceRule);
    InvokePropertySet(object, value, *attribute);
    return true;
}

bool CAttributeInfoPrimitive::Validate(const CSerializationContext&, bool found) const {
    RequireFound(m_optional, found, m_attributeName);
    return true;
}

void CAttributeInfoPrimitive::CheckRestriction(QvVariant value) const {
    CXmlObjectHelper::CheckRestriction(m_attributeName.c_str(), value, m_itemType, m_restrictions);
}

// ---- enumerated attributes ----

CAttributeInfoEnum::CAttributeInfoEnum(const wchar_t* name, const wchar_t* ns, int propertyIndex,
                                       bool optional, const wchar_t* (*toString)(int),
                                       int (*fromString)(const wchar_t*),
                                       const wchar_t* defaultValue)
    : CAttributeInfo(name, ns, propertyIndex, optional, defaultValue),
      m_fromString(fromString),
      m_toString(toString) {}

void CAttributeInfoEnum::AttributeToXml(const CSerializationContext& ctx,
                                        const CXmlGeneratedClass* object,
                                        CXmlWriter* writer) const {
    QvVariant value;
    ReadProperty(object, value);
    if (m_optional && !value.IsValid())
        return;
    const wchar_t* lexical = m_toString ? m_toString(static_cast<int>(value.GetI4())) : nullptr;
    const std::wstring text = lexical ? lexical : L"";
    if (SkipAsDefault(ctx, m_optional, m_defaultValue, text))
        return;
    writer->WriteAttributeString(m_attributeName, m_namespace, text, ItemType_string);
}

bool CAttributeInfoEnum::AttributeFromXml(const CSerializationContext& ctx,
                                          CXmlGeneratedClass* object, CXmlAttribute* attribute) {
    if (!IsThisAttribute(ctx, attribute))
        return false;
    QvVariant value;
    value.SetI4(m_fromString ? m_fromString(attribute->GetValue().c_str()) : 0);
    InvokePropertySet(object, value, *attribute);
    return true;
}

bool CAttributeInfoEnum::Validate(const CSerializationContext&, bool found) const {
    RequireFound(m_optional, found, m_attributeName);
    return true;
}

} // namespace QvXmlLib16Data
