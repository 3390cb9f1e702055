// Writes a finished block of bytes to a file in one go.
#pragma once

#include <filesystem>
#include <utility>

#include "ovxmllib/binding/Enumerations.h"
#include "ovxmllib/foundation/BinaryStream.h"
#include "ovxmllib/platform/File.h"

namespace OvXmlLib16 {

/// Collects bytes, or takes those of a finished document, and writes them to a file when told to.
class CFileBinaryStream : public CBinaryStream {
 public:
  /// Output to the file at `path`. `encoding` is that of the text in the bytes, and decides on the byte order mark.
  CFileBinaryStream(std::filesystem::path path, XmlEncoding encoding, CBinaryData data = {})
      : CBinaryStream(std::move(data), Record()), m_fileName(std::move(path)), m_encoding(encoding) {}
  /// The same for a terminated text; null counts as empty. Throws COvInvalidValueException at an unpaired surrogate.
  CFileBinaryStream(const WChar* path, XmlEncoding encoding, CBinaryData data = {})
      : CFileBinaryStream(platform::PathFromWide(ViewOf(path)), encoding, std::move(data)) {}
  ~CFileBinaryStream() override;

  /// Makes or empties the file, writes a byte order mark (FF FE) for the two encodings of UTF-16, then the bytes, and
  /// closes it. Throws COvException "Failed to write data to the file [path] error [0x0000001C]" with the errno value;
  /// the file is closed then, and what was written stays on the disk.
  void WriteToFile();

 private:
  static ClassType& Record() {
    static ClassType& record = FindClass(u"CFileBinaryStream");
    return record;
  }

  std::filesystem::path m_fileName;
  XmlEncoding m_encoding;
};

}  // namespace OvXmlLib16
