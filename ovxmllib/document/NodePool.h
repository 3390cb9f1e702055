// The memory of one document's nodes and text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "ovxmllib/document/SlabCache.h"

namespace OvXmlLib16 {

/// Hands out memory piece by piece from slabs that grow, and takes it back from the end, as far as a mark, or all at
/// once. An element and all that belongs to it is allocated between its start and its end, so an element that is
/// dropped at its end gives everything back by one Rewind to its start.
class NodePool {
 public:
  /// A state of the pool to rewind to.
  struct Mark {
    std::size_t slab;
    std::byte* position;
  };

  NodePool() = default;
  NodePool(const NodePool&) = delete;
  NodePool& operator=(const NodePool&) = delete;

  /// Memory for `bytes`, aligned for pointers. Throws std::bad_alloc.
  void* Allocate(std::size_t bytes) { return Allocate(bytes, Rounded(bytes)); }
  /// The same, with room for `room` bytes until the next allocation; it is at least Rounded(bytes).
  void* Allocate(std::size_t bytes, std::size_t room) {
    if (room > static_cast<std::size_t>(m_end - m_position)) OpenSlab(room);
    return std::exchange(m_position, m_position + Rounded(bytes));
  }

  /// Grows what was allocated last, `bytes` at `data`, to `newBytes` where it lies; false if it was not the last or the
  /// slab is full.
  bool Extend(const void* data, std::size_t bytes, std::size_t newBytes) noexcept {
    const std::size_t more = Rounded(newBytes) - Rounded(bytes);
    if (static_cast<const std::byte*>(data) + Rounded(bytes) != m_position) return false;
    if (more > static_cast<std::size_t>(m_end - m_position)) return false;
    m_position += more;
    return true;
  }

  Mark GetMark() const noexcept { return {m_open, m_position}; }

  /// Takes back all that was allocated since the mark. One slab beyond it is kept for what comes next.
  void Rewind(const Mark& mark) noexcept;

  /// Takes back everything and gives the slabs to the system.
  void Clear() noexcept;

  /// What an allocation takes.
  static constexpr std::size_t Rounded(std::size_t bytes) noexcept {
    return (bytes + alignof(void*) - 1) & ~(alignof(void*) - 1);
  }

 private:
  void OpenSlab(std::size_t bytes);
  void Use(std::size_t slab) noexcept;

  std::byte* m_position = nullptr;  // in the open slab
  std::byte* m_end = nullptr;
  std::size_t m_open = 0;  // index of the open slab; there is none before the first allocation
  std::vector<Slab> m_slabs;
};

}  // namespace OvXmlLib16
