// How a generated class is read: attributes, and the walks over the three kinds of group.

#include <array>
#include <memory>
#include <optional>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/ObjectMemory.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/document/XmlAttribute.h"
#include "ovxmllib/document/XmlDocument.h"
#include "ovxmllib/mapping/AttributeInfo.h"
#include "ovxmllib/mapping/ElementInfo.h"
#include "ovxmllib/mapping/Nillable.h"
#include "ovxmllib/mapping/ScratchVariant.h"
#include "ovxmllib/mapping/XmlGeneratedClass.h"

namespace OvXmlLib16 {

using OvXmlLib16Data::ScratchVariant;
using OvXmlLib16Data::XmlElementGroupType_All;
using OvXmlLib16Data::XmlElementGroupType_Choice;
using OvXmlLib16Data::XmlElementGroupType_Sequence;
using OvXmlLib16Data::XmlElementType_Element;
using OvXmlLib16Data::XmlElementType_Pseudo;

namespace {

template <class Entry>
std::size_t CountEntries(Entry** entries) noexcept {
  std::size_t count = 0;
  while (entries[count] != nullptr) ++count;
  return count;
}

// One flag for each entry of a table, on the stack for the tables that schemas have.
class SeenFlags {
 public:
  explicit SeenFlags(std::size_t count) : m_flags(m_few.data()) {
    if (count <= m_few.size()) return;
    m_many = std::make_unique<bool[]>(count);
    m_flags = m_many.get();
  }
  SeenFlags(const SeenFlags&) = delete;
  SeenFlags& operator=(const SeenFlags&) = delete;

  bool& operator[](std::size_t index) noexcept { return m_flags[index]; }

 private:
  std::array<bool, 64> m_few{};
  std::unique_ptr<bool[]> m_many;
  bool* m_flags;
};

// The namespace of a class, asked for when the first entry wants it: that costs an allocation for an object.
class LazyNamespace {
 public:
  explicit LazyNamespace(const CXmlGeneratedClass& object) : m_object(object) {}

  const WChar* For(const CElementInfo& entry) {
    if (entry.UsesOwnersNamespace() && !m_isKnown) {
      m_namespace = m_object.GetNamespace();
      m_isKnown = true;
    }
    return m_namespace.c_str();
  }

