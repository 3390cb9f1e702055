#include "ovxmllib/mapping/ScratchVariant.h"

namespace OvXmlLib16Data {

constinit thread_local ScratchVariant::Lent* ScratchVariant::t_idle = nullptr;
constinit thread_local bool ScratchVariant::t_isThreadEnding = false;

ScratchVariant::Lent* ScratchVariant::Make() {
  struct AtThreadEnd {
    AtThreadEnd() = default;
    AtThreadEnd(const AtThreadEnd&) = delete;
    AtThreadEnd& operator=(const AtThreadEnd&) = delete;
    ~AtThreadEnd() {
      t_isThreadEnding = true;
      delete std::exchange(t_idle, nullptr);
    }
  };
  if (!t_isThreadEnding) static thread_local const AtThreadEnd atThreadEnd;
  return new Lent;
}

void ScratchVariant::Drop() noexcept { delete m_lent; }

}  // namespace OvXmlLib16Data
