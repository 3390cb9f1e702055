// Lets every allocation of a call fail in turn. For programs that include FailingNew.h.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <new>

#include "ovxmllib/document/SlabCache.h"
#include "tests/support/AllocationCounters.h"

namespace OvXmlLib16::test {

/// Lets allocation `failing` of `call` fail. Returns whether it had that many, and in `lost` how many blocks are left.
inline bool FailAt(std::size_t failing, const std::function<void()>& call, std::ptrdiff_t& lost) {
  TrimSlabCache();
  const std::ptrdiff_t before = g_liveBlocks;
  g_callsToFailure = failing;
  bool hasFailed = true;
  try {
    call();
    hasFailed = g_callsToFailure == 0;
  } catch (const std::bad_alloc&) {
  }
  g_callsToFailure = 0;
  TrimSlabCache();
  lost = g_liveBlocks - before;
  return hasFailed;
}

/// Lets the first allocation of `call` fail, then the second and so on, until it succeeds, and expects that no memory
/// is lost. What a thread keeps for later calls comes and goes; what is lost is lost each time.
inline void ExpectSafe(const char* name, const std::function<void()>& call) {
  call();  // makes what is made once in a process
  std::ptrdiff_t lost = 0;
  for (std::size_t failing = 1; FailAt(failing, call, lost); ++failing) {
    if (lost > 0) FailAt(failing, call, lost);
    ASSERT_LE(lost, 0) << name << ", allocation " << failing;
  }
}

}  // namespace OvXmlLib16::test
