// The primitive types of the schema, one row each.
#pragma once

#include <array>
#include <cstdint>
#include <utility>

#include "ovxmllib/binding/Enumerations.h"
#include "ovxmllib/foundation/WideString.h"
#include "ovxmllib/values/BigInteger.h"
#include "ovxmllib/values/BinaryData.h"
#include "ovxmllib/values/DateTime.h"
#include "ovxmllib/values/DateTimeSpan.h"
#include "ovxmllib/values/Decimal.h"

namespace OvXmlLib16 {

/// The row of a primitive type: the C++ type of its values, and its name. The types that are no primitive have none.
template <ItemType kItemType>
struct Primitive;

namespace primitive_detail {

template <ItemType kItemType, class T>
struct Row {
  static constexpr ItemType kType = kItemType;
  using Value = T;
};

}  // namespace primitive_detail

// clang-format off
template <> struct Primitive<ItemType_hexBinary> : primitive_detail::Row<ItemType_hexBinary, CBinaryData> { static constexpr WStringView kName = u"hexBinary"; };
template <> struct Primitive<ItemType_base64Binary> : primitive_detail::Row<ItemType_base64Binary, CBinaryData> { static constexpr WStringView kName = u"base64Binary"; };
template <> struct Primitive<ItemType_i1> : primitive_detail::Row<ItemType_i1, std::int8_t> { static constexpr WStringView kName = u"i1"; };
template <> struct Primitive<ItemType_i2> : primitive_detail::Row<ItemType_i2, std::int16_t> { static constexpr WStringView kName = u"i2"; };
template <> struct Primitive<ItemType_i4> : primitive_detail::Row<ItemType_i4, std::int32_t> { static constexpr WStringView kName = u"i4"; };
template <> struct Primitive<ItemType_i8> : primitive_detail::Row<ItemType_i8, std::int64_t> { static constexpr WStringView kName = u"i8"; };
template <> struct Primitive<ItemType_ui1> : primitive_detail::Row<ItemType_ui1, std::uint8_t> { static constexpr WStringView kName = u"ui1"; };
template <> struct Primitive<ItemType_ui2> : primitive_detail::Row<ItemType_ui2, std::uint16_t> { static constexpr WStringView kName = u"ui2"; };
template <> struct Primitive<ItemType_ui4> : primitive_detail::Row<ItemType_ui4, std::uint32_t> { static constexpr WStringView kName = u"ui4"; };
template <> struct Primitive<ItemType_ui8> : primitive_detail::Row<ItemType_ui8, std::uint64_t> { static constexpr WStringView kName = u"ui8"; };
template <> struct Primitive<ItemType_r4> : primitive_detail::Row<ItemType_r4, float> { static constexpr WStringView kName = u"r4"; };
template <> struct Primitive<ItemType_r8> : primitive_detail::Row<ItemType_r8, double> { static constexpr WStringView kName = u"r8"; };
template <> struct Primitive<ItemType_duration> : primitive_detail::Row<ItemType_duration, CDateTimeSpan> { static constexpr WStringView kName = u"duration"; };
template <> struct Primitive<ItemType_yearMonth> : primitive_detail::Row<ItemType_yearMonth, CDateTime> { static constexpr WStringView kName = u"yearMonth"; };
template <> struct Primitive<ItemType_monthDay> : primitive_detail::Row<ItemType_monthDay, CDateTime> { static constexpr WStringView kName = u"monthDay"; };
template <> struct Primitive<ItemType_year> : primitive_detail::Row<ItemType_year, std::uint16_t> { static constexpr WStringView kName = u"year"; };
template <> struct Primitive<ItemType_month> : primitive_detail::Row<ItemType_month, std::uint8_t> { static constexpr WStringView kName = u"month"; };
template <> struct Primitive<ItemType_day> : primitive_detail::Row<ItemType_day, std::uint8_t> { static constexpr WStringView kName = u"day"; };
template <> struct Primitive<ItemType_date> : primitive_detail::Row<ItemType_date, CDateTime> { static constexpr WStringView kName = u"date"; };
template <> struct Primitive<ItemType_datetime> : primitive_detail::Row<ItemType_datetime, CDateTime> { static constexpr WStringView kName = u"datetime"; };
template <> struct Primitive<ItemType_time> : primitive_detail::Row<ItemType_time, CDateTime> { static constexpr WStringView kName = u"time"; };
template <> struct Primitive<ItemType_char> : primitive_detail::Row<ItemType_char, WChar> { static constexpr WStringView kName = u"char"; };
template <> struct Primitive<ItemType_string> : primitive_detail::Row<ItemType_string, WString> { static constexpr WStringView kName = u"string"; };
template <> struct Primitive<ItemType_boolean> : primitive_detail::Row<ItemType_boolean, bool> { static constexpr WStringView kName = u"boolean"; };
template <> struct Primitive<ItemType_decimal> : primitive_detail::Row<ItemType_decimal, CDecimal> { static constexpr WStringView kName = u"decimal"; };
template <> struct Primitive<ItemType_integer> : primitive_detail::Row<ItemType_integer, CBigInteger> { static constexpr WStringView kName = u"integer"; };
// clang-format on

/// Whether the type has a row.
constexpr bool IsPrimitive(ItemType type) noexcept { return type >= ItemType_hexBinary && type <= ItemType_integer; }

namespace primitive_detail {

// By their number, from 0.
template <int kNumber>
using RowAt = Primitive<static_cast<ItemType>(ItemType_hexBinary + kNumber)>;
using RowNumbers = std::make_integer_sequence<int, ItemType_integer - ItemType_hexBinary + 1>;

}  // namespace primitive_detail

/// Calls `visit` with the row of `type`; returns false, without a call, for a type that is no primitive.
template <class Visitor>
bool VisitPrimitive(ItemType type, Visitor&& visit) {
  return [&]<int... kNumber>(std::integer_sequence<int, kNumber...>) {
    return ((type == ItemType_hexBinary + kNumber && (visit(primitive_detail::RowAt<kNumber>()), true)) || ...);
  }
  (primitive_detail::RowNumbers());
}

/// What `make` returns for each row, by type, and a value-initialised one for ItemType_none. For tables of functions,
/// one for each type, where the visitor would make one function of all that pays for the longest.
template <class Make>
constexpr auto MakePrimitiveTable(Make make) {
  return [&]<int... kNumber>(std::integer_sequence<int, kNumber...>) {
    return std::array{decltype(make(primitive_detail::RowAt<0>())){}, make(primitive_detail::RowAt<kNumber>())...};
  }
  (primitive_detail::RowNumbers());
}

}  // namespace OvXmlLib16
