// The child elements of generated classes: what all entries share.
//
// The classes are named CElementInfo + group + kind + occurrence.
//
//   group       Seq, Choice, All            the content model of the class that owns the entry
//   kind        Prim                        a value of a primitive type
//               Enum                        a value of a generated enumeration
//               Cls                         an object of one known class
//               AbsCls                      an object whose class a factory finds by the element
//               Untpd                       a CElement: a wildcard, or an element of any type
//   occurrence  Mnd, Opt, Col               exactly once, at most once, a collection
#pragma once

#include "ovxmllib/binding/Export.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/binding/SerializationContext.h"
#include "ovxmllib/document/PreparedName.h"
#include "ovxmllib/document/XmlElement.h"
#include "ovxmllib/document/XmlWriter.h"
#include "ovxmllib/foundation/WhitespaceUtils.h"
#include "ovxmllib/mapping/XmlGeneratedClass.h"
#include "ovxmllib/values/FacetShortcut.h"
#include "ovxmllib/values/OvVariant.h"
#include "ovxmllib/values/PrimitiveRestrictions.h"

namespace OvXmlLib16 {
class CElementCol;
class CXmlCollectionBase;
}  // namespace OvXmlLib16

namespace OvXmlLib16Data {

using OvXmlLib16::CPrimitiveRestrictions;
using OvXmlLib16::CSerializationContext;
using OvXmlLib16::CSmartPtr;
using OvXmlLib16::CWhitespaceUtils;
using OvXmlLib16::CXmlElement;
using OvXmlLib16::CXmlGeneratedClass;
using OvXmlLib16::CXmlObjectBase;
using OvXmlLib16::CXmlWriter;
using OvXmlLib16::OvVariant;
using OvXmlLib16::WStringView;

/// The text of a value of a generated enumeration, and back.
using ValueToText = const WChar* (*)(int);
using TextToValue = int (*)(const WChar*);
/// Makes an object of a class known by number, with the element name that it is to have.
using ClassFactory = CSmartPtr<CXmlObjectBase> (*)(int classId, const WChar* elementName);
/// Makes the object that fits an element, by its name or `xsi:type`; null when none does.
using AbstractClassFactory = CSmartPtr<CXmlObjectBase> (*)(CXmlElement* element);

/// One entry of the element table: a name, a property and rules, never a value. Entries are made with new by generated
/// code and belong to the class's table. They are never changed, so any number of threads may use one.
///
/// Texts that constructors take are terminated and copied; a null default or format counts as empty.
class OVXMLLIB_API CElementInfo {
 public:
  virtual ~CElementInfo() = default;
  CElementInfo(const CElementInfo&) = delete;
  CElementInfo& operator=(const CElementInfo&) = delete;

  /// Writes the element of the property; returns whether anything was written.
  virtual bool ElementToXml(const CSerializationContext& context, const CXmlGeneratedClass* object,
                            CXmlWriter* writer) const = 0;
  /// Takes `*child`, the first unread child of `parent` or null, or more children, if they are this entry's, and moves
  /// it past them; returns whether the entry is satisfied. `ns` is the namespace of the owner's elements, `outerType`
  /// what the owner is.
  virtual bool ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                              CXmlElement** child, const WChar* ns, XmlElementType outerType) = 0;
  /// At the end of an all-group: returns true when the entry is content with what was `seen`, false when a group
  /// (`isElement` false) was not read; throws COvValidationException when an element lacks it.
  virtual bool Validate(const CSerializationContext& context, const CXmlGeneratedClass* object, bool seen,
                        bool isElement) const;
  /// Whether the entry is a group, whose attributes go on the start tag of the element that holds it.
  bool HasPseudoAttributes() const noexcept { return m_hasPseudoAttributes; }
  /// Writes the attributes of a group there. Nothing here.
  virtual void PseudoChildAttributeToXml(const CSerializationContext& context, const CXmlGeneratedClass* object,
                                         CXmlWriter* writer) const;

  /// Whether the entry lets a choice that it belongs to stay empty.
  virtual bool MayLeaveChoiceEmpty(const CXmlGeneratedClass* object) const;

