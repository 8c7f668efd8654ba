// What the generic helper's operations compute beyond their rows' shapes (those are the row
// sweep's): conversions, per-camera lookups, appending and copying operations.
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
  // Inclusive AF bounds become extents in unsigned arithmetic: inverted bounds wrap.
  Put(*meta, ANDROID_CONTROL_AF_REGIONS, std::vector<int32_t>{100, 5, 299, 1, 1});
  nvholder::ChiRect region{};
  ASSERT_EQ(0, helper.GetAndroidAFRegion(meta, &region));
  EXPECT_EQ((std::vector<uint32_t>{100, 5, 200, 0xFFFFFFFDu}),
            (std::vector<uint32_t>{region.left, region.top, region.width, region.height}));
  // A zero denominator is repaired in the metadata.
  std::vector<camera_metadata_rational> ccm(9, {1, 2});
  ccm[4] = {3, 0};
  Put(*meta, ANDROID_COLOR_CORRECTION_TRANSFORM, ccm);
  std::vector<float> out(9);
  EXPECT_EQ(0, helper.GetColorCorrectionTransform(meta, out.data()));
  EXPECT_EQ((std::vector<float>{.5f, .5f, .5f, .5f, 3, .5f, .5f, .5f, .5f}), out);
  EXPECT_EQ(1, meta->find(ANDROID_COLOR_CORRECTION_TRANSFORM).data.r[4].denominator);
}

TEST_F(BaseTest, AnchorOrderIsAppended) {
  std::vector<int> order{9}, written{2, 0, 1};
  EXPECT_EQ(0, helper.SetAnchorFrameOrder(meta, written));
  EXPECT_EQ(0, helper.GetAnchorFrameOrder(meta, order));
  EXPECT_EQ((std::vector<int>{9, 2, 0, 1}), order);
}

// Back-to-back NUL-terminated ids, written with '|' for the NUL.
std::string Ids(std::string text) {
  std::replace(text.begin(), text.end(), '|', '\0');
  return text;
}
void AddCamera(int id, const std::vector<int32_t>& roles, const std::string& ids) {
  MetaPtr meta = NewMeta();
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

// Both the static copies and the vector reads ask the virtual id getter.
TEST_F(BaseTest, OverriddenFrameworkIdRedirectsEveryPerCameraRead) {
  struct CameraFiveHelper : H {
    int GetFwkCameraId(MetaPtr /*meta*/, int* out) override {
      *out = 5;
      return 0;
    }
  } five;
  AddCamera(1, {10}, Ids("2|"));
  AddCamera(5, {50, 51}, Ids("6|7|"));
  int role = -1;
  std::vector<int> physical;
  EXPECT_EQ(0, five.GetCameraRoleId(RequestFor(1), &role));
  EXPECT_EQ(0, five.GetAndroidLogicalMultiCameraPhysicalIds(RequestFor(1), physical));
  EXPECT_EQ((std::pair{50, std::vector<int>{6, 7}}), (std::pair{role, physical}));
  EXPECT_TRUE(helper.IsRearCamera(meta)) << "a request without a camera counts as a rear one";
}

// Parsed from a terminated copy: "1|234567" ends at the data's end without a NUL.
TEST_F(BaseTest, PhysicalIdsAreParsedAndAppended) {
  const std::pair<std::string, std::vector<int>> cases[] = {
      {Ids("2|3|"), {9, 2, 3}}, {Ids("x|12|"), {9, 0, 12}}, {Ids("1|234567"), {9, 1, 234567}}, {"", {9}}};
  for (const auto& [text, expected] : cases) {
    AddCamera(0, {}, text);
    std::vector<int> ids{9};
    EXPECT_EQ(0, helper.GetAndroidLogicalMultiCameraPhysicalIds(0, ids));
    EXPECT_EQ(expected, ids) << text;
  }
}

// An unknown camera fails; one whose role list this platform does not declare reads none.
TEST_F(BaseTest, PhysicalRoleIdsSkipCamerasWithoutRole) {
  AddCamera(0, {}, Ids("4|3|2|"));
  AddCamera(2, {20}, "");
  AddCamera(3, {}, "");
  AddCamera(4, {40}, "");
  std::vector<int> roles{1};
  EXPECT_EQ(0, helper.GetAndroidLogicalMultiCameraPhysicalRoleIds(RequestFor(0), roles));
  EXPECT_EQ((std::vector<int>{1, 40, 20}), roles);
  EXPECT_EQ(-1, helper.GetAndroidLogicalMultiCameraPhysicalRoleIds(RequestFor(7), roles));
  EXPECT_EQ(R"(V 2419 "get phyCamFwkIds fail")", Last());
  MetaTagWrapper::getInstance().setTag(META_CAMERA_ROLE_IDS, MetaTagWrapper::kUndeclared);
  log.Clear();
  EXPECT_EQ(0, helper.GetCameraRoleIds(RequestFor(4), roles));
  EXPECT_EQ((std::vector<int>{1, 40, 20}), roles);
  EXPECT_TRUE(log.offline.empty());
}

TEST_F(BaseTest, CapabilityResultIsTheDataAddressOrZero) {
  const std::vector<uint8_t> stored(sizeof(__bokehCapabilityInfoList), 0x5C);
  Put(*meta, "com.nuvaro.camera.bokehCaps.info", stored);
  const auto data = reinterpret_cast<uintptr_t>(meta->find("com.nuvaro.camera.bokehCaps.info").data.u8);
  __bokehCapabilityInfoList caps{};
  EXPECT_EQ(static_cast<int>(static_cast<uint32_t>(data)), helper.GetBokehCapabilityInfo(meta, &caps));
  EXPECT_EQ(0, std::memcmp(&caps, stored.data(), sizeof caps));
}

// The byte tag's absence is only logged.
TEST_F(BaseTest, GainMapValuesAreCopiedWithOrWithoutTheByteTag) {
  MetaPtr destination = NewMeta();
  Put(*meta, "com.nuvaro.ultrahdr.gainmapValues", std::vector<float>{0.5f, 2.0f});
  EXPECT_EQ(0, helper.UpdateGainMapMeta(meta, destination));
  EXPECT_EQ("I 2413 get ultrahdr metadata failed.", Last());
  EXPECT_EQ(2u, destination->find("com.nuvaro.ultrahdr.gainmapValues").count);
  Put(*meta, META_GAINMAP_METADATA, std::vector<uint8_t>{1, 2, 3});
  EXPECT_EQ(0, helper.UpdateGainMapMeta(meta, destination));
  EXPECT_EQ(3, destination->find("com.nuvaro.ultrahdr.gainmapMetadata").data.u8[2]);
}

}  // namespace
