// What a collection tells those who listen to it.
#pragma once

#include <cstdint>

#include "ovxmllib/binding/Export.h"

namespace OvXmlLib16 {

class CXmlObjectBase;

/// Receives the events of collections. Every bound object is a sink; the default of CXmlObjectBase ignores all events.
class OVXMLLIB_API IEventSink {
 public:
  /// What happened, and what the `data` argument of OnEvent points at.
  enum MsgType : std::int32_t {
    OnCollectionChange = 0,          ///< anything changed; `data` is null
    OnCollectionAdd = 1,             ///< `data` is the item about to be added
    OnCollectionAddComplete = 2,     ///< `data` is the item that was added
    OnCollectionRemove = 3,          ///< `data` points at the `int` index, or is null for all items
    OnCollectionRemoveComplete = 4,  ///< `data` points at the `int` index, or is null for all items
  };

  /// Called on the thread that changes the collection. `source` is the collection; it and `data` are not owned and are
  /// valid for the call. An exception thrown here from an "about to" event keeps the change from happening.
  virtual void OnEvent(CXmlObjectBase* source, IEventSink::MsgType type, void* data) = 0;

 protected:
  IEventSink() = default;
  IEventSink(const IEventSink&) = default;
  IEventSink& operator=(const IEventSink&) = default;
  ~IEventSink() = default;
};

}  // namespace OvXmlLib16
