// metahelper-dump run in-process as its main would: the shipped camera service
// dump, the context and tag options, bad input and exit statuses, the printers.
#include <MetaTagWrapper.h>
#include <NvVendorTags.h>
#include <gtest/gtest.h>
#include <nvdebug/NvLog.h>
#include <unistd.h>

#include <cfloat>
#include <cmath>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "Dump.h"
#include "DumpPrinters.h"
#include "ValueTree.h"

namespace {

using Json = nlohmann::json;
using Args = std::vector<std::string>;

const std::string kDump = std::string(EXAMPLE_DIR) + "/media.camera.txt";

struct Outcome {
  int status;
  std::string out;
  std::string err;
};

Outcome RunTool(Args args) {
  args.insert(args.begin(), "metahelper-dump");
  std::vector<char*> argv;
  for (std::string& arg : args) argv.push_back(arg.data());
  argv.push_back(nullptr);
  std::ostringstream out, err;
  const int status = dump::RunDump(static_cast<int>(args.size()), argv.data(), out, err);
  return {status, out.str(), err.str()};
}

// A run that must succeed quietly, in JSON.
Json RunJson(Args args) {
  args.insert(args.end(), {"--format", "json"});
  const Outcome outcome = RunTool(args);
  EXPECT_EQ(0, outcome.status) << outcome.err;
  EXPECT_EQ("", outcome.err);  // no notes, and the library's log stays off stderr
  return Json::parse(outcome.out);
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

// ctest runs each case in its own process, in parallel: the process id keeps
// their files apart.
std::string WriteFile(const std::string& name, const std::string& text) {
  const std::string path = ::testing::TempDir() + std::to_string(getpid()) + "_" + name;
  std::ofstream(path) << text;
  return path;
}

// The first operation of that name (overloads share one).
Json Operation(const Json& buffer, const std::string& name) {
  for (const Json& operation : buffer["operations"]) {
    if (operation["operation"] == name) return operation;
  }
  ADD_FAILURE() << name << " not run";
  return {};
}

Json Rect(int left, int top, int width, int height) {
  return {{"left", left}, {"top", top}, {"width", width}, {"height", height}};
}

// ---- The shipped dump ---------------------------------------------------------
TEST(DumpExample, ListsEveryBufferWithItsCameraKindAndSession) {
  std::vector<std::string> listed;  // "buffer camera kind [stale]"
  for (const Json& buffer : RunJson({kDump, "--list"})) {
    EXPECT_EQ(kDump, buffer["file"]);
    EXPECT_GT(buffer["entries"].get<int>(), 0);
    listed.push_back(buffer["buffer"].dump() + " " + buffer["camera"].get<std::string>() + " " +
                     buffer["kind"].get<std::string>() + (buffer["stale"].get<bool>() ? " stale" : ""));
  }
  EXPECT_EQ((std::vector<std::string>{"1 0 latest result", "2 3 physical result", "3 0 last request",
                                      "4 0 static characteristics", "5 3 physical camera characteristics",
                                      "6 4 physical camera characteristics", "7 2 static characteristics",
                                      "8 2 latest result stale", "9 2 last request stale"}),
            listed);  // the last two from the previous session's block
  const std::vector<std::string> table = Lines(RunTool({kDump, "--list"}).out);
  ASSERT_EQ(10u, table.size());
  EXPECT_NE(std::string::npos, table[9].find(":2607  2       last request")) << table[9];
  EXPECT_NE(std::string::npos, table[9].find("stale  36")) << table[9];
}

// Each request and result is answered from the static characteristics of its
// own camera: the request's framework id picks them, and a physical frame,
// which carries none, is asked about the camera the dump shows it under.
// Camera 0's last request (buffer 3) also gives the values
// examples/camera_dump/README.md works out that need the tool's context.
TEST(DumpExample, ReplaysEveryRequestAndResultWithItsOwnCamerasStatics) {
  struct Row {
    unsigned buffer;
    Json activeArray;  // GetActiveArraySize: the request's camera's statics
    Json physicalIds;  // GetAndroidLogicalMultiCameraPhysicalIds(int): the context's camera
  };
  const Row expected[] = {
      {1, Rect(0, 0, 4000, 3000), {3, 2, 4}},     {2, nullptr, Json::array()},
      {3, Rect(0, 0, 4000, 3000), {3, 2, 4}},     {8, Rect(0, 0, 3264, 2448), Json::array()},
      {9, Rect(0, 0, 3264, 2448), Json::array()},
  };
  const std::pair<const char*, Json> worked[] = {
      {"GetCropRegion", Rect(679, 492, 2666, 2000)},
      {"GetFocusROI", {{"rect", Rect(689, 189, 414, 494)}, {"point", {{"x", 896}, {"y", 436}}}}},
      {"IsRearCamera", true},
      {"GetAndroidLogicalMultiCameraPhysicalRoleIds", {2}},
  };
  Args args = {kDump, "--only", "GetActiveArraySize", "--only", "GetAndroidLogicalMultiCameraPhysicalIds"};
  for (const auto& [name, value] : worked) args.insert(args.end(), {"--only", name});
  const Json dump = RunJson(args);
  ASSERT_EQ(std::size(expected), dump.size());
  for (size_t i = 0; i < dump.size(); ++i) {
    SCOPED_TRACE(expected[i].buffer);
    EXPECT_EQ(expected[i].buffer, dump[i]["buffer"]);
    EXPECT_EQ(expected[i].activeArray, Operation(dump[i], "GetActiveArraySize")["value"]);
    EXPECT_EQ(expected[i].physicalIds,
              Operation(dump[i], "GetAndroidLogicalMultiCameraPhysicalIds")["value"]);
  }
  for (const auto& [name, value] : worked) EXPECT_EQ(value, Operation(dump[2], name)["value"]) << name;
}

TEST(DumpExample, LeavesTheProcessAsItFoundIt) {
  StaticMetadataWraper* store = StaticMetadataWraper::getInstance();
  const auto mine = std::make_shared<NvMetadata>();
  store->setStaticMetadata(0, mine);
  const NvVendorTagTable table;
  NvMetadata::setVendorTagTable(&table);
  RunJson({kDump, "--only", "IsRearCamera"});
  EXPECT_EQ(&table, NvMetadata::getVendorTagTable());
  EXPECT_EQ(mine, store->getStaticMetadata(0));
  for (const unsigned camera : {2u, 3u, 4u}) EXPECT_EQ(nullptr, store->getStaticMetadata(camera)) << camera;
  NvMetadata::setVendorTagTable(nullptr);
  store->clear();
}

// ---- Texts of a few lines ------------------------------------------------------
// One buffer as the service prints it, `indentation` deep, holding `entries`
// (each entry line followed by its values line, indented by two).
std::string Buffer(const std::string& entries, int indentation = 0) {
  const std::string pad(indentation, ' ');
  std::string text = pad + "Dumping camera metadata array: 1 / 1 entries, 0 / 0 bytes of extra data.\n" +
                     pad + "  Version: 1, Flags: 00000000\n";
  std::istringstream lines(entries);
  for (std::string line; std::getline(lines, line);) text += pad + "  " + line + "\n";
  return text;
}

std::string LastRequestOf(int camera, const std::string& entries) {
  return "== Camera device " + std::to_string(camera) + " dynamic info: ==\n    Last request sent:\n" +
         Buffer(entries, 6);
}

const std::string kExposure = "android.sensor.exposureTime (e0000): int64[1]\n  [10000000 ]\n";

// ---- The capture's own context ---------------------------------------------------
// The camera asked about comes from --camera, the request, the dump or is 0
// (the request's and the dump's: DumpExample); the sensor size from the
// option or the camera's statics (pixel array, else active array), which
// GetCropRegion logs when the output is in-sensor zoomed.
TEST(DumpContext, CameraAndSizesComeFromTheOptionsOrTheCamerasStatics) {
  const std::string active = "android.sensor.info.activeArraySize (f0000): int32[4]\n  [0 0 3800 2800 ]\n";
  const std::string both = WriteFile(
      "both.txt", Buffer(active + "android.sensor.info.pixelArraySize (f0006): int32[2]\n  [4100 3100 ]\n"));
  const std::string activeOnly = WriteFile("active.txt", Buffer(active));
  const std::string noCamera = WriteFile("no_camera.txt", "  " + kExposure);
  const std::string ids = "GetAndroidLogicalMultiCameraPhysicalIds";
  const auto crop = [](const Args& extra) {
    Args args = {kDump, "--buffer", "3", "--only", "GetCropRegion", "--in-sensor-zoom", "--log", "info"};
    args.insert(args.end(), extra.begin(), extra.end());
    return args;
  };
  const std::pair<Args, std::string> cases[] = {
      // the first answer, as JSON, holds the text
      {{kDump, "--buffer", "3", "--camera", "2", "--only", ids}, R"("value":[])"},
      {{noCamera, "--static", "0=" + kDump, "--only", ids}, R"("value":[3,2,4])"},
      {crop({}), "sensorsize(4000, 3000)"},
      {crop({"--static", "0=" + both}), "sensorsize(4100, 3100)"},
      {crop({"--static", "0=" + activeOnly}), "sensorsize(3800, 2800)"},
      {crop({"--sensor-size", "5000x4000"}), "sensorsize(5000, 4000)"},
      {{kDump, "--buffer", "3", "--only", "GetFocusROI", "--image-size", "960x540"},
       R"("rect":{"height":246,"left":345,"top":94,"width":206})"},
  };
  for (const auto& [args, expected] : cases) {
    SCOPED_TRACE(expected);
    EXPECT_NE(std::string::npos, RunJson(args)[0]["operations"][0].dump().find(expected));
  }
}

// ---- The tags behind each answer --------------------------------------------------
// The curve is printed with verbosity 1: only 16 of its values.
TEST(DumpTags, EachAnswerNamesTheTagsItLookedUpAndFlagsWhatTheDumpCut) {
  const std::string path = WriteFile(
      "cut.txt", LastRequestOf(0, kExposure + "nuvaro.hdr.gtm.curve (a001001e): int32[20]\n  [0 1 2 3 ]\n"
                                              "  [4 5 6 7 ]\n  [8 9 10 11 ]\n  [12 13 14 15 ]\n"));
  Args args = {path,       "--only", "GetSensorExposureTime", "--only", "GetUIEV", "--only", "GetGTMTable",
               "--format", "json"};
  const Json operations = Json::parse(RunTool(args).out)[0]["operations"];
  const Json tags = Json::parse(R"([
      [{"tag":"android.sensor.exposureTime","from":"request","found":true}],
      [{"tag":"nuvaro.ae.exposureCompensation","from":"request","found":false}],
      [{"tag":"nuvaro.hdr.gtm.curve","from":"request","found":true,"cut":true}]])");
  ASSERT_EQ(3u, operations.size());
  for (size_t i = 0; i < 3; ++i) EXPECT_EQ(tags[i], operations[i]["tags"]);
  args.resize(args.size() - 2);  // the table
  const auto tagLines = [&args] {
    std::vector<std::string> lines;
    for (const std::string& line : Lines(RunTool(args).out))
      if (line.find(" (request)") != std::string::npos) lines.push_back(line);
    return lines;
  };
  const std::string cut = "      found    nuvaro.hdr.gtm.curve (request)  ! the dump printed only part of it";
  EXPECT_EQ(std::vector<std::string>{cut}, tagLines());  // marked even without --tags
  args.push_back("--tags");
  EXPECT_EQ((std::vector<std::string>{"      found    android.sensor.exposureTime (request)",
                                      "      missing  nuvaro.ae.exposureCompensation (request)", cut}),
            tagLines());
}

// ---- Bad input: what is refused, what is left out, what is tolerated ------------------
TEST(DumpInput, ExitStatusAndStderrForEachKindOfInput) {
  const std::string good = WriteFile("good.txt", Buffer(kExposure));
  const std::string bad = WriteFile("bad.txt", Buffer("android.sensor.exposureTime (e0000): int65[1]\n"));
  const std::string noBuffer =
      WriteFile("no_buffer.txt", "== Camera device 0 dynamic info: ==\n  Device 0 is closed\n");
  // Camera 1's request has a value its type cannot hold (line 12).
  const std::string mixed = WriteFile(
      "mixed.txt", LastRequestOf(0, kExposure) +
                       LastRequestOf(1, "android.sensor.sensitivity (e0002): int32[1]\n  [99999999999 ]\n"));
  // An external camera's id is no number: its characteristics cannot be registered.
  const std::string external = WriteFile(
      "external.txt", LastRequestOf(0, kExposure) +
                          "== Camera HAL device device@1.1/external/usb-1 (v1.3) static information: ==\n"
                          "  API2 camera characteristics:\n" +
                          Buffer("android.lens.facing (80005): byte[1]\n  [EXTERNAL ]\n", 4));
  const std::string missing = ::testing::TempDir() + "no_such_capture.txt";
  struct Case {
    Args args;
    int status;
    std::string err;  // its one line starts so
    bool out;         // something is replayed
  };
  const Case cases[] = {
      {{bad}, 2, bad + ":3: ", false},
      {{good, "--static", "0=" + bad}, 2, bad + ":3: ", false},
      {{missing}, 2, missing + ": ", false},
      {{noBuffer}, 2, noBuffer + ": holds no camera metadata buffer", false},
      {{good, "--static", "5=" + kDump}, 2, kDump + ": holds no static characteristics of camera 5", false},
      {{mixed}, 1, mixed + ":12: ", true},
      {{mixed, "--list"}, 0, mixed + ":12: ", true},
      {{good, mixed}, 1, mixed + ":12: ", true},
      {{external}, 0, "note: " + external + ":9: camera id 'usb-1' is not a number", true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.args.back());
    const Outcome outcome = RunTool(c.args);
    EXPECT_EQ(c.status, outcome.status);
    ASSERT_EQ(1u, Lines(outcome.err).size()) << outcome.err;
    EXPECT_EQ(0u, outcome.err.rfind(c.err, 0)) << outcome.err;
    EXPECT_EQ(c.out, !outcome.out.empty());
  }
  const Json replayed = Json::parse(RunTool({good, mixed, "--format", "json"}).out);
  ASSERT_EQ(2u, replayed.size());  // the bad one is left out, and numbered
  EXPECT_EQ(2, replayed[1]["buffer"]);
  const std::string listed = Lines(RunTool({mixed, "--list"}).out)[2];
  EXPECT_EQ(listed.size() - 10, listed.find("unreadable")) << listed;
}

TEST(DumpUsage, BadCommandLinesExitWithStatus2AndAMessageHelpWith0) {
  const std::string request = WriteFile("usage_request.txt", Buffer(kExposure));
  const std::pair<Args, std::string> cases[] = {
      // arguments, part of the message
      {{}, "FILE"},
      {{request, "--bogus"}, "--bogus"},
      {{request, "--static", "front.txt"}, "ID=FILE"},
      {{request, "--static", "4294967296=front.txt"}, "ID=FILE"},
      {{request, "--static", "0=" + request, "--static", "0=" + request}, "camera 0 given twice"},
      {{request, "--format", "xml"}, "xml"},
      {{request, "--log", "loud"}, "loud"},
      {{request, "--only", "Set*"}, "--only"},
      {{request, "--buffer", "0"}, "--buffer"},
      {{request, "--buffer", "2"}, "--buffer 2: the input holds 1 buffers"},
      {{request, "--camera", "front"}, "--camera"},
      {{request, "--sensor-size", "4000"}, "WIDTHxHEIGHT"},
      {{request, "--image-size", "0x1080"}, "WIDTHxHEIGHT"},
  };
  for (const auto& [args, expected] : cases) {
    SCOPED_TRACE(expected);
    const Outcome outcome = RunTool(args);
    EXPECT_EQ(2, outcome.status);
    EXPECT_EQ("", outcome.out);
    EXPECT_NE(std::string::npos, outcome.err.find(expected)) << outcome.err;
  }
  const Outcome help = RunTool({"--help"});
  EXPECT_EQ(0, help.status);
  EXPECT_NE(std::string::npos, help.out.find("Exit status")) << help.out;
}

// ---- --log ---------------------------------------------------------------------------
// Each level shows its lines and those above it for each call. Without --log
// the library stays off stderr even when the user's environment turns every
// level on, and the process's level comes back after each run.
TEST(DumpLog, ShowsTheLinesAtTheLevelAndAboveForEachCallAndNoneWithout) {
  const std::string request = WriteFile("plain_request.txt", "  " + kExposure);
  const Json warning = {{"level", "W"}, {"file", "MtkMetadataHelper.cpp"}, {"function", "GetUIEV"}};
  const Json verbose = {{"level", "V"}, {"file", "metadataHelperBase.cpp"}, {"function", "GetMetaData"}};
  const std::pair<const char*, std::vector<Json>> cases[] = {
      {"error", {}}, {"w", {warning}}, {"Verbose", {verbose, warning}}};
  gNvCamLogLevel = 2;  // every level on
  testing::internal::CaptureStderr();
  for (const auto& [level, expected] : cases) {
    SCOPED_TRACE(level);
    const Json operations = RunJson(
        {request, "--only", "GetUIEV", "--only", "GetSensorExposureTime", "--log", level})[0]["operations"];
    ASSERT_EQ(2u, operations.size());
    EXPECT_TRUE(operations[0]["log"].empty());  // the exposure time read succeeds quietly
    const Json& log = operations[1]["log"];
    ASSERT_EQ(expected.size(), log.size()) << log;
    for (size_t i = 0; i < log.size(); ++i) {
      for (const auto& field : expected[i].items()) EXPECT_EQ(field.value(), log[i][field.key()]) << log[i];
      EXPECT_GT(log[i]["line"].get<int>(), 0);
      EXPECT_FALSE(log[i]["text"].get<std::string>().empty());
    }
    EXPECT_EQ(2u, gNvCamLogLevel);
  }
  RunJson({request, "--only", "GetUIEV"});
  EXPECT_EQ("", testing::internal::GetCapturedStderr());
  EXPECT_EQ(2u, gNvCamLogLevel);
  gNvCamLogLevel = 6;
}

// ---- The output forms ---------------------------------------------------------------
TEST(DumpRealText, ShortestTextThatReadsBackAsTheSameValue) {
  const std::pair<double, const char*> cases[] = {
      {0.1f, "0.1"},          {1.0f / 3, "0.33333334"},     {80.0f, "80.0"},
      {-2.5e-7f, "-2.5e-07"}, {FLT_MAX, "3.402823466e+38"}, {1.0 / 3, "0.3333333333333333"},
      {-0.0, "-0.0"},         {std::nan(""), "nan"},        {-HUGE_VAL, "-inf"},
  };
  for (const auto& [value, text] : cases) EXPECT_EQ(text, dump::RealText(value));
}

metatext::Buffer ABuffer() {
  metatext::Buffer buffer;
  buffer.file = "dump.txt";
  buffer.line = 7;
  buffer.camera = "2";
  buffer.kind = metatext::Kind::kLastRequest;
  buffer.stale = true;
  buffer.meta = std::make_shared<NvMetadata>();
  return buffer;
}

TEST(DumpTable, WideValuesContinueUnderTheValueColumn) {
  dump::Value many = dump::Value::array(), faces = {{"faceCount", 3}, {"faces", dump::Value::array()}};
  for (int i = 0; i < 300; ++i) many.push_back(i * 1000);
  for (int i = 0; i < 3; ++i)
    faces["faces"].push_back({{"rect", {{"left", 100 * i}, {"width", 40}}}, {"label", "a\"b"}});
  const metatext::Buffer buffer = ABuffer();
  const std::vector<dump::BufferRun> runs = {
      {{4, &buffer, nullptr},
       {
           {3, "GetShort", 0, 7, {}, {}},
           {41, "GetLSC", 0, many, {}, {}},
           {187, "GetFaceRect", 0, faces, {{'W', "File.cpp", 12, "GetFaceRect", "\"no face\""}}, {}},
           {188, "GetFocusROI", -1, nullptr, {}, {}},
       }}};
  std::ostringstream out;
  dump::PrintTable(runs, {true, false}, out);
  const std::vector<std::string> lines = Lines(out.str());
  EXPECT_EQ("buffer 4: dump.txt:7, camera 2, last request, stale, 0 entries", lines[0]);
  const size_t column = lines[1].find("value");
  EXPECT_EQ("   3  GetShort          0  7", lines[2]);
  size_t rows = 0;
  for (size_t i = 1; i < lines.size(); ++i) {
    const std::string& line = lines[i];
    EXPECT_LE(line.size(), 128u) << line;
    if (line.find_first_not_of(' ') == 6) continue;  // a log line
    if (line[3] != ' ') {  // a row: its slot number ends there, its value starts in the column
      ++rows;
      EXPECT_NE(' ', line[column]) << line;
    } else {  // a continuation: nothing left of the value column
      EXPECT_EQ(std::string(column, ' '), line.substr(0, column)) << line;
    }
  }
  EXPECT_EQ(5u, rows);  // header and four operations
  EXPECT_EQ(" 188  GetFocusROI      -1  -", lines.back());
  for (const char* text : {"299000]\n", "\n      W File.cpp:12 GetFaceRect() \"no face\"\n",
                           "{rect={left=200 width=40} label=\"a\\\"b\"}"})
    EXPECT_NE(std::string::npos, out.str().find(text)) << text;
}

TEST(DumpJson, OneObjectPerBufferWithItsOperationsAndBadTextReplaced) {
  const metatext::Buffer buffer = ABuffer();
  std::ostringstream out;
  dump::PrintJson({{{4, &buffer, nullptr}, {{9, "GetImgName", 0, std::string("IMG\xff"), {}, {}}}}}, false,
                  out);
  const Json dump = Json::parse(out.str());
  EXPECT_EQ(Json::parse(R"([{"buffer":4,"file":"dump.txt","line":7,"camera":"2","kind":"last request",
      "detail":"","stale":true,"entries":0,"operations":[{"slot":9,"operation":"GetImgName","result":0,
      "value":"IMG\uFFFD","tags":[]}]}])"),
            dump);
}

}  // namespace
