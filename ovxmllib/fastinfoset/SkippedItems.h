// What a Fast Infoset document may hold and a document tree does not (ITU-T Rec. X.891, clause 7 and annex C).
#pragma once

#include "ovxmllib/fastinfoset/OctetReader.h"

namespace OvXmlLib16::fastinfoset {

/// \name Reading over an item
/// Each reads what stands behind the octet that tells the item, and keeps nothing. The form of all is checked as it is
/// with items that are kept; an index is not looked up, since it selects nothing.
/// \{

/// The optional components of the document (C.2.3), from the octet that tells which there are: additional data, an
/// initial vocabulary, notations, unparsed entities, the character encoding scheme, standalone and version.
void SkipDocumentHead(OctetReader& in);
/// C.5.
void SkipProcessingInstruction(OctetReader& in);
/// C.8.
void SkipComment(OctetReader& in);
/// C.9, up to and with its own terminator. `first` is the octet that tells it.
void SkipDocumentTypeDeclaration(OctetReader& in, unsigned first);
/// C.6. `first` is the octet that tells it.
void SkipEntityReference(OctetReader& in, unsigned first);
/// \}

/// \name The octets that tell an item
/// \{
constexpr bool IsProcessingInstruction(unsigned first) noexcept { return first == 0xE1; }
constexpr bool IsComment(unsigned first) noexcept { return first == 0xE2; }
constexpr bool IsDocumentTypeDeclaration(unsigned first) noexcept { return (first & 0xFC) == 0xC4; }
constexpr bool IsEntityReference(unsigned first) noexcept { return (first & 0xFC) == 0xC8; }
constexpr bool IsTerminator(unsigned first) noexcept {
  return first == octet::kTerminator || first == octet::kDoubleTerminator;
}
/// \}

}  // namespace OvXmlLib16::fastinfoset
