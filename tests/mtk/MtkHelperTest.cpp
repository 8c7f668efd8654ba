// What the MediaTek helper's operations compute: one case shows each use of the unit-tested arithmetic.
// Failures, messages and the plain copies are the row sweep's.
#include <gtest/gtest.h>
#include <mtk/mtk_metadata_tag.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "FakeAdapterControl.h"
#include "MtkMetadataHelper.h"
#include "TestSupport.h"

namespace {

using M = metahelper::MtkMetadataHelper;
using nvholder::ChiRect;
using MetaPtr = std::shared_ptr<NvMetadata>;
using F32 = std::vector<float>;
using I32 = std::vector<int32_t>;
using Quad = std::array<uint32_t, 4>;
using Box = std::array<int32_t, 4>;  // x0, y0, x1, y1
using testsupport::Put;
using testsupport::Quoted;

constexpr int32_t kCamera = 5;
constexpr ChiRect kCentre{1000, 750, 2000, 1500};  // keeps the active aspect, room on every side

Quad Q(const ChiRect& r) { return {r.left, r.top, r.width, r.height}; }
Quad Q(const __UtilsImage_Rect& r) { return {r.left, r.top, r.width, r.height}; }
Box Corners(const nvholder::FDFaceBox& f) { return {f.x0, f.y0, f.x1, f.y1}; }
std::string Bytes(const void* p, size_t n) { return std::string(static_cast<const char*>(p), n); }

constexpr float kHuge = 3.0e38f;

// Nine words per face: corners, three unused words, the angle, an unused word, the id.
I32 Faces(const std::vector<Box>& b, const I32& angles) {
  I32 words;
  for (size_t i = 0; i < b.size(); ++i)
    words.insert(words.end(), {b[i][0], b[i][1], b[i][2], b[i][3], 0, 0, angles[i], 0, 100 + int32_t(i)});
  return words;
}

// Tags and fake adapter reset, log captured; `meta` names camera kCamera and shows its whole active array.
class MtkTest : public ::testing::Test {
 protected:
  void SetUp() override {
    MetaTagWrapper::getInstance().resetTags();
    StaticMetadataWraper::getInstance()->clear();
    fakeadapter::Reset();
    testsupport::BindCamera(*meta, kCamera, cameraMeta);
    Put(*cameraMeta, ANDROID_SENSOR_INFO_ACTIVE_ARRAY_SIZE, I32{0, 0, 4000, 3000});
    Put(*meta, ANDROID_SCALER_CROP_REGION, I32{0, 0, 4000, 3000});
  }
  bool Logged(const std::string& l) const {
    auto s = log.Summary();
    return std::count(s.begin(), s.end(), l) > 0;
  }
  std::string Last() const { return log.Summary().empty() ? "" : log.Summary().back(); }

  // The value and result a read makes of what the tag holds.
  template <typename Out, typename Expected, typename Stored>
  void ExpectValue(int (M::*fn)(MetaPtr, Out*), const char* tag, const std::vector<Stored>& stored,
                   Expected expected, int result = 0) {
    Expected out;
    std::memset(&out, 0, sizeof out);
    Put(*meta, tag, stored);
    EXPECT_EQ(result, (helper.*fn)(meta, reinterpret_cast<Out*>(&out))) << tag;
    EXPECT_EQ(Bytes(&expected, sizeof out), Bytes(&out, sizeof out)) << tag;
  }

  FacesInfo FaceRect(const I32& words, int width, int height, int expectedResult = 0) {
    Put(*meta, "nuvaro.bokeh.faceInfo", words);
    FacesInfo faces{5};
    EXPECT_EQ(expectedResult, helper.GetFaceRect(meta, width, height, faces, nullptr));
    return faces;
  }

