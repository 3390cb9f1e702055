#include "ovxmllib/foundation/WhitespaceUtils.h"

#include <gtest/gtest.h>

#include "tests/support/Thrown.h"
#include "tests/support/Vectors.h"

namespace OvXmlLib16 {
namespace {

TEST(WhitespaceUtils, AppliesTheRulesByNumber) {
  const auto apply = [](int rule, WStringView value) {
    const auto byNumber = static_cast<CWhitespaceUtils::WhitespaceRule>(rule);
    const WString result = CWhitespaceUtils::ApplyRule(byNumber, value);
    WString scratch;
    EXPECT_EQ(CWhitespaceUtils::ApplyRule(byNumber, value, scratch), result);
    return result;
  };
  const char* const columns[] = {"value", "preserve", "replace", "collapse"};
  for (const test::VectorRow& row : test::ReadVectors("foundation/whitespace.vec", "rules")) {
    for (int rule = 0; rule < 4; ++rule) {
      EXPECT_EQ(apply(rule, row.Wide("value")), row.Wide(columns[rule])) << row.Place();
    }
  }
  EXPECT_EQ(test::MessageOf([&] { apply(-1, u""); }), u"Unknown WhitespaceRule");
  EXPECT_EQ(test::MessageOf([&] { apply(4, u""); }), u"Unknown WhitespaceRule");
}

TEST(WhitespaceUtils, LooksAtNothingBehindTheCountedLength) {
  EXPECT_EQ(CWhitespaceUtils::Preserve(u"a\r\nb", 2), u"a\n");
  EXPECT_EQ(CWhitespaceUtils::Preserve(nullptr, 0), u"");
  EXPECT_EQ(CWhitespaceUtils::Replace(WStringView(u"a\r\n").substr(0, 2)), u"a ");
}

}  // namespace
}  // namespace OvXmlLib16
