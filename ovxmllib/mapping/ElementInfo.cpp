#include "ovxmllib/mapping/ElementInfo.h"

#include <cassert>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/collections/ElementCol.h"
#include "ovxmllib/collections/XmlCollectionBase.h"
#include "ovxmllib/document/XmlAttribute.h"
#include "ovxmllib/mapping/ScratchVariant.h"
#include "ovxmllib/values/ValueChecks.h"

namespace OvXmlLib16Data {

using OvXmlLib16::AreSame;
using OvXmlLib16::COvException;
using OvXmlLib16::COvInvalidParamException;
using OvXmlLib16::COvValidationException;
using OvXmlLib16::CXmlAttribute;
using OvXmlLib16::FormatString;
using OvXmlLib16::ItemType_string;
using OvXmlLib16::ViewOf;

CElementInfo::CElementInfo(const WChar* name, const WChar* ns, int propertyIndex)
    : m_name(ViewOf(name), ViewOf(ns)), m_propertyIndex(propertyIndex) {}

CElementInfo::CElementInfo(const WChar* name, const WChar* ns, int propertyIndex, bool nillable,
                           ValueToText valueToText, TextToValue textToValue, const WChar* defaultValue)
    : CElementInfo(name, ns, propertyIndex) {
  m_nillable = nillable;
  m_valueToText = valueToText;
  m_textToValue = textToValue;
  m_defaultValue = ViewOf(defaultValue);
}

CElementInfo::CElementInfo(const WChar* name, const WChar* ns, int propertyIndex, bool nillable, ItemType itemType,
                           const WChar* formatOverride, CWhitespaceUtils::WhitespaceRule whitespaceRule,
                           const CPrimitiveRestrictions& restrictions, const WChar* defaultValue)
    : CElementInfo(name, ns, propertyIndex) {
  m_nillable = nillable;
  m_itemType = itemType;
  m_formatOverride = ViewOf(formatOverride);
  m_whitespaceRule = whitespaceRule;
  m_restrictions = restrictions;
  m_defaultValue = ViewOf(defaultValue);
  m_isPrimitive = true;
  m_facetShortcut = OvXmlLib16::FacetShortcut(itemType, restrictions);
  // The text of an element has no U+000D, which is all that Preserve looks for.
  m_takesTextAsItIs = itemType == ItemType_string && (whitespaceRule == CWhitespaceUtils::WhitespaceRule_None ||
                                                      whitespaceRule == CWhitespaceUtils::WhitespaceRule_Preserve);
}

bool CElementInfo::Validate(const CSerializationContext&, const CXmlGeneratedClass*, bool, bool) const {
  throw COvException(u"Not implemented, should never be called");
}

void CElementInfo::PseudoChildAttributeToXml(const CSerializationContext&, const CXmlGeneratedClass*,
                                             CXmlWriter*) const {}

bool CElementInfo::MayLeaveChoiceEmpty(const CXmlGeneratedClass*) const { return false; }

void CElementInfo::CheckRestriction(const OvVariant& value) const {
  if (!m_isPrimitive) throw COvException(u"Cannot CheckRestriction for type: " + value.GetType());
  OvXmlLib16::CheckPrimitiveValue(GetElementName().c_str(), value, m_itemType, m_restrictions);
}

void CElementInfo::ThrowGetFailed(const COvException& cause) const {
  throw COvValidationException(FormatString(u"Failed to get the property value for [%s].", GetElementName()), {},
                               cause);
}

void CElementInfo::ThrowSetFailed(const COvException& cause, const CXmlElement& element) {
  throw COvValidationException(u"Failed to set the property value.", element.GetXPath(), cause);
}

CSmartPtr<CXmlObjectBase> CElementInfo::GetObject(const CXmlGeneratedClass* object) const {
  const ScratchVariant scratch;
  ReadProperty(object, *scratch);
  return (*scratch).TakeXmlObject();
}

void CElementInfo::SetObject(CXmlGeneratedClass* object, CXmlObjectBase* held, const CXmlElement& element) const {
  const ScratchVariant scratch;
  (*scratch).SetXmlObject(held);
  InvokePropertySet(object, *scratch, element);
}

// A reader takes the default for an empty element.
void CElementInfo::WriteDefault(const CSerializationContext& context, CXmlWriter* writer, WStringView text,
                                ItemType type) const {
  writer->StartElement(GetElementName(), GetElementNamespace());
  if (context.GetWriteDefaultElementValues()) writer->WriteText(text, type);
  writer->EndElement();
}

void CElementInfo::WriteNil(CXmlWriter* writer) const {
  writer->StartElement(GetElementName(), GetElementNamespace());
  writer->WriteXsiNil();
  writer->EndElement();
}

bool CElementInfo::ElementToXmlPrim(const CSerializationContext& context, const CXmlGeneratedClass* object,
                                    CXmlWriter* writer) const {
  const ScratchVariant scratch;
  OvVariant& value = *scratch;
  ReadProperty(object, value);
  if (value.IsNil()) {
    WriteNil(writer);
    return true;
  }
  if (!value.IsValid()) return false;
  const WStringView text = scratch.Print(m_formatOverride);
  if (IsDefault(text)) {
    WriteDefault(context, writer, text, value.GetTypeAsEnum());
    return true;
  }
  CheckFacets(value);
  writer->WritePreparedElement(m_name, text, value.GetTypeAsEnum());
  return true;
}

bool CElementInfo::ElementToXmlEnum(const CSerializationContext& context, const CXmlGeneratedClass* object,
                                    CXmlWriter* writer, ValueToText valueToText) const {
  OvVariant value;
  ReadProperty(object, value);
  if (value.IsNil()) {
    WriteNil(writer);
    return true;
  }
  if (!value.IsValid()) return false;
  const WStringView text = ViewOf(valueToText(value.GetI4()));
  IsDefault(text) ? WriteDefault(context, writer, text, ItemType_string)
                  : writer->WritePreparedElement(m_name, text, ItemType_string);
  return true;
}

bool CElementInfo::ElementToXmlCls(const CSerializationContext& context, const CXmlGeneratedClass* object,
                                   CXmlWriter* writer, bool optionalChoice) const {
  const CSmartPtr<CXmlObjectBase> held = GetObject(object);
  if (held == nullptr) return false;
  WriteObject(*held, context, writer, optionalChoice);
  return true;
}

void CElementInfo::WriteObject(const CXmlObjectBase& object, const CSerializationContext& context, CXmlWriter* writer,
                               bool optionalChoice) const {
  const auto* const before = writer->Announce(&m_name);
  object.ToXml_Int(writer, /*isRoot=*/false, GetElementNamespace().c_str(), context, optionalChoice);
  writer->Announce(before);
}

bool CElementInfo::ElementToXmlCol(const CSerializationContext& context, const CXmlGeneratedClass* object,
                                   CXmlWriter* writer) const {
  OvVariant value;
  ReadProperty(object, value);
  const CSmartPtr<OvXmlLib16::CXmlCollectionBase> collection = value.GetXmlCollection();
  assert(collection != nullptr && "spCol != 0");
  if (collection->GetCount() <= 0) return false;
  // What a format with arrays needs to know.
  writer->SetArrayState(1);
  WriteObject(*collection->GetBase(), context, writer, /*optionalChoice=*/false);
  writer->SetArrayState(3);
  return true;
}

// Whether the element says that it is nil. Such an element may have no other attributes than that.
bool CElementInfo::ReadNil(const CSerializationContext& context, const CXmlElement& element) const {
  bool isNil = false;
  for (const CXmlAttribute* a = element.GetFirstAttribute(); a != nullptr; a = CXmlElement::GetNextAttribute(*a)) {
    if (!a->IsNilAttribute()) {
      if (context.GetIgnoreUnknownAttributes()) continue;
      throw COvValidationException(u"Unexpected Attribute found.", a->GetXPath());
    }
    const WStringView value = a->GetValueView();
    if (value == u"false" || value == u"0") continue;
    if (!m_nillable) {
      throw COvValidationException(u"Invalid use of 'nil' attribute in non-nillable element.", element.GetXPath());
    }
    if (value != u"true" && value != u"1") {
      throw COvValidationException(FormatString(u"Unexpected Value [%s] for 'nil' Attribute found.", value),
                                   a->GetXPath());
    }
    isNil = true;
  }
  return isNil;
}

template <class Convert>
void CElementInfo::ReadValue(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement** child,
                             Convert&& convert) {
  CXmlElement& element = **child;
  const ScratchVariant scratch;
  OvVariant& value = *scratch;
  if (element.GetFirstAttribute() != nullptr && ReadNil(context, element)) {
    // Decided: the setter is told, so that the property can report that it is nil; docs/decisions.md, Mapping.
    value.SetNil();
  } else {
    convert(value, element);
  }
  InvokePropertySet(object, value, element);
  *child = element.GetNextSiblingElement();
}

void CElementInfo::ElementFromXmlPrim(const CSerializationContext& context, CXmlGeneratedClass* object,
                                      CXmlElement** child) {
  ReadValue(context, object, child, [&](OvVariant& value, const CXmlElement& element) {
    TakeText(value, element);
    if (context.GetValidateOnRead()) CheckFacets(value);
  });
}

void CElementInfo::ElementFromXmlEnum(const CSerializationContext& context, CXmlGeneratedClass* object,
                                      CXmlElement** child) {
  ReadValue(context, object, child, [&](OvVariant& value, const CXmlElement& element) {
    const WStringView text = element.GetTextView();
    value.SetI4(m_textToValue(WString(text.empty() ? WStringView(m_defaultValue) : text).c_str()));
  });
}

void CElementInfo::ReadOwnElement(CXmlObjectBase* held, CXmlElement** child, const CSerializationContext& context,
                                  bool optionalChoice) {
  CXmlElement* const element = *child;
  FromXml_Int(held, element, element->GetFirstElement(), context, optionalChoice);
  *child = element->GetNextSiblingElement();
}

CXmlElement* CElementInfo::FromXmlLockElementName_Int(OvXmlLib16::CElementCol& collection, const WString& name,
                                                      CXmlElement* parent, CXmlElement* child,
                                                      const CSerializationContext& context) {
  const WString ns = child == nullptr ? WString() : child->GetNamespaceURI();
  return collection.FromXmlLockElementName_Int(name, ns, parent, child, context);
}

CXmlElement* CElementInfo::FromXml_Int(CXmlObjectBase* object, CXmlElement* parent, CXmlElement* child,
                                       const CSerializationContext& context, bool optionalChoice) {
  return object->FromXml_Int(parent, child, context, optionalChoice);
}

void CElementInfo::AttributesToXml_Int(const CXmlObjectBase* object, CXmlWriter* writer,
                                       const CSerializationContext& context) {
  object->AttributesToXml_Int(writer, context);
}

WString CElementInfo::GetAnyDefaultNamespace(const WChar* list, const WChar* ns, const WChar* target) {
  const WStringView all = ViewOf(list);
  const bool isListOfTokens = all.size() >= 3 && all.starts_with(u"##");
  const WStringView token = isListOfTokens ? all.substr(0, all.find(u' ')) : all;
  if (token == u"##any") return WString(ViewOf(ns));
  if (token == u"##targetNamespace") return WString(ViewOf(target));
  // Deliberate: there has to be some namespace, and this text is it.
  if (token == u"##other") return ViewOf(ns).empty() ? u"DefaultNamespace" : u"";
  return {};
}

void CElementInfo::ThrowPropertyMissing() const {
  throw COvInvalidParamException(FormatString(u"The Property [%s] is mandatory, it may not be NULL", GetElementName()));
}

void CElementInfo::ThrowMandatoryMissing() const {
  throw COvValidationException(FormatString(u"Failed to find the mandatory element [%s].", GetElementName()), {});
}

void CElementInfo::ThrowChildMissing(const CXmlElement& parent) const {
  throw COvValidationException(FormatString(u"Failed to find the required child element [%s].", GetElementName()),
                               parent.GetXPath());
}

}  // namespace OvXmlLib16Data
