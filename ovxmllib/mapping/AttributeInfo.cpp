#include "ovxmllib/mapping/AttributeInfo.h"

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/collections/AttributeCol.h"
#include "ovxmllib/mapping/ScratchVariant.h"
#include "ovxmllib/values/NamespaceList.h"
#include "ovxmllib/values/ValueChecks.h"

namespace OvXmlLib16Data {

using OvXmlLib16::CAttributeCol;
using OvXmlLib16::COvException;
using OvXmlLib16::COvValidationException;
using OvXmlLib16::FormatString;
using OvXmlLib16::ItemType_string;
using OvXmlLib16::ViewOf;

CAttributeInfo::CAttributeInfo(const WChar* name, const WChar* ns, int propertyIndex, bool optional,
                               const WChar* defaultValue, bool isPrimitive)
    : m_name(ViewOf(name), ViewOf(ns)),
      m_propertyIndex(propertyIndex),
      m_optional(optional),
      m_isPrimitive(isPrimitive),
      m_defaultValue(ViewOf(defaultValue)) {}

bool CAttributeInfo::IsThisAttribute(const CSerializationContext& context, const CXmlAttribute* attribute) const {
  return attribute != nullptr && attribute->IsNamed(m_name, context.GetIgnoreNamespaces());
}

void CAttributeInfo::ThrowGetFailed(const COvException& cause) const {
  throw COvValidationException(FormatString(u"Failed to get the property value for [%s].", GetName()), {}, cause);
}

void CAttributeInfo::ThrowSetFailed(const COvException& cause, const CXmlAttribute& attribute) const {
  throw COvValidationException(FormatString(u"Failed to set the property value [%s].", GetName()), attribute.GetXPath(),
                               cause);
}

void CAttributeInfo::ToXml_Int(const CXmlObjectBase* object, CXmlWriter* writer, bool isRoot, const WChar* ns,
                               const CSerializationContext& context) {
  object->ToXml_Int(writer, isRoot, ns, context, /*optionalChoice=*/false);
}

WString CAttributeInfo::GetTargetNamespace(const CXmlObjectBase* object) { return object->GetTargetNamespace(); }

void CAttributeInfo::TestNamespace(const WString& ns, const WString& allowed, const WString& target) {
  OvXmlLib16::TestNamespace(ns, allowed, target);
}

bool CAttributeInfo::IsNamespaceValid(const WString& ns, const WString& allowed, const WString& target) {
  return OvXmlLib16::IsNamespaceInList(ns, allowed, target);
}

void CAttributeInfo::ThrowIfMissing(bool seen) const {
  if (seen || m_optional) return;
  throw COvValidationException(FormatString(u"Failed to find the required Attribute [%s].", GetName()), {});
}

CAttributeInfoPrimitive::CAttributeInfoPrimitive(const WChar* name, const WChar* ns, int propertyIndex, bool optional,
                                                 ItemType itemType, const WChar* formatOverride,
                                                 CWhitespaceUtils::WhitespaceRule whitespaceRule,
                                                 const CPrimitiveRestrictions& restrictions, const WChar* defaultValue)
    : CAttributeInfo(name, ns, propertyIndex, optional, defaultValue, /*isPrimitive=*/true),
      m_restrictions(restrictions),
      m_itemType(itemType),
      m_formatOverride(ViewOf(formatOverride)),
      m_whitespaceRule(whitespaceRule),
      m_facetShortcut(itemType, restrictions) {}

void CAttributeInfoPrimitive::AttributeToXml(const CSerializationContext& context, const CXmlGeneratedClass* object,
                                             CXmlWriter* writer) const {
  const ScratchVariant scratch;
  OvVariant& value = *scratch;
  ReadProperty(object, value);
  if (IsOptional() && !value.IsValid()) return;
  const WStringView text = scratch.Print(m_formatOverride);
  if (IsLeftOut(context, text)) return;
  if (!m_facetShortcut.SurelyPasses(value)) CheckRestriction(value);
  writer->WritePreparedAttribute(GetPreparedName(), text, value.GetTypeAsEnum());
}

// Deliberate: the namespace counts even where the context ignores namespaces.
bool CAttributeInfoPrimitive::AttributeFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                                               CXmlAttribute* attribute) {
  if (!attribute->IsNamed(GetPreparedName(), /*inAnyNamespace=*/false)) return false;
  const ScratchVariant scratch;
  ReadValue(context, object, *attribute, *scratch);
  return true;
}

