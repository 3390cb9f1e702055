// The base of generated classes: reads and writes an object by the metadata of its class.
#pragma once

#include <cstddef>

#include "ovxmllib/binding/Export.h"
#include "ovxmllib/binding/XmlObjectBase.h"
#include "ovxmllib/foundation/OVCriticalSection.h"
#include "ovxmllib/mapping/ParentElementInfo.h"
#include "ovxmllib/values/OvVariant.h"

namespace OvXmlLib16Data {
class CAttributeInfo;
class CElementInfo;
}  // namespace OvXmlLib16Data

namespace OvXmlLib16 {

class CXmlAttribute;

using OvXmlLib16Data::CAttributeInfo;
using OvXmlLib16Data::CElementInfo;
using OvXmlLib16Data::CParentElementInfo;
using OvXmlLib16Data::XmlElementType;

/// A bound object that holds plain properties and no code that reads or writes. Its class has three tables: what it is
/// (CParentElementInfo), its child elements and its attributes. ToXml_Int and FromXml_Int walk these tables; each entry
/// handles its property, which it reaches by index through AccessProperty.
///
/// What a class supplies:
///  - GetBase, GetTargetNamespace, GetNamespace, and the element name of a new object (SetElementName);
///  - Init, AccessProperty and the three tables.
/// docs/tutorial.md goes through a class line by line.
///
/// The tables are made once per class, at its first use and under m_csInit, with new: entries, and two arrays of
/// pointers to them that end with null. They may be asked for at any time and must be the same each time. CleanMetaData
/// gives them up. Tables are read by any number of threads; an object is for one thread at a time.
class OVXMLLIB_API CXmlGeneratedClass : public CXmlObjectBase {
 protected:
  /// Stores the property of this index in `value` when `read` is true, else takes it from there. Objects travel as
  /// SetXmlObject, collections as SetXmlCollection, enumerations as SetI4, everything else in its own ItemType. A
  /// property that is not set gives an invalid variant or a null object. What it throws is wrapped with the place.
  virtual void AccessProperty(int index, bool read, OvVariant& value) = 0;
  /// The tables; see the class.
  virtual CParentElementInfo* GetClassInfo() const = 0;
  virtual CElementInfo** GetClassElementInfo() const = 0;
  virtual CAttributeInfo** GetClassAttributeInfo() const = 0;
  /// Gives every property its initial state: collections empty, mandatory objects new. Called at the start of each
  /// read.
  virtual void Init() = 0;

  /// Writes `xsi:type` where it is needed, the attributes, and those of the groups within the element. Throws
  /// COvException "Failed to convert attributes to XML" around what went wrong.
  void AttributesToXml_Int(CXmlWriter* writer, const CSerializationContext& context) const override;
  /// Writes the object. Throws COvValidationException "Failed to convert the element [name] to XML" around what went
  /// wrong, so that a failure comes with one line for each element around it.
  void ToXml_Int(CXmlWriter* writer, bool isRoot, const WChar* ns, const CSerializationContext& context,
                 bool optionalChoice) const override;
  /// Reads the object. The innermost object that sees an exception without a path throws COvValidationException "Failed
  /// to process the element." with the element's path around it; the others hand it on as a COvException.
  CXmlElement* FromXml_Int(CXmlElement* parent, CXmlElement* child, const CSerializationContext& context,
                           bool optionalChoice) override;

  /// Offers each attribute of `element` to the entries. Throws COvValidationException for one that is unknown or
  /// missing, and for `xsi:nil` where it may not stand.
  void ProcessAttributesFromXml(const CSerializationContext& context, CXmlElement* element, bool failIfUnknown);
  /// Whether an entry takes the element by its name.
  bool IsElementInList(const CSerializationContext& context, CXmlElement* element) const;
  /// Whether the class, a choice, may stay empty: it has a member that need not be there.
  bool DoesElementContainOptionalElements() const;
  /// AccessProperty(index, true, value).
  void ReadProperty(int index, OvVariant& value) const;

  /// Deletes the tables of a class and clears the pointers to them. Null pointers are passed over.
  static void CleanMetaData(CParentElementInfo*& info, CElementInfo**& elements, CAttributeInfo**& attributes);

  /// For building tables at their first use.
  static COVCriticalSection m_csInit;

 private:
  friend class OvXmlLib16Data::CAttributeInfo;
  friend class OvXmlLib16Data::CElementInfo;

  void ReadObject(CXmlElement* parent, CXmlElement*& child, const CSerializationContext& context, bool optionalChoice);
  CXmlElement* ReadGroup(const CSerializationContext& context, CXmlElement* parent, CXmlElement* child,
                         const CParentElementInfo& info, bool optionalChoice);
  void ReadPrimitiveValue(CXmlElement* parent, const CParentElementInfo& info);
  bool Offer(const CSerializationContext& context, const CXmlAttribute& attribute, CAttributeInfo& entry);
  void ProcessAttributesInAnyOrder(const CSerializationContext& context, const CXmlElement& element,
                                   const CXmlAttribute* attribute, std::size_t taken, bool failIfUnknown);
  void ReadNil(const CXmlElement& element, const CXmlAttribute& attribute);
  CXmlElement* ProcessElementSeqFromXml(const CSerializationContext& context, CXmlElement* parent, CXmlElement* child,
                                        XmlElementType elementType);
  CXmlElement* ProcessElementChoiceFromXml(const CSerializationContext& context, CXmlElement* parent,
                                           CXmlElement* child, XmlElementType elementType, bool optionalChoice);
  CXmlElement* ProcessElementAllFromXml(const CSerializationContext& context, CXmlElement* parent, CXmlElement* child,
                                        XmlElementType elementType);

  void WriteObject(CXmlWriter* writer, bool isRoot, const WChar* ns, const CSerializationContext& context,
                   bool optionalChoice) const;
  void WriteContent(CXmlWriter* writer, const CSerializationContext& context, const CParentElementInfo& info,
                    bool optionalChoice) const;
  void WriteRootFrame(CXmlWriter* writer, const CSerializationContext& context) const;
  void WriteTypeAndAttributes(CXmlWriter* writer, const CSerializationContext& context) const;
  void ProcessElementSeqToXml(const CSerializationContext& context, CElementInfo** entries, CXmlWriter* writer) const;
  void ProcessElementChoiceToXml(const CSerializationContext& context, CElementInfo** entries, CXmlWriter* writer,
                                 bool optionalChoice) const;
  bool IsNilObject(const CParentElementInfo& info) const;
};

}  // namespace OvXmlLib16
