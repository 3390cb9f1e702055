// The entry points of bound objects for XML.

#include <functional>

#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/binding/XmlObjectBase.h"
#include "ovxmllib/document/DocumentOutput.h"
#include "ovxmllib/document/XmlDocument.h"
#include "ovxmllib/document/XmlTextWriter.h"
#include "ovxmllib/foundation/TextStream.h"
#include "ovxmllib/platform/File.h"

namespace OvXmlLib16 {

void CXmlObjectBase::ReadElement(CXmlElement* element, const CSerializationContext& context) {
  CXmlElement* const child = m_readsOwnElement ? element : element->GetFirstElement();
  FromXml_Int(element, child, context, /*optionalChoice=*/false);
}

// The one way in: the version is tested, `load` fills a document, and the object takes what it wants of the tree.
template <class Load>
void CXmlObjectBase::ReadDocument(const CSerializationContext& context, Load&& load) {
  CheckVersion();
  CXmlDocument document(context);
  load(document);
  try {
    ReadElement(document.GetDocumentElement(), context);
  } catch (COvException& exception) {
    // Reading once more costs nothing where nothing fails; to keep places would cost every element.
    if (exception.GetLine() == 0) document.AddPlace(exception, load);
    throw;
  }
}

void CXmlObjectBase::FromXml(const WChar* text, const CSerializationContext& context) {
  ReadDocument(context, [&](CXmlDocument& document) { document.LoadXml(text); });
}

void CXmlObjectBase::FromXml(const char* text, const CSerializationContext& context) {
  ReadDocument(context, [&](CXmlDocument& document) { document.LoadXml(text); });
}

void CXmlObjectBase::FromXml(std::string_view text, const CSerializationContext& context) {
  ReadDocument(context, [&](CXmlDocument& document) { document.LoadXml(text); });
}

void CXmlObjectBase::FromXmlStream(const CBinaryData& data, const CSerializationContext& context) {
  FromXmlStream(data.GetData(), data.GetLength(), context);
}

void CXmlObjectBase::FromXmlStream(const unsigned char* data, std::size_t length,
                                   const CSerializationContext& context) {
  ReadDocument(context, [&](CXmlDocument& document) { document.LoadXmlStream(data, length); });
}

void CXmlObjectBase::FromXmlFile(const std::filesystem::path& file, const CSerializationContext& context) {
  ReadDocument(context, [&](CXmlDocument& document) { document.Load(file); });
}

void CXmlObjectBase::FromXmlFile(const WChar* file, const CSerializationContext& context) {
  FromXmlFile(platform::PathFromWide(ViewOf(file)), context);
}

void CXmlObjectBase::FromXmlElement(const CXmlElement* element, const CSerializationContext& context) {
  CheckVersion();
  // FromXml_Int walks the tree without changing it; that it takes no constant is how generated classes are written.
  ReadElement(const_cast<CXmlElement*>(element), context);
}

void CXmlObjectBase::FromXmlElement(std::nullptr_t, const CSerializationContext&) {
  Throw_IfPropertyIsNull(nullptr, u"element");
}

// The one way out: everything that is written to `stream` between its opening and its closing.
void CXmlObjectBase::WriteDocument(CTextStream& stream, bool header, bool formatted, EOLType eol,
                                   const CSerializationContext& context) const {
  CheckVersion();
  CXmlTextWriter writer(&stream);
  writer.Open();
  writer.SetFormatted(formatted);
  writer.SetIndentChars(context.GetIndentChars());
  writer.SetEOLType(eol);
  if (header) writer.WriteXmlHeader();
  ToXml_Int(&writer, /*isRoot=*/true, GetTargetNamespace().c_str(), context, /*optionalChoice=*/false);
  writer.Close();
}

WString CXmlObjectBase::ToXml(bool header, bool formatted, EOLType eol, const CSerializationContext& context) const {
  CTextStream stream;
  WriteDocument(stream, header, formatted, eol, context);
  return stream.GetText();
}

CBinaryData CXmlObjectBase::ToXmlStream(bool header, bool formatted, XmlEncoding encoding, EOLType eol,
                                        const CSerializationContext& context, CompressionType compression) const {
  const auto write = [&](CTextStream& stream) { WriteDocument(stream, header, formatted, eol, context); };
  return WriteToBytes(encoding, compression, std::cref(write));
}

void CXmlObjectBase::ToXmlFile(const WChar* file, bool header, bool formatted, XmlEncoding encoding, EOLType eol,
                               const CSerializationContext& context, CompressionType compression) const {
  ToXmlFile(platform::PathFromWide(ViewOf(file)), header, formatted, encoding, eol, context, compression);
}

void CXmlObjectBase::ToXmlFile(const std::filesystem::path& file, bool header, bool formatted, XmlEncoding encoding,
                               EOLType eol, const CSerializationContext& context, CompressionType compression) const {
  WriteToFile(
      file, encoding, compression, [&](CTextStream& stream) { WriteDocument(stream, header, formatted, eol, context); },
      [&] { return ToXmlStream(header, formatted, encoding, eol, context); });
}

}  // namespace OvXmlLib16
