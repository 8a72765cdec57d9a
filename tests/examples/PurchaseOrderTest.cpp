#include "PurchaseOrder.h"

#include "binding-fixtures/ExpectThrown.h"
#include "common/TestUtils.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <typeinfo>
#include <vector>

using namespace po;
using fixtures::ExpectThrown;
using fixtures::Thrown;

namespace {

const std::string kDir = PO_EXAMPLE_DIR;

std::wstring Path(const char* file) {
    return qvtest::Widen(kDir + "/" + file);
}

std::vector<unsigned char> ExpectedOutput() {
    return qvtest::ReadFileBytes(kDir + "/expected-output.xml");
}

// The context the sample was written with.
CSerializationContext Context() {
    CSerializationContext ctx;
    ctx.SetDefaultNamespaceURI(kNs);
    ctx.GetNamespaceAliases().Add(L"xsi", ns::kXsi);
    return ctx;
}

CSmartPtr<CPurchaseOrder> ReadSample() {
    CSmartPtr<CPurchaseOrder> order = new CPurchaseOrder();
    order->FromXmlFile(Path("sample.xml").c_str(), Context());
    return order;
}

std::vector<unsigned char> WriteUtf8(const CPurchaseOrder& order,
                                     CompressionType compression = Compression_None) {
    return qvtest::Bytes(
        order.ToXmlStream(true, true, Encoding_UTF8, EOL_LF, Context(), compression));
}

// A small order built in code, complete but for the payment.
CSmartPtr<CPurchaseOrder> SmallOrder() {
    CSmartPtr<CPurchaseOrder> order = new CPurchaseOrder();
    order->OrderId = L"PO-2026-0001";
    order->OrderDate = CDateTime(2026, 1, 5);
    order->Status = Status_pending;
    order->Customer->CustomerId = L"C-1";
    order->Customer->Name = L"Ann";
    CAddress& address = *order->Customer->Address;
    address.Street = L"S 1";
    address.City = L"C";
    address.PostalCode = L"123";
    address.Country = L"DE";
    CSmartPtr<CItem> item = new CItem();
    item->Sku = L"100-AB";
    item->ProductName = L"Cup";
    item->Quantity = 2;
    item->UnitPrice = CDecimal(L"1.50");
    order->Items->Add(item);
    order->Total = CDecimal(L"3.00");
    return order;
}

const wchar_t kSmallHead[] =
    L"<purchaseOrder xmlns=\"urn:example:purchase-order\" "
    L"xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" orderId=\"PO-2026-0001\" "
    L"orderDate=\"2026-01-05\"><status>pending</status><customer customerId=\"C-1\">"
    L"<name>Ann</name><address><street>S 1</street><city>C</city><postalCode>123</postalCode>"
    L"<country>DE</country></address></customer><item sku=\"100-AB\"><productName>Cup"
    L"</productName><quantity>2</quantity><unitPrice>1.50</unitPrice></item>";

std::wstring SmallDocument(const std::wstring& afterItems) {
    return kSmallHead + afterItems + L"<total>3.00</total></purchaseOrder>";
}

const wchar_t kInvoice[] = L"<payment xsi:type=\"InvoicePaymentType\"><amount>3.00</amount>"
                           L"<dueDate>2026-02-05</dueDate></payment>";

} // namespace

TEST(PurchaseOrder, SampleRoundTripsByteForByte) {
    const std::vector<unsigned char> expected = ExpectedOutput();
    ASSERT_FALSE(expected.empty());
    EXPECT_EQ(WriteUtf8(*ReadSample()), expected);
    // The bundled sample is already in the form the library writes.
    EXPECT_EQ(qvtest::ReadFileBytes(kDir + "/sample.xml"), expected);
}

