#include "ovxmllib/foundation/StringBuffer.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace OvXmlLib16 {

void CStringBuffer::Assign(WStringView text) {
  Clear();
  Append(text);
}

void CStringBuffer::Clear() noexcept {
  m_blocks.clear();
  m_pLastBlock = m_position = m_end = nullptr;
  m_unitsBefore = 0;
}

void CStringBuffer::Reset() noexcept {
  if (m_blocks.size() != 1) return Clear();
  m_position = m_pLastBlock;
}

const WChar* CStringBuffer::GetString() {
  if (m_blocks.empty()) return u"";
  if (m_blocks.size() > 1) {
    const std::size_t length = GetLength();
    Block whole{std::make_unique_for_overwrite<WChar[]>(length + 1), length};
    WChar* out = whole.text.get();
    VisitBlocks([&](WStringView text) { out += text.copy(out, text.size()); });
    assert(out == whole.text.get() + length && "dwOutputPos == m_dwTotalBufferLen");
    m_pLastBlock = whole.text.get();
    m_position = m_end = out;
    m_unitsBefore = 0;
    m_blocks.front() = std::move(whole);
    m_blocks.erase(m_blocks.begin() + 1, m_blocks.end());
  }
  *m_position = 0;
  return m_pLastBlock;
}

WString CStringBuffer::GetText() const {
  WString result;
  result.reserve(GetLength());
  VisitBlocks([&](WStringView text) { result += text; });
  return result;
}

void CStringBuffer::AppendAcrossBlocks(WStringView text) {
  while (!text.empty()) {
    if (m_position == m_end) AddBlock(m_dwBlockSize);
    const std::size_t fitting = std::min(text.size(), GetRoom());
    m_position = CopyUnits(m_position, text.substr(0, fitting));
    text.remove_prefix(fitting);
  }
}

void CStringBuffer::AddBlock(std::size_t capacity) {
  assert(m_position == m_end && "m_LastBlock_SizeOf == m_LastBlock_DataIn");
  m_blocks.push_back({std::make_unique_for_overwrite<WChar[]>(capacity + 1), capacity});
  m_unitsBefore += GetUsed();
  m_pLastBlock = m_position = m_blocks.back().text.get();
  m_end = m_pLastBlock + capacity;
}

// Lets the last block end where its text ends, and adds one with room for `units` in one piece.
void CStringBuffer::CutBlock(std::size_t units) {
  if (!m_blocks.empty()) m_blocks.back().capacity = GetUsed();
  m_end = m_position;
  AddBlock(std::max(units, m_dwBlockSize));
}

WStringView CStringBuffer::BlockText(std::size_t index) const noexcept {
  const Block& block = m_blocks[index];
  return {block.text.get(), index + 1 == m_blocks.size() ? GetUsed() : block.capacity};
}

}  // namespace OvXmlLib16
