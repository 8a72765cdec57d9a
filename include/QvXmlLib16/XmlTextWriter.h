#pragma once

#include <QvXmlLib16/Export.h>
#include <QvXmlLib16/TextStream.h>
#include <QvXmlLib16/XmlEncoding.h>
#include <QvXmlLib16/XmlWriter.h>

#include <string>

namespace QvXmlLib16 {

// Writes XML text into a CTextStream: declaration, tab indentation, LF or CR LF line ends,
// "/>" for empty elements, prefixes declared where first needed. Flushes the stream whenever
// more than 4095 characters are buffered.
class QVXML_API CXmlTextWriter : public CXmlWriter {
public:
    explicit CXmlTextWriter(CTextStream& stream);
    ~CXmlTextWriter() override;

    bool GetFormat() const { return m_format; }

    void SetFormat(bool format) { m_format = format; }

    EOLType GetEOLType() const { return m_eolType; }

    // Throws CQvException "Invalid EOL type." for anything but EOL_CRLF and EOL_LF.
    void SetEOLType(EOLType type);

    std::wstring GetIndentChars() const { return m_indentChars; }

    void SetIndentChars(const wchar_t* chars) { m_indentChars = chars ? chars : L""; }

    bool GetWriteDefaultElementValues() const { return m_writeDefaultElementValues; }

    void SetWriteDefaultElementValues(bool write) { m_writeDefaultElementValues = write; }

    void WriteStartDocument();
    // A line before the root element (PI, DOCTYPE, comment), written verbatim.
    void WriteHeaderDirective(const std::wstring& text);
    // Text already in XML form, appended verbatim.
    void WriteRawElement(const std::wstring& text);

    void Open() override;
    // Closes the stream first, so it is closed even when an element is still open.
    void Close() override;
    // Before the root: declared on the root. On an element whose start tag is open: declared
    // there at once. Later they would go undeclared, so they throw CQvException "Attributes
    // must be added before elements" like any attribute.
    void SetDefaultNamespace(const std::wstring& ns) override;
    void AddNamespace(const std::wstring& prefix, const std::wstring& ns) override;
    void WriteComment(const std::wstring& text) override;
    void WritePI(const std::wstring& text) override;
    void WriteInlineSchema(const std::wstring& text) override;
    void WriteStartElement(const std::wstring& localName, const std::wstring& ns) override;
    void WriteString(const std::wstring& text, ItemType type, bool isDefaultValue) override;
    void WriteEndElement() override;
    void WriteAttributeString(const std::wstring& localName, const std::wstring& ns,
                              const std::wstring& value, ItemType type) override;
    void WriteAttributeType(const std::wstring& typeName, const std::wstring& typeNs,
                            ItemType type) override;
    void WriteAttributeNil() override;

    // Counts a child in the open element and closes its start tag if still open.
    void CloseParentElm();
    // Appends text escaped for element content or, with inAttribute, for an attribute value.
    void PadAndAppend(const wchar_t* text, bool inAttribute);

private:
    CXmlWriterContext& OpenStartTag();
    void PutNamespaceDeclaration(const std::wstring& prefix, const std::wstring& ns);
    void PutRootDeclarations();
    void PutIndent(unsigned depth);

    // Whole strings go in by length: names and values need no terminator scan.
    void Put(const std::wstring& text) {
        m_stream.Append(text.data(), static_cast<unsigned long>(text.size()));
    }

    // Literals go in by their known length too.
    template <size_t N>
    void PutLiteral(const wchar_t (&text)[N]) {
        m_stream.Append(text, static_cast<unsigned long>(N - 1));
    }

    void PutLineEnd() { Put(m_lineEnd); }

    // Escapes [text, end) up to its first zero character, as PadAndAppend does.
    void PutEscaped(const wchar_t* text, const wchar_t* end, bool inAttribute);

    void PutEscaped(const std::wstring& text, bool inAttribute) {
        PutEscaped(text.data(), text.data() + text.size(), inAttribute);
    }

    void PutLineEndIfFormatted();
    void FlushCheck();

    bool m_writeDefaultElementValues = false;
    std::wstring m_indentChars = L"\t";
    std::wstring m_lineEnd = L"\n";
    EOLType m_eolType = EOL_LF;
    bool m_format = true;
    CTextStream& m_stream;
};

} // namespace QvXmlLib16
