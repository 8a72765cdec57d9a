// The only file that sees expat. Its UTF-16 build has 16-bit XML_Char.
#define XML_UNICODE
#include "xml/CompactText.h"
#include "xml/TreeStore.h"
#include "xml/XmlMessages.h"

#include <QvXmlLib16/ExpatReader.h>
#include <QvXmlLib16/Format.h>
#include <QvXmlLib16/Namespaces.h>
#include <QvXmlLib16/QvException.h>
#include <QvXmlLib16/SerializationContext.h>
#include <QvXmlLib16/XmlDocument.h>

#include <expat.h>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include <climits>
#include <cstdint>
#include <cstring>
#include <exception>
#include <string>
#include <utility>
#include <vector>

static_assert(sizeof(XML_Char) == 2, "the reader needs expat's UTF-16 build");

namespace QvXmlLib16 {

namespace {

constexpr char kCDataStart[] = "<![CDATA[";
constexpr char kCDataEnd[] = "]]>";
constexpr XML_Char kNamespaceSeparator = '|';
constexpr int kMaxChunk = INT_MAX / 2; // XML_Parse takes an int length

// Names and values are measured eight units at a time. The loads are aligned, so none
// crosses into another page and reading past the terminator is harmless; the address
// sanitizer cannot know that, so it is told to look away.
#if defined(__SSE2__)
__attribute__((no_sanitize("address")))
#endif
size_t
Length(const XML_Char* s) {
#if defined(__SSE2__)
    const std::uintptr_t address = reinterpret_cast<std::uintptr_t>(s);
    if (address % 2 == 0) {
        // No helper function for the loads: it would not share the sanitizer exemption.
        const __m128i zero = _mm_setzero_si128();
        const char* block = reinterpret_cast<const char*>(address & ~std::uintptr_t{15});
        __m128i units = _mm_load_si128(reinterpret_cast<const __m128i*>(block));
        unsigned found = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi16(units, zero)))
                         & (~0u << (address - reinterpret_cast<std::uintptr_t>(block)));
        while (found == 0) {
            block += 16;
            units = _mm_load_si128(reinterpret_cast<const __m128i*>(block));
            found = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi16(units, zero)));
        }
        return static_cast<size_t>(block + __builtin_ctz(found) - reinterpret_cast<const char*>(s))
               / 2;
    }
#endif
    size_t n = 0;
    while (s[n])
        ++n;
    return n;
}

// Widens UTF-16 into out (replacing its content): valid pairs become one code point, unpaired
// surrogates pass through unit by unit.
void Widen(const XML_Char* s, size_t length, std::wstring& out) {
    out.resize(length);
    size_t n = 0;
    for (size_t i = 0; i < length; ++i) {
        unsigned c = s[i];
        if (c >= 0xD800 && c <= 0xDBFF && i + 1 < length && s[i + 1] >= 0xDC00
            && s[i + 1] <= 0xDFFF) {
            c = 0x10000 + ((c - 0xD800) << 10) + (s[i + 1] - 0xDC00u);
            ++i;
        }
        out[n++] = static_cast<wchar_t>(c);
    }
    out.resize(n);
}

// Expat's messages are narrow ASCII even in its UTF-16 build.
std::wstring WidenAscii(const XML_LChar* s) {
    return s ? std::wstring(s, s + std::strlen(s)) : L"";
}

std::wstring Widen(const XML_Char* s) {
    std::wstring out;
    if (s)
        Widen(s, Length(s), out);
    return out;
}

// The text of one open element, on the heap; kept between elements, so its room is reused.
class CTextBuffer {
public:
    CTextBuffer() = default;

    CTextBuffer(CTextBuffer&& other) noexcept : m_text(other.m_text) {
        other.m_text = detail::CCompactText();
    }

    CTextBuffer& operator=(CTextBuffer&&) = delete;

    ~CTextBuffer() { m_text.Free(nullptr); }

    const detail::CCompactText& Text() const { return m_text; }

    void Clear() { m_text.GiveBack(m_text.GetSize()); }

    detail::CTextSink Sink() { return detail::CTextSink(m_text, nullptr); }

private:
    detail::CCompactText m_text;
};

} // namespace

struct CExpatReader::Impl {
    explicit Impl(CXmlDocument& doc) : document(doc) {}

    ~Impl() { FreeParser(); }

    void FreeParser() {
        if (parser)
            XML_ParserFree(parser);
        parser = nullptr;
    }

    bool NoNamespaces() const { return document.m_schemaType == SchemaType_NoNamespaces; }

    using Names = std::pair<detail::CSharedName, detail::CSharedName>; // namespace, local

    // A document uses few distinct names many times: a small direct-mapped cache of raw name
    // -> split names saves widening, splitting and interning them again.
    struct CachedName {
        std::u16string raw;
        Names names;
    };

