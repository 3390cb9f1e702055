// Where a finished document goes.
#pragma once

#include <optional>
#include <string>

#include "tools/TempFile.h"

namespace ovxml {

/// A document is written to a scratch file and appears when it is complete: as the file of the target's name, in one
/// step, or as bytes on standard output, a pipe or a device. When it is not finished, nothing has appeared. Failures
/// of the system are thrown as Failure.
class Output {
 public:
  /// `name` is a path, or "-" for standard output. A file that is there keeps its permissions, and a symbolic link
  /// stays: the file that it leads to is replaced.
  explicit Output(const std::string& name);

  /// As the user gave it.
  const std::string& GetName() const noexcept { return m_name; }
  /// What the document is to be written to, from its beginning.
  std::filesystem::path GetPath() const { return m_file->GetPath(); }
  /// Makes it appear.
  void Finish();

 private:
  void CopyTo(int descriptor) const;

  std::string m_name;
  std::filesystem::path m_target;  // empty when the bytes are to be copied
  unsigned m_mode = 0;
  std::optional<TempFile> m_file;
};

}  // namespace ovxml
