#pragma once

// Classes for shared/bench/orders.xsd, written the way the code generator emits them (header
// only, so every benchmark program can include them).

#include <QvXmlLib16/QvXmlLib16.h>

#include <cwchar>
#include <optional>

namespace orders {

using namespace QvXmlLib16;
using namespace QvXmlLib16Data;

inline constexpr wchar_t kNs[] = L"urn:example:po";
using Rule = CWhitespaceUtils::WhitespaceRule;

inline const wchar_t* StatusToString(int value) {
    static const wchar_t* const names[] = {L"pending", L"paid", L"shipped", L"delivered",
                                           L"cancelled"};
    return value >= 0 && value < 5 ? names[value] : nullptr;
}

inline int StatusFromString(const wchar_t* text) {
    for (int i = 0; i < 5; ++i) {
        if (std::wcscmp(StatusToString(i), text) == 0)
            return i;
    }
    throw CQvInvalidValueException(FormatString(L"Invalid StatusType value [%ls]", text));
}

inline CAttributeInfo** NoAttributes() {
    static CAttributeInfo* none[] = {nullptr};
    return none;
}

inline CParentElementInfo* SequenceInfo(const wchar_t* typeName) {
    return new CParentElementInfo(XmlElementGroupType_Sequence, XmlElementType_Element, typeName,
                                  kNs, true, false, -1, ItemType_Invalid, nullptr, false);
}

inline CElementInfo* String(const wchar_t* name, int index) {
    return new CElementInfoSeqPrimMnd(name, kNs, index, false, ItemType_string, nullptr,
                                      Rule::WhitespaceRule_Preserve, CPrimitiveRestrictions(),
                                      nullptr);
}

template <class Self>
class TGenerated : public CXmlGeneratedClass {
public:
    CXmlObjectBase* GetBase() override { return this; }

    std::wstring GetTargetNamespace() const override { return kNs; }

    std::wstring GetNamespace() const override { return kNs; }

    CAttributeInfo** GetClassAttributeInfo() const override { return NoAttributes(); }
};

inline void Access(std::wstring& member, bool read, QvVariant& value) {
    if (read)
        value.SetString(member);
    else
        member = value.GetString();
}

class CAddress : public TGenerated<CAddress> {
public:
    std::wstring Street, City, Zip, Country;

    CAddress() { SetElementName(L"address"); }

    void Init() override { Street = City = Zip = Country = L""; }

    void AccessProperty(int index, bool read, QvVariant& value) override {
        std::wstring* members[] = {&Street, &City, &Zip, &Country};
        Access(*members[index], read, value);
    }

    CParentElementInfo* GetClassInfo() const override {
        static CParentElementInfo* info = SequenceInfo(L"AddressType");
        return info;
    }

    CElementInfo** GetClassElementInfo() const override {
        static CElementInfo* infos[] = {String(L"street", 0), String(L"city", 1), String(L"zip", 2),
                                        String(L"country", 3), nullptr};
        return infos;
    }
};

inline CSmartPtr<CXmlObjectBase> CreateClass(int classId, const wchar_t* elementName);

class CCustomer : public TGenerated<CCustomer> {
public:
    std::wstring Name, Email;
    CSmartPtr<CAddress> Address;

    CCustomer() {
        SetElementName(L"customer");
        Init();
    }

    void Init() override {
        Name = Email = L"";
        Address = new CAddress();
    }

    void AccessProperty(int index, bool read, QvVariant& value) override {
        if (index == 0)
            Access(Name, read, value);
        else if (index == 1)
            Access(Email, read, value);
        else if (read)
            value.SetXmlObject(Address);
        else
            Address = static_cast<CAddress*>(value.GetXmlObject().Ptr());
    }

    CParentElementInfo* GetClassInfo() const override {
        static CParentElementInfo* info = SequenceInfo(L"CustomerType");
        return info;
    }

    CElementInfo** GetClassElementInfo() const override {
        static CElementInfo* infos[] = {String(L"name", 0), String(L"email", 1),
                                        new CElementInfoSeqClsMnd(L"address", kNs, 2,
                                                                  XmlElementType_Element,
                                                                  CreateClass, 1, true),
                                        nullptr};
        return infos;
    }
};

class CItem : public TGenerated<CItem> {
public:
    std::wstring Sku, Name;
    long Quantity = 0;
    CDecimal Price;
    std::optional<std::wstring> Note;

    CItem() { SetElementName(L"item"); }

    void Init() override {
        Sku = Name = L"";
        Quantity = 0;
        Price = CDecimal();
        Note.reset();
    }

    void AccessProperty(int index, bool read, QvVariant& value) override {
        switch (index) {
        case 0: Access(Sku, read, value); break;
        case 1: Access(Name, read, value); break;
        case 2:
            if (read)
                value.SetI4(Quantity);
            else
                Quantity = value.GetI4();
            break;
        case 3:
            if (read)
                value.SetDecimal(Price);
            else
                Price = value.GetDecimal();
            break;
        case 4:
            if (read) {
                if (Note)
                    value.SetString(*Note);
            } else {
                Note = value.GetString();
            }
            break;
        }
    }

