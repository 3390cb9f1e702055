// What a document declares.
#pragma once

#include <map>
#include <set>
#include <utility>
#include <vector>

#include "tools/DocumentEvents.h"

namespace ovxml {

class Source;

/// The namespace declarations of a whole document, wherever they stand. Beyond a thousand different ones, further are
/// passed over.
class Namespaces {
 public:
  struct Declaration {
    WString alias;  ///< empty for a default namespace
    WString uri;
  };

  /// Reads all of `source`: since the library tells what an alias stands for, but not which there are, text is read as
  /// XML without namespaces, in which declarations are attributes. Of a tree, those are found that its names or values
  /// use. Throws COvException.
  Namespaces(const Source& source, const CSerializationContext& context, Progress& progress);

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

  /// Gives the writer of a format that declares at the root and nowhere else all that the document uses: one alias for
  /// each namespace, a new one where FindAlias has none, and the root's default if it holds for all elements.
  void DeclareAtRoot(OvXmlLib16::CXmlWriter& writer) const;

 private:
  class TextSurvey;
  class TreeSurvey;

  void Add(WString alias, WString uri);

  std::vector<Declaration> m_declarations;
  std::set<std::pair<WString, WString>> m_seen;
  WString m_rootDefault;
  bool m_leavesDefault = false;  // an element below a default namespace has none
  std::set<WString> m_prefixed;  // URIs that a prefix stands for somewhere
  std::map<WString, WString> m_aliases;
  std::set<WString> m_taken;
  std::vector<Declaration> m_further;
};

}  // namespace ovxml
