#include "binding-fixtures/GroupBinding.h"

namespace fixtures {

CTakeIfMine::CTakeIfMine(const wchar_t* name, int propertyIndex, ItemType type)
    : CElementInfoSeqPrimOpt(name, kNs, propertyIndex, false, type, nullptr,
                             CWhitespaceUtils::WhitespaceRule_Collapse, CPrimitiveRestrictions(),
                             nullptr) {}

bool CTakeIfMine::ElementFromXml(const CSerializationContext& ctx, CXmlGeneratedClass* object,
                                 CXmlElement*, CXmlElement** current, const wchar_t*,
                                 XmlElementType) {
    if (!IsThisElement(ctx, *current))
        return false;
    ElementFromXmlPrim(ctx, object, current);
    return true;
}

bool CTakeIfMine::Validate(const CSerializationContext&, const CXmlGeneratedClass*, bool,
                           bool) const {
    return true;
}

void CTwoMembers::Init() {
    Number.reset();
    Text.reset();
}

void CTwoMembers::AccessProperty(int propertyIndex, bool read, QvVariant& value) {
    switch (propertyIndex) {
    case Prop_Number:
        if (!read)
            Number = value.GetI4();
        else if (Number)
            value.SetI4(*Number);
        break;
    case Prop_Text:
        if (!read)
            Text = value.GetString();
        else if (Text)
            value.SetString(*Text);
        break;
    }
}

CAttributeInfo** CTwoMembers::GetClassAttributeInfo() const {
    static CAttributeInfo* none[] = {nullptr};
    return none;
}

CPick::CPick() {
    SetElementName(L"Pick");
}

CParentElementInfo* CPick::GetClassInfo() const {
    static CParentElementInfo* info =
        new CParentElementInfo(XmlElementGroupType_Choice, XmlElementType_Element, L"PickType", kNs,
                               true, false, -1, ItemType_Invalid, nullptr, false);
    return info;
}

CElementInfo** CPick::GetClassElementInfo() const {
    static CElementInfo* infos[] = {
        new CTakeIfMine(L"A", Prop_Number, ItemType_i4),
        new CTakeIfMine(L"B", Prop_Text, ItemType_string),
        nullptr,
    };
    return infos;
}

CBag::CBag() {
    SetElementName(L"Bag");
}

CParentElementInfo* CBag::GetClassInfo() const {
    static CParentElementInfo* info =
        new CParentElementInfo(XmlElementGroupType_All, XmlElementType_Element, L"BagType", kNs,
                               true, false, -1, ItemType_Invalid, nullptr, false);
    return info;
}

CElementInfo** CBag::GetClassElementInfo() const {
    static CElementInfo* infos[] = {
        new CTakeIfMine(L"X", Prop_Number, ItemType_i4),
        new CTakeIfMine(L"Y", Prop_Text, ItemType_string),
        nullptr,
    };
    return infos;
}

} // namespace fixtures
