#include "ovxmllib/binding/ObjectMemory.h"

#include <atomic>
#include <cstdint>
#include <new>
#include <utility>

#include "ovxmllib/document/SlabCache.h"

namespace OvXmlLib16 {

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kPools = false;  // the sanitizer is to see each object by itself
#elif defined(__has_feature)
constexpr bool kPools = !__has_feature(address_sanitizer);
#else
constexpr bool kPools = true;
#endif

constexpr std::size_t kPageBytes = 64 * 1024;
constexpr std::size_t kLargest = 4096;
constexpr std::int64_t kOpen = std::int64_t{1} << 32;  // more pieces than a slab has

// The head of a slab.
struct Page {
  explicit Page(Slab&& memory) noexcept : slab(std::move(memory)) {}

  // Takes off pieces, and the page with the last of them.
  void TakeOff(std::int64_t pieces) noexcept {
    if (live.fetch_sub(pieces, std::memory_order_acq_rel) != pieces) return;
    const Slab memory = std::move(slab);  // this object lies in it
    this->~Page();
  }

  Slab slab;
  std::atomic<std::int64_t> live = kOpen;  // pieces; while the page is open, kOpen less those that are free again
};

// Stands ahead of each piece; null for an object from the heap.
using PieceHead = Page*;

struct OpenPage {
  Page* page = nullptr;
  std::byte* position = nullptr;
  std::byte* end = nullptr;
  std::int64_t pieces = 0;
  bool isThreadEnding = false;

  void Close() noexcept {
    if (page != nullptr) std::exchange(page, nullptr)->TakeOff(kOpen - pieces);
    position = end = nullptr;
    pieces = 0;
  }

  void Open() {
    Slab slab(kPageBytes);
    Close();
    std::byte* const memory = slab.GetMemory();
    end = memory + slab.GetSize();
    page = new (memory) Page(std::move(slab));
    position = memory + sizeof(Page);
  }
};

constinit thread_local OpenPage t_open;
constinit thread_local bool t_hasScope = false;

// Closes the page of a thread that ends.
struct PageCloser {
  PageCloser() = default;
  PageCloser(const PageCloser&) = delete;
  PageCloser& operator=(const PageCloser&) = delete;
  ~PageCloser() {
    t_open.Close();
    t_open.isThreadEnding = true;
  }
};

bool OpenNext() {
  static thread_local const PageCloser closer;
  if (t_open.isThreadEnding) return false;
  t_open.Open();
  return true;
}

std::byte* Aligned(std::byte* position, std::size_t alignment) noexcept {
  return position + (-reinterpret_cast<std::uintptr_t>(position) & (alignment - 1));
}

// Objects mostly go in the order in which they were made, too quickly for what the processor foresees.
void FetchAhead(const void* object) noexcept {
  constexpr std::size_t kAhead = 1024, kLine = 64, kLines = 4;  // bytes; more than most objects have
#pragma GCC unroll 4
  for (std::size_t i = 0; i < kLines; ++i) {
    __builtin_prefetch(static_cast<const std::byte*>(object) + kAhead + i * kLine, /*rw=*/1);
  }
}

PieceHead& HeadOf(void* object) noexcept { return static_cast<PieceHead*>(object)[-1]; }

}  // namespace

void* AllocateObject(std::size_t bytes, std::size_t alignment) {
  constexpr std::size_t kMostAhead = sizeof(PieceHead) + __STDCPP_DEFAULT_NEW_ALIGNMENT__;
  if (!kPools || bytes > kLargest) return AllocateObjectApart(bytes);
  OpenPage& open = t_open;
  const bool fits = kMostAhead + bytes <= static_cast<std::size_t>(open.end - open.position);
  if (!fits && !OpenNext()) return AllocateObjectApart(bytes);
  std::byte* const object = Aligned(open.position + sizeof(PieceHead), alignment);
  new (object - sizeof(PieceHead)) PieceHead(open.page);
  open.position = Aligned(object + bytes, alignof(PieceHead));
  ++open.pieces;
  return object;
}

void* AllocateBoundObject(std::size_t bytes) {
  return t_hasScope ? AllocateObject(bytes, __STDCPP_DEFAULT_NEW_ALIGNMENT__) : AllocateObjectApart(bytes);
}

SlabScope::SlabScope(bool isWanted) noexcept : m_wasOpen(t_hasScope) { t_hasScope |= isWanted; }

SlabScope::~SlabScope() { t_hasScope = m_wasOpen; }

void* AllocateObjectApart(std::size_t bytes) {
  constexpr std::size_t kAhead = __STDCPP_DEFAULT_NEW_ALIGNMENT__;
  std::byte* const object = static_cast<std::byte*>(::operator new(kAhead + bytes)) + kAhead;
  new (object - sizeof(PieceHead)) PieceHead(nullptr);
  return object;
}

void FreeObject(void* object) noexcept {
  if (object == nullptr) return;
  if (Page* const page = HeadOf(object)) {
    FetchAhead(object);
    return page->TakeOff(1);
  }
  ::operator delete(static_cast<std::byte*>(object) - __STDCPP_DEFAULT_NEW_ALIGNMENT__);
}

}  // namespace OvXmlLib16
