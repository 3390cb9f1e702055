#include "tools/TempFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <random>
#include <utility>

#include "tools/Failure.h"

namespace ovxml {

namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

// The name that a signal has to remove; in static memory, for the handler.
char g_nameToRemove[PATH_MAX];

extern "C" void RemoveAndDie(int signal) {
  if (g_nameToRemove[0] != '\0') ::unlink(g_nameToRemove);
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

sigset_t HandledSignals() {
  sigset_t set;
  sigemptyset(&set);
  for (const int signal : kSignals) sigaddset(&set, signal);
  return set;
}

// While it lives, signals wait.
class SignalsHeld {
 public:
  SignalsHeld() {
    const sigset_t held = HandledSignals();
    sigprocmask(SIG_BLOCK, &held, &m_before);
  }
  SignalsHeld(const SignalsHeld&) = delete;
  SignalsHeld& operator=(const SignalsHeld&) = delete;
  ~SignalsHeld() { sigprocmask(SIG_SETMASK, &m_before, nullptr); }

 private:
  sigset_t m_before;
};

// A signal that is ignored, as under nohup, stays so.
void RemoveOnSignals(const std::filesystem::path& name) {
  std::strncpy(g_nameToRemove, name.c_str(), sizeof g_nameToRemove - 1);
  for (const int signal : kSignals) {
    struct sigaction action = {};
    sigaction(signal, nullptr, &action);
    if (action.sa_handler == SIG_IGN) continue;
    action.sa_handler = &RemoveAndDie;
    action.sa_mask = HandledSignals();
    sigaction(signal, &action, nullptr);
  }
}

std::filesystem::path FreshName(const std::filesystem::path& folder) {
  return folder / (".ovxml-" + std::to_string(::getpid()) + "-" + std::to_string(std::random_device{}()));
}

bool HasNoUnnamedFiles(int error) { return error == EOPNOTSUPP || error == EISDIR || error == EINVAL; }

}  // namespace

TempFile::TempFile(const std::filesystem::path& folder, Purpose purpose, std::string nameInFailures)
    : m_folder(folder), m_nameInFailures(std::move(nameInFailures)) {
  m_descriptor = ::open(m_folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
  if (m_descriptor >= 0) return;
  if (!HasNoUnnamedFiles(errno)) throw SystemFailure(m_nameInFailures, errno);
  OpenNamed(purpose);
}

TempFile::TempFile(TempFile&& other) noexcept
    : m_folder(std::move(other.m_folder)),
      m_nameInFailures(std::move(other.m_nameInFailures)),
      m_descriptor(std::exchange(other.m_descriptor, -1)),
      m_name(std::exchange(other.m_name, {})) {}

TempFile::~TempFile() {
  const SignalsHeld held;
  if (!m_name.empty()) {
    ::unlink(m_name.c_str());
    g_nameToRemove[0] = '\0';
  }
  if (m_descriptor >= 0) ::close(m_descriptor);
}

void TempFile::OpenNamed(Purpose purpose) {
  const SignalsHeld held;
  const std::filesystem::path name = FreshName(m_folder);
  m_descriptor = ::open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  if (m_descriptor < 0) throw SystemFailure(m_nameInFailures, errno);
  if (purpose == Purpose::kScratch) {
    ::unlink(name.c_str());
    return;
  }
  m_name = name;
  RemoveOnSignals(name);
}

std::filesystem::path TempFile::GetPath() const { return "/proc/self/fd/" + std::to_string(m_descriptor); }

// A name beside the target, to be renamed to it: a link takes nobody's place.
void TempFile::GiveName() {
  const std::filesystem::path name = FreshName(m_folder);
  if (::linkat(AT_FDCWD, GetPath().c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) != 0) {
    throw SystemFailure(m_nameInFailures, errno);
  }
  m_name = name;
}

void TempFile::Publish(const std::filesystem::path& target, unsigned mode) {
  const SignalsHeld held;
  if (::fchmod(m_descriptor, mode) != 0) throw SystemFailure(m_nameInFailures, errno);
  // Nothing stands there: one step, that not even SIGKILL can part.
  if (m_name.empty() && ::linkat(AT_FDCWD, GetPath().c_str(), AT_FDCWD, target.c_str(), AT_SYMLINK_FOLLOW) == 0) {
    return;
  }
  if (m_name.empty()) GiveName();
  if (::rename(m_name.c_str(), target.c_str()) != 0) throw SystemFailure(m_nameInFailures, errno);
  m_name.clear();
  g_nameToRemove[0] = '\0';
}

std::filesystem::path ScratchFolder() {
  const char* const folder = std::getenv("TMPDIR");
  return folder != nullptr && *folder != '\0' ? folder : "/tmp";
}

int WriteAll(int descriptor, const char* data, std::size_t length) noexcept {
  while (length > 0) {
    const ssize_t put = ::write(descriptor, data, length);
    if (put < 0 && errno == EINTR) continue;
    if (put <= 0) return put < 0 ? errno : EIO;
    data += put;
    length -= static_cast<std::size_t>(put);
  }
  return 0;
}

}  // namespace ovxml
