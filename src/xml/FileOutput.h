#pragma once

#include <QvXmlLib16/XmlEncoding.h>

#include <cstdio>

namespace QvXmlLib16::detail {

// UTF-16 and Native files start with the byte order mark FF FE; returns false when it could
// not be written.
inline bool WriteByteOrderMark(FILE* file, XmlEncoding encoding) {
    static const unsigned char kLittleEndianBom[2] = {0xFF, 0xFE};
    if (encoding != Encoding_UTF16 && encoding != Encoding_Native)
        return true;
    return std::fwrite(kLittleEndianBom, 1, 2, file) == 2;
}

} // namespace QvXmlLib16::detail
