// The octets of a document on their way to the stream.
#pragma once

#include <cstddef>
#include <memory>

#include "ovxmllib/foundation/BinaryStream.h"

namespace OvXmlLib16::fastinfoset {

/// Collects octets in a piece of memory, which goes to the stream each time that it is full. One octet may be held, to
/// be changed when it is known what follows.
class OctetBuffer {
 public:
  /// `stream` is not owned.
  explicit OctetBuffer(CBinaryStream& stream) noexcept : m_stream(stream) {}
  OctetBuffer(const OctetBuffer&) = delete;
  OctetBuffer& operator=(const OctetBuffer&) = delete;

  /// Room for `octets`. What is written there counts when Commit gets its end. Throws std::bad_alloc.
  unsigned char* Reserve(std::size_t octets) {
    if (octets > m_capacity - m_used) MakeRoom(octets);
    return m_memory.get() + m_used;
  }
  void Commit(const unsigned char* end) noexcept { m_used = static_cast<std::size_t>(end - m_memory.get()); }
  void Put(unsigned octet) {
    *Reserve(1) = static_cast<unsigned char>(octet);
    ++m_used;
  }

  /// Adds an octet that stays at hand until LetGo or until the next one is held.
  void PutHeld(unsigned octet) {
    Reserve(1);
    m_held = m_used;
    Put(octet);
  }
  /// Sets bits in the octet that is held.
  void SetInHeld(unsigned bits) noexcept { m_memory[m_held] = static_cast<unsigned char>(m_memory[m_held] | bits); }

  /// Says that the octet will not be changed.
  void LetGo() noexcept { m_held = kNone; }

  /// Gives everything to the stream. No octet is held any more.
  void Flush();

 private:
  static constexpr std::size_t kUsualCapacity = 16 * 1024;
  static constexpr std::size_t kNone = ~std::size_t{0};

  void MakeRoom(std::size_t octets);

  CBinaryStream& m_stream;
  std::unique_ptr<unsigned char[]> m_memory;
  std::size_t m_capacity = 0, m_used = 0;
  std::size_t m_held = kNone;  // where it stands
};

}  // namespace OvXmlLib16::fastinfoset
