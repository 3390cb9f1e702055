// Lets every allocation of a call fail in turn. For programs that include FailingNew.h.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <new>

#include "ovxmllib/document/SlabCache.h"
#include "tests/support/AllocationCounters.h"

namespace OvXmlLib16::test {

/// Lets the first allocation of `call` fail, then the second and so on, until it succeeds, and expects that no memory
/// is lost.
inline void ExpectSafe(const char* name, const std::function<void()>& call) {
  call();  // makes what is made once in a process
  for (std::size_t failing = 1, left = 0; left == 0; ++failing) {
    TrimSlabCache();
    const std::ptrdiff_t before = g_liveBlocks;
    g_callsToFailure = failing;
    try {
      call();
      left = g_callsToFailure;
    } catch (const std::bad_alloc&) {
    }
    g_callsToFailure = 0;
    TrimSlabCache();
    ASSERT_EQ(g_liveBlocks, before) << name << ", allocation " << failing;
  }
}

}  // namespace OvXmlLib16::test
