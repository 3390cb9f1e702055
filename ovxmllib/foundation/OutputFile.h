// How the streams that write files begin one, and report that it cannot be written.
#pragma once

#include <filesystem>
#include <span>

#include "ovxmllib/binding/Enumerations.h"
#include "ovxmllib/platform/File.h"

namespace OvXmlLib16 {

/// What a file in this encoding begins with: FF FE for UTF-16, nothing for any other.
std::span<const unsigned char> ByteOrderMark(XmlEncoding encoding) noexcept;

/// Makes the file at `path`, or empties it, and writes ByteOrderMark. After a failure nothing is open and
/// ThrowWriteFailure has thrown.
platform::File CreateOutputFile(const std::filesystem::path& path, XmlEncoding encoding);

/// Throws COvException "Failed to write data to the file [path] error [0x0000001C]"; `error` is an errno value.
[[noreturn]] void ThrowWriteFailure(const std::filesystem::path& path, int error);

}  // namespace OvXmlLib16
