#include "foundation/BooleanText.h"
#include "foundation/VariantText.h"
#include "metadata/MetadataMessages.h"
#include "metadata/ReadScratch.h"

#include <QvXmlLib16/ElementInfo.h>
#include <QvXmlLib16/Format.h>
#include <QvXmlLib16/QvException.h>
#include <QvXmlLib16/Variant.h>
#include <QvXmlLib16/XmlCollectionBase.h>
#include <QvXmlLib16/XmlElement.h>
#include <QvXmlLib16/XmlGeneratedClass.h>
#include <QvXmlLib16/XmlObjectHelper.h>
#include <QvXmlLib16/XmlWriter.h>

namespace QvXmlLib16Data {

using namespace QvXmlLib16;

namespace {

std::wstring OrEmpty(const wchar_t* s) {
    return s ? s : L"";
}

} // namespace

// ---- CParentElementInfo ----

CParentElementInfo::CParentElementInfo(XmlElementGroupType group, XmlElementType type,
                                       const wchar_t* typeName, const wchar_t* typeNamespace,
                                       bool unknownAttributesAreErrors, bool writeType,
                                       int valuePropertyIndex, ItemType valueType,
                                       const wchar_t* valueFormat, bool valueIsRawString)
    : m_groupType(group),
      m_elementType(type),
      m_typeName(OrEmpty(typeName)),
      m_typeNamespace(OrEmpty(typeNamespace)),
      m_unknownAttributesAreErrors(unknownAttributesAreErrors),
      m_writeType(writeType),
      m_valuePropertyIndex(valuePropertyIndex),
      m_valueType(valueType),
      m_valueFormat(OrEmpty(valueFormat)),
      m_valueIsRawString(valueIsRawString) {}

CParentElementInfo::~CParentElementInfo() = default;

// ---- CElementInfo ----

CElementInfo::CElementInfo(const wchar_t* name, const wchar_t* ns, int propertyIndex)
    : m_elementName(OrEmpty(name)),
      m_namespace(OrEmpty(ns)),
      m_propertyIndex(propertyIndex) {}

CElementInfo::CElementInfo(const wchar_t* name, const wchar_t* ns, int propertyIndex, bool nillable,
                           EnumToString toString, EnumFromString fromString,
                           const wchar_t* defaultValue)
    : m_elementName(OrEmpty(name)),
      m_namespace(OrEmpty(ns)),
      m_propertyIndex(propertyIndex),
      m_defaultValue(OrEmpty(defaultValue)),
      m_nillable(nillable),
      m_enumToString(toString),
      m_enumFromString(fromString) {}

CElementInfo::CElementInfo(const wchar_t* name, const wchar_t* ns, int propertyIndex, bool nillable,
                           ItemType type, const wchar_t* format,
                           CWhitespaceUtils::WhitespaceRule rule,
                           const CPrimitiveRestrictions& restrictions, const wchar_t* defaultValue)
    : m_elementName(OrEmpty(name)),
      m_namespace(OrEmpty(ns)),
      m_propertyIndex(propertyIndex),
      m_restrictions(restrictions),
      m_itemType(type),
      m_numberFormat(OrEmpty(format)),
      m_whitespaceRule(rule),
      m_defaultValue(OrEmpty(defaultValue)),
      m_nillable(nillable),
      m_isPrimitive(true) {}

CElementInfo::~CElementInfo() = default;

bool CElementInfo::Validate(const CSerializationContext&, const CXmlGeneratedClass*, bool,
                            bool) const {
    throw CQvException(msg::kNotImplemented);
}

void CElementInfo::PseudoChildAttributeToXml(const CSerializationContext&,
                                             const CXmlGeneratedClass*, CXmlWriter*) const {}

void CElementInfo::InvokePropertyGet(CXmlGeneratedClass* object, QvVariant& value) const {
    try {
        object->AccessProperty(m_propertyIndex, true, value);
    } catch (const CQvException& e) {
        throw CQvValidationException(
            FormatString(msg::kPropertyGetFailedFmt, m_elementName.c_str()), L"", e);
    }
}

void CElementInfo::InvokePropertySet(CXmlGeneratedClass* object, QvVariant& value,
                                     const CXmlElement& element) const {
    try {
        object->AccessProperty(m_propertyIndex, false, value);
    } catch (const CQvException& e) {
        throw CQvValidationException(msg::kPropertySetFailed, element.GetXPath(), e);
    }
}

// Reading a member does not change the object, whatever the accessor's signature says.
void CElementInfo::ReadProperty(const CXmlGeneratedClass* object, QvVariant& value) const {
    InvokePropertyGet(const_cast<CXmlGeneratedClass*>(object), value);
}

bool CElementInfo::IsThisElement(const CSerializationContext& ctx,
                                 const CXmlElement* element) const {
    if (!element || element->GetLocalName() != m_elementName)
        return false;
    return ctx.GetIgnoreNamespaces() || element->GetNamespaceURI() == m_namespace;
}

void CElementInfo::CheckRestriction(const QvVariant& value) const {
    if (!m_isPrimitive)
        throw CQvException(msg::kCannotCheckRestriction + value.GetType());
    CXmlObjectHelper::CheckRestriction(m_elementName.c_str(), value, m_itemType, m_restrictions);
}

CXmlElement* CElementInfo::FromXml_Int(CXmlObjectBase* object, CXmlElement* element,
                                       CXmlElement* firstChild, const CSerializationContext& ctx,
                                       bool optionalChoice) {
    return CXmlObjectBase::FromXml_Int(object, element, firstChild, ctx, optionalChoice);
}

void CElementInfo::AttributesToXml_Int(const CXmlObjectBase* object, CXmlWriter* writer,
                                       const CSerializationContext& ctx) const {
    CXmlObjectBase::AttributesToXml_Int(object, writer, ctx);
}

std::wstring CElementInfo::GetAnyDefaultNamespace(const wchar_t* restriction,
                                                  const wchar_t* defaultNamespace,
                                                  const wchar_t* targetNamespace) {
    std::wstring token = OrEmpty(restriction);
    const size_t space = token.find(L' ');
    // A list starting with a ## keyword is judged by that keyword.
    if (space != std::wstring::npos && token.size() >= 3 && token.compare(0, 2, L"##") == 0)
        token.resize(space);
    if (token == L"##any")
        return OrEmpty(defaultNamespace);
    if (token == L"##other")
        return OrEmpty(defaultNamespace).empty() ? L"DefaultNamespace" : L"";
    if (token == L"##targetNamespace")
        return OrEmpty(targetNamespace);
    return std::wstring(); // ##local, a URI or a list of them
}

// ---- shared writers ----

bool CElementInfo::ElementToXmlCls(const CSerializationContext& ctx,
                                   const CXmlGeneratedClass* object, CXmlWriter* writer,
                                   bool optionalChoice) const {
    QvVariant value;
    ReadProperty(object, value);
    const CSmartPtr<CXmlObjectBase> member = value.GetXmlObject();
    if (member.IsNull())
        return false;
    CXmlObjectBase::ToXml_Int(member, writer, false, m_namespace.c_str(), ctx, optionalChoice);
    return true;
}

// The items are bracketed by context states 1 and 3, which the JSON writer turns into an array.
bool CElementInfo::ElementToXmlCol(const CSerializationContext& ctx,
                                   const CXmlGeneratedClass* object, CXmlWriter* writer) const {
    QvVariant value;
    ReadProperty(object, value);
    const CSmartPtr<CXmlCollectionBase> collection = value.GetXmlCollection();
    if (collection.IsNull() || collection->GetCount() < 1)
        return false;
    writer->SetContextState(CXmlWriter::ContextState_CollectionStart);
    CXmlObjectBase::ToXml_Int(collection->GetBase(), writer, false, m_namespace.c_str(), ctx,
                              false);
    writer->SetContextState(CXmlWriter::ContextState_CollectionEnd);
    return true;
}

void CElementInfo::WriteNilElement(CXmlWriter* writer) const {
    writer->WriteStartElement(m_elementName, m_namespace);
    writer->WriteAttributeNil();
    writer->WriteEndElement();
}

bool CElementInfo::ElementToXmlPrim(const CSerializationContext&, const CXmlGeneratedClass* object,
                                    CXmlWriter* writer) const {
    QvVariant value;
    ReadProperty(object, value);
    if (value.IsNil()) {
        WriteNilElement(writer);
        return true;
    }
    if (!value.IsValid())
        return false;
    std::wstring scratch;
    const std::wstring& text = detail::VariantText(value, m_numberFormat.c_str(), scratch);
    // The schema default is written as such (the writer may leave it out) and not checked.
    const bool isDefault = !m_defaultValue.empty() && text == m_defaultValue;
    if (!isDefault)
        CheckRestriction(value);
    writer->WriteStartElement(m_elementName, m_namespace);
    writer->WriteString(text, value.GetItemType(), isDefault);
    writer->WriteEndElement();
    return true;
}

bool CElementInfo::ElementToXmlEnum(const CSerializationContext&, const CXmlGeneratedClass* object,
                                    CXmlWriter* writer, EnumToString toString) const {
    QvVariant value;
    ReadProperty(object, value);
    if (value.IsNil()) {
        WriteNilElement(writer);
        return true;
    }
    if (!value.IsValid())
        return false;
    const wchar_t* lexical = toString ? toString(static_cast<int>(value.GetI4())) : nullptr;
    const std::wstring text = OrEmpty(lexical);
    const bool isDefault = !m_defaultValue.empty() && text == m_defaultValue;
    writer->WriteStartElement(m_elementName, m_namespace);
    writer->WriteString(text, ItemType_string, isDefault);
    writer->WriteEndElement();
    return true;
}

// ---- shared readers ----

bool CElementInfo::ReadNilAttributes(const CSerializationContext& ctx,
                                     const CXmlElement& element) const {
    bool nil = false;
    for (const CXmlAttribute* attribute : element.GetAttributes()) {
        if (!attribute->IsNilAttribute()) {
            if (!ctx.GetIgnoreUnknownAttributes())
                throw CQvValidationException(msg::kUnexpectedAttribute, attribute->GetXPath());
            continue;
        }
        const std::wstring text = attribute->GetValue();
        const detail::BooleanText value = detail::ReadBooleanText(text);
        if (value == detail::BooleanText::False) {
            nil = false;
        } else if (!m_nillable) {
            throw CQvValidationException(msg::kNilOnNonNillable, element.GetXPath());
        } else if (value == detail::BooleanText::True) {
            nil = true;
        } else {
            throw CQvValidationException(FormatString(msg::kBadNilValueFmt, text.c_str()),
                                         attribute->GetXPath());
        }
    }
    return nil;
}

void CElementInfo::TextOrDefault(const CXmlElement& element, std::wstring& text) const {
    element.GetText(text);
    if (text.empty() && !m_defaultValue.empty())
        text = m_defaultValue;
}

// A nil element leaves the member as it was: the accessor is not called.
void CElementInfo::ElementFromXmlPrim(const CSerializationContext& ctx, CXmlGeneratedClass* object,
                                      CXmlElement** current) const {
    CXmlElement& element = **current;
    if (!ReadNilAttributes(ctx, element)) {
        QvVariant value;
        std::wstring& text = detail::ReadScratch();
        TextOrDefault(element, text);
        value.FromString(text, m_itemType, m_whitespaceRule);
        InvokePropertySet(object, value, element);
    }
    *current = element.GetNextSiblingElement();
}

void CElementInfo::ElementFromXmlEnum(const CSerializationContext& ctx, CXmlGeneratedClass* object,
                                      CXmlElement** current) const {
    CXmlElement& element = **current;
    if (!ReadNilAttributes(ctx, element)) {
        QvVariant value;
        std::wstring& text = detail::ReadScratch();
        TextOrDefault(element, text);
        value.SetI4(m_enumFromString ? m_enumFromString(text.c_str()) : 0);
        InvokePropertySet(object, value, element);
    }
    *current = element.GetNextSiblingElement();
}

} // namespace QvXmlLib16Data
