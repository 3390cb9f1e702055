// The names in the text of one document, and the namespaces that their prefixes stand for.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "ovxmllib/document/PlainText.h"
#include "ovxmllib/foundation/TextHash.h"

namespace OvXmlLib16 {

class DocumentTree;
struct ExpandedName;

/// A name as it stands in the text, kept once.
struct PlainName {
  static constexpr std::size_t kHead = sizeof(plaintext::Block);

  explicit PlainName(std::string_view name) noexcept;

  /// Whether the text at `at` is this name and not the beginning of a longer one.
  bool StandsAt(plaintext::Position at, plaintext::Position end) const noexcept;

  std::string_view Prefix() const noexcept { return text.substr(0, colon); }
  std::string_view Local() const noexcept { return colon == 0 ? text : text.substr(colon + 1); }
  bool IsDeclaration() const noexcept { return text == "xmlns" || Prefix() == "xmlns"; }

  /// What the name stands for in one scope, the last in which somebody asked.
  struct Meaning {
    const ExpandedName* name = nullptr;
    std::uint64_t scope = 0;
  };

  std::array<char, kHead> head{};  // the first bytes
  std::string_view text;           // in the document
  std::size_t colon;               // its position; 0 when there is none
  bool declares;                   // xmlns, or xmlns and a prefix
  PlainName* follower = nullptr;   // the name that came behind this one the last time
  std::uint64_t lastTag = 0;       // the number of the last start tag that had an attribute of this name
  Meaning element, attribute;
};

/// Finds names and resolves them (Namespaces in XML 1.0, section 6). The text of the document outlives this.
class PlainNames {
 public:
  /// Without namespaces, prefixes are part of names and declarations are attributes like others.
  PlainNames(DocumentTree& tree, bool withNamespaces);

  /// The name at `at`, or null when there stands none of ASCII letters with at most one prefix.
  PlainName* Find(plaintext::Position at, plaintext::Position end);

  /// The meaning of a name in the scope of the open element; null when its prefix has none. Throws what
  /// DocumentTree::InternName throws.
  const ExpandedName* OfElement(PlainName& name) { return Resolve(name, name.element, /*isElement=*/true); }
  const ExpandedName* OfAttribute(PlainName& name) { return Resolve(name, name.attribute, /*isElement=*/false); }

  /// Opens the scope of an element, to which the declarations that follow belong.
  void OpenScope();
  /// Adds a declaration, in the tree too. False for one that only the parser can judge. Throws what
  /// DocumentTree::DeclareNamespace throws.
  bool Declare(const PlainName& declaration, std::string_view uri);
  /// Closes the innermost scope.
  void CloseScope() noexcept;

  bool WithNamespaces() const noexcept { return m_withNamespaces; }

 private:
  struct Binding {
    std::string_view prefix, uri;
  };
  struct Scope {
    std::uint64_t number;  // no two are equal in a document
    std::size_t bindings;  // of the scopes around it
  };

  PlainName* FindAnew(plaintext::Position at, plaintext::Position end);
  const ExpandedName* Resolve(PlainName& name, PlainName::Meaning& meaning, bool isElement) {
    return meaning.scope == m_scopes.back().number ? meaning.name : ResolveAnew(name, meaning, isElement);
  }
  const ExpandedName* ResolveAnew(PlainName& name, PlainName::Meaning& meaning, bool isElement);
  const std::string_view* FindNamespace(std::string_view prefix) const noexcept;

  DocumentTree& m_tree;
  const bool m_withNamespaces;
  std::unordered_map<std::string_view, PlainName, TextHash> m_names;
  PlainName* m_last = nullptr;  // the name found last
  std::vector<Binding> m_bindings;
  std::vector<Scope> m_scopes;
  std::uint64_t m_lastScope = 1;
};

}  // namespace OvXmlLib16
