#include "ovxmllib/foundation/WhitespaceUtils.h"

#include <gtest/gtest.h>

#include "tests/support/Thrown.h"

namespace OvXmlLib16 {
namespace {

using W = CWhitespaceUtils;

const struct {
  WString value, preserved, replaced, collapsed;
} kCases[] = {
    {u"", u"", u"", u""},
    {u"plain text", u"plain text", u"plain text", u"plain text"},
    {u" \t\r\n\n\r ", u" \t\n\n\n ", u"      ", u""},
    {u" a \t\r\n b ", u" a \t\n b ", u" a    b ", u"a b"},
    {u"a\r\nb\rc\n", u"a\nb\nc\n", u"a b c ", u"a b c"},
    {u"\r\r\n\n\r", u"\n\n\n\n", u"    ", u""},
    {u"a\r", u"a\n", u"a ", u"a"},
    {u"\ta\tb", u"\ta\tb", u" a b", u"a b"},
    // The no-break space, the ideographic space and the controls beside the four characters are no white space.
    {u"\u00A0\v\f \u3000", u"\u00A0\v\f \u3000", u"\u00A0\v\f \u3000", u"\u00A0\v\f \u3000"},
    {WString(u"\0 \0", 3), WString(u"\0 \0", 3), WString(u"\0 \0", 3), WString(u"\0 \0", 3)},
};

TEST(WhitespaceUtils, AppliesTheRulesByNumber) {
  for (const auto& [value, preserved, replaced, collapsed] : kCases) {
    EXPECT_EQ(W::ApplyRule(static_cast<W::WhitespaceRule>(0), value), value);
    EXPECT_EQ(W::ApplyRule(static_cast<W::WhitespaceRule>(1), value), preserved);
    EXPECT_EQ(W::ApplyRule(static_cast<W::WhitespaceRule>(2), value), replaced);
    EXPECT_EQ(W::ApplyRule(static_cast<W::WhitespaceRule>(3), value), collapsed);
  }
  for (const int unknown : {-1, 4}) {
    EXPECT_EQ(test::MessageOf([&] { W::ApplyRule(static_cast<W::WhitespaceRule>(unknown), u""); }),
              u"Unknown WhitespaceRule");
  }
}

TEST(WhitespaceUtils, LooksAtNothingBeyondTheCountedLength) {
  EXPECT_EQ(W::Preserve(u"a\r\nb", 2), u"a\n");
  EXPECT_EQ(W::Preserve(nullptr, 0), u"");
  EXPECT_EQ(W::Replace(WStringView(u"a\r\n").substr(0, 2)), u"a ");
}

TEST(WhitespaceUtils, KnowsFourCharacters) {
  WString found;
  for (unsigned c = 0; c <= 0xFFFF; ++c) {
    if (W::IsWhiteSpace(static_cast<WChar>(c))) found += static_cast<WChar>(c);
  }
  EXPECT_EQ(found, u"\t\n\r ");
}

}  // namespace
}  // namespace OvXmlLib16
