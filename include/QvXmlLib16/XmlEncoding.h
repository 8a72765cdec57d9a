#pragma once

namespace QvXmlLib16 {

// Line ends written by the text writers; the numbers are fixed.
enum EOLType : int { EOL_CRLF = 0, EOL_LF = 1 };

// Byte encoding of a text stream; the numbers are fixed.
enum XmlEncoding : int {
    Encoding_Unknown = 0,
    Encoding_UTF8 = 1,
    Encoding_UTF16 = 2,
    Encoding_Native = 3 // the wide characters' own 4-byte units
};

} // namespace QvXmlLib16
