#include "bench/Comparison.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "bench/RatioReporter.h"

namespace OvXmlLib16::bench {

namespace {

void Measure(benchmark::State& state, const Work& work, std::size_t bytes) {
  for (auto _ : state) work();
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
}

}  // namespace

void AddComparison(const std::string& work, std::size_t bytes, const Work& reference, const std::string& name,
                   const Work& pass) {
  benchmark::RegisterBenchmark((kReference + ("/" + work)).c_str(), Measure, reference, bytes);
  benchmark::RegisterBenchmark((name + "/" + work).c_str(), Measure, pass, bytes);
}

int RunComparisons(int argc, char** argv, const char* baseline) {
  // The later flag wins, so these are no more than defaults.
  std::vector<std::string> arguments = {argv[0], "--benchmark_repetitions=9", "--benchmark_min_time=0.02",
                                        "--benchmark_enable_random_interleaving=true"};
  arguments.insert(arguments.end(), argv + 1, argv + argc);
  std::vector<char*> pointers;
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  int count = static_cast<int>(pointers.size());
  benchmark::Initialize(&count, pointers.data());
  if (benchmark::ReportUnrecognizedArguments(count, pointers.data())) return 1;
  RatioReporter reporter(baseline, /*printsRuns=*/false);
  benchmark::RunSpecifiedBenchmarks(&reporter);
  return 0;
}

}  // namespace OvXmlLib16::bench
