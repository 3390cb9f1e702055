#include <gtest/gtest.h>

#include <barrier>
#include <thread>

#include "tests/support/KitchenSink.h"

namespace OvXmlLib16 {
namespace {

using test::KitchenSink;

template <class... T>
void CleanUpAll() {
  (T::CleanUp(), ...);
}

// The tables of all classes are built by whoever comes first, while the others read with them.
TEST(ThreadsMapping, BuildTablesAndReadAtOnce) {
  constexpr int kThreads = 8, kRounds = 4;
  const CSerializationContext context;
  std::vector<WString> texts;
  for (int i = 0; i < kThreads; ++i) texts.push_back(test::FilledSink(i)->ToXml(true, true, EOLType_LF, context));
  for (int round = 0; round < kRounds; ++round) {
    CleanUpAll<KitchenSink, test::Primitives, test::Lists, test::Sequence, test::Choice, test::All, test::Groups,
               test::OuterGroup, test::MiddleGroup, test::InnerGroup, test::Pair, test::Money, test::Note, test::Point,
               test::Circle, test::Square>();
    std::barrier start(kThreads);
    std::vector<std::thread> threads;
    for (const WString& text : texts) {
      threads.emplace_back([&] {
        start.arrive_and_wait();
        const CSmartPtr<KitchenSink> sink = KitchenSink::Make();
        sink->FromXml(text.c_str(), context);
        EXPECT_EQ(sink->ToXml(true, true, EOLType_LF, context), text);
      });
    }
    for (std::thread& thread : threads) thread.join();
  }
}

}  // namespace
}  // namespace OvXmlLib16
