#pragma once

#include <QvXmlLib16/Export.h>
#include <QvXmlLib16/ItemType.h>
#include <QvXmlLib16/PrimitiveRestrictions.h>
#include <QvXmlLib16/WhitespaceUtils.h>
#include <QvXmlLib16/XmlCollectionBase.h>

#include <string>

namespace QvXmlLib16 {

// Base of the primitive-value collections (Ci4Col, CstringCol, ...): the item type, the facets
// every added value must pass, the whitespace rule applied to read text, and the number format
// of the r4, r8 and decimal conversions. Reads a run of matching elements.
class QVXML_API CXmlTypeCollection : public CXmlCollectionBase {
public:
    // Facets in the CPrimitiveRestrictions order: null strings and -1 mean absent.
    CXmlTypeCollection(ItemType type, const wchar_t* elementName, const wchar_t* namespaceUri,
                       int minOccurs, int maxOccurs, const wchar_t* pattern, long long minLength,
                       long long maxLength, const wchar_t* minInclusive,
                       const wchar_t* maxInclusive, const wchar_t* minExclusive,
                       const wchar_t* maxExclusive, long long length, long long totalDigits,
                       long long fractionDigits, CWhitespaceUtils::WhitespaceRule rule,
                       const wchar_t* numberFormat);
    ~CXmlTypeCollection() override;

    // Converts the text of one element and appends the value.
    virtual void AddFromString(const std::wstring& text) = 0;

    ItemType GetItemType() const { return m_itemType; }

    const CPrimitiveRestrictions& GetRestrictions() const { return m_restrictions; }

    CWhitespaceUtils::WhitespaceRule GetWhitespaceRule() const { return m_whitespaceRule; }

    const std::wstring& GetNumberFormat() const { return m_numberFormat; }

protected:
    // Takes every element from cursor on that carries the collection's name and namespace;
    // returns the first that does not.
    CXmlElement* FromXml_Int(CXmlElement* element, CXmlElement* cursor,
                             const CSerializationContext& ctx, bool optionalChoice) override;

private:
    ItemType m_itemType;
    CPrimitiveRestrictions m_restrictions;
    CWhitespaceUtils::WhitespaceRule m_whitespaceRule;
    std::wstring m_numberFormat;
};

} // namespace QvXmlLib16
