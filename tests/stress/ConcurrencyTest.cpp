// Many threads on the helper at once: the very first calls of the entry
// point, the manager and the adapter client (each in a fresh process, so the
// first call is really the first), then every operation on a shared request
// and every setter on per-thread metadata. Each thread must see exactly what
// a single-threaded run sees.
#include <gtest/gtest.h>
#include <nvdebug/NvLog.h>

#include <array>
#include <atomic>
#include <cstdlib>
#include <memory>
#include <string>

#include "MtkMetadataHelper.h"
#include "StressAdapter.h"
#include "StressSupport.h"
#include "TagTable.h"

namespace {

using metahelper::MetaPtr;
using stress::Outcomes;
using stress::Pass;

constexpr int kThreads = 16;
constexpr int kChildRuns = 4;  // fresh processes per first-use test: races need chances
constexpr long kShiftTimestamp = 42;

opcatalog::CallContext FullContext(MetaPtr request) {
  opcatalog::CallContext context;
  context.request = std::move(request);
  context.cameraId = cattest::kFullCamera;
  context.timestamp = kShiftTimestamp;
  return context;
}

void UseStressAdapterUnlessNamed() { setenv("METAHELPER_ADAPTER_LIBRARY", STRESS_ADAPTER_LIBRARY, 0); }

// ---- First use ----------------------------------------------------------------
// Every thread's first GetInstance and GetMetadataHelper at once: one manager;
// a racing first call may make a spare helper, but every helper handed out
// must behave exactly as the one the manager keeps.
void FirstCallsFromManyThreads() {
  std::array<void*, kThreads> managers{};
  std::array<std::shared_ptr<metahelper::metadataHelperBase>, kThreads> helpers;
  stress::RunTogether(kThreads, [&](int i) {
    managers[i] = GetInstance();
    helpers[i] = static_cast<metahelper::MetaHelperManagerImpl*>(managers[i])->GetMetadataHelper();
  });
  const std::shared_ptr<metahelper::metadataHelperBase> kept = stress::Manager().GetMetadataHelper();
  stress::ExitUnless(kept == stress::Manager().GetMetadataHelper(),
                     "the kept helper changed after first use");
  StaticMetadataWraper::getInstance()->setStaticMetadata(cattest::kFullCamera, cattest::FullContainer());
  const MetaPtr request = cattest::FullContainer();
  const Outcomes expected = stress::RunCatalogue(*kept, FullContext(request), Pass::kReads);
  for (int i = 0; i < kThreads; ++i) {
    stress::ExitUnless(managers[i] == GetInstance(), "threads saw different managers");
    stress::ExitUnless(helpers[i] != nullptr, "a thread got no helper");
    stress::ExitUnless(stress::RunCatalogue(*helpers[i], FullContext(request), Pass::kReads) == expected,
                       "a helper handed out during the race behaves differently");
  }
  std::exit(0);
}

// Each child is forked from a test process that has not touched the manager
// or the adapter client, so its calls really are the first. Forking without
// re-executing also works under qemu-user, which cannot exec a foreign binary.
void FreshChildProcesses() { GTEST_FLAG_SET(death_test_style, "fast"); }

TEST(FirstUse, ConcurrentFirstCallsShareOneManagerAndEquivalentHelpers) {
  FreshChildProcesses();
  for (int run = 0; run < kChildRuns; ++run)
    EXPECT_EXIT(FirstCallsFromManyThreads(), ::testing::ExitedWithCode(0), "") << "run " << run;
}

// Every thread's shift query is the adapter client's first use. With the
// library, it is loaded and initialised once and every query answered; without
// it, every record comes back as passed.
void FirstAdapterUseFromManyThreads(const char* library, bool present) {
  setenv("METAHELPER_ADAPTER_LIBRARY", library, 1);
  constexpr int32_t kUntouched = 7;
  std::array<nvholder::ShiftData, kThreads> records{};
  std::array<int, kThreads> results{};
  metahelper::MtkMetadataHelper helper;
  stress::RunTogether(kThreads, [&](int i) {
    records[i].shiftX = records[i].shiftY = kUntouched;
    results[i] =
        helper.GetShiftDataFromHolder(kShiftTimestamp + i, i % stressadapter::kKnownCameras, &records[i]);
  });
  stress::ExitUnless(stressadapter::EntryCalls() == (present ? 1 : 0),
                     "the adapter was not loaded exactly once");
  stress::ExitUnless(stressadapter::Initializations() == (present ? 1 : 0),
                     "the adapter was not initialised once");
  for (int i = 0; i < kThreads; ++i) {
    const stressadapter::Answer answer = stressadapter::AnswerFor(kShiftTimestamp + i);
    const bool answered = present && answer.found;
    stress::ExitUnless(results[i] == 0, "a shift query failed");
    stress::ExitUnless(records[i].shiftX == (answered ? answer.shiftX : kUntouched) &&
                           records[i].shiftY == (answered ? answer.shiftY : kUntouched),
                       "a shift record differs from the adapter's answer");
  }
  std::exit(0);
}

TEST(FirstUse, ConcurrentFirstAdapterUseLoadsOnce) {
  FreshChildProcesses();
  for (int run = 0; run < kChildRuns; ++run)
    EXPECT_EXIT(FirstAdapterUseFromManyThreads(STRESS_ADAPTER_LIBRARY, true), ::testing::ExitedWithCode(0),
                "")
        << "run " << run;
}

TEST(FirstUse, ConcurrentRetriesWithoutAdapterLeaveRecordsAlone) {
  FreshChildProcesses();
  for (int run = 0; run < kChildRuns; ++run)
    EXPECT_EXIT(FirstAdapterUseFromManyThreads("/nonexistent/libnvcamera_adapter.so", false),
                ::testing::ExitedWithCode(0), "")
        << "run " << run;
}

// ---- Steady use ---------------------------------------------------------------
// Every level on, both sinks counted, nothing printed; restored afterwards.
class CountedLogs {
 public:
  CountedLogs() : saved_{gNvCamLogLevel, gNvCamOfflineLogLevel, gNvCamDebugMask} {
    gNvCamLogLevel = gNvCamOfflineLogLevel = 0;
    gNvCamDebugMask = 1;
    nvdebug::setOnlineObserver([this](const nvdebug::LogRecord&) { return ++online_, 1; });
    nvdebug::setOfflineObserver([this](const nvdebug::LogRecord&) { ++offline_; });
  }
  ~CountedLogs() {
    nvdebug::setOnlineObserver({});
    nvdebug::setOfflineObserver({});
    gNvCamLogLevel = saved_[0];
    gNvCamOfflineLogLevel = saved_[1];
    gNvCamDebugMask = saved_[2];
  }
  long Online() const { return online_.load(); }
  long Offline() const { return offline_.load(); }

