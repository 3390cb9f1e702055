// Does one thing some times over, for a tool that counts instructions: peers_pass PEER read|write BYTES TIMES
// Prints the true size of the document.

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "bench/OrdersDocument.h"
#include "bench/peers/Peers.h"

namespace {

using namespace OvXmlLib16::bench;

Peer FindPeer(std::string_view name) {
  if (name == "Expat") return MakeExpatPeer();
  for (const Peer& peer : MakePeers()) {
    if (peer.name == name) return peer;
  }
  throw std::runtime_error("there is no such peer");
}

void Repeat(const Peer& peer, bool writes, const std::string& document, int times) {
  const Peer::Objects objects = writes ? peer.read(document) : nullptr;
  for (int i = 0; i < times; ++i) {
    if (writes) {
      peer.write(objects.get(), [](std::string_view) {});
    } else {
      peer.read(document);
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string_view> arguments(argv, argv + argc);
  if (argc != 5 || (arguments[2] != "read" && arguments[2] != "write")) {
    std::fprintf(stderr, "usage: peers_pass Expat|Object|ByHand|GsoapText|GsoapNumber|Xsd read|write BYTES TIMES\n");
    return 2;
  }
  try {
    const std::string document = MakeOrdersDocument(std::strtoull(argv[3], nullptr, 10));
    std::printf("%zu\n", document.size());
    Repeat(FindPeer(arguments[1]), arguments[2] == "write", document, std::atoi(argv[4]));
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
  }
  return 0;
}
