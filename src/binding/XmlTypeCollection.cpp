#include <QvXmlLib16/XmlElement.h>
#include <QvXmlLib16/XmlObjectHelper.h>
#include <QvXmlLib16/XmlTypeCollection.h>

namespace QvXmlLib16 {

CXmlTypeCollection::CXmlTypeCollection(
    ItemType type, const wchar_t* elementName, const wchar_t* namespaceUri, int minOccurs,
    int maxOccurs, const wchar_t* pattern, long long minLength, long long maxLength,
    const wchar_t* minInclusive, const wchar_t* maxInclusive, const wchar_t* minExclusive,
    const wchar_t* maxExclusive, long long length, long long totalDigits, long long fractionDigits,
    CWhitespaceUtils::WhitespaceRule rule, const wchar_t* numberFormat)
    : CXmlCollectionBase(elementName, namespaceUri, minOccurs, maxOccurs),
      m_itemType(type),
      m_restrictions(pattern, minLength, maxLength, minInclusive, maxInclusive, minExclusive,
                     maxExclusive, length, totalDigits, fractionDigits),
      m_whitespaceRule(rule),
      m_numberFormat(numberFormat ? numberFormat : L"") {}

CXmlTypeCollection::~CXmlTypeCollection() = default;

CXmlElement* CXmlTypeCollection::FromXml_Int(CXmlElement*, CXmlElement* cursor,
                                             const CSerializationContext& ctx, bool) {
    const std::wstring name = GetElementName();
    const std::wstring ns = GetNamespace();
    while (cursor && CXmlObjectHelper::DoesElementNameMatch(ctx, cursor, name, ns)) {
        AddFromString(cursor->GetText());
        cursor = cursor->GetNextSiblingElement();
    }
    return cursor;
}

} // namespace QvXmlLib16
