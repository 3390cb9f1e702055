// The pattern facet (XML Schema Part 2, section 4.3.4).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

/// What the process keeps of compiled patterns: at most so many, in at most so many bytes with their machine code. The
/// ones used longest ago go first. Beside that a thread holds on to the kPatternsPerThread that it used last.
inline constexpr std::size_t kMaxCachedPatterns = 1'024;
inline constexpr std::size_t kMaxCachedPatternBytes = std::size_t{32} * 1'024 * 1'024;
inline constexpr std::size_t kPatternsPerThread = 64;

/// What one match may cost: steps, in the matcher's own count, and memory in bytes. A step may look at the whole value,
/// so long values get fewer: not more than kMaxPatternWork divided by their bytes.
inline constexpr std::uint32_t kMaxPatternSteps = 10'000'000;
inline constexpr std::uint64_t kMaxPatternWork = 5'000'000'000;
inline constexpr std::size_t kMaxPatternMemory = std::size_t{64} * 1'024 * 1'024;

/// Whether the whole of `value` matches the XML Schema regular expression; TranslatePattern tells what is understood by
/// one. Compiled patterns are kept for the next call, so that a repeated one costs little more than the matching; any
/// number of threads may call at once.
///
/// Throws COvException "Invalid Regular Expression: ..." for a pattern that cannot be used, COvException when a match
/// would go beyond the limits above, and COvInvalidValueException at an unpaired surrogate in the value or in the
/// pattern, or a pattern that is no UTF-8.
bool MatchesPattern(std::string_view utf8Pattern, WStringView value);
/// The same for a pattern in UTF-16, which spares the caller the conversion.
bool MatchesPattern(WStringView pattern, WStringView value);

}  // namespace OvXmlLib16
