#include "ovxmllib/document/NamespaceAliasMap.h"

#include <gtest/gtest.h>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/SerializationContext.h"
#include "ovxmllib/collections/AttributeCol.h"
#include "tests/support/Thrown.h"

namespace OvXmlLib16 {
namespace {

TEST(NamespaceAliasMap, HasOneAliasForEachNamespaceInTheOrderOfNamespaces) {
  CNamespaceAliasMap aliases;
  aliases.Add(u"a", u"v");
  aliases.Add(u"old", u"u");
  aliases.Add(u"a", u"u");
  ASSERT_EQ(aliases.GetNamespaceCount(), 2);
  EXPECT_EQ(aliases.GetNamespaceAt(0), u"u");
  EXPECT_EQ(aliases.GetNamespaceAt(1), u"v");
  EXPECT_EQ(aliases.GetNamespaceFromAlias(u"a"), u"u");
  EXPECT_FALSE(aliases.DoesAliasExist(u"old"));
  EXPECT_TRUE(aliases.DoesAliasExist(u"a"));
  aliases.RemoveNamespace(u"unknown");
  aliases.RemoveNamespace(u"u");
  EXPECT_EQ(aliases.GetNamespaceFromAlias(u"a"), u"v");
  EXPECT_FALSE(aliases.DoesNamespaceExist(u"u"));
}

TEST(NamespaceAliasMap, AddsANamespaceThatIsAskedForAsSpecified) {
  CNamespaceAliasMap aliases;
  EXPECT_EQ(aliases.GetAliasFromNamespace(u"x"), u"");
  EXPECT_EQ(aliases.GetNamespaceCount(), 1);
  EXPECT_TRUE(aliases.DoesNamespaceExist(u"x"));
}

TEST(NamespaceAliasMap, NamesWhatIsNotThere) {
  CNamespaceAliasMap aliases;
  EXPECT_EQ(test::MessageOf([&] { aliases.GetNamespaceFromAlias(u"p"); }), u"Namespace alias [p] not found");
  for (const int index : {-1, 0}) {
    EXPECT_EQ(test::MessageOf<COvInvalidParamException>([&] { aliases.GetNamespaceAt(index); }),
              FormatString(u"There is no namespace at index %d.", index));
  }
}

TEST(NamespaceAliasMap, IsCopiedWithItsContextWhileRootAttributesAreShared) {
  CSerializationContext context;
  context.GetNamespaceAliases().Add(u"p", u"u");
  const CSmartPtr<CAttributeCol> attributes = context.GetAdditionalRootAttributes();
  CSerializationContext assigned;
  assigned.GetAdditionalRootAttributes();
  assigned = context;
  const CSerializationContext copied(context);
  context.GetNamespaceAliases().Add(u"q", u"v");
  attributes->Add(u"a", u"1", u"urn:any");
  for (const CSerializationContext& copy : {assigned, copied}) {
    EXPECT_EQ(copy.GetNamespaceAliases().GetNamespaceCount(), 1);
    EXPECT_EQ(copy.GetAdditionalRootAttributes()->Item(0)->GetValue(), u"1");
  }
  EXPECT_EQ(CSerializationContext().GetAdditionalRootAttributes()->GetCount(), 0);
}

}  // namespace
}  // namespace OvXmlLib16
