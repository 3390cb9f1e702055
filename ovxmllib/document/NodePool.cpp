#include "ovxmllib/document/NodePool.h"

#include <algorithm>
#include <bit>

namespace OvXmlLib16 {

namespace {

// Small documents fit into the first slab. The last one, half empty on average, wastes little of a large document.
constexpr std::size_t kFirstSlab = kSmallestSlab;

// Each slab is twice as large as the one before, up to the largest.
std::size_t UsualSize(std::size_t index) noexcept {
  constexpr std::size_t kDoublings = std::countr_zero(kLargestSlab / kFirstSlab);
  return kFirstSlab << std::min(index, kDoublings);
}

}  // namespace

void NodePool::Use(std::size_t slab) noexcept {
  m_open = slab;
  m_position = m_slabs[slab].GetMemory();
  m_end = m_position + m_slabs[slab].GetSize();
}

void NodePool::OpenSlab(std::size_t bytes) {
  const std::size_t next = m_slabs.empty() ? 0 : m_open + 1;
  if (next < m_slabs.size() && m_slabs[next].GetSize() < bytes)
    m_slabs.erase(m_slabs.begin() + static_cast<std::ptrdiff_t>(next), m_slabs.end());
  if (next == m_slabs.size()) {
    m_slabs.emplace_back(std::max(UsualSize(next), bytes));
  }
  Use(next);
}

void NodePool::Rewind(const Mark& mark) noexcept {
  if (m_slabs.empty()) return;
  if (mark.position == nullptr) {
    Use(0);
  } else {
    Use(mark.slab);
    m_position = mark.position;
  }
  if (m_slabs.size() > m_open + 2)
    m_slabs.erase(m_slabs.begin() + static_cast<std::ptrdiff_t>(m_open) + 2, m_slabs.end());
}

void NodePool::Clear() noexcept {
  m_slabs.clear();
  m_position = m_end = nullptr;
  m_open = 0;
}

}  // namespace OvXmlLib16
