#pragma once

#include <QvXmlLib16/BigInteger.h>
#include <QvXmlLib16/BinaryData.h>
#include <QvXmlLib16/Conversions.h>
#include <QvXmlLib16/DateTime.h>
#include <QvXmlLib16/DateTimeSpan.h>
#include <QvXmlLib16/Decimal.h>
#include <QvXmlLib16/Export.h>
#include <QvXmlLib16/ItemType.h>
#include <QvXmlLib16/WhitespaceUtils.h>
#include <QvXmlLib16/XmlObjectHelper.h>
#include <QvXmlLib16/XmlTypeCollection.h>

#include <string>
#include <vector>

namespace QvXmlLib16 {

// What each primitive collection needs to know about its item: the stored type, the type
// Add/AddAt take and Item returns, the item type code, and the parser, formatter and facet
// check of the value type. The date items also declare CheckKind.

struct HexBinaryItem {
    using Value = CBinaryData;
    using Arg = const CBinaryData&;
    static constexpr ItemType kType = ItemType_hexBinary;
    static constexpr auto Parse = &CConversions::hexBinaryFromString;
    static constexpr auto Format = &CConversions::hexBinaryToString;
    static constexpr auto CheckFacets = &CXmlObjectHelper::CheckRestrictionForhexBinary;
};

struct Base64BinaryItem {
    using Value = CBinaryData;
    using Arg = const CBinaryData&;
    static constexpr ItemType kType = ItemType_base64Binary;
    static constexpr auto Parse = &CConversions::base64BinaryFromString;
    static constexpr auto Format = &CConversions::base64BinaryToString;
    static constexpr auto CheckFacets = &CXmlObjectHelper::CheckRestrictionForbase64Binary;
};

struct I1Item {
    using Value = char;
    using Arg = char;
    static constexpr ItemType kType = ItemType_i1;
    static constexpr auto Parse = &CConversions::i1FromString;
    static constexpr auto Format = &CConversions::i1ToString;
    static constexpr auto CheckFacets = &CXmlObjectHelper::CheckRestrictionFori1;
};

struct I2Item {
    using Value = short;
    using Arg = short;
    static constexpr ItemType kType = ItemType_i2;
    static constexpr auto Parse = &CConversions::i2FromString;
    static constexpr auto Format = &CConversions::i2ToString;
    static constexpr auto CheckFacets = &CXmlObjectHelper::CheckRestrictionFori2;
};

struct I4Item {
    using Value = long; // the library's i4: no value of an i4 member is truncated
    using Arg = long;
    static constexpr ItemType kType = ItemType_i4;
    static constexpr auto Parse = &CConversions::i4FromString;
    static constexpr auto Format = &CConversions::i4ToString;
    static constexpr auto CheckFacets = &CXmlObjectHelper::CheckRestrictionFori4;
};

struct I8Item {
    using Value = long long;
    using Arg = long long;
    static constexpr ItemType kType = ItemType_i8;
    static constexpr auto Parse = &CConversions::i8FromString;
    static constexpr auto Format = &CConversions::i8ToString;
    static constexpr auto CheckFacets = &CXmlObjectHelper::CheckRestrictionFori8;
};

struct Ui1Item {
    using Value = unsigned char;
    using Arg = unsigned char;
    static constexpr ItemType kType = ItemType_ui1;
    static constexpr auto Parse = &CConversions::ui1FromString;
    static constexpr auto Format = &CConversions::ui1ToString;
    static constexpr auto CheckFacets = &CXmlObjectHelper::CheckRestrictionForui1;
};

struct Ui2Item {
    using Value = unsigned short;
    using Arg = unsigned short;
    static constexpr ItemType kType = ItemType_ui2;
    static constexpr auto Parse = &CConversions::ui2FromString;
    static constexpr auto Format = &CConversions::ui2ToString;
    static constexpr auto CheckFacets = &CXmlObjectHelper::CheckRestrictionForui2;
};

struct Ui4Item {
    using Value = unsigned long;
    using Arg = unsigned long;
    static constexpr ItemType kType = ItemType_ui4;
    static constexpr auto Parse = &CConversions::ui4FromString;
    static constexpr auto Format = &CConversions::ui4ToString;
    static constexpr auto CheckFacets = &CXmlObjectHelper::CheckRestrictionForui4;
};

struct Ui8Item {
    using Value = unsigned long long;
    using Arg = unsigned long long;
    static constexpr ItemType kType = ItemType_ui8;
    static constexpr auto Parse = &CConversions::ui8FromString;
    static constexpr auto Format = &CConversions::ui8ToString;
    static constexpr auto CheckFacets = &CXmlObjectHelper::CheckRestrictionForui8;
};

// r4, r8 and decimal are written with the collection's number format.
struct R4Item {
    using Value = float;
    using Arg = float;
    static constexpr ItemType kType = ItemType_r4;
    static constexpr auto Parse = &CConversions::r4FromString;
    static constexpr auto Format =
        static_cast<std::wstring (*)(float, const std::wstring&)>(&CConversions::r4ToString);
    static constexpr auto CheckFacets = &CXmlObjectHelper::CheckRestrictionForr4;
};

struct R8Item {
    using Value = double;
    using Arg = double;
    static constexpr ItemType kType = ItemType_r8;
    static constexpr auto Parse = &CConversions::r8FromString;
    static constexpr auto Format =
        static_cast<std::wstring (*)(double, const std::wstring&)>(&CConversions::r8ToString);
    static constexpr auto CheckFacets = &CXmlObjectHelper::CheckRestrictionForr8;
};

struct DurationItem {
    using Value = CDateTimeSpan;
    using Arg = const CDateTimeSpan&;
    static constexpr ItemType kType = ItemType_duration;
    static constexpr auto Parse = &CConversions::durationFromString;
    static constexpr auto Format = &CConversions::durationToString;
    static constexpr auto CheckFacets = &CXmlObjectHelper::CheckRestrictionForduration;
};

struct YearMonthItem {
    using Value = CDateTime;
    using Arg = const CDateTime&;
    static constexpr ItemType kType = ItemType_yearMonth;
    static constexpr auto Parse = &CConversions::yearMonthFromString;
    static constexpr auto Format = &CConversions::yearMonthToString;
    static constexpr auto CheckFacets = &CXmlObjectHelper::CheckRestrictionForyearMonth;
    static void CheckKind(const CDateTime& value); // dt_gYearMonth only
};

struct MonthDayItem {
    using Value = CDateTime;
    using Arg = const CDateTime&;
    static constexpr ItemType kType = ItemType_monthDay;
    static constexpr auto Parse = &CConversions::monthDayFromString;
    static constexpr auto Format = &CConversions::monthDayToString;
    static constexpr auto CheckFacets = &CXmlObjectHelper::CheckRestrictionFormonthDay;
    static void CheckKind(const CDateTime& value); // dt_gMonthDay only
};

struct YearItem {
    using Value = unsigned short;
    using Arg = unsigned short;
    static constexpr ItemType kType = ItemType_year;
    static constexpr auto Parse = &CConversions::yearFromString;
    static constexpr auto Format = &CConversions::yearToString;
    static constexpr auto CheckFacets = &CXmlObjectHelper::CheckRestrictionForyear;
};

struct MonthItem {
    using Value = unsigned char;
    using Arg = unsigned char;
    static constexpr ItemType kType = ItemType_month;
    static constexpr auto Parse = &CConversions::monthFromString;
    static constexpr auto Format = &CConversions::monthToString;
    static constexpr auto CheckFacets = &CXmlObjectHelper::CheckRestrictionFormonth;
};

struct DayItem {
    using Value = unsigned char;
    using Arg = unsigned char;
    static constexpr ItemType kType = ItemType_day;
    static constexpr auto Parse = &CConversions::dayFromString;
    static constexpr auto Format = &CConversions::dayToString;
    static constexpr auto CheckFacets = &CXmlObjectHelper::CheckRestrictionForday;
};

struct DateItem {
    using Value = CDateTime;
    using Arg = const CDateTime&;
    static constexpr ItemType kType = ItemType_date;
    static constexpr auto Parse = &CConversions::dateFromString;
    static constexpr auto Format = &CConversions::dateToString;
    static constexpr auto CheckFacets = &CXmlObjectHelper::CheckRestrictionFordate;
    static void CheckKind(const CDateTime& value); // dt_date only
};

struct DatetimeItem {
    using Value = CDateTime;
    using Arg = const CDateTime&;
    static constexpr ItemType kType = ItemType_datetime;
    static constexpr auto Parse = &CConversions::datetimeFromString;
    static constexpr auto Format = &CConversions::datetimeToString;
    static constexpr auto CheckFacets = &CXmlObjectHelper::CheckRestrictionFordatetime;
    static void CheckKind(const CDateTime& value); // dt_dateTime only
};

struct TimeItem {
    using Value = CDateTime;
    using Arg = const CDateTime&;
    static constexpr ItemType kType = ItemType_time;
    static constexpr auto Parse = &CConversions::timeFromString;
    static constexpr auto Format = &CConversions::timeToString;
    static constexpr auto CheckFacets = &CXmlObjectHelper::CheckRestrictionFortime;
    static void CheckKind(const CDateTime& value); // dt_time only
};

struct StringItem {
    using Value = std::wstring;
    using Arg = const std::wstring&;
    static constexpr ItemType kType = ItemType_string;
    static constexpr auto Parse = &CConversions::stringFromString;
    static constexpr auto Format = &CConversions::stringToString;
    static constexpr auto CheckFacets = &CXmlObjectHelper::CheckRestrictionForstring;
};

struct BooleanItem {
    using Value = bool;
    using Arg = bool;
    static constexpr ItemType kType = ItemType_boolean;
    static constexpr auto Parse = &CConversions::booleanFromString;
    static constexpr auto Format = &CConversions::booleanToString;
    static constexpr auto CheckFacets = &CXmlObjectHelper::CheckRestrictionForboolean;
};

struct DecimalItem {
    using Value = CDecimal;
    using Arg = const CDecimal&;
    static constexpr ItemType kType = ItemType_decimal;
    static constexpr auto Parse = &CConversions::decimalFromString;
    static constexpr auto Format =
        static_cast<std::wstring (*)(const CDecimal&, const std::wstring&)>(
            &CConversions::decimalToString);
    static constexpr auto CheckFacets = &CXmlObjectHelper::CheckRestrictionFordecimal;
};

struct IntegerItem {
    using Value = CBigInteger;
    using Arg = const CBigInteger&;
    static constexpr ItemType kType = ItemType_integer;
    static constexpr auto Parse = &CConversions::integerFromString;
    static constexpr auto Format = &CConversions::integerToString;
    static constexpr auto CheckFacets = &CXmlObjectHelper::CheckRestrictionForinteger;
};

// Base of the date and time collections whose values carry a kind (date, dateTime, time,
// gMonthDay, gYearMonth), so code holding any of them can add and read CDateTime values.
class QVXML_API CdatetimeBaseCol : public CXmlTypeCollection {
public:
    CdatetimeBaseCol(ItemType type, const wchar_t* name, const wchar_t* ns, int minOccurs,
                     int maxOccurs, const wchar_t* pattern, long long minLength,
                     long long maxLength, const wchar_t* minInclusive, const wchar_t* maxInclusive,
                     const wchar_t* minExclusive, const wchar_t* maxExclusive, long long length,
                     long long totalDigits, long long fractionDigits,
                     CWhitespaceUtils::WhitespaceRule rule, const wchar_t* numberFormat);
    ~CdatetimeBaseCol() override;

