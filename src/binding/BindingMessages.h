#pragma once

// Message texts of the binding core. Verbatim, odd spelling included: callers match on them.
namespace QvXmlLib16::msg {

// Serialization context
inline constexpr wchar_t kIgnoreUnknownWhileMissing[] =
    L"The parser can only ignore additional elements, or ignore the fact that some required ones "
    L"are missing, you can not ignore both\nSet IgnoreMissingMandatoryElements to false before "
    L"setting IgnoreUnknownElements to true";
inline constexpr wchar_t kIgnoreMissingWhileUnknown[] =
    L"The parser can only ignore additional elements, or ignore the fact that some required ones "
    L"are missing, you can not ignore both\nSet IgnoreUnknownElements to false before setting "
    L"IgnoreMissingMandatoryElements to true";
inline constexpr wchar_t kIndentCharsInvalid[] =
    L"IndentChars can only contain Whitespace characters, i.e. \\t or spaces";
inline constexpr wchar_t kAliasNotFoundFmt[] = L"Namespace alias [%ls] not found";

// Collections and indexed lookups
inline constexpr wchar_t kIndexOutOfRangeFmt[] = L"Index %d is out of range, use 0 - %d";

} // namespace QvXmlLib16::msg

namespace QvXmlLib16::msg {

// Object base
inline constexpr wchar_t kPropertyAlreadySetFmt[] =
    L"The Property [%ls] is already set. Only one element within this class bay be set at a time";
// No brackets around the name here, unlike its twin above: both are kept as they are.
inline constexpr wchar_t kPropertyAlreadySetValidFmt[] =
    L"The Property %ls is already set. Only one element within this class bay be set at a time";
inline constexpr wchar_t kPropertyMandatoryNodeFmt[] =
    L"The Property [%ls] is mandatory, it may node be NULL";
inline constexpr wchar_t kElementNameDiffersFmt[] =
    L"This property requires an element with the name %ls the element being set has the element "
    L"name %ls";
inline constexpr wchar_t kZlibStreamsOnly[] =
    L"ZLIB Compression only available for To Stream methods.";

} // namespace QvXmlLib16::msg

namespace QvXmlLib16::msg {

// Generated-class driver
inline constexpr wchar_t kUnknownXmlGroupType[] = L"Unknown XML Group Type"; // writing
inline constexpr wchar_t kUnknownGroupType[] = L"Unknown Group Type";        // reading
inline constexpr wchar_t kConvertElementFailedFmt[] = L"Failed to convert the element [%ls] to XML";
inline constexpr wchar_t kConvertAttributesFailed[] = L"Failed to convert attributes to XML";
inline constexpr wchar_t kEmptyChoiceOnWrite[] =
    L"This element is a choice, and as such must have at one (and only one) valid item, "
    L"currently there are none set";
inline constexpr wchar_t kProcessElementFailed[] = L"Failed to process the element.";
inline constexpr wchar_t kLeftoverElementFmt[] =
    L"Failed read all the elements held within the element [%ls]. The unexpected element [%ls] "
    L"remains un processed";
inline constexpr wchar_t kEmptyChoiceOnReadFmt[] =
    L"No child elements within the element [%ls] were populated. The element represents a "
    L"choice, so one and only one element should be populated. The element contained no "
    L"sutable child elements";
inline constexpr wchar_t kNestingTooDeepFmt[] = L"Element nesting is deeper than %d levels.";

} // namespace QvXmlLib16::msg

namespace QvXmlLib16::msg {

// Namespace matching
inline constexpr wchar_t kInvalidNamespaceFmt[] =
    L"Invalid namespace [%ls]. The namespace must be one of [%ls] where the target namespace is "
    L"[%ls].";

} // namespace QvXmlLib16::msg

namespace QvXmlLib16::msg {

// Collections
inline constexpr wchar_t kCollectionTargetNamespace[] =
    L"CXmlCollectionBase::GetTargetNamespace Should not be used from within a Collection "
    L"(program logic error)";
inline constexpr wchar_t kCollectionMaximumFmt[] =
    L"The Maximum number of [%ls] elements allowed in this collection is %d";
inline constexpr wchar_t kCollectionMinimumFmt[] =
    L"The Minimum number of [%ls] elements allowed in this collection is %d";

} // namespace QvXmlLib16::msg

namespace QvXmlLib16::msg {

// Object collections
// "Index out of range" is shared with the primitive collections: see MetadataMessages.h.
inline constexpr wchar_t kObjectNotInCollection[] = L"The object was not found in the collection";

} // namespace QvXmlLib16::msg
