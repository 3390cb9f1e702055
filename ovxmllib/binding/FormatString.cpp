#include "ovxmllib/binding/FormatString.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

#include "ovxmllib/foundation/Unicode.h"

namespace OvXmlLib16 {

namespace {

using format_detail::Directive;

// Hands out the arguments in order; null when there is none left or the next does not suit the conversion.
class ArgumentReader {
 public:
  explicit ArgumentReader(std::span<const FormatArgument> arguments) : m_arguments(arguments) {}

  const FormatArgument* Take(WChar conversion) {
    if (m_next == m_arguments.size() || !format_detail::Accepts(conversion, m_arguments[m_next].kind)) return nullptr;
    return &m_arguments[m_next++];
  }

 private:
  std::span<const FormatArgument> m_arguments;
  std::size_t m_next = 0;
};

// The parts of a printed value between which padding can stand.
struct Piece {
  WString prefix;  // sign, or 0x
  WString body;
};

void Pad(WString& result, const Directive& d, const Piece& piece, bool zeros) {
  const std::size_t length = piece.prefix.size() + piece.body.size();
  const auto width = static_cast<std::size_t>(d.width);
  const std::size_t fill = width > length ? width - length : 0;
  if (!d.left && !zeros) result.append(fill, u' ');
  result += piece.prefix;
  if (!d.left && zeros) result.append(fill, u'0');
  result += piece.body;
  if (d.left) result.append(fill, u' ');
}

WString SignOf(const Directive& d, bool negative) { return negative ? u"-" : d.plus ? u"+" : d.blank ? u" " : u""; }

WString Widen(const char* from, const char* to) { return WString(from, to); }

// The value as its type's own width shows it: -1 of a 32-bit type is FFFFFFFF.
std::uint64_t Truncated(const FormatArgument& argument) {
  if (argument.bytes >= sizeof(std::uint64_t)) return argument.integer;
  return argument.integer & ((std::uint64_t{1} << (8 * argument.bytes)) - 1);
}

Piece FormatInteger(const Directive& d, const FormatArgument& argument) {
  const bool isSigned = d.conversion == u'd' || d.conversion == u'i';
  const int base = d.conversion == u'o' ? 8 : (d.conversion | 0x20) == u'x' ? 16 : 10;
  const bool negative = isSigned && argument.isNegative;
  const std::uint64_t magnitude = negative ? 0 - argument.integer : isSigned ? argument.integer : Truncated(argument);
  char digits[24];
  const auto end = std::to_chars(digits, digits + sizeof digits, magnitude, base).ptr;
  Piece piece{isSigned ? SignOf(d, negative) : WString(), Widen(digits, end)};
  if (d.conversion == u'X') {
    for (WChar& c : piece.body) c = c >= u'a' ? static_cast<WChar>(c - 0x20) : c;
  }
  if (d.hasPrecision && magnitude == 0 && d.precision == 0) piece.body.clear();
  const auto precision = static_cast<std::size_t>(d.precision);
  if (precision > piece.body.size()) piece.body.insert(0, precision - piece.body.size(), u'0');
  if (d.alternate && base == 16 && magnitude != 0) piece.prefix = d.conversion == u'X' ? u"0X" : u"0x";
  if (d.alternate && base == 8 && !piece.body.starts_with(u'0')) piece.body.insert(0, 1, u'0');
  return piece;
}

Piece FormatReal(const Directive& d, double value) {
  const WChar conversion = static_cast<WChar>(d.conversion | 0x20);
  const auto style = conversion == u'f'   ? std::chars_format::fixed
                     : conversion == u'e' ? std::chars_format::scientific
                                          : std::chars_format::general;
  const int precision = d.hasPrecision ? d.precision : 6;
  const bool negative = std::signbit(value);
  // 310 digits stand before the point of the largest double; sign, point and exponent fit into the rest.
  std::string digits(static_cast<std::size_t>(precision) + 330, '\0');
  const auto end =
      std::to_chars(digits.data(), digits.data() + digits.size(), negative ? -value : value, style, precision).ptr;
  Piece piece{SignOf(d, negative), Widen(digits.data(), end)};
  if (d.conversion < u'a') {
    for (WChar& c : piece.body) c = c >= u'a' && c <= u'z' ? static_cast<WChar>(c - 0x20) : c;
  }
  return piece;
}

Piece FormatText(const Directive& d, const FormatArgument& argument) {
  WString text = argument.narrow.data() != nullptr ? unicode::ToWideLossy(argument.narrow) : WString(argument.wide);
  if (d.hasPrecision && text.size() > static_cast<std::size_t>(d.precision)) {
    text.resize(static_cast<std::size_t>(d.precision));
  }
  return {{}, std::move(text)};
}

void AppendArgument(WString& result, const Directive& d, const FormatArgument& argument) {
  switch (argument.kind) {
    case FormatKind::Real:
      return Pad(result, d, FormatReal(d, argument.real), d.zero && std::isfinite(argument.real));
    case FormatKind::Text:
      return Pad(result, d, FormatText(d, argument), /*zeros=*/false);
    case FormatKind::Integer:
    case FormatKind::Character:
      if ((d.conversion | 0x20) == u'c') {
        return Pad(result, d, {{}, WString(1, static_cast<WChar>(argument.integer))}, /*zeros=*/false);
      }
      return Pad(result, d, FormatInteger(d, argument), d.zero && !d.hasPrecision);
  }
}

int FieldNumber(const FormatArgument& argument) {
  const auto value = static_cast<std::int64_t>(argument.integer);
  return static_cast<int>(
      std::clamp<std::int64_t>(value, -format_detail::kMaxFieldWidth, format_detail::kMaxFieldWidth));
}

// Takes the values that `*` stands for; false when one is missing.
bool TakeFields(Directive& d, ArgumentReader& arguments) {
  if (d.widthFromArgument) {
    const FormatArgument* width = arguments.Take(u'd');
    if (width == nullptr) return false;
    d.width = FieldNumber(*width);
    if (d.width < 0) {
      d.left = true;
      d.width = -d.width;
    }
  }
  if (d.precisionFromArgument) {
    const FormatArgument* precision = arguments.Take(u'd');
    if (precision == nullptr) return false;
    d.precision = FieldNumber(*precision);
    d.hasPrecision = d.precision >= 0;
    d.precision = std::max(d.precision, 0);
  }
  return true;
}

}  // namespace

WString FormatArguments(WStringView format, std::span<const FormatArgument> arguments) {
  WString result;
  ArgumentReader reader(arguments);
  while (!format.empty()) {
    const std::size_t percent = std::min(format.find(u'%'), format.size());
    result += format.substr(0, percent);
    format.remove_prefix(percent);
    if (format.empty()) break;
    Directive d = format_detail::ParseDirective(format);
    const FormatArgument* argument = nullptr;
    if (d.conversion == u'%') {
      result += u'%';
    } else if (TakeFields(d, reader) && (argument = reader.Take(d.conversion)) != nullptr) {
      AppendArgument(result, d, *argument);
    } else {
      result += format.substr(0, d.length);
    }
    format.remove_prefix(d.length);
  }
  return result;
}

}  // namespace OvXmlLib16
