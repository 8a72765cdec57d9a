#pragma once

// Reading and writing rules that several element infos share; only the *ElementInfos.cpp
// files include this.

#include "metadata/MetadataMessages.h"

#include <QvXmlLib16/ElementInfo.h>
#include <QvXmlLib16/Format.h>
#include <QvXmlLib16/QvException.h>
#include <QvXmlLib16/SerializationContext.h>
#include <QvXmlLib16/Variant.h>
#include <QvXmlLib16/XmlElement.h>
#include <QvXmlLib16/XmlObjectBase.h>

namespace QvXmlLib16Data::rules {

using namespace QvXmlLib16;

[[noreturn]] inline void ThrowMissingChild(const CElementInfo& info, const CXmlElement* parent) {
    throw CQvValidationException(
        FormatString(msg::kRequiredChildMissingFmt, info.GetElementName().c_str()),
        parent ? parent->GetXPath() : std::wstring());
}

// A mandatory member: read it when *current is its element. Otherwise an object with an
// element of its own may accept its absence (IgnoreMissingMandatoryElements) or skip foreign
// elements before it (IgnoreUnknownElements, they are lost); in the end its absence is an
// error. Inside a pseudo element a missing member only answers false.
template <class Read>
bool ReadMandatory(const CElementInfo& info, const CSerializationContext& ctx, CXmlElement* parent,
                   CXmlElement** current, XmlElementType type, Read read) {
    for (;;) {
        if (info.IsThisElement(ctx, *current)) {
            read();
            return true;
        }
        if (type == XmlElementType_Element && ctx.GetIgnoreMissingMandatoryElements())
            return true;
        if (ctx.GetIgnoreUnknownElements() && *current) {
            *current = (*current)->GetNextSiblingElement();
            continue;
        }
        if (type != XmlElementType_Element)
            return false;
        ThrowMissingChild(info, parent);
    }
}

// An optional member: read it when *current is its element; its absence is fine.
template <class Read>
bool ReadOptional(const CElementInfo& info, const CSerializationContext& ctx, CXmlElement** current,
                  Read read) {
    if (info.IsThisElement(ctx, *current))
        read();
    return true;
}

// Mandatory members must have been written.
inline bool Required(const CElementInfo& info, bool written) {
    if (!written)
        throw CQvInvalidParamException(
            FormatString(msg::kMandatoryNotNullFmt, info.GetElementName().c_str()));
    return true;
}

inline CSmartPtr<CXmlObjectBase> MemberObject(const CElementInfo& info,
                                              const CXmlGeneratedClass* object) {
    QvVariant value;
    info.ReadProperty(object, value);
    return value.GetXmlObject();
}

// Fills member from its own element and stores it; *current moves past the element.
inline void ReadOwnElement(const CElementInfo& info, const CSerializationContext& ctx,
                           CXmlGeneratedClass* object, CXmlObjectBase* member,
                           CXmlElement** current) {
    CXmlElement& element = **current;
    CXmlObjectBase::FromXml_Int(member, &element, element.GetFirstElement(), ctx, false);
    QvVariant value;
    value.SetXmlObject(member);
    info.InvokePropertySet(object, value, element);
    *current = element.GetNextSiblingElement();
}

// An optional member made by a factory: filled and stored. When the factory declines the
// element (an unknown xsi:type, say) it is left where it is, so the reader reports it as an
// unexpected element rather than dropping it.
inline void ReadCreatedMember(const CElementInfo& info, const CSerializationContext& ctx,
                              CXmlGeneratedClass* object, const CSmartPtr<CXmlObjectBase>& member,
                              CXmlElement** current) {
    if (!member.IsNull())
        ReadOwnElement(info, ctx, object, member, current);
}

// A pseudo-element member reads its children straight from the parent's cursor; true when it
// took anything (then it is stored and the cursor moves on).
inline bool ReadPseudoMember(const CElementInfo& info, const CSerializationContext& ctx,
                             CXmlGeneratedClass* object, CXmlObjectBase* member,
                             CXmlElement* parent, CXmlElement** current) {
    CXmlElement* next = CXmlObjectBase::FromXml_Int(member, parent, *current, ctx, false);
    if (next == *current)
        return false;
    QvVariant value;
    value.SetXmlObject(member);
    info.InvokePropertySet(object, value, *parent);
    *current = next;
    return true;
}

// Pseudo-element members write their attributes into the parent's open start tag.
inline void PseudoAttributes(const CElementInfo& info, XmlElementType elementType,
                             const CSerializationContext& ctx, const CXmlGeneratedClass* object,
                             CXmlWriter* writer) {
    if (elementType != XmlElementType_Pseudo)
        return;
    const CSmartPtr<CXmlObjectBase> member = MemberObject(info, object);
    if (!member.IsNull())
        info.AttributesToXml_Int(member, writer, ctx);
}

} // namespace QvXmlLib16Data::rules
