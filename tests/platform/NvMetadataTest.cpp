// Storage rules of the metadata container: typed copies, refusals that leave
// the container unchanged, padding and in-place repair of stored values.
#include <gtest/gtest.h>

#include <string.h>

#include <vector>

#include "NvMetadata.h"

namespace {

unsigned int tagOf(const char* name) {
  unsigned int tag = 0;
  EXPECT_EQ(0, NvMetadata::getTagFromName(name, &tag)) << name;
  return tag;
}

template <typename T>
struct Sample {
  unsigned int tag;
  std::vector<T> values;
};

Sample<uint8_t> sample(uint8_t) { return {ANDROID_LENS_FACING, {1, 0, 255}}; }
Sample<int32_t> sample(int32_t) { return {ANDROID_SCALER_CROP_REGION, {-4, 8, 4000, 3000}}; }
Sample<float> sample(float) { return {ANDROID_LENS_APERTURE, {1.8f, -0.5f}}; }
Sample<int64_t> sample(int64_t) { return {ANDROID_SENSOR_EXPOSURE_TIME, {33333333LL, -1LL << 40}}; }
Sample<double> sample(double) { return {ANDROID_JPEG_GPS_COORDINATES, {48.85, 2.35, -12.5}}; }
Sample<camera_metadata_rational> sample(camera_metadata_rational) {
  return {ANDROID_SENSOR_NEUTRAL_COLOR_POINT, {{1, 2}, {-3, 4}, {5, 6}}};
}

template <typename T>
class TypedUpdate : public ::testing::Test {};
using ElementTypes = ::testing::Types<uint8_t, int32_t, float, int64_t, double, camera_metadata_rational>;
TYPED_TEST_SUITE(TypedUpdate, ElementTypes);

TYPED_TEST(TypedUpdate, StoresACopyThatFindReturns) {
  auto [tag, values] = sample(TypeParam{});
  NvMetadata meta;
  ASSERT_EQ(0, meta.update(tag, values.data(), values.size()));
  values.assign(values.size(), TypeParam{});  // the container must hold its own copy

  const std::vector<TypeParam> expected = sample(TypeParam{}).values;
  const camera_metadata_ro_entry entry = meta.find(tag);
  ASSERT_EQ(expected.size(), entry.count);
  EXPECT_EQ(tag, entry.tag);
  EXPECT_EQ(NvMetadata::getTagType(tag), entry.type);
  EXPECT_EQ(0u, reinterpret_cast<uintptr_t>(entry.data.u8) % 8) << "element data must be 8-byte aligned";
  EXPECT_EQ(0, memcmp(expected.data(), entry.data.u8, expected.size() * sizeof(TypeParam)));
}

struct RefusedUpdate {
  const char* what;
  int (*attempt)(NvMetadata&);
};

const int32_t kInts[] = {7, 8};
const float kFloats[] = {1.5f};
const uint8_t kBytes[] = {1};

const RefusedUpdate kRefusedUpdates[] = {
    {"int32 into an int64 tag",
     [](NvMetadata& m) { return m.update(ANDROID_SENSOR_EXPOSURE_TIME, kInts, 1); }},
    {"float into an int32 tag",
     [](NvMetadata& m) { return m.update(ANDROID_SCALER_CROP_REGION, kFloats, 1); }},
    {"byte into a float vendor tag",
     [](NvMetadata& m) { return m.update(tagOf("nuvaro.sat.output.shift"), kBytes, 1); }},
    {"int32 into an unknown tag", [](NvMetadata& m) { return m.update(0xE0003u, kInts, 2); }},
    {"untyped into an unknown tag",
     [](NvMetadata& m) { return m.update(0xFFFFFFFFu, (const void*)kInts, 1); }},
    {"null data with elements",
     [](NvMetadata& m) { return m.update(ANDROID_SCALER_CROP_REGION, (const int32_t*)nullptr, 4); }},
    {"element count that overflows",
     [](NvMetadata& m) { return m.update(ANDROID_SENSOR_EXPOSURE_TIME, (const void*)kInts, ~0ul / 4); }},
};

TEST(NvMetadata, RefusedUpdatesLeaveTheContainerUnchanged) {
  const int32_t crop[] = {1, 2, 3, 4};
  for (const RefusedUpdate& refused : kRefusedUpdates) {
    NvMetadata meta;
    ASSERT_EQ(0, meta.update(ANDROID_SCALER_CROP_REGION, crop, 4));
    EXPECT_NE(0, refused.attempt(meta)) << refused.what;
    EXPECT_EQ(1u, meta.entryCount()) << refused.what;
    const camera_metadata_ro_entry entry = meta.find(ANDROID_SCALER_CROP_REGION);
    ASSERT_EQ(4u, entry.count) << refused.what;
    EXPECT_EQ(3, entry.data.i32[2]) << refused.what;
  }
}

TEST(NvMetadata, EmptyUpdateReadsAsAbsent) {
  const float gains[] = {1.f, 2.f, 2.f, 1.f};
  NvMetadata meta;
  ASSERT_EQ(0, meta.update(ANDROID_COLOR_CORRECTION_GAINS, gains, 4));
  ASSERT_EQ(0, meta.update(ANDROID_COLOR_CORRECTION_GAINS, gains, 0));
  const camera_metadata_ro_entry entry = meta.find(ANDROID_COLOR_CORRECTION_GAINS);
  EXPECT_EQ(0u, entry.count);
  EXPECT_EQ(nullptr, entry.data.u8);
  EXPECT_EQ(0, meta.update(ANDROID_LENS_FACING, (const uint8_t*)nullptr, 0));
  EXPECT_EQ(0u, meta.find(ANDROID_LENS_FACING).count);
}

TEST(NvMetadata, OneByteEntryReadAsInt32IsZeroExtended) {
  NvMetadata meta;
  const uint8_t previous[] = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
  ASSERT_EQ(0, meta.update(tagOf("nuvaro.telefusion.enabled"), previous, 9));
  const uint8_t enabled = 1;
  ASSERT_EQ(0, meta.update(tagOf("nuvaro.telefusion.enabled"), &enabled, 1));
  EXPECT_EQ(1, *meta.find("nuvaro.telefusion.enabled").data.i32);
}

TEST(NvMetadata, UntypedUpdateUsesTheRegisteredType) {
  const int64_t timestamps[] = {1000000007LL, 2LL};
  const uint8_t physicalIds[] = {'2', 0, '3', 0};
  NvMetadata meta;
  ASSERT_EQ(0, meta.update(ANDROID_SENSOR_TIMESTAMP, static_cast<const void*>(timestamps), 2));
  ASSERT_EQ(0,
            meta.update(ANDROID_LOGICAL_MULTI_CAMERA_PHYSICAL_IDS, static_cast<const void*>(physicalIds), 4));
  const camera_metadata_ro_entry time = meta.find(ANDROID_SENSOR_TIMESTAMP);
  ASSERT_EQ(2u, time.count);
  EXPECT_EQ(TYPE_INT64, time.type);
  EXPECT_EQ(2LL, time.data.i64[1]);
  const camera_metadata_ro_entry ids = meta.find("android.logicalMultiCamera.physicalIds");
  ASSERT_EQ(4u, ids.count);
  EXPECT_EQ('3', ids.data.u8[2]);
}

TEST(NvMetadata, ValueRepairedInPlaceStays) {
  const int32_t orientation = 90;
  NvMetadata meta;
  ASSERT_EQ(0, meta.update(ANDROID_JPEG_ORIENTATION, &orientation, 1));
  *const_cast<int32_t*>(meta.find(ANDROID_JPEG_ORIENTATION).data.i32) = 270;
  EXPECT_EQ(270, *meta.find(ANDROID_JPEG_ORIENTATION).data.i32);
}

TEST(NvMetadata, CopiesAreIndependent) {
  const int32_t original = 100;
  const int32_t changed = 200;
  NvMetadata first;
  ASSERT_EQ(0, first.update(ANDROID_SENSOR_SENSITIVITY, &original, 1));
  NvMetadata second = first;
  ASSERT_EQ(0, second.update(ANDROID_SENSOR_SENSITIVITY, &changed, 1));
  *const_cast<int32_t*>(first.find(ANDROID_SENSOR_SENSITIVITY).data.i32) += 1;
  NvMetadata third;
  third = second;
  ASSERT_EQ(0, second.erase(ANDROID_SENSOR_SENSITIVITY));

  EXPECT_EQ(101, *first.find(ANDROID_SENSOR_SENSITIVITY).data.i32);
  EXPECT_EQ(0u, second.find(ANDROID_SENSOR_SENSITIVITY).count);
  EXPECT_EQ(200, *third.find(ANDROID_SENSOR_SENSITIVITY).data.i32);
}

TEST(NvMetadata, EraseRemovesOnlyThatTag) {
  const int32_t value = 1;
  const int64_t duration = 5;
  NvMetadata meta;
  ASSERT_EQ(0, meta.update(ANDROID_SENSOR_SENSITIVITY, &value, 1));
  ASSERT_EQ(0, meta.update(ANDROID_SENSOR_FRAME_DURATION, &duration, 1));
  EXPECT_EQ(0, meta.erase(ANDROID_SENSOR_SENSITIVITY));
  EXPECT_NE(0, meta.erase(ANDROID_SENSOR_SENSITIVITY));
  EXPECT_EQ(1u, meta.entryCount());
  EXPECT_EQ(5, *meta.find(ANDROID_SENSOR_FRAME_DURATION).data.i64);
}

}  // namespace
