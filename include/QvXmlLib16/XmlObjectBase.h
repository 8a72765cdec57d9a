#pragma once

#include <QvXmlLib16/BinaryData.h>
#include <QvXmlLib16/Export.h>
#include <QvXmlLib16/QVCriticalSection.h>
#include <QvXmlLib16/QvZip.h>
#include <QvXmlLib16/SerializationContext.h>
#include <QvXmlLib16/XmlEncoding.h>

#include <string>

namespace QvXmlLib16 {

class CTextStream;
class CXmlCollectionBase;
class CXmlDocument;
class CXmlElement;
class CXmlObjectBase;
class CXmlWriter;

// Receives the change events of collections.
class QVXML_API IEventSink {
public:
    enum MsgType {
        MsgType_CollectionChange = 0,
        MsgType_CollectionAdd = 1,
        MsgType_CollectionAddComplete = 2,
        MsgType_CollectionRemove = 3,
        MsgType_CollectionRemoveComplete = 4
    };

    virtual ~IEventSink();
    // data: the item for Add/AddComplete; a pointer to an int holding the index for
    // Remove/RemoveComplete (valid during the call); null for Change.
    virtual void OnEvent(CXmlObjectBase* source, MsgType type, void* data) = 0;
};

// Makes ToXmlFile stream straight into the file (uncompressed output only). Set it at start-up.
QVXML_API void AsyncToXmlFile(bool async);

// Root of every bindable object: reference counting, the element name, the helpers generated
// property code calls, and the public entry points that write an object as XML and read it
// back. Counts start at 0: the first owner calls AddRef (CSmartPtr does).
class QVXML_API CXmlObjectBase : public IEventSink {
public:
    CXmlObjectBase();
    // A copy starts uncounted, with the same element name.
    CXmlObjectBase(const CXmlObjectBase& other);
    CXmlObjectBase& operator=(const CXmlObjectBase& other);

    long AddRef();
    // Deletes the object when the count reaches 0.
    long Release();

    std::wstring GetElementName() const { return m_elementName; }

    void SetElementName(const wchar_t* name) { m_elementName = name ? name : L""; }

    void OnEvent(CXmlObjectBase* source, MsgType type, void* data) override;
    // The object that stands for this one (a collection answers for itself).
    virtual CXmlObjectBase* GetBase() = 0;

    const CXmlObjectBase* GetBase() const { return const_cast<CXmlObjectBase*>(this)->GetBase(); }

    // Zlib compression (Compression_ZLib) is for streams only and throws CQvException here.
    virtual void
    ToXmlFile(const wchar_t* path, bool includeDocHeader = true, bool formatted = true,
              XmlEncoding encoding = Encoding_UTF8, EOLType eol = EOL_LF,
              const CSerializationContext& ctx = CSerializationContext::m_defaultContext,
              CompressionType compression = Compression_None) const;
    virtual std::wstring
    ToXml(bool includeDocHeader = true, bool formatted = true, EOLType eol = EOL_LF,
          const CSerializationContext& ctx = CSerializationContext::m_defaultContext) const;
    virtual CBinaryData
    ToXmlStream(bool includeDocHeader = true, bool formatted = true,
                XmlEncoding encoding = Encoding_UTF8, EOLType eol = EOL_LF,
                const CSerializationContext& ctx = CSerializationContext::m_defaultContext,
                CompressionType compression = Compression_None) const;
    virtual void
    FromXmlFile(const wchar_t* path,
                const CSerializationContext& ctx = CSerializationContext::m_defaultContext);
    virtual void
    FromXml(const char* text,
            const CSerializationContext& ctx = CSerializationContext::m_defaultContext);
    virtual void
    FromXml(const wchar_t* text,
            const CSerializationContext& ctx = CSerializationContext::m_defaultContext);
    // Bytes: XML in any encoding its declaration names, possibly gzip or ZLib compressed.
    virtual void
    FromXmlStream(const unsigned char* data, unsigned long length,
                  const CSerializationContext& ctx = CSerializationContext::m_defaultContext);
    virtual void
    FromXmlStream(const CBinaryData& data,
                  const CSerializationContext& ctx = CSerializationContext::m_defaultContext);
    virtual void
    FromXmlElement(const CXmlElement* element,
                   const CSerializationContext& ctx = CSerializationContext::m_defaultContext);
    virtual ~CXmlObjectBase();
    virtual std::wstring GetTargetNamespace() const = 0;
    virtual std::wstring GetNamespace() const = 0;

