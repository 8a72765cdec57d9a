#include "binding/BindingMessages.h"
#include "metadata/MetadataMessages.h"
#include "metadata/PrimitiveColImpl.h"

#include <QvXmlLib16/Format.h>
#include <QvXmlLib16/QvException.h>

namespace QvXmlLib16 {

namespace detail {

void CheckInsertIndex(int index, int count) {
    if (index < 0 || index > count)
        throw CQvInvalidParamException(msg::kIndexOutOfRange);
}

// The upper figure is the count itself, not the last valid index: callers match the text.
void CheckItemIndex(int index, int count) {
    if (index < 0 || index >= count)
        throw CQvInvalidParamException(FormatString(msg::kIndexOutOfRangeFmt, index, count));
}

namespace {

void CheckDateKind(const CDateTime& value, CDateTime::DTType kind, const wchar_t* message) {
    if (value.GetType() != kind)
        throw CQvInvalidParamException(message);
}

} // namespace

} // namespace detail

void YearMonthItem::CheckKind(const CDateTime& value) {
    detail::CheckDateKind(value, CDateTime::DTType_gYearMonth, msg::kDateKindYearMonth);
}

void MonthDayItem::CheckKind(const CDateTime& value) {
    detail::CheckDateKind(value, CDateTime::DTType_gMonthDay, msg::kDateKindMonthDay);
}

void DateItem::CheckKind(const CDateTime& value) {
    detail::CheckDateKind(value, CDateTime::DTType_date, msg::kDateKindDate);
}

void DatetimeItem::CheckKind(const CDateTime& value) {
    detail::CheckDateKind(value, CDateTime::DTType_dateTime, msg::kDateKindDateTime);
}

void TimeItem::CheckKind(const CDateTime& value) {
    detail::CheckDateKind(value, CDateTime::DTType_time, msg::kDateKindTime);
}

CdatetimeBaseCol::CdatetimeBaseCol(ItemType type, const wchar_t* name, const wchar_t* ns,
                                   int minOccurs, int maxOccurs, const wchar_t* pattern,
                                   long long minLength, long long maxLength,
                                   const wchar_t* minInclusive, const wchar_t* maxInclusive,
                                   const wchar_t* minExclusive, const wchar_t* maxExclusive,
                                   long long length, long long totalDigits,
                                   long long fractionDigits, CWhitespaceUtils::WhitespaceRule rule,
                                   const wchar_t* numberFormat)
    : CXmlTypeCollection(type, name, ns, minOccurs, maxOccurs, pattern, minLength, maxLength,
                         minInclusive, maxInclusive, minExclusive, maxExclusive, length,
                         totalDigits, fractionDigits, rule, numberFormat) {}

CdatetimeBaseCol::~CdatetimeBaseCol() = default;

void CdatetimeBaseCol::BaseAddAt(int index, const CDateTime& value) {
    detail::AddWithEvents(
        *this, index, value, [](const CDateTime&) {},
        [this](int at, const CDateTime& item) { InsertItem(at, item); });
}

template class TPrimitiveCol<HexBinaryItem>;
template class TPrimitiveCol<Base64BinaryItem>;
template class TPrimitiveCol<I1Item>;
template class TPrimitiveCol<I2Item>;
template class TPrimitiveCol<I4Item>;
template class TPrimitiveCol<I8Item>;
template class TPrimitiveCol<Ui1Item>;
template class TPrimitiveCol<Ui2Item>;
template class TPrimitiveCol<Ui4Item>;
template class TPrimitiveCol<Ui8Item>;
template class TPrimitiveCol<R4Item>;
template class TPrimitiveCol<R8Item>;
template class TPrimitiveCol<DurationItem>;
template class TPrimitiveCol<YearMonthItem, CdatetimeBaseCol>;
template class TPrimitiveCol<MonthDayItem, CdatetimeBaseCol>;
template class TPrimitiveCol<YearItem>;
template class TPrimitiveCol<MonthItem>;
template class TPrimitiveCol<DayItem>;
template class TPrimitiveCol<DateItem, CdatetimeBaseCol>;
template class TPrimitiveCol<DatetimeItem, CdatetimeBaseCol>;
template class TPrimitiveCol<TimeItem, CdatetimeBaseCol>;
template class TPrimitiveCol<StringItem>;
template class TPrimitiveCol<BooleanItem>;
template class TPrimitiveCol<DecimalItem>;
template class TPrimitiveCol<IntegerItem>;

} // namespace QvXmlLib16
