// What a read takes of memory and how often it asks for it: each binder in a process of its own, on its first document
// and on a second one, when what the binder keeps for later is there.

#include <malloc.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>
#include <string_view>

#include "bench/ExpatFeed.h"
#include "bench/OrdersDocument.h"
#include "bench/peers/Peers.h"

// glibc's own allocator behind the names that it exports for replacements like these.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);
}

namespace {

/// One thread only: the children that are measured have no other.
struct Heap {
  std::size_t live = 0;  // bytes, as malloc rounds them
  std::size_t peak = 0;
  std::size_t calls = 0;  // that may give memory

  void* Gave(void* block) {
    ++calls;
    live += malloc_usable_size(block);
    peak = std::max(peak, live);
    return block;
  }
  void Takes(void* block) { live -= malloc_usable_size(block); }
};

Heap heap;

}  // namespace

extern "C" {
void* malloc(std::size_t size) { return heap.Gave(__libc_malloc(size)); }
void* calloc(std::size_t count, std::size_t size) { return heap.Gave(__libc_calloc(count, size)); }
void* realloc(void* block, std::size_t size) {
  heap.Takes(block);
  return heap.Gave(__libc_realloc(block, size));
}
void* memalign(std::size_t alignment, std::size_t size) { return heap.Gave(__libc_memalign(alignment, size)); }
void* aligned_alloc(std::size_t alignment, std::size_t size) { return memalign(alignment, size); }
int posix_memalign(void** block, std::size_t alignment, std::size_t size) {
  *block = memalign(alignment, size);
  return *block == nullptr ? ENOMEM : 0;
}
void free(void* block) {
  heap.Takes(block);
  __libc_free(block);
}
}

namespace {

using namespace OvXmlLib16::bench;

std::size_t CountElements(std::string_view document) {
  std::size_t count = 0;
  const ExpatParser parser = MakeExpat();
  XML_SetUserData(parser.get(), &count);
  XML_SetStartElementHandler(parser.get(),
                             [](void* data, const XML_Char*, const XML_Char**) { ++*static_cast<std::size_t*>(data); });
  FeedExpat(parser.get(), document);
  return count;
}

std::size_t PeakResidentBytes() {
  struct rusage usage {};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<std::size_t>(usage.ru_maxrss) * 1024;
}

double Per(std::size_t amount, std::size_t base) { return static_cast<double>(amount) / static_cast<double>(base); }

/// Reads once. `kept` is what stays when the read is over and the objects are there.
void Measure(const char* when, const Peer& peer, std::string_view document, std::size_t elements) {
  const std::size_t before = heap.live, residentBefore = PeakResidentBytes();
  heap.peak = before;
  heap.calls = 0;
  const Peer::Objects objects = peer.read(document);
  const std::size_t calls = heap.calls, peak = heap.peak - before, kept = heap.live - before;
  const std::size_t resident = PeakResidentBytes() - residentBefore;
  std::printf("  %-12s %-6s %8.2f %8.2f %8.2f %10.2f\n", peer.name.c_str(), when, Per(peak, document.size()),
              Per(resident, document.size()), Per(kept, document.size()), Per(calls, elements));
}

/// Measures in a child process, so that no binder profits from memory that another one has freed.
bool MeasureApart(const Peer& peer, std::string_view document, std::size_t elements) {
  std::fflush(stdout);
  const pid_t child = fork();
  if (child == 0) {
    try {
      Measure("first", peer, document, elements);
      Measure("again", peer, document, elements);
    } catch (const std::exception& failure) {
      std::printf("  %-12s fails: %s\n", peer.name.c_str(), failure.what());
      _exit(1);
    }
    std::fflush(stdout);
    _exit(0);
  }
  int status = 1;
  return child > 0 && waitpid(child, &status, 0) == child && status == 0;
}

}  // namespace

int main() {
  std::vector<Peer> peers = {MakeExpatPeer()};
  for (Peer& peer : MakePeers()) peers.push_back(std::move(peer));
  bool isComplete = true;
  for (const std::size_t wantedBytes : {1'000, 100'000, 10'000'000}) {
    const std::string document = MakeOrdersDocument(wantedBytes);
    const std::size_t elements = CountElements(document);
    std::printf("%zu bytes, %zu elements; bytes a byte of document, and calls of the heap an element:\n",
                document.size(), elements);
    std::printf("  %-12s %-6s %8s %8s %8s %10s\n", "", "", "peak", "resident", "kept", "heap calls");
    for (const Peer& peer : peers) isComplete &= MeasureApart(peer, document, elements);
  }
  return isComplete ? 0 : 1;
}
