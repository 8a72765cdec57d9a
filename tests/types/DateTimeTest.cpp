#include "types/TypesTestUtils.h"

#include <QvXmlLib16/DateTime.h>

#include <cctype>
#include <cstring>
#include <cwchar>
#include <functional>
#include <random>

using namespace QvXmlLib16;
using qvtest::DateValue;
using qvtest::Describe;
using qvtest::ExpectThrowMsg;

namespace {

enum class Parser { DateTime, Date, Time };

CDateTime ParseAs(Parser parser, const wchar_t* text) {
    CDateTime value;
    switch (parser) {
    case Parser::DateTime: value.ParseXSDDateTime(text); break;
    case Parser::Date: value.ParseXSDDate(text); break;
    case Parser::Time: value.ParseXSDTime(text); break;
    }
    return value;
}

} // namespace

TEST(CDateTime, ParsesEveryKind) {
    struct Case {
        const wchar_t* text;
        const char* fields;
        const wchar_t* printed = nullptr; // nullptr: as parsed
    };

    const Case cases[] = {
        {L"2024-02-29", "date 2024-2-29"},
        {L"-0001", "gYear -1"},
        {L"0987", "gYear 987"},
        {L"2024-01-01+05:00", "date 2024-1-1 +5:0"},
        {L"2024-01-01Z", "date 2024-1-1 Z"},
        {L"2024-01-01+00:00", "date 2024-1-1 +0:0"},
        {L"-0045-03-01-00:30", "date -45-3-1 -0:30"},
        {L"1999-12", "gYearMonth 1999-12"},
        {L"-9999-01Z", "gYearMonth -9999-1 Z"},
        {L"--02-29", "gMonthDay -2-29"},
        {L"--12", "gMonth -12"},
        {L"--07-14:00", "gMonth -7 -14:0"},
        {L"---31", "gDay -31"},
        {L"---05-03:30", "gDay -5 -3:30"},
        {L"12:00:00.5", "time T12:0:0.500.0.0"},
        {L"23:59:59.123456789Z", "time T23:59:59.123.456.789 Z"},
        {L"00:00:00.000000001-14:00", "time T0:0:0.0.0.1 -14:0"},
        {L"01:02:03.1230", "time T1:2:3.123.0.0", L"01:02:03.123"},
        {L"01:02:03.0000", "time T1:2:3.0.0.0", L"01:02:03"},
        {L"10:20:30.00045+23:59", "time T10:20:30.0.450.0 +23:59"},
        {L"2024-03-10T08:30:15.25+01:00", "dateTime 2024-3-10T8:30:15.250.0.0 +1:0"},
        {L"-9999-12-31T23:59:59Z", "dateTime -9999-12-31T23:59:59.0.0.0 Z"},
        {L"0001-01-01T00:00:00", "dateTime 1-1-1T0:0:0.0.0.0"},
        {L"2000-02-29T12:34:56.7-05:45", "dateTime 2000-2-29T12:34:56.700.0.0 -5:45"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(qvtest::Narrow(tc.text));
        const CDateTime value = DateValue(tc.text);
        EXPECT_EQ(Describe(value), tc.fields);
        EXPECT_EQ(value.ToString(), tc.printed ? tc.printed : tc.text);
    }
    EXPECT_EQ(Describe(CDateTime(L"2024-01-02T03:04:05")), "dateTime 2024-1-2T3:4:5.0.0.0");
}

TEST(CDateTime, ParseFailures) {
    struct Malformed {
        Parser parser;
        std::vector<const wchar_t*> texts;
        const wchar_t* before;
        const wchar_t* after;
    };

    const Malformed malformed[] = {
        {Parser::Date,
         {L"2024-1-01", L"24-01-01", L"20240101", L"2024/01/01", L"12024-01-01", L"--1", L"----",
          L"-", L"Z", L"12:00", L"2024-01-01+0500"},
         L"Invalid XSD Date [",
         L"] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {Parser::Time,
         {L"24:00:00", L"12:60:00", L"12:00:60", L"12:00", L"1:00:00", L"12-00-00", L"12:00:00.",
          L"12:00:00.Z"},
         L"Invalid XSD Time [",
         L"] expected hh:mm:ss[.ff]"},
        {Parser::DateTime,
         {L"2024-01T10:00:00", L"2024-01-01ZT10:00:00", L"T10:00:00"},
         L"Invalid XSD DateTime [",
         L"] expected CCYY-MM-DDThh:mm:ss[.ff]"},
        {Parser::DateTime,
         {L"", L"2024-01-01", L"2024-01-01t10:00:00"},
         L"Invalid XSD DateTime [",
         L"]."},
    };
    for (const Malformed& family : malformed)
        for (const wchar_t* text : family.texts) {
            SCOPED_TRACE(qvtest::Narrow(text));
            ExpectThrowMsg<CQvInvalidValueException>([&] { ParseAs(family.parser, text); },
                                                     family.before + std::wstring(text)
                                                         + family.after);
        }

    struct Case {
        Parser parser;
        const wchar_t* text;
        const wchar_t* message;
    };

    const Case cases[] = {
        {Parser::Date, nullptr, L"Invalid Date (Null String)"},
        {Parser::Date, L"", L"Invalid Date (Empty String)"},
        {Parser::Date, L"2024-01-01T10:00:00", L"Invalid Date ('T' not allowed)"},
        {Parser::Date, L"2024-01-01+05:00Z", L"Invalid Date (Bad Zone value)"},
        {Parser::Date, L"2024-01-01+05:0x", L"Invalid XSD Time Zone [+05:0x]."},
        {Parser::Date, L"2024-01-01 05:00", L"Invalid XSD Time Zone [ 05:00]."},
        {Parser::Date, L"2024-01-01+24:00", L"Invalid TimeZone [24:0]"},
        {Parser::Date, L"2024-01-01-05:60", L"Invalid TimeZone [-5:60]"},
        {Parser::Date, L"2023-02-29", L"Invalid Day [29] (1 <= day <= days in month"},
        {Parser::Date, L"1900-02-29", L"Invalid Day [29] (1 <= day <= days in month"},
        {Parser::Date, L"2024-04-31", L"Invalid Day [31] (1 <= day <= days in month"},
        {Parser::Date, L"2024-04-00", L"Invalid Day [0] (1 <= day <= days in month"},
        {Parser::Date, L"0000-01-01", L"Invalid Year [0] (-9999 <= year <= 9999 && year != 0)"},
        {Parser::Date, L"-0000", L"Invalid Year [0] (-9999 <= year <= 9999 && year != 0)"},
        {Parser::Date, L"2024-13", L"Invalid Month [13] (1 <= month <= 12)"},
        {Parser::Date, L"--00", L"Invalid Month [0] (1 <= month <= 12)"},
        {Parser::Date, L"--02-30", L"Invalid Day [30] (1 <= day <= days in month)"},
        {Parser::Date, L"---32", L"Invalid Day [32] (1 <= day <= 31)"},
        {Parser::Date, L"---00", L"Invalid Day [0] (1 <= day <= 31)"},
        {Parser::Time, nullptr, L"Invalid Time (Null String)"},
        {Parser::Time, L"", L"Invalid XSD Time (Empty String)"},
        {Parser::Time, L"12:00:00.1234567891",
         L"Invalid XSD Time [12:00:00.1234567891] Fraction part too long"},
        {Parser::Time, L"12:00:00+5:00", L"Invalid XSD Time Zone [+5:00]."},
        {Parser::Time, L"12:00:00 ", L"Invalid XSD Time Zone [ ]."},
        {Parser::Time, L"12:00:00ZZ", L"Invalid XSD Time Zone [ZZ]."},
        {Parser::DateTime, nullptr, L"Invalid DateTime (Null String)"},
        {Parser::DateTime, L"2024-01-01T25:00:00",
         L"Invalid XSD Time [25:00:00] expected hh:mm:ss[.ff]"},
        {Parser::DateTime, L"2024-01-01T", L"Invalid XSD Time (Empty String)"},
        {Parser::DateTime, L"2023-02-29T00:00:00", L"Invalid Day [29] (1 <= day <= days in month"},
        {Parser::DateTime, L"0000-01-01T00:00:00",
         L"Invalid Year [0] (-9999 <= year <= 9999 && year != 0)"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.text ? qvtest::Narrow(tc.text) : "(null)");
        ExpectThrowMsg<CQvInvalidValueException>([&] { ParseAs(tc.parser, tc.text); }, tc.message);
    }
    ExpectThrowMsg<CQvInvalidValueException>([] { CDateTime value(L"2024-01-01"); },
                                             L"Invalid XSD DateTime [2024-01-01].");
}

// The Set... parsers stop short of validation; Validate then reports what the kind forbids.
TEST(CDateTime, ValidateReportsFieldsOutsideTheKind) {
    struct Case {
        std::function<void(CDateTime&)> build;
        const wchar_t* message;
    };

    const auto dateOver = [](const wchar_t* dateTime) {
        return [dateTime](CDateTime& v) {
            v.ParseXSDDateTime(dateTime);
            v.SetXSDDate(L"2024-01-01");
        };
    };
    const auto timeOver = [](const wchar_t* date) {
        return [date](CDateTime& v) {
            v.ParseXSDDate(date);
            v.SetXSDTime(L"10:00:00");
        };
    };
    const Case cases[] = {
        {timeOver(L"2024-05-01"), L"Invalid Month [5] for type time"},
        {timeOver(L"2024"), L"Invalid Year [2024] for type time"},
        {timeOver(L"---05"), L"Invalid Day [5] for type time"},
        {dateOver(L"2024-01-01T10:00:00"), L"Invalid Hour [10] for type date"},
        {dateOver(L"2024-01-01T00:05:00"), L"Invalid Minute [5] for type date"},
        {dateOver(L"2024-01-01T00:00:07"), L"Invalid Second [7] for type date"},
        {dateOver(L"2024-01-01T00:00:00.5"), L"Invalid Milli-Second [500] for type date"},
        {dateOver(L"2024-01-01T00:00:00.000002"), L"Invalid Micro-Second [2] for type date"},
        {dateOver(L"2024-01-01T00:00:00.000000003"), L"Invalid Nano-Second [3] for type date"},
        {[](CDateTime& v) { v.SetTime(24, 0, 0); }, L"Invalid Hour [24] (0 <= hour <= 23)"},
        {[](CDateTime& v) { v.SetTime(0, 60, 0); }, L"Invalid Minute [60] (0 <= minute <= 59)"},
        {[](CDateTime& v) { v.SetDateTime(2024, 1, 1, 0, 0, 60); },
         L"Invalid Second [60] (0 <= second <= 59)"},
        {[](CDateTime& v) { v.SetTime(0, 0, 0, 1000, 0, 0); },
         L"Invalid Milli-Second [1000] (0 <= milli <= 999)"},
        {[](CDateTime& v) { v.SetTime(0, 0, 0, 0, 1000, 0); },
         L"Invalid Micro-Second [1000] (0 <= micro <= 999)"},
        {[](CDateTime& v) { v.SetTime(0, 0, 0, 0, 0, 65535); },
         L"Invalid Nano-Second [65535] (0 <= nano <= 999)"},
        {[](CDateTime& v) { v.SetGYear(10000); },
         L"Invalid Year [10000] (-9999 <= year <= 9999 && year != 0)"},
        {[](CDateTime& v) { v.SetGYearMonth(-10000, 1); },
         L"Invalid Year [-10000] (-9999 <= year <= 9999 && year != 0)"},
        // The month is checked before the year.
        {[](CDateTime& v) { v.SetGYearMonth(10000, 13); },
         L"Invalid Month [13] (1 <= month <= 12)"},
        {[](CDateTime& v) { v.SetGMonthDay(4, 31); },
         L"Invalid Day [31] (1 <= day <= days in month)"},
        {[](CDateTime& v) { v.SetGDay(0); }, L"Invalid Day [0] (1 <= day <= 31)"},
        {[](CDateTime& v) { v.SetGMonth(0); }, L"Invalid Month [0] (1 <= month <= 12)"},
        {[](CDateTime& v) { v.SetDate(2100, 2, 29); },
         L"Invalid Day [29] (1 <= day <= days in month"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(qvtest::Narrow(tc.message));
        CDateTime value;
        tc.build(value);
        ExpectThrowMsg<CQvInvalidValueException>([&] { value.Validate(); }, tc.message);
    }
}

// Every field accessor on a value of every kind: allowed where the kind has the field, refused
// with the kind's name otherwise.
TEST(CDateTime, AccessorsCheckTheKind) {
    struct Accessor {
        const wchar_t* field; // as the message names it
        const char* kinds;    // the kind numbers that have it
        std::function<void(CDateTime&)> call;
    };

    const wchar_t* const time = L"Time, Date Status must be dateTime or date";
    const Accessor accessors[] = {
        {L"Year", "1234", [](CDateTime& v) { v.GetYear(); }},
        {L"Year", "1234", [](CDateTime& v) { v.SetYear(2000); }},
        {L"Month", "12378", [](CDateTime& v) { v.GetMonth(); }},
        {L"Month", "12378", [](CDateTime& v) { v.SetMonth(1); }},
        {L"Day", "1268", [](CDateTime& v) { v.GetDay(); }},
        {L"Day", "1268", [](CDateTime& v) { v.SetDay(1); }},
        {L"Hour", "15", [](CDateTime& v) { v.GetHour(); }},
        {L"Hour", "15", [](CDateTime& v) { v.SetHour(1); }},
        {L"Minute", "15", [](CDateTime& v) { v.GetMinute(); }},
        {L"Minute", "15", [](CDateTime& v) { v.SetMinute(1); }},
        {L"Second", "15", [](CDateTime& v) { v.GetSecond(); }},
        {L"Second", "15", [](CDateTime& v) { v.SetSecond(1); }},
        {L"RealSecond", "15", [](CDateTime& v) { v.GetRealSecond(); }},
        {L"MilliSecond", "15", [](CDateTime& v) { v.GetMilliSecond(); }},
        {L"MilliSecond", "15", [](CDateTime& v) { v.SetMilliSecond(1); }},
        {L"MilliSecond", "015",
         [](CDateTime& v) { v.SetFracTime(1, 2, 3); }}, // an unset value becomes a time
        {L"MicroSecond", "15", [](CDateTime& v) { v.GetMicroSecond(); }},
        {L"MicroSecond", "15", [](CDateTime& v) { v.SetMicroSecond(1); }},
        {L"NanoSecond", "15", [](CDateTime& v) { v.GetNanoSecond(); }},
        {L"NanoSecond", "15", [](CDateTime& v) { v.SetNanoSecond(1); }},
        {L"DayOfYear", "12", [](CDateTime& v) { v.GetDayOfYear(); }},
        {L"DayOfWeek", "12", [](CDateTime& v) { v.GetDayOfWeek(); }},
        {time, "12", [](CDateTime& v) { v.GetTime(); }},
    };
    const wchar_t* const kindNames[] = {L"yearZero",   L"dateTime", L"date",
                                        L"gYearMonth", L"gYear",    L"time",
                                        L"gDay",       L"gMonth",   L"gMonthDay"};
    const wchar_t* const samples[] = {nullptr,       L"2024-05-01T10:00:00",
                                      L"2024-05-01", L"2024-05",
                                      L"2024",       L"10:00:00",
                                      L"---01",      L"--05",
                                      L"--05-01"};
    for (const Accessor& accessor : accessors)
        for (int kind = 0; kind <= 8; ++kind) {
            SCOPED_TRACE(qvtest::Narrow(accessor.field) + " on " + qvtest::Narrow(kindNames[kind]));
            CDateTime value = samples[kind] ? DateValue(samples[kind]) : CDateTime();
            if (std::strchr(accessor.kinds, '0' + kind))
                EXPECT_NO_THROW(accessor.call(value));
            else
                ExpectThrowMsg<CQvInvalidValueException>(
                    [&] { accessor.call(value); }, L"Failed to Get" + std::wstring(accessor.field)
                                                       + L". Invalid Date Type: " + kindNames[kind]
                                                       + L".");
        }
}

TEST(CDateTime, ZoneAndKindChecks) {
    struct Case {
        std::function<void(CDateTime&)> call;
        const wchar_t* message;
    };

    const Case cases[] = {
        {[](CDateTime& v) { v.GetZoneHour(); }, L"TimeZone is not been used"},
        {[](CDateTime& v) { v.GetZoneMinute(); }, L"TimeZone is not been used"},
        {[](CDateTime& v) { v.SetTimeZone(24, 0); }, L"Invalid TimeZone [24:0]"},
        {[](CDateTime& v) { v.SetTimeZone(-5, 60); }, L"Invalid TimeZone [-5:60]"},
        {[](CDateTime& v) { v.SetZone(L"+05:00x"); }, L"Invalid XSD Time Zone [+05:00x]."},
        {[](CDateTime& v) { v.SetZone(nullptr); }, L"Invalid XSD Time Zone []."},
        {[](CDateTime& v) { v.SetZone(L"z"); }, L"Invalid XSD Time Zone [z]."},
        {[](CDateTime& v) { v.SetYear(0); }, L"Invalid Year Zero"},
        {[](CDateTime& v) { v.SetDate(0, 1, 1); }, L"Invalid Year Zero"},
        {[](CDateTime& v) { v.CheckConversion(CDateTime::DTType(9), CDateTime::DTType_date); },
         L"Unknown date type 9."},
        {[](CDateTime&) { CDateTime::GetTypeAsString(CDateTime::DTType(-1)); },
         L"Unknown date type -1."},
        {[](CDateTime&) { CDateTime value(CDateTime::DTType(12)); }, L"Unknown date type 12."},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(qvtest::Narrow(tc.message));
        CDateTime value = DateValue(L"2024"); // a gYear without a zone
        ExpectThrowMsg<CQvInvalidValueException>([&] { tc.call(value); }, tc.message);
    }
}

TEST(CDateTime, AccessorsAndSetters) {
    CDateTime value(2024, 3, 1, 13, 14, 15, 250, 500, 750);
    EXPECT_EQ(value.ToString(), L"2024-03-01T13:14:15.25050075");
    EXPECT_DOUBLE_EQ(value.GetRealSecond(), 15.25050075);
    EXPECT_EQ(value.GetDayOfYear(), 61); // leap year
    EXPECT_EQ(value.GetDayOfWeek(), 5);  // a Friday
    value.SetTimeZone(-3, 30);
    EXPECT_EQ(value.GetZoneHour(), -3);
    EXPECT_EQ(value.GetZoneMinute(), 30);
    EXPECT_FALSE(value.IsUTC());
    value.SetYear(-44);
    value.SetMonth(3);
    value.SetDay(15);
    value.SetFracTime(0, 0, 5);
    EXPECT_EQ(value.ToString(), L"-0044-03-15T13:14:15.000000005-03:30");
    value.SetUTC();
    EXPECT_EQ(value.ToString(), L"-0044-03-15T13:14:15.000000005Z");
    EXPECT_EQ(value.GetZoneHour(), 0);

    // Kind-setting setters keep the zone and drop the other fields.
    value.SetGMonthDay(2, 29);
    EXPECT_EQ(value.ToString(), L"--02-29Z");
    value.SetTime(1, 2, 3);
    EXPECT_EQ(Describe(value), "time T1:2:3.0.0.0 Z");
    CDateTime fraction;
    fraction.SetFracTime(7, 8, 9);
    EXPECT_EQ(fraction.ToString(), L"00:00:00.007008009");

    struct Case {
        const char* name;
        std::function<void(CDateTime&)> set;
        const wchar_t* printed;
    };

    const Case kinds[] = {
        {"date", [](CDateTime& v) { v.SetDate(1, 1, 1); }, L"0001-01-01"},
        {"gYear", [](CDateTime& v) { v.SetGYear(-12); }, L"-0012"},
        {"gYearMonth", [](CDateTime& v) { v.SetGYearMonth(2024, 11); }, L"2024-11"},
        {"gMonth", [](CDateTime& v) { v.SetGMonth(9); }, L"--09"},
        {"gDay", [](CDateTime& v) { v.SetGDay(9); }, L"---09"},
        {"time", [](CDateTime& v) { v.SetTime(23, 59, 59, 999, 999, 999); }, L"23:59:59.999999999"},
        {"dateTime", [](CDateTime& v) { v.SetDateTime(9999, 12, 31, 0, 0, 0); },
         L"9999-12-31T00:00:00"},
        {"typed",
         [](CDateTime& v) { v.SetDateTime(CDateTime::DTType_gMonthDay, 0, 2, 29, 0, 0, 0); },
         L"--02-29"},
    };
    for (const Case& tc : kinds) {
        SCOPED_TRACE(tc.name);
        CDateTime v;
        tc.set(v);
        EXPECT_NO_THROW(v.Validate());
        EXPECT_EQ(v.ToString(), tc.printed);
        v.Clear();
        EXPECT_EQ(v.GetType(), CDateTime::DTType_None);
        EXPECT_EQ(v.ToString(), L"Error: Date Not Set");
    }
}

TEST(CDateTime, TypedSetterRefusesFieldsTheKindLacks) {
    struct Case {
        CDateTime::DTType kind;
        int year, month, day, hour;
        const wchar_t* kindName;
        const wchar_t* expected; // the kind the given fields need
    };

    const Case cases[] = {
        {CDateTime::DTType_date, 2024, 1, 1, 10, L"date", L"dateTime"},
        {CDateTime::DTType_gYear, 2024, 5, 0, 0, L"gYear", L"gYearMonth"},
        {CDateTime::DTType_time, 0, 0, 5, 1, L"time", L"dateTime"},
        {CDateTime::DTType_gMonth, 0, 5, 5, 0, L"gMonth", L"gMonthDay"},
        {CDateTime::DTType_gDay, 2024, 0, 5, 0, L"gDay", L"date"},
        {CDateTime::DTType_None, 0, 0, 0, 3, L"yearZero", L"time"},
        {CDateTime::DTType(10), 0, 0, 0, 0, nullptr, nullptr},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.kind);
        CDateTime value;
        ExpectThrowMsg<CQvInvalidValueException>(
            [&] {
                value.SetDateTime(
                    tc.kind, static_cast<short>(tc.year), static_cast<unsigned char>(tc.month),
                    static_cast<unsigned char>(tc.day), static_cast<unsigned char>(tc.hour), 0, 0);
            },
            tc.kindName ? L"Failed to copy CDateTime. Invalid Date Type: "
                              + std::wstring(tc.kindName) + L", expected: " + tc.expected + L"."
                        : L"Unknown date type 10.");
    }
}

TEST(CDateTime, CheckConversionTable) {
    // For each source kind, the targets it can fill.
    const char* const supplies[9] = {"0",  "012345678", "0234678", "0347", "04",
                                     "05", "06",        "07",      "0678"};
    const CDateTime probe;
    for (int from = 0; from <= 8; ++from)
        for (int to = 0; to <= 8; ++to) {
            SCOPED_TRACE(std::to_string(from) + " -> " + std::to_string(to));
            const bool expected =
                std::string(supplies[from]).find(char('0' + to)) != std::string::npos;
            EXPECT_EQ(probe.CheckConversion(CDateTime::DTType(from), CDateTime::DTType(to)),
                      expected);
        }
}

TEST(CDateTime, CopyingSetterTakesWhatTheKindUses) {
    struct Case {
        const wchar_t* source;
        CDateTime::DTType kind;
        const char* fields;
    };

    const Case cases[] = {
        {L"2024-05-06T07:08:09.5+02:00", CDateTime::DTType_time, "time T7:8:9.500.0.0 +2:0"},
        {L"2024-05-06T07:08:09.5+02:00", CDateTime::DTType_gMonthDay, "gMonthDay -5-6 +2:0"},
        {L"2024-05-06T07:08:09Z", CDateTime::DTType_date, "date 2024-5-6 Z"},
        {L"2024-05-06T07:08:09Z", CDateTime::DTType_dateTime, "dateTime 2024-5-6T7:8:9.0.0.0 Z"},
        {L"2024-05-06", CDateTime::DTType_gYear, "gYear 2024"},
        {L"2024-05-06-11:00", CDateTime::DTType_gDay, "gDay -6 -11:0"},
        {L"2024-05", CDateTime::DTType_gMonth, "gMonth -5"},
        {L"--05-06", CDateTime::DTType_gDay, "gDay -6"},
        {L"2024-05-06", CDateTime::DTType_None, "yearZero "},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(qvtest::Narrow(tc.source));
        CDateTime source = DateValue(tc.source);
        CDateTime target;
        target.SetDateTime(source, tc.kind);
        EXPECT_EQ(Describe(target), tc.fields);
        source.SetDateTime(source, tc.kind); // onto itself
        EXPECT_EQ(Describe(source), tc.fields);
    }
    const CDateTime year = DateValue(L"2024"), time = DateValue(L"10:00:00");
    CDateTime date;
    ExpectThrowMsg<CQvInvalidValueException>(
        [&] { date.SetDateTime(year, CDateTime::DTType_date); },
        L"Attempting to set a CDateTime of type date using an XmlDateTime of type gYear. The "
        L"source CDateTime does not contian enough data to allow the conversion.");
    ExpectThrowMsg<CQvInvalidValueException>(
        [&] { date.SetDateTime(time, CDateTime::DTType_dateTime); },
        L"Attempting to set a CDateTime of type dateTime using an XmlDateTime of type time. The "
        L"source CDateTime does not contian enough data to allow the conversion.");
}

TEST(CDateTime, ToStringFormats) {
    const CDateTime value(L"2024-01-02T03:04:05.6Z");

    struct Case {
        const wchar_t* format;
        const wchar_t* printed;
    };

    const Case cases[] = {
        {nullptr, L"2024-01-02T03:04:05.6Z"}, {L"", L"2024-01-02T03:04:05.6Z"},
        {L"G", L"2024-01-02T03:04:05.6Z"},    {L"s", L"2024-01-02T03:04:05.6Z"},
        {L"yyyy", L"Unknown Format: yyyy"},   {L"g", L"Unknown Format: g"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.format ? qvtest::Narrow(tc.format) : "(null)");
        EXPECT_EQ(value.ToString(tc.format), tc.printed);
    }
    const CDateTime unset;
    EXPECT_EQ(unset.ToString(), L"Error: Date Not Set");
    EXPECT_EQ(unset.ToString(L"s"), L"Error: Date Not Set");
    EXPECT_EQ(unset.ToString(L"x"), L"Unknown Format: x");
    EXPECT_EQ(CDateTime(CDateTime::DTType_gDay).GetTypeAsString(), L"gDay");
}

// Texts are built here digit by digit, independently of the library's printer.
TEST(CDateTime, RoundTripOfRandomValues) {
    std::mt19937 rng(20240229);
    const auto pick = [&rng](int low, int high) {
        return std::uniform_int_distribution<int>(low, high)(rng);
    };
    const auto pad = [](int value, int width) {
        std::string s = std::to_string(value);
        return std::string(width > int(s.size()) ? width - s.size() : 0, '0') + s;
    };
    const int daysIn[] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    for (int i = 0; i < 3000; ++i) {
        const int kind = 1 + i % 8;
        int year = pick(1, 9999) * (pick(0, 3) == 0 ? -1 : 1);
        const int month = pick(1, 12);
        const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
        const int day = pick(1, month == 2 && !leap && kind != 8 ? 28 : daysIn[month - 1]);
        std::string text;
        if (kind <= 4)
            text = (year < 0 ? "-" : "") + pad(year < 0 ? -year : year, 4);
        if (kind == 1 || kind == 2 || kind == 3 || kind == 7 || kind == 8)
            text += (kind <= 3 ? "-" : "--") + pad(month, 2);
        if (kind == 1 || kind == 2 || kind == 6 || kind == 8)
            text += (kind == 6 ? "---" : "-") + pad(day, 2);
        if (kind == 1 || kind == 5) {
            text += kind == 1 ? "T" : "";
            text += pad(pick(0, 23), 2) + ":" + pad(pick(0, 59), 2) + ":" + pad(pick(0, 59), 2);
            if (pick(0, 1)) {
                text += ".";
                const int digits = pick(1, 9);
                for (int d = 0; d < digits; ++d)
                    text += char('0' + pick(0, 9));
            }
        }
        switch (pick(0, 2)) {
        case 1: text += "Z"; break;
        case 2:
            text += (pick(0, 1) ? "+" : "-") + pad(pick(0, 23), 2) + ":" + pad(pick(0, 59), 2);
            break;
        default: break;
        }
        SCOPED_TRACE(text);
        const std::wstring wide(text.begin(), text.end());
        const CDateTime first = DateValue(wide.c_str());
        ASSERT_EQ(int(first.GetType()), kind);
        const std::wstring printed = first.ToString();
        const CDateTime second = DateValue(printed.c_str());
        EXPECT_EQ(Describe(second), Describe(first));
        EXPECT_EQ(second.ToString(), printed);
        EXPECT_EQ(first.CompareTo(second), 0);
        // Printing only trims trailing fraction zeros.
        std::string trimmed = text;
        const size_t dot = trimmed.find('.');
        if (dot != std::string::npos) {
            size_t end = dot + 1;
            while (end < trimmed.size() && isdigit(static_cast<unsigned char>(trimmed[end])))
                ++end;
            size_t keep = end;
            while (keep > dot + 1 && trimmed[keep - 1] == '0')
                --keep;
            trimmed.erase(keep == dot + 1 ? dot : keep, end - (keep == dot + 1 ? dot : keep));
        }
        EXPECT_EQ(qvtest::Narrow(printed), trimmed);
    }
}
