// The numbers and strings of Fast Infoset on the wire (ITU-T Rec. X.891, annex C): one row for each form, from which
// the writer writes and the reader reads.
//
// The standard counts the bits of an octet from 1, the most significant. A form that starts on the third bit shares its
// first octet with two bits that stand for something else.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16::fastinfoset {

/// The most entries that a table has, and so the greatest index (clause 6.4).
inline constexpr std::uint32_t kMaxTableEntries = 1u << 20;

/// Numbers from `first` to `last`, written as what exceeds `first`: its high bits in the first octet, the rest in the
/// octets that follow, the most significant first.
struct NumberRow {
  std::uint8_t marker;      ///< the bits of the first octet that tell this row from the others
  std::uint8_t markerMask;  ///< where they stand
  std::uint8_t valueMask;   ///< the bits of the first octet that belong to the number
  std::uint8_t octets;      ///< how many follow
  std::uint64_t first, last;
};

/// One form of a number: its rows, from small numbers to great ones.
struct NumberForm {
  std::span<const NumberRow> rows;
  const WChar* failure;  ///< what the reader says of bits that are in no row and of numbers above the last one
};

namespace detail {

inline constexpr std::uint64_t kMaxLength32 = 0xFFFF'FFFF;

// clang-format off
inline constexpr NumberRow kIndexOnSecondBit[] = {      // C.25
    {0x00, 0x40, 0x3F, 0, 1, 64},
    {0x40, 0x60, 0x1F, 1, 65, 8256},
    {0x60, 0x60, 0x1F, 2, 8257, kMaxTableEntries}};
inline constexpr NumberRow kIndexOrZeroOnSecondBit[] = {  // C.26
    {0x7F, 0x7F, 0x00, 0, 0, 0},
    {0x00, 0x40, 0x3F, 0, 1, 64},
    {0x40, 0x60, 0x1F, 1, 65, 8256},
    {0x60, 0x60, 0x1F, 2, 8257, kMaxTableEntries}};
inline constexpr NumberRow kIndexOnThirdBit[] = {       // C.27
    {0x00, 0x20, 0x1F, 0, 1, 32},
    {0x20, 0x38, 0x07, 1, 33, 2080},
    {0x28, 0x38, 0x07, 2, 2081, 526368},
    {0x30, 0x38, 0x00, 3, 526369, kMaxTableEntries}};
inline constexpr NumberRow kIndexOnFourthBit[] = {      // C.28
    {0x00, 0x10, 0x0F, 0, 1, 16},
    {0x10, 0x1C, 0x03, 1, 17, 1040},
    {0x14, 0x1C, 0x03, 2, 1041, 263184},
    {0x18, 0x1C, 0x00, 3, 263185, kMaxTableEntries}};
inline constexpr NumberRow kLengthOnSecondBit[] = {     // C.22
    {0x00, 0x40, 0x3F, 0, 1, 64},
    {0x40, 0x7F, 0x00, 1, 65, 320},
    {0x60, 0x7F, 0x00, 4, 321, 321 + kMaxLength32}};
inline constexpr NumberRow kLengthOnFifthBit[] = {      // C.23
    {0x00, 0x08, 0x07, 0, 1, 8},
    {0x08, 0x0F, 0x00, 1, 9, 264},
    {0x0C, 0x0F, 0x00, 4, 265, 265 + kMaxLength32}};
inline constexpr NumberRow kLengthOnSeventhBit[] = {    // C.24
    {0x00, 0x02, 0x01, 0, 1, 2},
    {0x02, 0x03, 0x00, 1, 3, 258},
    {0x03, 0x03, 0x00, 4, 259, 259 + kMaxLength32}};
inline constexpr NumberRow kSequenceLength[] = {        // C.21
    {0x00, 0x80, 0x7F, 0, 1, 128},
    {0x80, 0x80, 0x0F, 2, 129, 129 + 0xF'FFFF}};
// clang-format on

}  // namespace detail

/// \name Indexes
/// Deliberate: two blanks stand in front of "on" in the messages of all these forms.
/// \{
inline constexpr NumberForm kIndexOnSecondBit = {
    detail::kIndexOnSecondBit,
    u"Failed to parse FastInfoset. Invalid Encoding of integers 1 To 2^20 type  on the second bit of an octet."};
inline constexpr NumberForm kIndexOrZeroOnSecondBit = {
    detail::kIndexOrZeroOnSecondBit,
    u"Failed to parse FastInfoset. Invalid Encoding of integers 0 To 2^20 type  on the second bit of an octet."};
inline constexpr NumberForm kIndexOnThirdBit = {
    detail::kIndexOnThirdBit,
    u"Failed to parse FastInfoset. Invalid Encoding of integers 1 To 2^20 type  on the third bit of an octet."};
inline constexpr NumberForm kIndexOnFourthBit = {
    detail::kIndexOnFourthBit,
    u"Failed to parse FastInfoset. Invalid Encoding of integers 1 To 2^20 type  on the fourth bit of an octet."};
/// \}

/// \name Lengths in octets of a NonEmptyOctetString
/// \{
inline constexpr NumberForm kLengthOnSecondBit = {
    detail::kLengthOnSecondBit,
    u"Failed to parse FastInfoset. Invalid NonEmptyOctetString type  on the second bit of an octet."};
inline constexpr NumberForm kLengthOnFifthBit = {
    detail::kLengthOnFifthBit,
    u"Failed to parse FastInfoset. Invalid NonEmptyOctetString type  on the fifth bit of an octet."};
inline constexpr NumberForm kLengthOnSeventhBit = {
    detail::kLengthOnSeventhBit,
    u"Failed to parse FastInfoset. Invalid NonEmptyOctetString type  on the seventh bit of an octet."};
/// \}

/// The number of items of a sequence. Every octet begins one, so there is nothing to say.
inline constexpr NumberForm kSequenceLength = {detail::kSequenceLength, u""};

/// The most octets that a number takes.
inline constexpr std::size_t kMaxNumberOctets = 5;

/// Writes `number`, which is one of the form's, behind the bits of `prefix`; returns the position behind it.
inline unsigned char* PutNumber(const NumberForm& form, unsigned prefix, std::uint64_t number,
                                unsigned char* out) noexcept {
  const NumberRow* row = form.rows.data();
  while (number > row->last) ++row;
  const std::uint64_t rest = number - row->first;
  unsigned shift = 8u * row->octets;
  *out++ = static_cast<unsigned char>(prefix | row->marker | ((rest >> shift) & row->valueMask));
  while (shift != 0) *out++ = static_cast<unsigned char>(rest >> (shift -= 8));
  return out;
}

/// How the characters of a string are stored (clause 7.17).
enum class CharacterForm : std::uint8_t { Utf8, Utf16, Alphabet, Algorithm };

/// EncodedCharacterString, by the bit on which it starts: two bits of CharacterForm; for an alphabet or algorithm its
/// index less 1 in eight bits; the length.
struct StringForm {
  unsigned shift;  ///< the bits of the first octet behind the CharacterForm
  const NumberForm* length;
};
inline constexpr StringForm kStringOnThirdBit = {4, &kLengthOnFifthBit};    ///< C.19
inline constexpr StringForm kStringOnFifthBit = {2, &kLengthOnSeventhBit};  ///< C.20

/// The octets behind a length and in front of the data, at most.
inline constexpr std::size_t kMaxStringHeader = kMaxNumberOctets + 1;

/// Writes what stands in front of `length` octets of data.
inline unsigned char* PutStringHeader(const StringForm& form, unsigned prefix, CharacterForm characters, unsigned index,
                                      std::size_t length, unsigned char* out) noexcept {
  prefix |= static_cast<unsigned>(characters) << form.shift;
  if (characters == CharacterForm::Utf8 || characters == CharacterForm::Utf16) {
    return PutNumber(*form.length, prefix, length, out);
  }
  const unsigned stored = index - 1;
  *out++ = static_cast<unsigned char>(prefix | stored >> (8 - form.shift));
  return PutNumber(*form.length, stored << form.shift & 0xFF, length, out);
}

/// The octets that begin or end what the reader and the writer have in common.
namespace octet {

inline constexpr unsigned kAttributesFollow = 0x40;      ///< on an element, C.3.2
inline constexpr unsigned kNamespacesFollow = 0x38;      ///< on an element, C.3.4.1
inline constexpr unsigned kLiteralElementName = 0x3C;    ///< C.18.3
inline constexpr unsigned kLiteralAttributeName = 0x78;  ///< C.17.3
inline constexpr unsigned kPrefixFollows = 0x02;         ///< in a literal name and a namespace attribute
inline constexpr unsigned kNamespaceFollows = 0x01;

/// What a literal name says of its parts.
constexpr unsigned PartsOf(WStringView prefix, WStringView ns) noexcept {
  return (prefix.empty() ? 0 : kPrefixFollows) | (ns.empty() ? 0 : kNamespaceFollows);
}

inline constexpr unsigned kNamespaceAttribute = 0xCC;  ///< C.12
inline constexpr unsigned kIndex = 0x80;               ///< where a string or an index may stand, C.13 and C.14
inline constexpr unsigned kAddValue = 0x40;            ///< on a literal value, C.14.3
inline constexpr unsigned kChunk = 0x80;               ///< C.7
inline constexpr unsigned kChunkIndex = 0xA0;          ///< C.15.4
inline constexpr unsigned kAddChunk = 0x10;            ///< on a literal chunk, C.15.3
inline constexpr unsigned kTerminator = 0xF0;
inline constexpr unsigned kDoubleTerminator = 0xFF;

}  // namespace octet

/// Identification and version (clause 12.6).
inline constexpr unsigned char kIdentification[] = {0xE0, 0x00, 0x00, 0x01};

/// The XML declarations that may stand in front of it (clause 12.3), by FInfoDecl less 1.
inline constexpr std::string_view kDeclarations[] = {"<?xml encoding='finf'?>",
                                                     "<?xml encoding='finf' standalone='yes'?>",
                                                     "<?xml encoding='finf' standalone='no'?>",
                                                     "<?xml version='1.0' encoding='finf'?>",
                                                     "<?xml version='1.0' encoding='finf' standalone='yes'?>",
                                                     "<?xml version='1.0' encoding='finf' standalone='no'?>",
                                                     "<?xml version='1.1' encoding='finf'?>",
                                                     "<?xml version='1.1' encoding='finf' standalone='yes'?>",
                                                     "<?xml version='1.1' encoding='finf' standalone='no'?>"};

}  // namespace OvXmlLib16::fastinfoset
