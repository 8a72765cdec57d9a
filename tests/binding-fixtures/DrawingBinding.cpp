#include "binding-fixtures/DrawingBinding.h"

namespace fixtures {

CDrawing::CDrawing() {
    SetElementName(L"Drawing");
    Init();
}

// Owner is made by the factory when read, so it may start null.
void CDrawing::Init() {
    Main = nullptr;
    Owner = nullptr;
    Scale.reset();
    Contact = nullptr;
}

void CDrawing::AccessProperty(int propertyIndex, bool read, QvVariant& value) {
    switch (propertyIndex) {
    case Prop_Main:
        if (read)
            value.SetXmlObject(Main);
        else
            Main = static_cast<CShape*>(value.GetXmlObject().Ptr());
        break;
    case Prop_Owner:
        if (read)
            value.SetXmlObject(Owner);
        else
            Owner = static_cast<CAddress*>(value.GetXmlObject().Ptr());
        break;
    case Prop_Scale:
        if (!read)
            Scale = value.GetI4();
        else if (Scale)
            value.SetI4(*Scale);
        break;
    case Prop_Contact:
        if (read)
            value.SetXmlObject(Contact);
        else
            Contact = static_cast<CContact*>(value.GetXmlObject().Ptr());
        break;
    }
}

CParentElementInfo* CDrawing::GetClassInfo() const {
    static CParentElementInfo* info =
        new CParentElementInfo(XmlElementGroupType_Sequence, XmlElementType_Element, L"DrawingType",
                               kNs, true, false, -1, ItemType_Invalid, nullptr, false);
    return info;
}

CElementInfo** CDrawing::GetClassElementInfo() const {
    static CElementInfo* infos[] = {
        new CElementInfoSeqAbsClsMnd(L"Main", kNs, Prop_Main, XmlElementType_Element, CreateShape),
        new CElementInfoSeqClsMnd(L"Owner", kNs, Prop_Owner, XmlElementType_Element, CreateClass,
                                  ClassId_Address, false),
        new CElementInfoSeqPrimOpt(
            L"Scale", kNs, Prop_Scale, false, ItemType_i4, nullptr,
            CWhitespaceUtils::WhitespaceRule_Collapse,
            CPrimitiveRestrictions(nullptr, -1, -1, L"1", nullptr, nullptr, nullptr, -1, -1, -1),
            L"0"),
        new CElementInfoSeqClsOpt(L"Contact", kNs, Prop_Contact, XmlElementType_Pseudo, CreateClass,
                                  ClassId_Contact),
        nullptr,
    };
    return infos;
}

CAttributeInfo** CDrawing::GetClassAttributeInfo() const {
    static CAttributeInfo* none[] = {nullptr};
    return none;
}

} // namespace fixtures
