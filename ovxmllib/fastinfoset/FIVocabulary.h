// The tables that a Fast Infoset document refers to by index.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "ovxmllib/binding/Export.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

namespace fastinfoset {
class NameIndex;
struct VocabularyIndex;
}  // namespace fastinfoset

/// The strings and names that a document carries as small numbers (ITU-T Rec. X.891, clause 8). Generated code fills
/// the vocabulary of a CFastInfosetContext before the first document, so that documents hold no names at all; writer
/// and reader must then have been fed in the same way.
///
/// Indexes count from 1, and 0 stands for an absent part. A new vocabulary has what the standard builds in: two
/// restricted alphabets, the prefix "xml" and its namespace. A table holds 1,048,576 entries; what is added to a full
/// one is dropped without a word. Add each string to its table once: a second time moves all later indexes of the
/// reader away from those of the writer. A vocabulary only grows. It is one thread's while it is filled; any number of
/// documents on any threads may use it while nobody changes it.
class OVXMLLIB_API CFIVocabulary {
 public:
  /// A qualified name by the indexes of its parts.
  class OVXMLLIB_API CQNameParts {
   public:
    CQNameParts(std::uint32_t prefix, std::uint32_t ns, std::uint32_t localName) noexcept
        : m_dwPrefixIndex(prefix), m_dwNamespaceIndex(ns), m_dwLocalNameIndex(localName) {}

    std::uint32_t m_dwPrefixIndex;     ///< 0 for no prefix
    std::uint32_t m_dwNamespaceIndex;  ///< 0 for no namespace
    std::uint32_t m_dwLocalNameIndex;  ///< never 0
  };

  /// A table of strings; the one with index n stands at n - 1.
  class OVXMLLIB_API CFIStringTable {
   public:
    CFIStringTable() = default;
    CFIStringTable(const CFIStringTable&) = default;
    CFIStringTable& operator=(const CFIStringTable&) = default;
    virtual ~CFIStringTable();

    std::vector<WString>::const_iterator begin() const noexcept { return m_table.begin(); }
    std::vector<WString>::const_iterator end() const noexcept { return m_table.end(); }

    std::vector<WString> m_table;
  };

  /// A table of qualified names; the one with index n stands at n - 1.
  class OVXMLLIB_API CFIQNameTable {
   public:
    CFIQNameTable() = default;
    CFIQNameTable(const CFIQNameTable&) = default;
    CFIQNameTable& operator=(const CFIQNameTable&) = default;
    virtual ~CFIQNameTable();

    std::vector<CQNameParts>::const_iterator begin() const noexcept { return m_table.begin(); }
    std::vector<CQNameParts>::const_iterator end() const noexcept { return m_table.end(); }

    std::vector<CQNameParts> m_table;
  };

  CFIVocabulary();
  CFIVocabulary& operator=(const CFIVocabulary& other);
  virtual ~CFIVocabulary();

  /// Add a string to its table. Throw std::bad_alloc, as all that adds.
  void AddPrefixName(WString name);
  void AddNamespaceName(WString name);
  void AddLocalName(WString name);
  /// Adds the value of an attribute. The writer refers to it only if it is shorter than the context's
  /// GetAttributeMaxAddLength, and spells it out otherwise; a reader has it in either case.
  void AddAttributeValue(WString value);
  /// Adds a text of elements, a character chunk as the standard calls it; GetElementMaxAddLength is its limit.
  void AddElementValue(WString value);

  /// Add a name, and those of its parts that are not in their tables. Empty texts stand for no prefix and no namespace.
  /// A name that is there already is passed over.
  void AddAttribute(WString prefix, WString ns, WString localName);
  void AddElement(WString prefix, WString ns, WString localName);

  /// The tables in the order of their indexes; valid as long as the vocabulary.
  const CFIQNameTable& GetAttributeNamesTable() const noexcept { return m_attributeNames; }
  const CFIStringTable& GetAttributeValuesTable() const noexcept { return m_attributeValues; }
  const CFIQNameTable& GetElementNamesTable() const noexcept { return m_elementNames; }
  const CFIStringTable& GetCharacterChunksTable() const noexcept { return m_characterChunks; }
  const CFIStringTable& GetLocalNamesTable() const noexcept { return m_localNames; }
  const CFIStringTable& GetNamespaceNamesTable() const noexcept { return m_namespaceNames; }
  const CFIStringTable& GetPrefixNamesTable() const noexcept { return m_prefixNames; }

  /// Prints what has which index to standard output, in UTF-8: table by table, a line "%s, %d" for each entry, in the
  /// order of the texts' code units. A qualified name is its local name, U+0001, its namespace, U+0001, its prefix.
  void Dump() const;

  /// The restricted alphabets, the first with index 1. The reader knows all of them, the writer the two that the
  /// standard builds in.
  std::vector<WString> m_restrictedAlphabets;

 private:
  friend class CFastInfosetContext;
  friend class CFastInfosetWriter;
  friend class CFastInfosetReader;

  struct Kept;

  CFIVocabulary(const CFIVocabulary& other);

  /// What the standard builds in.
  static const CFIVocabulary& GetInitial();
  const fastinfoset::VocabularyIndex& GetIndex() const noexcept;
  void AddQName(fastinfoset::NameIndex& index, CFIQNameTable& table, WString&& prefix, WString&& ns,
                WString&& localName);

  std::unique_ptr<Kept> m_kept;  // the way from strings to indexes
  CFIQNameTable m_attributeNames;
  CFIStringTable m_attributeValues;
  CFIQNameTable m_elementNames;
  CFIStringTable m_characterChunks;
  CFIStringTable m_localNames;
  CFIStringTable m_namespaceNames;
  CFIStringTable m_prefixNames;
};

}  // namespace OvXmlLib16
