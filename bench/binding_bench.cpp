// Generated classes written to XML and read back through the driver, beside bare expat on the
// same bytes. Two graphs: many orders with every member kind written one by one into one
// document, and chains of self-nesting nodes 500 levels deep.

#include "BareExpat.h"
#include "binding-fixtures/NodeBinding.h"
#include "binding-fixtures/OrderBinding.h"

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

using namespace fixtures;

using bench::ParseWithBareExpat;

namespace {

constexpr int kOrders = 10000;
constexpr int kChains = 40;
constexpr int kChainDepth = 500;

// Every member kind, values varying from order to order.
CSmartPtr<COrder> MakeOrder(int i) {
    CSmartPtr<COrder> order = MakeFullOrder();
    order->Id = i + 1;
    order->OrderDate = CDateTime(2000 + i % 50, 1 + i % 12, 1 + i % 28);
    order->Status = i % 3;
    order->ShipTo->Street = std::to_wstring(i) + L" Main Street";
    if (i % 2)
        order->ShipTo->Zip.reset();
    if (i % 3 == 0)
        order->BillTo = nullptr;
    order->Note = L"Note " + std::to_wstring(i) + L" & co";
    order->Priority = i % 3;
    order->Total = CDecimal((std::to_wstring(i) + L".25").c_str());
    if (i % 2) {
        CSmartPtr<CSquare> square = new CSquare();
        square->SetElementName(L"Shape");
        square->Side = i * 0.5;
        order->Shape = square.Ptr();
    }
    order->Comment->Value = L"Comment " + std::to_wstring(i);
    return order;
}

struct Graph {
    const wchar_t* rootName;
    bool formatted;              // chains unformatted: indentation would outweigh their elements
    CXmlObjectBase* (*create)(); // a new, empty item for the readers
    std::vector<CSmartPtr<CXmlObjectBase>> items;
    CBinaryData bytes; // the graph written once, for the readers
    size_t elements = 0;
};

// One document: a root element holding every item, written the way ToXmlStream writes a root.
CBinaryData Write(const Graph& graph) {
    CTextStream stream(Encoding_UTF8);
    CXmlTextWriter writer(stream);
    writer.Open();
    writer.SetFormat(graph.formatted);
    writer.SetDefaultNamespace(kNs);
    writer.WriteStartDocument();
    writer.WriteStartElement(graph.rootName, kNs);
    for (const CSmartPtr<CXmlObjectBase>& item : graph.items)
        CXmlObjectBase::ToXml_Int(item, &writer, false, kNs,
                                  CSerializationContext::m_defaultContext, false);
    writer.WriteEndElement();
    writer.Close();
    return stream.GetEncodedStream();
}

size_t CountElements(const CXmlElement* root) {
    size_t count = 0;
    std::vector<const CXmlElement*> pending{root};
    while (!pending.empty()) {
        const CXmlElement* e = pending.back();
        pending.pop_back();
        ++count;
        for (const CXmlElement* c = e->GetFirstElement(); c; c = c->GetNextSiblingElement())
            pending.push_back(c);
    }
    return count;
}

Graph MakeGraph(const wchar_t* rootName, bool formatted, CXmlObjectBase* (*create)(),
                std::vector<CSmartPtr<CXmlObjectBase>> items) {
    Graph graph{rootName, formatted, create, std::move(items), CBinaryData(), 0};
    graph.bytes = Write(graph);
    CXmlDocument doc;
    doc.LoadXmlStream(const_cast<unsigned char*>(graph.bytes.GetData()), graph.bytes.GetLength());
    graph.elements = CountElements(doc.GetDocumentElement());
    return graph;
}

const Graph& Orders() {
    static const Graph graph = [] {
        std::vector<CSmartPtr<CXmlObjectBase>> items;
        for (int i = 0; i < kOrders; ++i)
            items.push_back(MakeOrder(i).Ptr());
        return MakeGraph(
            L"Orders", true, [] { return static_cast<CXmlObjectBase*>(new COrder()); },
            std::move(items));
    }();
    return graph;
}

const Graph& Chains() {
    static const Graph graph = [] {
        std::vector<CSmartPtr<CXmlObjectBase>> items;
        for (int i = 0; i < kChains; ++i)
            items.push_back(MakeChain(kChainDepth).Ptr());
        return MakeGraph(
            L"Chains", false, [] { return static_cast<CXmlObjectBase*>(new CNode()); },
            std::move(items));
    }();
    return graph;
}

void Report(benchmark::State& state, const Graph& graph) {
    state.SetBytesProcessed(int64_t(state.iterations()) * graph.bytes.GetLength());
    // Seconds of CPU per element, printed with an SI prefix ("250n" is 250 ns).
    state.counters["per_element"] = benchmark::Counter(
        static_cast<double>(graph.elements) * static_cast<double>(state.iterations()),
        benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    state.counters["elements"] = static_cast<double>(graph.elements);
}

void BM_Write(benchmark::State& state, const Graph& (*make)()) {
    const Graph& graph = make();
    for (auto _ : state) {
        CBinaryData bytes = Write(graph);
        benchmark::DoNotOptimize(bytes.GetLength());
    }
    Report(state, graph);
}

// Loading the bytes into the tree and binding every item to a new object.
void BM_Read(benchmark::State& state, const Graph& (*make)()) {
    const Graph& graph = make();
    for (auto _ : state) {
        CXmlDocument doc;
        doc.LoadXmlStream(const_cast<unsigned char*>(graph.bytes.GetData()),
                          graph.bytes.GetLength());
        for (const CXmlElement* e = doc.GetDocumentElement()->GetFirstElement(); e;
             e = e->GetNextSiblingElement()) {
            CSmartPtr<CXmlObjectBase> item = graph.create();
            item->FromXmlElement(e);
            benchmark::DoNotOptimize(item.Ptr());
        }
    }
    Report(state, graph);
}

// The binding alone, on a tree loaded once.
void BM_Bind(benchmark::State& state, const Graph& (*make)()) {
    const Graph& graph = make();
    CXmlDocument doc;
    doc.LoadXmlStream(const_cast<unsigned char*>(graph.bytes.GetData()), graph.bytes.GetLength());
    for (auto _ : state) {
        for (const CXmlElement* e = doc.GetDocumentElement()->GetFirstElement(); e;
             e = e->GetNextSiblingElement()) {
            CSmartPtr<CXmlObjectBase> item = graph.create();
            item->FromXmlElement(e);
            benchmark::DoNotOptimize(item.Ptr());
        }
    }
    Report(state, graph);
}

// The floor under reading: expat on the same bytes with handlers that do nothing.
void BM_BareExpat(benchmark::State& state, const Graph& (*make)()) {
    const Graph& graph = make();
    const char* data = reinterpret_cast<const char*>(graph.bytes.GetData());
    const int size = static_cast<int>(graph.bytes.GetLength());
    for (auto _ : state) {
        if (!ParseWithBareExpat(data, size))
            state.SkipWithError("expat failed on the written graph");
    }
    Report(state, graph);
}

} // namespace

BENCHMARK_CAPTURE(BM_Write, Orders, Orders)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Read, Orders, Orders)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Bind, Orders, Orders)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_BareExpat, Orders, Orders)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Write, Chains, Chains)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Read, Chains, Chains)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Bind, Chains, Chains)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_BareExpat, Chains, Chains)->Unit(benchmark::kMillisecond);
