// metahelper-dump run in-process as its main would: the shipped camera service
// dump, the context and tag options, bad input and exit statuses, the printers.
#include <MetaTagWrapper.h>
#include <NvVendorTags.h>
#include <gtest/gtest.h>
#include <nvdebug/NvLog.h>
#include <unistd.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <tuple>
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
  std::string out, err;
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

// ctest runs the cases in parallel processes: the process id keeps their files apart.
std::string WriteFile(const std::string& name, const std::string& text) {
  const std::string path = ::testing::TempDir() + std::to_string(getpid()) + "_" + name;
  std::ofstream(path) << text;
  return path;
}

// The first operation of that name (overloads share one).
Json Operation(const Json& buffer, const std::string& name) {
  for (const Json& operation : buffer["operations"])
    if (operation["operation"] == name) return operation;
  ADD_FAILURE() << name << " not run";
  return {};
}

Json Rect(int left, int top, int width, int height) {
  return {{"left", left}, {"top", top}, {"width", width}, {"height", height}};
}

TEST(DumpExample, ListsEveryBufferWithItsCameraKindAndSession) {
  std::vector<std::string> listed;  // "buffer camera kind [stale]"
  for (const Json& buffer : RunJson({kDump, "--list"}))
    listed.push_back(buffer["buffer"].dump() + " " + buffer["camera"].get<std::string>() + " " +
                     buffer["kind"].get<std::string>() + (buffer["stale"].get<bool>() ? " stale" : ""));
  EXPECT_EQ((std::vector<std::string>{"1 0 latest result", "2 3 physical result", "3 0 last request",
                                      "4 0 static characteristics", "5 3 physical camera characteristics",
                                      "6 4 physical camera characteristics", "7 2 static characteristics",
                                      "8 2 latest result stale", "9 2 last request stale"}),
            listed);  // the last two from the previous session's block
}

