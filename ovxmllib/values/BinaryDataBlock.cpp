#include "ovxmllib/values/BinaryDataBlock.h"

#include <algorithm>
#include <cstring>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"

namespace OvXmlLib16 {

namespace {

// What is copied is mostly about to be appended to.
constexpr std::size_t kSmallestCopy = 8192;

std::unique_ptr<unsigned char[]> Allocate(std::size_t capacity) {
  return std::make_unique_for_overwrite<unsigned char[]>(capacity);
}

}  // namespace

CBinaryDataBlock::CBinaryDataBlock(Bytes bytes, std::size_t length, std::size_t capacity) noexcept
    : m_lpData(std::move(bytes)), m_dwLen(length), m_dwCapacity(capacity) {}

CBinaryDataBlock* CBinaryDataBlock::Adopt(unsigned char* bytes, std::size_t length) {
  Bytes owned(bytes);
  return new CBinaryDataBlock(std::move(owned), length, length);
}

CBinaryDataBlock* CBinaryDataBlock::Copy(const unsigned char* bytes, std::size_t length) {
  const std::size_t capacity = std::max(length * 2, kSmallestCopy);
  Bytes copy = Allocate(capacity);
  std::memcpy(copy.get(), bytes, length);
  return new CBinaryDataBlock(std::move(copy), length, capacity);
}

CBinaryDataBlock* CBinaryDataBlock::Make(std::size_t length) {
  const std::size_t capacity = std::max(length, kSmallestCopy);
  return new CBinaryDataBlock(Allocate(capacity), length, capacity);
}

void CBinaryDataBlock::Release() noexcept {
  if (m_refCount.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
}

unsigned char* CBinaryDataBlock::ReleaseData() {
  if (const std::int32_t others = CountReferences() - 1; others > 0) {
    throw COvException(FormatString(u"Failed to release data. [RefCount=%d]", others));
  }
  unsigned char* const bytes = m_lpData.release();
  delete this;
  return bytes;
}

CBinaryDataBlock* CBinaryDataBlock::Detach() {
  if (!IsShared()) return this;
  CBinaryDataBlock* const copy = Copy(m_lpData.get(), m_dwLen);
  Release();
  return copy;
}

void CBinaryDataBlock::Append(const unsigned char* bytes, std::size_t length) {
  const Bytes replaced = Reserve(length);
  std::memcpy(m_lpData.get() + m_dwLen, bytes, length);
  m_dwLen += length;
}

CBinaryDataBlock::Bytes CBinaryDataBlock::Grow(std::size_t length) {
  Bytes grown = Allocate(length * 2);
  std::memcpy(grown.get(), m_lpData.get(), m_dwLen);
  m_dwCapacity = length * 2;
  return std::exchange(m_lpData, std::move(grown));
}

void CBinaryDataBlock::ThrowShared() const {
  throw COvException(FormatString(u"Failed to append. [RefCount=%d]", CountReferences()));
}

}  // namespace OvXmlLib16
