// The escaping of JSON strings (RFC 8259, section 7), as documents of bound objects have it.
#pragma once

#include "ovxmllib/foundation/TextStream.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

/// Writes `text` between `before` and `after`, which go out as they are: quotation mark, backslash and control
/// characters as escapes, but a line feed as `lineEnd`. Throws COvInvalidValueException at U+0000, which no document
/// can hold; what stands before it may have been written.
void WriteJsonEscaped(CTextStream& stream, WStringView before, WStringView text, WStringView after,
                      WStringView lineEnd);

}  // namespace OvXmlLib16
