// Lookups sit on every metadata read of the camera pipeline, so they must not
// touch the heap. This binary replaces the global allocator to count calls.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <atomic>
#include <new>

#include "MetaTagWrapper.h"

namespace {
std::atomic<long> gAllocations{0};
}  // namespace

void* operator new(size_t size) {
  gAllocations.fetch_add(1, std::memory_order_relaxed);
  void* block = malloc(size == 0 ? 1 : size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}
void operator delete(void* block) noexcept { free(block); }
void operator delete(void* block, size_t) noexcept { free(block); }

namespace {

TEST(Lookups, DoNotAllocate) {
  const int32_t crop[] = {0, 0, 64, 48};
  NvMetadata meta;
  ASSERT_EQ(0, meta.update(ANDROID_SCALER_CROP_REGION, crop, 4));
  MetaTagWrapper& wrapper = MetaTagWrapper::getInstance();
  unsigned int tag = 0;
  int answered = 0;  // counts lookups that gave the expected answer
  auto lookUpEverything = [&] {
    answered += meta.find(ANDROID_SCALER_CROP_REGION).count == 4;
    answered += meta.find("android.scaler.cropRegion").count == 4;
    answered += meta.find("com.nuvaro.camera.sensorpolicy.cropregions").count == 0;
    answered += meta.find("no.such.tag").count == 0;
    answered += NvMetadata::getTagFromName("nuvaro.ae.mid.tonegain", &tag) == 0;
    answered += NvMetadata::getTagType(ANDROID_SENSOR_EXPOSURE_TIME) == TYPE_INT64;
    answered += wrapper(META_FWK_CAMERA_ID) != 0xFFFFFFFFu;
  };
  lookUpEverything();  // first use may build the lookup tables

  const long before = gAllocations.load();
  lookUpEverything();
  EXPECT_EQ(before, gAllocations.load());
  EXPECT_EQ(2 * 7, answered);
}

}  // namespace
