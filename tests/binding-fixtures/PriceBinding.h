#pragma once

// A simple-content class with attributes, as the code generator emits it:
//
//   <Price xmlns="urn:test:price" id="7" currency="EUR" kind="net">12.50</Price>
//     id        i4, required, minInclusive 1
//     currency  string, optional, default "EUR", pattern [A-Z]{3}
//     kind      enumeration (net, gross), optional
//     ns:tag    string in namespace urn:test:tags, optional
//     content   decimal

#include "binding-fixtures/OrderBinding.h"

namespace fixtures {

inline constexpr wchar_t kPriceNs[] = L"urn:test:price";
inline constexpr wchar_t kTagNs[] = L"urn:test:tags";

enum Kind { Kind_net = 0, Kind_gross = 1 };

const wchar_t* KindToString(int value);
int KindFromString(const wchar_t* text);

class CPrice : public CXmlGeneratedClass {
public:
    enum { Prop_Id, Prop_Currency, Prop_Kind, Prop_Tag, Prop_Value };

    CPrice();

    CXmlObjectBase* GetBase() override { return this; }

    std::wstring GetTargetNamespace() const override { return kPriceNs; }

    std::wstring GetNamespace() const override { return kPriceNs; }

    void AccessProperty(int propertyIndex, bool read, QvVariant& value) override;
    CParentElementInfo* GetClassInfo() const override;
    CElementInfo** GetClassElementInfo() const override;
    CAttributeInfo** GetClassAttributeInfo() const override;
    void Init() override;

    std::optional<long> Id;
    std::optional<std::wstring> Currency;
    std::optional<int> Kind;
    std::optional<std::wstring> Tag;
    CDecimal Value;
};

} // namespace fixtures
