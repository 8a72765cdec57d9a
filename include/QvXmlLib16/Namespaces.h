#pragma once

// The namespace names the library itself gives meaning to.
namespace QvXmlLib16::ns {

// Bound to the prefix xml by definition; never declared.
inline constexpr wchar_t kXml[] = L"http://www.w3.org/XML/1998/namespace";
// Reserved for xmlns declarations.
inline constexpr wchar_t kXmlns[] = L"http://www.w3.org/2000/xmlns/";
// xsi:type, xsi:nil, xsi:schemaLocation.
inline constexpr wchar_t kXsi[] = L"http://www.w3.org/2001/XMLSchema-instance";

} // namespace QvXmlLib16::ns
