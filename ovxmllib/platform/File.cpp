#include "ovxmllib/platform/File.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/foundation/Unicode.h"

namespace OvXmlLib16::platform {

namespace {

static_assert(sizeof(off_t) >= sizeof(std::int64_t), "files above 2 GiB need 64-bit offsets: _FILE_OFFSET_BITS=64");

// A call that is to be made again: it was interrupted, or the file turned out to have no positions.
bool IsWorthRetrying(int error, bool& sequential) noexcept {
  if (error == EINTR) return true;
  if (error != ESPIPE || sequential) return false;
  return sequential = true;
}

}  // namespace

File::File(File&& other) noexcept
    : m_descriptor(std::exchange(other.m_descriptor, kNone)), m_sequential(other.m_sequential) {}

File& File::operator=(File&& other) noexcept {
  const int descriptor = std::exchange(other.m_descriptor, kNone);
  Close();
  m_descriptor = descriptor;
  m_sequential = other.m_sequential;
  return *this;
}

File::~File() { Close(); }

int File::OpenForReading(const std::filesystem::path& path) noexcept { return Open(path, O_RDONLY); }

int File::Create(const std::filesystem::path& path) noexcept { return Open(path, O_WRONLY | O_CREAT | O_TRUNC); }

int File::Open(const std::filesystem::path& path, int flags) noexcept {
  Close();
  m_sequential = false;
  if (path.native().find('\0') != std::string::npos) return EINVAL;
  do {
    m_descriptor = ::open(path.c_str(), flags | O_CLOEXEC | O_NOCTTY, 0666);
  } while (m_descriptor == kNone && errno == EINTR);
  return m_descriptor == kNone ? errno : 0;
}

int File::Close() noexcept {
  if (!IsOpen()) return 0;
  // The descriptor is gone whatever close says; a second call could close a file that another thread opened meanwhile.
  return ::close(std::exchange(m_descriptor, kNone)) == 0 ? 0 : errno;
}

bool File::IsRegular() const noexcept {
  struct stat status;
  return ::fstat(m_descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

int File::GetSize(std::uint64_t& size) const noexcept {
  struct stat status;
  size = 0;
  if (::fstat(m_descriptor, &status) != 0) return errno;
  size = static_cast<std::uint64_t>(status.st_size);
  return 0;
}

ReadResult File::ReadAt(unsigned char* buffer, std::size_t length, std::uint64_t offset) noexcept {
  std::size_t done = 0;
  while (done < length) {
    const ssize_t got = m_sequential
                            ? ::read(m_descriptor, buffer + done, length - done)
                            : ::pread(m_descriptor, buffer + done, length - done, static_cast<off_t>(offset + done));
    if (got == 0) break;
    if (got > 0) {
      done += static_cast<std::size_t>(got);
    } else if (!IsWorthRetrying(errno, m_sequential)) {
      return {done, errno};
    }
  }
  return {done, 0};
}

int File::WriteAt(const unsigned char* data, std::size_t length, std::uint64_t offset) noexcept {
  std::size_t done = 0;
  while (done < length) {
    const ssize_t put = m_sequential
                            ? ::write(m_descriptor, data + done, length - done)
                            : ::pwrite(m_descriptor, data + done, length - done, static_cast<off_t>(offset + done));
    if (put == 0) return EIO;  // a device that takes nothing and says no reason would be asked for ever
    if (put > 0) {
      done += static_cast<std::size_t>(put);
    } else if (!IsWorthRetrying(errno, m_sequential)) {
      return errno;
    }
  }
  return 0;
}

void File::AdviseSequential() noexcept { ::posix_fadvise(m_descriptor, 0, 0, POSIX_FADV_SEQUENTIAL); }

void File::AdviseWillNeed(std::uint64_t offset, std::size_t length) noexcept {
  ::posix_fadvise(m_descriptor, static_cast<off_t>(offset), static_cast<off_t>(length), POSIX_FADV_WILLNEED);
}

std::filesystem::path PathFromWide(WStringView text) {
  if (const std::size_t cut = text.find(u'\0'); cut != WStringView::npos) {
    throw COvInvalidValueException(FormatString(u"The path holds the character U+0000 at position %d.", cut));
  }
  return ToUtf8(text);
}

WString WideFromPath(const std::filesystem::path& path) { return unicode::ToWideLossy(path.native()); }

}  // namespace OvXmlLib16::platform
