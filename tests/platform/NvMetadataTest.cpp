// What the metadata container promises besides what fuzz/ContainerFuzzer
// checks against its model (every element type, refused and overflowing
// writes, a table grown past a hundred tags, copies, moves, data that
// stays put, number order): lookups sit on every read, so they must not
// allocate; and a lookup observer hears every find of its own container.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <atomic>
#include <new>
#include <string>
#include <tuple>
#include <vector>

#include "NvMetadata.h"

static std::atomic<long> gAllocations{0};

void* operator new(size_t size) {
  gAllocations.fetch_add(1, std::memory_order_relaxed);
  if (void* block = malloc(size == 0 ? 1 : size)) return block;
  throw std::bad_alloc();
}
void operator delete(void* block) noexcept { free(block); }
void operator delete(void* block, size_t) noexcept {
  free(block);
}  // sized form too, or sanitizers see a mismatch

namespace {

TEST(Lookups, DoNotAllocate) {
  const int32_t crop[] = {0, 0, 64, 48};
  NvMetadata meta;
  ASSERT_EQ(0, meta.update(ANDROID_SCALER_CROP_REGION, crop, 4));
  unsigned int tag = 0;
  for (int pass = 0; pass < 2; ++pass) {  // the first pass may build the lookup tables
    const long before = gAllocations.load();
    EXPECT_EQ(4u, meta.find(ANDROID_SCALER_CROP_REGION).count);
    EXPECT_EQ(4u, meta.find("android.scaler.cropRegion").count);
    EXPECT_EQ(0u, meta.find("no.such.tag").count);
    EXPECT_EQ(0, NvMetadata::getTagFromName("nuvaro.ae.mid.tonegain", &tag));
    if (pass == 1) EXPECT_EQ(before, gAllocations.load());
  }
}

// A tool learns every tag an answer rested on from the container it gave.
TEST(NvMetadata, LookupObserverHearsEveryFindOfItsOwnContainer) {
  using Lookup = NvMetadata::Lookup;
  struct Heard {
    std::vector<std::tuple<unsigned int, std::string, bool, size_t>> lookups;
  } heard;
  const auto listen = [](void* context, const NvMetadata&, const Lookup& lookup) {
    static_cast<Heard*>(context)->lookups.emplace_back(lookup.tag, lookup.name ? lookup.name : "-",
                                                       lookup.present, lookup.count);
  };
  NvMetadata meta;
  const int32_t crop[] = {0, 0, 40, 30};
  meta.update(ANDROID_SCALER_CROP_REGION, crop, 4);
  meta.update(ANDROID_SENSOR_SENSITIVITY, crop, 0);
  meta.setLookupObserver(listen, &heard);
  meta.find(ANDROID_SCALER_CROP_REGION);
  meta.find("android.sensor.sensitivity");
  meta.find("android.sensor.exposureTime");
  meta.find("no.such.tag");
  NvMetadata copy = meta;
  copy.find(ANDROID_SCALER_CROP_REGION);  // copies are not observed
  meta.setLookupObserver(nullptr, nullptr);
  meta.find(ANDROID_SCALER_CROP_REGION);
  const decltype(heard.lookups) expected = {
      {ANDROID_SCALER_CROP_REGION, "-", true, 4},
      {ANDROID_SENSOR_SENSITIVITY, "android.sensor.sensitivity", true, 0},
      {ANDROID_SENSOR_EXPOSURE_TIME, "android.sensor.exposureTime", false, 0},
      {NvMetadata::kUnknownTag, "no.such.tag", false, 0},
  };
  EXPECT_EQ(expected, heard.lookups);
}

}  // namespace
