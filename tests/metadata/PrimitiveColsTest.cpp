#include "common/TestUtils.h"

#include <QvXmlLib16/QvXmlLib16.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

using namespace QvXmlLib16;
using qvtest::ExpectThrowMsg;

namespace {

constexpr const wchar_t* kNs = L"urn:x";

// Texts are canonical, so what is read is written back unchanged. The facets let texts[0] in
// and keep refused out; booleans have no facet that refuses anything.
struct SampleData {
    const wchar_t* texts[3];
    const wchar_t* maxInclusive;
    long long maxLength;
    const wchar_t* refused;
    const wchar_t* refusedMessage;
};

template <class C, class I>
struct Sample {
    using Col = C;
    using Item = I;
    static const SampleData kData;

    static typename I::Value Value(int i) {
        return I::Parse(kData.texts[i], CWhitespaceUtils::WhitespaceRule_None);
    }
};

// clang-format off
template <> const SampleData Sample<ChexBinaryCol, HexBinaryItem>::kData = {{L"0AFF", L"00", L"DEADBEEF"}, nullptr, 2, L"ABCDEF", L"Invalid Value for v [ABCDEF]."};
template <> const SampleData Sample<Cbase64BinaryCol, Base64BinaryItem>::kData = {{L"AQI=", L"/w==", L"SGVsbG8="}, nullptr, 2, L"AQID", L"Invalid Value for v [AQID]."};
template <> const SampleData Sample<Ci1Col, I1Item>::kData = {{L"-128", L"5", L"127"}, L"10", -1, L"11", L"Invalid Value for v [11]"};
template <> const SampleData Sample<Ci2Col, I2Item>::kData = {{L"-32768", L"12", L"300"}, L"10", -1, L"11", L"Invalid Value for v [11]"};
template <> const SampleData Sample<Ci4Col, I4Item>::kData = {{L"-3000000000", L"7", L"0"}, L"10", -1, L"11", L"Invalid Value for v [11]"};
template <> const SampleData Sample<Ci8Col, I8Item>::kData = {{L"-9223372036854775808", L"1", L"42"}, L"10", -1, L"11", L"Invalid Value for v [11]."};
template <> const SampleData Sample<Cui1Col, Ui1Item>::kData = {{L"0", L"255", L"9"}, L"10", -1, L"11", L"Invalid Value for v [11]"};
template <> const SampleData Sample<Cui2Col, Ui2Item>::kData = {{L"1", L"65535", L"2"}, L"10", -1, L"11", L"Invalid Value for v [11]"};
template <> const SampleData Sample<Cui4Col, Ui4Item>::kData = {{L"3", L"4294967296", L"0"}, L"10", -1, L"11", L"Invalid Value for v [11]"};
template <> const SampleData Sample<Cui8Col, Ui8Item>::kData = {{L"5", L"18446744073709551615", L"0"}, L"10", -1, L"11", L"Invalid Value for v [11]."};
template <> const SampleData Sample<Cr4Col, R4Item>::kData = {{L"1.5", L"-0.25", L"INF"}, L"10", -1, L"10.5", L"Invalid Value for v [10.500000]"};
template <> const SampleData Sample<Cr8Col, R8Item>::kData = {{L"2.5", L"1e+100", L"-INF"}, L"10", -1, L"10.5", L"Invalid Value for v [10.500000]"};
template <> const SampleData Sample<CdurationCol, DurationItem>::kData = {{L"P1Y2M", L"PT5S", L"-P3D"}, L"P2Y", -1, L"P3Y", L"Invalid Value for v [P3Y]."};
template <> const SampleData Sample<CyearMonthCol, YearMonthItem>::kData = {{L"2024-02", L"1999-12Z", L"0001-01"}, L"2030-01", -1, L"2031-01", L"Invalid Value for v [2031-01]."};
template <> const SampleData Sample<CmonthDayCol, MonthDayItem>::kData = {{L"--02-29", L"--12-31", L"--01-01Z"}, L"--06-30", -1, L"--07-01", L"Invalid Value for v [--07-01]."};
template <> const SampleData Sample<CyearCol, YearItem>::kData = {{L"2024", L"1999", L"9999"}, L"2030", -1, L"2031", L"Invalid Value for v [2031]"};
template <> const SampleData Sample<CmonthCol, MonthItem>::kData = {{L"--05", L"--12", L"--01"}, L"--06", -1, L"--07", L"Invalid Value for v [7]"};
template <> const SampleData Sample<CdayCol, DayItem>::kData = {{L"---07", L"---31", L"---01"}, L"---10", -1, L"---11", L"Invalid Value for v [11]"};
template <> const SampleData Sample<CdateCol, DateItem>::kData = {{L"2024-02-29", L"1999-12-31Z", L"2000-01-01+02:00"}, L"2030-01-01", -1, L"2031-01-01", L"Invalid Value for v [2031-01-01]."};
template <> const SampleData Sample<CdatetimeCol, DatetimeItem>::kData = {{L"2024-02-29T12:30:00", L"1999-12-31T23:59:59.5Z", L"2000-01-01T00:00:00-05:00"}, L"2030-01-01T00:00:00", -1, L"2031-01-01T00:00:00", L"Invalid Value for v [2031-01-01T00:00:00]."};
template <> const SampleData Sample<CtimeCol, TimeItem>::kData = {{L"12:30:00", L"23:59:59Z", L"00:00:01.25"}, L"13:00:00", -1, L"14:00:00", L"Invalid Value for v [14:00:00]."};
template <> const SampleData Sample<CstringCol, StringItem>::kData = {{L"a b", L"  x  ", L"z"}, nullptr, 3, L"abcd", L"Invalid Value for v [abcd]."};
template <> const SampleData Sample<CbooleanCol, BooleanItem>::kData = {{L"true", L"false", L"true"}, nullptr, -1, nullptr, nullptr};
template <> const SampleData Sample<CdecimalCol, DecimalItem>::kData = {{L"1.5", L"-0.25", L"100"}, L"10", -1, L"10.5", L"Invalid Value for v [10.5]."};
template <> const SampleData Sample<CintegerCol, IntegerItem>::kData = {{L"-1", L"123456789012345678901234567890", L"0"}, L"10", -1, L"11", L"Invalid Value for v [11]."};

// clang-format on

// Keeps what each event said, copying the value or index its data points to while the
// pointer is still valid.
template <class Value>
struct Recorder : IEventSink {
    struct Event {
        MsgType type;
        Value value{};
        int index = 0;
    };

