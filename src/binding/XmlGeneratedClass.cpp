#include "binding/BindingMessages.h"
#include "foundation/BooleanText.h"
#include "foundation/FastTls.h"
#include "foundation/VariantText.h"
#include "metadata/MetadataMessages.h"

#include <QvXmlLib16/AttributeInfo.h>
#include <QvXmlLib16/Format.h>
#include <QvXmlLib16/QvException.h>
#include <QvXmlLib16/Variant.h>
#include <QvXmlLib16/XmlElement.h>
#include <QvXmlLib16/XmlGeneratedClass.h>
#include <QvXmlLib16/XmlWriter.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <typeinfo>
#include <vector>

namespace QvXmlLib16 {

using namespace QvXmlLib16Data;

namespace {

constexpr int kMaxNesting = 1000;

// Binding recurses once per level of the document: refuse depths that could exhaust the stack.
class NestingGuard {
public:
    explicit NestingGuard(const CXmlElement* element) {
        if (++Depth() > kMaxNesting) {
            --Depth();
            throw CQvValidationException(FormatString(msg::kNestingTooDeepFmt, kMaxNesting),
                                         element ? element->GetXPath() : std::wstring());
        }
    }

    ~NestingGuard() { --Depth(); }

    NestingGuard(const NestingGuard&) = delete;
    NestingGuard& operator=(const NestingGuard&) = delete;

private:
    static int& Depth() {
        QVXML_FAST_TLS thread_local int depth = 0;
        return depth;
    }
};

// Whether a class is nillable depends on its type alone, but the cross cast that finds out
// costs hundreds of instructions (type names are compared as strings across libraries). The
// answer is kept per type: each slot holds a type_info address with the answer in its low
// bit, written whole, so racing threads only ever store complete, correct entries. (A type_info
// address is only reused if a library of generated classes is unloaded and another loaded.)
class NillableTypes {
public:
    static const INillable* Of(const CXmlGeneratedClass* object) {
        const std::uintptr_t type = reinterpret_cast<std::uintptr_t>(&typeid(*object));
        std::atomic<std::uintptr_t>& slot = s_slots[(type >> 4) % kSlots];
        const std::uintptr_t known = slot.load(std::memory_order_relaxed);
        if ((known & ~std::uintptr_t(1)) == type && (known & 1) == 0)
            return nullptr;
        const INillable* nillable = dynamic_cast<const INillable*>(object);
        if ((known & ~std::uintptr_t(1)) != type)
            slot.store(type | (nillable ? 1 : 0), std::memory_order_relaxed);
        return nillable;
    }

private:
    static constexpr std::size_t kSlots = 64;
    static_assert(alignof(std::type_info) > 1, "the low bit of a type_info address is free");

