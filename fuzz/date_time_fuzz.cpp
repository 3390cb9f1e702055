// Dates, times and durations: what parses prints a text that parses to the same, orders are antisymmetric and agree
// with hashes, and sums and differences undo each other.
//
// Input: ASCII texts separated by line feeds; bytes from 0x80 on stand for the unit 0x100 above. Each text goes to
// every parser, and the values of neighbours are compared and added.

#include <functional>

#include "fuzz/Input.h"
#include "ovxmllib/values/DateTime.h"
#include "ovxmllib/values/DateTimeSpan.h"

namespace OvXmlLib16::fuzz {
namespace {

template <class Value>
using Parser = void (Value::*)(WStringView);

constexpr Parser<CDateTime> kParsers[] = {&CDateTime::ParseXSDDateTime, &CDateTime::ParseXSDDate,
                                          &CDateTime::ParseXSDTime};

WString TextOf(Bytes bytes) {
  WString text;
  for (const unsigned char byte : bytes) text += static_cast<WChar>(byte < 0x80 ? byte : byte + 0x100);
  return text;
}

// The value of a text, if it has one, which must survive printing.
template <class Value>
std::optional<Value> ValueOf(WStringView text, Parser<Value> parse) {
  const ExactText exact(text);
  Value value;
  if (FailureOf<COvInvalidValueException>([&] { (value.*parse)(exact.View()); })) return std::nullopt;
  const WString printed = value.ToString();
  if (printed == u"P" || printed == u"-P") return value;  // the duration 0 has no text
  Value again;
  const ExactText exactPrinted(printed);
  Require(!FailureOf([&] { (again.*parse)(exactPrinted.View()); }), "what was printed parses");
  Require(again.ToString() == printed && again == value, "what was printed parses to the same");
  Require(again.GetHash() == value.GetHash(), "equal values have equal hashes");
  return value;
}

template <class Value>
void CheckOrder(const Value& a, const Value& b) {
  const auto forward = a.CompareTo(b), back = b.CompareTo(a);
  const bool isReversed = (forward == CDateTime::dtc_less && back == CDateTime::dtc_greater) ||
                          (forward == CDateTime::dtc_greater && back == CDateTime::dtc_less);
  const bool isSame = forward == back && forward != CDateTime::dtc_less && forward != CDateTime::dtc_greater;
  Require(isReversed || isSame, "an order is antisymmetric");
  Require(forward != CDateTime::dtc_equal || a.GetHash() == b.GetHash(), "what compares equal has one hash");
}

void CheckSum(const CDateTime& value, const CDateTimeSpan& span) {
  const auto add = [&](const CDateTimeSpan& each) {
    CDateTime sum = value;
    if (FailureOf<COvOverFlowException>([&] { sum += each; })) return Require(sum == value, "a failed sum is none");
    sum.ToString();
    sum.CompareTo(value);
    FailureOf([&] { sum.Validate(); });
    FailureOf([&] { sum.GetDayOfYear(); });
    FailureOf([&] { sum.ToSysTime(); });
  };
  add(span);
  add(span.GetAsNegative());
}

void CheckDifference(const CDateTime& a, const CDateTime& b) {
  CDateTimeSpan difference;
  if (FailureOf<COvInvalidValueException>([&] { difference = a - b; })) return;
  Require(b + difference == a, "a difference added gives the greater value");
  Require(difference == CDateTimeSpan() || difference.IsNegative() == (a < b), "a difference has the order's sign");
}

struct Values {
  explicit Values(WStringView text) : span(ValueOf<CDateTimeSpan>(text, &CDateTimeSpan::ParseXSDDuration)) {
    for (const Parser<CDateTime> parse : kParsers) {
      if (!date) date = ValueOf(text, parse);
    }
  }
  std::optional<CDateTime> date;
  std::optional<CDateTimeSpan> span;
};

void CheckPair(const Values& a, const Values& b) {
  if (a.date && b.date) {
    CheckOrder(*a.date, *b.date);
    CheckDifference(*a.date, *b.date);
  }
  if (a.span && b.span) CheckOrder(*a.span, *b.span);
  if (a.date && b.span) CheckSum(*a.date, *b.span);
}

void Run(WStringView input) {
  std::optional<Values> last;
  for (;;) {
    const std::size_t end = input.find(u'\n');
    const Values values(input.substr(0, end));
    CheckPair(values, values);
    if (last) {
      CheckPair(*last, values);
      CheckPair(values, *last);
    }
    last = values;
    if (end == WStringView::npos) return;
    input.remove_prefix(end + 1);
  }
}

}  // namespace
}  // namespace OvXmlLib16::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace OvXmlLib16::fuzz;
  Run(TextOf({data, size}));
  return 0;
}
