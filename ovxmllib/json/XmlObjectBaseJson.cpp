// The entry points of bound objects for JSON.

#include <functional>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/binding/XmlObjectBase.h"
#include "ovxmllib/document/DocumentOutput.h"
#include "ovxmllib/document/DocumentTree.h"
#include "ovxmllib/document/XmlDocument.h"
#include "ovxmllib/foundation/Encoder.h"
#include "ovxmllib/foundation/TextStream.h"
#include "ovxmllib/json/JsonInput.h"
#include "ovxmllib/json/JsonTextWriter.h"
#include "ovxmllib/json/JsonTreeReader.h"
#include "ovxmllib/platform/File.h"

namespace OvXmlLib16 {

namespace {

bool HasNamespaces(const CSerializationContext& context) {
  return context.GetJsonContext()->GetSupportRoundtrip() == RoundTripFull;
}

// The context that the elements are read with. Another thread may be using the one given, so that stays as it is.
CSerializationContext ForElements(const CSerializationContext& context) {
  CSerializationContext copy(context);
  if (!HasNamespaces(context)) copy.SetIgnoreNamespaces(true);
  copy.SetMaxInputBytes(0);  // the JSON text has passed it
  return copy;
}

}  // namespace

// The one way in: `open` gives the text, which goes the short road if it can, else the one by XML text. Whatever fails
// on the short road fails on the other one too, which tells how.
template <class Open>
void CXmlObjectBase::ReadJson(const CSerializationContext& context, Open&& open) {
  CheckVersion();
  CXmlDocument document(context);
  JsonInput input = open(document);
  if (const auto text = input.AsUtf8(); text && ReadJsonDirectly(*text, document, context)) return;
  document.Cleanup();
  FromJson_Int(document.ParseJson(std::move(input)), context);
}

bool CXmlObjectBase::ReadJsonDirectly(std::string_view text, CXmlDocument& document,
                                      const CSerializationContext& context) {
  if (!ReadJsonIntoTree(text, context, *document.m_tree)) return false;
  try {
    HasNamespaces(context) ? ReadElement(document.GetDocumentElement(), context)
                           : ReadElement(document.GetDocumentElement(), ForElements(context));
    return true;
  } catch (const COvException&) {
    return false;
  }
}

void CXmlObjectBase::FromJson_Int(const CBinaryData& xml, const CSerializationContext& context) {
  try {
    FromXmlStream(xml, ForElements(context));
  } catch (const COvException& exception) {
    throw COvException(FormatString(u"Error converting JSON to XML:\n%s", DecodeUtf8(xml.GetData(), xml.GetLength())),
                       exception);
  }
}

void CXmlObjectBase::FromJson(const WChar* text, const CSerializationContext& context) {
  ReadJson(context, [&](CXmlDocument& document) { return document.OpenJson(ViewOf(text)); });
}

void CXmlObjectBase::FromJson(const char* text, const CSerializationContext& context) {
  FromJson(text == nullptr ? std::string_view() : std::string_view(text), context);
}

void CXmlObjectBase::FromJson(std::string_view text, const CSerializationContext& context) {
  ReadJson(context, [&](CXmlDocument& document) { return document.OpenJson(text); });
}

void CXmlObjectBase::FromJsonStream(const CBinaryData& data, const CSerializationContext& context) {
  FromJsonStream(data.GetData(), data.GetLength(), context);
}

void CXmlObjectBase::FromJsonStream(const unsigned char* data, std::size_t length,
                                    const CSerializationContext& context) {
  ReadJson(context, [&](CXmlDocument& document) { return document.OpenJsonStream(data, length); });
}

void CXmlObjectBase::FromJsonFile(const std::filesystem::path& file, const CSerializationContext& context) {
  ReadJson(context, [&](CXmlDocument& document) { return document.OpenJsonFile(file); });
}

void CXmlObjectBase::FromJsonFile(const WChar* file, const CSerializationContext& context) {
  FromJsonFile(platform::PathFromWide(ViewOf(file)), context);
}

// The one way out: everything that is written to `stream` between its opening and its closing.
void CXmlObjectBase::WriteJson(CTextStream& stream, bool formatted, EOLType eol,
                               const CSerializationContext& context) const {
  CheckVersion();
  CJsonTextWriter writer(&stream);
  writer.Open();
  writer.SetFormatted(formatted);
  writer.SetIndentChars(context.GetIndentChars());
  writer.SetEOLType(eol);
  writer.SetRoundTrip(context.GetJsonContext()->GetSupportRoundtrip());
  writer.WriteDocumentStart();
  ToXml_Int(&writer, /*isRoot=*/true, GetTargetNamespace().c_str(), context, /*optionalChoice=*/false);
  writer.WriteDocumentEnd();
  writer.Close();
}

WString CXmlObjectBase::ToJson(bool formatted, EOLType eol, const CSerializationContext& context) const {
  CTextStream stream;
  WriteJson(stream, formatted, eol, context);
  return stream.GetText();
}

CBinaryData CXmlObjectBase::ToJsonStream(bool formatted, XmlEncoding encoding, EOLType eol,
                                         const CSerializationContext& context, CompressionType compression) const {
  const auto write = [&](CTextStream& stream) { WriteJson(stream, formatted, eol, context); };
  return WriteToBytes(encoding, compression, std::cref(write));
}

void CXmlObjectBase::ToJsonFile(const WChar* file, bool formatted, XmlEncoding encoding, EOLType eol,
                                const CSerializationContext& context, CompressionType compression) const {
  ToJsonFile(platform::PathFromWide(ViewOf(file)), formatted, encoding, eol, context, compression);
}

void CXmlObjectBase::ToJsonFile(const std::filesystem::path& file, bool formatted, XmlEncoding encoding, EOLType eol,
                                const CSerializationContext& context, CompressionType compression) const {
  WriteToFile(
      file, encoding, compression, [&](CTextStream& stream) { WriteJson(stream, formatted, eol, context); },
      [&] { return ToJsonStream(formatted, encoding, eol, context, CompressionType_None); });
}

}  // namespace OvXmlLib16
