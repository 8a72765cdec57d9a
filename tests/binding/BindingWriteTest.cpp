#include "binding-fixtures/DrawingBinding.h"
#include "binding-fixtures/ExpectThrown.h"
#include "binding-fixtures/GroupBinding.h"
#include "binding-fixtures/NodeBinding.h"

#include <gtest/gtest.h>

#include <functional>
#include <thread>
#include <vector>

using namespace fixtures;

namespace {

const wchar_t kCore[] =
    L"<Order xmlns=\"urn:test:po\"><Id>1</Id><OrderDate>2026-01-02</OrderDate>"
    L"<Status>pending</Status><ShipTo><Street>S</Street><City>C</City></ShipTo>";

CSmartPtr<COrder> MinimalOrder() {
    CSmartPtr<COrder> order = new COrder();
    order->Id = 1;
    order->OrderDate = CDateTime(2026, 1, 2);
    order->Status = Status_pending;
    order->ShipTo->Street = L"S";
    order->ShipTo->City = L"C";
    order->Contact->Phone = L"P";
    return order;
}

template <class T>
CSmartPtr<T> Named(T* object, const wchar_t* elementName) {
    object->SetElementName(elementName);
    return object;
}

enum Option { kNone = 0, kWriteDefaults = 1, kNoTypeAttribute = 2, kEmptyChoice = 4 };

std::wstring Write(const CXmlObjectBase& object, int options = kNone) {
    CSerializationContext ctx;
    ctx.SetDefaultNamespaceURI(kNs);
    ctx.SetWriteDefaultElementValues(options & kWriteDefaults);
    ctx.SetWriteTypeAttribute(!(options & kNoTypeAttribute));
    ctx.SetIgnoreMissingChoice(options & kEmptyChoice);
    return object.ToXml(false, false, EOL_LF, ctx);
}

// What a failed member becomes once its class gives up.
Thrown NotConverted(const wchar_t* element, const std::type_info& innerType,
                    const std::wstring& inner) {
    return Thrown(&typeid(CQvValidationException),
                  L"Failed to convert the element [" + std::wstring(element) + L"] to XML", L"",
                  &innerType, inner);
}

} // namespace

