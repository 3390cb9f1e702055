#include <gtest/gtest.h>

#include <barrier>
#include <thread>
#include <vector>

#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/json/JsonContext.h"
#include "tests/support/AnyObject.h"

namespace OvXmlLib16 {
namespace {

constexpr std::size_t kThreads = 4;

void OnThreads(const auto& call) {
  std::barrier start(kThreads);
  std::vector<std::jthread> threads;
  for (std::size_t i = 0; i < kThreads; ++i) {
    threads.emplace_back([&, i] {
      start.arrive_and_wait();
      call(i);
    });
  }
}

TEST(ThreadsJson, MakeTheOptionsOfAContextOnce) {
  for (int round = 0; round < 50; ++round) {
    const CSerializationContext context;
    CJsonContext* made[kThreads];
    OnThreads([&](std::size_t i) { made[i] = context.GetJsonContext(); });
    for (const CJsonContext* each : made) EXPECT_EQ(each, made[0]);
  }
}

// Reading without namespaces changes what the context says of them, which no other thread may see.
TEST(ThreadsJson, ReadAndWriteWithOneContext) {
  CSerializationContext context;
  context.GetJsonContext()->SetSupportRoundtrip(RoundTripAttributes);
  OnThreads([&](std::size_t number) {
    const std::string good = "{\"a\": {\"@x\": " + std::to_string(number) + ", \"#text\": \"\\u00e9\"}}";
    const std::string odd = "{\"a\": \"\\r\"}", bad = "{\"a\": 1, \"b\": 2}";
    for (int i = 0; i < 100; ++i) {
      const CSmartPtr<test::AnyObject> object(new test::AnyObject), again(new test::AnyObject);
      object->FromJson(good.c_str(), context);
      again->FromJsonStream(object->ToJsonStream(false, XmlEncoding_UTF8, EOLType_LF, context), context);
      EXPECT_EQ(again->attributes[0].value, ToWide(std::to_string(number)));
      again->FromJson(odd.c_str(), context);
      EXPECT_THROW(again->FromJson(bad.c_str(), context), COvException);
      EXPECT_FALSE(context.GetIgnoreNamespaces());
    }
  });
}

}  // namespace
}  // namespace OvXmlLib16