void CAttributeInfoPrimitive::Validate(const CSerializationContext&, bool seen) const { ThrowIfMissing(seen); }

void CAttributeInfoPrimitive::CheckRestriction(const OvVariant& value) const {
  OvXmlLib16::CheckPrimitiveValue(GetName().c_str(), value, m_itemType, m_restrictions);
}

CAttributeInfoEnum::CAttributeInfoEnum(const WChar* name, const WChar* ns, int propertyIndex, bool optional,
                                       ValueToText valueToText, TextToValue textToValue, const WChar* defaultValue)
    : CAttributeInfo(name, ns, propertyIndex, optional, defaultValue),
      m_textToValue(textToValue),
      m_valueToText(valueToText) {}

void CAttributeInfoEnum::AttributeToXml(const CSerializationContext& context, const CXmlGeneratedClass* object,
                                        CXmlWriter* writer) const {
  OvVariant value;
  ReadProperty(object, value);
  if (IsOptional() && !value.IsValid()) return;
  const WStringView text = ViewOf(m_valueToText(value.GetI4()));
  if (IsLeftOut(context, text)) return;
  writer->WritePreparedAttribute(GetPreparedName(), text, ItemType_string);
}

bool CAttributeInfoEnum::AttributeFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                                          CXmlAttribute* attribute) {
  if (!IsThisAttribute(context, attribute)) return false;
  const ScratchVariant scratch;
  (*scratch).SetI4(m_textToValue(scratch.Terminated(attribute->GetValueView())));
  InvokePropertySet(object, *scratch, *attribute);
  return true;
}

void CAttributeInfoEnum::Validate(const CSerializationContext&, bool seen) const { ThrowIfMissing(seen); }

CAttributeInfoAny::CAttributeInfoAny(const WChar* name, const WChar* ns, int propertyIndex, bool optional,
                                     const WChar* namespaceList, const WChar* targetNamespace,
                                     const WChar* defaultValue)
    : CAttributeInfo(name, ns, propertyIndex, optional, defaultValue),
      m_namespaceList(ViewOf(namespaceList)),
      m_targetNamespace(ViewOf(targetNamespace)) {}

void CAttributeInfoAny::AttributeToXml(const CSerializationContext& context, const CXmlGeneratedClass* object,
                                       CXmlWriter* writer) const {
  OvVariant value;
  ReadProperty(object, value);
  ToXml_Int(value.TakeXmlObject(), writer, /*isRoot=*/false, GetTargetNamespace(object).c_str(), context);
}

bool CAttributeInfoAny::AttributeFromXml(const CSerializationContext&, CXmlGeneratedClass* object,
                                         CXmlAttribute* attribute) {
  if (!IsNamespaceValid(attribute->GetNamespaceURI(), m_namespaceList, m_targetNamespace)) return false;
  OvVariant value;
  InvokePropertyGet(object, value);
  const OvXmlLib16::CSmartPtr<CXmlObjectBase> held = value.GetXmlObject();
  auto* collection = dynamic_cast<CAttributeCol*>(static_cast<CXmlObjectBase*>(held));
  if (collection == nullptr) {
    throw COvException(u"Serialization Data Error : The collection should be a CAttributeCol, it was not!");
  }
  collection->Add(attribute->GetLocalName().c_str(), attribute->GetValue().c_str(),
                  attribute->GetNamespaceURI().c_str());
  return true;
}

void CAttributeInfoAny::Validate(const CSerializationContext&, bool) const {}

}  // namespace OvXmlLib16Data
