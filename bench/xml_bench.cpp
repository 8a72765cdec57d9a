// The XML document layer on the purchase-order corpus: reading into the tree against bare expat,
// what the tree costs in memory and to destroy, and writing it back as text.
//
// The corpus is generated on first use by shared/bench/gen_corpus.py into a temporary directory
// (QVXML_BENCH_MB sets its size, 20 MB by default) and is never kept.

#include "BareExpat.h"
#include "BenchCorpus.h"

#include <QvXmlLib16/QvXmlLib16.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <malloc.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

using namespace QvXmlLib16;

using namespace bench;

namespace {

std::unique_ptr<CXmlDocument> LoadCorpus() {
    auto doc = std::make_unique<CXmlDocument>();
    doc->LoadXmlStream(CorpusData(), CorpusSize());
    return doc;
}

struct TreeCounts {
    size_t elements = 0;
    size_t attributes = 0;
};

TreeCounts Count(const CXmlElement* root) {
    TreeCounts counts;
    std::vector<const CXmlElement*> pending{root};
    while (!pending.empty()) {
        const CXmlElement* e = pending.back();
        pending.pop_back();
        ++counts.elements;
        counts.attributes += e->GetAttributes().size();
        for (const CXmlElement* c = e->GetFirstElement(); c; c = c->GetNextSiblingElement())
            pending.push_back(c);
    }
    return counts;
}

// The content of a tree as the writer receives it from generated code: names and values
// already in wide strings, so the writer benchmarks time the writer and nothing else.
struct WriteEvent {
    enum Kind { Start, Attribute, Text, End } kind;

