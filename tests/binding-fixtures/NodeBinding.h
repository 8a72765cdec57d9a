#pragma once

// A class that nests itself, written the way the code generator emits it. Deep chains of it
// exercise the nesting limit and the benchmarks.
//
//   <Node xmlns="urn:test:po">     sequence, nillable
//     Name    string, optional
//     Child   Node, optional (class factory)

#include "binding-fixtures/OrderBinding.h"

namespace fixtures {

class CNode : public TGenerated<CXmlGeneratedClass>, public INillable {
public:
    enum { Prop_Name, Prop_Child };

    CNode();
    void AccessProperty(int propertyIndex, bool read, QvVariant& value) override;
    CParentElementInfo* GetClassInfo() const override;
    CElementInfo** GetClassElementInfo() const override;
    CAttributeInfo** GetClassAttributeInfo() const override;
    void Init() override;

    bool IsNil() const override { return m_nil; }

    void SetNil(bool nil) override { m_nil = nil; }

    std::optional<std::wstring> Name;
    CSmartPtr<CNode> Child;

private:
    bool m_nil = false;
};

// A Node with depth - 1 Child elements below it, each named after its level ("1" for the root).
CSmartPtr<CNode> MakeChain(int depth);
// The same chain as unformatted XML without a declaration.
std::wstring ChainXml(int depth);

} // namespace fixtures
