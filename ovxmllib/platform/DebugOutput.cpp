#include "ovxmllib/platform/DebugOutput.h"

#include <atomic>

namespace OvXmlLib16::platform {

namespace {

constinit std::atomic<DebugOutputFunction> g_output = nullptr;

}  // namespace

DebugOutputFunction SetDebugOutput(DebugOutputFunction function) noexcept { return g_output.exchange(function); }

DebugOutputFunction GetDebugOutput() noexcept { return g_output.load(std::memory_order_acquire); }

}  // namespace OvXmlLib16::platform
