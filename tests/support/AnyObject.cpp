#include "tests/support/AnyObject.h"

#include <algorithm>

#include "ovxmllib/document/XmlAttribute.h"
#include "ovxmllib/document/XmlElement.h"
#include "ovxmllib/document/XmlWriter.h"

namespace OvXmlLib16::test {

namespace {

// As generated code does it, at start-up.
[[maybe_unused]] const bool g_registered = (CXmlObjectBase::Register(16, 1), true);

}  // namespace

bool AnyObject::operator==(const AnyObject& other) const {
  return GetElementName() == other.GetElementName() && ns == other.ns && attributes == other.attributes &&
         text == other.text &&
         std::equal(children.begin(), children.end(), other.children.begin(), other.children.end(),
                    [](const AnyObject* mine, const AnyObject* others) { return *mine == *others; });
}

void AnyObject::AttributesToXml_Int(CXmlWriter* writer, const CSerializationContext&) const {
  for (const Attribute& a : attributes) writer->WriteAttribute(a.name, a.ns, a.value, ItemType_string);
}

void AnyObject::ToXml_Int(CXmlWriter* writer, bool, const WChar* ownNs, const CSerializationContext& context,
                          bool) const {
  writer->StartElement(GetElementName(), ViewOf(ownNs));
  AttributesToXml_Int(writer, context);
  writer->WriteText(text, ItemType_string);
  for (const AnyObject* child : children) child->ToXml_Int(writer, false, child->ns.c_str(), context, false);
  writer->EndElement();
}

CXmlElement* AnyObject::FromXml_Int(CXmlElement* parent, CXmlElement* child, const CSerializationContext& context,
                                    bool) {
  SetElementName(parent->GetLocalName().c_str());
  ns = parent->GetNamespaceURI();
  text = parent->GetText();
  attributes.clear();
  for (const CXmlAttribute* a : parent->GetAttributes()) {
    attributes.push_back({a->GetLocalName(), a->GetNamespaceURI(), a->GetValue()});
  }
  children.clear();
  for (; child != nullptr; child = child->GetNextSiblingElement()) {
    children.push_back(CSmartPtr<AnyObject>(new AnyObject));
    children.back()->FromXml_Int(child, child->GetFirstElement(), context, false);
  }
  return nullptr;
}

}  // namespace OvXmlLib16::test