    std::vector<Event> events;

    void OnEvent(CXmlObjectBase*, MsgType type, void* data) override {
        Event e{type};
        if (type == MsgType_CollectionAdd || type == MsgType_CollectionAddComplete)
            e.value = *static_cast<Value*>(data);
        else if (type == MsgType_CollectionRemove || type == MsgType_CollectionRemoveComplete)
            e.index = *static_cast<int*>(data);
        else
            EXPECT_EQ(data, nullptr);
        events.push_back(e);
    }

    std::vector<IEventSink::MsgType> Types() const {
        std::vector<IEventSink::MsgType> out;
        for (const Event& e : events)
            out.push_back(e.type);
        return out;
    }
};

// Writes the collection inside <r xmlns="urn:x"> and returns the text.
std::wstring WriteInRoot(const CXmlCollectionBase& col,
                         const CSerializationContext& ctx = CSerializationContext()) {
    CTextStream stream(Encoding_UTF8);
    CXmlTextWriter writer(stream);
    writer.Open();
    writer.SetDefaultNamespace(kNs);
    writer.WriteStartElement(L"r", kNs);
    CXmlObjectBase::ToXml_Int(&col, &writer, false, kNs, ctx, false);
    writer.WriteEndElement();
    return stream.GetText();
}

template <class S>
class PrimitiveCols : public ::testing::Test {
protected:
    using Col = typename S::Col;
    using Value = typename S::Item::Value;

    static Value V(int i) { return S::Value(i); }

    static std::wstring T(int i) { return S::kData.texts[i]; }

    // The samples at these indexes, and the items of col, for comparing whole collections.
    static std::vector<Value> Vs(std::initializer_list<int> indexes) {
        std::vector<Value> out;
        for (int i : indexes)
            out.push_back(V(i));
        return out;
    }

