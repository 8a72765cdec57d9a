// Throughput of the text conversions every reader and writer goes through, in bytes of input
// per second.

#include <QvXmlLib16/QvXmlLib16.h>

#include <benchmark/benchmark.h>

#include <random>
#include <string>
#include <vector>

using namespace QvXmlLib16;

namespace {

constexpr size_t kSize = 1 << 20;

std::wstring AsciiText() {
    std::wstring s;
    const wchar_t* words[] = {L"<Item id=\"", L"42", L"\">", L"Widget", L"</Item>\n", L" "};
    std::mt19937 rng(7);
    while (s.size() < kSize)
        s += words[rng() % 6];
    s.resize(kSize);
    return s;
}

// Roughly European prose: mostly ASCII with accented letters, some CJK and an emoji.
std::wstring MixedText() {
    std::wstring s;
    const wchar_t* words[] = {L"caf\u00e9 ", L"stra\u00dfe ", L"order ",      L"\u65e5\u672c ",
                              L"\u00e0 la ", L"item ",        L"\U0001F600 ", L"na\u00efve "};
    std::mt19937 rng(11);
    while (s.size() < kSize)
        s += words[rng() % 8];
    return s;
}

std::vector<unsigned char> Utf8(const std::wstring& s) {
    std::vector<unsigned char> out(UnicodeToUTF8(s.data(), s.size(), nullptr, 0));
    UnicodeToUTF8(s.data(), s.size(), out.data(), out.size());
    return out;
}

void Utf8ToWide(benchmark::State& state, const std::wstring& text) {
    std::vector<unsigned char> bytes = Utf8(text);
    for (auto _ : state) {
        std::wstring wide = CEncoder::Utf8ToUnicode(bytes.data(), static_cast<int>(bytes.size()));
        benchmark::DoNotOptimize(wide.data());
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(bytes.size()));
}

void WideToUtf8(benchmark::State& state, const std::wstring& text) {
    size_t utf8Size = Utf8(text).size();
    for (auto _ : state) {
        CBinaryData bytes = CEncoder::UnicodeToUtf8Binary(text.c_str());
        benchmark::DoNotOptimize(bytes.GetLength());
    }
    // Measured in UTF-8 bytes produced, the same unit as the decoding direction.
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(utf8Size));
}

void BM_Utf8ToWide_Ascii(benchmark::State& state) {
    Utf8ToWide(state, AsciiText());
}

void BM_Utf8ToWide_Mixed(benchmark::State& state) {
    Utf8ToWide(state, MixedText());
}

void BM_WideToUtf8_Ascii(benchmark::State& state) {
    WideToUtf8(state, AsciiText());
}

void BM_WideToUtf8_Mixed(benchmark::State& state) {
    WideToUtf8(state, MixedText());
}

std::vector<unsigned char> RandomBytes() {
    std::vector<unsigned char> data(kSize);
    std::mt19937 rng(3);
    for (unsigned char& b : data)
        b = static_cast<unsigned char>(rng());
    return data;
}

void BM_Base64Encode(benchmark::State& state) {
    std::vector<unsigned char> data = RandomBytes();
    CBase64 base64;
    for (auto _ : state) {
        std::wstring text = base64.Encode(data.data(), static_cast<int>(data.size()));
        benchmark::DoNotOptimize(text.data());
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(data.size()));
}

void BM_Base64Decode(benchmark::State& state) {
    std::vector<unsigned char> data = RandomBytes();
    CBase64 base64;
    std::wstring text = base64.Encode(data.data(), static_cast<int>(data.size()));
    std::vector<unsigned char> out(text.size() + 1);
    for (auto _ : state) {
        int n = base64.Decode(text.c_str(), out.data());
        benchmark::DoNotOptimize(n);
    }
    // Bytes of decoded output, so encode and decode compare on the same 1 MB.
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(data.size()));
}

void BM_HexEncodeDecode(benchmark::State& state) {
    std::vector<unsigned char> data = RandomBytes();
    for (auto _ : state) {
        CBinaryData binary(data.data(), static_cast<unsigned long>(data.size()), false);
        std::wstring hex = binary.GetAsHexString();
        binary.SetAsHexString(hex.c_str());
        benchmark::DoNotOptimize(binary.GetLength());
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(data.size()));
}

void BM_StringBufferAppendChar(benchmark::State& state) {
    for (auto _ : state) {
        CStringBuffer buffer;
        for (size_t i = 0; i < kSize; ++i)
            buffer.Append(static_cast<wchar_t>(L'a' + (i & 15)));
        benchmark::DoNotOptimize(buffer.GetText());
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * int64_t(kSize));
}

} // namespace

BENCHMARK(BM_Utf8ToWide_Ascii);
BENCHMARK(BM_Utf8ToWide_Mixed);
BENCHMARK(BM_WideToUtf8_Ascii);
BENCHMARK(BM_WideToUtf8_Mixed);
BENCHMARK(BM_Base64Encode);
BENCHMARK(BM_Base64Decode);
BENCHMARK(BM_HexEncodeDecode);
BENCHMARK(BM_StringBufferAppendChar);
