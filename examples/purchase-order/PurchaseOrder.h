#pragma once

// The classes a code generator emits for purchase-order.xsd (namespace
// urn:example:purchase-order). One class per complex type, one member per element or
// attribute, and per class:
//
//   - an enum of property indexes in schema order, and AccessProperty, a switch on them that
//     copies a member into a QvVariant (read) or back (write);
//   - the metadata the library's driver walks, built once on first use and never freed:
//     GetClassInfo (group, type name, simple content), GetClassElementInfo (the members in
//     schema order, null-terminated), GetClassAttributeInfo (likewise);
//   - Init, which resets every member; each read starts with it.
//
// How schema constructs map to members:
//
//   required primitive or enumeration     std::optional<T>: unset is written as nothing, and a
//                                         required member that is unset fails on writing
//   optional primitive or enumeration     std::optional<T>
//   required class                        CSmartPtr<T>, created by the constructor and by Init
//   optional class                        CSmartPtr<T>, null when absent
//   abstract class                        CSmartPtr<Base>; reading picks the concrete class from
//                                         xsi:type (CreatePayment), writing adds xsi:type
//   repeated class                        TXmlObjectCol<T>, alive as long as its owner
//   nillable class                        also derives from INillable
//   enumeration                           an int carried as i4, with a ToString/FromString pair
//   derived type                          derives from its base class; its metadata lists the
//                                         base's members first

#include <QvXmlLib16/QvXmlLib16.h>

#include <optional>
#include <string>

namespace po {

using namespace QvXmlLib16;
using namespace QvXmlLib16Data;

inline constexpr wchar_t kNs[] = L"urn:example:purchase-order";

// ---- enumerations ----

enum StatusType {
    Status_pending,
    Status_confirmed,
    Status_shipped,
    Status_delivered,
    Status_cancelled
};

const wchar_t* StatusTypeToString(int value);
int StatusTypeFromString(const wchar_t* text);

enum ShippingType { Shipping_standard, Shipping_express, Shipping_overnight };

const wchar_t* ShippingTypeToString(int value);
int ShippingTypeFromString(const wchar_t* text);

enum CurrencyType { Currency_EUR, Currency_USD, Currency_GBP, Currency_CHF };

const wchar_t* CurrencyTypeToString(int value);
int CurrencyTypeFromString(const wchar_t* text);

// ---- factories ----

enum ClassId { ClassId_Address = 1, ClassId_Customer, ClassId_GiftMessage };

// Creates the class of a member by its class id and names it after the member's element.
CSmartPtr<CXmlObjectBase> CreateClass(int classId, const wchar_t* elementName);
// Creates the payment class the element's xsi:type names; null for an unknown type.
CSmartPtr<CXmlObjectBase> CreatePayment(CXmlElement* element);

// What every generated class answers alike.
template <class Base>
class TGenerated : public Base {
public:
    CXmlObjectBase* GetBase() override { return this; }

    std::wstring GetTargetNamespace() const override { return kNs; }

    std::wstring GetNamespace() const override { return kNs; }
};

// ---- complex types ----

class CAddress : public TGenerated<CXmlGeneratedClass> {
public:
    enum { Prop_Street, Prop_City, Prop_PostalCode, Prop_Country };

    CAddress();
    void AccessProperty(int propertyIndex, bool read, QvVariant& value) override;
    CParentElementInfo* GetClassInfo() const override;
    CElementInfo** GetClassElementInfo() const override;
    CAttributeInfo** GetClassAttributeInfo() const override;
    void Init() override;

    std::optional<std::wstring> Street;
    std::optional<std::wstring> City;
    std::optional<std::wstring> PostalCode;
    std::optional<std::wstring> Country;
};

class CCustomer : public TGenerated<CXmlGeneratedClass> {
public:
    enum { Prop_CustomerId, Prop_Name, Prop_Email, Prop_Address };

    CCustomer();
    void AccessProperty(int propertyIndex, bool read, QvVariant& value) override;
    CParentElementInfo* GetClassInfo() const override;
    CElementInfo** GetClassElementInfo() const override;
    CAttributeInfo** GetClassAttributeInfo() const override;
    void Init() override;

