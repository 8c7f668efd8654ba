// What a getter costs, against what it cannot avoid, in one run.
//
// On the realistic request of BenchRequest.h it times, side by side:
//   raw       the container's own find (by number, by name) and one copy;
//   baseline  a sorted-array binary search over the same entries in the shape
//             of the platform's own container lookup (out of line, comparator
//             called through a pointer), and one copy;
//   floor     raw plus the work every getter must do by its interface: a
//             virtual call taking the container as a shared pointer by value,
//             and one more shared copy handed to the core read;
//   getter    the helper's skeletons, obtained through GetInstance;
//   sweep     every non-allocating Get operation of the catalogue, once;
//   threads   one getter from one and from two threads, on a shared
//             container and on one container per thread.
// It ends with a table of each case's ratio against its target.
//
// `--instructions` runs the single-thread cases a fixed number of times
// between callgrind toggles instead (scripts/bench --instructions).
#include <MetaTagWrapper.h>
#include <NvMetadata.h>
#include <android/log.h>
#include <benchmark/benchmark.h>
#include <nvdebug/NvLog.h>
#include <system/camera_metadata.h>
#include <valgrind/callgrind.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "AllocationCounter.h"
#include "BenchRequest.h"
#include "MetaHelperManagerImpl.h"
#include "OperationCatalog.h"

extern "C" void* GetInstance();

namespace {

using bench::MetaPtr;
using metahelper::metadataHelperBase;

constexpr long kCountedIterations = 100000;
constexpr const char* kByName = "nuvaro.ai.asd.FaceAverageBrightness";

// ---- Logging settings per case ---------------------------------------------
struct LogSettings {
  uint32_t level;
  uint32_t offlineLevel;
  uint32_t debugMask;
};
constexpr LogSettings kLogOff{7, 7, 0};
constexpr LogSettings kLogOn{2, 2, 1};  // every level, both sinks

class ScopedLogSettings {
 public:
  explicit ScopedLogSettings(const LogSettings& wanted)
      : saved_{gNvCamLogLevel, gNvCamOfflineLogLevel, gNvCamDebugMask} {
    Apply(wanted);
  }
  ~ScopedLogSettings() { Apply(saved_); }

