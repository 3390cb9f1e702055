// Text that lies in a document's pool, and the string that is made of it when somebody asks for one.
#pragma once

#include <atomic>
#include <cstddef>
#include <memory>

#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

/// What `slot` points to, made by the first caller, who may be any thread: `make` gives a unique_ptr. Of two that make
/// it at the same time one gives its own up.
template <class T, class Make>
const T& MadeOnce(std::atomic<const T*>& slot, Make&& make) {
  const T* made = slot.load(std::memory_order_acquire);
  if (made != nullptr) return *made;
  std::unique_ptr<const T> mine = make();
  if (slot.compare_exchange_strong(made, mine.get(), std::memory_order_acq_rel)) return *mine.release();
  return *made;
}

/// Deletes it, if it was made.
template <class T>
void DropMade(std::atomic<const T*>& slot) noexcept {
  delete slot.exchange(nullptr, std::memory_order_relaxed);
}

/// Where the text of an element or attribute lies. The pool owns the characters.
class TextSpan {
 public:
  constexpr TextSpan() noexcept = default;

  WStringView View() const noexcept { return {m_data, m_length}; }

  /// Lets the text be the `length` code units at `data`. No string may have been made of it.
  void Assign(const WChar* data, std::size_t length) noexcept {
    m_data = data;
    m_length = length;
  }

  /// The same place for its owner to write to.
  WChar* Room() noexcept { return const_cast<WChar*>(m_data); }

 private:
  const WChar* m_data = nullptr;  // not owned
  std::size_t m_length = 0;       // code units
};

/// The text of an attribute. Most text is parsed into a value where it lies, through View; only String makes a string
/// of its own, at its first call, which any thread may do.
///
/// The owner of the pool calls Drop before it takes the characters away; there is no destructor, so that a whole
/// document can be given back without a visit to each of its nodes.
class PooledText : public TextSpan {
 public:
  /// The text as a string, which lives until Drop. Throws std::bad_alloc.
  const WString& String() const {
    return MadeOnce(m_string, [this] { return std::make_unique<const WString>(View()); });
  }

  /// Deletes the string, if one was made.
  void Drop() noexcept { DropMade(m_string); }

 private:
  mutable std::atomic<const WString*> m_string = nullptr;  // owned
};

}  // namespace OvXmlLib16
