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

constexpr std::size_t kSizes = static_cast<std::size_t>(std::countr_zero(kLargestSlab / kSmallestCachedSlab)) + 1;

bool IsCached(std::size_t size) noexcept {
  return std::has_single_bit(size) && size >= kSmallestCachedSlab && size <= kLargestSlab;
}

class SlabCache {
 public:
  // Null when there is no slab of this size.
  std::byte* Take(std::size_t size) noexcept {
    const std::lock_guard guard(m_lock);
    Spare*& list = ListOf(size);
    if (list == nullptr) return nullptr;
    m_bytes -= size;
    Spare* const taken = std::exchange(list, list->next);
    taken->~Spare();
    return reinterpret_cast<std::byte*>(taken);
  }

  // False when the cache is full.
  bool Keep(std::byte* memory, std::size_t size) noexcept {
    const std::lock_guard guard(m_lock);
    if (m_bytes + size > kMaxCached) return false;
    m_bytes += size;
    Spare*& list = ListOf(size);
    list = new (memory) Spare{list};
    return true;
  }

 private:
  Spare*& ListOf(std::size_t size) noexcept {
    return m_lists[static_cast<std::size_t>(std::countr_zero(size / kSmallestCachedSlab))];
  }

  std::mutex m_lock;
  std::array<Spare*, kSizes> m_lists{};
  std::size_t m_bytes = 0;
};

// Never destroyed: a document may be the last static object to go.
SlabCache& Cache() noexcept {
  static constinit SlabCache cache;
  return cache;
}

}  // namespace

void SlabDeleter::operator()(std::byte* memory) const noexcept {
  if (!IsCached(size) || !Cache().Keep(memory, size)) ::operator delete(memory);
}

Slab::Slab(std::size_t size) {
  std::byte* memory = IsCached(size) ? Cache().Take(size) : nullptr;
  if (memory == nullptr) memory = static_cast<std::byte*>(::operator new(size));
  m_memory = {memory, SlabDeleter{size}};
}

void TrimSlabCache() noexcept {
  for (std::size_t size = kSmallestCachedSlab; size <= kLargestSlab; size *= 2) {
    while (std::byte* memory = Cache().Take(size)) ::operator delete(memory);
  }
}

}  // namespace OvXmlLib16
