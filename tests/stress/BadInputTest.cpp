// Bad input stays harmless: values at the edges of their types get the
// device's answer rather than undefined behaviour, and every operation copes
// with empty, zero-count, undeclared and unknown-camera metadata without
// touching what it reads. Run under the sanitizers, any overflow or stray
// read stops the test.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "MtkMetadataHelper.h"
#include "StressSupport.h"
#include "TagTable.h"
#include "TestSupport.h"

namespace {

using metahelper::MetaPtr;
using testsupport::NewMeta;
using testsupport::Put;

constexpr int32_t kIntMax = std::numeric_limits<int32_t>::max();
constexpr int32_t kIntMin = std::numeric_limits<int32_t>::min();
constexpr float kHuge = 3.0e38f;
const float kNaN = std::nanf("");

class BadInput : public ::testing::Test {
 protected:
  void TearDown() override {
    MetaTagWrapper::getInstance().resetTags();
    StaticMetadataWraper::getInstance()->clear();
  }
  metahelper::MtkMetadataHelper helper_;
};

// ---- Edge values --------------------------------------------------------------
TEST_F(BadInput, LuxIndexSaturatesAsTheDeviceConversionDoes) {
  const struct {
    float lux;
    int expected;
  } cases[] = {{123.9f, 123},     {-2.7f, -2}, {kHuge, kIntMax},
               {-kHuge, kIntMin}, {kNaN, 0},   {2147483520.0f, 2147483520}};
  for (const auto& c : cases) {
    const MetaPtr meta = NewMeta();
    Put(*meta, "com.nuvaro.statsconfigs.AecInfo", std::vector<float>{c.lux});
    int lux = -1;
    EXPECT_EQ(0, helper_.GetLuxIndex(meta, &lux)) << c.lux;
    EXPECT_EQ(c.expected, lux) << c.lux;
  }
}

TEST_F(BadInput, AfRegionExtentsWrapInsteadOfOverflowing) {
  const struct {
    std::vector<int32_t> region;  // xmin, ymin, xmax, ymax, weight
    nvholder::ChiRect expected;
  } cases[] = {
      {{0, 0, 99, 49, 1}, {0, 0, 100, 50}},
      {{5, 5, 1, 1, 1}, {5, 5, 0xFFFFFFFDu, 0xFFFFFFFDu}},                          // inverted bounds
      {{kIntMin, kIntMin, kIntMax, kIntMax, 1}, {0x80000000u, 0x80000000u, 0, 0}},  // 2^32 wraps to 0
  };
  for (const auto& c : cases) {
    const MetaPtr meta = NewMeta();
    Put(*meta, ANDROID_CONTROL_AF_REGIONS, c.region);
    nvholder::ChiRect rect{};
    ASSERT_EQ(0, helper_.GetAndroidAFRegion(meta, &rect));
    EXPECT_EQ((std::vector<uint32_t>{c.expected.left, c.expected.top, c.expected.width, c.expected.height}),
              (std::vector<uint32_t>{rect.left, rect.top, rect.width, rect.height}))
        << c.region[0] << " " << c.region[2];
  }
}

TEST_F(BadInput, PhysicalIdsAreReadWithinTheTag) {
  const struct {
    std::string bytes;  // as stored: the last id may lack its NUL
    std::vector<int> expected;
  } cases[] = {
      {std::string("3\0"
                   "2\0",
                   4),
       {3, 2}},
      {std::string("1\0"
                   "234567",
                   8),
       {1, 234567}},  // whole words: no padding NUL follows
      {"12345678", {12345678}},
      {std::string("\0\0", 2), {0, 0}},
  };
  for (const auto& c : cases) {
    const MetaPtr camera = NewMeta();
    Put(*camera, ANDROID_LOGICAL_MULTI_CAMERA_PHYSICAL_IDS,
        std::vector<uint8_t>(c.bytes.begin(), c.bytes.end()));
    StaticMetadataWraper::getInstance()->setStaticMetadata(5, camera);
    std::vector<int> ids;
    ASSERT_EQ(0, helper_.GetAndroidLogicalMultiCameraPhysicalIds(5, ids));
    EXPECT_EQ(c.expected, ids) << c.bytes.size() << " bytes";
  }
}

// Face corners at the edges of int32, at the half scale of sensor mode type 17
// (platform mode 6), wrap when doubled.
TEST_F(BadInput, HalfScaleFaceCornersWrap) {
  const MetaPtr request = NewMeta();
  std::vector<int32_t> frameResult(96 + 4 * 80, -1);
  frameResult[96] = 0;      // camera 0 ...
  frameResult[96 + 4] = 6;  // ... in platform mode 6
  Put(*request, "com.nuvaro.camera.sensorpolicy.frameresult", frameResult);
  Put(*request, "nuvaro.bokeh.faceInfo", std::vector<int32_t>{0x40000000, -0x40000001, 3, 4, 0, 0, 0, 0, 0});
  testsupport::BindCamera(*request, 0, NewMeta());
  nvholder::NUNvFDRawSnapshotParam faces{};
  ASSERT_EQ(0, helper_.GetFdData(request, &faces));
  ASSERT_EQ(1, faces.faceCount);
  EXPECT_EQ(
      (std::vector<int32_t>{kIntMin, 0x7FFFFFFE, 6, 8}),
      (std::vector<int32_t>{faces.faces[0].x0, faces.faces[0].y0, faces.faces[0].x1, faces.faces[0].y1}));
}

// The crop of camera 0 on a 4000 x 3000 sensor with the request's shift tag;
// the timestamp is odd, so no adapter answers with a shift of its own.
nvholder::ChiRect CropShiftedBy(metahelper::metadataHelperBase& helper, const std::vector<float>& shift,
                                bool inSensorZoom) {
  const MetaPtr request = NewMeta();
  const MetaPtr camera = NewMeta();
  Put(*camera, ANDROID_SENSOR_INFO_ACTIVE_ARRAY_SIZE, std::vector<int32_t>{0, 0, 4000, 3000});
  testsupport::BindCamera(*request, 0, camera);
  std::vector<int32_t> crops(4 * 9, 9);
  const int32_t first[] = {0, 0, 0, 0, 0, 667, 500, 2666, 2000};
  std::copy(std::begin(first), std::end(first), crops.begin());
  Put(*request, "com.nuvaro.camera.sensorpolicy.cropregions", crops);
  Put(*request, ANDROID_SENSOR_TIMESTAMP, std::vector<int64_t>{1001});
  Put(*request, "nuvaro.sat.output.shift", shift);
  nvholder::ChiRect crop{};
  EXPECT_EQ(0, helper.GetCropRegion(request, &crop, {4000, 3000}, inSensorZoom));
  return crop;
}

TEST_F(BadInput, ShiftsBeyondInt32SaturateAndStayUnapplied) {
  const struct {
    std::vector<float> shift;  // x, y, pre-anchor, unused
    bool inSensorZoom;
    uint32_t left, top;
  } cases[] = {
      {{12, -8, 0, 0}, false, 679, 492},          {{kHuge, kHuge, 0, 0}, false, 667, 500},
      {{-kHuge, 0, 0, 0}, false, 667, 500},       {{kNaN, kNaN, 0, 0}, false, 667, 500},
      {{-kHuge, 0, 1, 0}, false, 667, 500},        // halved before anchoring
      {{1073741824.0f, 0, 0, 0}, true, 667, 500},  // doubled in in-sensor zoom: wraps
  };
  for (const auto& c : cases) {
    const nvholder::ChiRect crop = CropShiftedBy(helper_, c.shift, c.inSensorZoom);
    EXPECT_EQ((std::vector<uint32_t>{c.left, c.top, 2666, 2000}),
              (std::vector<uint32_t>{crop.left, crop.top, crop.width, crop.height}))
        << c.shift[0] << ", " << c.shift[1];
  }
}

// ---- Bad metadata, every operation ----------------------------------------------
MetaPtr EveryTagWithoutElements() {
  const MetaPtr meta = NewMeta();
  for (const tagtable::RegisteredTag& tag : tagtable::kRegisteredTags)
    meta->update(tag.tag, static_cast<const void*>(nullptr), 0);
  return meta;
}

MetaPtr FullNamingCamera(int32_t cameraId) {
  const MetaPtr meta = cattest::FullContainer();
  Put(*meta, META_FWK_CAMERA_ID, std::vector<int32_t>{cameraId});
  return meta;
}

void UndeclareEveryIndex() {
  for (int index = 0; index < META_NO_INDEX; ++index)
    MetaTagWrapper::getInstance().setTag(static_cast<META_TAG_INDEX>(index), MetaTagWrapper::kUndeclared);
}

// Reads leave the request as it was, and give the same outcomes when repeated;
// setters and null outputs only have to be survived.
void ExpectHarmless(metahelper::metadataHelperBase& helper, const MetaPtr& request, int cameraId,
                    const char* what) {
  opcatalog::CallContext context;
  context.request = request;
  context.cameraId = cameraId;
  const NvMetadata before(*request);
  const stress::Outcomes first = stress::RunCatalogue(helper, context, stress::Pass::kReads);
  EXPECT_EQ(first, stress::RunCatalogue(helper, context, stress::Pass::kReads)) << what;
  EXPECT_TRUE(tagtable::SameContent(before, *request)) << what << ": a read changed the request";
  context.nullOutputs = true;
  stress::RunCatalogue(helper, context, stress::Pass::kReads);
  context.request = std::make_shared<NvMetadata>(before);
  stress::RunCatalogue(helper, context, stress::Pass::kWrites);
}

TEST_F(BadInput, EveryOperationSurvivesBadMetadata) {
  StaticMetadataWraper::getInstance()->setStaticMetadata(0, EveryTagWithoutElements());
  const struct {
    const char* what;
    MetaPtr request;
    int cameraId;
  } cases[] = {
      {"empty request", NewMeta(), 0},
      {"every tag without elements", EveryTagWithoutElements(), 0},
      {"request naming a camera without static metadata", FullNamingCamera(99), 99},
      {"request naming camera -1", FullNamingCamera(-1), -1},
  };
  for (const auto& c : cases) ExpectHarmless(helper_, c.request, c.cameraId, c.what);
  const MetaPtr full = FullNamingCamera(99);
  UndeclareEveryIndex();
  ExpectHarmless(helper_, full, 99, "full request, no index declared");
  metahelper::metadataHelperBase generic;
  ExpectHarmless(generic, EveryTagWithoutElements(), 0, "generic helper, every tag without elements");
}

}  // namespace
