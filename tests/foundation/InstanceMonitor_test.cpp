#include "ovxmllib/foundation/InstanceMonitor.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "ovxmllib/foundation/DebugTrace.h"

namespace OvXmlLib16 {
namespace {

class CNamed : public CInstanceMonitor {
 public:
  explicit CNamed(const WChar* name) : CInstanceMonitor(name) {}
};

class CRecorded : public CInstanceMonitor {
 public:
  CRecorded() : CInstanceMonitor(Record()) {}
  static ClassType& Record() {
    static ClassType& record = FindClass(u"CRecorded");
    return record;
  }
  static void ForgetMany(int count) { Forget(Record(), count); }
};

// The line of a class, without the line feed; empty where there is none.
WString LineOf(const WString& className) {
  const WString report = CInstanceMonitor::DumpState() + u"\n";
  const std::size_t name = report.find(u" " + className + u" = ");
  if (name == WString::npos) return {};
  const std::size_t start = report.rfind(u'\n', name) + 1;
  return report.substr(start, report.find(u'\n', name) - start);
}

// The counts are the process's: each test starts them anew.
class InstanceMonitor : public testing::Test {
 protected:
  InstanceMonitor() { CInstanceMonitor::Cleanup(); }
};
using ThreadsInstanceMonitor = InstanceMonitor;

TEST_F(InstanceMonitor, CountsInstancesByName) {
  auto first = std::make_unique<CNamed>(u"CFoo");
  auto second = std::make_unique<CNamed>(u"CFoo");
  first.reset();
  EXPECT_EQ(LineOf(u"CFoo"), u"--> CFoo = 1/2");
  second.reset();
  EXPECT_EQ(LineOf(u"CFoo"), u"    CFoo = 0/2");
}

TEST_F(InstanceMonitor, CopiesCountAndAssignmentsDoNot) {
  const CNamed original(u"CCopied");
  CNamed copy(original);
  const CNamed other(u"CAssigned");
  copy = other;
  EXPECT_EQ(LineOf(u"CCopied"), u"--> CCopied = 2/2");
  EXPECT_EQ(LineOf(u"CAssigned"), u"--> CAssigned = 1/1");
}

TEST_F(InstanceMonitor, ForgetsManyAtOnce) {
  {
    const CRecorded kept;
    alignas(CRecorded) unsigned char pool[3][sizeof(CRecorded)];
    for (auto& place : pool) new (place) CRecorded;  // as an owner that frees a pool without destroying what is in it
    CRecorded::ForgetMany(3);
    EXPECT_EQ(LineOf(u"CRecorded"), u"--> CRecorded = 1/4");
  }
  EXPECT_EQ(LineOf(u"CRecorded"), u"    CRecorded = 0/4");
}

TEST_F(InstanceMonitor, ReportsInOrderOfFirstAppearance) {
  const WString head = u"Instances of classes still in existence/Total Number of instances created\n";
  EXPECT_EQ(CInstanceMonitor::DumpState(), head);
  const CNamed z(u"CZ");
  { const CNamed a(u"CA"); }
  { const CNamed again(u"CZ"); }
  EXPECT_EQ(CInstanceMonitor::DumpState(), head + u"--> CZ = 1/2\n    CA = 0/1");
}

// More classes than a thread has places of its own for.
TEST_F(InstanceMonitor, CountsAnyNumberOfClasses) {
  for (int i = 0; i < 200; ++i) {
    const WString name = u"CMany" + ToWide(std::to_string(i));
    const CNamed kept(name.c_str());
    std::thread([&] { CNamed(name.c_str()); }).join();
    EXPECT_EQ(LineOf(name), u"--> " + name + u" = 1/2");
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
  EXPECT_EQ(LineOf(u"CThreaded"), u"--> CThreaded = 6/3000");
  left.clear();  // on another thread than made them
  done = true;
  reader.join();
  EXPECT_EQ(LineOf(u"CThreaded"), u"    CThreaded = 0/3000");
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
