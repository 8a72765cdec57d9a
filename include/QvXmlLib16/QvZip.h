#pragma once

#include <QvXmlLib16/BinaryData.h>
#include <QvXmlLib16/Export.h>
#include <QvXmlLib16/InstanceMonitor.h>

namespace QvXmlLib16 {

// The numbers are fixed.
enum CompressionType : int { Compression_None = 0, Compression_GZip = 1, Compression_ZLib = 2 };

// Deflate of finished output (gzip or ZLib wrapper), inflate of input with automatic detection.
class QVXML_API CQvZip : public CInstanceMonitor {
public:
    static constexpr unsigned long long kDefaultMaxDecompressed = 1ull << 30;

    CQvZip() : CInstanceMonitor(L"CQvZip") {}

    // On success *data and *length are replaced by a new[] buffer that the caller owns; the
    // caller keeps ownership of the old one. The output may not be larger than the input:
    // otherwise, and on any deflate error, throws CQvException
    // "Failed to compress data. [Error Code: %d]". Other types change nothing.
    static void Compress(unsigned char** data, unsigned long* length, CompressionType type);
    // Inflates ZLib or gzip input into a new[] buffer that replaces *data and *length. Input
    // that is not compressed, is truncated or would inflate past maxOutput bytes is left as it
    // is. Never throws for bad input.
    static void Decompress(unsigned char** data, unsigned long* length,
                           unsigned long long maxOutput = kDefaultMaxDecompressed);
    // Compresses the bytes of binary in place (nothing for empty data).
    static void CompressData(CBinaryData& binary, CompressionType type);
};

} // namespace QvXmlLib16
