// Bound objects in Fast Infoset, read by an independent implementation; skipped where that is not installed.

#include "tests/support/KitchenSink.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "ovxmllib/fastinfoset/FastInfosetContext.h"
#include "tests/mapping/Failures.h"
#include "tests/support/TemporaryFolder.h"

namespace OvXmlLib16 {
namespace {

using test::FilledSink;
using test::KitchenSink;

constexpr const char* kJar = "/usr/share/java/FastInfoset.jar";
constexpr int kNumbers = 4;

bool HasJava() { return std::filesystem::exists(kJar) && std::system("java -version >/dev/null 2>&1") == 0; }

std::string ContentOf(const std::filesystem::path& file) {
  std::ifstream in(file);
  return {std::istreambuf_iterator<char>(in), {}};
}

// Java prints an infinite number in its own way and not in that of XML Schema Part 2, sections 3.2.4 and 3.2.5.
std::string WithInfinityOfXml(std::string xml) {
  constexpr std::string_view kOfJava = "Infinity";
  for (std::size_t at = xml.find(kOfJava); at != std::string::npos; at = xml.find(kOfJava, at)) {
    xml.replace(at, kOfJava.size(), "INF");
  }
  return xml;
}

// The XML that Java makes of a Fast Infoset file.
void ConvertByJava(const std::filesystem::path& infoset, const std::filesystem::path& xml) {
  const std::string log = xml.string() + ".log";
  const std::string command = "java -Xshare:auto -XX:TieredStopAtLevel=1 -XX:+UseSerialGC -cp " + std::string(kJar) +
                              " com.sun.xml.fastinfoset.tools.FI_SAX_XML '" + infoset.string() + "' '" + xml.string() +
                              "' >'" + log + "' 2>&1";
  ASSERT_EQ(std::system(command.c_str()), 0) << ContentOf(log);
}

void ExpectJavaReadsSame(const KitchenSink& sink, const CSerializationContext& context) {
  const test::TemporaryFolder folder;
  const std::filesystem::path infoset = folder / "sink.fi", xml = folder / "sink.xml";
  sink.ToFastInfosetFile(infoset, FInfoDecl_None, context);
  ConvertByJava(infoset, xml);
  const CSmartPtr<KitchenSink> again = KitchenSink::Make();
  const std::string text = WithInfinityOfXml(ContentOf(xml));
  EXPECT_EQ(test::FailureOf([&] { again->FromXml(text, context); }), "");
  EXPECT_TRUE(Equal(&sink, again)) << text;
}

// A strict reader wants each prefix declared, and that of a name to stand for the name's namespace. The writer declares
// what has an alias, and gives xsi:type the prefix of the type's namespace, unless that is the default.
void DeclareAll(CSerializationContext& context) {
  context.SetDefaultNamespaceURI(test::kNs);
  const std::pair<const WChar*, const WChar*> aliases[] = {{u"k", test::kNs},
                                                           {u"o", u"urn:other"},
                                                           {u"t", u"urn:third"},
                                                           {u"xsi", u"http://www.w3.org/2001/XMLSchema-instance"}};
  for (const auto& [alias, ns] : aliases) context.GetNamespaceAliases().Add(alias, ns);
}

void ExpectJavaReadsSinks(CSerializationContext& context) {
  DeclareAll(context);
  for (int number = 0; number < kNumbers; ++number) {
    SCOPED_TRACE(number);
    ExpectJavaReadsSame(*FilledSink(number), context);
  }
  ExpectJavaReadsSame(*test::LeastSink(), context);
}

TEST(KitchenSink, JavaReadsEqualObjects) {
  if (!HasJava()) GTEST_SKIP() << "no Java or no " << kJar << "; scripts/setup.sh --interop installs them";
  CSerializationContext context;
  ExpectJavaReadsSinks(context);
}

// Of the suggested encodings all but those that do not hold some of the values, as fractions of seconds.
TEST(KitchenSink, JavaReadsEqualObjectsInSuggestedEncodings) {
  if (!HasJava()) GTEST_SKIP() << "no Java or no " << kJar << "; scripts/setup.sh --interop installs them";
  CSerializationContext context;
  context.GetFIContext()->SetSuggestedValues();
  for (const ItemType type : {ItemType_ui8, ItemType_yearMonth, ItemType_date, ItemType_datetime, ItemType_time}) {
    context.GetFIContext()->SetEncoding(static_cast<std::uint32_t>(type), {});
  }
  ExpectJavaReadsSinks(context);
}

}  // namespace
}  // namespace OvXmlLib16
