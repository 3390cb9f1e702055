// Finds start tags of very many attributes in XML text before it is parsed.
#pragma once

#include <cstddef>

namespace OvXmlLib16 {

/// The parser stores all attributes of a start tag before it reports the first, so a limit on their number that looks
/// at what is reported comes too late: a million of them cost a second. This looks at the text. It finds what may be
/// such a tag; within a comment or a CDATA section it may be none, which the parser knows.
class LongTagScan {
 public:
  /// How characters of ASCII stand in the text.
  enum class Form { Bytes, Utf16LittleEndian, Utf16BigEndian };

  /// `maxAttributes`, which is not 0, may a tag have.
  explicit LongTagScan(std::size_t maxAttributes) noexcept;

  /// The form of the text of which these are the first bytes, as XML 1.0, appendix F tells it.
  void SetFormOf(const unsigned char* start, std::size_t length) noexcept;

  /// Where, in bytes from `text`, the first tag that begins in the first `part` of the `length` bytes has one attribute
  /// too many, or `part` when there is none. Passes over nearly all of a text without such tags.
  std::size_t Find(const unsigned char* text, std::size_t part, std::size_t length) const noexcept;

  /// Whether the text begins with a start tag, perhaps unfinished, of too many attributes.
  bool BeginsWithLongTag(const unsigned char* text, std::size_t length) const noexcept;

  /// No tag of fewer bytes than this is found.
  std::size_t ShortestTag() const noexcept { return m_shortest * Width(); }

 private:
  class Units;

  std::size_t Width() const noexcept { return m_form == Form::Bytes ? 1 : 2; }
  std::size_t EndOfAllowed(const Units& units, std::size_t start) const noexcept;

  std::size_t m_maxAttributes;
  std::size_t m_shortest;  // code units
  Form m_form = Form::Bytes;
};

}  // namespace OvXmlLib16
