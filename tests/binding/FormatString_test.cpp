#include "ovxmllib/binding/FormatString.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <limits>
#include <string>

#include "ovxmllib/binding/Enumerations.h"
#include "tests/support/Vectors.h"

namespace OvXmlLib16 {
namespace {

enum class Scoped : std::uint8_t { Big = 200 };

TEST(FormatString, FormatsEveryKindOfArgument) {
  const WString wide = u"wide";
  const std::string narrow = "\xC3\xA4\xFF";
  const WChar* const none = nullptr;
  const std::pair<WString, WString> cases[] = {
      {FormatString(u"plain"), u"plain"},
      {FormatString(u"100%%"), u"100%"},
      {FormatString(u"[%s|%s|%s]", wide, u"literal", WStringView(u"view")), u"[wide|literal|view]"},
      {FormatString(u"[%s|%s|%s]", narrow, "utf-8", std::string_view("v")), u"[\u00E4\uFFFD|utf-8|v]"},
      {FormatString(u"%s", none), u"(null)"},
      {FormatString(u"[%5s|%-5s|%.2s|%5.1s]", u"abc", u"abc", u"abc", u"abc"), u"[  abc|abc  |ab|    a]"},
      {FormatString(u"[%*s|%-*s|%.*s|%*s]", 4, u"ab", 4, u"ab", 1, u"ab", -4, u"ab"), u"[  ab|ab  |a|ab  ]"},
      {FormatString(u"%.*s", -1, u"all"), u"all"},
      {FormatString(u"%c%c%c%3c", u'\u20AC', 'x', 65, u'y'), u"\u20ACxA  y"},
      {FormatString(u"%c", WChar{0xD800}), WString(1, WChar{0xD800})},
      {FormatString(u"%d %u", true, Scoped::Big), u"1 200"},
      {FormatString(u"%d", ItemType_integer), u"26"},
      {FormatString(u"0x%08x 0x%08X", 2, -1), u"0x00000002 0xFFFFFFFF"},
      {FormatString(u"%x %x %x", std::int8_t{-1}, std::int16_t{-1}, std::int64_t{-1}), u"ff ffff ffffffffffffffff"},
      {FormatString(u"%I64d %lld %hd %zu", INT64_MIN, INT64_MAX, std::int16_t{-5}, SIZE_MAX),
       u"-9223372036854775808 9223372036854775807 -5 18446744073709551615"},
      {FormatString(u"%d %d", UINT32_MAX, UINT64_MAX), u"4294967295 18446744073709551615"},
      {FormatString(u"%g", 0.1f), u"0.1"},
      {FormatString(u"%200000s", u"").substr(199998), u"  "}};
  for (const auto& [actual, expected] : cases) EXPECT_EQ(actual, expected);
}

// At run time a format may be anything: what does not fit stands in the result as it is, and nothing is read beyond.
TEST(FormatString, KeepsDirectivesThatDoNotFit) {
  const FormatArgument seven[] = {7};
  for (const test::VectorRow& row : test::ReadVectors("binding/format_string.vec", "misfits")) {
    EXPECT_EQ(FormatArguments(row.Wide("format"), seven), row.Wide("text")) << row.Place();
  }
  EXPECT_EQ(FormatArguments(u"%d", {}), u"%d");
  EXPECT_EQ(FormatArguments(u"%99999999999999999999d", seven).size(), 1'000'000u);
}

template <class T>
void ExpectAsPrintf(const std::string& format, T value) {
  char expected[512];
  std::snprintf(expected, sizeof expected, format.c_str(), value);
  const FormatArgument arguments[] = {value};
  EXPECT_EQ(ToUtf8(FormatArguments(ToWide(format), arguments)), expected) << format << " of " << value;
}

TEST(FormatString, FormatsNumbersAsPrintfDoes) {
  const std::string flags[] = {"", "-", "+", " ", "0", "-0", "+0", " 0", "+-"};
  const std::string fields[] = {"", "1", "12", ".0", ".1", ".9", "12.3", "3.12"};
  for (const std::string& field : fields) {
    for (const std::string& flag : flags) {
      for (const int value : {0, 1, -1, 4711, INT32_MAX, INT32_MIN}) ExpectAsPrintf("%" + flag + field + "d", value);
      for (const double value : {0.0, -0.0, 1.0, -2.5, 0.1, 123456.789, 1e-5, 9.9999999, 1e300, 5e-324}) {
        for (const char conversion : {'f', 'e', 'g', 'E', 'G'}) ExpectAsPrintf("%" + flag + field + conversion, value);
      }
    }
    for (const char* const flag : {"", "-", "0", "-0", "#", "#0", "-#"}) {
      for (const unsigned value : {0u, 1u, 4711u, UINT32_MAX}) {
        for (const char conversion : {'o', 'x', 'X'}) ExpectAsPrintf("%" + (flag + field) + conversion, value);
      }
    }
  }
  for (const double value : {std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
                             std::numeric_limits<double>::quiet_NaN()}) {
    for (const char* const format : {"%f", "%8e", "%-8g", "%+G"}) ExpectAsPrintf(format, value);
  }
}

}  // namespace
}  // namespace OvXmlLib16
