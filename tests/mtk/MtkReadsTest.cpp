// The MediaTek helper's reads. Its pure arithmetic is proven by the unit
// tests; here one case shows each use of it.
#include <cstring>

#include "MtkFixture.h"

namespace mtktest {
namespace {

using M = MtkMetadataHelper;
using I32 = std::vector<int32_t>;
using I64 = std::vector<int64_t>;
using F32 = std::vector<float>;

// Runs a read through a null output, a missing tag, a tag without elements and a stored value.
// `Expected` may be wider than Out for operations that fill an array. Static reads report the
// camera id on the line after the argument check.
class MtkReadsTest : public MtkTest {
 protected:
  template <typename Out, typename Expected, typename Stored>
  void Check(int (M::*fn)(MetaPtr, Out*), const char* tag, const std::vector<Stored>& stored,
             Expected expected, int argLine, const char* message, bool fromCamera = false) {
    SCOPED_TRACE(argLine);
    const auto run = [&](bool withOutput) {  // the result, and whether the output was written
      Expected out;
      std::memset(&out, 0, sizeof out);
      const int result = (helper.*fn)(meta, withOutput ? reinterpret_cast<Out*>(&out) : nullptr);
      const bool written = std::memcmp(&out, std::vector<char>(sizeof out).data(), sizeof out) != 0;
      EXPECT_TRUE(!written || std::memcmp(&out, &expected, sizeof out) == 0) << "unexpected output";
      return std::make_pair(result, written);
    };
    log.Clear();
    EXPECT_EQ(-1, run(false).first);
    EXPECT_EQ(std::vector<std::string>{"E " + std::to_string(argLine) + " " + Quoted("arg err")},
              log.Summary());
    for (bool storedEmpty : {false, true}) {
      meta = testsupport::NewMeta();
      cameraMeta = testsupport::NewMeta();
      testsupport::BindCamera(*meta, kCamera, cameraMeta);
      if (storedEmpty) Put(fromCamera ? *cameraMeta : *meta, tag, std::vector<Stored>{});
      EXPECT_EQ(std::make_pair(-1, false), run(true)) << "stored empty " << storedEmpty;
      EXPECT_EQ("W " + std::to_string(argLine + (fromCamera ? 2 : 1)) + " " + Quoted(message), Last());
    }
    Put(fromCamera ? *cameraMeta : *meta, tag, stored);
    EXPECT_EQ(std::make_pair(0, true), run(true));
  }
};

// Nine doubles, then a status word that reaches the record in three widths.
nvholder::panshotData Panshot(I32* words) {
  nvholder::panshotData expected;
  std::memset(&expected, 0, sizeof expected);
  const double values[9] = {1.5, -2.25, 3, 4, 5, 6, 7, 8, 9.75};
  std::memcpy(expected.values, values, sizeof values);
  expected.status = expected.status64 = -7;
  expected.statusFloat = -7.0f;
  words->assign(19, -7);
  std::memcpy(words->data(), values, sizeof values);
  return expected;
}

TEST_F(MtkReadsTest, PlainReadsCheckTheOutputReadTheTagAndReportAsWarnings) {
  I32 panshotWords;
  const nvholder::panshotData panshot = Panshot(&panshotWords);
  // clang-format off
  Check(&M::GetUIEV, "nuvaro.ae.exposureCompensation", I32{-2}, int{-2}, 140, "GetMetadata nuvaro.supernight.real.manualev err");
  Check(&M::GetSensorTimestamp, "android.sensor.timestamp", I64{123456789012}, 123456789012UL, 180, "GetMetadata ANDROID_SENSOR_TIMESTAMP fail");
  Check(&M::GetTeleFusionEnable, "nuvaro.telefusion.enabled", std::vector<uint8_t>{2}, uint8_t{2}, 260, "GetMetadata err");
  Check(&M::GetPreviewDarkGainRatio, "nuvaro.ae.dark.tonegain", I32{512}, 0.5f, 440, "GetMetadata previewDarkGainRatio err");
  Check(&M::GetPreviewExposure, "nuvaro.burst.last.preview.exposure.time", I64{33000000}, 33000000.0f, 540, "GetMetadata PreviewExposure err");
  Check(&M::GetPreviewISPGain, "nuvaro.burst.last.preview.ispGain", I32{6144}, 1.5f, 560, "GetMetadata nuvaro.burst.last.preview.ispGain err");
  Check(&M::GetMotionVelocity, "nuvaro.ai.nvsd.motionVelocity", I32{7}, nvholder::MotionVelocity{{}, 7.0f, {}}, 720, "GetMetadata motionVelocity err");
  Check(&M::GetNoFaceLumaTarget, "nuvaro.longexposure.cwr", I32{40}, 40.0f, 1240, "GetMetadata nuvaro.longexposure.cwr err");
  Check(&M::GetFrameLuma, "nuvaro.ae.average.frame.luma", I32{55}, 55.0f, 1260, "GetMetadata nuvaro.ae.average.frame.luma err");
  Check(&M::GetTuningSensorMode, "nuvaro.streaming.sensormode", I32{3, 7}, int{7}, 1300, "GetMetadata nuvaro.streaming.sensormode err");
  Check(&M::GetFaceAverageBrightness, "nuvaro.ai.asd.FaceAverageBrightness", F32{12.5f}, 12.5f, 1500, "GetMetadata FaceAverageBrightness err");
  Check(&M::GetFacetargetAndConfidence, "nuvaro.ae.average.face.luma", I32{-5}, std::array<float, 2>{0.0f, 0.9f}, 1520, "GetMetadata faceBright err");
  Check(&M::GetCurLuma, "nuvaro.ae.average.frame.luma", I32{56}, 56.0f, 1560, "GetMetadata nuvaro.ae.average.frame.luma err");
  Check(&M::GetQTimerTimeStamp, "com.nuvaro.mtk.p1node.frameinfo", I64{99, 1}, 99UL, 1720, "GetMetadata com.nuvaro.mtk.p1node.frameinfo err");
  Check(&M::GetPreviewADRCGain, "nuvaro.ae.mid.tonegain", I32{2048}, 2.0f, 1760, "GetMetadata PreviewAdrcGain err");
  Check(&M::GetPanshotResData, "com.nuvaro.panshotTruck.Rslt4Snapshot", panshotWords, panshot, 2380, "GetMetadata com.nuvaro.panshotTruck.Rslt4Snapshot fail");
  Check(&M::GetNuvaroFrameSyncTimestampGap, "com.nuvaro.mtk.p1node.frameinfo", I64{99, 1}, long{99}, 3320, "GetMetadata com.nuvaro.mtk.p1node.frameinfo err");
  Check(&M::GetNuvaroMxdebandingDetectResult, "com.nuvaro.nvvi2.mxdebanding.detectResult", I32{4}, int{4}, 3360, "GetMetadata com.nuvaro.nvvi2.mxdebanding.detectResult err1");
  Check(&M::GetLuxIndex, "com.nuvaro.statsconfigs.AecInfo", F32{-2.7f}, int{-2}, 3480, "GetMetadata com.nuvaro.statsconfigs.AecInfo err1");
  Check(&M::GetExpIndex, "android.sensor.exposureTime", I64{5000}, long{5000}, 3520, "GetMetadata ANDROID_SENSOR_EXPOSURE_TIME err");
  Check(&M::GetSensorGain, "com.mediatek.3afeature.aeSensorGainValue", I32{1536}, 1.5f, 3560, "GetMetadata MTK_3A_FEATURE_AE_SENSOR_GAIN_VALUE err1");
  Check(&M::GetActiveArraySize, "android.sensor.info.activeArraySize", I32{8, 6, 4000, 3000}, ChiRect{8, 6, 4000, 3000}, 2480, "Get ACTIVE_ARRAY_SIZE err", true);
  Check(&M::GetMaxActiveArraySize, "android.sensor.info.activeArraySizeMaximumResolution", I32{0, 0, 8000, 6000}, ChiRect{0, 0, 8000, 6000}, 2500, "Get ANDROID_SENSOR_INFO_ACTIVE_ARRAY_SIZE_MAXIMUM_RESOLUTION err", true);
  Check(&M::GetLSCMapSize, "android.lens.info.shadingMapSize", I32{17, 13}, nvholder::NULSCMapSize{17, 13}, 2640, "GetMetadata ANDROID_LENS_INFO_SHADING_MAP_SIZE fail", true);
  Check(&M::GetSensorViewAngle, "com.nuvaro.lens.info.ViewAngle", std::vector<double>{78.5, 61.25}, std::array<double, 2>{78.5, 61.25}, 2700, "GetMetadata ViewAngle err", true);
  // clang-format on
  ChiRect active{};
  EXPECT_EQ(-1, helper.GetActiveArraySize(testsupport::NewMeta(), &active));
  EXPECT_EQ("W 2481 " + Quoted("GetMetadata FwkCameraId fail"), Last());
}

TEST_F(MtkTest, BlackLevelsScaleWithTheRawBitDepth) {
  for (auto [bitDepth, level, result] : std::initializer_list<std::tuple<std::vector<int32_t>, float, int>>{
           {{10}, 1024, 0}, {{12}, 256, 0}, {{14}, 64, 0}, {{}, 64, -1}}) {
    Put(*meta, ANDROID_SENSOR_DYNAMIC_BLACK_LEVEL, std::vector<float>{64, 64, 64, 64});
    Put(*meta, "nuvaro.algoengine.input.raw.bpp", bitDepth);
    std::vector<float> levels(4);
    EXPECT_EQ(result, helper.GetSensorDynamicBlackLevel(meta, levels.data()));
    EXPECT_EQ(std::vector<float>(4, level), levels);
  }
}

TEST_F(MtkTest, AeRatioIsOneUntilReadAndWarnsOnZero) {
  float ratio = 0;
  EXPECT_EQ(-1, helper.GetAeRatio(meta, &ratio));
  EXPECT_EQ(1.0f, ratio);
  EXPECT_EQ("W 1781 " + Quoted("GetMetadata nuvaro.hdr.custom.adjustratio fail"), Last());
  for (auto [adjust, expected] : std::vector<std::pair<int32_t, float>>{{1000, 2.0f}, {0, 1.0f}}) {
    Put(*meta, "nuvaro.hdr.custom.adjustratio", std::vector<int32_t>{adjust});
    EXPECT_EQ(0, helper.GetAeRatio(meta, &ratio));
    EXPECT_FLOAT_EQ(expected, ratio);
    EXPECT_EQ(adjust == 0, Logged("W 1782 " + Quoted("GetMetadata nuvaro.hdr.custom.adjustratio = 0")));
  }
}

// Sees the ISP gain ask for the sensor mode type through the object.
struct ModeTypeSpy : MtkMetadataHelper {
  int GetNuvaroSensorModeType(MetaPtr, nvholder::NVSENSORMODETYPE*) override { return ++calls, -1; }
  int calls = 0;
};

// The line names the recount flag, platform gain, result and last read's result.
TEST_F(MtkTest, IspGainIsRecountedOnlyWhenEnabledAndAvailable) {
  for (auto [enable, origin, gain, info] :
       std::initializer_list<std::tuple<std::vector<int32_t>, std::vector<int32_t>, float, const char*>>{
           {{}, {8192}, 1.0f, "0 oldIspGain = 1.000000 *ispGain = 1.000000 retIspGain = -1."},
           {{0}, {8192}, 1.0f, "0 oldIspGain = 1.000000 *ispGain = 1.000000 retIspGain = 0."},
           {{1}, {8192}, 2.0f, "1 oldIspGain = 1.000000 *ispGain = 2.000000 retIspGain = 0."},
           {{1}, {}, 1.0f, "1 oldIspGain = 1.000000 *ispGain = 1.000000 retIspGain = -1."}}) {
    Put(*meta, MTK_3A_FEATURE_AE_ISP_GAIN_VALUE, std::vector<int32_t>{4096});
    Put(*meta, "nuvaro.custom.ispgain.recount.enable", enable);
    Put(*meta, "nuvaro.custom.ispgain.origin.value", origin);
    ModeTypeSpy spy;
    float out = 0;
    EXPECT_EQ(0, spy.GetIspGain(meta, &out));
    EXPECT_EQ(gain, out);
    EXPECT_TRUE(Logged(std::string("I 1603 GetIspGain recountEnale = ") + info)) << info;
    EXPECT_EQ(1, spy.calls);
  }
}

// Without the flag's tag the tone gain's own first byte serves as the flag.
TEST_F(MtkTest, ToneGainAppliesUnlessSafeExposureReadsNonZero) {
  for (auto [toneGain, safe, adrc, faceTarget, faceResult] :
       std::initializer_list<std::tuple<int32_t, std::vector<uint8_t>, float, float, int>>{
           {512, {0}, .5f, 50, 0}, {512, {1}, 1, 100, 0}, {512, {}, .5f, 50, -1}, {513, {}, 1, 100, -1}}) {
    Put(*meta, "nuvaro.ae.mid.tonegain", std::vector<int32_t>{toneGain});
    Put(*meta, "nuvaro.safe.exposure.enabled", safe);
    Put(*meta, "nuvaro.ae.average.face.luma", std::vector<int32_t>{100});
    float outAdrc = 0, outFace = 0;
    EXPECT_EQ(0, helper.GetAdrcGain(meta, &outAdrc));
    EXPECT_EQ(adrc, outAdrc);
    EXPECT_EQ(faceResult, helper.GetFaceLumaTarget(meta, &outFace));
    EXPECT_EQ(faceTarget, outFace);
  }
}

TEST_F(MtkTest, HistogramIsFoldedAndAwbTakesTheFourthGain) {
  Put(*meta, "nuvaro.histogram.stats", std::vector<int32_t>(1024, 3));
  Put(*meta, ANDROID_COLOR_CORRECTION_GAINS, std::vector<float>{2.0f, 1.0f, 1.1f, 1.5f});
  Put(*meta, MTK_3A_FEATURE_AWB_COLOR_TEMPERATURE, std::vector<float>{5000});
  nvholder::PreviewBrightnessInfo info{};
  nvholder::NUAWBFrameControl awb{};
  ASSERT_EQ(0, helper.GetPreviewBrightnessInfo(meta, &info));
  ASSERT_EQ(0, helper.GetAWBFrameControl(meta, &awb));
  EXPECT_EQ((Quad{256, 12, 12}), (Quad{info.binCount, info.bins[0], info.bins[255]}));
  EXPECT_EQ((std::array<float, 4>{2.0f, 1.0f, 1.5f, 5000}),
            (std::array<float, 4>{awb.gains[0], awb.gains[1], awb.gains[2], awb.colorTemperature}));
}

TEST_F(MtkTest, GammaTablesKeepTheDefaultsWithoutThePlatformCurve) {
  nvholder::GammaTableInfo tables{};
  EXPECT_EQ(-1, helper.GetGammaOutput(meta, &tables));
  EXPECT_EQ("W 1381 " + Quoted("GetMetadata nuvaro.supernight.gammainfo fail 1"), Last());
  EXPECT_EQ((Quad{0, 13}), (Quad{uint32_t(tables.isValid), tables.gammaTable[1]}));
  Put(*meta, MTK_SUPERNIGHT_GAMMA_INFO, std::vector<int32_t>(256, 700));
  ASSERT_EQ(0, helper.GetGammaOutput(meta, &tables));
  EXPECT_EQ((Quad{1, 700, 1023, 2}), (Quad{uint32_t(tables.isValid), tables.gammaTable[255],
                                           tables.gammaTable[256], tables.linearTable[1]}));
  EXPECT_EQ("D 1382 gammaInfo.isGammaValid = 1", Last());
  nvholder::GammaInfo info{};
  ASSERT_EQ(0, helper.GetGammaOutput(meta, &info));
  EXPECT_EQ((Quad{1, 700}), (Quad{uint32_t(info.isGammaValid), info.gamma[0]}));
}

// Frame result: four 80-word entries from word 96, each a camera id and, at word 4, its mode.
TEST_F(MtkTest, SensorModeTypeComesFromTheCamerasLastFrameResultEntry) {
  std::vector<int32_t> frameResult(416, -9);
  for (auto [entry, id, mode] : {std::array<int, 3>{0, kCamera, 3}, {1, 1, 8}, {3, kCamera, 5}}) {
    frameResult[96 + 80 * entry] = id;
    frameResult[100 + 80 * entry] = mode;
  }
  Put(*meta, "com.nuvaro.camera.sensorpolicy.frameresult", frameResult);
  nvholder::NVSENSORMODETYPE type = -1;
  ASSERT_EQ(0, helper.GetNuvaroSensorModeType(meta, &type));
  EXPECT_EQ(11, type);
  EXPECT_EQ("D 2103 fwkId: 5, sensorModeType 5 => 11", Last());
  testsupport::BindCamera(*meta, 9, cameraMeta);
  ASSERT_EQ(0, helper.GetNuvaroSensorModeType(meta, &type));
  EXPECT_EQ("D 2103 fwkId: 9, sensorModeType 0 => 0", Last());
  EXPECT_EQ(-1, helper.GetNuvaroSensorModeType(meta, nullptr));
  EXPECT_EQ("W 2100 " + Quoted("arg err"), Last());
}

// Without a holder the record stays as passed: callers preset H and V.
TEST_F(MtkTest, ShiftFromHolderFillsTheQueryAndLeavesTheRecordWithoutHolder) {
  EXPECT_EQ(-1, helper.GetShiftDataFromHolder(123456, 2, nullptr));
  EXPECT_EQ("E 2200 " + Quoted("arg err"), Last());
  EXPECT_EQ(0, fakeadapter::GetInstanceCount()) << "a null record loads nothing";
  fakeadapter::SetShiftAnswer(true, 12, -4, 0);
  nvholder::ShiftData shift, before;
  std::memset(&shift, 0x5A, sizeof shift);
  before = shift;
  ASSERT_EQ(0, helper.GetShiftDataFromHolder(123456, 2, &shift));
  const nvholder::ShiftData q = fakeadapter::LastQuery();
  EXPECT_EQ((std::array<int64_t, 6>{123456, 2, 0, 60000000, 12, -4}),
            (std::array<int64_t, 6>{q.timestamp, q.phyCameraId, q.nodeType, fakeadapter::LastInterval(),
                                    shift.shiftX, shift.shiftY}));
  EXPECT_EQ(0, std::memcmp(&before.anchorTimestamp, &q.anchorTimestamp, 24)) << "the holder's bytes as given";
  EXPECT_EQ("I 2201 [getShift] phyId:2, timestamp:123456, H,V = (12,-4)", Last());
  fakeadapter::SetMode(fakeadapter::Mode::kNoHolder);
  before = shift;
  EXPECT_EQ(0, helper.GetShiftDataFromHolder(99, 3, &shift));
  EXPECT_EQ(0, std::memcmp(&before, &shift, sizeof shift));
  EXPECT_EQ(1, fakeadapter::QueryCount());
}

}  // namespace
}  // namespace mtktest
