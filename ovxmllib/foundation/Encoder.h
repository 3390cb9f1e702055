// Conversion between the library's text and bytes.
#pragma once

#include <cstddef>

#include "ovxmllib/binding/Export.h"
#include "ovxmllib/foundation/WideString.h"
#include "ovxmllib/values/BinaryData.h"

namespace OvXmlLib16 {

/// The UTF-8 bytes of `text` (a terminated text converts), without terminator; U+0000 is kept. Empty text gives empty
/// data. Throws COvInvalidValueException at an unpaired surrogate, naming its position in code units: nothing is cut or
/// replaced silently.
OVXMLLIB_API CBinaryData EncodeUtf8(WStringView text);

/// The text that stands in `length` bytes of UTF-8 at `data`, which may be null when there are none; U+0000 is kept.
/// Throws COvInvalidValueException at an illegal or cut off sequence (Unicode Standard, table 3-7), naming its position
/// in bytes.
OVXMLLIB_API WString DecodeUtf8(const unsigned char* data, std::size_t length);

/// The text made of `count` UTF-16 code units, low byte first, that stand at `data`, which needs no alignment and may
/// be null when there are none. The units are taken as they are, unchecked.
OVXMLLIB_API WString DecodeUtf16(const unsigned char* data, std::size_t count);

}  // namespace OvXmlLib16
