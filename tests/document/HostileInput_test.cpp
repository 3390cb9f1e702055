#include <gtest/gtest.h>
#include <sys/stat.h>

#include <functional>
#include <map>

#include "tests/support/AnyObject.h"
#include "tests/support/Documents.h"
#include "tests/support/SmallStack.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Vectors.h"

namespace OvXmlLib16 {
namespace {

using test::kMebi;
using test::Loading;
using test::OnSmallStack;
using test::Outcome;
using test::Repeated;

constexpr std::size_t kMillion = 1'000'000;

std::string WithAttributes(const std::string& prefix) {
  std::string document = "<a xmlns:p='u'";
  for (std::size_t i = 0; i < kMillion; ++i) document += " " + prefix + std::to_string(i) + "=''";
  return document + "/>";
}

// Each entity refers `times` times to the one before; the last stands between `before` and `behind`.
std::string WithEntities(std::size_t count, std::size_t times, const std::string& before, const std::string& behind) {
  std::string document = "<!DOCTYPE a [<!ENTITY e0 'x'>";
  for (std::size_t i = 1; i < count; ++i) {
    document += "<!ENTITY e" + std::to_string(i) + " '" + Repeated("&e" + std::to_string(i - 1) + ";", times) + "'>";
  }
  return document + "]>\n" + before + "&e" + std::to_string(count - 1) + ";" + behind;
}

std::string WithDefaults(std::size_t attributes, std::size_t elements) {
  std::string document = "<!DOCTYPE a [<!ATTLIST b";
  for (std::size_t i = 0; i < attributes; ++i) document += " c" + std::to_string(i) + " CDATA ''";
  return document + ">]><a>" + Repeated("<b/>", elements) + "</a>";
}

struct Case {
  const char* name;
  std::string (*document)();
  WStringView outcome;
};
void PrintTo(const Case& parameter, std::ostream* out) { *out << parameter.name; }

class HostileInput : public testing::TestWithParam<Case> {};

TEST_P(HostileInput, EndsSoonOnASmallStack) {
  CSerializationContext context;
  context.SetMaxDecompressedBytes(16 * kMebi);
  const std::string document = GetParam().document();
  WString outcome;
  OnSmallStack([&] { outcome = Outcome(Loading(document), context); });
  EXPECT_EQ(outcome.substr(0, GetParam().outcome.size()), GetParam().outcome);
}

constexpr WStringView kTooManyAttributes =
    u"An element has more than 10000 attributes. CSerializationContext::SetMaxAttributesPerElement sets this limit.";
constexpr WStringView kTooMuchExpansion = u"limit on input amplification factor (from DTD and entities) breached at ";
// A chain of entities multiplies nothing. What it could exhaust is the stack.
constexpr WStringView kTooManyEntities = u"The document declares more than 100000 entities. @1:";
const Case kCases[] = {
    {"Depth", [] { return Repeated("<a>", kMillion); },
     u"The elements are nested deeper than 1000 levels. CSerializationContext::SetMaxElementDepth sets this limit. "
     u"@1:3001"},
    {"Attributes", [] { return WithAttributes("b"); }, kTooManyAttributes},
    {"QualifiedAttributes", [] { return WithAttributes("p:b"); }, kTooManyAttributes},
    {"QualifiedAttributesInUtf16", [] { return test::Utf16(ToWide("\uFEFF" + WithAttributes("p:b"))); },
     kTooManyAttributes},
    {"Declarations", [] { return WithAttributes("xmlns:b"); }, kTooManyAttributes},
    {"LongNamespace",
     [] { return "<p:a xmlns:p='" + std::string(kMebi, 'u') + "'>" + Repeated("<p:b/>", 250'000) + "</p:a>"; },
     u"A namespace URI is longer than 8000 characters. CSerializationContext::SetMaxNamespaceLength sets this limit. "
     u"@1:1"},
    {"ExponentialText", [] { return WithEntities(20, 10, "<a>", "</a>"); }, kTooMuchExpansion},
    {"ExponentialAttribute", [] { return WithEntities(20, 10, "<a b='", "'/>"); }, kTooMuchExpansion},
    {"Quadratic",
     [] {
       return "<!DOCTYPE a [<!ENTITY e '" + std::string(100'000, 'x') + "'>]><a>" + Repeated("&e;", 100'000) + "</a>";
     },
     kTooMuchExpansion},
    {"Defaults", [] { return WithDefaults(2000, 20'000); },
     u"The default values of attributes multiply the document more than a hundredfold. @1:"},
    {"Chain", [] { return WithEntities(10'000, 1, "<a>", "</a>"); }, u"a'x'"},
    {"LongChain", [] { return WithEntities(100'000, 1, "<a>", "</a>"); }, u"a'x'"},
    {"LongChainInAttribute", [] { return WithEntities(100'000, 1, "<a b='", "'/>"); }, u"a[b=x]"},
    {"LongerChain", [] { return WithEntities(kMillion, 1, "<a>", "</a>"); }, kTooManyEntities},
    {"GZipBomb", [] { return Repeated(test::Packed(std::string(16 * kMebi, ' '), CompressionType_GZip), 64); },
     u"The input expands to more than the 16777216 bytes that CSerializationContext::SetMaxDecompressedBytes allows."}};
INSTANTIATE_TEST_SUITE_P(Of, HostileInput, testing::ValuesIn(kCases),
                         [](const auto& test) { return std::string(test.param.name); });

// The early look at start tags takes nothing else for one.
TEST(LongTags, AreToldFromWhatLooksLikeThem) {
  const std::string tag = WithAttributes("b").substr(0, 200'000);
  for (const std::string& prefix : {"<r><!--" + tag + "--><![CDATA[" + tag + "]]>", "<r>" + tag.substr(1)}) {
    const std::string harmless = prefix + "</r>", harmful = prefix + tag + "/></r>";
    for (const std::string& bytes : {harmless, test::Utf16(ToWide("\uFEFF" + harmless))}) {
      EXPECT_EQ(Outcome(Loading(bytes)).substr(0, 2), u"r'");
    }
    EXPECT_EQ(Outcome(Loading(harmful)).substr(0, kTooManyAttributes.size()), kTooManyAttributes);
  }
}

TEST(CutInput, FailsAtEveryByte) {
  const std::string plain = ToUtf8(test::kSample);
  for (const std::string& bytes : {plain, test::Utf16(test::kSample), test::Packed(plain, CompressionType_GZip)}) {
    for (const auto callback : {CXmlDocument::ElementComplete(), +[](CXmlElement*) { return true; }}) {
      OnSmallStack([&] {
        for (std::size_t length = 0; length < bytes.size(); ++length) {
          CXmlDocument document(callback);
          EXPECT_THROW(Loading(bytes.substr(0, length))(document), COvException) << length;
        }
        EXPECT_EQ(Outcome(Loading(bytes), {}, callback), callback == nullptr ? test::kSampleTree : u"{urn:s}r'\nvw'");
      });
    }
  }
}

TEST(DeepInput, IsBoundAndWrittenAtTheLimit) {
  WString expected, ends;
  for (std::size_t depth = 0; depth < 999; ++depth) {
    const WString indent(depth, u'\t');
    expected += indent + u"<a>\n";
    ends = indent + u"</a>\n" + ends;
  }
  expected += WString(999, u'\t') + u"<a/>\n" + ends;
  WString written;
  const auto roundTrip = [&] {
    CSmartPtr<test::AnyObject> object(new test::AnyObject);
    object->FromXml((Repeated("<a>", 1000) + Repeated("</a>", 1000)).c_str());
    written = object->ToXml(/*header=*/false);
  };
  OnSmallStack(roundTrip, test::kBindingStack);
  EXPECT_TRUE(written == expected) << ToUtf8(written);
}

TEST(DeepInput, IsReadAndDestroyedWithoutALimit) {
  CSerializationContext context;
  context.SetMaxElementDepth(0);
  const std::string document = Repeated("<a b=''>", kMillion) + Repeated("</a>", kMillion);
  CInstanceMonitor::Cleanup();
  OnSmallStack([&] {
    CXmlDocument read(context);
    Loading(document)(read);
    read.GetDocumentElement()->GetAttributes();  // makes destruction look at each element
  });
  EXPECT_EQ(test::MonitorLines(u" CXmlElement "), u"    CXmlElement = 0/1000000");
}

// To open the pipe would wait for a writer for ever.
TEST(ExternalEntities, AreNotOpened) {
  const test::TemporaryFolder folder;
  const std::string pipe = (folder / "pipe").string(), declared = "'" + pipe + "'>";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const std::pair<std::string, WStringView> cases[] = {
      {"<!DOCTYPE a SYSTEM " + declared + "<a/>", u"a"},
      {"<!DOCTYPE a [<!ENTITY % p SYSTEM " + declared + "%p;]><a/>", u"a"},
      {"<!DOCTYPE a [<!ENTITY e SYSTEM " + declared + "]>\n<a>&e;</a>",
       u"error in processing external entity reference at line 2 @2:4"},
      {"<!DOCTYPE a [<!ENTITY e SYSTEM " + declared + "]>\n<a b='&e;'/>",
       u"reference to external entity in attribute at line 2 @2:7"}};
  for (const auto& [document, outcome] : cases) EXPECT_EQ(Outcome(Loading(document)), outcome) << document;
}

TEST(Limits, HoldExactly) {
  using Context = CSerializationContext;
  const std::map<std::string, std::function<void(Context&, std::uint32_t)>, std::less<>> setters = {
      {"MaxElementDepth", &Context::SetMaxElementDepth},
      {"MaxAttributesPerElement", &Context::SetMaxAttributesPerElement},
      {"MaxNameLength", &Context::SetMaxNameLength},
      {"MaxNamespaceLength", &Context::SetMaxNamespaceLength},
      {"MaxTextLength", &Context::SetMaxTextLength},
      {"MaxInputBytes", &Context::SetMaxInputBytes},
      {"AllowDoctype", &Context::SetAllowDoctype},
  };
  for (const test::VectorRow& row : test::ReadVectors("document/limits.vec", "limits")) {
    SCOPED_TRACE(row.Place());
    Context context;
    setters.at(row["limit"])(context, static_cast<std::uint32_t>(row.Number("value")));
    EXPECT_EQ(Outcome(Loading(row["within"]), context).find(u'@'), WString::npos);
    EXPECT_EQ(Outcome(Loading(row["beyond"]), context), row.Wide("outcome"));
  }
  EXPECT_EQ(Outcome(Loading(WithDefaults(100, 100))).find(u'@'), WString::npos) << "little may be multiplied freely";
  Context sevenBytes;
  sevenBytes.SetMaxInputBytes(7);
  EXPECT_TRUE(Outcome([](CXmlDocument& d) { d.LoadXml(u"<a/>"); }, sevenBytes).starts_with(u"The document is longer"));
}

}  // namespace
}  // namespace OvXmlLib16
