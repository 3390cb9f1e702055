// Expat driven the way a careful caller would drive it, for the figures that everything else is compared with.
#pragma once

#include <expat.h>

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string_view>

namespace OvXmlLib16::bench {

struct ExpatDeleter {
  void operator()(XML_Parser parser) const noexcept { XML_ParserFree(parser); }
};

/// Owns a parser.
using ExpatParser = std::unique_ptr<XML_ParserStruct, ExpatDeleter>;

inline ExpatParser MakeExpat() { return ExpatParser(XML_ParserCreate(nullptr)); }
inline ExpatParser MakeExpatNs() { return ExpatParser(XML_ParserCreateNS(nullptr, '|')); }

/// The largest piece given to XML_Parse, in bytes: each of our documents goes in whole. That is Expat at its best,
/// since the call marked as final does not keep track of lines and columns, 11 % of the instructions, which outweighs
/// the copy that Expat makes of every piece. Smaller pieces, 4 KiB to 16 MiB, measured 4 to 20 % slower.
inline constexpr std::size_t kExpatPiece = std::size_t{1} << 30;

/// Parses `document` in pieces of at most `pieceBytes`, which is at most 1 GiB; the last one is marked as final. Throws
/// `std::runtime_error` with Expat's message.
inline void FeedExpat(XML_Parser parser, std::string_view document, std::size_t pieceBytes = kExpatPiece) {
  bool isFinal = false;
  while (!isFinal) {
    const std::string_view piece = document.substr(0, pieceBytes);
    document.remove_prefix(piece.size());
    isFinal = document.empty();
    if (XML_Parse(parser, piece.data(), static_cast<int>(piece.size()), isFinal) != XML_STATUS_OK)
      throw std::runtime_error(XML_ErrorString(XML_GetErrorCode(parser)));
  }
}

}  // namespace OvXmlLib16::bench
