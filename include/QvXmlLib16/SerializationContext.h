#pragma once

#include <QvXmlLib16/Export.h>
#include <QvXmlLib16/NamespaceAliasMap.h>

#include <list>
#include <string>

namespace QvXmlLib16 {

// Only SchemaType_NoNamespaces changes behaviour.
enum SchemaType : unsigned int {
    SchemaType_Default = 0,
    SchemaType_Alternate = 1,
    SchemaType_NoNamespaces = 2
};

// The options every serialisation call carries by const reference, and the extras written on
// the root element. A plain value: configure it, then pass it to any number of calls. Not
// locked: share one between threads only once it is fully prepared.
class QVXML_API CSerializationContext {
public:
    CSerializationContext() = default;
    CSerializationContext(const CSerializationContext&) = default;
    CSerializationContext& operator=(const CSerializationContext&) = default;
    virtual ~CSerializationContext();

    std::wstring GetDefaultNamespaceURI() const { return m_defaultNamespaceUri; }

    void SetDefaultNamespaceURI(const wchar_t* ns) { m_defaultNamespaceUri = ns ? ns : L""; }

    // Whether generated classes write xsi:type.
    bool GetWriteTypeAttribute() const { return m_writeTypeAttribute; }

    void SetWriteTypeAttribute(bool write) { m_writeTypeAttribute = write; }

    CNamespaceAliasMap& GetNamespaceAliases() { return m_namespaceAliases; }

    const CNamespaceAliasMap& GetNamespaceAliases() const { return m_namespaceAliases; }

    std::list<std::wstring>& GetProcessingInstructions() { return m_processingInstructions; }

    const std::list<std::wstring>& GetProcessingInstructions() const {
        return m_processingInstructions;
    }

    // Written verbatim into the root element.
    std::wstring GetInLineSchema() const { return m_inLineSchema; }

    void SetInLineSchema(const wchar_t* schema) { m_inLineSchema = schema ? schema : L""; }

    bool GetIgnoreInvalidCollectionCounts() const { return m_ignoreInvalidCollectionCounts; }

    void SetIgnoreInvalidCollectionCounts(bool ignore) { m_ignoreInvalidCollectionCounts = ignore; }

    bool GetIgnoreMissingChoice() const { return m_ignoreMissingChoice; }

    void SetIgnoreMissingChoice(bool ignore) { m_ignoreMissingChoice = ignore; }

    // The two below exclude each other: setting one true while the other is true throws
    // CQvInvalidStateException and changes nothing.
    bool GetIgnoreMissingMandatoryElements() const { return m_ignoreMissingMandatoryElements; }

    void SetIgnoreMissingMandatoryElements(bool ignore);

    bool GetIgnoreUnknownElements() const { return m_ignoreUnknownElements; }

    void SetIgnoreUnknownElements(bool ignore);

    bool GetIgnoreUnknownAttributes() const { return m_ignoreUnknownAttributes; }

    void SetIgnoreUnknownAttributes(bool ignore) { m_ignoreUnknownAttributes = ignore; }

    // True as well whenever the schema type is SchemaType_NoNamespaces.
    bool GetIgnoreNamespaces() const;

    void SetIgnoreNamespaces(bool ignore) { m_ignoreNamespaces = ignore; }

    SchemaType GetSchemaType() const { return m_schemaType; }

    void SetSchemaType(SchemaType type) { m_schemaType = type; }

    bool GetNoOptionalAttributeDefaultOutput() const { return m_noOptionalAttributeDefaultOutput; }

    void SetNoOptionalAttributeDefaultOutput(bool skip) {
        m_noOptionalAttributeDefaultOutput = skip;
    }

    bool GetWriteDefaultElementValues() const { return m_writeDefaultElementValues; }

    void SetWriteDefaultElementValues(bool write) { m_writeDefaultElementValues = write; }

    // Kept CDATA sections arrive in the element text wrapped in their markers.
    bool GetStripCDATA() const { return m_stripCDATA; }

    void SetStripCDATA(bool strip) { m_stripCDATA = strip; }

    std::wstring GetIndentChars() const { return m_indentChars; }

    // Tabs and spaces only (null sets none); anything else throws CQvInvalidParamException and
    // keeps the old value.
    void SetIndentChars(const wchar_t* chars);

    // The context callers pass when they have none of their own.
    static CSerializationContext m_defaultContext;

private:
    std::wstring m_defaultNamespaceUri;
    bool m_writeTypeAttribute = true;
    CNamespaceAliasMap m_namespaceAliases;
    std::list<std::wstring> m_processingInstructions;
    std::wstring m_inLineSchema;
    bool m_ignoreInvalidCollectionCounts = false;
    bool m_ignoreMissingChoice = false;
    bool m_ignoreMissingMandatoryElements = false;
    bool m_ignoreUnknownElements = false;
    bool m_ignoreUnknownAttributes = false;
    bool m_ignoreNamespaces = false;
    SchemaType m_schemaType = SchemaType_Default;
    bool m_noOptionalAttributeDefaultOutput = false;
    bool m_writeDefaultElementValues = false;
    bool m_stripCDATA = true;
    std::wstring m_indentChars = L"\t";
};

} // namespace QvXmlLib16
