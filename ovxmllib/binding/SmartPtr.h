// The intrusive pointer that holds bound objects.
#pragma once

#include <cassert>
#include <utility>

namespace OvXmlLib16 {

/// Shares a bound object: each pointer holds one reference (AddRef), the last one to go deletes the object (Release).
/// A new object has no reference and so belongs to the first CSmartPtr that takes it. T is CXmlObjectBase or derived.
/// One CSmartPtr belongs to one thread at a time; the count of the object is atomic. Comparing pointers compares which
/// objects they hold, not what the objects are.
template <class T>
class CSmartPtr {
 public:
  /// Holds nothing.
  CSmartPtr() noexcept = default;
  /// Takes a reference to `object`; null is allowed.
  CSmartPtr(T* object) : m_p(Referenced(object)) {}
  CSmartPtr(const CSmartPtr& other) : m_p(Referenced(other.m_p)) {}
  CSmartPtr(CSmartPtr&& other) noexcept : m_p(std::exchange(other.m_p, nullptr)) {}
  ~CSmartPtr() { Drop(m_p); }

  /// The new reference is taken before the old one is dropped, so assigning a pointer to itself keeps the object alive.
  CSmartPtr& operator=(T* object) {
    Drop(std::exchange(m_p, Referenced(object)));
    return *this;
  }
  CSmartPtr& operator=(const CSmartPtr& other) { return *this = other.m_p; }
  CSmartPtr& operator=(CSmartPtr&& other) noexcept {
    std::swap(m_p, other.m_p);
    return *this;
  }

  /// The object, which must be there.
  T* operator->() const noexcept {
    assert(m_p != nullptr && "p != 0");
    return m_p;
  }
  /// The object or null; still owned by this pointer.
  operator T*() const noexcept { return m_p; }

  bool operator==(T* object) const noexcept { return m_p == object; }
  bool operator==(const CSmartPtr& other) const noexcept { return m_p == other.m_p; }

 private:
  static T* Referenced(T* object) {
    if (object != nullptr) object->AddRef();
    return object;
  }
  static void Drop(T* object) {
    if (object != nullptr) object->Release();
  }

  T* m_p = nullptr;  // one reference is owned
};

}  // namespace OvXmlLib16