 private:
  static void Apply(const LogSettings& settings) {
    gNvCamLogLevel = settings.level;
    gNvCamOfflineLogLevel = settings.offlineLevel;
    gNvCamDebugMask = settings.debugMask;
  }
  LogSettings saved_;
};

// Messages are formatted as on the device, then dropped instead of printed.
void DiscardLog(const __android_logger_data*, const char*) {}

// ---- Case registry -----------------------------------------------------------
struct CountedCase {
  std::string name;
  long iterations;
  std::function<void(long)> run;
};

std::vector<CountedCase>& CountedCases() {
  static std::vector<CountedCase> cases;
  return cases;
}

// Registers `body` (one call of what is measured) for timing and for
// instruction counting; the loop around it is the same in both.
template <typename Body>
void AddCase(const std::string& name, Body body, long iterations = kCountedIterations,
             LogSettings log = kLogOff) {
  benchmark::RegisterBenchmark(name.c_str(), [body, log](benchmark::State& state) mutable {
    const ScopedLogSettings scoped(log);
    const long before = bench::Allocations();
    for (auto _ : state) benchmark::DoNotOptimize(body());
    state.counters["allocs/call"] = static_cast<double>(bench::Allocations() - before) / state.iterations();
  });
  CountedCases().push_back({name, iterations, [body, log](long count) mutable {
                              const ScopedLogSettings scoped(log);
                              for (long i = 0; i < count; ++i) benchmark::DoNotOptimize(body());
                            }});
}

// A case is only worth timing if it takes the path it is named after.
void Expect(bool succeeded, bool wanted, const std::string& name) {
  if (succeeded == wanted) return;
  std::fprintf(stderr, "getter_bench: %s %s on this request; pick another tag\n", name.c_str(),
               wanted ? "fails" : "succeeds");
  std::exit(2);
}

template <typename T>
T Opaque(T value) {
  benchmark::DoNotOptimize(value);
  return value;
}

// ---- Baseline: the platform container's lookup shape -----------------------
struct SortedEntry {
  uint32_t tag;
  uint8_t type;
  uint32_t count;
  const uint8_t* data;
};
using CompareFn = int (*)(const void*, const void*);

struct SortedMetadata {
  std::vector<SortedEntry> entries;
  CompareFn compare;
};

int CompareTags(const void* key, const void* entry) {
  const uint32_t a = static_cast<const SortedEntry*>(key)->tag;
  const uint32_t b = static_cast<const SortedEntry*>(entry)->tag;
  return a < b ? -1 : (a > b ? 1 : 0);
}

// The C library's bsearch, as the platform container calls it.
__attribute__((noinline)) const SortedEntry* BinarySearch(const SortedEntry* key, const SortedEntry* base,
                                                          size_t count, CompareFn compare) {
  while (count > 0) {
    const SortedEntry* middle = base + count / 2;
    const int order = compare(key, middle);
    if (order == 0) return middle;
    if (order > 0) {
      base = middle + 1;
      count -= count / 2 + 1;
    } else {
      count /= 2;
    }
  }
  return nullptr;
}

__attribute__((noinline)) camera_metadata_ro_entry FindSorted(const SortedMetadata& meta, uint32_t tag) {
  camera_metadata_ro_entry result{};
  const SortedEntry key{tag, 0, 0, nullptr};
  const SortedEntry* found = BinarySearch(&key, meta.entries.data(), meta.entries.size(), meta.compare);
  if (found == nullptr) return result;
  result.index = static_cast<size_t>(found - meta.entries.data());
  result.tag = found->tag;
  result.type = found->type;
  result.count = found->count;
  result.data.u8 = found->data;
  return result;
}

SortedMetadata SortedCopyOf(const NvMetadata& meta) {
  SortedMetadata sorted{{}, Opaque<CompareFn>(CompareTags)};
  for (uint32_t tag : bench::RegisteredTags()) {
    const camera_metadata_ro_entry entry = meta.find(tag);
    if (entry.count != 0)
      sorted.entries.push_back({tag, entry.type, static_cast<uint32_t>(entry.count), entry.data.u8});
  }
  std::sort(sorted.entries.begin(), sorted.entries.end(),
            [](const SortedEntry& a, const SortedEntry& b) { return a.tag < b.tag; });
  return sorted;
}

// ---- Floor: the interface's mandated work around the raw lookup ---------------
// The core read's part: its own shared copy of the container, then the find.
__attribute__((noinline)) const void* CoreFind(MetaPtr meta, const char* name, uint32_t tag) {
  const camera_metadata_ro_entry entry = name != nullptr ? meta->find(name) : meta->find(tag);
  return entry.count != 0 ? entry.data.u8 : nullptr;
}

template <typename Out>
class FloorReader {
 public:
  FloorReader(const char* name, uint32_t tag) : name_(name), tag_(tag) {}
  virtual ~FloorReader() = default;
  // Out of line like the helper's operations, whatever the compiler guesses.
  __attribute__((noinline)) virtual int Read(MetaPtr meta, Out* out) {
    const void* data = CoreFind(meta, name_, tag_);
    if (data == nullptr) return -1;
    std::memcpy(out, data, sizeof(Out));
    return 0;
  }

