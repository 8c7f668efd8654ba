// What reading a whole bug report costs: the time metatext::ReadFile takes
// to find and load every camera metadata buffer of a bug report of over
// 100 MB, and the heap it needs at its peak against the heap the loaded
// buffers keep.
//
// The report is written to a temporary file at start, from the shipped
// camera service dump: the buffers printed again with metatext::Print, in
// logcat (threadtime, with uid, as bug reports hold it) and in whole
// `dumpsys media.camera` sections, among the lines a bug report is mostly
// made of: other services' dumps and other apps' log lines.
#include <NvMetadata.h>
#include <NvVendorTags.h>
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "AllocationCounter.h"
#include "MetaText.h"

namespace {

constexpr size_t kReportBytes = size_t{105} << 20;
constexpr double kTimeTarget = 1.5;  // seconds
constexpr double kPeakTarget = 2.0;  // peak heap while loading / heap the buffers keep
const std::string kSample = std::string(METAHELPER_SOURCE_DIR) + "/examples/camera_dump/media.camera.txt";

[[noreturn]] void Fail(const std::string& message) {
  std::fprintf(stderr, "loader_bench: %s\n", message.c_str());
  std::exit(2);
}

std::string ReadText(const std::string& path) {
  std::ifstream in(path);
  std::ostringstream text;
  text << in.rdbuf();
  if (!in) Fail("cannot read " + path);
  return text.str();
}

// The requests and results of the sample, printed as dumpToLog logs them.
std::vector<std::string> LoggedBuffers() {
  NvVendorTagTable table;
  NvMetadata::setVendorTagTable(&table);
  metatext::Capture capture;
  metatext::Problem problem;
  if (!metatext::ReadFile(kSample, &table, &capture, &problem)) Fail(problem.Message());
  std::vector<std::string> printed;
  for (const metatext::Buffer& buffer : capture.buffers) {
    if (buffer.meta == nullptr || !metatext::IsReplayedByDefault(buffer.kind)) continue;
    std::ostringstream out;
    metatext::Print(*buffer.meta, metatext::PrintStyle(), out);
    printed.push_back(out.str());
  }
  NvMetadata::setVendorTagTable(nullptr);
  if (printed.empty()) Fail(kSample + ": no request or result");
  return printed;
}

// Builds the report in memory, section after section, and writes it out.
class BugReport {
 public:
  BugReport() : camera_(ReadText(kSample)), logged_(LoggedBuffers()) {}

  // Writes the report to a temporary file and returns its name.
  std::string Write() {
    text_ =
        "========================================================\n"
        "== dumpstate: 2026-11-25 06:59:01\n"
        "========================================================\n\n"
        "Build: AP3A.241105.008 release-keys\nKernel: Linux version 6.1.68-android14-11\n\n";
    for (unsigned round = 0; text_.size() < kReportBytes; ++round) {
      AddLogcat(round);
      AddDumpsys(round);
    }
    char path[] = "/tmp/loader_bench_XXXXXX";
    const int fd = mkstemp(path);
    if (fd < 0 || write(fd, text_.data(), text_.size()) != static_cast<ssize_t>(text_.size()))
      Fail("cannot write");
    close(fd);
    bytes_ = text_.size();
    std::string().swap(text_);
    return path;
  }

  size_t bytes() const { return bytes_; }

 private:
  void LogLine(const char* uid, int pid, int tid, char level, const char* tag, const std::string& message) {
    char prefix[96];
    std::snprintf(prefix, sizeof prefix, "11-25 06:%02u:%02u.%03u %5s %5d %5d %c %s: ", (clock_ / 60000) % 60,
                  (clock_ / 1000) % 60, clock_ % 1000, uid, pid, tid, level, tag);
    clock_ += 7;
    text_ += prefix;
    text_ += message;
    text_ += '\n';
  }

  // Other apps and services talk far more than the camera's metadata dumps.
  void AddLogcat(unsigned round) {
    text_ +=
        "------ SYSTEM LOG (logcat -v threadtime -v printable -v uid -d *:v) ------\n"
        "--------- beginning of main\n";
    for (int i = 0; i < 600; ++i) {
      LogLine("1000", 1523, 1601 + i % 7, 'I', "ActivityManager",
              "Start proc " + std::to_string(9000 + i) + ":com.example.app" + std::to_string(i % 13) +
                  "/u0a" + std::to_string(100 + i % 50) + " for service {com.example/.SyncService}");
      LogLine("10123", 4321, 4390, 'D', "CameraApp",
              "onCaptureCompleted frame=" + std::to_string(round * 600 + i));
      LogLine("1047", 1234, 1250 + i % 3, 'V', "CameraService", "handleEvent: camera 0 status 1, torch off");
    }
    std::istringstream buffer(logged_[round % logged_.size()]);
    for (std::string line; std::getline(buffer, line);)
      LogLine("10123", 4321, 4400, 'D', "CameraMetadata-JNI", line);
    text_ += "--------- switch to system\n";
  }