    static constexpr size_t kNameCacheSize = 256;

    const Names& SplitName(const XML_Char* raw) {
        const size_t length = Length(raw);
        // Names of a document differ mostly at the end (the namespace comes first): the length
        // and the last units make a good enough key; the comparison below decides.
        std::uint32_t hash = static_cast<std::uint32_t>(length) * 2654435761u;
        for (size_t i = length > 6 ? length - 6 : 0; i < length; ++i)
            hash = (hash ^ raw[i]) * 16777619u;
        CachedName& slot = nameCache[(hash >> 8) % kNameCacheSize];
        const char16_t* units = reinterpret_cast<const char16_t*>(raw);
        if (slot.raw.size() != length
            || std::memcmp(slot.raw.data(), units, length * sizeof(char16_t)) != 0) {
            slot.raw.assign(units, length);
            slot.names = Split(raw, length);
        }
        return slot.names;
    }

    // With namespace processing expat gives "uri|local": split at the last '|', since a URI
    // may hold one and a local name cannot. Without it the name arrives whole and the part
    // after the last ':' is the local name.
    Names Split(const XML_Char* raw, size_t length) {
        Widen(raw, length, nameBuffer);
        const wchar_t separator = NoNamespaces() ? L':' : L'|';
        const size_t cut = nameBuffer.rfind(separator);
        Names split;
        if (cut == std::wstring::npos) {
            split.second = document.InternName(nameBuffer.data(), nameBuffer.size());
        } else {
            if (!NoNamespaces())
                split.first = document.InternName(nameBuffer.data(), cut);
            split.second =
                document.InternName(nameBuffer.data() + cut + 1, nameBuffer.size() - cut - 1);
        }
        return split;
    }

    // Without namespace processing, xmlns and xmlns:p attributes are declarations.
    bool RecordIfDeclaration(const XML_Char* rawName, const XML_Char* value) {
        if (!NoNamespaces())
            return false;
        const std::wstring name = Widen(rawName);
        if (name == L"xmlns")
            document.SetAlias(L"", Widen(value));
        else if (name.compare(0, 6, L"xmlns:") == 0)
            document.SetAlias(name.substr(6), Widen(value));
        else
            return false;
        return true;
    }

    void StartElement(const XML_Char* name, const XML_Char** attributes) {
        const Names& names = SplitName(name);
        CXmlElement* element = document.StartElement(names.first, names.second);
        if (depth == openText.size())
            openText.emplace_back();
        openText[depth++].Clear();
        for (const XML_Char** a = attributes; a && *a; a += 2) {
            if (RecordIfDeclaration(a[0], a[1]))
                continue;
            const Names& attribute = SplitName(a[0]);
            CXmlAttribute* added = element->AddAttribute(attribute.second, attribute.first);
            AppendText(added->m_value, element->Store(), a[1], Length(a[1]), false);
        }
    }

    static void AppendText(detail::CCompactText& text, detail::CTreeStore* store, const XML_Char* s,
                           size_t length, bool excludingCR) {
        detail::CTextSink sink(text, store);
        detail::AppendUtf16(sink, reinterpret_cast<const char16_t*>(s), length, excludingCR);
    }

    // The text of each open element gathers here, in pieces as expat delivers it (a line at a
    // time, and around child elements), and goes into the element in one block of the exact
    // size when it ends.
    void Text(const XML_Char* s, int length) {
        if (depth > 0 && length > 0) {
            detail::CTextSink sink = openText[depth - 1].Sink();
            detail::AppendUtf16(sink, reinterpret_cast<const char16_t*>(s),
                                static_cast<size_t>(length), true);
        }
    }

    void AppendMarker(const char* marker) {
        if (depth > 0)
            openText[depth - 1].Sink().append(marker, std::strlen(marker));
    }

    static void Give(CXmlElement* element, const CTextBuffer& buffer) {
        const detail::CCompactText& text = buffer.Text();
        if (element && !text.IsEmpty())
            element->m_text.Append(element->Store(), text.GetData(), text.GetSize());
    }

    void EndElement() {
        if (depth > 0)
            Give(document.GetOpenElement(), openText[--depth]);
        document.EndElement();
    }

    // When parsing stops early, the open elements keep the text read so far.
    void GiveOpenText() {
        const std::vector<CXmlElement*>& open = document.m_openElements;
        for (size_t level = 0; level < depth && level < open.size(); ++level)
            Give(open[level], openText[level]);
        depth = 0;
    }

    // An exception must not cross expat's C frames: a handler that fails (an element-completed
    // callback, memory) stops the parser, and Parse throws the exception again once expat has
    // returned.
    template <class Handle>
    static void Guarded(void* self, Handle&& handle) {
        Impl& impl = *static_cast<Impl*>(self);
        if (impl.failure)
            return;
        try {
            handle(impl);
        } catch (...) {
            impl.failure = std::current_exception();
            XML_StopParser(impl.parser, XML_FALSE);
        }
    }

