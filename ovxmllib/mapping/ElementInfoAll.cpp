#include "ovxmllib/mapping/ElementInfoAll.h"

namespace OvXmlLib16Data {

bool CElementInfoAllPrimMnd::ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                                            CXmlElement*, CXmlElement** child, const WChar*, XmlElementType) {
  return ReadIfThis(context, object, child);
}

bool CElementInfoAllPrimOpt::ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                                            CXmlElement*, CXmlElement** child, const WChar*, XmlElementType) {
  return ReadIfThis(context, object, child);
}

bool CElementInfoAllEnumMnd::ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                                            CXmlElement*, CXmlElement** child, const WChar*, XmlElementType) {
  return ReadIfThis(context, object, child);
}

bool CElementInfoAllEnumOpt::ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                                            CXmlElement*, CXmlElement** child, const WChar*, XmlElementType) {
  return ReadIfThis(context, object, child);
}

bool CElementInfoAllClsMnd::ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                                           CXmlElement* parent, CXmlElement** child, const WChar*, XmlElementType) {
  CXmlElement* const before = *child;
  if (IsPseudo()) {
    *child = FromXml_Int(GetObject(object), parent, before, context, /*optionalChoice=*/false);
    return *child != before;
  }
  if (!IsThisElement(context, before)) return false;
  ReadOwnElement(GetObject(object), child, context, /*optionalChoice=*/false);
  return true;
}

bool CElementInfoAllClsMnd::Validate(const CSerializationContext&, const CXmlGeneratedClass*, bool seen,
                                     bool isElement) const {
  if (seen || !isElement) return seen;
  if (IsPseudo() || IsContentRequired()) ThrowMandatoryMissing();
  return true;
}

bool CElementInfoAllClsOpt::ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                                           CXmlElement* parent, CXmlElement** child, const WChar*, XmlElementType) {
  return ReadNew(context, object, parent, child);
}

bool CElementInfoAllAbsClsMnd::ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                                              CXmlElement* parent, CXmlElement** child, const WChar*, XmlElementType) {
  return ReadAny(context, object, parent, child);
}

bool CElementInfoAllAbsClsOpt::ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                                              CXmlElement* parent, CXmlElement** child, const WChar*, XmlElementType) {
  return ReadAny(context, object, parent, child);
}

bool CElementInfoAllUntpdMnd::ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                                             CXmlElement* parent, CXmlElement** child, const WChar*, XmlElementType) {
  CXmlElement* const before = *child;
  if (before == nullptr) return false;
  *child = ReadIfNamed(GetObject(object), parent, before, context);
  return *child != before;
}

bool CElementInfoAllUntpdOpt::ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                                             CXmlElement* parent, CXmlElement** child, const WChar* ns,
                                             XmlElementType) {
  return *child != nullptr && ReadNew(object, parent, child, ns, context);
}

// Stays open, so that the next pass offers it further children.
bool CElementInfoAllCol::ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                                        CXmlElement* parent, CXmlElement** child, const WChar*, XmlElementType) {
  *child = ReadItems(*GetCollection(object), parent, *child, context);
  return false;
}

bool CElementInfoAllCol::Validate(const CSerializationContext& context, const CXmlGeneratedClass* object, bool,
                                  bool isElement) const {
  const CSmartPtr<CXmlCollectionBase> collection = GetCollection(object);
  if (!isElement) return collection->IsValidCount(context);
  collection->ValidateCount(context);
  return true;
}

}  // namespace OvXmlLib16Data
