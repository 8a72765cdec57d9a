#pragma once

#include <QvXmlLib16/ElementInfo.h>
#include <QvXmlLib16/Export.h>
#include <QvXmlLib16/XmlObjectBase.h>

namespace QvXmlLib16Data {
class CAttributeInfo;
} // namespace QvXmlLib16Data

namespace QvXmlLib16 {

class CXmlAttribute;
class QvVariant;

// A generated class for a nillable element derives from this too.
class QVXML_API INillable {
public:
    virtual ~INillable();
    virtual bool IsNil() const = 0;
    virtual void SetNil(bool nil) = 0;
};

// Base of every class the code generator emits. The class describes itself with metadata and
// reaches its members by property index; this driver writes and reads it from that.
class QVXML_API CXmlGeneratedClass : public CXmlObjectBase {
public:
    // read true: copy member number propertyIndex into value; false: set it from value.
    virtual void AccessProperty(int propertyIndex, bool read, QvVariant& value) = 0;
    virtual QvXmlLib16Data::CParentElementInfo* GetClassInfo() const = 0;
    // Member elements in schema order, ending with a null pointer.
    virtual QvXmlLib16Data::CElementInfo** GetClassElementInfo() const = 0;
    // Attributes, ending with a null pointer.
    virtual QvXmlLib16Data::CAttributeInfo** GetClassAttributeInfo() const = 0;
    // Resets every member to its constructed state; every read starts with it.
    virtual void Init() = 0;

    void ReadProperty(int propertyIndex, QvVariant& value) const;
    bool IsElementInList(const CSerializationContext& ctx, CXmlElement* element) const;
    int GetClassElementInfoCount() const;
    bool DoesElementContainOptionalElements() const;
    // Frees a class's metadata and nulls the pointers; null entries are skipped.
    static void CleanMetaData(QvXmlLib16Data::CParentElementInfo*& classInfo,
                              QvXmlLib16Data::CElementInfo**& elementInfo,
                              QvXmlLib16Data::CAttributeInfo**& attributeInfo);

protected:
    void AttributesToXml_Int(CXmlWriter* writer, const CSerializationContext& ctx) const override;
    void ToXml_Int(CXmlWriter* writer, bool isRoot, const wchar_t* namespaceUri,
                   const CSerializationContext& ctx, bool optionalChoice) const override;
    CXmlElement* FromXml_Int(CXmlElement* element, CXmlElement* cursor,
                             const CSerializationContext& ctx, bool optionalChoice) override;
    using CXmlObjectBase::AttributesToXml_Int;
    using CXmlObjectBase::FromXml_Int;
    using CXmlObjectBase::ToXml_Int;

    void ProcessAttributesToXml(const CSerializationContext& ctx,
                                QvXmlLib16Data::CElementInfo** elements,
                                QvXmlLib16Data::CAttributeInfo** attributes,
                                CXmlWriter* writer) const;
    void ProcessElementSeqToXml(const CSerializationContext& ctx,
                                QvXmlLib16Data::CElementInfo** elements, CXmlWriter* writer) const;
    bool ProcessElementChoiceToXml(const CSerializationContext& ctx,
                                   QvXmlLib16Data::CElementInfo** elements, CXmlWriter* writer,
                                   bool optionalChoice) const;
    void ProcessElementAllToXml(const CSerializationContext& ctx,
                                QvXmlLib16Data::CElementInfo** elements, CXmlWriter* writer) const;

    void ProcessAttributesFromXml(const CSerializationContext& ctx, CXmlElement* element,
                                  bool unknownIsError);
    CXmlElement* ProcessElementSeqFromXml(const CSerializationContext& ctx, CXmlElement* element,
                                          CXmlElement* cursor, QvXmlLib16Data::XmlElementType type);
    CXmlElement* ProcessElementChoiceFromXml(const CSerializationContext& ctx, CXmlElement* element,
                                             CXmlElement* cursor,
                                             QvXmlLib16Data::XmlElementType type,
                                             bool optionalChoice);
    CXmlElement* ProcessElementAllFromXml(const CSerializationContext& ctx, CXmlElement* element,
                                          CXmlElement* cursor, QvXmlLib16Data::XmlElementType type);

private:
    void WriteGroup(const CSerializationContext& ctx, CXmlWriter* writer,
                    bool optionalChoice) const;
    void WriteSimpleContent(CXmlWriter* writer) const;
    CXmlElement* ReadContent(CXmlElement* element, CXmlElement* cursor,
                             const CSerializationContext& ctx, bool optionalChoice);
    void ReadNilAttribute(CXmlAttribute& attribute, const CXmlElement& element);
    // The error for children of an own element that no member took.
    [[noreturn]] void ThrowLeftover(const CXmlElement* element, const CXmlElement* cursor) const;
};

} // namespace QvXmlLib16
