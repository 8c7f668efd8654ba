// The logging macro: gating of both sinks, letters, priorities, the online prefix, the hook consuming.
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

TEST(Logging, EachSinkFollowsItsOwnGroupAndMask) {
  // clang-format off
  const std::tuple<L, uint32_t, uint32_t, uint32_t, bool, bool> cases[] = {
      // Without the debug mask only errors reach the offline log.
      {L::kError, 0xFF, 0xFF, 0, true,  true},  {L::kWarning, 0xFF, 0xFF, 0, true,  false},
      // Groups: the helper's bit 6; only the low byte of a mask counts.
      {L::kError, 0x40, 0x00, 1, true,  false}, {L::kError,   0x00, 0x40, 1, false, true},
      {L::kError, 0xBF, 0xBF, 1, false, false}, {L::kError,   0xFFFFFF00, 0xFFFFFF00, 1, false, false},
  };
  // clang-format on
  for (const auto& [level, onGroup, offGroup, mask, online, offline] : cases) {
    SCOPED_TRACE(testing::Message() << "groups " << onGroup << "/" << offGroup << ", mask " << mask);
    LogCapture log;
    LogCapture::SetSettings(0, onGroup, 0, offGroup, mask);
    EmitAt(level);
    EXPECT_EQ(online ? 2u : 0u, log.android.size() + log.online.size());
    EXPECT_EQ(offline, log.offline.size() == 1);
  }
}

// A level prints when the setting is at or below its threshold; verbose prints
// online at debug priority, offline as "V".
TEST(Logging, ThresholdPriorityHookLetterAndOfflineLetterPerLevel) {
  const std::tuple<L, uint32_t, int, char, char> cases[] = {{L::kError, 6, ANDROID_LOG_ERROR, 'E', 'E'},
                                                            {L::kWarning, 5, ANDROID_LOG_WARN, 'W', 'W'},
                                                            {L::kInfo, 4, ANDROID_LOG_INFO, 'I', 'I'},
                                                            {L::kDebug, 3, ANDROID_LOG_DEBUG, 'D', 'D'},
                                                            {L::kVerbose, 2, ANDROID_LOG_DEBUG, 'D', 'V'}};
  for (const auto& [level, threshold, priority, hookLetter, offlineLetter] : cases) {
    LogCapture log;
    LogCapture::SetSettings(threshold + 1, 0xFF, threshold + 1, 0xFF, 1);
    EmitAt(level);
    EXPECT_EQ(0u, log.android.size() + log.online.size() + log.offline.size()) << hookLetter;
    LogCapture::SetSettings(threshold, 0xFF, threshold, 0xFF, 1);
    EmitAt(level);
    ASSERT_EQ(1u, log.android.size());
    EXPECT_EQ(std::tuple(priority, hookLetter, offlineLetter),
              std::tuple(log.android[0].priority, log.online[0].level, log.offline[0].level));
  }
}

TEST(Logging, OnlinePrefixFramingPlaceholdersAndExplicitIds) {
  LogCapture log;
  MH_LOG(kError, 13, MH_QUOTED("pArg is null"));
  MH_LOG_AS(metahelper::logging::kIspGroup, "operator()", kInfo, 7, "crop %d", 1);
  const std::string algo = nvdebug::Log::nvaGroupToString(64), isp = nvdebug::Log::nvaGroupToString(2);
  ASSERT_EQ(2u, log.android.size());
  EXPECT_EQ(algo + " LoggingTest.cpp:13 TestBody()\"pArg is null\"", log.android[0].message);
  EXPECT_EQ(isp + " LoggingTest.cpp:7 operator()()crop 1", log.android[1].message);
  EXPECT_EQ("NvAlgoEngine", log.android[0].tag);
  EXPECT_EQ("operator()", log.offline[1].function) << "an explicit function name reaches the offline log";
}

TEST(Logging, ConsumedByTheHookSkipsTheAndroidPrintButNotTheOfflineLog) {
  LogCapture log(/*consumeOnline=*/true);
  EmitAt(L::kWarning);
  EXPECT_EQ((std::tuple(1u, 0u, 1u)), std::tuple(log.online.size(), log.android.size(), log.offline.size()));
}

}  // namespace
