// The sink of the text writers for output that goes to a file as it is written.
#pragma once

#include <cstdint>
#include <filesystem>
#include <utility>

#include "ovxmllib/foundation/TextStream.h"
#include "ovxmllib/platform/File.h"

namespace OvXmlLib16 {

/// Writes text to a file in the stream's encoding, a piece at each Flush, so that memory stays at the size of what is
/// written between two of them. The system takes each piece into its cache and brings it to the disk while the writer
/// makes the next. UTF-16 files begin with a byte order mark (FF FE), UTF-8 files do not.
///
/// Every failure closes the file before the exception leaves; what was written stays on the disk. Close must be called:
/// the destructor closes the file but writes nothing, so that output which an exception cut short is not completed to
/// look sound.
class CFileTextStream : public CTextStream {
 public:
  /// Output to the file at `path`, which Open makes or empties.
  CFileTextStream(std::filesystem::path path, XmlEncoding encoding)
      : CTextStream(encoding, Record()), m_fileName(std::move(path)) {}
  /// The same for a terminated text; null counts as empty. Throws COvInvalidValueException at an unpaired surrogate.
  CFileTextStream(const WChar* path, XmlEncoding encoding)
      : CFileTextStream(platform::PathFromWide(ViewOf(path)), encoding) {}
  ~CFileTextStream() override;

  /// Makes or empties the file and writes the byte order mark. Throws COvException "Failed to write data to the file
  /// [path] error [0x0000000D]" with the errno value.
  void Open() override;
  /// Flushes, then closes the file. Throws as Flush does, also for an error that only closing reports and for a text
  /// that ends in half of a surrogate pair.
  void Close() override;
  /// Encodes what is buffered and writes it behind what was written before; does nothing when nothing is buffered.
  /// Throws COvException "Failed to write data to the file. Error [0x0000001C]" with the errno value, and what GetBytes
  /// throws.
  void Flush() override;

 private:
  static ClassType& Record() {
    static ClassType& record = FindClass(u"CFileTextStream");
    return record;
  }

  std::filesystem::path m_fileName;
  std::uint64_t m_fileOffset = 0;  // bytes written
  platform::File m_hFile;
};

}  // namespace OvXmlLib16
