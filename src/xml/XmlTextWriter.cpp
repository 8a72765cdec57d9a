#include "xml/XmlMessages.h"

#include <QvXmlLib16/Namespaces.h>
#include <QvXmlLib16/QvException.h>
#include <QvXmlLib16/XmlTextWriter.h>

#include <cstdint>
#include <cwchar>

#if defined(__SSE2__)
#include <emmintrin.h> // the escape scan
#endif

namespace QvXmlLib16 {

namespace {

constexpr unsigned long kFlushThreshold = 4095;
constexpr wchar_t kCDataStart[] = L"<![CDATA[";

bool StartsWithCData(const std::wstring& text) {
    return !text.empty() && text[0] == L'<' && text.compare(0, 9, kCDataStart) == 0;
}

// Below 64: the characters PadAndAppend may replace, and the terminator. Everything from 64 up
// is copied as it is.
constexpr std::uint64_t kEscapedBelow64 = 1ull << L'\0' | 1ull << L'\n' | 1ull << L'\r'
                                          | 1ull << L'"' | 1ull << L'&' | 1ull << L'<'
                                          | 1ull << L'>';

bool MayNeedEscape(wchar_t c) {
    const auto code = static_cast<std::uint32_t>(c);
    return code < 64 && (kEscapedBelow64 >> code & 1) != 0;
}

// The first character in [p, end) that may need replacing or ends the text; end if none.
const wchar_t* FindSpecial(const wchar_t* p, const wchar_t* end) {
#if defined(__SSE2__)
    // Eight at a time, narrowed to 16 bits with signed saturation: the markup characters keep
    // their values and nothing else takes one of them.
    const __m128i amp = _mm_set1_epi16(L'&'), lt = _mm_set1_epi16(L'<'), gt = _mm_set1_epi16(L'>'),
                  quot = _mm_set1_epi16(L'"'), lf = _mm_set1_epi16(L'\n'),
                  cr = _mm_set1_epi16(L'\r'), nul = _mm_setzero_si128();
    for (; end - p >= 8; p += 8) {
        const __m128i units =
            _mm_packs_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p)),
                            _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 4)));
        const __m128i markup =
            _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi16(units, amp), _mm_cmpeq_epi16(units, lt)),
                         _mm_or_si128(_mm_cmpeq_epi16(units, gt), _mm_cmpeq_epi16(units, quot)));
        const __m128i other =
            _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi16(units, lf), _mm_cmpeq_epi16(units, cr)),
                         _mm_cmpeq_epi16(units, nul));
        const int hits = _mm_movemask_epi8(_mm_or_si128(markup, other));
        if (hits != 0)
            return p + __builtin_ctz(static_cast<unsigned>(hits)) / 2;
    }
#endif
    while (p < end && !MayNeedEscape(*p))
        ++p;
    return p;
}

} // namespace

CXmlTextWriter::CXmlTextWriter(CTextStream& stream)
    : CXmlWriter(L"CXmlTextWriter"),
      m_stream(stream) {}

CXmlTextWriter::~CXmlTextWriter() = default;

void CXmlTextWriter::SetEOLType(EOLType type) {
    if (type != EOL_CRLF && type != EOL_LF)
        throw CQvException(msg::kInvalidEolType);
    m_eolType = type;
    m_lineEnd = type == EOL_CRLF ? L"\r\n" : L"\n";
}

void CXmlTextWriter::FlushCheck() {
    if (m_stream.GetLength() > kFlushThreshold)
        m_stream.Flush();
}

void CXmlTextWriter::PutLineEndIfFormatted() {
    if (m_format)
        PutLineEnd();
}

void CXmlTextWriter::PutIndent(unsigned depth) {
    if (m_indentChars.size() == 1) {
        m_stream.AppendRepeated(m_indentChars[0], depth);
        return;
    }
    for (unsigned i = 0; i < depth; ++i)
        Put(m_indentChars);
}

void CXmlTextWriter::Open() {
    m_stream.Open();
}

void CXmlTextWriter::Close() {
    m_stream.Close();
    CXmlWriter::Close();
}

void CXmlTextWriter::SetDefaultNamespace(const std::wstring& ns) {
    if (GetCurrentContext()) {
        OpenStartTag();
        PutNamespaceDeclaration(std::wstring(), ns);
    }
    CXmlWriter::SetDefaultNamespace(ns);
}

