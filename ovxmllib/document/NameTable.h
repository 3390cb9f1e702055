// The names of one document, each kept once.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "ovxmllib/document/NodePool.h"
#include "ovxmllib/document/PreparedName.h"
#include "ovxmllib/document/SharedName.h"
#include "ovxmllib/foundation/KeptNames.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

/// The name of an element or attribute (Namespaces in XML 1.0, section 2.1). Within one document equal names are one
/// object, and equal namespaces one string.
struct ExpandedName {
  /// Whether it is this name, and of the namespace unless that is not to count.
  bool Is(const PreparedName& name, bool inAnyNamespace) const noexcept {
    return IsSame(keptLocalName, localName, name.GetKeptLocalName(), name.GetLocalName()) &&
           (inAnyNamespace || IsSame(keptNamespace, *namespaceURI, name.GetKeptNamespace(), name.GetNamespace()));
  }

  const WString* namespaceURI;  ///< never null; not owned
  WString localName;
  SharedNameSlot shared = {};  ///< for objects that outlive the document
  /// What LookForKeptName finds, or null: what metadata compare with.
  const std::size_t* keptNamespace = LookForKeptName(*namespaceURI);
  const std::size_t* keptLocalName = LookForKeptName(localName);

 private:
  // What is kept is equal when it is kept at one place; what is not has to be compared.
  static bool IsSame(const std::size_t* keptA, WStringView a, const std::size_t* keptB, WStringView b) noexcept {
    return keptA != nullptr && keptB != nullptr ? keptA == keptB : AreSame(a, b);
  }
};

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
  using Namespaces = std::map<std::string, WString, std::less<>>;  // URI and separator as the parser has it; the URI
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
  Entry* m_last = nullptr;  // the name asked for last
  NodePool m_storage;       // entries and their keys; the entries' destructors are run by ours
  Namespaces m_namespaces;
};

}  // namespace OvXmlLib16