    // Refuses a value of another kind (CQvInvalidParamException) or outside the facets.
    virtual void AddAt(int index, const CDateTime& value) = 0;

    void Add(const CDateTime& value) { AddAt(GetCount(), value); }

    virtual const CDateTime& Item(int index) const = 0;

protected:
    // The add events around the insertion, and the index check; the caller has checked the
    // kind and the facets.
    void BaseAddAt(int index, const CDateTime& value);

private:
    virtual void InsertItem(int index, const CDateTime& value) = 0;
};

// One collection of primitive values. Facets are checked as values are added, so a value
// that breaks them never gets in. Listeners get a pointer to the value on add and to the
// index on remove, valid during the call.
template <class Traits, class Base = CXmlTypeCollection>
class TPrimitiveCol : public Base {
public:
    using Value = typename Traits::Value;
    using Arg = typename Traits::Arg;

    // Null strings and -1 mean an absent facet; WhitespaceRule_None reads text as it stands.
    TPrimitiveCol(const wchar_t* name, const wchar_t* ns, int minOccurs, int maxOccurs,
                  const wchar_t* pattern = nullptr, long long minLength = -1,
                  long long maxLength = -1, const wchar_t* minInclusive = nullptr,
                  const wchar_t* maxInclusive = nullptr, const wchar_t* minExclusive = nullptr,
                  const wchar_t* maxExclusive = nullptr, long long length = -1,
                  long long totalDigits = -1, long long fractionDigits = -1,
                  CWhitespaceUtils::WhitespaceRule rule = CWhitespaceUtils::WhitespaceRule_None,
                  const wchar_t* numberFormat = nullptr);
    ~TPrimitiveCol() override;

