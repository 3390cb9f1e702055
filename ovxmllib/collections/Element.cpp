#include "ovxmllib/collections/Element.h"

#include <algorithm>
#include <array>
#include <cassert>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/ObjectMemory.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/collections/AttributeCol.h"
#include "ovxmllib/collections/ElementCol.h"
#include "ovxmllib/document/SharedName.h"
#include "ovxmllib/document/XmlAttribute.h"
#include "ovxmllib/document/XmlDocument.h"
#include "ovxmllib/document/XmlElement.h"
#include "ovxmllib/document/XmlTextWriter.h"

namespace OvXmlLib16 {

namespace {

void RequireValue(const WChar* text, const WChar* message) {
  if (text == nullptr) throw COvInvalidNamespaceException(message, WString());
}

// The namespace, unless it is a word that stands for several.
const WChar* RequireConcrete(const WChar* ns) {
  constexpr std::array<WStringView, 4> kWords = {u"##any", u"##other", u"##local", u"##targetNamespace"};
  if (std::find(kWords.begin(), kWords.end(), ViewOf(ns)) == kWords.end()) return ns;
  throw COvInvalidNamespaceException(FormatString(u"Invalid Namespace [%s].", ns), WString());
}

}  // namespace

// What most elements do without.
struct CElement::Content {
  static void* operator new(std::size_t size) { return AllocateObject(size); }
  static void operator delete(void* content) noexcept { FreeObject(content); }

