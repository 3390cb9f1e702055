// Listeners that write down what they hear.
#pragma once

#include <functional>

#include "ovxmllib/binding/EventSink.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16::test {

/// Writes down each event as "add:DATA", "added:DATA", "remove:DATA", "removed:DATA" or "change", separated by blanks.
/// The data of an add are told by `tell`, those of a removal are the index; without data there is no colon. At an event
/// that begins with `refuse` it throws COvException "refused".
class Listener final : public IEventSink {
 public:
  explicit Listener(std::function<WString(const void*)> tell, WString refuse = {})
      : m_tell(std::move(tell)), m_refuse(std::move(refuse)) {}

  void OnEvent(CXmlObjectBase* source, MsgType type, void* data) override {
    constexpr WStringView kNames[] = {u"change", u"add", u"added", u"remove", u"removed"};
    WString event(kNames[type]);
    if (data != nullptr) event += u":" + (type < OnCollectionRemove ? m_tell(data) : IndexAt(data));
    heard += (heard.empty() ? u"" : u" ") + event;
    last = source;
    if (!m_refuse.empty() && event.starts_with(m_refuse)) throw COvException(u"refused");
  }

  WString heard;
  CXmlObjectBase* last = nullptr;  // not owned

 private:
  static WString IndexAt(const void* data) { return ToWide(std::to_string(*static_cast<const int*>(data))); }

  std::function<WString(const void*)> m_tell;
  WString m_refuse;
};

/// What was heard during `call`, and behind it "! " and the message when it throws.
template <class Call>
WString HeardDuring(Listener& listener, const Call& call) {
  listener.heard.clear();
  try {
    call();
  } catch (const COvException& exception) {
    listener.heard += (listener.heard.empty() ? u"! " : u" ! ") + exception.GetMessage();
  }
  return listener.heard;
}

}  // namespace OvXmlLib16::test
