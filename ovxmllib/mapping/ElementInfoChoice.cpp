#include "ovxmllib/mapping/ElementInfoChoice.h"

namespace OvXmlLib16Data {

namespace {

// The count at the end of a collection's read, which moves `*child` to `unread`. Items that a group has too few of stay
// in the collection, and the child with them.
bool AcceptItems(const CXmlCollectionBase& collection, CXmlElement** child, CXmlElement* unread,
                 const CSerializationContext& context, XmlElementType outerType) {
  if (unread == *child) return false;
  const bool isInElement = outerType == XmlElementType_Element;
  if (!isInElement && !collection.IsValidCount(context)) return false;
  *child = unread;
  if (isInElement) collection.ValidateCount(context);
  return true;
}

}  // namespace

bool CElementInfoChoicePrimOpt::ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                                               CXmlElement*, CXmlElement** child, const WChar*, XmlElementType) {
  return ReadIfThis(context, object, child);
}

bool CElementInfoChoiceEnumOpt::ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                                               CXmlElement*, CXmlElement** child, const WChar*, XmlElementType) {
  return ReadIfThis(context, object, child);
}

bool CElementInfoChoiceClsOpt::ElementToXml(const CSerializationContext& context, const CXmlGeneratedClass* object,
                                            CXmlWriter* writer) const {
  return ElementToXmlCls(context, object, writer, /*optionalChoice=*/true);
}

bool CElementInfoChoiceClsOpt::ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                                              CXmlElement* parent, CXmlElement** child, const WChar*, XmlElementType) {
  CXmlElement* const element = *child;
  if (element == nullptr || (!IsPseudo() && !IsThisElement(context, element))) return false;
  const CSmartPtr<CXmlObjectBase> held = Make();
  SetObject(object, held, *element);
  if (!IsPseudo()) {
    ReadOwnElement(held, child, context, /*optionalChoice=*/true);
    return true;
  }
  *child = FromXml_Int(held, parent, element, context, /*optionalChoice=*/false);
  if (*child != element) return true;
  SetObject(object, nullptr, *element);
  return false;
}

bool CElementInfoChoiceAbsClsOpt::ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                                                 CXmlElement*, CXmlElement** child, const WChar*, XmlElementType) {
  if (!IsThisElement(context, *child)) return false;
  const CSmartPtr<CXmlObjectBase> held = Make(*child);
  SetObject(object, held, **child);
  if (held == nullptr) return false;
  ReadOwnElement(held, child, context, /*optionalChoice=*/false);
  return true;
}

bool CElementInfoChoiceUntpdOpt::ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                                                CXmlElement* parent, CXmlElement** child, const WChar* ns,
                                                XmlElementType) {
  if (*child == nullptr) return false;
  if (ReadNew(object, parent, child, ns, context)) return true;
  SetObject(object, nullptr, **child);
  return false;
}

bool CElementInfoChoiceCol::MayLeaveChoiceEmpty(const CXmlGeneratedClass* object) const {
  return GetCollection(object)->GetMinOccurs() == 0;
}

bool CElementInfoChoiceCol::ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                                           CXmlElement* parent, CXmlElement** child, const WChar*,
                                           XmlElementType outerType) {
  const CSmartPtr<CXmlCollectionBase> collection = GetCollection(object);
  return AcceptItems(*collection, child, ReadItems(*collection, parent, *child, context), context, outerType);
}

bool CElementInfoChoiceUntpdCol::ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                                                CXmlElement* parent, CXmlElement** child, const WChar*,
                                                XmlElementType outerType) {
  const CSmartPtr<CXmlCollectionBase> collection = GetCollection(object);
  return AcceptItems(*collection, child, ReadUntypedItems(*collection, parent, *child, context), context, outerType);
}

}  // namespace OvXmlLib16Data
