// The core read and write where no row reaches them: tag forms, no tag, unknown name, stale pointer.
#include <gtest/gtest.h>
#include <system/camera_metadata.h>

#include <string>
#include <tuple>
#include <vector>

#include "TestSupport.h"
#include "metadataHelperBase.h"

namespace {

using testsupport::LogCapture;
using testsupport::NewMeta;
using testsupport::Put;

metahelper::metadataHelperBase helper;

// Nothing is read or written; an unknown name is left for the setter to report.
TEST(Core, NoTagNamedOrAnUnknownName) {
  const std::tuple<const char*, std::vector<std::string>, std::vector<std::string>> cases[] = {
      {nullptr, {R"(E 16 "pArg is null")"}, {R"(E 51 "pArg is null")"}},
      {"no.such.tag", {R"(D 36 "GetMetadata err")"}, {}},
  };
  for (const auto& [name, readLog, writeLog] : cases) {
    auto meta = NewMeta();
    LogCapture log;
    void* data = nullptr;
    EXPECT_EQ(-1, helper.GetMetaData(meta, name, META_NO_INDEX, 0, &data, nullptr));
    EXPECT_EQ(readLog, log.Summary());
    log.Clear();
    int64_t value = 5;
    EXPECT_EQ(-1, helper.SetMetaData<void>(meta, name, META_NO_INDEX, 0, &value, 1));
    EXPECT_EQ(writeLog, log.Summary());
    EXPECT_EQ(0u, meta->entryCount());
  }
}

// Each form alone (the last two rows): the index wins over name and number, the name over the number.
TEST(Core, TagFormsAndPrecedence) {
  auto meta = NewMeta();
  Put(*meta, ANDROID_SENSOR_EXPOSURE_TIME, std::vector<int64_t>{111});
  Put(*meta, ANDROID_SENSOR_FRAME_DURATION, std::vector<int64_t>{222});
  Put(*meta, META_SHOOTING_TIMESTAMP, std::vector<int64_t>{333});
  const char* exposure = "android.sensor.exposureTime";
  const std::tuple<const char*, META_TAG_INDEX, uint32_t, int64_t> cases[] = {
      {nullptr, META_NO_INDEX, ANDROID_SENSOR_FRAME_DURATION, 222},
      {exposure, META_NO_INDEX, ANDROID_SENSOR_FRAME_DURATION, 111},
      {exposure, META_SHOOTING_TIMESTAMP, ANDROID_SENSOR_FRAME_DURATION, 333},
  };
  for (const auto& [name, index, tag, expected] : cases) {
    void* data = nullptr;
    uint32_t count = 0;
    ASSERT_EQ(0, helper.GetMetaData(meta, name, index, tag, &data, &count)) << expected;
    EXPECT_EQ(expected, *static_cast<int64_t*>(data));
    EXPECT_EQ(1u, count);
  }
  float haze = 0.25f;
  int white = 1023;
  EXPECT_EQ(0, helper.SetMetaData<int>(meta, "android.sensor.dynamicWhiteLevel", META_NO_INDEX,
                                       ANDROID_LENS_APERTURE, &white, 1));
  EXPECT_EQ(0, helper.SetMetaData<float>(meta, "android.lens.aperture", META_AWB_HAZE_RATIO, 0, &haze, 1));
  EXPECT_EQ(1023, meta->find(ANDROID_SENSOR_DYNAMIC_WHITE_LEVEL).data.i32[0]);
  EXPECT_FLOAT_EQ(0.25f, meta->find("com.nuvaro.3AAlgo.awbHazeRatio").data.f[0]);
  EXPECT_EQ(0u, meta->find(ANDROID_LENS_APERTURE).count);
}

// A zero-count entry reads as absent, leaving the count alone; a data pointer
// already set keeps the read from printing its final message, not from failing.
TEST(Core, FindingNothingLeavesCountAndDataAlone) {
  auto meta = NewMeta();
  ASSERT_EQ(0, meta->update(ANDROID_SENSOR_SENSITIVITY, static_cast<const int32_t*>(nullptr), 0));
  LogCapture log;
  uint32_t count = 77;
  int stale = 0;
  void* data = &stale;
  EXPECT_EQ(-1, helper.GetMetaData(meta, nullptr, META_NO_INDEX, ANDROID_SENSOR_SENSITIVITY, &data, &count));
  EXPECT_EQ(77u, count);
  EXPECT_EQ(&stale, data);
  EXPECT_TRUE(log.online.empty());
}

}  // namespace
