#include "common/TestUtils.h"
#include "types/DateTimeTestUtils.h"

#include <QvXmlLib16/DateTime.h>

#include <cctype>
#include <cwchar>
#include <functional>
#include <random>

using namespace QvXmlLib16;
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
        Parser parser;
        const wchar_t* text;
        const char* fields;
        const wchar_t* printed;
    };

    const Case cases[] = {
        {Parser::Date, L"2024-02-29", "date 2024-2-29", L"2024-02-29"},
        {Parser::Date, L"-0001", "gYear -1", L"-0001"},
        {Parser::Date, L"0987", "gYear 987", L"0987"},
        {Parser::Date, L"2024-01-01+05:00", "date 2024-1-1 +5:0", L"2024-01-01+05:00"},
        {Parser::Date, L"2024-01-01Z", "date 2024-1-1 Z", L"2024-01-01Z"},
        {Parser::Date, L"2024-01-01+00:00", "date 2024-1-1 +0:0", L"2024-01-01+00:00"},
        {Parser::Date, L"-0045-03-01-00:30", "date -45-3-1 -0:30", L"-0045-03-01-00:30"},
        {Parser::Date, L"1999-12", "gYearMonth 1999-12", L"1999-12"},
        {Parser::Date, L"-9999-01Z", "gYearMonth -9999-1 Z", L"-9999-01Z"},
        {Parser::Date, L"--02-29", "gMonthDay -2-29", L"--02-29"},
        {Parser::Date, L"--12", "gMonth -12", L"--12"},
        {Parser::Date, L"--07-14:00", "gMonth -7 -14:0", L"--07-14:00"},
        {Parser::Date, L"---31", "gDay -31", L"---31"},
        {Parser::Date, L"---05-03:30", "gDay -5 -3:30", L"---05-03:30"},
        {Parser::Time, L"12:00:00.5", "time T12:0:0.500.0.0", L"12:00:00.5"},
        {Parser::Time, L"23:59:59.123456789Z", "time T23:59:59.123.456.789 Z",
         L"23:59:59.123456789Z"},
        {Parser::Time, L"00:00:00.000000001-14:00", "time T0:0:0.0.0.1 -14:0",
         L"00:00:00.000000001-14:00"},
        {Parser::Time, L"01:02:03.1230", "time T1:2:3.123.0.0", L"01:02:03.123"},
        {Parser::Time, L"01:02:03.0000", "time T1:2:3.0.0.0", L"01:02:03"},
        {Parser::Time, L"10:20:30.00045+23:59", "time T10:20:30.0.450.0 +23:59",
         L"10:20:30.00045+23:59"},
        {Parser::DateTime, L"2024-03-10T08:30:15.25+01:00",
         "dateTime 2024-3-10T8:30:15.250.0.0 +1:0", L"2024-03-10T08:30:15.25+01:00"},
        {Parser::DateTime, L"-9999-12-31T23:59:59Z", "dateTime -9999-12-31T23:59:59.0.0.0 Z",
         L"-9999-12-31T23:59:59Z"},
        {Parser::DateTime, L"0001-01-01T00:00:00", "dateTime 1-1-1T0:0:0.0.0.0",
         L"0001-01-01T00:00:00"},
        {Parser::DateTime, L"2000-02-29T12:34:56.7-05:45",
         "dateTime 2000-2-29T12:34:56.700.0.0 -5:45", L"2000-02-29T12:34:56.7-05:45"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(qvtest::Narrow(tc.text));
        const CDateTime value = ParseAs(tc.parser, tc.text);
        EXPECT_EQ(Describe(value), tc.fields);
        EXPECT_EQ(value.ToString(), tc.printed);
    }
    EXPECT_EQ(Describe(CDateTime(L"2024-01-02T03:04:05")), "dateTime 2024-1-2T3:4:5.0.0.0");
}