    static std::vector<Value> Items(const Col& col) {
        std::vector<Value> out;
        for (int i = 0; i < col.GetCount(); ++i)
            out.push_back(col.Item(i));
        return out;
    }
};

using SampleTypes = ::testing::Types<
    Sample<ChexBinaryCol, HexBinaryItem>, Sample<Cbase64BinaryCol, Base64BinaryItem>,
    Sample<Ci1Col, I1Item>, Sample<Ci2Col, I2Item>, Sample<Ci4Col, I4Item>, Sample<Ci8Col, I8Item>,
    Sample<Cui1Col, Ui1Item>, Sample<Cui2Col, Ui2Item>, Sample<Cui4Col, Ui4Item>,
    Sample<Cui8Col, Ui8Item>, Sample<Cr4Col, R4Item>, Sample<Cr8Col, R8Item>,
    Sample<CdurationCol, DurationItem>, Sample<CyearMonthCol, YearMonthItem>,
    Sample<CmonthDayCol, MonthDayItem>, Sample<CyearCol, YearItem>, Sample<CmonthCol, MonthItem>,
    Sample<CdayCol, DayItem>, Sample<CdateCol, DateItem>, Sample<CdatetimeCol, DatetimeItem>,
    Sample<CtimeCol, TimeItem>, Sample<CstringCol, StringItem>, Sample<CbooleanCol, BooleanItem>,
    Sample<CdecimalCol, DecimalItem>, Sample<CintegerCol, IntegerItem>>;
TYPED_TEST_SUITE(PrimitiveCols, SampleTypes);

TYPED_TEST(PrimitiveCols, AddInsertRemoveKeepOrder) {
    typename TestFixture::Col col(L"v", kNs, 0, -1, nullptr, -1, -1, nullptr, nullptr, nullptr,
                                  nullptr, -1, -1, -1, CWhitespaceUtils::WhitespaceRule_Collapse);
    EXPECT_EQ(col.GetItemType(), TypeParam::Item::kType);
    col.Add(this->V(0));
    col.Add(this->V(1));
    col.AddAt(1, this->V(2));
    col.AddFromString(L" \t" + this->T(2) + L"\r\n "); // the rule applies to text only
    col.AddAt(4, this->V(0));                          // count itself appends
    EXPECT_TRUE(this->Items(col) == this->Vs({0, 2, 1, 2, 0}));
    col.Remove(1);
    col.Remove(2);
    EXPECT_TRUE(this->Items(col) == this->Vs({0, 1, 0}));
    col.Clear();
    EXPECT_EQ(col.GetCount(), 0);
}

// A refused index changes nothing, though add and remove events have gone out by then; Clear
// speaks once, and only when something goes.
TYPED_TEST(PrimitiveCols, EventsAndRefusedIndexes) {
    typename TestFixture::Col col(L"v", kNs, 0, -1);
    Recorder<typename TestFixture::Value> recorder;
    col.AddEventListener(&recorder);
    col.Clear();
    for (int i = 0; i < 3; ++i)
        col.Add(this->V(i));
    col.Remove(0);
    const auto refuse = [&](const std::function<void()>& call, const wchar_t* message) {
        ExpectThrowMsg<CQvInvalidParamException>(call, message);
    };
    refuse([&] { col.AddAt(-1, this->V(0)); }, L"Index out of range");
    refuse([&] { col.AddAt(3, this->V(0)); }, L"Index out of range");
    refuse([&] { col.Item(2); }, L"Index 2 is out of range, use 0 - 2");
    refuse([&] { col.Item(-1); }, L"Index -1 is out of range, use 0 - 2");
    refuse([&] { col.Remove(2); }, L"Index 2 is out of range, use 0 - 2");
    EXPECT_TRUE(this->Items(col) == this->Vs({1, 2}));
    col.Clear();

    using M = IEventSink::MsgType;
    std::vector<M> expected;
    for (int i = 0; i < 3; ++i)
        expected.insert(expected.end(), {M::MsgType_CollectionAdd, M::MsgType_CollectionAddComplete,
                                         M::MsgType_CollectionChange});
    expected.insert(expected.end(),
                    {M::MsgType_CollectionRemove, M::MsgType_CollectionRemoveComplete,
                     M::MsgType_CollectionChange, M::MsgType_CollectionAdd,
                     M::MsgType_CollectionAdd, M::MsgType_CollectionRemove,
                     M::MsgType_CollectionChange});
    ASSERT_EQ(recorder.Types(), expected);
    EXPECT_TRUE(recorder.events[3].value == this->V(1));
    EXPECT_TRUE(recorder.events[4].value == this->V(1));
    EXPECT_EQ(recorder.events[9].index, 0);
    EXPECT_EQ(recorder.events[10].index, 0);
    EXPECT_TRUE(recorder.events[12].value == this->V(0));
    EXPECT_EQ(recorder.events[14].index, 2);
}

TYPED_TEST(PrimitiveCols, FacetsRefuseAValueAndLeaveTheCollectionAlone) {
    const SampleData& d = TypeParam::kData;
    if (!d.refused)
        GTEST_SKIP() << "no facet refuses a boolean";
    typename TestFixture::Col col(L"v", kNs, 0, -1, nullptr, -1, d.maxLength, nullptr,
                                  d.maxInclusive);
    col.Add(this->V(0));
    const auto refused = TypeParam::Item::Parse(d.refused, CWhitespaceUtils::WhitespaceRule_None);
    ExpectThrowMsg<CQvException>([&] { col.Add(refused); }, d.refusedMessage);
    ExpectThrowMsg<CQvException>([&] { col.AddAt(0, refused); }, d.refusedMessage);
    ExpectThrowMsg<CQvException>([&] { col.AddFromString(d.refused); }, d.refusedMessage);
    EXPECT_TRUE(this->Items(col) == this->Vs({0}));
}

TYPED_TEST(PrimitiveCols, ReadsARunOfElementsAndWritesItBack) {
    const std::wstring items =
        L"<v>" + this->T(0) + L"</v><v>" + this->T(1) + L"</v><v>" + this->T(2) + L"</v>";
    CXmlDocument document;
    document.LoadXml(
        (L"<r xmlns='urn:x'>" + items + L"<v xmlns='urn:y'>" + this->T(0) + L"</v></r>").c_str());
    CXmlElement* root = document.GetDocumentElement();
    typename TestFixture::Col col(L"v", kNs, 0, -1);
    CSerializationContext ctx;
    CXmlElement* rest =
        CXmlObjectBase::FromXml_Int(&col, root, root->GetFirstElement(), ctx, false);
    ASSERT_NE(rest, nullptr);
    EXPECT_EQ(rest->GetNamespaceURI(), L"urn:y"); // a foreign namespace ends the run
    EXPECT_TRUE(this->Items(col) == this->Vs({0, 1, 2}));
    EXPECT_EQ(WriteInRoot(col), L"<r xmlns=\"urn:x\">\n\t<v>" + this->T(0) + L"</v>\n\t<v>"
                                    + this->T(1) + L"</v>\n\t<v>" + this->T(2) + L"</v>\n</r>\n");
}

// Kinds are tested before anything else: nobody hears of a refused date.
TEST(PrimitiveCols, DateCollectionsRefuseOtherKinds) {
    const CDateTime dateTime = CConversions::datetimeFromString(L"2024-02-29T12:00:00", {});
    const CDateTime date = CConversions::dateFromString(L"2024-02-29", {});
    const CDateTime monthDay = CConversions::monthDayFromString(L"--02-29", {});
    const CDateTime yearMonth = CConversions::yearMonthFromString(L"2024-02", {});
    const CDateTime time = CConversions::timeFromString(L"12:00:00", {});

    struct Case {
        const char* name;
        std::function<CdatetimeBaseCol*()> make;
        CDateTime wrong;
        CDateTime right;
        const wchar_t* message;
    };

    const Case cases[] = {
        {"date", [] { return new CdateCol(L"v", kNs, 0, -1); }, dateTime, date,
         L"Dates added to this collection must be of type dt_date"},
        {"dateTime", [] { return new CdatetimeCol(L"v", kNs, 0, -1); }, date, dateTime,
         L"Dates added to this collection must be of type dt_dateTime"},
        {"time", [] { return new CtimeCol(L"v", kNs, 0, -1); }, dateTime, time,
         L"Dates added to this collection must be of type dt_time"},
        {"gMonthDay", [] { return new CmonthDayCol(L"v", kNs, 0, -1); }, yearMonth, monthDay,
         L"Dates added to this collection must be of type dt_gMonthDay"},
        {"gYearMonth", [] { return new CyearMonthCol(L"v", kNs, 0, -1); }, monthDay, yearMonth,
         L"Dates added to this collection must be of type dt_gYearMonth"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        std::unique_ptr<CdatetimeBaseCol> col(tc.make());
        Recorder<CDateTime> recorder;
        col->AddEventListener(&recorder);
        // Through the base: the add operation is virtual.
        ExpectThrowMsg<CQvInvalidParamException>([&] { col->Add(tc.wrong); }, tc.message);
        ExpectThrowMsg<CQvInvalidParamException>([&] { col->AddAt(5, tc.wrong); }, tc.message);
        EXPECT_TRUE(recorder.events.empty());
        col->Add(tc.right);
        ASSERT_EQ(col->GetCount(), 1);
        EXPECT_TRUE(col->Item(0) == tc.right);
    }
}

TEST(PrimitiveCols, BadTextIsRefusedWithTheParserMessage) {
    Ci4Col col(L"v", kNs, 0, -1);
    ExpectThrowMsg<CQvInvalidValueException>([&] { col.AddFromString(L"12a"); },
                                             L"The value [12a] can not be converted to a i4");
    // Without a rule the text is taken as it stands.
    ExpectThrowMsg<CQvInvalidValueException>([&] { col.AddFromString(L"5 "); },
                                             L"The value [5 ] can not be converted to a i4");
    EXPECT_EQ(col.GetCount(), 0);
}

TEST(PrimitiveCols, WritingChecksTheCountFirst) {
    Ci4Col atLeastOne(L"v", kNs, 1, 2);
    ExpectThrowMsg<CQvValidationException>(
        [&] { WriteInRoot(atLeastOne); },
        L"The Minimum number of [v] elements allowed in this collection is 1");
    Ci4Col atMostTwo(L"v", kNs, 1, 2);
    for (long v : {1L, 2L, 3L})
        atMostTwo.Add(v);
    ExpectThrowMsg<CQvValidationException>(
        [&] { WriteInRoot(atMostTwo); },
        L"The Maximum number of [v] elements allowed in this collection is 2");
    CSerializationContext relaxed;
    relaxed.SetIgnoreInvalidCollectionCounts(true);
    EXPECT_EQ(WriteInRoot(atMostTwo, relaxed),
              L"<r xmlns=\"urn:x\">\n\t<v>1</v>\n\t<v>2</v>\n\t<v>3</v>\n</r>\n");
    EXPECT_EQ(WriteInRoot(atLeastOne, relaxed), L"<r xmlns=\"urn:x\"/>\n");
}

TEST(PrimitiveCols, ItemsTakeTheCollectionsNamespaceAndNumberFormat) {
    Cr8Col reals(L"w", L"urn:other", 0, -1, nullptr, -1, -1, nullptr, nullptr, nullptr, nullptr, -1,
                 -1, -1, CWhitespaceUtils::WhitespaceRule_Collapse, L"%.2f");
    reals.Add(1.5);
    CdecimalCol decimals(L"d", kNs, 0, -1, nullptr, -1, -1, nullptr, nullptr, nullptr, nullptr, -1,
                         -1, -1, CWhitespaceUtils::WhitespaceRule_Collapse, L"3");
    decimals.Add(CDecimal(L"2.5"));
    EXPECT_EQ(WriteInRoot(reals), L"<r xmlns=\"urn:x\">\n\t<AA:w xmlns:AA=\"urn:other\">1.50"
                                  L"</AA:w>\n</r>\n");
    EXPECT_EQ(WriteInRoot(decimals), L"<r xmlns=\"urn:x\">\n\t<d>2.500</d>\n</r>\n");
}

} // namespace
