// What generated class factories ask of an element.
#pragma once

#include "ovxmllib/binding/Export.h"
#include "ovxmllib/document/XmlElement.h"

namespace OvXmlLib16 {

/// The base of the generated factories that make an object of the class that fits an element.
class OVXMLLIB_API CClassfactoryBase {
 public:
  virtual ~CClassfactoryBase() = default;

 protected:
  /// The type that the element says it has: the value of its `xsi:type` without a prefix; empty when it says none.
  static WString GetElementType(CXmlElement* element);
  /// The namespace of that type: of its prefix, or the element's own when it has none or one that is not declared.
  static WString GetElementTypeNamespaceUri(CXmlElement* element);
};

}  // namespace OvXmlLib16
