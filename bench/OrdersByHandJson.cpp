#include <utility>

#include "bench/OrdersWalk.h"

namespace OvXmlLib16::bench::byhand {
namespace {

constexpr char kControls[] =
    "\\u0000\\u0001\\u0002\\u0003\\u0004\\u0005\\u0006\\u0007\\u0008\\u0009\\u000A\\u000B\\u000C\\u000D\\u000E\\u000F"
    "\\u0010\\u0011\\u0012\\u0013\\u0014\\u0015\\u0016\\u0017\\u0018\\u0019\\u001A\\u001B\\u001C\\u001D\\u001E\\u001F";

/// RFC 8259, section 7.
constexpr Replacements kInStrings = [] {
  Replacements replacements{};
  for (std::size_t i = 0; i < 0x20; ++i) replacements[i] = std::string_view(kControls + i * 6, 6);
  replacements['"'] = "\\\"";
  replacements['\\'] = "\\\\";
  return replacements;
}();

class JsonSink {
 public:
  void Begin(std::string_view name) {
    Key(name);
    m_out += '{';
  }
  void BeginEntry(std::string_view) {
    Separate();
    m_out += '{';
  }
  template <class T>
  void Attribute(std::string_view name, const T& value) {
    Separate();
    m_out.append("\"@").append(name).append("\":");
    Value(value);
  }
  void EndOfAttributes() {}
  void End(std::string_view) { m_out += '}'; }

  void BeginArray(std::string_view name) {
    Key(name);
    m_out += '[';
  }
  void EndArray() { m_out += ']'; }

  template <class T>
  void Leaf(std::string_view name, const T& value) {
    Key(name);
    Value(value);
  }
  void Empty(std::string_view name) {
    Key(name);
    m_out += "null";
  }

  std::string Take() && {
    m_out += '}';
    return std::move(m_out);
  }

 private:
  void Separate() {
    if (m_out.back() != '{' && m_out.back() != '[') m_out += ',';
  }

  void Key(std::string_view name) {
    Separate();
    m_out.append("\"").append(name).append("\":");
  }

  template <class T>
  void Value(const T& value) {
    if constexpr (std::is_integral_v<T> || std::is_same_v<T, Amount>) return Append(m_out, value);
    m_out += '"';
    if constexpr (std::is_convertible_v<const T&, std::string_view>) {
      AppendEscaped(m_out, value, kInStrings);
    } else {
      Append(m_out, value);
    }
    m_out += '"';
  }

  std::string m_out = "{";
};

}  // namespace

std::string WriteJson(const Orders& orders) {
  JsonSink sink;
  WalkOrders(sink, orders);
  return std::move(sink).Take();
}

}  // namespace OvXmlLib16::bench::byhand
