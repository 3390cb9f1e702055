#include "ovxmllib/mapping/ScratchVariant.h"

#include <utility>

namespace OvXmlLib16Data {

using OvXmlLib16::OvVariant;
using OvXmlLib16::WString;
using OvXmlLib16::WStringView;

struct ScratchVariant::Lent {
  OvVariant value;
  WString text;
};

namespace {

enum class ThreadState : unsigned char { New, Running, Ending };

constinit thread_local ThreadState t_state = ThreadState::New;

}  // namespace

// The one of this thread that waits for use, or null.
constinit thread_local ScratchVariant::Lent* ScratchVariant::t_idle = nullptr;

ScratchVariant::Lent* ScratchVariant::Make() {
  struct AtThreadEnd {
    ~AtThreadEnd() {
      t_state = ThreadState::Ending;
      delete std::exchange(t_idle, nullptr);
    }
  };
  if (t_state == ThreadState::New) {
    static thread_local const AtThreadEnd atThreadEnd;
    t_state = ThreadState::Running;
  }
  return new Lent;
}

ScratchVariant::ScratchVariant() : m_lent(t_idle != nullptr ? std::exchange(t_idle, nullptr) : Make()) {}

ScratchVariant::~ScratchVariant() {
  constexpr std::size_t kLargeText = 4096;  // code units
  if (t_idle != nullptr || t_state == ThreadState::Ending) {
    delete m_lent;
    return;
  }
  m_lent->value.ClearForReuse();
  if (m_lent->text.capacity() > kLargeText) WString().swap(m_lent->text);
  t_idle = m_lent;
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
