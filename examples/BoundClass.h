// What the bound classes of the examples share. A generator would spell this out in every class; docs/tutorial.md does.
#pragma once

#include <ovxmllib/ovxmllib.h>

#include <algorithm>
#include <atomic>
#include <initializer_list>
#include <mutex>
#include <optional>

/// The tables of one class, as CXmlGeneratedClass wants them.
struct ClassTables {
  OvXmlLib16Data::CParentElementInfo* info;
  OvXmlLib16Data::CElementInfo** elements;
  OvXmlLib16Data::CAttributeInfo** attributes;
};

/// An array that ends with null, of entries made with new.
template <class Entry>
Entry** NewTable(std::initializer_list<Entry*> entries) {
  auto** const table = new Entry* [entries.size() + 1] {};
  std::copy(entries.begin(), entries.end(), table);
  return table;
}

/// Base of the bound class `Class`, which supplies Init, AccessProperty, `static ClassTables MakeTables()` and
/// `static constexpr const WChar* kNamespace`.
template <class Class, class Base = OvXmlLib16::CXmlGeneratedClass>
class BoundClass : public Base {
 public:
  using Base::Base;

  OvXmlLib16::CXmlObjectBase* GetBase() override { return this; }
  using Base::GetBase;
  OvXmlLib16::WString GetNamespace() const override { return Class::kNamespace; }

  /// Gives the tables up; the next use makes them again. No thread may use an object of the class meanwhile.
  static void CleanTables() {
    m_isMade = false;
    Base::CleanMetaData(m_tables.info, m_tables.elements, m_tables.attributes);
  }

 protected:
  OvXmlLib16::WString GetTargetNamespace() const override { return Class::kNamespace; }
  OvXmlLib16Data::CParentElementInfo* GetClassInfo() const override { return Tables().info; }
  OvXmlLib16Data::CElementInfo** GetClassElementInfo() const override { return Tables().elements; }
  OvXmlLib16Data::CAttributeInfo** GetClassAttributeInfo() const override { return Tables().attributes; }

 private:
  // Any thread may be the first; the others wait for it, and later pass without the lock.
  static const ClassTables& Tables() {
    if (!m_isMade.load(std::memory_order_acquire)) {
      const std::lock_guard lock(Base::m_csInit);
      if (!m_isMade.load(std::memory_order_relaxed)) {
        m_tables = Class::MakeTables();
        m_isMade.store(true, std::memory_order_release);
      }
    }
    return m_tables;
  }

  inline static ClassTables m_tables{};
  inline static std::atomic<bool> m_isMade = false;
};

/// A mandatory object or a collection: there whenever somebody asks, made when somebody does.
template <class T>
class MadeOnUse {
 public:
  T& Get() const {
    if (m_object == nullptr) m_object = new T;
    return *m_object.operator->();
  }
  /// The next Get makes a new one. Others may still refer to this one.
  void Reset() { m_object = nullptr; }

 private:
  mutable OvXmlLib16::CSmartPtr<T> m_object;
};

/// The items of a repeated element; its class says which: `kName`, `kNamespace`, `kMinOccurs`, of the item's class.
template <class Item>
class ObjectCol : public OvXmlLib16::CXmlCollection {
 public:
  ObjectCol() : CXmlCollection(Item::kName, Item::kNamespace, Item::kMinOccurs, /*maxOccurs=*/-1) {}

  /// Adds an item at the end, a new one or one that there is. Returns it.
  Item& Add() { return Add(new Item); }
  Item& Add(OvXmlLib16::CSmartPtr<Item> item) {
    AppendItem(item);
    return *item.operator->();
  }
  Item& At(int index) const { return **OvXmlLib16::COvIterator<Item>(GetNodeAtIndex(index)); }
  OvXmlLib16::COvIterator<Item> begin() const { return OvXmlLib16::COvIterator<Item>(GetHead()); }
  OvXmlLib16::COvIterator<Item> end() const { return {}; }

 protected:
  /// The object for an element; null when no class fits it, which ends the collection.
  virtual OvXmlLib16::CSmartPtr<Item> MakeItem(OvXmlLib16::CXmlElement*) const { return new Item; }

  void ToXml_Int(OvXmlLib16::CXmlWriter* writer, bool, const OvXmlLib16::WChar* ns,
                 const OvXmlLib16::CSerializationContext& context, bool) const override {
    ValidateCount(context);
    for (const Item* item : *this) CXmlObjectBase::ToXml_Int(item, writer, /*isRoot=*/false, ns, context, false);
  }
  // Takes as many elements of the name as come.
  OvXmlLib16::CXmlElement* FromXml_Int(OvXmlLib16::CXmlElement*, OvXmlLib16::CXmlElement* child,
                                       const OvXmlLib16::CSerializationContext& context, bool) override {
    for (; child != nullptr; child = child->GetNextSiblingElement()) {
      if (!DoesElementNameMatch(context, child, Item::kName, Item::kNamespace)) break;
      const OvXmlLib16::CSmartPtr<Item> item = MakeItem(child);
      if (item == nullptr) break;
      CXmlObjectBase::FromXml_Int(&Add(item), child, child->GetFirstElement(), context);
    }
    return child;
  }
};

/// The factory of a class for the tables.
template <class T>
OvXmlLib16::CSmartPtr<OvXmlLib16::CXmlObjectBase> MakeNew(int, const OvXmlLib16::WChar*) {
  return new T;
}

/// \name The body of AccessProperty for one property
/// \{
/// The value that a setter is given.
template <OvXmlLib16::ItemType kType>
decltype(auto) ValueOf(const OvXmlLib16::OvVariant& value) {
  if constexpr (kType == OvXmlLib16::ItemType_string) {
    return value.GetString();
  } else {
    return value.Get<kType>();
  }
}
template <OvXmlLib16::ItemType kType, class T>
void Access(T& property, bool read, OvXmlLib16::OvVariant& value) {
  read ? value.Set<kType>(property) : void(property = ValueOf<kType>(value));
}
/// An optional value: not there, or nil, is the same to it.
template <OvXmlLib16::ItemType kType, class T>
void Access(std::optional<T>& property, bool read, OvXmlLib16::OvVariant& value) {
  if (!read && value.IsNil()) return property.reset();
  if (!read) return void(property = ValueOf<kType>(value));
  property ? value.Set<kType>(*property) : value.SetInvalid();
}
template <class T>
void AccessObject(OvXmlLib16::CSmartPtr<T>& property, bool read, OvXmlLib16::OvVariant& value) {
  read ? value.SetXmlObject(property)
       : void(property = static_cast<T*>(static_cast<OvXmlLib16::CXmlObjectBase*>(value.GetXmlObject())));
}
/// \}
