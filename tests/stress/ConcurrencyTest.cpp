// Many threads on the helper at once: the very first calls of the entry
// point and the adapter client (each in a fresh process, so the first call is
// really the first), then every operation on a shared request
// and every setter on per-thread metadata. Each thread must see exactly what
// a single-threaded run sees, and no log message may be lost.
#include <gtest/gtest.h>
#include <nvdebug/NvLog.h>

#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "FakeAdapterControl.h"
#include "MetaHelperManagerImpl.h"
#include "MtkMetadataHelper.h"
#include "RecordingSink.h"
#include "TestSupport.h"

extern "C" void* GetInstance();

namespace {

using metahelper::MetaPtr;
using Helper = metahelper::metadataHelperBase;
// One line per operation: slot, name, result and the value it produced as
// the catalogue describes it. Equal outcomes mean equal behaviour.
using Outcomes = std::vector<std::string>;

constexpr int kThreads = 16;
constexpr int kChildRuns = 4;  // fresh processes per library for first use: races need chances
constexpr long kShiftTimestamp = 42;

// The cameras the adapter knows, camera kFullCamera of the zoom-EIS type and
// with full static metadata, and a shift answer for even timestamps only, so
// that a thread given another's answer, or none, shows.
void SetUpPlatform() {
  for (int32_t id = 0; id < 8; ++id) fakeadapter::SetCameraType(id, id == testsupport::kFullCamera ? 20 : 1);
  fakeadapter::SetShiftAnswer(true, 3, -2, 0, /*evenOnly=*/true);
  StaticMetadataWraper::getInstance()->setStaticMetadata(testsupport::kFullCamera,
                                                         testsupport::FullContainer());
}

// The catalogue's reads of `request`, or given `second` its setters, added to
// `outcomes`.
void RunCatalogue(Helper& helper, MetaPtr request, MetaPtr second, bool nullOutputs, Outcomes& outcomes) {
  opcatalog::CallContext context{std::move(request), second, nullOutputs, nullptr, testsupport::kFullCamera};
  context.timestamp = kShiftTimestamp;
  size_t count = 0;
  const opcatalog::Operation* operations = opcatalog::Operations(&count);
  for (size_t i = 0; i < count; ++i) {
    const opcatalog::Operation& operation = operations[i];
    if ((operation.kind == opcatalog::Kind::Setter) != (second != nullptr)) continue;
    testsupport::RecordingSink sink;
    context.sink = &sink;
    std::string line = std::to_string(operation.slot) + " " + operation.name + " -> " +
                       std::to_string(operation.call(helper, context));
    for (const std::string& value : sink.lines) line += " | " + value;
    outcomes.push_back(line);
  }
}

// One round as each thread runs it: reads of the shared request with real and
// null outputs, then the setters on a copy of their own, and what the setters
// left in both containers.
struct Round {
  Outcomes outcomes;
  MetaPtr written, second;

