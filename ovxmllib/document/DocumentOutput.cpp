#include "ovxmllib/document/DocumentOutput.h"

#include <atomic>

#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/document/XmlDocument.h"
#include "ovxmllib/foundation/FileBinaryStream.h"
#include "ovxmllib/foundation/FileTextStream.h"
#include "ovxmllib/foundation/OutputFile.h"
#include "ovxmllib/foundation/OvZip.h"
#include "ovxmllib/foundation/TextStream.h"

namespace OvXmlLib16 {

namespace {

constinit std::atomic<bool> g_writeDirectly = false;

}  // namespace

void AsyncToXmlFile(bool on) noexcept { g_writeDirectly = on; }

CBinaryData WriteToBytes(XmlEncoding encoding, CompressionType compression, const DocumentWriter& write) {
  CTextStream stream(encoding);
  write(stream);
  CBinaryData data = stream.GetBytes();
  if (compression != CompressionType_None) CompressBinaryData(data, compression);
  return data;
}

void WriteToFile(const std::filesystem::path& file, XmlEncoding encoding, CompressionType compression,
                 const DocumentWriter& write, const std::function<CBinaryData()>& makeBytes) {
  if (compression == CompressionType_ZLib) {
    throw COvException(u"ZLIB Compression only available for To Stream methods.");
  }
  if (g_writeDirectly && compression == CompressionType_None) {
    CFileTextStream stream(file, encoding);
    return write(stream);
  }
  const CBinaryData data = makeBytes();
  if (compression == CompressionType_None) return CFileBinaryStream(file, encoding, data).WriteToFile();
  // Decided: what is compressed is the whole file, its byte order mark too, see docs/decisions.md.
  const auto mark = ByteOrderMark(encoding);
  CBinaryData content(mark.data(), mark.size());
  content.Append(data);
  CompressBinaryData(content, compression);
  CFileBinaryStream(file, XmlEncoding_None, content).WriteToFile();
}

}  // namespace OvXmlLib16
