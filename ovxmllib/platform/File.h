// Files by position: the whole of what the library asks of the system's file calls.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>

#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16::platform {

/// How far a read came.
struct ReadResult {
  std::size_t bytes;  ///< fewer than asked for only at the end of the file or after an error
  int error;          ///< 0 or the errno value; `bytes` is valid with either
};

/// One open file, closed by the destructor at the latest. Calls never throw: each returns 0 or the errno value of the
/// system call that failed. Reading and writing give the position, so no call depends on the one before; pipes and
/// terminals, which have no position, are read and written in order and the offset is passed over. A File belongs to
/// one thread at a time.
class File {
 public:
  /// Holds no file.
  File() noexcept = default;
  File(File&& other) noexcept;
  /// Closes the file held so far; its close error is lost.
  File& operator=(File&& other) noexcept;
  ~File();

  /// Opens an existing file for reading. Whatever was open is closed first; after an error nothing is open.
  int OpenForReading(const std::filesystem::path& path) noexcept;
  /// Opens a file for writing, as an empty one: made with mode 0666 less the umask, or emptied if it is there.
  /// Whatever was open is closed first; after an error nothing is open.
  int Create(const std::filesystem::path& path) noexcept;
  /// Closes the file, if one is open. An error here may be that of an earlier write; the file is closed even then.
  int Close() noexcept;

  bool IsOpen() const noexcept { return m_descriptor != kNone; }
  /// True for a regular file, whose size is known before it is read: false for pipes, devices and folders.
  bool IsRegular() const noexcept;
  /// The size in bytes; 0 after an error. Of a file that is not regular it means nothing.
  int GetSize(std::uint64_t& size) const noexcept;

  /// Reads at `offset` until `length` bytes or the end of the file have come, however many system calls that takes.
  ReadResult ReadAt(unsigned char* buffer, std::size_t length, std::uint64_t offset) noexcept;
  /// Writes all bytes at `offset`. After an error some of them may stand in the file.
  int WriteAt(const unsigned char* data, std::size_t length, std::uint64_t offset) noexcept;

  /// Tells the system that the file will be read from front to back. A hint: whether it is heeded changes no result.
  void AdviseSequential() noexcept;
  /// Starts reading a range into the system's cache without waiting, so that a later ReadAt finds it there. A hint.
  void AdviseWillNeed(std::uint64_t offset, std::size_t length) noexcept;

 private:
  static constexpr int kNone = -1;

  int Open(const std::filesystem::path& path, int flags) noexcept;

  int m_descriptor = kNone;   // owned
  bool m_sequential = false;  // the file has no positions
};

/// The path whose name is the UTF-8 form of `text`. Throws COvInvalidValueException at an unpaired surrogate and at
/// U+0000, which would cut the name short.
std::filesystem::path PathFromWide(WStringView text);

/// The name of a path for messages: bytes that are no UTF-8 become U+FFFD.
WString WideFromPath(const std::filesystem::path& path);

}  // namespace OvXmlLib16::platform
