// The entry points of bound objects for Fast Infoset.

#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/binding/XmlObjectBase.h"
#include "ovxmllib/fastinfoset/FastInfosetContext.h"
#include "ovxmllib/fastinfoset/FastInfosetWriter.h"
#include "ovxmllib/foundation/BinaryStream.h"
#include "ovxmllib/foundation/FileBinaryStream.h"
#include "ovxmllib/foundation/OvZip.h"
#include "ovxmllib/platform/File.h"

namespace OvXmlLib16 {

CBinaryData CXmlObjectBase::ToFastInfosetStream(FInfoDecl declaration, const CSerializationContext& context,
                                                CompressionType compression) const {
  CheckVersion();
  CBinaryStream stream;
  CFastInfosetWriter writer(context.GetFIContext(), &stream);
  writer.Open();
  writer.WriteDocumentStart(declaration);
  ToXml_Int(&writer, /*isRoot=*/true, GetTargetNamespace().c_str(), context, /*optionalChoice=*/false);
  writer.WriteDocumentEnd();
  writer.Close();
  CBinaryData data = stream.GetData();
  if (compression != CompressionType_None) CompressBinaryData(data, compression);
  return data;
}

void CXmlObjectBase::ToFastInfosetFile(const WChar* file, FInfoDecl declaration, const CSerializationContext& context,
                                       CompressionType compression) const {
  ToFastInfosetFile(platform::PathFromWide(ViewOf(file)), declaration, context, compression);
}

void CXmlObjectBase::ToFastInfosetFile(const std::filesystem::path& file, FInfoDecl declaration,
                                       const CSerializationContext& context, CompressionType compression) const {
  if (compression == CompressionType_ZLib) {
    throw COvException(u"ZLIB Compression only available for To Stream methods.");
  }
  CFileBinaryStream(file, XmlEncoding_None, ToFastInfosetStream(declaration, context, compression)).WriteToFile();
}

}  // namespace OvXmlLib16
