#pragma once

#include <QvXmlLib16/Export.h>
#include <QvXmlLib16/ItemType.h>
#include <QvXmlLib16/PrimitiveRestrictions.h>
#include <QvXmlLib16/SmartPtr.h>
#include <QvXmlLib16/WhitespaceUtils.h>

#include <string>

namespace QvXmlLib16 {
class CSerializationContext;
class CXmlElement;
class CXmlGeneratedClass;
class CXmlObjectBase;
class CXmlWriter;
class QvVariant;
} // namespace QvXmlLib16

// Metadata that generated classes build once and the driver walks: one CParentElementInfo per
// class, its member elements as CElementInfo subclasses named by group, kind and cardinality
// (CElementInfoSeqPrimMnd: a mandatory primitive member of a sequence).
namespace QvXmlLib16Data {

using QvXmlLib16::CSerializationContext;
using QvXmlLib16::CXmlElement;
using QvXmlLib16::CXmlGeneratedClass;
using QvXmlLib16::CXmlObjectBase;
using QvXmlLib16::CXmlWriter;
using QvXmlLib16::QvVariant;

// Whether a class has an element of its own or writes its children into its parent's.
enum XmlElementType : int { XmlElementType_Element = 0, XmlElementType_Pseudo = 1 };

enum XmlElementGroupType : int {
    XmlElementGroupType_Sequence = 0,
    XmlElementGroupType_Choice = 1,
    XmlElementGroupType_All = 2
};

// Factories generated code supplies: by element (abstract members choose the concrete class
// from it) and by class id.
using ElementFactory = QvXmlLib16::CSmartPtr<CXmlObjectBase> (*)(CXmlElement*);
using ClassFactory = QvXmlLib16::CSmartPtr<CXmlObjectBase> (*)(int classId,
                                                               const wchar_t* elementName);
using EnumToString = const wchar_t* (*)(int);
using EnumFromString = int (*)(const wchar_t*);

// The class itself: its group, whether it has an element, its type (for xsi:type) and its
// simple content, if any.
class QVXML_API CParentElementInfo {
public:
    CParentElementInfo(XmlElementGroupType group, XmlElementType type, const wchar_t* typeName,
                       const wchar_t* typeNamespace, bool unknownAttributesAreErrors,
                       bool writeType, int valuePropertyIndex, QvXmlLib16::ItemType valueType,
                       const wchar_t* valueFormat, bool valueIsRawString);
    virtual ~CParentElementInfo();

    XmlElementGroupType m_groupType;
    XmlElementType m_elementType;
    std::wstring m_typeName;
    std::wstring m_typeNamespace;
    bool m_unknownAttributesAreErrors;
    bool m_writeType;
    int m_valuePropertyIndex; // -1: no simple content
    QvXmlLib16::ItemType m_valueType;
    std::wstring m_valueFormat;
    bool m_valueIsRawString;
};

// What every member element shares. The subclasses decide when to call the shared writers and
// readers below and what a missing member means.
class QVXML_API CElementInfo {
public:
    // Class, abstract-class, collection and untyped members.
    CElementInfo(const wchar_t* name, const wchar_t* ns, int propertyIndex);
    // Enumerated members.
    CElementInfo(const wchar_t* name, const wchar_t* ns, int propertyIndex, bool nillable,
                 EnumToString toString, EnumFromString fromString, const wchar_t* defaultValue);
    // Primitive members.
    CElementInfo(const wchar_t* name, const wchar_t* ns, int propertyIndex, bool nillable,
                 QvXmlLib16::ItemType type, const wchar_t* format,
                 QvXmlLib16::CWhitespaceUtils::WhitespaceRule rule,
                 const QvXmlLib16::CPrimitiveRestrictions& restrictions,
                 const wchar_t* defaultValue);
    virtual ~CElementInfo();

    // True when something was written.
    virtual bool ElementToXml(const CSerializationContext& ctx, const CXmlGeneratedClass* object,
                              CXmlWriter* writer) const = 0;
    // Reads the member from *current on and moves *current past what it took; true when the
    // member is satisfied.
    virtual bool ElementFromXml(const CSerializationContext& ctx, CXmlGeneratedClass* object,
                                CXmlElement* parent, CXmlElement** current,
                                const wchar_t* defaultNamespace, XmlElementType type) = 0;
    // Only the members of all groups answer this; the base throws.
    virtual bool Validate(const CSerializationContext& ctx, const CXmlGeneratedClass* object,
                          bool found, bool required) const;
    // Members that are pseudo elements write their attributes into the open parent element.
    virtual void PseudoChildAttributeToXml(const CSerializationContext& ctx,
                                           const CXmlGeneratedClass* object,
                                           CXmlWriter* writer) const;

