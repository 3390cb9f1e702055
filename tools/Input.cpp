#include "tools/Input.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

#include <cerrno>
#include <new>
#include <regex>
#include <utility>

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

Failure TooLong(const std::string& name, std::uint64_t maxBytes) {
  return {kLimitPassed,
          name + ": The document is longer than " + std::to_string(maxBytes) + " bytes. --max-input sets this limit."};
}

// An inflation of gzip or zlib data, which are not owned.
class Inflation {
 public:
  explicit Inflation(std::string& data) {
    m_stream.next_in = reinterpret_cast<Bytef*>(data.data());
    m_stream.avail_in = static_cast<uInt>(data.size());
    if (inflateInit2(&m_stream, kEitherWindowBits) != Z_OK) throw std::bad_alloc();
  }
  Inflation(const Inflation&) = delete;
  Inflation& operator=(const Inflation&) = delete;
  ~Inflation() { inflateEnd(&m_stream); }

  /// Fills the piece and cuts it to what there is; the result is zlib's.
  int Fill(std::string& piece) {
    m_stream.next_out = reinterpret_cast<Bytef*>(piece.data());
    m_stream.avail_out = static_cast<uInt>(piece.size());
    const int result = inflate(&m_stream, Z_SYNC_FLUSH);
    piece.resize(piece.size() - m_stream.avail_out);
    return result;
  }

 private:
  static constexpr int kEitherWindowBits = 15 + 32;

  z_stream m_stream = {};
};

// What is damaged gives less or nothing; the reading itself will say so.
std::string Inflated(std::string head) {
  std::string expanded(kHeadBytes, '\0');
  Inflation(head).Fill(expanded);
  return expanded;
}

std::string InflatedWhole(std::string content, const std::string& name, std::uint64_t maxExpanded) {
  Inflation inflation(content);
  std::string expanded;
  for (int result = Z_OK; result != Z_STREAM_END;) {
    std::string piece(kCopyBytes, '\0');
    result = inflation.Fill(piece);
    if (result != Z_OK && result != Z_STREAM_END) throw Failure{kBadInput, name + ": The compressed data are damaged."};
    expanded += piece;
    if (maxExpanded == 0 || expanded.size() <= maxExpanded) continue;
    throw Failure{kLimitPassed, name + ": The document expands to more than " + std::to_string(maxExpanded) +
                                    " bytes. --max-inflated sets this limit."};
  }
  return expanded;
}

}  // namespace

Input::Input(const std::string& name, std::uint64_t maxBytes) : m_name(name), m_path(name) {
  const Descriptor file(OpenInput(name));
  const struct stat status = StatusOf(file.Get(), name);
  m_size = static_cast<std::uint64_t>(status.st_size);
  // The files of /proc have no size, and standard input may have been read from already.
  if (name == "-" || !S_ISREG(status.st_mode) || m_size == 0) CopyToScratch(file.Get(), maxBytes);
  ReadHead(m_copy ? m_copy->GetDescriptor() : file.Get());
}

Input::Input(const std::string& name, TempFile content) : m_name(name), m_copy(std::move(content)) {
  m_size = static_cast<std::uint64_t>(StatusOf(m_copy->GetDescriptor(), name).st_size);
  ReadHead(m_copy->GetDescriptor());
}

void Input::ReadHead(int descriptor) {
  m_head.resize(kHeadBytes);
  const ssize_t got = ::pread(descriptor, m_head.data(), m_head.size(), 0);
  if (got < 0) throw SystemFailure(m_name, errno);
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
      throw TooLong(m_name, maxBytes);
    }
    if (const int error = WriteAll(m_copy->GetDescriptor(), buffer.data(), got); error != 0) {
      throw SystemFailure(ScratchFolder(), error);
    }
  }
}

std::string Input::ReadAll(std::uint64_t maxBytes, std::uint64_t maxExpanded) const {
  if (maxBytes != 0 && m_size > maxBytes) throw TooLong(m_name, maxBytes);
  const Descriptor file(OpenInput(GetPath()));
  std::string content, piece(kCopyBytes, '\0');
  while (const std::size_t got = ReadSome(file.Get(), piece, m_name)) content.append(piece, 0, got);
  return IsCompressed() ? InflatedWhole(std::move(content), m_name, maxExpanded) : content;
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
