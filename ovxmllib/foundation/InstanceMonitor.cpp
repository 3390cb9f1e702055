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
  std::atomic<std::int64_t> live = 0;
  std::atomic<std::int64_t> total = 0;
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
      record.shared.live += lanes.tallies[record.index].live;
      record.shared.total += lanes.tallies[record.index].total;
    }
  }

  WString Dump() {
    const std::lock_guard guard(m_cs);
    WString result = u"Instances of classes still in existence/Total Number of instances created\n";
    bool first = true;
    for (const ClassType& record : m_records) {
      const auto [live, total] = Sum(record);
      if (total == 0) continue;  // forgotten by Cleanup, and not seen since
      if (!first) result += u'\n';
      first = false;
      result += live >= 1 ? FormatString(u"--> %s = %d/%d", record.strClassName, live, total)
                          : FormatString(u"    %s = %d/%d", record.strClassName, live, total);
    }
    return result;
  }

  // Takes the sums off the records, since a lane belongs to its thread.
  void Clear() {
    const std::lock_guard guard(m_cs);
    for (ClassType& record : m_records) {
      const auto [live, total] = Sum(record);
      record.shared.live -= live;
      record.shared.total -= total;
    }
  }

 private:
  struct Counts {
    std::int64_t live, total;
  };

  Counts Sum(const ClassType& record) const {
    Counts counts{record.shared.live, record.shared.total};
    if (record.index >= kLanes) return counts;
    for (const Lanes* lanes = m_lanes; lanes != nullptr; lanes = lanes->next) {
      counts.live += lanes->tallies[record.index].live.load(std::memory_order_relaxed);
      counts.total += lanes->tallies[record.index].total.load(std::memory_order_relaxed);
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

void Add(Tally& tally, std::int64_t live, std::int64_t total) noexcept {
  tally.live.fetch_add(live, std::memory_order_relaxed);
  tally.total.fetch_add(total, std::memory_order_relaxed);
}

// A lane is written by its own thread alone, so a load and a store do and no bus is locked.
void AddToLane(Tally& tally, std::int64_t live, std::int64_t total) noexcept {
  tally.live.store(tally.live.load(std::memory_order_relaxed) + live, std::memory_order_relaxed);
  tally.total.store(tally.total.load(std::memory_order_relaxed) + total, std::memory_order_relaxed);
}

void CountFirst(ClassType& record, std::int64_t live, std::int64_t total) noexcept {
  static thread_local const LaneOwner owner;  // takes part once in a thread's life, and at its end leaves
  if (t_lanes == nullptr) return Add(record.shared, live, total);
  AddToLane(t_lanes->tallies[record.index], live, total);
}

inline void Count(ClassType& record, std::int64_t live, std::int64_t total) noexcept {
  if (record.index >= kLanes) return Add(record.shared, live, total);
  if (t_lanes == nullptr) return CountFirst(record, live, total);
  AddToLane(t_lanes->tallies[record.index], live, total);
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
CInstanceMonitor::CInstanceMonitor(ClassType& record) noexcept : m_pct(&record) { Count(record, 1, 1); }
CInstanceMonitor::CInstanceMonitor(const CInstanceMonitor& other) noexcept : CInstanceMonitor(*other.m_pct) {}
CInstanceMonitor::~CInstanceMonitor() { Count(*m_pct, -1, 0); }

WString CInstanceMonitor::DumpState() { return Registry::Instance().Dump(); }
void CInstanceMonitor::Cleanup() { Registry::Instance().Clear(); }
CInstanceMonitor::ClassType& CInstanceMonitor::FindClass(const WChar* className) {
  return Registry::Instance().Find(ViewOf(className));
}
void CInstanceMonitor::Forget(ClassType& record, std::int64_t count) noexcept { Count(record, -count, 0); }

}  // namespace OvXmlLib16
