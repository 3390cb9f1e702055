#include "ovxmllib/json/JsonNamespaces.h"

namespace OvXmlLib16 {

namespace {

constexpr char kSeparator = '|';
constexpr std::string_view kXmlPrefix = "xml";
constexpr std::string_view kXmlUri = "http://www.w3.org/XML/1998/namespace|";

}  // namespace

void JsonNamespaces::Declare(std::string_view prefix, std::string_view uri, std::size_t depth) {
  m_bindings.push_back({prefix, std::string(uri) += kSeparator, depth});
}

void JsonNamespaces::EndElement(std::size_t depth) noexcept {
  while (!m_bindings.empty() && m_bindings.back().depth >= depth) m_bindings.pop_back();
}

const JsonNamespaces::Binding* JsonNamespaces::Find(std::string_view prefix) const noexcept {
  for (auto binding = m_bindings.rbegin(); binding != m_bindings.rend(); ++binding) {
    if (binding->prefix == prefix) return &*binding;
  }
  return nullptr;
}

std::string_view JsonNamespaces::Expand(std::string_view name, bool isElement) {
  const std::size_t colon = name.find(':');
  const bool hasPrefix = colon != std::string_view::npos;
  if (!hasPrefix && !isElement) return name;
  const std::string_view prefix = name.substr(0, hasPrefix ? colon : 0);
  const Binding* const binding = Find(prefix);
  const std::string_view uri = binding != nullptr     ? std::string_view(binding->uri)
                               : prefix == kXmlPrefix ? kXmlUri
                                                      : std::string_view();
  if (uri.empty()) return hasPrefix ? std::string_view() : name;
  m_expanded.assign(uri);
  m_expanded.append(name, hasPrefix ? colon + 1 : 0);
  return m_expanded;
}

}  // namespace OvXmlLib16
