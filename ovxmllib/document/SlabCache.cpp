#include "ovxmllib/document/SlabCache.h"

#include <array>
#include <bit>
#include <mutex>
#include <new>
#include <utility>

namespace OvXmlLib16 {

namespace {

// A slab that waits; the link lies in the slab itself, so that keeping it cannot fail.
struct Spare {
  Spare* next;
};

constexpr std::size_t kSizes = static_cast<std::size_t>(std::countr_zero(kLargestSlab / kSmallestSlab)) + 1;

bool IsCached(std::size_t size) noexcept {
  return std::has_single_bit(size) && size >= kSmallestSlab && size <= kLargestSlab;
}

// Up to kMost bytes of slabs of the cached sizes.
template <std::size_t kMost>
class Spares {
 public:
  // Null when there is no slab of this size.
  std::byte* Take(std::size_t size) noexcept {
    Spare*& list = ListOf(size);
    if (list == nullptr) return nullptr;
    m_bytes -= size;
    Spare* const taken = std::exchange(list, list->next);
    taken->~Spare();
    return reinterpret_cast<std::byte*>(taken);
  }

  // False when there is no room for more.
  bool Keep(std::byte* memory, std::size_t size) noexcept {
    if (m_bytes + size > kMost) return false;
    m_bytes += size;
    Spare*& list = ListOf(size);
    list = new (memory) Spare{list};
    return true;
  }

  void Empty() noexcept {
    for (std::size_t size = kSmallestSlab; size <= kLargestSlab; size *= 2) {
      while (std::byte* memory = Take(size)) ::operator delete(memory);
    }
  }

 private:
  Spare*& ListOf(std::size_t size) noexcept {
    return m_lists[static_cast<std::size_t>(std::countr_zero(size / kSmallestSlab))];
  }

  std::array<Spare*, kSizes> m_lists{};
  std::size_t m_bytes = 0;
};

struct SharedSpares {
  std::mutex lock;
  Spares<kMaxCached> spares;
};

// Never destroyed: a document may be the last static object to go.
SharedSpares& Shared() noexcept {
  static constinit SharedSpares shared;
  return shared;
}

constinit thread_local Spares<kMaxOfThread> t_spares;
constinit thread_local bool t_isThreadEnding = false;

struct AtThreadEnd {
  AtThreadEnd() = default;
  AtThreadEnd(const AtThreadEnd&) = delete;
  AtThreadEnd& operator=(const AtThreadEnd&) = delete;
  ~AtThreadEnd() {
    t_isThreadEnding = true;
    t_spares.Empty();
  }
};

bool KeepForThread(std::byte* memory, std::size_t size) noexcept {
  if (t_isThreadEnding) return false;
  static thread_local const AtThreadEnd atThreadEnd;
  return t_spares.Keep(memory, size);
}

std::byte* TakeSpare(std::size_t size) noexcept {
  if (std::byte* const memory = t_spares.Take(size)) return memory;
  const std::lock_guard guard(Shared().lock);
  return Shared().spares.Take(size);
}

bool KeepSpare(std::byte* memory, std::size_t size) noexcept {
  if (KeepForThread(memory, size)) return true;
  const std::lock_guard guard(Shared().lock);
  return Shared().spares.Keep(memory, size);
}

}  // namespace

void SlabDeleter::operator()(std::byte* memory) const noexcept {
  if (!IsCached(size) || !KeepSpare(memory, size)) ::operator delete(memory);
}

Slab::Slab(std::size_t size) {
  std::byte* memory = IsCached(size) ? TakeSpare(size) : nullptr;
  if (memory == nullptr) memory = static_cast<std::byte*>(::operator new(size));
  m_memory = {memory, SlabDeleter{size}};
}

void TrimSlabCache() noexcept {
  t_spares.Empty();
  const std::lock_guard guard(Shared().lock);
  Shared().spares.Empty();
}

}  // namespace OvXmlLib16
