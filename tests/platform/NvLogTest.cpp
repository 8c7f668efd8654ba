// What the logging library hands to its sinks, and its settings from the environment.
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "nvdebug/NvLog.h"

namespace {

using namespace nvdebug;

std::string show(const LogRecord& r) {
  return std::to_string(r.group) + " " + r.level + " " + r.file + ":" + std::to_string(r.line) + " " +
         r.function + "() " + r.text;
}

TEST(LogSinks, ObserversGetTheFormattedRecordAndSecureLogReturnsTheirResult) {
  std::vector<std::string> records;
  setOnlineObserver([&](const LogRecord& record) { return records.push_back(show(record)), 7; });
  setOfflineObserver([&](const LogRecord& record) { records.push_back(show(record)); });
  EXPECT_EQ(7, Log::secureLog(64, "metadataHelperBase.cpp", 23, "GetMetaData", 'E', "tagindex %d", 468));
  const std::string payload(1000, 'x');  // longer than any fixed buffer
  Log::logSystem(2, "V", "MtkMetadataHelper.cpp", "GetGamma", 9, "[%s] %d", payload.c_str(), 42);
  setOnlineObserver(nullptr);
  EXPECT_EQ(0, Log::secureLog(64, "a.cpp", 1, "f", 'D', "gone"));
  setOfflineObserver(nullptr);
  const std::vector<std::string> expected = {"64 E metadataHelperBase.cpp:23 GetMetaData() tagindex 468",
                                             "2 V MtkMetadataHelper.cpp:9 GetGamma() [" + payload + "] 42"};
  EXPECT_EQ(expected, records);
}

TEST(LogSinks, OfflineLogAppendsToTheNamedFileWithoutObserver) {
  char path[] = "/tmp/nvcam_offline_XXXXXX";
  const int fd = mkstemp(path);
  ASSERT_GE(fd, 0);
  close(fd);
  setenv("NVCAM_OFFLINE_LOG_FILE", path, 1);
  Log::logSystem(64, "E", "first.cpp", "One", 1, "value %d", 1);
  Log::logSystem(2, "W", "second.cpp", "Two", 2, "value %d", 2);
  unsetenv("NVCAM_OFFLINE_LOG_FILE");
  std::stringstream content;
  content << std::ifstream(path).rdbuf();
  unlink(path);
  EXPECT_EQ("E ALGO first.cpp:1 One() value 1\nW ISP second.cpp:2 Two() value 2\n", content.str());
}

// Run in its own process with the variables set; a malformed one keeps the default.
TEST(LogSettingsFromEnvironment, OverrideDefaultsAtLoad) {
  if (getenv("NVCAM_TEST_SETTINGS_FROM_ENV") == nullptr) GTEST_SKIP() << "needs its own process";
  EXPECT_EQ((std::vector<uint32_t>{3, 0xFFFFFFFFu, 2, 0x40, 17}),
            (std::vector<uint32_t>{gNvCamLogLevel, gNvCamLogGroup, gNvCamOfflineLogLevel,
                                   gNvCamOfflineLogGroup, gNvCamDebugMask}));
}

}  // namespace
