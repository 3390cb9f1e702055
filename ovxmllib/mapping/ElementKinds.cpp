#include "ovxmllib/mapping/ElementKinds.h"

#include "ovxmllib/collections/ElementCol.h"
#include "ovxmllib/mapping/ScratchVariant.h"

namespace OvXmlLib16Data {

using OvXmlLib16::CElementCol;

void ObjectKind::PseudoChildAttributeToXml(const CSerializationContext& context, const CXmlGeneratedClass* object,
                                           CXmlWriter* writer) const {
  if (!IsPseudo()) return;
  const CSmartPtr<CXmlObjectBase> held = GetObject(object);
  if (held != nullptr) AttributesToXml_Int(held, writer, context);
}

bool ClsKind::ReadNew(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                      CXmlElement** child) {
  CXmlElement* const element = *child;
  if (element == nullptr || (!IsPseudo() && !IsThisElement(context, element))) return false;
  const CSmartPtr<CXmlObjectBase> held = Make();
  if (!IsPseudo()) {
    ReadOwnElement(held, child, context, /*optionalChoice=*/false);
  } else {
    *child = FromXml_Int(held, parent, element, context, /*optionalChoice=*/false);
    if (*child == element) return false;
  }
  SetObject(object, held, *element);
  return true;
}

bool AbsClsKind::ReadNew(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement** child) {
  CXmlElement* const element = *child;
  if (!IsThisElement(context, element)) return false;
  const CSmartPtr<CXmlObjectBase> held = Make(element);
  if (held == nullptr) return false;
  FromXml_Int(held, element, element->GetFirstElement(), context, /*optionalChoice=*/false);
  SetObject(object, held, *element);
  *child = element->GetNextSiblingElement();
  return true;
}

bool AbsClsKind::ReadAny(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                         CXmlElement** child) {
  if (!IsPseudo()) return ReadNew(context, object, child);
  CXmlElement* const element = *child;
  if (element == nullptr) return false;
  const CSmartPtr<CXmlObjectBase> held = Make(element);
  if (held == nullptr) return false;
  *child = FromXml_Int(held, parent, element, context, /*optionalChoice=*/false);
  if (*child == element) return false;
  SetObject(object, held, *element);
  return true;
}

CSmartPtr<CXmlObjectBase> UntpdKind::Make(const WChar* ns) const {
  const WString own = GetAnyDefaultNamespace(m_namespaceList.c_str(), ns, m_targetNamespace.c_str());
  return new CElement(GetElementName().c_str(), own.c_str(), m_namespaceList.c_str(), m_targetNamespace.c_str());
}

CXmlElement* UntpdKind::ReadIfNamed(CXmlObjectBase* held, CXmlElement* parent, CXmlElement* child,
                                    const CSerializationContext& context) const {
  if (GetElementName() != kAnyElement && child->GetLocalName() != GetElementName()) return child;
  return FromXml_Int(held, parent, child, context, /*optionalChoice=*/false);
}

bool UntpdKind::ReadNew(CXmlGeneratedClass* object, CXmlElement* parent, CXmlElement** child, const WChar* ns,
                        const CSerializationContext& context) const {
  const CSmartPtr<CXmlObjectBase> held = Make(ns);
  CXmlElement* const unread = ReadIfNamed(held, parent, *child, context);
  if (unread == *child) return false;
  SetObject(object, held, **child);
  *child = unread;
  return true;
}

void ColKind::PseudoChildAttributeToXml(const CSerializationContext& context, const CXmlGeneratedClass* object,
                                        CXmlWriter* writer) const {
  if (HasPseudoAttributes()) AttributesToXml_Int(GetCollection(object), writer, context);
}

CSmartPtr<CXmlCollectionBase> ColKind::GetCollection(const CXmlGeneratedClass* object) const {
  const ScratchVariant scratch;
  ReadProperty(object, *scratch);
  return (*scratch).GetXmlCollection();
}

CXmlElement* ColKind::ReadItems(CXmlCollectionBase& collection, CXmlElement* parent, CXmlElement* child,
                                const CSerializationContext& context) const {
  return FromXml_Int(&collection, parent, child, context, /*optionalChoice=*/false);
}

CXmlElement* ColKind::ReadUntypedItems(CXmlCollectionBase& collection, CXmlElement* parent, CXmlElement* child,
                                       const CSerializationContext& context) const {
  if (GetElementName() == kAnyElement) return ReadItems(collection, parent, child, context);
  return FromXmlLockElementName_Int(dynamic_cast<CElementCol&>(collection), GetElementName(), parent, child, context);
}

}  // namespace OvXmlLib16Data
