#include "ovxmllib/foundation/OutputFile.h"

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"

namespace OvXmlLib16 {

std::span<const unsigned char> ByteOrderMark(XmlEncoding encoding) noexcept {
  static constexpr unsigned char kUtf16LowByteFirst[] = {0xFF, 0xFE};
  if (encoding == XmlEncoding_UTF16 || encoding == XmlEncoding_UTF16NoHeader) return kUtf16LowByteFirst;
  return {};
}

platform::File CreateOutputFile(const std::filesystem::path& path, XmlEncoding encoding) {
  platform::File file;
  int error = file.Create(path);
  const auto mark = ByteOrderMark(encoding);
  if (error == 0) error = file.WriteAt(mark.data(), mark.size(), 0);
  if (error != 0) ThrowWriteFailure(path, error);
  return file;
}

void ThrowWriteFailure(const std::filesystem::path& path, int error) {
  throw COvException(
      FormatString(u"Failed to write data to the file [%s] error [0x%08X]", platform::WideFromPath(path), error));
}

}  // namespace OvXmlLib16
