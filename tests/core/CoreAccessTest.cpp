// The core read and write: tag forms and their precedence, failure order,
// messages and line ids.
#include <gtest/gtest.h>
#include <system/camera_metadata.h>

#include <string>
#include <vector>

#include "TestSupport.h"
#include "metadataHelperBase.h"

namespace {

using testsupport::LogCapture;
using testsupport::NewMeta;
using testsupport::Put;

constexpr uint32_t kUndeclared = 0xFFFFFFFFu;
const std::string kNull = "E 13 \"pArg is null\"";

class CoreRead : public ::testing::Test {
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

TEST_F(CoreRead, FailuresInOrderWithTheirLineIds) {
  struct Case {
    const char* what;
    bool withMeta;
    const char* name;
    META_TAG_INDEX index;
    uint32_t tag;
    std::vector<std::string> log;
  };
  MetaTagWrapper::getInstance().setTag(META_SHOOTING_TIMESTAMP, kUndeclared);
  const Case cases[] = {
      {"no container, nothing else looked at", false, nullptr, META_SHOOTING_TIMESTAMP, 0, {kNull}},
      {"no tag named at all", true, nullptr, META_NO_INDEX, 0, {"E 16 \"pArg is null\""}},
      {"undeclared index",
       true,
       nullptr,
       META_SHOOTING_TIMESTAMP,
       0,
       {"E 23 metadata not declared, tagindex " + std::to_string(META_SHOOTING_TIMESTAMP),
        "D 36 \"GetMetadata err\""}},
      {"absent numeric tag",
       true,
       nullptr,
       META_NO_INDEX,
       ANDROID_SENSOR_EXPOSURE_TIME,
       {"D 36 \"GetMetadata err\""}},
      {"unknown name", true, "no.such.tag", META_NO_INDEX, 0, {"D 36 \"GetMetadata err\""}},
  };
  for (const Case& c : cases) {
    LogCapture log;
    EXPECT_EQ(-1, Read(c.withMeta ? NewMeta() : nullptr, c.name, c.index, c.tag)) << c.what;
    EXPECT_EQ(c.log, log.Summary()) << c.what;
    EXPECT_EQ(nullptr, data) << c.what;
  }
}

TEST_F(CoreRead, TagFormsAndPrecedence) {
  auto meta = NewMeta();
  Put(*meta, ANDROID_SENSOR_EXPOSURE_TIME, std::vector<int64_t>{111});
  Put(*meta, ANDROID_SENSOR_FRAME_DURATION, std::vector<int64_t>{222});
  Put(*meta, META_SHOOTING_TIMESTAMP, std::vector<int64_t>{333});
  struct Case {
    const char* what;
    const char* name;
    META_TAG_INDEX index;
    uint32_t tag;
    int64_t expected;
  };
  const Case cases[] = {
      {"by number", nullptr, META_NO_INDEX, ANDROID_SENSOR_FRAME_DURATION, 222},
      {"by Android name", "android.sensor.exposureTime", META_NO_INDEX, 0, 111},
      {"by index", nullptr, META_SHOOTING_TIMESTAMP, 0, 333},
      {"the name wins over the number", "android.sensor.exposureTime", META_NO_INDEX,
       ANDROID_SENSOR_FRAME_DURATION, 111},
      {"the index wins over name and number", "android.sensor.exposureTime", META_SHOOTING_TIMESTAMP,
       ANDROID_SENSOR_FRAME_DURATION, 333},
  };
  for (const Case& c : cases) {
    uint32_t count = 0;
    ASSERT_EQ(0, Read(meta, c.name, c.index, c.tag, &count)) << c.what;
    EXPECT_EQ(c.expected, *static_cast<int64_t*>(data)) << c.what;
    EXPECT_EQ(1u, count) << c.what;
  }
}

TEST_F(CoreRead, ZeroCountReadsAsAbsentAndLeavesData) {
  auto meta = NewMeta();
  ASSERT_EQ(0, meta->update(ANDROID_SENSOR_SENSITIVITY, static_cast<const int32_t*>(nullptr), 0));
  uint32_t count = 77;
  EXPECT_EQ(-1, Read(meta, nullptr, META_NO_INDEX, ANDROID_SENSOR_SENSITIVITY, &count));
  EXPECT_EQ(77u, count);
}

TEST_F(CoreRead, StaleDataPointerSuppressesTheFinalMessageButNotTheFailure) {
  LogCapture log;
  int stale = 0;
  data = &stale;
  EXPECT_EQ(
      -1, helper.GetMetaData(NewMeta(), nullptr, META_NO_INDEX, ANDROID_SENSOR_SENSITIVITY, &data, nullptr));
  EXPECT_EQ(&stale, data);
  EXPECT_TRUE(log.online.empty());
}

class CoreWrite : public ::testing::Test {
 protected:
  void TearDown() override { MetaTagWrapper::getInstance().resetTags(); }
  metahelper::metadataHelperBase helper;
};

TEST_F(CoreWrite, FailuresInOrderWithTheirLineIds) {
  MetaTagWrapper::getInstance().setTag(META_AWB_HAZE_RATIO, kUndeclared);
  float value = 1.5f;
  struct Case {
    const char* what;
    bool withMeta;
    const char* name;
    META_TAG_INDEX index;
    uint32_t tag;
    std::vector<std::string> log;
  };
  const Case cases[] = {
      {"no container", false, "com.nuvaro.3AAlgo.awbHazeRatio", META_NO_INDEX, 0, {"E 48 \"pArg is null\""}},
      {"no tag named", true, nullptr, META_NO_INDEX, 0, {"E 51 \"pArg is null\""}},
      {"undeclared index",
       true,
       nullptr,
       META_AWB_HAZE_RATIO,
       0,
       {"E 57 metadata not declared, tagindex " + std::to_string(META_AWB_HAZE_RATIO)}},
      {"unknown name fails silently", true, "no.such.tag", META_NO_INDEX, ANDROID_LENS_APERTURE, {}},
  };
  for (const Case& c : cases) {
    LogCapture log;
    auto meta = c.withMeta ? NewMeta() : nullptr;
    EXPECT_EQ(-1, helper.SetMetaData<float>(meta, c.name, c.index, c.tag, &value, 1)) << c.what;
    EXPECT_EQ(c.log, log.Summary()) << c.what;
    if (meta) EXPECT_EQ(0u, meta->entryCount()) << c.what;
  }
}

TEST_F(CoreWrite, EachFormWritesTheTagItNames) {
  auto meta = NewMeta();
  float aperture = 1.8f;
  int white = 1023;
  EXPECT_EQ(0, helper.SetMetaData<float>(meta, nullptr, META_NO_INDEX, ANDROID_LENS_APERTURE, &aperture, 1));
  EXPECT_EQ(0, helper.SetMetaData<int>(meta, "android.sensor.dynamicWhiteLevel", META_NO_INDEX,
                                       ANDROID_LENS_APERTURE, &white, 1));
  float haze = 0.25f;
  EXPECT_EQ(0, helper.SetMetaData<float>(meta, "android.lens.aperture", META_AWB_HAZE_RATIO, 0, &haze, 1));
  EXPECT_FLOAT_EQ(1.8f, meta->find(ANDROID_LENS_APERTURE).data.f[0]);  // the index won over the name
  EXPECT_EQ(1023, meta->find(ANDROID_SENSOR_DYNAMIC_WHITE_LEVEL).data.i32[0]);
  EXPECT_FLOAT_EQ(0.25f, meta->find("com.nuvaro.3AAlgo.awbHazeRatio").data.f[0]);
}

TEST_F(CoreWrite, TypeMismatchIsRefusedByTheContainerAndPassedThrough) {
  auto meta = NewMeta();
  float notAnInt = 3.0f;
  const int result = helper.SetMetaData<float>(meta, nullptr, META_NO_INDEX,
                                               ANDROID_SENSOR_DYNAMIC_WHITE_LEVEL, &notAnInt, 1);
  EXPECT_NE(0, result);
  EXPECT_EQ(0u, meta->entryCount());
}

TEST_F(CoreWrite, UntypedWriteUsesTheRegisteredType) {
  auto meta = NewMeta();
  const int32_t roi[] = {1, 1, 10, 20, 30, 40, 1};
  ASSERT_EQ(0, helper.SetMetaData<void>(meta, nullptr, META_NO_INDEX, 0x80060001u /* AF ROI, int32 */,
                                        const_cast<int32_t*>(roi), 7));
  const auto entry = meta->find(0x80060001u);
  ASSERT_EQ(7u, entry.count);
  EXPECT_EQ(40, entry.data.i32[5]);
}

}  // namespace