TEST(CDateTime, ParseFailures) {
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
        {Parser::Date, L"2024-1-01",
         L"Invalid XSD Date [2024-1-01] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {Parser::Date, L"24-01-01",
         L"Invalid XSD Date [24-01-01] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {Parser::Date, L"20240101",
         L"Invalid XSD Date [20240101] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {Parser::Date, L"2024/01/01",
         L"Invalid XSD Date [2024/01/01] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {Parser::Date, L"12024-01-01",
         L"Invalid XSD Date [12024-01-01] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {Parser::Date, L"--1", L"Invalid XSD Date [--1] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {Parser::Date, L"----", L"Invalid XSD Date [----] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {Parser::Date, L"-", L"Invalid XSD Date [-] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {Parser::Date, L"Z", L"Invalid XSD Date [Z] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {Parser::Date, L"12:00", L"Invalid XSD Date [12:00] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {Parser::Date, L"2024-01-01+0500",
         L"Invalid XSD Date [2024-01-01+0500] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
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
        {Parser::Time, L"24:00:00", L"Invalid XSD Time [24:00:00] expected hh:mm:ss[.ff]"},
        {Parser::Time, L"12:60:00", L"Invalid XSD Time [12:60:00] expected hh:mm:ss[.ff]"},
        {Parser::Time, L"12:00:60", L"Invalid XSD Time [12:00:60] expected hh:mm:ss[.ff]"},
        {Parser::Time, L"12:00", L"Invalid XSD Time [12:00] expected hh:mm:ss[.ff]"},
        {Parser::Time, L"1:00:00", L"Invalid XSD Time [1:00:00] expected hh:mm:ss[.ff]"},
        {Parser::Time, L"12-00-00", L"Invalid XSD Time [12-00-00] expected hh:mm:ss[.ff]"},
        {Parser::Time, L"12:00:00.", L"Invalid XSD Time [12:00:00.] expected hh:mm:ss[.ff]"},
        {Parser::Time, L"12:00:00.Z", L"Invalid XSD Time [12:00:00.Z] expected hh:mm:ss[.ff]"},
        {Parser::Time, L"12:00:00.1234567891",
         L"Invalid XSD Time [12:00:00.1234567891] Fraction part too long"},
        {Parser::Time, L"12:00:00+5:00", L"Invalid XSD Time Zone [+5:00]."},
        {Parser::Time, L"12:00:00 ", L"Invalid XSD Time Zone [ ]."},
        {Parser::Time, L"12:00:00ZZ", L"Invalid XSD Time Zone [ZZ]."},
        {Parser::DateTime, nullptr, L"Invalid DateTime (Null String)"},
        {Parser::DateTime, L"", L"Invalid XSD DateTime []."},
        {Parser::DateTime, L"2024-01-01", L"Invalid XSD DateTime [2024-01-01]."},
        {Parser::DateTime, L"2024-01-01t10:00:00", L"Invalid XSD DateTime [2024-01-01t10:00:00]."},
        {Parser::DateTime, L"2024-01T10:00:00",
         L"Invalid XSD DateTime [2024-01T10:00:00] expected CCYY-MM-DDThh:mm:ss[.ff]"},
        {Parser::DateTime, L"2024-01-01ZT10:00:00",
         L"Invalid XSD DateTime [2024-01-01ZT10:00:00] expected CCYY-MM-DDThh:mm:ss[.ff]"},
        {Parser::DateTime, L"T10:00:00",
         L"Invalid XSD DateTime [T10:00:00] expected CCYY-MM-DDThh:mm:ss[.ff]"},
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
        const char* name;
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
        {"month in a time", timeOver(L"2024-05-01"), L"Invalid Month [5] for type time"},
        {"year in a time", timeOver(L"2024"), L"Invalid Year [2024] for type time"},
        {"day in a time", timeOver(L"---05"), L"Invalid Day [5] for type time"},
        {"hour in a date", dateOver(L"2024-01-01T10:00:00"), L"Invalid Hour [10] for type date"},
        {"minute in a date", dateOver(L"2024-01-01T00:05:00"), L"Invalid Minute [5] for type date"},
        {"second in a date", dateOver(L"2024-01-01T00:00:07"), L"Invalid Second [7] for type date"},
        {"milli in a date", dateOver(L"2024-01-01T00:00:00.5"),
         L"Invalid Milli-Second [500] for type date"},
        {"micro in a date", dateOver(L"2024-01-01T00:00:00.000002"),
         L"Invalid Micro-Second [2] for type date"},
        {"nano in a date", dateOver(L"2024-01-01T00:00:00.000000003"),
         L"Invalid Nano-Second [3] for type date"},
        {"hour range", [](CDateTime& v) { v.SetTime(24, 0, 0); },
         L"Invalid Hour [24] (0 <= hour <= 23)"},
        {"minute range", [](CDateTime& v) { v.SetTime(0, 60, 0); },
         L"Invalid Minute [60] (0 <= minute <= 59)"},
        {"second range", [](CDateTime& v) { v.SetDateTime(2024, 1, 1, 0, 0, 60); },
         L"Invalid Second [60] (0 <= second <= 59)"},
        {"milli range", [](CDateTime& v) { v.SetTime(0, 0, 0, 1000, 0, 0); },
         L"Invalid Milli-Second [1000] (0 <= milli <= 999)"},
        {"micro range", [](CDateTime& v) { v.SetTime(0, 0, 0, 0, 1000, 0); },
         L"Invalid Micro-Second [1000] (0 <= micro <= 999)"},
        {"nano range", [](CDateTime& v) { v.SetTime(0, 0, 0, 0, 0, 65535); },
         L"Invalid Nano-Second [65535] (0 <= nano <= 999)"},
        {"year above", [](CDateTime& v) { v.SetGYear(10000); },
         L"Invalid Year [10000] (-9999 <= year <= 9999 && year != 0)"},
        {"year below", [](CDateTime& v) { v.SetGYearMonth(-10000, 1); },
         L"Invalid Year [-10000] (-9999 <= year <= 9999 && year != 0)"},
        {"month before year", [](CDateTime& v) { v.SetGYearMonth(10000, 13); },
         L"Invalid Month [13] (1 <= month <= 12)"},
        {"gMonthDay", [](CDateTime& v) { v.SetGMonthDay(4, 31); },
         L"Invalid Day [31] (1 <= day <= days in month)"},
        {"gDay", [](CDateTime& v) { v.SetGDay(0); }, L"Invalid Day [0] (1 <= day <= 31)"},
        {"gMonth", [](CDateTime& v) { v.SetGMonth(0); }, L"Invalid Month [0] (1 <= month <= 12)"},
        {"date", [](CDateTime& v) { v.SetDate(2100, 2, 29); },
         L"Invalid Day [29] (1 <= day <= days in month"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        CDateTime value;
        tc.build(value);
        ExpectThrowMsg<CQvInvalidValueException>([&] { value.Validate(); }, tc.message);
    }
}

TEST(CDateTime, AccessorsCheckTheKind) {
    struct Case {
        const char* name;
        const wchar_t* text; // parsed as a date or time by its shape
        std::function<void(CDateTime&)> call;
        const wchar_t* message;
    };

    const Case cases[] = {
        {"GetYear", L"10:00:00", [](CDateTime& v) { v.GetYear(); },
         L"Failed to GetYear. Invalid Date Type: time."},
        {"SetYear", L"--05", [](CDateTime& v) { v.SetYear(2000); },
         L"Failed to GetYear. Invalid Date Type: gMonth."},
        {"GetMonth", L"2024", [](CDateTime& v) { v.GetMonth(); },
         L"Failed to GetMonth. Invalid Date Type: gYear."},
        {"SetMonth", L"---01", [](CDateTime& v) { v.SetMonth(1); },
         L"Failed to GetMonth. Invalid Date Type: gDay."},
        {"GetDay", L"2024-05", [](CDateTime& v) { v.GetDay(); },
         L"Failed to GetDay. Invalid Date Type: gYearMonth."},
        {"SetDay", L"--05", [](CDateTime& v) { v.SetDay(1); },
         L"Failed to GetDay. Invalid Date Type: gMonth."},
        {"GetHour", L"2024-05-01", [](CDateTime& v) { v.GetHour(); },
         L"Failed to GetHour. Invalid Date Type: date."},
        {"SetHour", L"2024-05-01", [](CDateTime& v) { v.SetHour(1); },
         L"Failed to GetHour. Invalid Date Type: date."},
        {"GetMinute", L"---01", [](CDateTime& v) { v.GetMinute(); },
         L"Failed to GetMinute. Invalid Date Type: gDay."},
        {"SetMinute", L"---01", [](CDateTime& v) { v.SetMinute(1); },
         L"Failed to GetMinute. Invalid Date Type: gDay."},
        {"GetSecond", L"--05", [](CDateTime& v) { v.GetSecond(); },
         L"Failed to GetSecond. Invalid Date Type: gMonth."},
        {"SetSecond", L"--05", [](CDateTime& v) { v.SetSecond(1); },
         L"Failed to GetSecond. Invalid Date Type: gMonth."},
        {"GetRealSecond", L"--05-01", [](CDateTime& v) { v.GetRealSecond(); },
         L"Failed to GetRealSecond. Invalid Date Type: gMonthDay."},
        {"GetMilliSecond", L"2024", [](CDateTime& v) { v.GetMilliSecond(); },
         L"Failed to GetMilliSecond. Invalid Date Type: gYear."},
        {"SetMilliSecond", L"2024", [](CDateTime& v) { v.SetMilliSecond(1); },
         L"Failed to GetMilliSecond. Invalid Date Type: gYear."},
        {"SetFracTime", L"2024-05-01", [](CDateTime& v) { v.SetFracTime(1, 2, 3); },
         L"Failed to GetMilliSecond. Invalid Date Type: date."},
        {"GetMicroSecond", L"2024-05", [](CDateTime& v) { v.GetMicroSecond(); },
         L"Failed to GetMicroSecond. Invalid Date Type: gYearMonth."},
        {"SetMicroSecond", L"2024-05", [](CDateTime& v) { v.SetMicroSecond(1); },
         L"Failed to GetMicroSecond. Invalid Date Type: gYearMonth."},
        {"GetNanoSecond", L"--05-01", [](CDateTime& v) { v.GetNanoSecond(); },
         L"Failed to GetNanoSecond. Invalid Date Type: gMonthDay."},
        {"SetNanoSecond", L"--05-01", [](CDateTime& v) { v.SetNanoSecond(1); },
         L"Failed to GetNanoSecond. Invalid Date Type: gMonthDay."},
        {"GetDayOfYear", L"--05-01", [](CDateTime& v) { v.GetDayOfYear(); },
         L"Failed to GetDayOfYear. Invalid Date Type: gMonthDay."},
        {"GetDayOfWeek", L"10:00:00", [](CDateTime& v) { v.GetDayOfWeek(); },
         L"Failed to GetDayOfWeek. Invalid Date Type: time."},
        {"GetTime", L"2024", [](CDateTime& v) { v.GetTime(); },
         L"Failed to GetTime, Date Status must be dateTime or date. Invalid Date Type: gYear."},
        {"GetTime of a time", L"10:00:00", [](CDateTime& v) { v.GetTime(); },
         L"Failed to GetTime, Date Status must be dateTime or date. Invalid Date Type: time."},
        {"unset kind", nullptr, [](CDateTime& v) { v.GetYear(); },
         L"Failed to GetYear. Invalid Date Type: yearZero."},
        {"GetZoneHour", L"2024", [](CDateTime& v) { v.GetZoneHour(); },
         L"TimeZone is not been used"},
        {"GetZoneMinute", L"10:00:00", [](CDateTime& v) { v.GetZoneMinute(); },
         L"TimeZone is not been used"},
        {"SetTimeZone hours", L"2024", [](CDateTime& v) { v.SetTimeZone(24, 0); },
         L"Invalid TimeZone [24:0]"},
        {"SetTimeZone minutes", L"2024", [](CDateTime& v) { v.SetTimeZone(-5, 60); },
         L"Invalid TimeZone [-5:60]"},
        {"SetZone text", L"2024", [](CDateTime& v) { v.SetZone(L"+05:00x"); },
         L"Invalid XSD Time Zone [+05:00x]."},
        {"SetZone null", L"2024", [](CDateTime& v) { v.SetZone(nullptr); },
         L"Invalid XSD Time Zone []."},
        {"SetZone lower z", L"2024", [](CDateTime& v) { v.SetZone(L"z"); },
         L"Invalid XSD Time Zone [z]."},
        {"SetYear zero", L"2024", [](CDateTime& v) { v.SetYear(0); }, L"Invalid Year Zero"},
        {"SetDate zero", nullptr, [](CDateTime& v) { v.SetDate(0, 1, 1); }, L"Invalid Year Zero"},
        {"CheckConversion", nullptr,
         [](CDateTime& v) { v.CheckConversion(CDateTime::DTType(9), CDateTime::DTType_date); },
         L"Unknown date type 9."},
        {"GetTypeAsString", nullptr,
         [](CDateTime&) { CDateTime::GetTypeAsString(CDateTime::DTType(-1)); },
         L"Unknown date type -1."},
        {"constructor kind", nullptr, [](CDateTime&) { CDateTime value(CDateTime::DTType(12)); },
         L"Unknown date type 12."},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        CDateTime value;
        if (tc.text && std::wcschr(tc.text, L':'))
            value.ParseXSDTime(tc.text);
        else if (tc.text)
            value.ParseXSDDate(tc.text);
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
        const wchar_t* message;
    };

    const Case cases[] = {
        {CDateTime::DTType_date, 2024, 1, 1, 10,
         L"Failed to copy CDateTime. Invalid Date Type: date, expected: dateTime."},
        {CDateTime::DTType_gYear, 2024, 5, 0, 0,
         L"Failed to copy CDateTime. Invalid Date Type: gYear, expected: gYearMonth."},
        {CDateTime::DTType_time, 0, 0, 5, 1,
         L"Failed to copy CDateTime. Invalid Date Type: time, expected: dateTime."},
        {CDateTime::DTType_gMonth, 0, 5, 5, 0,
         L"Failed to copy CDateTime. Invalid Date Type: gMonth, expected: gMonthDay."},
        {CDateTime::DTType_gDay, 2024, 0, 5, 0,
         L"Failed to copy CDateTime. Invalid Date Type: gDay, expected: date."},
        {CDateTime::DTType_None, 0, 0, 0, 3,
         L"Failed to copy CDateTime. Invalid Date Type: yearZero, expected: time."},
        {CDateTime::DTType(10), 0, 0, 0, 0, L"Unknown date type 10."},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(qvtest::Narrow(tc.message));
        CDateTime value;
        ExpectThrowMsg<CQvInvalidValueException>(
            [&] {
                value.SetDateTime(
                    tc.kind, static_cast<short>(tc.year), static_cast<unsigned char>(tc.month),
                    static_cast<unsigned char>(tc.day), static_cast<unsigned char>(tc.hour), 0, 0);
            },
            tc.message);
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
        CDateTime source;
        if (std::wcschr(tc.source, L'T'))
            source.ParseXSDDateTime(tc.source);
        else
            source.ParseXSDDate(tc.source);
        CDateTime target;
        target.SetDateTime(source, tc.kind);
        EXPECT_EQ(Describe(target), tc.fields);
        source.SetDateTime(source, tc.kind); // onto itself
        EXPECT_EQ(Describe(source), tc.fields);
    }
    CDateTime year;
    year.ParseXSDDate(L"2024");
    CDateTime date;
    ExpectThrowMsg<CQvInvalidValueException>(
        [&] { date.SetDateTime(year, CDateTime::DTType_date); },
        L"Attempting to set a CDateTime of type date using an XmlDateTime of type gYear. The "
        L"source CDateTime does not contian enough data to allow the conversion.");
    CDateTime time;
    time.ParseXSDTime(L"10:00:00");
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
        const CDateTime first = kind == 1   ? CDateTime(wide.c_str())
                                : kind == 5 ? ParseAs(Parser::Time, wide.c_str())
                                            : ParseAs(Parser::Date, wide.c_str());
        ASSERT_EQ(int(first.GetType()), kind);
        const std::wstring printed = first.ToString();
        const CDateTime second = kind == 1   ? CDateTime(printed.c_str())
                                 : kind == 5 ? ParseAs(Parser::Time, printed.c_str())
                                             : ParseAs(Parser::Date, printed.c_str());
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
