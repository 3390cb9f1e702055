#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>

#include "bench/OrdersDocument.h"
#include "examples/orders/Orders.h"
#include "tests/support/AllocationCounters.h"
#include "tests/support/AllocationLoop.h"

namespace OvXmlLib16::test {
namespace {

std::size_t CountStartTags(std::string_view document) {
  std::size_t count = 0;
  for (std::size_t i = 0; i + 1 < document.size(); ++i) {
    if (document[i] == '<' && document[i + 1] != '/' && document[i + 1] != '?') ++count;
  }
  return count;
}

// How often `work` asks for memory.
template <class Work>
std::size_t CallsOf(const Work& work) {
  constexpr std::size_t kMany = std::size_t{1} << 40;
  g_callsToFailure = kMany;
  work();
  return kMany - std::exchange(g_callsToFailure, 0);
}

TEST(OrdersAllocation, ReadingAndWritingCallTheHeapAtMostTwiceForAnElement) {
  CXmlObjectBase::Register(16, 1);
  const std::string document = bench::MakeOrdersDocument(100'000);
  const std::size_t elements = CountStartTags(document);
  const CSmartPtr<orders::COrders> read(new orders::COrders);
  read->FromXml(std::string_view(document));  // the first one also pays for what is kept
  EXPECT_LE(CallsOf([&] { CSmartPtr<orders::COrders>(new orders::COrders)->FromXml(std::string_view(document)); }),
            2 * elements);
  EXPECT_LE(CallsOf([&] { read->ToXmlStream(); }), elements);
}

TEST(OrdersAllocation, JsonLosesNothing) {
  const CSerializationContext context = orders::COrders::MakeContext();
  const CSmartPtr<orders::COrders> read(new orders::COrders);
  read->FromXml(std::string_view(bench::MakeOrdersDocument(1'000)));
  const std::string json = ToUtf8(read->ToJson(true, EOLType_LF, context)), notJson = json + "]";
  ExpectSafe("writing", [&] { read->ToJsonStream(true, XmlEncoding_UTF8, EOLType_LF, context); });
  for (const std::string& text : {json, notJson}) {
    ExpectSafe("reading", [&] {
      try {
        CSmartPtr<orders::COrders>(new orders::COrders)->FromJson(text, context);
      } catch (const COvException& exception) {
        exception.GetFullMessage();
      }
    });
  }
}

}  // namespace
}  // namespace OvXmlLib16::test