void CXmlTextWriter::AddNamespace(const std::wstring& prefix, const std::wstring& ns) {
    // An empty prefix binds nothing: such an entry is never used to name anything.
    if (GetCurrentContext()) {
        OpenStartTag();
        if (!prefix.empty())
            PutNamespaceDeclaration(prefix, ns);
    }
    CXmlWriter::AddNamespace(prefix, ns);
}

void CXmlTextWriter::WriteStartDocument() {
    m_stream.Append(L"<?xml version=\"1.0\"");
    if (m_stream.GetEncoding() == Encoding_UTF8)
        m_stream.Append(L" encoding=\"UTF-8\"");
    else if (m_stream.GetEncoding() == Encoding_UTF16)
        m_stream.Append(L" encoding=\"UTF-16\"");
    m_stream.Append(L"?>");
    PutLineEnd();
    FlushCheck();
}

void CXmlTextWriter::WriteHeaderDirective(const std::wstring& text) {
    if (GetCurrentContext())
        throw CQvException(msg::kHeaderDirectiveTooLate);
    m_stream.Append(text);
    PutLineEnd();
    FlushCheck();
}

void CXmlTextWriter::WriteRawElement(const std::wstring& text) {
    m_stream.Append(text);
    FlushCheck();
}

void CXmlTextWriter::CloseParentElm() {
    CXmlWriterContext* parent = GetCurrentContext();
    if (!parent)
        return;
    ++parent->m_childCount;
    if (parent->m_startTagOpen) {
        m_stream.Append(L'>');
        PutLineEndIfFormatted();
        parent->m_startTagOpen = false;
    }
}

void CXmlTextWriter::PutNamespaceDeclaration(const std::wstring& prefix, const std::wstring& ns) {
    PutLiteral(L" xmlns");
    if (!prefix.empty()) {
        m_stream.Append(L':');
        Put(prefix);
    }
    PutLiteral(L"=\"");
    PutEscaped(ns, true);
    m_stream.Append(L'"');
}

// The root declares the writer's default namespace and every namespace added before it, in
// namespace order. xml is bound by definition and an empty prefix declares nothing.
void CXmlTextWriter::PutRootDeclarations() {
    if (!GetWriterDefaultNamespace().empty())
        PutNamespaceDeclaration(std::wstring(), GetWriterDefaultNamespace());
    for (const auto& [uri, prefix] : GetWriterNamespaceMap()) {
        if (uri != ns::kXml && !prefix.empty())
            PutNamespaceDeclaration(prefix, uri);
    }
}

void CXmlTextWriter::WriteStartElement(const std::wstring& localName, const std::wstring& ns) {
    CloseParentElm();
    const bool isRoot = GetCurrentContext() == nullptr;
    const PrefixChoice choice = EnterElement(localName, ns);
    if (m_format)
        PutIndent(GetCurrentContext()->m_depth);
    m_stream.Append(L'<');
    if (!choice.prefix.empty()) {
        Put(choice.prefix);
        m_stream.Append(L':');
    }
    Put(localName);
    if (choice.declare)
        PutNamespaceDeclaration(choice.prefix, ns);
    if (isRoot)
        PutRootDeclarations();
    FlushCheck();
}

CXmlWriter::CXmlWriterContext& CXmlTextWriter::OpenStartTag() {
    CXmlWriterContext* context = GetCurrentContext();
    if (!context)
        throw CQvException(msg::kNoOpenElement);
    if (!context->m_startTagOpen)
        throw CQvException(msg::kAttributesBeforeElements);
    return *context;
}

void CXmlTextWriter::WriteAttributeString(const std::wstring& localName, const std::wstring& ns,
                                          const std::wstring& value, ItemType) {
    OpenStartTag();
    m_stream.Append(L' ');
    if (!ns.empty()) {
        // Declared first, then a blank, then the prefixed attribute itself.
        const PrefixChoice choice = AttributePrefix(ns);
        if (choice.declare) {
            PutLiteral(L"xmlns:");
            Put(choice.prefix);
            PutLiteral(L"=\"");
            PutEscaped(ns, true);
            PutLiteral(L"\" ");
        }
        Put(choice.prefix);
        m_stream.Append(L':');
    }
    Put(localName);
    PutLiteral(L"=\"");
    PutEscaped(value, true);
    m_stream.Append(L'"');
    FlushCheck();
}