TEST(PurchaseOrder, SampleValues) {
    CSmartPtr<CPurchaseOrder> order = ReadSample();
    EXPECT_EQ(order->GetElementName(), L"purchaseOrder");
    EXPECT_EQ(order->OrderId, L"PO-2026-0042");
    EXPECT_EQ(order->OrderDate->ToString(), L"2026-03-14");
    EXPECT_FALSE(order->Currency.has_value()); // the schema default, EUR, is not written
    EXPECT_EQ(order->Status, Status_confirmed);
    EXPECT_EQ(order->Customer->CustomerId, L"C-1007");
    EXPECT_EQ(order->Customer->Email, L"anna.schmidt@example.com");
    EXPECT_EQ(order->Customer->Address->Street, L"Lindenstra\u00dfe 12");
    ASSERT_FALSE(order->ShipTo.IsNull());
    EXPECT_EQ(order->ShipTo->GetElementName(), L"shipTo");
    EXPECT_EQ(order->ShipTo->PostalCode, L"10117");

    struct Line {
        const wchar_t* sku;
        long quantity;
        const wchar_t* unitPrice;
        std::optional<std::wstring> note;
    };

    const Line lines[] = {
        {L"100-AB", 2, L"19.90", {}},
        {L"215-CX", 1, L"64.50", L"Please wrap separately & keep the receipt."},
        {L"318-TT", 3, L"8.95", {}},
    };
    ASSERT_EQ(order->Items->GetCount(), 3);
    int i = 0;
    for (const CItem* item : *order->Items) {
        SCOPED_TRACE(i);
        EXPECT_EQ(item->Sku, lines[i].sku);
        EXPECT_EQ(item->Quantity, lines[i].quantity);
        EXPECT_EQ(item->UnitPrice->ToString(), lines[i].unitPrice);
        EXPECT_EQ(item->Note, lines[i].note);
        ++i;
    }
    EXPECT_FALSE(order->Shipping.has_value());
    EXPECT_EQ(order->DeliverBy->ToString(), L"2026-03-20");
    const auto* invoice = dynamic_cast<const CInvoicePayment*>(order->Payment.Ptr());
    ASSERT_NE(invoice, nullptr);
    EXPECT_EQ(invoice->GetElementName(), L"payment");
    EXPECT_EQ(invoice->Amount->ToString(), L"131.15");
    EXPECT_EQ(invoice->DueDate->ToString(), L"2026-04-13");
    EXPECT_EQ(invoice->BillTo->City, L"Potsdam");
    ASSERT_FALSE(order->GiftMessage.IsNull());
    EXPECT_TRUE(order->GiftMessage->IsNil());
    EXPECT_EQ(order->Total->ToString(), L"131.15");
}

TEST(PurchaseOrder, BrokenSampleNamesTheItem) {
    // The failing item wraps the conversion error and names itself; outer elements pass the
    // located error on as a plain copy.
    ExpectThrown(
        [] {
            CSmartPtr<CPurchaseOrder> order = new CPurchaseOrder();
            order->FromXmlFile(Path("sample-broken.xml").c_str(), Context());
        },
        {&typeid(CQvException), L"Failed to process the element.\nPath: /purchaseOrder/item[2]",
         L"/purchaseOrder/item[2]", &typeid(CQvInvalidValueException),
         L"The value [one] can not be converted to a i4"});
}

TEST(PurchaseOrder, GzipRoundTrip) {
    CSmartPtr<CPurchaseOrder> sample = ReadSample();
    const std::vector<unsigned char> packed = WriteUtf8(*sample, Compression_GZip);
    ASSERT_GT(packed.size(), 2u);
    EXPECT_EQ(packed[0], 0x1f);
    EXPECT_EQ(packed[1], 0x8b);
    EXPECT_LT(packed.size(), ExpectedOutput().size());

    CSmartPtr<CPurchaseOrder> fromStream = new CPurchaseOrder();
    fromStream->FromXmlStream(packed.data(), static_cast<unsigned long>(packed.size()), Context());
    EXPECT_EQ(WriteUtf8(*fromStream), ExpectedOutput());

    qvtest::TempDir dir;
    sample->ToXmlFile(dir.WFile("order.xml.gz").c_str(), true, true, Encoding_UTF8, EOL_LF,
                      Context(), Compression_GZip);
    EXPECT_EQ(qvtest::ReadFileBytes(dir.File("order.xml.gz")), packed);
    CSmartPtr<CPurchaseOrder> fromFile = new CPurchaseOrder();
    fromFile->FromXmlFile(dir.WFile("order.xml.gz").c_str(), Context());
    EXPECT_EQ(WriteUtf8(*fromFile), ExpectedOutput());
}

