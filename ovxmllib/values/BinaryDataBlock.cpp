#include "ovxmllib/values/BinaryDataBlock.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <new>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"

namespace OvXmlLib16 {

namespace {

// What is copied is mostly about to be appended to.
constexpr std::size_t kSmallestCopy = 8192;

}  // namespace

void CBinaryDataBlock::BytesDeleter::operator()(unsigned char* bytes) const noexcept {
  isArray ? delete[] bytes : std::free(bytes);
}

CBinaryDataBlock::Bytes CBinaryDataBlock::Allocate(std::size_t capacity) {
  Bytes bytes(static_cast<unsigned char*>(std::malloc(capacity)), BytesDeleter{/*isArray=*/false});
  if (bytes == nullptr) throw std::bad_alloc();
  return bytes;
}

CBinaryDataBlock::CBinaryDataBlock(Bytes bytes, std::size_t length, std::size_t capacity) noexcept
    : m_lpData(std::move(bytes)), m_dwLen(length), m_dwCapacity(capacity) {}

CBinaryDataBlock* CBinaryDataBlock::Adopt(unsigned char* bytes, std::size_t length) {
  Bytes owned(bytes, BytesDeleter{/*isArray=*/true});
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
  if (!m_lpData.get_deleter().isArray) {
    auto copy = std::make_unique_for_overwrite<unsigned char[]>(m_dwLen);
    std::memcpy(copy.get(), m_lpData.get(), m_dwLen);
    m_lpData = Bytes(copy.release(), BytesDeleter{/*isArray=*/true});
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
  const std::less<> before;
  const bool isOwn = !before(bytes, m_lpData.get()) && before(bytes, m_lpData.get() + m_dwLen);
  const std::size_t offset = isOwn ? static_cast<std::size_t>(bytes - m_lpData.get()) : 0;
  Reserve(length);
  std::memcpy(m_lpData.get() + m_dwLen, isOwn ? m_lpData.get() + offset : bytes, length);
  m_dwLen += length;
}

void CBinaryDataBlock::Grow(std::size_t length) {
  const std::size_t capacity = length * 2;
  if (m_lpData.get_deleter().isArray) {
    Bytes grown = Allocate(capacity);
    std::memcpy(grown.get(), m_lpData.get(), m_dwLen);
    m_lpData = std::move(grown);
  } else {
    auto* const grown = static_cast<unsigned char*>(std::realloc(m_lpData.get(), capacity));
    if (grown == nullptr) throw std::bad_alloc();
    static_cast<void>(m_lpData.release());
    m_lpData.reset(grown);
  }
  m_dwCapacity = capacity;
}

void CBinaryDataBlock::ThrowShared() const {
  throw COvException(FormatString(u"Failed to append. [RefCount=%d]", CountReferences()));
}

}  // namespace OvXmlLib16
