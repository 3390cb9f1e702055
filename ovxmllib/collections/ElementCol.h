// Elements that no generated class knows.
#pragma once

#include <cstddef>

#include "ovxmllib/binding/Export.h"
#include "ovxmllib/binding/SmartPtr.h"
#include "ovxmllib/collections/Element.h"
#include "ovxmllib/collections/NamespaceRule.h"
#include "ovxmllib/collections/OvIterator.h"
#include "ovxmllib/collections/XmlCollection.h"
#include "ovxmllib/foundation/InstanceMonitor.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16Data {
class CElementInfo;
}  // namespace OvXmlLib16Data

namespace OvXmlLib16 {

class SharedName;
struct ObjectRoom;

/// The child elements of a CElement, or those that a schema lets in by `xs:any`.
///
/// The collection has the schema's namespace constraint, see CElement. Adding tests it, reading ends at the first
/// element that it does not allow. See CXmlCollection for events and life; writing tests the number of elements.
class OVXMLLIB_API CElementCol : public CXmlCollection, public CInstanceMonitor {
 public:
  /// `ns` is the namespace of elements that are added by name alone; empty: there are none such. Null counts as empty,
  /// a `maxOccurs` of -1 stands for any number. Throws COvInvalidNamespaceException when the restriction does not allow
  /// `ns`.
  CElementCol(const WChar* ns, const WChar* restriction, const WChar* targetNs, int minOccurs, int maxOccurs);
  ~CElementCol() override;

  CXmlObjectBase* GetBase() override { return this; }
  using CXmlCollection::GetBase;
  /// The target namespace of the restriction.
  WString GetNamespace() const override { return WString(m_rule.GetTarget()); }

  /// Adds a new element and returns it. Throws COvInvalidNamespaceException, and adds nothing, when the restriction
  /// does not allow its namespace.
  CSmartPtr<CElement> Add(const WChar* name, const WChar* ns);
  /// The same in the collection's namespace. Throws COvInvalidStateException when it has none.
  CSmartPtr<CElement> Add(const WChar* name);
  /// Adds an element itself and returns it. Throws as the others do, and COvInvalidParamException for null.
  CSmartPtr<CElement> Add(CElement* element);
  /// Adds an element itself, its namespace untested, behind or ahead of one that is here; see
  /// CXmlCollection::AddAfterItem.
  void AddAfter(const CElement* existing, CElement* element);
  void AddBefore(const CElement* existing, CElement* element);

  /// The element at `index`, found in linear time. Throws COvInvalidParamException at an index that none has.
  CSmartPtr<CElement> Item(int index) const;
  COvIterator<CElement> begin() const { return COvIterator<CElement>(GetHead()); }
  COvIterator<CElement> end() const { return {}; }

  /// A new collection of the same settings and limits with a clone of each element, and no listeners. Throws
  /// COvInvalidNamespaceException where Add would.
  CSmartPtr<CElementCol> Clone() const;

  static void* operator new(std::size_t size);
  static void operator delete(void* object) noexcept;

 protected:
  /// The same as GetNamespace.
  WString GetTargetNamespace() const override { return GetNamespace(); }
  /// Tests the number of elements and writes them.
  void ToXml_Int(CXmlWriter* writer, bool isRoot, const WChar* ns, const CSerializationContext& context,
                 bool optionalChoice) const override;
  /// Adds `current` and its siblings up to the first whose namespace is not allowed, which is returned, or null.
  CXmlElement* FromXml_Int(CXmlElement* parent, CXmlElement* current, const CSerializationContext& context,
                           bool optionalChoice) override;
  /// Adds `current` and its siblings up to the first that has another name, which is returned, or null. Throws
  /// COvInvalidNamespaceException when the restriction does not allow `ns`.
  virtual CXmlElement* FromXmlLockElementName_Int(WString name, WString ns, CXmlElement* parent, CXmlElement* current,
                                                  const CSerializationContext& context);
  using CXmlObjectBase::FromXml_Int;
  using CXmlObjectBase::ToXml_Int;

 private:
  friend class CElement;
  friend class OvXmlLib16Data::CElementInfo;

  static ClassType& Record();

  /// Elements are added by name alone in the namespace of `name`.
  CElementCol(const SharedName& name, const NamespaceRule& rule, int minOccurs, int maxOccurs);

  CXmlElement* Read(CXmlElement* first);
  void AppendRead(const CXmlElement& from, const NamespaceRule& rule);

  static void* operator new(std::size_t size, ObjectRoom room);
  static void operator delete(void* object, ObjectRoom) noexcept;

  CSmartPtr<const SharedName> m_namespaceOf;
  NamespaceRule m_rule;
};

}  // namespace OvXmlLib16
