// What a generated class says of itself.
#pragma once

#include <atomic>
#include <cstdint>
#include <typeinfo>

#include "ovxmllib/binding/Enumerations.h"
#include "ovxmllib/binding/Export.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16Data {

using OvXmlLib16::ItemType;
using OvXmlLib16::ItemType_none;
using OvXmlLib16::WChar;
using OvXmlLib16::WString;

/// The content model of a class. The numbers are those that generated code passes.
enum XmlElementGroupType : std::int32_t {
  XmlElementGroupType_Sequence = 0,  ///< the elements in the order of the array
  XmlElementGroupType_Choice = 1,    ///< one of the elements of the array
  XmlElementGroupType_All = 2,       ///< the elements of the array in any order
};

/// What a class stands for.
enum XmlElementType : std::int32_t {
  /// An element of its own.
  XmlElementType_Element = 0,
  /// A group nested in another: it reads its children from its owner's element and writes them there, and its
  /// attributes go on that element too.
  XmlElementType_Pseudo = 1,
};

/// The record of a class: made once per class, shared by all its objects, never changed.
class OVXMLLIB_API CParentElementInfo {
 public:
  /// The texts are copied; a null `primitiveFormatOverride` counts as empty. `primitiveValuePropertyIndex` is -1, and
  /// `primitiveDataType` ItemType_none, for a class without text of its own.
  CParentElementInfo(XmlElementGroupType groupType, XmlElementType elementType, const WChar* elementName,
                     const WChar* elementNamespace, bool failIfAttributeUnknown, bool hasBaseClasses,
                     int primitiveValuePropertyIndex, ItemType primitiveDataType, const WChar* primitiveFormatOverride,
                     bool outputPrimitiveClassAsTextProperty)
      : m_groupType(groupType),
        m_elementType(elementType),
        m_elementName(OvXmlLib16::ViewOf(elementName)),
        m_elementNamespace(OvXmlLib16::ViewOf(elementNamespace)),
        m_failIfAttributeUnknown(failIfAttributeUnknown),
        m_hasBaseClasses(hasBaseClasses),
        m_primitiveValuePropertyIndex(primitiveValuePropertyIndex),
        m_primitiveDataType(primitiveDataType),
        m_primitiveFormatOverride(OvXmlLib16::ViewOf(primitiveFormatOverride)),
        m_outputPrimitiveClassAsTextProperty(outputPrimitiveClassAsTextProperty) {}
  virtual ~CParentElementInfo() = default;

  XmlElementGroupType GetElementGroupType() const noexcept { return m_groupType; }
  XmlElementType GetElementType() const noexcept { return m_elementType; }
  /// The name and namespace under which the schema declares the class.
  const WString& GetElementName() const noexcept { return m_elementName; }
  const WString& GetElementNamespace() const noexcept { return m_elementNamespace; }
  /// Whether an attribute that no entry takes is an error.
  bool GetFromXmlFailIfAttributeUnknown() const noexcept { return m_failIfAttributeUnknown; }
  /// Whether the class takes part in derivation, so that `xsi:type` may be needed.
  bool GetHasBaseClasses() const noexcept { return m_hasBaseClasses; }
  /// The index of the property that holds the text of the element, its type and its format.
  int GetPrimitiveValuePropertyIndex() const noexcept { return m_primitiveValuePropertyIndex; }
  ItemType GetPrimitiveDataType() const noexcept { return m_primitiveDataType; }
  const WString& GetPrimitiveFormatOverride() const noexcept { return m_primitiveFormatOverride; }
  /// Whether that property takes the text as it stands, as a string.
  bool GetOutputPrimitiveClassAsTextProperty() const noexcept { return m_outputPrimitiveClassAsTextProperty; }

  /// \name Which type of objects is known not to be INillable
  /// A dynamic cast costs more than all else that is done for a small object, so that its failure is kept in mind, of
  /// one type: there is one to a class, unless derived classes share its tables.
  /// \{
  bool IsKnownNotNillable(const std::type_info& type) const noexcept {
    return m_notNillable.load(std::memory_order_relaxed) == &type;
  }
  void NoteNotNillable(const std::type_info& type) const noexcept {
    m_notNillable.store(&type, std::memory_order_relaxed);
  }
  /// \}

  /// Whether the element has text of its own.
  bool HasPrimitiveValue() const noexcept {
    return m_primitiveValuePropertyIndex != -1 && m_primitiveDataType != ItemType_none;
  }

 private:
  XmlElementGroupType m_groupType;
  XmlElementType m_elementType;
  WString m_elementName;
  WString m_elementNamespace;
  bool m_failIfAttributeUnknown;
  bool m_hasBaseClasses;
  int m_primitiveValuePropertyIndex;
  ItemType m_primitiveDataType;
  WString m_primitiveFormatOverride;
  bool m_outputPrimitiveClassAsTextProperty;
  mutable std::atomic<const std::type_info*> m_notNillable = nullptr;
};

}  // namespace OvXmlLib16Data
