// The lock of the platform: one thread at a time, and the owning thread may enter again.
#pragma once

#include <mutex>

namespace OvXmlLib16::platform {

using RecursiveMutex = std::recursive_mutex;

}  // namespace OvXmlLib16::platform
