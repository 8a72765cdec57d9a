#pragma once

// Classes whose children form a choice or an all group, written the way the code generator
// emits them. Their primitive members use CTakeIfMine, which reads as the choice and all
// infos do: it takes the element at the cursor when it is its own and answers false otherwise.
//
//   <Pick xmlns="urn:test:po">     choice: A (i4) | B (string)
//   <Bag xmlns="urn:test:po">      all: X (i4), Y (string), in any order

#include "binding-fixtures/OrderBinding.h"

namespace fixtures {

class CTakeIfMine : public CElementInfoSeqPrimOpt {
public:
    CTakeIfMine(const wchar_t* name, int propertyIndex, ItemType type);
    bool ElementFromXml(const CSerializationContext& ctx, CXmlGeneratedClass* object,
                        CXmlElement* parent, CXmlElement** current, const wchar_t* defaultNamespace,
                        XmlElementType type) override;
    // Every member is optional.
    bool Validate(const CSerializationContext& ctx, const CXmlGeneratedClass* object, bool found,
                  bool required) const override;
};

// Both groups hold the same two members: an i4 and a string.
class CTwoMembers : public TGenerated<CXmlGeneratedClass> {
public:
    enum { Prop_Number, Prop_Text };

    void AccessProperty(int propertyIndex, bool read, QvVariant& value) override;
    CAttributeInfo** GetClassAttributeInfo() const override;
    void Init() override;

    std::optional<long> Number;
    std::optional<std::wstring> Text;
};

class CPick : public CTwoMembers {
public:
    CPick();
    CParentElementInfo* GetClassInfo() const override;
    CElementInfo** GetClassElementInfo() const override;
};

class CBag : public CTwoMembers {
public:
    CBag();
    CParentElementInfo* GetClassInfo() const override;
    CElementInfo** GetClassElementInfo() const override;
};

} // namespace fixtures
