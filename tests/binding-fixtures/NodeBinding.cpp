#include "binding-fixtures/NodeBinding.h"

namespace fixtures {

namespace {

CSmartPtr<CXmlObjectBase> CreateNode(int, const wchar_t* elementName) {
    CXmlObjectBase* node = new CNode();
    node->SetElementName(elementName);
    return node;
}

} // namespace

CNode::CNode() {
    SetElementName(L"Node");
}

void CNode::Init() {
    Name.reset();
    Child = nullptr;
    m_nil = false;
}

void CNode::AccessProperty(int propertyIndex, bool read, QvVariant& value) {
    switch (propertyIndex) {
    case Prop_Name:
        if (read) {
            if (Name)
                value.SetString(*Name);
        } else {
            Name = value.GetString();
        }
        break;
    case Prop_Child:
        if (read)
            value.SetXmlObject(Child);
        else
            Child = static_cast<CNode*>(value.GetXmlObject().Ptr());
        break;
    }
}

CParentElementInfo* CNode::GetClassInfo() const {
    static CParentElementInfo* info =
        new CParentElementInfo(XmlElementGroupType_Sequence, XmlElementType_Element, L"NodeType",
                               kNs, true, false, -1, ItemType_Invalid, nullptr, false);
    return info;
}

CElementInfo** CNode::GetClassElementInfo() const {
    static CElementInfo* infos[] = {
        new CElementInfoSeqPrimOpt(L"Name", kNs, Prop_Name, false, ItemType_string, nullptr,
                                   CWhitespaceUtils::WhitespaceRule_Preserve,
                                   CPrimitiveRestrictions(), nullptr),
        new CElementInfoSeqClsOpt(L"Child", kNs, Prop_Child, XmlElementType_Element, CreateNode, 0),
        nullptr,
    };
    return infos;
}

CAttributeInfo** CNode::GetClassAttributeInfo() const {
    static CAttributeInfo* none[] = {nullptr};
    return none;
}

// Built from the bottom up: no recursion however deep.
CSmartPtr<CNode> MakeChain(int depth) {
    CSmartPtr<CNode> node;
    for (int level = depth; level >= 1; --level) {
        CSmartPtr<CNode> parent = new CNode();
        parent->SetElementName(level == 1 ? L"Node" : L"Child");
        parent->Name = std::to_wstring(level);
        parent->Child = node;
        node = parent;
    }
    return node;
}

std::wstring ChainXml(int depth) {
    std::wstring xml = L"<Node xmlns=\"urn:test:po\"><Name>1</Name>";
    for (int level = 2; level <= depth; ++level)
        xml += L"<Child><Name>" + std::to_wstring(level) + L"</Name>";
    for (int level = 2; level <= depth; ++level)
        xml += L"</Child>";
    return xml + L"</Node>";
}

} // namespace fixtures
