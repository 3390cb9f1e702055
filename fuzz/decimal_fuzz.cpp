// Numbers as text and in arithmetic, by identities that hold for all.
//
// Input: a byte of options (low bits: the length of the first text in characters, times eight), then that text and the
// rest as a second one, a byte a character; the high bit says that the bytes are folded to what numbers are made of.

#include <string>

#include "fuzz/Input.h"
#include "ovxmllib/values/BigInteger.h"
#include "ovxmllib/values/Decimal.h"

namespace OvXmlLib16::fuzz {
namespace {

// Division takes the square of the digits, and a run should be short.
constexpr std::size_t kMostCharacters = 4000;

WString TextOf(Bytes bytes, bool isFolded) {
  constexpr WStringView kFolded = u"0123456789000999-+.e 5";
  WString text;
  for (const unsigned char byte : bytes.first(std::min(bytes.size(), kMostCharacters))) {
    text += isFolded ? kFolded[byte % kFolded.size()] : WChar{byte};
  }
  return text;
}

template <class Value>
std::optional<Value> Read(const WString& text) {
  std::optional<Value> value;
  FailureOf<COvInvalidValueException>([&] { value.emplace(ExactText(text).View()); });
  return value;
}

template <class Value>
void CheckText(const Value& value) {
  const WString text = value.ToString();
  Require(Value(text) == value, "what is printed reads as the same value");
  // Places that were cut off may leave zeros at the end, which reading drops.
  Require(text.starts_with(Value(text).ToString()), "and prints as the same text");
  Require(std::hash<Value>()(Value(text)) == std::hash<Value>()(value), "and has the same hash");
}

template <class Value>
void CheckOrder(const Value& a, const Value& b) {
  Require((a < b) == (b > a) && (a <= b) == (b >= a), "comparisons are mirrored");
  Require((a < b) + (b < a) + (a == b) >= 1, "one of three holds");
  Require(!(a < b && b < a), "less is one way");
  Require(a == b || (a < b) == (a <= b), "of unequal values the smaller is less");
  Require((a == b) == (a - b == 0), "equal values differ by zero");
  Require(a == b || (a < b) == (a - b < 0), "the smaller value differs by less than zero");
}

template <class Value>
void CheckSums(const Value& a, const Value& b) {
  Require((a + b) - b == a && (a - b) + b == a, "subtracting undoes adding");
  Require(a + b == b + a && a * b == b * a, "operands may be exchanged");
  Value doubled = a;
  doubled += doubled;
  Require(doubled - a == a, "a value adds to itself");
  Value product = a;
  product *= product;
  Require(product == a * a, "a value multiplies with itself");
}

void CheckIntegers(const CBigInteger& a, const CBigInteger& b) {
  CheckText(a);
  CheckOrder(a, b);
  CheckSums(a, b);
  Require((a + b) * b == a * b + b * b, "products distribute");
  if (b != 0) {
    const CBigInteger rest = a % b;
    Require((a / b) * b + rest == a, "quotient and remainder make the dividend");
    Require(rest.GetAbs() < b.GetAbs(), "the remainder is less than the divisor");
  }
  if (a > 0) {
    const CBigInteger root = a.SquareRoot();
    Require(root * root <= a && (root + 1) * (root + 1) > a, "the root is the floor of the root");
  }
}

void CheckDecimals(const CDecimal& a, const CDecimal& b) {
  CheckText(a);
  CheckOrder(a, b);
  CheckSums(a, b);
  Require(CDecimal(a.GetIntegerPart()) - a < 1 && a - CDecimal(a.GetIntegerPart()) < 1, "the fraction is below one");
  Require(a.ToString(3).size() <= a.ToString().size() + 5, "places cut off");
  const CDecimal half(u".5"), error = a - a.ToBigInteger();
  Require(error <= half && error >= half.GetNegative(), "the nearest whole number is near");
  if (b == 0) {
    Require(FailureOf<COvInvalidValueException>([&] { a / b; }).has_value(), "nothing divides by zero");
  } else if (a != 0) {
    const CDecimal rest = a - a / b * b, bound = (b < 0 ? b.GetNegative() : b) + 1;
    Require(rest < bound && rest.GetNegative() < bound, "quotient times divisor is near the dividend");
  }
}

void Run(Input input) {
  const unsigned options = input.TakeByte();
  const bool isFolded = options >= 128;
  const WString first = TextOf(input.Take(options % 128 * 8), isFolded), second = TextOf(input.TakeRest(), isFolded);
  const auto a = Read<CDecimal>(first), b = Read<CDecimal>(second);
  if (a && b) CheckDecimals(*a, *b);
  const auto i = Read<CBigInteger>(first), j = Read<CBigInteger>(second);
  Require(i.has_value() || !a.has_value(), "an integer is read from what a decimal is");
  if (i && j) CheckIntegers(*i, *j);
}

}  // namespace
}  // namespace OvXmlLib16::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  OvXmlLib16::fuzz::Run({data, size});
  return 0;
}
