#include "ovxmllib/fastinfoset/VocabularyIndex.h"

#include <algorithm>
#include <utility>

#include "ovxmllib/foundation/TextHash.h"

namespace OvXmlLib16::fastinfoset {

namespace {

std::uint64_t HashOf(WStringView text, std::uint64_t seed) noexcept {
  return HashBytes(text.data(), text.size() * sizeof(WChar), seed);
}

WStringView Kept(WStringView text, NodePool& pool) {
  if (text.empty()) return {};
  auto* kept = static_cast<WChar*>(pool.Allocate(text.size() * sizeof(WChar)));
  text.copy(kept, text.size());
  return {kept, text.size()};
}

}  // namespace

TextEntry::TextEntry(WStringView text_) : text(text_), hash(static_cast<std::uint32_t>(HashOf(text, GetHashSeed()))) {}

NameEntry::NameEntry(WStringView local_, WStringView ns_, WStringView prefix_)
    : local(local_),
      ns(ns_),
      prefix(prefix_),
      hash(static_cast<std::uint32_t>(HashOf(local, HashOf(ns, HashOf(prefix, GetHashSeed()))))) {}

template <class Entry>
std::uint32_t EntryIndex<Entry>::Find(const Entry& wanted) const noexcept {
  if (m_slots.empty()) return 0;
  const std::size_t mask = m_slots.size() - 1;
  for (std::size_t i = wanted.hash & mask; m_slots[i].index != 0; i = (i + 1) & mask) {
    if (m_slots[i].hash == wanted.hash && m_entries[m_slots[i].index - 1] == wanted) return m_slots[i].index;
  }
  return 0;
}

template <class Entry>
void EntryIndex<Entry>::Add(const Entry& entry) {
  if (IsFull()) return;
  if (2 * (m_entries.size() + 1) > m_slots.size()) Grow();
  m_entries.push_back(entry);
  Place({entry.hash, static_cast<std::uint32_t>(m_entries.size())});
}

template <class Entry>
void EntryIndex<Entry>::Grow() {
  constexpr std::size_t kFirstSlots = 32;
  const std::vector<Slot> old = std::exchange(m_slots, std::vector<Slot>(std::max(2 * m_slots.size(), kFirstSlots)));
  for (const Slot& slot : old) {
    if (slot.index != 0) Place(slot);
  }
  m_entries.reserve(m_slots.size() / 2);
}

template <class Entry>
void EntryIndex<Entry>::Place(Slot slot) noexcept {
  const std::size_t mask = m_slots.size() - 1;
  std::size_t i = slot.hash & mask;
  while (m_slots[i].index != 0) i = (i + 1) & mask;
  m_slots[i] = slot;
}

template class EntryIndex<TextEntry>;
template class EntryIndex<NameEntry>;

std::uint32_t TextIndex::FindOrAdd(WStringView text, NodePool& pool) {
  TextEntry entry(text);
  const std::uint32_t found = EntryIndex::Find(entry);
  if (found != 0 || IsFull()) return found;
  entry.text = Kept(text, pool);
  Add(entry);
  return 0;
}

std::uint32_t NameIndex::FindOrAdd(WStringView local, WStringView ns, WStringView prefix, NodePool& pool) {
  const std::uint32_t expected = GetExpected();
  if (expected != 0 && GetEntries()[expected - 1].IsName(local, ns, prefix)) return m_last = expected;
  bool isNew = false;
  const std::uint32_t index = Search(local, ns, prefix, pool, isNew);
  if (m_last >= m_followers.size()) m_followers.resize(2 * m_last + 16);
  m_followers[m_last] = index;
  m_last = index;
  return isNew ? 0 : index;
}

std::uint32_t NameIndex::FindOrAdd(const PreparedName& name, WStringView prefix, NodePool& pool) {
  const std::uint32_t expected = GetExpected();
  if (expected < m_prepared.size() && m_prepared[expected] == &name && prefix.empty()) return m_last = expected;
  const std::uint32_t index = FindOrAdd(name.GetLocalName(), name.GetNamespace(), prefix, pool);
  if (index != 0 && prefix.empty()) {
    if (index >= m_prepared.size()) m_prepared.resize(2 * index);
    m_prepared[index] = &name;
  }
  return index;
}

// The index of the name, which is added if it has none; 0 when the table is full.
std::uint32_t NameIndex::Search(WStringView local, WStringView ns, WStringView prefix, NodePool& pool, bool& isNew) {
  NameEntry entry(local, ns, prefix);
  const std::uint32_t found = EntryIndex::Find(entry);
  if (found != 0 || IsFull()) return found;
  isNew = true;
  // One name after the other is in the same namespace.
  const NameEntry* last = GetEntries().empty() ? nullptr : &GetEntries().back();
  entry.local = Kept(local, pool);
  entry.ns = last != nullptr && AreSame(last->ns, ns) ? last->ns : Kept(ns, pool);
  entry.prefix = last != nullptr && AreSame(last->prefix, prefix) ? last->prefix : Kept(prefix, pool);
  Add(entry);
  return static_cast<std::uint32_t>(GetEntries().size());
}

}  // namespace OvXmlLib16::fastinfoset
