#include "bench/peers/Peers.h"

#include "bench/BoundOrders.h"
#include "bench/ExpatFeed.h"
#include "bench/OrdersByHand.h"
#include "bench/peers/BoundReadings.h"

namespace OvXmlLib16::bench {

Peer MakeObjectPeer() {
  CXmlObjectBase::Register(16, 1);
  using Kept = CSmartPtr<orders::COrders>;
  const auto read = [](std::string_view document) -> Peer::Objects {
    return std::make_shared<Kept>(ReadObject(document));
  };
  const auto write = [](const void* objects, const Peer::TakeText& take) {
    const CBinaryData bytes = WriteObject(*static_cast<const Kept*>(objects)->operator->());
    take(TextOf(bytes));
  };
  return {"Object", read, write, PassBoundReadings};
}

Peer MakeByHandPeer() {
  const auto read = [](std::string_view document) -> Peer::Objects {
    return std::make_shared<byhand::Orders>(byhand::ReadXml(document));
  };
  const auto write = [](const void* objects, const Peer::TakeText& take) {
    take(byhand::WriteXml(*static_cast<const byhand::Orders*>(objects)));
  };
  return {"ByHand", read, write, nullptr};
}

Peer MakeExpatPeer() {
  const auto parse = [](std::string_view document) -> Peer::Objects {
    FeedExpat(MakeExpat().get(), document);
    return nullptr;
  };
  return {"Expat", parse, nullptr, nullptr};
}

std::vector<Peer> MakePeers() {
  return {MakeObjectPeer(), MakeByHandPeer(), MakeGsoapTextPeer(), MakeGsoapNumberPeer(), MakeXsdPeer()};
}

}  // namespace OvXmlLib16::bench
