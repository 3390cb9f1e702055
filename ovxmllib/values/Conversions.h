// Values of the primitive types from text and to text.
#pragma once

#include <cstdint>

#include "ovxmllib/binding/Export.h"
#include "ovxmllib/foundation/WhitespaceUtils.h"
#include "ovxmllib/foundation/WideString.h"
#include "ovxmllib/values/BigInteger.h"
#include "ovxmllib/values/BinaryData.h"
#include "ovxmllib/values/DateTime.h"
#include "ovxmllib/values/DateTimeSpan.h"
#include "ovxmllib/values/Decimal.h"

namespace OvXmlLib16 {

/// What the primitive types look like in documents; every format reads and prints values as told here. docs/values.md
/// has the accepted and the printed form of each type in one table.
///
/// The `...FromString` functions first apply the whitespace rule to the text, then take all of it. What they do not
/// accept throws COvInvalidValueException with the text in the message; dates and times ask CDateTime, durations
/// CDateTimeSpan, numbers of any size CBigInteger and CDecimal, and binary data CBinaryData.
///
/// Nothing depends on the locale or the time zone of the process. Stateless; may be used on any thread.
class OVXMLLIB_API CConversions {
 public:
  using Rule = CWhitespaceUtils::WhitespaceRule;

  /// Pairs of hexadecimal digits, upper case when printed.
  static WString hexBinaryToString(const CBinaryData& value);
  static CBinaryData hexBinaryFromString(WStringView text, Rule rule);
  /// Base 64 on one line. Text with other characters reads as no data.
  static WString base64BinaryToString(const CBinaryData& value);
  static CBinaryData base64BinaryFromString(WStringView text, Rule rule);

  /// \name Integers of fixed width
  /// A sign or none, and digits. White space in front is passed over even where the rule keeps it. What does not fit
  /// throws; but an unsigned type takes a minus sign, and the value wraps around in 32 or 64 bits: "-1" is 4294967295
  /// for ui4, and too large for ui1 and ui2.
  /// \{
  static WString i1ToString(std::int8_t value);
  static std::int8_t i1FromString(WStringView text, Rule rule);
  static WString i2ToString(std::int16_t value);
  static std::int16_t i2FromString(WStringView text, Rule rule);
  static WString i4ToString(std::int32_t value);
  static std::int32_t i4FromString(WStringView text, Rule rule);
  static WString i8ToString(std::int64_t value);
  static std::int64_t i8FromString(WStringView text, Rule rule);
  static WString ui1ToString(std::uint8_t value);
  static std::uint8_t ui1FromString(WStringView text, Rule rule);
  static WString ui2ToString(std::uint16_t value);
  static std::uint16_t ui2FromString(WStringView text, Rule rule);
  static WString ui4ToString(std::uint32_t value);
  static std::uint32_t ui4FromString(WStringView text, Rule rule);
  static WString ui8ToString(std::uint64_t value);
  static std::uint64_t ui8FromString(WStringView text, Rule rule);
  /// \}

  /// \name Reals
  /// "NaN", "INF", "-INF" or a decimal number, with seven significant digits for a float and sixteen for a double, so
  /// that the last bits of some values are not printed. A number too large reads as infinite.
  ///
  /// A `format` that is not empty is a printf format with one directive for a real ("%.2f"); NaN and the infinities are
  /// printed without it. The result may have any length. A directive of another kind stays in the text as it stands.
  /// \{
  static WString r4ToString(float value) { return r4ToString(value, {}); }
  static WString r4ToString(float value, WStringView format);
  static float r4FromString(WStringView text, Rule rule);
  static WString r8ToString(double value) { return r8ToString(value, {}); }
  static WString r8ToString(double value, WStringView format);
  static double r8FromString(WStringView text, Rule rule);
  /// \}

  static WString durationToString(const CDateTimeSpan& value);
  static CDateTimeSpan durationFromString(WStringView text, Rule rule);

  /// \name Dates and times
  /// The form of the text decides the type of the value for all but `datetime` and `time`: dateFromString("2000") is a
  /// gYear. year, month and day take that one field out of any date that has it and drop a zone; otherwise they throw
  /// COvInvalidStateException. A negative year wraps around: "-0005" is 65531.
  /// \{
  static WString yearMonthToString(const CDateTime& value);
  static CDateTime yearMonthFromString(WStringView text, Rule rule);
  static WString monthDayToString(const CDateTime& value);
  static CDateTime monthDayFromString(WStringView text, Rule rule);
  /// Prints the digits alone: 99 is "99".
  static WString yearToString(std::uint16_t value);
  static std::uint16_t yearFromString(WStringView text, Rule rule);
  /// Prints "--03".
  static WString monthToString(std::uint8_t value);
  static std::uint8_t monthFromString(WStringView text, Rule rule);
  /// Prints "---03".
  static WString dayToString(std::uint8_t value);
  static std::uint8_t dayFromString(WStringView text, Rule rule);
  static WString dateToString(const CDateTime& value);
  static CDateTime dateFromString(WStringView text, Rule rule);
  static WString datetimeToString(const CDateTime& value);
  static CDateTime datetimeFromString(WStringView text, Rule rule);
  static WString timeToString(const CDateTime& value);
  static CDateTime timeFromString(WStringView text, Rule rule);
  /// \}

  /// Exactly one UTF-16 code unit.
  static WString charToString(WChar value);
  static WChar charFromString(WStringView text, Rule rule);
  /// Any text; the rule alone acts.
  static WString stringToString(WStringView value);
  static WString stringFromString(WStringView text, Rule rule);
  /// "true" and "false"; "1" and "0" are read too.
  static WString booleanToString(bool value);
  static bool booleanFromString(WStringView text, Rule rule);

  /// A `format` that is not empty is the number of decimal places, from 0, that CDecimal::ToString rounds to; what is
  /// no such number throws COvInvalidValueException.
  static WString decimalToString(const CDecimal& value) { return decimalToString(value, {}); }
  static WString decimalToString(const CDecimal& value, WStringView format);
  static CDecimal decimalFromString(WStringView text, Rule rule);
  static WString integerToString(const CBigInteger& value);
  static CBigInteger integerFromString(WStringView text, Rule rule);
};

}  // namespace OvXmlLib16
