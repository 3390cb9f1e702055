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
  m_pLastBlock = nullptr;
  m_LastBlock_DataIn = m_LastBlock_SizeOf = m_dwTotalBufferLen = 0;
}

void CStringBuffer::Reset() noexcept {
  if (m_blocks.size() != 1) return Clear();
  m_LastBlock_DataIn = m_dwTotalBufferLen = 0;
}

const WChar* CStringBuffer::GetString() {
  if (m_blocks.empty()) return u"";
  if (m_blocks.size() > 1) {
    Block whole{std::make_unique_for_overwrite<WChar[]>(m_dwTotalBufferLen + 1), m_dwTotalBufferLen};
    WChar* out = whole.text.get();
    VisitBlocks([&](WStringView text) { out += text.copy(out, text.size()); });
    assert(out == whole.text.get() + m_dwTotalBufferLen && "dwOutputPos == m_dwTotalBufferLen");
    m_pLastBlock = whole.text.get();
    m_LastBlock_DataIn = m_LastBlock_SizeOf = m_dwTotalBufferLen;
    m_blocks.front() = std::move(whole);
    m_blocks.erase(m_blocks.begin() + 1, m_blocks.end());
  }
  m_pLastBlock[m_LastBlock_DataIn] = 0;
  return m_pLastBlock;
}

WString CStringBuffer::GetText() const {
  WString result;
  result.reserve(m_dwTotalBufferLen);
  VisitBlocks([&](WStringView text) { result += text; });
  return result;
}

void CStringBuffer::AppendAcrossBlocks(WStringView text) {
  while (!text.empty()) {
    if (m_LastBlock_DataIn == m_LastBlock_SizeOf) AddBlock(m_dwBlockSize);
    const std::size_t fitting = std::min(text.size(), m_LastBlock_SizeOf - m_LastBlock_DataIn);
    AppendFitting(text.substr(0, fitting));
    text.remove_prefix(fitting);
  }
}

void CStringBuffer::AddBlock(std::size_t capacity) {
  assert(m_LastBlock_SizeOf == m_LastBlock_DataIn && "m_LastBlock_SizeOf == m_LastBlock_DataIn");
  m_blocks.push_back({std::make_unique_for_overwrite<WChar[]>(capacity + 1), capacity});
  m_pLastBlock = m_blocks.back().text.get();
  m_LastBlock_DataIn = 0;
  m_LastBlock_SizeOf = capacity;
}

// Lets the last block end where its text ends, and adds one with room for `units` in one piece.
void CStringBuffer::CutBlock(std::size_t units) {
  if (!m_blocks.empty()) m_blocks.back().capacity = m_LastBlock_SizeOf = m_LastBlock_DataIn;
  AddBlock(std::max(units, m_dwBlockSize));
}

WStringView CStringBuffer::BlockText(std::size_t index) const noexcept {
  const Block& block = m_blocks[index];
  return {block.text.get(), index + 1 == m_blocks.size() ? m_LastBlock_DataIn : block.capacity};
}

}  // namespace OvXmlLib16