    CParentElementInfo* GetClassInfo() const override {
        static CParentElementInfo* info = SequenceInfo(L"ItemType");
        return info;
    }

    CElementInfo** GetClassElementInfo() const override {
        static CElementInfo* infos[] = {
            String(L"name", 1),
            new CElementInfoSeqPrimMnd(L"quantity", kNs, 2, false, ItemType_i4, nullptr,
                                       Rule::WhitespaceRule_Collapse, CPrimitiveRestrictions(),
                                       nullptr),
            new CElementInfoSeqPrimMnd(L"price", kNs, 3, false, ItemType_decimal, nullptr,
                                       Rule::WhitespaceRule_Collapse, CPrimitiveRestrictions(),
                                       nullptr),
            new CElementInfoSeqPrimOpt(L"note", kNs, 4, false, ItemType_string, nullptr,
                                       Rule::WhitespaceRule_Preserve, CPrimitiveRestrictions(),
                                       nullptr),
            nullptr};
        return infos;
    }

    CAttributeInfo** GetClassAttributeInfo() const override {
        static CAttributeInfo* infos[] = {
            new CAttributeInfoPrimitive(L"sku", L"", 0, false, ItemType_string, nullptr,
                                        Rule::WhitespaceRule_Preserve, CPrimitiveRestrictions(),
                                        nullptr),
            nullptr};
        return infos;
    }
};

class COrder : public TGenerated<COrder> {
public:
    std::wstring Id;
    CDateTime Date{CDateTime::DTType_date};
    CSmartPtr<CCustomer> Customer;
    CSmartPtr<TXmlObjectCol<CItem>> Items = new TXmlObjectCol<CItem>(L"item", kNs, 1, -1);
    CDecimal Total;
    int Status = 0;

    COrder() {
        SetElementName(L"order");
        Init();
    }

    void Init() override {
        Id.clear();
        Customer = new CCustomer();
        Items->Clear();
        Total = CDecimal();
        Status = 0;
    }

    void AccessProperty(int index, bool read, QvVariant& value) override {
        switch (index) {
        case 0: Access(Id, read, value); break;
        case 1:
            if (read)
                value.SetDate(Date);
            else
                Date = value.GetDate();
            break;
        case 2:
            if (read)
                value.SetXmlObject(Customer);
            else
                Customer = static_cast<CCustomer*>(value.GetXmlObject().Ptr());
            break;
        case 3:
            if (read)
                value.SetXmlCollection(Items);
            break;
        case 4:
            if (read)
                value.SetDecimal(Total);
            else
                Total = value.GetDecimal();
            break;
        case 5:
            if (read)
                value.SetI4(Status);
            else
                Status = static_cast<int>(value.GetI4());
            break;
        }
    }

    CParentElementInfo* GetClassInfo() const override {
        static CParentElementInfo* info = SequenceInfo(L"OrderType");
        return info;
    }

    CElementInfo** GetClassElementInfo() const override {
        static CElementInfo* infos[] = {
            new CElementInfoSeqClsMnd(L"customer", kNs, 2, XmlElementType_Element, CreateClass, 2,
                                      true),
            new CElementInfoSeqClsCol(L"item", kNs, 3, XmlElementType_Element),
            new CElementInfoSeqPrimMnd(L"total", kNs, 4, false, ItemType_decimal, nullptr,
                                       Rule::WhitespaceRule_Collapse, CPrimitiveRestrictions(),
                                       nullptr),
            new CElementInfoSeqEnumMnd(L"status", kNs, 5, false, StatusToString, StatusFromString,
                                       nullptr),
            nullptr};
        return infos;
    }

    CAttributeInfo** GetClassAttributeInfo() const override {
        static CAttributeInfo* infos[] = {
            new CAttributeInfoPrimitive(L"id", L"", 0, false, ItemType_string, nullptr,
                                        Rule::WhitespaceRule_Preserve, CPrimitiveRestrictions(),
                                        nullptr),
            new CAttributeInfoPrimitive(L"date", L"", 1, false, ItemType_date, nullptr,
                                        Rule::WhitespaceRule_Collapse, CPrimitiveRestrictions(),
                                        nullptr),
            nullptr};
        return infos;
    }
};

class COrders : public TGenerated<COrders> {
public:
    CSmartPtr<TXmlObjectCol<COrder>> Orders = new TXmlObjectCol<COrder>(L"order", kNs, 0, -1);

    COrders() { SetElementName(L"orders"); }

    void Init() override { Orders->Clear(); }

    void AccessProperty(int index, bool read, QvVariant& value) override {
        if (index == 0 && read)
            value.SetXmlCollection(Orders);
    }

    CParentElementInfo* GetClassInfo() const override {
        static CParentElementInfo* info = SequenceInfo(L"OrdersType");
        return info;
    }

    CElementInfo** GetClassElementInfo() const override {
        static CElementInfo* infos[] = {
            new CElementInfoSeqClsCol(L"order", kNs, 0, XmlElementType_Element), nullptr};
        return infos;
    }
};

inline CSmartPtr<CXmlObjectBase> CreateClass(int classId, const wchar_t*) {
    if (classId == 1)
        return new CAddress();
    if (classId == 2)
        return new CCustomer();
    return nullptr;
}

} // namespace orders
