#include "ovxmllib/document/PlainReader.h"

#include <gtest/gtest.h>

#include "ovxmllib/document/DocumentTree.h"
#include "ovxmllib/foundation/Unicode.h"
#include "tests/support/Documents.h"
#include "tests/support/Vectors.h"

namespace OvXmlLib16 {
namespace {

using test::Loading;
using test::Outcome;

bool Takes(const std::string& text, const CSerializationContext& context) {
  const CXmlDocument owner;
  DocumentTree tree(owner, nullptr, context);
  return PlainReader(tree, context).Read(reinterpret_cast<const unsigned char*>(text.data()), text.size());
}

// With a callback, a document is read by the parser alone.
void ExpectSameByBothRoads(const std::string& text, const CSerializationContext& context) {
  const auto keep = [](CXmlElement*) { return false; };
  EXPECT_EQ(Outcome(Loading(text), context), Outcome(Loading(text), context, keep)) << text;
  const WString wide = unicode::ToWideLossy(text);
  const auto loadWide = [&](CXmlDocument& document) { document.LoadXml(wide.c_str()); };
  EXPECT_EQ(Outcome(loadWide, context), Outcome(loadWide, context, keep)) << text;
}

void ExpectSameOfVariants(const std::string& text, const CSerializationContext& context) {
  ExpectSameByBothRoads(text, context);
  for (std::size_t i = 1; i < text.size(); ++i) ExpectSameByBothRoads(text.substr(0, i), context);
  for (std::size_t i = 0; i < text.size(); ++i) {
    for (const char other : std::string_view("<>&;]'\" =/:!?-ax\r\n\x00\x80\xC3\xEF", 22)) {
      std::string changed = text;
      changed[i] = other;
      ExpectSameByBothRoads(changed, context);
    }
  }
}

TEST(PlainReader, AgreesWithTheParser) {
  CSerializationContext other;
  other.SetStripCDATA(false);
  other.SetSchemaType(SchemaType_NoNamespaces);
  for (const test::VectorRow& row : test::ReadVectors("document/plain_reader.vec", "documents")) {
    SCOPED_TRACE(row.Place());
    EXPECT_EQ(Takes(row["document"], {}), row["takes"] == "yes");
    ExpectSameOfVariants(row["document"], {});
    ExpectSameOfVariants(row["document"], other);
  }
}

// U+FFFE, U+FFFF, a surrogate, an overlong form, a code point too high, and sequences cut off.
TEST(PlainReader, DeclinesWhatIsNoText) {
  for (const char* bytes : {"\xEF\xBF\xBE", "\xEF\xBF\xBF", "\xED\xA0\x80", "\xC0\x80", "\xF4\x90\x80\x80", "\xC3",
                            "\xE2\x82", "\xF0\x9F\x98", "\x80"}) {
    for (const auto& [before, after] : {std::pair("<a>", "</a>"), {"<a b='", "'/>"}, {"<!--", "--><a/>"}}) {
      const std::string text = std::string(before) + bytes + after;
      EXPECT_FALSE(Takes(text, {})) << text;
      ExpectSameByBothRoads(text, {});
    }
  }
}

}  // namespace
}  // namespace OvXmlLib16