    std::wstring name;
    std::wstring ns;
    std::wstring value;
};

void RecordStartTag(const CXmlElement* e, std::vector<WriteEvent>& events) {
    events.push_back({WriteEvent::Start, e->GetLocalName(), e->GetNamespaceURI(), L""});
    for (const CXmlAttribute* a : e->GetAttributes())
        events.push_back(
            {WriteEvent::Attribute, a->GetLocalName(), a->GetNamespaceURI(), a->GetValue()});
}

// Document order without recursion. Text is kept for leaves only: a container's text is the
// indentation between its children, which the writer redoes.
std::vector<WriteEvent> RecordTree(const CXmlElement* root) {
    std::vector<WriteEvent> events;
    const CXmlElement* e = root;
    int depth = 0;
    while (e) {
        RecordStartTag(e, events);
        if (const CXmlElement* child = e->GetFirstElement()) {
            e = child;
            ++depth;
            continue;
        }
        events.push_back({WriteEvent::Text, L"", L"", e->GetText()});
        events.push_back({WriteEvent::End, L"", L"", L""});
        while (depth > 0 && !e->GetNextSiblingElement()) {
            e = e->GetParentElement();
            --depth;
            events.push_back({WriteEvent::End, L"", L"", L""});
        }
        e = depth > 0 ? e->GetNextSiblingElement() : nullptr;
    }
    return events;
}

void WriteTree(const std::vector<WriteEvent>& events, const std::wstring& defaultNs,
               CXmlTextWriter& writer) {
    writer.SetDefaultNamespace(defaultNs);
    writer.WriteStartDocument();
    for (const WriteEvent& event : events) {
        switch (event.kind) {
        case WriteEvent::Start: writer.WriteStartElement(event.name, event.ns); break;
        case WriteEvent::Attribute:
            writer.WriteAttributeString(event.name, event.ns, event.value, ItemType_string);
            break;
        case WriteEvent::Text: writer.WriteString(event.value, ItemType_string, false); break;
        case WriteEvent::End: writer.WriteEndElement(); break;
        }
    }
    writer.Close();
}

const CXmlDocument& LoadedCorpus() {
    static const std::unique_ptr<CXmlDocument> doc = LoadCorpus();
    return *doc;
}

const std::vector<WriteEvent>& CorpusEvents() {
    static const std::vector<WriteEvent> events = RecordTree(LoadedCorpus().GetDocumentElement());
    return events;
}

const std::wstring& CorpusNamespace() {
    static const std::wstring ns = LoadedCorpus().GetDocumentElement()->GetNamespaceURI();
    return ns;
}

// The size of the written document in UTF-8, the unit both writer benchmarks report in.
int64_t WrittenUtf8Size() {
    static const int64_t size = [] {
        CTextStream stream(Encoding_UTF8);
        CXmlTextWriter writer(stream);
        WriteTree(CorpusEvents(), CorpusNamespace(), writer);
        return static_cast<int64_t>(stream.GetEncodedStream().GetLength());
    }();
    return size;
}

void BM_LoadXmlStream(benchmark::State& state) {
    CorpusData();
    for (auto _ : state) {
        std::unique_ptr<CXmlDocument> doc = LoadCorpus();
        benchmark::DoNotOptimize(doc->GetDocumentElement());
        state.PauseTiming();
        doc.reset();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * CorpusSize());
}

// The floor under LoadXmlStream: expat parsing the same bytes, set up as the reader sets it up,
// with handlers that do nothing.
void BM_BareExpat(benchmark::State& state) {
    const char* data = reinterpret_cast<const char*>(CorpusData());
    const int size = static_cast<int>(CorpusSize());
    for (auto _ : state) {
        if (!ParseWithBareExpat(data, size))
            state.SkipWithError("expat failed on the corpus");
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * size);
}

// Heap held by a loaded document per input byte. The document keeps its copy of the input, so
// "tree" subtracts that one byte per byte.
void BM_TreeMemory(benchmark::State& state) {
    CorpusData();
    size_t held = 0;
    TreeCounts counts;
    for (auto _ : state) {
        const size_t before = HeapInUse();
        std::unique_ptr<CXmlDocument> doc = LoadCorpus();
        held = HeapInUse() - before;
        counts = Count(doc->GetDocumentElement());
    }
    const double input = static_cast<double>(CorpusSize());
    state.counters["held_per_input_byte"] = static_cast<double>(held) / input;
    state.counters["tree_per_input_byte"] = (static_cast<double>(held) - input) / input;
    state.counters["tree_bytes_per_node"] =
        (static_cast<double>(held) - input)
        / static_cast<double>(counts.elements + counts.attributes);
    state.counters["elements"] = static_cast<double>(counts.elements);
    state.counters["attributes"] = static_cast<double>(counts.attributes);
}

void BM_DestroyTree(benchmark::State& state) {
    CorpusData();
    size_t elements = 0;
    for (auto _ : state) {
        state.PauseTiming();
        std::unique_ptr<CXmlDocument> doc = LoadCorpus();
        elements = Count(doc->GetDocumentElement()).elements;
        state.ResumeTiming();
        doc.reset();
    }
    state.counters["elements_per_second"] =
        benchmark::Counter(static_cast<double>(elements) * static_cast<double>(state.iterations()),
                           benchmark::Counter::kIsRate);
}

void BM_WriteTextStream(benchmark::State& state) {
    const std::vector<WriteEvent>& events = CorpusEvents();
    for (auto _ : state) {
        CTextStream stream(Encoding_UTF8);
        CXmlTextWriter writer(stream);
        WriteTree(events, CorpusNamespace(), writer);
        benchmark::DoNotOptimize(stream.GetLength());
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * WrittenUtf8Size());
}

void BM_WriteUtf8(benchmark::State& state) {
    const std::vector<WriteEvent>& events = CorpusEvents();
    for (auto _ : state) {
        CTextStream stream(Encoding_UTF8);
        CXmlTextWriter writer(stream);
        WriteTree(events, CorpusNamespace(), writer);
        CBinaryData bytes = stream.GetEncodedStream();
        benchmark::DoNotOptimize(bytes.GetLength());
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * WrittenUtf8Size());
}

} // namespace

BENCHMARK(BM_LoadXmlStream)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_BareExpat)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TreeMemory)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(BM_DestroyTree)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_WriteTextStream)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_WriteUtf8)->Unit(benchmark::kMillisecond);
