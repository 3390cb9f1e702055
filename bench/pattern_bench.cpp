// Values against patterns, each road as a ratio to bare PCRE2 with machine code on the same value.
//
// The library's road begins with the value in UTF-16, so it pays for the conversion and for finding the compiled
// pattern; the bare roads have both ready. The baseline calls the machine code directly and checks nothing, which is
// the least that a match can cost; PcreMatch is the ordinary call, which also checks that the value is UTF-8.

#define PCRE2_CODE_UNIT_WIDTH 8
#include <benchmark/benchmark.h>
#include <pcre2.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "bench/Comparison.h"
#include "ovxmllib/values/Pattern.h"

namespace {

using namespace OvXmlLib16;

constexpr char kBaseline[] = "PcreJit";

/// One pattern, in the library's language and by hand in PCRE2's, and a value that matches it.
struct Case {
  std::string_view name;
  std::string_view pattern;
  std::string_view bare;
  std::string_view value;
};

constexpr Case kCases[] = {
    {"code10", R"([A-Z]{3}-\d{4,6})", R"(^(?:[A-Z]{3}-\d{4,6})$)", "ABC-123456"},
    {"name24", R"(\i\c*)", R"(^(?:[A-Za-z_:][\w.\-:]*)$)", "purchaseOrder.item-count"},
    {"name60", R"(\i\c*)", R"(^(?:[A-Za-z_:][\w.\-:]*)$)",
     "a-rather-long-identifier:of.sixty.characters-as_in_some_file"},
    {"choice14", "pending|confirmed|shipped|partially-paid|cancelled",
     "^(?:pending|confirmed|shipped|partially-paid|cancelled)$", "partially-paid"},
    {"groups36", "[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}", "^(?:[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12})$",
     "0f8fad5b-d9cb-469f-a165-70867728950e"},
};

/// PCRE2 as a careful user would call it: everything that can be kept between calls is.
class BarePcre {
 public:
  explicit BarePcre(std::string_view pattern) {
    int error = 0;
    PCRE2_SIZE place = 0;
    m_code = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern.data()), pattern.size(), PCRE2_UTF | PCRE2_ANCHORED,
                           &error, &place, nullptr);
    if (m_code == nullptr || pcre2_jit_compile(m_code, PCRE2_JIT_COMPLETE) != 0) std::abort();
    m_data = pcre2_match_data_create_from_pattern(m_code, nullptr);
    m_context = pcre2_match_context_create(nullptr);
    pcre2_set_match_limit(m_context, 10'000'000);
  }
  ~BarePcre() {
    pcre2_match_context_free(m_context);
    pcre2_match_data_free(m_data);
    pcre2_code_free(m_code);
  }
  BarePcre(const BarePcre&) = delete;
  BarePcre& operator=(const BarePcre&) = delete;

  bool Matches(std::string_view value, decltype(&pcre2_match) match) const {
    return match(m_code, reinterpret_cast<PCRE2_SPTR>(value.data()), value.size(), 0, 0, m_data, m_context) > 0;
  }

 private:
  pcre2_code* m_code;
  pcre2_match_data* m_data;
  pcre2_match_context* m_context;
};

void Measure(benchmark::State& state, std::size_t bytes, const auto& matches) {
  if (!matches()) std::abort();
  for (auto _ : state) benchmark::DoNotOptimize(matches());
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
}

void MeasureBare(benchmark::State& state, const Case& example, decltype(&pcre2_match) match) {
  const BarePcre bare(example.bare);
  Measure(state, example.value.size(), [&] { return bare.Matches(example.value, match); });
}

void MeasureOurs(benchmark::State& state, const Case& example, const auto& pattern) {
  const WString value = ToWide(example.value);
  Measure(state, value.size(), [&] { return MatchesPattern(pattern, WStringView(value)); });
}

void Register(const Case& example) {
  const auto add = [&example](const std::string& road, const auto& measure) {
    benchmark::RegisterBenchmark((road + '/' + std::string(example.name)).c_str(), measure);
  };
  add(kBaseline, [&example](benchmark::State& state) { MeasureBare(state, example, pcre2_jit_match); });
  add("PcreMatch", [&example](benchmark::State& state) { MeasureBare(state, example, pcre2_match); });
  add("Utf8Pattern", [&example](benchmark::State& state) { MeasureOurs(state, example, example.pattern); });
  add("WidePattern", [&example](benchmark::State& state) { MeasureOurs(state, example, ToWide(example.pattern)); });
}

}  // namespace

int main(int argc, char** argv) {
  for (const Case& example : kCases) Register(example);
  return bench::RunComparisons(argc, argv, kBaseline);
}
