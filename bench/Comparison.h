// What the benchmarks of values share: one piece of work done in two ways.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace OvXmlLib16::bench {

/// Does the work once.
using Work = std::function<void()>;

/// Enters two ways of doing the same work on `bytes` bytes of text: the one that the other is divided by, and `name`.
void AddComparison(const std::string& work, std::size_t bytes, const Work& reference, const std::string& name,
                   const Work& pass);

/// The name under which references are entered.
inline constexpr char kReference[] = "Reference";

/// The body of `main`: runs what was entered and prints the ratios to `baseline`. Takes Google Benchmark's flags.
/// Returns the exit code.
int RunComparisons(int argc, char** argv, const char* baseline = kReference);

}  // namespace OvXmlLib16::bench
