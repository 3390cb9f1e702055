// The entry point of bound objects for wildcard elements.

#include "ovxmllib/binding/XmlObjectBase.h"
#include "ovxmllib/collections/Element.h"

namespace OvXmlLib16 {

void CXmlObjectBase::FromXmlElement(const CElement* element, const CSerializationContext& context) {
  CheckVersion();
  Throw_IfPropertyIsNull(element, u"element");
  // Deliberate: the given context is for the reading alone.
  const WString xml = element->ToXml(/*header=*/false, /*formatted=*/false, EOLType_LF);
  FromXml(xml.c_str(), context);
}

}  // namespace OvXmlLib16
