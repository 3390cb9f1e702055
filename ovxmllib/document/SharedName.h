// A name that many objects have.
#pragma once

#include <atomic>
#include <cstdint>

#include "ovxmllib/binding/SmartPtr.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

class CXmlAttribute;
class CXmlElement;

/// The expanded name of elements or attributes (Namespaces in XML 1.0, section 2.1), kept once for all of them and held
/// by reference counting. It never changes and may be shared by threads.
class SharedName {
 public:
  using Pointer = CSmartPtr<const SharedName>;

  SharedName(WStringView name, WStringView ns) : localName(name), namespaceURI(ns) {}
  SharedName(const SharedName&) = delete;
  SharedName& operator=(const SharedName&) = delete;

  /// The name of a part of a document, which is one object for all its parts of that name, made at the first call. It
  /// outlives the document where a reference is taken. Throws std::bad_alloc.
  static const SharedName& Of(const CXmlElement& element);
  static const SharedName& Of(const CXmlAttribute& attribute);

  void AddRef() const noexcept { m_references.fetch_add(1, std::memory_order_relaxed); }
  void Release() const noexcept {
    if (m_references.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
  }

  const WString localName;
  const WString namespaceURI;

 private:
  ~SharedName() = default;

  mutable std::atomic<std::int64_t> m_references = 0;
};

/// Where a document's name keeps its SharedName; empty until somebody asks.
class SharedNameSlot {
 public:
  SharedNameSlot() = default;
  SharedNameSlot(const SharedNameSlot&) = delete;
  SharedNameSlot& operator=(const SharedNameSlot&) = delete;
  ~SharedNameSlot() {
    if (const SharedName* made = m_made.load(std::memory_order_relaxed)) made->Release();
  }

  const SharedName& Get(WStringView localName, WStringView ns) const {
    const SharedName* made = m_made.load(std::memory_order_acquire);
    return made != nullptr ? *made : Make(localName, ns);
  }

 private:
  const SharedName& Make(WStringView localName, WStringView ns) const;

  mutable std::atomic<const SharedName*> m_made = nullptr;  // one reference is owned
};

}  // namespace OvXmlLib16
