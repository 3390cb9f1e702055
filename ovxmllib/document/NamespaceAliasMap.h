// The application's list of namespace aliases.
#pragma once

#include <map>

#include "ovxmllib/binding/Export.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

/// The aliases (prefixes) that output is to have for namespaces. They are declared on the root element when a generated
/// class writes a document; namespaces that are not here get aliases made by the writer.
///
/// Each namespace has one alias; that an alias stands for one namespace alone is not checked. Entries are in the order
/// of their URIs by code units. A null text counts as empty. A map is part of its context: see CSerializationContext
/// for who may touch it when.
class OVXMLLIB_API CNamespaceAliasMap {
 public:
  CNamespaceAliasMap() = default;
  CNamespaceAliasMap(const CNamespaceAliasMap&) = default;
  CNamespaceAliasMap& operator=(const CNamespaceAliasMap&) = default;
  virtual ~CNamespaceAliasMap();

  /// Gives the namespace `ns` an alias, in place of the one that it has.
  void Add(const WChar* alias, const WChar* ns);
  /// Removes the namespace; one that is not here is passed over.
  void RemoveNamespace(const WChar* ns);

  /// The alias of a namespace. One that is not here is added with the empty alias, which is the result; ask
  /// DoesNamespaceExist first where that is not wanted.
  WString GetAliasFromNamespace(const WChar* ns);
  /// The first namespace that has this alias. Throws COvException when there is none.
  WString GetNamespaceFromAlias(const WChar* alias) const;

  /// Whether the namespace is here.
  bool DoesNamespaceExist(const WChar* ns) const;
  /// Whether a namespace has this alias; takes time in proportion to their number.
  bool DoesAliasExist(const WChar* alias) const;

  /// The number of namespaces.
  int GetNamespaceCount() const noexcept { return static_cast<int>(m_aliases.size()); }
  /// The namespace at `index`, counted from 0 in the order of URIs. Throws COvInvalidParamException at an index that
  /// none has.
  WString GetNamespaceAt(int index) const;

 private:
  using Aliases = std::map<WString, WString, std::less<>>;  // by namespace URI

  Aliases::const_iterator FindAlias(const WChar* alias) const;

  Aliases m_aliases;
};

}  // namespace OvXmlLib16
