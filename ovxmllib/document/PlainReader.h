// The quick road for documents of the plain kind, which nearly all are.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "ovxmllib/binding/SerializationContext.h"
#include "ovxmllib/document/PlainNames.h"
#include "ovxmllib/document/PlainText.h"

namespace OvXmlLib16 {

class DocumentTree;

/// Whether the encoding in the declaration of a document is that of its bytes, or was until somebody decoded them.
enum class DeclaredEncoding { Valid, Outdated };

/// Reads a document of the plain kind into a tree, in a third of the time that the parser takes: UTF-8 without a
/// DOCTYPE, names of ASCII, well-formed, within the limits. Whatever is beyond that it declines, and the parser has to
/// read the document: it alone judges what is wrong and tells where. What this accepts the parser accepts with the same
/// tree.
///
/// For one document. Works on the text in place, which outlives the reader.
class PlainReader {
 public:
  /// The first two arguments are not owned.
  PlainReader(DocumentTree& tree, const CSerializationContext& context,
              DeclaredEncoding declared = DeclaredEncoding::Valid);

  /// Fills the empty tree; false when the document is declined, with the tree filled in part. Throws COvException where
  /// a limit of the tree is passed, without the place, and std::bad_alloc.
  bool Read(const unsigned char* data, std::size_t length);

 private:
  using Position = plaintext::Position;

  struct OpenElement {
    const PlainName* name;
    bool hasScope;  // it declares namespaces
  };

  struct Attribute {
    PlainName* name;
    std::string_view value;  // as it stands in the text
    bool isPlain;            // and as it is
  };

  // Each of these reads on from m_at and returns false where the document is to be declined.
  bool ReadDeclaration();
  bool ReadPseudoAttribute(std::string_view name, std::string_view& value);
  bool IsEncodingSound(std::string_view name) const noexcept;
  bool ReadBetweenElements();
  bool ReadTree();
  bool ReadText();
  bool ReadMarkup();
  bool ReadStartTag();
  bool ReadAttribute();
  bool ReadValue(Attribute& attribute);
  bool ReadEndTag();
  bool ReadSection();
  bool ReadComment();
  bool ReadInstruction();
  bool SkipTo(std::string_view terminator);

  bool AppendReferred();
  void AppendWithLineEnds(std::string_view text);
  bool OpenElementOf(PlainName& name);
  bool AddAttributes();
  bool Decode(std::string_view value);
  void EndElement();

  bool SkipSpace() noexcept;
  bool Skip(std::string_view text) noexcept;
  std::string_view Rest() const noexcept { return {m_at, static_cast<std::size_t>(m_end - m_at)}; }

  DocumentTree& m_tree;
  PlainNames m_names;
  const bool m_keepsSectionMarks;
  const DeclaredEncoding m_declared;
  const std::size_t m_maxAttributes;  // 0: any number
  Position m_at = nullptr;
  Position m_end = nullptr;
  std::vector<OpenElement> m_open;
  std::vector<Attribute> m_attributes;  // of the start tag that is read
  bool m_declares = false;              // one of them is a declaration
  std::size_t m_prefixed = 0;           // of them with a prefix
  std::uint64_t m_tag = 0;              // its number
  std::string m_decoded;                // scratch
};

}  // namespace OvXmlLib16
