#include <gtest/gtest.h>

#include "tests/support/AllocationLoop.h"
#include "tests/support/AnyObject.h"
#include "tests/support/Documents.h"
#include "tests/support/FailingNew.h"
#include "tests/support/TemporaryFolder.h"

namespace OvXmlLib16 {
namespace {

using test::AnyObject;
using test::ExpectSafe;
using test::Loading;

TEST(AllocationFailure, LeaksNothingAndBreaksNothing) {
  std::string text = ToUtf8(test::kSample);
  for (int i = 0; i < 60; ++i) {
    const std::string name = "n" + std::to_string(i);
    text.insert(text.size() - 6, "<" + name + " b='x'>" + std::string(300, 'y') + "</" + name + ">");
  }
  const std::string zipped = test::Packed(text, CompressionType_GZip);
  const WString wide = ToWide(text);
  const test::TemporaryFolder folder;
  const auto in = folder / "in", out = folder / "out";
  test::WriteFile(in, text);
  CSmartPtr<AnyObject> object(new AnyObject), expected(new AnyObject);
  expected->FromXml(text.c_str());

  ExpectSafe("tree", [&] {
    CXmlDocument document([](CXmlElement* e) { return e->GetText().empty() == e->GetAttributes().empty(); });
    Loading(text)(document);
  });
  ExpectSafe("wide text", [&] { CSmartPtr<AnyObject>(new AnyObject)->FromXml(wide.c_str()); });
  ExpectSafe("gzip",
             [&] { AnyObject().FromXmlStream(reinterpret_cast<const unsigned char*>(zipped.data()), zipped.size()); });
  for (const bool on : {false, true}) {
    AsyncFromXmlFile(on);
    AsyncToXmlFile(on);
    ExpectSafe("reading a file", [&] { AnyObject().FromXmlFile(in); });
    ExpectSafe("writing a file", [&] { expected->ToXmlFile(out); });
  }
  ExpectSafe("writing text", [&] { expected->ToXml(); });
  ExpectSafe("writing bytes",
             [&] { expected->ToXmlStream(true, true, XmlEncoding_UTF16, EOLType_CRLF, {}, CompressionType_GZip); });

  test::g_callsToFailure = 200;
  EXPECT_THROW(object->FromXml(text.c_str()), std::bad_alloc);
  test::g_callsToFailure = 0;
  object->FromXml(text.c_str());
  EXPECT_TRUE(*object == *expected) << "an object can be read after a failure";
}

std::size_t BytesAskedFor(const std::string& text, CXmlDocument::ElementComplete callback) {
  const std::size_t before = test::g_bytesAsked;
  CXmlDocument document(callback);
  document.LoadXml(text.c_str());
  return test::g_bytesAsked - before;
}

TEST(AllocatedMemory, IsInProportionToTheTree) {
  std::string names = "<p:a xmlns:p='" + std::string(7'000, 'u') + "'>";
  for (int i = 0; i < 2000; ++i) names += "<p:b" + std::to_string(i) + "/>";
  EXPECT_LT(BytesAskedFor(names + "</p:a>", nullptr), 50 * names.size()) << "a namespace is kept once";

  const std::string children = "<a>" + test::Repeated("<b c='d'>text<e/></b>", 50'000) + "</a>";
  EXPECT_LT(BytesAskedFor(children, [](CXmlElement*) { return true; }), 50'000u) << "what is dropped is used again";
}

}  // namespace
}  // namespace OvXmlLib16
