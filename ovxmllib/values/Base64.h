// The base64 codec (RFC 4648, section 4).
#pragma once

#include <cstddef>
#include <cstdint>

#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

/// Encodes and decodes whole buffers into memory that the caller offers. A local object of whoever needs it.
class CBase64 {
 public:
  CBase64() = default;
  virtual ~CBase64() = default;

  /// The code units that `length` bytes take, padding included.
  static constexpr std::size_t GetEncodedLength(std::size_t length) noexcept {
    return (length / 3 + (length % 3 != 0)) * 4;
  }
  /// The room in bytes that Decode needs for a text of `length` code units.
  static constexpr std::size_t GetDecodedRoom(std::size_t length) noexcept { return length / 4 * 3 + 3; }

  /// Writes GetEncodedLength(length) code units to `out`: padded with '=', never a line end, no terminator.
  void Encode(const unsigned char* data, std::size_t length, WChar* out) noexcept;

  /// Decodes to `out`, which has GetDecodedRoom(text.size()) bytes, and returns the number of bytes decoded. '=',
  /// space, tab, CR and LF are passed over wherever they stand; bits left over at the end are dropped. Any other
  /// character outside the alphabet ends the decoding with 0.
  std::size_t Decode(WStringView text, unsigned char* out) noexcept;

 private:
  unsigned char* DecodeQuads(unsigned char* out) noexcept;
  bool TakeNext() noexcept;

  const WChar* m_pInput = nullptr;  // not owned: what is left of the text during Decode
  std::size_t m_dwLength = 0;
  std::uint32_t m_dwStore = 0;  // its low m_nBits bits wait for the rest of their byte
  int m_nBits = 0;
};

}  // namespace OvXmlLib16
