// Feeds stored inputs to a fuzz target without libFuzzer: every compiler and every test run can replay the corpora.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

namespace fs = std::filesystem;

/// The files among the paths and below the folders among them, in an order that does not depend on the file system.
std::vector<fs::path> FilesOf(int count, char** paths) {
  std::vector<fs::path> files;
  for (const fs::path& path : std::vector<fs::path>(paths, paths + count)) {
    if (!fs::is_directory(path)) {
      files.push_back(path);
      continue;
    }
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(path)) {
      if (entry.is_regular_file()) files.push_back(entry.path());
    }
  }
  std::sort(files.begin(), files.end());
  return files;
}

/// False when the file cannot be read.
bool Feed(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::error_code error;
  const auto size = static_cast<std::size_t>(fs::file_size(file, error));
  if (!stream || error) return false;

  // Exactly as long as the input, so that a sanitizer sees a read beyond its end.
  const std::unique_ptr<std::uint8_t[]> data(new std::uint8_t[size]);
  if (!stream.read(reinterpret_cast<char*>(data.get()), static_cast<std::streamsize>(size))) return false;
  LLVMFuzzerTestOneInput(data.get(), size);
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<fs::path> files = FilesOf(argc - 1, argv + 1);
  for (const fs::path& file : files) {
    std::cout << file.native() << std::endl;  // flushed: the last line names the input that crashed
    if (!Feed(file)) {
      std::cerr << "cannot read " << file.native() << '\n';
      return EXIT_FAILURE;
    }
  }
  std::cout << files.size() << " inputs replayed\n";
  return files.empty() ? EXIT_FAILURE : EXIT_SUCCESS;
}
