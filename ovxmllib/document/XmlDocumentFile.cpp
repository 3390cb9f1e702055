// Files into documents.

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <memory>
#include <system_error>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/document/DocumentTree.h"
#include "ovxmllib/document/ExpatReader.h"
#include "ovxmllib/document/ReadChunk.h"
#include "ovxmllib/document/XmlDocument.h"
#include "ovxmllib/platform/File.h"
#include "ovxmllib/values/BinaryData.h"

namespace OvXmlLib16 {

namespace {

constinit std::atomic<bool> g_readInChunks = false;
constinit std::atomic<std::size_t> g_readChunk = kReadChunk;

[[noreturn]] void ThrowReadFailure(const std::filesystem::path& path, int error) {
  throw COvException(FormatString(u"Failed to read the contents of the file [%s] Error [0x%08x]",
                                  platform::WideFromPath(path), error));
}

platform::File OpenForReading(const std::filesystem::path& path) {
  platform::File file;
  if (const int error = file.OpenForReading(path); error != 0) {
    throw COvException(
        FormatString(u"Failed to open the file [%s] Error [0x%08x]", platform::WideFromPath(path), error));
  }
  file.AdviseSequential();
  return file;
}

std::uint64_t SizeOf(const platform::File& file, const std::filesystem::path& path) {
  std::uint64_t size = 0;
  if (const int error = file.GetSize(size); error != 0) {
    throw COvException(
        FormatString(u"Failed to get the size of the file [%s] Error [0x%08x]", platform::WideFromPath(path), error));
  }
  return file.IsRegular() ? size : 0;
}

}  // namespace

void AsyncFromXmlFile(bool on) noexcept { g_readInChunks = on; }

void SetReadChunkForTest(std::size_t bytes) noexcept { g_readChunk = bytes == 0 ? kReadChunk : bytes; }

std::filesystem::path CXmlDocument::PathOf(const WChar* path) { return platform::PathFromWide(ViewOf(path)); }

void CXmlDocument::Load(const std::filesystem::path& path) {
  Cleanup();
  // A pipe gives its content once; to open it again may wait for a writer for ever.
  std::error_code ignored;
  if (m_tree->StopsEarly() && !std::filesystem::is_regular_file(path, ignored)) return;
  if (g_readInChunks) return LoadInChunks(path);
  const CBinaryData content = ReadWhole(path);
  Parse(content.GetData(), content.GetLength());
}

CBinaryData CXmlDocument::ReadWhole(const std::filesystem::path& path) const {
  platform::File file = OpenForReading(path);
  const std::uint64_t size = SizeOf(file, path);
  // Pipes, devices and the files of /proc have no size to ask for.
  if (size == 0) return ReadToEnd(file, path);
  CheckInputLength(size);
  auto buffer = std::make_unique_for_overwrite<unsigned char[]>(size);
  const platform::ReadResult got = file.ReadAt(buffer.get(), size, 0);
  if (got.error != 0 || got.bytes != size) ThrowReadFailure(path, got.error);
  file.Close();
  return CBinaryData(buffer.release(), size, /*adopt=*/true);
}

CBinaryData CXmlDocument::ReadToEnd(platform::File& file, const std::filesystem::path& path) const {
  CBinaryData content;
  const auto piece = std::make_unique_for_overwrite<unsigned char[]>(kReadChunk);
  while (true) {
    const platform::ReadResult got = file.ReadAt(piece.get(), kReadChunk, content.GetLength());
    if (got.error != 0) ThrowReadFailure(path, got.error);
    content.Append(piece.get(), got.bytes);
    CheckInputLength(content.GetLength());
    if (got.bytes < kReadChunk) break;
  }
  file.Close();
  return content;
}

void CXmlDocument::LoadInChunks(const std::filesystem::path& path) {
  platform::File file = OpenForReading(path);
  CExpatReader reader(*m_tree, *m_context);
  reader.Open();
  const std::size_t chunk = g_readChunk;
  std::uint64_t offset = 0;
  bool isFinal = false;
  while (!isFinal) {
    const platform::ReadResult got = file.ReadAt(reader.GetBuffer(chunk), chunk, offset);
    if (got.error != 0 && offset == 0) ThrowReadFailure(path, got.error);
    if (got.error != 0) {
      throw COvException(FormatString(u"Failed to read the contents of the file. Error [0x%08x]", got.error));
    }
    offset += got.bytes;
    CheckInputLength(offset);
    isFinal = got.bytes < chunk;
    if (!isFinal) file.AdviseWillNeed(offset, chunk);  // on its way while the parser works on this one
    reader.ParseBuffer(got.bytes, isFinal);
  }
  if (GetDocumentElement() == nullptr) throw COvException(u"Invalid or empty XML document");
}

}  // namespace OvXmlLib16
