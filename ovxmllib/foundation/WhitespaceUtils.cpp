#include "ovxmllib/foundation/WhitespaceUtils.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

#include "ovxmllib/binding/OvException.h"

namespace OvXmlLib16 {

namespace {

// Puts `replacement` in the place of each character that `isReplaced` picks, which must pick CR, and of each CR LF
// pair.
template <class Predicate>
WString ReplaceEach(WStringView value, WChar replacement, Predicate isReplaced) {
  WString result;
  result.reserve(value.size());
  for (auto i = value.begin(); i != value.end();) {
    const auto runEnd = std::find_if(i, value.end(), isReplaced);
    result.append(i, runEnd);
    if (runEnd == value.end()) break;
    result += replacement;
    i = runEnd + 1;
    if (*runEnd == u'\r' && i != value.end() && *i == u'\n') ++i;
  }
  return result;
}

// Whether a unit lies below `kLimit`, four at a time: a subtraction in each lane of 16 bits borrows from its top bit
// when it does ("Bit Twiddling Hacks", Determine if a word has a byte less than n). `kLimit` is at most 0x8000.
template <WChar kLimit>
bool HasAnyBelow(WStringView value) noexcept {
  constexpr std::uint64_t kOnes = 0x0001'0001'0001'0001, kTops = kOnes << 15;
  constexpr std::size_t kLanes = 4;
  std::uint64_t below = 0;
  std::size_t i = 0;
  for (; i + kLanes <= value.size(); i += kLanes) {
    std::uint64_t units;
    std::memcpy(&units, value.data() + i, sizeof(units));
    below |= (units - kOnes * kLimit) & ~units & kTops;
  }
  bool has = below != 0;
  for (; i < value.size(); ++i) has |= value[i] < kLimit;
  return has;
}

WStringView Trim(WStringView value) noexcept {
  while (!value.empty() && CWhitespaceUtils::IsWhiteSpace(value.front())) value.remove_prefix(1);
  while (!value.empty() && CWhitespaceUtils::IsWhiteSpace(value.back())) value.remove_suffix(1);
  return value;
}

// Whether two blanks stand side by side, eight places at a time.
bool HasDoubleBlank(WStringView value) noexcept {
  using Units [[gnu::vector_size(16)]] = std::uint16_t;
  constexpr std::size_t kLanes = sizeof(Units) / sizeof(WChar);
  constexpr Units kBlanks = {u' ', u' ', u' ', u' ', u' ', u' ', u' ', u' '};
  std::size_t i = 0;
  for (; i + kLanes < value.size(); i += kLanes) {
    Units units, behind;
    std::memcpy(&units, value.data() + i, sizeof units);
    std::memcpy(&behind, value.data() + i + 1, sizeof behind);
    const auto found = std::bit_cast<std::array<std::uint64_t, 2>>((units == kBlanks) & (behind == kBlanks));
    if ((found[0] | found[1]) != 0) return true;
  }
  for (; i + 1 < value.size(); ++i) {
    if (value[i] == u' ' && value[i + 1] == u' ') return true;
  }
  return false;
}

// Whether the rule would change a value, which for Collapse is trimmed already.
bool IsChanged(CWhitespaceUtils::WhitespaceRule rule, WStringView value) noexcept {
  if (rule == CWhitespaceUtils::WhitespaceRule_Collapse && HasDoubleBlank(value)) return true;
  if (!HasAnyBelow<u' '>(value)) return false;
  return std::any_of(value.begin(), value.end(), [](WChar c) { return c < u' ' && CWhitespaceUtils::IsWhiteSpace(c); });
}

}  // namespace

WStringView CWhitespaceUtils::ApplyRule(WhitespaceRule rule, WStringView value, WString& scratch) {
  const bool isRule = rule >= WhitespaceRule_None && rule <= WhitespaceRule_Collapse;
  if (isRule && (rule == WhitespaceRule_None || !HasAnyBelow<u' ' + 1>(value))) return value;
  if (rule == WhitespaceRule_Collapse) value = Trim(value);
  if (isRule && !IsChanged(rule, value)) return value;
  return scratch = ApplyRule(rule, value);
}

WString CWhitespaceUtils::ApplyRule(WhitespaceRule rule, WStringView value) {
  switch (rule) {
    case WhitespaceRule_None:
      return WString(value);
    case WhitespaceRule_Preserve:
      return Preserve(value);
    case WhitespaceRule_Replace:
      return Replace(value);
    case WhitespaceRule_Collapse:
      return Collapse(value);
  }
  throw COvException(u"Unknown WhitespaceRule");
}

WString CWhitespaceUtils::Preserve(WStringView value) {
  return ReplaceEach(value, u'\n', [](WChar c) { return c == u'\r'; });
}

WString CWhitespaceUtils::Replace(WStringView value) {
  return ReplaceEach(value, u' ', [](WChar c) { return c != u' ' && IsWhiteSpace(c); });
}

WString CWhitespaceUtils::Collapse(WStringView value) {
  WString result;
  result.reserve(value.size());
  for (auto i = value.begin(); i != value.end();) {
    const auto wordStart = std::find_if_not(i, value.end(), IsWhiteSpace);
    if (wordStart == value.end()) break;
    if (!result.empty()) result += u' ';
    i = std::find_if(wordStart, value.end(), IsWhiteSpace);
    result.append(wordStart, i);
  }
  return result;
}

}  // namespace OvXmlLib16
