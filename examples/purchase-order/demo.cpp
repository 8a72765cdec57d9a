// The purchase-order classes at work: build an order and write it, read the bundled sample,
// show what a broken document reports, and round-trip a gzip-compressed stream.
//
//   purchase_order_demo [directory holding sample.xml and sample-broken.xml]

#include "PurchaseOrder.h"

#include <algorithm>
#include <cstdio>
#include <string>

#ifndef PO_EXAMPLE_DIR
#define PO_EXAMPLE_DIR "."
#endif

using namespace po;

namespace {

// Wide text to UTF-8 on stdout.
void Print(const std::wstring& text) {
    const CBinaryData bytes = CEncoder::UnicodeToUtf8Binary(text.c_str());
    std::fwrite(bytes.GetData(), 1, bytes.GetLength(), stdout);
}

void PrintLine(const std::wstring& text) {
    Print(text + L"\n");
}

void Heading(const wchar_t* title) {
    PrintLine(std::wstring(L"\n== ") + title);
}

// Writing puts the schema's namespace on the root as the default namespace and declares the
// xsi prefix there, so nested xsi:type and xsi:nil reuse it.
CSerializationContext Context() {
    CSerializationContext ctx;
    ctx.SetDefaultNamespaceURI(kNs);
    ctx.GetNamespaceAliases().Add(L"xsi", ns::kXsi);
    return ctx;
}

CSmartPtr<CAddress> NewAddress(const wchar_t* element, const wchar_t* street, const wchar_t* city,
                               const wchar_t* postalCode, const wchar_t* country) {
    CSmartPtr<CAddress> address = new CAddress();
    address->SetElementName(element);
    address->Street = street;
    address->City = city;
    address->PostalCode = postalCode;
    address->Country = country;
    return address;
}

void AddItem(CPurchaseOrder& order, const wchar_t* sku, const wchar_t* name, long quantity,
             const wchar_t* unitPrice) {
    CSmartPtr<CItem> item = new CItem();
    item->Sku = sku;
    item->ProductName = name;
    item->Quantity = quantity;
    item->UnitPrice = CDecimal(unitPrice);
    order.Items->Add(item);
}

CSmartPtr<CPurchaseOrder> BuildOrder() {
    CSmartPtr<CPurchaseOrder> order = new CPurchaseOrder();
    order->OrderId = L"PO-2026-0117";
    order->OrderDate = CDateTime(2026, 5, 2);
    order->Currency = Currency_CHF;
    order->Status = Status_pending;
    order->Customer->CustomerId = L"C-2231";
    order->Customer->Name = L"Lukas M\u00fcller";
    order->Customer->Address =
        NewAddress(L"address", L"Bahnhofstrasse 7", L"Z\u00fcrich", L"8001", L"CH");
    AddItem(*order, L"204-KL", L"Kettle, 1.2 l", 1, L"54.90");
    order->Shipping = Shipping_express;

    CSmartPtr<CCardPayment> card = new CCardPayment();
    card->SetElementName(L"payment");
    card->Amount = CDecimal(L"54.90");
    card->Cardholder = L"L. M\u00fcller";
    card->LastDigits = L"4242";
    CDateTime expires(CDateTime::DTType_gYearMonth);
    expires.SetGYearMonth(2028, 9);
    card->Expires = expires;
    order->Payment = card.Ptr();

    order->GiftMessage = new CGiftMessage();
    order->GiftMessage->Text = L"Happy birthday, Anna!";
    order->GiftMessage->From = L"Lukas";
    order->Total = CDecimal(L"54.90");
    return order;
}

std::wstring Or(const std::optional<std::wstring>& value, const wchar_t* absent) {
    return value ? *value : absent;
}

void PrintSummary(const CPurchaseOrder& order) {
    PrintLine(L"order " + Or(order.OrderId, L"?") + L" of " + order.OrderDate->ToString()
              + L", status " + StatusTypeToString(*order.Status) + L", currency "
              + CurrencyTypeToString(order.Currency.value_or(Currency_EUR)));
    const CCustomer& customer = *order.Customer;
    PrintLine(L"customer " + Or(customer.Name, L"?") + L" <" + Or(customer.Email, L"no email")
              + L">, " + Or(customer.Address->City, L"?") + L" ("
              + Or(customer.Address->Country, L"?") + L")");
    PrintLine(std::to_wstring(order.Items->GetCount()) + L" items:");
    for (const CItem* item : *order.Items) {
        PrintLine(L"  " + *item->Sku + L"  " + std::to_wstring(*item->Quantity) + L" x "
                  + item->UnitPrice->ToString() + L"  " + *item->ProductName
                  + (item->Note ? L"  (" + *item->Note + L")" : L""));
    }
    if (const auto* invoice = dynamic_cast<const CInvoicePayment*>(order.Payment.Ptr())) {
        PrintLine(L"payment by invoice: " + invoice->Amount->ToString() + L" due "
                  + invoice->DueDate->ToString()
                  + (invoice->BillTo ? L", billed to " + Or(invoice->BillTo->City, L"?") : L""));
    } else if (const auto* card = dynamic_cast<const CCardPayment*>(order.Payment.Ptr())) {
        PrintLine(L"payment by card: " + card->Amount->ToString() + L" from card ..."
                  + Or(card->LastDigits, L"????"));
    }
    if (!order.GiftMessage)
        PrintLine(L"gift message: none");
    else if (order.GiftMessage->IsNil())
        PrintLine(L"gift message: nil (gift wrapped, no card)");
    else
        PrintLine(L"gift message: \"" + order.GiftMessage->Text + L"\"");
    PrintLine(L"total " + order.Total->ToString());
}

std::wstring Widen(const std::string& s) {
    return std::wstring(s.begin(), s.end());
}

} // namespace