    void InvokePropertyGet(CXmlGeneratedClass* object, QvVariant& value) const;
    void InvokePropertySet(CXmlGeneratedClass* object, QvVariant& value,
                           const CXmlElement& element) const;
    void ReadProperty(const CXmlGeneratedClass* object, QvVariant& value) const;
    bool IsThisElement(const CSerializationContext& ctx, const CXmlElement* element) const;
    void CheckRestriction(const QvVariant& value) const;

    static CXmlElement* FromXml_Int(CXmlObjectBase* object, CXmlElement* element,
                                    CXmlElement* firstChild, const CSerializationContext& ctx,
                                    bool optionalChoice);
    void AttributesToXml_Int(const CXmlObjectBase* object, CXmlWriter* writer,
                             const CSerializationContext& ctx) const;
    // The namespace an untyped element made for an "any" member is given.
    static std::wstring GetAnyDefaultNamespace(const wchar_t* restriction,
                                               const wchar_t* defaultNamespace,
                                               const wchar_t* targetNamespace);

    // The shared writers: true when something was written.
    bool ElementToXmlCls(const CSerializationContext& ctx, const CXmlGeneratedClass* object,
                         CXmlWriter* writer, bool optionalChoice) const;
    bool ElementToXmlCol(const CSerializationContext& ctx, const CXmlGeneratedClass* object,
                         CXmlWriter* writer) const;
    bool ElementToXmlPrim(const CSerializationContext& ctx, const CXmlGeneratedClass* object,
                          CXmlWriter* writer) const;
    bool ElementToXmlEnum(const CSerializationContext& ctx, const CXmlGeneratedClass* object,
                          CXmlWriter* writer, EnumToString toString) const;
    // The shared readers of the element at *current, already matched; *current moves on.
    void ElementFromXmlPrim(const CSerializationContext& ctx, CXmlGeneratedClass* object,
                            CXmlElement** current) const;
    void ElementFromXmlEnum(const CSerializationContext& ctx, CXmlGeneratedClass* object,
                            CXmlElement** current) const;

    const std::wstring& GetElementName() const { return m_elementName; }

    const std::wstring& GetNamespace() const { return m_namespace; }

