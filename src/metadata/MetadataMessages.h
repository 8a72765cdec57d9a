#pragma once

// Message texts of the binding metadata. Verbatim, odd spelling included: callers match on
// them. The nil and unknown-attribute texts are shared with the generated-class driver.
namespace QvXmlLib16::msg {

inline constexpr wchar_t kPropertyGetFailedFmt[] = L"Failed to get the property value for [%ls].";
inline constexpr wchar_t kPropertySetFailed[] = L"Failed to set the property value.";
// The attribute infos name the value; the element infos do not.
inline constexpr wchar_t kAttributeSetFailedFmt[] = L"Failed to set the property value [%ls].";
inline constexpr wchar_t kCannotCheckRestriction[] = L"Cannot CheckRestriction for type: ";
inline constexpr wchar_t kNotImplemented[] = L"Not implemented, should never be called";
inline constexpr wchar_t kNilOnNonNillable[] =
    L"Invalid use of 'nil' attribute in non-nillable element.";
inline constexpr wchar_t kBadNilValueFmt[] = L"Unexpected Value [%ls] for 'nil' Attribute found.";
inline constexpr wchar_t kUnexpectedAttribute[] = L"Unexpected Attribute found.";

// Sequence members
inline constexpr wchar_t kMandatoryNotNullFmt[] =
    L"The Property [%ls] is mandatory, it may not be NULL";
inline constexpr wchar_t kRequiredChildMissingFmt[] =
    L"Failed to find the required child element [%ls].";
inline constexpr wchar_t kNoSubstitutionFmt[] =
    L"Failed to find a suitable substitution element for [%ls].";
inline constexpr wchar_t kRequiredNamespaceMissingFmt[] =
    L"Failed to find the required element from namespace [%ls].";

} // namespace QvXmlLib16::msg

namespace QvXmlLib16::msg {

// Attributes
inline constexpr wchar_t kRequiredAttributeMissingFmt[] =
    L"Failed to find the required Attribute [%ls].";

} // namespace QvXmlLib16::msg

namespace QvXmlLib16::msg {

// Primitive collections
inline constexpr wchar_t kIndexOutOfRange[] = L"Index out of range";
inline constexpr wchar_t kDateKindDate[] =
    L"Dates added to this collection must be of type dt_date";
inline constexpr wchar_t kDateKindDateTime[] =
    L"Dates added to this collection must be of type dt_dateTime";
inline constexpr wchar_t kDateKindTime[] =
    L"Dates added to this collection must be of type dt_time";
inline constexpr wchar_t kDateKindMonthDay[] =
    L"Dates added to this collection must be of type dt_gMonthDay";
inline constexpr wchar_t kDateKindYearMonth[] =
    L"Dates added to this collection must be of type dt_gYearMonth";

} // namespace QvXmlLib16::msg
