// metahelper-dump run in-process as its main would: the shipped example's
// worked-out values, the command line, bad files, and the two output forms.
#include <MetaTagWrapper.h>
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

struct Outcome {
  int status;
  std::string out;
  std::string err;
};

Outcome RunTool(std::vector<std::string> args) {
  args.insert(args.begin(), "metahelper-dump");
  std::vector<char*> argv;
  for (std::string& arg : args) argv.push_back(arg.data());
  argv.push_back(nullptr);
  std::ostringstream out, err;
  const int status = dump::RunDump(static_cast<int>(args.size()), argv.data(), out, err);
  return {status, out.str(), err.str()};
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

// ---- The shipped example -------------------------------------------------
Json RunExampleJson(std::vector<std::string> extra) {
  const std::string dir = EXAMPLE_DIR;
  std::vector<std::string> args = {dir + "/request.txt",
                                   "--static",
                                   "0=" + dir + "/static_0.txt",
                                   "--static",
                                   "2=" + dir + "/static_2.txt",
                                   "--format",
                                   "json"};
  args.insert(args.end(), extra.begin(), extra.end());
  const Outcome outcome = RunTool(args);
  EXPECT_EQ(0, outcome.status);
  EXPECT_EQ("", outcome.err);  // no notes, and the library's log stays off stderr
  return Json::parse(outcome.out);
}

Json Rect(int left, int top, int width, int height) {
  return {{"left", left}, {"top", top}, {"width", width}, {"height", height}};
}

TEST(DumpExample, EveryReadInSlotOrderWithTheValuesTheCaptureDetermines) {
  const Json dump = RunExampleJson({});
  int previous = 0;
  Json found;
  for (const Json& object : dump) {  // a dump only reads: no setter runs
    const std::string name = object["operation"];
    EXPECT_TRUE(name.rfind("Set", 0) != 0 && name != "UpdateGainMapMeta") << name;
    EXPECT_LT(previous, object["slot"].get<int>()) << name;
    previous = object["slot"];
    EXPECT_FALSE(object.contains("log")) << name;
    if (!found.contains(name)) found[name] = object;  // overloads share a name: the first
  }
  EXPECT_GT(previous, 180);
  EXPECT_EQ((Json{{"slot", 47},
                  {"operation", "GetCropRegion"},
                  {"result", 0},
                  {"value", Rect(679, 492, 2666, 2000)}}),
            found["GetCropRegion"]);
  EXPECT_EQ(1.5, found["GetIspGain"]["value"]);
  const Json& faces = found["GetFaceRect"]["value"];
  EXPECT_EQ(2, faces["faceCount"]);
  EXPECT_EQ(Rect(689, 189, 414, 494), faces["faces"][0]["rect"]);
  EXPECT_EQ(Rect(1342, 310, 206, 246), faces["faces"][1]["rect"]);
}

TEST(DumpExample, OnlyKeepsTheOperationsWhoseNameMatchesAndStaticsAreRestored) {
  StaticMetadataWraper* store = StaticMetadataWraper::getInstance();
  const auto mine = std::make_shared<NvMetadata>();
  store->setStaticMetadata(0, mine);
  std::vector<std::string> names;
  for (const Json& object : RunExampleJson({"--only", "Get*CropRegion", "--only", "IsRear*"}))
    names.push_back(object["operation"]);
  // Case matters: getPass1CropRegion stays out.
  EXPECT_EQ((std::vector<std::string>{"GetCropRegion", "GetAndroidCropRegion", "IsRearCamera"}), names);
  EXPECT_EQ(mine, store->getStaticMetadata(0));
  EXPECT_EQ(nullptr, store->getStaticMetadata(2));
  store->clear();
}

// ---- --log ---------------------------------------------------------------
Outcome RunPlain(const std::string& level, const std::string& format) {
  const std::string request =
      WriteFile("plain_request.txt", "  android.sensor.exposureTime (e0000): int64[1]\n    [10000000 ]\n");
  std::vector<std::string> args = {request,    "--only", "GetUIEV", "--only", "GetSensorExposureTime",
                                   "--format", format};
  if (!level.empty()) args.insert(args.end(), {"--log", level});
  return RunTool(args);
}

TEST(DumpLog, ShowsTheLinesAtTheLevelAndAboveForEachCall) {
  const Json warning = {{"level", "W"}, {"file", "MtkMetadataHelper.cpp"}, {"function", "GetUIEV"}};
  const Json verbose = {{"level", "V"}, {"file", "metadataHelperBase.cpp"}, {"function", "GetMetaData"}};
  const std::pair<const char*, std::vector<Json>> cases[] = {
      {"error", {}}, {"E", {}}, {"warning", {warning}}, {"w", {warning}}, {"Verbose", {verbose, warning}}};
  for (const auto& [level, expected] : cases) {
    SCOPED_TRACE(level);
    const Outcome outcome = RunPlain(level, "json");
    ASSERT_EQ(0, outcome.status) << outcome.err;
    const Json dump = Json::parse(outcome.out);
    ASSERT_EQ(2u, dump.size());
    EXPECT_TRUE(dump[0]["log"].empty());  // the exposure time read succeeds quietly
    const Json& log = dump[1]["log"];
    ASSERT_EQ(expected.size(), log.size()) << log;
    for (size_t i = 0; i < log.size(); ++i) {
      for (const auto& field : expected[i].items()) EXPECT_EQ(field.value(), log[i][field.key()]) << log[i];
      EXPECT_GT(log[i]["line"].get<int>(), 0);
      EXPECT_FALSE(log[i]["text"].get<std::string>().empty());
    }
  }
}

TEST(DumpLog, WithoutLogTheLibraryStaysOffStderrAndSettingsComeBack) {
  gNvCamLogLevel = 2;  // as a user's environment may set it: every level online
  testing::internal::CaptureStderr();
  const Outcome quiet = RunPlain("", "table");
  const Outcome logged = RunPlain("verbose", "json");
  const std::string stderrText = testing::internal::GetCapturedStderr();
  EXPECT_EQ(0, quiet.status);
  EXPECT_EQ("", quiet.err + stderrText);
  EXPECT_EQ(2u, gNvCamLogLevel);
  EXPECT_EQ(0, logged.status);
  gNvCamLogLevel = 6;
}

// ---- Bad input: exit 2, one message, nothing on stdout ---------------------
void ExpectRefused(const Outcome& outcome, const std::string& expected) {
  EXPECT_EQ(2, outcome.status);
  EXPECT_EQ("", outcome.out);
  EXPECT_EQ(1u, Lines(outcome.err).size()) << outcome.err;
  EXPECT_NE(std::string::npos, outcome.err.find(expected)) << outcome.err;
}

constexpr char kHeader[] =
    "Dumping camera metadata array: 1 / 1 entries, 0 / 0 bytes of extra data.\n"
    "  Version: 1, Flags: 00000000\n";
const std::string kGoodRequest = std::string(kHeader) +
                                 "  android.sensor.exposureTime (e0000): int64[1]\n"
                                 "    [10000000 ]\n";

TEST(DumpInput, BadRequestOrStaticFileIsRefusedWithItsFileAndLine) {
  const std::pair<const char*, int> cases[] = {
      // after the header; the line the problem is reported at
      {"  android.sensor.exposureTime (e0000): int65[1]\n    [1 ]\n", 3},
      {"  android.colorCorrection.transform (00001): rational[9]\n    [(1 / 1) (0 / 1) ]\n"
       "  android.sensor.exposureTime (e0000): int64[1]\n    [1 ]\n",
       3},
      {"  android.sensor.exposureTime (e0000): int64[1]\n    [99999999999999999999 ]\n", 4},
      {"  android.colorCorrection.transform (00001): rational[1]\n    [(256 256) ]\n", 4},
  };
  const std::string request = WriteFile("good_request.txt", kGoodRequest);
  for (const auto& [body, line] : cases) {
    SCOPED_TRACE(body);
    const std::string path = WriteFile("bad.txt", kHeader + std::string(body));
    ExpectRefused(RunTool({path}), path + ":" + std::to_string(line) + ": ");
    ExpectRefused(RunTool({request, "--static", "0=" + path, "--format", "json"}),
                  path + ":" + std::to_string(line) + ": ");
  }
  const std::string missing = ::testing::TempDir() + "no_such_capture.txt";
  ExpectRefused(RunTool({missing}), missing + ": cannot open");
  ExpectRefused(RunTool({request, "--static", "2=" + missing}), missing + ": cannot open");
}

TEST(DumpInput, NotesGoToStderrAndTheDumpGoesOn) {
  const std::string path =
      WriteFile("unknown_tag.txt", kGoodRequest + "  vendor.unknown.tag (deadbeef): int32[1]\n    [7 ]\n");
  const Outcome outcome = RunTool({path, "--only", "GetSensorExposureTime"});
  EXPECT_EQ(0, outcome.status);
  EXPECT_EQ(0u, outcome.err.rfind("note: " + path + ":5: ", 0)) << outcome.err;
  EXPECT_NE(std::string::npos, outcome.out.find("10000000"));
}

TEST(DumpUsage, BadCommandLinesExitWithStatus2AndAMessageHelpWith0) {
  const std::string request = WriteFile("good_request.txt", kGoodRequest);
  const std::pair<std::vector<std::string>, std::string> cases[] = {
      // arguments, part of the message
      {{}, "REQUEST"},
      {{request, "--bogus"}, "--bogus"},
      {{request, "--static", "front.txt"}, "ID=FILE"},
      {{request, "--static", "0="}, "ID=FILE"},
      {{request, "--static", "x=front.txt"}, "ID=FILE"},
      {{request, "--static", "4294967296=front.txt"}, "ID=FILE"},
      {{request, "--static", "0=" + request, "--static", "0=" + request}, "camera 0 given twice"},
      {{request, "--format", "xml"}, "xml"},
      {{request, "--log", "loud"}, "loud"},
      {{request, "--log"}, "--log"},
      {{request, "--only", "Set*"}, "--only"},
      {{request, request}, request},
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
  for (const char* option :
       {"REQUEST", "--static ID=FILE", "--format table|json", "--log LEVEL", "--only PATTERN"})
    EXPECT_NE(std::string::npos, help.out.find(option)) << option;
}

// ---- The output forms ------------------------------------------------------
TEST(DumpRealText, ShortestTextThatReadsBackAsTheSameValue) {
  const std::pair<double, const char*> cases[] = {
      {0.1f, "0.1"},          {1.0f / 3, "0.33333334"},     {80.0f, "80.0"},
      {-2.5e-7f, "-2.5e-07"}, {FLT_MAX, "3.402823466e+38"}, {1.0 / 3, "0.3333333333333333"},
      {-0.0, "-0.0"},         {std::nan(""), "nan"},        {-HUGE_VAL, "-inf"},
  };
  for (const auto& [value, text] : cases) EXPECT_EQ(text, dump::RealText(value));
}

TEST(DumpTable, WideValuesContinueUnderTheValueColumn) {
  dump::Value many = dump::Value::array(), faces = {{"faceCount", 3}, {"faces", dump::Value::array()}};
  for (int i = 0; i < 300; ++i) many.push_back(i * 1000);
  for (int i = 0; i < 3; ++i)
    faces["faces"].push_back({{"rect", {{"left", 100 * i}, {"width", 40}}}, {"label", "a\"b"}});
  const std::vector<dump::OperationRun> runs = {
      {3, "GetShort", 0, 7, {}},
      {41, "GetLSC", 0, many, {}},
      {187, "GetFaceRect", 0, faces, {{'W', "File.cpp", 12, "GetFaceRect", "\"no face\""}}},
      {188, "GetFocusROI", -1, nullptr, {}},
  };
  std::ostringstream out;
  dump::PrintTable(runs, true, out);
  const std::vector<std::string> lines = Lines(out.str());
  const size_t column = lines[0].find("value");
  EXPECT_EQ("   3  GetShort          0  7", lines[1]);
  size_t rows = 0;
  for (const std::string& line : lines) {
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

TEST(DumpJson, TextThatIsNotUtf8IsReplacedNotFatal) {
  std::ostringstream out;
  dump::PrintJson({{9, "GetImgName", 0, std::string("IMG\xff"), {}}}, false, out);
  EXPECT_EQ("IMG\xEF\xBF\xBD", Json::parse(out.str())[0]["value"]);
}

}  // namespace
