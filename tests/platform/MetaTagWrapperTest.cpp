// Index -> tag resolution and the per-camera static metadata store.
#include <gtest/gtest.h>

#include <set>

#include "MetaTagWrapper.h"

namespace {

constexpr uint32_t kUndeclared = 0xFFFFFFFFu;

struct FixedIndex {
  META_TAG_INDEX index;
  int value;
  const char* name;
  int type;
};

// Callers are built against these values; each must keep its value and tag.
const FixedIndex kFixedIndices[] = {
    {META_BOKEH_CONFIG_STREAM, 7, "com.nuvaro.camera.bokehConfig.stream", TYPE_BYTE},
    {META_BOKEH_CAPS_INFO, 33, "com.nuvaro.camera.bokehCaps.info", TYPE_BYTE},
    {META_CAMERA_ROLE_ID, 34, "com.nuvaro.cameraid.role.cameraId", TYPE_INT32},
    {META_PANSHOT_RESULT, 66, "com.nuvaro.panshot.panshotResult", TYPE_BYTE},
    {META_PANSHOT_TRUCK_RSLT4SNAPSHOT, 67, "com.nuvaro.panshotTruck.Rslt4Snapshot", TYPE_INT32},
    {META_GAINMAP_METADATA, 106, "com.nuvaro.ultrahdr.gainmapMetadata", TYPE_BYTE},
    {META_GAINMAP_VALUES, 107, "com.nuvaro.ultrahdr.gainmapValues", TYPE_FLOAT},
    {META_FWK_CAMERA_ID, 110, "nuvaro.snapshot.fwkCameraId", TYPE_INT32},
    {META_SNAPSHOT_CROP_REGION, 113, "nuvaro.snapshot.cropRegion", TYPE_INT32},
    {META_BOKEH_CONFIG_REQUEST, 159, "com.nuvaro.camera.bokehConfig.request", TYPE_BYTE},
    {META_FOCAL_LENGTH_35MM, 161, "com.nuvaro.sensor.info.focalLength35mm", TYPE_FLOAT},
    {META_CAMERA_ROLE_IDS, 187, "com.nuvaro.cameraid.role.cameraIds", TYPE_INT32},
    {META_REAL_AVAILABLE_MIN_DIGITAL_ZOOM, 196, "com.nuvaro.scaler.realAvailableMinDigitalZoom", TYPE_FLOAT},
    {META_PHYS_CAMERA_ID, 199, "nuvaro.snapshot.physCameraId", TYPE_BYTE},
    {META_AWB_HAZE_RATIO, 204, "com.nuvaro.3AAlgo.awbHazeRatio", TYPE_FLOAT},
    {META_AVAILABLE_MIN_DIGITAL_ZOOM, 418, "com.nuvaro.scaler.availableMinDigitalZoom", TYPE_FLOAT},
    {META_VIEW_ANGLE, 425, "com.nuvaro.lens.info.ViewAngle", TYPE_DOUBLE},
    {META_ROTATION_MATRIX, 426, "com.nuvaro.sensor.rotationMatrix", TYPE_FLOAT},
    {META_AEC_AI_TONE_FLAG, 449, "com.nuvaro.3AAlgo.aecAItoneFlag", TYPE_INT32},
    {META_DNG_POST_RAW_GAIN, 450, "com.nuvaro.dng.postRawGain", TYPE_FLOAT},
    {META_AWB_PARAM, 451, "com.nuvaro.3AAlgo.awbParam", TYPE_BYTE},
    {META_MULTIFRAME_DEBUG_DATA, 452, "nuvaro.multiframe.debugData", TYPE_BYTE},
    {META_OPTICAL_ZOOM_CURRENT_RATIO, 455, "com.nuvaro.optical.zoom.opticalZoomCurrentRatio", TYPE_FLOAT},
    {META_ALLINONE_RESULT, 458, "nuvaro.snapshot.allinoneResult", TYPE_INT32},
    {META_DNG_USE_TONE_CURVE, 459, "com.nuvaro.dng.useToneCurve", TYPE_BYTE},
    {META_DNG_WHITELEVEL_SCALE_FACTOR, 460, "com.nuvaro.dng.whitelevelScaleFactor", TYPE_FLOAT},
};

struct DeclaredIndex {
  META_TAG_INDEX index;
  const char* name;
};

const DeclaredIndex kDeclaredIndices[] = {
#define META_TAG_INDEX_ENTRY(enumerator, value, name) {enumerator, name},
#include "MetaTagIndex.def"
#undef META_TAG_INDEX_ENTRY
};

class MetaTagWrapperTest : public ::testing::Test {
 protected:
  void TearDown() override { MetaTagWrapper::getInstance().resetTags(); }
  MetaTagWrapper& wrapper = MetaTagWrapper::getInstance();
};

TEST_F(MetaTagWrapperTest, FixedIndicesResolveToTheirTags) {
  for (const FixedIndex& fixed : kFixedIndices) {
    EXPECT_EQ(fixed.value, static_cast<int>(fixed.index)) << fixed.name;
    unsigned int expected = 0;
    ASSERT_EQ(0, NvMetadata::getTagFromName(fixed.name, &expected)) << fixed.name;
    EXPECT_EQ(expected, wrapper(fixed.index)) << fixed.name;
    EXPECT_EQ(fixed.type, NvMetadata::getTagType(wrapper(fixed.index))) << fixed.name;
  }
}

TEST_F(MetaTagWrapperTest, EveryDeclaredIndexResolvesToItsOwnTag) {
  std::set<uint32_t> seen;
  for (const DeclaredIndex& row : kDeclaredIndices) {
    const uint32_t tag = wrapper(row.index);
    ASSERT_NE(kUndeclared, tag) << row.name;
    EXPECT_STREQ(row.name, NvMetadata::getTagName(tag));
    EXPECT_TRUE(seen.insert(tag).second) << row.name << " shares its tag with another index";
  }
}

TEST_F(MetaTagWrapperTest, UndeclaredIndicesGiveTheSentinel) {
  for (int value : {0, 1, 8, 200, 467, 468, 469, 511}) {
    EXPECT_EQ(kUndeclared, wrapper(static_cast<META_TAG_INDEX>(value))) << value;
  }
}

TEST_F(MetaTagWrapperTest, SetTagOverridesUntilReset) {
  const uint32_t builtIn = wrapper(META_FWK_CAMERA_ID);
  wrapper.setTag(META_FWK_CAMERA_ID, kUndeclared);
  wrapper.setTag(static_cast<META_TAG_INDEX>(5), ANDROID_SENSOR_TIMESTAMP);
  wrapper.setTag(META_NO_INDEX, ANDROID_SENSOR_TIMESTAMP);
  EXPECT_EQ(kUndeclared, wrapper(META_FWK_CAMERA_ID));
  EXPECT_EQ(uint32_t{ANDROID_SENSOR_TIMESTAMP}, wrapper(static_cast<META_TAG_INDEX>(5)));
  EXPECT_EQ(kUndeclared, wrapper(META_NO_INDEX));

  wrapper.resetTags();
  EXPECT_EQ(builtIn, wrapper(META_FWK_CAMERA_ID));
  EXPECT_EQ(kUndeclared, wrapper(static_cast<META_TAG_INDEX>(5)));
}

class StaticMetadataWraperTest : public ::testing::Test {
 protected:
  void SetUp() override { store->clear(); }
  void TearDown() override { store->clear(); }
  StaticMetadataWraper* store = StaticMetadataWraper::getInstance();
};

TEST_F(StaticMetadataWraperTest, UnknownCameraIsEmptyAndStillRecorded) {
  EXPECT_EQ(0u, store->requestCount());
  store->setStaticMetadata(0, std::make_shared<NvMetadata>());
  EXPECT_EQ(nullptr, store->getStaticMetadata(0xFFFFFFFFu));
  EXPECT_EQ(0xFFFFFFFFu, store->lastRequestedCameraId());
  EXPECT_EQ(1u, store->requestCount());
}

TEST_F(StaticMetadataWraperTest, ReturnsTheSharedContainerPerCamera) {
  auto back = std::make_shared<NvMetadata>();
  auto front = std::make_shared<NvMetadata>();
  store->setStaticMetadata(0, back);
  store->setStaticMetadata(1, front);
  EXPECT_EQ(front, store->getStaticMetadata(1));
  EXPECT_EQ(back, store->getStaticMetadata(0));
  EXPECT_EQ(0u, store->lastRequestedCameraId());

  store->setStaticMetadata(1, nullptr);
  EXPECT_EQ(nullptr, store->getStaticMetadata(1));
  store->clear();
  EXPECT_EQ(nullptr, store->getStaticMetadata(0));
}

}  // namespace
