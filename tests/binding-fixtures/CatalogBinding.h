#pragma once

// Repeated class members, as the code generator emits them:
//
//   <Catalog xmlns="urn:test:po">
//     Item    Item, 1 to 3 times          (TXmlObjectCol<CItem>)
//     Shape   abstract Shape, any number  (TXmlObjectCol<CShape> with the xsi:type factory)

#include "binding-fixtures/OrderBinding.h"

namespace fixtures {

class CItem : public TGenerated<CXmlGeneratedClass> {
public:
    enum { Prop_Name };

    CItem();
    void AccessProperty(int propertyIndex, bool read, QvVariant& value) override;
    CParentElementInfo* GetClassInfo() const override;
    CElementInfo** GetClassElementInfo() const override;
    CAttributeInfo** GetClassAttributeInfo() const override;
    void Init() override;

    std::wstring Name;
};

class CCatalog : public TGenerated<CXmlGeneratedClass> {
public:
    enum { Prop_Items, Prop_Shapes };

    CCatalog();
    void AccessProperty(int propertyIndex, bool read, QvVariant& value) override;
    CParentElementInfo* GetClassInfo() const override;
    CElementInfo** GetClassElementInfo() const override;
    CAttributeInfo** GetClassAttributeInfo() const override;
    void Init() override;

    CSmartPtr<TXmlObjectCol<CItem>> Items;
    CSmartPtr<TXmlObjectCol<CShape>> Shapes;
};

} // namespace fixtures
