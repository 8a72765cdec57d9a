#pragma once

// QvXmlLib16: runtime of the XML data-binding toolchain. Include this header alone.
//
// Where to find a class:
//   CQvException and its subclasses ........... QvException.h
//   FormatString, FormatV, PadZero, ... ........ Format.h
//   CWhitespaceUtils ........................... WhitespaceUtils.h
//   CStringBuffer .............................. StringBuffer.h
//   ConvertUTF8toUTF16 ... UnicodeToUTF16 ...... ConvertUTF.h
//   CEncoder ................................... Encoder.h
//   CBase64 .................................... Base64.h
//   CBinaryData ................................ BinaryData.h
//   CDateTime, DTType .......................... DateTime.h
//   CDateTimeSpan .............................. DateTimeSpan.h
//   CDecimal ................................... Decimal.h
//   CBigInteger ................................ BigInteger.h
//   EOLType, XmlEncoding ....................... XmlEncoding.h
//   CTextStream, CFileTextStream ............... TextStream.h
//   CBinaryStream, CFileBinaryStream ........... BinaryStream.h
//   CQvZip, CompressionType .................... QvZip.h
//   CSmartPtr .................................. SmartPtr.h
//   CQVCriticalSection ......................... QVCriticalSection.h
//   CInstanceMonitor ........................... InstanceMonitor.h
//   ItemType ................................... ItemType.h
//   CConversions ............................... Conversions.h
//   QvVariant .................................. Variant.h
//   CPrimitiveRestrictions ..................... PrimitiveRestrictions.h
//   well-known namespace names (ns::kXsi, ...) . Namespaces.h
//   CSerializationContext, SchemaType .......... SerializationContext.h
//   CNamespaceAliasMap ......................... NamespaceAliasMap.h
//   CXmlWriter, CXmlWriterContext .............. XmlWriter.h
//   CXmlTextWriter ............................. XmlTextWriter.h
//   CXmlDocument ............................... XmlDocument.h
//   CXmlElement, CXmlAttribute ................. XmlElement.h
//   CExpatReader ............................... ExpatReader.h
//   CXmlObjectHelper (TestRegEx, facet checks) . XmlObjectHelper.h
//   CXmlObjectBase, IEventSink, AsyncToXmlFile . XmlObjectBase.h
//   CXmlGeneratedClass, INillable .............. XmlGeneratedClass.h
//   CXmlCollectionBase ......................... XmlCollectionBase.h
//   CClassfactoryBase .......................... ClassfactoryBase.h
//   CXmlCollection, TXmlObjectCol<T> ........... XmlCollection.h
//   CXmlTypeCollection ......................... XmlTypeCollection.h
//   Ci4Col ... CintegerCol, CdatetimeBaseCol ... PrimitiveCols.h
//   CElementInfo and its subclasses, CParentElementInfo,
//   XmlElementType, XmlElementGroupType ........ ElementInfo.h (namespace QvXmlLib16Data)
//   CAttributeInfo ............................. AttributeInfo.h (namespace QvXmlLib16Data)

#include <QvXmlLib16/AttributeInfo.h>
#include <QvXmlLib16/Base64.h>
#include <QvXmlLib16/BigInteger.h>
#include <QvXmlLib16/BinaryData.h>
#include <QvXmlLib16/BinaryStream.h>
#include <QvXmlLib16/ClassfactoryBase.h>
#include <QvXmlLib16/Conversions.h>
#include <QvXmlLib16/ConvertUTF.h>
#include <QvXmlLib16/DateTime.h>
#include <QvXmlLib16/DateTimeSpan.h>
#include <QvXmlLib16/Decimal.h>
#include <QvXmlLib16/ElementInfo.h>
#include <QvXmlLib16/Encoder.h>
#include <QvXmlLib16/ExpatReader.h>
#include <QvXmlLib16/Export.h>
#include <QvXmlLib16/Format.h>
#include <QvXmlLib16/InstanceMonitor.h>
#include <QvXmlLib16/ItemType.h>
#include <QvXmlLib16/NamespaceAliasMap.h>
#include <QvXmlLib16/Namespaces.h>
#include <QvXmlLib16/PrimitiveCols.h>
#include <QvXmlLib16/PrimitiveRestrictions.h>
#include <QvXmlLib16/QVCriticalSection.h>
#include <QvXmlLib16/QvException.h>
#include <QvXmlLib16/QvZip.h>
#include <QvXmlLib16/SerializationContext.h>
#include <QvXmlLib16/SmartPtr.h>
#include <QvXmlLib16/StringBuffer.h>
#include <QvXmlLib16/TextStream.h>
#include <QvXmlLib16/Variant.h>
#include <QvXmlLib16/WhitespaceUtils.h>
#include <QvXmlLib16/XmlCollection.h>
#include <QvXmlLib16/XmlCollectionBase.h>
#include <QvXmlLib16/XmlDocument.h>
#include <QvXmlLib16/XmlElement.h>
#include <QvXmlLib16/XmlEncoding.h>
#include <QvXmlLib16/XmlGeneratedClass.h>
#include <QvXmlLib16/XmlObjectBase.h>
#include <QvXmlLib16/XmlObjectHelper.h>
#include <QvXmlLib16/XmlTextWriter.h>
#include <QvXmlLib16/XmlTypeCollection.h>
#include <QvXmlLib16/XmlWriter.h>
