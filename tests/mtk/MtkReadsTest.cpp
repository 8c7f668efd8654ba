// Plain platform reads: each row runs through a null output, a missing tag, a
// tag without elements and a stored value, checking result, output, message
// text, level and line id.
#include <cstring>
#include <functional>

#include "MtkFixture.h"

namespace mtktest {
namespace {

struct ReadRow {
  bool fromCamera;  // the value lives in the camera's static metadata
  int argLine;
  std::string lookupFailure;  // "W <line> <text>"
  std::function<void(NvMetadata&, bool empty)> put;
  // The result, and whether the output then equals the expected value
  // (true) or still holds only zero bytes (false).
  std::function<std::pair<int, bool>(MtkMetadataHelper&, MetaPtr, bool withOutput)> run;
};

// `Expected` may be wider than Out for operations that fill an array. Static
// reads report the camera id on the line after the argument check.
template <typename Out, typename Expected, typename Stored>
ReadRow Row(int (MtkMetadataHelper::*fn)(MetaPtr, Out*), const char* tag, std::vector<Stored> stored,
            Expected expected, int argLine, const char* message, bool fromCamera = false) {
  static_assert(sizeof(Expected) >= sizeof(Out), "storage must hold the output");
  const std::string lookupLine = std::to_string(argLine + (fromCamera ? 2 : 1));
  ReadRow row{fromCamera, argLine, "W " + lookupLine + " " + Quoted(message), {}, {}};
  row.put = [tag, stored](NvMetadata& m, bool empty) { Put(m, tag, empty ? std::vector<Stored>{} : stored); };
  row.run = [fn, expected](MtkMetadataHelper& h, MetaPtr m, bool withOutput) {
    Expected out, zero;
    std::memset(&out, 0, sizeof out);
    std::memset(&zero, 0, sizeof zero);
    const int result = (h.*fn)(std::move(m), withOutput ? reinterpret_cast<Out*>(&out) : nullptr);
    const bool written = std::memcmp(&out, &zero, sizeof out) != 0;
    EXPECT_TRUE(!written || std::memcmp(&out, &expected, sizeof out) == 0) << "unexpected output";
    return std::make_pair(result, written);
  };
  return row;
}

// Nine doubles, then a status word that reaches the record in three widths.
nvholder::panshotData Panshot(std::vector<int32_t>* words) {
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

using M = MtkMetadataHelper;
using I32 = std::vector<int32_t>;
using I64 = std::vector<int64_t>;
using F32 = std::vector<float>;

const std::vector<ReadRow>& Rows() {
  static I32 panshotWords;
  static const nvholder::panshotData panshot = Panshot(&panshotWords);
  // clang-format off
  static const std::vector<ReadRow> rows = {
      Row(&M::GetUIEV, "nuvaro.ae.exposureCompensation", I32{-2}, int{-2}, 140, "GetMetadata nuvaro.supernight.real.manualev err"),
      Row(&M::GetSensorTimestamp, "android.sensor.timestamp", I64{123456789012}, 123456789012UL, 180, "GetMetadata ANDROID_SENSOR_TIMESTAMP fail"),
      Row(&M::GetTeleFusionEnable, "nuvaro.telefusion.enabled", std::vector<uint8_t>{2}, uint8_t{2}, 260, "GetMetadata err"),
      Row(&M::GetPreviewDarkGainRatio, "nuvaro.ae.dark.tonegain", I32{512}, 0.5f, 440, "GetMetadata previewDarkGainRatio err"),
      Row(&M::GetPreviewExposure, "nuvaro.burst.last.preview.exposure.time", I64{33000000}, 33000000.0f, 540, "GetMetadata PreviewExposure err"),
      Row(&M::GetPreviewISPGain, "nuvaro.burst.last.preview.ispGain", I32{6144}, 1.5f, 560, "GetMetadata nuvaro.burst.last.preview.ispGain err"),
      Row(&M::GetMotionVelocity, "nuvaro.ai.nvsd.motionVelocity", I32{7}, nvholder::MotionVelocity{{}, 7.0f, {}}, 720, "GetMetadata motionVelocity err"),
      Row(&M::GetNoFaceLumaTarget, "nuvaro.longexposure.cwr", I32{40}, 40.0f, 1240, "GetMetadata nuvaro.longexposure.cwr err"),
      Row(&M::GetFrameLuma, "nuvaro.ae.average.frame.luma", I32{55}, 55.0f, 1260, "GetMetadata nuvaro.ae.average.frame.luma err"),
      Row(&M::GetTuningSensorMode, "nuvaro.streaming.sensormode", I32{3, 7}, int{7}, 1300, "GetMetadata nuvaro.streaming.sensormode err"),
      Row(&M::GetFaceAverageBrightness, "nuvaro.ai.asd.FaceAverageBrightness", F32{12.5f}, 12.5f, 1500, "GetMetadata FaceAverageBrightness err"),
      Row(&M::GetFacetargetAndConfidence, "nuvaro.ae.average.face.luma", I32{-5}, std::array<float, 2>{0.0f, 0.9f}, 1520, "GetMetadata faceBright err"),
      Row(&M::GetCurLuma, "nuvaro.ae.average.frame.luma", I32{56}, 56.0f, 1560, "GetMetadata nuvaro.ae.average.frame.luma err"),
      Row(&M::GetQTimerTimeStamp, "com.nuvaro.mtk.p1node.frameinfo", I64{99, 1}, 99UL, 1720, "GetMetadata com.nuvaro.mtk.p1node.frameinfo err"),
      Row(&M::GetPreviewADRCGain, "nuvaro.ae.mid.tonegain", I32{2048}, 2.0f, 1760, "GetMetadata PreviewAdrcGain err"),
      Row(&M::GetPanshotResData, "com.nuvaro.panshotTruck.Rslt4Snapshot", panshotWords, panshot, 2380, "GetMetadata com.nuvaro.panshotTruck.Rslt4Snapshot fail"),
      Row(&M::GetNuvaroFrameSyncTimestampGap, "com.nuvaro.mtk.p1node.frameinfo", I64{99, 1}, long{99}, 3320, "GetMetadata com.nuvaro.mtk.p1node.frameinfo err"),
      Row(&M::GetNuvaroMxdebandingDetectResult, "com.nuvaro.nvvi2.mxdebanding.detectResult", I32{4}, int{4}, 3360, "GetMetadata com.nuvaro.nvvi2.mxdebanding.detectResult err1"),
      Row(&M::GetLuxIndex, "com.nuvaro.statsconfigs.AecInfo", F32{123.9f}, int{123}, 3480, "GetMetadata com.nuvaro.statsconfigs.AecInfo err1"),
      Row(&M::GetLuxIndex, "com.nuvaro.statsconfigs.AecInfo", F32{-2.7f}, int{-2}, 3480, "GetMetadata com.nuvaro.statsconfigs.AecInfo err1"),
      Row(&M::GetExpIndex, "android.sensor.exposureTime", I64{5000}, long{5000}, 3520, "GetMetadata ANDROID_SENSOR_EXPOSURE_TIME err"),
      Row(&M::GetSensorGain, "com.mediatek.3afeature.aeSensorGainValue", I32{1536}, 1.5f, 3560, "GetMetadata MTK_3A_FEATURE_AE_SENSOR_GAIN_VALUE err1"),
      Row(&M::GetActiveArraySize, "android.sensor.info.activeArraySize", I32{8, 6, 4000, 3000}, ChiRect{8, 6, 4000, 3000}, 2480, "Get ACTIVE_ARRAY_SIZE err", true),
      Row(&M::GetMaxActiveArraySize, "android.sensor.info.activeArraySizeMaximumResolution", I32{0, 0, 8000, 6000}, ChiRect{0, 0, 8000, 6000}, 2500, "Get ANDROID_SENSOR_INFO_ACTIVE_ARRAY_SIZE_MAXIMUM_RESOLUTION err", true),
      Row(&M::GetLSCMapSize, "android.lens.info.shadingMapSize", I32{17, 13}, nvholder::NULSCMapSize{17, 13}, 2640, "GetMetadata ANDROID_LENS_INFO_SHADING_MAP_SIZE fail", true),
      Row(&M::GetSensorViewAngle, "com.nuvaro.lens.info.ViewAngle", std::vector<double>{78.5, 61.25}, std::array<double, 2>{78.5, 61.25}, 2700, "GetMetadata ViewAngle err", true),
  };
  // clang-format on
  return rows;
}

TEST_F(MtkTest, PlainReadsCheckTheOutputReadTheTagAndReportAsWarnings) {
  for (const ReadRow& row : Rows()) {
    SCOPED_TRACE(row.lookupFailure);
    log.Clear();
    EXPECT_EQ(-1, row.run(helper, meta, false).first);
    EXPECT_EQ(std::vector<std::string>{"E " + std::to_string(row.argLine) + " " + Quoted("arg err")},
              log.Summary());
    for (bool storedEmpty : {false, true}) {
      meta = testsupport::NewMeta();
      cameraMeta = testsupport::NewMeta();
      testsupport::BindCamera(*meta, kCamera, cameraMeta);
      if (storedEmpty) row.put(row.fromCamera ? *cameraMeta : *meta, true);
      EXPECT_EQ(std::make_pair(-1, false), row.run(helper, meta, true)) << "stored empty " << storedEmpty;
      EXPECT_EQ(row.lookupFailure, Last());
    }
    row.put(row.fromCamera ? *cameraMeta : *meta, false);
    EXPECT_EQ(std::make_pair(0, true), row.run(helper, meta, true));
  }
  ChiRect active{};
  EXPECT_EQ(-1, helper.GetActiveArraySize(testsupport::NewMeta(), &active));
  EXPECT_EQ("W 2481 " + Quoted("GetMetadata FwkCameraId fail"), Last());
}

}  // namespace
}  // namespace mtktest
