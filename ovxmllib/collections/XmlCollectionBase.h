// What all collections share: how many items they may have, and who hears of their changes.
#pragma once

#include <memory>
#include <vector>

#include "ovxmllib/binding/EventSink.h"
#include "ovxmllib/binding/Export.h"
#include "ovxmllib/binding/SerializationContext.h"
#include "ovxmllib/binding/XmlObjectBase.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

/// Base of the collections that hold the repeated elements of a schema: of bound objects (CXmlCollection) and of plain
/// values (CXmlTypeCollection).
///
/// A collection is a bound object itself, with the name and namespace of its elements. It lives by reference counting,
/// is never copied, and belongs to one thread at a time. Its limits are not enforced as it grows: ValidateCount tests
/// them, which writing does.
///
/// Each change tells the listeners, one after the other in the order of their registration, with the collection's
/// GetBase as the source. A listener must not change the collection that is telling it. It may add and remove
/// listeners, but which of the others then hear of this event is not defined.
class OVXMLLIB_API CXmlCollectionBase : public CXmlObjectBase {
 public:
  CXmlCollectionBase(const CXmlCollectionBase&) = delete;
  CXmlCollectionBase& operator=(const CXmlCollectionBase&) = delete;

  CXmlObjectBase* GetBase() override { return this; }
  using CXmlObjectBase::GetBase;

  ~CXmlCollectionBase() override;

 protected:
  /// Throws COvException: a collection that can be written by itself overrides it.
  WString GetTargetNamespace() const override;

 public:
  /// The namespace of the collection's elements.
  WString GetNamespace() const override { return m_strNamespace; }

  /// The number of items.
  virtual int GetCount() const = 0;
  /// Removes the items from the first to the last, as Remove does.
  virtual void Clear() = 0;
  /// Removes the item at `index`, counted from 0. Throws COvInvalidParamException at an index that no item has.
  virtual void Remove(int index) = 0;

  /// Throws COvValidationException when the number of items is outside the limits, unless the context ignores counts.
  virtual void ValidateCount(const CSerializationContext& context) const;
  /// Whether ValidateCount would pass.
  virtual bool IsValidCount(const CSerializationContext& context) const;

  /// The lowest number of items that is valid.
  int GetMinOccurs() const noexcept { return m_minOccurs; }
  /// The highest number of items that is valid; -1 for any.
  int GetMaxOccurs() const noexcept { return m_maxOccurs; }

  /// Lets `sink` hear of each change until it is removed. It is not owned and must live as long as it is registered. A
  /// sink that is added twice hears all twice.
  void AddEventListener(IEventSink* sink);
  /// Removes `sink`, however often it was added; one that is not registered is passed over.
  void RemoveEventListener(IEventSink* sink);

 protected:
  /// Any number of items of an element without a name.
  CXmlCollectionBase() = default;
  /// The texts are terminated and copied; null counts as empty. A `maxOccurs` of -1 stands for any number.
  CXmlCollectionBase(const WChar* elementName, const WChar* ns, int minOccurs, int maxOccurs);

  /// Whether anybody listens.
  bool HasListeners() const noexcept { return m_listeners != nullptr; }

  /// Tell the listeners; see IEventSink::MsgType for what `item` and `index` become. What a listener throws passes, and
  /// those behind it hear nothing.
  void FireOnCollectionChange() {
    if (HasListeners()) TellChange();
  }
  void FireOnCollectionAdd(void* item) {
    if (HasListeners()) TellAdd(item);
  }
  void FireOnCollectionAddComplete(void* item) {
    if (HasListeners()) TellAddComplete(item);
  }
  void FireOnCollectionRemove(int index) {
    if (HasListeners()) TellRemove(index);
  }
  void FireOnCollectionRemoveComplete(int index) {
    if (HasListeners()) TellRemoveComplete(index);
  }

  /// Throws COvInvalidParamException unless an item has this index.
  void CheckIndex(int index) const {
    if (index < 0 || index >= GetCount()) ThrowNoSuchIndex(index);
  }
  /// Throws COvInvalidParamException unless an item can be inserted in front of this index.
  void CheckInsertionIndex(int index) const {
    if (index < 0 || index > GetCount()) ThrowNoInsertionIndex();
  }

  WString m_strNamespace;

 private:
  void TellChange();
  void TellAdd(void* item);
  void TellAddComplete(void* item);
  void TellRemove(int index);
  void TellRemoveComplete(int index);
  template <class Tell>
  void ForEachListener(const Tell& tell);

  [[noreturn]] void ThrowNoSuchIndex(int index) const;
  [[noreturn]] static void ThrowNoInsertionIndex();

  std::unique_ptr<std::vector<IEventSink*>> m_listeners;  // null: none; the sinks are not owned
  int m_minOccurs = 0;
  int m_maxOccurs = -1;
};

}  // namespace OvXmlLib16
