#include "tools/Progress.h"

#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <iostream>

namespace ovxml {

namespace {

constexpr std::uint64_t kWorthShowing = 10'000'000;
constexpr auto kPause = std::chrono::milliseconds(200);

// What this process has read so far, by the system's count: the library reads by itself and tells nobody how far it is.
std::uint64_t BytesRead() {
  std::ifstream counts("/proc/self/io");
  std::string label;
  std::uint64_t bytes = 0;
  counts >> label >> bytes;
  return label == "rchar:" ? bytes : 0;
}

bool IsShown(Progress::Wish wish, std::uint64_t bytes) {
  if (wish != Progress::Wish::kAuto) return wish == Progress::Wish::kAlways;
  return bytes > kWorthShowing && ::isatty(STDERR_FILENO) == 1;
}

}  // namespace

Progress::Progress(Wish wish, std::string name, std::uint64_t fileBytes, int passes)
    : m_shown(IsShown(wish, fileBytes)),
      m_name(std::move(name)),
      m_bytes(std::max<std::uint64_t>(1, fileBytes * static_cast<unsigned>(passes))) {
  if (!m_shown) return;
  m_bytesBefore = BytesRead();
  m_next = Clock::now() + kPause;
}

Progress::~Progress() {
  if (m_printed) std::cerr << "\r\x1B[K" << std::flush;
}

void Progress::Look() {
  if (Clock::now() < m_next) return;
  m_next = Clock::now() + kPause;
  const std::uint64_t percent = std::min<std::uint64_t>(100, (BytesRead() - m_bytesBefore) * 100 / m_bytes);
  std::cerr << "\rovxml: " << m_name << ": " << percent << " %\x1B[K" << std::flush;
  m_printed = true;
}

}  // namespace ovxml
