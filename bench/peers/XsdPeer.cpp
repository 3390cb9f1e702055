#include <cstddef>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <xercesc/framework/MemBufFormatTarget.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "bench/peers/Peers.h"
#include "orders.hxx"

namespace OvXmlLib16::bench {
namespace {

// Xerces is started once. It does not check the document against the schema, which the generated code does in part.
constexpr auto kReadFlags = xml_schema::flags::dont_initialize | xml_schema::flags::dont_validate;
constexpr auto kWriteFlags = xml_schema::flags::dont_initialize;

void StartXerces() {
  static const struct Xerces {
    Xerces() { xercesc::XMLPlatformUtils::Initialize(); }
  } started;
}

const xml_schema::namespace_infomap& Namespaces() {
  static const xml_schema::namespace_infomap map = [] {
    xml_schema::namespace_infomap made;
    made[""].name = "urn:example:orders";
    return made;
  }();
  return map;
}

xercesc::MemBufInputSource SourceOf(std::string_view document) {
  return {reinterpret_cast<const XMLByte*>(document.data()), document.size(), "memory"};
}

std::string_view TextOf(const xercesc::MemBufFormatTarget& target) {
  return {reinterpret_cast<const char*>(target.getRawBuffer()), target.getLen()};
}

/// What the binder throws tells its reason by `<<` only.
template <class Work>
auto Translated(Work work) {
  try {
    return work();
  } catch (const xml_schema::exception& failure) {
    std::ostringstream text;
    text << failure;
    throw std::runtime_error(text.str());
  }
}

Peer::Objects Read(std::string_view document) {
  return Translated([&]() -> Peer::Objects {
    auto source = SourceOf(document);
    return std::shared_ptr<const xsd_orders::orders>(xsd_orders::orders_(source, kReadFlags));
  });
}

void Write(const void* objects, const Peer::TakeText& take) {
  Translated([&] {
    xercesc::MemBufFormatTarget target;
    const auto& orders = *static_cast<const xsd_orders::orders*>(objects);
    xsd_orders::orders_(target, orders, Namespaces(), "UTF-8", kWriteFlags);
    take(TextOf(target));
  });
}

void PassReadings(std::string_view document, const Peer::TakeText& take) {
  Translated([&] {
    auto source = SourceOf(document);
    const auto readings = xsd_orders::readings_(source, kReadFlags);
    xercesc::MemBufFormatTarget target;
    xsd_orders::readings_(target, *readings, Namespaces(), "UTF-8", kWriteFlags);
    take(TextOf(target));
  });
}

}  // namespace

Peer MakeXsdPeer() {
  StartXerces();
  return {"Xsd", Read, Write, PassReadings};
}

}  // namespace OvXmlLib16::bench
