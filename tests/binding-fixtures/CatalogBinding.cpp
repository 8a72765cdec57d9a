#include "binding-fixtures/CatalogBinding.h"

namespace fixtures {

namespace {
CAttributeInfo** NoAttributes() {
    static CAttributeInfo* none[] = {nullptr};
    return none;
}
} // namespace

CItem::CItem() {
    SetElementName(L"Item");
}

void CItem::Init() {
    Name.clear();
}

void CItem::AccessProperty(int propertyIndex, bool read, QvVariant& value) {
    if (propertyIndex != Prop_Name)
        return;
    if (read)
        value.SetString(Name);
    else
        Name = value.GetString();
}

CParentElementInfo* CItem::GetClassInfo() const {
    static CParentElementInfo* info =
        new CParentElementInfo(XmlElementGroupType_Sequence, XmlElementType_Element, L"ItemType",
                               kNs, true, false, -1, ItemType_Invalid, nullptr, false);
    return info;
}

CElementInfo** CItem::GetClassElementInfo() const {
    static CElementInfo* infos[] = {
        new CElementInfoSeqPrimMnd(L"Name", kNs, Prop_Name, false, ItemType_string, nullptr,
                                   CWhitespaceUtils::WhitespaceRule_Preserve,
                                   CPrimitiveRestrictions(), nullptr),
        nullptr};
    return infos;
}

CAttributeInfo** CItem::GetClassAttributeInfo() const {
    return NoAttributes();
}

// Collections exist for the object's lifetime; Init empties them.
CCatalog::CCatalog()
    : Items(new TXmlObjectCol<CItem>(L"Item", kNs, 1, 3)),
      Shapes(new TXmlObjectCol<CShape>(L"Shape", kNs, 0, -1, CreateShape)) {
    SetElementName(L"Catalog");
}

void CCatalog::Init() {
    Items->Clear();
    Shapes->Clear();
}

void CCatalog::AccessProperty(int propertyIndex, bool read, QvVariant& value) {
    // Collections are only ever read: the driver fills them in place.
    if (!read)
        return;
    if (propertyIndex == Prop_Items)
        value.SetXmlCollection(Items);
    else if (propertyIndex == Prop_Shapes)
        value.SetXmlCollection(Shapes);
}

CParentElementInfo* CCatalog::GetClassInfo() const {
    static CParentElementInfo* info =
        new CParentElementInfo(XmlElementGroupType_Sequence, XmlElementType_Element, L"CatalogType",
                               kNs, true, false, -1, ItemType_Invalid, nullptr, false);
    return info;
}

CElementInfo** CCatalog::GetClassElementInfo() const {
    static CElementInfo* infos[] = {
        new CElementInfoSeqClsCol(L"Item", kNs, Prop_Items, XmlElementType_Element),
        new CElementInfoSeqAbsClsCol(L"Shape", kNs, Prop_Shapes, XmlElementType_Element), nullptr};
    return infos;
}

CAttributeInfo** CCatalog::GetClassAttributeInfo() const {
    return NoAttributes();
}

} // namespace fixtures
