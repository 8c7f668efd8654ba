// The logging macro: gating of both sinks, letters, priorities, the online
// prefix, and the secure-log hook consuming a message.
#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "TestSupport.h"
#include "common/Log.h"

namespace {

using testsupport::LogCapture;
using L = metahelper::logging::Level;

// One message per level, indexed by the level.
void (*const kEmit[])() = {
    [] { MH_LOG(kError, 101, MH_QUOTED("e")); },   [] { MH_LOG(kWarning, 102, MH_QUOTED("w")); },
    [] { MH_LOG(kInfo, 103, MH_QUOTED("i")); },    [] { MH_LOG(kDebug, 104, MH_QUOTED("d")); },
    [] { MH_LOG(kVerbose, 105, MH_QUOTED("v")); },
};

void EmitAt(L level) { kEmit[static_cast<int>(level)](); }

TEST(Logging, EachSinkFollowsItsOwnLevelGroupAndMask) {
  struct Case {
    L level;
    uint32_t onlineLevel, onlineGroup, offlineLevel, offlineGroup, debugMask;
    bool online, offline;
  };
  // clang-format off
  const Case cases[] = {
      // A level prints when the setting is at or below its number.
      {L::kError,   6, 0xFF, 6, 0xFF, 1, true,  true},  {L::kError,   7, 0xFF, 7, 0xFF, 1, false, false},
      {L::kWarning, 5, 0xFF, 5, 0xFF, 1, true,  true},  {L::kWarning, 6, 0xFF, 6, 0xFF, 1, false, false},
      {L::kInfo,    4, 0xFF, 4, 0xFF, 1, true,  true},  {L::kInfo,    5, 0xFF, 5, 0xFF, 1, false, false},
      {L::kDebug,   3, 0xFF, 3, 0xFF, 1, true,  true},  {L::kDebug,   4, 0xFF, 4, 0xFF, 1, false, false},
      {L::kVerbose, 2, 0xFF, 2, 0xFF, 1, true,  true},  {L::kVerbose, 3, 0xFF, 3, 0xFF, 1, false, false},
      // Without the debug mask only errors reach the offline log.
      {L::kError,   0, 0xFF, 0, 0xFF, 0, true,  true},  {L::kWarning, 0, 0xFF, 0, 0xFF, 0, true,  false},
      {L::kVerbose, 0, 0xFF, 0, 0xFF, 0, true,  false},
      // Groups: the helper's bit 6; only the low byte of a mask counts.
      {L::kError,   0, 0x40, 0, 0x00, 1, true,  false}, {L::kError,   0, 0x00, 0, 0x40, 1, false, true},
      {L::kError,   0, 0xBF, 0, 0xBF, 1, false, false}, {L::kError,   0, 0xFFFFFF00, 0, 0xFFFFFF00, 1, false, false},
  };
  // clang-format on
  for (const Case& c : cases) {
    LogCapture log;
    LogCapture::SetSettings(c.onlineLevel, c.onlineGroup, c.offlineLevel, c.offlineGroup, c.debugMask);
    EmitAt(c.level);
    EXPECT_EQ(c.online ? 2u : 0u, log.android.size() + log.online.size()) << "row " << &c - cases;
    EXPECT_EQ(c.offline, log.offline.size() == 1) << "row " << &c - cases;
  }
}

TEST(Logging, PriorityHookLetterAndOfflineLetterPerLevel) {
  // Verbose prints online at debug priority, offline as "V".
  const std::tuple<L, int, char, char> cases[] = {{L::kError, ANDROID_LOG_ERROR, 'E', 'E'},
                                                  {L::kWarning, ANDROID_LOG_WARN, 'W', 'W'},
                                                  {L::kInfo, ANDROID_LOG_INFO, 'I', 'I'},
                                                  {L::kDebug, ANDROID_LOG_DEBUG, 'D', 'D'},
                                                  {L::kVerbose, ANDROID_LOG_DEBUG, 'D', 'V'}};
  for (const auto& [level, priority, hookLetter, offlineLetter] : cases) {
    LogCapture log;
    EmitAt(level);
    ASSERT_EQ(1u, log.android.size());
    EXPECT_EQ(std::tuple(priority, hookLetter, offlineLetter),
              std::tuple(log.android[0].priority, log.online[0].level, log.offline[0].level));
  }
}

TEST(Logging, OnlinePrefixFramingPlaceholdersAndExplicitIds) {
  LogCapture log;
  MH_LOG(kError, 13, MH_QUOTED("pArg is null"));
  MH_LOG(kError, 23, "metadata not declared, tagindex %d", 7);
  MH_LOG_AS(metahelper::logging::kIspGroup, "operator()", kInfo, 7, "crop %d", 1);
  const std::string algo = nvdebug::Log::nvaGroupToString(64), isp = nvdebug::Log::nvaGroupToString(2);
  ASSERT_EQ(3u, log.android.size());
  EXPECT_EQ(algo + " LoggingTest.cpp:13 TestBody()\"pArg is null\"", log.android[0].message);
  EXPECT_EQ(algo + " LoggingTest.cpp:23 TestBody()metadata not declared, tagindex 7", log.android[1].message);
  EXPECT_EQ(isp + " LoggingTest.cpp:7 operator()()crop 1", log.android[2].message);
  EXPECT_EQ("NvAlgoEngine", log.android[0].tag);
  // The hook gets the message alone with the explicit line id (the row sweep
  // reads the offline log's fields); an explicit function name reaches both.
  EXPECT_EQ("\"pArg is null\"", log.online[0].text);
  EXPECT_EQ(13, log.online[0].line);
  EXPECT_EQ("operator()", log.offline[2].function);
}

TEST(Logging, ConsumedByTheHookSkipsTheAndroidPrintButNotTheOfflineLog) {
  LogCapture log(/*consumeOnline=*/true);
  MH_LOG(kWarning, 5, MH_QUOTED("w"));
  EXPECT_EQ((std::tuple(1u, 0u, 1u)), std::tuple(log.online.size(), log.android.size(), log.offline.size()));
}

}  // namespace
