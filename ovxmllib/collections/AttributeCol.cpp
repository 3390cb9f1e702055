#include "ovxmllib/collections/AttributeCol.h"

#include <utility>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/ObjectMemory.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/document/SharedName.h"
#include "ovxmllib/document/XmlAttribute.h"
#include "ovxmllib/document/XmlElement.h"

namespace OvXmlLib16 {

namespace {

// A restriction that names a URI first gives the namespace of new attributes.
WStringView DefaultNamespace(WStringView ns, WStringView restriction) {
  const WStringView token = restriction.substr(0, restriction.find(u' '));
  const bool isUri = token.size() >= 2 && token[0] != u'#' && token[1] != u'#';
  return ns.empty() && isUri ? token : ns;
}

}  // namespace

CAttributeCol::CAttributeCol(const WChar* ns, const WChar* restriction, const WChar* targetNs)
    : CInstanceMonitor(Record()),
      m_namespaceOf(new SharedName({}, DefaultNamespace(ViewOf(ns), ViewOf(restriction)))),
      m_rule(ViewOf(restriction), ViewOf(targetNs)) {}

CAttributeCol::CAttributeCol(const SharedName& name, const NamespaceRule& rule)
    : CInstanceMonitor(Record()), m_namespaceOf(&name), m_rule(rule) {}

CAttributeCol::~CAttributeCol() = default;

void* CAttributeCol::operator new(std::size_t size) { return AllocateObjectApart(size); }
void* CAttributeCol::operator new(std::size_t size, ObjectRoom room) { return AllocateObject(size + room.bytes); }
void CAttributeCol::operator delete(void* object) noexcept { FreeObject(object); }
void CAttributeCol::operator delete(void* object, ObjectRoom) noexcept { FreeObject(object); }

CInstanceMonitor::ClassType& CAttributeCol::Record() {
  static ClassType& record = FindClass(u"CAttributeCol");
  return record;
}

WString CAttributeCol::GetNamespace() const { return m_namespaceOf->namespaceURI; }

CSmartPtr<CAttribute> CAttributeCol::Add(const WChar* name, const WChar* value, const WChar* ns) {
  m_rule.Test(ViewOf(ns));
  return Add(new CAttribute(name, value, ns));
}

CSmartPtr<CAttribute> CAttributeCol::Add(const WChar* name, const WChar* value) {
  return Add(name, value, m_namespaceOf->namespaceURI.c_str());
}

CSmartPtr<CAttribute> CAttributeCol::Add(CAttribute* attribute) {
  Throw_IfPropertyIsNull(attribute, u"attribute");
  CSmartPtr<CAttribute> added(attribute);
  AppendItem(added);
  return added;
}

void CAttributeCol::AddAfter(const CAttribute* existing, CAttribute* attribute) {
  Throw_IfPropertyIsNull(attribute, u"attribute");
  const CSmartPtr<CAttribute> added(attribute);
  AddAfterItem(existing, added);
}

void CAttributeCol::AddBefore(const CAttribute* existing, CAttribute* attribute) {
  Throw_IfPropertyIsNull(attribute, u"attribute");
  const CSmartPtr<CAttribute> added(attribute);
  AddBeforeItem(existing, added);
}

CSmartPtr<CAttribute> CAttributeCol::Item(int index) const { return *COvIterator<CAttribute>(GetNodeAtIndex(index)); }

CSmartPtr<CAttributeCol> CAttributeCol::Clone() const {
  CSmartPtr<CAttributeCol> clone(new (ObjectRoom{}) CAttributeCol(*m_namespaceOf.operator->(), m_rule));
  for (const CAttribute* attribute : *this) clone->AppendItem(attribute->Clone());
  return clone;
}

void CAttributeCol::ToXml_Int(CXmlWriter* writer, bool, const WChar* ns, const CSerializationContext& context,
                              bool optionalChoice) const {
  for (const CAttribute* attribute : *this) {
    attribute->ToXml_Int(writer, /*isRoot=*/false, ns, context, optionalChoice);
  }
}

CXmlElement* CAttributeCol::FromXml_Int(CXmlElement* parent, CXmlElement* child, const CSerializationContext&, bool) {
  Read(*parent);
  return child;
}

void CAttributeCol::Read(const CXmlElement& parent) {
  const CXmlAttribute* attribute = parent.GetFirstAttribute();
  for (; attribute != nullptr; attribute = CXmlElement::GetNextAttribute(*attribute)) {
    if (!m_rule.Allows(attribute->GetNamespaceURI())) {
      throw COvInvalidNamespaceException(
          FormatString(u"Invalid Attribute [%s]. The attributes namespace is Inappropriate.",
                       attribute->GetLocalName()),
          parent.GetXPath());
    }
    auto node = std::make_unique<CNode>();
    node->pItem = CAttribute::Make(SharedName::Of(*attribute), attribute->GetValueView());
    AppendNode(std::move(node));
  }
}

}  // namespace OvXmlLib16
