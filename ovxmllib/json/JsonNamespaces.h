// The namespace declarations in force at one place of a JSON document that is read.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace OvXmlLib16 {

/// Resolves names as Namespaces in XML 1.0, section 6 has it. Prefixes are views of the document's text.
class JsonNamespaces {
 public:
  /// Adds a declaration of the element at `depth`, which ends with it. The empty prefix is the default namespace.
  void Declare(std::string_view prefix, std::string_view uri, std::size_t depth);
  /// Drops the declarations of elements at `depth` and deeper.
  void EndElement(std::size_t depth) noexcept;

  /// The expanded name of a qualified one: URI, '|' and local name, or the name alone where it is in no namespace;
  /// valid until the next call. Empty when the prefix is not declared. The default namespace is for elements.
  std::string_view Expand(std::string_view name, bool isElement);

 private:
  struct Binding {
    std::string_view prefix;
    std::string uri;  // with the '|' behind it
    std::size_t depth;
  };

  const Binding* Find(std::string_view prefix) const noexcept;

  std::vector<Binding> m_bindings;  // the innermost last
  std::string m_expanded;
};

}  // namespace OvXmlLib16
