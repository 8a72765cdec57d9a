#include "common/TestUtils.h"

#include <QvXmlLib16/Variant.h>

#include <functional>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

using namespace QvXmlLib16;
using qvtest::ExpectThrowMsg;

namespace {

constexpr auto kNone = CWhitespaceUtils::WhitespaceRule_None;
constexpr auto kCollapse = CWhitespaceUtils::WhitespaceRule_Collapse;

CDateTime Date(const wchar_t* text) {
    CDateTime value;
    value.ParseXSDDate(text);
    return value;
}

CDateTime Time(const wchar_t* text) {
    CDateTime value;
    value.ParseXSDTime(text);
    return value;
}

CDateTimeSpan Span(const wchar_t* text) {
    CDateTimeSpan value;
    value.ParseXSDDuration(text);
    return value;
}

CBinaryData Bytes(std::initializer_list<int> values) {
    std::vector<unsigned char> bytes = qvtest::Bytes(values);
    return CBinaryData(bytes.data(), static_cast<unsigned long>(bytes.size()), false);
}

} // namespace

TEST(QvVariant, NilAndInvalidStates) {
    QvVariant v;
    EXPECT_FALSE(v.IsValid());
    EXPECT_FALSE(v.IsNil());
    EXPECT_EQ(v.GetItemType(), ItemType_Invalid);
    v.SetNil(); // nil without a type is still valid
    EXPECT_TRUE(v.IsValid());
    EXPECT_EQ(v.ToString(), L"");

    v.SetString(L"text");
    EXPECT_FALSE(v.IsNil()); // a setter clears the nil flag
    v.SetNil();
    EXPECT_TRUE(v.IsNil());
    EXPECT_EQ(v.GetItemType(), ItemType_string);
    EXPECT_EQ(v.ToString(), L"");
    EXPECT_EQ(v.GetString(), L""); // the value went with the nil
    v.SetI4(-3);
    v.SetNil();
    EXPECT_EQ(v.GetI4(), 0);

    v.SetInvalid();
    EXPECT_FALSE(v.IsValid());
    EXPECT_FALSE(v.IsNil());
    EXPECT_EQ(v.GetItemType(), ItemType_Invalid);
    v.SetDecimal(CDecimal(L"1.5"));
    v.Clear();
    EXPECT_FALSE(v.IsValid());
}

