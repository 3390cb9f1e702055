// What sample classes have in common: the code that a generator would write out in each of them.
//
//   class Point : public Generated<Point> {
//    public:
//     static void Describe(Tables& tables);           the three tables
//     auto Properties() { return std::tie(x, y); }    by their index in the tables
//     Value<ItemType_r8> x{u"x"}, y{u"y"};
//   };
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <tuple>
#include <vector>

#include "ovxmllib/mapping/AttributeInfo.h"
#include "ovxmllib/mapping/ElementInfoAll.h"
#include "ovxmllib/mapping/ElementInfoChoice.h"
#include "ovxmllib/mapping/ElementInfoSeq.h"
#include "ovxmllib/mapping/XmlGeneratedClass.h"
#include "tests/support/Properties.h"

namespace OvXmlLib16::test {

using namespace OvXmlLib16Data;

/// What tables say of a value beyond its type.
struct Rules {
  bool nillable = false;
  const WChar* defaultValue = nullptr;
  CPrimitiveRestrictions facets{};
  const WChar* format = nullptr;
  const WChar* ns = kNs;
};

/// What CParentElementInfo is told beyond group, type and name.
struct ClassRules {
  bool failIfAttributeUnknown = true;
  bool hasBaseClasses = false;
  int valueIndex = -1;
  ItemType valueType = ItemType_none;
  bool valueAsText = false;
};

template <class T>
CSmartPtr<CXmlObjectBase> MakeObject(int, const WChar* elementName) {
  const CSmartPtr<T> made = T::Make();
  Choices::SetElementName(made, elementName);
  return static_cast<T*>(made);
}

/// Collects the entries of a class. All are in the samples' namespace, attributes in none.
class Tables {
 public:
  void Class(XmlElementGroupType group, XmlElementType type, const WChar* name, const ClassRules& rules = {}) {
    m_info =
        std::make_unique<CParentElementInfo>(group, type, name, kNs, rules.failIfAttributeUnknown, rules.hasBaseClasses,
                                             rules.valueIndex, rules.valueType, nullptr, rules.valueAsText);
  }
  template <class Entry>
  void Prim(const WChar* name, int index, ItemType type, const Rules& rules = {}) {
    Add(new Entry(name, rules.ns, index, rules.nillable, type, rules.format, WhitespaceOf(type), rules.facets,
                  rules.defaultValue));
  }
  template <class Entry>
  void Enum(const WChar* name, int index, const Rules& rules = {}) {
    Add(new Entry(name, rules.ns, index, rules.nillable, ShadeToText, ShadeFromText, rules.defaultValue));
  }
  /// `more` is whether content is required, for mandatory entries.
  template <class Entry, class T, class... More>
  void Cls(const WChar* name, int index, XmlElementType type, More... more) {
    Add(new Entry(name, kNs, index, type, MakeObject<T>, /*classId=*/index, more...));
  }
  template <class Entry, class... More>
  void AbsCls(const WChar* name, int index, AbstractClassFactory factory, More... more) {
    Add(new Entry(name, kNs, index, XmlElementType_Element, factory, more...));
  }
  template <class Entry>
  void Untpd(const WChar* name, int index, const WChar* list) {
    Add(new Entry(name, kNs, index, list, kNs));
  }
  template <class Entry, class... More>
  void Col(const WChar* name, int index, More... more) {
    Add(new Entry(name, kNs, index, more...));
  }
  void Attribute(const WChar* name, int index, bool optional, ItemType type, const Rules& rules = {.ns = u""}) {
    Add(new CAttributeInfoPrimitive(name, rules.ns, index, optional, type, rules.format, WhitespaceOf(type),
                                    rules.facets, rules.defaultValue));
  }
  void EnumAttribute(const WChar* name, int index, bool optional, const Rules& rules = {.ns = u""}) {
    Add(new CAttributeInfoEnum(name, rules.ns, index, optional, ShadeToText, ShadeFromText, rules.defaultValue));
  }
  void AnyAttribute(int index, const WChar* list) {
    Add(new CAttributeInfoAny(u"anyAttribute", kNs, index, /*optional=*/true, list, kNs, nullptr));
  }

  /// Hands the tables over, as CleanMetaData takes them.
  void Publish(CParentElementInfo*& info, CElementInfo**& elements, CAttributeInfo**& attributes) {
    std::unique_ptr<CElementInfo*[]> elementArray = ToArray(m_elements);
    std::unique_ptr<CAttributeInfo*[]> attributeArray = ToArray(m_attributes);
    for (auto& entry : m_elements) static_cast<void>(entry.release());
    for (auto& entry : m_attributes) static_cast<void>(entry.release());
    info = m_info.release();
    elements = elementArray.release();
    attributes = attributeArray.release();
  }

