// Cost of the helper's getters against the bare container lookup they wrap,
// measured in the same run, plus heap allocations per call (must be zero).
//
// The baseline is what a caller would write by hand: find the tag in the
// container and copy the first element. The helper adds the tag resolution,
// the argument checks, a virtual call and shared-pointer copies. Targets:
// no heap allocation on any getter path; at most 3x the baseline for tags
// named by number or index (a failed read with logging off included) and
// 6x for tags named by string, whose lookup compares names.
#include <benchmark/benchmark.h>
#include <MetaTagWrapper.h>
#include <NvMetadata.h>
#include <nvdebug/NvLog.h>
#include <system/camera_metadata.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <new>
#include <string>

#include "MetaHelperManagerImpl.h"

namespace {
std::atomic<long> gAllocations{0};
}

void* operator new(std::size_t size) {
  gAllocations.fetch_add(1, std::memory_order_relaxed);
  if (void* p = std::malloc(size ? size : 1)) return p;
  std::abort();
}
void operator delete(void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }

extern "C" void* GetInstance();

namespace {

using metahelper::metadataHelperBase;

std::shared_ptr<metadataHelperBase> Helper() {
  return static_cast<metahelper::MetaHelperManagerImpl*>(GetInstance())->GetMetadataHelper();
}

std::shared_ptr<NvMetadata> Request() {
  auto meta = std::make_shared<NvMetadata>();
  const int64_t exposure = 33000000;
  const int64_t shooting = 861245533000;
  const int32_t tonegain = 1536;
  meta->update(ANDROID_SENSOR_EXPOSURE_TIME, &exposure, 1);
  meta->update(MetaTagWrapper::getInstance()(META_SHOOTING_TIMESTAMP), &shooting, 1);
  unsigned int tag = 0;
  NvMetadata::getTagFromName("nuvaro.ae.mid.tonegain", &tag);
  meta->update(tag, &tonegain, 1);
  // A realistic request holds many entries; the lookups must not degrade.
  for (int32_t i = 0; i < 40; ++i) meta->update(0xA0000000u + static_cast<uint32_t>(i), &tonegain, 1);
  return meta;
}

// Runs `call` and reports heap allocations per iteration.
template <typename Call>
void Measure(benchmark::State& state, Call call) {
  const long before = gAllocations.load();
  for (auto _ : state) benchmark::DoNotOptimize(call());
  state.counters["allocs/call"] =
      benchmark::Counter(static_cast<double>(gAllocations.load() - before) / state.iterations());
}

void BM_Baseline_ContainerFind(benchmark::State& state) {
  auto meta = Request();
  Measure(state, [&] { return meta->find(ANDROID_SENSOR_EXPOSURE_TIME).data.i64[0]; });
}

void BM_GetSensorExposureTime(benchmark::State& state) {
  auto meta = Request();
  auto helper = Helper();
  Measure(state, [&] {
    long value = 0;
    helper->GetSensorExposureTime(meta, &value);
    return value;
  });
}

void BM_GetShootingTimeStamp_ByIndex(benchmark::State& state) {
  auto meta = Request();
  auto helper = Helper();
  Measure(state, [&] {
    unsigned long value = 0;
    helper->GetShootingTimeStamp(meta, &value);
    return value;
  });
}

void BM_GetPreviewADRCGain_ByName(benchmark::State& state) {
  auto meta = Request();
  auto helper = Helper();
  Measure(state, [&] {
    float value = 0;
    helper->GetPreviewADRCGain(meta, &value);
    return value;
  });
}

// A missing tag with logging disabled: the messages must cost only the
// reads of the settings.
void BM_MissingTag_LoggingOff(benchmark::State& state) {
  auto meta = std::make_shared<NvMetadata>();
  auto helper = Helper();
  gNvCamLogLevel = 7;
  gNvCamOfflineLogLevel = 7;
  Measure(state, [&] {
    long value = 0;
    return helper->GetSensorExposureTime(meta, &value);
  });
}

BENCHMARK(BM_Baseline_ContainerFind);
BENCHMARK(BM_GetSensorExposureTime);
BENCHMARK(BM_GetShootingTimeStamp_ByIndex);
BENCHMARK(BM_GetPreviewADRCGain_ByName);
BENCHMARK(BM_MissingTag_LoggingOff);

// Prints each run's time as a ratio of the baseline's from the same run.
class RatioReporter : public benchmark::ConsoleReporter {
 public:
  RatioReporter() : ConsoleReporter(OO_Tabular) {}

  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) times_[run.benchmark_name()] = run.GetAdjustedCPUTime();
  }
  void Finalize() override {
    ConsoleReporter::Finalize();
    const double baseline = times_["BM_Baseline_ContainerFind"];
    if (baseline <= 0) return;
    std::printf("\nRatio to BM_Baseline_ContainerFind (same run):\n");
    for (const auto& [name, time] : times_) {
      const double ratio = time / baseline;
      const double target = name.find("ByName") != std::string::npos ? 6.0 : 3.0;
      std::printf("  %-36s %6.2fx  (target <= %.0fx: %s)\n", name.c_str(), ratio, target,
                  ratio <= target ? "met" : "MISSED");
    }
  }

 private:
  std::map<std::string, double> times_;
};

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}
