// Binding the shared purchase-order corpus: FromXmlStream and ToXmlStream (UTF-8) beside bare
// expat reading the same bytes, and the heap held while reading.

#include "BareExpat.h"
#include "BenchCorpus.h"
#include "OrdersBinding.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <memory>

using namespace bench;
using namespace QvXmlLib16;

namespace {

void BM_BareExpat(benchmark::State& state) {
    const char* data = reinterpret_cast<const char*>(CorpusData());
    for (auto _ : state) {
        if (!ParseWithBareExpat(data, static_cast<int>(CorpusSize())))
            state.SkipWithError("expat failed on the corpus");
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(CorpusSize()));
}

void BM_FromXmlStream(benchmark::State& state) {
    size_t orders = 0;
    for (auto _ : state) {
        CSmartPtr<orders::COrders> document = new orders::COrders();
        document->FromXmlStream(CorpusData(), CorpusSize());
        orders = static_cast<size_t>(document->Orders->GetCount());
        state.PauseTiming();
        document = nullptr;
        state.ResumeTiming();
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(CorpusSize()));
    state.counters["orders"] = static_cast<double>(orders);
}

const orders::COrders& LoadedOrders() {
    static const CSmartPtr<orders::COrders> loaded = [] {
        CSmartPtr<orders::COrders> document = new orders::COrders();
        document->FromXmlStream(CorpusData(), CorpusSize());
        return document;
    }();
    return *loaded;
}

void BM_ToXmlStream(benchmark::State& state) {
    const orders::COrders& document = LoadedOrders();
    CSerializationContext ctx;
    ctx.SetDefaultNamespaceURI(orders::kNs);
    size_t bytes = 0;
    for (auto _ : state) {
        CBinaryData out = document.ToXmlStream(true, true, Encoding_UTF8, EOL_LF, ctx);
        bytes = out.GetLength();
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(bytes));
}

// The read split into its phases, each timed alone: building the tree, binding the objects
// from it, and destroying the tree.
void BM_ReadPhases(benchmark::State& state) {
    using Clock = std::chrono::steady_clock;
    CorpusData(); // generated before the first phase is timed
    double build = 0, bind = 0, destroy = 0;
    for (auto _ : state) {
        CSmartPtr<orders::COrders> document = new orders::COrders();
        const auto t0 = Clock::now();
        auto tree = std::make_unique<CXmlDocument>();
        tree->LoadXmlStream(CorpusData(), CorpusSize());
        const auto t1 = Clock::now();
        document->FromXmlElement(tree->GetDocumentElement());
        const auto t2 = Clock::now();
        tree.reset();
        const auto t3 = Clock::now();
        build += std::chrono::duration<double, std::milli>(t1 - t0).count();
        bind += std::chrono::duration<double, std::milli>(t2 - t1).count();
        destroy += std::chrono::duration<double, std::milli>(t3 - t2).count();
        state.PauseTiming();
        document = nullptr;
        state.ResumeTiming();
    }
    const double n = static_cast<double>(state.iterations());
    state.counters["build_ms"] = build / n;
    state.counters["bind_ms"] = bind / n;
    state.counters["destroy_ms"] = destroy / n;
}

// The peak of the heap while a read runs: the tree and the objects exist together at the end.
void BM_PeakMemoryWhileReading(benchmark::State& state) {
    CorpusData();
    size_t peak = 0, objects = 0, treeBytes = 0;
    for (auto _ : state) {
        const size_t before = HeapInUse();
        CSmartPtr<orders::COrders> document = new orders::COrders();
        {
            CXmlDocument tree;
            tree.LoadXmlStream(CorpusData(), CorpusSize());
            treeBytes = HeapInUse() - before;
            CXmlElement* root = tree.GetDocumentElement();
            document->FromXmlElement(root);
            peak = HeapInUse() - before;
        }
        objects = HeapInUse() - before;
    }
    state.counters["peak_per_input_byte"] = double(peak) / double(CorpusSize());
    state.counters["objects_per_input_byte"] = double(objects) / double(CorpusSize());
    state.counters["tree_per_input_byte"] = double(treeBytes) / double(CorpusSize());
}

} // namespace

// A few seconds each: two or three iterations of a 20 MB read swing by a quarter here.
BENCHMARK(BM_BareExpat)->Unit(benchmark::kMillisecond)->MinTime(3);
BENCHMARK(BM_FromXmlStream)->Unit(benchmark::kMillisecond)->MinTime(3);
BENCHMARK(BM_ReadPhases)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ToXmlStream)->Unit(benchmark::kMillisecond)->MinTime(3);
BENCHMARK(BM_PeakMemoryWhileReading)->Unit(benchmark::kMillisecond)->Iterations(1);
