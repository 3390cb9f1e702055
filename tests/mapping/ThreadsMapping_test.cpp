#include <gtest/gtest.h>

#include <barrier>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <string>
#include <thread>
#include <vector>

#include "bench/OrdersDocument.h"
#include "examples/orders/Orders.h"
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

bool IsAligned(const void* object, std::size_t alignment) {
  return reinterpret_cast<std::uintptr_t>(object) % alignment == 0;
}

// The objects of a large document share their memory. Some outlive the others, and each may go on any thread.
TEST(ThreadsMapping, ObjectsOfALargeDocumentGoOneByOne) {
  CXmlObjectBase::Register(16, 1);
  const std::string document = bench::MakeOrdersDocument(300'000);
  std::vector<CSmartPtr<orders::COrder>> kept;
  std::vector<WString> texts;
  for (int round = 0; round < 2; ++round) {
    CSmartPtr<orders::COrders> read(new orders::COrders);
    read->FromXml(std::string_view(document));
    for (int i = 0; i < read->GetOrders().GetCount(); i += 7) {
      orders::COrder& order = read->GetOrders().At(i);
      EXPECT_TRUE(IsAligned(&order, __STDCPP_DEFAULT_NEW_ALIGNMENT__));
      kept.emplace_back(&order);
      texts.push_back(order.ToXml());
    }
    std::thread([gone = std::move(read)]() mutable { gone = nullptr; }).join();
  }
  for (std::size_t i = 0; i < kept.size(); ++i) EXPECT_EQ(kept[i]->ToXml(), texts[i]);
  std::thread([gone = std::move(kept)]() mutable { gone.clear(); }).join();
}

struct alignas(64) StrictCash : orders::CCash {
  std::byte bytes[64];
};

TEST(ThreadsMapping, ObjectsAreMadeInEveryWay) {
  const std::unique_ptr<StrictCash> strict(new StrictCash);
  EXPECT_TRUE(IsAligned(strict.get(), 64));
  const std::unique_ptr<orders::CCash> quiet(new (std::nothrow) orders::CCash);
  EXPECT_NE(quiet, nullptr);
  alignas(orders::CCash) std::byte room[sizeof(orders::CCash)];
  std::destroy_at(new (room) orders::CCash);
  EXPECT_EQ(std::make_shared<orders::CCash>().use_count(), 1);
}

}  // namespace
}  // namespace OvXmlLib16