  /// Checks a value against the facets of the element, for setters that want to; writing does it always, reading when
  /// the context says ValidateOnRead. Throws as CheckPrimitiveValue, and COvException for an entry that has no facets.
  void CheckRestriction(const OvVariant& value) const;

  /// Whether `element` has the entry's local name, and its namespace unless the context ignores it. False for null.
  bool IsThisElement(const CSerializationContext& context, const CXmlElement* element) const {
    return element != nullptr && element->IsNamed(m_name, context.GetIgnoreNamespaces());
  }

  /// \name The short cut of a sequence to what ElementFromXml mostly comes to
  /// \{
  /// Whether the entry is for one value of a primitive type and the child is its element without attributes.
  bool IsPlainValue(const CXmlElement* child) const noexcept {
    return m_isPrimitive && child != nullptr && child->GetFirstAttribute() == nullptr &&
           child->IsNamed(m_name, /*inAnyNamespace=*/false);
  }
  /// Sets the property from such a child, by way of `value`, and moves on. Throws what ElementFromXml throws.
  void ReadPlainValue(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement** child,
                      OvVariant& value) const {
    TakeText(value, **child);
    if (context.GetValidateOnRead()) CheckFacets(value);
    InvokePropertySet(object, value, **child);
    *child = (*child)->GetNextSiblingElement();
  }
  /// \}

  /// Whether `ns` of ElementFromXml is looked at; where not, it may be empty.
  bool UsesOwnersNamespace() const noexcept { return m_usesOwnersNamespace; }

  /// Throws COvValidationException: a mandatory child element is not there.
  [[noreturn]] void ThrowChildMissing(const CXmlElement& parent) const;

 protected:
  CElementInfo(const WChar* name, const WChar* ns, int propertyIndex);
  CElementInfo(const WChar* name, const WChar* ns, int propertyIndex, bool nillable, ValueToText valueToText,
               TextToValue textToValue, const WChar* defaultValue);
  CElementInfo(const WChar* name, const WChar* ns, int propertyIndex, bool nillable, ItemType itemType,
               const WChar* formatOverride, CWhitespaceUtils::WhitespaceRule whitespaceRule,
               const CPrimitiveRestrictions& restrictions, const WChar* defaultValue);

  /// For the constructor of a kind that does not look at it.
  void IgnoreOwnersNamespace() noexcept { m_usesOwnersNamespace = false; }
  /// For the constructor of a kind that overrides PseudoChildAttributeToXml.
  void SetHasPseudoAttributes(bool has) noexcept { m_hasPseudoAttributes = has; }

  const WString& GetElementName() const noexcept { return m_name.GetLocalName(); }
  const WString& GetElementNamespace() const noexcept { return m_name.GetNamespace(); }
  int GetPropertyIndex() const noexcept { return m_propertyIndex; }

  /// The property's getter and setter. What they throw of the library's family is wrapped in COvValidationException,
  /// the getter's with the name, the setter's with the path of `element`.
  void InvokePropertyGet(CXmlGeneratedClass* object, OvVariant& value) const {
    try {
      object->AccessProperty(m_propertyIndex, /*read=*/true, value);
    } catch (const OvXmlLib16::COvException& exception) {
      ThrowGetFailed(exception);
    }
  }
  void InvokePropertySet(CXmlGeneratedClass* object, OvVariant& value, const CXmlElement& element) const {
    try {
      object->AccessProperty(m_propertyIndex, /*read=*/false, value);
    } catch (const OvXmlLib16::COvException& exception) {
      ThrowSetFailed(exception, element);
    }
  }
  void ReadProperty(const CXmlGeneratedClass* object, OvVariant& value) const {
    InvokePropertyGet(const_cast<CXmlGeneratedClass*>(object), value);
  }
  /// The object or collection that the property holds, or null.
  CSmartPtr<CXmlObjectBase> GetObject(const CXmlGeneratedClass* object) const;
  /// Sets the property to an object, which may be null.
  void SetObject(CXmlGeneratedClass* object, CXmlObjectBase* value, const CXmlElement& element) const;

