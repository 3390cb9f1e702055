// A bound class for any document.
#pragma once

#include <vector>

#include "ovxmllib/binding/SmartPtr.h"
#include "ovxmllib/binding/XmlObjectBase.h"

namespace OvXmlLib16::test {

/// Holds an element tree of any shape and writes it back, each text ahead of the child elements.
class AnyObject : public CXmlObjectBase {
 public:
  struct Attribute {
    WString name, ns, value;
    bool operator==(const Attribute&) const = default;
  };

  CXmlObjectBase* GetBase() override { return this; }
  WString GetNamespace() const override { return ns; }
  using CXmlObjectBase::GetElementName;
  using CXmlObjectBase::SetElementName;

  bool operator==(const AnyObject& other) const;

  WString ns;
  std::vector<Attribute> attributes;
  WString text;
  std::vector<CSmartPtr<AnyObject>> children;

 protected:
  WString GetTargetNamespace() const override { return ns; }
  void AttributesToXml_Int(CXmlWriter* writer, const CSerializationContext& context) const override;
  void ToXml_Int(CXmlWriter* writer, bool isRoot, const WChar* ownNs, const CSerializationContext& context,
                 bool optionalChoice) const override;
  CXmlElement* FromXml_Int(CXmlElement* parent, CXmlElement* child, const CSerializationContext& context,
                           bool optionalChoice) override;
};

}  // namespace OvXmlLib16::test