 private:
  static CWhitespaceUtils::WhitespaceRule WhitespaceOf(ItemType type) {
    const bool isText = type == ItemType_string || type == ItemType_char;
    return isText ? CWhitespaceUtils::WhitespaceRule_Preserve : CWhitespaceUtils::WhitespaceRule_Collapse;
  }
  template <class Entry>
  static std::unique_ptr<Entry* []> ToArray(const std::vector<std::unique_ptr<Entry>>& entries) {
    auto array = std::make_unique<Entry*[]>(entries.size() + 1);
    for (std::size_t i = 0; i < entries.size(); ++i) array[i] = entries[i].get();
    return array;
  } void Add(CElementInfo* entry) {
    m_elements.emplace_back(entry);
  }
  void Add(CAttributeInfo* entry) { m_attributes.emplace_back(entry); }

  std::unique_ptr<CParentElementInfo> m_info;
  std::vector<std::unique_ptr<CElementInfo>> m_elements;
  std::vector<std::unique_ptr<CAttributeInfo>> m_attributes;
};

/// Base of all sample classes: what tests need to handle one without knowing it.
class SampleObject : public CXmlGeneratedClass {
 public:
  using CXmlObjectBase::GetElementName;
  using CXmlObjectBase::SetElementName;

  CXmlObjectBase* GetBase() override { return this; }
  using CXmlObjectBase::GetBase;
  WString GetNamespace() const override { return kNs; }

  /// Gives every property a value, of a choice one, by a number from 0.
  virtual void Fill(int number) = 0;
  virtual bool Equals(const SampleObject& other) const = 0;
  /// The setter of a property.
  virtual void Put(int index, OvVariant value) = 0;
  /// The tables, built if they are not; for tests that look at them.
  virtual CElementInfo** GetElements() const = 0;

 protected:
  WString GetTargetNamespace() const override { return kNs; }
};

template <class Derived, class Base = SampleObject>
class Generated : public Base {
 public:
  static CSmartPtr<Derived> Make(int = 0) {
    CSmartPtr<Derived> made = new Derived;
    made->SetElementName(made->GetClassInfo()->GetElementName().c_str());
    made->Init();
    return made;
  }
  /// Gives the tables of the class up. Nobody may be using them.
  static void CleanUp() {
    const std::lock_guard lock(CXmlGeneratedClass::m_csInit);
    g_isBuilt = false;
    CXmlGeneratedClass::CleanMetaData(g_info, g_elements, g_attributes);
  }

  void Fill(int number) override {
    if (IsChoice()) return FillAt(number % static_cast<int>(kCount()), number);
    for (int i = 0; i < static_cast<int>(kCount()); ++i) FillAt(i, number + i);
  }
  bool Equals(const SampleObject& other) const override {
    const auto* same = dynamic_cast<const Derived*>(&other);
    if (same == nullptr || this->GetElementName() != same->GetElementName()) return false;
    auto mine = Self().Properties(), others = const_cast<Derived*>(same)->Properties();
    return [&]<std::size_t... kIndex>(std::index_sequence<kIndex...>) {
      return (std::get<kIndex>(mine).Equals(std::get<kIndex>(others)) && ...);
    }
    (std::make_index_sequence<kCount()>());
  }
  /// The member of a choice that is set.
  const WString& GetSelected() const { return m_selected; }
  void Put(int index, OvVariant value) override { AccessProperty(index, /*read=*/false, value); }
  CElementInfo** GetElements() const override { return GetClassElementInfo(); }

  void OnEvent(CXmlObjectBase* source, IEventSink::MsgType type, void*) override {
    if (type != IEventSink::OnCollectionChange || !IsChoice()) return;
    ForEach([&](auto& property) {
      if constexpr (requires { property.Changed(source, m_selected); }) property.Changed(source, m_selected);
    });
  }

 protected:
  void AccessProperty(int index, bool read, OvVariant& value) override {
    At(index, [&](auto& property) {
      if (read) return property.Get(value);
      if constexpr (requires { property.Select(value, m_selected); }) {
        if (IsChoice()) property.Select(value, m_selected);
      }
      property.Set(value);
    });
  }
  CParentElementInfo* GetClassInfo() const override {
    Build();
    return g_info;
  }
  CElementInfo** GetClassElementInfo() const override {
    Build();
    return g_elements;
  }
  CAttributeInfo** GetClassAttributeInfo() const override {
    Build();
    return g_attributes;
  }
  void Init() override {
    m_selected.clear();
    ForEach([](auto& property) { property.Init(); });
  }

