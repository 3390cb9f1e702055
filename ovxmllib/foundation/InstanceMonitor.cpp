#include "ovxmllib/foundation/InstanceMonitor.h"

#include <array>
#include <atomic>
#include <deque>
#include <map>
#include <mutex>
#include <utility>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/foundation/DebugTrace.h"
#include "ovxmllib/foundation/OVCriticalSection.h"

namespace OvXmlLib16 {

namespace {

// Written by one thread at a time or by atomic addition, read by any.
struct Tally {
  std::atomic<std::int64_t> made = 0;
  std::atomic<std::int64_t> gone = 0;
};

// Enough for every class of the library and some of the application's; later classes share one tally among threads.
constexpr std::size_t kLanes = 64;

// What one thread has counted. A list threaded through them needs no memory, so that attaching never fails.
struct Lanes {
  std::array<Tally, kLanes> tallies;
  Lanes* next = nullptr;
};

}  // namespace

struct CInstanceMonitor::ClassType {
  ClassType(WStringView name, std::size_t position) : strClassName(name), index(position) {}

  WString strClassName;
  std::size_t index;  // the class's place in every thread's lanes
  Tally shared;       // what no running thread's lane holds
};

namespace {

using ClassType = CInstanceMonitor::ClassType;

// All records and all threads' lanes. Made at first use and never destroyed, so that objects that outlive the library's
// static objects still count into memory that is there.
class Registry {
 public:
  static Registry& Instance() {
    static Registry& instance = *new Registry;
    return instance;
  }

  ClassType& Find(WStringView name) {
    const std::lock_guard guard(m_cs);
    if (const auto known = m_byName.find(name); known != m_byName.end()) return *known->second;
    ClassType& record = m_records.emplace_back(name, m_records.size());
    m_byName.emplace(record.strClassName, &record);
    return record;
  }

  void Attach(Lanes& lanes) {
    const std::lock_guard guard(m_cs);
    lanes.next = std::exchange(m_lanes, &lanes);
  }

  // Moves what an ending thread has counted to the records.
  void Detach(Lanes& lanes) {
    const std::lock_guard guard(m_cs);
    Lanes** link = &m_lanes;
    while (*link != &lanes) link = &(*link)->next;
    *link = lanes.next;
    for (ClassType& record : m_records) {
      if (record.index >= kLanes) break;
      record.shared.made += lanes.tallies[record.index].made;
      record.shared.gone += lanes.tallies[record.index].gone;
    }
  }

  WString Dump() {
    const std::lock_guard guard(m_cs);
    WString result = u"Instances of classes still in existence/Total Number of instances created\n";
    bool first = true;
    for (const ClassType& record : m_records) {
      const auto [made, gone] = Sum(record);
      if (made == 0) continue;  // forgotten by Cleanup, and not seen since
      if (!first) result += u'\n';
      first = false;
      const std::int64_t live = made - gone;
      result += live >= 1 ? FormatString(u"--> %s = %d/%d", record.strClassName, live, made)
                          : FormatString(u"    %s = %d/%d", record.strClassName, live, made);
    }
    return result;
  }

  // Takes the sums off the records, since a lane belongs to its thread.
  void Clear() {
    const std::lock_guard guard(m_cs);
    for (ClassType& record : m_records) {
      const auto [made, gone] = Sum(record);
      record.shared.made -= made;
      record.shared.gone -= gone;
    }
  }

 private:
  struct Counts {
    std::int64_t made, gone;
  };

  Counts Sum(const ClassType& record) const {
    Counts counts{record.shared.made, record.shared.gone};
    if (record.index >= kLanes) return counts;
    for (const Lanes* lanes = m_lanes; lanes != nullptr; lanes = lanes->next) {
      counts.made += lanes->tallies[record.index].made.load(std::memory_order_relaxed);
      counts.gone += lanes->tallies[record.index].gone.load(std::memory_order_relaxed);
    }
    return counts;
  }

  COVCriticalSection m_cs;  // the innermost lock: nothing is called under it that takes another
  std::deque<ClassType> m_records;
  std::map<WStringView, ClassType*> m_byName;
  Lanes* m_lanes = nullptr;  // not owned: each belongs to its thread
};

// The calling thread's lanes; null before its first count, and again when the thread is ending.
constinit thread_local Lanes* t_lanes = nullptr;

struct LaneOwner {
  LaneOwner() {
    Registry::Instance().Attach(lanes);
    t_lanes = &lanes;
  }
  ~LaneOwner() {
    t_lanes = nullptr;
    Registry::Instance().Detach(lanes);
  }
  LaneOwner(const LaneOwner&) = delete;
  LaneOwner& operator=(const LaneOwner&) = delete;

  Lanes lanes;
};

using Counter = std::atomic<std::int64_t> Tally::*;

// The first count of a thread, and what a lane cannot take.
void CountApart(ClassType& record, Counter counter, std::int64_t count) noexcept {
  static thread_local const LaneOwner owner;  // takes part once in a thread's life, and at its end leaves
  const bool hasLane = t_lanes != nullptr && record.index < kLanes;
  Tally& tally = hasLane ? t_lanes->tallies[record.index] : record.shared;
  (tally.*counter).fetch_add(count, std::memory_order_relaxed);
}

// A lane is written by its own thread alone, so a load and a store do and no bus is locked.
inline void Count(ClassType& record, Counter counter, std::int64_t count) noexcept {
  if (t_lanes == nullptr || record.index >= kLanes) return CountApart(record, counter, count);
  std::atomic<std::int64_t>& lane = t_lanes->tallies[record.index].*counter;
  lane.store(lane.load(std::memory_order_relaxed) + count, std::memory_order_relaxed);
}

// Traces at load and at unload.
class CInstanceMonitorReporter {
 public:
  CInstanceMonitorReporter() { DebugTrace(u"Starting to track Class instances\n"); }
  ~CInstanceMonitorReporter() {
    DebugTrace(u"Dumping Class instances\n");
    if (platform::GetDebugOutput() != nullptr) DebugTraceText(CInstanceMonitor::DumpState());
    DebugTrace(u"\n");
    CInstanceMonitor::Cleanup();
  }
  CInstanceMonitorReporter(const CInstanceMonitorReporter&) = delete;
  CInstanceMonitorReporter& operator=(const CInstanceMonitorReporter&) = delete;
};

const CInstanceMonitorReporter g_reporter;

}  // namespace

CInstanceMonitor::CInstanceMonitor(const WChar* className) : CInstanceMonitor(FindClass(className)) {}
CInstanceMonitor::CInstanceMonitor(ClassType& record) noexcept : m_pct(&record) { Count(record, &Tally::made, 1); }
CInstanceMonitor::CInstanceMonitor(const CInstanceMonitor& other) noexcept : CInstanceMonitor(*other.m_pct) {}
CInstanceMonitor::~CInstanceMonitor() { Count(*m_pct, &Tally::gone, 1); }

WString CInstanceMonitor::DumpState() { return Registry::Instance().Dump(); }
void CInstanceMonitor::Cleanup() { Registry::Instance().Clear(); }
CInstanceMonitor::ClassType& CInstanceMonitor::FindClass(const WChar* className) {
  return Registry::Instance().Find(ViewOf(className));
}
void CInstanceMonitor::Remember(ClassType& record, std::int64_t count) noexcept { Count(record, &Tally::made, count); }
void CInstanceMonitor::Forget(ClassType& record, std::int64_t count) noexcept { Count(record, &Tally::gone, count); }

}  // namespace OvXmlLib16
