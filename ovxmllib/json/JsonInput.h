// A JSON text as it comes, and what is made of it.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "ovxmllib/binding/SerializationContext.h"
#include "ovxmllib/foundation/WideString.h"
#include "ovxmllib/values/BinaryData.h"

namespace OvXmlLib16 {

/// The text of one JSON document in UTF-8 or UTF-16.
class JsonInput {
 public:
  /// Bytes: UTF-8, with or without a byte order mark, or the same in a gzip or zlib wrapper. They are not owned. Throws
  /// COvException beyond the context's limit on decompression.
  JsonInput(const unsigned char* data, std::size_t length, const CSerializationContext& context);
  /// The same for bytes that nobody else keeps.
  JsonInput(CBinaryData content, const CSerializationContext& context);
  /// Wide text, not owned.
  explicit JsonInput(WStringView text) : m_wide(text), m_isWide(true) {}

  /// The text in UTF-8, or nothing if it has no such form; valid as long as this object.
  std::optional<std::string_view> AsUtf8();
  /// The text in UTF-16; valid as long as this object. Throws COvInvalidValueException where bytes are no UTF-8.
  WStringView AsWide();

 private:
  CBinaryData m_content;  // what m_bytes lies in, if it is ours
  std::string_view m_bytes;
  WStringView m_wide;
  bool m_isWide = false;
  CBinaryData m_encoded;
  WString m_decoded;
};

/// The XML document that a JSON text stands for, in UTF-8, formatted. Throws COvValidationException with message, path,
/// line and column where the text is no JSON; what JsonXmlOutput throws; and COvException "An Element has not been
/// closed." for a text that leaves an element open, as an array without items does that is not the last member.
CBinaryData ConvertJsonToXml(WStringView text, const CSerializationContext& context);

}  // namespace OvXmlLib16
