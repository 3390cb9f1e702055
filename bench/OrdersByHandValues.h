// The texts of values in the orders documents, by hand.
#pragma once

#include <charconv>
#include <concepts>
#include <string>
#include <string_view>

#include "bench/OrdersByHand.h"

namespace OvXmlLib16::bench::byhand {

/// \name Reading: white space around the text does not count. Throw `std::runtime_error` for any other text.
/// \{
void Parse(std::string_view text, std::int32_t& value);
void Parse(std::string_view text, std::uint64_t& value);
void Parse(std::string_view text, Amount& value);
void Parse(std::string_view text, Date& value);
void Parse(std::string_view text, DateTime& value);
void Parse(std::string_view text, YearMonth& value);
void Parse(std::string_view text, Status& value);
/// Takes the text as it stands.
inline void Parse(std::string_view text, std::string& value) { value = text; }
template <class T>
void Parse(std::string_view text, std::optional<T>& value) {
  Parse(text, value.emplace());
}
/// \}

/// \name Writing: append the text of a value; none of these needs escaping
/// \{
template <std::integral T>
void Append(std::string& out, T value) {
  char digits[24];
  out.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}
void Append(std::string& out, const Amount& value);
void Append(std::string& out, const Date& value);
void Append(std::string& out, const DateTime& value);
void Append(std::string& out, const YearMonth& value);
void Append(std::string& out, Status value);
/// \}

}  // namespace OvXmlLib16::bench::byhand
