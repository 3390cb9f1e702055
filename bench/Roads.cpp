#include "bench/Roads.h"

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <utility>
#include <vector>

#include "bench/ExpatFeed.h"
#include "bench/OrdersDocument.h"
#include "bench/RatioReporter.h"

namespace OvXmlLib16::bench {
namespace {

constexpr char kBaseline[] = "Expat";

/// Made at first use, so that a filtered run does not pay for the large ones.
class BenchDocument {
 public:
  BenchDocument(const char* name, std::size_t wantedBytes) : m_name(name), m_wantedBytes(wantedBytes) {}

  const std::string& Text() {
    if (m_text.empty()) m_text = MakeOrdersDocument(m_wantedBytes);
    return m_text;
  }

  std::string NameFor(const std::string& road) const { return road + '/' + m_name; }

  void PrintIfUsed() const {
    if (m_text.empty()) return;
    std::printf("%-6s%zu bytes, FNV-1a %016llx\n", m_name, m_text.size(),
                static_cast<unsigned long long>(DocumentChecksum(m_text)));
  }

 private:
  const char* m_name;
  std::size_t m_wantedBytes;
  std::string m_text;
};

struct Road {
  std::string name;
  PreparePass prepare;
};

std::array<BenchDocument, 4>& Documents() {
  static std::array<BenchDocument, 4> documents = {
      {{"1KB", 1'000}, {"100KB", 100'000}, {"10MB", 10'000'000}, {"100MB", 100'000'000}}};
  return documents;
}

BenchDocument& LargestDocument() { return Documents().back(); }

/// Entered by `main` before the run, the baseline first.
std::vector<Road>& Roads() {
  static std::vector<Road> roads = {{kBaseline, [](std::string_view document) -> Pass {
                                       return [document] { FeedExpat(MakeExpat().get(), document); };
                                     }}};
  return roads;
}

/// Blocks from malloc and from mmap that are in use, with malloc's own overhead: what the process really pays.
std::size_t HeapInUse() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

void MeasureTime(benchmark::State& state, const PreparePass& prepare, BenchDocument& document) {
  const std::string& text = document.Text();
  const Pass pass = prepare(text);
  for (auto _ : state) pass();
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void RegisterRoads() {
  for (BenchDocument& document : Documents()) {
    for (const Road& road : Roads()) {
      benchmark::RegisterBenchmark(document.NameFor(road.name).c_str(), MeasureTime, road.prepare, std::ref(document));
    }
  }
}

}  // namespace

void AddPreparedRoad(std::string name, PreparePass prepare) {
  Roads().push_back({std::move(name), std::move(prepare)});
}

void AddRoad(std::string name, std::function<void(std::string_view)> pass) {
  AddPreparedRoad(std::move(name), [pass = std::move(pass)](std::string_view document) -> Pass {
    return [pass, document] { pass(document); };
  });
}

void AddHeapFigure(std::string name, std::function<std::shared_ptr<const void>(std::string_view)> build) {
  const auto measure = [build = std::move(build)](benchmark::State& state) {
    const std::string& text = LargestDocument().Text();
    const std::size_t before = HeapInUse();
    for (auto _ : state) {
      const std::shared_ptr<const void> kept = build(text);
      state.counters[kHeapCounter] = static_cast<double>(HeapInUse() - before) / static_cast<double>(text.size());
    }
  };
  benchmark::RegisterBenchmark(LargestDocument().NameFor(name).c_str(), measure)->Iterations(1)->Repetitions(1);
}

int RunRoads(int argc, char** argv) {
  // Google Benchmark lets the later flag win, so these are no more than defaults.
  std::vector<std::string> arguments = {argv[0], "--benchmark_repetitions=9", "--benchmark_min_time=0.05",
                                        "--benchmark_enable_random_interleaving=true", "--benchmark_filter=-Piece"};
  arguments.insert(arguments.end(), argv + 1, argv + argc);
  std::vector<char*> pointers;
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  int count = static_cast<int>(pointers.size());

  benchmark::Initialize(&count, pointers.data());
  const bool printsRuns = count > 1 && std::string_view(pointers[1]) == "--runs";
  const int known = printsRuns ? 2 : 1;
  if (benchmark::ReportUnrecognizedArguments(count - known + 1, pointers.data() + known - 1)) return 1;

  RegisterRoads();
  RatioReporter reporter(kBaseline, printsRuns);
  benchmark::RunSpecifiedBenchmarks(&reporter);
  for (const BenchDocument& document : Documents()) document.PrintIfUsed();
  return 0;
}

}  // namespace OvXmlLib16::bench