 private:
  uint32_t saved_[3];
  std::atomic<long> online_{0}, offline_{0};
};

struct Reference {
  Outcomes reads, nullReads, writes;
  MetaPtr written, second;  // the containers after the writes
};

// One round as each thread runs it: reads of the shared request with real and
// null outputs, then the setters on fresh copies of their own.
Reference RunRound(metahelper::metadataHelperBase& helper, const MetaPtr& request) {
  Reference round;
  opcatalog::CallContext context = FullContext(request);
  round.reads = stress::RunCatalogue(helper, context, Pass::kReads);
  context.nullOutputs = true;
  round.nullReads = stress::RunCatalogue(helper, context, Pass::kReads);
  context = FullContext(std::make_shared<NvMetadata>(*request));
  context.second = std::make_shared<NvMetadata>();
  round.writes = stress::RunCatalogue(helper, context, Pass::kWrites);
  round.written = context.request;
  round.second = context.second;
  return round;
}

bool SameRound(const Reference& a, const Reference& b) {
  return a.reads == b.reads && a.nullReads == b.nullReads && a.writes == b.writes &&
         tagtable::SameContent(*a.written, *b.written) && tagtable::SameContent(*a.second, *b.second);
}

TEST(SteadyUse, ThreadsSharingARequestSeeWhatOneThreadSees) {
  constexpr int kRounds = 6;
  UseStressAdapterUnlessNamed();
  StaticMetadataWraper::getInstance()->setStaticMetadata(cattest::kFullCamera, cattest::FullContainer());
  const MetaPtr request = cattest::FullContainer();
  const MetaPtr pristine = std::make_shared<NvMetadata>(*request);
  const std::shared_ptr<metahelper::metadataHelperBase> helper = stress::Manager().GetMetadataHelper();
  CountedLogs logs;
  const Reference expected = RunRound(*helper, request);
  const long onlinePerRound = logs.Online(), offlinePerRound = logs.Offline();
  ASSERT_GT(expected.reads.size(), 100u);

  std::array<int, kThreads> mismatches{};
  stress::RunTogether(kThreads, [&](int i) {
    for (int round = 0; round < kRounds; ++round)
      mismatches[i] += !SameRound(RunRound(*helper, request), expected);
  });
  for (int i = 0; i < kThreads; ++i)
    EXPECT_EQ(0, mismatches[i]) << "rounds of thread " << i << " that differed";
  EXPECT_TRUE(tagtable::SameContent(*request, *pristine)) << "reads changed the shared request";
  EXPECT_EQ(onlinePerRound * (1 + kThreads * kRounds), logs.Online()) << "messages lost or added under load";
  EXPECT_EQ(offlinePerRound * (1 + kThreads * kRounds), logs.Offline());
  StaticMetadataWraper::getInstance()->clear();
}

}  // namespace
