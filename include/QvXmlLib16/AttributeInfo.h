#pragma once

#include <QvXmlLib16/Export.h>
#include <QvXmlLib16/ItemType.h>
#include <QvXmlLib16/PrimitiveRestrictions.h>
#include <QvXmlLib16/WhitespaceUtils.h>

#include <string>

namespace QvXmlLib16 {
class CSerializationContext;
class CXmlAttribute;
class CXmlGeneratedClass;
class CXmlObjectBase;
class CXmlWriter;
class QvVariant;
} // namespace QvXmlLib16

namespace QvXmlLib16Data {

// One attribute of a generated class. The driver offers it every attribute of an element it
// reads, lets it write its member while the start tag is open, and asks it whether a required
// attribute was found.
class QVXML_API CAttributeInfo {
public:
    CAttributeInfo(const wchar_t* name, const wchar_t* ns, int propertyIndex, bool optional,
                   const wchar_t* defaultValue);
    virtual ~CAttributeInfo();

    virtual void AttributeToXml(const QvXmlLib16::CSerializationContext& ctx,
                                const QvXmlLib16::CXmlGeneratedClass* object,
                                QvXmlLib16::CXmlWriter* writer) const = 0;
    // True when the attribute was this info's and was taken.
    virtual bool AttributeFromXml(const QvXmlLib16::CSerializationContext& ctx,
                                  QvXmlLib16::CXmlGeneratedClass* object,
                                  QvXmlLib16::CXmlAttribute* attribute) = 0;
    // Raises a required attribute that was not found.
    virtual bool Validate(const QvXmlLib16::CSerializationContext& ctx, bool found) const = 0;

    void InvokePropertyGet(QvXmlLib16::CXmlGeneratedClass* object,
                           QvXmlLib16::QvVariant& value) const;
    void InvokePropertySet(QvXmlLib16::CXmlGeneratedClass* object, QvXmlLib16::QvVariant& value,
                           const QvXmlLib16::CXmlAttribute& attribute) const;
    void ReadProperty(const QvXmlLib16::CXmlGeneratedClass* object,
                      QvXmlLib16::QvVariant& value) const;
    bool IsThisAttribute(const QvXmlLib16::CSerializationContext& ctx,
                         QvXmlLib16::CXmlAttribute* attribute) const;

    const std::wstring& GetAttributeName() const { return m_attributeName; }

    const std::wstring& GetNamespace() const { return m_namespace; }

protected:
    std::wstring m_attributeName;
    std::wstring m_namespace;
    int m_propertyIndex;
    bool m_optional;
    std::wstring m_defaultValue;
};

// An attribute of a primitive type. Reading matches name and namespace exactly, whatever the
// context says about namespaces.
class QVXML_API CAttributeInfoPrimitive : public CAttributeInfo {
public:
    CAttributeInfoPrimitive(const wchar_t* name, const wchar_t* ns, int propertyIndex,
                            bool optional, QvXmlLib16::ItemType type, const wchar_t* format,
                            QvXmlLib16::CWhitespaceUtils::WhitespaceRule rule,
                            const QvXmlLib16::CPrimitiveRestrictions& restrictions,
                            const wchar_t* defaultValue);
    void AttributeToXml(const QvXmlLib16::CSerializationContext& ctx,
                        const QvXmlLib16::CXmlGeneratedClass* object,
                        QvXmlLib16::CXmlWriter* writer) const override;
    bool AttributeFromXml(const QvXmlLib16::CSerializationContext& ctx,
                          QvXmlLib16::CXmlGeneratedClass* object,
                          QvXmlLib16::CXmlAttribute* attribute) override;
    bool Validate(const QvXmlLib16::CSerializationContext& ctx, bool found) const override;
    void CheckRestriction(QvXmlLib16::QvVariant value) const;

private:
    QvXmlLib16::CPrimitiveRestrictions m_restrictions;
    QvXmlLib16::ItemType m_itemType;
    std::wstring m_numberFormat;
    QvXmlLib16::CWhitespaceUtils::WhitespaceRule m_whitespaceRule;
};

// An attribute of an enumerated type, carried as an i4.
class QVXML_API CAttributeInfoEnum : public CAttributeInfo {
public:
    CAttributeInfoEnum(const wchar_t* name, const wchar_t* ns, int propertyIndex, bool optional,
                       const wchar_t* (*toString)(int), int (*fromString)(const wchar_t*),
                       const wchar_t* defaultValue);
    void AttributeToXml(const QvXmlLib16::CSerializationContext& ctx,
                        const QvXmlLib16::CXmlGeneratedClass* object,
                        QvXmlLib16::CXmlWriter* writer) const override;
    bool AttributeFromXml(const QvXmlLib16::CSerializationContext& ctx,
                          QvXmlLib16::CXmlGeneratedClass* object,
                          QvXmlLib16::CXmlAttribute* attribute) override;
    bool Validate(const QvXmlLib16::CSerializationContext& ctx, bool found) const override;

private:
    int (*m_fromString)(const wchar_t*);
    const wchar_t* (*m_toString)(int);
};

} // namespace QvXmlLib16Data