    static std::atomic<std::uintptr_t> s_slots[kSlots];
};

std::atomic<std::uintptr_t> NillableTypes::s_slots[NillableTypes::kSlots] = {};

} // namespace

INillable::~INillable() = default;

// ---- metadata ----

void CXmlGeneratedClass::ReadProperty(int propertyIndex, QvVariant& value) const {
    const_cast<CXmlGeneratedClass*>(this)->AccessProperty(propertyIndex, true, value);
}

bool CXmlGeneratedClass::IsElementInList(const CSerializationContext& ctx,
                                         CXmlElement* element) const {
    for (CElementInfo** info = GetClassElementInfo(); info && *info; ++info) {
        if ((*info)->IsThisElement(ctx, element))
            return true;
    }
    return false;
}

int CXmlGeneratedClass::GetClassElementInfoCount() const {
    int count = 0;
    for (CElementInfo** info = GetClassElementInfo(); info && *info; ++info)
        ++count;
    return count;
}

// Choice members that may be empty (optional ones, or collections with a minimum of 0) make
// an empty choice acceptable; the sequence members never do.
bool CXmlGeneratedClass::DoesElementContainOptionalElements() const {
    return false;
}

void CXmlGeneratedClass::CleanMetaData(CParentElementInfo*& classInfo, CElementInfo**& elementInfo,
                                       CAttributeInfo**& attributeInfo) {
    delete classInfo;
    classInfo = nullptr;
    if (elementInfo) {
        for (CElementInfo** info = elementInfo; *info; ++info) {
            delete *info;
            *info = nullptr;
        }
        delete[] elementInfo;
        elementInfo = nullptr;
    }
    if (attributeInfo) {
        for (CAttributeInfo** info = attributeInfo; *info; ++info) {
            delete *info;
            *info = nullptr;
        }
        delete[] attributeInfo;
        attributeInfo = nullptr;
    }
}

// ---- writing ----

void CXmlGeneratedClass::ToXml_Int(CXmlWriter* writer, bool isRoot, const wchar_t* namespaceUri,
                                   const CSerializationContext& ctx, bool optionalChoice) const {
    const CParentElementInfo* info = GetClassInfo();
    const bool ownElement = info->m_elementType == XmlElementType_Element;
    // Only elements of their own are levels of the document.
    std::optional<NestingGuard> guard;
    if (ownElement)
        guard.emplace(nullptr);
    if (ownElement) {
        if (isRoot) {
            for (const std::wstring& pi : ctx.GetProcessingInstructions())
                writer->WritePI(pi);
            const CNamespaceAliasMap& aliases = ctx.GetNamespaceAliases();
            for (int i = 0; i < aliases.GetNamespaceCount(); ++i) {
                const std::wstring ns = aliases.GetNamespaceAt(i);
                writer->AddNamespace(aliases.GetAliasFromNamespace(ns.c_str()), ns);
            }
            if (!ctx.GetDefaultNamespaceURI().empty())
                writer->SetDefaultNamespace(ctx.GetDefaultNamespaceURI());
        }
        writer->WriteStartElement(GetElementNameRef(), namespaceUri ? namespaceUri : L"");
        AttributesToXml_Int(writer, ctx);
        if (isRoot && !ctx.GetInLineSchema().empty())
            writer->WriteInlineSchema(ctx.GetInLineSchema());
    }
    const INillable* nillable = NillableTypes::Of(this);
    if (nillable && nillable->IsNil()) {
        writer->WriteAttributeNil();
    } else {
        WriteGroup(ctx, writer, optionalChoice);
        WriteSimpleContent(writer);
    }
    if (ownElement)
        writer->WriteEndElement();
}

void CXmlGeneratedClass::WriteGroup(const CSerializationContext& ctx, CXmlWriter* writer,
                                    bool optionalChoice) const {
    CElementInfo** elements = GetClassElementInfo();
    try {
        switch (GetClassInfo()->m_groupType) {
        case XmlElementGroupType_Sequence: ProcessElementSeqToXml(ctx, elements, writer); break;
        case XmlElementGroupType_Choice:
            ProcessElementChoiceToXml(ctx, elements, writer, optionalChoice);
            break;
        case XmlElementGroupType_All: ProcessElementAllToXml(ctx, elements, writer); break;
        default: throw CQvException(msg::kUnknownXmlGroupType);
        }
    } catch (const CQvException& e) {
        throw CQvValidationException(
            FormatString(msg::kConvertElementFailedFmt, GetElementName().c_str()), L"", e);
    }
}

void CXmlGeneratedClass::WriteSimpleContent(CXmlWriter* writer) const {
    const CParentElementInfo* info = GetClassInfo();
    if (info->m_valuePropertyIndex == -1 || info->m_valueType == ItemType_Invalid)
        return;
    QvVariant value;
    ReadProperty(info->m_valuePropertyIndex, value);
    if (value.IsNil())
        writer->WriteAttributeNil();
    else {
        std::wstring scratch;
        writer->WriteString(detail::VariantText(value, info->m_valueFormat.c_str(), scratch),
                            value.GetItemType(), false);
    }
}

void CXmlGeneratedClass::AttributesToXml_Int(CXmlWriter* writer,
                                             const CSerializationContext& ctx) const {
    const CParentElementInfo* info = GetClassInfo();
    // xsi:type is due when the element is not named after the type it holds.
    if (ctx.GetWriteTypeAttribute() && info->m_writeType && GetElementNameRef() != info->m_typeName)
        writer->WriteAttributeType(info->m_typeName, info->m_typeNamespace, ItemType_string);
    try {
        ProcessAttributesToXml(ctx, GetClassElementInfo(), GetClassAttributeInfo(), writer);
    } catch (const CQvException& e) {
        throw CQvException(msg::kConvertAttributesFailed, e);
    }
}

void CXmlGeneratedClass::ProcessAttributesToXml(const CSerializationContext& ctx,
                                                CElementInfo** elements,
                                                CAttributeInfo** attributes,
                                                CXmlWriter* writer) const {
    for (CAttributeInfo** info = attributes; info && *info; ++info)
        (*info)->AttributeToXml(ctx, this, writer);
    for (CElementInfo** info = elements; info && *info; ++info)
        (*info)->PseudoChildAttributeToXml(ctx, this, writer);
}

void CXmlGeneratedClass::ProcessElementSeqToXml(const CSerializationContext& ctx,
                                                CElementInfo** elements, CXmlWriter* writer) const {
    for (CElementInfo** info = elements; info && *info; ++info)
        (*info)->ElementToXml(ctx, this, writer);
}

// An all group is written in declaration order.
void CXmlGeneratedClass::ProcessElementAllToXml(const CSerializationContext& ctx,
                                                CElementInfo** elements, CXmlWriter* writer) const {
    ProcessElementSeqToXml(ctx, elements, writer);
}

bool CXmlGeneratedClass::ProcessElementChoiceToXml(const CSerializationContext& ctx,
                                                   CElementInfo** elements, CXmlWriter* writer,
                                                   bool optionalChoice) const {
    for (CElementInfo** info = elements; info && *info; ++info) {
        if ((*info)->ElementToXml(ctx, this, writer))
            return true;
    }
    if (DoesElementContainOptionalElements() || optionalChoice || ctx.GetIgnoreMissingChoice())
        return false;
    throw CQvValidationException(msg::kEmptyChoiceOnWrite, L"");
}

// ---- reading ----

CXmlElement* CXmlGeneratedClass::FromXml_Int(CXmlElement* element, CXmlElement* cursor,
                                             const CSerializationContext& ctx,
                                             bool optionalChoice) {
    std::optional<NestingGuard> guard;
    if (GetClassInfo()->m_elementType == XmlElementType_Element)
        guard.emplace(element);
    try {
        return ReadContent(element, cursor, ctx, optionalChoice);
    } catch (const CQvException& e) {
        // The innermost element names the place; outer ones pass the error on as it is.
        if (e.GetPath().empty())
            throw CQvValidationException(msg::kProcessElementFailed,
                                         element ? element->GetXPath() : std::wstring(), e);
        throw CQvException(e);
    }
}

CXmlElement* CXmlGeneratedClass::ReadContent(CXmlElement* element, CXmlElement* cursor,
                                             const CSerializationContext& ctx,
                                             bool optionalChoice) {
    Init();
    const CParentElementInfo* info = GetClassInfo();
    if (info->m_elementType == XmlElementType_Element)
        SetElementName(element->GetLocalName().c_str());
    ProcessAttributesFromXml(ctx, element, info->m_unknownAttributesAreErrors);
    const INillable* nillable = NillableTypes::Of(this);
    if (nillable && nillable->IsNil())
        return cursor;
    switch (info->m_groupType) {
    case XmlElementGroupType_Sequence:
        cursor = ProcessElementSeqFromXml(ctx, element, cursor, info->m_elementType);
        break;
    case XmlElementGroupType_Choice:
        cursor =
            ProcessElementChoiceFromXml(ctx, element, cursor, info->m_elementType, optionalChoice);
        break;
    case XmlElementGroupType_All:
        cursor = ProcessElementAllFromXml(ctx, element, cursor, info->m_elementType);
        break;
    default: throw CQvException(msg::kUnknownGroupType);
    }
    if (info->m_valuePropertyIndex != -1 && info->m_valueType != ItemType_Invalid) {
        QvVariant value;
        if (info->m_valueIsRawString)
            value.SetString(element->GetText());
        else
            value.FromString(element->GetText(), info->m_valueType,
                             CWhitespaceUtils::WhitespaceRule_None);
        AccessProperty(info->m_valuePropertyIndex, false, value);
    }
    return cursor;
}

void CXmlGeneratedClass::ReadNilAttribute(CXmlAttribute& attribute, const CXmlElement& element) {
    INillable* nillable = dynamic_cast<INillable*>(this);
    if (!nillable)
        throw CQvValidationException(msg::kNilOnNonNillable, element.GetXPath());
    const std::wstring value = attribute.GetValue();
    switch (detail::ReadBooleanText(value)) {
    case detail::BooleanText::True: nillable->SetNil(true); return;
    case detail::BooleanText::False: nillable->SetNil(false); return;
    case detail::BooleanText::Invalid: break;
    }
    throw CQvValidationException(FormatString(msg::kBadNilValueFmt, value.c_str()),
                                 attribute.GetXPath());
}

void CXmlGeneratedClass::ProcessAttributesFromXml(const CSerializationContext& ctx,
                                                  CXmlElement* element, bool unknownIsError) {
    CAttributeInfo** infos = GetClassAttributeInfo();
    size_t count = 0;
    for (CAttributeInfo** info = infos; info && *info; ++info)
        ++count;
    // Which infos took an attribute; a class seldom has more than a few.
    bool local[16] = {};
    std::unique_ptr<bool[]> many(count > 16 ? new bool[count]() : nullptr);
    bool* const found = many ? many.get() : local;
    for (CXmlAttribute* attribute : element->GetAttributes()) {
        if (attribute->IsNamespaceAttribute())
            continue;
        if (attribute->IsNilAttribute()) {
            ReadNilAttribute(*attribute, *element);
            continue;
        }
        bool taken = false;
        for (size_t i = 0; i < count && !taken; ++i) {
            if (infos[i]->AttributeFromXml(ctx, this, attribute))
                found[i] = taken = true;
        }
        if (!taken && unknownIsError && !ctx.GetIgnoreUnknownAttributes())
            throw CQvValidationException(msg::kUnexpectedAttribute, attribute->GetXPath());
    }
    for (size_t i = 0; i < count; ++i)
        infos[i]->Validate(ctx, found[i]);
}

void CXmlGeneratedClass::ThrowLeftover(const CXmlElement* element,
                                       const CXmlElement* cursor) const {
    throw CQvValidationException(FormatString(msg::kLeftoverElementFmt,
                                              element->GetLocalName().c_str(),
                                              cursor->GetLocalName().c_str()),
                                 element->GetXPath());
}

CXmlElement* CXmlGeneratedClass::ProcessElementSeqFromXml(const CSerializationContext& ctx,
                                                          CXmlElement* element, CXmlElement* cursor,
                                                          XmlElementType type) {
    CXmlElement* const start = cursor;
    const std::wstring ns = GetNamespace();
    CElementInfo** infos = GetClassElementInfo();
    CElementInfo* last = nullptr;
    for (CElementInfo** info = infos; info && *info; ++info) {
        last = *info;
        // A member that is not satisfied may be preceded by foreign elements to skip.
        while (!last->ElementFromXml(ctx, this, element, &cursor, ns.c_str(), type)) {
            if (!ctx.GetIgnoreUnknownElements() || !cursor)
                return start;
            cursor = cursor->GetNextSiblingElement();
        }
    }
    if (type == XmlElementType_Pseudo || !cursor)
        return cursor;
    if (!ctx.GetIgnoreUnknownElements())
        ThrowLeftover(element, cursor);
    // Leftovers are skipped; what the last member recognises as its own it still takes (a
    // collection's items may stand between foreign elements).
    while (cursor) {
        if (last && last->IsThisElement(ctx, cursor)
            && last->ElementFromXml(ctx, this, element, &cursor, ns.c_str(), type))
            continue;
        cursor = cursor->GetNextSiblingElement();
    }
    return nullptr;
}

CXmlElement* CXmlGeneratedClass::ProcessElementChoiceFromXml(const CSerializationContext& ctx,
                                                             CXmlElement* element,
                                                             CXmlElement* cursor,
                                                             XmlElementType type,
                                                             bool optionalChoice) {
    CXmlElement* const start = cursor;
    const std::wstring ns = GetNamespace();
    bool matched = false;
    for (;;) {
        for (CElementInfo** info = GetClassElementInfo(); info && *info && !matched; ++info)
            matched = (*info)->ElementFromXml(ctx, this, element, &cursor, ns.c_str(), type);
        if (matched || !cursor || !ctx.GetIgnoreUnknownElements() || type != XmlElementType_Element)
            break;
        cursor = cursor->GetNextSiblingElement();
    }
    if (!matched && !optionalChoice) {
        if (type == XmlElementType_Pseudo)
            return ctx.GetIgnoreUnknownElements() ? start : cursor;
        if (type != XmlElementType_Element)
            return cursor;
        if (!DoesElementContainOptionalElements() && !ctx.GetIgnoreMissingChoice())
            throw CQvValidationException(
                FormatString(msg::kEmptyChoiceOnReadFmt, element->GetLocalName().c_str()),
                element->GetXPath());
    }
    if (type != XmlElementType_Element || !cursor || ctx.GetIgnoreUnknownElements())
        return cursor;
    ThrowLeftover(element, cursor);
}

CXmlElement* CXmlGeneratedClass::ProcessElementAllFromXml(const CSerializationContext& ctx,
                                                          CXmlElement* element, CXmlElement* cursor,
                                                          XmlElementType type) {
    CXmlElement* const start = cursor;
    const std::wstring ns = GetNamespace();
    CElementInfo** infos = GetClassElementInfo();
    const int count = GetClassElementInfoCount();
    std::vector<bool> found(static_cast<size_t>(count), false);
    // Members may come in any order: pass over them while the cursor keeps moving.
    for (bool moved = true; cursor && moved;) {
        CXmlElement* before = cursor;
        for (int i = 0; i < count; ++i) {
            if (!found[i])
                found[i] = infos[i]->ElementFromXml(ctx, this, element, &cursor, ns.c_str(), type);
        }
        moved = cursor != before;
    }
    for (int i = 0; i < count; ++i) {
        if (!infos[i]->Validate(ctx, this, found[i], type == XmlElementType_Element))
            return start;
    }
    if (type == XmlElementType_Element && cursor && !ctx.GetIgnoreUnknownElements())
        ThrowLeftover(element, cursor);
    return cursor;
}

} // namespace QvXmlLib16
