// The shipped rear-camera capture replayed in-process: the values its README
// works out appear in both output forms; --only and --log choose what is
// shown; the run leaves the process's log settings and static store as it
// found them.
#include <MetaTagWrapper.h>
#include <gtest/gtest.h>
#include <nvdebug/NvLog.h>
#include <unistd.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "DumpTestSupport.h"

namespace {

using Json = nlohmann::json;

using dumptest::Outcome;

Outcome RunExample(std::vector<std::string> extra) {
  const std::string dir = EXAMPLE_DIR;
  std::vector<std::string> args = {dir + "/request.txt", "--static", "0=" + dir + "/static_0.txt", "--static",
                                   "2=" + dir + "/static_2.txt"};
  args.insert(args.end(), extra.begin(), extra.end());
  return dumptest::RunTool(args);
}

Json RunExampleJson(std::vector<std::string> extra) {
  extra.insert(extra.end(), {"--format", "json"});
  const Outcome outcome = RunExample(extra);
  EXPECT_EQ(0, outcome.status) << outcome.err;
  return Json::parse(outcome.out);
}

// The first object of that operation (overloads share a name).
const Json& Find(const Json& dump, const std::string& operation) {
  for (const Json& object : dump) {
    if (object["operation"] == operation) return object;
  }
  static const Json missing;
  ADD_FAILURE() << operation << " missing from the dump";
  return missing;
}

Json Rect(int left, int top, int width, int height) {
  return {{"left", left}, {"top", top}, {"width", width}, {"height", height}};
}

TEST(DumpExample, JsonHasEveryReadInSlotOrderWithTheValuesTheCaptureDetermines) {
  const Json dump = RunExampleJson({});
  int previous = 0;
  for (const Json& object : dump) {  // a dump only reads: no setter runs
    const std::string name = object["operation"];
    EXPECT_TRUE(name.rfind("Set", 0) != 0 && name != "UpdateGainMapMeta") << name;
    EXPECT_LT(previous, object["slot"].get<int>()) << name;
    previous = object["slot"];
    EXPECT_FALSE(object.contains("log")) << name;
  }
  EXPECT_GT(previous, 180);
  EXPECT_EQ((Json{{"slot", 47},
                  {"operation", "GetCropRegion"},
                  {"result", 0},
                  {"value", Rect(679, 492, 2666, 2000)}}),
            Find(dump, "GetCropRegion"));
  EXPECT_EQ(1.5, Find(dump, "GetIspGain")["value"]);
  EXPECT_EQ(16.0, Find(dump, "GetSensorGain")["value"]);

  const Json& faces = Find(dump, "GetFaceRect")["value"];
  EXPECT_EQ(2, faces["faceCount"]);
  EXPECT_EQ(0, faces["mainFaceIndex"]);
  EXPECT_EQ(Rect(689, 189, 414, 494), faces["faces"][0]["rect"]);
  EXPECT_EQ((Json{{"x", 896}, {"y", 436}}), faces["faces"][0]["center"]);
  EXPECT_EQ(Rect(1342, 310, 206, 246), faces["faces"][1]["rect"]);
  const Json& focus = Find(dump, "GetFocusROI")["value"];
  EXPECT_EQ(Rect(689, 189, 414, 494), focus["rect"]);
  EXPECT_EQ((Json{{"x", 896}, {"y", 436}}), focus["point"]);
  EXPECT_EQ(true, Find(dump, "IsRearCamera")["value"]);
}

TEST(DumpExample, TableShowsTheSameValuesInAlignedRows) {
  const Outcome outcome = RunExample({});
  ASSERT_EQ(0, outcome.status);
  EXPECT_EQ("", outcome.err);  // no notes, and the library's log stays off stderr
  const std::vector<std::string> lines = dumptest::Lines(outcome.out);
  const size_t column = lines.at(0).find("value");
  const auto row = [&](const std::string& operation) {
    for (const std::string& line : lines) {
      if (line.compare(6, operation.size() + 1, operation + " ") == 0) return line;
    }
    return std::string();
  };
  EXPECT_EQ("  47  GetCropRegion", row("GetCropRegion").substr(0, 19));
  EXPECT_EQ("0  {left=679 top=492 width=2666 height=2000}", row("GetCropRegion").substr(column - 3));
  EXPECT_EQ("0  1.5", row("GetIspGain").substr(column - 3));
  EXPECT_EQ("0  faceCount=2", row("GetFaceRect").substr(column - 3));
  EXPECT_NE(std::string::npos, outcome.out.find("faces=[{rect={left=689 top=189 width=414 height=494}\n"));
  EXPECT_NE(std::string::npos, outcome.out.find("{rect={left=1342 top=310 width=206 height=246}\n"));
}

TEST(DumpExample, OnlyKeepsTheOperationsWhoseNameMatchesAndStaticsAreRestored) {
  StaticMetadataWraper* store = StaticMetadataWraper::getInstance();
  const auto mine = std::make_shared<NvMetadata>();
  store->setStaticMetadata(0, mine);
  const Json dump = RunExampleJson({"--only", "Get*CropRegion"});
  std::vector<std::string> names;
  for (const Json& object : dump) names.push_back(object["operation"]);
  // Case matters (getPass1CropRegion stays out), and setters never run.
  EXPECT_EQ((std::vector<std::string>{"GetCropRegion", "GetAndroidCropRegion"}), names);

  const Json two = RunExampleJson({"--only", "IsRear*", "--only", "GetIspGain"});
  ASSERT_EQ(2u, two.size());
  EXPECT_EQ("GetIspGain", two[0]["operation"]);
  EXPECT_EQ("IsRearCamera", two[1]["operation"]);
  EXPECT_EQ(true, two[1]["value"]);  // camera 0's static metadata was the capture's during the run
  EXPECT_EQ(mine, store->getStaticMetadata(0));
  EXPECT_EQ(nullptr, store->getStaticMetadata(2));
  store->clear();
}

std::string WriteRequestWithoutManualEv() {
  const std::string path = ::testing::TempDir() + std::to_string(getpid()) + "_plain_request.txt";
  std::ofstream(path) << "  android.sensor.exposureTime (e0000): int64[1]\n    [10000000 ]\n";
  return path;
}

Outcome RunPlain(const std::string& level, const std::string& format) {
  std::vector<std::string> args = {WriteRequestWithoutManualEv(), "--only",   "GetUIEV", "--only",
                                   "GetSensorExposureTime",       "--format", format};
  if (!level.empty()) args.insert(args.end(), {"--log", level});
  return dumptest::RunTool(args);
}

const Json kManualEvWarning = {{"level", "W"},
                               {"file", "MtkMetadataHelper.cpp"},
                               {"function", "GetUIEV"},
                               {"text", "\"GetMetadata nuvaro.supernight.real.manualev err\""}};
const Json kCoreReadVerbose = {{"level", "V"},
                               {"file", "metadataHelperBase.cpp"},
                               {"line", 36},
                               {"function", "GetMetaData"},
                               {"text", "\"GetMetadata err\""}};

TEST(DumpLog, ShowsTheLinesAtTheLevelAndAboveForEachCall) {
  struct Case {
    std::string level;
    std::vector<Json> expected;  // GetUIEV's lines, "line" left out where it is no fixed id
  };
  const Case cases[] = {
      {"error", {}},
      {"E", {}},
      {"warning", {kManualEvWarning}},
      {"w", {kManualEvWarning}},
      {"Verbose", {kCoreReadVerbose, kManualEvWarning}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.level);
    const Outcome outcome = RunPlain(c.level, "json");
    ASSERT_EQ(0, outcome.status) << outcome.err;
    const Json dump = Json::parse(outcome.out);
    ASSERT_EQ(2u, dump.size());
    EXPECT_TRUE(dump[0]["log"].empty());  // the exposure time read succeeds quietly
    const Json& log = dump[1]["log"];
    ASSERT_EQ(c.expected.size(), log.size()) << log;
    for (size_t i = 0; i < log.size(); ++i) {
      for (const auto& field : c.expected[i].items()) EXPECT_EQ(field.value(), log[i][field.key()]) << log[i];
      EXPECT_GT(log[i]["line"].get<int>(), 0);
    }
  }
}

TEST(DumpLog, TableShowsLevelFileLineFunctionAndText) {
  const std::vector<std::string> lines = dumptest::Lines(RunPlain("warning", "table").out);
  ASSERT_EQ(4u, lines.size());
  EXPECT_EQ(0u, lines[3].rfind("      W MtkMetadataHelper.cpp:", 0)) << lines[3];
  const std::string text = " GetUIEV() \"GetMetadata nuvaro.supernight.real.manualev err\"";
  EXPECT_EQ(text, lines[3].substr(lines[3].find_first_not_of("0123456789", 30))) << lines[3];
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

}  // namespace
