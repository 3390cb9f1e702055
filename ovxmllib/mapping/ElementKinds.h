// What the element entries are made of: five kinds and the collections, and the rules by which they are written.
//
// A kind knows its constructor's arguments and how one value of it is written and read. An output rule is a template
// over a kind. How an entry is read is told by its class, in the header of its group.
#pragma once

#include "ovxmllib/collections/Element.h"
#include "ovxmllib/collections/XmlCollectionBase.h"
#include "ovxmllib/mapping/ElementInfo.h"

namespace OvXmlLib16Data {

using OvXmlLib16::CElement;
using OvXmlLib16::CXmlCollectionBase;

/// A value of a primitive type.
class OVXMLLIB_API PrimKind : public CElementInfo {
 public:
  /// `defaultValue` is the schema's default as text, `formatOverride` as CConversions takes it.
  PrimKind(const WChar* name, const WChar* ns, int propertyIndex, bool nillable, ItemType itemType,
           const WChar* formatOverride, CWhitespaceUtils::WhitespaceRule whitespaceRule,
           const CPrimitiveRestrictions& restrictions, const WChar* defaultValue)
      : CElementInfo(name, ns, propertyIndex, nillable, itemType, formatOverride, whitespaceRule, restrictions,
                     defaultValue) {
    IgnoreOwnersNamespace();
  }

 protected:
  bool Write(const CSerializationContext& context, const CXmlGeneratedClass* object, CXmlWriter* writer) const {
    return ElementToXmlPrim(context, object, writer);
  }
  void Read(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement** child) {
    ElementFromXmlPrim(context, object, child);
  }
  /// Reads the child if it is this entry's; returns whether it was.
  bool ReadIfThis(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement** child) {
    if (!IsThisElement(context, *child)) return false;
    Read(context, object, child);
    return true;
  }
};

/// A value of a generated enumeration.
class OVXMLLIB_API EnumKind : public CElementInfo {
 public:
  EnumKind(const WChar* name, const WChar* ns, int propertyIndex, bool nillable, ValueToText valueToText,
           TextToValue textToValue, const WChar* defaultValue)
      : CElementInfo(name, ns, propertyIndex, nillable, valueToText, textToValue, defaultValue) {
    IgnoreOwnersNamespace();
  }

 protected:
  bool Write(const CSerializationContext& context, const CXmlGeneratedClass* object, CXmlWriter* writer) const {
    return ElementToXmlEnum(context, object, writer, GetValueToText());
  }
  void Read(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement** child) {
    ElementFromXmlEnum(context, object, child);
  }
  /// Reads the child if it is this entry's; returns whether it was.
  bool ReadIfThis(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement** child) {
    if (!IsThisElement(context, *child)) return false;
    Read(context, object, child);
    return true;
  }
};

/// An object, of a class or of any: what the next two share. A group (XmlElementType_Pseudo) has no element of its own;
/// its attributes go on the start tag of the element that holds it.
class OVXMLLIB_API ObjectKind : public CElementInfo {
 public:
  void PseudoChildAttributeToXml(const CSerializationContext& context, const CXmlGeneratedClass* object,
                                 CXmlWriter* writer) const override;

 protected:
  ObjectKind(const WChar* name, const WChar* ns, int propertyIndex, XmlElementType elementType)
      : CElementInfo(name, ns, propertyIndex), m_elementType(elementType) {
    IgnoreOwnersNamespace();
    SetHasPseudoAttributes(IsPseudo());
  }

  bool IsPseudo() const noexcept { return m_elementType == XmlElementType_Pseudo; }
  bool Write(const CSerializationContext& context, const CXmlGeneratedClass* object, CXmlWriter* writer) const {
    return ElementToXmlCls(context, object, writer, /*optionalChoice=*/false);
  }

 private:
  XmlElementType m_elementType;
};

/// An object of a class that a generated factory knows by number.
class OVXMLLIB_API ClsKind : public ObjectKind {
 public:
  /// `contentRequired`, of mandatory entries, says that a group has to find something to read.
  ClsKind(const WChar* name, const WChar* ns, int propertyIndex, XmlElementType elementType, ClassFactory factory,
          int classId, bool contentRequired = false)
      : ObjectKind(name, ns, propertyIndex, elementType),
        m_factory(factory),
        m_classId(classId),
        m_contentRequired(contentRequired) {}

 protected:
  bool IsContentRequired() const noexcept { return m_contentRequired; }
  CSmartPtr<CXmlObjectBase> Make() const { return m_factory(m_classId, GetElementName().c_str()); }
  /// Optional entries: reads a new object from the child if it is this entry's, or as a group from the owner's element,
  /// and sets the property to it if it took anything. Returns whether it did.
  bool ReadNew(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
               CXmlElement** child);

