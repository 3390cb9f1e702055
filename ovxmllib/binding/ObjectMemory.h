// The memory of the objects that documents make by the hundred thousand.
#pragma once

#include <cstddef>

namespace OvXmlLib16 {

/// Asks the operator new of a class for AllocateObject, with room behind the object.
struct ObjectRoom {
  std::size_t bytes = 0;
};

/// Memory for an object of the library that is never large: pieces of a thread's slab in the order in which they are
/// asked for, so that what is read together lies together, without rounding and without searching. A slab goes back to
/// the cache of slabs when nothing in it is left, on whichever thread that happens; until then what is free in it is
/// not used again. `alignment` is at most that of operator new. Throws std::bad_alloc.
void* AllocateObject(std::size_t bytes, std::size_t alignment = alignof(void*));

/// The same for an object of any size and of the alignment that operator new gives; from the heap.
void* AllocateObjectApart(std::size_t bytes);

/// For an object that applications make too: in a slab while there is a SlabScope on the thread, else apart.
void* AllocateBoundObject(std::size_t bytes);

/// Lies around the reading of a document that makes many objects. Scopes nest.
class SlabScope {
 public:
  explicit SlabScope(bool isWanted) noexcept;
  SlabScope(const SlabScope&) = delete;
  SlabScope& operator=(const SlabScope&) = delete;
  ~SlabScope();

 private:
  const bool m_wasOpen;
};

/// Takes back what any of these gave, on any thread; null is passed over.
void FreeObject(void* object) noexcept;

}  // namespace OvXmlLib16
