#include "ovxmllib/document/XmlAttribute.h"

#include <algorithm>

#include "ovxmllib/document/DocumentTree.h"
#include "ovxmllib/document/WellKnownNamespaces.h"
#include "ovxmllib/document/XmlDocument.h"

namespace OvXmlLib16 {

namespace {

bool IsAboutTheDocument(WStringView ns) { return ns == kXsiNamespace || ns == kXmlnsNamespace; }

}  // namespace

CInstanceMonitor::ClassType& CXmlAttribute::Record() {
  static ClassType& record = FindClass(u"CXmlAttribute");
  return record;
}

const WString& CXmlAttribute::GetValue() const {
  m_pParent->GetDocument()->m_tree->NoteMade();
  return m_value.String();
}

bool CXmlAttribute::IsNamespaceAttribute() const noexcept {
  constexpr WStringView kNames[] = {u"xmlns", u"type", u"schemaLocation", u"noNamespaceSchemaLocation"};
  return IsAboutTheDocument(GetNamespaceURI()) &&
         std::find(std::begin(kNames), std::end(kNames), GetLocalName()) != std::end(kNames);
}

bool CXmlAttribute::IsNilAttribute() const noexcept {
  return IsAboutTheDocument(GetNamespaceURI()) && GetLocalName() == u"nil";
}

WString CXmlAttribute::GetXPath() const {
  WString path = m_pParent->GetXPath() + u'/';
  if (!GetNamespaceURI().empty()) {
    const WString alias = m_pParent->GetDocument()->LookupAliasFromNamespace(GetNamespaceURI().c_str());
    if (!alias.empty()) (path += alias) += u':';
  }
  // Deliberate: the alias stands before the at-sign.
  return (path += u'@') += GetLocalName();
}

}  // namespace OvXmlLib16