  NamespaceRule rule;
  CSmartPtr<CAttributeCol> attributes;  // made when somebody asks, as are the children
  CSmartPtr<CElementCol> children;
  CompactText defaultNamespace;
};

CElement::CElement(const WChar* name) : CInstanceMonitor(Record()) { Init(name, u"", u"##any", u""); }

CElement::CElement(const WChar* name, const WChar* ns) : CInstanceMonitor(Record()) {
  RequireConcrete(ns);
  Init(name, ns, ns, u"");
}

CElement::CElement(const WChar* name, const WChar* ns, const WChar* restriction, const WChar* targetNs)
    : CInstanceMonitor(Record()) {
  Init(name, ns, restriction, targetNs);
}

CElement::CElement(CXmlObjectBase* object, const WChar* defaultNs) : CInstanceMonitor(Record()) {
  Throw_IfPropertyIsNull(object, u"object");
  Init(u"", u"", u"##any", u"");
  MakeContent().defaultNamespace.Assign(ViewOf(defaultNs));
  CSerializationContext context;
  context.SetDefaultNamespaceURI(defaultNs);
  const CBinaryData xml = object->ToXmlStream(/*header=*/false, /*formatted=*/false, XmlEncoding_UTF8, EOLType_LF,
                                              context, CompressionType_None);
  CXmlDocument document(context);
  document.LoadXmlStream(xml.GetData(), xml.GetLength());
  CopyXmlElement(document.GetDocumentElement());
}

// For memory with room behind the object.
CElement::CElement(const SharedName& name, const NamespaceRule& rule, WStringView text)
    : CInstanceMonitor(Record()), m_name(&name), m_text(text, this + 1) {
  SetReadsOwnElement();
  SetRule(rule);
}

CElement::~CElement() = default;

CInstanceMonitor::ClassType& CElement::Record() {
  static ClassType& record = FindClass(u"CElement");
  return record;
}

void CElement::Init(const WChar* name, const WChar* ns, const WChar* restriction, const WChar* targetNs) {
  RequireValue(name, u"Element Name must have a value");
  RequireValue(ns, u"Element Namespace must have a value");
  RequireValue(restriction, u"Namespace Restriction must have a value");
  RequireValue(targetNs, u"Target Namespace must have a value");
  SetReadsOwnElement();
  const NamespaceRule rule(restriction, targetNs);
  rule.Test(ns);
  SetRule(rule);
  m_name = new SharedName(name, ns);
}

CElement* CElement::Make(const SharedName& name, const NamespaceRule& rule, WStringView text) {
  return new (ObjectRoom{CompactText::RoomFor(text)}) CElement(name, rule, text);
}

void* CElement::operator new(std::size_t size) { return AllocateObjectApart(size); }
void* CElement::operator new(std::size_t size, ObjectRoom room) { return AllocateObject(size + room.bytes); }
void CElement::operator delete(void* object) noexcept { FreeObject(object); }
void CElement::operator delete(void* object, ObjectRoom) noexcept { FreeObject(object); }

WString CElement::GetName() const { return m_name->localName; }
WString CElement::GetNamespace() const { return m_name->namespaceURI; }

void CElement::SetName(const WChar* name) { m_name = new SharedName(ViewOf(name), m_name->namespaceURI); }

void CElement::SetNamespace(const WChar* ns) {
  const SharedName::Pointer name(new SharedName(m_name->localName, ViewOf(ns)));
  Rename(*name.operator->());
}

// The collections have the namespace that the element was made with, so they are made before it goes.
void CElement::Rename(const SharedName& name) {
  if (name.namespaceURI != m_name->namespaceURI) {
    Attributes();
    Children();
  }
  m_name = &name;
}

CElement::Content& CElement::MakeContent() {
  if (m_content == nullptr) m_content = std::make_unique<Content>();
  return *m_content;
}

NamespaceRule CElement::Rule() const { return m_content == nullptr ? NamespaceRule() : m_content->rule; }

void CElement::SetRule(const NamespaceRule& rule) {
  if (m_content != nullptr || !rule.IsDefault()) MakeContent().rule = rule;
}

CAttributeCol& CElement::Attributes() {
  Content& content = MakeContent();
  if (content.attributes == nullptr) {
    content.attributes = new (ObjectRoom{}) CAttributeCol(*m_name.operator->(), content.rule.ForContent());
  }
  return *content.attributes.operator->();
}

CElementCol& CElement::Children() {
  Content& content = MakeContent();
  if (content.children == nullptr) {
    content.children = new (ObjectRoom{})
        CElementCol(*m_name.operator->(), content.rule.ForContent(), /*minOccurs=*/0, /*maxOccurs=*/-1);
  }
  return *content.children.operator->();
}

inline CAttributeCol* CElement::KnownAttributes() const noexcept {
  return m_content == nullptr ? nullptr : static_cast<CAttributeCol*>(m_content->attributes);
}

inline CElementCol* CElement::KnownChildren() const noexcept {
  return m_content == nullptr ? nullptr : static_cast<CElementCol*>(m_content->children);
}

CSmartPtr<CAttributeCol> CElement::GetAttributes() { return &Attributes(); }
CSmartPtr<CElementCol> CElement::GetChildElements() { return &Children(); }

void CElement::SetNamespaceRestrictions(const WChar* restriction, const WChar* targetNs) const {
  try {
    TestNamespace(m_name->namespaceURI.c_str(), restriction, targetNs);
  } catch (const COvInvalidNamespaceException& exception) {
    throw COvInvalidNamespaceException(
        FormatString(u"The namespace %s in the class %s is invalid against restriction %s", m_name->namespaceURI,
                     m_name->localName, ViewOf(restriction)),
        WString(), exception);
  }
  if (const CAttributeCol* attributes = KnownAttributes()) {
    for (const CAttribute* attribute : *attributes) {
      TestNamespace(attribute->GetNamespace().c_str(), restriction, targetNs);
    }
  }
  const CElementCol* const children = KnownChildren();
  if (children == nullptr) return;
  for (const CElement* child : *children) child->SetNamespaceRestrictions(restriction, targetNs);
}

CSmartPtr<CElement> CElement::Clone() const {
  const NamespaceRule rule = Rule();
  rule.Test(m_name->namespaceURI);
  CSmartPtr<CElement> clone(Make(*m_name.operator->(), rule, m_text.View()));
  if (const CAttributeCol* attributes = KnownAttributes()) clone->MakeContent().attributes = attributes->Clone();
  if (const CElementCol* children = KnownChildren()) clone->MakeContent().children = children->Clone();
  return clone;
}

void CElement::FromXml(const WChar* xml) {
  CXmlDocument document;
  document.LoadXml(xml);
  CXmlElement* const root = document.GetDocumentElement();
  FromXml_Int(root, root, CSerializationContext::GetDefaultContext(), /*optionalChoice=*/false);
}

void CElement::FromXml(const WChar* text, const CSerializationContext& context) {
  CXmlObjectBase::FromXml(text, context);
}

CXmlElement* CElement::FromXml_Int(CXmlElement*, CXmlElement* current, const CSerializationContext&, bool) {
  if (current == nullptr || !Rule().Allows(current->GetNamespaceURI())) return current;
  // Deliberate: attributes and child elements come behind those that are here.
  ReadContent(*current);
  m_text.Assign(current->GetTextView());
  Rename(SharedName::Of(*current));
  return current->GetNextSiblingElement();
}

CSmartPtr<CXmlObjectBase> CElement::Read(const CXmlElement& from, const NamespaceRule& rule) {
  CElement* const element = Make(SharedName::Of(from), rule, from.GetTextView());
  CSmartPtr<CXmlObjectBase> held(element);
  element->ReadContent(from);
  return held;
}

void CElement::ReadContent(const CXmlElement& from) {
  if (from.GetFirstAttribute() != nullptr) Attributes().Read(from);
  if (from.GetFirstElement() == nullptr) return;
  const CXmlElement* const rest = Children().Read(from.GetFirstElement());
  if (rest == nullptr) return;
  throw COvValidationException(FormatString(u"Invalid Element [%s] found.", from.GetLocalName()), from.GetXPath());
}

void CElement::CopyXmlElement(const CXmlElement* element) {
  Attributes().Clear();
  Children().Clear();
  m_text.Assign(element->GetTextView());
  Rename(SharedName::Of(*element));
  Attributes().Read(*element);
  const CXmlAttribute* attribute = element->GetFirstAttribute();
  for (; attribute != nullptr; attribute = CXmlElement::GetNextAttribute(*attribute)) {
    if (attribute->GetLocalName() == u"xmlns") MakeContent().defaultNamespace.Assign(attribute->GetValueView());
  }
  for (const CXmlElement* child = element->GetFirstElement(); child != nullptr;
       child = child->GetNextSiblingElement()) {
    const CSmartPtr<CElement> copy(new CElement(child->GetLocalName().c_str()));
    copy->CopyXmlElement(child);
    Children().Add(copy);
  }
}

void CElement::ToXml_Int(CXmlWriter* writer, bool, const WChar* ns, const CSerializationContext& context,
                         bool optionalChoice) const {
  if (m_content != nullptr && !m_content->defaultNamespace.IsEmpty()) return WriteAsUnit(*writer, optionalChoice);
  constexpr bool kIsRoot = false;
  const CAttributeCol* const attributes = KnownAttributes();
  const CElementCol* const children = KnownChildren();
  __builtin_prefetch(attributes);
  __builtin_prefetch(children);
  if (attributes == nullptr && children == nullptr) {
    return writer->WriteTextElement(m_name->localName, m_name->namespaceURI, m_text.View(), ItemType_string);
  }
  writer->StartElement(m_name->localName, m_name->namespaceURI);
  if (attributes != nullptr) attributes->ToXml_Int(writer, kIsRoot, ns, context, optionalChoice);
  if (children != nullptr) children->ToXml_Int(writer, kIsRoot, ns, context, optionalChoice);
  writer->WriteText(m_text.View(), ItemType_string);
  writer->EndElement();
}

// Deliberate: attributes are not written here.
void CElement::WriteAsUnit(CXmlWriter& writer, bool optionalChoice) const {
  auto* const outer = dynamic_cast<CXmlTextWriter*>(&writer);
  assert(outer != nullptr && "pXmlTextOut != 0");
  if (outer == nullptr) throw COvInvalidStateException(u"pXmlTextOut != 0");
  const WString defaultNamespace = m_content->defaultNamespace.String();
  CSerializationContext context;
  context.SetDefaultNamespaceURI(defaultNamespace.c_str());
  CTextStream stream;
  CXmlTextWriter inner(&stream);
  inner.Open();
  inner.SetEOLType(outer->GetEOLType());
  inner.SetFormatted(outer->GetFormatted());
  inner.SetDefaultNamespace(defaultNamespace);
  inner.StartElement(m_name->localName, m_name->namespaceURI);
  if (const CElementCol* children = KnownChildren()) {
    children->ToXml_Int(&inner, /*isRoot=*/false, m_name->namespaceURI.c_str(), context, optionalChoice);
  }
  inner.WriteText(m_text.View(), ItemType_string);
  inner.EndElement();
  inner.Close();
  outer->CloseStartTag();
  outer->WriteRawLine(stream.GetText());
}

}  // namespace OvXmlLib16
