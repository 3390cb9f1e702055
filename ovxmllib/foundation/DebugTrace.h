// Traces for the developer, to the platform's debug output.
#pragma once

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/platform/DebugOutput.h"

namespace OvXmlLib16 {

/// Sends `text` to the debug output in pieces of at most 128 code units. Does nothing when nobody listens.
OVXMLLIB_API void DebugTraceText(WStringView text);

/// Formats as FormatString does and sends the result to the debug output. Without a listener (see
/// platform::SetDebugOutput) nothing is formatted. The text may have any length.
template <class... Args>
void DebugTrace(FormatLiteral<std::type_identity_t<Args>...> format, const Args&... args) {
  if (platform::GetDebugOutput() == nullptr) return;
  DebugTraceText(FormatString<Args...>(format, args...));
}

}  // namespace OvXmlLib16
