// JSON documents into the XML text that they stand for.

#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/document/XmlDocument.h"
#include "ovxmllib/json/JsonInput.h"

namespace OvXmlLib16 {

JsonInput CXmlDocument::OpenJson(std::string_view text) {
  Cleanup();
  if (text.empty()) throw COvException(u"JSON String is empty!");
  CheckInputLength(text.size());
  return JsonInput(reinterpret_cast<const unsigned char*>(text.data()), text.size(), *m_context);
}

JsonInput CXmlDocument::OpenJson(WStringView text) {
  Cleanup();
  if (text.empty()) throw COvException(u"JSON String is empty!");
  CheckInputLength(text.size() * sizeof(WChar));
  return JsonInput(text);
}

JsonInput CXmlDocument::OpenJsonStream(const unsigned char* data, std::size_t length) {
  Cleanup();
  if (length == 0) throw COvException(u"JSON Stream is empty!");
  CheckInputLength(length);
  return JsonInput(data, length, *m_context);
}

JsonInput CXmlDocument::OpenJsonFile(const std::filesystem::path& path) {
  Cleanup();
  return JsonInput(ReadWhole(path), *m_context);
}

CBinaryData CXmlDocument::ParseJson(JsonInput input) const { return ConvertJsonToXml(input.AsWide(), *m_context); }

CBinaryData CXmlDocument::LoadJson(const char* text) {
  return LoadJson(text == nullptr ? std::string_view() : std::string_view(text));
}

CBinaryData CXmlDocument::LoadJson(std::string_view text) { return ParseJson(OpenJson(text)); }

CBinaryData CXmlDocument::LoadJson(const WChar* text) { return ParseJson(OpenJson(ViewOf(text))); }

CBinaryData CXmlDocument::LoadJsonStream(const unsigned char* data, std::size_t length) {
  return ParseJson(OpenJsonStream(data, length));
}

CBinaryData CXmlDocument::LoadJsonFile(const WChar* path) { return LoadJsonFile(PathOf(path)); }

CBinaryData CXmlDocument::LoadJsonFile(const std::filesystem::path& path) { return ParseJson(OpenJsonFile(path)); }

}  // namespace OvXmlLib16
