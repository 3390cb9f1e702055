// The properties of sample classes: what a code generator would write out for each, once for each kind.
//
// A property has a name and five operations: Init gives it its initial state, Get and Set pass its value in a variant,
// Fill gives it a value by a number (the same for the same number), Equals compares deeply.
#pragma once

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "ovxmllib/collections/AttributeCol.h"
#include "ovxmllib/collections/Element.h"
#include "ovxmllib/collections/ElementCol.h"
#include "ovxmllib/collections/ValueCollections.h"
#include "ovxmllib/values/OvVariant.h"

namespace OvXmlLib16::test {

inline constexpr const WChar* kNs = u"urn:sample";

/// Whether a property may be without a value. Mandatory objects are made by Init.
enum class Occurs { kOnce, kAtMostOnce };

/// Fill with a number from here on gives untyped elements children, with the white space between which formatting
/// would change their text.
inline constexpr int kMixedContent = 1000;

/// A text of a value of this type; a few for each, some at the ends of the type's range.
WStringView SampleText(ItemType type, int number);

/// Compares what an application can tell apart: objects of sample classes and untyped elements deeply. Both may be
/// null.
bool Equal(const CXmlObjectBase* a, const CXmlObjectBase* b);
bool Equal(const CElement& a, const CElement& b);
bool Equal(const CAttributeCol& a, const CAttributeCol& b);

template <class T>
bool AreEqualValues(const T& a, const T& b) {
  if constexpr (std::is_floating_point_v<T>) {
    return (std::isnan(a) && std::isnan(b)) || (a == b && std::signbit(a) == std::signbit(b));
  } else {
    return a == b;
  }
}

template <ItemType kType>
typename Primitive<kType>::Value SampleValue(int number) {
  OvVariant value;
  value.FromString(SampleText(kType, number), kType, CWhitespaceUtils::WhitespaceRule_Preserve);
  return value.Get<kType>();
}

/// The operations of the root for the setters of choices.
struct Choices : CXmlObjectBase {
  using CXmlObjectBase::Choice_CollectionChanged;
  using CXmlObjectBase::Choice_SelectElement;
  using CXmlObjectBase::Choice_SetElementValid;
  using CXmlObjectBase::SetElementName;
};

/// As the setter of a property that holds an object does it. Clearing one that is not set is no selection: readers do
/// so with what took nothing.
inline void SelectObject(const WChar* name, const CXmlObjectBase* object, WString& selected) {
  if (object != nullptr || selected == name) Choices::Choice_SelectElement(name, object, selected);
}

/// A value of a primitive type, which may be absent or nil. One without a name is no member of a choice.
template <ItemType kType>
class Value {
 public:
  using T = typename Primitive<kType>::Value;

  explicit Value(const WChar* name) : m_name(name) {}

  /// Null when there is none.
  const T* operator->() const { return m_held ? &*m_held : nullptr; }
  const T& operator*() const { return *m_held; }
  bool IsSet() const { return m_held.has_value(); }
  bool IsNil() const { return m_isNil; }
  void Assign(T value) {
    m_held = std::move(value);
    m_isNil = false;
  }
  void MakeNil() {
    m_held.reset();
    m_isNil = true;
  }

  void Init() {
    m_held.reset();
    m_isNil = false;
  }
  void Get(OvVariant& value) const {
    if (m_held) value.Set<kType>(*m_held);
    if (m_isNil) value.SetNil();
  }
  void Set(const OvVariant& value) {
    Init();
    if (value.IsNil()) {
      MakeNil();
    } else if (value.IsValid()) {
      m_held = value.Get<kType>();
    }
  }
  void Select(const OvVariant& value, WString& selected) const {
    if (m_name != nullptr) Choices::Choice_SetElementValid(value.IsValid(), m_name, selected);
  }
  /// Leaves a char without a value: it can be read, but every value is refused when it is written.
  void Fill(int number) {
    if constexpr (kType != ItemType_char) Assign(SampleValue<kType>(number));
  }
  bool Equals(const Value& other) const {
    if (m_isNil != other.m_isNil || IsSet() != other.IsSet()) return false;
    return !IsSet() || AreEqualValues(*m_held, *other.m_held);
  }

 private:
  const WChar* m_name;
  std::optional<T> m_held;
  bool m_isNil = false;
};

/// The values of the one enumeration, and the functions that a generator makes for it.
enum Shade { kLight, kDark, kNone };
const WChar* ShadeToText(int value);
/// Throws COvInvalidValueException for another text.
int ShadeFromText(const WChar* text);

/// A value of the enumeration.
class ShadeValue : public Value<ItemType_i4> {
 public:
  using Value::Value;
  void Fill(int number) { Assign(number % 3); }
};

/// A number whose setter refuses 13 and whose getter refuses 14.
class TouchyValue : public Value<ItemType_i4> {
 public:
  using Value::Value;
  void Get(OvVariant& value) const;
  void Set(const OvVariant& value);
};

/// An object of one class. T::Make() makes a new one.
template <class T, Occurs kOccurs = Occurs::kAtMostOnce>
class Object {
 public:
  explicit Object(const WChar* name) : m_name(name) {}

  T* operator->() const { return m_held; }
  T* Get() const { return m_held; }
  void Assign(T* object) { m_held = object; }

