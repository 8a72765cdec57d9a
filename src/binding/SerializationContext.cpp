#include <QvXmlLib16/SerializationContext.h>

namespace QvXmlLib16 {

// Constructed from constants only, so no other static needs to exist first.
CSerializationContext CSerializationContext::m_defaultContext;

CSerializationContext::~CSerializationContext() = default;

} // namespace QvXmlLib16