  bool operator==(const Round& other) const {
    return outcomes == other.outcomes && testsupport::SameContent(*written, *other.written) &&
           testsupport::SameContent(*second, *other.second);
  }
};

Round RunRound(Helper& helper, const MetaPtr& request) {
  Round round{{}, std::make_shared<NvMetadata>(*request), std::make_shared<NvMetadata>()};
  RunCatalogue(helper, request, nullptr, false, round.outcomes);
  RunCatalogue(helper, request, nullptr, true, round.outcomes);
  RunCatalogue(helper, round.written, round.second, false, round.outcomes);
  return round;
}

// Runs body(0) .. body(kThreads - 1) on as many threads, released together
// once all of them are running, so their first steps truly overlap.
template <typename Body>
void RunTogether(Body body) {
  std::atomic<int> arrived{0};
  std::vector<std::thread> pool;
  for (int i = 0; i < kThreads; ++i) {
    pool.emplace_back([&arrived, &body, i] {
      arrived.fetch_add(1);
      while (arrived.load() < kThreads) std::this_thread::yield();
      body(i);
    });
  }
  for (std::thread& thread : pool) thread.join();
}

// ---- First use ----------------------------------------------------------------
void ExitUnless(bool condition, const char* what) {
  if (condition) return;
  std::fprintf(stderr, "%s\n", what);
  std::exit(1);
}

std::shared_ptr<Helper> KeptHelper() {
  return static_cast<metahelper::MetaHelperManagerImpl*>(GetInstance())->GetMetadataHelper();
}

// Every thread's first GetInstance and its first shift query, through a
// helper of its own, at once: one manager, and the adapter client loaded and
// initialised once with the library, every query answered; without it, every
// record comes back as passed. The manager's helper is asked for afterwards:
// its lazy creation is a plain test and store of a two-word shared pointer, as
// the interface prescribes, so a copy taken during a racing first store may be
// torn and is no test of anything. A broken expectation ends the process with
// status 1 and says why.
[[noreturn]] void FirstUseChild(const char* library) {
  const bool present = library == std::string(ADAPTER_LIBRARY);
  setenv("METAHELPER_ADAPTER_LIBRARY", library, 1);
  SetUpPlatform();
  constexpr int32_t kUntouched = 7;
  std::array<void*, kThreads> managers{};
  std::array<nvholder::ShiftData, kThreads> records{};
  std::array<int, kThreads> results{};
  RunTogether([&](int i) {
    managers[i] = GetInstance();
    records[i].shiftX = records[i].shiftY = kUntouched;
    results[i] =
        metahelper::MtkMetadataHelper().GetShiftDataFromHolder(kShiftTimestamp + i, i % 8, &records[i]);
  });
  const int loads = present ? 1 : 0;  // checked before the catalogue queries again
  ExitUnless(fakeadapter::GetInstanceCount() == loads && fakeadapter::InitializeCount() == loads,
             "the adapter was not loaded and initialised exactly once");
  ExitUnless(fakeadapter::QueryCount() == loads * kThreads, "queries lost or added");
  const std::shared_ptr<Helper> kept = KeptHelper();
  ExitUnless(kept == KeptHelper(), "the kept helper changed after first use");
  const MetaPtr request = testsupport::FullContainer();
  metahelper::MtkMetadataHelper fresh;
  ExitUnless(RunRound(*kept, request) == RunRound(fresh, request), "the kept helper behaves differently");
  for (int i = 0; i < kThreads; ++i) {
    const bool answered = present && (kShiftTimestamp + i) % 2 == 0;
    ExitUnless(managers[i] == GetInstance(), "threads saw different managers");
    ExitUnless(results[i] == 0 && records[i].shiftX == (answered ? 3 : kUntouched) &&
                   records[i].shiftY == (answered ? -2 : kUntouched),
               "a shift query failed or its record differs from the adapter's answer");
  }
  std::exit(0);
}

// Each run forks from a test process that has not touched the manager or the
// adapter client, so the child's calls really are the first. Forking without
// re-executing also works under qemu-user, which cannot exec a foreign binary.
TEST(FirstUse, ConcurrentFirstCallsShareOneManagerAndLoadTheAdapterOnce) {
  GTEST_FLAG_SET(death_test_style, "fast");
  for (const char* library : {ADAPTER_LIBRARY, "/nonexistent/libnvcamera_adapter.so"}) {
    for (int run = 0; run < kChildRuns; ++run)
      EXPECT_EXIT(FirstUseChild(library), ::testing::ExitedWithCode(0), "") << library << ", run " << run;
  }
}

// ---- Steady use ---------------------------------------------------------------
TEST(SteadyUse, ThreadsSharingARequestSeeWhatOneThreadSees) {
  constexpr int kRounds = 6;
  setenv("METAHELPER_ADAPTER_LIBRARY", ADAPTER_LIBRARY, 0);
  SetUpPlatform();
  const MetaPtr request = testsupport::FullContainer();
  const MetaPtr pristine = std::make_shared<NvMetadata>(*request);
  const std::shared_ptr<Helper> helper = KeptHelper();
  // Every level on and both sinks counted; the hook consumes every message,
  // so none reaches the capture's Android print.
  testsupport::LogCapture everyLevel;
  std::atomic<long> online{0}, offline{0};
  nvdebug::setOnlineObserver([&online](const nvdebug::LogRecord&) { return ++online, 1; });
  nvdebug::setOfflineObserver([&offline](const nvdebug::LogRecord&) { ++offline; });

  const Round expected = RunRound(*helper, request);
  const long onlinePerRound = online.load(), offlinePerRound = offline.load();
  EXPECT_GT(expected.outcomes.size(), 200u);
  std::array<int, kThreads> mismatches{};
  RunTogether([&](int i) {
    for (int round = 0; round < kRounds; ++round) mismatches[i] += !(RunRound(*helper, request) == expected);
  });

  EXPECT_EQ((std::array<int, kThreads>{}), mismatches) << "rounds of each thread that differed";
  EXPECT_TRUE(testsupport::SameContent(*request, *pristine)) << "reads changed the shared request";
  EXPECT_EQ(onlinePerRound * (1 + kThreads * kRounds), online.load()) << "messages lost or added under load";
  EXPECT_EQ(offlinePerRound * (1 + kThreads * kRounds), offline.load());
  StaticMetadataWraper::getInstance()->clear();
}

}  // namespace