TEST(PurchaseOrder, XsiTypeChoosesThePaymentClass) {
    const std::wstring card = L"<amount>3.00</amount><cardholder>A</cardholder>"
                              L"<lastDigits>4242</lastDigits><expires>2028-09</expires></payment>";

    struct Case {
        const char* name;
        std::wstring payment;
        std::function<void(const CPayment*)> check;
    };

    const Case cases[] = {
        {"card", L"<payment xsi:type=\"CardPaymentType\">" + card,
         [](const CPayment* p) {
             const auto* c = dynamic_cast<const CCardPayment*>(p);
             ASSERT_NE(c, nullptr);
             EXPECT_EQ(c->Cardholder, L"A");
             EXPECT_EQ(c->LastDigits, L"4242");
             EXPECT_EQ(c->Expires->ToString(), L"2028-09");
         }},
        {"invoice", kInvoice,
         [](const CPayment* p) {
             const auto* i = dynamic_cast<const CInvoicePayment*>(p);
             ASSERT_NE(i, nullptr);
             EXPECT_EQ(i->DueDate->ToString(), L"2026-02-05");
             EXPECT_TRUE(i->BillTo.IsNull());
         }},
        {"card, type name with a prefix of the schema's namespace",
         L"<payment xmlns:po=\"urn:example:purchase-order\" xsi:type=\"po:CardPaymentType\">"
             + card,
         [](const CPayment* p) { EXPECT_NE(dynamic_cast<const CCardPayment*>(p), nullptr); }},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        CSmartPtr<CPurchaseOrder> order = new CPurchaseOrder();
        order->FromXml(SmallDocument(tc.payment).c_str(), Context());
        EXPECT_EQ(order->Payment->GetElementName(), L"payment");
        EXPECT_EQ(order->Payment->Amount->ToString(), L"3.00");
        tc.check(order->Payment.Ptr());
    }
}

TEST(PurchaseOrder, PaymentWithoutAKnownType) {
    const std::wstring noSubstitution = L"Failed to find a suitable substitution element for "
                                        L"[payment].\nPath: /purchaseOrder";

    struct Case {
        const char* name;
        const wchar_t* payment;
    };

    const Case cases[] = {
        {"no xsi:type", L"<payment><amount>3.00</amount></payment>"},
        {"the abstract type", L"<payment xsi:type=\"PaymentType\"><amount>3.00</amount></payment>"},
        {"a type of another namespace",
         L"<payment xmlns:o=\"urn:other\" xsi:type=\"o:CardPaymentType\"/>"},
        {"no payment", L""},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        ExpectThrown(
            [&] {
                CSmartPtr<CPurchaseOrder> order = new CPurchaseOrder();
                order->FromXml(SmallDocument(tc.payment).c_str(), Context());
            },
            Thrown(&typeid(CQvException), noSubstitution, L"/purchaseOrder"));
    }
}

