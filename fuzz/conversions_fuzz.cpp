// Every primitive type: what a text reads as prints a text that reads and prints the same, and facets of any text give
// a verdict or a library exception.
//
// Input: a byte for the type, one for the whitespace rule, then UTF-8: the value, and behind a line feed each a bound
// and a format.

#include <string>

#include "fuzz/Input.h"
#include "ovxmllib/values/OvVariant.h"
#include "ovxmllib/values/ValueChecks.h"

namespace OvXmlLib16::fuzz {
namespace {

WString TakeLine(std::string_view& text) {
  const std::string_view line = text.substr(0, text.find('\n'));
  text.remove_prefix(std::min(line.size() + 1, text.size()));
  return ToWide(line);
}

// Whether what the type prints is what it reads: a year prints without leading zeros, and nothing as a duration is "P".
bool ReadsWhatItPrints(ItemType type, const WString& printed) {
  return type != ItemType_year && !(type == ItemType_duration && printed.ends_with(u"P"));
}

void CheckText(const OvVariant& value, ItemType type) {
  const WString printed = value.ToString(nullptr);
  if (!ReadsWhatItPrints(type, printed)) return;
  OvVariant again;
  const ExactText exact(printed);
  Require(!FailureOf([&] { again.FromString(exact.View(), type, CWhitespaceUtils::WhitespaceRule_None); }),
          "what was printed reads");
  // A decimal that reading has rounded may print zeros at its end, which are dropped when they are read.
  const bool isSame =
      type == ItemType_decimal ? again.GetDecimal() == value.GetDecimal() : again.ToString(nullptr) == printed;
  Require(isSame, "what was printed reads to the same");
}

void CheckFacets(const OvVariant& value, ItemType type, const WString& bound) {
  CPrimitiveRestrictions facets;
  for (WString CPrimitiveRestrictions::*facet :
       {&CPrimitiveRestrictions::m_minInclusive, &CPrimitiveRestrictions::m_maxExclusive,
        &CPrimitiveRestrictions::m_pattern}) {
    facets.*facet = bound;
    FailureOf([&] { CheckPrimitiveValue(u"p", value, type, facets); });
    (facets.*facet).clear();
  }
  facets.m_totalDigits = facets.m_fractionDigits = facets.m_length = static_cast<std::int32_t>(bound.size());
  FailureOf([&] { CheckPrimitiveValue(u"p", value, type, facets); });
}

void Run(Input& input) {
  const auto type = static_cast<ItemType>(input.TakeByte() % (ItemType_XmlCollection + 1));
  const auto rule = static_cast<CWhitespaceUtils::WhitespaceRule>(input.TakeByte() % 5);
  const Bytes bytes = input.TakeRest();
  std::string_view rest(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  OvVariant value;
  WString bound, format;
  const auto read = [&] {
    const WString text = TakeLine(rest);
    bound = TakeLine(rest);
    format = TakeLine(rest);
    const ExactText exact(text);
    value.FromString(exact.View(), type, rule);
  };
  if (FailureOf(read)) return;
  CheckText(value, type);
  CheckFacets(value, type, bound);
  // Wide paddings are only slow here.
  if (format.find_first_of(u"0123456789") == WString::npos) FailureOf([&] { value.ToString(format.c_str()); });
}

}  // namespace
}  // namespace OvXmlLib16::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace OvXmlLib16::fuzz;
  Input input(data, size);
  Run(input);
  return 0;
}
