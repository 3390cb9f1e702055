// Text that lies in a document's pool, and the string that is made of it when somebody asks for one.
#pragma once

#include <atomic>
#include <cstddef>

#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

/// The text of one element or attribute. Most text is parsed into a value where it lies, through View; only String
/// makes a string of its own, at its first call, which any thread may do.
///
/// The pool owns the characters. The owner of the pool calls Drop before it takes them away; there is no destructor, so
/// that a whole document can be given back without a visit to each of its nodes.
class PooledText {
 public:
  constexpr PooledText() noexcept = default;

  WStringView View() const noexcept { return {m_data, m_length}; }

  /// The text as a string, which lives until Drop. Throws std::bad_alloc.
  const WString& String() const {
    const WString* made = m_string.load(std::memory_order_acquire);
    return made != nullptr ? *made : Make();
  }

  /// Lets the text be the `length` code units at `data`. No string may have been made.
  void Assign(const WChar* data, std::size_t length) noexcept {
    m_data = data;
    m_length = length;
  }

  /// The same place for its owner to write to.
  WChar* Room() noexcept { return const_cast<WChar*>(m_data); }

  /// Deletes the string, if one was made.
  void Drop() noexcept { delete m_string.exchange(nullptr, std::memory_order_relaxed); }

 private:
  const WString& Make() const {
    const WString* expected = nullptr;
    const WString* made = new WString(View());
    if (m_string.compare_exchange_strong(expected, made, std::memory_order_acq_rel)) return *made;
    delete made;  // another thread was first
    return *expected;
  }

  const WChar* m_data = nullptr;                           // not owned
  std::size_t m_length = 0;                                // code units
  mutable std::atomic<const WString*> m_string = nullptr;  // owned
};

}  // namespace OvXmlLib16
