#include "metadata/ElementInfoRules.h"

#include <QvXmlLib16/XmlCollectionBase.h>
#include <QvXmlLib16/XmlGeneratedClass.h>

namespace QvXmlLib16Data {

using namespace QvXmlLib16;

namespace {

CSmartPtr<CXmlCollectionBase> MemberCollection(const CElementInfo& info,
                                               const CXmlGeneratedClass* object) {
    QvVariant value;
    info.ReadProperty(object, value);
    return value.GetXmlCollection();
}

// Items that are pseudo elements write their attributes on the parent's element.
void PseudoItemAttributes(const CElementInfo& info, XmlElementType elementType,
                          const CSerializationContext& ctx, const CXmlGeneratedClass* object,
                          CXmlWriter* writer) {
    if (elementType != XmlElementType_Pseudo)
        return;
    const CSmartPtr<CXmlCollectionBase> collection = MemberCollection(info, object);
    if (!collection.IsNull())
        info.AttributesToXml_Int(collection, writer, ctx);
}

} // namespace

CElementInfoSeqCol::CElementInfoSeqCol(const wchar_t* name, const wchar_t* ns, int propertyIndex)
    : CElementInfo(name, ns, propertyIndex) {}

bool CElementInfoSeqCol::ElementToXml(const CSerializationContext& ctx,
                                      const CXmlGeneratedClass* object, CXmlWriter* writer) const {
    if (!ctx.GetIgnoreInvalidCollectionCounts()) {
        const CSmartPtr<CXmlCollectionBase> collection = MemberCollection(*this, object);
        if (!collection.IsNull())
            collection->ValidateCount(ctx);
    }
    return ElementToXmlCol(ctx, object, writer);
}

bool CElementInfoSeqCol::ElementFromXml(const CSerializationContext& ctx,
                                        CXmlGeneratedClass* object, CXmlElement* parent,
                                        CXmlElement** current, const wchar_t*,
                                        XmlElementType type) {
    QvVariant value;
    InvokePropertyGet(object, value);
    const CSmartPtr<CXmlCollectionBase> collection = value.GetXmlCollection();
    if (collection.IsNull())
        return true;
    *current = CXmlObjectBase::FromXml_Int(collection, parent, *current, ctx, false);
    if (type != XmlElementType_Element)
        return collection->IsValidCount(ctx);
    collection->ValidateCount(ctx);
    return true;
}

CElementInfoSeqPrimCol::CElementInfoSeqPrimCol(const wchar_t* name, const wchar_t* ns,
                                               int propertyIndex)
    : CElementInfoSeqCol(name, ns, propertyIndex) {}

CElementInfoSeqEnumCol::CElementInfoSeqEnumCol(const wchar_t* name, const wchar_t* ns,
                                               int propertyIndex)
    : CElementInfoSeqCol(name, ns, propertyIndex) {}

CElementInfoSeqClsCol::CElementInfoSeqClsCol(const wchar_t* name, const wchar_t* ns,
                                             int propertyIndex, XmlElementType elementType)
    : CElementInfoSeqCol(name, ns, propertyIndex),
      m_elementType(elementType) {}

void CElementInfoSeqClsCol::PseudoChildAttributeToXml(const CSerializationContext& ctx,
                                                      const CXmlGeneratedClass* object,
                                                      CXmlWriter* writer) const {
    PseudoItemAttributes(*this, m_elementType, ctx, object, writer);
}

CElementInfoSeqAbsClsCol::CElementInfoSeqAbsClsCol(const wchar_t* name, const wchar_t* ns,
                                                   int propertyIndex, XmlElementType elementType)
    : CElementInfoSeqCol(name, ns, propertyIndex),
      m_elementType(elementType) {}

void CElementInfoSeqAbsClsCol::PseudoChildAttributeToXml(const CSerializationContext& ctx,
                                                         const CXmlGeneratedClass* object,
                                                         CXmlWriter* writer) const {
    PseudoItemAttributes(*this, m_elementType, ctx, object, writer);
}

} // namespace QvXmlLib16Data
