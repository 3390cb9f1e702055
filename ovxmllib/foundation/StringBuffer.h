// Collects text in a chain of blocks, so that appending never moves what was written.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "ovxmllib/foundation/InstanceMonitor.h"
#include "ovxmllib/foundation/UnitCopy.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

/// A growing text. Lengths and capacities count UTF-16 code units. A call that fails for want of memory leaves a prefix
/// of what it was to append. Belongs to one thread at a time.
class CStringBuffer : public CInstanceMonitor {
 public:
  /// Blocks of 4095 units.
  CStringBuffer() : CStringBuffer(kDefaultBlockSize) {}
  /// Blocks of `blockSize` units, the terminator included: one less can be used. 2 is the least that is taken.
  explicit CStringBuffer(std::size_t blockSize)
      : CInstanceMonitor(Record()), m_dwBlockSize(blockSize < 2 ? 1 : blockSize - 1) {}
  CStringBuffer(const CStringBuffer&) = delete;
  CStringBuffer& operator=(const CStringBuffer&) = delete;

  /// Adds `text` at the end. It may be part of this buffer.
  void Append(WStringView text) {
    if (text.size() > GetRoom()) return AppendAcrossBlocks(text);
    m_position = CopyUnits(m_position, text);
  }
  /// Adds one unit at the end.
  void Append(WChar unit) {
    if (m_position == m_end) AddBlock(m_dwBlockSize);
    *m_position++ = unit;
  }
  /// Room for `units` more units in one piece. What is written there counts when Commit gets its end; any other call
  /// before that drops it.
  WChar* Reserve(std::size_t units) {
    if (units > GetRoom()) CutBlock(units);
    return m_position;
  }
  void Commit(WChar* end) noexcept { m_position = end; }
  /// Makes `text`, which must not be part of this buffer, the whole text.
  void Assign(WStringView text);

  /// Drops the text and frees all memory.
  void Clear() noexcept;
  /// Drops the text. The block of a buffer that has just one is kept for what comes next.
  void Reset() noexcept;

  /// The text, terminated; valid until the next call that changes it. Owned by the buffer. Several blocks are first
  /// joined in one that is exactly full, so that asking again costs nothing.
  const WChar* GetString();
  /// A copy of the text, made in one piece, which leaves the blocks as they are.
  WString GetText() const;
  /// The units in all blocks together.
  std::size_t GetLength() const noexcept { return m_unitsBefore + GetUsed(); }

  /// Calls `visit` with a WStringView of each block's text, in order. Characters of two units may be split between
  /// blocks.
  template <class Visitor>
  void VisitBlocks(Visitor&& visit) const {
    for (std::size_t i = 0; i < m_blocks.size(); ++i) visit(BlockText(i));
  }

 private:
  static constexpr std::size_t kDefaultBlockSize = 4096;

  struct Block {
    std::unique_ptr<WChar[]> text;  // room for a terminator behind `capacity` units
    std::size_t capacity;
  };

  static ClassType& Record() {
    static ClassType& record = FindClass(u"CStringBuffer");
    return record;
  }

  std::size_t GetUsed() const noexcept { return static_cast<std::size_t>(m_position - m_pLastBlock); }
  std::size_t GetRoom() const noexcept { return static_cast<std::size_t>(m_end - m_position); }
  void AppendAcrossBlocks(WStringView text);
  void AddBlock(std::size_t capacity);
  void CutBlock(std::size_t units);
  WStringView BlockText(std::size_t index) const noexcept;

  std::vector<Block> m_blocks;
  std::size_t m_dwBlockSize;      // capacity of a new block
  std::size_t m_unitsBefore = 0;  // in all blocks but the last, which are full
  WChar* m_pLastBlock = nullptr;  // owned by m_blocks, as are the next two
  WChar* m_position = nullptr;    // behind the text of the last block
  WChar* m_end = nullptr;         // of the last block's capacity
};

}  // namespace OvXmlLib16
