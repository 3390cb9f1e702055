// CDateTime and CDateTimeSpan, as dates_oracle.py computes them.
#include "ovxmllib/values/DateTime.h"
#include "ovxmllib/values/DateTimeSpan.h"
#include "tests/oracle/Operations.h"

namespace OvXmlLib16::test {
namespace {

// A dateTime, date or time, as its shape says.
CDateTime ValueOf(const std::string& text) {
  const WString wide = ToWide(text);
  CDateTime value;
  if (text.find('T') != std::string::npos) {
    value.ParseXSDDateTime(wide);
  } else if (text[2] == ':') {
    value.ParseXSDTime(wide);
  } else {
    value.ParseXSDDate(wide);
  }
  return value;
}

CDateTimeSpan SpanOf(const std::string& text) {
  CDateTimeSpan span;
  span.ParseXSDDuration(ToWide(text));
  return span;
}

std::string NameOf(CDateTime::DTCompareResult result) {
  constexpr const char* kNames[] = {"equal", "less", "greater", "indeterminate"};
  return kNames[result];
}

}  // namespace

const OperationTable& DateOperations() {
  static const OperationTable table = {
      {"date+duration", [](Operands o) { return ToUtf8((ValueOf(o[0]) + SpanOf(o[1])).ToString()); }},
      {"date<=>", [](Operands o) { return NameOf(ValueOf(o[0]).CompareTo(ValueOf(o[1]))); }},
      {"duration<=>", [](Operands o) { return NameOf(SpanOf(o[0]).CompareTo(SpanOf(o[1]))); }},
  };
  return table;
}

}  // namespace OvXmlLib16::test
