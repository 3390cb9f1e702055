#include "ovxmllib/values/FacetShortcut.h"

#include <algorithm>
#include <limits>
#include <type_traits>

#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/values/ValueChecks.h"

namespace OvXmlLib16 {

namespace {

constexpr std::uint64_t kMaxKey = std::numeric_limits<std::uint64_t>::max();

// The keys of the values that pass. Once empty it stays so.
struct Range {
  void StartAt(std::uint64_t key) noexcept { least = std::max(least, key); }
  void EndAt(std::uint64_t key) noexcept { greatest = std::min(greatest, key); }
  void StartAbove(std::uint64_t key) noexcept { key == kMaxKey ? Empty() : StartAt(key + 1); }
  void EndBelow(std::uint64_t key) noexcept { key == 0 ? Empty() : EndAt(key - 1); }
  void Empty() noexcept {
    least = kMaxKey;
    greatest = 0;
  }

  std::uint64_t least = 0, greatest = kMaxKey;
};

// Integers whose bounds are read as the values are; those of year, month and day are dates.
template <ItemType kType>
constexpr bool kIsInteger = kType >= ItemType_i1&& kType <= ItemType_ui8;

// Of the same order as the values: negative ones come before the others.
template <class Integer>
constexpr std::uint64_t KeyOf(Integer value) noexcept {
  constexpr std::uint64_t kSignBit = std::uint64_t{1} << 63;
  return static_cast<std::uint64_t>(value) ^ (std::is_signed_v<Integer> ? kSignBit : 0);
}

template <ItemType kType>
Range RangeOfBounds(const CPrimitiveRestrictions& facets) {
  const auto keyOf = [](WStringView bound) { return KeyOf(ParseBound<kType>(bound)); };
  Range range;
  if (!facets.m_minInclusive.empty()) range.StartAt(keyOf(facets.m_minInclusive));
  if (!facets.m_maxInclusive.empty()) range.EndAt(keyOf(facets.m_maxInclusive));
  if (!facets.m_minExclusive.empty()) range.StartAbove(keyOf(facets.m_minExclusive));
  if (!facets.m_maxExclusive.empty()) range.EndBelow(keyOf(facets.m_maxExclusive));
  return range;
}

Range RangeOfLengths(const CPrimitiveRestrictions& facets) noexcept {
  constexpr std::int32_t kAbsent = -1;
  Range range;
  const auto startAt = [&](std::int32_t length) { range.StartAt(static_cast<std::uint64_t>(std::max(length, 0))); };
  // A negative length is what no text has.
  const auto endAt = [&](std::int32_t length) {
    length < 0 ? range.Empty() : range.EndAt(static_cast<std::uint64_t>(length));
  };
  if (facets.m_minLength != kAbsent) startAt(facets.m_minLength);
  if (facets.m_maxLength != kAbsent) endAt(facets.m_maxLength);
  if (facets.m_length != kAbsent) {
    startAt(facets.m_length);
    endAt(facets.m_length);
  }
  return range;
}

}  // namespace

FacetShortcut::FacetShortcut(ItemType type, const CPrimitiveRestrictions& facets)
    : m_type(type), m_passesEvery(PassesEveryValue(type, facets)) {
  if (m_passesEvery) return;
  Range range;
  range.Empty();
  try {
    VisitPrimitive(type, [&](auto row) {
      if constexpr (kIsInteger<row.kType>) {
        if (facets.m_totalDigits == -1) range = RangeOfBounds<row.kType>(facets);
      } else if constexpr (row.kType == ItemType_string) {
        if (facets.m_pattern.empty()) range = RangeOfLengths(facets);
      }
    });
  } catch (const COvException&) {
    // A bound that cannot be read is the full check's to tell, at each value.
  }
  m_least = range.least;
  m_greatest = range.greatest;
}

bool FacetShortcut::IsInRange(const OvVariant& value) const noexcept {
  if (value.GetTypeAsEnum() != m_type || value.IsNil()) return false;
  std::uint64_t key = 0;
  bool isKnown = false;
  VisitPrimitive(m_type, [&](auto row) {
    if constexpr (kIsInteger<row.kType>) {
      key = KeyOf(value.Get<row.kType>());
      isKnown = true;
    } else if constexpr (row.kType == ItemType_string) {
      key = value.GetStringView().size();
      isKnown = true;
    }
  });
  return isKnown && key >= m_least && key <= m_greatest;
}

}  // namespace OvXmlLib16
