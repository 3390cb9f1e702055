// A document to be read.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "tools/TempFile.h"

namespace ovxml {

/// A file that can be read several times, and what its first bytes tell. What has no such file, as standard input and
/// pipes, is copied to a scratch file first.
class Input {
 public:
  /// `name` is a path, or "-" for standard input. Throws Failure when it cannot be opened or read, or has more than
  /// `maxBytes` bytes (0: any number) and would have to be copied.
  Input(const std::string& name, std::uint64_t maxBytes);
  /// What `content` holds, in the name of the file that it was made of. Throws Failure when it cannot be read.
  Input(const std::string& name, TempFile content);

  /// As the user gave it.
  const std::string& GetName() const noexcept { return m_name; }
  std::filesystem::path GetPath() const { return m_copy ? m_copy->GetPath() : m_path; }
  /// In bytes, as the file comes.
  std::uint64_t GetSize() const noexcept { return m_size; }

  bool IsCompressed() const noexcept { return *m_compression != '\0'; }
  /// "gzip", "zlib" or an empty text.
  const char* GetCompression() const noexcept { return m_compression; }
  /// The first bytes, at most 4 KiB of them; of a compressed file what they expand to.
  const std::string& GetHead() const noexcept { return m_head; }

  /// All bytes, expanded. Throws Failure when they cannot be read or expanded, and when they come to more than
  /// `maxBytes`, or expand to more than `maxExpanded` (0: any number).
  std::string ReadAll(std::uint64_t maxBytes, std::uint64_t maxExpanded) const;

 private:
  void CopyToScratch(int descriptor, std::uint64_t maxBytes);
  void ReadHead(int descriptor);

  std::string m_name;
  std::filesystem::path m_path;
  std::optional<TempFile> m_copy;
  std::uint64_t m_size = 0;
  const char* m_compression = "";
  std::string m_head;
};

/// The encoding of an XML document, by its first bytes: the byte order mark, the declaration, or UTF-8 (XML 1.0,
/// appendix F).
std::string EncodingOf(const std::string& head);

}  // namespace ovxml
