#include "binding-fixtures/DrawingBinding.h"
#include "binding-fixtures/ExpectThrown.h"
#include "binding-fixtures/GroupBinding.h"
#include "binding-fixtures/NodeBinding.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>

using namespace fixtures;

namespace {

const wchar_t kFirst[] = L"<Id>1</Id><OrderDate>2026-01-02</OrderDate><Status>pending</Status>";
const wchar_t kShipTo[] = L"<ShipTo><Street>S</Street><City>C</City></ShipTo>";
const wchar_t kOrder[] = L"<Order xmlns=\"urn:test:po\"><Id>1</Id><OrderDate>2026-01-02</OrderDate>"
                         L"<Status>pending</Status><ShipTo><Street>S</Street><City>C</City>"
                         L"</ShipTo><Phone>P</Phone></Order>";

// body inside <root>, in the test namespace, with the prefix xsi declared.
std::wstring Doc(const std::wstring& root, const std::wstring& body) {
    return L"<" + root + L" xmlns=\"urn:test:po\" xmlns:xsi=\"http://www.w3.org/2001/"
           + L"XMLSchema-instance\">" + body + L"</" + root + L">";
}

std::wstring Rewrite(const CXmlObjectBase& object) {
    CSerializationContext ctx;
    ctx.SetDefaultNamespaceURI(kNs);
    return object.ToXml(false, false, EOL_LF, ctx);
}

enum Option {
    kNone = 0,
    kSkipUnknown = 1,
    kSkipMissing = 2,
    kAnyAttribute = 4,
    kAnyNs = 8,
    kNoNsProcessing = 16,
    kEmptyChoice = 32
};

CSerializationContext Context(int options) {
    CSerializationContext ctx;
    ctx.SetIgnoreUnknownElements(options & kSkipUnknown);
    ctx.SetIgnoreMissingMandatoryElements(options & kSkipMissing);
    ctx.SetIgnoreUnknownAttributes(options & kAnyAttribute);
    ctx.SetIgnoreNamespaces(options & kAnyNs);
    ctx.SetSchemaType(options & kNoNsProcessing ? SchemaType_NoNamespaces : SchemaType_Default);
    ctx.SetIgnoreMissingChoice(options & kEmptyChoice);
    return ctx;
}

// An error located at path, as the elements above the failing one pass it on.
Thrown At(const std::wstring& message, const std::wstring& path) {
    return Thrown(&typeid(CQvException), message + L"\nPath: " + path, path);
}

Thrown Missing(const std::wstring& element, const std::wstring& path) {
    return At(L"Failed to find the required child element [" + element + L"].", path);
}

Thrown Leftover(const std::wstring& parent, const std::wstring& element, const std::wstring& path) {
    return At(L"Failed read all the elements held within the element [" + parent
                  + L"]. The unexpected element [" + element + L"] remains un processed",
              path);
}

// A value that does not convert, reported at the element whose member it is.
Thrown BadValue(const std::wstring& path, const std::wstring& inner) {
    return Thrown(&typeid(CQvValidationException), L"Failed to process the element.\nPath: " + path,
                  path, &typeid(CQvInvalidValueException), inner);
}

} // namespace

