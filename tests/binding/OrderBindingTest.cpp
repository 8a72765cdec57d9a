#include "binding-fixtures/OrderBinding.h"

#include <gtest/gtest.h>

using namespace fixtures;

namespace {

const wchar_t kFullOrderXml[] =
    L"<?xml version=\"1.0\"?>\n"
    L"<Order xmlns=\"urn:test:po\">\n"
    L"\t<Id>42</Id>\n"
    L"\t<OrderDate>2026-11-21</OrderDate>\n"
    L"\t<Status>shipped</Status>\n"
    L"\t<ShipTo>\n"
    L"\t\t<Street>1 Main Street</Street>\n"
    L"\t\t<City>Z\u00fcrich</City>\n"
    L"\t\t<Zip>80331</Zip>\n"
    L"\t</ShipTo>\n"
    L"\t<BillTo>\n"
    L"\t\t<Street>2 Side Road</Street>\n"
    L"\t\t<City>Berlin</City>\n"
    L"\t</BillTo>\n"
    L"\t<Note>Fragile &amp; &lt;heavy&gt;</Note>\n"
    L"\t<Priority>high</Priority>\n"
    L"\t<Total>123.45</Total>\n"
    L"\t<Shape xmlns:AA=\"http://www.w3.org/2001/XMLSchema-instance\" AA:type=\"CircleType\">\n"
    L"\t\t<Radius>2.5</Radius>\n"
    L"\t</Shape>\n"
    L"\t<Phone>+41 44 000 00 00</Phone>\n"
    L"\t<Email>orders@example.com</Email>\n"
    L"\t<Comment>thanks</Comment>\n"
    L"</Order>\n";

} // namespace

// Every member kind written, read back and written again to the same text.
TEST(OrderBinding, RoundTripsEveryMemberKind) {
    CSerializationContext ctx;
    ctx.SetDefaultNamespaceURI(kNs);
    EXPECT_EQ(MakeFullOrder()->ToXml(true, true, EOL_LF, ctx), kFullOrderXml);

    CSmartPtr<COrder> order = new COrder();
    order->FromXml(kFullOrderXml);
    EXPECT_EQ(order->Id, 42);
    EXPECT_EQ(order->OrderDate->ToString(L"s"), L"2026-11-21");
    EXPECT_EQ(order->Status, Status_shipped);
    EXPECT_EQ(order->ShipTo->City, L"Z\u00fcrich");
    ASSERT_FALSE(order->BillTo.IsNull());
    EXPECT_EQ(order->BillTo->GetElementName(), L"BillTo");
    EXPECT_FALSE(order->BillTo->Zip.has_value());
    EXPECT_EQ(order->Note, L"Fragile & <heavy>");
    EXPECT_EQ(order->Priority, Priority_high);
    EXPECT_EQ(order->Total->ToString(), L"123.45");
    const CCircle* circle = dynamic_cast<const CCircle*>(order->Shape.Ptr());
    ASSERT_NE(circle, nullptr);
    EXPECT_EQ(circle->Radius, 2.5);
    EXPECT_EQ(order->Contact->Email, L"orders@example.com");
    ASSERT_FALSE(order->Comment.IsNull());
    EXPECT_EQ(order->Comment->Value, L"thanks");
    EXPECT_EQ(order->ToXml(true, true, EOL_LF, ctx), kFullOrderXml);
}
