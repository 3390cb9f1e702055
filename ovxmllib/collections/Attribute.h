// An attribute that no generated class knows.
#pragma once

#include <cstddef>

#include "ovxmllib/binding/Export.h"
#include "ovxmllib/binding/SmartPtr.h"
#include "ovxmllib/binding/XmlObjectBase.h"
#include "ovxmllib/foundation/CompactText.h"
#include "ovxmllib/foundation/InstanceMonitor.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

class CAttributeCol;
class SharedName;
struct ObjectRoom;

/// One attribute of a CElement or of a wildcard for attributes: a local name, a namespace and a value. Made by the
/// CAttributeCol that it belongs to, and read and written through it. The setters test nothing; null counts as empty.
class OVXMLLIB_API CAttribute : public CXmlObjectBase, public CInstanceMonitor {
 public:
  CAttribute(const CAttribute&) = delete;
  CAttribute& operator=(const CAttribute&) = delete;

  CXmlObjectBase* GetBase() override { return this; }
  using CXmlObjectBase::GetBase;
  ~CAttribute() override;

  /// The namespace URI; empty for an attribute without prefix.
  WString GetNamespace() const override;
  void SetNamespace(const WChar* ns);
  /// The local name.
  WString GetName() const;
  void SetName(const WChar* name);
  /// The value, without the quotes and escapes of a document.
  WString GetValue() const { return m_value.String(); }
  void SetValue(const WChar* value) { m_value.Assign(ViewOf(value)); }

  /// A new attribute with the same name, namespace and value, in no collection.
  CSmartPtr<CAttribute> Clone() const;

  static void operator delete(void* object) noexcept;

 protected:
  CAttribute(const WChar* name, const WChar* value, const WChar* ns);

  /// The attribute's namespace.
  WString GetTargetNamespace() const override { return GetNamespace(); }
  /// Writes the attribute on the start tag that is open.
  void ToXml_Int(CXmlWriter* writer, bool isRoot, const WChar* ns, const CSerializationContext& context,
                 bool optionalChoice) const override;
  /// Throws COvException: attributes are read by their collection.
  CXmlElement* FromXml_Int(CXmlElement* parent, CXmlElement* child, const CSerializationContext& context,
                           bool optionalChoice) override;
  using CXmlObjectBase::FromXml_Int;
  using CXmlObjectBase::ToXml_Int;

  static void* operator new(std::size_t size);

 private:
  friend class CAttributeCol;

  static CAttribute* Make(const SharedName& name, WStringView value);
  static ClassType& Record();

  CAttribute(const SharedName& name, WStringView value);

  static void* operator new(std::size_t size, ObjectRoom room);
  static void operator delete(void* object, ObjectRoom) noexcept;

  CSmartPtr<const SharedName> m_name;
  CompactText m_value;
};

}  // namespace OvXmlLib16