TEST(BindingWrite, MemberKinds) {
    struct Case {
        const char* name;
        std::function<void(COrder&)> change;
        int options;
        const wchar_t* afterShipTo; // up to the end tag
    };

    const auto none = [](COrder&) {};
    const auto normal = [](COrder& o) { o.Priority = Priority_normal; };
    const auto zero = [](COrder& o) { o.Total = CDecimal(L"0"); };
    const auto circle = [](COrder& o) { o.Shape = Named(new CCircle(), L"Shape").Ptr(); };
    const Case cases[] = {
        {"mandatory members only", none, kNone, L"<Phone>P</Phone>"},
        {"optional class", [](COrder& o) { o.BillTo = Named(new CAddress(), L"BillTo"); }, kNone,
         L"<BillTo><Street/><City/></BillTo><Phone>P</Phone>"},
        {"optional primitive, escaped", [](COrder& o) { o.Note = L"a<b&"; }, kNone,
         L"<Note>a&lt;b&amp;</Note><Phone>P</Phone>"},
        {"nil primitive", [](COrder& o) { o.NoteIsNil = true; }, kNone,
         L"<Note xmlns:AA=\"http://www.w3.org/2001/XMLSchema-instance\" AA:nil=\"true\"/>"
         L"<Phone>P</Phone>"},
        {"optional enumeration", [](COrder& o) { o.Priority = Priority_high; }, kNone,
         L"<Priority>high</Priority><Phone>P</Phone>"},
        {"enumeration at its default", normal, kNone, L"<Priority/><Phone>P</Phone>"},
        {"enumeration at its default, defaults written", normal, kWriteDefaults,
         L"<Priority>normal</Priority><Phone>P</Phone>"},
        {"decimal at its default", zero, kNone, L"<Total/><Phone>P</Phone>"},
        {"decimal at its default, defaults written", zero, kWriteDefaults,
         L"<Total>0</Total><Phone>P</Phone>"},
        {"abstract member gets xsi:type", circle, kNone,
         L"<Shape xmlns:AA=\"http://www.w3.org/2001/XMLSchema-instance\" AA:type=\"CircleType\">"
         L"<Radius>0</Radius></Shape><Phone>P</Phone>"},
        {"xsi:type switched off", circle, kNoTypeAttribute,
         L"<Shape><Radius>0</Radius></Shape><Phone>P</Phone>"},
        {"element named after its type", [](COrder& o) { o.Shape = new CSquare(); }, kNone,
         L"<SquareType><Side>0</Side></SquareType><Phone>P</Phone>"},
        {"pseudo element with its optional member", [](COrder& o) { o.Contact->Email = L"e"; },
         kNone, L"<Phone>P</Phone><Email>e</Email>"},
        {"simple content",
         [](COrder& o) {
             o.Comment = new CComment();
             o.Comment->Value = L"x > 0.5";
         },
         kNone, L"<Phone>P</Phone><Comment>x &gt; 0.5</Comment>"},
        {"nil class writes no content",
         [](COrder& o) {
             o.Comment = new CComment();
             o.Comment->Value = L"lost";
             o.Comment->SetNil(true);
         },
         kNone,
         L"<Phone>P</Phone>"
         L"<Comment xmlns:AA=\"http://www.w3.org/2001/XMLSchema-instance\" AA:nil=\"true\"/>"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        CSmartPtr<COrder> order = MinimalOrder();
        tc.change(*order);
        EXPECT_EQ(Write(*order, tc.options), std::wstring(kCore) + tc.afterShipTo + L"</Order>");
    }
}

TEST(BindingWrite, OtherClasses) {
    CSmartPtr<CDrawing> drawing = new CDrawing();
    drawing->Main = Named(new CSquare(), L"Main").Ptr();
    drawing->Owner = Named(new CAddress(), L"Owner");
    const std::wstring head = L"<Drawing xmlns=\"urn:test:po\"><Main xmlns:AA=\"http://www.w3.org/"
                              L"2001/XMLSchema-instance\" AA:type=\"SquareType\"><Side>0</Side>"
                              L"</Main><Owner><Street/><City/></Owner>";
    EXPECT_EQ(Write(*drawing), head + L"</Drawing>");
    // A default that breaks the facets is written as the default, unchecked.
    drawing->Scale = 0;
    drawing->Contact = new CContact();
    drawing->Contact->Phone = L"P";
    EXPECT_EQ(Write(*drawing), head + L"<Scale/><Phone>P</Phone></Drawing>");
    drawing->Scale = -1;
    ExpectThrown([&] { Write(*drawing); },
                 NotConverted(L"Drawing", typeid(CQvException), L"Invalid Value for Scale [-1]"));
    drawing->Main = nullptr;
    ExpectThrown([&] { Write(*drawing); },
                 NotConverted(L"Drawing", typeid(CQvInvalidParamException),
                              L"The Property [Main] is mandatory, it may not be NULL"));

    CSmartPtr<CPick> pick = new CPick();
    ExpectThrown([&] { Write(*pick); },
                 NotConverted(L"Pick", typeid(CQvValidationException),
                              L"This element is a choice, and as such must have at one (and only "
                              L"one) valid item, currently there are none set"));
    EXPECT_EQ(Write(*pick, kEmptyChoice), L"<Pick xmlns=\"urn:test:po\"/>");
    pick->Text = L"t";
    EXPECT_EQ(Write(*pick), L"<Pick xmlns=\"urn:test:po\"><B>t</B></Pick>");
    pick->Number = 5; // the first member set wins
    EXPECT_EQ(Write(*pick), L"<Pick xmlns=\"urn:test:po\"><A>5</A></Pick>");
    CSmartPtr<CBag> bag = new CBag();
    bag->Text = L"t";
    bag->Number = 5;
    EXPECT_EQ(Write(*bag), L"<Bag xmlns=\"urn:test:po\"><X>5</X><Y>t</Y></Bag>");
}

// Whether an object can be nil is learnt once per class: a nillable class keeps asking each
// object, a class that is not never writes xsi:nil, whatever was written before, and threads
// writing at the same time agree.
TEST(BindingWrite, NilIsAskedOfEachObjectAcrossThreads) {
    const std::wstring nilChild = L"<Node xmlns=\"urn:test:po\"><Name>1</Name><Child xmlns:AA=\""
                                  L"http://www.w3.org/2001/XMLSchema-instance\" AA:nil=\"true\"/>"
                                  L"</Node>";
    const std::wstring owner = L"<Owner xmlns=\"urn:test:po\"><Street>S</Street><City/></Owner>";
    auto writeMany = [&](int offset) {
        for (int round = 0; round < 40; ++round) {
            CSmartPtr<CAddress> address = Named(new CAddress(), L"Owner");
            address->Street = L"S";
            EXPECT_EQ(Write(*address), owner);
            CSmartPtr<CNode> node = MakeChain(3);
            const bool nil = (round + offset) % 3 == 0;
            node->Child->SetNil(nil);
            EXPECT_EQ(Write(*node), nil ? nilChild : ChainXml(3));
            node->SetNil(true);
            EXPECT_EQ(Write(*node), L"<Node xmlns=\"urn:test:po\" xmlns:AA=\"http://www.w3.org/"
                                    L"2001/XMLSchema-instance\" AA:nil=\"true\"/>");
        }
    };
    writeMany(0);
    std::vector<std::thread> writers;
    for (int i = 0; i < 4; ++i)
        writers.emplace_back(writeMany, i);
    for (std::thread& writer : writers)
        writer.join();
}

// A refused member leaves nothing of its element in the output.
TEST(BindingWrite, Refused) {
    const std::type_info& param = typeid(CQvInvalidParamException);
    const std::wstring start = L"<Order xmlns=\"urn:test:po\"";
    const std::wstring firstTwo = start + L"><Id>1</Id><OrderDate>2026-01-02</OrderDate>";

    struct Case {
        const char* name;
        std::function<void(COrder&)> change;
        Thrown thrown;
        std::wstring written;
    };

    const Case cases[] = {
        {"mandatory primitive unset", [](COrder& o) { o.Id.reset(); },
         NotConverted(L"Order", param, L"The Property [Id] is mandatory, it may not be NULL"),
         start},
        {"mandatory enumeration unset", [](COrder& o) { o.Status.reset(); },
         NotConverted(L"Order", param, L"The Property [Status] is mandatory, it may not be NULL"),
         firstTwo},
        {"mandatory class null", [](COrder& o) { o.ShipTo = nullptr; },
         NotConverted(L"Order", param, L"The Property [ShipTo] is mandatory, it may not be NULL"),
         firstTwo + L"<Status>pending</Status>"},
        {"mandatory pseudo element null", [](COrder& o) { o.Contact = nullptr; },
         NotConverted(L"Order", param, L"The Property [Contact] is mandatory, it may not be NULL"),
         kCore},
        {"minInclusive", [](COrder& o) { o.Id = 0; },
         NotConverted(L"Order", typeid(CQvException), L"Invalid Value for Id [0]"), start},
        {"maxLength", [](COrder& o) { o.Note = L"123456789012345678901"; },
         NotConverted(L"Order", typeid(CQvException),
                      L"Invalid Value for Note [123456789012345678901]."),
         kCore},
        {"pattern in a nested class", [](COrder& o) { o.ShipTo->Zip = L"1234"; },
         NotConverted(L"Order", typeid(CQvValidationException),
                      L"Failed to convert the element [ShipTo] to XML"),
         firstTwo + L"<Status>pending</Status><ShipTo><Street>S</Street><City>C</City>"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        CSmartPtr<COrder> order = MinimalOrder();
        tc.change(*order);
        CTextStream stream;
        CXmlTextWriter writer(stream);
        writer.Open();
        writer.SetFormat(false);
        CSerializationContext ctx;
        ctx.SetDefaultNamespaceURI(kNs);
        ExpectThrown([&] { CXmlObjectBase::ToXml_Int(order, &writer, true, kNs, ctx, false); },
                     tc.thrown);
        EXPECT_EQ(std::wstring(stream.GetText()), tc.written);
    }
}

TEST(BindingWrite, RootExtras) {
    CSerializationContext ctx;
    ctx.GetProcessingInstructions().push_back(L"<?app one?>");
    ctx.GetProcessingInstructions().push_back(L"<?app two?>");
    ctx.GetNamespaceAliases().Add(L"c", L"urn:c");
    ctx.GetNamespaceAliases().Add(L"a", L"urn:a");
    ctx.GetNamespaceAliases().Add(L"b", L"urn:b");
    ctx.SetDefaultNamespaceURI(kNs);
    ctx.SetInLineSchema(L"<xs:schema/>");
    CSmartPtr<CNode> node = MakeChain(2);
    EXPECT_EQ(
        node->ToXml(true, true, EOL_LF, ctx),
        L"<?xml version=\"1.0\"?>\n"
        L"<?app one?>\n\n"
        L"<?app two?>\n\n"
        L"<Node xmlns=\"urn:test:po\" xmlns:a=\"urn:a\" xmlns:b=\"urn:b\" xmlns:c=\"urn:c\" \n"
        L"<xs:schema/>\n"
        L">\n"
        L"\t<Name>1</Name>\n"
        L"\t<Child>\n"
        L"\t\t<Name>2</Name>\n"
        L"\t</Child>\n"
        L"</Node>\n");

    // Aliases name the prefixes; without a default namespace the class's namespace takes its own.
    CSerializationContext aliases;
    aliases.GetNamespaceAliases().Add(L"po", kNs);
    EXPECT_EQ(node->ToXml(false, false, EOL_LF, aliases),
              L"<po:Node xmlns:po=\"urn:test:po\"><po:Name>1</po:Name><po:Child><po:Name>2"
              L"</po:Name></po:Child></po:Node>");
}

namespace {

// Generated setters and getters may refuse a value.
class CStrictOrder : public COrder {
public:
    void AccessProperty(int propertyIndex, bool read, QvVariant& value) override {
        if (propertyIndex == Prop_Contact && read && ShipTo->City == L"no contact")
            throw CQvInvalidStateException(L"Contact unavailable");
        if (propertyIndex == Prop_Note && (read || value.GetString() == L"bad"))
            throw CQvInvalidParamException(L"Note refused");
        COrder::AccessProperty(propertyIndex, read, value);
    }
};

} // namespace

TEST(BindingWrite, AccessorFailures) {
    CSmartPtr<CStrictOrder> order = new CStrictOrder();
    order->FromXml(Write(*MinimalOrder()).c_str());
    ExpectThrown([&] { Write(*order); },
                 NotConverted(L"Order", typeid(CQvValidationException),
                              L"Failed to get the property value for [Note]."));
    order->ShipTo->City = L"no contact";
    ExpectThrown([&] { Write(*order); },
                 Thrown(&typeid(CQvException), L"Failed to convert attributes to XML", L"",
                        &typeid(CQvValidationException),
                        L"Failed to get the property value for [Contact]."));
    ExpectThrown(
        [&] { order->FromXml((std::wstring(kCore) + L"<Note>bad</Note></Order>").c_str()); },
        Thrown(&typeid(CQvException), L"Failed to set the property value.\nPath: /Order/Note",
               L"/Order/Note", &typeid(CQvInvalidParamException), L"Note refused"));
}
