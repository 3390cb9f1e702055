// Takes a Fast Infoset document apart where it lies.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

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
  template <const NumberForm& kForm>
  [[gnu::always_inline]] std::uint64_t ReadNumber(unsigned first) {
    return [&]<std::size_t... kRow>(std::index_sequence<kRow...>) __attribute__((always_inline)) {
      std::uint64_t number = 0;
      if (!(ReadInRow<kForm, kRow>(first, number) || ...)) Fail(kForm.failure);
      return number;
    }
    (std::make_index_sequence<kForm.rows.size()>());
  }
  /// The same for an index.
  template <const NumberForm& kForm>
  std::uint32_t ReadIndex(unsigned first) {
    return static_cast<std::uint32_t>(ReadNumber<kForm>(first));
  }
  /// The octets whose length begins in `first`.
  template <const NumberForm& kForm>
  std::span<const unsigned char> TakeCounted(unsigned first) {
    return Take(ReadNumber<kForm>(first));
  }

  /// Whether there are `length` octets from `data` on, which has been taken.
  bool IsWithin(const unsigned char* data, std::size_t length) const noexcept {
    return length <= static_cast<std::size_t>(m_end - data);
  }

  std::size_t GetLength() const noexcept { return static_cast<std::size_t>(m_end - m_start); }

  /// Throws COvException with the message. An inner exception tells the octet.
  [[noreturn]] void Fail(const WChar* message) const;

 private:
  // The number, if it is in this row. The rows are known to the compiler, which leaves little of them.
  template <const NumberForm& kForm, std::size_t kRow>
  [[gnu::always_inline]] bool ReadInRow(unsigned first, std::uint64_t& number) {
    constexpr NumberRow row = kForm.rows[kRow];
    constexpr std::uint64_t kGreatest =
        row.first + (std::uint64_t{row.valueMask} << 8 * row.octets | ~(~std::uint64_t{0} << 8 * row.octets));
    if ((first & row.markerMask) != row.marker) return false;
    std::uint64_t rest = first & row.valueMask;
    if constexpr (row.octets != 0) {
      const unsigned char* const octets = Take(row.octets).data();
#pragma GCC unroll 4
      for (std::size_t i = 0; i < row.octets; ++i) rest = rest << 8 | octets[i];
    }
    number = row.first + rest;
    if (kGreatest > row.last && number > row.last) Fail(kForm.failure);
    return true;
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
template <const StringForm& kForm>
[[gnu::always_inline]] inline StoredString ReadString(OctetReader& in, unsigned first) {
  StoredString string{static_cast<CharacterForm>(first >> kForm.shift & 3), 0, {}};
  if (string.characters == CharacterForm::Alphabet || string.characters == CharacterForm::Algorithm) {
    const unsigned next = in.Read();
    string.index = ((first << (8 - kForm.shift) & 0xFF) | next >> kForm.shift) + 1;
    first = next;
  }
  string.octets = in.TakeCounted<*kForm.length>(first);
  return string;
}

}  // namespace OvXmlLib16::fastinfoset
