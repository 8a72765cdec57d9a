#include "binding-fixtures/PriceBinding.h"

#include <cwchar>

namespace fixtures {

const wchar_t* KindToString(int value) {
    static const wchar_t* const names[] = {L"net", L"gross"};
    return value >= 0 && value < 2 ? names[value] : nullptr;
}

int KindFromString(const wchar_t* text) {
    for (int i = 0; i < 2; ++i) {
        if (std::wcscmp(KindToString(i), text) == 0)
            return i;
    }
    throw CQvInvalidValueException(FormatString(L"Invalid Kind value [%ls]", text));
}

CPrice::CPrice() {
    SetElementName(L"Price");
    Init();
}

void CPrice::Init() {
    Id.reset();
    Currency.reset();
    Kind.reset();
    Tag.reset();
    Value = CDecimal();
}

void CPrice::AccessProperty(int propertyIndex, bool read, QvVariant& value) {
    switch (propertyIndex) {
    case Prop_Id:
        if (read) {
            if (Id)
                value.SetI4(*Id);
        } else {
            Id = value.GetI4();
        }
        break;
    case Prop_Currency:
        if (read) {
            if (Currency)
                value.SetString(*Currency);
        } else {
            Currency = value.GetString();
        }
        break;
    case Prop_Kind:
        if (read) {
            if (Kind)
                value.SetI4(*Kind);
        } else {
            Kind = static_cast<int>(value.GetI4());
        }
        break;
    case Prop_Tag:
        if (read) {
            if (Tag)
                value.SetString(*Tag);
        } else if (value.GetString() == L"!") {
            throw CQvInvalidValueException(L"Tag may not be !"); // a setter with a rule
        } else {
            Tag = value.GetString();
        }
        break;
    case Prop_Value:
        if (read)
            value.SetDecimal(Value);
        else
            Value = value.GetDecimal();
        break;
    }
}

CParentElementInfo* CPrice::GetClassInfo() const {
    static CParentElementInfo* info =
        new CParentElementInfo(XmlElementGroupType_Sequence, XmlElementType_Element, L"PriceType",
                               kPriceNs, true, false, Prop_Value, ItemType_decimal, nullptr, false);
    return info;
}

CElementInfo** CPrice::GetClassElementInfo() const {
    static CElementInfo* none[] = {nullptr};
    return none;
}

CAttributeInfo** CPrice::GetClassAttributeInfo() const {
    using Rule = CWhitespaceUtils::WhitespaceRule;
    static CAttributeInfo* infos[] = {
        new CAttributeInfoPrimitive(
            L"id", L"", Prop_Id, false, ItemType_i4, nullptr, Rule::WhitespaceRule_Collapse,
            CPrimitiveRestrictions(nullptr, -1, -1, L"1", nullptr, nullptr, nullptr, -1, -1, -1),
            nullptr),
        new CAttributeInfoPrimitive(L"currency", L"", Prop_Currency, true, ItemType_string, nullptr,
                                    Rule::WhitespaceRule_Collapse,
                                    CPrimitiveRestrictions(L"[A-Z]{3}", -1, -1, nullptr, nullptr,
                                                           nullptr, nullptr, -1, -1, -1),
                                    L"EUR"),
        new CAttributeInfoEnum(L"kind", L"", Prop_Kind, true, KindToString, KindFromString,
                               nullptr),
        new CAttributeInfoPrimitive(L"tag", kTagNs, Prop_Tag, true, ItemType_string, nullptr,
                                    Rule::WhitespaceRule_Preserve, CPrimitiveRestrictions(),
                                    nullptr),
        nullptr};
    return infos;
}

} // namespace fixtures
