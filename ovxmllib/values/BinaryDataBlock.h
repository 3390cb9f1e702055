// The memory that copies of one CBinaryData share.
#pragma once

#include <atomic>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

namespace OvXmlLib16 {

/// At least one byte, and a count of the CBinaryData that hold it. A block that several hold never changes: its bytes
/// and its length belong to the one holder that there is when the count is 1. So the count is all that threads share,
/// and no lock is needed.
class CBinaryDataBlock {
 public:
  /// Takes over bytes from `new unsigned char[]`; if the block itself cannot be allocated they are freed. Each of these
  /// makes a block with one reference, owned by the caller; no length is 0.
  static CBinaryDataBlock* Adopt(unsigned char* bytes, std::size_t length);
  /// Copies bytes, with room to grow.
  static CBinaryDataBlock* Copy(const unsigned char* bytes, std::size_t length);
  /// Makes bytes whose value is undefined.
  static CBinaryDataBlock* Make(std::size_t length);

  CBinaryDataBlock(const CBinaryDataBlock&) = delete;
  CBinaryDataBlock& operator=(const CBinaryDataBlock&) = delete;

  void AddRef() noexcept { m_refCount.fetch_add(1, std::memory_order_relaxed); }
  /// Gives up one reference; the last one frees the block and its bytes.
  void Release() noexcept;
  /// Gives up the only reference and hands the bytes, or where they were not adopted a copy, to the caller, who frees
  /// them with `delete[]`. Throws COvException if others hold the block, and then nothing is given up.
  unsigned char* ReleaseData();

  bool IsShared() const noexcept { return CountReferences() > 1; }
  /// A block with these bytes that nobody else holds: this one, or a copy for which one reference of this is given up.
  CBinaryDataBlock* Detach();

  /// Adds bytes, which may be the block's own. Throws COvException if others hold the block. Nothing changes when it
  /// throws.
  void Append(const unsigned char* bytes, std::size_t length);
  /// Adds bytes whose value is undefined and returns the first of them. Throws as Append does.
  unsigned char* Extend(std::size_t length) {
    Reserve(length);
    return m_lpData.get() + std::exchange(m_dwLen, m_dwLen + length);
  }
  /// Adds the bytes, of undefined value, that there is memory for. Only while nobody else holds the block.
  void ExtendToCapacity() noexcept { m_dwLen = m_dwCapacity; }
  /// Cuts to the first `length` bytes, which are not 0.
  void Shrink(std::size_t length) noexcept {
    assert(!IsShared() && length > 0 && length <= m_dwLen);
    m_dwLen = length;
  }

  unsigned char* GetData() noexcept {
    assert(m_lpData != nullptr && "m_lpData != 0");
    return m_lpData.get();
  }
  std::size_t GetLength() const noexcept {
    assert(m_dwLen > 0 && "m_dwLen > 0");
    return m_dwLen;
  }

 private:
  // Bytes that were adopted came from `new[]`. Others come from malloc, whose memory can grow where it stands: for a
  // document of megabytes that saves copying it as often as it doubles.
  struct BytesDeleter {
    bool isArray;
    void operator()(unsigned char* bytes) const noexcept;
  };
  using Bytes = std::unique_ptr<unsigned char[], BytesDeleter>;

  static Bytes Allocate(std::size_t capacity);

  CBinaryDataBlock(Bytes bytes, std::size_t length, std::size_t capacity) noexcept;
  ~CBinaryDataBlock() = default;

  std::int32_t CountReferences() const noexcept { return m_refCount.load(std::memory_order_acquire); }

  // Makes room for `length` more bytes.
  void Reserve(std::size_t length) {
    if (IsShared()) ThrowShared();
    if (length > m_dwCapacity - m_dwLen) Grow(m_dwLen + length);
  }
  void Grow(std::size_t length);
  [[noreturn]] void ThrowShared() const;

  Bytes m_lpData;
  std::size_t m_dwLen;
  std::size_t m_dwCapacity;
  std::atomic<std::int32_t> m_refCount = 1;
};

}  // namespace OvXmlLib16
