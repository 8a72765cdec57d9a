#pragma once

#include <QvXmlLib16/Export.h>
#include <QvXmlLib16/ItemType.h>

#include <string>

namespace QvXmlLib16 {

class CBigInteger;
class CBinaryData;
class CDateTime;
class CDateTimeSpan;
class CDecimal;
class CPrimitiveRestrictions;
class CSerializationContext;
class CXmlElement;
class QvVariant;

// Checks shared by the metadata and the generated-class driver.
//
// Facet checks run before a value is written and throw CQvException "Invalid Value for %ls
// [...]" (name and value) at the first facet the value breaks, in the order min inclusive, max
// inclusive, min exclusive, max exclusive, then the digit counts. Bounds are read with the
// value type's parser under the collapse rule; a bound that does not parse throws that
// parser's error. Total digits counts the characters of the lexical form, so a minus sign
// counts as a digit.
class QVXML_API CXmlObjectHelper {
public:
    // Whether the whole of value matches the XML Schema pattern. Patterns are compiled once
    // and cached for every thread. A pattern that is not valid, or whose matching exceeds the
    // backtracking limits, throws CQvException "Invalid Regular Expression: %ls Error: '%ls'".
    static bool TestRegEx(const std::wstring& pattern, const std::wstring& value);

    // Local names always; namespaces too unless the context ignores them.
    static bool DoesElementNameMatch(const CSerializationContext& ctx, const CXmlElement* element,
                                     const std::wstring& name, const std::wstring& namespaceUri);
    // restriction: "##any", "##other", "##local", "##targetNamespace" or URIs, separated by
    // single spaces; true when one token admits namespaceUri. An empty namespace passes a URI.
    static bool IsNamespaceValid(const std::wstring& namespaceUri, const std::wstring& restriction,
                                 const std::wstring& targetNamespace);
    // IsNamespaceValid or CQvInvalidNamespaceException "Invalid namespace [%ls]. The namespace
    // must be one of [%ls] where the target namespace is [%ls]."
    static void TestNamespace(const std::wstring& namespaceUri, const std::wstring& restriction,
                              const std::wstring& targetNamespace);

    // Takes the value out of the variant with the getter of type and runs its check. Types 0
    // and 22 (char) and anything above 26 throw CQvInvalidValueException
    // "Unknown type [%ls]." with the variant's type name.
    static void CheckRestriction(const wchar_t* name, const QvVariant& value, ItemType type,
                                 const CPrimitiveRestrictions& restrictions);

    // Binary values test the length facets only (no pattern, no bounds), against the byte
    // count, in the order length, min length, max length.
    static void CheckRestrictionForhexBinary(const wchar_t* name, const CBinaryData& value,
                                             const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionForbase64Binary(const wchar_t* name, const CBinaryData& value,
                                                const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionFori1(const wchar_t* name, char value,
                                      const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionFori2(const wchar_t* name, short value,
                                      const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionFori4(const wchar_t* name, long value,
                                      const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionFori8(const wchar_t* name, long long value,
                                      const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionForui1(const wchar_t* name, unsigned char value,
                                       const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionForui2(const wchar_t* name, unsigned short value,
                                       const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionForui4(const wchar_t* name, unsigned long value,
                                       const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionForui8(const wchar_t* name, unsigned long long value,
                                       const CPrimitiveRestrictions& restrictions);
    // Bounds only; NaN passes every bound.
    static void CheckRestrictionForr4(const wchar_t* name, float value,
                                      const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionForr8(const wchar_t* name, double value,
                                      const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionForduration(const wchar_t* name, const CDateTimeSpan& value,
                                            const CPrimitiveRestrictions& restrictions);
    // Same as CheckRestrictionFormonthYear.
    static void CheckRestrictionForyearMonth(const wchar_t* name, const CDateTime& value,
                                             const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionFormonthYear(const wchar_t* name, const CDateTime& value,
                                             const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionFormonthDay(const wchar_t* name, const CDateTime& value,
                                            const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionFordate(const wchar_t* name, const CDateTime& value,
                                        const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionFordatetime(const wchar_t* name, const CDateTime& value,
                                            const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionFortime(const wchar_t* name, const CDateTime& value,
                                        const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionForyear(const wchar_t* name, unsigned short value,
                                        const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionFormonth(const wchar_t* name, unsigned char value,
                                         const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionForday(const wchar_t* name, unsigned char value,
                                       const CPrimitiveRestrictions& restrictions);
    // Length facets in characters, then the pattern. A pattern that cannot be tested fails
    // with "%ls\nInvalid Value for %ls [%ls]." and the pattern's error first.
    static void CheckRestrictionForstring(const wchar_t* name, std::wstring value,
                                          const CPrimitiveRestrictions& restrictions);
    // Never fails.
    static void CheckRestrictionForboolean(const wchar_t* name, bool value,
                                           const CPrimitiveRestrictions& restrictions);
    // Total digits against integer-part plus fraction-part digits, then fraction digits.
    static void CheckRestrictionFordecimal(const wchar_t* name, const CDecimal& value,
                                           const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionForinteger(const wchar_t* name, const CBigInteger& value,
                                           const CPrimitiveRestrictions& restrictions);

    // Digits of the integer part without its sign; a zero integer part has none.
    static int GetDecimalIntegerPartLen(const CDecimal& value);
    // Digits after the point once trailing zeros are dropped: 1.50 has one, as in XML Schema.
    static int GetDecimalFractionPartLen(const CDecimal& value);
};

} // namespace QvXmlLib16