 private:
  const char* name_;
  uint32_t tag_;
};

template <typename Out>
void AddFloor(const std::string& name, const MetaPtr& meta, const char* tagName, uint32_t tag) {
  // Opaque, so the call stays virtual as it is for the helper.
  FloorReader<Out>* reader = Opaque(new FloorReader<Out>(tagName, tag));
  Out probe{};
  Expect(reader->Read(meta, &probe) == 0, true, name);
  AddCase(name, [reader, meta] {
    Out out;
    const int result = reader->Read(meta, &out);
    benchmark::DoNotOptimize(out);
    return result;
  });
}

// ---- The cases ------------------------------------------------------------------
struct Fixture {
  bench::BenchInputs inputs;
  MetaPtr missing;  // the request without the by-number getter's tag
  std::shared_ptr<metadataHelperBase> helper;
  SortedMetadata sorted;
};

Fixture& TheFixture() {
  static Fixture fixture;
  return fixture;
}

uint32_t IndexTag(META_TAG_INDEX index) { return MetaTagWrapper::getInstance()(index); }

void AddRawAndBaseline(const Fixture& f) {
  const MetaPtr meta = f.inputs.request;
  const SortedMetadata* sorted = &f.sorted;
  Expect(FindSorted(*sorted, ANDROID_SENSOR_EXPOSURE_TIME).count != 0, true, "baseline/sorted_search");
  AddCase("empty_loop", [] { return 0; });
  AddCase("baseline/sorted_search", [sorted] {
    int64_t value = 0;
    const camera_metadata_ro_entry entry =
        FindSorted(*sorted, Opaque(uint32_t{ANDROID_SENSOR_EXPOSURE_TIME}));
    if (entry.count != 0) std::memcpy(&value, entry.data.u8, sizeof value);
    return value;
  });
  AddCase("raw/find_by_number", [meta] {
    int64_t value = 0;
    const camera_metadata_ro_entry entry = meta->find(Opaque(uint32_t{ANDROID_SENSOR_EXPOSURE_TIME}));
    if (entry.count != 0) std::memcpy(&value, entry.data.u8, sizeof value);
    return value;
  });
  AddCase("raw/find_by_name", [meta] {
    float value = 0;
    const camera_metadata_ro_entry entry = meta->find(Opaque(kByName));
    if (entry.count != 0) std::memcpy(&value, entry.data.u8, sizeof value);
    return value;
  });
}

void AddFloors(const Fixture& f) {
  const MetaPtr& meta = f.inputs.request;
  AddFloor<long>("floor/by_number", meta, nullptr, ANDROID_SENSOR_EXPOSURE_TIME);
  AddFloor<unsigned long>("floor/by_index", meta, nullptr, IndexTag(META_SHOOTING_TIMESTAMP));
  AddFloor<float>("floor/by_name", meta, kByName, 0);
  AddFloor<nvholder::AIspSelectAnchorOutput>("floor/record", meta, nullptr,
                                             IndexTag(META_AISP_SELECTANCHOR_OUTPUT));
}

// A getter case: `call(helper, meta)` returns the operation's result. Every
// case keeps its output with DoNotOptimize and computes nothing with it, so
// the loop times the call and nothing the case adds to it.
template <typename Call>
void AddGetter(const std::string& name, const Fixture& f, const MetaPtr& meta, Call call,
               bool succeeds = true, LogSettings log = kLogOff) {
  metadataHelperBase* helper = f.helper.get();
  Expect(call(*helper, meta) == 0, succeeds, name);
  AddCase(
      name, [helper, meta, call] { return call(*helper, meta); }, kCountedIterations, log);
}

// A closure type, not a function pointer, so the benchmark loop inlines it.
constexpr auto ExposureTime = [](metadataHelperBase& h, const MetaPtr& m) {
  long out = 0;
  const int result = h.GetSensorExposureTime(m, &out);
  benchmark::DoNotOptimize(out);
  return result;
};

void AddGetters(const Fixture& f) {
  const MetaPtr& meta = f.inputs.request;
  AddGetter("getter/by_number", f, meta, ExposureTime);
  AddGetter("getter/by_index", f, meta, [](metadataHelperBase& h, const MetaPtr& m) {
    unsigned long out = 0;
    const int result = h.GetShootingTimeStamp(m, &out);
    benchmark::DoNotOptimize(out);
    return result;
  });
  AddGetter("getter/by_name", f, meta, [](metadataHelperBase& h, const MetaPtr& m) {
    float out = 0;
    const int result = h.GetFaceAverageBrightness(m, &out);
    benchmark::DoNotOptimize(out);
    return result;
  });
  AddGetter("getter/record", f, meta, [](metadataHelperBase& h, const MetaPtr& m) {
    nvholder::AIspSelectAnchorOutput out;
    const int result = h.GetAIspSelectAnchorOutput(m, &out);
    benchmark::DoNotOptimize(out);
    return result;
  });
  AddGetter("getter/static", f, meta, [](metadataHelperBase& h, const MetaPtr& m) {
    nvholder::ChiRect out{};
    const int result = h.GetActiveArraySize(m, &out);
    benchmark::DoNotOptimize(out);
    return result;
  });
  AddGetter("getter/crop_region", f, meta, [](metadataHelperBase& h, const MetaPtr& m) {
    nvholder::ChiRect out{};
    const int result = h.GetCropRegion(m, &out, nvholder::dimension{4000, 3000}, false);
    benchmark::DoNotOptimize(out);
    return result;
  });
  AddGetter("getter/face_rect", f, meta, [](metadataHelperBase& h, const MetaPtr& m) {
    FacesInfo faces;
    const int result = h.GetFaceRect(m, 4000, 3000, faces, nullptr);
    benchmark::DoNotOptimize(faces);
    return result;
  });
  AddGetter("getter/missing_log_off", f, f.missing, ExposureTime, false);
  AddGetter("getter/missing_log_on", f, f.missing, ExposureTime, false, kLogOn);
}

size_t gSweepSize = 0;  // operations per sweep

void AddSweep(const Fixture& f) {
  size_t count = 0;
  const opcatalog::Operation* all = opcatalog::Operations(&count);
  std::vector<const opcatalog::Operation*> getters;
  for (size_t i = 0; i < count; ++i) {
    if (all[i].kind != opcatalog::Kind::Setter && !all[i].allocates) getters.push_back(&all[i]);
  }
  gSweepSize = getters.size();
  metadataHelperBase* helper = f.helper.get();
  opcatalog::CallContext context;
  context.request = f.inputs.request;
  AddCase(
      "sweep/every_get_operation",
      [helper, getters, context] {
        int sum = 0;
        for (const opcatalog::Operation* op : getters) sum += op->call(*helper, context);
        return sum;
      },
      kCountedIterations / 200);
}

// ---- Threads ------------------------------------------------------------------
void ThreadedGetter(benchmark::State& state, bool ownContainer) {
  const Fixture& f = TheFixture();
  // Made by the thread itself, so its memory does not share cache lines with
  // the other thread's copy.
  const MetaPtr meta = ownContainer ? std::make_shared<NvMetadata>(*f.inputs.request) : f.inputs.request;
  metadataHelperBase& helper = *f.helper;
  for (auto _ : state) benchmark::DoNotOptimize(ExposureTime(helper, meta));
  state.SetItemsProcessed(state.iterations());
}

void AddThreadCases() {
  for (const bool own : {false, true}) {
    benchmark::RegisterBenchmark(own ? "threads/per_thread" : "threads/shared",
                                 [own](benchmark::State& state) { ThreadedGetter(state, own); })
        ->Threads(1)
        ->Threads(2)
        ->UseRealTime();
  }
}

void BuildCases() {
  Fixture& f = TheFixture();
  f.inputs = bench::LoadInputs();
  f.helper = static_cast<metahelper::MetaHelperManagerImpl*>(GetInstance())->GetMetadataHelper();
  f.missing = std::make_shared<NvMetadata>(*f.inputs.request);
  f.missing->erase(ANDROID_SENSOR_EXPOSURE_TIME);
  f.sorted = SortedCopyOf(*f.inputs.request);
  AddRawAndBaseline(f);
  AddFloors(f);
  AddGetters(f);
  AddSweep(f);
}

// ---- The final table --------------------------------------------------------------
struct Target {
  const char* name;
  const char* reference;
  double limit;  // ratio to the reference
  bool atLeast;  // throughput targets: the ratio must reach the limit
};

constexpr Target kTargets[] = {
    {"raw/find_by_number", "baseline/sorted_search", 0.5, false},
    {"raw/find_by_name", "baseline/sorted_search", 1.5, false},
    {"floor/by_number", "baseline/sorted_search", 0, false},
    {"floor/by_index", "baseline/sorted_search", 0, false},
    {"floor/by_name", "baseline/sorted_search", 0, false},
    {"floor/record", "baseline/sorted_search", 0, false},
    {"getter/by_number", "floor/by_number", 1.3, false},
    {"getter/by_index", "floor/by_index", 1.3, false},
    {"getter/by_name", "floor/by_name", 1.3, false},
    {"getter/record", "floor/record", 1.3, false},
    {"getter/static", "floor/by_number", 0, false},
    {"getter/crop_region", "floor/by_number", 0, false},
    {"getter/face_rect", "floor/by_number", 0, false},
    {"getter/missing_log_off", "getter/by_number", 1.3, false},
    {"getter/missing_log_on", "getter/by_number", 0, false},
    {"sweep/every_get_operation", "floor/by_number", 0, false},
    {"threads/shared x2", "threads/shared x1", 0, true},
    {"threads/per_thread x2", "threads/per_thread x1", 1.8, true},
};

struct Measured {
  double ns = 0;         // per call
  double perSecond = 0;  // calls per second, all threads together
};

// Remembers each case's median (or only) run and prints the table at the end.
class TableReporter : public benchmark::ConsoleReporter {
 public:
  TableReporter() : ConsoleReporter(OO_Tabular) {}

  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) Remember(run);
  }

  void Finalize() override {
    ConsoleReporter::Finalize();
    PrintTable();
  }

 private:
  // Repetitions report their runs first and the median after them, so the
  // median, when there is one, is what stays.
  void Remember(const Run& run) {
    if (run.error_occurred) return;
    if (run.run_type == Run::RT_Aggregate && run.aggregate_name != "median") return;
    const std::string& threads = run.run_name.threads;
    const bool threaded = !threads.empty();
    const std::string name =
        run.run_name.function_name + (threaded ? " x" + threads.substr(threads.find(':') + 1) : "");
    Measured& m = results_[name];
    m.ns = threaded ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime();
    const auto items = run.counters.find("items_per_second");
    m.perSecond = items != run.counters.end() ? items->second.value : 1e9 / m.ns;
  }

  void PrintTable() const {
    std::printf("\n%-28s %12s %8s %-26s %s\n", "case", "ns/call", "ratio", "target", "result");
    for (const Target& target : kTargets) {
      const auto self = results_.find(target.name);
      const auto reference = results_.find(target.reference);
      if (self == results_.end() || reference == results_.end()) continue;
      const double ratio = target.atLeast ? self->second.perSecond / reference->second.perSecond
                                          : self->second.ns / reference->second.ns;
      PrintRow(target, self->second, ratio);
    }
    if (gSweepSize != 0) {
      const auto sweep = results_.find("sweep/every_get_operation");
      if (sweep != results_.end())
        std::printf("sweep: %zu operations, %.1f ns per operation\n", gSweepSize,
                    sweep->second.ns / gSweepSize);
    }
  }

  static void PrintRow(const Target& target, const Measured& m, double ratio) {
    char goal[64] = "-";
    if (target.limit > 0)
      std::snprintf(goal, sizeof goal, "%s %.1fx %s", target.atLeast ? ">=" : "<=", target.limit,
                    target.reference);
    else
      std::snprintf(goal, sizeof goal, "(vs %s)", target.reference);
    const bool met = target.atLeast ? ratio >= target.limit : ratio <= target.limit;
    const char* verdict = target.limit > 0 ? (met ? "met" : "NOT MET") : "";
    const double ns = target.atLeast ? 1e9 / m.perSecond : m.ns;
    std::printf("%-28s %12.2f %7.2fx %-26s %s\n", target.name, ns, ratio, goal, verdict);
  }

  std::map<std::string, Measured> results_;
};

