#include "binding/BindingMessages.h"

#include <QvXmlLib16/QvException.h>
#include <QvXmlLib16/SerializationContext.h>

namespace QvXmlLib16 {

// Built from constants only, so it needs no other static to exist first.
CSerializationContext CSerializationContext::m_defaultContext;

CSerializationContext::~CSerializationContext() = default;

void CSerializationContext::SetIgnoreMissingMandatoryElements(bool ignore) {
    if (ignore && m_ignoreUnknownElements)
        throw CQvInvalidStateException(msg::kIgnoreMissingWhileUnknown);
    m_ignoreMissingMandatoryElements = ignore;
}

void CSerializationContext::SetIgnoreUnknownElements(bool ignore) {
    if (ignore && m_ignoreMissingMandatoryElements)
        throw CQvInvalidStateException(msg::kIgnoreUnknownWhileMissing);
    m_ignoreUnknownElements = ignore;
}

bool CSerializationContext::GetIgnoreNamespaces() const {
    return m_ignoreNamespaces || m_schemaType == SchemaType_NoNamespaces;
}

void CSerializationContext::SetIndentChars(const wchar_t* chars) {
    if (!chars) {
        m_indentChars.clear();
        return;
    }
    for (const wchar_t* p = chars; *p; ++p) {
        if (*p != L'\t' && *p != L' ')
            throw CQvInvalidParamException(msg::kIndentCharsInvalid);
    }
    m_indentChars = chars;
}

} // namespace QvXmlLib16
