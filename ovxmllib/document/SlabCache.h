// Memory for the trees to come.
#pragma once

#include <cstddef>
#include <memory>

namespace OvXmlLib16 {

/// Returns a slab to the cache or to the system.
struct SlabDeleter {
  std::size_t size = 0;
  void operator()(std::byte* memory) const noexcept;
};

/// A piece of memory for a NodePool, of GetSize() bytes.
class Slab {
 public:
  /// Takes `size` bytes from the cache, if it has such a slab, or from the system. Throws std::bad_alloc.
  explicit Slab(std::size_t size);

  std::byte* GetMemory() const noexcept { return m_memory.get(); }
  std::size_t GetSize() const noexcept { return m_memory.get_deleter().size; }

 private:
  std::unique_ptr<std::byte[], SlabDeleter> m_memory;
};

// Memory that goes back to the system is paid for again, page by page, by the next document: measured, half as much as
// parsing that document takes. So slabs from kSmallestSlab to kLargestSlab, in powers of two, are kept for later
// documents: up to kMaxOfThread bytes by the thread that gives them up, for itself, whose processor has them at hand;
// then up to kMaxCached bytes in the process, for all threads. Others go back at once.
inline constexpr std::size_t kSmallestSlab = 8 * 1024;
inline constexpr std::size_t kLargestSlab = 4 * 1024 * 1024;
inline constexpr std::size_t kMaxOfThread = 1024 * 1024;
inline constexpr std::size_t kMaxCached = 128 * 1024 * 1024;

/// Gives what is kept, for all threads and for this one, to the system.
void TrimSlabCache() noexcept;

}  // namespace OvXmlLib16
