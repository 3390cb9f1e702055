#include "ovxmllib/fastinfoset/OctetBuffer.h"

#include <algorithm>
#include <cstring>

namespace OvXmlLib16::fastinfoset {

void OctetBuffer::MakeRoom(std::size_t octets) {
  // What stands behind a held octet is a start tag, which may be as long as it likes.
  const std::size_t leaving = std::min(m_held, m_used);
  if (leaving != 0) m_stream.Write(m_memory.get(), leaving);
  const std::size_t staying = m_used - leaving;
  if (octets > m_capacity - staying) {
    const std::size_t capacity = std::max(2 * (staying + octets), kUsualCapacity);
    auto memory = std::make_unique_for_overwrite<unsigned char[]>(capacity);
    if (staying != 0) std::memcpy(memory.get(), m_memory.get() + leaving, staying);
    m_memory = std::move(memory);
    m_capacity = capacity;
  } else if (staying != 0) {
    std::memmove(m_memory.get(), m_memory.get() + leaving, staying);
  }
  m_used = staying;
  if (m_held != kNone) m_held = 0;
}

void OctetBuffer::Flush() {
  if (m_used != 0) m_stream.Write(m_memory.get(), m_used);
  m_used = 0;
  m_held = kNone;
}

}  // namespace OvXmlLib16::fastinfoset
