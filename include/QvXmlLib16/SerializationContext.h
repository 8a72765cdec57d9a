#pragma once

#include <QvXmlLib16/Export.h>

namespace QvXmlLib16 {

// Only SchemaType_NoNamespaces changes behaviour.
enum SchemaType : unsigned int {
    SchemaType_Default = 0,
    SchemaType_Alternate = 1,
    SchemaType_NoNamespaces = 2
};

// Options carried by every serialisation call. This first version holds what the XML reader
// needs; the remaining options arrive with the binding layer.
class QVXML_API CSerializationContext {
public:
    CSerializationContext() = default;
    virtual ~CSerializationContext();

    SchemaType GetSchemaType() const { return m_schemaType; }

    void SetSchemaType(SchemaType type) { m_schemaType = type; }

    // Kept CDATA sections arrive in the element text wrapped in their markers.
    bool GetStripCDATA() const { return m_stripCDATA; }

    void SetStripCDATA(bool strip) { m_stripCDATA = strip; }

    // The context callers pass when they have none of their own.
    static CSerializationContext m_defaultContext;

private:
    SchemaType m_schemaType = SchemaType_Default;
    bool m_stripCDATA = true;
};

} // namespace QvXmlLib16
