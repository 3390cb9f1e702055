// Places within the text of a start tag, which the parser does not tell.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace OvXmlLib16 {

/// A place in a text, as an exception tells it: the line, and the column in characters, both from 1.
struct TextPlace {
  std::uint64_t line, column;

  /// Moves to behind `text`, which is UTF-8 or of one byte a character.
  void MoveOver(std::string_view text) noexcept;
};

/// Where the attribute with this number, from 1, begins in the well-formed start tag that `text` begins with, in bytes;
/// 0 when it is not found. Namespace declarations may not count.
std::size_t FindAttribute(std::string_view text, std::size_t number, bool skipsDeclarations) noexcept;

}  // namespace OvXmlLib16
