#include "ovxmllib/mapping/ClassfactoryBase.h"

#include "ovxmllib/document/WellKnownNamespaces.h"
#include "ovxmllib/document/XmlDocument.h"

namespace OvXmlLib16 {

WString CClassfactoryBase::GetElementType(CXmlElement* element) {
  const WString& type = element->GetAttribute(u"type", kXsiNamespace);
  const std::size_t colon = type.find(u':');
  return colon == WString::npos ? type : type.substr(colon + 1);
}

WString CClassfactoryBase::GetElementTypeNamespaceUri(CXmlElement* element) {
  const WString& type = element->GetAttribute(u"type", kXsiNamespace);
  const std::size_t colon = type.find(u':');
  if (colon == WString::npos) return element->GetNamespaceURI();
  const WString ns = element->GetDocument()->LookupNamespaceFromAlias(type.substr(0, colon).c_str());
  return ns.empty() ? element->GetNamespaceURI() : ns;
}

}  // namespace OvXmlLib16
