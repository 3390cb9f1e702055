// Where traces go: a function that the application gives, or nowhere.
#pragma once

#include "ovxmllib/binding/Export.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16::platform {

/// Receives one piece of trace text. Called on the tracing thread, possibly on several at once; must not throw.
using DebugOutputFunction = void (*)(WStringView text);

/// Sends traces to `function` from now on; null, the state at load, switches them off. Returns the one before. A trace
/// that nobody listens to costs one load and formats nothing.
OVXMLLIB_API DebugOutputFunction SetDebugOutput(DebugOutputFunction function) noexcept;

/// The function in force, or null.
OVXMLLIB_API DebugOutputFunction GetDebugOutput() noexcept;

}  // namespace OvXmlLib16::platform
