#include "foundation/FastTls.h"
#include "foundation/FoundationMessages.h"
#include "foundation/RuleApplied.h"

#include <QvXmlLib16/Conversions.h>
#include <QvXmlLib16/Format.h>
#include <QvXmlLib16/QvException.h>
#include <QvXmlLib16/Variant.h>
#include <QvXmlLib16/XmlCollectionBase.h>

#include <cstring>
#include <utility>

namespace QvXmlLib16 {

namespace {

// How the heap value behind the cell is copied and freed, per type.
struct OwnedOps {
    void* (*copy)(const void*);
    void (*destroy)(void*);
};

template <class T>
void* CopyAs(const void* p) {
    return new T(*static_cast<const T*>(p));
}

template <class T>
void DestroyAs(void* p) {
    delete static_cast<T*>(p);
}

template <class T>
constexpr OwnedOps kOps{&CopyAs<T>, &DestroyAs<T>};

// Writing reads every member into a fresh variant and reading fills one per member, so the
// string behind the cell would be allocated and freed once per element. Each thread keeps a
// few freed strings, buffers included, and copies the next values into them.
//
// The shelf is plain data, so it stays readable to the end of the thread; a separate object,
// armed when the first string is kept, empties and closes it at thread exit. Variants freed
// after that (by a thread_local or static destroyed later) delete their strings directly.
struct StringShelf {
    static constexpr int kSize = 8;
    static constexpr size_t kLargestKept = 256;

    std::wstring* items[kSize];
    int count;
    bool armed;
    bool closed;
};

QVXML_FAST_TLS thread_local StringShelf t_shelf; // zero-initialised

struct StringShelfCloser {
    ~StringShelfCloser() {
        StringShelf& shelf = t_shelf;
        while (shelf.count > 0)
            delete shelf.items[--shelf.count];
        shelf.closed = true;
    }

