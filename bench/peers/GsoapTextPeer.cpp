#include "bench/peers/GsoapPeer.h"
#include "gsoap_text/gsoap_textH.h"
#include "gsoap_text/ns1.nsmap"  // the table of namespaces, which is the same for both

namespace OvXmlLib16::bench {

Peer MakeGsoapTextPeer() {
  return MakeGsoapPeer("GsoapText", gsoap_text::soap_new__ns1__orders, gsoap_text::soap_new__ns1__readings);
}

}  // namespace OvXmlLib16::bench
