#include "ovxmllib/values/Conversions.h"

#include <cmath>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/values/Digits.h"
#include "ovxmllib/values/PrimitiveText.h"

namespace OvXmlLib16 {

namespace {

template <ItemType kType>
WString Print(const typename Primitive<kType>::Value& value) {
  WString text;
  AppendPrimitive<kType>(value, text);
  return text;
}

template <ItemType kType>
WString Print(const typename Primitive<kType>::Value& value, WStringView format) {
  WString text;
  AppendPrimitive<kType>(value, format, text);
  return text;
}

template <ItemType kType>
typename Primitive<kType>::Value Read(WStringView text, CConversions::Rule rule) {
  WString scratch;
  return ParsePrimitive<kType>(CWhitespaceUtils::ApplyRule(rule, text, scratch));
}

}  // namespace

namespace primitive_detail {

WChar ParseChar(WStringView text) {
  if (text.size() == 1) return text.front();
  throw COvInvalidValueException(
      FormatString(u"The value [%s] can not be a char as it is either empty of greater than 1 char long", text));
}

bool ParseBoolean(WStringView text) {
  if (text == u"true" || text == u"1") return true;
  if (text == u"false" || text == u"0") return false;
  throw COvInvalidValueException(FormatString(
      u"A Boolean Value read from an XML document was invalid [%s]. Valid values are 'true', 'false', '1', or '0'",
      text));
}

void AppendFormatted(double value, WStringView format, WString& out) {
  const FormatArgument argument(value);
  out += FormatArguments(format, {&argument, 1});
}

void AppendFormatted(const CDecimal& value, WStringView format, WString& out) {
  const bool isDigit = format.size() == 1 && digits::IsDigit(format.front());
  value.AppendTo(out, isDigit ? format.front() - u'0' : ParseInteger<std::uint16_t>(format));
}

}  // namespace primitive_detail

// clang-format off
WString CConversions::hexBinaryToString(const CBinaryData& value) { return Print<ItemType_hexBinary>(value); }
CBinaryData CConversions::hexBinaryFromString(WStringView text, Rule rule) { return Read<ItemType_hexBinary>(text, rule); }
WString CConversions::base64BinaryToString(const CBinaryData& value) { return Print<ItemType_base64Binary>(value); }
CBinaryData CConversions::base64BinaryFromString(WStringView text, Rule rule) { return Read<ItemType_base64Binary>(text, rule); }
WString CConversions::i1ToString(std::int8_t value) { return Print<ItemType_i1>(value); }
std::int8_t CConversions::i1FromString(WStringView text, Rule rule) { return Read<ItemType_i1>(text, rule); }
WString CConversions::i2ToString(std::int16_t value) { return Print<ItemType_i2>(value); }
std::int16_t CConversions::i2FromString(WStringView text, Rule rule) { return Read<ItemType_i2>(text, rule); }
WString CConversions::i4ToString(std::int32_t value) { return Print<ItemType_i4>(value); }
std::int32_t CConversions::i4FromString(WStringView text, Rule rule) { return Read<ItemType_i4>(text, rule); }
WString CConversions::i8ToString(std::int64_t value) { return Print<ItemType_i8>(value); }
std::int64_t CConversions::i8FromString(WStringView text, Rule rule) { return Read<ItemType_i8>(text, rule); }
WString CConversions::ui1ToString(std::uint8_t value) { return Print<ItemType_ui1>(value); }
std::uint8_t CConversions::ui1FromString(WStringView text, Rule rule) { return Read<ItemType_ui1>(text, rule); }
WString CConversions::ui2ToString(std::uint16_t value) { return Print<ItemType_ui2>(value); }
std::uint16_t CConversions::ui2FromString(WStringView text, Rule rule) { return Read<ItemType_ui2>(text, rule); }
WString CConversions::ui4ToString(std::uint32_t value) { return Print<ItemType_ui4>(value); }
std::uint32_t CConversions::ui4FromString(WStringView text, Rule rule) { return Read<ItemType_ui4>(text, rule); }
WString CConversions::ui8ToString(std::uint64_t value) { return Print<ItemType_ui8>(value); }
std::uint64_t CConversions::ui8FromString(WStringView text, Rule rule) { return Read<ItemType_ui8>(text, rule); }
WString CConversions::r4ToString(float value, WStringView format) { return Print<ItemType_r4>(value, format); }
float CConversions::r4FromString(WStringView text, Rule rule) { return Read<ItemType_r4>(text, rule); }
WString CConversions::r8ToString(double value, WStringView format) { return Print<ItemType_r8>(value, format); }
double CConversions::r8FromString(WStringView text, Rule rule) { return Read<ItemType_r8>(text, rule); }
WString CConversions::durationToString(const CDateTimeSpan& value) { return Print<ItemType_duration>(value); }
CDateTimeSpan CConversions::durationFromString(WStringView text, Rule rule) { return Read<ItemType_duration>(text, rule); }
WString CConversions::yearMonthToString(const CDateTime& value) { return Print<ItemType_yearMonth>(value); }
CDateTime CConversions::yearMonthFromString(WStringView text, Rule rule) { return Read<ItemType_yearMonth>(text, rule); }
WString CConversions::monthDayToString(const CDateTime& value) { return Print<ItemType_monthDay>(value); }
CDateTime CConversions::monthDayFromString(WStringView text, Rule rule) { return Read<ItemType_monthDay>(text, rule); }
WString CConversions::yearToString(std::uint16_t value) { return Print<ItemType_year>(value); }
std::uint16_t CConversions::yearFromString(WStringView text, Rule rule) { return Read<ItemType_year>(text, rule); }
WString CConversions::monthToString(std::uint8_t value) { return Print<ItemType_month>(value); }
std::uint8_t CConversions::monthFromString(WStringView text, Rule rule) { return Read<ItemType_month>(text, rule); }
WString CConversions::dayToString(std::uint8_t value) { return Print<ItemType_day>(value); }
std::uint8_t CConversions::dayFromString(WStringView text, Rule rule) { return Read<ItemType_day>(text, rule); }
WString CConversions::dateToString(const CDateTime& value) { return Print<ItemType_date>(value); }
CDateTime CConversions::dateFromString(WStringView text, Rule rule) { return Read<ItemType_date>(text, rule); }
WString CConversions::datetimeToString(const CDateTime& value) { return Print<ItemType_datetime>(value); }
CDateTime CConversions::datetimeFromString(WStringView text, Rule rule) { return Read<ItemType_datetime>(text, rule); }
WString CConversions::timeToString(const CDateTime& value) { return Print<ItemType_time>(value); }
CDateTime CConversions::timeFromString(WStringView text, Rule rule) { return Read<ItemType_time>(text, rule); }
WString CConversions::charToString(WChar value) { return Print<ItemType_char>(value); }
WChar CConversions::charFromString(WStringView text, Rule rule) { return Read<ItemType_char>(text, rule); }
WString CConversions::stringToString(WStringView value) { return WString(value); }
WString CConversions::stringFromString(WStringView text, Rule rule) { return Read<ItemType_string>(text, rule); }
WString CConversions::booleanToString(bool value) { return Print<ItemType_boolean>(value); }
bool CConversions::booleanFromString(WStringView text, Rule rule) { return Read<ItemType_boolean>(text, rule); }
WString CConversions::decimalToString(const CDecimal& value, WStringView format) { return Print<ItemType_decimal>(value, format); }
CDecimal CConversions::decimalFromString(WStringView text, Rule rule) { return Read<ItemType_decimal>(text, rule); }
WString CConversions::integerToString(const CBigInteger& value) { return Print<ItemType_integer>(value); }
CBigInteger CConversions::integerFromString(WStringView text, Rule rule) { return Read<ItemType_integer>(text, rule); }
// clang-format on

}  // namespace OvXmlLib16
