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
  Entry(const CXmlDocument& document, const Namespace& ns_, WString localName, std::string_view local_,
        std::uint64_t hash_, Entry* older_)
      : name(document, ns_.second.uri, ns_.second.kept, std::move(localName)),
        hash(hash_),
        ns(&ns_),
        local(local_),
        older(older_) {}

  bool IsNameOf(std::string_view qualified) const noexcept {
    const std::string& uri = ns->first;
    if (uri.empty()) return qualified == local;
    return qualified.size() == uri.size() + 1 + local.size() && qualified[uri.size()] == kNamespaceSeparator &&
           qualified.ends_with(local) && qualified.starts_with(uri);
  }

  ExpandedName name;
  std::uint64_t hash;
  const Namespace* ns;
  std::string_view local;     // in the storage
  Entry* older;               // the name made before this one
  Entry* follower = nullptr;  // the name that came behind this one the last time
};

const std::size_t ExpandedName::kNotKept = 0;

bool ExpandedName::HasTextsOf(const PreparedName& name, bool inAnyNamespace) const noexcept {
  return AreSame(localName, name.GetLocalName()) && (inAnyNamespace || AreSame(*namespaceURI, name.GetNamespace()));
}

NameTable::NameTable(const CXmlDocument& document) : m_document(document) {}

void NameTable::DestroyEntries() noexcept {
  while (m_newest != nullptr) std::exchange(m_newest, m_newest->older)->~Entry();
}

void NameTable::Clear() noexcept {
  if (m_newest != nullptr) std::fill_n(m_slots, m_mask + 1, nullptr);
  DestroyEntries();
  m_count = 0;
  m_last = nullptr;
  m_storage.Clear();
  m_namespaces.clear();
  m_lastNamespace = nullptr;
}

const ExpandedName& NameTable::Intern(std::string_view uri, std::string_view local, std::size_t maxLength) {
  return Find(InternNamespace(uri), local, maxLength).name;
}

const ExpandedName& NameTable::Intern(std::string_view qualified, std::size_t maxLength) {
  // Documents repeat themselves: the name behind a name is nearly always the one that was there before.
  Entry** const expected = m_last == nullptr ? nullptr : &m_last->follower;
  if (expected == nullptr || *expected == nullptr || !(*expected)->IsNameOf(qualified)) {
    const std::size_t separator = qualified.rfind(kNamespaceSeparator);  // no name has one, a URI may
    const bool hasUri = separator != std::string_view::npos;
    const Namespace& ns = InternNamespace(hasUri ? qualified.substr(0, separator) : std::string_view());
    m_last = &Find(ns, hasUri ? qualified.substr(separator + 1) : qualified, maxLength);
    if (expected != nullptr) *expected = m_last;
    return m_last->name;
  }
  m_last = *expected;
  return m_last->name;
}

NameTable::Entry& NameTable::Find(const Namespace& ns, std::string_view local, std::size_t maxLength) {
  const std::uint64_t hash = HashBytes(local.data(), local.size(), ns.second.hash);
  for (std::size_t i = hash & m_mask; m_slots[i] != nullptr; i = (i + 1) & m_mask) {
    if (m_slots[i]->hash == hash && m_slots[i]->ns == &ns && m_slots[i]->local == local) return *m_slots[i];
  }
  return Add(ns, local, hash, maxLength);
}

NameTable::Entry& NameTable::Add(const Namespace& ns, std::string_view local, std::uint64_t hash,
                                 std::size_t maxLength) {
  WString localName = ToWide(local);
  if (maxLength != 0 && localName.size() > maxLength) {
    throw COvException(FormatString(
        u"A name is longer than %d characters. CSerializationContext::SetMaxNameLength sets this limit.", maxLength));
  }
  if (2 * (m_count + 1) > m_mask) Grow();
  char* const kept = static_cast<char*>(m_storage.Allocate(local.size()));
  local.copy(kept, local.size());
  void* const memory = m_storage.Allocate(sizeof(Entry));
  m_newest = new (memory) Entry(m_document, ns, std::move(localName), {kept, local.size()}, hash, m_newest);
  std::size_t i = hash & m_mask;
  while (m_slots[i] != nullptr) i = (i + 1) & m_mask;
  m_slots[i] = m_newest;
  ++m_count;
  return *m_newest;
}

const NameTable::Namespace& NameTable::InternNamespace(std::string_view uri) {
  if (m_lastNamespace != nullptr && m_lastNamespace->first == uri) return *m_lastNamespace;
  auto known = m_namespaces.find(uri);
  if (known == m_namespaces.end()) {
    const std::uint64_t hash = HashBytes(uri.data(), uri.size(), GetHashSeed());
    known = m_namespaces.emplace(uri, NamespaceURI{ToWide(uri), hash}).first;
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
  m_manySlots = std::move(slots);
  m_slots = m_manySlots.get();
  m_mask = mask;
}

}  // namespace OvXmlLib16
