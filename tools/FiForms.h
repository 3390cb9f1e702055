// The octets of Fast Infoset as its standard tells them (ITU-T Rec. X.891), for a program that shows what there is. By
// intent nothing here is the library's, which accepts more in places.
#pragma once

#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "ovxmllib/ovxmllib.h"

namespace ovxml::fi {

using Octets = std::string_view;

/// What is no Fast Infoset; what() tells why.
struct Fault : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// A position in octets that are not owned.
class Cursor {
 public:
  explicit Cursor(Octets all) : m_all(all) {}

  std::size_t GetOffset() const noexcept { return m_at; }
  bool IsAtEnd() const noexcept { return m_at == m_all.size(); }
  Octets GetAll() const noexcept { return m_all; }

  /// The next octets. Throw Fault where there are not so many.
  unsigned Read() { return static_cast<unsigned char>(Take(1).front()); }
  Octets Take(std::uint64_t length);

 private:
  Octets m_all;
  std::size_t m_at = 0;
};

/// A form of a number, by the bit on which it starts.
enum class NumberForm {
  kIndexOnSecondBit,        ///< C.25
  kIndexOrZeroOnSecondBit,  ///< C.26
  kIndexOnThirdBit,         ///< C.27
  kIndexOnFourthBit,        ///< C.28
  kLengthOnSecondBit,       ///< C.22
  kLengthOnFifthBit,        ///< C.23
  kLengthOnSeventhBit,      ///< C.24
  kItems,                   ///< C.21
};

/// Reads the number that begins in the octet `first`, which has been read.
std::uint64_t ReadNumber(Cursor& in, NumberForm form, unsigned first);

/// How the characters of a string are stored, by its discriminant (C.19, C.20).
enum class Characters { kUtf8, kUtf16, kAlphabet, kAlgorithm };

/// A string as it stands: a view of the document.
struct StoredString {
  Characters characters = Characters::kUtf8;
  unsigned index = 0;  ///< of the alphabet or algorithm, from 1
  Octets octets;
};

/// Restricted alphabets and encoding algorithms that a document brings along.
struct Encodings {
  static constexpr unsigned kFirstAlphabet = 16;   ///< index of the first in a document (clause 8.2)
  static constexpr unsigned kFirstAlgorithm = 32;  ///< clause 8.3

  std::vector<OvXmlLib16::WString> alphabets;
  std::vector<Octets> algorithms;
};

/// The name of the form, as "UTF-8" or "algorithm 4, int".
std::string FormOf(const StoredString& string);

/// The text that it stands for, in UTF-8, shortened when it is long, or its octets for a form that nobody knows here.
/// Throws Fault for octets that the form does not allow.
std::string Decode(const StoredString& string, const Encodings& encodings);

/// The same text in UTF-16. Throws Fault where it is no UTF-8.
OvXmlLib16::WString WideOf(Octets text);

/// A text in marks, as a listing shows it: one line, shortened when it is long.
std::string Shown(std::string_view text);

}  // namespace ovxml::fi
