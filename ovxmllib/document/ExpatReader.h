// The binding of the Expat parser to the document model.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <span>
#include <string_view>

#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/binding/SerializationContext.h"
#include "ovxmllib/document/DocumentTree.h"
#include "ovxmllib/document/LongTagScan.h"
#include "ovxmllib/foundation/InstanceMonitor.h"

struct XML_ParserStruct;

namespace OvXmlLib16 {

struct TextPlace;

/// Parses one document into a tree. Calling order: Open, then Parse, or GetBuffer and ParseBuffer by turns, the last
/// call with `isFinal` true. After an exception the reader is good for destruction only.
///
/// Parse and ParseBuffer throw COvException with Expat's message, line and column when the text is not well-formed;
/// what the tree's limits throw, with the place added; and what the application's callback throws, unchanged. No
/// exception crosses Expat's own code: a handler keeps it, stops the parser, and it is thrown again when the parser has
/// returned.
class CExpatReader : public CInstanceMonitor {
 public:
  /// Neither argument is owned.
  CExpatReader(DocumentTree& tree, const CSerializationContext& context);
  ~CExpatReader() override;
  CExpatReader(const CExpatReader&) = delete;
  CExpatReader& operator=(const CExpatReader&) = delete;

  /// Makes the parser. Throws std::bad_alloc.
  void Open();
  /// As Open, for input that is UTF-16 whatever it declares.
  void OpenUtf16();

  /// Parses the next `length` bytes, which may be any number.
  void Parse(const unsigned char* data, std::size_t length, bool isFinal);

  /// Room for the next `length` bytes in the parser's own buffer, so that a file is read without a copy. Throws
  /// std::bad_alloc.
  unsigned char* GetBuffer(std::size_t length);
  /// Parses the `length` bytes that were put there.
  void ParseBuffer(std::size_t length, bool isFinal);

 private:
  struct Handlers;

  static ClassType& Record();
  void Open(const char* encoding);
  void Guarded(auto&& action) noexcept;
  void Limited(auto&& action);
  void AddDefault(std::string_view name, std::string_view value);
  void CountEntity();
  void Check(bool succeeded);
  bool LooksForLongTags() const noexcept { return m_context.GetMaxAttributesPerElement() != 0; }
  std::span<const unsigned char> Unfinished() const noexcept;
  void RefuseLongTag();
  [[noreturn]] void ThrowParserError(int error);
  void SetPlaceOn(COvException& exception) const noexcept;
  void MoveToAttribute(std::size_t number, TextPlace& place) const noexcept;
  void NoteStart(const unsigned char* data, std::size_t length) noexcept;
  bool BeganWithByteOrderMark() const noexcept;

  DocumentTree& m_tree;
  const CSerializationContext& m_context;
  XML_ParserStruct* m_parser = nullptr;    // owned
  unsigned char* m_buffer = nullptr;       // the parser's, as GetBuffer gave it
  std::exception_ptr m_failure;            // what a handler could not let out
  std::uint64_t m_defaultedBytes = 0;      // of attributes that no start tag has
  std::size_t m_entities = 0;              // declared
  std::array<unsigned char, 3> m_start{};  // the first bytes of the input
  std::size_t m_startLength = 0;
  LongTagScan m_longTags;
  std::size_t m_lookedAt = 0;  // bytes of what was unfinished when it was last looked at
};

}  // namespace OvXmlLib16
