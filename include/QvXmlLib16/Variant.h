#pragma once

#include <QvXmlLib16/BigInteger.h>
#include <QvXmlLib16/BinaryData.h>
#include <QvXmlLib16/DateTime.h>
#include <QvXmlLib16/DateTimeSpan.h>
#include <QvXmlLib16/Decimal.h>
#include <QvXmlLib16/Export.h>
#include <QvXmlLib16/ItemType.h>
#include <QvXmlLib16/SmartPtr.h>
#include <QvXmlLib16/WhitespaceUtils.h>

#include <cstdint>
#include <string>

namespace QvXmlLib16 {

class CXmlCollectionBase;
class CXmlObjectBase;

// One member value of any primitive type, tagged with its ItemType. Copies are deep. A
// variant is valid when it holds a type or is nil; a nil variant keeps its type but no value.
//
// Scalar getters do not check the type: ask for the type that was stored. Getters of owned
// values (binary, dates, duration, string, decimal, integer) throw CQvException
// "Invalid Type %d" on another type, and give an empty value when the variant is nil.
class QVXML_API QvVariant {
public:
    QvVariant();
    QvVariant(const QvVariant& other);
    QvVariant(QvVariant&& other) noexcept; // leaves other invalid
    QvVariant& operator=(const QvVariant& other);
    QvVariant& operator=(QvVariant&& other) noexcept;
    virtual ~QvVariant();

    // Drops the value, clears the nil flag and makes the variant invalid.
    void Clear();

    bool IsValid() const { return m_type != ItemType_Invalid || m_nil; }

    void SetInvalid() { Clear(); }

    // Drops the value but keeps the type.
    void SetNil();

    bool IsNil() const { return m_nil; }

    ItemType GetItemType() const { return m_type; }

    void SetHexBinary(const CBinaryData& value);
    CBinaryData GetHexBinary() const;
    void SetBase64Binary(const CBinaryData& value);
    CBinaryData GetBase64Binary() const;
    void SetI1(char value);
    char GetI1() const;
    void SetI2(short value);
    short GetI2() const;
    void SetI4(long value);
    long GetI4() const;
    void SetI8(long long value);
    long long GetI8() const;
    void SetUI1(unsigned char value);
    unsigned char GetUI1() const;
    void SetUI2(unsigned short value);
    unsigned short GetUI2() const;
    void SetUI4(unsigned long value);
    unsigned long GetUI4() const;
    void SetUI8(unsigned long long value);
    unsigned long long GetUI8() const;
    void SetR4(float value);
    float GetR4() const;
    void SetR8(double value);
    double GetR8() const;
    void SetDuration(const CDateTimeSpan& value);
    CDateTimeSpan GetDuration() const;
    void SetYearMonth(const CDateTime& value);
    CDateTime GetYearMonth() const;
    void SetMonthDay(const CDateTime& value);
    CDateTime GetMonthDay() const;
    void SetYear(unsigned short value);
    unsigned short GetYear() const;
    void SetMonth(unsigned char value);
    unsigned char GetMonth() const;
    void SetDay(unsigned char value);
    unsigned char GetDay() const;
    void SetDate(const CDateTime& value);
    CDateTime GetDate() const;
    void SetDateTime(const CDateTime& value);
    CDateTime GetDateTime() const;
    void SetTime(const CDateTime& value);
    CDateTime GetTime() const;
    void SetChar(wchar_t value);
    wchar_t GetChar() const;
    void SetString(const std::wstring& value);
    void SetString(std::wstring&& value);
    std::wstring GetString() const;
    // The stored string itself, valid until the variant changes; throws as GetString does.
    const std::wstring& GetStringRef() const;
    void SetBoolean(bool value);
    bool GetBoolean() const;
    void SetDecimal(const CDecimal& value);
    CDecimal GetDecimal() const;
    void SetInteger(const CBigInteger& value);
    CBigInteger GetInteger() const;
    // A counted reference (null allowed): the variant holds one count while it keeps it, and
    // the getter hands the caller another.
    void SetXmlObject(CXmlObjectBase* value);
    CSmartPtr<CXmlObjectBase> GetXmlObject() const;
    void SetXmlCollection(CXmlCollectionBase* value);
    CSmartPtr<CXmlCollectionBase> GetXmlCollection() const;

    // The lexical type name ("i4", "datetime", ...); CQvException "Invalid Type %d" for 0, the
    // object and collection types and anything out of range.
    std::wstring GetType() const;
    // format (null = empty) is used by r4, r8 and decimal only. Nil gives "". Types outside
    // 1-26 throw CQvException "Invalid Type %d to convert to string".
    std::wstring ToString(const wchar_t* format = nullptr) const;
    // On a conversion error the variant keeps its value. A type outside 1-26 throws
    // CQvException "Invalid Type %d to convert to string" with this variant's current type.
    void FromString(const std::wstring& text, ItemType type, CWhitespaceUtils::WhitespaceRule rule);

private:
    template <class T>
    void StoreScalar(ItemType type, T value);
    template <class T>
    T LoadScalar() const;
    template <class T>
    void StoreOwned(ItemType type, const T& value);
    template <class T>
    const T& LoadOwned(ItemType type) const;
    void CopyFrom(const QvVariant& other);
    void StoreObject(ItemType type, CXmlObjectBase* value);

    bool m_nil = false;
    ItemType m_type = ItemType_Invalid;

    // Scalars sit in the bits (copied in and out with memcpy); owned values (types 1, 2, 13-15,
    // 19-21, 23, 25, 26) are heap objects behind the pointer, as are the counted references of
    // types 27 and 28.
    union Cell {
        std::uint64_t bits;
        void* ptr;
    } m_cell{0};
};

} // namespace QvXmlLib16
