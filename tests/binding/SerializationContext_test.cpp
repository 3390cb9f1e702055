#include "ovxmllib/binding/SerializationContext.h"

#include <gtest/gtest.h>

#include "ovxmllib/binding/OvException.h"
#include "tests/support/Thrown.h"

namespace OvXmlLib16 {
namespace {

using Numbers = std::vector<std::uint64_t>;
using test::MessageOf;

Numbers LimitsOf(const CSerializationContext& c) {
  return {
      c.GetMaxElementDepth(), c.GetMaxAttributesPerElement(), c.GetMaxNameLength(),        c.GetMaxNamespaceLength(),
      c.GetMaxTextLength(),   c.GetMaxInputBytes(),           c.GetMaxDecompressedBytes(), c.GetAllowDoctype()};
}

TEST(SerializationContext, BeginsWithDefaultsAndCopiesAll) {
  CSerializationContext context;
  EXPECT_EQ(LimitsOf(context), (Numbers{1000, 10'000, 0, 8000, 0, 0, 0, 1}));
  EXPECT_TRUE(context.GetWriteTypeAttribute() && context.GetStripCDATA());
  EXPECT_FALSE(context.GetIgnoreInvalidCollectionCounts() || context.GetIgnoreMissingChoice() ||
               context.GetIgnoreMissingMandatoryElements() || context.GetIgnoreUnknownElements() ||
               context.GetIgnoreUnknownAttributes() || context.GetIgnoreNamespaces() ||
               context.GetNoOptionalAttributeDefaultOutput() || context.GetWriteDefaultElementValues());
  context.SetUntrustedInput();
  context.SetIndentChars(u"  \t");
  context.GetProcessingInstructions().push_back(u"<?p?>");
  const CSerializationContext copy = context;
  context = CSerializationContext();
  EXPECT_EQ(LimitsOf(copy), (Numbers{256, 256, 1024, 1024, 16 << 20, 64 << 20, 256 << 20, 0}));
  EXPECT_EQ(copy.GetIndentChars() + copy.GetProcessingInstructions().at(0), u"  \t<?p?>");
}

TEST(SerializationContext, RefusesWhatContradicts) {
  const WString both =
      u"The parser can only ignore additional elements, or ignore the fact that some required ones are missing, you "
      u"can not ignore both\nSet ";
  CSerializationContext context;
  const auto unknown = [&] { context.SetIgnoreUnknownElements(true); };
  const auto missing = [&] { context.SetIgnoreMissingMandatoryElements(true); };
  unknown();
  context.SetIgnoreMissingMandatoryElements(false);
  EXPECT_EQ(MessageOf<COvInvalidStateException>(missing),
            both + u"IgnoreUnknownElements to false before setting IgnoreMissingMandatoryElements to true");
  context.SetIgnoreUnknownElements(false);
  missing();
  EXPECT_EQ(MessageOf<COvInvalidStateException>(unknown),
            both + u"IgnoreMissingMandatoryElements to false before setting IgnoreUnknownElements to true");
  EXPECT_TRUE(context.GetIgnoreMissingMandatoryElements() && !context.GetIgnoreUnknownElements());

  context.SetSchemaType(SchemaType_NoNamespaces);
  context.SetIgnoreNamespaces(false);
  EXPECT_TRUE(context.GetIgnoreNamespaces());
  context.SetSchemaType(SchemaType(3));
  EXPECT_FALSE(context.GetIgnoreNamespaces());
}

TEST(SerializationContext, TakesOnlyBlanksToIndentAsSpecified) {
  CSerializationContext context;
  for (const WChar* bad : {u" x", u"\n", u"\u00A0"}) {
    EXPECT_EQ(MessageOf<COvInvalidParamException>([&] { context.SetIndentChars(bad); }),
              u"IndentChars can only contain Whitespace characters, i.e. \\t or spaces");
    EXPECT_EQ(context.GetIndentChars(), u"\t");
  }
  context.SetIndentChars(nullptr);
  EXPECT_EQ(context.GetIndentChars(), u"");
}

}  // namespace
}  // namespace OvXmlLib16