TEST(BindingRead, OrderAccepted) {
    const std::wstring m = kFirst + std::wstring(kShipTo);

    struct Case {
        const char* name;
        std::wstring xml;
        int options;
        std::function<void(const COrder&)> check;
    };

    const auto same = [](const COrder& o) { EXPECT_EQ(Rewrite(o), kOrder); };
    const Case cases[] = {
        {"another root name is kept", Doc(L"Purchase", m + L"<Phone>P</Phone>"), kNone,
         [](const COrder& o) { EXPECT_EQ(o.GetElementName(), L"Purchase"); }},
        {"nil on a nillable primitive leaves it unset",
         Doc(L"Order", m + L"<Note xsi:nil=\"true\">x</Note><Phone>P</Phone>"), kNone,
         [](const COrder& o) { EXPECT_FALSE(o.Note.has_value() || o.NoteIsNil); }},
        {"nil false on non-nillable members",
         Doc(L"Order", L"<Id xsi:nil=\"FALSE\">7</Id><OrderDate xsi:nil=\"0\">2026-01-02"
                       L"</OrderDate><Status xsi:nil=\"false\">shipped</Status><ShipTo><Street/>"
                       L"<City/></ShipTo><Phone>P</Phone>"),
         kNone, [](const COrder& o) { EXPECT_EQ(o.Id, 7); }},
        {"nil TRUE on a nillable class",
         Doc(L"Order", m + L"<Phone>P</Phone><Comment xsi:nil=\"TRUE\">dropped</Comment>"), kNone,
         [](const COrder& o) {
             EXPECT_TRUE(o.Comment->IsNil());
             EXPECT_EQ(o.Comment->Value, L"");
         }},
        {"nil 0 on a nillable class",
         Doc(L"Order", m + L"<Phone>P</Phone><Comment xsi:nil=\"0\"> hi </Comment>"), kNone,
         [](const COrder& o) { EXPECT_EQ(o.Comment->Value, L" hi "); }},
        {"own nil output",
         L"<Order xmlns=\"urn:test:po\">" + m
             + L"<Note xmlns:AA=\"http://www.w3.org/2001/"
               L"XMLSchema-instance\" AA:nil=\"true\"/><Phone>P</Phone></Order>",
         kNone, [](const COrder& o) { EXPECT_FALSE(o.Note.has_value()); }},
        {"empty elements take their default",
         Doc(L"Order", m + L"<Note/><Priority/><Total></Total><Phone>P</Phone>"), kNone,
         [](const COrder& o) {
             EXPECT_EQ(o.Note, L""); // no default: the empty text itself
             EXPECT_EQ(o.Priority, Priority_normal);
             EXPECT_EQ(o.Total->ToString(), L"0");
         }},
        {"whitespace rules",
         Doc(L"Order", L"<Id> 1 </Id><OrderDate>2026-01-02</OrderDate><Status>pending</Status>"
                       L"<ShipTo><Street> S  s </Street><City/></ShipTo><Phone> 1  2 </Phone>"),
         kNone,
         [](const COrder& o) {
             EXPECT_EQ(o.ShipTo->Street, L" S  s ");
             EXPECT_EQ(o.Contact->Phone, L"1 2");
         }},
        {"abstract member by prefixed xsi:type",
         Doc(L"Order", m
                           + L"<Shape xmlns:p=\"urn:test:po\" xsi:type=\"p:SquareType\"><Side>2"
                             L"</Side></Shape><Phone>P</Phone><Email>E</Email>"),
         kNone,
         [](const COrder& o) {
             ASSERT_NE(dynamic_cast<const CSquare*>(o.Shape.Ptr()), nullptr);
             EXPECT_EQ(static_cast<const CSquare&>(*o.Shape).Side, 2);
             EXPECT_EQ(o.Shape->GetElementName(), L"Shape");
             EXPECT_EQ(o.Contact->Email, L"E");
         }},
        {"unknown elements ignored",
         Doc(L"Order", L"<Lead><Id>9</Id></Lead><Id>1</Id><OrderDate>2026-01-02</OrderDate>"
                       L"<Status>pending</Status><ShipTo><Street>S</Street><Floor/><City>C"
                       L"</City><Floor/></ShipTo><Extra/><Shape xsi:type=\"TriangleType\"/>"
                       L"<Phone>P</Phone><Extra/>"),
         kSkipUnknown, same},
        {"missing mandatory elements ignored", Doc(L"Order", L"<Status>shipped</Status><ShipTo/>"),
         kSkipMissing,
         [](const COrder& o) {
             EXPECT_FALSE(o.Id.has_value());
             EXPECT_EQ(o.Status, Status_shipped);
             EXPECT_EQ(o.Contact->Phone, L"");
         }},
        {"unknown attributes ignored",
         L"<Order xmlns=\"urn:test:po\" flag=\"1\"><Id unit=\"x\">1</Id><OrderDate>2026-01-02"
         L"</OrderDate><Status>pending</Status>"
             + std::wstring(kShipTo) + L"<Phone>P</Phone></Order>",
         kAnyAttribute, same},
        {"namespaces ignored", L"<Order xmlns=\"urn:other\">" + m + L"<Phone>P</Phone></Order>",
         kAnyNs, same},
        {"no namespace processing",
         L"<p:Order xmlns:p=\"urn:other\"><p:Id>1</p:Id><p:OrderDate>2026-01-02</p:OrderDate>"
         L"<p:Status>pending</p:Status><p:ShipTo><p:Street>S</p:Street><p:City>C</p:City>"
         L"</p:ShipTo><p:Phone>P</p:Phone></p:Order>",
         kNoNsProcessing, same},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        CSmartPtr<COrder> order = new COrder();
        order->FromXml(tc.xml.c_str(), Context(tc.options));
        tc.check(*order);
    }
}

