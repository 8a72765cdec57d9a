#pragma once

// Message texts of the value types. Verbatim, odd spelling included: callers match on them.
namespace QvXmlLib16::msg {

// Binary data
inline constexpr wchar_t kIndexOutOfRangeBinaryFmt[] = L"Index Out of range [%d]";
inline constexpr wchar_t kReleaseNotLastFmt[] = L"Failed to release data. [RefCount=%d]";
inline constexpr wchar_t kAppendSharedFmt[] = L"Failed to append. [RefCount=%d]";
inline constexpr wchar_t kHexInvalidLength[] = L"Invalid length in hex string";
inline constexpr wchar_t kHexInvalidCharFmt[] = L"Invalid char in hex string [%lc]";

// Date and time
inline constexpr wchar_t kAccessorKindFmt[] = L"Failed to %ls. Invalid Date Type: %ls.";
inline constexpr wchar_t kGetTimeKindFmt[] =
    L"Failed to GetTime, Date Status must be dateTime or date. Invalid Date Type: %ls.";
inline constexpr wchar_t kTimeZoneNotUsed[] = L"TimeZone is not been used";
inline constexpr wchar_t kInvalidTimeZoneFmt[] = L"Invalid TimeZone [%d:%d]";
inline constexpr wchar_t kDateNullString[] = L"Invalid Date (Null String)";
inline constexpr wchar_t kDateEmptyString[] = L"Invalid Date (Empty String)";
inline constexpr wchar_t kDateTNotAllowed[] = L"Invalid Date ('T' not allowed)";
inline constexpr wchar_t kDateBadZone[] = L"Invalid Date (Bad Zone value)";
inline constexpr wchar_t kInvalidXsdDateFmt[] =
    L"Invalid XSD Date [%ls] expected CCYY-MM-DD[Z|[+|-]hh:mm]";
inline constexpr wchar_t kInvalidXsdTimeZoneFmt[] = L"Invalid XSD Time Zone [%ls].";
inline constexpr wchar_t kTimeNullString[] = L"Invalid Time (Null String)";
inline constexpr wchar_t kTimeEmptyString[] = L"Invalid XSD Time (Empty String)";
inline constexpr wchar_t kInvalidXsdTimeFmt[] = L"Invalid XSD Time [%ls] expected hh:mm:ss[.ff]";
inline constexpr wchar_t kTimeFractionTooLongFmt[] =
    L"Invalid XSD Time [%ls] Fraction part too long";
inline constexpr wchar_t kDateTimeNullString[] = L"Invalid DateTime (Null String)";
inline constexpr wchar_t kInvalidXsdDateTimeFmt[] = L"Invalid XSD DateTime [%ls].";
inline constexpr wchar_t kInvalidXsdDateTimeExpectedFmt[] =
    L"Invalid XSD DateTime [%ls] expected CCYY-MM-DDThh:mm:ss[.ff]";
inline constexpr wchar_t kInvalidMonthFmt[] = L"Invalid Month [%d] (1 <= month <= 12)";
inline constexpr wchar_t kInvalidYearFmt[] = L"Invalid Year [%d] (%d <= year <= %d && year != 0)";
// The date and dateTime text lacks its closing parenthesis; the gMonthDay one has it.
inline constexpr wchar_t kInvalidDayInMonthFmt[] = L"Invalid Day [%d] (1 <= day <= days in month";
inline constexpr wchar_t kInvalidMonthDayFmt[] = L"Invalid Day [%d] (1 <= day <= days in month)";
inline constexpr wchar_t kInvalidGDayFmt[] = L"Invalid Day [%d] (1 <= day <= 31)";
inline constexpr wchar_t kInvalidHourFmt[] = L"Invalid Hour [%d] (0 <= hour <= 23)";
inline constexpr wchar_t kInvalidMinuteFmt[] = L"Invalid Minute [%d] (0 <= minute <= 59)";
inline constexpr wchar_t kInvalidSecondFmt[] = L"Invalid Second [%d] (0 <= second <= 59)";
inline constexpr wchar_t kInvalidMilliFmt[] = L"Invalid Milli-Second [%d] (0 <= milli <= 999)";
inline constexpr wchar_t kInvalidMicroFmt[] = L"Invalid Micro-Second [%d] (0 <= micro <= 999)";
inline constexpr wchar_t kInvalidNanoFmt[] = L"Invalid Nano-Second [%d] (0 <= nano <= 999)";
// Field name ("Month", "Milli-Second", ...), its value, the kind's name.
inline constexpr wchar_t kFieldNotForTypeFmt[] = L"Invalid %ls [%d] for type %ls";
inline constexpr wchar_t kInvalidYearZero[] = L"Invalid Year Zero";
inline constexpr wchar_t kUnknownDateTypeFmt[] = L"Unknown date type %d.";
inline constexpr wchar_t kConversionNotPossibleFmt[] =
    L"Attempting to set a CDateTime of type %ls using an XmlDateTime of type %ls. The source "
    L"CDateTime does not contian enough data to allow the conversion.";
inline constexpr wchar_t kCopyInvalidTypeFmt[] =
    L"Failed to copy CDateTime. Invalid Date Type: %ls, expected: %ls.";
inline constexpr wchar_t kDateNotSet[] = L"Error: Date Not Set";
inline constexpr wchar_t kUnknownFormat[] = L"Unknown Format: ";
inline constexpr wchar_t kDateArithmeticOverflowFmt[] =
    L"The date %ls moved by %ls falls outside the years -9999 to 9999.";
inline constexpr wchar_t kSubtractKindsFmt[] = L"Cannot subtract a %ls from a %ls.";
inline constexpr wchar_t kTimeValueOutOfRangeFmt[] =
    L"The time value %ld is outside the years 1 to 9999.";

// Duration
inline constexpr wchar_t kDurationNullString[] = L"Invalid XSD Duration (Null String)";
inline constexpr wchar_t kDurationEmptyString[] = L"Invalid XSD Duration (Empty String)";
inline constexpr wchar_t kDurationFractionTooLongFmt[] =
    L"Invalid XSD Duration [%ls] Fraction part too long";
inline constexpr wchar_t kInvalidXsdDurationFmt[] =
    L"Invalid XSD Duration [%ls] expected [-]P[nY][nM][nD][T[nH][nM][nS.ff]]";

// Decimal and big integer. The texts without Fmt hold a '%' and must never reach FormatString.
inline constexpr wchar_t kIntOutOfBound[] = L"ERROR: Value out of bound of int.";
inline constexpr wchar_t kLongLongOutOfBound[] = L"ERROR: Value out of bound of LONGLONG.";
inline constexpr wchar_t kDecimalInvalidCharFmt[] =
    L"The string representing a Decimal, contained an invalid char at position %d [%ls].";
inline constexpr wchar_t kDecimalTooLargeForDouble[] =
    L"The Decimal value if to large to fit into a Double";
inline constexpr wchar_t kDecimalTooLargeForLongLong[] =
    L"The Decimal value if to large to fit into a LONGLONG";
inline constexpr wchar_t kDecimalTooLargeForLong[] =
    L"The Decimal value if to large to fit into a LONG";
inline constexpr wchar_t kOverflowDivide[] = L"ERROR: Overflow in operator/.";
inline constexpr wchar_t kOverflowModulo[] = L"ERROR: Overflow in operator%.";
inline constexpr wchar_t kOverflowDivideAssign[] = L"ERROR: Overflow in operator /=.";
inline constexpr wchar_t kOverflowModuloAssign[] = L"ERROR: Overflow in operator%=.";
inline constexpr wchar_t kSquareRootNegative[] =
    L"ERROR: Negative Number in function SquareRoot().";
inline constexpr wchar_t kBigIntegerNotFinite[] =
    L"A CBigInteger cannot hold an infinite or NaN double.";
inline constexpr wchar_t kInvalidScaleFmt[] = L"Invalid number of fraction digits [%d].";

} // namespace QvXmlLib16::msg
