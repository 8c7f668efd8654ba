// The core read and write: tag forms and their precedence, failure order,
// messages and line ids.
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

constexpr uint32_t kUndeclared = 0xFFFFFFFFu;

class Core : public ::testing::Test {
 protected:
  void TearDown() override { MetaTagWrapper::getInstance().resetTags(); }

  // Reads with a null start pointer; returns the result, data in `data`.
  int Read(metahelper::MetaPtr meta, const char* name, META_TAG_INDEX index, uint32_t tag,
           uint32_t* count = nullptr) {
    data = nullptr;
    return helper.GetMetaData(std::move(meta), name, index, tag, &data, count);
  }

  metahelper::metadataHelperBase helper;
  void* data = nullptr;
};
using CoreRead = Core;
using CoreWrite = Core;

// The read and the write check their arguments in the same order; each
// failure has its own line id, and nothing is read or written.
TEST_F(Core, FailuresInOrderWithTheirLineIds) {
  struct Case {
    const char* what;
    bool withMeta;
    const char* name;
    META_TAG_INDEX index;
    std::vector<std::string> readLog, writeLog;
  };
  MetaTagWrapper::getInstance().setTag(META_SHOOTING_TIMESTAMP, kUndeclared);
  const std::string undeclared = "metadata not declared, tagindex " + std::to_string(META_SHOOTING_TIMESTAMP);
  const std::string readErr = "D 36 \"GetMetadata err\"";
  // clang-format off
  const Case cases[] = {
      {"no container, nothing else looked at", false, "x", META_SHOOTING_TIMESTAMP, {"E 13 \"pArg is null\""}, {"E 48 \"pArg is null\""}},
      {"no tag named at all",                  true,  nullptr, META_NO_INDEX,       {"E 16 \"pArg is null\""}, {"E 51 \"pArg is null\""}},
      {"undeclared index",                     true,  nullptr, META_SHOOTING_TIMESTAMP, {"E 23 " + undeclared, readErr}, {"E 57 " + undeclared}},
      {"unknown name (silent in the write)",   true,  "no.such.tag", META_NO_INDEX, {readErr}, {}},
  };
  // clang-format on
  for (const Case& c : cases) {
    auto meta = c.withMeta ? NewMeta() : nullptr;
    LogCapture log;
    EXPECT_EQ(-1, Read(meta, c.name, c.index, 0)) << c.what;
    EXPECT_EQ(c.readLog, log.Summary()) << c.what;
    EXPECT_EQ(nullptr, data) << c.what;
    log.Clear();
    int64_t value = 5;
    EXPECT_EQ(-1, helper.SetMetaData<void>(meta, c.name, c.index, 0, &value, 1)) << c.what;
    EXPECT_EQ(c.writeLog, log.Summary()) << c.what;
    if (meta) EXPECT_EQ(0u, meta->entryCount()) << c.what;
  }
}

TEST_F(CoreRead, TagFormsAndPrecedence) {
  auto meta = NewMeta();
  Put(*meta, ANDROID_SENSOR_EXPOSURE_TIME, std::vector<int64_t>{111});
  Put(*meta, ANDROID_SENSOR_FRAME_DURATION, std::vector<int64_t>{222});
  Put(*meta, META_SHOOTING_TIMESTAMP, std::vector<int64_t>{333});
  const char* exposure = "android.sensor.exposureTime";
  // Name, index, number; the index wins over name and number, the name over the number.
  const std::tuple<const char*, META_TAG_INDEX, uint32_t, int64_t> cases[] = {
      {nullptr, META_NO_INDEX, ANDROID_SENSOR_FRAME_DURATION, 222},
      {exposure, META_NO_INDEX, 0, 111},
      {nullptr, META_SHOOTING_TIMESTAMP, 0, 333},
      {exposure, META_NO_INDEX, ANDROID_SENSOR_FRAME_DURATION, 111},
      {exposure, META_SHOOTING_TIMESTAMP, ANDROID_SENSOR_FRAME_DURATION, 333},
  };
  for (const auto& [name, index, tag, expected] : cases) {
    uint32_t count = 0;
    ASSERT_EQ(0, Read(meta, name, index, tag, &count)) << expected;
    EXPECT_EQ(expected, *static_cast<int64_t*>(data));
    EXPECT_EQ(1u, count);
  }
}

// A zero-count entry reads as absent; a data pointer already set keeps the
// read from printing its final message, not from failing.
TEST_F(CoreRead, FindingNothingLeavesCountAndDataAlone) {
  auto meta = NewMeta();
  ASSERT_EQ(0, meta->update(ANDROID_SENSOR_SENSITIVITY, static_cast<const int32_t*>(nullptr), 0));
  uint32_t count = 77;
  EXPECT_EQ(-1, Read(meta, nullptr, META_NO_INDEX, ANDROID_SENSOR_SENSITIVITY, &count));
  EXPECT_EQ(77u, count);
  LogCapture log;
  int stale = 0;
  data = &stale;
  EXPECT_EQ(-1, helper.GetMetaData(meta, nullptr, META_NO_INDEX, ANDROID_SENSOR_SENSITIVITY, &data, nullptr));
  EXPECT_EQ(&stale, data);
  EXPECT_TRUE(log.online.empty());
}

TEST_F(CoreWrite, EachFormWritesTheTagItNamesUntypedByTheRegisteredType) {
  auto meta = NewMeta();
  float aperture = 1.8f, haze = 0.25f;
  int white = 1023;
  const int32_t roi[] = {1, 1, 10, 20, 30, 40, 1};
  EXPECT_EQ(0, helper.SetMetaData<float>(meta, nullptr, META_NO_INDEX, ANDROID_LENS_APERTURE, &aperture, 1));
  EXPECT_EQ(0, helper.SetMetaData<int>(meta, "android.sensor.dynamicWhiteLevel", META_NO_INDEX,
                                       ANDROID_LENS_APERTURE, &white, 1));
  EXPECT_EQ(0, helper.SetMetaData<float>(meta, "android.lens.aperture", META_AWB_HAZE_RATIO, 0, &haze, 1));
  EXPECT_EQ(0, helper.SetMetaData<void>(meta, nullptr, META_NO_INDEX, 0x80060001u /* AF ROI, int32 */,
                                        const_cast<int32_t*>(roi), 7));
  EXPECT_FLOAT_EQ(1.8f, meta->find(ANDROID_LENS_APERTURE).data.f[0]);  // the index won over the name
  EXPECT_EQ(1023, meta->find(ANDROID_SENSOR_DYNAMIC_WHITE_LEVEL).data.i32[0]);
  EXPECT_FLOAT_EQ(0.25f, meta->find("com.nuvaro.3AAlgo.awbHazeRatio").data.f[0]);
  EXPECT_EQ(7u, meta->find(0x80060001u).count);
  EXPECT_EQ(40, meta->find(0x80060001u).data.i32[5]);
}

TEST_F(CoreWrite, TypeMismatchIsRefusedByTheContainerAndPassedThrough) {
  auto meta = NewMeta();
  float notAnInt = 3.0f;
  EXPECT_NE(0, helper.SetMetaData<float>(meta, nullptr, META_NO_INDEX, ANDROID_SENSOR_DYNAMIC_WHITE_LEVEL,
                                         &notAnInt, 1));
  EXPECT_EQ(0u, meta->entryCount());
}

}  // namespace
