// A file that exists in memory alone and has a path.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "fuzz/Input.h"

namespace OvXmlLib16::fuzz {

class MemoryFile {
 public:
  MemoryFile() : m_descriptor(::memfd_create("fuzz", MFD_CLOEXEC)) {
    Require(m_descriptor >= 0, "there are files in memory");
  }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  ~MemoryFile() { ::close(m_descriptor); }

  std::filesystem::path GetPath() const { return "/proc/self/fd/" + std::to_string(m_descriptor); }

  /// Replaces the content.
  void Write(Bytes bytes) {
    const bool isEmpty = ::ftruncate(m_descriptor, 0) == 0;
    const ssize_t written = ::pwrite(m_descriptor, bytes.data(), bytes.size(), 0);
    Require(isEmpty && written == static_cast<ssize_t>(bytes.size()), "a file in memory is written");
  }

  std::string Read() const {
    std::string content(static_cast<std::size_t>(::lseek(m_descriptor, 0, SEEK_END)), '\0');
    const ssize_t got = ::pread(m_descriptor, content.data(), content.size(), 0);
    Require(got == static_cast<ssize_t>(content.size()), "a file in memory is read");
    return content;
  }

 private:
  const int m_descriptor;
};

}  // namespace OvXmlLib16::fuzz
