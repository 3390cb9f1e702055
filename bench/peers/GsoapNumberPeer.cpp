#include "bench/peers/GsoapPeer.h"
#include "gsoap_number/gsoap_numberH.h"

namespace OvXmlLib16::bench {

Peer MakeGsoapNumberPeer() {
  return MakeGsoapPeer("GsoapNumber", gsoap_number::soap_new__ns1__orders, gsoap_number::soap_new__ns1__readings);
}

}  // namespace OvXmlLib16::bench
