#pragma once

// Message texts of the XML document layer. Verbatim, odd spelling included: callers match on
// them.
namespace QvXmlLib16::msg {

// Streams and compression
inline constexpr wchar_t kFileWriteFailedFmt[] = L"Failed to write data to the file [%ls].";
inline constexpr wchar_t kFileChunkWriteFailed[] = L"Failed to write data to the file";
inline constexpr wchar_t kUnknownEncoding[] =
    L"Unknown Encoding, select UTF-8 (contact our support team)";
inline constexpr wchar_t kCompressFailedFmt[] = L"Failed to compress data. [Error Code: %d]";

} // namespace QvXmlLib16::msg