 private:
  static void Build() {
    if (g_isBuilt.load(std::memory_order_acquire)) return;
    const std::lock_guard lock(CXmlGeneratedClass::m_csInit);
    if (g_isBuilt.load(std::memory_order_relaxed)) return;
    Tables tables;
    Derived::Describe(tables);
    tables.Publish(g_info, g_elements, g_attributes);
    g_isBuilt.store(true, std::memory_order_release);
  }

  static constexpr std::size_t kCount() { return std::tuple_size_v<decltype(std::declval<Derived&>().Properties())>; }
  Derived& Self() const { return const_cast<Derived&>(static_cast<const Derived&>(*this)); }
  bool IsChoice() const { return GetClassInfo()->GetElementGroupType() == XmlElementGroupType_Choice; }
  void FillAt(int index, int number) {
    At(index, [&](auto& property) {
      if (IsChoice()) {  // as a setter does it
        property.Fill(number);
        OvVariant value;
        property.Get(value);
        if constexpr (requires { property.Select(value, m_selected); }) property.Select(value, m_selected);
      } else {
        property.Fill(number);
      }
    });
  }
  template <class Call>
  void ForEach(const Call& call) {
    auto properties = Self().Properties();
    std::apply([&](auto&... property) { (call(property), ...); }, properties);
  }
  template <class Call>
  void At(int index, const Call& call) {
    int i = 0;
    ForEach([&](auto& property) {
      if (i++ == index) call(property);
    });
  }

  inline static std::atomic<bool> g_isBuilt = false;
  inline static CParentElementInfo* g_info = nullptr;
  inline static CElementInfo** g_elements = nullptr;
  inline static CAttributeInfo** g_attributes = nullptr;

  WString m_selected;
};

/// A collection of objects of one class, elements or groups.
template <class T>
class ObjectCol : public CXmlCollection {
 public:
  ObjectCol(const WChar* name, const WChar* ns, int minOccurs, int maxOccurs)
      : CXmlCollection(name, ns, minOccurs, maxOccurs) {}

  CXmlObjectBase* GetBase() override { return this; }
  using CXmlCollection::GetBase;
  /// Adds an item, which gets the name of the collection's elements, or keeps its own where that tells its class.
  void Add(T* item) {
    if constexpr (!requires(CXmlElement * element) { T::MakeFor(element); }) {
      CXmlObjectBase::SetElementName(item, GetElementName().c_str());
    }
    AppendItem(item);
  }
  COvIterator<T> begin() const { return COvIterator<T>(GetHead()); }
  COvIterator<T> end() const { return {}; }

 protected:
  void ToXml_Int(CXmlWriter* writer, bool, const WChar*, const CSerializationContext& context, bool) const override {
    ValidateCount(context);
    for (const T* item : *this) {
      CXmlObjectBase::ToXml_Int(item, writer, /*isRoot=*/false, m_strNamespace.c_str(), context, false);
    }
  }
  CXmlElement* FromXml_Int(CXmlElement* parent, CXmlElement* child, const CSerializationContext& context,
                           bool) override {
    while (child != nullptr) {
      CXmlElement* const unread = ReadItem(parent, child, context);
      if (unread == child) break;
      child = unread;
    }
    return child;
  }

 private:
  CXmlElement* ReadItem(CXmlElement* parent, CXmlElement* child, const CSerializationContext& context) {
    CSmartPtr<T> item;
    if constexpr (requires { T::MakeFor(child); }) {
      const CSmartPtr<CXmlObjectBase> made = T::MakeFor(child);
      item = dynamic_cast<T*>(static_cast<CXmlObjectBase*>(made));
      if (item == nullptr) return child;
    } else if constexpr (requires { T::kIsGroup; }) {
      item = T::Make();
      CXmlElement* const unread = CXmlObjectBase::FromXml_Int(item, parent, child, context);
      if (unread != child) Add(item);
      return unread;
    } else {
      if (!DoesElementNameMatch(context, child, GetElementName().c_str(), m_strNamespace.c_str())) return child;
      item = T::Make();
    }
    CXmlObjectBase::FromXml_Int(item, child, child->GetFirstElement(), context);
    Add(item);
    return child->GetNextSiblingElement();
  }
};

template <class T>
void FillCollection(ObjectCol<T>& collection, int number) {
  const CSmartPtr<T> item = T::Make(number);
  item->Fill(number);
  collection.Add(item);
}

}  // namespace OvXmlLib16::test