    int GetPropertyIndex() const { return m_propertyIndex; }

protected:
    std::wstring m_elementName;
    std::wstring m_namespace;
    int m_propertyIndex;
    QvXmlLib16::CPrimitiveRestrictions m_restrictions;
    QvXmlLib16::ItemType m_itemType = QvXmlLib16::ItemType_Invalid;
    std::wstring m_numberFormat;
    QvXmlLib16::CWhitespaceUtils::WhitespaceRule m_whitespaceRule =
        QvXmlLib16::CWhitespaceUtils::WhitespaceRule_None;
    std::wstring m_defaultValue;
    bool m_nillable = false;
    EnumToString m_enumToString = nullptr;
    EnumFromString m_enumFromString = nullptr;
    bool m_isPrimitive = false;

private:
    // Reads xsi:nil and refuses other attributes; true when the element is nil.
    bool ReadNilAttributes(const CSerializationContext& ctx, const CXmlElement& element) const;
    // The text to convert: the element's, or the default for an empty element.
    // Fills text, reusing its room, with the element's text or the default for an empty one.
    void TextOrDefault(const CXmlElement& element, std::wstring& text) const;
    void WriteNilElement(CXmlWriter* writer) const;
};

// ---- sequence members ----

class QVXML_API CElementInfoSeqPrimMnd : public CElementInfo {
public:
    CElementInfoSeqPrimMnd(const wchar_t* name, const wchar_t* ns, int propertyIndex, bool nillable,
                           QvXmlLib16::ItemType type, const wchar_t* format,
                           QvXmlLib16::CWhitespaceUtils::WhitespaceRule rule,
                           const QvXmlLib16::CPrimitiveRestrictions& restrictions,
                           const wchar_t* defaultValue);
    bool ElementToXml(const CSerializationContext& ctx, const CXmlGeneratedClass* object,
                      CXmlWriter* writer) const override;
    bool ElementFromXml(const CSerializationContext& ctx, CXmlGeneratedClass* object,
                        CXmlElement* parent, CXmlElement** current, const wchar_t* defaultNamespace,
                        XmlElementType type) override;
};

class QVXML_API CElementInfoSeqPrimOpt : public CElementInfo {
public:
    CElementInfoSeqPrimOpt(const wchar_t* name, const wchar_t* ns, int propertyIndex, bool nillable,
                           QvXmlLib16::ItemType type, const wchar_t* format,
                           QvXmlLib16::CWhitespaceUtils::WhitespaceRule rule,
                           const QvXmlLib16::CPrimitiveRestrictions& restrictions,
                           const wchar_t* defaultValue);
    bool ElementToXml(const CSerializationContext& ctx, const CXmlGeneratedClass* object,
                      CXmlWriter* writer) const override;
    bool ElementFromXml(const CSerializationContext& ctx, CXmlGeneratedClass* object,
                        CXmlElement* parent, CXmlElement** current, const wchar_t* defaultNamespace,
                        XmlElementType type) override;
};

class QVXML_API CElementInfoSeqEnumMnd : public CElementInfo {
public:
    CElementInfoSeqEnumMnd(const wchar_t* name, const wchar_t* ns, int propertyIndex, bool nillable,
                           EnumToString toString, EnumFromString fromString,
                           const wchar_t* defaultValue);
    bool ElementToXml(const CSerializationContext& ctx, const CXmlGeneratedClass* object,
                      CXmlWriter* writer) const override;
    bool ElementFromXml(const CSerializationContext& ctx, CXmlGeneratedClass* object,
                        CXmlElement* parent, CXmlElement** current, const wchar_t* defaultNamespace,
                        XmlElementType type) override;
};

class QVXML_API CElementInfoSeqEnumOpt : public CElementInfo {
public:
    CElementInfoSeqEnumOpt(const wchar_t* name, const wchar_t* ns, int propertyIndex, bool nillable,
                           EnumToString toString, EnumFromString fromString,
                           const wchar_t* defaultValue);
    bool ElementToXml(const CSerializationContext& ctx, const CXmlGeneratedClass* object,
                      CXmlWriter* writer) const override;
    bool ElementFromXml(const CSerializationContext& ctx, CXmlGeneratedClass* object,
                        CXmlElement* parent, CXmlElement** current, const wchar_t* defaultNamespace,
                        XmlElementType type) override;
};

// Class members written as their own element, or (element type pseudo) into the parent's.
class QVXML_API CElementInfoSeqClsMnd : public CElementInfo {
public:
    // readInPlace: fill the member the generated class created; otherwise create it with the
    // factory.
    CElementInfoSeqClsMnd(const wchar_t* name, const wchar_t* ns, int propertyIndex,
                          XmlElementType elementType, ClassFactory factory, int classId,
                          bool readInPlace);
    bool ElementToXml(const CSerializationContext& ctx, const CXmlGeneratedClass* object,
                      CXmlWriter* writer) const override;
    bool ElementFromXml(const CSerializationContext& ctx, CXmlGeneratedClass* object,
                        CXmlElement* parent, CXmlElement** current, const wchar_t* defaultNamespace,
                        XmlElementType type) override;
    void PseudoChildAttributeToXml(const CSerializationContext& ctx,
                                   const CXmlGeneratedClass* object,
                                   CXmlWriter* writer) const override;

private:
    XmlElementType m_elementType;
    bool m_readInPlace;
    ClassFactory m_factory;
    int m_classId;
};

class QVXML_API CElementInfoSeqClsOpt : public CElementInfo {
public:
    CElementInfoSeqClsOpt(const wchar_t* name, const wchar_t* ns, int propertyIndex,
                          XmlElementType elementType, ClassFactory factory, int classId);
    bool ElementToXml(const CSerializationContext& ctx, const CXmlGeneratedClass* object,
                      CXmlWriter* writer) const override;
    bool ElementFromXml(const CSerializationContext& ctx, CXmlGeneratedClass* object,
                        CXmlElement* parent, CXmlElement** current, const wchar_t* defaultNamespace,
                        XmlElementType type) override;
    void PseudoChildAttributeToXml(const CSerializationContext& ctx,
                                   const CXmlGeneratedClass* object,
                                   CXmlWriter* writer) const override;

private:
    XmlElementType m_elementType;
    ClassFactory m_factory;
    int m_classId;
};

// Members of an abstract type: the element factory picks the concrete class.
class QVXML_API CElementInfoSeqAbsClsMnd : public CElementInfo {
public:
    CElementInfoSeqAbsClsMnd(const wchar_t* name, const wchar_t* ns, int propertyIndex,
                             XmlElementType elementType, ElementFactory factory);
    bool ElementToXml(const CSerializationContext& ctx, const CXmlGeneratedClass* object,
                      CXmlWriter* writer) const override;
    bool ElementFromXml(const CSerializationContext& ctx, CXmlGeneratedClass* object,
                        CXmlElement* parent, CXmlElement** current, const wchar_t* defaultNamespace,
                        XmlElementType type) override;
    void PseudoChildAttributeToXml(const CSerializationContext& ctx,
                                   const CXmlGeneratedClass* object,
                                   CXmlWriter* writer) const override;

private:
    XmlElementType m_elementType;
    ElementFactory m_factory;
};

class QVXML_API CElementInfoSeqAbsClsOpt : public CElementInfo {
public:
    CElementInfoSeqAbsClsOpt(const wchar_t* name, const wchar_t* ns, int propertyIndex,
                             XmlElementType elementType, ElementFactory factory);
    bool ElementToXml(const CSerializationContext& ctx, const CXmlGeneratedClass* object,
                      CXmlWriter* writer) const override;
    bool ElementFromXml(const CSerializationContext& ctx, CXmlGeneratedClass* object,
                        CXmlElement* parent, CXmlElement** current, const wchar_t* defaultNamespace,
                        XmlElementType type) override;
    void PseudoChildAttributeToXml(const CSerializationContext& ctx,
                                   const CXmlGeneratedClass* object,
                                   CXmlWriter* writer) const override;

private:
    XmlElementType m_elementType;
    ElementFactory m_factory;
};

// ---- sequence collections ----

// A repeated member held in a collection (primitive, enumerated or class items): the
// collection reads as many elements as it can and checks its own counts.
class QVXML_API CElementInfoSeqCol : public CElementInfo {
public:
    CElementInfoSeqCol(const wchar_t* name, const wchar_t* ns, int propertyIndex);
    bool ElementToXml(const CSerializationContext& ctx, const CXmlGeneratedClass* object,
                      CXmlWriter* writer) const override;
    bool ElementFromXml(const CSerializationContext& ctx, CXmlGeneratedClass* object,
                        CXmlElement* parent, CXmlElement** current, const wchar_t* defaultNamespace,
                        XmlElementType type) override;
};

class QVXML_API CElementInfoSeqPrimCol : public CElementInfoSeqCol {
public:
    CElementInfoSeqPrimCol(const wchar_t* name, const wchar_t* ns, int propertyIndex);
};

class QVXML_API CElementInfoSeqEnumCol : public CElementInfoSeqCol {
public:
    CElementInfoSeqEnumCol(const wchar_t* name, const wchar_t* ns, int propertyIndex);
};

class QVXML_API CElementInfoSeqClsCol : public CElementInfoSeqCol {
public:
    CElementInfoSeqClsCol(const wchar_t* name, const wchar_t* ns, int propertyIndex,
                          XmlElementType elementType);
    void PseudoChildAttributeToXml(const CSerializationContext& ctx,
                                   const CXmlGeneratedClass* object,
                                   CXmlWriter* writer) const override;

private:
    XmlElementType m_elementType;
};

class QVXML_API CElementInfoSeqAbsClsCol : public CElementInfoSeqCol {
public:
    CElementInfoSeqAbsClsCol(const wchar_t* name, const wchar_t* ns, int propertyIndex,
                             XmlElementType elementType);
    void PseudoChildAttributeToXml(const CSerializationContext& ctx,
                                   const CXmlGeneratedClass* object,
                                   CXmlWriter* writer) const override;

private:
    XmlElementType m_elementType;
};

} // namespace QvXmlLib16Data
