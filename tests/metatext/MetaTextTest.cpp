// The dump reader and printer: constructs, framing of whole dumps, logcat, bad input.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "MetaText.h"

namespace {

using metatext::Buffer;
using metatext::Capture;
using V = std::vector<double>;
using S = std::vector<std::string>;

constexpr char kHeader[] =
    "Dumping camera metadata array: 1 / 1 entries, 0 / 0 bytes of extra data.\n"
    "  Version: 1, Flags: 00000000\n";

S Messages(const std::vector<metatext::Problem>& problems) {
  S messages;
  for (const auto& problem : problems) messages.push_back(problem.Message());
  return messages;
}

// Each test reads with a fresh vendor tag table installed, as the tool does.
class MetaText : public ::testing::Test {
 protected:
  void SetUp() override { NvMetadata::setVendorTagTable(&table_); }
  void TearDown() override { NvMetadata::setVendorTagTable(nullptr); }

  Capture Read(const std::string& text) {
    std::istringstream in(text);
    Capture capture;
    metatext::Problem problem;
    EXPECT_TRUE(metatext::ReadText(in, "dump.txt", &table_, &capture, &problem)) << problem.Message();
    return capture;
  }

  NvVendorTagTable table_;
};

// The entry's elements as doubles; the tests read no rational or int64 here.
V Values(const NvMetadata& meta, uint32_t tag) {
  const camera_metadata_ro_entry e = meta.find(tag);
  V values;
  for (size_t i = 0; i < e.count; ++i)
    values.push_back(e.type == TYPE_BYTE    ? e.data.u8[i]
                     : e.type == TYPE_INT32 ? e.data.i32[i]
                     : e.type == TYPE_FLOAT ? e.data.f[i]
                                            : e.data.d[i]);
  return values;
}

std::string Printed(const NvMetadata& meta, const metatext::PrintStyle& style) {
  std::ostringstream out;
  metatext::Print(meta, style, out);
  return out.str();
}

// The platform's print reads and prints back to the same text (every style: fuzz/MetaTextFuzzer).
TEST_F(MetaText, ReadsAndPrintsAsThePlatform) {
  const std::string text =
      "  Dumping camera metadata array: 11 / 11 entries, 152 / 152 bytes of extra data.\n"
      "    Version: 1, Flags: 00000000\n"
      "    android.colorCorrection.transform (00001): rational[3]\n"
      "      [(1 / 2) (-3 / 4) ]\n"
      "      [(5 / 6) ]\n"
      "    android.control.aeMode (10003): byte[1]\n"
      "      [ON_AUTO_FLASH ]\n"
      "    android.control.afRegions (10008): int32[0]\n"
      "    android.lens.focusDistance (80003): float[2]\n"
      "      [340282346638528859811704183484516925440.00000000 -0.50000000 ]\n"
      "    android.request.availableCapabilities (c000c): byte[4]\n"
      "      [BACKWARD_COMPATIBLE MANUAL_SENSOR RAW 200 ]\n"
      "    android.request.availableRequestKeys (c000d): int32[3]\n"
      "      [65536 (aeAntibandingMode) -2147418112 (level) 7 ]\n"
      "    android.scaler.availableStreamConfigurations (d000a): int32[4]\n"
      "      [34 0 1 OUTPUT ]\n"
      "    android.tonemap.curveRed (130002): float[18]\n"
      "      [0.50000000 0.00000000 nan -inf 0.00000000 0.00000000 0.00000000 0.00000000 ]\n"
      "      [0.00000000 0.00000000 0.00000000 0.00000000 0.00000000 0.00000000 0.00000000 0.00000000 ]\n"
      "      [0.00000000 0.00000000 ]\n"
      "    android.logicalMultiCamera.physicalIds (1a0000): byte[5]\n"
      "      [51 0 49 50 0 ]\n"
      "    android.efv.autoZoom (220002): byte[1]\n"
      "      [TRUE ]\n"
      "    com.acme.feature.level (80010000): int64[1]\n"
      "      [-9223372036854775808 ]\n";
  const Capture capture = Read(text);
  ASSERT_EQ(1u, capture.buffers.size());
  ASSERT_TRUE(capture.buffers[0].meta) << capture.buffers[0].problem.Message();
  const NvMetadata& meta = *capture.buffers[0].meta;
  // The numbers behind the names: read and print could err the same way.
  const std::pair<uint32_t, V> values[] = {
      {ANDROID_CONTROL_AE_MODE, V{2}},
      {ANDROID_REQUEST_AVAILABLE_CAPABILITIES, V{0, 1, 3, 200}},
      {ANDROID_SCALER_AVAILABLE_STREAM_CONFIGURATIONS, V{34, 0, 1, 0}},
      {ANDROID_EFV_AUTO_ZOOM, V{0}},  // its TRUE is 0
  };
  for (const auto& [tag, expected] : values) EXPECT_EQ(expected, Values(meta, tag)) << std::hex << tag;
  EXPECT_EQ(text, Printed(meta, {2, 2, true, false, false}));
  EXPECT_NE(std::string::npos, Printed(meta, {0, 2, true, true, false}).find("[34 OUTPUT INPUT OUTPUT ]"));
  EXPECT_NE(std::string::npos, Printed(meta, {0, 2, true, false, true}).find("[3 1 2 ]"));
  EXPECT_EQ(std::string::npos, Printed(meta, {0, 0, true, false, false}).find("    ["));
}

// Forms of other platform versions or that a reader must tolerate, the entry at line 3.
TEST_F(MetaText, EachOtherFormLoadsOrIsSkippedWithANote) {
  struct Row {
    std::string body;
    uint32_t tag;  // 0: nothing loads
    V values;
    S notes = {};
    bool cut = false;
    size_t others = 0;  // entries besides the row's
  };
  const uint32_t spare = 0xfffffffe;  // the vendor table's first unused number
  const Row rows[] = {
      // stream configurations with every value named (before 15.0.0_r6)
      {"  android.scaler.availableStreamConfigurations (d000a): int32[8]\n    [33 640 480 OUTPUT ]\n"
       "    [34 INPUT OUTPUT INPUT ]\n",
       ANDROID_SCALER_AVAILABLE_STREAM_CONFIGURATIONS, V{33, 640, 480, 0, 34, 1, 0, 1}},
      // physicalIds as characters, as characters that split unevenly or read as a cut
      {"  android.logicalMultiCamera.physicalIds (1a0000): byte[6]\n    [1 0 1 1 ]\n",
       ANDROID_LOGICAL_MULTI_CAMERA_PHYSICAL_IDS, V{49, 48, 0, 49, 49, 0}},
      {"  android.logicalMultiCamera.physicalIds (1a0000): byte[5]\n    [1 0 2 ]\n", 0, V{},
       S{"dump.txt:3: android.logicalMultiCamera.physicalIds: 3 characters printed for 2 ids; "
         "where each id ends cannot be known, so it is skipped"}},
      {"  android.logicalMultiCamera.physicalIds (1a0000): byte[24]\n    [0 0 0 0 0 0 0 0 1 1 1 1 1 1 1 1 "
       "]\n",
       0, V{},
       S{"dump.txt:3: android.logicalMultiCamera.physicalIds: 16 one-character values printed for 24: a cut "
         "list of numbers or ids without their NULs, which cannot be known; skipped"}},
      {"  android.control.unknownTag (1003f): int32[1]\n    [5 ]\n", 0, V{},
       S{"dump.txt:3: android.control.unknownTag (1003f): the dump does not name this tag; skipped"}},
      {"  android.control.aeMode (10003): unknown[1]\n", 0, V{},
       S{"dump.txt:3: android.control.aeMode (10003): the printer did not know its type; skipped"}},
      // cut by verbosity 1, by a line '...', by '...' ending a row
      {"  android.tonemap.curveRed (130002): float[17]\n    [1 1 1 1 1 1 1 1 ]\n    [1 1 1 1 1 1 1 2 ]\n",
       ANDROID_TONEMAP_CURVE_RED, V{1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 2, 0},
       S{"dump.txt:3: android.tonemap.curveRed: 16 of 17 values printed; the rest read as 0"}, true},
      {"  android.tonemap.curveRed (130002): float[3]\n    [1 2 ]\n      ...\n    [7 ]\n"
       "  android.lens.facing (80005): byte[1]\n    [0 ]\n",
       ANDROID_TONEMAP_CURVE_RED, V{1, 2, 0},
       S{"dump.txt:3: android.tonemap.curveRed: 2 of 3 values printed; the rest read as 0",
         "dump.txt:5: a line '...' leaves part of the dump out; what follows still loads"},
       true, 1},
      {"  android.tonemap.curveRed (130002): float[3]\n    [1 ...]\n", ANDROID_TONEMAP_CURVE_RED, V{1, 0, 0},
       S{"dump.txt:3: android.tonemap.curveRed: 1 of 3 values printed; the rest read as 0"}, true},
      {"\n  android.lens.facing (80005): byte[1]\n\n    [FRONT ]\n", ANDROID_LENS_FACING, V{0}},
      // tags by name: a vendor name new to the registry under a registry tag's
      // number, a registry name under another number, a name like the header's
      // second line; an Android tag under another number
      {"  com.acme.fancy.mode (a0000018): int32[1]\n    [7 ]\n", spare, V{7},
       S{"dump.txt:3: com.acme.fancy.mode: its number a0000018 is com.nuvaro.lens.info.ViewAngle here; "
         "loaded as fffffffe"}},
      {"  com.nuvaro.lens.info.ViewAngle (80010000): double[1]\n    [1 ]\n", 0xa0000018, V{1}},
      {"  Version:x (80010000): int32[1]\n    [5 ]\n", 0x80010000, V{5}},
      {"  android.lens.facing (80006): byte[1]\n    [1 ]\n", ANDROID_LENS_FACING, V{1},
       S{"dump.txt:3: android.lens.facing is tag 80005 in the registry, not 80006; loaded by name"}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.body);
    const Capture capture = Read(kHeader + row.body);
    ASSERT_EQ(1u, capture.buffers.size());
    const Buffer& buffer = capture.buffers[0];
    ASSERT_TRUE(buffer.meta) << buffer.problem.Message();
    EXPECT_EQ(row.notes, Messages(capture.notes));
    EXPECT_EQ((row.tag != 0) + row.others, buffer.meta->entryCount());
    EXPECT_EQ(row.values, Values(*buffer.meta, row.tag));
    EXPECT_EQ(row.cut ? std::vector<uint32_t>{row.tag} : std::vector<uint32_t>{}, buffer.cut);
  }
}

// "line camera kind (detail) stale: entries" for each buffer.
S Describe(const Capture& capture) {
  S described;
  for (const Buffer& b : capture.buffers) {
    std::string text = std::to_string(b.line) + " " + b.camera + " " + metatext::KindName(b.kind);
    if (!b.detail.empty()) text += " (" + b.detail + ")";
    if (b.stale) text += " stale";
    text += b.meta ? ": " + std::to_string(b.meta->entryCount()) : ": " + b.problem.Message();
    described.push_back(text);
  }
  return described;
}

// A buffer of one entry as the service prints it at `indentation`.
std::string Dumped(int indentation) {
  const std::string i(indentation, ' ');
  return i + "Dumping camera metadata array: 1 / 1 entries, 0 / 0 bytes of extra data.\n" + i +
         "  Version: 1, Flags: 00000000\n" + i + "  android.lens.facing (80005): byte[1]\n" + i +
         "    [BACK ]\n";
}

TEST_F(MetaText, FramesTheServicesSectionsAndLabelsTheirBuffers) {
  struct Row {
    const char* what;
    std::string text;
    S buffers;
    S notes = {};
  };
  const Row rows[] = {
      {"API2 client",
       "== Camera device 10 dynamic info: ==\n  Device dump:\n    Last request sent:\n"
       "      Output Stream Ids:\n         0\n    Logical request settings:\n" +
           Dumped(6) + "    Physical request settings for camera id 3:\n" + Dumped(8) +
           "     Monitored tag event log:\n"
           "        f7:123ns: RES:android.control.aeState (10021): byte[1] [CONVERGED ]\n"
           "    HAL Request TEMPLATE_PREVIEW:\n" +
           Dumped(8) + "     HAL device dump:\n",
       S{"7 10 last request: 1", "12 3 physical request (logical camera 10): 1",
         "19 10 request template (TEMPLATE_PREVIEW): 1"}},
      {"API1",
       "Client2[1] (0x7b00) PID: 1234, dump:\n    Preview request: undefined\n" + Dumped(6) +
           "    Recording request:\n      Dumping camera metadata array: Not allocated\n"
           "    Capture request:\n" +
           Dumped(6) + "    Latest captured frame:\n" + Dumped(6),
       S{"3 1 buffer: 1", "10 1 last request (Capture request): 1",
         "15 1 latest result (Latest captured frame): 1"}},
      {"provider",
       "== Camera HAL device device@3.5/legacy/0 (v3.5) static information: ==\n"
       "  Physical camera 5 characteristics:\n" +
           Dumped(4) +
           "== Camera HAL device device@3.5/legacy/0 (v3.5) dumpState: ==\nLatest received frame:\n" +
           Dumped(0),
       S{"3 5 physical camera characteristics (logical camera 0): 1", "9 0 buffer (HAL dumpState): 1"}},
      {"bug report",
       "== dumpstate: 2025-01-02 03:04:05\n------ SYSTEM PROPERTIES (getprop) ------\n"
       "[ro.build.version.sdk]: [34]\n------ SYSTEM LOG (logcat -v threadtime -d *:v) ------\n"
       "01-02 03:04:05.678  1234  1250 D CameraMetadata-JNI: Dumping camera metadata array: 1 / 1 "
       "entries, 0 / 0 bytes of extra data.\n"
       "01-02 03:04:05.678  1234  1250 D CameraMetadata-JNI:   android.lens.facing (80005): byte[1]\n"
       "------ DUMPSYS (/system/bin/dumpsys) ------\n"
       "DUMP OF SERVICE media.camera:\n== Camera device 0 dynamic info: ==\n    Last request sent:\n" +
           Dumped(6) + "--------- 0.050s was the duration of dumpsys media.camera, ending at: x\n" +
           "DUMP OF SERVICE media.extractor:\n    Last request sent:\n" + Dumped(6),
       S{"5  buffer: dump.txt:6: android.lens.facing has 0 values where its count is 1",
         "11 0 last request: 1", "18  last request: 1"}},
      {"vendor tags section",
       kHeader + std::string("  unknownSection.unknownTag (80010003): int32[2]\n    [4 5 ]\n") +
           "== Vendor tags: ==\n  Dumping configured vendor tag descriptors: 1 entries\n"
           "    0x80010003 (mode) with type 1 (int32) defined in section com.acme.feature\n",
       S{"1  buffer: 1"}},
      {"vendor tags section naming a tag as the printer names none, or as no entry line: it stays unnamed",
       kHeader + std::string("  unknownSection.unknownTag (80010003): int32[2]\n    [4 5 ]\n") +
           "== Vendor tags: ==\n    0x80010003 (unknownTag) with type 1 (int32) defined in section x\n"
           "    0x80010003 () with type 1 (int32) defined in section [4]\n",  // would print as values
       S{"1  buffer: 0"},
       S{"dump.txt:3: unknownSection.unknownTag (80010003): the dump does not name this tag; skipped"}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    const Capture capture = Read(row.text);
    EXPECT_EQ(row.buffers, Describe(capture));
    EXPECT_EQ(row.notes, Messages(capture.notes));
    EXPECT_TRUE(capture.wholeDump);
  }
  unsigned int mode = 0;
  ASSERT_EQ(0, table_.tagOf("com.acme.feature.mode", &mode));
  EXPECT_EQ((V{4, 5}), Values(*Read(rows[4].text).buffers[0].meta, mode));
}

// Every logcat format around one buffer, another thread's (or tag's) lines between its own: they
// neither end nor enter it.
TEST_F(MetaText, ReadsEachLogcatFormatAndKeepsOtherSourcesApart) {
  const std::pair<const char*, std::string> rows[] = {
      // the format, the prefix with "%" where the message goes
      {"threadtime", "01-02 03:04:05.678  1234  1250 D CameraMetadata-JNI: %"},
      {"threadtime year uid nsec zone", "2025-01-02 03:04:05.678123456 +0100 10123  1234  1250 D Camera: %"},
      {"epoch", "        1735787045.678  1234  1250 D CameraMetadata-JNI: %"},
      {"time", "01-02 03:04:05.678 D/CameraMetadata-JNI(10123: 1234): %"},
      {"process", "D( 1234) %  (CameraMetadata-JNI)"},
      {"tag", "D/CameraMetadata-JNI: %"},
      {"thread", "D( 1234: 1250) %"},
      {"long", "[ 01-02 03:04:05.678  1234: 1250 D/CameraMetadata-JNI ]\n%\n"},
      {"color", "\x1B[38;5;75mD/CameraMetadata-JNI( 1234): %\x1B[0m"},
      {"raw", "%"},
  };
  const auto line = [](std::string format, const std::string& message) {
    return format.replace(format.find('%'), 1, message) + "\n";
  };
  for (const auto& [format, mine] : rows) {
    SCOPED_TRACE(format);
    std::string other = mine;
    if (const size_t tid = other.find("1250"); tid != std::string::npos)
      other.replace(tid, 4, "1251");
    else if (const size_t tag = other.find("Camera"); tag != std::string::npos)
      other.replace(tag, 6, "Other");
    std::string text;
    std::istringstream dumped(Dumped(0));
    for (std::string message; std::getline(dumped, message);) {
      text += line(mine, message);
      if (other != mine) text += line(other, "End of something") + line(other, "    [7 8 ]");
    }
    const Capture capture = Read(text);
    // A long entry's message follows its header line.
    EXPECT_EQ(S{std::string(format) == "long" ? "2  buffer: 1" : "1  buffer: 1"}, Describe(capture));
    EXPECT_TRUE(capture.notes.empty()) << Messages(capture.notes)[0];
    EXPECT_EQ(std::string(format) != "raw", capture.wholeDump);
  }
}

bool Parse(const std::string& text, NvMetadata* meta, metatext::Problem* problem, S* notes = nullptr) {
  std::istringstream in(text);
  std::vector<metatext::Problem> found;
  const bool ok = metatext::ParseText(in, "dump.txt", meta, problem, &found);
  if (notes != nullptr) *notes = Messages(found);
  return ok;
}

// Each problem once: its message and line, and the container left as it was.
TEST(MetaTextBadInput, NamesFileLineAndProblemAndLoadsNothing) {
  const std::string facing = "android.lens.facing (80005): byte[1]\n";
  const std::string ccm = "android.colorCorrection.transform (00001): rational[2]\n";
  const std::pair<std::string, std::string> rows[] = {
      {"android.lens.facing (80005): int16[1]\n[1 ]\n",
       "dump.txt:1: unknown type 'int16' (byte, int32, float, int64, double, rational)"},
      {"android.lens.facing (80005): byte[600000]\n[1 ...]\nandroid.lens.state (80006): byte[600000]\n",
       "dump.txt:3: android.lens.state: a count of 600000 takes the buffer past its limit of 1048576 values"},
      {facing + "[1 2 ]\n", "dump.txt:2: more values than the 1 that android.lens.facing at line 1 declares"},
      {"android.tonemap.curveRed (130002): float[17]\n[1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 ]\n",
       "dump.txt:1: android.tonemap.curveRed has 15 values where its count is 17"},
      {"android.efv.autoZoom (220002): byte[1]\n[ON ]\n",
       "dump.txt:2: android.efv.autoZoom: 'ON' is neither a number nor one of the tag's value names"},
      {"android.sensor.sensitivity (e0002): int32[1]\n[1.5 ]\n",
       "dump.txt:2: android.sensor.sensitivity: '1.5' is not a number"},
      {"android.sensor.exposureTime (e0000): int64[1]\n[9223372036854775808 ]\n",
       "dump.txt:2: android.sensor.exposureTime: 9223372036854775808 is out of range for int64"},
      {"android.lens.focusDistance (80003): float[1]\n[3.5e38 ]\n",
       "dump.txt:2: android.lens.focusDistance: 3.5e38 is out of range for float"},
      {"android.lens.focusDistance (80003): float[1]\n[0x1p3 ]\n",
       "dump.txt:2: android.lens.focusDistance: '0x1p3' is not a number"},
      {ccm + "[(1 / 2) 3 ]\n",
       "dump.txt:2: android.colorCorrection.transform: malformed rational at '3' (expected '(n / d)')"},
      {ccm + "[(1 / 2) (3 / 4 ]\n",
       "dump.txt:2: android.colorCorrection.transform: malformed rational '(3 / 4' (expected '(n / d)')"},
      {ccm + "[(1 / 2) (3 / 2147483648) ]\n",
       "dump.txt:2: android.colorCorrection.transform: 2147483648 is out of range for rational"},
      {"android.request.availableResultKeys (c000e): int32[1]\n[65536 (aeAntibandingMode ]\n",
       "dump.txt:2: android.request.availableResultKeys: a key name '(aeAntibandingMode' without its ')'"},
      {kHeader + std::string("  android.lens.facing = 1\n"),
       "dump.txt:3: not an entry 'NAME (TAG): TYPE[COUNT]', values '[...]', header or comment: "
       "'android.lens.facing = 1'"},
      {kHeader + std::string("    [1 ]\n"), "dump.txt:3: values before any entry line"},
      {facing + "[1\n", "dump.txt:2: values line does not end with ']'"},
      {facing + "[... 1 ]\n", "dump.txt:2: '...' must end the values line"},
      {"android.lens.facing (80005): int32[1]\n[1 ]\n",
       "dump.txt:1: android.lens.facing is byte in the registry, but the dump says int32"},
      {facing + "[1 ]\n\n" + facing + "[0 ]\n",
       "dump.txt:4: android.lens.facing is given twice; first at line 1"},
      {kHeader + std::string("  ") + facing + "    [1 ]\n" + kHeader,
       "dump.txt:5: a second metadata buffer; the file must hold one (2 found)"},
      {"# nothing\n", "dump.txt: no metadata buffer in the file"},
  };
  for (const auto& [text, message] : rows) {
    SCOPED_TRACE(text);
    NvMetadata meta;
    const int32_t iso = 800;
    meta.update(ANDROID_SENSOR_SENSITIVITY, &iso, 1);
    metatext::Problem problem;
    EXPECT_FALSE(Parse(text, &meta, &problem));
    EXPECT_EQ(message, problem.Message());
    EXPECT_EQ(V{800}, Values(meta, ANDROID_SENSOR_SENSITIVITY));
    EXPECT_EQ(1u, meta.entryCount());
  }
}

// A headerless request file; with no vendor table given, names the registry does not know are skipped.
TEST(MetaTextParse, LoadsOneBufferWithItsNotesOrSaysWhyNot) {
  NvMetadata meta;
  metatext::Problem problem;
  S notes;
  ASSERT_TRUE(
      Parse("# a request\n  android.lens.facing (80005): byte[1]\n    [FRONT ]\n"
            "  vendor.unknown.tag (c0ffee00): int32[1]\n    [7 ]\n",
            &meta, &problem, &notes))
      << problem.Message();
  EXPECT_EQ(S{"dump.txt:4: unknown tag vendor.unknown.tag (c0ffee00) skipped"}, notes);
  EXPECT_EQ(V{0}, Values(meta, ANDROID_LENS_FACING));

  EXPECT_FALSE(metatext::ParseFile("/nonexistent/request.txt", &meta, &problem));
  EXPECT_EQ("/nonexistent/request.txt: cannot open: No such file or directory", problem.Message());
  EXPECT_FALSE(metatext::ParseFile("/", &meta, &problem));  // opens, but cannot be read
  EXPECT_EQ("/: cannot read the file", problem.Message());
  EXPECT_EQ(1u, meta.entryCount());
}

}  // namespace