    static void XMLCALL FnStartElement(void* self, const XML_Char* name, const XML_Char** atts) {
        Guarded(self, [=](Impl& impl) { impl.StartElement(name, atts); });
    }

    static void XMLCALL FnEndElement(void* self, const XML_Char*) {
        Guarded(self, [](Impl& impl) { impl.EndElement(); });
    }

    static void XMLCALL FnText(void* self, const XML_Char* s, int length) {
        Guarded(self, [=](Impl& impl) { impl.Text(s, length); });
    }

    static void XMLCALL FnStartNamespace(void* self, const XML_Char* prefix, const XML_Char* uri) {
        Guarded(self, [=](Impl& impl) { impl.document.SetAlias(Widen(prefix), Widen(uri)); });
    }

    static void XMLCALL FnEndNamespace(void*, const XML_Char*) {}

    static void XMLCALL FnStartCDATA(void* self) {
        Guarded(self, [](Impl& impl) { impl.AppendMarker(kCDataStart); });
    }

    static void XMLCALL FnEndCDATA(void* self) {
        Guarded(self, [](Impl& impl) { impl.AppendMarker(kCDataEnd); });
    }

    CXmlDocument& document;
    XML_Parser parser = nullptr;
    std::vector<CachedName> nameCache = std::vector<CachedName>(kNameCacheSize);
    std::wstring nameBuffer;
    std::vector<CTextBuffer> openText; // by depth, reused
    std::exception_ptr failure;        // a handler's exception, thrown after expat returns
    size_t depth = 0;
};

CExpatReader::CExpatReader(CXmlDocument& document)
    : CInstanceMonitor(L"CExpatReader"),
      m_impl(new Impl(document)) {}

CExpatReader::~CExpatReader() = default;

void CExpatReader::CreateParser() {
    Impl& impl = *m_impl;
    impl.FreeParser();
    impl.depth = 0;
    // Text converted from wide characters is UTF-8 whatever its declaration names.
    static const XML_Char kUtf8[] = {'U', 'T', 'F', '-', '8', 0};
    const XML_Char* encoding = impl.document.m_inputIsUtf8 ? kUtf8 : nullptr;
    impl.parser = impl.NoNamespaces() ? XML_ParserCreate(encoding)
                                      : XML_ParserCreateNS(encoding, kNamespaceSeparator);
    if (!impl.parser)
        throw std::bad_alloc();
    XML_SetUserData(impl.parser, &impl);
    XML_SetElementHandler(impl.parser, Impl::FnStartElement, Impl::FnEndElement);
    XML_SetNamespaceDeclHandler(impl.parser, Impl::FnStartNamespace, Impl::FnEndNamespace);
    XML_SetCharacterDataHandler(impl.parser, Impl::FnText);
    if (!impl.document.GetContext().GetStripCDATA())
        XML_SetCdataSectionHandler(impl.parser, Impl::FnStartCDATA, Impl::FnEndCDATA);
}

void CExpatReader::Parse(bool freeParser) {
    Impl& impl = *m_impl;
    if (!impl.parser)
        CreateParser();
    const char* data = reinterpret_cast<const char*>(impl.document.m_source);
    unsigned long remaining = impl.document.m_inputLength;
    // One XML_Parse call for any ordinary input; only inputs over 1 GiB go in pieces.
    do {
        const int chunk = remaining > static_cast<unsigned long>(kMaxChunk)
                              ? kMaxChunk
                              : static_cast<int>(remaining);
        remaining -= static_cast<unsigned long>(chunk);
        const XML_Status status = XML_Parse(impl.parser, data, chunk, remaining == 0);
        if (impl.failure) {
            const std::exception_ptr failure = impl.failure;
            impl.failure = nullptr;
            impl.depth = 0;
            Cleanup();
            impl.FreeParser();
            std::rethrow_exception(failure);
        }
        if (status == XML_STATUS_ERROR) {
            const std::wstring message = WidenAscii(XML_ErrorString(XML_GetErrorCode(impl.parser)));
            const int line = static_cast<int>(XML_GetCurrentLineNumber(impl.parser));
            impl.GiveOpenText();
            Cleanup();
            impl.FreeParser();
            throw CQvException(FormatString(msg::kParseErrorFmt, message.c_str(), line));
        }
        data += chunk;
    } while (remaining > 0);
    if (freeParser)
        impl.FreeParser();
}

void CExpatReader::Cleanup() {
    m_impl->nameCache.assign(Impl::kNameCacheSize, Impl::CachedName());
    std::wstring().swap(m_impl->nameBuffer);
}

} // namespace QvXmlLib16
