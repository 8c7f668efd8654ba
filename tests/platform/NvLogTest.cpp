// What the online hook and the offline log hand to their sinks, and the
// settings the logging library starts with.
#include <android/log.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "nvdebug/NvLog.h"

namespace {

using nvdebug::Log;
using nvdebug::LogRecord;

class LogSinks : public ::testing::Test {
 protected:
  void TearDown() override {
    nvdebug::setOnlineObserver(nullptr);
    nvdebug::setOfflineObserver(nullptr);
    unsetenv("NVCAM_OFFLINE_LOG_FILE");
  }
  std::vector<LogRecord> records;  // file and function point at literals here
};

TEST(LogHelpers, FileNameIsTheLastPathComponent) {
  const struct {
    const char* path;
    const char* name;
  } cases[] = {
      {"/src/metadataHelper/common/metadataHelperBase.cpp", "metadataHelperBase.cpp"},
      {"metadataHelperBase.cpp", "metadataHelperBase.cpp"},
      {"relative/dir/a.cpp", "a.cpp"},
      {"/trailing/", ""},
      {"", ""},
  };
  for (const auto& c : cases) {
    const char* name = Log::getFileName(c.path);
    EXPECT_STREQ(c.name, name) << c.path;
    EXPECT_TRUE(name >= c.path && name <= c.path + strlen(c.path)) << "must point into the path";
  }
}

TEST(LogHelpers, GroupNames) {
  EXPECT_STREQ("ALGO", Log::nvaGroupToString(64));
  EXPECT_STREQ("ISP", Log::nvaGroupToString(2));
  for (uint32_t group : {0u, 3u, 0x80000000u, 0xFFFFFFFFu}) {
    ASSERT_NE(nullptr, Log::nvaGroupToString(group));
    EXPECT_STRNE("ALGO", Log::nvaGroupToString(group)) << group;
  }
}

TEST_F(LogSinks, SecureLogWithoutObserverReturnsZero) {
  EXPECT_EQ(0, Log::secureLog(64, "a.cpp", 1, "f", 'E', "\"%s\"", "arg err"));
}

TEST_F(LogSinks, SecureLogHandsTheFormattedRecordAndReturnsTheObserverResult) {
  nvdebug::setOnlineObserver([this](const LogRecord& record) {
    records.push_back(record);
    return 7;
  });
  EXPECT_EQ(7, Log::secureLog(64, "metadataHelperBase.cpp", 23, "GetMetaData", 'E',
                              "metadata not declared, tagindex %d", 468));
  ASSERT_EQ(1u, records.size());
  const LogRecord& r = records[0];
  EXPECT_EQ(64u, r.group);
  EXPECT_EQ('E', r.level);
  EXPECT_STREQ("metadataHelperBase.cpp", r.file);
  EXPECT_EQ(23, r.line);
  EXPECT_STREQ("GetMetaData", r.function);
  EXPECT_EQ("metadata not declared, tagindex 468", r.text);

  nvdebug::setOnlineObserver(nullptr);
  EXPECT_EQ(0, Log::secureLog(64, "a.cpp", 1, "f", 'D', "gone"));
  EXPECT_EQ(1u, records.size());
}

TEST_F(LogSinks, OfflineLogGetsLevelLetterAndWholeText) {
  nvdebug::setOfflineObserver([this](const LogRecord& record) { records.push_back(record); });
  for (const char* level : {"E", "W", "I", "D", "V"}) {
    Log::logSystem(64, level, "b.cpp", "GetX", 36, "\"GetMetadata err\"");
  }
  const std::string payload(1000, 'x');  // longer than any fixed buffer
  Log::logSystem(2, "D", "MtkMetadataHelper.cpp", "GetGammaOutput", 9, "[%s] %d", payload.c_str(), 42);
  ASSERT_EQ(6u, records.size());
  EXPECT_EQ("[" + payload + "] 42", records[5].text);
  EXPECT_EQ('V', records[4].level);
  EXPECT_EQ('W', records[1].level);
  EXPECT_EQ(36, records[4].line);
  EXPECT_STREQ("GetX", records[4].function);
  EXPECT_EQ("\"GetMetadata err\"", records[4].text);
}

TEST_F(LogSinks, OfflineLogAppendsToTheNamedFileWithoutObserver) {
  char path[] = "/tmp/nvcam_offline_XXXXXX";
  const int fd = mkstemp(path);
  ASSERT_GE(fd, 0);
  close(fd);
  setenv("NVCAM_OFFLINE_LOG_FILE", path, 1);
  Log::logSystem(64, "E", "first.cpp", "One", 1, "value %d", 1);
  Log::logSystem(64, "W", "second.cpp", "Two", 2, "value %d", 2);

  std::ifstream in(path);
  std::stringstream content;
  content << in.rdbuf();
  unlink(path);
  const std::string text = content.str();
  EXPECT_NE(std::string::npos, text.find("first.cpp:1 One() value 1\n"));
  EXPECT_NE(std::string::npos, text.find("second.cpp:2 Two() value 2\n"));
  EXPECT_LT(text.find("value 1"), text.find("value 2"));
}

TEST(LogSettings, HostLiblogLetsEveryPriorityThrough) {
  EXPECT_TRUE(__android_log_is_loggable(ANDROID_LOG_VERBOSE, "NvAlgoEngine", ANDROID_LOG_DEFAULT));
  EXPECT_TRUE(__android_log_is_loggable(ANDROID_LOG_DEBUG, "NvAlgoEngine", ANDROID_LOG_DEFAULT));
}

TEST(LogSettings, HostDefaults) {
  for (const char* name : {"gNvCamLogLevel", "gNvCamLogGroup", "gNvCamOfflineLogLevel",
                           "gNvCamOfflineLogGroup", "gNvCamDebugMask"}) {
    if (getenv(name) != nullptr) GTEST_SKIP() << name << " is set in the environment";
  }
  EXPECT_EQ(6u, gNvCamLogLevel);
  EXPECT_EQ(0xFFFFFFFFu, gNvCamLogGroup);
  EXPECT_EQ(6u, gNvCamOfflineLogLevel);
  EXPECT_EQ(0xFFFFFFFFu, gNvCamOfflineLogGroup);
  EXPECT_EQ(0u, gNvCamDebugMask);
}

// Run by its own ctest entry with the variables set (see CMakeLists.txt):
// hex in either case and decimal are taken; a malformed value keeps the default.
TEST(LogSettingsFromEnvironment, OverrideDefaultsAtLoad) {
  if (getenv("NVCAM_TEST_SETTINGS_FROM_ENV") == nullptr) GTEST_SKIP() << "needs its own process";
  EXPECT_EQ(3u, gNvCamLogLevel);
  EXPECT_EQ(0xFFFFFFFFu, gNvCamLogGroup);
  EXPECT_EQ(2u, gNvCamOfflineLogLevel);
  EXPECT_EQ(0x40u, gNvCamOfflineLogGroup);
  EXPECT_EQ(17u, gNvCamDebugMask);
}

}  // namespace
