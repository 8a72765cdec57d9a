#pragma once

// The reference every reading benchmark is measured against: expat's UTF-16 build parsing the
// same bytes, set up as the library's reader sets it up, with handlers that do nothing.

#define XML_UNICODE
#include <expat.h>

namespace bench {

namespace bare {
inline void XMLCALL NoStart(void*, const XML_Char*, const XML_Char**) {}

inline void XMLCALL NoEnd(void*, const XML_Char*) {}

inline void XMLCALL NoText(void*, const XML_Char*, int) {}

inline void XMLCALL NoNamespaceStart(void*, const XML_Char*, const XML_Char*) {}
} // namespace bare

// False when expat refuses the bytes.
inline bool ParseWithBareExpat(const char* data, int size) {
    XML_Parser parser = XML_ParserCreateNS(nullptr, '|');
    XML_SetElementHandler(parser, bare::NoStart, bare::NoEnd);
    XML_SetCharacterDataHandler(parser, bare::NoText);
    XML_SetNamespaceDeclHandler(parser, bare::NoNamespaceStart, bare::NoEnd);
    const bool ok = XML_Parse(parser, data, size, 1) == XML_STATUS_OK;
    XML_ParserFree(parser);
    return ok;
}

} // namespace bench
