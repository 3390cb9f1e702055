// The name of an element or attribute that is written many times.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "ovxmllib/binding/Export.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

/// A local name and a namespace, with what writers would else work out each time: one lasts as long as the tables of
/// its class, and any number of threads use it. Never changed.
class OVXMLLIB_API PreparedName {
 public:
  /// Copies both. Throws std::bad_alloc.
  PreparedName(WStringView name, WStringView ns);

  const WString& GetLocalName() const noexcept { return m_name; }
  const WString& GetNamespace() const noexcept { return m_namespace; }
  /// The name in UTF-8, with kRoomySlack bytes behind it; empty for one that no document can hold.
  std::string_view GetUtf8Name() const noexcept { return {m_utf8Name.data(), m_utf8Length}; }
  /// What FindKeptName finds for the namespace and for the name: the same for all that are equal. Null when they are
  /// not kept.
  const std::size_t* GetKeptNamespace() const noexcept { return m_keptNamespace; }
  const std::size_t* GetKeptLocalName() const noexcept { return m_keptLocalName; }
  /// Whether both are kept.
  bool IsKept() const noexcept { return m_keptNamespace != nullptr && m_keptLocalName != nullptr; }

 private:
  WString m_name, m_namespace;
  std::string m_utf8Name;
  std::size_t m_utf8Length = 0;
  const std::size_t* m_keptNamespace;
  const std::size_t* m_keptLocalName;
};

/// \name For code over names that are texts or prepared
/// \{
inline WStringView TextOf(WStringView name) noexcept { return name; }
inline WStringView TextOf(const PreparedName& name) noexcept { return name.GetLocalName(); }
/// By which the scope is asked: a prepared name knows more of its namespace than the text.
inline WStringView NamespaceKey(WStringView, WStringView ns) noexcept { return ns; }
inline const PreparedName& NamespaceKey(const PreparedName& name, WStringView) noexcept { return name; }
/// \}

}  // namespace OvXmlLib16
