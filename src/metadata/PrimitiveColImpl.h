#pragma once

// Bodies of TPrimitiveCol; only PrimitiveCols.cpp includes this, and instantiates each type.

#include <QvXmlLib16/PrimitiveCols.h>
#include <QvXmlLib16/SerializationContext.h>
#include <QvXmlLib16/XmlWriter.h>

#include <type_traits>
#include <utility>

namespace QvXmlLib16::detail {

// CQvInvalidParamException unless 0 <= index <= count.
void CheckInsertIndex(int index, int count);
// CQvInvalidParamException unless 0 <= index < count.
void CheckItemIndex(int index, int count);

template <class T, class = void>
struct HasCheckKind : std::false_type {};

template <class T>
struct HasCheckKind<T, std::void_t<decltype(&T::CheckKind)>> : std::true_type {};

// The order listeners see: Add before any check, AddComplete and Change only once the value
// is in. check runs between the index test and the insertion.
template <class Value, class Check, class Insert>
void AddWithEvents(CXmlCollectionBase& col, int index, Value item, Check&& check, Insert&& insert) {
    col.FireOnCollectionAdd(&item);
    CheckInsertIndex(index, col.GetCount());
    check(item);
    insert(index, item);
    col.FireOnCollectionAddComplete(&item);
    col.FireOnCollectionChange();
}

} // namespace QvXmlLib16::detail

namespace QvXmlLib16 {

template <class Traits, class Base>
TPrimitiveCol<Traits, Base>::TPrimitiveCol(
    const wchar_t* name, const wchar_t* ns, int minOccurs, int maxOccurs, const wchar_t* pattern,
    long long minLength, long long maxLength, const wchar_t* minInclusive,
    const wchar_t* maxInclusive, const wchar_t* minExclusive, const wchar_t* maxExclusive,
    long long length, long long totalDigits, long long fractionDigits,
    CWhitespaceUtils::WhitespaceRule rule, const wchar_t* numberFormat)
    : Base(Traits::kType, name, ns, minOccurs, maxOccurs, pattern, minLength, maxLength,
           minInclusive, maxInclusive, minExclusive, maxExclusive, length, totalDigits,
           fractionDigits, rule, numberFormat) {}

template <class Traits, class Base>
TPrimitiveCol<Traits, Base>::~TPrimitiveCol() = default;

template <class Traits, class Base>
int TPrimitiveCol<Traits, Base>::GetCount() const {
    return static_cast<int>(m_items.size());
}

// One Change for the whole batch: there is no index to report per item.
template <class Traits, class Base>
void TPrimitiveCol<Traits, Base>::Clear() {
    if (m_items.empty())
        return;
    m_items.clear();
    this->FireOnCollectionChange();
}

template <class Traits, class Base>
void TPrimitiveCol<Traits, Base>::AddAt(int index, Arg value) {
    const auto checkFacets = [this](const Value& item) {
        Traits::CheckFacets(this->GetElementName().c_str(), item, this->GetRestrictions());
    };
    if constexpr (detail::HasCheckKind<Traits>::value) {
        // Dates are vetted before anyone hears of them.
        Traits::CheckKind(value);
        checkFacets(value);
        this->BaseAddAt(index, value);
    } else {
        detail::AddWithEvents(*this, index, Value(value), checkFacets,
                              [this](int at, const Value& item) { InsertItem(at, item); });
    }
}

template <class Traits, class Base>
void TPrimitiveCol<Traits, Base>::AddFromString(const std::wstring& text) {
    // Virtual for the dates, so a value read goes through the same checks as one added.
    AddAt(GetCount(), Traits::Parse(text, this->GetWhitespaceRule()));
}

template <class Traits, class Base>
typename TPrimitiveCol<Traits, Base>::Arg TPrimitiveCol<Traits, Base>::Item(int index) const {
    detail::CheckItemIndex(index, GetCount());
    return m_items[static_cast<size_t>(index)];
}

template <class Traits, class Base>
void TPrimitiveCol<Traits, Base>::Remove(int index) {
    this->FireOnCollectionRemove(index);
    detail::CheckItemIndex(index, GetCount());
    m_items.erase(m_items.begin() + index);
    this->FireOnCollectionRemoveComplete(index);
    this->FireOnCollectionChange();
}

// Items carry the collection's own namespace, whatever namespace the caller passes.
template <class Traits, class Base>
void TPrimitiveCol<Traits, Base>::ToXml_Int(CXmlWriter* writer, bool, const wchar_t*,
                                            const CSerializationContext& ctx, bool) const {
    this->ValidateCount(ctx);
    const std::wstring name = this->GetElementName();
    const std::wstring ns = this->GetNamespace();
    for (const Value& item : m_items) {
        writer->WriteStartElement(name, ns);
        if constexpr (std::is_invocable_v<decltype(Traits::Format), Arg, const std::wstring&>)
            writer->WriteString(Traits::Format(item, this->GetNumberFormat()), Traits::kType,
                                false);
        else
            writer->WriteString(Traits::Format(item), Traits::kType, false);
        writer->WriteEndElement();
    }
}

template <class Traits, class Base>
void TPrimitiveCol<Traits, Base>::InsertItem(int index, const Value& value) {
    m_items.insert(m_items.begin() + index, value);
}

} // namespace QvXmlLib16
