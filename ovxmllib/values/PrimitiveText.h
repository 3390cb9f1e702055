// The one place where a value of a primitive type meets its lexical form.
#pragma once

#include <cmath>
#include <concepts>

#include "ovxmllib/values/NumberText.h"
#include "ovxmllib/values/PrimitiveRows.h"

namespace OvXmlLib16 {

namespace primitive_detail {

inline CDateTime ParseDate(WStringView text) {
  CDateTime value;
  value.ParseXSDDate(text);
  return value;
}

template <class T>
concept FixedWidthInteger = std::integral<T> && !std::same_as<T, bool> && !std::same_as<T, WChar>;

// The types whose text is an integer; the text of a year is not.
template <ItemType kType>
inline constexpr bool kIsIntegerText =
    FixedWidthInteger<typename Primitive<kType>::Value>&& kType >= ItemType_i1&& kType <= ItemType_ui8;

WChar ParseChar(WStringView text);
bool ParseBoolean(WStringView text);
void AppendFormatted(double value, WStringView format, WString& out);
void AppendFormatted(const CDecimal& value, WStringView format, WString& out);

}  // namespace primitive_detail

/// The value that `text` stands for, by which the whitespace rule has gone already. Throws what CConversions tells.
template <ItemType kType>
typename Primitive<kType>::Value ParsePrimitive(WStringView text) {
  using Value = typename Primitive<kType>::Value;
  if constexpr (primitive_detail::kIsIntegerText<kType>) {
    return ParseInteger<Value>(text);
  } else if constexpr (kType == ItemType_year) {
    // Deliberate: negative years wrap around.
    return static_cast<Value>(primitive_detail::ParseDate(text).GetYear());
  } else if constexpr (kType == ItemType_month) {
    return primitive_detail::ParseDate(text).GetMonth();
  } else if constexpr (kType == ItemType_day) {
    return primitive_detail::ParseDate(text).GetDay();
  } else if constexpr (std::floating_point<Value>) {
    return ParseReal<Value>(text);
  } else if constexpr (kType == ItemType_boolean) {
    return primitive_detail::ParseBoolean(text);
  } else if constexpr (kType == ItemType_char) {
    return primitive_detail::ParseChar(text);
  } else if constexpr (kType == ItemType_date || kType == ItemType_yearMonth || kType == ItemType_monthDay) {
    return primitive_detail::ParseDate(text);
  } else if constexpr (std::same_as<Value, WString> || std::same_as<Value, CDecimal> ||
                       std::same_as<Value, CBigInteger>) {
    return Value(text);
  } else {
    Value value;
    if constexpr (kType == ItemType_hexBinary) value.SetAsHexString(text);
    if constexpr (kType == ItemType_base64Binary) value.SetAsBase64(text);
    if constexpr (kType == ItemType_duration) value.ParseXSDDuration(text);
    if constexpr (kType == ItemType_datetime) value.ParseXSDDateTime(text);
    if constexpr (kType == ItemType_time) value.ParseXSDTime(text);
    return value;
  }
}

/// Appends the printed form of a value. Allocates only what `out` lacks in room, and for binary data its text.
template <ItemType kType>
void AppendPrimitive(const typename Primitive<kType>::Value& value, WString& out) {
  using Value = typename Primitive<kType>::Value;
  if constexpr (kType == ItemType_month || kType == ItemType_day) {
    out += kType == ItemType_month ? u"--" : u"---";
    AppendTwoDigits(value, out);
  } else if constexpr (std::signed_integral<Value>) {
    AppendInteger(std::int64_t{value}, out);
  } else if constexpr (primitive_detail::FixedWidthInteger<Value>) {
    AppendInteger(std::uint64_t{value}, out);
  } else if constexpr (std::floating_point<Value>) {
    AppendReal(value, out);
  } else if constexpr (kType == ItemType_boolean) {
    out += value ? u"true" : u"false";
  } else if constexpr (kType == ItemType_hexBinary) {
    out += value.GetAsHexString();
  } else if constexpr (kType == ItemType_base64Binary) {
    out += value.GetAsBase64();
  } else if constexpr (kType == ItemType_string || kType == ItemType_char) {
    out += value;
  } else {
    value.AppendTo(out);
  }
}

/// The same with the format that a property may have, which reals and decimals alone take notice of: see CConversions,
/// which tells what is thrown.
template <ItemType kType>
void AppendPrimitive(const typename Primitive<kType>::Value& value, WStringView format, WString& out) {
  if constexpr (kType == ItemType_decimal) {
    if (!format.empty()) return primitive_detail::AppendFormatted(value, format, out);
  } else if constexpr (kType == ItemType_r4 || kType == ItemType_r8) {
    if (!format.empty() && std::isfinite(value)) return primitive_detail::AppendFormatted(value, format, out);
  }
  AppendPrimitive<kType>(value, out);
}

}  // namespace OvXmlLib16
