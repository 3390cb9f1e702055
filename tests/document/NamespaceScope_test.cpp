#include "ovxmllib/document/NamespaceScope.h"

#include <gtest/gtest.h>

#include "ovxmllib/binding/FormatString.h"

namespace OvXmlLib16 {
namespace {

WString EntriesOf(const NamespaceScope& scope) {
  WString result;
  for (const NamespaceScope::Entry& entry : scope.GetEntries()) result += entry.uri + u"=" + entry.alias + u" ";
  return result;
}

TEST(NamespaceScope, KeepsOneAliasPerUriByCodeUnits) {
  NamespaceScope scope;
  EXPECT_EQ(scope.FindAlias(u""), nullptr);
  for (const auto& [uri, alias] : {std::pair{u"b", u"p"},
                                   {u"\uFFFD", u"q"},
                                   {u"a", u"p"},
                                   {u"\U00010000", u"r"},
                                   {u"ab", u"s"},
                                   {u"b", u"t"},
                                   {u"a", u""},
                                   {u"B", u"u"},
                                   {u"", u"v"}}) {
    scope.Set(uri, alias);
  }
  EXPECT_EQ(EntriesOf(scope), u"=v B=u a= ab=s b=t \U00010000=r \uFFFD=q ");
  EXPECT_EQ(scope.FindAlias(u"a"), nullptr);
  EXPECT_EQ(scope.FindAlias(u"bb"), nullptr);
  EXPECT_EQ(*scope.FindAlias(u"b"), u"t");
  EXPECT_EQ(*scope.FindAlias(u"\U00010000"), u"r");
}

// Takes the alias into use.
WString Generate(NamespaceScope& scope, WStringView uri) {
  scope.Set(uri, scope.GenerateAlias());
  return *scope.FindAlias(uri);
}

TEST(NamespaceScope, GeneratesTheFirstAliasThatIsFree) {
  NamespaceScope scope;
  EXPECT_EQ(scope.GenerateAlias(), u"AA");
  EXPECT_EQ(scope.GenerateAlias(), u"AA") << "it is not taken yet";
  scope.Set(u"u", u"AA");
  scope.Set(u"v", u"AC");
  EXPECT_EQ(Generate(scope, u"w"), u"AB");
  EXPECT_EQ(Generate(scope, u"x"), u"AD");
  scope.Set(u"w", u"p");
  scope.Set(u"u", u"");
  EXPECT_EQ(Generate(scope, u"y"), u"AA") << "given back";
  EXPECT_EQ(Generate(scope, u"z"), u"AB");
  EXPECT_EQ(Generate(scope, u"z"), u"AE") << "a URI that has one gets another: the namespace does not count";
}

TEST(NamespaceScope, GoesOnWithThreeLetters) {
  NamespaceScope scope;
  WString aliases;
  for (int i = 0; i < 676 + 676 + 1; ++i) {
    const WString alias = Generate(scope, FormatString(u"u%d", i));
    if (i % 26 == 0 || i % 26 == 25) aliases += alias + u" ";
  }
  EXPECT_TRUE(aliases.starts_with(u"AA AZ BA BZ CA ")) << ToUtf8(aliases);
  EXPECT_NE(aliases.find(u" YZ ZA ZZ AAA AAZ ABA "), WString::npos) << ToUtf8(aliases);
  EXPECT_TRUE(aliases.ends_with(u" AZZ BAA ")) << ToUtf8(aliases);
}

}  // namespace
}  // namespace OvXmlLib16
