// What the generic helper's operations compute beyond their rows' shapes
// (those are the row sweep's): conversions, per-camera lookups, appending
// and copying operations.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include "TestSupport.h"
#include "metadataHelperBase.h"

namespace {

using metahelper::MetaPtr;
using testsupport::NewMeta;
using testsupport::Put;
using H = metahelper::metadataHelperBase;

class BaseTest : public ::testing::Test {
 protected:
  void TearDown() override {
    MetaTagWrapper::getInstance().resetTags();
    StaticMetadataWraper::getInstance()->clear();
  }
  // "level line text" of the last offline record.
  std::string Last() const {
    if (log.offline.empty()) return "";
    const testsupport::LogLine& l = log.offline.back();
    return l.level + (" " + std::to_string(l.line) + " " + l.text);
  }

  testsupport::LogCapture log;
  H helper;
  MetaPtr meta = NewMeta();
};

TEST_F(BaseTest, ReadsConvertTheStoredValues) {
  const std::pair<float, float> focus[] = {{0.5f, 200}, {0, 1000}, {-2, 1000}, {std::nanf(""), 1000}};
  for (const auto& [dioptres, centimetres] : focus) {  // unusable distances read as 10 m
    Put(*meta, ANDROID_LENS_FOCUS_DISTANCE, std::vector<float>{dioptres});
    float out = -1;
    EXPECT_EQ(0, helper.GetfocusDistCm(meta, &out));
    EXPECT_EQ(centimetres, out) << dioptres;
  }
  Put(*meta, ANDROID_FLASH_MODE, std::vector<uint8_t>{200});
  int mode = -1;
  EXPECT_EQ(0, helper.GetANDROIDFlashMode(meta, &mode));
  EXPECT_EQ(200, mode) << "zero-extended, not sign-extended";
  // Inclusive AF bounds become extents in unsigned arithmetic: inverted or extreme bounds wrap.
  for (const auto& [region, expected] :
       std::initializer_list<std::pair<std::vector<int32_t>, std::vector<uint32_t>>>{
           {{100, 200, 299, 399, 1}, {100, 200, 200, 200}},
           {{5, 5, 1, 1, 1}, {5, 5, 0xFFFFFFFDu, 0xFFFFFFFDu}},
           {{INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX, 1}, {0x80000000u, 0x80000000u, 0, 0}}}) {
    Put(*meta, ANDROID_CONTROL_AF_REGIONS, region);
    std::vector<uint32_t> out(4);
    ASSERT_EQ(0, helper.GetAndroidAFRegion(meta, reinterpret_cast<nvholder::ChiRect*>(out.data())));
    EXPECT_EQ(expected, out) << region[0];
  }
  // A zero denominator is repaired in the metadata.
  std::vector<camera_metadata_rational> ccm(9, {1, 2});
  ccm[4] = {3, 0};
  Put(*meta, ANDROID_COLOR_CORRECTION_TRANSFORM, ccm);
  float out[9] = {};
  EXPECT_EQ(0, helper.GetColorCorrectionTransform(meta, out));
  EXPECT_EQ((std::vector<float>{.5f, .5f, .5f, .5f, 3, .5f, .5f, .5f, .5f}),
            std::vector<float>(out, out + 9));
  EXPECT_EQ(1, meta->find(ANDROID_COLOR_CORRECTION_TRANSFORM).data.r[4].denominator);
}

TEST_F(BaseTest, AnchorOrderIsAppendedAndAnEmptyOneRefused) {
  std::vector<int> order{9}, none, written{2, 0, 1};
  EXPECT_EQ(-1, helper.GetAnchorFrameOrder(meta, order));
  EXPECT_EQ(-1, helper.SetAnchorFrameOrder(meta, none));
  EXPECT_EQ(R"(E 2426 "arg err")", Last());
  EXPECT_EQ(0, helper.SetAnchorFrameOrder(meta, written));
  EXPECT_EQ(0, helper.GetAnchorFrameOrder(meta, order));
  EXPECT_EQ(0, helper.GetAnchorFrameOrder(meta, order));
  EXPECT_EQ((std::vector<int>{9, 2, 0, 1, 2, 0, 1}), order);
}

struct CameraFiveHelper : H {
  int GetFwkCameraId(MetaPtr /*meta*/, int* out) override {
    *out = 5;
    return 0;
  }
};

// Back-to-back NUL-terminated ids, written with '|' for the NUL.
std::string Ids(std::string text) {
  std::replace(text.begin(), text.end(), '|', '\0');
  return text;
}
void AddCamera(int id, uint8_t facing, const std::vector<int32_t>& roles, const std::string& ids) {
  MetaPtr meta = NewMeta();
  Put(*meta, ANDROID_LENS_FACING, std::vector<uint8_t>{facing});
  Put(*meta, ANDROID_SENSOR_INFO_ACTIVE_ARRAY_SIZE, std::vector<int32_t>{0, 0, id * 100, id * 10});
  if (!roles.empty()) Put(*meta, META_CAMERA_ROLE_ID, std::vector<int32_t>{roles[0]});
  Put(*meta, META_CAMERA_ROLE_IDS, roles);
  Put(*meta, ANDROID_LOGICAL_MULTI_CAMERA_PHYSICAL_IDS, std::vector<uint8_t>(ids.begin(), ids.end()));
  StaticMetadataWraper::getInstance()->setStaticMetadata(static_cast<unsigned>(id), meta);
}
MetaPtr RequestFor(int32_t cameraId) {
  MetaPtr request = NewMeta();
  Put(*request, META_FWK_CAMERA_ID, std::vector<int32_t>{cameraId});
  return request;
}

TEST_F(BaseTest, OverriddenFrameworkIdRedirectsEveryPerCameraRead) {
  AddCamera(1, 1, {10}, Ids("2|"));
  AddCamera(5, 0, {50, 51}, Ids("6|7|"));
  MetaPtr request = RequestFor(1);
  CameraFiveHelper five;
  int role = -1;
  std::vector<int> roles, physical;
  nvholder::ChiRect active{};
  EXPECT_EQ(0, five.GetCameraRoleId(request, &role));
  EXPECT_EQ(0, five.GetCameraRoleIds(request, roles));
  EXPECT_EQ(0, five.GetAndroidLogicalMultiCameraPhysicalIds(request, physical));
  EXPECT_EQ(0, five.GetActiveArraySize(request, &active));
  EXPECT_EQ(50, role);
  EXPECT_EQ((std::vector<int>{50, 51}), roles);
  EXPECT_EQ((std::vector<int>{6, 7}), physical);
  EXPECT_EQ(500u, active.width);
  EXPECT_FALSE(five.IsRearCamera(request));
}

TEST_F(BaseTest, PhysicalIdsAreParsedAndAppended) {
  const std::pair<std::string, std::vector<int>> cases[] = {
      {Ids("2|3|"), {2, 3, 2, 3}},
      {Ids("x|12|"), {0, 12, 0, 12}},             // not a number
      {Ids("4|15"), {4, 15, 4, 15}},              // the last id without its NUL
      {Ids("1|234567"), {1, 234567, 1, 234567}},  // whole words: no padding NUL follows
      {"12345678", {12345678, 12345678}},
      {Ids("||"), {0, 0, 0, 0}},
      {"", {}},  // none
  };
  for (const auto& [text, expected] : cases) {
    AddCamera(0, 1, {}, text);
    std::vector<int> ids;
    EXPECT_EQ(0, helper.GetAndroidLogicalMultiCameraPhysicalIds(0, ids));
    EXPECT_EQ(0, helper.GetAndroidLogicalMultiCameraPhysicalIds(0, ids));
    EXPECT_EQ(expected, ids) << text;
  }
}

TEST_F(BaseTest, PhysicalRoleIdsSkipCamerasWithoutRole) {
  AddCamera(0, 1, {}, Ids("4|3|2|"));
  AddCamera(2, 1, {20}, "");
  AddCamera(3, 1, {}, "");
  AddCamera(4, 1, {40}, "");
  std::vector<int> roles{1};
  EXPECT_EQ(0, helper.GetAndroidLogicalMultiCameraPhysicalRoleIds(RequestFor(0), roles));
  EXPECT_EQ((std::vector<int>{1, 40, 20}), roles);
}

TEST_F(BaseTest, UnknownOrMissingCamerasFailAndAnUndeclaredRoleListReadsEmpty) {
  std::vector<int> ids;
  EXPECT_EQ(-1, helper.GetCameraRoleIds(RequestFor(7), ids));
  EXPECT_EQ(-1, helper.GetAndroidLogicalMultiCameraPhysicalRoleIds(RequestFor(7), ids));
  EXPECT_EQ(R"(V 2419 "get phyCamFwkIds fail")", Last());
  AddCamera(7, 1, {70}, "");
  MetaTagWrapper::getInstance().setTag(META_CAMERA_ROLE_IDS, MetaTagWrapper::kUndeclared);
  log.Clear();
  EXPECT_EQ(0, helper.GetCameraRoleIds(RequestFor(7), ids));
  EXPECT_TRUE(ids.empty());
  EXPECT_TRUE(log.offline.empty());
  // A request without a camera asks for camera -1, and counts as a rear one.
  int role = 0;
  EXPECT_EQ(-1, helper.GetCameraRoleId(meta, &role));
  EXPECT_EQ(StaticMetadataWraper::kNoCamera, StaticMetadataWraper::getInstance()->lastRequestedCameraId());
  EXPECT_TRUE(helper.IsRearCamera(meta));
}

TEST_F(BaseTest, CapabilityResultIsTheDataAddressOrZero) {
  __bokehCapabilityInfoList caps{};
  EXPECT_EQ(0, helper.GetBokehCapabilityInfo(meta, &caps));
  const std::vector<uint8_t> stored(sizeof caps, 0x5C);
  Put(*meta, "com.nuvaro.camera.bokehCaps.info", stored);
  const auto data = reinterpret_cast<uintptr_t>(meta->find("com.nuvaro.camera.bokehCaps.info").data.u8);
  const int lowBits = static_cast<int>(static_cast<uint32_t>(data));
  EXPECT_EQ(lowBits, helper.GetBokehCapabilityInfo(meta, nullptr));
  EXPECT_EQ(lowBits, helper.GetBokehCapabilityInfo(meta, &caps));
  EXPECT_EQ(0, std::memcmp(&caps, stored.data(), sizeof caps));
}

// The values' copy without the byte tag is the catalogue tests'.
TEST_F(BaseTest, GainMapCopyWithoutTheByteTag) {
  MetaPtr destination = NewMeta();
  EXPECT_EQ(0, helper.UpdateGainMapMeta(meta, destination));
  EXPECT_EQ("I 2413 get ultrahdr metadata failed.", Last());
  Put(*meta, META_GAINMAP_METADATA, std::vector<uint8_t>{1, 2, 3});
  EXPECT_EQ(0, helper.UpdateGainMapMeta(meta, destination));
  EXPECT_EQ(3, destination->find("com.nuvaro.ultrahdr.gainmapMetadata").data.u8[2]);
  MetaTagWrapper::getInstance().setTag(META_GAINMAP_METADATA, MetaTagWrapper::kUndeclared);
  log.Clear();
  EXPECT_EQ(0, helper.UpdateGainMapMeta(meta, NewMeta()));
  EXPECT_TRUE(log.offline.empty());  // an undeclared tag counts as copied
}

}  // namespace
