// The camera service dump reader: what a good dump loads, the notes it gives
// for what it tolerates, and the file:line message and untouched container
// for every kind of bad input.
#include <gtest/gtest.h>
#include <system/camera_metadata.h>

#include <cmath>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include "MetaText.h"

namespace {

struct Result {
  bool ok = false;
  metatext::Problem problem;
  std::vector<metatext::Problem> notes;
};

Result Parse(const std::string& text, NvMetadata* meta) {
  Result result;
  std::istringstream in(text);
  result.ok = metatext::ParseText(in, "dump.txt", meta, &result.problem, &result.notes);
  return result;
}

// A container that already holds one entry, to show a failed load keeps it.
NvMetadata Prefilled() {
  NvMetadata meta;
  const int32_t sensitivity = 800;
  meta.update(ANDROID_SENSOR_SENSITIVITY, &sensitivity, 1);
  return meta;
}

const char kEveryType[] =
    "Dumping camera metadata array: 8 / 8 entries, 0 / 0 bytes of extra data.\n"
    "  Version: 1, Flags: 00000000\n"
    "\n"
    "# a whole-line comment\n"
    "    android.lens.facing (80005): byte[1]\n"
    "        [BACK ]\n"
    "android.sensor.info.activeArraySize (f0000): int32[4]\r\n"
    "\t[0 0 4000 3000 ]   # trailing comment\r\n"
    "android.lens.focusDistance (80003): float[1]\n"
    "  [2.50000000 ]\n"
    "android.sensor.exposureTime (e0000): int64[1]\n"
    "  [-9223372036854775808 ]\n"
    "com.nuvaro.lens.info.ViewAngle (a0000018): double[2]\n"
    "  [7.85e1 -1.5E-3 ]\n"
    "android.colorCorrection.transform (00001): rational[9]\n"
    "  [(256 / 256) (0 / 1) (0/1) ]\n"
    "  [(0 / 1) ( -7 / 3 ) (0 / 1) ]\n"
    "  [(0 / 1) (0 / 1) (256 / 256) ]\n"
    "nuvaro.snapshot.imageName (a001002e): byte[4]\n"
    "  [73 77 ]\n"
    "  [71 0 ]\n"
    "android.control.afRegions (10008): int32[0]\n";

// The entry's elements, whatever their type, as doubles (rationals as numerator, denominator).
std::vector<double> Values(const NvMetadata& meta, uint32_t tag) {
  const camera_metadata_ro_entry e = meta.find(tag);
  std::vector<double> values;
  for (size_t i = 0; i < e.count; ++i) {
    if (e.type == TYPE_RATIONAL)
      values.insert(values.end(), {double(e.data.r[i].numerator), double(e.data.r[i].denominator)});
    else
      values.push_back(e.type == TYPE_BYTE    ? e.data.u8[i]
                       : e.type == TYPE_INT32 ? e.data.i32[i]
                       : e.type == TYPE_FLOAT ? e.data.f[i]
                       : e.type == TYPE_INT64 ? double(e.data.i64[i])
                                              : e.data.d[i]);
  }
  return values;
}

TEST(MetaText, LoadsEveryTypeAcrossLinesWithHeaderCommentsAndEnumNames) {
  NvMetadata meta = Prefilled();
  const Result result = Parse(kEveryType, &meta);
  ASSERT_TRUE(result.ok) << result.problem.Message();
  EXPECT_TRUE(result.notes.empty());
  EXPECT_EQ(8u, meta.entryCount());  // the prefilled entry is replaced, the empty one kept
  using V = std::vector<double>;
  EXPECT_EQ(V{}, Values(meta, ANDROID_SENSOR_SENSITIVITY));
  EXPECT_EQ(V{1}, Values(meta, ANDROID_LENS_FACING));
  EXPECT_EQ((V{0, 0, 4000, 3000}), Values(meta, ANDROID_SENSOR_INFO_ACTIVE_ARRAY_SIZE));
  EXPECT_EQ(V{2.5}, Values(meta, ANDROID_LENS_FOCUS_DISTANCE));
  EXPECT_EQ(V{-9223372036854775808.0}, Values(meta, ANDROID_SENSOR_EXPOSURE_TIME));
  EXPECT_EQ((V{78.5, -0.0015}), Values(meta, 0xa0000018u /* com.nuvaro.lens.info.ViewAngle */));
  EXPECT_EQ((V{256, 256, 0, 1, 0, 1, 0, 1, -7, 3, 0, 1, 0, 1, 0, 1, 256, 256}),
            Values(meta, ANDROID_COLOR_CORRECTION_TRANSFORM));
  EXPECT_EQ((V{73, 77, 71, 0}), Values(meta, 0xa001002eu /* nuvaro.snapshot.imageName */));
}

// Enum names of each tag, and the extreme values of each type.
TEST(MetaText, EachValueFormLoadsAsItsType) {
  struct Case {
    std::string entry;  // the entry line without its type and count
    const char* type;
    const char* value;
    uint32_t tag;
    double expected;  // every value below is exact in a double
  };
  const std::string facing = "android.lens.facing (80005)";
  const std::string cfa = "android.sensor.info.colorFilterArrangement (f0002)";
  const std::string sensitivity = "android.sensor.sensitivity (e0002)";
  const std::string focus = "android.lens.focusDistance (80003)";
  const Case cases[] = {
      {facing, "byte", "EXTERNAL", ANDROID_LENS_FACING, 2},
      {cfa, "byte", "NIR", ANDROID_SENSOR_INFO_COLOR_FILTER_ARRANGEMENT, 6},
      {"android.flash.mode (40002)", "byte", "TORCH", ANDROID_FLASH_MODE, 2},
      {"android.control.enableZsl (10029)", "byte", "TRUE", ANDROID_CONTROL_ENABLE_ZSL, 1},
      {sensitivity, "int32", "+2147483647", ANDROID_SENSOR_SENSITIVITY, INT32_MAX},
      {focus, "float", ".5", ANDROID_LENS_FOCUS_DISTANCE, 0.5},
      {focus, "float", "3.4028234663852886e38", ANDROID_LENS_FOCUS_DISTANCE, 3.4028234663852886e38},
  };

  for (const Case& c : cases) {
    NvMetadata meta;
    const std::string text = c.entry + ": " + c.type + "[1]\n[" + c.value + " ]\n";
    const Result result = Parse(text, &meta);
    ASSERT_TRUE(result.ok) << text << result.problem.Message();
    EXPECT_EQ(std::vector<double>{c.expected}, Values(meta, c.tag)) << text;
  }
}

// Non-finite values as printf prints them; values the dump elided read as 0.
TEST(MetaText, NonFiniteAndElidedValuesLoad) {
  NvMetadata meta;
  const Result result = Parse(
      "android.colorCorrection.gains (00002): float[4]\n[nan -nan inf -inf ]\n"
      "android.statistics.lensShadingMap (11000b): float[4]\n[1.5 ...]\n",
      &meta);
  ASSERT_TRUE(result.ok) << result.problem.Message();
  const float* gains = meta.find(ANDROID_COLOR_CORRECTION_GAINS).data.f;
  EXPECT_TRUE(std::isnan(gains[0]) && std::isnan(gains[1]));
  EXPECT_EQ((std::vector<float>{INFINITY, -INFINITY}), std::vector<float>(gains + 2, gains + 4));
  const auto map = meta.find(ANDROID_STATISTICS_LENS_SHADING_MAP);
  EXPECT_EQ((std::vector<float>{1.5f, 0, 0, 0}), std::vector<float>(map.data.f, map.data.f + map.count));
}

TEST(MetaText, ToleratedProblemsLoadTheRestAndLeaveNotes) {
  struct Case {
    const char* what;
    std::string text;
    std::vector<std::string> notes;
    size_t entries;
  };
  const Case cases[] = {
      {"unknown tag",
       "vendor.unknown.tag (c0ffee00): int32[2]\n[1 ]\n[2 ]\nandroid.lens.facing (80005): byte[1]\n[0 ]\n",
       {"dump.txt:1: unknown tag vendor.unknown.tag (c0ffee00) skipped"},
       1},
      {"renamed tag",
       "android.lens.oldFacing (80005): byte[1]\n[BACK ]\n",
       {"dump.txt:1: unknown name android.lens.oldFacing; loaded as android.lens.facing (80005) by its "
        "number"},
       1},
      {"elision",
       "android.lens.facing (80005): byte[1]\n[0 ]\nandroid.statistics.lensShadingMap (11000b): "
       "float[6]\n[1.0 2.0 ]\n[3.0 ... ]\n",
       {"dump.txt:5: android.statistics.lensShadingMap: 3 of 6 values elided by the dump; read as 0"},
       2},
  };
  for (const Case& c : cases) {
    NvMetadata meta;
    const Result result = Parse(c.text, &meta);
    ASSERT_TRUE(result.ok) << c.what << ": " << result.problem.Message();
    std::vector<std::string> notes;
    for (const auto& note : result.notes) notes.push_back(note.Message());
    EXPECT_EQ(c.notes, notes) << c.what;
    EXPECT_EQ(c.entries, meta.entryCount()) << c.what;
  }
}

TEST(MetaText, BadInputNamesFileLineAndProblemAndLoadsNothing) {
  struct Case {
    std::string text;
    std::string message;
  };
  const std::string facing = "android.lens.facing (80005): byte[1]\n";
  const std::string sensitivity = "android.sensor.sensitivity (e0002): int32[1]\n";
  const std::string ccm = "android.colorCorrection.transform (00001): rational[2]\n";
  const std::string focus = "android.lens.focusDistance (80003): float[1]\n";
  const Case cases[] = {
      {"android.lens.facing (80005): int16[1]\n[1 ]\n",
       "dump.txt:1: unknown type 'int16' (byte, int32, float, int64, double, rational)"},
      {"android.lens.facing (80005): byte[x]\n",
       "dump.txt:1: android.lens.facing: count 'x' is not a number"},
      {"android.lens.facing (80005): byte[2000000]\n",
       "dump.txt:1: android.lens.facing: a count of 2000000 takes the file past its limit of 1048576 values"},
      {facing + "[1 2 ]\n", "dump.txt:2: more values than the 1 that android.lens.facing at line 1 declares"},
      {facing + "[... ]\n[1 ]\n",
       "dump.txt:3: more values than the 1 that android.lens.facing at line 1 declares"},
      {"android.sensor.info.activeArraySize (f0000): int32[4]\n[0 0 ]\n" + facing + "[1 ]\n",
       "dump.txt:1: android.sensor.info.activeArraySize has 2 values where its count is 4"},
      {"\nandroid.sensor.info.activeArraySize (f0000): int32[4]\n[0 0 ]\n",
       "dump.txt:2: the file ends inside android.sensor.info.activeArraySize after 2 of its 4 values"},
      {facing + "[256 ]\n", "dump.txt:2: android.lens.facing: 256 is out of range for byte"},
      {facing + "[REAR ]\n",
       "dump.txt:2: android.lens.facing: 'REAR' is neither a number nor one of FRONT, BACK, EXTERNAL"},
      {"nuvaro.snapshot.physCameraId (a001002f): byte[1]\n[BACK ]\n",
       "dump.txt:2: nuvaro.snapshot.physCameraId: 'BACK' is not a number"},
      {sensitivity + "[2147483648 ]\n",
       "dump.txt:2: android.sensor.sensitivity: 2147483648 is out of range for int32"},
      {sensitivity + "[1.5 ]\n", "dump.txt:2: android.sensor.sensitivity: '1.5' is not a number"},
      {"android.sensor.exposureTime (e0000): int64[1]\n[9223372036854775808 ]\n",
       "dump.txt:2: android.sensor.exposureTime: 9223372036854775808 is out of range for int64"},
      {focus + "[3.5e38 ]\n", "dump.txt:2: android.lens.focusDistance: 3.5e38 is out of range for float"},
      {focus + "[0x1p3 ]\n", "dump.txt:2: android.lens.focusDistance: '0x1p3' is not a number"},
      {"android.jpeg.gpsCoordinates (70000): double[1]\n[1e309 ]\n",
       "dump.txt:2: android.jpeg.gpsCoordinates: 1e309 is out of range for double"},
      {ccm + "[(1 / 2) 3 ]\n",
       "dump.txt:2: android.colorCorrection.transform: malformed rational at '3' (expected '(n / d)')"},
      {ccm + "[(1 / 2) (3 / 4 ]\n",
       "dump.txt:2: android.colorCorrection.transform: malformed rational '(3 / 4' (expected '(n / d)')"},
      {ccm + "[(1 / 2) (3 / 2147483648) ]\n",
       "dump.txt:2: android.colorCorrection.transform: 2147483648 is out of range for rational"},
      {facing + "[1 ]\nandroid.lens.facing = 1\n",
       "dump.txt:3: not an entry 'NAME (TAG): TYPE[COUNT]', values '[...]', header or comment: "
       "'android.lens.facing = 1'"},
      {"Dumping camera metadata array: 1 / 1 entries\n[1 ]\n", "dump.txt:2: values before any entry line"},
      {facing + "[1\n", "dump.txt:2: values line does not end with ']'"},
      {facing + "[... 1 ]\n", "dump.txt:2: '...' must end the values line"},
      {"android.lens.facing (80006): byte[1]\n[1 ]\n",
       "dump.txt:1: android.lens.facing is tag 80005 in the registry, not 80006"},
      {"android.lens.facing (80005): int32[1]\n[1 ]\n",
       "dump.txt:1: android.lens.facing is byte in the registry, but the dump says int32"},
      {facing + "[1 ]\n\n" + facing + "[0 ]\n",
       "dump.txt:4: android.lens.facing is given twice; first at line 1"},
      {facing + "[1 ]\nandroid.lens.old (80005): byte[1]\n[0 ]\n",
       "dump.txt:3: android.lens.old is given twice; first at line 1"},
  };
  for (const Case& c : cases) {
    NvMetadata meta = Prefilled();
    const Result result = Parse(c.text, &meta);
    EXPECT_FALSE(result.ok) << c.text;
    EXPECT_EQ(c.message, result.problem.Message()) << c.text;
    EXPECT_EQ(1u, meta.entryCount()) << c.text;
    EXPECT_EQ(800, meta.find(ANDROID_SENSOR_SENSITIVITY).data.i32[0]) << c.text;
  }
}

TEST(MetaText, FileThatCannotBeOpenedIsAProblemOfTheWholeFile) {
  NvMetadata meta = Prefilled();
  metatext::Problem problem;
  EXPECT_FALSE(metatext::ParseFile("/nonexistent/request.txt", &meta, &problem));
  EXPECT_EQ("/nonexistent/request.txt: cannot open: No such file or directory", problem.Message());
  EXPECT_FALSE(metatext::ParseFile("/", &meta, &problem));  // opens, but cannot be read
  EXPECT_EQ("/: cannot read the file", problem.Message());
  EXPECT_EQ(800, meta.find(ANDROID_SENSOR_SENSITIVITY).data.i32[0]);
}

}  // namespace
