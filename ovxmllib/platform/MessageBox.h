// How a message reaches the user of the program, beside the exception that reaches its code.
#pragma once

#include "ovxmllib/binding/Export.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16::platform {

/// Shows one error to the user. Called on the thread that met it, possibly on several at once; must not throw.
using MessageBoxFunction = void (*)(WStringView caption, WStringView text);

/// Shows errors with `function` from now on and returns the one before; null sets the default again, which writes
/// "caption: text" to standard error in UTF-8, once in the life of the process.
OVXMLLIB_API MessageBoxFunction SetMessageBox(MessageBoxFunction function) noexcept;

/// Shows an error with the function in force.
OVXMLLIB_API void ShowMessageBox(WStringView caption, WStringView text);

}  // namespace OvXmlLib16::platform