TEST(QvVariant, SettersTagTheValue) {
    struct Case {
        const char* name;
        std::function<void(QvVariant&)> set;
        ItemType type;
        const wchar_t* typeName;
        const wchar_t* text;
    };

    const Case cases[] = {
        {"hexBinary",
         [](QvVariant& v) {
             v.SetHexBinary(Bytes({1, 0xAB}));
         },
         ItemType_hexBinary, L"hexBinary", L"01AB"},
        {"base64Binary",
         [](QvVariant& v) {
             v.SetBase64Binary(Bytes({1, 2, 3}));
         },
         ItemType_base64Binary, L"base64Binary", L"AQID"},
        {"i1", [](QvVariant& v) { v.SetI1(-128); }, ItemType_i1, L"i1", L"-128"},
        {"i2", [](QvVariant& v) { v.SetI2(-32768); }, ItemType_i2, L"i2", L"-32768"},
        {"i4", [](QvVariant& v) { v.SetI4(-9000000000L); }, ItemType_i4, L"i4", L"-9000000000"},
        {"i8", [](QvVariant& v) { v.SetI8(-5); }, ItemType_i8, L"i8", L"-5"},
        {"ui1", [](QvVariant& v) { v.SetUI1(255); }, ItemType_ui1, L"ui1", L"255"},
        {"ui2", [](QvVariant& v) { v.SetUI2(65535); }, ItemType_ui2, L"ui2", L"65535"},
        {"ui4", [](QvVariant& v) { v.SetUI4(10000000000UL); }, ItemType_ui4, L"ui4",
         L"10000000000"},
        {"ui8", [](QvVariant& v) { v.SetUI8(18446744073709551615ULL); }, ItemType_ui8, L"ui8",
         L"18446744073709551615"},
        {"r4", [](QvVariant& v) { v.SetR4(0.5f); }, ItemType_r4, L"r4", L"0.5"},
        {"r8", [](QvVariant& v) { v.SetR8(0.1); }, ItemType_r8, L"r8", L"0.1"},
        {"duration", [](QvVariant& v) { v.SetDuration(Span(L"P1Y2M")); }, ItemType_duration,
         L"duration", L"P1Y2M"},
        {"yearMonth", [](QvVariant& v) { v.SetYearMonth(Date(L"2024-05")); }, ItemType_yearMonth,
         L"yearMonth", L"2024-05"},
        {"monthDay", [](QvVariant& v) { v.SetMonthDay(Date(L"--12-25")); }, ItemType_monthDay,
         L"monthDay", L"--12-25"},
        {"year", [](QvVariant& v) { v.SetYear(2024); }, ItemType_year, L"year", L"2024"},
        {"month", [](QvVariant& v) { v.SetMonth(3); }, ItemType_month, L"month", L"--03"},
        {"day", [](QvVariant& v) { v.SetDay(9); }, ItemType_day, L"day", L"---09"},
        {"date", [](QvVariant& v) { v.SetDate(Date(L"2024-01-01Z")); }, ItemType_date, L"date",
         L"2024-01-01Z"},
        {"datetime", [](QvVariant& v) { v.SetDateTime(CDateTime(2024, 2, 29, 23, 59, 1)); },
         ItemType_datetime, L"datetime", L"2024-02-29T23:59:01"},
        {"time", [](QvVariant& v) { v.SetTime(Time(L"08:30:00-05:00")); }, ItemType_time, L"time",
         L"08:30:00-05:00"},
        {"char", [](QvVariant& v) { v.SetChar(L'\u00e9'); }, ItemType_char, L"char", L"\u00e9"},
        {"string", [](QvVariant& v) { v.SetString(L" a b "); }, ItemType_string, L"string",
         L" a b "},
        {"boolean", [](QvVariant& v) { v.SetBoolean(true); }, ItemType_boolean, L"boolean",
         L"true"},
        {"decimal", [](QvVariant& v) { v.SetDecimal(CDecimal(L"-0.50")); }, ItemType_decimal,
         L"decimal", L"-0.50"},
        {"integer", [](QvVariant& v) { v.SetInteger(CBigInteger(L"123456789012345678901")); },
         ItemType_integer, L"integer", L"123456789012345678901"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        QvVariant v;
        v.SetString(L"previous"); // every setter replaces what was held
        tc.set(v);
        EXPECT_TRUE(v.IsValid());
        EXPECT_EQ(v.GetItemType(), tc.type);
        EXPECT_EQ(v.GetType(), tc.typeName);
        EXPECT_EQ(qvtest::Narrow(v.ToString()), qvtest::Narrow(tc.text));
        const QvVariant copy(v);
        EXPECT_EQ(copy.GetItemType(), tc.type);
        EXPECT_EQ(copy.ToString(), v.ToString());
        // FromString of the text gives back the same value.
        QvVariant parsed;
        parsed.FromString(tc.text, tc.type, kNone);
        EXPECT_EQ(parsed.GetItemType(), tc.type);
        EXPECT_EQ(qvtest::Narrow(parsed.ToString()), qvtest::Narrow(tc.text));
    }
}

// The reference reads the stored string in place: it follows later changes of the same string
// and is empty, not absent, for nil.
TEST(QvVariant, StringRefReadsTheStoredString) {
    QvVariant v;
    v.SetString(L"a longer string than any inline buffer");
    const std::wstring& ref = v.GetStringRef();
    EXPECT_EQ(ref, L"a longer string than any inline buffer");
    EXPECT_EQ(&v.GetStringRef(), &ref);
    EXPECT_EQ(v.GetString(), ref);
    const QvVariant copy(v);
    EXPECT_NE(&copy.GetStringRef(), &ref);
    EXPECT_EQ(copy.GetStringRef(), ref);
    v.SetNil();
    EXPECT_EQ(v.GetStringRef(), L"");
    EXPECT_EQ(v.ToString(), L"");
}

namespace {

// Text of a given length that differs from round to round.
std::wstring Sample(size_t length, int round) {
    std::wstring text(length, L'a');
    for (size_t i = 0; i < length; ++i)
        text[i] = static_cast<wchar_t>(L'a' + (i + static_cast<size_t>(round)) % 26);
    return text;
}

// Sets, copies and frees strings of many lengths, short and past any kept size, in an order
// that reuses freed storage, and checks every value still reads back as set.
void ChurnStrings(int rounds) {
    const size_t lengths[] = {0, 1, 3, 4, 17, 255, 256, 257, 1000};
    for (int round = 0; round < rounds; ++round) {
        std::vector<std::unique_ptr<QvVariant>> held;
        for (size_t length : lengths) {
            held.push_back(std::make_unique<QvVariant>());
            held.back()->SetString(Sample(length, round));
            held.push_back(std::make_unique<QvVariant>(*held.back()));
        }
        for (size_t i = 0; i < held.size(); i += 3)
            held[i].reset();
        for (size_t i = 0; i < held.size(); ++i) {
            if (!held[i])
                continue;
            ASSERT_EQ(held[i]->GetStringRef(), Sample(lengths[i / 2], round)) << i;
            held[i]->SetString(held[i]->GetString() + L"!");
            ASSERT_EQ(held[i]->GetString(), Sample(lengths[i / 2], round) + L"!") << i;
        }
    }
}

} // namespace

TEST(QvVariant, StringStorageIsReusedWithoutMixingValues) {
    ChurnStrings(20);
}

// Each thread keeps its own freed strings. Variants may be freed by another thread than the one
// that set them, and a thread_local one may outlive its thread's kept strings at exit.
TEST(QvVariant, StringStorageAcrossThreads) {
    std::vector<std::unique_ptr<QvVariant>> handedOver(8);
    std::thread worker([&] {
        thread_local QvVariant lastWord;
        lastWord.SetString(Sample(40, 7));
        ChurnStrings(5);
        for (size_t i = 0; i < handedOver.size(); ++i) {
            handedOver[i] = std::make_unique<QvVariant>();
            handedOver[i]->SetString(Sample(10 + i, 3));
        }
        EXPECT_EQ(lastWord.GetString(), Sample(40, 7));
    });
    worker.join();
    for (size_t i = 0; i < handedOver.size(); ++i) {
        EXPECT_EQ(handedOver[i]->GetString(), Sample(10 + i, 3));
        handedOver[i].reset();
    }
    ChurnStrings(2);
}

TEST(QvVariant, CopiesAreDeep) {
    QvVariant a;
    a.SetString(L"first");
    QvVariant b(a);
    a.SetString(L"second");
    EXPECT_EQ(b.GetString(), L"first");
    b.SetDecimal(CDecimal(L"1.5"));
    b = a;
    a.SetI4(1);
    EXPECT_EQ(b.GetString(), L"second");
    b = b; // self-assignment keeps the value
    EXPECT_EQ(b.GetString(), L"second");

    QvVariant nil;
    nil.SetDate(Date(L"2024-01-01"));
    nil.SetNil();
    const QvVariant nilCopy(nil);
    EXPECT_TRUE(nilCopy.IsNil());
    EXPECT_EQ(nilCopy.GetItemType(), ItemType_date);

    QvVariant moved(std::move(b));
    EXPECT_EQ(moved.GetString(), L"second");
    EXPECT_FALSE(b.IsValid()); // NOLINT(bugprone-use-after-move): the moved-from state is defined
    QvVariant target;
    target.SetHexBinary(Bytes({1}));
    target = std::move(moved);
    EXPECT_EQ(target.GetString(), L"second");
    EXPECT_FALSE(moved.IsValid()); // NOLINT(bugprone-use-after-move)
}

TEST(QvVariant, TypeErrors) {
    struct Case {
        ItemType held; // held with the value 1 of its type; 0 leaves the variant invalid
        std::function<void(QvVariant&)> call;
        const wchar_t* message;
    };

    const Case cases[] = {
        {ItemType_i4, [](QvVariant& v) { v.GetString(); }, L"Invalid Type 5"},
        {ItemType_decimal, [](QvVariant& v) { v.GetStringRef(); }, L"Invalid Type 25"},
        {ItemType_i4, [](QvVariant& v) { v.GetHexBinary(); }, L"Invalid Type 5"},
        {ItemType_decimal, [](QvVariant& v) { v.GetInteger(); }, L"Invalid Type 25"},
        {ItemType_hexBinary, [](QvVariant& v) { v.GetBase64Binary(); }, L"Invalid Type 1"},
        {ItemType_ui2, [](QvVariant& v) { v.GetDate(); }, L"Invalid Type 8"},
        {ItemType_Invalid, [](QvVariant& v) { v.GetDuration(); }, L"Invalid Type 0"},
        {ItemType_Invalid, [](QvVariant& v) { v.GetType(); }, L"Invalid Type 0"},
        {ItemType_Invalid, [](QvVariant& v) { v.ToString(); },
         L"Invalid Type 0 to convert to string"},
        // FromString names the variant's own type, not the one asked for.
        {ItemType_i4, [](QvVariant& v) { v.FromString(L"1", ItemType_Invalid, kNone); },
         L"Invalid Type 5 to convert to string"},
        {ItemType_i4, [](QvVariant& v) { v.FromString(L"1", ItemType_XmlObject, kNone); },
         L"Invalid Type 5 to convert to string"},
        {ItemType_Invalid, [](QvVariant& v) { v.FromString(L"1", ItemType_XmlCollection, kNone); },
         L"Invalid Type 0 to convert to string"},
        {ItemType_boolean, [](QvVariant& v) { v.FromString(L"1", ItemType(99), kNone); },
         L"Invalid Type 24 to convert to string"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE("held type " + std::to_string(tc.held) + ": " + qvtest::Narrow(tc.message));
        QvVariant v;
        if (tc.held != ItemType_Invalid)
            v.FromString(tc.held == ItemType_hexBinary ? L"01" : L"1", tc.held, kNone);
        ExpectThrowMsg<CQvException>([&] { tc.call(v); }, tc.message);
    }
}

TEST(QvVariant, FromStringAppliesTheRuleAndKeepsTheValueOnFailure) {
    QvVariant v;
    v.FromString(L"  12 ", ItemType_i4, kCollapse);
    EXPECT_EQ(v.GetI4(), 12);
    ExpectThrowMsg<CQvInvalidValueException>([&] { v.FromString(L" 13 ", ItemType_i4, kNone); },
                                             L"The value [ 13 ] can not be converted to a i4");
    EXPECT_EQ(v.GetItemType(), ItemType_i4);
    EXPECT_EQ(v.GetI4(), 12);

    v.FromString(L"a  b", ItemType_string, kCollapse);
    EXPECT_EQ(v.GetString(), L"a b");
    ExpectThrowMsg<CQvInvalidValueException>(
        [&] { v.FromString(L"2023-02-29", ItemType_date, kNone); },
        L"Invalid Day [29] (1 <= day <= days in month");
    EXPECT_EQ(v.GetString(), L"a b");

    v.SetNil();
    v.FromString(L"TRUE", ItemType_boolean, kNone);
    EXPECT_FALSE(v.IsNil());
    EXPECT_TRUE(v.GetBoolean());
}

// A string the rule leaves alone is copied in as it is; one the rule changes is converted.
// Either way the value is what the rule gives.
TEST(QvVariant, FromStringOfTextTheRuleLeavesOrChanges) {
    const CWhitespaceUtils::WhitespaceRule rules[] = {
        kNone, CWhitespaceUtils::WhitespaceRule_Preserve, CWhitespaceUtils::WhitespaceRule_Replace,
        kCollapse};
    const std::wstring texts[] = {
        L"",     L" ",    L"a",    L" a",     L"a ", L"a b",     L"a  b",
        L"a\tb", L"a\nb", L"a\rb", L"a\r\nb", L"\t", L"a b c d", L"long text of words"};
    for (const auto rule : rules) {
        for (const std::wstring& text : texts) {
            SCOPED_TRACE(qvtest::Narrow(text) + " rule " + std::to_string(rule));
            QvVariant v;
            v.FromString(text, ItemType_string, rule);
            EXPECT_EQ(v.GetString(), CWhitespaceUtils::ApplyRule(rule, text));
        }
    }
    QvVariant v;
    std::wstring same = L"kept";
    v.SetString(std::move(same));
    v.SetString(std::wstring(v.GetStringRef()) + L"!");
    EXPECT_EQ(v.GetString(), L"kept!");
}

TEST(QvVariant, FormatReachesOnlyRealsAndDecimals) {
    struct Case {
        const char* name;
        std::function<void(QvVariant&)> set;
        const wchar_t* format;
        const wchar_t* text;
    };

    const Case cases[] = {
        {"r8", [](QvVariant& v) { v.SetR8(2.0 / 3); }, L"%.3f", L"0.667"},
        {"r4", [](QvVariant& v) { v.SetR4(0.25f); }, L"%.1e", L"2.5e-01"},
        {"decimal", [](QvVariant& v) { v.SetDecimal(CDecimal(L"2.5")); }, L"3", L"2.500"},
        {"null format", [](QvVariant& v) { v.SetR8(2.0 / 3); }, nullptr, L"0.6666666666666666"},
        {"i4 ignores it", [](QvVariant& v) { v.SetI4(5); }, L"%.3f", L"5"},
        {"date ignores it", [](QvVariant& v) { v.SetDate(Date(L"2024-03-01")); }, L"G",
         L"2024-03-01"},
        {"string ignores it", [](QvVariant& v) { v.SetString(L"%d"); }, L"%ls", L"%d"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        QvVariant v;
        tc.set(v);
        EXPECT_EQ(qvtest::Narrow(v.ToString(tc.format)), qvtest::Narrow(tc.text));
    }
}
