#include <exception>
#include <stdexcept>
#include <utility>

#include "bench/ExpatFeed.h"
#include "bench/OrdersBuilder.h"
#include "bench/OrdersWalk.h"

namespace OvXmlLib16::bench::byhand {
namespace {

/// Drives a builder by Expat's events. An exception may not cross the parser, which is C: it waits in `failure`.
struct Reading {
  XML_Parser parser;
  OrdersBuilder builder;
  std::exception_ptr failure = nullptr;

  template <class Step>
  void Guard(Step step) noexcept {
    try {
      if (failure == nullptr) step();
    } catch (...) {
      failure = std::current_exception();
      XML_StopParser(parser, XML_FALSE);
    }
  }
};

/// The name behind the namespace of the documents, where every element is.
std::string_view LocalName(std::string_view name) {
  if (!name.starts_with(kNamespace) || !name.substr(kNamespace.size()).starts_with('|')) {
    throw std::runtime_error("unexpected element '" + std::string(name) + '\'');
  }
  return name.substr(kNamespace.size() + 1);
}

void OnStart(void* data, const XML_Char* name, const XML_Char** attributes) {
  auto& reading = *static_cast<Reading*>(data);
  reading.Guard([&] {
    reading.builder.StartElement(LocalName(name));
    for (; *attributes != nullptr; attributes += 2) reading.builder.Attribute(attributes[0], attributes[1]);
  });
}

void OnText(void* data, const XML_Char* text, int length) {
  auto& reading = *static_cast<Reading*>(data);
  reading.Guard([&] { reading.builder.Text({text, static_cast<std::size_t>(length)}); });
}

void OnEnd(void* data, const XML_Char*) {
  auto& reading = *static_cast<Reading*>(data);
  reading.Guard([&] { reading.builder.EndElement(); });
}

/// Names the line, which an application wants to show.
[[noreturn]] void RethrowWithLine(const Reading& reading) {
  try {
    std::rethrow_exception(reading.failure);
  } catch (const std::runtime_error& failure) {
    throw std::runtime_error("line " + std::to_string(XML_GetCurrentLineNumber(reading.parser)) + ": " +
                             failure.what());
  }
}

constexpr Replacements kInText = [] {
  Replacements replacements{};
  replacements['&'] = "&amp;";
  replacements['<'] = "&lt;";
  replacements['>'] = "&gt;";
  return replacements;
}();

constexpr Replacements kInAttributes = [] {
  Replacements replacements = kInText;
  replacements['"'] = "&quot;";
  return replacements;
}();

class XmlSink {
 public:
  void Begin(std::string_view name) { m_out.append(m_depth++, '\t').append("<").append(name); }
  void BeginEntry(std::string_view name) { Begin(name); }
  template <class T>
  void Attribute(std::string_view name, const T& value) {
    m_out.append(" ").append(name).append("=\"");
    Value(value, kInAttributes);
    m_out += '"';
  }
  void EndOfAttributes() { m_out += ">\n"; }
  void End(std::string_view name) { m_out.append(--m_depth, '\t').append("</").append(name).append(">\n"); }

  void BeginArray(std::string_view) {}
  void EndArray() {}

  template <class T>
  void Leaf(std::string_view name, const T& value) {
    m_out.append(m_depth, '\t').append("<").append(name).append(">");
    Value(value, kInText);
    m_out.append("</").append(name).append(">\n");
  }
  void Empty(std::string_view name) { m_out.append(m_depth, '\t').append("<").append(name).append("/>\n"); }

  std::string Take() && { return std::move(m_out); }

 private:
  template <class T>
  void Value(const T& value, const Replacements& replacements) {
    if constexpr (std::is_convertible_v<const T&, std::string_view>) {
      AppendEscaped(m_out, value, replacements);
    } else {
      Append(m_out, value);
    }
  }

  std::string m_out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  std::size_t m_depth = 0;
};

}  // namespace

Orders ReadXml(std::string_view document) {
  const ExpatParser parser = MakeExpatNs();
  Reading reading{parser.get(), {}};
  XML_SetUserData(parser.get(), &reading);
  XML_SetElementHandler(parser.get(), OnStart, OnEnd);
  XML_SetCharacterDataHandler(parser.get(), OnText);
  try {
    FeedExpat(parser.get(), document);
  } catch (const std::runtime_error&) {
    if (reading.failure == nullptr) throw;
    RethrowWithLine(reading);
  }
  return reading.builder.Take();
}

std::string WriteXml(const Orders& orders) {
  XmlSink sink;
  WalkOrders(sink, orders);
  return std::move(sink).Take();
}

}  // namespace OvXmlLib16::bench::byhand
