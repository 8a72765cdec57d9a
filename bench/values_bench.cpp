// Parse-and-print throughput of the XML Schema value types, in values per second.

#include <QvXmlLib16/BigInteger.h>
#include <QvXmlLib16/DateTime.h>
#include <QvXmlLib16/DateTimeSpan.h>
#include <QvXmlLib16/Decimal.h>

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

using namespace QvXmlLib16;

namespace {

const std::vector<std::wstring> kDateTimes = {L"2024-03-10T08:30:15.25+01:00",
                                              L"1999-12-31T23:59:59Z", L"-0044-03-15T12:00:00",
                                              L"2000-02-29T00:00:00.123456789-05:30"};

const std::vector<std::wstring> kDurations = {L"P1Y2M3DT4H5M6.789S", L"-PT36H", L"P400D",
                                              L"PT0.000000001S"};

const std::vector<std::wstring> kDecimals = {L"12345678901234.567890", L"-98765432109876543210",
                                             L"0.00000000001234567890", L"31415926535.89793238"};

template <class Fn>
void RunOver(benchmark::State& state, const std::vector<std::wstring>& texts, Fn parsePrint) {
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(parsePrint(texts[i]));
        i = (i + 1) % texts.size();
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()));
}

void BM_DateTimeParsePrint(benchmark::State& state) {
    RunOver(state, kDateTimes, [](const std::wstring& text) {
        CDateTime value;
        value.ParseXSDDateTime(text.c_str());
        return value.ToString();
    });
}

void BM_DurationParsePrint(benchmark::State& state) {
    RunOver(state, kDurations, [](const std::wstring& text) {
        CDateTimeSpan value;
        value.ParseXSDDuration(text.c_str());
        return value.ToString();
    });
}

void BM_Decimal20ParsePrint(benchmark::State& state) {
    RunOver(state, kDecimals,
            [](const std::wstring& text) { return CDecimal(text.c_str()).ToString(); });
}

void BM_DateTimeAddSpan(benchmark::State& state) {
    const CDateTime start(L"2024-01-31T10:00:00Z");
    CDateTimeSpan span;
    span.ParseXSDDuration(L"P1M2DT3H4M5.5S");
    for (auto _ : state)
        benchmark::DoNotOptimize(start + span);
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()));
}

void BM_Decimal20Divide(benchmark::State& state) {
    const CDecimal a(L"12345678901234.567890"), b(L"-3.1415926535");
    for (auto _ : state)
        benchmark::DoNotOptimize(a / b);
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()));
}

// Digits per operand given by the argument.
void BM_BigIntegerMultiply(benchmark::State& state) {
    const std::wstring digits(static_cast<size_t>(state.range(0)), L'7');
    const CBigInteger a(digits.c_str()), b((L"3" + digits.substr(1)).c_str());
    for (auto _ : state)
        benchmark::DoNotOptimize(a * b);
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()));
}

} // namespace

BENCHMARK(BM_DateTimeParsePrint);
BENCHMARK(BM_DurationParsePrint);
BENCHMARK(BM_Decimal20ParsePrint);
BENCHMARK(BM_DateTimeAddSpan);
BENCHMARK(BM_Decimal20Divide);
BENCHMARK(BM_BigIntegerMultiply)->Arg(100)->Arg(1000)->Arg(10000);
