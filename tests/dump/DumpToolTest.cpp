// metahelper-dump run in-process on small files of its own: bad command
// lines and bad files end with exit 2, one message and an empty stdout;
// parser notes do not stop the dump.
#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include <unistd.h>

#include "DumpTestSupport.h"

namespace {

using dumptest::Lines;
using dumptest::Outcome;
using dumptest::RunTool;

// ctest runs each case in its own process, in parallel: the process id keeps
// their files apart.
std::string WriteFile(const std::string& name, const std::string& text) {
  const std::string path = ::testing::TempDir() + std::to_string(getpid()) + "_" + name;
  std::ofstream(path) << text;
  return path;
}

// The failed run printed nothing on stdout and exactly one line on stderr,
// which contains `expected`.
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

struct BadFile {
  const char* what;
  const char* body;  // after the two header lines
  int line;          // where the problem is reported
};

const BadFile kBadFiles[] = {
    {"unknown type", "  android.sensor.exposureTime (e0000): int65[1]\n    [1 ]\n", 3},
    {"count mismatch",
     "  android.colorCorrection.transform (00001): rational[9]\n    [(1 / 1) (0 / 1) ]\n"
     "  android.sensor.exposureTime (e0000): int64[1]\n    [1 ]\n",
     3},
    {"out of range", "  android.sensor.exposureTime (e0000): int64[1]\n    [99999999999999999999 ]\n", 4},
    {"malformed rational", "  android.colorCorrection.transform (00001): rational[1]\n    [(256 256) ]\n", 4},
    {"truncated",
     "  android.colorCorrection.transform (00001): rational[9]\n    [(1 / 1) (0 / 1) (0 / 1) ]\n", 3},
};

class BadFileTest : public ::testing::TestWithParam<BadFile> {};

TEST_P(BadFileTest, RequestIsRefusedWithItsFileAndLine) {
  const std::string path = WriteFile("bad_request.txt", kHeader + std::string(GetParam().body));
  ExpectRefused(RunTool({path}), path + ":" + std::to_string(GetParam().line) + ": ");
}

TEST_P(BadFileTest, StaticFileIsRefusedWithItsFileAndLine) {
  const std::string request = WriteFile("good_request.txt", kGoodRequest);
  const std::string path = WriteFile("bad_static.txt", kHeader + std::string(GetParam().body));
  ExpectRefused(RunTool({request, "--static", "0=" + path, "--format", "json"}),
                path + ":" + std::to_string(GetParam().line) + ": ");
}

INSTANTIATE_TEST_SUITE_P(Dump, BadFileTest, ::testing::ValuesIn(kBadFiles), [](const auto& info) {
  std::string name = info.param.what;
  for (char& c : name) c = c == ' ' ? '_' : c;
  return name;
});

TEST(DumpInput, MissingFileIsRefusedByName) {
  const std::string path = ::testing::TempDir() + "no_such_capture.txt";
  ExpectRefused(RunTool({path}), path + ": cannot open");
  const std::string request = WriteFile("good_request.txt", kGoodRequest);
  ExpectRefused(RunTool({request, "--static", "2=" + path}), path + ": cannot open");
}

TEST(DumpInput, NotesGoToStderrAndTheDumpGoesOn) {
  const std::string path = WriteFile("unknown_tag.txt", kGoodRequest +
                                                            "  vendor.unknown.tag (deadbeef): int32[1]\n"
                                                            "    [7 ]\n");
  const Outcome outcome = RunTool({path, "--only", "GetSensorExposureTime"});
  EXPECT_EQ(0, outcome.status);
  EXPECT_EQ(0u, outcome.err.rfind("note: " + path + ":5: ", 0)) << outcome.err;
  EXPECT_NE(std::string::npos, outcome.out.find("10000000"));
}

struct BadUsage {
  std::vector<std::string> args;
  std::string expected;  // part of the message
};

TEST(DumpUsage, BadCommandLinesExitWithStatus2AndAMessage) {
  const std::string request = WriteFile("good_request.txt", kGoodRequest);
  const BadUsage cases[] = {
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
  for (const BadUsage& c : cases) {
    SCOPED_TRACE(c.expected);
    const Outcome outcome = RunTool(c.args);
    EXPECT_EQ(2, outcome.status);
    EXPECT_EQ("", outcome.out);
    EXPECT_NE(std::string::npos, outcome.err.find(c.expected)) << outcome.err;
  }
}

TEST(DumpUsage, HelpNamesEveryOptionAndExitsWith0) {
  const Outcome outcome = RunTool({"--help"});
  EXPECT_EQ(0, outcome.status);
  for (const char* option :
       {"REQUEST", "--static ID=FILE", "--format table|json", "--log LEVEL", "--only PATTERN"})
    EXPECT_NE(std::string::npos, outcome.out.find(option)) << option;
}

}  // namespace