// ---- Instruction counting -------------------------------------------------------------
// Each case runs a warm-up, then a fixed number of calls with callgrind
// collecting, then dumps under its own name. scripts/bench subtracts the
// empty loop and divides by the count printed here.
int CountInstructions() {
  if (!RUNNING_ON_VALGRIND) {
    std::fprintf(stderr,
                 "getter_bench --instructions: run under valgrind --tool=callgrind --collect-atstart=no\n");
    return 2;
  }
  for (const CountedCase& c : CountedCases()) {
    c.run(c.iterations / 100 + 1);
    CALLGRIND_TOGGLE_COLLECT;
    c.run(c.iterations);
    CALLGRIND_TOGGLE_COLLECT;
    CALLGRIND_DUMP_STATS_AT(c.name.c_str());
    std::printf("counted %s %ld\n", c.name.c_str(), c.iterations);
  }
  std::printf("sweep operations %zu\n", gSweepSize);
  return 0;
}

// A camera process runs many threads, and the C++ library then counts shared
// references with atomic instructions; a process that never started a thread
// counts them with plain ones. One short-lived thread puts this process in
// the camera's state for good.
void BecomeMultiThreaded() {
  std::thread([] {}).join();
}

// On the host the vendor adapter library is missing unless a test names one,
// and the crop computation retries loading it on every call, as specified
// for a missing library; a device has it loaded once.
void NoteMissingAdapter() {
  if (std::getenv("METAHELPER_ADAPTER_LIBRARY") == nullptr)
    std::printf("getter/crop_region includes a failed load of the vendor adapter library on every call\n");
}

}  // namespace

int main(int argc, char** argv) {
  BecomeMultiThreaded();
  __android_log_set_logger(DiscardLog);
  BuildCases();
  std::printf("request: %s, %zu entries\n", TheFixture().inputs.source.c_str(),
              TheFixture().inputs.request->entryCount());
  if (argc > 1 && std::strcmp(argv[1], "--instructions") == 0) return CountInstructions();
  AddThreadCases();
  benchmark::Initialize(&argc, argv);
  TableReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  NoteMissingAdapter();
  benchmark::Shutdown();
  return 0;
}
