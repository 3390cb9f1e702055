#include "tools/Output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "tools/Failure.h"

namespace ovxml {

namespace {

constexpr unsigned kPermissions = 07777;

unsigned ModeOfNewFiles() {
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return 0666 & ~mask;
}

// The file that a path leads to over symbolic links, which may not be there yet.
std::filesystem::path Resolved(const std::string& name) {
  std::error_code error;
  const std::filesystem::path resolved = std::filesystem::weakly_canonical(name, error);
  return error ? std::filesystem::path(name) : resolved;
}

std::filesystem::path FolderOf(const std::filesystem::path& file) {
  return file.has_parent_path() ? file.parent_path() : std::filesystem::path(".");
}

}  // namespace

Output::Output(const std::string& name) : m_name(name) {
  struct stat status = {};
  const bool exists = name != "-" && ::stat(name.c_str(), &status) == 0;
  if (exists && S_ISDIR(status.st_mode)) throw SystemFailure(name, EISDIR);
  if (exists && ::access(name.c_str(), W_OK) != 0) throw SystemFailure(name, errno);
  if (name == "-" || (exists && !S_ISREG(status.st_mode))) {
    m_file.emplace(ScratchFolder(), TempFile::Purpose::kScratch, ScratchFolder());
    return;
  }
  m_mode = exists ? status.st_mode & kPermissions : ModeOfNewFiles();
  m_target = Resolved(name);
  m_file.emplace(FolderOf(m_target), TempFile::Purpose::kPublish, name);
}

void Output::Finish() {
  if (!m_target.empty()) return m_file->Publish(m_target, m_mode);
  if (m_name == "-") return CopyTo(STDOUT_FILENO);
  const int descriptor = ::open(m_name.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
  if (descriptor < 0) throw SystemFailure(m_name, errno);
  CopyTo(descriptor);
  if (::close(descriptor) != 0) throw SystemFailure(m_name, errno);
}

void Output::CopyTo(int descriptor) const {
  constexpr std::size_t kPiece = 1 << 20;
  std::string piece(kPiece, '\0');
  off_t offset = 0;
  while (true) {
    const ssize_t got = ::pread(m_file->GetDescriptor(), piece.data(), piece.size(), offset);
    if (got < 0) throw SystemFailure(ScratchFolder(), errno);
    if (got == 0) return;
    if (const int error = WriteAll(descriptor, piece.data(), static_cast<std::size_t>(got)); error != 0) {
      throw SystemFailure(m_name, error);
    }
    offset += got;
  }
}

}  // namespace ovxml