  testsupport::LogCapture log;
  M helper;
  MetaPtr meta = testsupport::NewMeta();
  MetaPtr cameraMeta = testsupport::NewMeta();
};

TEST_F(MtkTest, ReadsConvertPlatformUnitsAndRecords) {
  nvholder::panshotData panshot;  // nine doubles, then a status word that reaches the record in three widths
  std::memset(&panshot, 0, sizeof panshot);
  for (int i = 0; i < 9; ++i) panshot.values[i] = 1.25 * i - 2;
  panshot.status = panshot.status64 = -7;
  panshot.statusFloat = -7.0f;
  I32 panshotWords(19, -7);
  std::memcpy(panshotWords.data(), panshot.values, sizeof panshot.values);
  Put(*meta, MTK_3A_FEATURE_AWB_COLOR_TEMPERATURE, F32{5000});
  std::vector<uint8_t> gyroBytes(sizeof(nvholder::ChiFrameGyro));  // the record's bytes but its padding
  for (size_t i = 0; i < gyroBytes.size(); ++i) gyroBytes[i] = static_cast<uint8_t>(i % 251);
  nvholder::ChiFrameGyro gyro;
  std::memcpy(&gyro, gyroBytes.data(), sizeof gyro);
  std::memset(reinterpret_cast<char*>(&gyro) + 4, 0, 4);  // after the count
  // clang-format off
  ExpectValue(&M::GetGyroInfo, "nuvaro.nvvi.ellc.gyro", gyroBytes, gyro);
  ExpectValue(&M::GetPreviewDarkGainRatio, "nuvaro.ae.dark.tonegain", I32{512}, 0.5f);
  ExpectValue(&M::GetPreviewISPGain, "nuvaro.burst.last.preview.ispGain", I32{6144}, 1.5f);
  ExpectValue(&M::GetMotionVelocity, "nuvaro.ai.nvsd.motionVelocity", I32{7}, nvholder::MotionVelocity{{}, 7.0f, {}});
  ExpectValue(&M::GetTuningSensorMode, "nuvaro.streaming.sensormode", I32{3, 7}, int{7});
  ExpectValue(&M::GetFacetargetAndConfidence, "nuvaro.ae.average.face.luma", I32{-5}, std::array<float, 2>{0.0f, 0.9f});
  ExpectValue(&M::GetAWBFrameControl, "android.colorCorrection.gains", F32{2, 1, 1.1f, 1.5f}, nvholder::NUAWBFrameControl{{2, 1, 1.5f}, 5000});
  ExpectValue(&M::GetPanshotResData, "com.nuvaro.panshotTruck.Rslt4Snapshot", panshotWords, panshot);
  // Saturating as the crop's shift does.
  for (auto [value, expected] : std::initializer_list<std::pair<float, int>>{{123.9f, 123}, {kHuge, INT32_MAX}})
    ExpectValue(&M::GetLuxIndex, "com.nuvaro.statsconfigs.AecInfo", F32{value}, expected);
  // clang-format on
  ExpectValue(&M::GetAeRatio, "nuvaro.hdr.custom.adjustratio", I32{0}, 1.0f);  // 1.0 stands in for 0
  EXPECT_EQ("W 1782 " + Quoted("GetMetadata nuvaro.hdr.custom.adjustratio = 0"), Last());
}

TEST_F(MtkTest, BlackLevelsScaleWithTheRawBitDepth) {
  for (auto [bitDepth, level, result] : std::initializer_list<std::tuple<I32, float, int>>{
           {{10}, 1024, 0}, {{12}, 256, 0}, {{14}, 64, 0}, {{}, 64, -1}}) {
    Put(*meta, ANDROID_SENSOR_DYNAMIC_BLACK_LEVEL, F32{64, 64, 64, 64});
    Put(*meta, "nuvaro.algoengine.input.raw.bpp", bitDepth);
    std::vector<float> levels(4);
    EXPECT_EQ(result, helper.GetSensorDynamicBlackLevel(meta, levels.data()));
    EXPECT_EQ(std::vector<float>(4, level), levels);
  }
}

// The info line is the only sign of the recount's own result: one case shows it.
TEST_F(MtkTest, IspGainIsRecountedOnlyWhenEnabledAndAvailable) {
  for (auto [enable, origin, gain] : std::initializer_list<std::tuple<I32, I32, float>>{
           {{}, {8192}, 1.0f}, {{0}, {8192}, 1.0f}, {{1}, {8192}, 2.0f}, {{1}, {}, 1.0f}}) {
    Put(*meta, MTK_3A_FEATURE_AE_ISP_GAIN_VALUE, I32{4096});
    Put(*meta, "nuvaro.custom.ispgain.recount.enable", enable);
    Put(*meta, "nuvaro.custom.ispgain.origin.value", origin);
    float out = 0;
    EXPECT_EQ(0, helper.GetIspGain(meta, &out));
    EXPECT_EQ(gain, out) << enable.size() << origin.size();
  }
  EXPECT_TRUE(
      Logged("I 1603 GetIspGain recountEnale = 1 oldIspGain = 1.000000 *ispGain = 2.000000 retIspGain = 0."));
}

// Without the flag's tag the tone gain's own first byte serves as the flag.
TEST_F(MtkTest, ToneGainAppliesUnlessSafeExposureReadsNonZero) {
  for (auto [toneGain, safe, adrc, faceTarget, faceResult] :
       std::initializer_list<std::tuple<int32_t, std::vector<uint8_t>, float, float, int>>{
           {512, {0}, .5f, 50, 0}, {512, {1}, 1, 100, 0}, {512, {}, .5f, 50, -1}, {513, {}, 1, 100, -1}}) {
    Put(*meta, "nuvaro.ae.mid.tonegain", I32{toneGain});
    Put(*meta, "nuvaro.safe.exposure.enabled", safe);
    Put(*meta, "nuvaro.ae.average.face.luma", I32{100});
    float outAdrc = 0, outFace = 0;
    EXPECT_EQ(0, helper.GetAdrcGain(meta, &outAdrc));
    EXPECT_EQ(adrc, outAdrc);
    EXPECT_EQ(faceResult, helper.GetFaceLumaTarget(meta, &outFace));
    EXPECT_EQ(faceTarget, outFace);
  }
}

TEST_F(MtkTest, GammaTablesKeepTheDefaultsWithoutThePlatformCurve) {
  nvholder::GammaTableInfo tables{};
  EXPECT_EQ(-1, helper.GetGammaOutput(meta, &tables));
  EXPECT_EQ((Quad{0, 13}), (Quad{uint32_t(tables.isValid), tables.gammaTable[1]}));
  Put(*meta, MTK_SUPERNIGHT_GAMMA_INFO, I32(256, 700));
  ASSERT_EQ(0, helper.GetGammaOutput(meta, &tables));
  EXPECT_EQ((Quad{1, 700}), (Quad{uint32_t(tables.isValid), tables.gammaTable[255]}));
}

// Camera kCamera: type 0, a zoom-EIS rate of 2.0, a frame timestamp, its policy crop kCentre after another's.
class MtkCropTest : public MtkTest {
 protected:
  void SetUp() override {
    MtkTest::SetUp();
    Put(*cameraMeta, "com.nuvaro.camera.zoomeis.effectiverate", F32{2.0f});
    Put(*meta, ANDROID_SENSOR_TIMESTAMP, std::vector<int64_t>{777});
    fakeadapter::SetCameraType(kCamera, 0);
    SetPolicyCrop({1000, 750, 2000, 1500});
  }
  void SetPolicyCrop(const I32& c) {  // left, top, width, height
    I32 words;
    for (int32_t id : {1, kCamera, kCamera + 1})
      words.insert(words.end(), {id, 0, 0, 0, 0, c[0] + (id == 1), c[1], c[2], c[3]});
    Put(*meta, "com.nuvaro.camera.sensorpolicy.cropregions", words);
  }
  Quad Crop(bool inSensorZoom = false, int expectedResult = 0, nvholder::dimension sensor = {4000, 3000}) {
    ChiRect crop{1, 1, 1, 1};
    EXPECT_EQ(expectedResult, helper.GetCropRegion(meta, &crop, sensor, inSensorZoom));
    return Q(crop);
  }
};

TEST_F(MtkCropTest, FitsThePolicyCropOrGivesNothingWithoutIt) {
  // Without the frame's timestamp the fitted crop stays, unshifted, and the call fails.
  Put(*meta, ANDROID_SENSOR_TIMESTAMP, std::vector<int64_t>{});
  EXPECT_EQ(Q(kCentre), Crop(false, -1));
  SetPolicyCrop({0, 0, 4000, 2250});
  EXPECT_EQ((Quad{0, 0, 4000, 3060}), Crop(false, -1, {4080, 3060}));
  Put(*meta, "com.nuvaro.camera.sensorpolicy.cropregions", I32{});
  EXPECT_EQ((Quad{0, 0, 0, 0}), Crop());
}

// Tag values convert as on the device: truncated, saturating at the int32 range, NaN as 0. Saturated
// shifts would leave the sensor, so stay unapplied; doubled in in-sensor zoom they wrap, not overflow.
TEST_F(MtkCropTest, ShiftComesFromTheHolderFirstThenFromTheTag) {
  const std::string used = "I 955 using zoom eis shift ", unused = "I 956 not using zoom eis shift ";
  // Holder finds; its H, V, pre-anchor; the tag; in-sensor zoom; the line naming the shift as scaled; crop.
  for (auto [found, holder, tag, inSensorZoom, line, expected] :
       std::initializer_list<std::tuple<bool, std::array<int, 3>, F32, bool, std::string, Quad>>{
           {true, {10, -6, 0}, {20, 20, 0, 0}, false, used + "(10,-6)", {1010, 744, 2000, 1500}},
           {false, {}, {20, 20, 0, 0}, false, used + "(20,20)", {1020, 770, 2000, 1500}},
           {true, {-3, 5, 1}, {}, false, used + "(-1,2)", {999, 752, 2000, 1500}},
           {false, {}, {20, 21, 1, 0}, false, used + "(10,10)", {1010, 760, 2000, 1500}},
           {true, {10, -6, 0}, {}, true, unused + "(20,-12)", {0, 0, 4000, 3000}},
           {false, {}, {kHuge, kHuge, 0, 0}, false, unused + "(2147483647,2147483647)", Q(kCentre)},
           {false, {}, {std::nanf(""), 0, 0, 0}, false, used + "(0,0)", Q(kCentre)},
           {false, {}, {1073741824.0f, 0, 0, 0}, true, unused + "(-2147483648,0)", {0, 0, 4000, 3000}},
           {false, {}, {20, 20, 0}, false, used + "(0,0)", Q(kCentre)}}) {
    fakeadapter::SetShiftAnswer(found, holder[0], holder[1], uint8_t(holder[2]));
    Put(*meta, "nuvaro.sat.output.shift", tag);
    log.Clear();
    EXPECT_EQ(expected, Crop(inSensorZoom)) << line;
    EXPECT_TRUE(Logged(line)) << line;
    EXPECT_EQ(!found && tag.size() == 4, Last().back() == '1') << line << ": metaSuccess";
  }
  EXPECT_TRUE(Logged("I 952 get shift failed size = 3, from nuvaro.sr.shift.value...")) << "the last case";
}

// Cameras of type 20 follow zoom EIS once the zoom ratio reaches the camera's rate.
TEST_F(MtkCropTest, HolderQueryCarriesTheFrameAndTheNodeType) {
  for (auto [cameraType, zoomRatio, nodeType] :
       std::initializer_list<std::tuple<int, float, int>>{{0, 2.0f, 1}, {20, 1.5f, 1}, {20, 2.0f, 2}}) {
    fakeadapter::SetCameraType(kCamera, cameraType);
    Put(*meta, ANDROID_CONTROL_ZOOM_RATIO, F32{zoomRatio});
    Crop();
    const nvholder::ShiftData q = fakeadapter::LastQuery();
    EXPECT_EQ((std::array<int64_t, 4>{nodeType, 777, kCamera, 1500000000}),
              (std::array<int64_t, 4>{q.nodeType, q.timestamp, q.phyCameraId, fakeadapter::LastInterval()}));
  }
}

// As on the device, whose adapter looks the camera up with unordered_map::at.
TEST_F(MtkCropTest, CameraMissingFromTheHoldersTableEndsTheProcess) {
  fakeadapter::ClearCameras();
  EXPECT_DEATH(
      Crop(),
      "out_of_range was thrown in -fno-exceptions mode with message \"unordered_map::at: key not found\"");
}

TEST_F(MtkCropTest, Pass1CropIsThePolicyEntryOrTheFullField) {
  ChiRect crop{1, 1, 1, 1};
  ASSERT_EQ(0, helper.getPass1CropRegion(meta, &crop, 42));  // no entry for the sensor: untouched
  EXPECT_EQ((Quad{1, 1, 1, 1}), Q(crop));
  ASSERT_EQ(0, helper.getPass1CropRegion(meta, &crop, kCamera + 1));
  EXPECT_EQ(Q(kCentre), Q(crop));
  ASSERT_EQ(0, helper.getPass1CropRegion(testsupport::NewMeta(), &crop, 42));
  EXPECT_EQ((Quad{0, 0, 4096, 3072}), Q(crop));
}

TEST_F(MtkTest, FaceAngleClassesCentresAndTheFirstLargestFaceAsMainOrNoFaces) {
  const Box small{0, 0, 400, 400}, large{0, 0, 800, 800}, offLeft{0, 1200, 4, 1600};
  const FacesInfo faces = FaceRect(Faces({small, large, large, offLeft}, {10, 100, 200, 300}), 1000, 750);
  ASSERT_EQ(4, faces.faceCount);
  EXPECT_EQ(1, faces.mainFaceIndex);
  EXPECT_TRUE(Logged("D 3743 faces[3/4]:[0 0 200x200] point:[100 100] angle:200 faceId:102"));
  EXPECT_EQ(90, faces.faces[3].angleClass);
  EXPECT_EQ((Quad{0, 300, 0, 100}), Q(faces.faces[3].rect));
  // Missing geometry clears the face record and fails.
  Put(*meta, ANDROID_SCALER_CROP_REGION, I32{});
  EXPECT_EQ(0, FaceRect(Faces({{0, 0, 8, 8}}, {0}), 1000, 750, -1).faceCount);
}

// The next face's in-sensor-zoom step sees the doubled size.
TEST_F(MtkTest, FacesOnLargeOutputsDoubleTheActiveSizeEachTime) {
  Put(*meta, "nuvaro.insensorzoom.status", I32{1});
  Put(*meta, ANDROID_SCALER_CROP_REGION, I32{0, 0, 16000, 12000});
  const Box box{5000, 4000, 5400, 4400};
  const FacesInfo faces = FaceRect(Faces({box, box, box}, {0, 0, 0}), 6000, 4500);
  const Quad expected[] = {{3000, 2438, 300, 300}, {2250, 1875, 300, 300}, {750, 750, 300, 300}};
  for (int i = 0; i < 3; ++i) EXPECT_EQ(expected[i], Q(faces.faces[i].rect)) << i;
}

// The first region of two is {0, 0, 8, 8}: only the second maps to the rectangle below.
TEST_F(MtkTest, FocusRegionIsTheOnlyOrTheSecondRegion) {
  for (auto [roi, result] : std::initializer_list<std::pair<I32, int>>{
           {{0, 1, 400, 300, 1200, 900, 1}, 0},
           {{0, 2, 0, 0, 8, 8, 1, 400, 300, 1200, 900, 1}, 0},
           {{9, 3, 400, 300, 1200, 900, 1}, -1}}) {  // not a focus region
    Put(*meta, MTK_3A_FEATURE_AF_ROI, roi);
    __UtilsImage_Rect rect{1, 1, 1, 1};
    __UtilsImage_point point{-1, -1};
    EXPECT_EQ(result, helper.GetFocusROI(meta, {1000, 750}, &rect, &point, false, false)) << roi[0];
    EXPECT_EQ((result == 0 ? Quad{100, 75, 200, 150} : Quad{1, 1, 1, 1}), Q(rect)) << roi[0];
    if (result == 0) EXPECT_EQ((std::array{200, 150}), (std::array{point.x, point.y}));
  }
}

TEST_F(MtkTest, RawFaceRecordKeepsCornersWithTheLastFacesPitchAngleAndPose) {
  // words: corners, unused, pitch, angle, pose, id
  Put(*meta, "nuvaro.bokeh.faceInfo",
      I32{1100, 800, 1300, 1000, 0, 3, 50, 4, 1, 1200, 900, 1400, 1100, 0, 6, 200, 8, 2});
  Put(*meta, "nuvaro.insensorzoom.status", I32{1});
  nvholder::NUNvFDRawSnapshotParam param{};
  ASSERT_EQ(0, helper.GetFdData(meta, &param));
  EXPECT_EQ(2, param.faceCount);
  // In in-sensor-zoom mode a corner c becomes (c - A/4) * 2, A the active extent of its axis.
  EXPECT_EQ((Box{200, 100, 600, 500}), Corners(param.faces[0]));
  EXPECT_EQ((I32{6, 180, 8}), (I32{param.pitch, param.angle, param.pose}));
  EXPECT_EQ((Quad{0, 0, 4000, 3000}), Q(param.activeArray));
  // Sensor mode type 17 (platform mode 6) doubles the corners instead; the camera's last entry of the
  // frame result (four 80-word entries from word 96: a camera id and, at word 4, its mode) names it.
  I32 frameResult(416, -9);
  for (const auto& [entry, id, mode] : {std::array{0, kCamera, 3}, {1, kCamera, 6}, {3, 1, 3}}) {
    frameResult[96 + 80 * entry] = id;
    frameResult[100 + 80 * entry] = mode;
  }
  Put(*meta, "com.nuvaro.camera.sensorpolicy.frameresult", frameResult);
  Put(*meta, "nuvaro.insensorzoom.status", I32{0});
  ASSERT_EQ(0, helper.GetFdData(meta, &param));
  EXPECT_EQ((Box{2200, 1600, 2600, 2000}), Corners(param.faces[0]));
  EXPECT_TRUE(Logged("D 2103 fwkId: 5, sensorModeType 6 => 17"));
}

}  // namespace
