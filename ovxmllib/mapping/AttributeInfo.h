// The attributes of generated classes.
//
//   class                    value of the property      takes an attribute by
//   CAttributeInfoPrimitive  its ItemType               local name and namespace, whatever the context ignores
//   CAttributeInfoEnum       SetI4/GetI4 by functions   local name, and namespace unless the context ignores it
//   CAttributeInfoAny        a CAttributeCol            its namespace list
#pragma once

#include "ovxmllib/binding/Export.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/binding/SerializationContext.h"
#include "ovxmllib/document/PreparedName.h"
#include "ovxmllib/document/XmlAttribute.h"
#include "ovxmllib/document/XmlWriter.h"
#include "ovxmllib/foundation/WhitespaceUtils.h"
#include "ovxmllib/mapping/XmlGeneratedClass.h"
#include "ovxmllib/values/FacetShortcut.h"
#include "ovxmllib/values/OvVariant.h"
#include "ovxmllib/values/PrimitiveRestrictions.h"

namespace OvXmlLib16Data {

using OvXmlLib16::CPrimitiveRestrictions;
using OvXmlLib16::CSerializationContext;
using OvXmlLib16::CWhitespaceUtils;
using OvXmlLib16::CXmlAttribute;
using OvXmlLib16::CXmlGeneratedClass;
using OvXmlLib16::CXmlObjectBase;
using OvXmlLib16::CXmlWriter;
using OvXmlLib16::OvVariant;
using OvXmlLib16::WStringView;

class CAttributeInfoPrimitive;

/// One entry of the attribute table: a name, a property and rules, never a value. Entries are made with new by
/// generated code and belong to the class's table. They are never changed, so any number of threads may use one.
///
/// Texts that constructors take are terminated and copied; a null default or format counts as empty.
class OVXMLLIB_API CAttributeInfo {
 public:
  virtual ~CAttributeInfo() = default;
  CAttributeInfo(const CAttributeInfo&) = delete;
  CAttributeInfo& operator=(const CAttributeInfo&) = delete;

  /// Writes the attribute on the start tag that is open, if the property is to be written.
  virtual void AttributeToXml(const CSerializationContext& context, const CXmlGeneratedClass* object,
                              CXmlWriter* writer) const = 0;
  /// Sets the property from the attribute and returns true, or returns false when the attribute is not this one.
  virtual bool AttributeFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                                CXmlAttribute* attribute) = 0;
  /// \name For a walk that asks the likely entry first
  /// \{
  /// Whether the attribute has the local name and the namespace.
  bool IsNamedAs(const CXmlAttribute& attribute) const noexcept {
    return attribute.IsNamed(m_name, /*inAnyNamespace=*/false);
  }
  /// The entry, if it is for a value of a primitive type, else null.
  inline const CAttributeInfoPrimitive* AsPrimitive() const noexcept;
  /// \}
  /// Throws COvValidationException when the attribute had to be there and was not seen.
  virtual void Validate(const CSerializationContext& context, bool seen) const = 0;

 protected:
  CAttributeInfo(const WChar* name, const WChar* ns, int propertyIndex, bool optional, const WChar* defaultValue,
                 bool isPrimitive = false);

  /// Whether the local name is equal, and the namespace unless the context ignores it. False for null.
  bool IsThisAttribute(const CSerializationContext& context, const CXmlAttribute* attribute) const;

  /// The property's getter and setter. What they throw of the library's family is wrapped in COvValidationException
  /// with the attribute's name, and for the setter its path.
  void InvokePropertyGet(CXmlGeneratedClass* object, OvVariant& value) const {
    try {
      object->AccessProperty(m_propertyIndex, /*read=*/true, value);
    } catch (const OvXmlLib16::COvException& exception) {
      ThrowGetFailed(exception);
    }
  }
  void InvokePropertySet(CXmlGeneratedClass* object, OvVariant& value, const CXmlAttribute& attribute) const {
    try {
      object->AccessProperty(m_propertyIndex, /*read=*/false, value);
    } catch (const OvXmlLib16::COvException& exception) {
      ThrowSetFailed(exception, attribute);
    }
  }
  void ReadProperty(const CXmlGeneratedClass* object, OvVariant& value) const {
    InvokePropertyGet(const_cast<CXmlGeneratedClass*>(object), value);
  }

  /// The protected operations of any bound object.
  static void ToXml_Int(const CXmlObjectBase* object, CXmlWriter* writer, bool isRoot, const WChar* ns,
                        const CSerializationContext& context);
  static WString GetTargetNamespace(const CXmlObjectBase* object);
  static void TestNamespace(const WString& ns, const WString& allowed, const WString& target);
  static bool IsNamespaceValid(const WString& ns, const WString& allowed, const WString& target);

