#include "tools/Input.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

#include <cerrno>
#include <regex>

#include "tools/Failure.h"

namespace ovxml {

namespace {

constexpr std::size_t kHeadBytes = 4096;
constexpr std::size_t kCopyBytes = 1 << 20;

class Descriptor {
 public:
  explicit Descriptor(int descriptor) : m_descriptor(descriptor) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (m_descriptor > STDERR_FILENO) ::close(m_descriptor);
  }
  int Get() const noexcept { return m_descriptor; }

 private:
  int m_descriptor;
};

int OpenInput(const std::string& name) {
  if (name == "-") return STDIN_FILENO;
  const int descriptor = ::open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
  if (descriptor < 0) throw SystemFailure(name, errno);
  return descriptor;
}

struct stat StatusOf(int descriptor, const std::string& name) {
  struct stat status = {};
  if (::fstat(descriptor, &status) != 0) throw SystemFailure(name, errno);
  if (S_ISDIR(status.st_mode)) throw SystemFailure(name, EISDIR);
  return status;
}

std::size_t ReadSome(int descriptor, std::string& buffer, const std::string& name) {
  while (true) {
    const ssize_t got = ::read(descriptor, buffer.data(), buffer.size());
    if (got >= 0) return static_cast<std::size_t>(got);
    if (errno != EINTR) throw SystemFailure(name, errno);
  }
}

// RFC 1952, section 2.3.1, and RFC 1950, section 2.2.
const char* CompressionOf(const std::string& head) {
  if (head.size() < 2) return "";
  const auto first = static_cast<unsigned char>(head[0]);
  const auto second = static_cast<unsigned char>(head[1]);
  if (first == 0x1F && second == 0x8B) return "gzip";
  return (first & 0x0F) == 8 && first >> 4 <= 7 && (first << 8 | second) % 31 == 0 ? "zlib" : "";
}

// What is damaged gives less or nothing; the reading itself will say so.
std::string Inflated(std::string head) {
  constexpr int kEitherWindowBits = 15 + 32;
  std::string expanded(kHeadBytes, '\0');
  z_stream stream = {};
  if (inflateInit2(&stream, kEitherWindowBits) != Z_OK) return {};
  stream.next_in = reinterpret_cast<Bytef*>(head.data());
  stream.avail_in = static_cast<uInt>(head.size());
  stream.next_out = reinterpret_cast<Bytef*>(expanded.data());
  stream.avail_out = static_cast<uInt>(expanded.size());
  inflate(&stream, Z_SYNC_FLUSH);
  expanded.resize(stream.total_out);
  inflateEnd(&stream);
  return expanded;
}

}  // namespace

Input::Input(const std::string& name, std::uint64_t maxBytes) : m_name(name), m_path(name) {
  const Descriptor file(OpenInput(name));
  const struct stat status = StatusOf(file.Get(), name);
  m_size = static_cast<std::uint64_t>(status.st_size);
  // The files of /proc have no size, and standard input may have been read from already.
  if (name == "-" || !S_ISREG(status.st_mode) || m_size == 0) CopyToScratch(file.Get(), maxBytes);
  m_head.resize(kHeadBytes);
  const ssize_t got = ::pread(m_copy ? m_copy->GetDescriptor() : file.Get(), m_head.data(), m_head.size(), 0);
  if (got < 0) throw SystemFailure(name, errno);
  m_head.resize(static_cast<std::size_t>(got));
  m_compression = CompressionOf(m_head);
  if (IsCompressed()) m_head = Inflated(std::move(m_head));
}

void Input::CopyToScratch(int descriptor, std::uint64_t maxBytes) {
  m_copy.emplace(ScratchFolder(), TempFile::Purpose::kScratch, ScratchFolder());
  std::string buffer(kCopyBytes, '\0');
  m_size = 0;
  while (const std::size_t got = ReadSome(descriptor, buffer, m_name)) {
    m_size += got;
    if (maxBytes != 0 && m_size > maxBytes) {
      throw Failure{kLimitPassed, m_name + ": The document is longer than " + std::to_string(maxBytes) +
                                      " bytes. --max-input sets this limit."};
    }
    if (const int error = WriteAll(m_copy->GetDescriptor(), buffer.data(), got); error != 0) {
      throw SystemFailure(ScratchFolder(), error);
    }
  }
}

std::string EncodingOf(const std::string& head) {
  using namespace std::string_literals;
  if (head.starts_with("\xEF\xBB\xBF")) return "UTF-8";
  if (head.starts_with("\xFF\xFE") || head.starts_with("<\0"s)) return "UTF-16LE";
  if (head.starts_with("\xFE\xFF") || head.starts_with("\0<"s)) return "UTF-16BE";
  static const std::regex declared(R"(^<\?xml\s[^>]*?\bencoding\s*=\s*["']([^"']+)["'])");
  std::smatch found;
  return std::regex_search(head, found, declared) ? found[1].str() : "UTF-8";
}

}  // namespace ovxml
