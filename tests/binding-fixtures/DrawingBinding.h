#pragma once

// The member kinds the order does not have, written the way the code generator emits them.
//
//   <Drawing xmlns="urn:test:po">  sequence
//     Main     abstract Shape, mandatory (element factory)
//     Owner    Address, mandatory, made by the class factory (not read in place)
//     Scale    i4, optional, default "0", minInclusive 1: the default breaks the facet
//     Phone    \  pseudo element Contact, optional
//     Email    /

#include "binding-fixtures/OrderBinding.h"

namespace fixtures {

class CDrawing : public TGenerated<CXmlGeneratedClass> {
public:
    enum { Prop_Main, Prop_Owner, Prop_Scale, Prop_Contact };

    CDrawing();
    void AccessProperty(int propertyIndex, bool read, QvVariant& value) override;
    CParentElementInfo* GetClassInfo() const override;
    CElementInfo** GetClassElementInfo() const override;
    CAttributeInfo** GetClassAttributeInfo() const override;
    void Init() override;

    CSmartPtr<CShape> Main;
    CSmartPtr<CAddress> Owner;
    std::optional<long> Scale;
    CSmartPtr<CContact> Contact;
};

} // namespace fixtures