  const WString& GetName() const noexcept { return m_name.GetLocalName(); }
  const WString& GetNamespace() const noexcept { return m_name.GetNamespace(); }
  const OvXmlLib16::PreparedName& GetPreparedName() const noexcept { return m_name; }
  bool IsOptional() const noexcept { return m_optional; }

  /// Whether a text that is to be written may stay out: the attribute is optional, the text is its default, and the
  /// context wants no defaults.
  bool IsLeftOut(const CSerializationContext& context, WStringView text) const noexcept {
    return m_optional && !m_defaultValue.empty() && context.GetNoOptionalAttributeDefaultOutput() &&
           OvXmlLib16::AreSame(text, m_defaultValue);
  }
  void ThrowIfMissing(bool seen) const;

 private:
  [[noreturn]] void ThrowGetFailed(const OvXmlLib16::COvException& cause) const;
  [[noreturn]] void ThrowSetFailed(const OvXmlLib16::COvException& cause, const CXmlAttribute& attribute) const;

  OvXmlLib16::PreparedName m_name;
  int m_propertyIndex;
  bool m_optional;
  bool m_isPrimitive;  // it is a CAttributeInfoPrimitive
  WString m_defaultValue;
};

/// An attribute with a value of a primitive type.
class OVXMLLIB_API CAttributeInfoPrimitive : public CAttributeInfo {
 public:
  CAttributeInfoPrimitive(const WChar* name, const WChar* ns, int propertyIndex, bool optional, ItemType itemType,
                          const WChar* formatOverride, CWhitespaceUtils::WhitespaceRule whitespaceRule,
                          const CPrimitiveRestrictions& restrictions, const WChar* defaultValue);

  void AttributeToXml(const CSerializationContext& context, const CXmlGeneratedClass* object,
                      CXmlWriter* writer) const override;
  bool AttributeFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                        CXmlAttribute* attribute) override;
  void Validate(const CSerializationContext& context, bool seen) const override;
  /// Sets the property from the attribute, which is this one, by way of `value`.
  void ReadValue(const CSerializationContext& context, CXmlGeneratedClass* object, const CXmlAttribute& attribute,
                 OvVariant& value) const {
    value.ReferTo(attribute.GetValueView(), m_itemType, m_whitespaceRule);
    if (context.GetValidateOnRead() && !m_facetShortcut.SurelyPasses(value)) CheckRestriction(value);
    InvokePropertySet(object, value, attribute);
  }

  /// Checks a value against the facets of the attribute, for setters that want to; writing does it always, reading when
  /// the context says ValidateOnRead. Throws as CheckPrimitiveValue.
  void CheckRestriction(const OvVariant& value) const;

 private:
  CPrimitiveRestrictions m_restrictions;
  ItemType m_itemType;
  WString m_formatOverride;
  CWhitespaceUtils::WhitespaceRule m_whitespaceRule;
  OvXmlLib16::FacetShortcut m_facetShortcut;
};

inline const CAttributeInfoPrimitive* CAttributeInfo::AsPrimitive() const noexcept {
  return m_isPrimitive ? static_cast<const CAttributeInfoPrimitive*>(this) : nullptr;
}

/// An attribute with a value of a generated enumeration.
class OVXMLLIB_API CAttributeInfoEnum : public CAttributeInfo {
 public:
  using ValueToText = const WChar* (*)(int);
  using TextToValue = int (*)(const WChar*);

  /// What an unknown text means is for `textToValue` to say.
  CAttributeInfoEnum(const WChar* name, const WChar* ns, int propertyIndex, bool optional, ValueToText valueToText,
                     TextToValue textToValue, const WChar* defaultValue);

  void AttributeToXml(const CSerializationContext& context, const CXmlGeneratedClass* object,
                      CXmlWriter* writer) const override;
  bool AttributeFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                        CXmlAttribute* attribute) override;
  void Validate(const CSerializationContext& context, bool seen) const override;

 private:
  TextToValue m_textToValue;
  ValueToText m_valueToText;
};

/// The attributes that a wildcard allows, in a CAttributeCol. It takes every attribute of its namespaces, so it stands
/// last in the table.
class OVXMLLIB_API CAttributeInfoAny : public CAttributeInfo {
 public:
  /// The name and namespace play no part. `namespaceList` as CXmlObjectBase::IsNamespaceValid takes it.
  CAttributeInfoAny(const WChar* name, const WChar* ns, int propertyIndex, bool optional, const WChar* namespaceList,
                    const WChar* targetNamespace, const WChar* defaultValue);

  void AttributeToXml(const CSerializationContext& context, const CXmlGeneratedClass* object,
                      CXmlWriter* writer) const override;
  bool AttributeFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                        CXmlAttribute* attribute) override;
  /// Nothing is missing, whatever the entry says of being optional.
  void Validate(const CSerializationContext& context, bool seen) const override;

 private:
  WString m_namespaceList;
  WString m_targetNamespace;
};

}  // namespace OvXmlLib16Data
