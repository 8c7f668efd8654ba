// The output forms on values built by hand: records nested in arrays land
// where they belong, reals print as short as they read back, and the table
// keeps its columns however wide a value is.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "DumpPrinters.h"
#include "DumpTestSupport.h"
#include "ValueTree.h"

namespace {

using dump::Value;

// FacesInfo-like: a record holding an array of records that hold records,
// described as the catalogue describes one (open, fields, close).
Value DescribeFaces(int faceCount) {
  dump::ValueTreeSink sink;
  sink.BeginRecord(nullptr, "FacesInfo");
  sink.Integer("faceCount", faceCount);
  sink.BeginArray("faces", faceCount);
  for (int i = 0; i < faceCount; ++i) {
    sink.BeginRecord(nullptr, "FaceEntry");
    sink.BeginRecord("rect", "__UtilsImage_Rect");
    sink.Unsigned("left", 100u * i);
    sink.Unsigned("width", 40);
    sink.EndRecord();
    sink.Text("label", "a\"b", 3);
    sink.EndRecord();
  }
  sink.EndArray();
  sink.Boolean("valid", true);
  sink.EndRecord();
  return sink.Result();
}

TEST(DumpValueTree, NestedRecordsAndArraysKeepTheirPlaceAndFieldOrder) {
  const Value faces = DescribeFaces(12);  // enough pushes to move the array's storage
  ASSERT_EQ(12u, faces["faces"].size());
  for (int i = 0; i < 12; ++i) {
    EXPECT_EQ(100u * i, faces["faces"][i]["rect"]["left"].get<unsigned>()) << i;
    EXPECT_EQ("a\"b", faces["faces"][i]["label"]);
  }
  EXPECT_EQ(true, faces["valid"]);
  std::vector<std::string> order;
  for (const auto& field : faces.items()) order.push_back(field.key());
  EXPECT_EQ((std::vector<std::string>{"faceCount", "faces", "valid"}), order);
}

TEST(DumpRealText, ShortestTextThatReadsBackAsTheSameValue) {
  const std::pair<double, const char*> cases[] = {
      {0.1f, "0.1"},
      {1.0f / 3, "0.33333334"},
      {80.0f, "80.0"},
      {66666664.0f, "66666664.0"},
      {-2.5e-7f, "-2.5e-07"},
      {3.4e38f, "3.4e+38"},
      {FLT_MAX, "3.402823466e+38"},
      {0.1, "0.1"},
      {1.0 / 3, "0.3333333333333333"},
      {1e300, "1e+300"},
      {-0.0, "-0.0"},
      {std::nan(""), "nan"},
      {-HUGE_VAL, "-inf"},
  };
  for (const auto& [value, text] : cases) EXPECT_EQ(text, dump::RealText(value));
}

TEST(DumpTable, WideValuesContinueUnderTheValueColumn) {
  Value many = Value::array();
  for (int i = 0; i < 300; ++i) many.push_back(i * 1000);
  const std::vector<dump::OperationRun> runs = {
      {3, "GetShort", 0, 7, {}},
      {41, "GetLSC", 0, many, {}},
      {187, "GetFaceRect", 0, DescribeFaces(3), {{'W', "File.cpp", 12, "GetFaceRect", "\"no face\""}}},
      {188, "GetFocusROI", -1, nullptr, {}},
  };
  std::ostringstream out;
  dump::PrintTable(runs, true, out);
  const std::vector<std::string> lines = dumptest::Lines(out.str());
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
  EXPECT_EQ("IMG\xEF\xBF\xBD", nlohmann::json::parse(out.str())[0]["value"]);
}

}  // namespace
