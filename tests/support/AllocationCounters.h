// What the operator new of FailingNew.h counts, for all source files of its program.
#pragma once

#include <cstddef>

namespace OvXmlLib16::test {

inline std::size_t g_callsToFailure = 0;  ///< The call that fails, counted down from here; 0: none.
inline std::ptrdiff_t g_liveBlocks = 0;
inline std::size_t g_bytesAsked = 0;

}  // namespace OvXmlLib16::test
