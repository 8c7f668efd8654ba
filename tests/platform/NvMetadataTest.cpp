// Storage rules of the metadata container; lookups sit on every read, so they must not allocate.
#include <gtest/gtest.h>
#include <stdlib.h>
#include <string.h>

#include <atomic>
#include <new>
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

template <typename T>
void expectStoredCopy(unsigned int tag, std::vector<T> values) {
  const std::vector<T> expected = values;
  NvMetadata meta;
  ASSERT_EQ(0, meta.update(tag, values.data(), values.size()));
  values.assign(values.size(), T{});  // the container must hold its own copy
  const camera_metadata_ro_entry entry = meta.find(tag);
  ASSERT_EQ(expected.size(), entry.count) << tag;
  EXPECT_TRUE(entry.tag == tag && entry.type == NvMetadata::getTagType(tag)) << tag;
  EXPECT_EQ(0u, reinterpret_cast<uintptr_t>(entry.data.u8) % 8) << "element data must be 8-byte aligned";
  EXPECT_EQ(0, memcmp(expected.data(), entry.data.u8, expected.size() * sizeof(T))) << tag;
}

TEST(NvMetadata, EachElementTypeStoresACopyThatFindReturns) {
  expectStoredCopy<uint8_t>(ANDROID_LENS_FACING, {1, 0, 255});
  expectStoredCopy<int32_t>(ANDROID_SCALER_CROP_REGION, {-4, 8, 4000, 3000});
  expectStoredCopy<float>(ANDROID_LENS_APERTURE, {1.8f, -0.5f});
  expectStoredCopy<int64_t>(ANDROID_SENSOR_EXPOSURE_TIME, {33333333LL, -1LL << 40});
  expectStoredCopy<double>(ANDROID_JPEG_GPS_COORDINATES, {48.85, 2.35, -12.5});
  expectStoredCopy<camera_metadata_rational>(ANDROID_SENSOR_NEUTRAL_COLOR_POINT, {{1, 2}, {-3, 4}, {5, 6}});
}

TEST(NvMetadata, RefusedUpdatesLeaveTheContainerUnchanged) {
  const int32_t crop[] = {1, 2, 3, 4}, ints[] = {7, 8};
  const float real = 1.5f;
  NvMetadata meta;
  ASSERT_EQ(0, meta.update(ANDROID_SCALER_CROP_REGION, crop, 4));
  const int refused[] = {
      meta.update(ANDROID_SENSOR_EXPOSURE_TIME, ints, 1),  // int32 into int64
      meta.update(ANDROID_SCALER_CROP_REGION, &real, 1),   // float into int32
      meta.update(0xE0003u, ints, 2),                      // unknown tag
      meta.update(0xFFFFFFFFu, static_cast<const void*>(ints), 1),
      meta.update(ANDROID_SCALER_CROP_REGION, static_cast<const int32_t*>(nullptr), 4),
      meta.update(ANDROID_SENSOR_FRAME_DURATION, static_cast<const void*>(ints), ~0ul / 4),  // size overflows
  };
  int attempt = 0;
  for (int result : refused) EXPECT_NE(0, result) << "attempt " << attempt++;
  const camera_metadata_ro_entry entry = meta.find(ANDROID_SCALER_CROP_REGION);
  EXPECT_TRUE(meta.entryCount() == 1 && entry.count == 4 && entry.data.i32[2] == 3);
}

TEST(NvMetadata, ReplacementsResizeTheEntryAndUntypedUpdatesUseTheRegisteredType) {
  const uint8_t previous[9] = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}, enabled = 1;
  const float gains[] = {1.f, 2.f, 2.f, 1.f};
  const int64_t timestamps[] = {1000000007LL, 2LL};
  NvMetadata meta;
  ASSERT_EQ(0, meta.update(ANDROID_CONTROL_ENABLE_ZSL, previous, 9));
  ASSERT_EQ(0, meta.update(ANDROID_CONTROL_ENABLE_ZSL, &enabled, 1));
  EXPECT_EQ(1, *meta.find("android.control.enableZsl").data.i32);  // one byte read as int32 is zero-extended
  ASSERT_EQ(0, meta.update(ANDROID_COLOR_CORRECTION_GAINS, gains, 4));
  ASSERT_EQ(0, meta.update(ANDROID_COLOR_CORRECTION_GAINS, gains, 0));  // empty reads as absent
  EXPECT_TRUE(meta.find(ANDROID_COLOR_CORRECTION_GAINS).count == 0 &&
              !meta.find(ANDROID_COLOR_CORRECTION_GAINS).data.u8);
  EXPECT_TRUE(meta.update(ANDROID_LENS_FACING, (const uint8_t*)nullptr, 0) == 0 &&
              meta.find(ANDROID_LENS_FACING).count == 0);
  ASSERT_EQ(0, meta.update(ANDROID_SENSOR_TIMESTAMP, static_cast<const void*>(timestamps), 2));
  const camera_metadata_ro_entry entry = meta.find(ANDROID_SENSOR_TIMESTAMP);
  EXPECT_TRUE(entry.count == 2 && entry.type == TYPE_INT64 && entry.data.i64[1] == 2);
}

TEST(NvMetadata, CopiesAreIndependentAndEraseRemovesOnlyItsTag) {
  const int32_t original = 100, changed = 200;
  const int64_t duration = 5;
  NvMetadata first;
  ASSERT_EQ(0, first.update(ANDROID_SENSOR_SENSITIVITY, &original, 1));
  ASSERT_EQ(0, first.update(ANDROID_SENSOR_FRAME_DURATION, &duration, 1));
  NvMetadata second = first, third;
  ASSERT_EQ(0, second.update(ANDROID_SENSOR_SENSITIVITY, &changed, 1));
  *const_cast<int32_t*>(first.find(ANDROID_SENSOR_SENSITIVITY).data.i32) += 1;  // repaired in place
  third = second;
  ASSERT_EQ(0, second.erase(ANDROID_SENSOR_SENSITIVITY));
  EXPECT_NE(0, second.erase(ANDROID_SENSOR_SENSITIVITY));
  EXPECT_EQ(101, *first.find(ANDROID_SENSOR_SENSITIVITY).data.i32);
  EXPECT_EQ(200, *third.find(ANDROID_SENSOR_SENSITIVITY).data.i32);
  EXPECT_TRUE(second.find(ANDROID_SENSOR_SENSITIVITY).count == 0 && second.entryCount() == 1 &&
              *second.find(ANDROID_SENSOR_FRAME_DURATION).data.i64 == 5);
}

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

}  // namespace