    bool armed = false;
};

QVXML_FAST_TLS thread_local StringShelfCloser t_shelfCloser;

std::wstring* MakeString(const std::wstring& value) {
    StringShelf& shelf = t_shelf;
    if (shelf.count == 0)
        return new std::wstring(value);
    std::wstring* item = shelf.items[--shelf.count];
    try {
        item->assign(value);
    } catch (...) {
        delete item;
        throw;
    }
    return item;
}

void DropString(std::wstring* item) {
    StringShelf& shelf = t_shelf;
    if (shelf.closed || shelf.count == StringShelf::kSize
        || item->capacity() > StringShelf::kLargestKept) {
        delete item;
        return;
    }
    if (!shelf.armed) {
        t_shelfCloser.armed = true; // constructs the closer, which registers its destructor
        shelf.armed = true;
    }
    shelf.items[shelf.count++] = item;
}

void* CopyString(const void* p) {
    return MakeString(*static_cast<const std::wstring*>(p));
}

void DestroyString(void* p) {
    DropString(static_cast<std::wstring*>(p));
}

constexpr OwnedOps kStringOps{&CopyString, &DestroyString};

// Object references are shared, not copied: a copy takes a count, destruction drops one.
void* AddRefObject(const void* p) {
    CXmlObjectBase* object = static_cast<CXmlObjectBase*>(const_cast<void*>(p));
    object->AddRef();
    return object;
}

void ReleaseObject(void* p) {
    static_cast<CXmlObjectBase*>(p)->Release();
}

constexpr OwnedOps kObjectOps{&AddRefObject, &ReleaseObject};

// Null for the scalar types, whose value is the cell itself. The object and collection
// references join here with AddRef as copy and Release as destroy.
const OwnedOps* OpsOf(ItemType type) {
    switch (type) {
    case ItemType_hexBinary:
    case ItemType_base64Binary: return &kOps<CBinaryData>;
    case ItemType_duration: return &kOps<CDateTimeSpan>;
    case ItemType_yearMonth:
    case ItemType_monthDay:
    case ItemType_date:
    case ItemType_datetime:
    case ItemType_time: return &kOps<CDateTime>;
    case ItemType_string: return &kStringOps;
    case ItemType_decimal: return &kOps<CDecimal>;
    case ItemType_integer: return &kOps<CBigInteger>;
    case ItemType_XmlObject:
    case ItemType_XmlCollection: return &kObjectOps;
    default: return nullptr;
    }
}

// Lexical names of types 1-26; index 0 stands for the invalid type and has none.
constexpr const wchar_t* kTypeNames[] = {
    nullptr,      L"hexBinary", L"base64Binary", L"i1",      L"i2",      L"i4",     L"i8",
    L"ui1",       L"ui2",       L"ui4",          L"ui8",     L"r4",      L"r8",     L"duration",
    L"yearMonth", L"monthDay",  L"year",         L"month",   L"day",     L"date",   L"datetime",
    L"time",      L"char",      L"string",       L"boolean", L"decimal", L"integer"};

[[noreturn]] void ThrowInvalidType(ItemType type) {
    throw CQvException(FormatString(msg::kInvalidTypeFmt, static_cast<int>(type)));
}

[[noreturn]] void ThrowNotConvertible(ItemType type) {
    throw CQvException(FormatString(msg::kInvalidTypeToStringFmt, static_cast<int>(type)));
}

} // namespace

QvVariant::QvVariant() = default;

QvVariant::QvVariant(const QvVariant& other) {
    CopyFrom(other);
}

QvVariant::QvVariant(QvVariant&& other) noexcept
    : m_nil(other.m_nil),
      m_type(other.m_type),
      m_cell(other.m_cell) {
    other.m_nil = false;
    other.m_type = ItemType_Invalid;
    other.m_cell.bits = 0;
}

QvVariant& QvVariant::operator=(const QvVariant& other) {
    if (this != &other)
        *this = QvVariant(other); // copy first: a failed copy leaves this value intact
    return *this;
}

QvVariant& QvVariant::operator=(QvVariant&& other) noexcept {
    if (this != &other) {
        Clear();
        std::swap(m_nil, other.m_nil);
        std::swap(m_type, other.m_type);
        std::swap(m_cell, other.m_cell);
    }
    return *this;
}

QvVariant::~QvVariant() {
    Clear();
}

void QvVariant::CopyFrom(const QvVariant& other) {
    const OwnedOps* ops = OpsOf(other.m_type);
    if (ops && other.m_cell.ptr)
        m_cell.ptr = ops->copy(other.m_cell.ptr);
    else
        m_cell = other.m_cell;
    m_type = other.m_type;
    m_nil = other.m_nil;
}

void QvVariant::Clear() {
    SetNil();
    m_nil = false;
    m_type = ItemType_Invalid;
}

void QvVariant::SetNil() {
    const OwnedOps* ops = OpsOf(m_type);
    if (ops && m_cell.ptr)
        ops->destroy(m_cell.ptr);
    m_cell.bits = 0;
    m_nil = true;
}

template <class T>
void QvVariant::StoreScalar(ItemType type, T value) {
    Clear();
    std::memcpy(&m_cell.bits, &value, sizeof value);
    m_type = type;
}

template <class T>
T QvVariant::LoadScalar() const {
    T value;
    std::memcpy(&value, &m_cell.bits, sizeof value);
    return value;
}

template <class T>
void QvVariant::StoreOwned(ItemType type, const T& value) {
    T* copy = new T(value); // before Clear, so value may live in this variant
    Clear();
    m_cell.ptr = copy;
    m_type = type;
}

template <class T>
const T& QvVariant::LoadOwned(ItemType type) const {
    if (m_type != type)
        ThrowInvalidType(m_type);
    if (!m_cell.ptr) {
        static const T empty;
        return empty;
    }
    return *static_cast<const T*>(m_cell.ptr);
}

// clang-format off
void QvVariant::SetHexBinary(const CBinaryData& v) { StoreOwned(ItemType_hexBinary, v); }
CBinaryData QvVariant::GetHexBinary() const { return LoadOwned<CBinaryData>(ItemType_hexBinary); }
void QvVariant::SetBase64Binary(const CBinaryData& v) { StoreOwned(ItemType_base64Binary, v); }
CBinaryData QvVariant::GetBase64Binary() const {
    return LoadOwned<CBinaryData>(ItemType_base64Binary);
}
void QvVariant::SetI1(char v) { StoreScalar(ItemType_i1, v); }
char QvVariant::GetI1() const { return LoadScalar<char>(); }
void QvVariant::SetI2(short v) { StoreScalar(ItemType_i2, v); }
short QvVariant::GetI2() const { return LoadScalar<short>(); }
void QvVariant::SetI4(long v) { StoreScalar(ItemType_i4, v); }
long QvVariant::GetI4() const { return LoadScalar<long>(); }
void QvVariant::SetI8(long long v) { StoreScalar(ItemType_i8, v); }
long long QvVariant::GetI8() const { return LoadScalar<long long>(); }
void QvVariant::SetUI1(unsigned char v) { StoreScalar(ItemType_ui1, v); }
unsigned char QvVariant::GetUI1() const { return LoadScalar<unsigned char>(); }
void QvVariant::SetUI2(unsigned short v) { StoreScalar(ItemType_ui2, v); }
unsigned short QvVariant::GetUI2() const { return LoadScalar<unsigned short>(); }
void QvVariant::SetUI4(unsigned long v) { StoreScalar(ItemType_ui4, v); }
unsigned long QvVariant::GetUI4() const { return LoadScalar<unsigned long>(); }
void QvVariant::SetUI8(unsigned long long v) { StoreScalar(ItemType_ui8, v); }
unsigned long long QvVariant::GetUI8() const { return LoadScalar<unsigned long long>(); }
void QvVariant::SetR4(float v) { StoreScalar(ItemType_r4, v); }
float QvVariant::GetR4() const { return LoadScalar<float>(); }
void QvVariant::SetR8(double v) { StoreScalar(ItemType_r8, v); }
double QvVariant::GetR8() const { return LoadScalar<double>(); }
void QvVariant::SetDuration(const CDateTimeSpan& v) { StoreOwned(ItemType_duration, v); }
CDateTimeSpan QvVariant::GetDuration() const { return LoadOwned<CDateTimeSpan>(ItemType_duration); }
void QvVariant::SetYearMonth(const CDateTime& v) { StoreOwned(ItemType_yearMonth, v); }
CDateTime QvVariant::GetYearMonth() const { return LoadOwned<CDateTime>(ItemType_yearMonth); }
void QvVariant::SetMonthDay(const CDateTime& v) { StoreOwned(ItemType_monthDay, v); }
CDateTime QvVariant::GetMonthDay() const { return LoadOwned<CDateTime>(ItemType_monthDay); }
void QvVariant::SetYear(unsigned short v) { StoreScalar(ItemType_year, v); }
unsigned short QvVariant::GetYear() const { return LoadScalar<unsigned short>(); }
void QvVariant::SetMonth(unsigned char v) { StoreScalar(ItemType_month, v); }
unsigned char QvVariant::GetMonth() const { return LoadScalar<unsigned char>(); }
void QvVariant::SetDay(unsigned char v) { StoreScalar(ItemType_day, v); }
unsigned char QvVariant::GetDay() const { return LoadScalar<unsigned char>(); }
void QvVariant::SetDate(const CDateTime& v) { StoreOwned(ItemType_date, v); }
CDateTime QvVariant::GetDate() const { return LoadOwned<CDateTime>(ItemType_date); }
void QvVariant::SetDateTime(const CDateTime& v) { StoreOwned(ItemType_datetime, v); }
CDateTime QvVariant::GetDateTime() const { return LoadOwned<CDateTime>(ItemType_datetime); }
void QvVariant::SetTime(const CDateTime& v) { StoreOwned(ItemType_time, v); }
CDateTime QvVariant::GetTime() const { return LoadOwned<CDateTime>(ItemType_time); }
void QvVariant::SetChar(wchar_t v) { StoreScalar(ItemType_char, v); }
wchar_t QvVariant::GetChar() const { return LoadScalar<wchar_t>(); }
void QvVariant::SetString(const std::wstring& v) {
    std::wstring* copy = MakeString(v); // before Clear, so v may live in this variant
    Clear();
    m_cell.ptr = copy;
    m_type = ItemType_string;
}

// The text moves into a kept string when there is one, so neither allocates.
void QvVariant::SetString(std::wstring&& v) {
    std::wstring* kept = MakeString(std::wstring());
    kept->swap(v);
    Clear();
    m_cell.ptr = kept;
    m_type = ItemType_string;
}

std::wstring QvVariant::GetString() const { return LoadOwned<std::wstring>(ItemType_string); }
const std::wstring& QvVariant::GetStringRef() const {
    return LoadOwned<std::wstring>(ItemType_string);
}
void QvVariant::SetBoolean(bool v) { StoreScalar(ItemType_boolean, v); }
bool QvVariant::GetBoolean() const { return LoadScalar<bool>(); }
// Objects and collections are both kept as CXmlObjectBase pointers.
void QvVariant::StoreObject(ItemType type, CXmlObjectBase* value) {
    if (value)
        value->AddRef(); // before Clear, so value may be the object held now
    Clear();
    m_cell.ptr = value;
    m_type = type;
}

void QvVariant::SetXmlObject(CXmlObjectBase* value) { StoreObject(ItemType_XmlObject, value); }

CSmartPtr<CXmlObjectBase> QvVariant::GetXmlObject() const {
    if (m_type != ItemType_XmlObject)
        ThrowInvalidType(m_type);
    return CSmartPtr<CXmlObjectBase>(static_cast<CXmlObjectBase*>(m_cell.ptr));
}

void QvVariant::SetXmlCollection(CXmlCollectionBase* value) {
    StoreObject(ItemType_XmlCollection, value);
}

CSmartPtr<CXmlCollectionBase> QvVariant::GetXmlCollection() const {
    if (m_type != ItemType_XmlCollection)
        ThrowInvalidType(m_type);
    return CSmartPtr<CXmlCollectionBase>(
        static_cast<CXmlCollectionBase*>(static_cast<CXmlObjectBase*>(m_cell.ptr)));
}

void QvVariant::SetDecimal(const CDecimal& v) { StoreOwned(ItemType_decimal, v); }
CDecimal QvVariant::GetDecimal() const { return LoadOwned<CDecimal>(ItemType_decimal); }
void QvVariant::SetInteger(const CBigInteger& v) { StoreOwned(ItemType_integer, v); }
CBigInteger QvVariant::GetInteger() const { return LoadOwned<CBigInteger>(ItemType_integer); }

// clang-format on

std::wstring QvVariant::GetType() const {
    if (m_type == ItemType_Invalid || m_type > ItemType_integer)
        ThrowInvalidType(m_type);
    return kTypeNames[m_type];
}

std::wstring QvVariant::ToString(const wchar_t* format) const {
    using C = CConversions;
    if (m_nil)
        return std::wstring();
    // Only the real and decimal types read the format.
    auto numberFormat = [format] { return std::wstring(format ? format : L""); };
    switch (m_type) {
    case ItemType_hexBinary: return C::hexBinaryToString(LoadOwned<CBinaryData>(m_type));
    case ItemType_base64Binary: return C::base64BinaryToString(LoadOwned<CBinaryData>(m_type));
    case ItemType_i1: return C::i1ToString(GetI1());
    case ItemType_i2: return C::i2ToString(GetI2());
    case ItemType_i4: return C::i4ToString(GetI4());
    case ItemType_i8: return C::i8ToString(GetI8());
    case ItemType_ui1: return C::ui1ToString(GetUI1());
    case ItemType_ui2: return C::ui2ToString(GetUI2());
    case ItemType_ui4: return C::ui4ToString(GetUI4());
    case ItemType_ui8: return C::ui8ToString(GetUI8());
    case ItemType_r4: return C::r4ToString(GetR4(), numberFormat());
    case ItemType_r8: return C::r8ToString(GetR8(), numberFormat());
    case ItemType_duration: return C::durationToString(LoadOwned<CDateTimeSpan>(m_type));
    case ItemType_yearMonth: return C::yearMonthToString(LoadOwned<CDateTime>(m_type));
    case ItemType_monthDay: return C::monthDayToString(LoadOwned<CDateTime>(m_type));
    case ItemType_year: return C::yearToString(GetYear());
    case ItemType_month: return C::monthToString(GetMonth());
    case ItemType_day: return C::dayToString(GetDay());
    case ItemType_date: return C::dateToString(LoadOwned<CDateTime>(m_type));
    case ItemType_datetime: return C::datetimeToString(LoadOwned<CDateTime>(m_type));
    case ItemType_time: return C::timeToString(LoadOwned<CDateTime>(m_type));
    case ItemType_char: return C::charToString(GetChar());
    case ItemType_string: return LoadOwned<std::wstring>(m_type);
    case ItemType_boolean: return C::booleanToString(GetBoolean());
    case ItemType_decimal: return C::decimalToString(LoadOwned<CDecimal>(m_type), numberFormat());
    case ItemType_integer: return C::integerToString(LoadOwned<CBigInteger>(m_type));
    default: ThrowNotConvertible(m_type);
    }
}

void QvVariant::FromString(const std::wstring& text, ItemType type,
                           CWhitespaceUtils::WhitespaceRule rule) {
    using C = CConversions;
    switch (type) {
    case ItemType_hexBinary: return SetHexBinary(C::hexBinaryFromString(text, rule));
    case ItemType_base64Binary: return SetBase64Binary(C::base64BinaryFromString(text, rule));
    case ItemType_i1: return SetI1(C::i1FromString(text, rule));
    case ItemType_i2: return SetI2(C::i2FromString(text, rule));
    case ItemType_i4: return SetI4(C::i4FromString(text, rule));
    case ItemType_i8: return SetI8(C::i8FromString(text, rule));
    case ItemType_ui1: return SetUI1(C::ui1FromString(text, rule));
    case ItemType_ui2: return SetUI2(C::ui2FromString(text, rule));
    case ItemType_ui4: return SetUI4(C::ui4FromString(text, rule));
    case ItemType_ui8: return SetUI8(C::ui8FromString(text, rule));
    case ItemType_r4: return SetR4(C::r4FromString(text, rule));
    case ItemType_r8: return SetR8(C::r8FromString(text, rule));
    case ItemType_duration: return SetDuration(C::durationFromString(text, rule));
    case ItemType_yearMonth: return SetYearMonth(C::yearMonthFromString(text, rule));
    case ItemType_monthDay: return SetMonthDay(C::monthDayFromString(text, rule));
    case ItemType_year: return SetYear(C::yearFromString(text, rule));
    case ItemType_month: return SetMonth(C::monthFromString(text, rule));
    case ItemType_day: return SetDay(C::dayFromString(text, rule));
    case ItemType_date: return SetDate(C::dateFromString(text, rule));
    case ItemType_datetime: return SetDateTime(C::datetimeFromString(text, rule));
    case ItemType_time: return SetTime(C::timeFromString(text, rule));
    case ItemType_char: return SetChar(C::charFromString(text, rule));
    case ItemType_string:
        // Text the rule leaves alone, as nearly all read text, is copied straight in.
        if (detail::RuleLeavesText(rule, text))
            return SetString(text);
        return SetString(C::stringFromString(text, rule));
    case ItemType_boolean: return SetBoolean(C::booleanFromString(text, rule));
    case ItemType_decimal: return SetDecimal(C::decimalFromString(text, rule));
    case ItemType_integer: return SetInteger(C::integerFromString(text, rule));
    default: ThrowNotConvertible(m_type); // the message names this variant's type on purpose
    }
}

} // namespace QvXmlLib16