int main(int argc, char** argv) {
    const std::string dir = argc > 1 ? argv[1] : PO_EXAMPLE_DIR;
    const CSerializationContext ctx = Context();
    try {
        Heading(L"An order built in code, written as XML");
        CSmartPtr<CPurchaseOrder> built = BuildOrder();
        Print(built->ToXml(true, true, EOL_LF, ctx));

        Heading(L"Values read from sample.xml");
        CSmartPtr<CPurchaseOrder> sample = new CPurchaseOrder();
        sample->FromXmlFile(Widen(dir + "/sample.xml").c_str(), ctx);
        PrintSummary(*sample);

        Heading(L"Reading sample-broken.xml fails with");
        try {
            CSmartPtr<CPurchaseOrder> broken = new CPurchaseOrder();
            broken->FromXmlFile(Widen(dir + "/sample-broken.xml").c_str(), ctx);
            PrintLine(L"no error: the broken sample was read");
            return 1;
        } catch (const CQvException& e) {
            PrintLine(e.GetFullMessage());
        }

        Heading(L"A gzip-compressed stream, written and read back");
        const CBinaryData plain = sample->ToXmlStream(true, true, Encoding_UTF8, EOL_LF, ctx);
        const CBinaryData packed =
            sample->ToXmlStream(true, true, Encoding_UTF8, EOL_LF, ctx, Compression_GZip);
        CSmartPtr<CPurchaseOrder> unpacked = new CPurchaseOrder();
        unpacked->FromXmlStream(packed, ctx); // compression is detected on reading
        const CBinaryData again = unpacked->ToXmlStream(true, true, Encoding_UTF8, EOL_LF, ctx);
        const bool same =
            again.GetLength() == plain.GetLength()
            && std::equal(plain.GetData(), plain.GetData() + plain.GetLength(), again.GetData());
        PrintLine(std::to_wstring(plain.GetLength()) + L" bytes of XML, "
                  + std::to_wstring(packed.GetLength()) + L" bytes gzip-compressed (starting "
                  + CBinaryData::GetAsHexString(packed.GetData(), 2) + L")");
        PrintLine(L"read back: order " + *unpacked->OrderId + L", "
                  + std::to_wstring(unpacked->Items->GetCount()) + L" items, total "
                  + unpacked->Total->ToString() + L"; written again: "
                  + (same ? L"identical" : L"DIFFERENT"));
        return same ? 0 : 1;
    } catch (const CQvException& e) {
        PrintLine(L"unexpected error: " + e.GetFullMessage());
        return 1;
    }
}