    std::optional<std::wstring> CustomerId; // attribute
    std::optional<std::wstring> Name;
    std::optional<std::wstring> Email;
    CSmartPtr<CAddress> Address;
};

class CItem : public TGenerated<CXmlGeneratedClass> {
public:
    enum { Prop_Sku, Prop_ProductName, Prop_Quantity, Prop_UnitPrice, Prop_Note };

    CItem();
    void AccessProperty(int propertyIndex, bool read, QvVariant& value) override;
    CParentElementInfo* GetClassInfo() const override;
    CElementInfo** GetClassElementInfo() const override;
    CAttributeInfo** GetClassAttributeInfo() const override;
    void Init() override;

    std::optional<std::wstring> Sku; // attribute
    std::optional<std::wstring> ProductName;
    std::optional<long> Quantity;
    std::optional<CDecimal> UnitPrice;
    std::optional<std::wstring> Note;
};

// Abstract: a member of this type holds a CCardPayment or a CInvoicePayment.
class CPayment : public TGenerated<CXmlGeneratedClass> {
public:
    enum { Prop_Amount, Prop_Next };

    void AccessProperty(int propertyIndex, bool read, QvVariant& value) override;
    CAttributeInfo** GetClassAttributeInfo() const override;
    void Init() override;

    std::optional<CDecimal> Amount;
};

class CCardPayment : public CPayment {
public:
    enum { Prop_Cardholder = Prop_Next, Prop_LastDigits, Prop_Expires };

    CCardPayment();
    void AccessProperty(int propertyIndex, bool read, QvVariant& value) override;
    CParentElementInfo* GetClassInfo() const override;
    CElementInfo** GetClassElementInfo() const override;
    void Init() override;

    std::optional<std::wstring> Cardholder;
    std::optional<std::wstring> LastDigits;
    std::optional<CDateTime> Expires; // gYearMonth
};

class CInvoicePayment : public CPayment {
public:
    enum { Prop_DueDate = Prop_Next, Prop_BillTo };

    CInvoicePayment();
    void AccessProperty(int propertyIndex, bool read, QvVariant& value) override;
    CParentElementInfo* GetClassInfo() const override;
    CElementInfo** GetClassElementInfo() const override;
    void Init() override;

    std::optional<CDateTime> DueDate;
    CSmartPtr<CAddress> BillTo;
};

// Simple content (the text) with an attribute; nillable where the order uses it.
class CGiftMessage : public TGenerated<CXmlGeneratedClass>, public INillable {
public:
    enum { Prop_Text, Prop_From };

    CGiftMessage();
    void AccessProperty(int propertyIndex, bool read, QvVariant& value) override;
    CParentElementInfo* GetClassInfo() const override;
    CElementInfo** GetClassElementInfo() const override;
    CAttributeInfo** GetClassAttributeInfo() const override;
    void Init() override;

    bool IsNil() const override { return m_nil; }

    void SetNil(bool nil) override { m_nil = nil; }

    std::wstring Text;
    std::optional<std::wstring> From; // attribute

private:
    bool m_nil = false;
};

// The document element, purchaseOrder.
class CPurchaseOrder : public TGenerated<CXmlGeneratedClass> {
public:
    enum {
        Prop_OrderId,
        Prop_OrderDate,
        Prop_Currency,
        Prop_Status,
        Prop_Customer,
        Prop_ShipTo,
        Prop_Items,
        Prop_Shipping,
        Prop_DeliverBy,
        Prop_Payment,
        Prop_GiftMessage,
        Prop_Total
    };

    CPurchaseOrder();
    void AccessProperty(int propertyIndex, bool read, QvVariant& value) override;
    CParentElementInfo* GetClassInfo() const override;
    CElementInfo** GetClassElementInfo() const override;
    CAttributeInfo** GetClassAttributeInfo() const override;
    void Init() override;

    std::optional<std::wstring> OrderId; // attribute
    std::optional<CDateTime> OrderDate;  // attribute
    std::optional<int> Currency;         // attribute; absent means EUR
    std::optional<int> Status;           // StatusType
    CSmartPtr<CCustomer> Customer;
    CSmartPtr<CAddress> ShipTo;
    CSmartPtr<TXmlObjectCol<CItem>> Items; // one or more
    std::optional<int> Shipping;           // ShippingType; absent means standard
    std::optional<CDateTime> DeliverBy;
    CSmartPtr<CPayment> Payment;
    CSmartPtr<CGiftMessage> GiftMessage;
    std::optional<CDecimal> Total;
};

} // namespace po