TEST(PurchaseOrder, WritesWhatItBuilt) {
    struct Case {
        const char* name;
        std::function<void(CPurchaseOrder&)> change;
        std::wstring afterItems;
    };

    const auto invoice = [](CPurchaseOrder& o) {
        CSmartPtr<CInvoicePayment> payment = new CInvoicePayment();
        payment->SetElementName(L"payment");
        payment->Amount = CDecimal(L"3.00");
        payment->DueDate = CDateTime(2026, 2, 5);
        o.Payment = payment.Ptr();
    };
    const Case cases[] = {
        {"invoice", invoice, kInvoice},
        {"card",
         [](CPurchaseOrder& o) {
             CSmartPtr<CCardPayment> payment = new CCardPayment();
             payment->SetElementName(L"payment");
             payment->Amount = CDecimal(L"3.00");
             payment->Cardholder = L"A";
             payment->LastDigits = L"0007";
             CDateTime expires(CDateTime::DTType_gYearMonth);
             expires.SetGYearMonth(2027, 1);
             payment->Expires = expires;
             o.Payment = payment.Ptr();
         },
         L"<payment xsi:type=\"CardPaymentType\"><amount>3.00</amount><cardholder>A</cardholder>"
         L"<lastDigits>0007</lastDigits><expires>2027-01</expires></payment>"},
        {"gift message and shipping",
         [&](CPurchaseOrder& o) {
             invoice(o);
             o.Shipping = Shipping_overnight;
             o.GiftMessage = new CGiftMessage();
             o.GiftMessage->Text = L"Cheers & thanks";
             o.GiftMessage->From = L"Bo";
         },
         L"<shipping>overnight</shipping>" + std::wstring(kInvoice)
             + L"<giftMessage from=\"Bo\">Cheers &amp; thanks</giftMessage>"},
        {"nil gift message keeps its attribute, drops its text",
         [&](CPurchaseOrder& o) {
             invoice(o);
             o.GiftMessage = new CGiftMessage();
             o.GiftMessage->Text = L"lost";
             o.GiftMessage->From = L"Bo";
             o.GiftMessage->SetNil(true);
         },
         kInvoice + std::wstring(L"<giftMessage from=\"Bo\" xsi:nil=\"true\"/>")},
        {"shipping at its default is written empty",
         [&](CPurchaseOrder& o) {
             invoice(o);
             o.Shipping = Shipping_standard;
         },
         L"<shipping/>" + std::wstring(kInvoice)},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        CSmartPtr<CPurchaseOrder> order = SmallOrder();
        tc.change(*order);
        const std::wstring xml = order->ToXml(false, false, EOL_LF, Context());
        EXPECT_EQ(xml, SmallDocument(tc.afterItems));
        // What was written reads back to the same text.
        CSmartPtr<CPurchaseOrder> again = new CPurchaseOrder();
        again->FromXml(xml.c_str(), Context());
        EXPECT_EQ(again->ToXml(false, false, EOL_LF, Context()), xml);
    }
}

TEST(PurchaseOrder, WritingRefusesInvalidOrders) {
    const auto withInvoice = [](CPurchaseOrder& o) {
        CSmartPtr<CInvoicePayment> payment = new CInvoicePayment();
        payment->SetElementName(L"payment");
        payment->Amount = CDecimal(L"3.00");
        payment->DueDate = CDateTime(2026, 2, 5);
        o.Payment = payment.Ptr();
    };

    struct Case {
        const char* name;
        std::function<void(CPurchaseOrder&)> change;
        Thrown thrown;
        const wchar_t* cause; // the innermost message
    };

    const Case cases[] = {
        {"no payment",
         [](CPurchaseOrder&) {},
         {&typeid(CQvValidationException), L"Failed to convert the element [purchaseOrder] to XML",
          L"", &typeid(CQvInvalidParamException),
          L"The Property [payment] is mandatory, it may not be NULL"},
         L"The Property [payment] is mandatory, it may not be NULL"},
        {"quantity below its minimum",
         [&](CPurchaseOrder& o) {
             withInvoice(o);
             o.Items->Item(0)->Quantity = 0;
         },
         {&typeid(CQvValidationException), L"Failed to convert the element [purchaseOrder] to XML",
          L"", &typeid(CQvValidationException), L"Failed to convert the element [item] to XML"},
         L"Invalid Value for quantity [0]"},
        {"sku against its pattern",
         [&](CPurchaseOrder& o) {
             withInvoice(o);
             o.Items->Item(0)->Sku = L"100-ab";
         },
         {&typeid(CQvValidationException), L"Failed to convert the element [purchaseOrder] to XML",
          L"", &typeid(CQvException), L"Failed to convert attributes to XML"},
         L"Invalid Value for sku [100-ab]."},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        CSmartPtr<CPurchaseOrder> order = SmallOrder();
        tc.change(*order);
        ExpectThrown([&] { order->ToXml(false, false, EOL_LF, Context()); }, tc.thrown);
        try {
            order->ToXml(false, false, EOL_LF, Context());
        } catch (const CQvException& e) {
            const CQvException* innermost = &e;
            while (innermost->GetInnerException())
                innermost = innermost->GetInnerException();
            EXPECT_EQ(innermost->GetMessage(), tc.cause);
        }
    }
}

