// A variant for the way between a property and a document that brings its memory along.
#pragma once

#include <utility>

#include "ovxmllib/foundation/WideString.h"
#include "ovxmllib/values/OvVariant.h"

namespace OvXmlLib16Data {

/// Lends the thread's own variant to one value on its way, so that a text costs no allocation but the property's. It is
/// invalid at first, as a new one. A getter or setter that reads or writes another object meanwhile gets another one.
class ScratchVariant {
 public:
  ScratchVariant() : m_lent(t_idle != nullptr ? std::exchange(t_idle, nullptr) : Make()) {}
  ScratchVariant(const ScratchVariant&) = delete;
  ScratchVariant& operator=(const ScratchVariant&) = delete;
  ~ScratchVariant() {
    constexpr std::size_t kLargeText = 4096;  // code units
    if (t_idle != nullptr || t_isThreadEnding || m_lent->text.capacity() > kLargeText) {
      Drop();
    } else {
      m_lent->value.SetInvalid();
      t_idle = m_lent;
    }
  }

  OvXmlLib16::OvVariant& operator*() const noexcept { return m_lent->value; }
  /// The text of the value, as OvVariant::AppendTo prints it; valid until the value or this object changes.
  OvXmlLib16::WStringView Print(OvXmlLib16::WStringView format) const {
    const OvXmlLib16::OvVariant& value = m_lent->value;
    if (value.GetTypeAsEnum() == OvXmlLib16::ItemType_string) return value.GetStringView();
    m_lent->text.clear();
    value.AppendTo(m_lent->text, format);
    return m_lent->text;
  }
  /// A terminated copy of a text that has no U+0000; valid until the next call of this or of Print.
  const OvXmlLib16::WChar* Terminated(OvXmlLib16::WStringView text) const { return (m_lent->text = text).c_str(); }

 private:
  struct Lent {
    OvXmlLib16::OvVariant value;
    OvXmlLib16::WString text;
  };

  static Lent* Make();
  void Drop() noexcept;

  // The one of this thread that waits for use, or null.
  static constinit thread_local Lent* t_idle;
  static constinit thread_local bool t_isThreadEnding;
  Lent* m_lent;  // owned
};

}  // namespace OvXmlLib16Data
