// From texts and names to their indexes in the tables of a vocabulary.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "ovxmllib/document/NodePool.h"
#include "ovxmllib/document/PreparedName.h"
#include "ovxmllib/fastinfoset/BinaryForms.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16::fastinfoset {

/// A hash table from entries to their place in the order in which they were added, the first being 1. Entries are told
/// apart by their hash and their operator==. A copy refers to the same texts.
template <class Entry>
class EntryIndex {
 public:
  /// The index of an entry, or 0.
  std::uint32_t Find(const Entry& wanted) const noexcept;
  /// Adds an entry that is not there. Nothing happens when the table is full.
  void Add(const Entry& entry);

  /// In the order of the indexes.
  const std::vector<Entry>& GetEntries() const noexcept { return m_entries; }
  bool IsFull() const noexcept { return m_entries.size() >= kMaxTableEntries; }

 private:
  struct Slot {
    std::uint32_t hash;
    std::uint32_t index;  // 0: free
  };

  void Grow();
  void Place(Slot slot) noexcept;

  std::vector<Entry> m_entries;
  std::vector<Slot> m_slots;  // open addressing; none, or a power of two
};

/// A text.
struct TextEntry {
  explicit TextEntry(WStringView text);
  bool operator==(const TextEntry& other) const noexcept { return AreSame(text, other.text); }

  WStringView text;  // in the owner's pool once it is added
  std::uint32_t hash;
};

/// A qualified name, which another prefix makes another name.
struct NameEntry {
  NameEntry(WStringView local, WStringView ns, WStringView prefix);
  bool IsName(WStringView local_, WStringView ns_, WStringView prefix_) const noexcept {
    return AreSame(local, local_) && AreSame(ns, ns_) && AreSame(prefix, prefix_);
  }
  bool operator==(const NameEntry& other) const noexcept { return IsName(other.local, other.ns, other.prefix); }

  WStringView local, ns, prefix;  // in the owner's pool once it is added
  std::uint32_t hash;
};

/// Texts by index.
class TextIndex : public EntryIndex<TextEntry> {
 public:
  std::uint32_t Find(WStringView text) const noexcept { return EntryIndex::Find(TextEntry(text)); }
  /// The index that the text has; 0 when it had none, and then it is added with the next index unless the table is
  /// full. The pool keeps the text.
  std::uint32_t FindOrAdd(WStringView text, NodePool& pool);
};

/// Qualified names by index.
class NameIndex : public EntryIndex<NameEntry> {
 public:
  /// As TextIndex::FindOrAdd. What follows a name mostly followed it before: that costs a comparison.
  std::uint32_t FindOrAdd(WStringView local, WStringView ns, WStringView prefix, NodePool& pool);
  /// The same for a name that lives as long as this index.
  std::uint32_t FindOrAdd(const PreparedName& name, WStringView prefix, NodePool& pool);

 private:
  std::uint32_t GetExpected() const noexcept { return m_last < m_followers.size() ? m_followers[m_last] : 0; }
  std::uint32_t Search(WStringView local, WStringView ns, WStringView prefix, NodePool& pool, bool& isNew);

  std::vector<std::uint32_t> m_followers;       // by index: that of the name behind it the last time
  std::uint32_t m_last = 0;                     // the index asked for last
  std::vector<const PreparedName*> m_prepared;  // by index: the one that was last found there, without prefix, or null
};

/// The seven indexes of a vocabulary (clause 8.1). The texts belong to a pool that outlives it.
struct VocabularyIndex {
  NameIndex attributeNames;
  TextIndex attributeValues;
  TextIndex characterChunks;
  NameIndex elementNames;
  TextIndex localNames;
  TextIndex namespaceNames;
  TextIndex prefixNames;
};

}  // namespace OvXmlLib16::fastinfoset
