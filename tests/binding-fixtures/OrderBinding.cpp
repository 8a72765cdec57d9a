#include "binding-fixtures/OrderBinding.h"

#include <cwchar>

namespace fixtures {

namespace {

using Rule = CWhitespaceUtils::WhitespaceRule;

// Generated code builds each table once, on first use.
template <size_t N>
CElementInfo** Elements(CElementInfo* const (&infos)[N]) {
    CElementInfo** table = new CElementInfo*[N + 1];
    for (size_t i = 0; i < N; ++i)
        table[i] = infos[i];
    table[N] = nullptr;
    return table;
}

CAttributeInfo** NoAttributes() {
    static CAttributeInfo* none[] = {nullptr};
    return none;
}

CParentElementInfo* Sequence(const wchar_t* typeName, XmlElementType type = XmlElementType_Element,
                             bool writeType = false) {
    return new CParentElementInfo(XmlElementGroupType_Sequence, type, typeName, kNs, true,
                                  writeType, -1, ItemType_Invalid, nullptr, false);
}

template <class T>
void ReadOptional(QvVariant& value, const std::optional<T>& member, void (QvVariant::*set)(T)) {
    if (member)
        (value.*set)(*member);
}

template <class T>
void ReadOptional(QvVariant& value, const std::optional<T>& member,
                  void (QvVariant::*set)(const T&)) {
    if (member)
        (value.*set)(*member);
}

template <class T>
CSmartPtr<T> ObjectFrom(const QvVariant& value) {
    return CSmartPtr<T>(static_cast<T*>(value.GetXmlObject().Ptr()));
}

} // namespace

// ---- enumerations ----

const wchar_t* StatusToString(int value) {
    static const wchar_t* const names[] = {L"pending", L"shipped", L"delivered"};
    return value >= 0 && value < 3 ? names[value] : nullptr;
}

int StatusFromString(const wchar_t* text) {
    for (int i = 0; i < 3; ++i) {
        if (std::wcscmp(StatusToString(i), text) == 0)
            return i;
    }
    throw CQvInvalidValueException(FormatString(L"Invalid Status value [%ls]", text));
}

const wchar_t* PriorityToString(int value) {
    static const wchar_t* const names[] = {L"low", L"normal", L"high"};
    return value >= 0 && value < 3 ? names[value] : nullptr;
}

int PriorityFromString(const wchar_t* text) {
    for (int i = 0; i < 3; ++i) {
        if (std::wcscmp(PriorityToString(i), text) == 0)
            return i;
    }
    throw CQvInvalidValueException(FormatString(L"Invalid Priority value [%ls]", text));
}

// ---- factories ----

CSmartPtr<CXmlObjectBase> CreateClass(int classId, const wchar_t* elementName) {
    CXmlObjectBase* object = nullptr;
    switch (classId) {
    case ClassId_Address: object = new CAddress(); break;
    case ClassId_Contact: object = new CContact(); break;
    case ClassId_Comment: object = new CComment(); break;
    default: return nullptr;
    }
    object->SetElementName(elementName);
    return object;
}

// The concrete class comes from xsi:type, with or without a prefix.
CSmartPtr<CXmlObjectBase> CreateShape(CXmlElement* element) {
    const CXmlAttribute* type = element->GetAttribute(ns::kXsi, L"type");
    if (!type)
        return nullptr;
    std::wstring name = type->GetValue();
    name = name.substr(name.find(L':') + 1);
    if (name == L"CircleType")
        return new CCircle();
    if (name == L"SquareType")
        return new CSquare();
    return nullptr;
}

// ---- CAddress ----

CAddress::CAddress() {
    SetElementName(L"Address");
}

void CAddress::Init() {
    Street.clear();
    City.clear();
    Zip.reset();
}

void CAddress::AccessProperty(int propertyIndex, bool read, QvVariant& value) {
    switch (propertyIndex) {
    case Prop_Street:
        if (read)
            value.SetString(Street);
        else
            Street = value.GetString();
        break;
    case Prop_City:
        if (read)
            value.SetString(City);
        else
            City = value.GetString();
        break;
    case Prop_Zip:
        if (read)
            ReadOptional(value, Zip, &QvVariant::SetString);
        else
            Zip = value.GetString();
        break;
    }
}

CParentElementInfo* CAddress::GetClassInfo() const {
    static CParentElementInfo* info = Sequence(L"AddressType");
    return info;
}

CElementInfo** CAddress::GetClassElementInfo() const {
    static CElementInfo** infos = Elements({
        new CElementInfoSeqPrimMnd(L"Street", kNs, Prop_Street, false, ItemType_string, nullptr,
                                   Rule::WhitespaceRule_Preserve, CPrimitiveRestrictions(),
                                   nullptr),
        new CElementInfoSeqPrimMnd(L"City", kNs, Prop_City, false, ItemType_string, nullptr,
                                   Rule::WhitespaceRule_Preserve, CPrimitiveRestrictions(),
                                   nullptr),
        new CElementInfoSeqPrimOpt(L"Zip", kNs, Prop_Zip, false, ItemType_string, nullptr,
                                   Rule::WhitespaceRule_Collapse,
                                   CPrimitiveRestrictions(L"\\d{5}", -1, -1, nullptr, nullptr,
                                                          nullptr, nullptr, -1, -1, -1),
                                   nullptr),
    });
    return infos;
}

CAttributeInfo** CAddress::GetClassAttributeInfo() const {
    return NoAttributes();
}

// ---- CContact (pseudo element) ----

CContact::CContact() {
    SetElementName(L"Contact");
}

void CContact::Init() {
    Phone.clear();
    Email.reset();
}

void CContact::AccessProperty(int propertyIndex, bool read, QvVariant& value) {
    switch (propertyIndex) {
    case Prop_Phone:
        if (read)
            value.SetString(Phone);
        else
            Phone = value.GetString();
        break;
    case Prop_Email:
        if (read)
            ReadOptional(value, Email, &QvVariant::SetString);
        else
            Email = value.GetString();
        break;
    }
}

CParentElementInfo* CContact::GetClassInfo() const {
    static CParentElementInfo* info = Sequence(L"ContactGroup", XmlElementType_Pseudo);
    return info;
}

CElementInfo** CContact::GetClassElementInfo() const {
    static CElementInfo** infos = Elements({
        new CElementInfoSeqPrimMnd(L"Phone", kNs, Prop_Phone, false, ItemType_string, nullptr,
                                   Rule::WhitespaceRule_Collapse, CPrimitiveRestrictions(),
                                   nullptr),
        new CElementInfoSeqPrimOpt(L"Email", kNs, Prop_Email, false, ItemType_string, nullptr,
                                   Rule::WhitespaceRule_Collapse, CPrimitiveRestrictions(),
                                   nullptr),
    });
    return infos;
}

CAttributeInfo** CContact::GetClassAttributeInfo() const {
    return NoAttributes();
}

// ---- CComment (nillable, simple content) ----

CComment::CComment() {
    SetElementName(L"Comment");
}

void CComment::Init() {
    Value.clear();
    m_nil = false;
}

void CComment::AccessProperty(int propertyIndex, bool read, QvVariant& value) {
    if (propertyIndex != Prop_Value)
        return;
    if (read)
        value.SetString(Value);
    else
        Value = value.GetString();
}

CParentElementInfo* CComment::GetClassInfo() const {
    static CParentElementInfo* info =
        new CParentElementInfo(XmlElementGroupType_Sequence, XmlElementType_Element, L"CommentType",
                               kNs, true, false, Prop_Value, ItemType_string, nullptr, false);
    return info;
}

CElementInfo** CComment::GetClassElementInfo() const {
    static CElementInfo* none[] = {nullptr};
    return none;
}

CAttributeInfo** CComment::GetClassAttributeInfo() const {
    return NoAttributes();
}

// ---- shapes ----

CAttributeInfo** CShape::GetClassAttributeInfo() const {
    return NoAttributes();
}

CCircle::CCircle() {
    SetElementName(L"CircleType");
}

void CCircle::Init() {
    Radius = 0;
}

void CCircle::AccessProperty(int propertyIndex, bool read, QvVariant& value) {
    if (propertyIndex != Prop_Radius)
        return;
    if (read)
        value.SetR8(Radius);
    else
        Radius = value.GetR8();
}

CParentElementInfo* CCircle::GetClassInfo() const {
    static CParentElementInfo* info = Sequence(L"CircleType", XmlElementType_Element, true);
    return info;
}

CElementInfo** CCircle::GetClassElementInfo() const {
    static CElementInfo** infos = Elements({
        new CElementInfoSeqPrimMnd(L"Radius", kNs, Prop_Radius, false, ItemType_r8, nullptr,
                                   Rule::WhitespaceRule_Collapse, CPrimitiveRestrictions(),
                                   nullptr),
    });
    return infos;
}

CSquare::CSquare() {
    SetElementName(L"SquareType");
}

void CSquare::Init() {
    Side = 0;
}

void CSquare::AccessProperty(int propertyIndex, bool read, QvVariant& value) {
    if (propertyIndex != Prop_Side)
        return;
    if (read)
        value.SetR8(Side);
    else
        Side = value.GetR8();
}

CParentElementInfo* CSquare::GetClassInfo() const {
    static CParentElementInfo* info = Sequence(L"SquareType", XmlElementType_Element, true);
    return info;
}

CElementInfo** CSquare::GetClassElementInfo() const {
    static CElementInfo** infos = Elements({
        new CElementInfoSeqPrimMnd(L"Side", kNs, Prop_Side, false, ItemType_r8, nullptr,
                                   Rule::WhitespaceRule_Collapse, CPrimitiveRestrictions(),
                                   nullptr),
    });
    return infos;
}

// ---- COrder ----

COrder::COrder() {
    SetElementName(L"Order");
    Init();
}

// Mandatory class members always exist; optional ones start null.
void COrder::Init() {
    Id.reset();
    OrderDate.reset();
    Status.reset();
    ShipTo = new CAddress();
    ShipTo->SetElementName(L"ShipTo");
    BillTo = nullptr;
    Note.reset();
    NoteIsNil = false;
    Priority.reset();
    Total.reset();
    Shape = nullptr;
    Contact = new CContact();
    Comment = nullptr;
}

void COrder::AccessProperty(int propertyIndex, bool read, QvVariant& value) {
    switch (propertyIndex) {
    case Prop_Id:
        if (read)
            ReadOptional(value, Id, &QvVariant::SetI4);
        else
            Id = value.GetI4();
        break;
    case Prop_OrderDate:
        if (read)
            ReadOptional(value, OrderDate, &QvVariant::SetDate);
        else
            OrderDate = value.GetDate();
        break;
    case Prop_Status:
        if (read) {
            if (Status)
                value.SetI4(*Status);
        } else {
            Status = static_cast<int>(value.GetI4());
        }
        break;
    case Prop_ShipTo:
        if (read)
            value.SetXmlObject(ShipTo);
        else
            ShipTo = ObjectFrom<CAddress>(value);
        break;
    case Prop_BillTo:
        if (read)
            value.SetXmlObject(BillTo);
        else
            BillTo = ObjectFrom<CAddress>(value);
        break;
    case Prop_Note:
        if (read) {
            if (NoteIsNil) {
                value.SetString(L"");
                value.SetNil();
            } else {
                ReadOptional(value, Note, &QvVariant::SetString);
            }
        } else {
            Note = value.GetString();
            NoteIsNil = false;
        }
        break;
    case Prop_Priority:
        if (read) {
            if (Priority)
                value.SetI4(*Priority);
        } else {
            Priority = static_cast<int>(value.GetI4());
        }
        break;
    case Prop_Total:
        if (read)
            ReadOptional(value, Total, &QvVariant::SetDecimal);
        else
            Total = value.GetDecimal();
        break;
    case Prop_Shape:
        if (read)
            value.SetXmlObject(Shape);
        else
            Shape = ObjectFrom<CShape>(value);
        break;
    case Prop_Contact:
        if (read)
            value.SetXmlObject(Contact);
        else
            Contact = ObjectFrom<CContact>(value);
        break;
    case Prop_Comment:
        if (read)
            value.SetXmlObject(Comment);
        else
            Comment = ObjectFrom<CComment>(value);
        break;
    }
}

CParentElementInfo* COrder::GetClassInfo() const {
    static CParentElementInfo* info = Sequence(L"OrderType");
    return info;
}

CElementInfo** COrder::GetClassElementInfo() const {
    static CElementInfo** infos = Elements({
        new CElementInfoSeqPrimMnd(
            L"Id", kNs, Prop_Id, false, ItemType_i4, nullptr, Rule::WhitespaceRule_Collapse,
            CPrimitiveRestrictions(nullptr, -1, -1, L"1", nullptr, nullptr, nullptr, -1, -1, -1),
            nullptr),
        new CElementInfoSeqPrimMnd(L"OrderDate", kNs, Prop_OrderDate, false, ItemType_date, nullptr,
                                   Rule::WhitespaceRule_Collapse, CPrimitiveRestrictions(),
                                   nullptr),
        new CElementInfoSeqEnumMnd(L"Status", kNs, Prop_Status, false, StatusToString,
                                   StatusFromString, nullptr),
        new CElementInfoSeqClsMnd(L"ShipTo", kNs, Prop_ShipTo, XmlElementType_Element, CreateClass,
                                  ClassId_Address, true),
        new CElementInfoSeqClsOpt(L"BillTo", kNs, Prop_BillTo, XmlElementType_Element, CreateClass,
                                  ClassId_Address),
        new CElementInfoSeqPrimOpt(
            L"Note", kNs, Prop_Note, true, ItemType_string, nullptr, Rule::WhitespaceRule_Preserve,
            CPrimitiveRestrictions(nullptr, -1, 20, nullptr, nullptr, nullptr, nullptr, -1, -1, -1),
            nullptr),
        new CElementInfoSeqEnumOpt(L"Priority", kNs, Prop_Priority, false, PriorityToString,
                                   PriorityFromString, L"normal"),
        new CElementInfoSeqPrimOpt(L"Total", kNs, Prop_Total, false, ItemType_decimal, nullptr,
                                   Rule::WhitespaceRule_Collapse, CPrimitiveRestrictions(), L"0"),
        new CElementInfoSeqAbsClsOpt(L"Shape", kNs, Prop_Shape, XmlElementType_Element,
                                     CreateShape),
        new CElementInfoSeqClsMnd(L"Contact", kNs, Prop_Contact, XmlElementType_Pseudo, CreateClass,
                                  ClassId_Contact, true),
        new CElementInfoSeqClsOpt(L"Comment", kNs, Prop_Comment, XmlElementType_Element,
                                  CreateClass, ClassId_Comment),
    });
    return infos;
}

CAttributeInfo** COrder::GetClassAttributeInfo() const {
    return NoAttributes();
}

// ---- sample ----

CSmartPtr<COrder> MakeFullOrder() {
    CSmartPtr<COrder> order = new COrder();
    order->Id = 42;
    order->OrderDate = CDateTime(2026, 11, 21);
    order->Status = Status_shipped;
    order->ShipTo->Street = L"1 Main Street";
    order->ShipTo->City = L"Z\u00fcrich";
    order->ShipTo->Zip = L"80331";
    order->BillTo = new CAddress();
    order->BillTo->SetElementName(L"BillTo");
    order->BillTo->Street = L"2 Side Road";
    order->BillTo->City = L"Berlin";
    order->Note = L"Fragile & <heavy>";
    order->Priority = Priority_high;
    order->Total = CDecimal(L"123.45");
    CSmartPtr<CCircle> circle = new CCircle();
    circle->SetElementName(L"Shape");
    circle->Radius = 2.5;
    order->Shape = circle.Ptr();
    order->Contact->Phone = L"+41 44 000 00 00";
    order->Contact->Email = L"orders@example.com";
    order->Comment = new CComment();
    order->Comment->Value = L"thanks";
    return order;
}

} // namespace fixtures
