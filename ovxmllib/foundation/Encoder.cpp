#include "ovxmllib/foundation/Encoder.h"

#include <memory>
#include <string_view>

#include "ovxmllib/foundation/Unicode.h"

namespace OvXmlLib16 {

// Decided: text that cannot be converted is refused, see docs/decisions.md.
CBinaryData EncodeUtf8(WStringView text) {
  const unicode::Progress measured = unicode::MeasureUtf8(text);
  if (measured.read != text.size()) unicode::ThrowUnwritable(text, measured.read);
  if (text.empty()) return {};
  auto bytes = std::make_unique_for_overwrite<unsigned char[]>(measured.written);
  unicode::WideToUtf8(text, bytes.get());
  return CBinaryData(bytes.release(), measured.written, /*adopt=*/true);
}

WString DecodeUtf8(const unsigned char* data, std::size_t length) {
  return ToWide(std::string_view(reinterpret_cast<const char*>(data), length));
}

WString DecodeUtf16(const unsigned char* data, std::size_t count) {
  WString result(count, u'\0');
  for (std::size_t i = 0; i < count; ++i) result[i] = static_cast<WChar>(data[2 * i] | (data[2 * i + 1] << 8));
  return result;
}

}  // namespace OvXmlLib16
