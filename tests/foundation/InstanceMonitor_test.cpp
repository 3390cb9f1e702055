#include "ovxmllib/foundation/InstanceMonitor.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>

#include "ovxmllib/foundation/DebugTrace.h"
#include "tests/support/Documents.h"

namespace OvXmlLib16 {
namespace {

class CNamed : public CInstanceMonitor {
 public:
  explicit CNamed(const WChar* name) : CInstanceMonitor(name) {}
};

// The counts are the process's: each test starts them anew.
class InstanceMonitor : public testing::Test {
 protected:
  InstanceMonitor() { CInstanceMonitor::Cleanup(); }
};
using ThreadsInstanceMonitor = InstanceMonitor;

TEST_F(InstanceMonitor, ReportsInOrderOfFirstAppearance) {
  const WString head = u"Instances of classes still in existence/Total Number of instances created\n";
  EXPECT_EQ(CInstanceMonitor::DumpState(), head);
  auto z = std::make_unique<CNamed>(u"CZ");
  const CNamed a(u"CA");
  CNamed copy(*z);
  copy = a;
  EXPECT_EQ(CInstanceMonitor::DumpState(), head + u"--> CZ = 2/2\n--> CA = 1/1") << "assignment changes nothing";
  { const CNamed again(u"CZ"), other(u"CB"); }
  z.reset();
  EXPECT_EQ(CInstanceMonitor::DumpState(), head + u"--> CZ = 1/3\n--> CA = 1/1\n    CB = 0/1");
}

// More classes than a thread has places of its own for.
TEST_F(InstanceMonitor, CountsAnyNumberOfClasses) {
  for (int i = 0; i < 200; ++i) {
    const WString name = u"CMany" + ToWide(std::to_string(i));
    const CNamed kept(name.c_str());
    std::thread([&] { CNamed(name.c_str()); }).join();
    EXPECT_EQ(test::MonitorLines(name + u" "), u"--> " + name + u" = 1/2");
  }
}

TEST_F(ThreadsInstanceMonitor, KeepsTheCountsOfThreadsThatEnded) {
  constexpr int kThreads = 6, kEach = 500;
  std::vector<std::unique_ptr<CNamed>> left(kThreads);
  std::atomic<bool> done = false;
  std::thread reader([&] {
    while (!done) CInstanceMonitor::DumpState();
  });
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&left, t] {
      for (int i = 0; i < kEach; ++i) left[static_cast<std::size_t>(t)] = std::make_unique<CNamed>(u"CThreaded");
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(test::MonitorLines(u"CThreaded"), u"--> CThreaded = 6/3000");
  left.clear();  // on another thread than made them
  done = true;
  reader.join();
  EXPECT_EQ(test::MonitorLines(u"CThreaded"), u"    CThreaded = 0/3000");
}

std::vector<WString> g_pieces;

TEST(DebugTrace, SendsPiecesToTheListener) {
  g_pieces.clear();
  const auto before = platform::SetDebugOutput([](WStringView piece) { g_pieces.emplace_back(piece); });
  DebugTrace(u"%s", WString(129, u'x'));
  DebugTrace(u"");
  platform::SetDebugOutput(before);
  DebugTrace(u"unheard");
  EXPECT_EQ(g_pieces, (std::vector<WString>{WString(128, u'x'), u"x"}));
}

}  // namespace
}  // namespace OvXmlLib16
