// An element that no generated class knows.
#pragma once

#include <cstddef>
#include <memory>

#include "ovxmllib/binding/Export.h"
#include "ovxmllib/binding/SmartPtr.h"
#include "ovxmllib/binding/XmlObjectBase.h"
#include "ovxmllib/collections/NamespaceRule.h"
#include "ovxmllib/foundation/CompactText.h"
#include "ovxmllib/foundation/InstanceMonitor.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

class CAttributeCol;
class CElementCol;
class SharedName;
struct ObjectRoom;

/// An element of any name with its attributes, child elements and text: what a schema lets in by `xs:any`, or a whole
/// document. All entry points of CXmlObjectBase read the document element itself into it.
///
/// All text of an element is one text, which is written behind the child elements wherever it stood; white space
/// between child elements belongs to it. An element and those below it write and clone themselves with stack in
/// proportion to their depth; they are deleted without. An element must not be put below itself.
///
/// The element's own namespace is under a restriction in the form of the schema's `namespace` attribute (tokens
/// separated by single blanks: "##any", "##other", "##local", "##targetNamespace", URIs) and a target namespace that
/// some of them are compared with. Its content may have any namespace.
class OVXMLLIB_API CElement : public CXmlObjectBase, public CInstanceMonitor {
 public:
  /// An element in no namespace, which may become any.
  explicit CElement(const WChar* name);
  /// An element in a namespace, which is its restriction too. Throws COvInvalidNamespaceException when `ns` is one of
  /// the words that begin with ##, and for null.
  CElement(const WChar* name, const WChar* ns);
  /// Throws COvInvalidNamespaceException when the restriction does not allow `ns`, and for null.
  CElement(const WChar* name, const WChar* ns, const WChar* restriction, const WChar* targetNs);
  /// An element made of the XML of a bound object. With a `defaultNs` that is neither null nor empty it is written as a
  /// unit that has this default namespace, whatever surrounds it; its own attributes are then not written, and only XML
  /// text can be written so. Throws what writing and reading throw, and COvInvalidParamException for a null object.
  CElement(CXmlObjectBase* object, const WChar* defaultNs);
  CElement(const CElement&) = delete;
  CElement& operator=(const CElement&) = delete;

  CXmlObjectBase* GetBase() override { return this; }
  using CXmlObjectBase::GetBase;
  ~CElement() override;

  /// Reads the document element of terminated UTF-16 text. As with every reading, attributes and child elements are
  /// added to those that are here; name, namespace and text are replaced.
  void FromXml(const WChar* xml);
  /// The other forms of CXmlObjectBase.
  void FromXml(const WChar* text, const CSerializationContext& context) override;
  using CXmlObjectBase::FromXml;

  /// The local name.
  WString GetName() const;
  void SetName(const WChar* name);
  /// The namespace URI; empty for none. Setting it tests nothing, and null counts as empty here and below.
  WString GetNamespace() const override;
  void SetNamespace(const WChar* ns);
  /// The character data of the element itself.
  WString GetText() const { return m_text.String(); }
  void SetText(const WChar* text) { m_text.Assign(ViewOf(text)); }
  /// The attributes; never null, and the same for the life of the element.
  CSmartPtr<CAttributeCol> GetAttributes();
  /// The child elements; never null, and the same for the life of the element. Those added by name alone are in the
  /// namespace that this element was made with.
  CSmartPtr<CElementCol> GetChildElements();

  /// Tests the namespaces of this element, its attributes and all elements below it against a restriction; nothing is
  /// stored. Throws COvInvalidNamespaceException at the first that is not allowed.
  void SetNamespaceRestrictions(const WChar* restriction, const WChar* targetNs) const;

  /// A new element of the same content and restriction with clones of all below it. Throws COvInvalidNamespaceException
  /// when the namespace has been set to one that the restriction does not allow. The default namespace of an element
  /// that was made of a bound object is not cloned.
  CSmartPtr<CElement> Clone() const;

  static void* operator new(std::size_t size);
  static void operator delete(void* object) noexcept;

 protected:
  /// The body of the constructors.
  void Init(const WChar* name, const WChar* ns, const WChar* restriction, const WChar* targetNs);
  /// Replaces name, namespace, text, attributes and child elements by those of a document's element.
  void CopyXmlElement(const CXmlElement* element);

  /// The element's namespace.
  WString GetTargetNamespace() const override { return GetNamespace(); }
  void ToXml_Int(CXmlWriter* writer, bool isRoot, const WChar* ns, const CSerializationContext& context,
                 bool optionalChoice) const override;
  /// Reads `current` itself, not what is in it, and returns its next sibling; returns `current` when the restriction
  /// does not allow its namespace.
  CXmlElement* FromXml_Int(CXmlElement* parent, CXmlElement* current, const CSerializationContext& context,
                           bool optionalChoice) override;
  using CXmlObjectBase::FromXml_Int;
  using CXmlObjectBase::ToXml_Int;

 private:
  friend class CElementCol;

  static CElement* Make(const SharedName& name, const NamespaceRule& rule, WStringView text);
  static CSmartPtr<CXmlObjectBase> Read(const CXmlElement& from, const NamespaceRule& rule);
  static ClassType& Record();

  CElement(const SharedName& name, const NamespaceRule& rule, WStringView text);

  static void* operator new(std::size_t size, ObjectRoom room);
  static void operator delete(void* object, ObjectRoom) noexcept;

  struct Content;

  Content& MakeContent();
  NamespaceRule Rule() const;
  void SetRule(const NamespaceRule& rule);
  CAttributeCol& Attributes();
  CElementCol& Children();
  CAttributeCol* KnownAttributes() const noexcept;
  CElementCol* KnownChildren() const noexcept;
  void Rename(const SharedName& name);
  void ReadContent(const CXmlElement& from);
  void WriteAsUnit(CXmlWriter& writer, bool optionalChoice) const;

  CSmartPtr<const SharedName> m_name;
  CompactText m_text;
  std::unique_ptr<Content> m_content;  // null as long as all in it is at its default
};

}  // namespace OvXmlLib16
