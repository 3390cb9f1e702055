#include "ovxmllib/foundation/WhitespaceUtils.h"

#include <algorithm>
#include <cstdint>

#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/foundation/UnitLanes.h"

namespace OvXmlLib16 {

namespace {

using lanes::Below;
using lanes::FindInWords;
using lanes::kLanes;
using lanes::Load;

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

template <WChar kLimit>
[[gnu::always_inline]] inline bool HasAnyBelow(WStringView value) noexcept {
  if (value.size() < kLanes) {
    return std::any_of(value.begin(), value.end(), [](WChar c) { return c < kLimit; });
  }
  const WChar* const text = value.data();
  return FindInWords(value.size(), [=](std::size_t i) { return Below(Load(text + i), kLimit); }) != 0;
}

// Whether two blanks stand side by side: both differ from a blank by less than 1.
bool HasDoubleBlank(WStringView value) noexcept {
  if (value.size() <= kLanes) return value.find(u"  ") != WStringView::npos;
  const WChar* const text = value.data();
  return FindInWords(value.size() - 1, [=](std::size_t i) {
           const std::uint64_t blanks = lanes::kOnes * u' ';
           return Below((Load(text + i) ^ blanks) | (Load(text + i + 1) ^ blanks), 1);
         }) != 0;
}

WStringView Trim(WStringView value) noexcept {
  while (!value.empty() && CWhitespaceUtils::IsWhiteSpace(value.front())) value.remove_prefix(1);
  while (!value.empty() && CWhitespaceUtils::IsWhiteSpace(value.back())) value.remove_suffix(1);
  return value;
}

// Whether the rule would change a value, which for Collapse is trimmed already.
bool IsChanged(CWhitespaceUtils::WhitespaceRule rule, WStringView value) noexcept {
  if (rule == CWhitespaceUtils::WhitespaceRule_Collapse && HasDoubleBlank(value)) return true;
  if (!HasAnyBelow<u' '>(value)) return false;
  return std::any_of(value.begin(), value.end(), [](WChar c) { return c < u' ' && CWhitespaceUtils::IsWhiteSpace(c); });
}

}  // namespace

bool CWhitespaceUtils::MayChange(WhitespaceRule rule, WStringView value) noexcept {
  switch (rule) {
    case WhitespaceRule_None:
      return false;
    case WhitespaceRule_Preserve:
    case WhitespaceRule_Replace:
      return HasAnyBelow<u' '>(value);
    case WhitespaceRule_Collapse:
      return HasAnyBelow<u' ' + 1>(value);
  }
  return true;  // of a rule that is none ApplyRule complains
}

WStringView CWhitespaceUtils::ApplyChange(WhitespaceRule rule, WStringView value, WString& scratch) {
  if (rule == WhitespaceRule_Collapse) value = Trim(value);
  const bool isRule = rule >= WhitespaceRule_None && rule <= WhitespaceRule_Collapse;
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
