#include "common/TestUtils.h"

#include <QvXmlLib16/QvXmlLib16.h>

#include <gtest/gtest.h>

using namespace QvXmlLib16;
using qvtest::ExpectThrowMsg;

TEST(SerializationContext, Defaults) {
    const CSerializationContext ctx;
    EXPECT_FALSE(ctx.GetIgnoreInvalidCollectionCounts());
    EXPECT_FALSE(ctx.GetIgnoreMissingChoice());
    EXPECT_FALSE(ctx.GetIgnoreMissingMandatoryElements());
    EXPECT_FALSE(ctx.GetIgnoreUnknownElements());
    EXPECT_FALSE(ctx.GetIgnoreUnknownAttributes());
    EXPECT_FALSE(ctx.GetIgnoreNamespaces());
    EXPECT_FALSE(ctx.GetNoOptionalAttributeDefaultOutput());
    EXPECT_FALSE(ctx.GetWriteDefaultElementValues());
    EXPECT_TRUE(ctx.GetWriteTypeAttribute());
    EXPECT_TRUE(ctx.GetStripCDATA());
    EXPECT_EQ(ctx.GetIndentChars(), L"\t");
    EXPECT_EQ(ctx.GetSchemaType(), SchemaType_Default);
    EXPECT_EQ(ctx.GetDefaultNamespaceURI(), L"");
    EXPECT_EQ(ctx.GetInLineSchema(), L"");
    EXPECT_EQ(ctx.GetNamespaceAliases().GetNamespaceCount(), 0);
    EXPECT_TRUE(ctx.GetProcessingInstructions().empty());
    EXPECT_TRUE(CSerializationContext::m_defaultContext.GetStripCDATA());
}

TEST(SerializationContext, IgnoreOptionsExcludeEachOther) {
    const std::wstring unknownFirst =
        L"The parser can only ignore additional elements, or ignore the fact that some required "
        L"ones are missing, you can not ignore both\nSet IgnoreUnknownElements to false before "
        L"setting IgnoreMissingMandatoryElements to true";
    const std::wstring missingFirst =
        L"The parser can only ignore additional elements, or ignore the fact that some required "
        L"ones are missing, you can not ignore both\nSet IgnoreMissingMandatoryElements to false "
        L"before setting IgnoreUnknownElements to true";

    CSerializationContext ctx;
    ctx.SetIgnoreUnknownElements(true);
    ExpectThrowMsg<CQvInvalidStateException>([&] { ctx.SetIgnoreMissingMandatoryElements(true); },
                                             unknownFirst);
    EXPECT_FALSE(ctx.GetIgnoreMissingMandatoryElements());
    ctx.SetIgnoreMissingMandatoryElements(false); // false never throws
    ctx.SetIgnoreUnknownElements(false);
    ctx.SetIgnoreMissingMandatoryElements(true);
    EXPECT_TRUE(ctx.GetIgnoreMissingMandatoryElements());

    ExpectThrowMsg<CQvInvalidStateException>([&] { ctx.SetIgnoreUnknownElements(true); },
                                             missingFirst);
    EXPECT_FALSE(ctx.GetIgnoreUnknownElements());
    ctx.SetIgnoreUnknownElements(false);
}

TEST(SerializationContext, IndentChars) {
    const std::wstring message =
        L"IndentChars can only contain Whitespace characters, i.e. \\t or spaces";
    CSerializationContext ctx;
    ctx.SetIndentChars(L"  \t");
    EXPECT_EQ(ctx.GetIndentChars(), L"  \t");
    ExpectThrowMsg<CQvInvalidParamException>([&] { ctx.SetIndentChars(L" x"); }, message);
    EXPECT_EQ(ctx.GetIndentChars(), L"  \t");
    ExpectThrowMsg<CQvInvalidParamException>([&] { ctx.SetIndentChars(L"\n"); }, message);
    ctx.SetIndentChars(L"");
    EXPECT_EQ(ctx.GetIndentChars(), L"");
    ctx.SetIndentChars(L"\t");
    ctx.SetIndentChars(nullptr);
    EXPECT_EQ(ctx.GetIndentChars(), L"");
}