  /// A new object with the name of the property.
  CSmartPtr<T> Make(int number = 0) const {
    CSmartPtr<T> made = T::Make(number);
    Choices::SetElementName(made, m_name);
    return made;
  }
  void Init() { m_held = kOccurs == Occurs::kOnce ? Make() : CSmartPtr<T>(); }
  void Get(OvVariant& value) const { value.SetXmlObject(m_held); }
  void Set(const OvVariant& value) {
    const CSmartPtr<CXmlObjectBase> object = value.GetXmlObject();
    m_held = dynamic_cast<T*>(static_cast<CXmlObjectBase*>(object));
  }
  void Select(const OvVariant& value, WString& selected) const { SelectObject(m_name, value.GetXmlObject(), selected); }
  void Fill(int number) {
    m_held = Make(number);
    m_held->Fill(number);
  }
  bool Equals(const Object& other) const { return Equal(m_held, other.m_held); }

 private:
  const WChar* m_name;
  CSmartPtr<T> m_held;
};

/// An untyped element. `list` is its namespace list.
template <Occurs kOccurs = Occurs::kAtMostOnce>
class Untyped {
 public:
  Untyped(const WChar* name, const WChar* ns, const WChar* list) : m_name(name), m_ns(ns), m_list(list) {}

  CElement* operator->() const { return m_held; }
  CElement* Get() const { return m_held; }

  void Init() { m_held = kOccurs == Occurs::kOnce ? Make() : CSmartPtr<CElement>(); }
  void Get(OvVariant& value) const { value.SetXmlObject(m_held); }
  void Set(const OvVariant& value) {
    const CSmartPtr<CXmlObjectBase> object = value.GetXmlObject();
    m_held = dynamic_cast<CElement*>(static_cast<CXmlObjectBase*>(object));
  }
  void Select(const OvVariant& value, WString& selected) const { SelectObject(m_name, value.GetXmlObject(), selected); }
  void Fill(int number);
  bool Equals(const Untyped& other) const { return Equal(m_held, other.m_held); }

 private:
  CSmartPtr<CElement> Make() const { return new CElement(m_name, m_ns, m_list, kNs); }

  const WChar* m_name;
  const WChar* m_ns;
  const WChar* m_list;
  CSmartPtr<CElement> m_held;
};

/// Gives an element text, attributes and, for numbers from kMixedContent on, children.
void FillElement(CElement& element, int number);

template <Occurs kOccurs>
void Untyped<kOccurs>::Fill(int number) {
  m_held = Make();
  FillElement(*m_held, number);
}

/// Adds an item by a number.
template <ItemType kType>
void FillCollection(ValueCollection<kType>& collection, int number) {
  collection.Add(SampleValue<kType>(number));
}
template <ItemType kType>
void FillCollection(DateCollection<kType>& collection, int number) {
  collection.Add(SampleValue<kType>(number));
}
inline void FillCollection(CElementCol& collection, int number) {
  FillElement(*collection.Add(u"any", u"urn:other"), number);
}

template <class T>
bool AreEqualItems(const T& a, const T& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const auto& mine, const auto& others) {
    if constexpr (std::is_pointer_v<std::decay_t<decltype(mine)>>) {
      return Equal(mine, others);
    } else {
      return AreEqualValues(mine, others);
    }
  });
}

/// A collection of elements of this name, of a CElementCol of this namespace list. A choice listens to its collections.
template <class T>
class Collection {
 public:
  explicit Collection(const WChar* name, int minOccurs = 0, int maxOccurs = -1, IEventSink* listener = nullptr,
                      const WChar* list = u"##other")
      : m_name(name), m_list(list), m_minOccurs(minOccurs), m_maxOccurs(maxOccurs), m_listener(listener) {}
  Collection(const Collection&) = delete;
  Collection& operator=(const Collection&) = delete;
  ~Collection() { Drop(); }

  T* operator->() const { return m_held; }
  T& operator*() const { return *m_held; }

  void Init() {
    Drop();
    if constexpr (std::is_same_v<T, CElementCol>) {
      m_held = new CElementCol(u"", m_list, kNs, m_minOccurs, m_maxOccurs);
    } else {
      m_held = new T(m_name, kNs, m_minOccurs, m_maxOccurs);
    }
    if (m_listener != nullptr) m_held->AddEventListener(m_listener);
  }
  void Get(OvVariant& value) const { value.SetXmlCollection(m_held); }
  void Set(const OvVariant&) {}
  void Fill(int number) {
    for (int i = 0; i <= number % 3; ++i) FillCollection(*m_held, number + i);
  }
  bool Equals(const Collection& other) const { return AreEqualItems(*m_held, *other.m_held); }
  /// Tells the choice that owns this collection that the number of items changed.
  void Changed(const CXmlObjectBase* source, WString& selected) const {
    if (source == m_held) Choices::Choice_CollectionChanged(m_name, m_held->GetCount(), selected);
  }

 private:
  void Drop() {
    if (m_held != nullptr) m_held->RemoveEventListener(m_listener);
    m_held = nullptr;
  }

  const WChar* m_name;
  const WChar* m_list;
  int m_minOccurs;
  int m_maxOccurs;
  IEventSink* m_listener;
  CSmartPtr<T> m_held;
};

/// The attributes that a wildcard took.
class AnyAttributes {
 public:
  explicit AnyAttributes(const WChar* list) : m_list(list) {}

  CAttributeCol* operator->() const { return m_held; }

  void Init() { m_held = new CAttributeCol(u"", m_list, kNs); }
  void Get(OvVariant& value) const { value.SetXmlObject(m_held); }
  void Set(const OvVariant&) {}
  void Fill(int number);
  bool Equals(const AnyAttributes& other) const { return Equal(*m_held, *other.m_held); }

 private:
  const WChar* m_list;
  CSmartPtr<CAttributeCol> m_held;
};

}  // namespace OvXmlLib16::test