  /// \name Writing one value
  /// Return false, with nothing written, when the property holds nothing. A value that is nil is written as such, one
  /// that is the default as an empty element unless the context wants defaults, all others are checked first.
  /// \{
  bool ElementToXmlPrim(const CSerializationContext& context, const CXmlGeneratedClass* object,
                        CXmlWriter* writer) const;
  bool ElementToXmlEnum(const CSerializationContext& context, const CXmlGeneratedClass* object, CXmlWriter* writer,
                        ValueToText valueToText) const;
  bool ElementToXmlCls(const CSerializationContext& context, const CXmlGeneratedClass* object, CXmlWriter* writer,
                       bool optionalChoice) const;
  bool ElementToXmlCol(const CSerializationContext& context, const CXmlGeneratedClass* object,
                       CXmlWriter* writer) const;
  /// \}

  /// Set the property from `*child` and move it to its next sibling. A nil element gives the setter a nil variant.
  void ElementFromXmlPrim(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement** child);
  void ElementFromXmlEnum(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement** child);

  /// Reads `held` from `*child`, its own element, and moves that to its next sibling.
  static void ReadOwnElement(CXmlObjectBase* held, CXmlElement** child, const CSerializationContext& context,
                             bool optionalChoice);

  /// The protected operations of any bound object.
  static CXmlElement* FromXml_Int(CXmlObjectBase* object, CXmlElement* parent, CXmlElement* child,
                                  const CSerializationContext& context, bool optionalChoice);
  static void AttributesToXml_Int(const CXmlObjectBase* object, CXmlWriter* writer,
                                  const CSerializationContext& context);
  static CXmlElement* FromXmlLockElementName_Int(OvXmlLib16::CElementCol& collection, const WString& name,
                                                 CXmlElement* parent, CXmlElement* child,
                                                 const CSerializationContext& context);

  /// The namespace of a new untyped element for a namespace list.
  static WString GetAnyDefaultNamespace(const WChar* list, const WChar* ns, const WChar* target);

  ValueToText GetValueToText() const noexcept { return m_valueToText; }

  /// Throws COvInvalidParamException: a mandatory property holds nothing.
  [[noreturn]] void ThrowPropertyMissing() const;
  /// Throws COvValidationException: a mandatory member of an all-group is not there.
  [[noreturn]] void ThrowMandatoryMissing() const;

 private:
  [[noreturn]] void ThrowGetFailed(const OvXmlLib16::COvException& cause) const;
  [[noreturn]] static void ThrowSetFailed(const OvXmlLib16::COvException& cause, const CXmlElement& element);
  bool ReadNil(const CSerializationContext& context, const CXmlElement& element) const;
  void TakeText(OvVariant& value, const CXmlElement& element) const {
    const WStringView text = element.GetTextView();
    if (m_takesTextAsItIs && !text.empty()) {
      value.ReferTo(text);
    } else {
      value.ReferTo(text.empty() ? WStringView(m_defaultValue) : text, m_itemType, m_whitespaceRule);
    }
  }
  template <class Convert>
  void ReadValue(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement** child,
                 Convert&& convert);
  bool IsDefault(WStringView text) const noexcept {
    return !m_defaultValue.empty() && OvXmlLib16::AreSame(text, m_defaultValue);
  }
  void CheckFacets(const OvVariant& value) const {
    if (!m_facetShortcut.SurelyPasses(value)) CheckRestriction(value);
  }
  void WriteDefault(const CSerializationContext& context, CXmlWriter* writer, WStringView text, ItemType type) const;
  void WriteNil(CXmlWriter* writer) const;
  void WriteObject(const CXmlObjectBase& object, const CSerializationContext& context, CXmlWriter* writer,
                   bool optionalChoice) const;

  OvXmlLib16::PreparedName m_name;
  int m_propertyIndex;
  CPrimitiveRestrictions m_restrictions;
  OvXmlLib16::FacetShortcut m_facetShortcut;
  ItemType m_itemType = ItemType_none;
  WString m_formatOverride;
  CWhitespaceUtils::WhitespaceRule m_whitespaceRule = CWhitespaceUtils::WhitespaceRule_None;
  WString m_defaultValue;
  bool m_nillable = false;
  ValueToText m_valueToText = nullptr;
  TextToValue m_textToValue = nullptr;
  bool m_isPrimitive = false;
  bool m_usesOwnersNamespace = true;
  bool m_hasPseudoAttributes = false;
  bool m_takesTextAsItIs = false;
};

}  // namespace OvXmlLib16Data
