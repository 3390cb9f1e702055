// How reading and writing go with two threads: one shared context, a document and an output of each thread's own.

#include <benchmark/benchmark.h>

#include <memory>

#include "bench/BoundOrders.h"
#include "bench/OrdersDocument.h"
#include "bench/WriterScript.h"
#include "ovxmllib/document/XmlDocument.h"
#include "ovxmllib/document/XmlTextWriter.h"
#include "ovxmllib/foundation/TextStream.h"

namespace {

using namespace OvXmlLib16;

/// items_per_second of two threads divided by that of one is what the second core brings.
void ReadAndWrite(benchmark::State& state) {
  static const CSerializationContext context;
  const std::string text =
      bench::MakeOrdersDocument(static_cast<std::size_t>(state.range(0)), bench::kOrdersSeed + state.thread_index());
  const bench::WriterScript script(text);
  for (auto _ : state) {
    CXmlDocument document(context);
    document.LoadXmlStream(reinterpret_cast<const unsigned char*>(text.data()), text.size());
    CTextStream stream(XmlEncoding_UTF8);
    CXmlTextWriter writer(&stream);
    writer.Open();
    script.Replay(writer);
    writer.Close();
    benchmark::DoNotOptimize(stream.GetBytes().GetLength());
  }
  state.SetItemsProcessed(state.iterations());
}

/// The same of bound objects.
void ReadAndWriteObjects(benchmark::State& state) {
  CXmlObjectBase::Register(16, 1);
  const std::string text =
      bench::MakeOrdersDocument(static_cast<std::size_t>(state.range(0)), bench::kOrdersSeed + state.thread_index());
  for (auto _ : state) {
    benchmark::DoNotOptimize(bench::WriteObject(*bench::ReadObject(text).operator->()).GetLength());
  }
  state.SetItemsProcessed(state.iterations());
}

}  // namespace

BENCHMARK(ReadAndWriteObjects)->Arg(1'000)->Arg(100'000)->Arg(10'000'000)->Threads(1)->Threads(2)->UseRealTime();
BENCHMARK(ReadAndWrite)->Arg(1'000)->Arg(100'000)->Arg(10'000'000)->Threads(1)->Threads(2)->UseRealTime();

BENCHMARK_MAIN();
