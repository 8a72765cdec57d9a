#include "binding-fixtures/PriceBinding.h"
#include "common/TestUtils.h"

#include <gtest/gtest.h>

using namespace fixtures;
using qvtest::ExpectThrowMsg;

namespace {

std::wstring Written(const CPrice& price, const CSerializationContext& ctx) {
    return price.ToXml(false, false, EOL_LF, ctx);
}

CSmartPtr<CPrice> Read(const wchar_t* xml,
                       const CSerializationContext& ctx = CSerializationContext()) {
    CSmartPtr<CPrice> price = new CPrice();
    price->FromXml(xml, ctx);
    return price;
}

} // namespace

TEST(AttributeInfo, WritesAttributesWithTheirDefaults) {
    CSmartPtr<CPrice> price = new CPrice();
    price->Id = 7;
    price->Value = CDecimal(L"12.5");
    CSerializationContext ctx;
    ctx.SetDefaultNamespaceURI(kPriceNs);
    // Unset optional attributes are left out.
    EXPECT_EQ(Written(*price, ctx), L"<Price xmlns=\"urn:test:price\" id=\"7\">12.5</Price>");

    price->Currency = L"EUR";
    price->Kind = Kind_gross;
    price->Tag = L"a\"b";
    EXPECT_EQ(Written(*price, ctx),
              L"<Price xmlns=\"urn:test:price\" id=\"7\" currency=\"EUR\" kind=\"gross\" "
              L"xmlns:AA=\"urn:test:tags\" AA:tag=\"a&quot;b\">12.5</Price>");

    // An optional attribute equal to its default goes only when the context asks.
    ctx.SetNoOptionalAttributeDefaultOutput(true);
    price->Tag.reset();
    EXPECT_EQ(Written(*price, ctx),
              L"<Price xmlns=\"urn:test:price\" id=\"7\" kind=\"gross\">12.5</Price>");
    price->Currency = L"USD";
    EXPECT_EQ(
        Written(*price, ctx),
        L"<Price xmlns=\"urn:test:price\" id=\"7\" currency=\"USD\" kind=\"gross\">12.5</Price>");
}

TEST(AttributeInfo, WritingFailures) {
    struct Case {
        const char* name;
        std::function<void(CPrice&)> set;
        const wchar_t* message;
    };

    const Case cases[] = {
        {"required attribute unset", [](CPrice&) {},
         L"Failed to convert attributes to XML\nInvalid Type 0 to convert to string"},
        {"facet of a required attribute", [](CPrice& p) { p.Id = 0; },
         L"Failed to convert attributes to XML\nInvalid Value for id [0]"},
        {"pattern of an optional attribute",
         [](CPrice& p) {
             p.Id = 1;
             p.Currency = L"eur";
         },
         L"Failed to convert attributes to XML\nInvalid Value for currency [eur]."},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        CSmartPtr<CPrice> price = new CPrice();
        tc.set(*price);
        try {
            price->ToXml();
            ADD_FAILURE() << "nothing thrown";
        } catch (const CQvException& e) {
            EXPECT_EQ(e.GetFullMessage(), tc.message);
        }
    }
}

TEST(AttributeInfo, ReadsAttributes) {
    CSmartPtr<CPrice> price =
        Read(L"<Price xmlns='urn:test:price' xmlns:t='urn:test:tags' kind='net' id=' 9 ' t:tag='x'"
             L" currency='CHF'>3.25</Price>");
    EXPECT_EQ(price->Id, 9);
    EXPECT_EQ(price->Currency, L"CHF");
    EXPECT_EQ(price->Kind, Kind_net);
    EXPECT_EQ(price->Tag, L"x");
    EXPECT_EQ(price->Value.ToString(), L"3.25");

    // Facets are not checked on reading.
    EXPECT_EQ(Read(L"<Price xmlns='urn:test:price' id='0'>1</Price>")->Id, 0);
}

TEST(AttributeInfo, ReadingFailures) {
    struct Case {
        const char* name;
        const wchar_t* xml;
        const wchar_t* message;
    };

    const Case cases[] = {
        {"required attribute missing", L"<Price xmlns='urn:test:price'>1</Price>",
         L"Failed to process the element.\nPath: /Price\n"
         L"Failed to find the required Attribute [id]."},
        {"unknown attribute", L"<Price xmlns='urn:test:price' id='1' other='x'>1</Price>",
         L"Unexpected Attribute found.\nPath: /Price/@other"},
        {"attribute in another namespace",
         L"<Price xmlns='urn:test:price' xmlns:q='urn:q' id='1' q:kind='net'>1</Price>",
         L"Unexpected Attribute found.\nPath: /Price/@q:kind"},
        {"bad value", L"<Price xmlns='urn:test:price' id='x'>1</Price>",
         L"Failed to process the element.\nPath: /Price\n"
         L"The value [x] can not be converted to a i4"},
        {"unknown enumeration text", L"<Price xmlns='urn:test:price' id='1' kind='tax'>1</Price>",
         L"Failed to process the element.\nPath: /Price\nInvalid Kind value [tax]"},
        {"accessor refuses the value",
         L"<Price xmlns='urn:test:price' xmlns:t='urn:test:tags' id='1' t:tag='!'>1</Price>",
         L"Failed to set the property value [!].\nPath: /Price/@t:tag\nTag may not be !"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        try {
            Read(tc.xml);
            ADD_FAILURE() << "nothing thrown";
        } catch (const CQvException& e) {
            EXPECT_EQ(e.GetFullMessage(), tc.message);
        }
    }
}

TEST(AttributeInfo, IgnoredNamespacesReachEnumeratedAttributesOnly) {
    CSerializationContext ctx;
    ctx.SetIgnoreNamespaces(true);
    ctx.SetIgnoreUnknownAttributes(true);
    CSmartPtr<CPrice> price = Read(
        L"<Price xmlns='urn:test:price' xmlns:q='urn:q' id='1' q:kind='gross' q:currency='USD'>"
        L"1</Price>",
        ctx);
    EXPECT_EQ(price->Kind, Kind_gross);
    EXPECT_FALSE(price->Currency.has_value());
}
