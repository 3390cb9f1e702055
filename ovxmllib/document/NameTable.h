// The names of one document, each kept once.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "ovxmllib/document/ExpandedName.h"
#include "ovxmllib/document/NodePool.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

/// Finds the ExpandedName of a name as the parser reports it: namespace URI, '|' and local name in UTF-8, or the name
/// alone. A name that was met before costs a hash and a comparison. The hash is seeded per process, so that a document
/// cannot be made to collide.
class NameTable {
 public:
  NameTable();
  ~NameTable() { DestroyEntries(); }
  NameTable(const NameTable&) = delete;
  NameTable& operator=(const NameTable&) = delete;

  /// The name for `qualified`, valid as long as the table. Throws COvException when the local name is longer than
  /// `maxLength` code units (0: any length), and std::bad_alloc.
  const ExpandedName& Intern(std::string_view qualified, std::size_t maxLength);

  /// Forgets all names, and with them every ExpandedName that was handed out.
  void Clear() noexcept;

 private:
  struct Entry;
  struct NamespaceURI {
    WString uri;
    const std::size_t* kept = LookForKeptName(uri);
  };
  using Namespaces = std::map<std::string, NamespaceURI, std::less<>>;  // by URI and separator as the parser has it
  using Namespace = Namespaces::value_type;

  void DestroyEntries() noexcept;
  Entry& Find(std::string_view qualified, std::size_t maxLength);
  Entry& Add(std::string_view qualified, std::uint64_t hash, std::size_t maxLength);
  const Namespace& InternNamespace(std::string_view prefix);
  void Grow();

  static constexpr std::size_t kFirstSlots = 64;

  std::unique_ptr<Entry*[]> m_slots;  // open addressing; the size is a power of two
  std::size_t m_mask;
  std::size_t m_count = 0;
  Entry* m_last = nullptr;    // the name asked for last
  Entry* m_newest = nullptr;  // the name made last, which leads to those before it
  NodePool m_storage;         // entries and their keys; the entries' destructors are run by ours
  Namespaces m_namespaces;
  const Namespace* m_lastNamespace = nullptr;  // of the name made last
};

}  // namespace OvXmlLib16
