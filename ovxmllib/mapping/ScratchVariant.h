// A variant for the way between a property and a document that brings its memory along.
#pragma once

#include "ovxmllib/foundation/WideString.h"
#include "ovxmllib/values/OvVariant.h"

namespace OvXmlLib16Data {

/// Lends the thread's own variant to one value on its way, so that a text costs no allocation but the property's. It is
/// invalid at first, as a new one. A getter or setter that reads or writes another object meanwhile gets another one.
class ScratchVariant {
 public:
  ScratchVariant();
  ScratchVariant(const ScratchVariant&) = delete;
  ScratchVariant& operator=(const ScratchVariant&) = delete;
  ~ScratchVariant();

  OvXmlLib16::OvVariant& operator*() const noexcept;
  /// The text of the value, as OvVariant::AppendTo prints it; valid until the value or this object changes.
  OvXmlLib16::WStringView Print(OvXmlLib16::WStringView format) const;

 private:
  struct Lent;

  static Lent* Make();

  static thread_local Lent* t_idle;
  Lent* m_lent;  // owned
};

}  // namespace OvXmlLib16Data
