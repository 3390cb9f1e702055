// Attributes that no generated class knows.
#pragma once

#include <cstddef>

#include "ovxmllib/binding/Export.h"
#include "ovxmllib/binding/SmartPtr.h"
#include "ovxmllib/collections/Attribute.h"
#include "ovxmllib/collections/NamespaceRule.h"
#include "ovxmllib/collections/OvIterator.h"
#include "ovxmllib/collections/XmlCollection.h"
#include "ovxmllib/foundation/InstanceMonitor.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

class SharedName;
struct ObjectRoom;

/// The attributes of a CElement, or those that a schema lets in by `xs:anyAttribute`.
///
/// The collection has the schema's namespace constraint: `restriction`, tokens separated by single blanks ("##any",
/// "##other", "##local", "##targetNamespace", URIs), and `targetNs`, which some of them are compared with. Adding and
/// reading test it. That names are unique is left to the caller. See CXmlCollection for events and life.
class OVXMLLIB_API CAttributeCol : public CXmlCollection, public CInstanceMonitor {
 public:
  /// `ns` is the namespace of attributes that are added without one. When it is empty and `restriction` begins with a
  /// URI, it is that URI. Null counts as empty.
  CAttributeCol(const WChar* ns, const WChar* restriction, const WChar* targetNs);
  ~CAttributeCol() override;

  CXmlObjectBase* GetBase() override { return this; }
  using CXmlCollection::GetBase;
  /// The namespace of attributes that are added without one.
  WString GetNamespace() const override;

  /// Adds a new attribute and returns it. Throws COvInvalidNamespaceException, and adds nothing, when the restriction
  /// does not allow its namespace.
  CSmartPtr<CAttribute> Add(const WChar* name, const WChar* value, const WChar* ns);
  CSmartPtr<CAttribute> Add(const WChar* name, const WChar* value = u"");
  /// Adds an attribute as it is, its namespace untested, and returns it. Throws COvInvalidParamException for null.
  CSmartPtr<CAttribute> Add(CAttribute* attribute);
  /// Adds an attribute as it is behind, or ahead of, one that is here; see CXmlCollection::AddAfterItem.
  void AddAfter(const CAttribute* existing, CAttribute* attribute);
  void AddBefore(const CAttribute* existing, CAttribute* attribute);

  /// The attribute at `index`, found in linear time. Throws COvInvalidParamException at an index that none has.
  CSmartPtr<CAttribute> Item(int index) const;
  COvIterator<CAttribute> begin() const { return COvIterator<CAttribute>(GetHead()); }
  COvIterator<CAttribute> end() const { return {}; }

  /// A new collection of the same settings with a clone of each attribute, and no listeners.
  CSmartPtr<CAttributeCol> Clone() const;

  static void* operator new(std::size_t size);
  static void operator delete(void* object) noexcept;

 protected:
  /// The same as GetNamespace.
  WString GetTargetNamespace() const override { return GetNamespace(); }
  /// Writes each attribute on the start tag that is open.
  void ToXml_Int(CXmlWriter* writer, bool isRoot, const WChar* ns, const CSerializationContext& context,
                 bool optionalChoice) const override;
  /// Adds the attributes of `parent` and returns `child`. Throws COvInvalidNamespaceException, with the path of
  /// `parent`, at one that the restriction does not allow.
  CXmlElement* FromXml_Int(CXmlElement* parent, CXmlElement* child, const CSerializationContext& context,
                           bool optionalChoice) override;
  using CXmlObjectBase::FromXml_Int;
  using CXmlObjectBase::ToXml_Int;

 private:
  friend class CElement;

  static ClassType& Record();

  /// Attributes are added in the namespace of `name`.
  CAttributeCol(const SharedName& name, const NamespaceRule& rule);

  void Read(const CXmlElement& parent);

  static void* operator new(std::size_t size, ObjectRoom room);
  static void operator delete(void* object, ObjectRoom) noexcept;

  CSmartPtr<const SharedName> m_namespaceOf;
  NamespaceRule m_rule;
};

}  // namespace OvXmlLib16
