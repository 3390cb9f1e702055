// Reading the JSON form of the orders documents and writing it, each as a ratio to bare Expat on the XML form.

#include <rapidjson/document.h>
#include <rapidjson/reader.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <cstdio>
#include <exception>
#include <memory>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "bench/BoundOrders.h"
#include "bench/OrdersBuilder.h"
#include "bench/OrdersByHand.h"
#include "bench/OrdersDocument.h"
#include "bench/Roads.h"

namespace {

using namespace OvXmlLib16;
using namespace OvXmlLib16::bench;

std::string JsonFormOf(std::string_view document) { return byhand::WriteJson(byhand::ReadXml(document)); }

/// Drives a builder of the plain structs by RapidJSON's events. The numbers come as text, so that decimals stay exact.
class StructsHandler : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, StructsHandler> {
 public:
  bool Key(const char* name, rapidjson::SizeType length, bool) {
    m_name.assign(name, length);
    return true;
  }
  bool String(const char* text, rapidjson::SizeType length, bool) { return Value({text, length}); }
  bool RawNumber(const char* text, rapidjson::SizeType length, bool) { return Value({text, length}); }
  bool Null() { return Value({}); }
  bool StartArray() {
    m_arrays.push_back(m_name);
    return true;
  }
  bool EndArray(rapidjson::SizeType) {
    m_arrays.pop_back();
    return true;
  }
  bool StartObject() {
    // The outermost braces hold the document element and are none themselves.
    if (m_name.empty() && m_depth > 0 && m_arrays.empty()) return false;
    if (m_depth++ > 0) m_builder.StartElement(m_name.empty() ? m_arrays.back() : m_name);
    m_name.clear();
    return true;
  }
  bool EndObject(rapidjson::SizeType) {
    if (--m_depth > 0) m_builder.EndElement();
    m_name.clear();
    return true;
  }
  bool Default() { return false; }

  byhand::Orders Take() { return m_builder.Take(); }

 private:
  bool Value(std::string_view text) {
    if (m_name == "@xmlns") return true;
    if (m_name.starts_with('@')) {
      m_builder.Attribute(std::string_view(m_name).substr(1), text);
    } else {
      m_builder.StartElement(m_name);
      m_builder.Text(text);
      m_builder.EndElement();
    }
    return true;
  }

  byhand::OrdersBuilder m_builder;
  std::string m_name;  // of the next value; empty for an entry of an array
  std::vector<std::string> m_arrays;
  int m_depth = 0;
};

byhand::Orders ReadStructs(std::string_view json) {
  rapidjson::MemoryStream stream(json.data(), json.size());
  rapidjson::Reader reader;
  StructsHandler handler;
  if (!reader.Parse<rapidjson::kParseNumbersAsStringsFlag>(stream, handler))
    throw std::runtime_error("no orders document");
  return handler.Take();
}

rapidjson::Document ReadRapidJsonTree(std::string_view json) {
  rapidjson::Document tree;
  tree.Parse(json.data(), json.size());
  if (tree.HasParseError()) throw std::runtime_error("no JSON");
  return tree;
}

void WriteRapidJsonTree(const rapidjson::Document& tree) {
  rapidjson::StringBuffer text;
  rapidjson::Writer<rapidjson::StringBuffer> writer(text);
  if (!tree.Accept(writer)) throw std::runtime_error("nothing was written");
}

/// Enters a road that reads the JSON form.
template <class Read>
void AddReadRoad(const char* name, Read read) {
  AddPreparedRoad(
      name, [read](std::string_view document) -> Pass { return [read, json = JsonFormOf(document)] { read(json); }; });
}

/// Enters a road that writes what `read` makes of the JSON form.
template <class Read, class Write>
void AddWriteRoad(const char* name, Read read, Write write) {
  AddPreparedRoad(name, [read, write](std::string_view document) -> Pass {
    using Kept = decltype(read(std::string_view()));
    return [write, kept = std::make_shared<const Kept>(read(JsonFormOf(document)))] { write(*kept); };
  });
}

void AddBoundRoads() {
  CXmlObjectBase::Register(16, 1);
  AddPreparedRoad("JsonRead", [](std::string_view document) -> Pass {
    return [json = WriteObjectJson(*ReadObject(document).operator->())] { ReadObjectJson(json); };
  });
  AddPreparedRoad("JsonWrite", [](std::string_view document) -> Pass {
    return [orders = ReadObject(document)] { WriteObjectJson(*orders.operator->()); };
  });
}

void AddRapidJsonRoads() {
  AddReadRoad("RapidJsonTreeRead", ReadRapidJsonTree);
  AddWriteRoad("RapidJsonTreeWrite", ReadRapidJsonTree, WriteRapidJsonTree);
  AddReadRoad("RapidJsonStructsRead", ReadStructs);
}

void AddNlohmannRoads() {
  const auto read = [](std::string_view json) { return nlohmann::json::parse(json); };
  AddReadRoad("NlohmannRead", read);
  AddWriteRoad("NlohmannWrite", read, [](const nlohmann::json& tree) { tree.dump(); });
}

/// The form is sound, and the binding of its events keeps everything, as long as the same XML comes back.
bool KeepsEverything(std::string_view document) {
  const bool keeps = byhand::WriteXml(ReadStructs(JsonFormOf(document))) == byhand::WriteXml(byhand::ReadXml(document));
  if (!keeps) std::fprintf(stderr, "The JSON form does not give the document back.\n");
  return keeps;
}

}  // namespace

int main(int argc, char** argv) {
  AddBoundRoads();
  AddWriteRoad("ByHandJsonWrite", ReadStructs, byhand::WriteJson);
  AddRapidJsonRoads();
  AddNlohmannRoads();
  if (!KeepsEverything(MakeOrdersDocument(100'000))) return 1;
  return RunRoads(argc, argv);
}