  void AddService(const std::string& name, const std::string& body) {
    text_ += std::string(79, '-') + "\nDUMP OF SERVICE " + name + ":\n" + body;
    text_ += "--------- 0.052s was the duration of dumpsys " + name + ", ending at: 2026-11-25 06:59:03\n";
  }

  void AddDumpsys(unsigned round) {
    text_ += "------ DUMPSYS (/system/bin/dumpsys) ------\n";
    std::string activity;
    for (int i = 0; i < 400; ++i)
      activity += "    * Hist #" + std::to_string(i) + ": ActivityRecord{" +
                  std::to_string(0x5e1a0 + i + round) + " u0 com.example.app/.MainActivity t" +
                  std::to_string(100 + i) + "}\n";
    AddService("activity", activity);
    AddService("media.camera", camera_);
  }

  const std::string camera_;
  const std::vector<std::string> logged_;
  std::string text_;
  size_t bytes_ = 0;
  unsigned clock_ = 0;
};

std::string gReport;
size_t gReportBytes = 0;

struct Loaded {
  size_t buffers = 0;
  size_t kept = 0;  // heap bytes held by what was loaded
  size_t peak = 0;  // heap bytes at most while loading, above what was held before
};

Loaded LoadOnce(benchmark::State& state) {
  NvVendorTagTable table;
  NvMetadata::setVendorTagTable(&table);
  Loaded loaded;
  {
    metatext::Capture capture;
    metatext::Problem problem;
    const size_t before = bench::LiveBytes();
    bench::ResetPeak();
    if (!metatext::ReadFile(gReport, &table, &capture, &problem)) Fail(problem.Message());
    state.PauseTiming();
    loaded = {capture.buffers.size(), bench::LiveBytes() - before, bench::PeakBytes() - before};
  }
  NvMetadata::setVendorTagTable(nullptr);
  state.ResumeTiming();
  return loaded;
}

void LoadBugReport(benchmark::State& state) {
  Loaded loaded;
  for (auto _ : state) loaded = LoadOnce(state);
  state.SetBytesProcessed(static_cast<int64_t>(gReportBytes * state.iterations()));
  state.counters["buffers"] = static_cast<double>(loaded.buffers);
  state.counters["kept_MB"] = loaded.kept / 1e6;
  state.counters["peak_MB"] = loaded.peak / 1e6;
  state.counters["peak/kept"] = static_cast<double>(loaded.peak) / static_cast<double>(loaded.kept);
}

// Keeps the median run and ends with the targets.
class TargetReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      if (!run.error_occurred && (run.run_type != Run::RT_Aggregate || run.aggregate_name == "median"))
        median_ = run;
    }
  }

  void Finalize() override {
    ConsoleReporter::Finalize();
    const double seconds = median_.real_accumulated_time / median_.iterations;
    const double ratio = median_.counters["peak/kept"].value;
    std::printf("\nbug report: %.1f MB, %.0f buffers, %.0f MB/s\n", gReportBytes / 1e6,
                median_.counters["buffers"].value, gReportBytes / 1e6 / seconds);
    std::printf("%-28s %12s  %-10s %s\n", "case", "measured", "target", "result");
    std::printf("%-28s %10.2f s  <= %.1f s   %s\n", "loader/time", seconds, kTimeTarget,
                seconds <= kTimeTarget ? "met" : "NOT MET");
    std::printf("%-28s %10.2fx   <= %.1fx    %s  (peak %.1f MB, kept %.1f MB)\n", "loader/peak_heap_vs_kept",
                ratio, kPeakTarget, ratio <= kPeakTarget ? "met" : "NOT MET",
                median_.counters["peak_MB"].value, median_.counters["kept_MB"].value);
  }

 private:
  Run median_;
};

}  // namespace

int main(int argc, char** argv) {
  {
    BugReport report;
    gReport = report.Write();
    gReportBytes = report.bytes();
  }
  benchmark::RegisterBenchmark("loader/bug_report", LoadBugReport)
      ->Unit(benchmark::kMillisecond)
      ->Iterations(1)
      ->Repetitions(3)
      ->ReportAggregatesOnly(true)
      ->UseRealTime();
  benchmark::Initialize(&argc, argv);
  TargetReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  std::remove(gReport.c_str());
  return 0;
}
