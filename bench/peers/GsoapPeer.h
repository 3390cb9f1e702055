// What the two gSOAP bindings share.
#pragma once

#include <stdsoap2.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "bench/peers/Peers.h"

namespace OvXmlLib16::bench {

// UTF-8 in strings; a document without references between its parts; the checks of the schema that cost little.
inline constexpr soap_mode kGsoapInput = SOAP_C_UTFSTRING | SOAP_XML_TREE | SOAP_XML_STRICT;
inline constexpr soap_mode kGsoapOutput =
    SOAP_C_UTFSTRING | SOAP_XML_TREE | SOAP_XML_INDENT | SOAP_XML_DEFAULTNS | SOAP_IO_BUFFER;

/// A context that is used again for the next document, as gSOAP wants it: making one costs more than a small document.
class GsoapContext {
 public:
  GsoapContext() : m_soap(Spare() != nullptr ? std::exchange(Spare(), nullptr) : Make()) {}
  GsoapContext(const GsoapContext&) = delete;
  GsoapContext& operator=(const GsoapContext&) = delete;
  ~GsoapContext() {
    soap_destroy(m_soap);
    soap_end(m_soap);
    if (Spare() != nullptr) soap_free(Spare());
    Spare() = m_soap;
  }

  /// The context, to read `input`; both live until the document is read.
  soap* ToRead(std::string_view& input) const {
    m_soap->user = &input;
    return m_soap;
  }
  /// The context, to append to `output`.
  soap* ToWrite(std::string& output) const {
    m_soap->user = &output;
    return m_soap;
  }

  void Check(int status) const {
    if (status == SOAP_OK) return;
    char text[1000] = "";
    soap_sprint_fault(m_soap, text, sizeof text);
    throw std::runtime_error(text);
  }

 private:
  static soap*& Spare() {
    static soap* spare = nullptr;
    return spare;
  }

  static soap* Make() {
    soap* const made = soap_new2(kGsoapInput, kGsoapOutput);
    soap_set_namespaces(made, namespaces);
    made->frecv = [](soap* context, char* buffer, std::size_t size) {
      auto& input = *static_cast<std::string_view*>(context->user);
      const std::size_t count = std::min(size, input.size());
      std::memcpy(buffer, input.data(), count);
      input.remove_prefix(count);
      return count;
    };
    made->fsend = [](soap* context, const char* text, std::size_t length) -> int {
      static_cast<std::string*>(context->user)->append(text, length);
      return SOAP_OK;
    };
    return made;
  }

  soap* m_soap;
};

/// `Orders` and `Readings` are generated classes, and `newOrders` and `newReadings` the generated functions that make
/// an object of them, which the context owns. The functions that read and write are found beside the classes.
template <class Orders, class Readings>
Peer MakeGsoapPeer(std::string name, Orders* (*newOrders)(soap*, int), Readings* (*newReadings)(soap*, int)) {
  struct Kept {
    GsoapContext context;
    Orders* orders = nullptr;  // owned by the context
  };
  const auto read = [newOrders](std::string_view document) -> Peer::Objects {
    auto kept = std::make_shared<Kept>();
    soap* const context = kept->context.ToRead(document);
    kept->orders = newOrders(context, -1);
    kept->context.Check(soap_read__ns1__orders(context, kept->orders));
    return kept;
  };
  const auto write = [](const void* objects, const Peer::TakeText& take) {
    const auto& kept = *static_cast<const Kept*>(objects);
    std::string text;
    kept.context.Check(soap_write__ns1__orders(kept.context.ToWrite(text), kept.orders));
    take(text);
  };
  const auto passReadings = [newReadings](std::string_view document, const Peer::TakeText& take) {
    const GsoapContext context;
    Readings* const readings = newReadings(context.ToRead(document), -1);
    context.Check(soap_read__ns1__readings(context.ToRead(document), readings));
    std::string text;
    context.Check(soap_write__ns1__readings(context.ToWrite(text), readings));
    take(text);
  };
  return {std::move(name), read, write, passReadings};
}

}  // namespace OvXmlLib16::bench
