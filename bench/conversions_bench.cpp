// Lexical conversions and facet checks, in values per second: what every primitive member costs
// on its way into and out of a document.

#include <QvXmlLib16/Conversions.h>
#include <QvXmlLib16/PrimitiveRestrictions.h>
#include <QvXmlLib16/Variant.h>
#include <QvXmlLib16/XmlObjectHelper.h>

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

using namespace QvXmlLib16;

namespace {

constexpr auto kCollapse = CWhitespaceUtils::WhitespaceRule_Collapse;

const std::vector<std::wstring> kI4Texts = {L"0", L"-42", L" 1234567 ", L"9223372036854775807"};
const std::vector<std::wstring> kR8Texts = {L"0.1", L"-3.14159e-7", L" 6.02214076e23 ", L"INF"};
const std::vector<std::wstring> kDecimalTexts = {L"12345.67", L"-0.000125", L"99999999999999.99",
                                                 L"1"};
const std::vector<std::wstring> kDateTimeTexts = {L"2024-03-10T08:30:15.25+01:00",
                                                  L"1999-12-31T23:59:59Z", L"2000-02-29T00:00:00"};

// Cycles through a few inputs so the branch predictor does not learn one value.
template <class T, class Fn>
void Cycle(benchmark::State& state, const std::vector<T>& inputs, Fn fn) {
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(fn(inputs[i]));
        i = (i + 1) % inputs.size();
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()));
}

template <class T, class Parse>
std::vector<T> ParseAll(const std::vector<std::wstring>& texts, Parse parse) {
    std::vector<T> values;
    for (const std::wstring& text : texts)
        values.push_back(parse(text, kCollapse));
    return values;
}

void BM_I4FromString(benchmark::State& state) {
    Cycle(state, kI4Texts,
          [](const std::wstring& t) { return CConversions::i4FromString(t, kCollapse); });
}

void BM_I4ToString(benchmark::State& state) {
    Cycle(state, ParseAll<long>(kI4Texts, &CConversions::i4FromString),
          [](long v) { return CConversions::i4ToString(v); });
}

void BM_R8FromString(benchmark::State& state) {
    Cycle(state, kR8Texts,
          [](const std::wstring& t) { return CConversions::r8FromString(t, kCollapse); });
}

void BM_R8ToString(benchmark::State& state) {
    Cycle(state, ParseAll<double>(kR8Texts, &CConversions::r8FromString),
          [](double v) { return CConversions::r8ToString(v); });
}

void BM_DecimalFromString(benchmark::State& state) {
    Cycle(state, kDecimalTexts,
          [](const std::wstring& t) { return CConversions::decimalFromString(t, kCollapse); });
}

void BM_DecimalToString(benchmark::State& state) {
    Cycle(state, ParseAll<CDecimal>(kDecimalTexts, &CConversions::decimalFromString),
          [](const CDecimal& v) { return CConversions::decimalToString(v); });
}

void BM_DateTimeFromString(benchmark::State& state) {
    Cycle(state, kDateTimeTexts,
          [](const std::wstring& t) { return CConversions::datetimeFromString(t, kCollapse); });
}

void BM_DateTimeToString(benchmark::State& state) {
    Cycle(state, ParseAll<CDateTime>(kDateTimeTexts, &CConversions::datetimeFromString),
          [](const CDateTime& v) { return CConversions::datetimeToString(v); });
}

// The whole round a string member takes on writing: the variant, the length facets and the
// pattern, through the same dispatch the element infos use.
void StringPatternFacet(benchmark::State& state, const wchar_t* pattern) {
    const CPrimitiveRestrictions facets(pattern, 1, 64, nullptr, nullptr, nullptr, nullptr, -1, -1,
                                        -1);
    std::vector<QvVariant> values(3);
    values[0].SetString(L"AB-1234-XY");
    values[1].SetString(L"QZ-0001-AA");
    values[2].SetString(L"CD-9876-ZZ");
    Cycle(state, values, [&](const QvVariant& v) {
        CXmlObjectHelper::CheckRestriction(L"code", v, ItemType_string, facets);
        return 0;
    });
}

void BM_StringPatternFacet(benchmark::State& state) {
    StringPatternFacet(state, L"[A-Z]{2}-\\d{4}-[A-Z]{2}");
}

// The same facet checked 1,000 and then 1,000,000 times: the pattern is compiled by the first
// check only, so the time per check must not grow with the count. A pattern no other benchmark
// uses makes the first check really compile.
void BM_SamePatternRepeated(benchmark::State& state) {
    StringPatternFacet(state, L"[A-Z]{2}-[0-9]{4}-[A-Z]{2}");
}

// For contrast: a pattern never seen before on every check, so every check compiles.
void BM_NewPatternEachCheck(benchmark::State& state) {
    const std::wstring value = L"AB-1234-XY";
    long counter = 0;
    for (auto _ : state) {
        const std::wstring pattern =
            L"[A-Z]{2}-\\d{4}-[A-Z]{2}|x{" + std::to_wstring(counter++) + L"}";
        benchmark::DoNotOptimize(CXmlObjectHelper::TestRegEx(pattern, value));
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()));
}

} // namespace

BENCHMARK(BM_I4FromString);
BENCHMARK(BM_I4ToString);
BENCHMARK(BM_R8FromString);
BENCHMARK(BM_R8ToString);
BENCHMARK(BM_DecimalFromString);
BENCHMARK(BM_DecimalToString);
BENCHMARK(BM_DateTimeFromString);
BENCHMARK(BM_DateTimeToString);
BENCHMARK(BM_StringPatternFacet);
BENCHMARK(BM_SamePatternRepeated)->Iterations(1000);
BENCHMARK(BM_SamePatternRepeated)->Iterations(1000000);
BENCHMARK(BM_NewPatternEachCheck)->Iterations(2000);
