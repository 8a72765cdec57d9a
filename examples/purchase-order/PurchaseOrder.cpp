#include "PurchaseOrder.h"

#include <cwchar>

namespace po {

namespace {

using Rule = CWhitespaceUtils::WhitespaceRule;

// Metadata tables are built on first use and live as long as the program.
template <size_t N>
CElementInfo** Elements(CElementInfo* const (&infos)[N]) {
    CElementInfo** table = new CElementInfo*[N + 1];
    for (size_t i = 0; i < N; ++i)
        table[i] = infos[i];
    table[N] = nullptr;
    return table;
}

template <size_t N>
CAttributeInfo** Attributes(CAttributeInfo* const (&infos)[N]) {
    CAttributeInfo** table = new CAttributeInfo*[N + 1];
    for (size_t i = 0; i < N; ++i)
        table[i] = infos[i];
    table[N] = nullptr;
    return table;
}

CAttributeInfo** NoAttributes() {
    static CAttributeInfo* none[] = {nullptr};
    return none;
}

// writeType: derived types name themselves in xsi:type.
CParentElementInfo* Sequence(const wchar_t* typeName, bool writeType = false) {
    return new CParentElementInfo(XmlElementGroupType_Sequence, XmlElementType_Element, typeName,
                                  kNs, true, writeType, -1, ItemType_Invalid, nullptr, false);
}

CPrimitiveRestrictions Pattern(const wchar_t* pattern) {
    return CPrimitiveRestrictions(pattern, -1, -1, nullptr, nullptr, nullptr, nullptr, -1, -1, -1);
}

// AmountType: a decimal of at most two fraction digits, not negative.
CPrimitiveRestrictions Amount() {
    return CPrimitiveRestrictions(nullptr, -1, -1, L"0", nullptr, nullptr, nullptr, -1, -1, 2);
}

CElementInfo* String(const wchar_t* name, int index, bool mandatory,
                     const CPrimitiveRestrictions& restrictions = CPrimitiveRestrictions()) {
    if (mandatory)
        return new CElementInfoSeqPrimMnd(name, kNs, index, false, ItemType_string, nullptr,
                                          Rule::WhitespaceRule_Preserve, restrictions, nullptr);
    return new CElementInfoSeqPrimOpt(name, kNs, index, false, ItemType_string, nullptr,
                                      Rule::WhitespaceRule_Preserve, restrictions, nullptr);
}

CElementInfo* AmountElement(const wchar_t* name, int index) {
    return new CElementInfoSeqPrimMnd(name, kNs, index, false, ItemType_decimal, nullptr,
                                      Rule::WhitespaceRule_Collapse, Amount(), nullptr);
}

// Unset optional members leave the variant empty, which writes nothing.
void Access(std::optional<std::wstring>& member, bool read, QvVariant& value) {
    if (!read)
        member = value.GetString();
    else if (member)
        value.SetString(*member);
}

void Access(std::optional<CDecimal>& member, bool read, QvVariant& value) {
    if (!read)
        member = value.GetDecimal();
    else if (member)
        value.SetDecimal(*member);
}

void AccessDate(std::optional<CDateTime>& member, bool read, QvVariant& value) {
    if (!read)
        member = value.GetDate();
    else if (member)
        value.SetDate(*member);
}

void AccessEnum(std::optional<int>& member, bool read, QvVariant& value) {
    if (!read)
        member = static_cast<int>(value.GetI4());
    else if (member)
        value.SetI4(*member);
}

template <class T>
void AccessObject(CSmartPtr<T>& member, bool read, QvVariant& value) {
    if (read)
        value.SetXmlObject(member);
    else
        member = static_cast<T*>(value.GetXmlObject().Ptr());
}

int LookupEnum(const wchar_t* text, const wchar_t* (*toString)(int), const wchar_t* typeName) {
    for (int i = 0; toString(i); ++i) {
        if (std::wcscmp(toString(i), text) == 0)
            return i;
    }
    throw CQvInvalidValueException(FormatString(L"Invalid %ls value [%ls]", typeName, text));
}

const wchar_t* NameAt(int value, const wchar_t* const* names, int count) {
    return value >= 0 && value < count ? names[value] : nullptr;
}

} // namespace

// ---- enumerations ----

const wchar_t* StatusTypeToString(int value) {
    static const wchar_t* const names[] = {L"pending", L"confirmed", L"shipped", L"delivered",
                                           L"cancelled"};
    return NameAt(value, names, 5);
}

int StatusTypeFromString(const wchar_t* text) {
    return LookupEnum(text, StatusTypeToString, L"StatusType");
}

const wchar_t* ShippingTypeToString(int value) {
    static const wchar_t* const names[] = {L"standard", L"express", L"overnight"};
    return NameAt(value, names, 3);
}

int ShippingTypeFromString(const wchar_t* text) {
    return LookupEnum(text, ShippingTypeToString, L"ShippingType");
}

const wchar_t* CurrencyTypeToString(int value) {
    static const wchar_t* const names[] = {L"EUR", L"USD", L"GBP", L"CHF"};
    return NameAt(value, names, 4);
}

int CurrencyTypeFromString(const wchar_t* text) {
    return LookupEnum(text, CurrencyTypeToString, L"CurrencyType");
}

// ---- factories ----

CSmartPtr<CXmlObjectBase> CreateClass(int classId, const wchar_t* elementName) {
    CXmlObjectBase* object = nullptr;
    switch (classId) {
    case ClassId_Address: object = new CAddress(); break;
    case ClassId_Customer: object = new CCustomer(); break;
    case ClassId_GiftMessage: object = new CGiftMessage(); break;
    default: return nullptr;
    }
    object->SetElementName(elementName);
    return object;
}

// An unprefixed type name is taken to be in the schema's namespace, as the default namespace
// declared on the document puts it there.
CSmartPtr<CXmlObjectBase> CreatePayment(CXmlElement* element) {
    const std::wstring typeNs = CClassfactoryBase::GetElementTypeNamespaceUri(element);
    if (!typeNs.empty() && typeNs != kNs)
        return nullptr;
    const std::wstring type = CClassfactoryBase::GetElementType(element);
    if (type == L"CardPaymentType")
        return new CCardPayment();
    if (type == L"InvoicePaymentType")
        return new CInvoicePayment();
    return nullptr;
}

// ---- CAddress ----

CAddress::CAddress() {
    SetElementName(L"address");
}

void CAddress::Init() {
    Street.reset();
    City.reset();
    PostalCode.reset();
    Country.reset();
}

void CAddress::AccessProperty(int propertyIndex, bool read, QvVariant& value) {
    switch (propertyIndex) {
    case Prop_Street: Access(Street, read, value); break;
    case Prop_City: Access(City, read, value); break;
    case Prop_PostalCode: Access(PostalCode, read, value); break;
    case Prop_Country: Access(Country, read, value); break;
    }
}

CParentElementInfo* CAddress::GetClassInfo() const {
    static CParentElementInfo* info = Sequence(L"AddressType");
    return info;
}

CElementInfo** CAddress::GetClassElementInfo() const {
    static CElementInfo** infos = Elements({
        String(L"street", Prop_Street, true),
        String(L"city", Prop_City, true),
        String(
            L"postalCode", Prop_PostalCode, true,
            CPrimitiveRestrictions(nullptr, 3, 10, nullptr, nullptr, nullptr, nullptr, -1, -1, -1)),
        String(L"country", Prop_Country, true, Pattern(L"[A-Z]{2}")),
    });
    return infos;
}

CAttributeInfo** CAddress::GetClassAttributeInfo() const {
    return NoAttributes();
}

// ---- CCustomer ----

CCustomer::CCustomer() {
    SetElementName(L"customer");
    Init();
}

void CCustomer::Init() {
    CustomerId.reset();
    Name.reset();
    Email.reset();
    Address = new CAddress();
}

void CCustomer::AccessProperty(int propertyIndex, bool read, QvVariant& value) {
    switch (propertyIndex) {
    case Prop_CustomerId: Access(CustomerId, read, value); break;
    case Prop_Name: Access(Name, read, value); break;
    case Prop_Email: Access(Email, read, value); break;
    case Prop_Address: AccessObject(Address, read, value); break;
    }
}

CParentElementInfo* CCustomer::GetClassInfo() const {
    static CParentElementInfo* info = Sequence(L"CustomerType");
    return info;
}

CElementInfo** CCustomer::GetClassElementInfo() const {
    static CElementInfo** infos = Elements({
        String(L"name", Prop_Name, true),
        String(L"email", Prop_Email, false, Pattern(L"[^@\\s]+@[^@\\s]+")),
        new CElementInfoSeqClsMnd(L"address", kNs, Prop_Address, XmlElementType_Element,
                                  CreateClass, ClassId_Address, true),
    });
    return infos;
}

// Unqualified attributes are in no namespace.
CAttributeInfo** CCustomer::GetClassAttributeInfo() const {
    static CAttributeInfo** infos = Attributes({
        new CAttributeInfoPrimitive(L"customerId", L"", Prop_CustomerId, false, ItemType_string,
                                    nullptr, Rule::WhitespaceRule_Preserve,
                                    CPrimitiveRestrictions(), nullptr),
    });
    return infos;
}

// ---- CItem ----

CItem::CItem() {
    SetElementName(L"item");
}

void CItem::Init() {
    Sku.reset();
    ProductName.reset();
    Quantity.reset();
    UnitPrice.reset();
    Note.reset();
}

void CItem::AccessProperty(int propertyIndex, bool read, QvVariant& value) {
    switch (propertyIndex) {
    case Prop_Sku: Access(Sku, read, value); break;
    case Prop_ProductName: Access(ProductName, read, value); break;
    case Prop_Quantity:
        if (!read)
            Quantity = value.GetI4();
        else if (Quantity)
            value.SetI4(*Quantity);
        break;
    case Prop_UnitPrice: Access(UnitPrice, read, value); break;
    case Prop_Note: Access(Note, read, value); break;
    }
}

CParentElementInfo* CItem::GetClassInfo() const {
    static CParentElementInfo* info = Sequence(L"ItemType");
    return info;
}

CElementInfo** CItem::GetClassElementInfo() const {
    static CElementInfo** infos = Elements({
        String(L"productName", Prop_ProductName, true),
        new CElementInfoSeqPrimMnd(
            L"quantity", kNs, Prop_Quantity, false, ItemType_i4, nullptr,
            Rule::WhitespaceRule_Collapse,
            CPrimitiveRestrictions(nullptr, -1, -1, L"1", nullptr, nullptr, L"1000", -1, -1, -1),
            nullptr),
        AmountElement(L"unitPrice", Prop_UnitPrice),
        String(L"note", Prop_Note, false),
    });
    return infos;
}

CAttributeInfo** CItem::GetClassAttributeInfo() const {
    static CAttributeInfo** infos = Attributes({
        new CAttributeInfoPrimitive(L"sku", L"", Prop_Sku, false, ItemType_string, nullptr,
                                    Rule::WhitespaceRule_Collapse, Pattern(L"\\d{3}-[A-Z]{2}"),
                                    nullptr),
    });
    return infos;
}

// ---- payments ----

void CPayment::Init() {
    Amount.reset();
}

void CPayment::AccessProperty(int propertyIndex, bool read, QvVariant& value) {
    if (propertyIndex == Prop_Amount)
        Access(Amount, read, value);
}

CAttributeInfo** CPayment::GetClassAttributeInfo() const {
    return NoAttributes();
}

// Named after its type until it becomes a member; the member's element name then applies.
CCardPayment::CCardPayment() {
    SetElementName(L"CardPaymentType");
}

void CCardPayment::Init() {
    CPayment::Init();
    Cardholder.reset();
    LastDigits.reset();
    Expires.reset();
}

void CCardPayment::AccessProperty(int propertyIndex, bool read, QvVariant& value) {
    switch (propertyIndex) {
    case Prop_Cardholder: Access(Cardholder, read, value); break;
    case Prop_LastDigits: Access(LastDigits, read, value); break;
    case Prop_Expires:
        if (!read)
            Expires = value.GetYearMonth();
        else if (Expires)
            value.SetYearMonth(*Expires);
        break;
    default: CPayment::AccessProperty(propertyIndex, read, value);
    }
}

CParentElementInfo* CCardPayment::GetClassInfo() const {
    static CParentElementInfo* info = Sequence(L"CardPaymentType", true);
    return info;
}

CElementInfo** CCardPayment::GetClassElementInfo() const {
    static CElementInfo** infos = Elements({
        AmountElement(L"amount", Prop_Amount),
        String(L"cardholder", Prop_Cardholder, true),
        String(L"lastDigits", Prop_LastDigits, true, Pattern(L"\\d{4}")),
        new CElementInfoSeqPrimMnd(L"expires", kNs, Prop_Expires, false, ItemType_yearMonth,
                                   nullptr, Rule::WhitespaceRule_Collapse, CPrimitiveRestrictions(),
                                   nullptr),
    });
    return infos;
}

CInvoicePayment::CInvoicePayment() {
    SetElementName(L"InvoicePaymentType");
}

void CInvoicePayment::Init() {
    CPayment::Init();
    DueDate.reset();
    BillTo = nullptr;
}

void CInvoicePayment::AccessProperty(int propertyIndex, bool read, QvVariant& value) {
    switch (propertyIndex) {
    case Prop_DueDate: AccessDate(DueDate, read, value); break;
    case Prop_BillTo: AccessObject(BillTo, read, value); break;
    default: CPayment::AccessProperty(propertyIndex, read, value);
    }
}

CParentElementInfo* CInvoicePayment::GetClassInfo() const {
    static CParentElementInfo* info = Sequence(L"InvoicePaymentType", true);
    return info;
}

CElementInfo** CInvoicePayment::GetClassElementInfo() const {
    static CElementInfo** infos = Elements({
        AmountElement(L"amount", Prop_Amount),
        new CElementInfoSeqPrimMnd(L"dueDate", kNs, Prop_DueDate, false, ItemType_date, nullptr,
                                   Rule::WhitespaceRule_Collapse, CPrimitiveRestrictions(),
                                   nullptr),
        new CElementInfoSeqClsOpt(L"billTo", kNs, Prop_BillTo, XmlElementType_Element, CreateClass,
                                  ClassId_Address),
    });
    return infos;
}

// ---- CGiftMessage ----

CGiftMessage::CGiftMessage() {
    SetElementName(L"giftMessage");
}

void CGiftMessage::Init() {
    Text.clear();
    From.reset();
    m_nil = false;
}

void CGiftMessage::AccessProperty(int propertyIndex, bool read, QvVariant& value) {
    switch (propertyIndex) {
    case Prop_Text:
        if (read)
            value.SetString(Text);
        else
            Text = value.GetString();
        break;
    case Prop_From: Access(From, read, value); break;
    }
}

// The text is the element's simple content, not a member element.
CParentElementInfo* CGiftMessage::GetClassInfo() const {
    static CParentElementInfo* info = new CParentElementInfo(
        XmlElementGroupType_Sequence, XmlElementType_Element, L"GiftMessageType", kNs, true, false,
        Prop_Text, ItemType_string, nullptr, false);
    return info;
}

CElementInfo** CGiftMessage::GetClassElementInfo() const {
    static CElementInfo* none[] = {nullptr};
    return none;
}

CAttributeInfo** CGiftMessage::GetClassAttributeInfo() const {
    static CAttributeInfo** infos = Attributes({
        new CAttributeInfoPrimitive(L"from", L"", Prop_From, true, ItemType_string, nullptr,
                                    Rule::WhitespaceRule_Preserve, CPrimitiveRestrictions(),
                                    nullptr),
    });
    return infos;
}

// ---- CPurchaseOrder ----

// The collection lives as long as the order; Init only empties it.
CPurchaseOrder::CPurchaseOrder() : Items(new TXmlObjectCol<CItem>(L"item", kNs, 1, -1)) {
    SetElementName(L"purchaseOrder");
    Init();
}

// Mandatory class members always exist; the abstract payment cannot, so it starts null.
void CPurchaseOrder::Init() {
    OrderId.reset();
    OrderDate.reset();
    Currency.reset();
    Status.reset();
    Customer = new CCustomer();
    ShipTo = nullptr;
    Items->Clear();
    Shipping.reset();
    DeliverBy.reset();
    Payment = nullptr;
    GiftMessage = nullptr;
    Total.reset();
}

void CPurchaseOrder::AccessProperty(int propertyIndex, bool read, QvVariant& value) {
    switch (propertyIndex) {
    case Prop_OrderId: Access(OrderId, read, value); break;
    case Prop_OrderDate: AccessDate(OrderDate, read, value); break;
    case Prop_Currency: AccessEnum(Currency, read, value); break;
    case Prop_Status: AccessEnum(Status, read, value); break;
    case Prop_Customer: AccessObject(Customer, read, value); break;
    case Prop_ShipTo: AccessObject(ShipTo, read, value); break;
    case Prop_Items:
        // Filled in place by the driver, never replaced.
        if (read)
            value.SetXmlCollection(Items);
        break;
    case Prop_Shipping: AccessEnum(Shipping, read, value); break;
    case Prop_DeliverBy: AccessDate(DeliverBy, read, value); break;
    case Prop_Payment: AccessObject(Payment, read, value); break;
    case Prop_GiftMessage: AccessObject(GiftMessage, read, value); break;
    case Prop_Total: Access(Total, read, value); break;
    }
}

CParentElementInfo* CPurchaseOrder::GetClassInfo() const {
    static CParentElementInfo* info = Sequence(L"PurchaseOrderType");
    return info;
}

CElementInfo** CPurchaseOrder::GetClassElementInfo() const {
    static CElementInfo** infos = Elements({
        new CElementInfoSeqEnumMnd(L"status", kNs, Prop_Status, false, StatusTypeToString,
                                   StatusTypeFromString, nullptr),
        new CElementInfoSeqClsMnd(L"customer", kNs, Prop_Customer, XmlElementType_Element,
                                  CreateClass, ClassId_Customer, true),
        new CElementInfoSeqClsOpt(L"shipTo", kNs, Prop_ShipTo, XmlElementType_Element, CreateClass,
                                  ClassId_Address),
        new CElementInfoSeqClsCol(L"item", kNs, Prop_Items, XmlElementType_Element),
        new CElementInfoSeqEnumOpt(L"shipping", kNs, Prop_Shipping, false, ShippingTypeToString,
                                   ShippingTypeFromString, L"standard"),
        new CElementInfoSeqPrimOpt(L"deliverBy", kNs, Prop_DeliverBy, false, ItemType_date, nullptr,
                                   Rule::WhitespaceRule_Collapse, CPrimitiveRestrictions(),
                                   nullptr),
        new CElementInfoSeqAbsClsMnd(L"payment", kNs, Prop_Payment, XmlElementType_Element,
                                     CreatePayment),
        new CElementInfoSeqClsOpt(L"giftMessage", kNs, Prop_GiftMessage, XmlElementType_Element,
                                  CreateClass, ClassId_GiftMessage),
        AmountElement(L"total", Prop_Total),
    });
    return infos;
}

CAttributeInfo** CPurchaseOrder::GetClassAttributeInfo() const {
    static CAttributeInfo** infos = Attributes({
        new CAttributeInfoPrimitive(L"orderId", L"", Prop_OrderId, false, ItemType_string, nullptr,
                                    Rule::WhitespaceRule_Collapse, Pattern(L"PO-\\d{4}-\\d{4}"),
                                    nullptr),
        new CAttributeInfoPrimitive(L"orderDate", L"", Prop_OrderDate, false, ItemType_date,
                                    nullptr, Rule::WhitespaceRule_Collapse,
                                    CPrimitiveRestrictions(), nullptr),
        new CAttributeInfoEnum(L"currency", L"", Prop_Currency, true, CurrencyTypeToString,
                               CurrencyTypeFromString, L"EUR"),
    });
    return infos;
}

} // namespace po
