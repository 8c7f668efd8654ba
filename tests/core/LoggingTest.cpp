// The logging macro: gating of both sinks, letters, priorities, the online
// prefix, and the secure-log hook consuming a message.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "TestSupport.h"
#include "common/Log.h"

namespace {

using testsupport::LogCapture;

void EmitAt(metahelper::logging::Level level) {
  using metahelper::logging::Level;
  switch (level) {
    case Level::kError:
      MH_LOG(kError, 101, MH_QUOTED("e"));
      break;
    case Level::kWarning:
      MH_LOG(kWarning, 102, MH_QUOTED("w"));
      break;
    case Level::kInfo:
      MH_LOG(kInfo, 103, MH_QUOTED("i"));
      break;
    case Level::kDebug:
      MH_LOG(kDebug, 104, MH_QUOTED("d"));
      break;
    case Level::kVerbose:
      MH_LOG(kVerbose, 105, MH_QUOTED("v"));
      break;
  }
}

struct GateCase {
  metahelper::logging::Level level;
  uint32_t onlineLevel, onlineGroup, offlineLevel, offlineGroup, debugMask;
  bool online, offline;
};

class Gating : public ::testing::TestWithParam<GateCase> {};

TEST_P(Gating, EachSinkFollowsItsOwnSettings) {
  const GateCase& c = GetParam();
  LogCapture log;
  LogCapture::SetSettings(c.onlineLevel, c.onlineGroup, c.offlineLevel, c.offlineGroup, c.debugMask);
  EmitAt(c.level);
  EXPECT_EQ(c.online ? 1u : 0u, log.android.size());
  EXPECT_EQ(c.online ? 1u : 0u, log.online.size());
  EXPECT_EQ(c.offline ? 1u : 0u, log.offline.size());
}

using L = metahelper::logging::Level;
INSTANTIATE_TEST_SUITE_P(LevelsAndMasks, Gating,
                         ::testing::Values(
                             // Thresholds: a level prints when the setting is at or below its number.
                             GateCase{L::kError, 6, 0xFF, 6, 0xFF, 1, true, true},
                             GateCase{L::kError, 7, 0xFF, 7, 0xFF, 1, false, false},
                             GateCase{L::kWarning, 5, 0xFF, 5, 0xFF, 1, true, true},
                             GateCase{L::kWarning, 6, 0xFF, 6, 0xFF, 1, false, false},
                             GateCase{L::kInfo, 4, 0xFF, 4, 0xFF, 1, true, true},
                             GateCase{L::kInfo, 5, 0xFF, 5, 0xFF, 1, false, false},
                             GateCase{L::kDebug, 3, 0xFF, 3, 0xFF, 1, true, true},
                             GateCase{L::kDebug, 4, 0xFF, 4, 0xFF, 1, false, false},
                             GateCase{L::kVerbose, 2, 0xFF, 2, 0xFF, 1, true, true},
                             GateCase{L::kVerbose, 3, 0xFF, 3, 0xFF, 1, false, false},
                             // Without the debug mask only errors reach the offline log.
                             GateCase{L::kError, 0, 0xFF, 0, 0xFF, 0, true, true},
                             GateCase{L::kWarning, 0, 0xFF, 0, 0xFF, 0, true, false},
                             GateCase{L::kVerbose, 0, 0xFF, 0, 0xFF, 0, true, false},
                             // Groups: the helper's bit 6, only the low byte of the mask counts.
                             GateCase{L::kError, 0, 0x40, 0, 0x00, 1, true, false},
                             GateCase{L::kError, 0, 0x00, 0, 0x40, 1, false, true},
                             GateCase{L::kError, 0, 0xFFFFFF00, 0, 0xFFFFFF00, 1, false, false},
                             GateCase{L::kError, 0, 0xBF, 0, 0xBF, 1, false, false}));

struct LetterCase {
  L level;
  int priority;
  char hookLetter;
  char offlineLetter;
};

TEST(Letters, PriorityHookLetterAndOfflineLetterPerLevel) {
  const LetterCase cases[] = {{L::kError, ANDROID_LOG_ERROR, 'E', 'E'},
                              {L::kWarning, ANDROID_LOG_WARN, 'W', 'W'},
                              {L::kInfo, ANDROID_LOG_INFO, 'I', 'I'},
                              {L::kDebug, ANDROID_LOG_DEBUG, 'D', 'D'},
                              // verbose prints online at debug priority, offline as "V"
                              {L::kVerbose, ANDROID_LOG_DEBUG, 'D', 'V'}};
  for (const LetterCase& c : cases) {
    LogCapture log;
    EmitAt(c.level);
    ASSERT_EQ(1u, log.android.size());
    EXPECT_EQ(c.priority, log.android[0].priority);
    EXPECT_EQ(c.hookLetter, log.online[0].level);
    EXPECT_EQ(c.offlineLetter, log.offline[0].level);
  }
}

TEST(Format, OnlineLineHasGroupFileLineAndFunctionPrefix) {
  LogCapture log;
  MH_LOG(kError, 13, MH_QUOTED("pArg is null"));
  ASSERT_EQ(1u, log.android.size());
  const std::string expected =
      std::string(nvdebug::Log::nvaGroupToString(64)) + " LoggingTest.cpp:13 TestBody()\"pArg is null\"";
  EXPECT_EQ(expected, log.android[0].message);
  EXPECT_EQ("NvAlgoEngine", log.android[0].tag);
  // The hook and the offline log get the message alone, framed, with the
  // explicit line id and the short file name.
  EXPECT_EQ("\"pArg is null\"", log.online[0].text);
  EXPECT_EQ(13, log.online[0].line);
  EXPECT_EQ("LoggingTest.cpp", log.offline[0].file);
  EXPECT_EQ("TestBody", log.offline[0].function);
}

TEST(Format, PlaceholdersAreFilledAndNotFramed) {
  LogCapture log;
  MH_LOG(kError, 23, "metadata not declared, tagindex %d", 7);
  ASSERT_EQ(1u, log.online.size());
  EXPECT_EQ("metadata not declared, tagindex 7", log.online[0].text);
  EXPECT_EQ("metadata not declared, tagindex 7", log.offline[0].text);
}

TEST(Format, ExplicitGroupAndFunctionName) {
  LogCapture log;
  MH_LOG_AS(metahelper::logging::kIspGroup, "operator()", kInfo, 7, "crop %d", 1);
  ASSERT_EQ(1u, log.online.size());
  EXPECT_EQ("operator()", log.online[0].function);
  EXPECT_EQ(nvdebug::Log::nvaGroupToString(2) + std::string(" LoggingTest.cpp:7 operator()()crop 1"),
            log.android[0].message);
  LogCapture::SetSettings(0, 0x40, 0, 0x40, 1);  // the helper group alone
  log.Clear();
  MH_LOG_GROUP(metahelper::logging::kIspGroup, kInfo, 8, "crop");
  EXPECT_TRUE(log.online.empty());
}

TEST(Hook, ConsumingTheMessageSkipsTheAndroidPrintButNotTheOfflineLog) {
  LogCapture log(/*consumeOnline=*/true);
  MH_LOG(kWarning, 5, MH_QUOTED("w"));
  EXPECT_EQ(1u, log.online.size());
  EXPECT_TRUE(log.android.empty());
  EXPECT_EQ(1u, log.offline.size());
}

}  // namespace
