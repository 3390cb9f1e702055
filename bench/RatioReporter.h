// Prints what was measured as ratios to a baseline.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace OvXmlLib16::bench {

/// The counter by which a benchmark reports heap in place of time, in bytes per byte of document.
inline constexpr char kHeapCounter[] = "heap_per_byte";

/// Divides the time of each benchmark, named `road/document`, by the baseline road's time on the same document.
///
/// What disturbs a run on a shared machine only ever adds time, so the ratio is that of the fastest repetitions; that
/// of the medians stands beside it, and where the two differ by much the run was too noisy to quote. Both need the
/// repetitions of all benchmarks shuffled over the whole run, or a slow minute falls on one road alone. Time is the
/// thread's CPU time: waiting for other processes does not count.
class RatioReporter : public benchmark::ConsoleReporter {
 public:
  /// `baseline` names the road that the others are divided by; `printsRuns` keeps Google Benchmark's own table.
  RatioReporter(std::string baseline, bool printsRuns);

  bool ReportContext(const Context& context) override;
  void ReportRuns(const std::vector<Run>& runs) override;

  /// Prints the ratios; a road whose baseline was filtered out shows its speed alone.
  void Finalize() override;

 private:
  struct Timing {
    std::string road;
    std::string document;
    double bytesPerPass = 0;
    std::vector<double> secondsPerPass;  // one a repetition, ascending

    double Fastest() const { return secondsPerPass.front(); }
    double Median() const { return secondsPerPass[secondsPerPass.size() / 2]; }
  };

  const Timing* FindBaseline(const std::string& document) const;
  void PrintTiming(const Timing& timing);

  std::string m_baseline;
  bool m_printsRuns;
  std::map<std::int64_t, Timing> m_timings;  // in order of registration
  std::map<std::string, double> m_heapFigures;
};

}  // namespace OvXmlLib16::bench
