// Lookups sit on every metadata read, so they must not touch the heap: count allocations.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <atomic>
#include <new>

#include "NvMetadata.h"

static std::atomic<long> gAllocations{0};

void* operator new(size_t size) {
  gAllocations.fetch_add(1, std::memory_order_relaxed);
  void* block = malloc(size == 0 ? 1 : size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}
void operator delete(void* block) noexcept { free(block); }

namespace {

TEST(Lookups, DoNotAllocate) {
  const int32_t crop[] = {0, 0, 64, 48};
  NvMetadata meta;
  ASSERT_EQ(0, meta.update(ANDROID_SCALER_CROP_REGION, crop, 4));
  unsigned int tag = 0;
  long before = 0;
  for (int pass = 0; pass < 2; ++pass) {  // the first pass may build the lookup tables
    before = gAllocations.load();
    EXPECT_EQ(4u, meta.find(ANDROID_SCALER_CROP_REGION).count);
    EXPECT_EQ(4u, meta.find("android.scaler.cropRegion").count);
    EXPECT_EQ(0u, meta.find("no.such.tag").count);
    EXPECT_EQ(0, NvMetadata::getTagFromName("nuvaro.ae.mid.tonegain", &tag));
  }
  EXPECT_EQ(before, gAllocations.load());
}

}  // namespace
