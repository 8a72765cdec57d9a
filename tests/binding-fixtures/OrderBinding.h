#pragma once

// Classes for a small purchase-order schema, written the way the code generator emits them:
// static metadata built once, an AccessProperty switch on the property index, Init resetting
// the members, mandatory class members created by the constructor. Tests of the binding layer
// share them.
//
//   <Order xmlns="urn:test:po">            sequence
//     Id          i4, mandatory, minInclusive 1
//     OrderDate   date, mandatory
//     Status      enumeration, mandatory
//     ShipTo      Address, mandatory (read in place)
//     BillTo      Address, optional (class factory)
//     Note        string, optional, nillable, maxLength 20
//     Priority    enumeration, optional, default "normal"
//     Total       decimal, optional, default "0"
//     Shape       abstract Shape (CircleType or SquareType by xsi:type), optional
//     Phone       \  pseudo element Contact: no element of its own,
//     Email       /  its members stand directly in Order
//     Comment     Comment, optional: nillable, simple content string

#include <QvXmlLib16/QvXmlLib16.h>

#include <optional>
#include <string>

namespace fixtures {

using namespace QvXmlLib16;
using namespace QvXmlLib16Data;

inline constexpr wchar_t kNs[] = L"urn:test:po";

enum Status { Status_pending = 0, Status_shipped = 1, Status_delivered = 2 };

const wchar_t* StatusToString(int value);
int StatusFromString(const wchar_t* text);

enum Priority { Priority_low = 0, Priority_normal = 1, Priority_high = 2 };

const wchar_t* PriorityToString(int value);
int PriorityFromString(const wchar_t* text);

enum ClassId { ClassId_Address = 1, ClassId_Contact = 2, ClassId_Comment = 3 };

CSmartPtr<CXmlObjectBase> CreateClass(int classId, const wchar_t* elementName);
CSmartPtr<CXmlObjectBase> CreateShape(CXmlElement* element);

// Every generated class answers these three the same way.
template <class Base>
class TGenerated : public Base {
public:
    CXmlObjectBase* GetBase() override { return this; }

    std::wstring GetTargetNamespace() const override { return kNs; }

    std::wstring GetNamespace() const override { return kNs; }
};

class CAddress : public TGenerated<CXmlGeneratedClass> {
public:
    enum { Prop_Street, Prop_City, Prop_Zip };

    CAddress();
    void AccessProperty(int propertyIndex, bool read, QvVariant& value) override;
    CParentElementInfo* GetClassInfo() const override;
    CElementInfo** GetClassElementInfo() const override;
    CAttributeInfo** GetClassAttributeInfo() const override;
    void Init() override;

    std::wstring Street;
    std::wstring City;
    std::optional<std::wstring> Zip; // pattern \d{5}
};

class CContact : public TGenerated<CXmlGeneratedClass> {
public:
    enum { Prop_Phone, Prop_Email };

    CContact();
    void AccessProperty(int propertyIndex, bool read, QvVariant& value) override;
    CParentElementInfo* GetClassInfo() const override;
    CElementInfo** GetClassElementInfo() const override;
    CAttributeInfo** GetClassAttributeInfo() const override;
    void Init() override;

    std::wstring Phone;
    std::optional<std::wstring> Email;
};

// Nillable, with text content.
class CComment : public TGenerated<CXmlGeneratedClass>, public INillable {
public:
    enum { Prop_Value };

    CComment();
    void AccessProperty(int propertyIndex, bool read, QvVariant& value) override;
    CParentElementInfo* GetClassInfo() const override;
    CElementInfo** GetClassElementInfo() const override;
    CAttributeInfo** GetClassAttributeInfo() const override;
    void Init() override;

    bool IsNil() const override { return m_nil; }

    void SetNil(bool nil) override { m_nil = nil; }

    std::wstring Value;

private:
    bool m_nil = false;
};

// Abstract: members hold a CCircle or a CSquare.
class CShape : public TGenerated<CXmlGeneratedClass> {
public:
    CAttributeInfo** GetClassAttributeInfo() const override;
};

class CCircle : public CShape {
public:
    enum { Prop_Radius };

    CCircle();
    void AccessProperty(int propertyIndex, bool read, QvVariant& value) override;
    CParentElementInfo* GetClassInfo() const override;
    CElementInfo** GetClassElementInfo() const override;
    void Init() override;

    double Radius = 0;
};

class CSquare : public CShape {
public:
    enum { Prop_Side };

    CSquare();
    void AccessProperty(int propertyIndex, bool read, QvVariant& value) override;
    CParentElementInfo* GetClassInfo() const override;
    CElementInfo** GetClassElementInfo() const override;
    void Init() override;

    double Side = 0;
};

class COrder : public TGenerated<CXmlGeneratedClass> {
public:
    enum {
        Prop_Id,
        Prop_OrderDate,
        Prop_Status,
        Prop_ShipTo,
        Prop_BillTo,
        Prop_Note,
        Prop_Priority,
        Prop_Total,
        Prop_Shape,
        Prop_Contact,
        Prop_Comment
    };

    COrder();
    void AccessProperty(int propertyIndex, bool read, QvVariant& value) override;
    CParentElementInfo* GetClassInfo() const override;
    CElementInfo** GetClassElementInfo() const override;
    CAttributeInfo** GetClassAttributeInfo() const override;
    void Init() override;

    std::optional<long> Id;
    std::optional<CDateTime> OrderDate;
    std::optional<int> Status;
    CSmartPtr<CAddress> ShipTo;
    CSmartPtr<CAddress> BillTo;
    std::optional<std::wstring> Note;
    bool NoteIsNil = false;
    std::optional<int> Priority;
    std::optional<CDecimal> Total;
    CSmartPtr<CShape> Shape;
    CSmartPtr<CContact> Contact;
    CSmartPtr<CComment> Comment;
};

// An order with every member set.
CSmartPtr<COrder> MakeFullOrder();

} // namespace fixtures