    // What generated property setters call to keep a choice group to one member; selected
    // names the member chosen so far (empty for none).
    static void Choice_SelectElement(const wchar_t* name, CXmlObjectBase* value,
                                     std::wstring& selected);
    static void Choice_SetElementValid(bool valid, const wchar_t* name, std::wstring& selected);
    static void Choice_CollectionChanged(const wchar_t* name, long count, std::wstring& selected);
    static void Throw_IfPropertyIsNull(CXmlObjectBase* value, const wchar_t* name);
    static void Throw_IfElementNameDiffers(CXmlObjectBase* value, const wchar_t* name);

    // Forward to CXmlObjectHelper.
    static bool DoesElementNameMatch(const CSerializationContext& ctx, const CXmlElement* element,
                                     const wchar_t* name, const wchar_t* namespaceUri);
    static bool IsNamespaceValid(const wchar_t* namespaceUri, const wchar_t* restriction,
                                 const wchar_t* targetNamespace);
    static void TestNamespace(const wchar_t* namespaceUri, const wchar_t* restriction,
                              const wchar_t* targetNamespace);

    // A choice member held in a collection: read it unless the choice already has a member
    // (count above 0); when it took elements, check its count and add 1 to count.
    static void Choice_Read_Collection(CXmlCollectionBase* collection, CXmlElement* element,
                                       CXmlElement*& cursor, long& count,
                                       const CSerializationContext& ctx);

    // Tell sink about a change of collection (item for Add and AddComplete, the index for the
    // removals, passed as a pointer to an int valid during the call).
    static void FireOnCollectionChangeEvent(IEventSink* sink, CXmlCollectionBase* collection);
    static void FireOnCollectionAddEvent(IEventSink* sink, CXmlCollectionBase* collection,
                                         void* item);
    static void FireOnCollectionAddCompleteEvent(IEventSink* sink, CXmlCollectionBase* collection,
                                                 void* item);
    static void FireOnCollectionRemoveEvent(IEventSink* sink, CXmlCollectionBase* collection,
                                            int index);
    static void FireOnCollectionRemoveCompleteEvent(IEventSink* sink,
                                                    CXmlCollectionBase* collection, int index);

    // Let one bindable object drive another's protected operations.
    static void AttributesToXml_Int(const CXmlObjectBase* object, CXmlWriter* writer,
                                    const CSerializationContext& ctx);
    static void ToXml_Int(const CXmlObjectBase* object, CXmlWriter* writer, bool isRoot,
                          const wchar_t* namespaceUri, const CSerializationContext& ctx,
                          bool optionalChoice);
    static CXmlElement* FromXml_Int(CXmlObjectBase* object, CXmlElement* element,
                                    CXmlElement* cursor, const CSerializationContext& ctx,
                                    bool optionalChoice);

protected:
    // The name without a copy, for the writers.
    const std::wstring& GetElementNameRef() const { return m_elementName; }

    // The base writes no attributes.
    virtual void AttributesToXml_Int(CXmlWriter* writer, const CSerializationContext& ctx) const;
    virtual void ToXml_Int(CXmlWriter* writer, bool isRoot, const wchar_t* namespaceUri,
                           const CSerializationContext& ctx, bool optionalChoice) const = 0;
    // Fills the object from element, whose children are read from cursor on; returns the
    // first child it did not consume.
    virtual CXmlElement* FromXml_Int(CXmlElement* element, CXmlElement* cursor,
                                     const CSerializationContext& ctx, bool optionalChoice) = 0;

private:
    void WriteXml(CTextStream& stream, bool includeDocHeader, bool formatted, EOLType eol,
                  const CSerializationContext& ctx) const;
    void ReadDocument(CXmlDocument& document, const CSerializationContext& ctx);

    std::wstring m_elementName;
    CQVCriticalSection m_lock;
    long m_refCount = 0;
};

} // namespace QvXmlLib16
