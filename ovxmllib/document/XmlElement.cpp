#include "ovxmllib/document/XmlElement.h"

#include <memory>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/document/DocumentTree.h"
#include "ovxmllib/document/XmlAttribute.h"
#include "ovxmllib/document/XmlDocument.h"

namespace OvXmlLib16 {

CInstanceMonitor::ClassType& CXmlElement::Record() {
  static ClassType& record = FindClass(u"CXmlElement");
  return record;
}

const CXmlElement::Made& CXmlElement::GetMade() const {
  GetDocument()->m_tree->NoteMade();
  return MadeOnce(m_made, [] { return std::make_unique<const Made>(); });
}

const WString& CXmlElement::GetText() const {
  return MadeOnce(GetMade().text, [this] { return std::make_unique<const WString>(GetTextView()); });
}

const CXmlAttribute* CXmlElement::GetNextAttribute(const CXmlAttribute& attribute) noexcept {
  return attribute.m_pNext;
}

const std::vector<CXmlAttribute*>& CXmlElement::GetAttributes() const {
  return MadeOnce(GetMade().attributes, [this] {
    auto list = std::make_unique<AttributeList>();
    for (CXmlAttribute* a = m_pFirstAttribute; a != nullptr; a = a->m_pNext) list->push_back(a);
    return list;
  });
}

const WString& CXmlElement::GetAttribute(WStringView localName, WStringView ns) const {
  static const WString none;
  for (const CXmlAttribute* a = m_pFirstAttribute; a != nullptr; a = a->m_pNext) {
    if (a->GetLocalName() == localName && a->GetNamespaceURI() == ns) return a->GetValue();
  }
  return none;
}

void CXmlElement::DropMade() noexcept {
  if (const Made* const made = m_made.load(std::memory_order_relaxed)) {
    OvXmlLib16::DropMade(made->text);
    OvXmlLib16::DropMade(made->attributes);
    OvXmlLib16::DropMade(m_made);
  }
  for (CXmlAttribute* a = m_pFirstAttribute; a != nullptr; a = a->m_pNext) a->m_value.Drop();
}

WString CXmlElement::GetQName(const AliasIndex& aliases) const {
  const auto alias = aliases.find(GetNamespaceURI());
  if (alias == aliases.end() || alias->second.empty()) return GetLocalName();
  return WString(alias->second) + u':' + GetLocalName();
}

WString CXmlElement::GetNameWithPredicate(const AliasIndex& aliases) const {
  WString name = GetQName(aliases);
  if (m_pParent == nullptr) return name;
  std::size_t position = 0;
  std::size_t count = 0;
  for (const CXmlElement* child = m_pParent->m_pFirstChild; child != nullptr; child = child->m_pNextSibling) {
    // Equal names are one object; only others can be alike by their aliases alone.
    const bool alike =
        &child->Name() == &Name() || (child->GetLocalName() == GetLocalName() && child->GetQName(aliases) == name);
    if (alike) ++count;
    if (child == this) position = count;
  }
  if (count > 1) name += FormatString(u"[%d]", position);
  return name;
}

WString CXmlElement::GetXPath() const {
  const AliasIndex aliases = GetDocument()->m_tree->AliasesByNamespace();
  std::vector<const CXmlElement*> chain;
  for (const CXmlElement* element = this; element != nullptr; element = element->m_pParent) chain.push_back(element);
  WString path;
  for (auto element = chain.rbegin(); element != chain.rend(); ++element) {
    (path += u'/') += (*element)->GetNameWithPredicate(aliases);
  }
  return path;
}

}  // namespace OvXmlLib16
