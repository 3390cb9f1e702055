// Reading the orders documents into objects and writing them, by this library, by hand, by gSOAP and by CodeSynthesis
// XSD, each as a ratio to bare Expat on the same document in the same run.

#include "bench/Roads.h"
#include "bench/peers/Peers.h"

int main(int argc, char** argv) {
  using namespace OvXmlLib16::bench;
  for (const Peer& peer : MakePeers()) {
    AddRoad(peer.name + "Read", [peer](std::string_view document) { peer.read(document); });
    AddPreparedRoad(peer.name + "Write", [peer](std::string_view document) -> Pass {
      return [peer, objects = peer.read(document)] { peer.write(objects.get(), [](std::string_view) {}); };
    });
  }
  return RunRoads(argc, argv);
}