    int GetCount() const override;
    void Clear() override;

    void Add(Arg value) { AddAt(GetCount(), value); }

    // index 0..count; count appends. The add notification goes out before any check.
    void AddAt(int index, Arg value);
    void AddFromString(const std::wstring& text) override;
    Arg Item(int index) const;
    void Remove(int index) override;

protected:
    // Checks the count first; an empty collection writes nothing.
    void ToXml_Int(CXmlWriter* writer, bool isRoot, const wchar_t* namespaceUri,
                   const CSerializationContext& ctx, bool optionalChoice) const override;

private:
    void InsertItem(int index, const Value& value);

    std::vector<Value> m_items;
};

// The bodies are compiled once, in the library.
extern template class QVXML_API TPrimitiveCol<HexBinaryItem>;
extern template class QVXML_API TPrimitiveCol<Base64BinaryItem>;
extern template class QVXML_API TPrimitiveCol<I1Item>;
extern template class QVXML_API TPrimitiveCol<I2Item>;
extern template class QVXML_API TPrimitiveCol<I4Item>;
extern template class QVXML_API TPrimitiveCol<I8Item>;
extern template class QVXML_API TPrimitiveCol<Ui1Item>;
extern template class QVXML_API TPrimitiveCol<Ui2Item>;
extern template class QVXML_API TPrimitiveCol<Ui4Item>;
extern template class QVXML_API TPrimitiveCol<Ui8Item>;
extern template class QVXML_API TPrimitiveCol<R4Item>;
extern template class QVXML_API TPrimitiveCol<R8Item>;
extern template class QVXML_API TPrimitiveCol<DurationItem>;
extern template class QVXML_API TPrimitiveCol<YearMonthItem, CdatetimeBaseCol>;
extern template class QVXML_API TPrimitiveCol<MonthDayItem, CdatetimeBaseCol>;
extern template class QVXML_API TPrimitiveCol<YearItem>;
extern template class QVXML_API TPrimitiveCol<MonthItem>;
extern template class QVXML_API TPrimitiveCol<DayItem>;
extern template class QVXML_API TPrimitiveCol<DateItem, CdatetimeBaseCol>;
extern template class QVXML_API TPrimitiveCol<DatetimeItem, CdatetimeBaseCol>;
extern template class QVXML_API TPrimitiveCol<TimeItem, CdatetimeBaseCol>;
extern template class QVXML_API TPrimitiveCol<StringItem>;
extern template class QVXML_API TPrimitiveCol<BooleanItem>;
extern template class QVXML_API TPrimitiveCol<DecimalItem>;
extern template class QVXML_API TPrimitiveCol<IntegerItem>;

class QVXML_API ChexBinaryCol final : public TPrimitiveCol<HexBinaryItem> {
public:
    using TPrimitiveCol::TPrimitiveCol;
};

class QVXML_API Cbase64BinaryCol final : public TPrimitiveCol<Base64BinaryItem> {
public:
    using TPrimitiveCol::TPrimitiveCol;
};

class QVXML_API Ci1Col final : public TPrimitiveCol<I1Item> {
public:
    using TPrimitiveCol::TPrimitiveCol;
};

class QVXML_API Ci2Col final : public TPrimitiveCol<I2Item> {
public:
    using TPrimitiveCol::TPrimitiveCol;
};

class QVXML_API Ci4Col final : public TPrimitiveCol<I4Item> {
public:
    using TPrimitiveCol::TPrimitiveCol;
};

class QVXML_API Ci8Col final : public TPrimitiveCol<I8Item> {
public:
    using TPrimitiveCol::TPrimitiveCol;
};

class QVXML_API Cui1Col final : public TPrimitiveCol<Ui1Item> {
public:
    using TPrimitiveCol::TPrimitiveCol;
};

class QVXML_API Cui2Col final : public TPrimitiveCol<Ui2Item> {
public:
    using TPrimitiveCol::TPrimitiveCol;
};

class QVXML_API Cui4Col final : public TPrimitiveCol<Ui4Item> {
public:
    using TPrimitiveCol::TPrimitiveCol;
};

class QVXML_API Cui8Col final : public TPrimitiveCol<Ui8Item> {
public:
    using TPrimitiveCol::TPrimitiveCol;
};

class QVXML_API Cr4Col final : public TPrimitiveCol<R4Item> {
public:
    using TPrimitiveCol::TPrimitiveCol;
};

class QVXML_API Cr8Col final : public TPrimitiveCol<R8Item> {
public:
    using TPrimitiveCol::TPrimitiveCol;
};

class QVXML_API CdurationCol final : public TPrimitiveCol<DurationItem> {
public:
    using TPrimitiveCol::TPrimitiveCol;
};

class QVXML_API CyearMonthCol final : public TPrimitiveCol<YearMonthItem, CdatetimeBaseCol> {
public:
    using TPrimitiveCol::TPrimitiveCol;
};

class QVXML_API CmonthDayCol final : public TPrimitiveCol<MonthDayItem, CdatetimeBaseCol> {
public:
    using TPrimitiveCol::TPrimitiveCol;
};

class QVXML_API CyearCol final : public TPrimitiveCol<YearItem> {
public:
    using TPrimitiveCol::TPrimitiveCol;
};

class QVXML_API CmonthCol final : public TPrimitiveCol<MonthItem> {
public:
    using TPrimitiveCol::TPrimitiveCol;
};

class QVXML_API CdayCol final : public TPrimitiveCol<DayItem> {
public:
    using TPrimitiveCol::TPrimitiveCol;
};

class QVXML_API CdateCol final : public TPrimitiveCol<DateItem, CdatetimeBaseCol> {
public:
    using TPrimitiveCol::TPrimitiveCol;
};

class QVXML_API CdatetimeCol final : public TPrimitiveCol<DatetimeItem, CdatetimeBaseCol> {
public:
    using TPrimitiveCol::TPrimitiveCol;
};

class QVXML_API CtimeCol final : public TPrimitiveCol<TimeItem, CdatetimeBaseCol> {
public:
    using TPrimitiveCol::TPrimitiveCol;
};

class QVXML_API CstringCol final : public TPrimitiveCol<StringItem> {
public:
    using TPrimitiveCol::TPrimitiveCol;
};

class QVXML_API CbooleanCol final : public TPrimitiveCol<BooleanItem> {
public:
    using TPrimitiveCol::TPrimitiveCol;
};

class QVXML_API CdecimalCol final : public TPrimitiveCol<DecimalItem> {
public:
    using TPrimitiveCol::TPrimitiveCol;
};

class QVXML_API CintegerCol final : public TPrimitiveCol<IntegerItem> {
public:
    using TPrimitiveCol::TPrimitiveCol;
};

} // namespace QvXmlLib16