// Each request and result is answered from its own camera's statics (a physical frame's: the camera
// the dump shows it under); buffer 3 gives the README's values that need the tool's context. The run
// leaves the process's statics and vendor tag table as it found them.
TEST(DumpExample, ReplaysEveryRequestAndResultWithItsOwnCamerasStatics) {
  // Buffer, GetActiveArraySize (the request's camera's statics), and
  // GetAndroidLogicalMultiCameraPhysicalIds(int) (the context's camera).
  const std::tuple<unsigned, Json, Json> expected[] = {
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
  StaticMetadataWraper* store = StaticMetadataWraper::getInstance();
  const auto mine = std::make_shared<NvMetadata>();
  store->setStaticMetadata(0, mine);
  const NvVendorTagTable table;
  NvMetadata::setVendorTagTable(&table);
  const Json dump = RunJson(args);
  EXPECT_EQ(&table, NvMetadata::getVendorTagTable());
  EXPECT_EQ(mine, store->getStaticMetadata(0));
  for (const unsigned camera : {2u, 3u, 4u}) EXPECT_EQ(nullptr, store->getStaticMetadata(camera)) << camera;
  NvMetadata::setVendorTagTable(nullptr);
  store->clear();
  ASSERT_EQ(std::size(expected), dump.size());
  for (size_t i = 0; i < dump.size(); ++i) {
    const auto& [buffer, activeArray, physicalIds] = expected[i];
    SCOPED_TRACE(buffer);
    EXPECT_EQ(buffer, dump[i]["buffer"]);
    EXPECT_EQ(activeArray, Operation(dump[i], "GetActiveArraySize")["value"]);
    EXPECT_EQ(physicalIds, Operation(dump[i], "GetAndroidLogicalMultiCameraPhysicalIds")["value"]);
  }
  for (const auto& [name, value] : worked) EXPECT_EQ(value, Operation(dump[2], name)["value"]) << name;
}

// One buffer as the service prints it, `indentation` deep, holding `entries`.
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

// Each run is in JSON unless it names its --format: exit status, a text its stdout holds ("": prints
// nothing) and one its stderr holds ("": quiet). The library's log stays off stderr even with every
// level on, and that level comes back after each run.
TEST(DumpRuns, EachRunsStatusOutputAndMessage) {
  const std::string good = WriteFile("good.txt", Buffer(kExposure));
  const std::string plain = WriteFile("plain.txt", "  " + kExposure);  // no camera, no header
  const std::string active = "android.sensor.info.activeArraySize (f0000): int32[4]\n  [0 0 3800 2800 ]\n";
  const std::string both = WriteFile(
      "both.txt", Buffer(active + "android.sensor.info.pixelArraySize (f0006): int32[2]\n  [4100 3100 ]\n"));
  const std::string activeOnly = WriteFile("active.txt", Buffer(active));
  // Printed with verbosity 1: only 16 of the curve's values.
  const std::string cut =
      WriteFile("cut.txt", LastRequestOf(0,
                                         "nuvaro.hdr.gtm.curve (a001001e): int32[20]\n  [0 1 2 3 ]\n"
                                         "  [4 5 6 7 ]\n  [8 9 10 11 ]\n  [12 13 14 15 ]\n"));
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
  const std::string ids = "GetAndroidLogicalMultiCameraPhysicalIds";
  const auto crop = [](const Args& extra) {
    Args args = {kDump, "--buffer", "3", "--only", "GetCropRegion", "--in-sensor-zoom", "--log", "info"};
    args.insert(args.end(), extra.begin(), extra.end());
    return args;
  };
  const std::tuple<Args, int, std::string, std::string> runs[] = {
      // the camera asked about: --camera, else the request's, the dump's or 0
      {{kDump, "--buffer", "3", "--camera", "2", "--only", ids}, 0, R"("value":[],)", ""},
      {{plain, "--static", "0=" + kDump, "--only", ids}, 0, R"("value":[3,2,4],)", ""},
      // the sensor size: the option, else the camera's pixel array, else its
      // active array; GetCropRegion logs it when the output is in-sensor zoomed
      {crop({}), 0, "sensorsize(4000, 3000)", ""},
      {crop({"--static", "0=" + both}), 0, "sensorsize(4100, 3100)", ""},
      {crop({"--static", "0=" + activeOnly}), 0, "sensorsize(3800, 2800)", ""},
      {crop({"--sensor-size", "5000x4000"}), 0, "sensorsize(5000, 4000)", ""},
      {{kDump, "--buffer", "3", "--only", "GetFocusROI", "--image-size", "960x540"},
       0,
       R"("rect":{"left":345,"top":94,"width":206,"height":246})",
       ""},
      // each --log level shows its lines and those above; the tags looked up
      {{plain, "--only", "GetUIEV", "--log", "error"}, 0, R"("found":false}],"log":[]})", ""},
      {{plain, "--only", "GetUIEV", "--log", "Verbose"}, 0, R"("log":[{"level":"V",)", ""},
      // an answer resting on an entry the dump cut short
      {{cut, "--only", "GetGTMTable"}, 0, R"("found":true,"cut":true})", "16 of 20 values printed"},
      {{plain, "--only", "GetUIEV", "--format", "table", "--tags"},
       0,
       "\n      missing  nuvaro.ae.exposureCompensation (request)\n",
       ""},
      // bad input: refused (2), a buffer left out (1; 0 for --list), a note
      {{bad}, 2, "", bad + ":3: "},
      {{good, "--static", "0=" + bad}, 2, "", bad + ":3: "},
      {{missing}, 2, "", missing + ": "},
      {{noBuffer}, 2, "", noBuffer + ": holds no camera metadata buffer"},
      {{good, "--static", "5=" + kDump}, 2, "", kDump + ": holds no static characteristics of camera 5"},
      {{mixed, "--list", "--format", "table"}, 0, " unreadable\n", mixed + ":12: "},
      {{good, mixed}, 1, R"("buffer":2,"file":")" + mixed, mixed + ":12: "},
      {{external}, 0, R"("buffer":1,)", "note: " + external + ":9: camera id 'usb-1' is not a number"},
      // bad command lines
      {{}, 2, "", "FILE"},
      {{good, "--bogus"}, 2, "", "--bogus"},
      {{good, "--static", "4294967296=front.txt"}, 2, "", "ID=FILE"},
      {{good, "--static", "0=" + good, "--static", "0=" + good}, 2, "", "camera 0 given twice"},
      {{good, "--format", "xml"}, 2, "", "xml"},
      {{good, "--log", "loud"}, 2, "", "loud"},
      {{good, "--only", "Set*"}, 2, "", "--only"},
      {{good, "--buffer", "0"}, 2, "", "--buffer"},
      {{good, "--buffer", "2"}, 2, "", "--buffer 2: the input holds 1 buffers"},
      {{good, "--camera", "front"}, 2, "", "--camera"},
      {{good, "--image-size", "0x1080"}, 2, "", "WIDTHxHEIGHT"},
      {{"--help"}, 0, "Exit status", ""},
  };
  gNvCamLogLevel = 2;  // every level on
  testing::internal::CaptureStderr();
  for (const auto& [runArgs, status, out, err] : runs) {
    SCOPED_TRACE(testing::PrintToString(runArgs));
    Args args = runArgs;
    if (std::find(args.begin(), args.end(), "--format") == args.end())
      args.insert(args.end(), {"--format", "json"});
    const Outcome outcome = RunTool(args);
    EXPECT_EQ(status, outcome.status);
    EXPECT_EQ(out.empty(), outcome.out.empty());
    EXPECT_NE(std::string::npos, outcome.out.find(out)) << outcome.out;
    EXPECT_EQ(err.empty(), outcome.err.empty());
    EXPECT_NE(std::string::npos, outcome.err.find(err)) << outcome.err;
    // one message; a bad command line adds where help is
    EXPECT_LE(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 2);
    EXPECT_EQ(2u, gNvCamLogLevel);
  }
  EXPECT_EQ("", testing::internal::GetCapturedStderr());
  gNvCamLogLevel = 6;
  const Json replayed = Json::parse(RunTool({good, mixed, "--format", "json"}).out);
  EXPECT_EQ(2u, replayed.size());  // the bad one is left out
}

TEST(DumpRealText, ShortestTextThatReadsBackAsTheSameValue) {
  const std::pair<double, const char*> cases[] = {
      {0.1f, "0.1"},          {1.0f / 3, "0.33333334"},     {80.0f, "80.0"},
      {-2.5e-7f, "-2.5e-07"}, {FLT_MAX, "3.402823466e+38"}, {1.0 / 3, "0.3333333333333333"},
      {-0.0, "-0.0"},         {std::nan(""), "nan"},        {-HUGE_VAL, "-inf"},
  };
  for (const auto& [value, text] : cases) EXPECT_EQ(text, dump::RealText(value));
}

// The table: too wide a value continues under its column, a record's under its first field; without
// --tags only the lookup of an entry the dump cut short shows. JSON: an object per buffer, bad text replaced.
TEST(DumpPrinters, TableContinuesWideValuesJsonReplacesBadText) {
  const metatext::Buffer buffer{
      "dump.txt", 7, "2", metatext::Kind::kLastRequest, "", true, std::make_shared<NvMetadata>(), {}, {}};
  dump::Value many = dump::Value::array(), faces = {{"faceCount", 3}, {"faces", dump::Value::array()}};
  for (int i = 0; i < 30; ++i) many.push_back(i * 1000);
  for (int i = 0; i < 3; ++i)
    faces["faces"].push_back({{"rect", {{"left", 100 * i}, {"width", 40}}}, {"label", "a\"b"}});
  const std::vector<dump::TagLookup> tags = {{"nuvaro.hdr.gtm.curve", "request", true, true},
                                             {"android.control.aeMode", "request", false, false}};
  const std::vector<dump::BufferRun> runs = {
      {{4, &buffer, nullptr},
       {
           {3, "GetShort", 0, 7, {}, {}},
           {41, "GetLSC", 0, many, {}, {}},
           {187, "GetFaceRect", 0, faces, {{'W', "File.cpp", 12, "GetFaceRect", "\"no face\""}}, {}},
           {188, "GetFocusROI", -1, nullptr, {}, tags},
       }}};
  std::ostringstream out;
  dump::PrintTable(runs, {true, false}, out);
  EXPECT_EQ(
      "buffer 4: dump.txt:7, camera 2, last request, stale, 0 entries\n"
      "slot  operation    result  value\n"
      "   3  GetShort          0  7\n"
      "  41  GetLSC            0  [0 1000 2000 3000 4000 5000 6000 7000 8000 9000 10000 11000 12000 13000 "
      "14000 15000 16000 17000 18000\n"
      "                            19000 20000 21000 22000 23000 24000 25000 26000 27000 28000 29000]\n"
      " 187  GetFaceRect       0  faceCount=3\n"
      "                           faces=[{rect={left=0 width=40} label=\"a\\\"b\"} {rect={left=100 width=40} "
      "label=\"a\\\"b\"}\n"
      "                                  {rect={left=200 width=40} label=\"a\\\"b\"}]\n"
      "      W File.cpp:12 GetFaceRect() \"no face\"\n"
      " 188  GetFocusROI      -1  -\n"
      "      found    nuvaro.hdr.gtm.curve (request)  ! the dump printed only part of it\n",
      out.str());
  out.str("");
  dump::PrintJson({{{4, &buffer, nullptr}, {{9, "GetImgName", 0, std::string("IMG\xff"), {}, {}}}}}, false,
                  out);
  EXPECT_EQ(Json::parse(R"([{"buffer":4,"file":"dump.txt","line":7,"camera":"2","kind":"last request",
      "detail":"","stale":true,"entries":0,"operations":[{"slot":9,"operation":"GetImgName","result":0,
      "value":"IMG\uFFFD","tags":[]}]}])"),
            Json::parse(out.str()));
}

}  // namespace
