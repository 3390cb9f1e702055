#include "bench/RatioReporter.h"

#include <algorithm>
#include <cstddef>
#include <iomanip>
#include <ostream>
#include <utility>

namespace OvXmlLib16::bench {
namespace {

double SecondsPerPass(const benchmark::BenchmarkReporter::Run& run) {
  return run.cpu_accumulated_time / static_cast<double>(run.iterations);
}

}  // namespace

RatioReporter::RatioReporter(std::string baseline, bool printsRuns)
    : ConsoleReporter(OO_None), m_baseline(std::move(baseline)), m_printsRuns(printsRuns) {}

bool RatioReporter::ReportContext(const Context& context) {
  return !m_printsRuns || ConsoleReporter::ReportContext(context);
}

void RatioReporter::ReportRuns(const std::vector<Run>& runs) {
  if (m_printsRuns) ConsoleReporter::ReportRuns(runs);
  for (const Run& run : runs) {
    if (run.run_type != Run::RT_Iteration) continue;
    const std::string& name = run.run_name.function_name;
    if (const auto heap = run.counters.find(kHeapCounter); heap != run.counters.end()) {
      m_heapFigures[name] = heap->second.value;
      continue;
    }
    const std::size_t slash = name.rfind('/');
    Timing& timing = m_timings[run.family_index];
    timing.road = name.substr(0, slash);
    timing.document = name.substr(slash + 1);
    timing.secondsPerPass.push_back(SecondsPerPass(run));
    timing.bytesPerPass = run.counters.at("bytes_per_second").value * SecondsPerPass(run);
  }
}

void RatioReporter::Finalize() {
  for (auto& [index, timing] : m_timings) std::sort(timing.secondsPerPass.begin(), timing.secondsPerPass.end());

  std::ostream& out = GetOutputStream();
  out << std::fixed;
  if (!m_timings.empty()) {
    out << "\nCPU time divided by that of " << m_baseline << " on the same document: the fastest of "
        << m_timings.begin()->second.secondsPerPass.size() << " repetitions (the median)\n";
  }
  for (const auto& [index, timing] : m_timings) PrintTiming(timing);

  for (const auto& [name, bytesPerByte] : m_heapFigures)
    out << name << ": " << std::setprecision(2) << bytesPerByte << " bytes of heap per byte of document\n";
  ConsoleReporter::Finalize();
}

const RatioReporter::Timing* RatioReporter::FindBaseline(const std::string& document) const {
  const auto found = std::find_if(m_timings.begin(), m_timings.end(), [&](const auto& entry) {
    return entry.second.road == m_baseline && entry.second.document == document;
  });
  return found == m_timings.end() ? nullptr : &found->second;
}

void RatioReporter::PrintTiming(const Timing& timing) {
  std::ostream& out = GetOutputStream();
  out << std::left << std::setw(16) << timing.document << std::setw(28) << timing.road << std::right;
  out << std::setprecision(1) << std::setw(8) << timing.bytesPerPass / timing.Fastest() / 1e6 << " MB/s";
  if (const Timing* baseline = FindBaseline(timing.document)) {
    out << std::setprecision(3) << std::setw(9) << timing.Fastest() / baseline->Fastest();
    out << " (" << timing.Median() / baseline->Median() << ")";
  }
  out << '\n';
}

}  // namespace OvXmlLib16::bench