TEST(PurchaseOrder, ReadingRefusesInvalidDocuments) {
    struct Case {
        const char* name;
        std::wstring xml;
        Thrown thrown;
    };

    const std::wstring item = L"<item sku=\"100-AB\"><productName>Cup</productName>"
                              L"<quantity>2</quantity><unitPrice>1.50</unitPrice></item>";
    const std::wstring head =
        std::wstring(kSmallHead).substr(0, std::wstring(kSmallHead).find(item));
    const Case cases[] = {
        {"unknown status",
         L"<purchaseOrder xmlns=\"urn:example:purchase-order\" orderId=\"PO-2026-0001\" "
         L"orderDate=\"2026-01-05\"><status>lost</status></purchaseOrder>",
         {&typeid(CQvValidationException), L"Failed to process the element.\nPath: /purchaseOrder",
          L"/purchaseOrder", &typeid(CQvInvalidValueException),
          L"Invalid StatusType value [lost]"}},
        {"no items",
         head + L"<payment/></purchaseOrder>",
         {&typeid(CQvValidationException), L"Failed to process the element.\nPath: /purchaseOrder",
          L"/purchaseOrder", &typeid(CQvValidationException),
          L"The Minimum number of [item] elements allowed in this collection is 1"}},
        {"order id missing",
         L"<purchaseOrder xmlns=\"urn:example:purchase-order\" orderDate=\"2026-01-05\"/>",
         {&typeid(CQvValidationException), L"Failed to process the element.\nPath: /purchaseOrder",
          L"/purchaseOrder", &typeid(CQvValidationException),
          L"Failed to find the required Attribute [orderId]."}},
        {"unknown attribute",
         L"<purchaseOrder xmlns=\"urn:example:purchase-order\" orderId=\"PO-2026-0001\" "
         L"orderDate=\"2026-01-05\" priority=\"high\"/>",
         {&typeid(CQvException), L"Unexpected Attribute found.\nPath: /purchaseOrder/@priority",
          L"/purchaseOrder/@priority"}},
        {"nil on a member that is not nillable",
         SmallDocument(L"<deliverBy xsi:nil=\"true\"/>" + std::wstring(kInvoice)),
         {&typeid(CQvException),
          L"Invalid use of 'nil' attribute in non-nillable element.\nPath: "
          L"/purchaseOrder/deliverBy",
          L"/purchaseOrder/deliverBy"}},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        ExpectThrown(
            [&] {
                CSmartPtr<CPurchaseOrder> order = new CPurchaseOrder();
                order->FromXml(tc.xml.c_str(), Context());
            },
            tc.thrown);
    }
}

TEST(PurchaseOrder, ReadingAgainStartsFresh) {
    CSmartPtr<CPurchaseOrder> order = ReadSample();
    const CCustomer* firstCustomer = order->Customer.Ptr();
    order->FromXml(SmallDocument(kInvoice).c_str(), Context());
    EXPECT_NE(order->Customer.Ptr(), firstCustomer);
    EXPECT_FALSE(order->Customer->Email.has_value());
    EXPECT_TRUE(order->ShipTo.IsNull());
    EXPECT_EQ(order->Items->GetCount(), 1);
    EXPECT_FALSE(order->DeliverBy.has_value());
    EXPECT_TRUE(order->GiftMessage.IsNull());
    EXPECT_EQ(order->Total->ToString(), L"3.00");
}
