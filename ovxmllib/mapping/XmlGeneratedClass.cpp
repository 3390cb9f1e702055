#include "ovxmllib/mapping/XmlGeneratedClass.h"

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/collections/AttributeCol.h"
#include "ovxmllib/document/NamespaceAliasMap.h"
#include "ovxmllib/document/PreparedName.h"
#include "ovxmllib/document/XmlWriter.h"
#include "ovxmllib/mapping/AttributeInfo.h"
#include "ovxmllib/mapping/ElementInfo.h"
#include "ovxmllib/mapping/Nillable.h"

namespace OvXmlLib16 {

using OvXmlLib16Data::XmlElementGroupType_All;
using OvXmlLib16Data::XmlElementGroupType_Choice;
using OvXmlLib16Data::XmlElementGroupType_Sequence;
using OvXmlLib16Data::XmlElementType_Element;

namespace {

// Deletes the entries of a table and the table.
template <class Entry>
void CleanTable(Entry**& table) {
  if (table == nullptr) return;
  for (Entry** entry = table; *entry != nullptr; ++entry) delete *entry;
  delete[] table;
  table = nullptr;
}

}  // namespace

COVCriticalSection CXmlGeneratedClass::m_csInit;

void CXmlGeneratedClass::ReadProperty(int index, OvVariant& value) const {
  const_cast<CXmlGeneratedClass*>(this)->AccessProperty(index, /*read=*/true, value);
}

bool CXmlGeneratedClass::IsElementInList(const CSerializationContext& context, CXmlElement* element) const {
  for (CElementInfo** entry = GetClassElementInfo(); *entry != nullptr; ++entry) {
    if ((*entry)->IsThisElement(context, element)) return true;
  }
  return false;
}

bool CXmlGeneratedClass::DoesElementContainOptionalElements() const {
  for (CElementInfo** entry = GetClassElementInfo(); *entry != nullptr; ++entry) {
    if ((*entry)->MayLeaveChoiceEmpty(this)) return true;
  }
  return false;
}

void CXmlGeneratedClass::CleanMetaData(CParentElementInfo*& info, CElementInfo**& elements,
                                       CAttributeInfo**& attributes) {
  delete info;
  info = nullptr;
  CleanTable(elements);
  CleanTable(attributes);
}

bool CXmlGeneratedClass::IsNilObject(const CParentElementInfo& info) const {
  const std::type_info& type = typeid(*this);
  if (info.IsKnownNotNillable(type)) return false;
  auto* nillable = dynamic_cast<INillable*>(const_cast<CXmlGeneratedClass*>(this));
  if (nillable == nullptr) info.NoteNotNillable(type);
  return nillable != nullptr && nillable->IsNil();
}

void CXmlGeneratedClass::ToXml_Int(CXmlWriter* writer, bool isRoot, const WChar* ns,
                                   const CSerializationContext& context, bool optionalChoice) const {
  try {
    WriteObject(writer, isRoot, ns, context, optionalChoice);
  } catch (const COvException& exception) {
    throw COvValidationException(FormatString(u"Failed to convert the element [%s] to XML", GetElementName()), {},
                                 exception);
  }
}

void CXmlGeneratedClass::WriteObject(CXmlWriter* writer, bool isRoot, const WChar* ns,
                                     const CSerializationContext& context, bool optionalChoice) const {
  const CParentElementInfo& info = *GetClassInfo();
  const bool isElement = info.GetElementType() == XmlElementType_Element;
  if (isElement) {
    if (isRoot) WriteRootFrame(writer, context);
    const PreparedName* const name = writer->FindAnnounced(GetElementNameView(), ns);
    name != nullptr ? writer->StartPrepared(*name) : writer->StartElement(GetElementNameView(), ViewOf(ns));
    if (isRoot) {
      const CSmartPtr<CAttributeCol> additional = context.GetAdditionalRootAttributes();
      CXmlObjectBase::ToXml_Int(additional, writer, /*isRoot=*/false, ns, context, optionalChoice);
    }
    AttributesToXml_Int(writer, context);
    if (isRoot && !context.GetInLineSchema().empty()) writer->WriteInlineSchema(context.GetInLineSchema());
  }
  IsNilObject(info) ? writer->WriteXsiNil() : WriteContent(writer, context, info, optionalChoice);
  if (isElement) writer->EndElement();
}

// What stands ahead of the document element, and the namespaces that it declares.
void CXmlGeneratedClass::WriteRootFrame(CXmlWriter* writer, const CSerializationContext& context) const {
  for (const WString& instruction : context.GetProcessingInstructions()) {
    writer->WriteProcessingInstruction(instruction);
  }
  CNamespaceAliasMap aliases = context.GetNamespaceAliases();
  for (int i = 0; i < aliases.GetNamespaceCount(); ++i) {
    const WString ns = aliases.GetNamespaceAt(i);
    writer->AddNamespace(aliases.GetAliasFromNamespace(ns.c_str()), ns);
  }
  const WStringView defaultNamespace = context.GetDefaultNamespaceView();
  if (!defaultNamespace.empty()) writer->SetDefaultNamespace(defaultNamespace);
}

void CXmlGeneratedClass::WriteContent(CXmlWriter* writer, const CSerializationContext& context,
                                      const CParentElementInfo& info, bool optionalChoice) const {
  switch (info.GetElementGroupType()) {
    case XmlElementGroupType_Sequence:
    case XmlElementGroupType_All:
      ProcessElementSeqToXml(context, GetClassElementInfo(), writer);
      break;
    case XmlElementGroupType_Choice:
      ProcessElementChoiceToXml(context, GetClassElementInfo(), writer, optionalChoice);
      break;
    default:
      throw COvException(u"Unknown XML Group Type");
  }
  if (!info.HasPrimitiveValue()) return;
  OvVariant value;
  ReadProperty(info.GetPrimitiveValuePropertyIndex(), value);
  if (value.IsNil()) return writer->WriteXsiNil();
  writer->WriteText(value.ToString(info.GetPrimitiveFormatOverride().c_str()), value.GetTypeAsEnum());
}

void CXmlGeneratedClass::AttributesToXml_Int(CXmlWriter* writer, const CSerializationContext& context) const {
  try {
    WriteTypeAndAttributes(writer, context);
  } catch (const COvException& exception) {
    throw COvException(u"Failed to convert attributes to XML", exception);
  }
}

// An object under another name than its class's needs its type written, or nobody could read it back.
void CXmlGeneratedClass::WriteTypeAndAttributes(CXmlWriter* writer, const CSerializationContext& context) const {
  const CParentElementInfo& info = *GetClassInfo();
  if (info.GetHasBaseClasses() && context.GetWriteTypeAttribute() && GetElementNameView() != info.GetElementName()) {
    writer->WriteXsiType(info.GetElementNamespace(), info.GetElementName(), ItemType_string);
  }
  for (CAttributeInfo** entry = GetClassAttributeInfo(); *entry != nullptr; ++entry) {
    (*entry)->AttributeToXml(context, this, writer);
  }
  for (CElementInfo** entry = GetClassElementInfo(); *entry != nullptr; ++entry) {
    if ((*entry)->HasPseudoAttributes()) (*entry)->PseudoChildAttributeToXml(context, this, writer);
  }
}

// The members of an all-group are written in the order of the schema too.
void CXmlGeneratedClass::ProcessElementSeqToXml(const CSerializationContext& context, CElementInfo** entries,
                                                CXmlWriter* writer) const {
  for (CElementInfo** entry = entries; *entry != nullptr; ++entry) (*entry)->ElementToXml(context, this, writer);
}

void CXmlGeneratedClass::ProcessElementChoiceToXml(const CSerializationContext& context, CElementInfo** entries,
                                                   CXmlWriter* writer, bool optionalChoice) const {
  for (CElementInfo** entry = entries; *entry != nullptr; ++entry) {
    if ((*entry)->ElementToXml(context, this, writer)) return;
  }
  if (optionalChoice || context.GetIgnoreMissingChoice() || DoesElementContainOptionalElements()) return;
  throw COvValidationException(
      u"This element is a choice, and as such must have at one (and only one) valid item, currently there are none set",
      {});
}

}  // namespace OvXmlLib16
