// A file that nobody sees until it is finished.
#pragma once

#include <filesystem>
#include <string>

namespace ovxml {

/// An open file without a name: whatever ends the process, even SIGKILL, leaves nothing behind. Where the file system
/// has no such files, it has a name until it is published or destroyed; then SIGINT, SIGTERM and SIGHUP remove it too,
/// and one such file at a time is looked after. Failures of the system are thrown as Failure under the name given.
class TempFile {
 public:
  enum class Purpose {
    kPublish,  ///< may be given a name later
    kScratch,  ///< never has one that lasts
  };

  /// Makes an empty file in `folder`, readable and writable by its owner alone.
  TempFile(const std::filesystem::path& folder, Purpose purpose, std::string nameInFailures);
  TempFile(TempFile&& other) noexcept;
  TempFile& operator=(TempFile&&) = delete;
  ~TempFile();

  int GetDescriptor() const noexcept { return m_descriptor; }
  /// A path by which the file can be opened as long as this object lives.
  std::filesystem::path GetPath() const;

  /// Makes it the file at `target`, in place of one that is there, in one step, with these permissions. For kPublish.
  void Publish(const std::filesystem::path& target, unsigned mode);

 private:
  void OpenNamed(Purpose purpose);
  void GiveName();

  std::filesystem::path m_folder;
  std::string m_nameInFailures;
  int m_descriptor = -1;         // owned
  std::filesystem::path m_name;  // empty when it has none
};

/// The folder for scratch files: TMPDIR or /tmp.
std::filesystem::path ScratchFolder();

/// Writes all bytes; returns 0 or the errno value.
int WriteAll(int descriptor, const char* data, std::size_t length) noexcept;

}  // namespace ovxml
