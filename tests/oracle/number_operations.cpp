#include <cstdlib>

#include "ovxmllib/values/BigInteger.h"
#include "ovxmllib/values/Decimal.h"
#include "tests/oracle/Operations.h"

namespace OvXmlLib16::test {
namespace {

// With the sign that a zero has too.
std::string Dump(const CBigInteger& value) { return (value < 0 ? "-" : "+") + value.GetAbs().ToUtf8(); }

std::string Dump(const CDecimal& value) {
  return Dump(value.GetIntegerPart()) + " " + Dump(value.GetFractionPart()) + " " +
         std::to_string(value.GetFractionDivider()) + " " + value.ToUtf8();
}

// A text, for decimals also "i" and a text that a CBigInteger reads, and "n" and an operand that is negated then.
template <class Value>
Value Read(std::string_view operand) {
  if constexpr (std::is_same_v<Value, CDecimal>) {
    if (operand.starts_with('i')) return CDecimal(CBigInteger::FromUtf8(operand.substr(1)));
    if (operand.starts_with('n')) return Read<CDecimal>(operand.substr(1)).GetNegative();
  }
  return Value::FromUtf8(operand);
}

double ReadDouble(const std::string& text) { return std::strtod(text.c_str(), nullptr); }

template <class Value>
std::string Parse(Operands o) {
  return Dump(Value::FromUtf8(o[0]));
}

template <class Value>
std::string FromDouble(Operands o) {
  return Dump(Value(ReadDouble(o[0])));
}

template <class Value>
std::string Compare(Operands o) {
  const Value a = Read<Value>(o[0]), b = Read<Value>(o[1]);
  std::string verdicts;
  for (const bool holds : {a == b, a != b, a<b, a> b, a <= b, a >= b}) verdicts += holds ? '1' : '0';
  if (a == b && std::hash<Value>()(a) != std::hash<Value>()(b)) verdicts += " but their hashes differ";
  return verdicts;
}

template <class Value>
std::string Calculate(Operands o) {
  const Value a = Read<Value>(o[1]), b = Read<Value>(o[2]);
  switch (o[0][0]) {
    case '+':
      return Dump(a + b);
    case '-':
      return Dump(a - b);
    case '*':
      return Dump(a * b);
    case '/':
      return Dump(a / b);
    default:
      if constexpr (std::is_same_v<Value, CBigInteger>) return Dump(a % b);
      return "(no such operator)";
  }
}

// The compound form; with "=" for the second operand the object is its own.
template <class Value>
std::string Assign(Operands o) {
  Value a = Read<Value>(o[1]);
  const Value other = Read<Value>(o[2] == "=" ? o[1] : o[2]);
  const Value& b = o[2] == "=" ? a : other;
  switch (o[0][0]) {
    case '+':
      return Dump(a += b);
    case '-':
      return Dump(a -= b);
    case '*':
      return Dump(a *= b);
    case '/':
      return Dump(a /= b);
    default:
      if constexpr (std::is_same_v<Value, CBigInteger>) return Dump(a %= b);
      return "(no such operator)";
  }
}

// Another limit of places while it lives.
class PlacesLimit {
 public:
  explicit PlacesLimit(std::int32_t places) { CDecimal::SetMaxDecimalPlaces(places); }
  PlacesLimit(const PlacesLimit&) = delete;
  PlacesLimit& operator=(const PlacesLimit&) = delete;
  ~PlacesLimit() { CDecimal::SetMaxDecimalPlaces(m_before); }

 private:
  std::int32_t m_before = CDecimal::GetMaxDecimalPlaces();
};

// The limit, then what Parse or Calculate takes.
std::string CalculateLimited(Operands o) {
  const PlacesLimit limit(std::stoi(o[0]));
  return o.size() == 2 ? Parse<CDecimal>(o.subspan(1)) : Calculate<CDecimal>(o.subspan(1));
}

std::string SquareRoot(Operands o) { return Dump(CBigInteger::FromUtf8(o[0]).SquareRoot()); }

std::string ToInt(Operands o) { return std::to_string(static_cast<int>(CBigInteger::FromUtf8(o[0]))); }

std::string ToLongLong(Operands o) { return std::to_string(static_cast<long long>(CBigInteger::FromUtf8(o[0]))); }

std::string Places(Operands o) { return ToUtf8(Read<CDecimal>(o[0]).ToString(std::stoi(o[1]))); }

std::string Round(Operands o) { return Dump(Read<CDecimal>(o[0]).ToBigInteger()); }

std::string RoundToLong(Operands o) { return std::to_string(Read<CDecimal>(o[0]).ToLong()); }

std::string RoundToLongLong(Operands o) { return std::to_string(Read<CDecimal>(o[0]).ToLongLong()); }

std::string ToDouble(Operands o) {
  return Read<CDecimal>(o[0]).ToDouble() == ReadDouble(o[1]) ? "same" : "another double";
}

}  // namespace

const OperationTable& NumberOperations() {
  static const OperationTable table = {{"integer.parse", Parse<CBigInteger>},
                                       {"integer.double", FromDouble<CBigInteger>},
                                       {"integer.calculate", Calculate<CBigInteger>},
                                       {"integer.assign", Assign<CBigInteger>},
                                       {"integer.compare", Compare<CBigInteger>},
                                       {"integer.root", SquareRoot},
                                       {"integer.int", ToInt},
                                       {"integer.longlong", ToLongLong},
                                       {"decimal.parse", Parse<CDecimal>},
                                       {"decimal.double", FromDouble<CDecimal>},
                                       {"decimal.calculate", Calculate<CDecimal>},
                                       {"decimal.assign", Assign<CDecimal>},
                                       {"decimal.limited", CalculateLimited},
                                       {"decimal.compare", Compare<CDecimal>},
                                       {"decimal.places", Places},
                                       {"decimal.round", Round},
                                       {"decimal.long", RoundToLong},
                                       {"decimal.longlong", RoundToLongLong},
                                       {"decimal.todouble", ToDouble}};
  return table;
}

}  // namespace OvXmlLib16::test
