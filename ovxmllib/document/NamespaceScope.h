// The namespaces in scope at one place of a document that is written.
#pragma once

#include <cstddef>
#include <vector>

#include "ovxmllib/document/PreparedName.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

/// The default namespace and the aliases that an element sees: one alias a namespace URI, in the order of the URIs by
/// code units. An empty alias counts as none. The namespace of XML has the alias "xml" until it is given another one
/// (Namespaces in XML 1.0, section 3).
class NamespaceScope {
 public:
  struct Entry {
    WString uri;
    WString alias;
  };

  const WString& GetDefaultNamespace() const noexcept { return m_defaultNamespace; }
  void SetDefaultNamespace(WStringView uri);
  /// Whether this is the namespace of names without prefix.
  bool IsDefault(WStringView ns) const noexcept { return AreSame(ns, m_defaultNamespace); }
  bool IsDefault(const PreparedName& name) const noexcept {
    const std::size_t* const kept = name.GetKeptNamespace();
    return kept != nullptr && m_keptDefault != nullptr ? kept == m_keptDefault : IsDefault(name.GetNamespace());
  }

  /// What was set, by URI.
  const std::vector<Entry>& GetEntries() const noexcept { return m_entries; }

  /// The alias of a URI, or null; valid until the next Set.
  const WString* FindAlias(WStringView uri) const noexcept;

  /// Gives the URI this alias, in place of one that it had.
  void Set(WStringView uri, WStringView alias);

  /// The first of "AA", "AB" ... "AZ", "BA" ... "ZZ", "AAA" ... that is no alias here.
  WString GenerateAlias();

 private:
  bool IsAliasTaken(WStringView alias) const noexcept;

  WString m_defaultNamespace;
  const std::size_t* m_keptDefault = nullptr;  // where FindKeptName has it, or null
  std::vector<Entry> m_entries;
  mutable std::size_t m_lastFound = 0;  // an index, which may be out of range
  std::size_t m_firstCandidate = 0;     // all generated aliases before this one are taken
};

}  // namespace OvXmlLib16
