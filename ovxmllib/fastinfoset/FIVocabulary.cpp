#include "ovxmllib/fastinfoset/FIVocabulary.h"

#include <cstdio>
#include <map>
#include <utility>

#include "ovxmllib/document/WellKnownNamespaces.h"
#include "ovxmllib/fastinfoset/RestrictedAlphabet.h"
#include "ovxmllib/fastinfoset/VocabularyIndex.h"
#include "ovxmllib/foundation/Unicode.h"

namespace OvXmlLib16 {

using fastinfoset::kMaxTableEntries;
using fastinfoset::NameEntry;
using fastinfoset::NameIndex;
using fastinfoset::TextEntry;
using fastinfoset::TextIndex;

struct CFIVocabulary::Kept {
  Kept() = default;
  // Takes the texts into a pool of its own.
  Kept(const Kept& other) {
    for (const TextTable table : kTextTables) {
      for (const TextEntry& entry : (other.index.*table).GetEntries()) (index.*table).FindOrAdd(entry.text, pool);
    }
    for (const NameTable table : kNameTables) {
      for (const NameEntry& entry : (other.index.*table).GetEntries()) {
        (index.*table).FindOrAdd(entry.local, entry.ns, entry.prefix, pool);
      }
    }
  }
  Kept& operator=(const Kept&) = delete;

  // The index of a part of a name, which is added by `add` if it has none; 0 for an empty part that may be absent.
  template <class Add>
  static std::uint32_t IndexOf(const TextIndex& known, const CFIStringTable& table, WString&& part, const Add& add) {
    if (const std::uint32_t found = known.Find(part); found != 0) return found;
    add(std::move(part));
    return static_cast<std::uint32_t>(table.m_table.size());
  }

  using TextTable = TextIndex fastinfoset::VocabularyIndex::*;
  using NameTable = NameIndex fastinfoset::VocabularyIndex::*;
  static constexpr TextTable kTextTables[] = {
      &fastinfoset::VocabularyIndex::attributeValues, &fastinfoset::VocabularyIndex::characterChunks,
      &fastinfoset::VocabularyIndex::localNames, &fastinfoset::VocabularyIndex::namespaceNames,
      &fastinfoset::VocabularyIndex::prefixNames};
  static constexpr NameTable kNameTables[] = {&fastinfoset::VocabularyIndex::attributeNames,
                                              &fastinfoset::VocabularyIndex::elementNames};