TEST(BindingRead, OtherClassesAccepted) {
    const std::wstring mainAndOwner = L"<Main xsi:type=\"CircleType\"><Radius>1.5</Radius></Main>"
                                      L"<Owner><Street>S</Street><City>C</City></Owner>";
    CSmartPtr<CDrawing> drawing = new CDrawing();
    drawing->FromXml(Doc(L"Drawing", mainAndOwner + L"<Scale/><Phone>P</Phone>").c_str());
    ASSERT_NE(dynamic_cast<const CCircle*>(drawing->Main.Ptr()), nullptr);
    EXPECT_EQ(drawing->Owner->GetElementName(), L"Owner"); // made by the factory
    EXPECT_EQ(drawing->Scale, 0);
    EXPECT_EQ(drawing->Contact->Phone, L"P");
    // An optional pseudo element that takes nothing stays null.
    drawing->FromXml(Doc(L"Drawing", mainAndOwner).c_str());
    EXPECT_TRUE(drawing->Contact.IsNull());

    struct Case {
        const char* name;
        CSmartPtr<CTwoMembers> object;
        const wchar_t* body;
        int options;
        std::optional<long> number;
        std::optional<std::wstring> text;
    };

    const Case cases[] = {
        {"choice", new CPick(), L"<B>t</B>", kNone, {}, L"t"},
        {"choice among unknown elements", new CPick(), L"<C/><A>3</A><D/>", kSkipUnknown, 3, {}},
        {"empty choice accepted", new CPick(), L"", kEmptyChoice, {}, {}},
        {"all group in any order", new CBag(), L"<Y>t</Y><X>5</X>", kNone, 5, L"t"},
        {"all group, one member", new CBag(), L"<Y>t</Y>", kNone, {}, L"t"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        tc.object->FromXml(Doc(tc.object->GetElementName(), tc.body).c_str(), Context(tc.options));
        EXPECT_EQ(tc.object->Number, tc.number);
        EXPECT_EQ(tc.object->Text, tc.text);
    }
}

TEST(BindingRead, Refused) {
    const std::wstring first = kFirst, m = kFirst + std::wstring(kShipTo);
    const std::wstring noMain = L"Failed to find a suitable substitution element for [Main].";

    struct Case {
        const char* name;
        std::wstring xml;
        int options;
        Thrown thrown;
        const wchar_t* target = L"Order";
    };

    const Case cases[] = {
        {"mandatory primitive missing", Doc(L"Order", L"<OrderDate>2026-01-02</OrderDate>"), kNone,
         Missing(L"Id", L"/Order")},
        {"unknown element before a mandatory one", Doc(L"Order", L"<Id>1</Id><X/><OrderDate/>"),
         kNone, Missing(L"OrderDate", L"/Order")},
        {"unknown elements skipped till the end", Doc(L"Order", L"<Id>1</Id><X/>"), kSkipUnknown,
         Missing(L"OrderDate", L"/Order")},
        {"leftover element", Doc(L"Order", m + L"<Phone>P</Phone><Extra/>"), kNone,
         Leftover(L"Order", L"Extra", L"/Order")},
        {"leftover element in a class",
         Doc(L"Order", first + L"<ShipTo><Street>S</Street><City>C</City><Floor/></ShipTo>"), kNone,
         Leftover(L"ShipTo", L"Floor", L"/Order/ShipTo")},
        {"member in another namespace", Doc(L"Order", L"<Id xmlns=\"urn:x\">1</Id>"), kNone,
         Missing(L"Id", L"/Order")},
        {"document in another namespace", L"<p:Order xmlns:p=\"urn:x\"><p:Id>1</p:Id></p:Order>",
         kNone, Missing(L"Id", L"/p:Order")},
        {"member of the first of two classes missing",
         Doc(L"Order", first + L"<ShipTo><Street>S</Street></ShipTo><ShipTo/>"), kSkipUnknown,
         Missing(L"City", L"/Order/ShipTo[1]")},
        {"pseudo element missing", Doc(L"Order", m), kNone, Missing(L"Contact", L"/Order")},
        {"member of an abstract member missing",
         Doc(L"Order", m + L"<Shape xsi:type=\"CircleType\"/><Phone>P</Phone>"), kNone,
         Missing(L"Radius", L"/Order/Shape")},
        {"ill-formed number", Doc(L"Order", L"<Id>1O</Id>"), kNone,
         BadValue(L"/Order", L"The value [1O] can not be converted to a i4")},
        {"unknown enumeration value",
         Doc(L"Order", L"<Id>1</Id><OrderDate>2026-01-02</OrderDate><Status>lost</Status>"), kNone,
         BadValue(L"/Order", L"Invalid Status value [lost]")},
        {"ill-formed number in a nested class",
         Doc(L"Order", m + L"<Shape xsi:type=\"CircleType\"><Radius>wide</Radius></Shape>"), kNone,
         Thrown(&typeid(CQvException), L"Failed to process the element.\nPath: /Order/Shape",
                L"/Order/Shape", &typeid(CQvInvalidValueException),
                L"The value [wide] can not be converted to a r8")},
        {"nil on a non-nillable primitive", Doc(L"Order", L"<Id xsi:nil=\"true\"/>"), kNone,
         At(L"Invalid use of 'nil' attribute in non-nillable element.", L"/Order/Id")},
        {"nil yes on a non-nillable primitive", Doc(L"Order", L"<Id xsi:nil=\"yes\"/>"), kNone,
         At(L"Invalid use of 'nil' attribute in non-nillable element.", L"/Order/Id")},
        {"nil yes on a nillable primitive", Doc(L"Order", m + L"<Note xsi:nil=\"yes\"/>"), kNone,
         At(L"Unexpected Value [yes] for 'nil' Attribute found.", L"/Order/Note/@xsi:nil")},
        {"nil on a non-nillable class",
         L"<Order xmlns:i=\"http://www.w3.org/2001/XMLSchema-instance\" i:nil=\"1\"/>", kNone,
         At(L"Invalid use of 'nil' attribute in non-nillable element.", L"/Order")},
        {"nil yes on a nillable class",
         Doc(L"Order", m + L"<Phone>P</Phone><Comment xsi:nil=\"yes\"/>"), kNone,
         At(L"Unexpected Value [yes] for 'nil' Attribute found.", L"/Order/Comment/@xsi:nil")},
        {"unknown attribute on a class", L"<Order flag=\"1\"/>", kNone,
         At(L"Unexpected Attribute found.", L"/Order/@flag")},
        {"unknown attribute on a primitive", Doc(L"Order", L"<Id unit=\"x\">1</Id>"), kNone,
         At(L"Unexpected Attribute found.", L"/Order/Id/@unit")},
        // The factory declines it, so it stays in the way of what follows.
        {"optional abstract member of unknown type",
         Doc(L"Order", m + L"<Shape xsi:type=\"TriangleType\"/><Phone>P</Phone>"), kNone,
         Missing(L"Contact", L"/Order")},
        {"abstract member of unknown type", Doc(L"Drawing", L"<Main/>"), kNone,
         At(noMain, L"/Drawing"), L"Drawing"},
        {"abstract member missing", Doc(L"Drawing", L"<Owner/>"), kSkipUnknown,
         At(noMain, L"/Drawing"), L"Drawing"},
        {"second member of a choice", Doc(L"Pick", L"<A>1</A><B>t</B>"), kNone,
         Leftover(L"Pick", L"B", L"/Pick"), L"Pick"},
        {"empty choice", Doc(L"Pick", L"<C/>"), kNone,
         At(L"No child elements within the element [Pick] were populated. The element represents "
            L"a choice, so one and only one element should be populated. The element contained "
            L"no sutable child elements",
            L"/Pick"),
         L"Pick"},
        {"leftover element in an all group", Doc(L"Bag", L"<X>1</X><Z/><Y>t</Y>"), kNone,
         Leftover(L"Bag", L"Z", L"/Bag"), L"Bag"},
        {"truncated", L"<Order xmlns=\"urn:test:po\"><Id>4", kNone,
         Thrown(&typeid(CQvException), L"no element found at line 1", L"")},
        {"not XML", L"Order: 1", kNone,
         Thrown(&typeid(CQvException), L"syntax error at line 1", L"")},
    };
    const CSmartPtr<CXmlObjectBase> order = new COrder(), drawing = new CDrawing(),
                                    pick = new CPick(), bag = new CBag();
    // Each object and a document it reads without complaint.
    const std::map<std::wstring, std::pair<CXmlObjectBase*, std::wstring>> targets = {
        {L"Order", {order, kOrder}},
        {L"Drawing",
         {drawing, L"<Drawing xmlns=\"urn:test:po\"><Main xmlns:AA=\"http://www.w3.org/2001/"
                   L"XMLSchema-instance\" AA:type=\"SquareType\"><Side>1</Side></Main><Owner>"
                   L"<Street>S</Street><City>C</City></Owner></Drawing>"}},
        {L"Pick", {pick, L"<Pick xmlns=\"urn:test:po\"><B>t</B></Pick>"}},
        {L"Bag", {bag, L"<Bag xmlns=\"urn:test:po\"><X>1</X><Y>t</Y></Bag>"}},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        const auto& [object, good] = targets.at(tc.target);
        ExpectThrown([&] { object->FromXml(tc.xml.c_str(), Context(tc.options)); }, tc.thrown);
        // The object reads again as if nothing had happened.
        object->FromXml(good.c_str());
        EXPECT_EQ(Rewrite(*object), good);
    }
}

// Each level of a document is one level of binding: 1000 are read, the 1001st is refused where
// it stands.
TEST(BindingRead, NestingLimit) {
    CSmartPtr<CNode> node = new CNode();
    std::wstring path = L"/Node";
    for (int level = 2; level <= 1001; ++level)
        path += L"/Child";
    ExpectThrown([&] { node->FromXml(ChainXml(1001).c_str()); },
                 At(L"Element nesting is deeper than 1000 levels.", path));
    node->FromXml(ChainXml(1000).c_str());
    EXPECT_EQ(Rewrite(*node), ChainXml(1000));

    // Writing is refused the same way; no element path exists there.
    try {
        MakeChain(1001)->ToXml();
        ADD_FAILURE() << "a chain of 1001 was written";
    } catch (const CQvException& e) {
        EXPECT_EQ(e.GetMessage(), L"Failed to convert the element [Node] to XML");
        const CQvException* innermost = &e;
        int wrapped = 0;
        for (; innermost->GetInnerException(); innermost = innermost->GetInnerException())
            ++wrapped;
        EXPECT_EQ(wrapped, 1000);
        EXPECT_EQ(innermost->GetMessage(), L"Element nesting is deeper than 1000 levels.");
    }
}
