// Our bound class for the `readings` documents of orders.xsd.
#pragma once

#include <string_view>

#include "bench/peers/Peers.h"

namespace OvXmlLib16::bench {

/// Reads a document into an object and writes it again. Throws COvException.
void PassBoundReadings(std::string_view document, const Peer::TakeText& take);

}  // namespace OvXmlLib16::bench