void CXmlTextWriter::WriteAttributeType(const std::wstring& typeName, const std::wstring& typeNs,
                                        ItemType type) {
    CXmlWriterContext& context = OpenStartTag();
    std::wstring value = typeName;
    if (!typeNs.empty() && typeNs != context.GetDefaultNamespace()) {
        const PrefixChoice choice = AttributePrefix(typeNs);
        if (choice.declare) {
            PutNamespaceDeclaration(choice.prefix, typeNs);
            m_stream.Append(L' ');
        }
        value = choice.prefix + L':' + typeName;
    }
    WriteAttributeString(L"type", ns::kXsi, value, type);
}

void CXmlTextWriter::WriteAttributeNil() {
    OpenStartTag();
    WriteAttributeString(L"nil", ns::kXsi, L"true", ItemType_boolean);
}

void CXmlTextWriter::WriteString(const std::wstring& text, ItemType, bool isDefaultValue) {
    if (text.empty() || (isDefaultValue && !m_writeDefaultElementValues))
        return;
    CXmlWriterContext* context = GetCurrentContext();
    if (!context)
        throw CQvException(msg::kNoOpenElement);
    // Text alone keeps the element on one line: no line end, no child counted.
    if (context->m_startTagOpen) {
        m_stream.Append(L'>');
        context->m_startTagOpen = false;
    }
    if (StartsWithCData(text))
        m_stream.Append(text);
    else
        PutEscaped(text, false);
    FlushCheck();
}

void CXmlTextWriter::WriteEndElement() {
    CXmlWriterContext* context = GetCurrentContext();
    if (!context)
        throw CQvException(msg::kNoOpenElement);
    if (context->m_startTagOpen) {
        PutLiteral(L"/>");
    } else {
        if (m_format && context->m_childCount > 0)
            PutIndent(context->m_depth);
        PutLiteral(L"</");
        if (!context->m_prefix.empty()) {
            Put(context->m_prefix);
            m_stream.Append(L':');
        }
        Put(context->m_localName);
        m_stream.Append(L'>');
    }
    PutLineEndIfFormatted();
    FlushCheck();
    PopContext();
}

void CXmlTextWriter::WriteComment(const std::wstring& text) {
    PutLiteral(L"<!--");
    PutEscaped(text, false);
    PutLiteral(L"-->");
    PutLineEnd();
    FlushCheck();
}

void CXmlTextWriter::WritePI(const std::wstring& text) {
    m_stream.Append(text);
    PutLineEnd();
    PutLineEnd();
    FlushCheck();
}

void CXmlTextWriter::WriteInlineSchema(const std::wstring& text) {
    m_stream.Append(L' ');
    PutLineEnd();
    m_stream.Append(text);
    PutLineEnd();
    FlushCheck();
}

void CXmlTextWriter::PadAndAppend(const wchar_t* text, bool inAttribute) {
    if (text)
        PutEscaped(text, text + std::wcslen(text), inAttribute);
}

// Plain characters go out in runs; only the few that need it are replaced.
void CXmlTextWriter::PutEscaped(const wchar_t* text, const wchar_t* end, bool inAttribute) {
    const wchar_t* run = text;
    const wchar_t* p = FindSpecial(text, end);
    for (; p < end; p = FindSpecial(p + 1, end)) {
        const wchar_t c = *p;
        if (c == L'\0')
            break;
        if (c == L'"' && !inAttribute)
            continue;
        if (c == L'\n' && !inAttribute && m_eolType != EOL_CRLF && m_eolType != EOL_LF)
            throw CQvException(msg::kInvalidEolType);
        m_stream.Append(run, static_cast<unsigned long>(p - run));
        run = p + 1;
        switch (c) {
        case L'&': PutLiteral(L"&amp;"); break;
        case L'<': PutLiteral(L"&lt;"); break;
        case L'>': PutLiteral(L"&gt;"); break;
        case L'"': PutLiteral(L"&quot;"); break;
        case L'\r': break;
        default: // a line feed
            if (inAttribute)
                PutLiteral(L"&#xA;");
            else
                PutLineEnd();
        }
    }
    m_stream.Append(run, static_cast<unsigned long>(p - run));
}

} // namespace QvXmlLib16