  NodePool pool;
  fastinfoset::VocabularyIndex index;
};

CFIVocabulary::CFIStringTable::~CFIStringTable() = default;
CFIVocabulary::CFIQNameTable::~CFIQNameTable() = default;

CFIVocabulary::CFIVocabulary()
    : m_restrictedAlphabets{WString(fastinfoset::kNumericAlphabet), WString(fastinfoset::kDateAndTimeAlphabet)},
      m_kept(std::make_unique<Kept>()) {
  AddPrefixName(u"xml");
  AddNamespaceName(WString(kXmlNamespace));
}

CFIVocabulary::CFIVocabulary(const CFIVocabulary& other)
    : m_restrictedAlphabets(other.m_restrictedAlphabets),
      m_kept(std::make_unique<Kept>(*other.m_kept)),
      m_attributeNames(other.m_attributeNames),
      m_attributeValues(other.m_attributeValues),
      m_elementNames(other.m_elementNames),
      m_characterChunks(other.m_characterChunks),
      m_localNames(other.m_localNames),
      m_namespaceNames(other.m_namespaceNames),
      m_prefixNames(other.m_prefixNames) {}

CFIVocabulary& CFIVocabulary::operator=(const CFIVocabulary& other) {
  CFIVocabulary copy(other);
  m_restrictedAlphabets.swap(copy.m_restrictedAlphabets);
  m_kept.swap(copy.m_kept);
  m_attributeNames.m_table.swap(copy.m_attributeNames.m_table);
  m_attributeValues.m_table.swap(copy.m_attributeValues.m_table);
  m_elementNames.m_table.swap(copy.m_elementNames.m_table);
  m_characterChunks.m_table.swap(copy.m_characterChunks.m_table);
  m_localNames.m_table.swap(copy.m_localNames.m_table);
  m_namespaceNames.m_table.swap(copy.m_namespaceNames.m_table);
  m_prefixNames.m_table.swap(copy.m_prefixNames.m_table);
  return *this;
}

CFIVocabulary::~CFIVocabulary() = default;

const CFIVocabulary& CFIVocabulary::GetInitial() {
  static const CFIVocabulary initial;
  return initial;
}

const fastinfoset::VocabularyIndex& CFIVocabulary::GetIndex() const noexcept { return m_kept->index; }

namespace {

// Deliberate: the table of the reader takes a string that it has already, the index of the writer does not.
void Add(TextIndex& index, NodePool& pool, CFIVocabulary::CFIStringTable& table, WString&& text) {
  index.FindOrAdd(text, pool);
  if (table.m_table.size() < kMaxTableEntries) table.m_table.push_back(std::move(text));
}

}  // namespace

void CFIVocabulary::AddPrefixName(WString name) {
  Add(m_kept->index.prefixNames, m_kept->pool, m_prefixNames, std::move(name));
}
void CFIVocabulary::AddNamespaceName(WString name) {
  Add(m_kept->index.namespaceNames, m_kept->pool, m_namespaceNames, std::move(name));
}
void CFIVocabulary::AddLocalName(WString name) {
  Add(m_kept->index.localNames, m_kept->pool, m_localNames, std::move(name));
}
void CFIVocabulary::AddAttributeValue(WString value) {
  Add(m_kept->index.attributeValues, m_kept->pool, m_attributeValues, std::move(value));
}
void CFIVocabulary::AddElementValue(WString value) {
  Add(m_kept->index.characterChunks, m_kept->pool, m_characterChunks, std::move(value));
}

void CFIVocabulary::AddQName(NameIndex& index, CFIQNameTable& table, WString&& prefix, WString&& ns,
                             WString&& localName) {
  if (index.FindOrAdd(localName, ns, prefix, m_kept->pool) != 0) return;
  std::uint32_t prefixIndex = 0, namespaceIndex = 0;
  if (!prefix.empty()) {
    prefixIndex = Kept::IndexOf(m_kept->index.prefixNames, m_prefixNames, std::move(prefix),
                                [&](WString&& name) { AddPrefixName(std::move(name)); });
  }
  if (!ns.empty()) {
    namespaceIndex = Kept::IndexOf(m_kept->index.namespaceNames, m_namespaceNames, std::move(ns),
                                   [&](WString&& name) { AddNamespaceName(std::move(name)); });
  }
  const std::uint32_t localIndex = Kept::IndexOf(m_kept->index.localNames, m_localNames, std::move(localName),
                                                 [&](WString&& name) { AddLocalName(std::move(name)); });
  if (table.m_table.size() < kMaxTableEntries) table.m_table.emplace_back(prefixIndex, namespaceIndex, localIndex);
}

void CFIVocabulary::AddAttribute(WString prefix, WString ns, WString localName) {
  AddQName(m_kept->index.attributeNames, m_attributeNames, std::move(prefix), std::move(ns), std::move(localName));
}

void CFIVocabulary::AddElement(WString prefix, WString ns, WString localName) {
  AddQName(m_kept->index.elementNames, m_elementNames, std::move(prefix), std::move(ns), std::move(localName));
}

namespace {

WString KeyOf(const TextEntry& entry) { return WString(entry.text); }
WString KeyOf(const NameEntry& entry) {
  constexpr WChar kSeparator = 1;
  return WString(entry.local) + kSeparator + WString(entry.ns) + kSeparator + WString(entry.prefix);
}

template <class Index>
void DumpTable(const char* heading, const Index& index) {
  std::map<WString, std::size_t> byKey;
  for (const auto& entry : index.GetEntries()) byKey.emplace(KeyOf(entry), byKey.size() + 1);
  std::fputs(heading, stdout);
  for (const auto& [key, number] : byKey) std::printf("%s, %zu\n", unicode::ToUtf8Lossy(key).c_str(), number);
}

}  // namespace

void CFIVocabulary::Dump() const {
  const fastinfoset::VocabularyIndex& index = m_kept->index;
  DumpTable("\n** Dumping FI Tables **\n\nAttr Names\n", index.attributeNames);
  DumpTable("\nAttr Values\n", index.attributeValues);
  DumpTable("\nCharacter Chunks\n", index.characterChunks);
  DumpTable("\nElement Names\n", index.elementNames);
  DumpTable("\nLocal Names\n", index.localNames);
  DumpTable("\nNamespace Names\n", index.namespaceNames);
  DumpTable("\nPrefix Names\n", index.prefixNames);
}

}  // namespace OvXmlLib16
