// Replaces operator new of the program: include it in one source file only.
#pragma once

#include <cstdlib>
#include <new>

#include "tests/support/AllocationCounters.h"

void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
  using namespace OvXmlLib16::test;
  if (g_callsToFailure != 0 && --g_callsToFailure == 0) return nullptr;
  void* memory = std::malloc(bytes == 0 ? 1 : bytes);
  if (memory != nullptr) ++g_liveBlocks;
  g_bytesAsked += bytes;
  return memory;
}
void* operator new(std::size_t bytes) {
  void* memory = operator new(bytes, std::nothrow);
  return memory != nullptr ? memory : throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
  if (memory != nullptr) --OvXmlLib16::test::g_liveBlocks;
  std::free(memory);
}
void* operator new[](std::size_t bytes) { return operator new(bytes); }
void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept { return operator new(bytes, std::nothrow); }
void operator delete(void* memory, std::size_t) noexcept { operator delete(memory); }
void operator delete[](void* memory) noexcept { operator delete(memory); }
void operator delete[](void* memory, std::size_t) noexcept { operator delete(memory); }
