// The wall clock, and the two records in which operating systems hand over a moment.
#pragma once

#include <cstdint>

#include "ovxmllib/binding/Export.h"

namespace OvXmlLib16::platform {

/// A moment in fields, of a zone that the record does not tell.
struct SystemTime {
  std::uint16_t wYear = 0;          ///< 1601 to 30827 where the record comes from this layer
  std::uint16_t wMonth = 0;         ///< 1 to 12
  std::uint16_t wDayOfWeek = 0;     ///< 0 for Sunday to 6 for Saturday
  std::uint16_t wDay = 0;           ///< 1 to 31
  std::uint16_t wHour = 0;          ///< 0 to 23
  std::uint16_t wMinute = 0;        ///< 0 to 59
  std::uint16_t wSecond = 0;        ///< 0 to 59
  std::uint16_t wMilliseconds = 0;  ///< 0 to 999
};

/// A moment as a count of 100 nanoseconds since 1601-01-01T00:00:00 UTC, in two halves.
struct FileTime {
  std::uint32_t dwLowDateTime = 0;   ///< the low 32 bits
  std::uint32_t dwHighDateTime = 0;  ///< the high 32 bits
};

/// The present moment in the machine's time zone, all fields set. A leap second reads as the 59th once more.
OVXMLLIB_API SystemTime GetLocalTime() noexcept;

/// Breaks `fileTime` down as UTC; what is below a millisecond is cut. False, and nothing stored, for a count of 2^63 or
/// more.
OVXMLLIB_API bool FileTimeToSystemTime(const FileTime& fileTime, SystemTime& systemTime) noexcept;

}  // namespace OvXmlLib16::platform
