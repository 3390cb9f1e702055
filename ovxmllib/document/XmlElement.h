// An element of the document model.
#pragma once

#include <atomic>
#include <map>
#include <vector>

#include "ovxmllib/binding/Export.h"
#include "ovxmllib/document/ExpandedName.h"
#include "ovxmllib/document/PooledText.h"
#include "ovxmllib/foundation/InstanceMonitor.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

class CXmlAttribute;
class CXmlDocument;
class DocumentTree;
class SharedName;

/// One element of a parsed document: its names, its attributes, its child elements and its character data in one text.
///
/// The model is what binding needs and no more: there are no comments, no processing instructions and no text nodes,
/// and where a text stood between child elements is not kept. Namespace declarations are kept by the document.
///
/// Elements are made and owned by their document, live until it loads again or is destroyed, or until the callback of
/// CXmlDocument drops them, and are never copied. A finished tree may be read by several threads.
class OVXMLLIB_API CXmlElement : public CInstanceMonitor {
 public:
  CXmlElement(const CXmlElement&) = delete;
  CXmlElement& operator=(const CXmlElement&) = delete;

  /// The first child element, or null. Owned by the document.
  CXmlElement* GetFirstElement() const noexcept { return m_pFirstChild; }
  /// The next child of the same parent, or null. Owned by the document.
  CXmlElement* GetNextSiblingElement() const noexcept { return m_pNextSibling; }
  /// The parent; null for the document element.
  const CXmlElement* GetParentElm() const noexcept { return m_pParent; }
  /// The document that owns the element; never null.
  const CXmlDocument* GetDocument() const noexcept { return Name().document; }

  /// The namespace URI; empty for none.
  const WString& GetNamespaceURI() const noexcept { return *Name().namespaceURI; }
  /// The name without its prefix. In a document read with SchemaType_NoNamespaces, the whole name.
  const WString& GetLocalName() const noexcept { return Name().localName; }
  /// Whether it has this local name, and the namespace unless that is not to count.
  bool IsNamed(const PreparedName& name, bool inAnyNamespace) const noexcept { return Name().Is(name, inAnyNamespace); }

  /// Where the local name is kept for the process, if it is; else a place where nothing is. See KeptNames.h.
  const std::size_t* GetKeptLocalName() const noexcept { return Name().keptLocalName; }

  /// All character data of the element itself in document order, white space between child elements included, without
  /// any U+000D. A string is made at the first call.
  const WString& GetText() const;
  /// The same text without a string being made of it; valid as long as the element.
  WStringView GetTextView() const noexcept { return m_text.View(); }

  /// The attributes in document order. The list is made at the first call; the attributes stay with the element.
  const std::vector<CXmlAttribute*>& GetAttributes() const;
  /// The first attribute, or null, without a list being made; GetNextAttribute leads on.
  const CXmlAttribute* GetFirstAttribute() const noexcept { return m_pFirstAttribute; }
  /// The attribute behind `attribute`, or null.
  static const CXmlAttribute* GetNextAttribute(const CXmlAttribute& attribute) noexcept;
  /// The value of the attribute with these names; an empty string that never changes when there is none.
  const WString& GetAttribute(WStringView localName, WStringView ns) const;

  /// The place for messages, as "/a/b[2]": each name with the alias that the document has for its namespace, and its
  /// position where several children of a parent have that name.
  WString GetXPath() const;

 protected:
  CXmlElement(const CXmlElement* parent, const ExpandedName& name) noexcept
      : CInstanceMonitor(CountedByOwner{&name}), m_pParent(parent) {}
  ~CXmlElement() override = default;  // never run: the pool takes nodes back without visiting them

 private:
  friend class CXmlAttribute;
  friend class SharedName;
  friend class DocumentTree;

  using AttributeList = std::vector<CXmlAttribute*>;
  using AliasIndex = std::map<WStringView, WStringView>;  // namespace URI to its first alias

  // What is made of the element when somebody asks for it.
  struct Made {
    mutable std::atomic<const WString*> text = nullptr;              // owned
    mutable std::atomic<const AttributeList*> attributes = nullptr;  // owned
  };

  static ClassType& Record();
  // Owned by the document's name table.
  const ExpandedName& Name() const noexcept { return *static_cast<const ExpandedName*>(GetLentWord()); }
  WString GetQName(const AliasIndex& aliases) const;
  WString GetNameWithPredicate(const AliasIndex& aliases) const;
  const Made& GetMade() const;
  void DropMade() noexcept;

  const CXmlElement* m_pParent;           // not owned
  CXmlElement* m_pNextSibling = nullptr;  // owned by the pool, as are the next two
  CXmlElement* m_pFirstChild = nullptr;
  CXmlAttribute* m_pFirstAttribute = nullptr;
  TextSpan m_text;
  mutable std::atomic<const Made*> m_made = nullptr;  // owned
};

}  // namespace OvXmlLib16
