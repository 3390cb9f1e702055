// Takes a Fast Infoset document apart where it lies.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "ovxmllib/fastinfoset/BinaryForms.h"

namespace OvXmlLib16::fastinfoset {

/// A position in octets, which only goes forward. What is asked for beyond the end throws COvException
/// "Failed to parse FastInfoset. Unexpected End of File.". The octets are not owned.
class OctetReader {
 public:
  OctetReader(const unsigned char* data, std::size_t length, std::size_t start) noexcept
      : m_start(data), m_at(data + start), m_end(data + length) {}

  /// The next octet.
  unsigned Read() {
    if (m_at == m_end) ThrowEnd();
    return *m_at++;
  }
  /// The next `length` octets.
  std::span<const unsigned char> Take(std::uint64_t length) {
    if (length > static_cast<std::uint64_t>(m_end - m_at)) ThrowEnd();
    const std::span<const unsigned char> taken(m_at, static_cast<std::size_t>(length));
    m_at += length;
    return taken;
  }

  /// The number that begins in the octet `first`, which has been read. Throws the form's failure.
  std::uint64_t ReadNumber(const NumberForm& form, unsigned first) {
    // Each caller has a form of its own, which its rows become part of.
#pragma GCC unroll 4
    for (const NumberRow& row : form.rows) {
      const unsigned mask = row.markerMask;
      if ((first & mask) == row.marker) return ReadInRow(form, row, first);
    }
    Fail(form.failure);
  }
  /// The same for an index.
  std::uint32_t ReadIndex(const NumberForm& form, unsigned first) {
    return static_cast<std::uint32_t>(ReadNumber(form, first));
  }
  /// The octets whose length begins in `first`.
  std::span<const unsigned char> TakeCounted(const NumberForm& form, unsigned first) {
    return Take(ReadNumber(form, first));
  }

  std::size_t GetLength() const noexcept { return static_cast<std::size_t>(m_end - m_start); }

  /// Throws COvException with the message. An inner exception tells the octet.
  [[noreturn]] void Fail(const WChar* message) const;

 private:
  std::uint64_t ReadInRow(const NumberForm& form, const NumberRow& row, unsigned first) {
    std::uint64_t rest = first & row.valueMask;
    if (row.octets != 0) {
      for (const unsigned char octet : Take(row.octets)) rest = rest << 8 | octet;
      if (row.first + rest > row.last) Fail(form.failure);
    }
    return row.first + rest;
  }

  [[noreturn]] void ThrowEnd() const;

  const unsigned char* m_start;
  const unsigned char* m_at;
  const unsigned char* m_end;
};

/// An EncodedCharacterString (C.19, C.20) that has been read, not decoded.
struct StoredString {
  CharacterForm characters;
  std::uint32_t index;  ///< of the alphabet or algorithm
  std::span<const unsigned char> octets;
};

/// Reads one that begins in the octet `first`.
inline StoredString ReadString(OctetReader& in, const StringForm& form, unsigned first) {
  StoredString string{static_cast<CharacterForm>(first >> form.shift & 3), 0, {}};
  if (string.characters == CharacterForm::Alphabet || string.characters == CharacterForm::Algorithm) {
    const unsigned next = in.Read();
    string.index = ((first << (8 - form.shift) & 0xFF) | next >> form.shift) + 1;
    first = next;
  }
  string.octets = in.TakeCounted(*form.length, first);
  return string;
}

}  // namespace OvXmlLib16::fastinfoset