 private:
  ClassFactory m_factory;
  int m_classId;
  bool m_contentRequired;
};

/// An object of the class that a generated factory finds by the element.
class OVXMLLIB_API AbsClsKind : public ObjectKind {
 public:
  AbsClsKind(const WChar* name, const WChar* ns, int propertyIndex, XmlElementType elementType,
             AbstractClassFactory factory)
      : ObjectKind(name, ns, propertyIndex, elementType), m_factory(factory) {}

 protected:
  CSmartPtr<CXmlObjectBase> Make(CXmlElement* element) const { return m_factory(element); }
  /// Reads the object that the factory makes from the child if it is this entry's, and sets the property to it. Returns
  /// false when it is not, or when there is no such object.
  bool ReadNew(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement** child);
  /// The same, and as a group from the owner's element if the entry is one.
  bool ReadAny(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
               CXmlElement** child);

 private:
  AbstractClassFactory m_factory;
};

/// A CElement. The name "AnyElement" takes elements of any name, another only those of that name; both only those that
/// the namespace list allows.
class OVXMLLIB_API UntpdKind : public CElementInfo {
 public:
  UntpdKind(const WChar* name, const WChar* ns, int propertyIndex, const WChar* namespaceList,
            const WChar* targetNamespace)
      : CElementInfo(name, ns, propertyIndex),
        m_namespaceList(OvXmlLib16::ViewOf(namespaceList)),
        m_targetNamespace(OvXmlLib16::ViewOf(targetNamespace)) {}

 protected:
  bool Write(const CSerializationContext& context, const CXmlGeneratedClass* object, CXmlWriter* writer) const {
    return ElementToXmlCls(context, object, writer, /*optionalChoice=*/false);
  }
  CSmartPtr<CXmlObjectBase> Make(const WChar* ns) const;
  /// Lets the object take `child` if the name is right; returns what is unread then.
  CXmlElement* ReadIfNamed(CXmlObjectBase* held, CXmlElement* parent, CXmlElement* child,
                           const CSerializationContext& context) const;
  /// Makes an object, and sets the property to it if it took `*child`. Returns whether it did.
  bool ReadNew(CXmlGeneratedClass* object, CXmlElement* parent, CXmlElement** child, const WChar* ns,
               const CSerializationContext& context) const;

 private:
  WString m_namespaceList;
  WString m_targetNamespace;
};

/// The name by which an untyped entry takes any element.
inline constexpr WStringView kAnyElement = u"AnyElement";

/// A collection, which reads and writes its elements itself.
class OVXMLLIB_API ColKind : public CElementInfo {
 public:
  /// `elementType`, of collections of objects: the attributes of groups go on the owner's start tag.
  ColKind(const WChar* name, const WChar* ns, int propertyIndex, XmlElementType elementType = XmlElementType_Element)
      : CElementInfo(name, ns, propertyIndex) {
    IgnoreOwnersNamespace();
    SetHasPseudoAttributes(elementType == XmlElementType_Pseudo);
  }

  void PseudoChildAttributeToXml(const CSerializationContext& context, const CXmlGeneratedClass* object,
                                 CXmlWriter* writer) const override;

 protected:
  CSmartPtr<CXmlCollectionBase> GetCollection(const CXmlGeneratedClass* object) const;
  /// Lets the collection take the children that are its own; returns what is unread then.
  CXmlElement* ReadItems(CXmlCollectionBase& collection, CXmlElement* parent, CXmlElement* child,
                         const CSerializationContext& context) const;
  /// The same for untyped elements, of the entry's name unless that is "AnyElement". The collection is a CElementCol.
  CXmlElement* ReadUntypedItems(CXmlCollectionBase& collection, CXmlElement* parent, CXmlElement* child,
                                const CSerializationContext& context) const;
  bool Write(const CSerializationContext& context, const CXmlGeneratedClass* object, CXmlWriter* writer) const {
    return ElementToXmlCol(context, object, writer);
  }
};

/// Output rule: the property must hold something. Throws COvInvalidParamException when it does not.
template <class Kind>
class MandatoryOutput : public Kind {
 public:
  using Kind::Kind;
  bool ElementToXml(const CSerializationContext& context, const CXmlGeneratedClass* object,
                    CXmlWriter* writer) const override {
    if (!Kind::Write(context, object, writer)) Kind::ThrowPropertyMissing();
    return true;
  }
};

/// Output rule: what is there is written.
template <class Kind>
class OptionalOutput : public Kind {
 public:
  using Kind::Kind;
  bool ElementToXml(const CSerializationContext& context, const CXmlGeneratedClass* object,
                    CXmlWriter* writer) const override {
    return Kind::Write(context, object, writer);
  }
};

/// Output rule: the count is checked first, unless the context ignores counts.
template <class Kind>
class CountedOutput : public Kind {
 public:
  using Kind::Kind;
  bool ElementToXml(const CSerializationContext& context, const CXmlGeneratedClass* object,
                    CXmlWriter* writer) const override {
    if (!context.GetIgnoreInvalidCollectionCounts()) Kind::GetCollection(object)->ValidateCount(context);
    return Kind::Write(context, object, writer);
  }
};

}  // namespace OvXmlLib16Data
