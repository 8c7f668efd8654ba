// Operations of the MediaTek helper that compute: unit conversions, gain
// rules, tables, the sensor mode type and the holder's shift query.
#include "MtkFixture.h"

namespace mtktest {
namespace {

TEST_F(MtkTest, BlackLevelsScaleWithTheRawBitDepth) {
  struct Case {
    std::vector<int32_t> bitDepth;
    float level;
    int result;
  };
  for (const Case& c : {Case{{10}, 1024, 0}, Case{{12}, 256, 0}, Case{{14}, 64, 0}, Case{{}, 64, -1}}) {
    Put(*meta, ANDROID_SENSOR_DYNAMIC_BLACK_LEVEL, std::vector<float>{64, 64, 64, 64});
    Put(*meta, "nuvaro.algoengine.input.raw.bpp", c.bitDepth);
    std::vector<float> levels(4);
    EXPECT_EQ(c.result, helper.GetSensorDynamicBlackLevel(meta, levels.data()));
    EXPECT_EQ(std::vector<float>(4, c.level), levels);
  }
}

TEST_F(MtkTest, AeRatioFollowsTheAdjustRatio) {
  for (auto [adjust, expected] : std::vector<std::pair<int32_t, float>>{
           {0, 1.0f}, {1000, 2.0f}, {9999, 1023.29f}, {10000, 0.1f}, {50000, 0.5f}, {-1000, 0.5f}}) {
    Put(*meta, "nuvaro.hdr.custom.adjustratio", std::vector<int32_t>{adjust});
    log.Clear();
    float ratio = 0;
    EXPECT_EQ(0, helper.GetAeRatio(meta, &ratio));
    EXPECT_NEAR(expected, ratio, 0.01f) << adjust;
    EXPECT_EQ(adjust == 0, Logged("W 1782 " + Quoted("GetMetadata nuvaro.hdr.custom.adjustratio = 0")));
  }
  float ratio = 0;
  EXPECT_EQ(-1, helper.GetAeRatio(testsupport::NewMeta(), &ratio));
  EXPECT_EQ(1.0f, ratio) << "written before the read";
  EXPECT_EQ("W 1781 " + Quoted("GetMetadata nuvaro.hdr.custom.adjustratio fail"), Last());
}

// Observes that the ISP gain asks for the sensor mode type through the object.
struct ModeTypeSpy : MtkMetadataHelper {
  int GetNuvaroSensorModeType(MetaPtr, nvholder::NVSENSORMODETYPE*) override {
    ++calls;
    return -1;
  }
  int calls = 0;
};

TEST_F(MtkTest, IspGainIsRecountedOnlyWhenEnabledAndAvailable) {
  struct Case {
    std::vector<int32_t> enable, origin;
    float gain;
    const char* info;  // recount flag, platform gain, result, last read's result
  };
  for (const Case& c :
       {Case{{}, {8192}, 1.0f, "0 oldIspGain = 1.000000 *ispGain = 1.000000 retIspGain = -1."},
        Case{{0}, {8192}, 1.0f, "0 oldIspGain = 1.000000 *ispGain = 1.000000 retIspGain = 0."},
        Case{{1}, {8192}, 2.0f, "1 oldIspGain = 1.000000 *ispGain = 2.000000 retIspGain = 0."},
        Case{{1}, {}, 1.0f, "1 oldIspGain = 1.000000 *ispGain = 1.000000 retIspGain = -1."}}) {
    Put(*meta, MTK_3A_FEATURE_AE_ISP_GAIN_VALUE, std::vector<int32_t>{4096});
    Put(*meta, "nuvaro.custom.ispgain.recount.enable", c.enable);
    Put(*meta, "nuvaro.custom.ispgain.origin.value", c.origin);
    ModeTypeSpy spy;
    float gain = 0;
    EXPECT_EQ(0, spy.GetIspGain(meta, &gain));
    EXPECT_EQ(c.gain, gain);
    EXPECT_TRUE(Logged(std::string("I 1603 GetIspGain recountEnale = ") + c.info)) << c.info;
    EXPECT_EQ(1, spy.calls);
  }
}

TEST_F(MtkTest, ToneGainAppliesUnlessSafeExposureReadsNonZero) {
  struct Case {
    int32_t toneGain, faceLuma;
    std::vector<uint8_t> safe;  // empty: the flag's tag is missing
    float adrc, faceTarget;
    int faceResult;
  };
  // Without the flag's tag the tone gain's own first byte serves as the flag.
  for (const Case& c :
       {Case{512, 100, {0}, 0.5f, 50, 0}, Case{512, 100, {1}, 1.0f, 100, 0}, Case{512, 100, {}, 0.5f, 50, -1},
        Case{513, 100, {}, 1.0f, 100, -1}, Case{512, -5, {0}, 0.5f, 0, 0}}) {
    Put(*meta, "nuvaro.ae.mid.tonegain", std::vector<int32_t>{c.toneGain});
    Put(*meta, "nuvaro.safe.exposure.enabled", c.safe);
    Put(*meta, "nuvaro.ae.average.face.luma", std::vector<int32_t>{c.faceLuma});
    float adrc = 0, faceTarget = 0;
    EXPECT_EQ(0, helper.GetAdrcGain(meta, &adrc));
    EXPECT_EQ(c.adrc, adrc);
    EXPECT_EQ(c.faceResult, helper.GetFaceLumaTarget(meta, &faceTarget));
    EXPECT_EQ(c.faceTarget, faceTarget);
  }
}

TEST_F(MtkTest, HistogramFoldsFourBinsIntoOneAndAwbTakesTheFourthGain) {
  std::vector<int32_t> bins(1024);
  for (int i = 0; i < 1024; ++i) bins[i] = i;
  Put(*meta, "nuvaro.histogram.stats", bins);
  nvholder::PreviewBrightnessInfo info{};
  ASSERT_EQ(0, helper.GetPreviewBrightnessInfo(meta, &info));
  EXPECT_EQ((Quad{256, 6, 22, 4086}), (Quad{info.binCount, info.bins[0], info.bins[1], info.bins[255]}));
  Put(*meta, ANDROID_COLOR_CORRECTION_GAINS, std::vector<float>{2.0f, 1.0f, 1.1f, 1.5f});
  Put(*meta, MTK_3A_FEATURE_AWB_COLOR_TEMPERATURE, std::vector<float>{5000});
  nvholder::NUAWBFrameControl awb{};
  ASSERT_EQ(0, helper.GetAWBFrameControl(meta, &awb));
  EXPECT_EQ((std::array<float, 4>{2.0f, 1.0f, 1.5f, 5000}),
            (std::array<float, 4>{awb.gains[0], awb.gains[1], awb.gains[2], awb.colorTemperature}));
}

TEST_F(MtkTest, GammaTablesKeepTheDefaultsWithoutThePlatformCurve) {
  nvholder::GammaTableInfo tables{};
  EXPECT_EQ(-1, helper.GetGammaOutput(meta, &tables));
  EXPECT_EQ("W 1381 " + Quoted("GetMetadata nuvaro.supernight.gammainfo fail 1"), Last());
  EXPECT_EQ(0, tables.isValid);
  EXPECT_EQ((Quad{2, 256, 1016, 1023}), (Quad{tables.linearTable[1], tables.linearTable[128],
                                              tables.linearTable[255], tables.linearTable[256]}));
  EXPECT_EQ((Quad{0, 13, 1020, 1023}), (Quad{tables.gammaTable[0], tables.gammaTable[1],
                                             tables.gammaTable[255], tables.gammaTable[256]}));
  Put(*meta, MTK_SUPERNIGHT_GAMMA_INFO, std::vector<int32_t>(256, 700));
  ASSERT_EQ(0, helper.GetGammaOutput(meta, &tables));
  EXPECT_EQ((Quad{1, 700, 1023, 2}), (Quad{uint32_t(tables.isValid), tables.gammaTable[255],
                                           tables.gammaTable[256], tables.linearTable[1]}));
  EXPECT_EQ("D 1382 gammaInfo.isGammaValid = 1", Last());
  testsupport::LogCapture::SetSettings(0, 64, 0, 64, 1);  // the helper's group only
  log.Clear();
  nvholder::GammaInfo info{};
  ASSERT_EQ(0, helper.GetGammaOutput(meta, &info));
  EXPECT_EQ(1, info.isGammaValid);
  EXPECT_EQ(700u, info.gamma[0]);
  EXPECT_TRUE(log.Summary().empty()) << "the gamma debug line belongs to the ISP group";
}

// Frame result: four 80-word per-camera entries from word 96; word 0 of an
// entry is a camera id, word 4 its platform sensor mode.
TEST_F(MtkTest, SensorModeTypeComesFromTheCamerasLastFrameResultEntry) {
  std::vector<int32_t> frameResult(416, -9);
  for (auto [entry, id, mode] :
       std::initializer_list<std::array<int, 3>>{{0, kCamera, 3}, {1, 1, 8}, {2, kCamera, 5}}) {
    frameResult[96 + 80 * entry] = id;
    frameResult[100 + 80 * entry] = mode;
  }
  Put(*meta, "com.nuvaro.camera.sensorpolicy.frameresult", frameResult);
  nvholder::NVSENSORMODETYPE type = -1;
  ASSERT_EQ(0, helper.GetNuvaroSensorModeType(meta, &type));
  EXPECT_EQ(11, type);
  EXPECT_EQ("D 2103 fwkId: 5, sensorModeType 5 => 11", Last());
  const MetaPtr anonymous = testsupport::NewMeta();
  Put(*anonymous, "com.nuvaro.camera.sensorpolicy.frameresult", std::vector<int32_t>(416, -1));
  ASSERT_EQ(0, helper.GetNuvaroSensorModeType(anonymous, &type));
  EXPECT_EQ(0, type) << "no camera id, no mode";
  log.Clear();
  EXPECT_EQ(-1, helper.GetNuvaroSensorModeType(meta, nullptr));
  EXPECT_EQ(std::vector<std::string>{"W 2100 " + Quoted("arg err")}, log.Summary());
}

TEST_F(MtkTest, ShiftFromHolderFillsTheQueryAndLeavesTheRecordWithoutHolder) {
  fakeadapter::SetShiftAnswer(true, 12, -4, 0);
  nvholder::ShiftData shift{};
  shift.nodeType = 77;
  ASSERT_EQ(0, helper.GetShiftDataFromHolder(123456, 2, &shift));
  const nvholder::ShiftData query = fakeadapter::LastQuery();
  EXPECT_EQ((std::array<int64_t, 4>{123456, 2, 0, 60000000}),
            (std::array<int64_t, 4>{query.timestamp, query.phyCameraId, query.nodeType,
                                    fakeadapter::LastInterval()}));
  EXPECT_EQ("I 2201 [getShift] phyId:2, timestamp:123456, H,V = (12,-4)", Last());
  fakeadapter::SetMode(fakeadapter::Mode::kNoHolder);
  nvholder::ShiftData untouched{};
  untouched.shiftX = untouched.shiftY = 7;
  log.Clear();
  EXPECT_EQ(0, helper.GetShiftDataFromHolder(99, 3, &untouched));
  EXPECT_EQ((std::array<int64_t, 3>{0, 7, 7}),
            (std::array<int64_t, 3>{untouched.timestamp, untouched.shiftX, untouched.shiftY}));
  EXPECT_TRUE(log.Summary().empty());
  EXPECT_EQ(-1, helper.GetShiftDataFromHolder(99, 3, nullptr));
  EXPECT_EQ(1, fakeadapter::QueryCount());
}

}  // namespace
}  // namespace mtktest
