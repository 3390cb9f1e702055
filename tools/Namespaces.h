// What a document declares.
#pragma once

#include <map>
#include <set>
#include <utility>
#include <vector>

#include "tools/DocumentEvents.h"

namespace ovxml {

/// The namespace declarations of a whole document, wherever they stand. Beyond a thousand different ones, further are
/// passed over.
class Namespaces {
 public:
  struct Declaration {
    WString alias;  ///< empty for a default namespace
    WString uri;
  };

  /// Reads all of `input`: since the library tells what an alias stands for, but not which there are, it is read as
  /// XML without namespaces, in which declarations are attributes. Throws COvException.
  Namespaces(const Input& input, const CSerializationContext& context, Progress& progress);

  /// Each once, in document order.
  const std::vector<Declaration>& GetDeclarations() const noexcept { return m_declarations; }
  /// The default namespace that the root declares; empty for none.
  const WString& GetRootDefault() const noexcept { return m_rootDefault; }

  /// The alias that serves a namespace in the whole document: the first that is declared for it, unless the same alias
  /// was declared for another namespace before. Null for none.
  const WString* FindAlias(const WString& uri) const;
  /// URI and alias of all that FindAlias finds, but "xml".
  const std::map<WString, WString>& GetAliases() const noexcept { return m_aliases; }
  /// Further aliases of namespaces that have one already.
  const std::vector<Declaration>& GetFurtherAliases() const noexcept { return m_further; }

 private:
  class Survey;

  void Add(WString alias, WString uri);

  std::vector<Declaration> m_declarations;
  std::set<std::pair<WString, WString>> m_seen;
  WString m_rootDefault;
  std::map<WString, WString> m_aliases;
  std::set<WString> m_taken;
  std::vector<Declaration> m_further;
};

}  // namespace ovxml
