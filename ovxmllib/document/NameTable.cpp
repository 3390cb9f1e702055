#include "ovxmllib/document/NameTable.h"

#include <algorithm>
#include <new>
#include <utility>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/foundation/TextHash.h"

namespace OvXmlLib16 {

namespace {

constexpr char kNamespaceSeparator = '|';

}  // namespace

struct NameTable::Entry {
  bool IsNameOf(std::string_view qualified) const noexcept {
    return qualified.size() == prefix.size() + local.size() && qualified.ends_with(local) &&
           qualified.starts_with(prefix);
  }

  ExpandedName name;
  std::uint64_t hash;
  std::string_view prefix;    // namespace URI and separator, or empty; kept once for all names of the namespace
  std::string_view local;     // in the storage
  Entry* older;               // the name made before this one
  Entry* follower = nullptr;  // the name that came behind this one the last time
};

const std::size_t ExpandedName::kNotKept = 0;

bool ExpandedName::HasTextsOf(const PreparedName& name, bool inAnyNamespace) const noexcept {
  return AreSame(localName, name.GetLocalName()) && (inAnyNamespace || AreSame(*namespaceURI, name.GetNamespace()));
}

NameTable::NameTable() : m_slots(std::make_unique<Entry*[]>(kFirstSlots)), m_mask(kFirstSlots - 1) {}

void NameTable::DestroyEntries() noexcept {
  while (m_newest != nullptr) std::exchange(m_newest, m_newest->older)->~Entry();
}

void NameTable::Clear() noexcept {
  if (m_newest != nullptr) std::fill_n(m_slots.get(), m_mask + 1, nullptr);
  DestroyEntries();
  m_count = 0;
  m_last = nullptr;
  m_storage.Clear();
  m_namespaces.clear();
  m_lastNamespace = nullptr;
}

const ExpandedName& NameTable::Intern(std::string_view qualified, std::size_t maxLength) {
  // Documents repeat themselves: the name behind a name is nearly always the one that was there before.
  Entry** const expected = m_last == nullptr ? nullptr : &m_last->follower;
  if (expected == nullptr || *expected == nullptr || !(*expected)->IsNameOf(qualified)) {
    m_last = &Find(qualified, maxLength);
    if (expected != nullptr) *expected = m_last;
    return m_last->name;
  }
  m_last = *expected;
  return m_last->name;
}

NameTable::Entry& NameTable::Find(std::string_view qualified, std::size_t maxLength) {
  const std::uint64_t hash = HashBytes(qualified.data(), qualified.size(), GetHashSeed());
  for (std::size_t i = hash & m_mask; m_slots[i] != nullptr; i = (i + 1) & m_mask) {
    if (m_slots[i]->hash == hash && m_slots[i]->IsNameOf(qualified)) return *m_slots[i];
  }
  return Add(qualified, hash, maxLength);
}

NameTable::Entry& NameTable::Add(std::string_view qualified, std::uint64_t hash, std::size_t maxLength) {
  const std::size_t separator = qualified.rfind(kNamespaceSeparator);  // no name has one, a URI may
  const std::size_t prefixLength = separator == std::string_view::npos ? 0 : separator + 1;
  const std::string_view local = qualified.substr(prefixLength);
  WString localName = ToWide(local);
  if (maxLength != 0 && localName.size() > maxLength) {
    throw COvException(FormatString(
        u"A name is longer than %d characters. CSerializationContext::SetMaxNameLength sets this limit.", maxLength));
  }
  if (2 * (m_count + 1) > m_mask) Grow();
  const auto& [prefix, ns] = InternNamespace(qualified.substr(0, prefixLength));
  char* kept = static_cast<char*>(m_storage.Allocate(local.size()));
  local.copy(kept, local.size());
  auto* const entry =
      new (m_storage.Allocate(sizeof(Entry))) Entry{{&ns.uri, std::move(localName), {}, ExpandedName::PlaceOf(ns.kept)},
                                                    hash,
                                                    prefix,
                                                    {kept, local.size()},
                                                    m_newest};
  m_newest = entry;
  std::size_t i = hash & m_mask;
  while (m_slots[i] != nullptr) i = (i + 1) & m_mask;
  m_slots[i] = entry;
  ++m_count;
  return *entry;
}

const NameTable::Namespace& NameTable::InternNamespace(std::string_view prefix) {
  if (m_lastNamespace != nullptr && m_lastNamespace->first == prefix) return *m_lastNamespace;
  auto known = m_namespaces.find(prefix);
  if (known == m_namespaces.end()) {
    const std::string_view uri = prefix.substr(0, prefix.empty() ? 0 : prefix.size() - 1);
    known = m_namespaces.emplace(prefix, NamespaceURI{ToWide(uri)}).first;
  }
  m_lastNamespace = &*known;
  return *known;
}

void NameTable::Grow() {
  const std::size_t mask = 2 * m_mask + 1;
  auto slots = std::make_unique<Entry*[]>(mask + 1);
  for (Entry* entry = m_newest; entry != nullptr; entry = entry->older) {
    std::size_t i = entry->hash & mask;
    while (slots[i] != nullptr) i = (i + 1) & mask;
    slots[i] = entry;
  }
  m_slots = std::move(slots);
  m_mask = mask;
}

}  // namespace OvXmlLib16
