#include "ovxmllib/platform/SystemTime.h"

#include <time.h>

#include <algorithm>
#include <chrono>
#include <limits>

namespace OvXmlLib16::platform {

namespace {

template <class Number>
constexpr std::uint16_t Narrow(Number value) noexcept {
  return static_cast<std::uint16_t>(value);
}

}  // namespace

SystemTime GetLocalTime() noexcept {
  timespec now{};
  ::clock_gettime(CLOCK_REALTIME, &now);
  tm local{};
  ::localtime_r(&now.tv_sec, &local);
  return {Narrow(local.tm_year + 1900),
          Narrow(local.tm_mon + 1),
          Narrow(local.tm_wday),
          Narrow(local.tm_mday),
          Narrow(local.tm_hour),
          Narrow(local.tm_min),
          Narrow(std::min(local.tm_sec, 59)),
          Narrow(now.tv_nsec / 1'000'000)};
}

bool FileTimeToSystemTime(const FileTime& fileTime, SystemTime& systemTime) noexcept {
  using namespace std::chrono;
  constexpr sys_days kEpoch = year(1601) / January / 1;
  const std::uint64_t count = std::uint64_t{fileTime.dwHighDateTime} << 32 | fileTime.dwLowDateTime;
  if (count > std::uint64_t{std::numeric_limits<std::int64_t>::max()}) return false;
  const milliseconds elapsed(count / 10'000);
  const days whole = floor<days>(elapsed);
  const year_month_day date = kEpoch + whole;
  const hh_mm_ss time(elapsed - whole);
  systemTime = {Narrow(static_cast<int>(date.year())),
                Narrow(static_cast<unsigned>(date.month())),
                Narrow(weekday(kEpoch + whole).c_encoding()),
                Narrow(static_cast<unsigned>(date.day())),
                Narrow(time.hours().count()),
                Narrow(time.minutes().count()),
                Narrow(time.seconds().count()),
                Narrow(time.subseconds().count())};
  return true;
}

}  // namespace OvXmlLib16::platform
