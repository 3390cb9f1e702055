#include <gtest/gtest.h>

#include <barrier>
#include <thread>

#include "ovxmllib/document/XmlAttribute.h"
#include "tests/support/AnyObject.h"
#include "tests/support/Documents.h"
#include "tests/support/TemporaryFolder.h"

namespace OvXmlLib16 {
namespace {

constexpr std::size_t kThreads = 3;

void OnThreads(const auto& call) {
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < kThreads; ++i) threads.emplace_back([&call, i] { call(i); });
  for (std::thread& thread : threads) thread.join();
}

TEST(ThreadsDocument, ReadAndWriteWithOneContext) {
  const test::TemporaryFolder folder;
  const CSerializationContext context;
  OnThreads([&](std::size_t number) {
    const std::string name = "n" + std::to_string(number), children = test::Repeated("<c a='\xC3\xBC'>1<d/></c>", 500);
    const std::string text = "<" + name + " xmlns='urn:" + name + "'>" + children + "</" + name + ">";
    for (int i = 0; i < 20; ++i) {
      CSmartPtr<test::AnyObject> object(new test::AnyObject), again(new test::AnyObject);
      object->FromXml(text.c_str(), context);
      object->ToXmlFile(folder / name, true, true, XmlEncoding_UTF8, EOLType_LF, context, CompressionType_GZip);
      again->FromXmlFile(folder / name, context);
      again->FromXmlStream(object->ToXmlStream(true, false, XmlEncoding_UTF16, EOLType_LF, context), context);
      EXPECT_TRUE(*object == *again);
      EXPECT_EQ(again->children.size(), 500u);
    }
  });
  EXPECT_EQ(test::MonitorLines(u"-->"), u"");
}

// Strings and lists are made when they are first asked for, here by all threads at once.
TEST(ThreadsDocument, ReadOneFinishedTree) {
  CXmlDocument document;
  document.LoadXml(("<a>" + test::Repeated("<b c='1' d='2'>x</b>", 2000) + "</a>").c_str());
  std::vector<const void*> seen[kThreads];
  std::barrier start(kThreads);
  OnThreads([&](std::size_t number) {
    start.arrive_and_wait();
    const CXmlElement* b = document.GetDocumentElement()->GetFirstElement();
    for (; b != nullptr; b = b->GetNextSiblingElement()) {
      EXPECT_EQ(b->GetText() + b->GetAttributes().at(1)->GetValue(), u"x2");
      seen[number].insert(seen[number].end(), {&b->GetText(), &b->GetAttributes(), &b->GetAttribute(u"c", u"")});
    }
  });
  EXPECT_EQ(seen[0].size(), 6000u);
  for (const auto& others : seen) EXPECT_TRUE(others == seen[0]);
}

}  // namespace
}  // namespace OvXmlLib16
