// The tables of a document that is read.
#pragma once

#include <cstdint>
#include <forward_list>
#include <string>
#include <string_view>
#include <vector>

#include "ovxmllib/document/DocumentTree.h"
#include "ovxmllib/fastinfoset/FIVocabulary.h"
#include "ovxmllib/fastinfoset/OctetReader.h"

namespace OvXmlLib16::fastinfoset {

/// A table of entries that are looked up by index. What exceeds the size of a table is dropped without a word, as the
/// writer does it.
template <class Entry>
class Table {
 public:
  explicit Table(std::size_t prepared) {
    m_entries.reserve(prepared + kFewEntries);
    m_entries.resize(prepared);
  }

  void Add(const Entry& entry) {
    if (m_entries.size() < kMaxTableEntries) m_entries.push_back(entry);
  }
  /// The entry, or null beyond the end of the table. `index` is not 0.
  Entry* Find(std::uint32_t index) noexcept { return index > m_entries.size() ? nullptr : &m_entries[index - 1]; }

 private:
  static constexpr std::size_t kFewEntries = 32;

  std::vector<Entry> m_entries;
};

/// Prefixes, namespace names or local names, in UTF-8: those of the vocabulary in force, then the document's, which
/// stay in its octets.
class NameTexts {
 public:
  explicit NameTexts(const std::vector<WString>& prepared) : m_prepared(prepared), m_texts(prepared.size()) {}

  void Add(std::string_view text) { m_texts.Add(text); }
  /// The text, or null beyond the end of the table.
  const std::string_view* Find(std::uint32_t index) {
    std::string_view* const found = m_texts.Find(index);
    if (found != nullptr && index <= m_prepared.size()) *found = Convert(index);
    return found;
  }

 private:
  // The names of a vocabulary are wide, and few of them are asked for one by one.
  std::string_view Convert(std::uint32_t index) { return m_converted.emplace_front(ToUtf8(m_prepared[index - 1])); }

  const std::vector<WString>& m_prepared;
  Table<std::string_view> m_texts;
  std::forward_list<std::string> m_converted;
};

/// Elements' or attributes' names. Those of the vocabulary are made when they are first used.
struct QualifiedNames {
  explicit QualifiedNames(const CFIVocabulary::CFIQNameTable& table)
      : prepared(table.m_table), names(table.m_table.size()) {}

  const std::vector<CFIVocabulary::CQNameParts>& prepared;
  Table<const ExpandedName*> names;  // null: not made yet
};

/// Reads names and gives them to the tree, which keeps each once.
class NameReader {
 public:
  /// Nothing is owned. `allowsColons` as IsName takes it.
  NameReader(OctetReader& in, DocumentTree& tree, const CFIVocabulary& vocabulary, bool allowsColons);

  /// A qualified name that begins in the octet `first`: QualifiedNameOrIndex on the third bit (C.18), on the second bit
  /// (C.17).
  [[gnu::always_inline]] const ExpandedName& ReadElementName(unsigned first) {
    if ((first & 0x3F) >= octet::kLiteralElementName) return ReadLiteral(m_elements, first);
    return NameAt(m_elements, m_in.ReadIndex<kIndexOnThirdBit>(first));
  }
  const ExpandedName& ReadAttributeName(unsigned first) {
    if ((first & 0x7F) >= octet::kLiteralAttributeName) return ReadLiteral(m_attributes, first);
    return NameAt(m_attributes, m_in.ReadIndex<kIndexOnSecondBit>(first));
  }

  /// A namespace attribute (C.12) that begins in the octet `first`; the tree gets it.
  void ReadNamespaceAttribute(unsigned first);

 private:
  std::string_view ReadText(NameTexts& texts, bool isName);
  void CheckText(std::string_view text, bool isName);
  std::string_view TextAt(NameTexts& texts, std::uint32_t index);
  const ExpandedName& ReadLiteral(QualifiedNames& names, unsigned first);
  const ExpandedName& NameAt(QualifiedNames& names, std::uint32_t index) {
    const ExpandedName** const name = names.names.Find(index);
    return name != nullptr && *name != nullptr ? **name : PreparedNameAt(names, index);
  }
  const ExpandedName& PreparedNameAt(QualifiedNames& names, std::uint32_t index);

  OctetReader& m_in;
  DocumentTree& m_tree;
  const bool m_allowsColons;
  NameTexts m_prefixes, m_namespaces, m_localNames;
  QualifiedNames m_elements, m_attributes;
  WString m_wide;  // scratch
};

}  // namespace OvXmlLib16::fastinfoset
