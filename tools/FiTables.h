// The tables of a Fast Infoset document (ITU-T Rec. X.891, clause 8), for a listing.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tools/FiForms.h"

namespace ovxml::fi {

/// A table of entries, the first with index 1.
template <class Entry>
class Table {
 public:
  explicit Table(std::string name_, std::vector<Entry> builtIn = {})
      : name(std::move(name_)), m_entries(std::move(builtIn)) {}

  /// Returns false for what does not fit, which is dropped.
  bool Add(const Entry& entry) {
    if (m_entries.size() == kMostEntries) return false;
    m_entries.push_back(entry);
    return true;
  }
  void SetLast(const Entry& entry) { m_entries.back() = entry; }
  std::size_t GetSize() const noexcept { return m_entries.size(); }
  const Entry& operator[](std::uint64_t index) const { return m_entries[static_cast<std::size_t>(index) - 1]; }

  const std::string name;  ///< of an entry

 private:
  static constexpr std::size_t kMostEntries = 1u << 20;

  std::vector<Entry> m_entries;
};

/// A qualified name without its namespace.
struct QName {
  Octets prefix, local;  // both empty where unknown

  std::string Print() const {
    if (local.empty()) return "unknown";
    return Shown(prefix.empty() ? std::string(local) : std::string(prefix) + ":" + std::string(local));
  }
};

using TextTable = Table<Octets>;
using ValueTable = Table<StoredString>;
using NameTable = Table<QName>;

struct Tables {
  TextTable prefixes{"prefix", {"xml"}};
  TextTable namespaces{"namespace", {"http://www.w3.org/XML/1998/namespace"}};
  TextTable localNames{"local name"}, otherNames{"other name"}, otherUris{"other URI"};
  ValueTable attributeValues{"attribute value"}, chunks{"text"}, otherStrings{"other string"};
  NameTable elementNames{"element name"}, attributeNames{"attribute name"};
  Encodings encodings;
  bool hasUnknownEntries = false;  ///< those of an external vocabulary, ahead of all others

  /// The entry, or an empty one where nobody knows it. Throws Fault for an index beyond the table.
  template <class Entry>
  Entry Get(const Table<Entry>& table, std::uint64_t index) const {
    if (hasUnknownEntries) return {};
    if (index > table.GetSize()) throw Fault("the " + table.name + " entries end ahead of " + std::to_string(index));
    return table[index];
  }

  /// The index of the entry that was added last, as it goes ahead of its text.
  template <class Entry>
  std::string NumberOfLast(const Table<Entry>& table) const {
    return hasUnknownEntries ? std::string() : std::to_string(table.GetSize()) + ": ";
  }
};

}  // namespace ovxml::fi
