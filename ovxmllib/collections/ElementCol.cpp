#include "ovxmllib/collections/ElementCol.h"

#include <utility>

#include "ovxmllib/binding/ObjectMemory.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/document/SharedName.h"
#include "ovxmllib/document/XmlElement.h"

namespace OvXmlLib16 {

namespace {

// A large tree does not fit the processor's cache: what is needed next comes while this item is written.
inline void FetchAhead(const CNode& node) noexcept {
  constexpr std::size_t kCacheLine = 64;
  const auto* const item = reinterpret_cast<const std::byte*>(static_cast<const CXmlObjectBase*>(node.pItem));
  __builtin_prefetch(item);
  __builtin_prefetch(item + kCacheLine);
  __builtin_prefetch(item + 2 * kCacheLine);
  __builtin_prefetch(node.pNext);
}

}  // namespace

// Decided: the collection keeps the restriction that it is given, see docs/decisions.md.
CElementCol::CElementCol(const WChar* ns, const WChar* restriction, const WChar* targetNs, int minOccurs, int maxOccurs)
    : CXmlCollection(nullptr, nullptr, minOccurs, maxOccurs),
      CInstanceMonitor(Record()),
      m_namespaceOf(new SharedName({}, ViewOf(ns))),
      m_rule(ViewOf(restriction), ViewOf(targetNs)) {
  m_rule.Test(ViewOf(ns));
}

CElementCol::CElementCol(const SharedName& name, const NamespaceRule& rule, int minOccurs, int maxOccurs)
    : CXmlCollection(nullptr, nullptr, minOccurs, maxOccurs),
      CInstanceMonitor(Record()),
      m_namespaceOf(&name),
      m_rule(rule) {}

CElementCol::~CElementCol() = default;

void* CElementCol::operator new(std::size_t size) { return AllocateObjectApart(size); }
void* CElementCol::operator new(std::size_t size, ObjectRoom room) { return AllocateObject(size + room.bytes); }
void CElementCol::operator delete(void* object) noexcept { FreeObject(object); }
void CElementCol::operator delete(void* object, ObjectRoom) noexcept { FreeObject(object); }

CInstanceMonitor::ClassType& CElementCol::Record() {
  static ClassType& record = FindClass(u"CElementCol");
  return record;
}

CSmartPtr<CElement> CElementCol::Add(const WChar* name, const WChar* ns) {
  m_rule.Test(ViewOf(ns));
  CSmartPtr<CElement> added(new CElement(name, ns, u"##any", u""));
  added->SetRule(m_rule);
  AppendItem(added);
  return added;
}

CSmartPtr<CElement> CElementCol::Add(const WChar* name) {
  const WString& ns = m_namespaceOf->namespaceURI;
  if (ns.empty()) throw COvInvalidStateException(u"A Namespace has not been set for this Collection");
  return Add(name, ns.c_str());
}

CSmartPtr<CElement> CElementCol::Add(CElement* element) {
  Throw_IfPropertyIsNull(element, u"element");
  CSmartPtr<CElement> added(element);
  m_rule.Test(element->m_name->namespaceURI);
  AppendItem(added);
  return added;
}

void CElementCol::AddAfter(const CElement* existing, CElement* element) {
  Throw_IfPropertyIsNull(element, u"element");
  const CSmartPtr<CElement> added(element);
  AddAfterItem(existing, added);
}

void CElementCol::AddBefore(const CElement* existing, CElement* element) {
  Throw_IfPropertyIsNull(element, u"element");
  const CSmartPtr<CElement> added(element);
  AddBeforeItem(existing, added);
}

CSmartPtr<CElement> CElementCol::Item(int index) const { return *COvIterator<CElement>(GetNodeAtIndex(index)); }

CSmartPtr<CElementCol> CElementCol::Clone() const {
  CSmartPtr<CElementCol> clone(new (ObjectRoom{})
                                   CElementCol(*m_namespaceOf.operator->(), m_rule, GetMinOccurs(), GetMaxOccurs()));
  for (const CElement* element : *this) clone->Add(element->Clone());
  return clone;
}

void CElementCol::ToXml_Int(CXmlWriter* writer, bool, const WChar* ns, const CSerializationContext& context,
                            bool optionalChoice) const {
  ValidateCount(context);
  for (const CNode* node = GetHead(); node != nullptr; node = node->pNext) {
    if (node->pNext != nullptr) FetchAhead(*node->pNext);
    const auto* const element = static_cast<const CElement*>(static_cast<const CXmlObjectBase*>(node->pItem));
    element->ToXml_Int(writer, /*isRoot=*/false, ns, context, optionalChoice);
  }
}

CXmlElement* CElementCol::FromXml_Int(CXmlElement*, CXmlElement* current, const CSerializationContext&, bool) {
  return Read(current);
}

// The node is made first: so a walk over the tree goes through memory from its start to its end.
void CElementCol::AppendRead(const CXmlElement& from, const NamespaceRule& rule) {
  auto node = std::make_unique<CNode>();
  node->pItem = CElement::Read(from, rule);
  AppendNode(std::move(node));
}

CXmlElement* CElementCol::Read(CXmlElement* first) {
  CXmlElement* current = first;
  for (; current != nullptr && m_rule.Allows(current->GetNamespaceURI()); current = current->GetNextSiblingElement()) {
    AppendRead(*current, m_rule);
  }
  return current;
}

CXmlElement* CElementCol::FromXmlLockElementName_Int(WString name, WString ns, CXmlElement*, CXmlElement* current,
                                                     const CSerializationContext&) {
  const NamespaceRule anyNamespace = NamespaceRule(u"##any", m_rule.GetTarget());
  for (; current != nullptr; current = current->GetNextSiblingElement()) {
    if (current->GetLocalName() != name || current->GetNamespaceURI() != ns) break;
    m_rule.Test(ns);
    AppendRead(*current, anyNamespace);
  }
  return current;
}

}  // namespace OvXmlLib16
