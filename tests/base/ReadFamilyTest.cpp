// The shared read shapes, driven through operations of every family: what a
// refused argument, a missing or empty tag and an empty container each log,
// and exactly what a successful read hands over.
#include <algorithm>
#include <array>
#include <functional>

#include "BaseTestKit.h"

namespace basetest {
namespace {

using H = metadataHelperBase;
using Adapter = std::function<int(H&, MetaPtr, void*)>;

template <typename Out>
Adapter Op(int (H::*op)(MetaPtr, Out*)) {
  return [op](H& h, MetaPtr meta, void* out) { return (h.*op)(std::move(meta), static_cast<Out*>(out)); };
}

Bytes Pattern(size_t size) {
  Bytes bytes(size);
  for (size_t i = 0; i < size; ++i) bytes[i] = static_cast<uint8_t>(i % 97 + 1);
  return bytes;
}

// "E 88 text" -> "E 88 GetX text": messages an operation logs under its own name.
std::string Own(const std::string& op, const std::string& message) {
  const size_t afterLine = message.find(' ', 2);
  return message.substr(0, afterLine) + " " + op + message.substr(afterLine);
}

const std::string kNotFound = R"(V 36 GetMetaData "GetMetadata err")";
const std::string kNoContainer = R"(E 13 GetMetaData "pArg is null")";
constexpr uint8_t kUntouched = 0xAB;

struct ReadCase {
  const char* op;
  Adapter call;
  const char* tag;  // registered name of the tag that carries the value
  Bytes stored;
  Bytes expected;       // what the output receives; nothing after it is written
  std::string refused;  // null output, and empty container where refused
  std::string missing;  // absent tag
  bool refusesEmptyContainer = false;
};

void PrintTo(const ReadCase& c, std::ostream* os) { *os << c.op; }

// clang-format off
const ReadCase kReads[] = {
  {"GetSensorExposureTime", Op(&H::GetSensorExposureTime), "android.sensor.exposureTime", BytesOf<int64_t>({33333333}), BytesOf<int64_t>({33333333}),
   R"(E 88 "arg err")", R"(V 94 "GetMetadata ANDROID_SENSOR_EXPOSURE_TIME err")"},
  {"GetSensorDynamicBlackLevel", Op(&H::GetSensorDynamicBlackLevel), "android.sensor.dynamicBlackLevel", BytesOf<float>({64, 65, 66, 67, 68}), BytesOf<float>({64, 65, 66, 67}),
   R"(E 479 "arg err")", R"(V 485 "GetMetadata ANDROID_SENSOR_DYNAMIC_BLACK_LEVEL fail")"},
  {"GetSmartAeInfo", Op(&H::GetSmartAeInfo), "com.nuvaro.smartae.procOutput", Pattern(3464), Pattern(3464),
   R"(E 156 "arg err")", R"(V 161 "GetMetadata err")"},
  {"GetLivephotoIspGainFactor", Op(&H::GetLivephotoIspGainFactor), "com.nuvaro.livephoto.ispGainFactor", BytesOf<float>({1.5f}), BytesOf<float>({1.5f}),
   R"(V 280 "arg err")", R"(V 286 "GetMetadata err")"},
  {"GetPreviewAeRatio", Op(&H::GetPreviewAeRatio), "com.nuvaro.statsaec.previewAeRatio", BytesOf<float>({0.25f}), BytesOf<float>({0.25f}),
   R"(E 436 "arg err")", R"(W 441 "GetMetadata previewAeRatio err")"},
  {"GetFacetargetAndConfidence", Op(&H::GetFacetargetAndConfidence), "com.nuvaro.statsaec.faceBright", BytesOf<float>({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}), BytesOf<float>({1, 2, 3, 4, 5, 6, 7, 8, 9, 10}),
   R"(E 1110 "arg err")", R"(W 1115 "GetMetadata faceBright err")"},
  {"GetfocusDistCm", Op(&H::GetfocusDistCm), "android.lens.focusDistance", BytesOf<float>({0.5f}), BytesOf<float>({200.0f}),
   R"(E 628 "arg err")", R"(V 634 "GetMetadata ANDROID_LENS_FOCUS_DISTANCE err")"},
  {"GetAFState", Op(&H::GetAFState), "android.control.afState", BytesOf<uint8_t>({3}), BytesOf<uint32_t>({3}),
   R"(E 657 "arg err")", R"(V 663 "GetMetadata ANDROID_CONTROL_AF_STATE err")"},
  {"GetANDROIDFlashMode", Op(&H::GetANDROIDFlashMode), "android.flash.mode", BytesOf<uint8_t>({200}), BytesOf<int32_t>({200}),
   R"(E 746 "arg err")", R"(V 751 "GetMetadata ANDROID_FLASH_MODE fail")"},
  {"GetIspGain", Op(&H::GetIspGain), "com.qti.sensorbps.gain", BytesOf<float>({4.0f}), BytesOf<float>({4.0f}),
   R"(E 1189 "arg err")", R"(V 1195 "get com.qti.sensorbps.gain fail")"},
  {"GetStreetModeEnable", Op(&H::GetStreetModeEnable), "com.nuvaro.streetmode.enabled", BytesOf<uint8_t>({2}), BytesOf<uint8_t>({2}),
   R"(E 229 "arg err")", R"(V 234 "GetMetadata err")"},
  {"GetConcertMode", Op(&H::GetConcertMode), "nuvaro.ai.asd.ConcertScene", BytesOf<int32_t>({1}), BytesOf<int32_t>({1}),
   R"(E 721 "arg err")", R"(V 726 "GetMetadata nuvaro.ai.asd.ConcertScene fail")"},
  {"GetNuvaroThermalResult", Op(&H::GetNuvaroThermalResult), "com.nuvaro.thermal.NV_THERMAL_RESUIT", BytesOf<int32_t>({3}), BytesOf<int32_t>({3}),
   R"(E 1822 "arg err")", R"(V 1826 "GetMetadata NV_THERMAL_RESUIT err1")"},
  {"GetNuvaroFlipEnable", Op(&H::GetNuvaroFlipEnable), "nuvaro.flip.enabled", BytesOf<int8_t>({-1}), BytesOf<int8_t>({-1}),
   R"(E 2026 "flip is null!")", R"(V 2029 "GetMetadata nuvaro.flip.enabled err1")"},
  {"GetMacroMode", Op(&H::GetMacroMode), "nuvaro.MacroMode.enabled", BytesOf<int32_t>({1}), BytesOf<int32_t>({1}),
   R"(E 2245 "meta is null")", R"(W 2250 "GetMetadata macroMode err")", true},
  {"GetAndroidAFRegion", Op(&H::GetAndroidAFRegion), "android.control.afRegions", BytesOf<int32_t>({100, 200, 299, 399, 1}), BytesOf<uint32_t>({100, 200, 200, 200}),
   R"(E 2392 "arg err")", R"(V 2393 "GetMetadata ANDROID_CONTROL_AF_REGIONS err1")"},
  {"GetAndroidLensFocalLength", Op(&H::GetAndroidLensFocalLength), "android.lens.focalLength", BytesOf<float>({4.7f}), BytesOf<float>({4.7f}),
   R"(E 2395 "arg err")", R"(V 2396 "GetMetadata ANDROID_CONTROL_AF_REGIONS err1")"},
  {"GetBokehRequestInfo", Op(&H::GetBokehRequestInfo), "com.nuvaro.camera.bokehConfig.request", Pattern(130), Bytes(Pattern(124)),
   R"(E 2403 "arg err")", R"(V 2404 "GetMetadata com.nuvaro.camera.bokehConfig.request err1")"},
};
// clang-format on

class ReadFamily : public BaseTest, public ::testing::WithParamInterface<ReadCase> {
 protected:
  ReadFamily() { out.fill(kUntouched); }
  bool OutputUntouched() const {
    return std::all_of(out.begin(), out.end(), [](uint8_t b) { return b == kUntouched; });
  }
  alignas(8) std::array<uint8_t, 4096> out;
};

TEST_P(ReadFamily, NullOutputIsRefusedBeforeTheRead) {
  const ReadCase& c = GetParam();
  MetaPtr meta = testsupport::NewMeta();
  PutBytes(*meta, c.tag, c.stored);
  EXPECT_EQ(-1, c.call(helper, meta, nullptr));
  EXPECT_EQ(std::vector<std::string>{Own(c.op, c.refused)}, TakeLines());
}

TEST_P(ReadFamily, AbsentAndZeroCountTagsFailAlike) {
  const ReadCase& c = GetParam();
  for (const bool storedEmpty : {false, true}) {
    MetaPtr meta = testsupport::NewMeta();
    if (storedEmpty) PutBytes(*meta, c.tag, {});
    EXPECT_EQ(-1, c.call(helper, meta, out.data()));
    EXPECT_TRUE(OutputUntouched());
    EXPECT_EQ((std::vector<std::string>{kNotFound, Own(c.op, c.missing)}), TakeLines()) << storedEmpty;
  }
}

TEST_P(ReadFamily, EmptyContainer) {
  const ReadCase& c = GetParam();
  EXPECT_EQ(-1, c.call(helper, nullptr, out.data()));
  const std::vector<std::string> expected =
      c.refusesEmptyContainer ? std::vector<std::string>{Own(c.op, c.refused)}
                              : std::vector<std::string>{kNoContainer, Own(c.op, c.missing)};
  EXPECT_EQ(expected, TakeLines());
  EXPECT_TRUE(OutputUntouched());
}

TEST_P(ReadFamily, SuccessWritesExactlyTheValue) {
  const ReadCase& c = GetParam();
  MetaPtr meta = testsupport::NewMeta();
  PutBytes(*meta, c.tag, c.stored);
  EXPECT_EQ(0, c.call(helper, meta, out.data()));
  EXPECT_EQ(c.expected, Bytes(out.begin(), out.begin() + c.expected.size()));
  EXPECT_EQ(kUntouched, out[c.expected.size()]);
  EXPECT_TRUE(TakeLines().empty());
}

INSTANTIATE_TEST_SUITE_P(Operations, ReadFamily, ::testing::ValuesIn(kReads),
                         [](const auto& info) { return std::string(info.param.op); });

// Per-camera values: the request only names the camera.
struct StaticCase {
  const char* op;
  Adapter call;
  const char* tag;
  Bytes stored;
  int argLine;
  std::string noCamera;
  std::string missing;
};

void PrintTo(const StaticCase& c, std::ostream* os) { *os << c.op; }

// clang-format off
const StaticCase kStaticReads[] = {
  {"GetSensorBayerPatten", Op(&H::GetSensorBayerPatten), "android.sensor.info.colorFilterArrangement", BytesOf<uint8_t>({3}),
   1571, R"(V 1576 "GetMetadata FwkCameraId fail")", R"(V 1584 "GetMetadata ANDROID_SENSOR_INFO_COLOR_FILTER_ARRANGEMENT fail")"},
  {"GetActiveArraySize", Op(&H::GetActiveArraySize), "android.sensor.info.activeArraySize", BytesOf<int32_t>({8, 6, 4000, 3000}),
   2378, R"(V 2379 "GetMetadata FwkCameraId fail")", R"(V 2380 "Get ACTIVE_ARRAY_SIZE err")"},
  {"GetMaxActiveArraySize", Op(&H::GetMaxActiveArraySize), "android.sensor.info.activeArraySizeMaximumResolution", BytesOf<int32_t>({0, 0, 8000, 6000}),
   2381, R"(V 2382 "GetMetadata FwkCameraId fail")", R"(V 2383 "Get ANDROID_SENSOR_INFO_ACTIVE_ARRAY_SIZE_MAXIMUM_RESOLUTION err")"},
  {"GetSensorViewAngle", Op(&H::GetSensorViewAngle), "com.nuvaro.lens.info.ViewAngle", BytesOf<double>({78.5, 64.25}),
   2386, R"(V 2387 "GetMetadata FwkCameraId fail")", R"(V 2388 "GetMetadata ViewAngle err")"},
};
// clang-format on

class StaticFamily : public BaseTest, public ::testing::WithParamInterface<StaticCase> {};

TEST_P(StaticFamily, NullOutputAndMissingCameraStopEarly) {
  const StaticCase& c = GetParam();
  alignas(8) uint8_t out[32] = {};
  EXPECT_EQ(-1, c.call(helper, testsupport::NewMeta(), nullptr));
  EXPECT_EQ(std::vector<std::string>{Own(c.op, "E " + std::to_string(c.argLine) + R"( "arg err")")},
            TakeLines());

  const unsigned long requestsBefore = StaticMetadataWraper::getInstance()->requestCount();
  EXPECT_EQ(-1, c.call(helper, testsupport::NewMeta(), out));
  EXPECT_EQ(requestsBefore, StaticMetadataWraper::getInstance()->requestCount());
  EXPECT_EQ(Own(c.op, c.noCamera), TakeLines().back());
}

TEST_P(StaticFamily, ReadsTheStaticValueOfTheRequestsCamera) {
  const StaticCase& c = GetParam();
  MetaPtr request = testsupport::NewMeta();
  MetaPtr camera4 = testsupport::NewMeta();
  MetaPtr camera5 = testsupport::NewMeta();
  Bytes other = c.stored;
  for (uint8_t& b : other) b ^= 0x5A;
  PutBytes(*request, c.tag, other);  // a request value of the same tag does not count
  PutBytes(*camera5, c.tag, other);
  StaticMetadataWraper::getInstance()->setStaticMetadata(5, camera5);
  testsupport::BindCamera(*request, 4, camera4);
  alignas(8) uint8_t out[32] = {};

  EXPECT_EQ(-1, c.call(helper, request, out));
  EXPECT_EQ((std::vector<std::string>{kNotFound, Own(c.op, c.missing)}), TakeLines());

  PutBytes(*camera4, c.tag, c.stored);
  EXPECT_EQ(0, c.call(helper, request, out));
  EXPECT_EQ(c.stored, Bytes(out, out + c.stored.size()));
}

INSTANTIATE_TEST_SUITE_P(Operations, StaticFamily, ::testing::ValuesIn(kStaticReads),
                         [](const auto& info) { return std::string(info.param.op); });

}  // namespace
}  // namespace basetest
