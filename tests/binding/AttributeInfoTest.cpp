#include "binding-fixtures/ExpectThrown.h"
#include "binding-fixtures/PriceBinding.h"

#include <gtest/gtest.h>

#include <functional>

using namespace fixtures;

namespace {

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
    const auto written = [&] { return price->ToXml(false, false, EOL_LF, ctx); };
    const std::wstring head = L"<Price xmlns=\"urn:test:price\" id=\"7\"";
    // Unset optional attributes are left out.
    EXPECT_EQ(written(), head + L">12.5</Price>");

    price->Currency = L"EUR";
    price->Kind = Kind_gross;
    price->Tag = L"a\"b";
    EXPECT_EQ(written(), head
                             + L" currency=\"EUR\" kind=\"gross\" xmlns:AA=\"urn:test:tags\" "
                               L"AA:tag=\"a&quot;b\">12.5</Price>");

    // An optional attribute equal to its default goes only when the context asks.
    ctx.SetNoOptionalAttributeDefaultOutput(true);
    price->Tag.reset();
    EXPECT_EQ(written(), head + L" kind=\"gross\">12.5</Price>");
    price->Currency = L"USD";
    EXPECT_EQ(written(), head + L" currency=\"USD\" kind=\"gross\">12.5</Price>");
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

    // Ignored namespaces reach enumerated attributes only.
    CSerializationContext ctx;
    ctx.SetIgnoreNamespaces(true);
    ctx.SetIgnoreUnknownAttributes(true);
    price = Read(L"<Price xmlns='urn:test:price' xmlns:q='urn:q' id='1' q:kind='gross' "
                 L"q:currency='USD'>1</Price>",
                 ctx);
    EXPECT_EQ(price->Kind, Kind_gross);
    EXPECT_FALSE(price->Currency.has_value());
}

TEST(AttributeInfo, Refused) {
    const auto unwritable = [](const std::type_info& inner, const wchar_t* message) {
        return Thrown(&typeid(CQvException), L"Failed to convert attributes to XML", L"", &inner,
                      message);
    };
    const auto unreadable = [](const std::type_info& inner, const wchar_t* message) {
        return Thrown(&typeid(CQvValidationException),
                      L"Failed to process the element.\nPath: /Price", L"/Price", &inner, message);
    };
    const auto unexpected = [](const wchar_t* path) {
        return Thrown(&typeid(CQvException),
                      L"Unexpected Attribute found.\nPath: " + std::wstring(path), path);
    };

    // A case either reads a price with these attributes or, when they are null, writes one.
    struct Case {
        const char* name;
        const wchar_t* attributes;
        std::function<void(CPrice&)> set;
        Thrown thrown;
    };

    const Case cases[] = {
        {"required attribute unset", nullptr, [](CPrice&) {},
         unwritable(typeid(CQvException), L"Invalid Type 0 to convert to string")},
        {"facet of a required attribute", nullptr, [](CPrice& p) { p.Id = 0; },
         unwritable(typeid(CQvException), L"Invalid Value for id [0]")},
        {"pattern of an optional attribute", nullptr,
         [](CPrice& p) {
             p.Id = 1;
             p.Currency = L"eur";
         },
         unwritable(typeid(CQvException), L"Invalid Value for currency [eur].")},
        {"required attribute missing", L"", nullptr,
         unreadable(typeid(CQvValidationException),
                    L"Failed to find the required Attribute [id].")},
        {"unknown attribute", L"id='1' other='x'", nullptr, unexpected(L"/Price/@other")},
        {"attribute in another namespace", L"id='1' q:kind='net'", nullptr,
         unexpected(L"/Price/@q:kind")},
        {"bad value", L"id='x'", nullptr,
         unreadable(typeid(CQvInvalidValueException),
                    L"The value [x] can not be converted to a i4")},
        {"unknown enumeration text", L"id='1' kind='tax'", nullptr,
         unreadable(typeid(CQvInvalidValueException), L"Invalid Kind value [tax]")},
        {"accessor refuses the value", L"id='1' t:tag='!'", nullptr,
         Thrown(&typeid(CQvException),
                L"Failed to set the property value [!].\nPath: /Price/@t:tag", L"/Price/@t:tag",
                &typeid(CQvInvalidValueException), L"Tag may not be !")},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        CSmartPtr<CPrice> price = new CPrice();
        if (tc.attributes) {
            const std::wstring xml = L"<Price xmlns='urn:test:price' xmlns:q='urn:q' "
                                     L"xmlns:t='urn:test:tags' "
                                     + std::wstring(tc.attributes) + L">1</Price>";
            ExpectThrown([&] { price->FromXml(xml.c_str()); }, tc.thrown);
        } else {
            tc.set(*price);
            ExpectThrown([&] { price->ToXml(); }, tc.thrown);
        }
    }
}
