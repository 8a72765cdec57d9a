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

namespace QvXmlLib16::msg {

// Element tree and reader
inline constexpr wchar_t kFileOpenFailedFmt[] = L"Failed to open the file [%ls].";
// Both end in a literal "%n": the formatter prints it as text.
inline constexpr wchar_t kFileSizeFailedFmt[] =
    L"Failed to get the size of the file [%ls] Error [%n]";
inline constexpr wchar_t kFileReadFailedFmt[] =
    L"Failed to read the contents of the file [%ls] Error [%n]";
inline constexpr wchar_t kXmlStringEmpty[] = L"XML String is empty!";
inline constexpr wchar_t kXmlStreamEmpty[] = L"XML Stream is empty!";
inline constexpr wchar_t kParseErrorFmt[] = L"%ls at line %d";
inline constexpr wchar_t kTextTooLong[] = L"The text of an element or attribute exceeds 4 GiB.";

// Writers
inline constexpr wchar_t kAttributesBeforeElements[] = L"Attributes must be added before elements";
inline constexpr wchar_t kHeaderDirectiveTooLate[] =
    L"Headed directives must appear before an Element has been added.";
inline constexpr wchar_t kInvalidEolType[] = L"Invalid EOL type.";
inline constexpr wchar_t kElementNotClosed[] = L"An Element has not been closed.";
inline constexpr wchar_t kNoOpenElement[] = L"No Element is open.";

} // namespace QvXmlLib16::msg
