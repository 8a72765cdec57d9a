#include "metadata/ElementInfoRules.h"

#include <QvXmlLib16/XmlGeneratedClass.h>

namespace QvXmlLib16Data {

using namespace QvXmlLib16;

// ---- primitive members ----

CElementInfoSeqPrimMnd::CElementInfoSeqPrimMnd(const wchar_t* name, const wchar_t* ns,
                                               int propertyIndex, bool nillable, ItemType type,
                                               const wchar_t* format,
                                               CWhitespaceUtils::WhitespaceRule rule,
                                               const CPrimitiveRestrictions& restrictions,
                                               const wchar_t* defaultValue)
    : CElementInfo(name, ns, propertyIndex, nillable, type, format, rule, restrictions,
                   defaultValue) {}

bool CElementInfoSeqPrimMnd::ElementToXml(const CSerializationContext& ctx,
                                          const CXmlGeneratedClass* object,
                                          CXmlWriter* writer) const {
    return rules::Required(*this, ElementToXmlPrim(ctx, object, writer));
}

bool CElementInfoSeqPrimMnd::ElementFromXml(const CSerializationContext& ctx,
                                            CXmlGeneratedClass* object, CXmlElement* parent,
                                            CXmlElement** current, const wchar_t*,
                                            XmlElementType type) {
    return rules::ReadMandatory(*this, ctx, parent, current, type,
                                [&] { ElementFromXmlPrim(ctx, object, current); });
}

CElementInfoSeqPrimOpt::CElementInfoSeqPrimOpt(const wchar_t* name, const wchar_t* ns,
                                               int propertyIndex, bool nillable, ItemType type,
                                               const wchar_t* format,
                                               CWhitespaceUtils::WhitespaceRule rule,
                                               const CPrimitiveRestrictions& restrictions,
                                               const wchar_t* defaultValue)
    : CElementInfo(name, ns, propertyIndex, nillable, type, format, rule, restrictions,
                   defaultValue) {}

bool CElementInfoSeqPrimOpt::ElementToXml(const CSerializationContext& ctx,
                                          const CXmlGeneratedClass* object,
                                          CXmlWriter* writer) const {
    return ElementToXmlPrim(ctx, object, writer);
}

bool CElementInfoSeqPrimOpt::ElementFromXml(const CSerializationContext& ctx,
                                            CXmlGeneratedClass* object, CXmlElement*,
                                            CXmlElement** current, const wchar_t*, XmlElementType) {
    return rules::ReadOptional(*this, ctx, current,
                               [&] { ElementFromXmlPrim(ctx, object, current); });
}

// ---- enumerated members ----

CElementInfoSeqEnumMnd::CElementInfoSeqEnumMnd(const wchar_t* name, const wchar_t* ns,
                                               int propertyIndex, bool nillable,
                                               EnumToString toString, EnumFromString fromString,
                                               const wchar_t* defaultValue)
    : CElementInfo(name, ns, propertyIndex, nillable, toString, fromString, defaultValue) {}

bool CElementInfoSeqEnumMnd::ElementToXml(const CSerializationContext& ctx,
                                          const CXmlGeneratedClass* object,
                                          CXmlWriter* writer) const {
    return rules::Required(*this, ElementToXmlEnum(ctx, object, writer, m_enumToString));
}

bool CElementInfoSeqEnumMnd::ElementFromXml(const CSerializationContext& ctx,
                                            CXmlGeneratedClass* object, CXmlElement* parent,
                                            CXmlElement** current, const wchar_t*,
                                            XmlElementType type) {
    return rules::ReadMandatory(*this, ctx, parent, current, type,
                                [&] { ElementFromXmlEnum(ctx, object, current); });
}

CElementInfoSeqEnumOpt::CElementInfoSeqEnumOpt(const wchar_t* name, const wchar_t* ns,
                                               int propertyIndex, bool nillable,
                                               EnumToString toString, EnumFromString fromString,
                                               const wchar_t* defaultValue)
    : CElementInfo(name, ns, propertyIndex, nillable, toString, fromString, defaultValue) {}

bool CElementInfoSeqEnumOpt::ElementToXml(const CSerializationContext& ctx,
                                          const CXmlGeneratedClass* object,
                                          CXmlWriter* writer) const {
    return ElementToXmlEnum(ctx, object, writer, m_enumToString);
}

bool CElementInfoSeqEnumOpt::ElementFromXml(const CSerializationContext& ctx,
                                            CXmlGeneratedClass* object, CXmlElement*,
                                            CXmlElement** current, const wchar_t*, XmlElementType) {
    return rules::ReadOptional(*this, ctx, current,
                               [&] { ElementFromXmlEnum(ctx, object, current); });
}

// ---- class members ----

CElementInfoSeqClsMnd::CElementInfoSeqClsMnd(const wchar_t* name, const wchar_t* ns,
                                             int propertyIndex, XmlElementType elementType,
                                             ClassFactory factory, int classId, bool readInPlace)
    : CElementInfo(name, ns, propertyIndex),
      m_elementType(elementType),
      m_readInPlace(readInPlace),
      m_factory(factory),
      m_classId(classId) {}

bool CElementInfoSeqClsMnd::ElementToXml(const CSerializationContext& ctx,
                                         const CXmlGeneratedClass* object,
                                         CXmlWriter* writer) const {
    return rules::Required(*this, ElementToXmlCls(ctx, object, writer, false));
}

// Generated classes create their mandatory members; without one (or without read-in-place)
// the factory makes it.
static CSmartPtr<CXmlObjectBase> MandatoryMember(const CElementInfo& info, bool readInPlace,
                                                 ClassFactory factory, int classId,
                                                 CXmlGeneratedClass* object) {
    CSmartPtr<CXmlObjectBase> member;
    if (readInPlace)
        member = rules::MemberObject(info, object);
    if (member.IsNull() && factory)
        member = factory(classId, info.GetElementName().c_str());
    return member;
}

bool CElementInfoSeqClsMnd::ElementFromXml(const CSerializationContext& ctx,
                                           CXmlGeneratedClass* object, CXmlElement* parent,
                                           CXmlElement** current, const wchar_t*,
                                           XmlElementType type) {
    const CSmartPtr<CXmlObjectBase> member =
        MandatoryMember(*this, m_readInPlace, m_factory, m_classId, object);
    if (m_elementType == XmlElementType_Pseudo) {
        if (!member.IsNull()
            && rules::ReadPseudoMember(*this, ctx, object, member, parent, current))
            return true;
        if (type != XmlElementType_Element)
            return false;
        if (ctx.GetIgnoreMissingMandatoryElements())
            return true;
        rules::ThrowMissingChild(*this, parent);
    }
    return rules::ReadMandatory(*this, ctx, parent, current, type, [&] {
        if (member.IsNull())
            rules::ThrowMissingChild(*this, parent);
        rules::ReadOwnElement(*this, ctx, object, member, current);
    });
}

void CElementInfoSeqClsMnd::PseudoChildAttributeToXml(const CSerializationContext& ctx,
                                                      const CXmlGeneratedClass* object,
                                                      CXmlWriter* writer) const {
    rules::PseudoAttributes(*this, m_elementType, ctx, object, writer);
}

CElementInfoSeqClsOpt::CElementInfoSeqClsOpt(const wchar_t* name, const wchar_t* ns,
                                             int propertyIndex, XmlElementType elementType,
                                             ClassFactory factory, int classId)
    : CElementInfo(name, ns, propertyIndex),
      m_elementType(elementType),
      m_factory(factory),
      m_classId(classId) {}

bool CElementInfoSeqClsOpt::ElementToXml(const CSerializationContext& ctx,
                                         const CXmlGeneratedClass* object,
                                         CXmlWriter* writer) const {
    return ElementToXmlCls(ctx, object, writer, false);
}

bool CElementInfoSeqClsOpt::ElementFromXml(const CSerializationContext& ctx,
                                           CXmlGeneratedClass* object, CXmlElement* parent,
                                           CXmlElement** current, const wchar_t*, XmlElementType) {
    if (m_elementType == XmlElementType_Pseudo) {
        const CSmartPtr<CXmlObjectBase> member =
            m_factory ? m_factory(m_classId, m_elementName.c_str()) : nullptr;
        if (!member.IsNull())
            rules::ReadPseudoMember(*this, ctx, object, member, parent, current);
        return true;
    }
    return rules::ReadOptional(*this, ctx, current, [&] {
        rules::ReadCreatedMember(*this, ctx, object,
                                 m_factory ? m_factory(m_classId, m_elementName.c_str()) : nullptr,
                                 current);
    });
}

void CElementInfoSeqClsOpt::PseudoChildAttributeToXml(const CSerializationContext& ctx,
                                                      const CXmlGeneratedClass* object,
                                                      CXmlWriter* writer) const {
    rules::PseudoAttributes(*this, m_elementType, ctx, object, writer);
}

// ---- abstract class members ----

CElementInfoSeqAbsClsMnd::CElementInfoSeqAbsClsMnd(const wchar_t* name, const wchar_t* ns,
                                                   int propertyIndex, XmlElementType elementType,
                                                   ElementFactory factory)
    : CElementInfo(name, ns, propertyIndex),
      m_elementType(elementType),
      m_factory(factory) {}

bool CElementInfoSeqAbsClsMnd::ElementToXml(const CSerializationContext& ctx,
                                            const CXmlGeneratedClass* object,
                                            CXmlWriter* writer) const {
    return rules::Required(*this, ElementToXmlCls(ctx, object, writer, false));
}

// No skipping of foreign elements here: the element must be one a factory accepts.
bool CElementInfoSeqAbsClsMnd::ElementFromXml(const CSerializationContext& ctx,
                                              CXmlGeneratedClass* object, CXmlElement* parent,
                                              CXmlElement** current, const wchar_t*,
                                              XmlElementType type) {
    auto refuse = [&] {
        throw CQvValidationException(FormatString(msg::kNoSubstitutionFmt, m_elementName.c_str()),
                                     parent ? parent->GetXPath() : std::wstring());
    };
    if (!IsThisElement(ctx, *current)) {
        if (type != XmlElementType_Element)
            return false;
        refuse();
    }
    const CSmartPtr<CXmlObjectBase> member = m_factory ? m_factory(*current) : nullptr;
    if (member.IsNull())
        refuse();
    rules::ReadOwnElement(*this, ctx, object, member, current);
    return true;
}

void CElementInfoSeqAbsClsMnd::PseudoChildAttributeToXml(const CSerializationContext& ctx,
                                                         const CXmlGeneratedClass* object,
                                                         CXmlWriter* writer) const {
    rules::PseudoAttributes(*this, m_elementType, ctx, object, writer);
}

CElementInfoSeqAbsClsOpt::CElementInfoSeqAbsClsOpt(const wchar_t* name, const wchar_t* ns,
                                                   int propertyIndex, XmlElementType elementType,
                                                   ElementFactory factory)
    : CElementInfo(name, ns, propertyIndex),
      m_elementType(elementType),
      m_factory(factory) {}

bool CElementInfoSeqAbsClsOpt::ElementToXml(const CSerializationContext& ctx,
                                            const CXmlGeneratedClass* object,
                                            CXmlWriter* writer) const {
    return ElementToXmlCls(ctx, object, writer, false);
}

bool CElementInfoSeqAbsClsOpt::ElementFromXml(const CSerializationContext& ctx,
                                              CXmlGeneratedClass* object, CXmlElement*,
                                              CXmlElement** current, const wchar_t*,
                                              XmlElementType) {
    return rules::ReadOptional(*this, ctx, current, [&] {
        rules::ReadCreatedMember(*this, ctx, object, m_factory ? m_factory(*current) : nullptr,
                                 current);
    });
}

void CElementInfoSeqAbsClsOpt::PseudoChildAttributeToXml(const CSerializationContext& ctx,
                                                         const CXmlGeneratedClass* object,
                                                         CXmlWriter* writer) const {
    rules::PseudoAttributes(*this, m_elementType, ctx, object, writer);
}

} // namespace QvXmlLib16Data
