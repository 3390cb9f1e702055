#include "ovxmllib/mapping/ScratchVariant.h"

#include <utility>

namespace OvXmlLib16Data {

using OvXmlLib16::OvVariant;
using OvXmlLib16::WString;
using OvXmlLib16::WStringView;

struct ScratchVariant::Lent {
  OvVariant value;
  WString text;
  bool isTheThreads = false;

  // The one of this thread, or null while it is on loan.
  static Lent*& Idle() noexcept {
    thread_local Lent own{{}, {}, true};
    thread_local Lent* idle = &own;
    return idle;
  }
};

ScratchVariant::ScratchVariant() {
  Lent*& idle = Lent::Idle();
  m_lent = idle != nullptr ? std::exchange(idle, nullptr) : new Lent;
}

ScratchVariant::~ScratchVariant() {
  if (!m_lent->isTheThreads) {
    delete m_lent;
    return;
  }
  constexpr std::size_t kLargeText = 4096;  // code units
  m_lent->value.ClearForReuse();
  if (m_lent->text.capacity() > kLargeText) WString().swap(m_lent->text);
  Lent::Idle() = m_lent;
}

OvVariant& ScratchVariant::operator*() const noexcept { return m_lent->value; }

WStringView ScratchVariant::Print(WStringView format) const {
  const OvVariant& value = m_lent->value;
  if (value.GetTypeAsEnum() == OvXmlLib16::ItemType_string) return value.GetStringView();
  m_lent->text.clear();
  value.AppendTo(m_lent->text, format);
  return m_lent->text;
}

}  // namespace OvXmlLib16Data