 private:
  const CXmlGeneratedClass& m_object;
  WString m_namespace;
  bool m_isKnown = false;
};

// Whether this is the root of a large document.
bool HoldsMany(const CXmlElement& element) noexcept {
  constexpr std::size_t kMany = 1000;
  return element.GetParentElm() == nullptr && element.GetDocument()->GetElementCount() >= kMany;
}

[[noreturn]] void ThrowUnreadChild(const CXmlElement& parent, const CXmlElement& child) {
  // Deliberate: the message is spelled so.
  throw COvValidationException(
      FormatString(u"Failed read all the elements held within the element [%s]. The unexpected element [%s] remains un "
                   u"processed",
                   parent.GetLocalName(), child.GetLocalName()),
      parent.GetXPath());
}

[[noreturn]] void ThrowEmptyChoice(const CXmlElement& parent) {
  // Deliberate: the message is spelled so.
  throw COvValidationException(
      FormatString(u"No child elements within the element [%s] were populated. The element represents a choice, so one "
                   u"and only one element should be populated. The element contained no sutable child elements",
                   parent.GetLocalName()),
      parent.GetXPath());
}

}  // namespace

CXmlElement* CXmlGeneratedClass::FromXml_Int(CXmlElement* parent, CXmlElement* child,
                                             const CSerializationContext& context, bool optionalChoice) {
  const SlabScope scope(HoldsMany(*parent));
  try {
    ReadObject(parent, child, context, optionalChoice);
    return child;
  } catch (const COvException& exception) {
    // What has a place keeps it. Deliberate: it goes on as the base class.
    if (!exception.GetPath().empty()) throw COvException(exception);
    throw COvValidationException(u"Failed to process the element.", parent->GetXPath(), exception);
  }
}

void CXmlGeneratedClass::ReadObject(CXmlElement* parent, CXmlElement*& child, const CSerializationContext& context,
                                    bool optionalChoice) {
  Init();
  const CParentElementInfo& info = *GetClassInfo();
  if (info.GetElementType() == XmlElementType_Element) TakeElementName(*parent);
  ProcessAttributesFromXml(context, parent, info.GetFromXmlFailIfAttributeUnknown());
  if (IsNilObject(info)) return;
  child = ReadGroup(context, parent, child, info, optionalChoice);
  if (info.HasPrimitiveValue()) ReadPrimitiveValue(parent, info);
}

CXmlElement* CXmlGeneratedClass::ReadGroup(const CSerializationContext& context, CXmlElement* parent,
                                           CXmlElement* child, const CParentElementInfo& info, bool optionalChoice) {
  switch (info.GetElementGroupType()) {
    case XmlElementGroupType_Sequence:
      return ProcessElementSeqFromXml(context, parent, child, info.GetElementType());
    case XmlElementGroupType_Choice:
      return ProcessElementChoiceFromXml(context, parent, child, info.GetElementType(), optionalChoice);
    case XmlElementGroupType_All:
      return ProcessElementAllFromXml(context, parent, child, info.GetElementType());
  }
  throw COvException(u"Unknown Group Type");
}

void CXmlGeneratedClass::ReadPrimitiveValue(CXmlElement* parent, const CParentElementInfo& info) {
  OvVariant value;
  if (info.GetOutputPrimitiveClassAsTextProperty()) {
    value.SetString(parent->GetTextView());
  } else {
    value.FromString(parent->GetTextView(), info.GetPrimitiveDataType(), CWhitespaceUtils::WhitespaceRule_None);
  }
  AccessProperty(info.GetPrimitiveValuePropertyIndex(), /*read=*/false, value);
}

void CXmlGeneratedClass::ProcessAttributesFromXml(const CSerializationContext& context, CXmlElement* element,
                                                  bool failIfUnknown) {
  CAttributeInfo** const entries = GetClassAttributeInfo();
  const CXmlAttribute* attribute = element->GetFirstAttribute();
  std::size_t taken = 0;
  std::optional<ScratchVariant> scratch;
  // Mostly these are the attributes of the table in its order. One with a namespace may stand for something else.
  while (attribute != nullptr && entries[taken] != nullptr && !context.GetIgnoreNamespaces() &&
         attribute->GetNamespaceURI().empty() && entries[taken]->IsNamedAs(*attribute)) {
    if (const auto* const primitive = entries[taken]->AsPrimitive()) {
      if (!scratch) scratch.emplace();
      primitive->ReadValue(context, this, *attribute, **scratch);
    } else {
      scratch.reset();  // for the entry to use
      if (!Offer(context, *attribute, *entries[taken])) break;
    }
    ++taken;
    attribute = CXmlElement::GetNextAttribute(*attribute);
  }
  if (attribute == nullptr && entries[taken] == nullptr) {
    for (std::size_t i = 0; i < taken; ++i) entries[i]->Validate(context, /*seen=*/true);
  } else {
    ProcessAttributesInAnyOrder(context, *element, attribute, taken, failIfUnknown);
  }
}

// The interface of the entries wants the attribute mutable; none of them changes it.
bool CXmlGeneratedClass::Offer(const CSerializationContext& context, const CXmlAttribute& attribute,
                               CAttributeInfo& entry) {
  return entry.AttributeFromXml(context, this, const_cast<CXmlAttribute*>(&attribute));
}

// From `attribute` on, which may be null; the attributes ahead of it went to the first `taken` entries.
void CXmlGeneratedClass::ProcessAttributesInAnyOrder(const CSerializationContext& context, const CXmlElement& element,
                                                     const CXmlAttribute* attribute, std::size_t taken,
                                                     bool failIfUnknown) {
  CAttributeInfo** const entries = GetClassAttributeInfo();
  const std::size_t count = CountEntries(entries);
  SeenFlags seen(count);
  for (std::size_t i = 0; i < taken; ++i) seen[i] = true;
  for (; attribute != nullptr; attribute = CXmlElement::GetNextAttribute(*attribute)) {
    if (!attribute->GetNamespaceURI().empty()) {
      if (attribute->IsNamespaceAttribute()) continue;
      if (attribute->IsNilAttribute()) {
        ReadNil(element, *attribute);
        continue;
      }
    }
    std::size_t i = 0;
    while (i < count && !Offer(context, *attribute, *entries[i])) ++i;
    if (i < count) {
      seen[i] = true;
    } else if (failIfUnknown && !context.GetIgnoreUnknownAttributes()) {
      throw COvValidationException(u"Unexpected Attribute found.", attribute->GetXPath());
    }
  }
  for (std::size_t i = 0; i < count; ++i) entries[i]->Validate(context, seen[i]);
}

void CXmlGeneratedClass::ReadNil(const CXmlElement& element, const CXmlAttribute& attribute) {
  auto* nillable = dynamic_cast<INillable*>(this);
  if (nillable == nullptr) {
    throw COvValidationException(u"Invalid use of 'nil' attribute in non-nillable element.", element.GetXPath());
  }
  const WStringView value = attribute.GetValueView();
  const bool isTrue = value == u"true" || value == u"1";
  if (!isTrue && value != u"false" && value != u"0") {
    throw COvValidationException(FormatString(u"Unexpected Value [%s] for 'nil' Attribute found.", value),
                                 attribute.GetXPath());
  }
  nillable->SetNil(isTrue);
}

// Asks each entry in turn. One that is not satisfied ends the sequence, unless unknown children may be skipped. Behind
// the last entry, an element looks at what is left over; a group leaves it to its owner.
CXmlElement* CXmlGeneratedClass::ProcessElementSeqFromXml(const CSerializationContext& context, CXmlElement* parent,
                                                          CXmlElement* child, XmlElementType elementType) {
  CElementInfo** const entries = GetClassElementInfo();
  CXmlElement* const saved = child;
  LazyNamespace ns(*this);
  std::optional<ScratchVariant> scratch;  // for values that follow on each other
  const bool skips = context.GetIgnoreUnknownElements();
  for (std::size_t start = 0;;) {
    for (std::size_t i = start; entries[i] != nullptr; start = i++) {
      if (entries[i]->IsPlainValue(child)) {
        if (!scratch) scratch.emplace();
        entries[i]->ReadPlainValue(context, this, &child, **scratch);
        continue;
      }
      scratch.reset();  // for the entry to use
      while (!entries[i]->ElementFromXml(context, this, parent, &child, ns.For(*entries[i]), elementType)) {
        if (!skips || child == nullptr) return saved;
        child = child->GetNextSiblingElement();
      }
    }
    if (elementType != XmlElementType_Element || child == nullptr) return child;
    if (!skips) ThrowUnreadChild(*parent, *child);
    child = child->GetNextSiblingElement();
    if (child == nullptr) return nullptr;
  }
}

CXmlElement* CXmlGeneratedClass::ProcessElementChoiceFromXml(const CSerializationContext& context, CXmlElement* parent,
                                                             CXmlElement* child, XmlElementType elementType,
                                                             bool optionalChoice) {
  const bool isElement = elementType == XmlElementType_Element, skips = context.GetIgnoreUnknownElements();
  CXmlElement* const saved = child;
  LazyNamespace ns(*this);
  const auto takesOne = [&] {
    for (CElementInfo** entry = GetClassElementInfo(); *entry != nullptr; ++entry) {
      if ((*entry)->ElementFromXml(context, this, parent, &child, ns.For(**entry), elementType)) return true;
    }
    return false;
  };
  bool found = takesOne();
  while (!found && child != nullptr && skips && isElement) {
    child = child->GetNextSiblingElement();
    if (child == nullptr) break;
    found = takesOne();
  }
  if (!found && !optionalChoice) {
    if (!isElement && skips) child = saved;
    if (isElement && !context.GetIgnoreMissingChoice() && !DoesElementContainOptionalElements()) {
      ThrowEmptyChoice(*parent);
    }
  }
  if (isElement && child != nullptr && !skips) ThrowUnreadChild(*parent, *child);
  return child;
}

// Offers the children to all entries that are not seen yet, pass after pass, until a pass takes nothing.
CXmlElement* CXmlGeneratedClass::ProcessElementAllFromXml(const CSerializationContext& context, CXmlElement* parent,
                                                          CXmlElement* child, XmlElementType elementType) {
  CElementInfo** const entries = GetClassElementInfo();
  const std::size_t count = CountEntries(entries);
  const bool isElement = elementType == XmlElementType_Element;
  CXmlElement* const saved = child;
  LazyNamespace ns(*this);
  SeenFlags seen(count);
  for (const CXmlElement* last = nullptr; child != nullptr && child != last;) {
    last = child;
    for (std::size_t i = 0; i < count; ++i) {
      if (seen[i]) continue;
      seen[i] = entries[i]->ElementFromXml(context, this, parent, &child, ns.For(*entries[i]), elementType);
    }
  }
  for (std::size_t i = 0; i < count; ++i) {
    if (!entries[i]->Validate(context, this, seen[i], isElement)) return saved;
  }
  if (isElement && child != nullptr && !context.GetIgnoreUnknownElements()) ThrowUnreadChild(*parent, *child);
  return child;
}

}  // namespace OvXmlLib16
