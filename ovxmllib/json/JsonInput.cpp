#include "ovxmllib/json/JsonInput.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <utility>

#include "ovxmllib/foundation/Encoder.h"
#include "ovxmllib/foundation/OvZip.h"
#include "ovxmllib/foundation/TextStream.h"
#include "ovxmllib/foundation/Unicode.h"
#include "ovxmllib/json/JsonReaderToXmlHandler.h"
#include "ovxmllib/json/JsonTextReader.h"

namespace OvXmlLib16 {

namespace {

const unsigned char* Bytes(std::string_view text) { return reinterpret_cast<const unsigned char*>(text.data()); }

std::string_view Characters(const unsigned char* data, std::size_t length) {
  return {reinterpret_cast<const char*>(data), length};
}

std::string_view CharactersOf(const CBinaryData& data) { return Characters(data.GetData(), data.GetLength()); }

// The number of bytes at the start of `text` that are ASCII, or a little less.
std::size_t CountAscii(std::string_view text) noexcept {
  constexpr std::size_t kBlock = 4 * sizeof(std::uint64_t);
  std::size_t i = 0;
  for (; text.size() - i >= kBlock; i += kBlock) {
    std::uint64_t words[4];
    std::memcpy(words, text.data() + i, sizeof words);
    if (((words[0] | words[1] | words[2] | words[3]) & 0x8080808080808080u) != 0) break;
  }
  return i;
}

bool IsUtf8(std::string_view text) noexcept {
  constexpr std::size_t kPiece = 256;
  constexpr std::size_t kLongest = 4;
  WChar units[kPiece];
  while (!text.empty()) {
    text.remove_prefix(CountAscii(text));
    const std::size_t length = std::min(text.size(), kPiece);
    const std::size_t read = unicode::Utf8ToWide(Bytes(text), length, units).read;
    // What a piece has cut in two is whole in the next.
    if (read != length && (length == text.size() || length - read >= kLongest)) return false;
    text.remove_prefix(read);
  }
  return true;
}

// The factor by which a text may grow, once it has become larger than anybody minds.
std::size_t LimitOfIndentation(std::size_t length) {
  constexpr std::size_t kFreeUnits = 8 * 1024 * 1024;
  constexpr std::size_t kMaxFactor = 100;
  return std::max(kFreeUnits, kMaxFactor * length);
}

}  // namespace

JsonInput::JsonInput(const unsigned char* data, std::size_t length, const CSerializationContext& context)
    : m_bytes(Characters(data, length)) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (auto inflated = Decompress(data, length, context.GetMaxDecompressedBytes())) {
    m_content = std::move(*inflated);
    m_bytes = CharactersOf(m_content);
  }
  if (m_bytes.starts_with(kByteOrderMark)) m_bytes.remove_prefix(kByteOrderMark.size());
}

JsonInput::JsonInput(CBinaryData content, const CSerializationContext& context)
    : JsonInput(std::as_const(content).GetData(), content.GetLength(), context) {
  if (m_content.IsEmpty()) m_content = std::move(content);
}

std::optional<std::string_view> JsonInput::AsUtf8() {
  if (!m_isWide) return IsUtf8(m_bytes) ? std::optional(m_bytes) : std::nullopt;
  if (unicode::MeasureUtf8(m_wide).read != m_wide.size()) return std::nullopt;
  m_encoded = EncodeUtf8(m_wide);
  return CharactersOf(m_encoded);
}

WStringView JsonInput::AsWide() {
  if (m_isWide) return m_wide;
  m_decoded = DecodeUtf8(Bytes(m_bytes), m_bytes.size());
  return m_decoded;
}

CBinaryData ConvertJsonToXml(WStringView text, const CSerializationContext& context) {
  const CJsonContext& options = *context.GetJsonContext();
  CTextStream stream(XmlEncoding_UTF8);
  CXmlTextWriter writer(&stream);
  CJsonTextReader reader(text);
  const JsonXmlLimits limits{context.GetMaxElementDepth(), LimitOfIndentation(text.size())};
  reader.SetHandler(std::make_unique<CJsonReaderToXmlHandler>(&writer, options.GetSupportRoundtrip(),
                                                              reader.GetErrorPathProvider(), limits));
  reader.m_bAllowComments = options.GetAllowComments();
  reader.m_strRootElementName = options.GetRootElementName();
  writer.Open();
  reader.Parse();
  writer.Close();
  return stream.GetBytes();
}

}  // namespace OvXmlLib16
