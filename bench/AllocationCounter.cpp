#include "AllocationCounter.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {
std::atomic<long> gAllocations{0};
}

void* operator new(std::size_t size) {
  gAllocations.fetch_add(1, std::memory_order_relaxed);
  if (void* block = std::malloc(size != 0 ? size : 1)) return block;
  std::abort();
}
void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }

long bench::Allocations() { return gAllocations.load(std::memory_order_relaxed); }
