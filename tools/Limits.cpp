#include "tools/Limits.h"

namespace ovxml {

namespace {

using OvXmlLib16::CSerializationContext;

constexpr Limit kLimits[] = {
    {"--max-depth", "SetMaxElementDepth", "Levels of elements (default 1000)",
     [](CSerializationContext& context, std::uint64_t value) { context.SetMaxElementDepth(value); }},
    {"--max-attributes", "SetMaxAttributesPerElement", "Attributes and declarations of an element (10000)",
     [](CSerializationContext& context, std::uint64_t value) { context.SetMaxAttributesPerElement(value); }},
    {"--max-name", "SetMaxNameLength", "Characters of a name",
     [](CSerializationContext& context, std::uint64_t value) { context.SetMaxNameLength(value); }},
    {"--max-namespace", "SetMaxNamespaceLength", "Characters of a namespace URI (8000)",
     [](CSerializationContext& context, std::uint64_t value) { context.SetMaxNamespaceLength(value); }},
    {"--max-text", "SetMaxTextLength", "Characters of an element's text or of a value",
     [](CSerializationContext& context, std::uint64_t value) { context.SetMaxTextLength(value); }},
    {"--max-input", "SetMaxInputBytes", "Bytes of a file as it comes",
     [](CSerializationContext& context, std::uint64_t value) { context.SetMaxInputBytes(value); }},
    {"--max-inflated", "SetMaxDecompressedBytes", "Bytes that a compressed file may expand to",
     [](CSerializationContext& context, std::uint64_t value) { context.SetMaxDecompressedBytes(value); }},
};

bool Replace(std::string& message, const std::string& setter, const char* option) {
  const std::string name = "CSerializationContext::" + setter;
  const std::size_t found = message.find(name);
  if (found == std::string::npos) return false;
  message.replace(found, name.size(), option);
  return true;
}

}  // namespace

std::span<const Limit> Limits() { return kLimits; }

bool NameOptions(std::string& message) {
  for (const Limit& limit : kLimits) {
    if (Replace(message, limit.setter, limit.option)) return true;
  }
  return Replace(message, kDoctypeSetter, kDoctypeOption);
}

}  // namespace ovxml
