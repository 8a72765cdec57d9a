#pragma once

#include <QvXmlLib16/Export.h>

#include <string>

namespace QvXmlLib16 {

class CXmlElement;

// Base of the generated factories that create the class an element's xsi:type names.
class QVXML_API CClassfactoryBase {
public:
    virtual ~CClassfactoryBase();

    // The xsi:type value without its prefix; empty when the element has none.
    static std::wstring GetElementType(const CXmlElement* element);
    // The namespace bound to the prefix of the xsi:type value, through the prefixes the
    // document declared; empty without a prefix.
    static std::wstring GetElementTypeNamespaceUri(const CXmlElement* element);
};

} // namespace QvXmlLib16
