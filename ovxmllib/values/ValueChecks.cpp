#include "ovxmllib/values/ValueChecks.h"

#include <concepts>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/values/Pattern.h"

namespace OvXmlLib16 {

namespace {

template <class T>
concept PartiallyOrdered = std::same_as<T, CDateTime> || std::same_as<T, CDateTimeSpan>;

// The four bounds, where what cannot be told does not fail.
template <ItemType kType>
bool HoldsBounds(const typename Primitive<kType>::Value& value, const CPrimitiveRestrictions& facets) {
  using Value = typename Primitive<kType>::Value;
  const auto holds = [&](WStringView bound, auto isOutside, auto isInside) {
    if (bound.empty()) return true;
    if constexpr (PartiallyOrdered<Value>) {
      return !isOutside(value.CompareTo(ParseBound<kType>(bound)));
    } else {
      return isInside(value, ParseBound<kType>(bound));
    }
  };
  using Order = CDateTime;
  return holds(
             facets.m_minInclusive, [](auto order) { return order == Order::dtc_less; },
             [](const auto& v, const auto& bound) { return bound <= v; }) &&
         holds(
             facets.m_maxInclusive, [](auto order) { return order == Order::dtc_greater; },
             [](const auto& v, const auto& bound) { return v <= bound; }) &&
         holds(
             facets.m_minExclusive, [](auto order) { return order == Order::dtc_less || order == Order::dtc_equal; },
             [](const auto& v, const auto& bound) { return bound < v; }) &&
         holds(
             facets.m_maxExclusive, [](auto order) { return order == Order::dtc_greater || order == Order::dtc_equal; },
             [](const auto& v, const auto& bound) { return v < bound; });
}

bool HoldsLengths(std::size_t length, const CPrimitiveRestrictions& facets) noexcept {
  const auto number = static_cast<std::int64_t>(length);
  return (facets.m_minLength == -1 || facets.m_minLength <= number) &&
         (facets.m_maxLength == -1 || number <= facets.m_maxLength) &&
         (facets.m_length == -1 || number == facets.m_length);
}

bool HoldsDigits(std::size_t digits, std::int32_t facet) noexcept {
  return facet == -1 || static_cast<std::int64_t>(digits) <= facet;
}

// Deliberate: of these types a minus sign counts as a digit.
template <ItemType kType>
bool HoldsTotalDigits(const typename Primitive<kType>::Value& value, const CPrimitiveRestrictions& facets) {
  if (facets.m_totalDigits == -1) return true;
  WString text;
  AppendPrimitive<kType>(value, text);
  return HoldsDigits(text.size(), facets.m_totalDigits);
}

bool HoldsDecimalDigits(const CDecimal& value, const CPrimitiveRestrictions& facets) {
  if (facets.m_totalDigits == -1 && facets.m_fractionDigits == -1) return true;
  const CBigInteger zero;
  const std::size_t whole = value.GetIntegerPart() == zero ? 0 : value.GetIntegerPart().GetAbs().ToString().size();
  const std::size_t fraction =
      value.GetFractionPart() == zero ? 0 : static_cast<std::size_t>(value.GetFractionDivider());
  return HoldsDigits(whole + fraction, facets.m_totalDigits) && HoldsDigits(fraction, facets.m_fractionDigits);
}

[[noreturn]] void ThrowInvalidText(WStringView name, WStringView value) {
  throw COvException(FormatString(u"Invalid Value for %s [%s].", name, value));
}

template <ItemType kType>
[[noreturn]] void ThrowInvalid(WStringView name, const typename Primitive<kType>::Value& value) {
  using Value = typename Primitive<kType>::Value;
  if constexpr (std::floating_point<Value>) {
    throw COvException(FormatString(u"Invalid Value for %s [%f]", name, static_cast<double>(value)));
  } else if constexpr (std::integral<Value> && sizeof(Value) <= 4) {
    throw COvException(FormatString(u"Invalid Value for %s [%d]", name, value));
  } else {
    WString text;
    AppendPrimitive<kType>(value, text);
    ThrowInvalidText(name, text);
  }
}

// A pattern that cannot be used or a match that goes too far is told with the value that it was to check.
bool HoldsPattern(WStringView name, WStringView value, WStringView pattern) {
  if (pattern.empty()) return true;
  try {
    return MatchesPattern(pattern, value);
  } catch (const COvException& exception) {
    throw COvException(FormatString(u"%s\nInvalid Value for %s [%s].", exception.GetFullMessage(), name, value));
  }
}

template <ItemType kType>
bool Holds(WStringView name, const typename Primitive<kType>::Value& value, const CPrimitiveRestrictions& facets) {
  using Value = typename Primitive<kType>::Value;
  constexpr bool kIsField = kType == ItemType_year || kType == ItemType_month || kType == ItemType_day;
  if constexpr (std::same_as<Value, bool>) {
    return true;
  } else if constexpr (std::same_as<Value, CBinaryData>) {
    return HoldsLengths(value.GetLength(), facets);
  } else if constexpr (std::same_as<Value, WString>) {
    return HoldsLengths(value.size(), facets) && HoldsPattern(name, value, facets.m_pattern);
  } else if constexpr (std::same_as<Value, CDecimal>) {
    return HoldsBounds<kType>(value, facets) && HoldsDecimalDigits(value, facets);
  } else if constexpr ((std::integral<Value> && !kIsField) || std::same_as<Value, CBigInteger>) {
    return HoldsBounds<kType>(value, facets) && HoldsTotalDigits<kType>(value, facets);
  } else {
    return HoldsBounds<kType>(value, facets);
  }
}

}  // namespace

template <ItemType kType>
void CheckPrimitive(WStringView name, const typename Primitive<kType>::Value& value,
                    const CPrimitiveRestrictions& facets) {
  if (!Holds<kType>(name, value, facets)) ThrowInvalid<kType>(name, value);
}

// clang-format off
template void CheckPrimitive<ItemType_hexBinary>(WStringView, const Primitive<ItemType_hexBinary>::Value&, const CPrimitiveRestrictions&);
template void CheckPrimitive<ItemType_base64Binary>(WStringView, const Primitive<ItemType_base64Binary>::Value&, const CPrimitiveRestrictions&);
template void CheckPrimitive<ItemType_i1>(WStringView, const Primitive<ItemType_i1>::Value&, const CPrimitiveRestrictions&);
template void CheckPrimitive<ItemType_i2>(WStringView, const Primitive<ItemType_i2>::Value&, const CPrimitiveRestrictions&);
template void CheckPrimitive<ItemType_i4>(WStringView, const Primitive<ItemType_i4>::Value&, const CPrimitiveRestrictions&);
template void CheckPrimitive<ItemType_i8>(WStringView, const Primitive<ItemType_i8>::Value&, const CPrimitiveRestrictions&);
template void CheckPrimitive<ItemType_ui1>(WStringView, const Primitive<ItemType_ui1>::Value&, const CPrimitiveRestrictions&);
template void CheckPrimitive<ItemType_ui2>(WStringView, const Primitive<ItemType_ui2>::Value&, const CPrimitiveRestrictions&);
template void CheckPrimitive<ItemType_ui4>(WStringView, const Primitive<ItemType_ui4>::Value&, const CPrimitiveRestrictions&);
template void CheckPrimitive<ItemType_ui8>(WStringView, const Primitive<ItemType_ui8>::Value&, const CPrimitiveRestrictions&);
template void CheckPrimitive<ItemType_r4>(WStringView, const Primitive<ItemType_r4>::Value&, const CPrimitiveRestrictions&);
template void CheckPrimitive<ItemType_r8>(WStringView, const Primitive<ItemType_r8>::Value&, const CPrimitiveRestrictions&);
template void CheckPrimitive<ItemType_duration>(WStringView, const Primitive<ItemType_duration>::Value&, const CPrimitiveRestrictions&);
template void CheckPrimitive<ItemType_yearMonth>(WStringView, const Primitive<ItemType_yearMonth>::Value&, const CPrimitiveRestrictions&);
template void CheckPrimitive<ItemType_monthDay>(WStringView, const Primitive<ItemType_monthDay>::Value&, const CPrimitiveRestrictions&);
template void CheckPrimitive<ItemType_year>(WStringView, const Primitive<ItemType_year>::Value&, const CPrimitiveRestrictions&);
template void CheckPrimitive<ItemType_month>(WStringView, const Primitive<ItemType_month>::Value&, const CPrimitiveRestrictions&);
template void CheckPrimitive<ItemType_day>(WStringView, const Primitive<ItemType_day>::Value&, const CPrimitiveRestrictions&);
template void CheckPrimitive<ItemType_date>(WStringView, const Primitive<ItemType_date>::Value&, const CPrimitiveRestrictions&);
template void CheckPrimitive<ItemType_datetime>(WStringView, const Primitive<ItemType_datetime>::Value&, const CPrimitiveRestrictions&);
template void CheckPrimitive<ItemType_time>(WStringView, const Primitive<ItemType_time>::Value&, const CPrimitiveRestrictions&);
template void CheckPrimitive<ItemType_string>(WStringView, const Primitive<ItemType_string>::Value&, const CPrimitiveRestrictions&);
template void CheckPrimitive<ItemType_boolean>(WStringView, const Primitive<ItemType_boolean>::Value&, const CPrimitiveRestrictions&);
template void CheckPrimitive<ItemType_decimal>(WStringView, const Primitive<ItemType_decimal>::Value&, const CPrimitiveRestrictions&);
template void CheckPrimitive<ItemType_integer>(WStringView, const Primitive<ItemType_integer>::Value&, const CPrimitiveRestrictions&);
// clang-format on

bool HasFacets(const CPrimitiveRestrictions& facets) noexcept {
  const auto hasText = [](const WString& facet) { return !facet.empty(); };
  const auto hasNumber = [](std::int32_t facet) { return facet != -1; };
  return hasText(facets.m_pattern) || hasNumber(facets.m_minLength) || hasNumber(facets.m_maxLength) ||
         hasText(facets.m_minInclusive) || hasText(facets.m_maxInclusive) || hasText(facets.m_minExclusive) ||
         hasText(facets.m_maxExclusive) || hasNumber(facets.m_length) || hasNumber(facets.m_totalDigits) ||
         hasNumber(facets.m_fractionDigits);
}

void CheckPrimitiveValue(const WChar* name, const OvVariant& value, ItemType type,
                         const CPrimitiveRestrictions& facets) {
  bool isChecked = false;
  VisitPrimitive(type, [&](auto row) {
    if constexpr (row.kType != ItemType_char) {
      isChecked = true;
      CheckPrimitive<row.kType>(ViewOf(name), value.Get<row.kType>(), facets);
    }
  });
  if (!isChecked) throw COvInvalidValueException(u"Unknown type [" + value.GetType() + u"].");
}

bool PassesEveryValue(ItemType type, const CPrimitiveRestrictions& facets) noexcept {
  return !HasFacets(facets) && type != ItemType_char && VisitPrimitive(type, [](auto) {});
}

}  // namespace OvXmlLib16
