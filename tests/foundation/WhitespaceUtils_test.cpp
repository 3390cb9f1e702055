#include "ovxmllib/foundation/WhitespaceUtils.h"

#include <gtest/gtest.h>

#include "tests/support/Thrown.h"

namespace OvXmlLib16 {
namespace {

const struct {
  WString byNumber[4];  // as given, then by the rules 1 to 3
} kCases[] = {
    {{u"", u"", u"", u""}},
    {{u"plain text", u"plain text", u"plain text", u"plain text"}},
    {{u" \t\r\n\n\r ", u" \t\n\n\n ", u"      ", u""}},
    {{u" a \t\r\n b ", u" a \t\n b ", u" a    b ", u"a b"}},
    {{u"a\r\nb\rc\n", u"a\nb\nc\n", u"a b c ", u"a b c"}},
    {{u"\r\r\n\n\r", u"\n\n\n\n", u"    ", u""}},
    // What other standards count as white space is none here.
    {{u"\u00A0\v \u3000\x85", u"\u00A0\v \u3000\x85", u"\u00A0\v \u3000\x85", u"\u00A0\v \u3000\x85"}},
};

TEST(WhitespaceUtils, AppliesTheRulesByNumber) {
  const auto apply = [](int rule, WStringView value) {
    const auto byNumber = static_cast<CWhitespaceUtils::WhitespaceRule>(rule);
    const WString result = CWhitespaceUtils::ApplyRule(byNumber, value);
    WString scratch;
    EXPECT_EQ(CWhitespaceUtils::ApplyRule(byNumber, value, scratch), result);
    return result;
  };
  for (const auto& row : kCases) {
    for (int rule = 0; rule < 4; ++rule) EXPECT_EQ(apply(rule, row.byNumber[0]), row.byNumber[rule]) << rule;
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
