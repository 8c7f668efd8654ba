#include "AllocationCounter.h"

#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace {
std::atomic<long> gAllocations{0};
std::atomic<size_t> gLive{0};
std::atomic<size_t> gPeak{0};

// Counted by the block's usable size, which operator delete can ask for
// without being told the size.
void Added(void* block) {
  const size_t size = malloc_usable_size(block);
  const size_t live = gLive.fetch_add(size, std::memory_order_relaxed) + size;
  size_t peak = gPeak.load(std::memory_order_relaxed);
  while (live > peak && !gPeak.compare_exchange_weak(peak, live, std::memory_order_relaxed)) {
  }
}

void Release(void* block) {
  if (block != nullptr) gLive.fetch_sub(malloc_usable_size(block), std::memory_order_relaxed);
  std::free(block);
}
}  // namespace

void* operator new(std::size_t size) {
  gAllocations.fetch_add(1, std::memory_order_relaxed);
  void* block = std::malloc(size != 0 ? size : 1);
  if (block == nullptr) std::abort();
  Added(block);
  return block;
}
void operator delete(void* block) noexcept { Release(block); }
void operator delete(void* block, std::size_t) noexcept { Release(block); }

long bench::Allocations() { return gAllocations.load(std::memory_order_relaxed); }
size_t bench::LiveBytes() { return gLive.load(std::memory_order_relaxed); }
size_t bench::PeakBytes() { return gPeak.load(std::memory_order_relaxed); }
void bench::ResetPeak() { gPeak.store(gLive.load(std::memory_order_relaxed), std::memory_order_relaxed); }