TEST(SerializationContext, NoNamespacesSchemaIgnoresNamespaces) {
    CSerializationContext ctx;
    ctx.SetIgnoreNamespaces(false);
    ctx.SetSchemaType(SchemaType_NoNamespaces);
    EXPECT_TRUE(ctx.GetIgnoreNamespaces());
    ctx.SetSchemaType(SchemaType_Alternate);
    EXPECT_FALSE(ctx.GetIgnoreNamespaces());
    ctx.SetIgnoreNamespaces(true);
    EXPECT_TRUE(ctx.GetIgnoreNamespaces());
}

TEST(SerializationContext, CopyIsDeep) {
    CSerializationContext source;
    source.GetNamespaceAliases().Add(L"a", L"urn:a");
    source.GetProcessingInstructions().push_back(L"<?pi x?>");
    source.SetDefaultNamespaceURI(L"urn:d");
    source.SetInLineSchema(L"<xs:schema/>");
    source.SetStripCDATA(false);
    CSerializationContext copy(source);
    source.GetNamespaceAliases().Add(L"b", L"urn:b");
    source.GetProcessingInstructions().clear();
    EXPECT_EQ(copy.GetNamespaceAliases().GetNamespaceCount(), 1);
    EXPECT_EQ(copy.GetProcessingInstructions().size(), 1u);
    EXPECT_EQ(copy.GetDefaultNamespaceURI(), L"urn:d");
    EXPECT_EQ(copy.GetInLineSchema(), L"<xs:schema/>");
    EXPECT_FALSE(copy.GetStripCDATA());
}

TEST(NamespaceAliasMap, AddLookupAndOrder) {
    CNamespaceAliasMap map;
    map.Add(L"a", L"urn:x");
    map.Add(L"b", L"urn:x"); // same namespace: the alias is replaced, no duplicate
    EXPECT_EQ(map.GetNamespaceCount(), 1);
    EXPECT_EQ(map.GetAliasFromNamespace(L"urn:x"), L"b");
    map.Add(L"z", L"urn:a");
    map.Add(L"m", L"urn:m");
    // URI order, not insertion order.
    EXPECT_EQ(map.GetNamespaceAt(0), L"urn:a");
    EXPECT_EQ(map.GetNamespaceAt(1), L"urn:m");
    EXPECT_EQ(map.GetNamespaceAt(2), L"urn:x");
    EXPECT_EQ(map.GetNamespaceFromAlias(L"m"), L"urn:m");
    EXPECT_TRUE(map.DoesAliasExist(L"z"));
    EXPECT_FALSE(map.DoesAliasExist(L"a"));
    ExpectThrowMsg<CQvException>([&] { map.GetNamespaceFromAlias(L"a"); },
                                 L"Namespace alias [a] not found");
    ExpectThrowMsg<CQvInvalidParamException>([&] { map.GetNamespaceAt(3); },
                                             L"Index 3 is out of range, use 0 - 3");
    ExpectThrowMsg<CQvInvalidParamException>([&] { map.GetNamespaceAt(-1); },
                                             L"Index -1 is out of range, use 0 - 3");
    map.RemoveNamespace(L"urn:a");
    map.RemoveNamespace(L"urn:absent");
    EXPECT_FALSE(map.DoesNamespaceExist(L"urn:a"));
    EXPECT_EQ(map.GetNamespaceCount(), 2);

    // Looking up an unknown namespace inserts it with an empty alias, even in a const map.
    const CNamespaceAliasMap& constant = map;
    EXPECT_EQ(constant.GetAliasFromNamespace(L"urn:new"), L"");
    EXPECT_EQ(map.GetNamespaceCount(), 3);
    EXPECT_TRUE(map.DoesNamespaceExist(L"urn:new"));
}
