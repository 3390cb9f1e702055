// The one lock type of the library.
#pragma once

#include "ovxmllib/binding/Export.h"
#include "ovxmllib/platform/Mutex.h"

namespace OvXmlLib16 {

/// A lock that its owning thread may enter again; each Enter needs a Leave on the same thread. It is a BasicLockable
/// (`std::lock_guard<COVCriticalSection>` works). Never copied.
class OVXMLLIB_API COVCriticalSection {
 public:
  COVCriticalSection() = default;
  COVCriticalSection(const COVCriticalSection&) = delete;
  COVCriticalSection& operator=(const COVCriticalSection&) = delete;
  virtual ~COVCriticalSection() = default;

  /// Waits until no other thread holds the lock, then holds it.
  void Enter() { m_mutex.lock(); }
  /// Gives back what one Enter took.
  void Leave() { m_mutex.unlock(); }

  /// The names that the standard library's guards ask for.
  void lock() { Enter(); }
  void unlock() { Leave(); }

 private:
  platform::RecursiveMutex m_mutex;
};

}  // namespace OvXmlLib16
