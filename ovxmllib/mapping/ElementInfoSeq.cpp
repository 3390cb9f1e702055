#include "ovxmllib/mapping/ElementInfoSeq.h"

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"

namespace OvXmlLib16Data {

using OvXmlLib16::COvValidationException;
using OvXmlLib16::FormatString;

namespace {

// Skips unknown children up to the one that `entry` takes, where the context allows it. False when there is none.
bool SkipTo(const CElementInfo& entry, const CSerializationContext& context, CXmlElement** child) {
  while (!entry.IsThisElement(context, *child)) {
    if (!context.GetIgnoreUnknownElements() || *child == nullptr) return false;
    *child = (*child)->GetNextSiblingElement();
  }
  return true;
}

bool FindFurther(const CElementInfo& entry, const CSerializationContext& context, const CXmlElement& parent,
                 CXmlElement** child) {
  if (context.GetIgnoreMissingMandatoryElements()) return false;
  if (!SkipTo(entry, context, child)) entry.ThrowChildMissing(parent);
  return true;
}

// Within an element: finds the child of a mandatory entry, which is most often the next. Returns false when it is
// missing and may be.
inline bool FindMandatory(const CElementInfo& entry, const CSerializationContext& context, const CXmlElement& parent,
                          CXmlElement** child) {
  return entry.IsThisElement(context, *child) || FindFurther(entry, context, parent, child);
}

// The count at the end of a collection's read.
bool AcceptCount(const CXmlCollectionBase& collection, const CSerializationContext& context, XmlElementType outerType) {
  if (outerType != XmlElementType_Element) return collection.IsValidCount(context);
  collection.ValidateCount(context);
  return true;
}

}  // namespace

bool CElementInfoSeqPrimMnd::ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                                            CXmlElement* parent, CXmlElement** child, const WChar*,
                                            XmlElementType outerType) {
  if (outerType == XmlElementType_Element) {
    if (!FindMandatory(*this, context, *parent, child)) return true;
  } else if (!SkipTo(*this, context, child)) {
    return false;
  }
  Read(context, object, child);
  return true;
}

bool CElementInfoSeqPrimOpt::ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                                            CXmlElement*, CXmlElement** child, const WChar*, XmlElementType) {
  ReadIfThis(context, object, child);
  return true;
}

bool CElementInfoSeqEnumMnd::ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                                            CXmlElement* parent, CXmlElement** child, const WChar*,
                                            XmlElementType outerType) {
  if (outerType == XmlElementType_Element) {
    if (!FindMandatory(*this, context, *parent, child)) return true;
  } else if (!IsThisElement(context, *child)) {
    return false;
  }
  Read(context, object, child);
  return true;
}

bool CElementInfoSeqEnumOpt::ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                                            CXmlElement*, CXmlElement** child, const WChar*, XmlElementType) {
  ReadIfThis(context, object, child);
  return true;
}

bool CElementInfoSeqClsMnd::ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                                           CXmlElement* parent, CXmlElement** child, const WChar*,
                                           XmlElementType outerType) {
  return IsPseudo() ? ReadGroup(context, object, parent, child, outerType)
                    : ReadElement(context, object, parent, child, outerType);
}

bool CElementInfoSeqClsMnd::ReadElement(const CSerializationContext& context, CXmlGeneratedClass* object,
                                        CXmlElement* parent, CXmlElement** child, XmlElementType outerType) {
  if (outerType == XmlElementType_Element) {
    if (!FindMandatory(*this, context, *parent, child)) return true;
  } else if (!IsThisElement(context, *child)) {
    return false;
  }
  ReadOwnElement(GetObject(object), child, context, /*optionalChoice=*/false);
  return true;
}

// A group reads from its owner's element, where its attributes are too.
bool CElementInfoSeqClsMnd::ReadGroup(const CSerializationContext& context, CXmlGeneratedClass* object,
                                      CXmlElement* parent, CXmlElement** child, XmlElementType outerType) {
  const bool isInElement = outerType == XmlElementType_Element;
  CXmlElement* const before = *child;
  CXmlElement* unread = before;
  if (before != nullptr || !IsContentRequired()) {
    unread = FromXml_Int(GetObject(object), parent, before, context, /*optionalChoice=*/false);
  }
  if (unread == before && IsContentRequired()) {
    if (isInElement) ThrowChildMissing(*parent);
    return false;
  }
  if (unread == before && before != nullptr && isInElement && context.GetIgnoreUnknownElements()) return false;
  *child = unread;
  return true;
}

bool CElementInfoSeqClsOpt::ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                                           CXmlElement* parent, CXmlElement** child, const WChar*, XmlElementType) {
  ReadNew(context, object, parent, child);
  return true;
}

bool CElementInfoSeqAbsClsMnd::ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                                              CXmlElement* parent, CXmlElement** child, const WChar*,
                                              XmlElementType outerType) {
  if (ReadNew(context, object, child)) return true;
  if (outerType != XmlElementType_Element) return false;
  throw COvValidationException(
      FormatString(u"Failed to find a suitable substitution element for [%s].", GetElementName()), parent->GetXPath());
}

bool CElementInfoSeqAbsClsOpt::ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                                              CXmlElement*, CXmlElement** child, const WChar*, XmlElementType) {
  ReadNew(context, object, child);
  return true;
}

bool CElementInfoSeqUntpdMnd::ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                                             CXmlElement* parent, CXmlElement** child, const WChar*,
                                             XmlElementType outerType) {
  if (*child == nullptr) ThrowChildMissing(*parent);
  CXmlElement* const unread = ReadIfNamed(GetObject(object), parent, *child, context);
  if (unread != *child) {
    *child = unread;
    return true;
  }
  if (outerType != XmlElementType_Element) return false;
  throw COvValidationException(
      FormatString(u"Failed to find the required element from namespace [%s].", GetElementNamespace()),
      parent->GetXPath());
}

bool CElementInfoSeqUntpdOpt::ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                                             CXmlElement* parent, CXmlElement** child, const WChar* ns,
                                             XmlElementType) {
  if (*child != nullptr) ReadNew(object, parent, child, ns, context);
  return true;
}

bool CElementInfoSeqCol::ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                                        CXmlElement* parent, CXmlElement** child, const WChar*,
                                        XmlElementType outerType) {
  const CSmartPtr<CXmlCollectionBase> collection = GetCollection(object);
  *child = ReadItems(*collection, parent, *child, context);
  return AcceptCount(*collection, context, outerType);
}

bool CElementInfoSeqUntpdCol::ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                                             CXmlElement* parent, CXmlElement** child, const WChar*,
                                             XmlElementType outerType) {
  const CSmartPtr<CXmlCollectionBase> collection = GetCollection(object);
  *child = ReadUntypedItems(*collection, parent, *child, context);
  return AcceptCount(*collection, context, outerType);
}

}  // namespace OvXmlLib16Data
