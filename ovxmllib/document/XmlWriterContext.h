// One open element of a writer.
#pragma once

#include <cstddef>
#include <memory>

#include "ovxmllib/document/NamespaceScope.h"
#include "ovxmllib/document/XmlWriter.h"

namespace OvXmlLib16 {

/// Most elements add no alias and see their parent's scope; the first change makes a copy for this element and its
/// descendants. Contexts are used again for later elements of the same depth, so that an element costs no allocation.
class CXmlWriter::CXmlWriterContext : public CInstanceMonitor {
 public:
  explicit CXmlWriterContext(CXmlWriterContext* parent)
      : CInstanceMonitor(Record()), pParent(parent), depth(parent == nullptr ? 0 : parent->depth + 1) {}

  /// Begins an element that sees `scope`, which belongs to the parent or the document and outlives the element.
  void Begin(NamespaceScope& scope) noexcept {
    childCount = 0;
    bInStartTag = true;
    bAttributesWritten = false;
    arrayState = 0;
    m_scope = &scope;
  }

  /// The scope as it is seen; valid until the next change.
  NamespaceScope& GetScope() const noexcept { return *m_scope; }
  const WString& GetDefaultNamespace() const noexcept { return m_scope->GetDefaultNamespace(); }
  void SetDefaultNamespace(WStringView ns) { OwnScope().SetDefaultNamespace(ns); }
  /// The alias of a namespace, or null; valid until the next change.
  const WString* GetNamespaceMapValue(WStringView ns) const noexcept { return m_scope->FindAlias(ns); }
  void SetNamespaceMapValue(WStringView ns, WStringView alias) { OwnScope().Set(ns, alias); }
  /// Gives a namespace without alias a generated one, for this element and its descendants.
  const WString& AddGeneratedAlias(WStringView ns) {
    NamespaceScope& scope = OwnScope();
    scope.Set(ns, scope.GenerateAlias());
    return *scope.FindAlias(ns);
  }

  CXmlWriterContext* const pParent;      ///< not owned
  CXmlWriterContext* pDeeper = nullptr;  ///< the context of a child, once there was one; not owned
  const int depth;                       ///< 0 for the root
  int childCount = 0;                    ///< child elements started so far
  bool bInStartTag = false;              ///< the start tag is still open: attributes may follow
  bool bAttributesWritten = false;       ///< for formats whose attributes end with a mark
  int arrayState = 0;                    ///< for formats with arrays
  std::size_t nameStart = 0;             ///< for formats whose end tags repeat the name: where they keep it

 private:
  static ClassType& Record() {
    static ClassType& record = FindClass(u"CXmlWriterContext");
    return record;
  }

  NamespaceScope& OwnScope() {
    if (m_scope == m_own.get()) return *m_own;
    if (m_own == nullptr) m_own = std::make_unique<NamespaceScope>();
    *m_own = *m_scope;
    m_scope = m_own.get();
    return *m_own;
  }

  NamespaceScope* m_scope = nullptr;      // not owned, or m_own
  std::unique_ptr<NamespaceScope> m_own;  // in use when m_scope points at it
};

inline CXmlWriter::CXmlWriterContext& CXmlWriter::PushContext() {
  CXmlWriterContext* const parent = m_pContext;
  CXmlWriterContext*& next = parent == nullptr ? m_pRootContext : parent->pDeeper;
  CXmlWriterContext& pushed = next != nullptr ? *next : AddContext(next, parent);
  pushed.Begin(parent == nullptr ? *m_documentScope : parent->GetScope());
  m_pContext = &pushed;
  return pushed;
}

inline void CXmlWriter::PopContext() noexcept { m_pContext = m_pContext->pParent; }

}  // namespace OvXmlLib16
