// An attribute of the document model.
#pragma once

#include "ovxmllib/binding/Export.h"
#include "ovxmllib/document/ExpandedName.h"
#include "ovxmllib/document/PooledText.h"
#include "ovxmllib/foundation/InstanceMonitor.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

class CXmlElement;
class DocumentTree;
class SharedName;

/// One attribute of a CXmlElement. Made and owned by the document; valid as long as its element.
class OVXMLLIB_API CXmlAttribute : public CInstanceMonitor {
 public:
  CXmlAttribute(const CXmlAttribute&) = delete;
  CXmlAttribute& operator=(const CXmlAttribute&) = delete;

  /// The name without its prefix. In a document read with SchemaType_NoNamespaces, the whole name.
  const WString& GetLocalName() const noexcept { return Name().localName; }
  /// Whether it has this local name, and the namespace unless that is not to count.
  bool IsNamed(const PreparedName& name, bool inAnyNamespace) const noexcept { return Name().Is(name, inAnyNamespace); }
  /// The value, as the parser normalised it (XML 1.0, section 3.3.3).
  const WString& GetValue() const;
  /// The value without a string being made of it; valid as long as the attribute.
  WStringView GetValueView() const noexcept { return m_value.View(); }
  /// The namespace URI; empty for a name without prefix.
  const WString& GetNamespaceURI() const noexcept { return *Name().namespaceURI; }

  /// True for `type`, `schemaLocation`, `noNamespaceSchemaLocation` and `xmlns` in the XML Schema instance namespace or
  /// the namespace of declarations: what says something about the document and is no data of it.
  bool IsNamespaceAttribute() const noexcept;
  /// True for `nil` in one of these namespaces, whatever its value.
  bool IsNilAttribute() const noexcept;

  /// The place for messages, as "/a/b[2]/p:@c".
  WString GetXPath() const;

 protected:
  CXmlAttribute(const CXmlElement* parent, const ExpandedName& name) noexcept
      : CInstanceMonitor(CountedByOwner{&name}), m_pParent(parent) {}
  ~CXmlAttribute() override = default;  // never run: the pool takes nodes back without visiting them

 private:
  friend class CXmlElement;
  friend class SharedName;
  friend class DocumentTree;

  static ClassType& Record();
  // Owned by the document's name table.
  const ExpandedName& Name() const noexcept { return *static_cast<const ExpandedName*>(GetLentWord()); }

  const CXmlElement* m_pParent;      // not owned
  CXmlAttribute* m_pNext = nullptr;  // the next of the element; owned by the pool
  PooledText m_value;
};

}  // namespace OvXmlLib16
