// The names of one document, each kept once.
#pragma once

#include <array>
#include <cstddef>
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

/// Finds the ExpandedName of a namespace URI and a local name in UTF-8. A name that was met before costs a hash and a
/// comparison. The hash is seeded per process, so that a document cannot be made to collide.
class NameTable {
 public:
  /// For the names of a document, which is not owned.
  explicit NameTable(const CXmlDocument& document);
  ~NameTable() { DestroyEntries(); }
  NameTable(const NameTable&) = delete;
  NameTable& operator=(const NameTable&) = delete;

  /// The name, valid as long as the table; `uri` is empty for none. Throws COvException when the local name is longer
  /// than `maxLength` code units (0: any length), and std::bad_alloc.
  const ExpandedName& Intern(std::string_view uri, std::string_view local, std::size_t maxLength);
  /// The same for a name as the parser reports it: namespace URI, '|' and local name, or the local name alone. Quickest
  /// for names that follow on each other as they did before.
  const ExpandedName& Intern(std::string_view qualified, std::size_t maxLength);

  /// Forgets all names, and with them every ExpandedName that was handed out.
  void Clear() noexcept;

 private:
  struct Entry;
  struct NamespaceURI {
    WString uri;
    std::uint64_t hash;
    const std::size_t* kept = LookForKeptName(uri);
  };
  using Namespaces = std::map<std::string, NamespaceURI, std::less<>>;
  using Namespace = Namespaces::value_type;

  void DestroyEntries() noexcept;
  Entry& Find(const Namespace& ns, std::string_view local, std::size_t maxLength);
  Entry& Add(const Namespace& ns, std::string_view local, std::uint64_t hash, std::size_t maxLength);
  const Namespace& InternNamespace(std::string_view uri);
  void Grow();

  static constexpr std::size_t kFirstSlots = 64;

  const CXmlDocument& m_document;
  std::array<Entry*, kFirstSlots> m_fewSlots{};
  std::unique_ptr<Entry*[]> m_manySlots;
  Entry** m_slots = m_fewSlots.data();  // open addressing; the size is a power of two
  std::size_t m_mask = kFirstSlots - 1;
  std::size_t m_count = 0;
  Entry* m_last = nullptr;    // the name asked for last as the parser reports it
  Entry* m_newest = nullptr;  // the name made last, which leads to those before it
  NodePool m_storage;         // entries and their keys; the entries' destructors are run by ours
  Namespaces m_namespaces;
  const Namespace* m_lastNamespace = nullptr;  // asked for last
};

}  // namespace OvXmlLib16
