// How far a command has come, on standard error.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace ovxml {

/// One line that is written over again and again, and gone at the end.
class Progress {
 public:
  enum class Wish {
    kAuto,    ///< for files over 10 MB, when standard error is a terminal
    kAlways,  ///< for every file, wherever standard error goes
    kNever,
  };

  /// `bytes` is what will be read in all: the size of the file, times the passes over it.
  Progress(Wish wish, std::string name, std::uint64_t fileBytes, int passes);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();

  /// To be called once an element: nearly always it costs a count.
  void Tick() {
    if (m_shown && ++m_ticks % kTicksPerLook == 0) Look();
  }

 private:
  using Clock = std::chrono::steady_clock;
  static constexpr unsigned kTicksPerLook = 1024;

  void Look();

  bool m_shown;
  std::string m_name;
  std::uint64_t m_bytes;
  std::uint64_t m_bytesBefore = 0;
  unsigned m_ticks = 0;
  bool m_printed = false;
  Clock::time_point m_next;
};

}  // namespace ovxml
