// The base helper's generic operations: one per distinct message shape, level or conversion.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>

#include "TestSupport.h"
#include "metadataHelperBase.h"

namespace {

using metahelper::MetaPtr;
using testsupport::NewMeta;
using testsupport::Put;
using H = metahelper::metadataHelperBase;
using Bytes = std::vector<uint8_t>;
using Lines = std::vector<std::string>;

template <typename T>
Bytes BytesOf(std::initializer_list<T> values) {
  Bytes bytes(values.size() * sizeof(T));
  std::memcpy(bytes.data(), values.begin(), bytes.size());
  return bytes;
}

constexpr size_t kElementSize[] = {1, 4, 4, 8, 8, 8};  // by TYPE_* code

void PutBytes(NvMetadata& meta, const char* name, const Bytes& bytes) {
  unsigned int tag = 0;
  ASSERT_EQ(0, NvMetadata::getTagFromName(name, &tag)) << name;
  const size_t count = bytes.size() / kElementSize[NvMetadata::getTagType(tag)];
  ASSERT_EQ(0, meta.update(tag, static_cast<const void*>(bytes.data()), count)) << name;
}

Bytes Stored(const NvMetadata& meta, const char* name) {
  const camera_metadata_ro_entry entry = meta.find(name);
  return Bytes(entry.data.u8, entry.data.u8 + entry.count * kElementSize[entry.type]);
}

class BaseTest : public ::testing::Test {
 protected:
  void TearDown() override {
    MetaTagWrapper::getInstance().resetTags();
    StaticMetadataWraper::getInstance()->clear();
  }
  Lines TakeLines() {
    Lines lines;
    for (const auto& l : log.offline)
      lines.push_back(l.level + (" " + std::to_string(l.line) + " " + l.function + " " + l.text));
    log.Clear();
    return lines;
  }

  testsupport::LogCapture log;
  H helper;
};

using Adapter = std::function<int(H&, MetaPtr, void*)>;
template <typename Out>
Adapter Op(int (H::*op)(MetaPtr, Out*)) {
  return [op](H& h, MetaPtr meta, void* out) { return (h.*op)(std::move(meta), static_cast<Out*>(out)); };
}

const std::string kNotFound = R"(V 36 GetMetaData "GetMetadata err")";
const std::string kNoContainer = R"(E 13 GetMetaData "pArg is null")";

struct ReadCase {
  const char* op;
  Adapter call;
  const char* tag;               // registered name of the tag that carries the value
  Bytes stored, expected;        // expected: what the output receives; nothing after it is written
  std::string refused, missing;  // null output (and empty container where refused); absent tag
  bool refusesEmptyContainer = false;
  std::string noCamera = {};  // per-camera reads: the request names no camera
};
void PrintTo(const ReadCase& c, std::ostream* os) { *os << c.op; }
const auto kByOp = [](const auto& info) { return std::string(info.param.op); };

// clang-format off
const ReadCase kReads[] = {
  {"GetLivephotoIspGainFactor", Op(&H::GetLivephotoIspGainFactor), "com.nuvaro.livephoto.ispGainFactor", BytesOf<float>({1.5f}), BytesOf<float>({1.5f}),
   R"(V 280 GetLivephotoIspGainFactor "arg err")", R"(V 286 GetLivephotoIspGainFactor "GetMetadata err")"},
  {"GetFacetargetAndConfidence", Op(&H::GetFacetargetAndConfidence), "com.nuvaro.statsaec.faceBright", BytesOf<float>({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}), BytesOf<float>({1, 2, 3, 4, 5, 6, 7, 8, 9, 10}),
   R"(E 1110 GetFacetargetAndConfidence "arg err")", R"(W 1115 GetFacetargetAndConfidence "GetMetadata faceBright err")"},
  {"GetANDROIDFlashMode", Op(&H::GetANDROIDFlashMode), "android.flash.mode", BytesOf<uint8_t>({200}), BytesOf<int32_t>({200}),
   R"(E 746 GetANDROIDFlashMode "arg err")", R"(V 751 GetANDROIDFlashMode "GetMetadata ANDROID_FLASH_MODE fail")"},
  {"GetNuvaroFlipEnable", Op(&H::GetNuvaroFlipEnable), "nuvaro.flip.enabled", BytesOf<int8_t>({-1}), BytesOf<int8_t>({-1}),
   R"(E 2026 GetNuvaroFlipEnable "flip is null!")", R"(V 2029 GetNuvaroFlipEnable "GetMetadata nuvaro.flip.enabled err1")"},
  {"GetMacroMode", Op(&H::GetMacroMode), "nuvaro.MacroMode.enabled", BytesOf<int32_t>({1}), BytesOf<int32_t>({1}),
   R"(E 2245 GetMacroMode "meta is null")", R"(W 2250 GetMacroMode "GetMetadata macroMode err")", true},
  {"GetAndroidAFRegion", Op(&H::GetAndroidAFRegion), "android.control.afRegions", BytesOf<int32_t>({100, 200, 299, 399, 1}), BytesOf<uint32_t>({100, 200, 200, 200}),
   R"(E 2392 GetAndroidAFRegion "arg err")", R"(V 2393 GetAndroidAFRegion "GetMetadata ANDROID_CONTROL_AF_REGIONS err1")"},
};
const ReadCase kStaticReads[] = {
  {"GetSensorBayerPatten", Op(&H::GetSensorBayerPatten), "android.sensor.info.colorFilterArrangement", BytesOf<uint8_t>({3}), BytesOf<uint8_t>({3}),
   R"(E 1571 GetSensorBayerPatten "arg err")", R"(V 1584 GetSensorBayerPatten "GetMetadata ANDROID_SENSOR_INFO_COLOR_FILTER_ARRANGEMENT fail")", false, R"(V 1576 GetSensorBayerPatten "GetMetadata FwkCameraId fail")"},
  {"GetSensorViewAngle", Op(&H::GetSensorViewAngle), "com.nuvaro.lens.info.ViewAngle", BytesOf<double>({78.5, 64.25}), BytesOf<double>({78.5, 64.25}),
   R"(E 2386 GetSensorViewAngle "arg err")", R"(V 2388 GetSensorViewAngle "GetMetadata ViewAngle err")", false, R"(V 2387 GetSensorViewAngle "GetMetadata FwkCameraId fail")"},
};
// clang-format on

class ReadFamily : public BaseTest, public ::testing::WithParamInterface<ReadCase> {};

TEST_P(ReadFamily, FailuresLeaveTheOutputAloneSuccessWritesExactlyTheValue) {
  const ReadCase& c = GetParam();
  const Bytes untouched(64, 0xAB);
  Bytes out = untouched;
  MetaPtr meta = NewMeta();
  PutBytes(*meta, c.tag, c.stored);
  EXPECT_EQ(-1, c.call(helper, meta, nullptr));
  EXPECT_EQ(Lines{c.refused}, TakeLines());
  EXPECT_EQ(-1, c.call(helper, NewMeta(), out.data()));
  EXPECT_EQ((Lines{kNotFound, c.missing}), TakeLines());
  EXPECT_EQ(-1, c.call(helper, nullptr, out.data()));
  EXPECT_EQ((c.refusesEmptyContainer ? Lines{c.refused} : Lines{kNoContainer, c.missing}), TakeLines());
  EXPECT_EQ(untouched, out);

  EXPECT_EQ(0, c.call(helper, std::move(meta), out.data()));  // the operation holds the only reference
  EXPECT_EQ(c.expected, Bytes(out.begin(), out.begin() + c.expected.size()));
  EXPECT_EQ(untouched[0], out[c.expected.size()]);
  EXPECT_TRUE(TakeLines().empty());
}

INSTANTIATE_TEST_SUITE_P(Base, ReadFamily, ::testing::ValuesIn(kReads), kByOp);

class StaticFamily : public ReadFamily {};

TEST_P(StaticFamily, ReadsOnlyTheStaticValueOfTheRequestsCamera) {
  const ReadCase& c = GetParam();
  alignas(8) uint8_t out[32] = {};
  EXPECT_EQ(-1, c.call(helper, NewMeta(), nullptr));
  EXPECT_EQ(Lines{c.refused}, TakeLines());
  EXPECT_EQ(-1, c.call(helper, NewMeta(), out));  // no camera named: stops there
  EXPECT_EQ(c.noCamera, TakeLines().back());

  MetaPtr request = NewMeta(), camera4 = NewMeta();
  PutBytes(*request, c.tag, Bytes(c.stored.size(), 0xEE));  // a request value of the same tag does not count
  testsupport::BindCamera(*request, 4, camera4);
  EXPECT_EQ(-1, c.call(helper, request, out));
  EXPECT_EQ((Lines{kNotFound, c.missing}), TakeLines());
  PutBytes(*camera4, c.tag, c.stored);
  EXPECT_EQ(0, c.call(helper, request, out));
  EXPECT_EQ(c.expected, Bytes(out, out + c.expected.size()));
}

INSTANTIATE_TEST_SUITE_P(Base, StaticFamily, ::testing::ValuesIn(kStaticReads), kByOp);

// Inclusive bounds become extents in unsigned arithmetic: inverted or extreme bounds wrap.
TEST_F(BaseTest, AfRegionExtentsWrapInsteadOfOverflowing) {
  const int32_t min = INT32_MIN, max = INT32_MAX;
  for (const auto& [region, expected] : std::initializer_list<std::pair<std::vector<int32_t>, Bytes>>{
           {{5, 5, 1, 1, 1}, BytesOf<uint32_t>({5, 5, 0xFFFFFFFDu, 0xFFFFFFFDu})},
           {{min, min, max, max, 1}, BytesOf<uint32_t>({0x80000000u, 0x80000000u, 0, 0})}}) {
    MetaPtr meta = NewMeta();
    Put(*meta, ANDROID_CONTROL_AF_REGIONS, region);
    Bytes out(16);
    ASSERT_EQ(0, helper.GetAndroidAFRegion(meta, reinterpret_cast<nvholder::ChiRect*>(out.data())));
    EXPECT_EQ(expected, out) << region[0];
  }
}

TEST_F(BaseTest, ZeroDenominatorIsRepairedInTheMetadata) {
  MetaPtr meta = NewMeta();
  std::vector<camera_metadata_rational> ccm(9, {1, 2});
  ccm[4] = {3, 0};
  Put(*meta, ANDROID_COLOR_CORRECTION_TRANSFORM, ccm);
  float out[9] = {};
  EXPECT_EQ(0, helper.GetColorCorrectionTransform(meta, out));
  EXPECT_EQ((std::vector<float>{.5f, .5f, .5f, .5f, 3, .5f, .5f, .5f, .5f}),
            std::vector<float>(out, out + 9));
  EXPECT_EQ(1, meta->find(ANDROID_COLOR_CORRECTION_TRANSFORM).data.r[4].denominator);
  EXPECT_EQ(-1, helper.GetColorCorrectionTransform(meta, nullptr));
  EXPECT_EQ(-1, helper.GetColorCorrectionTransform(NewMeta(), out));
  EXPECT_EQ("I 354 GetColorCorrectionTransform get ccm fail", TakeLines().back());
}

TEST_F(BaseTest, FocusDistanceInCentimetresUnusableReadsAsTenMetres) {
  const std::pair<float, float> cases[] = {{0.5f, 200}, {0, 1000}, {-2, 1000}, {std::nanf(""), 1000}};
  for (const auto& [dioptres, centimetres] : cases) {
    MetaPtr meta = NewMeta();
    Put(*meta, ANDROID_LENS_FOCUS_DISTANCE, std::vector<float>{dioptres});
    float out = -1;
    EXPECT_EQ(0, helper.GetfocusDistCm(meta, &out));
    EXPECT_EQ(centimetres, out) << dioptres;
  }
}

TEST_F(BaseTest, ImageNameKeepsTheStoredTerminator) {
  MetaPtr meta = NewMeta();
  std::string name = "previous";
  EXPECT_EQ(-1, helper.GetImgName(meta, &name));
  EXPECT_EQ(Lines{"E 1239 GetImgName GetMetadata nuvaro.snapshot.imageName err"}, TakeLines());
  Put(*meta, META_SNAPSHOT_IMAGE_NAME, std::vector<uint8_t>{'I', 'M', 'G', '_', '1', 0});
  EXPECT_EQ(0, helper.GetImgName(meta, &name));
  EXPECT_EQ(std::string("IMG_1\0", 6), name);
}

TEST_F(BaseTest, AnchorOrderIsAppended) {
  MetaPtr meta = NewMeta();
  std::vector<int> order{9};
  EXPECT_EQ(-1, helper.GetAnchorFrameOrder(nullptr, order));
  EXPECT_EQ(-1, helper.GetAnchorFrameOrder(meta, order));
  EXPECT_EQ(R"(W 2206 GetAnchorFrameOrder "find com.nuvaro.nvvi2.anchorOutputOrder fail")",
            TakeLines().back());
  Put(*meta, "com.nuvaro.nvvi2.anchorOutputOrder", std::vector<int32_t>{2, 0, 1});
  EXPECT_EQ(0, helper.GetAnchorFrameOrder(meta, order));
  EXPECT_EQ(0, helper.GetAnchorFrameOrder(meta, order));
  EXPECT_EQ((std::vector<int>{9, 2, 0, 1, 2, 0, 1}), order);
}

struct CameraFiveHelper : H {
  int GetFwkCameraId(MetaPtr /*meta*/, int* out) override { return *out = 5, 0; }
};

// Back-to-back NUL-terminated ids, written with '|' for the NUL.
std::string Ids(std::string t) { return std::replace(t.begin(), t.end(), '|', '\0'), t; }
void AddCamera(int id, uint8_t facing, const std::vector<int32_t>& roles, const std::string& ids) {
  MetaPtr meta = NewMeta();
  Put(*meta, ANDROID_LENS_FACING, std::vector<uint8_t>{facing});
  Put(*meta, ANDROID_SENSOR_INFO_ACTIVE_ARRAY_SIZE, std::vector<int32_t>{0, 0, id * 100, id * 10});
  if (!roles.empty()) Put(*meta, META_CAMERA_ROLE_ID, std::vector<int32_t>{roles[0]});
  Put(*meta, META_CAMERA_ROLE_IDS, roles);
  Put(*meta, ANDROID_LOGICAL_MULTI_CAMERA_PHYSICAL_IDS, std::vector<uint8_t>(ids.begin(), ids.end()));
  StaticMetadataWraper::getInstance()->setStaticMetadata(static_cast<unsigned>(id), meta);
}
MetaPtr RequestFor(int32_t cameraId) {
  MetaPtr request = NewMeta();
  Put(*request, META_FWK_CAMERA_ID, std::vector<int32_t>{cameraId});
  return request;
}

TEST_F(BaseTest, OverriddenFrameworkIdRedirectsEveryPerCameraRead) {
  AddCamera(1, 1, {10}, Ids("2|"));
  AddCamera(5, 0, {50, 51}, Ids("6|7|"));
  MetaPtr request = RequestFor(1);
  CameraFiveHelper five;
  int role = -1;
  std::vector<int> roles, physical;
  nvholder::ChiRect active{};
  EXPECT_EQ(0, five.GetCameraRoleId(request, &role));
  EXPECT_EQ(0, five.GetCameraRoleIds(request, roles));
  EXPECT_EQ(0, five.GetAndroidLogicalMultiCameraPhysicalIds(request, physical));
  EXPECT_EQ(0, five.GetActiveArraySize(request, &active));
  EXPECT_EQ(50, role);
  EXPECT_EQ((std::vector<int>{50, 51}), roles);
  EXPECT_EQ((std::vector<int>{6, 7}), physical);
  EXPECT_EQ(500u, active.width);
  EXPECT_FALSE(five.IsRearCamera(request));
}

TEST_F(BaseTest, PhysicalIdsAreParsedAndAppended) {
  const std::pair<std::string, std::vector<int>> cases[] = {
      {Ids("2|3|"), {2, 3, 2, 3}},
      {Ids("x|12|"), {0, 12, 0, 12}},             // not a number
      {Ids("4|15"), {4, 15, 4, 15}},              // the last id without its NUL
      {Ids("1|234567"), {1, 234567, 1, 234567}},  // whole words: no padding NUL follows
      {"12345678", {12345678, 12345678}},
      {Ids("||"), {0, 0, 0, 0}},
      {"", {}},  // none
  };
  for (const auto& [text, expected] : cases) {
    AddCamera(0, 1, {}, text);
    std::vector<int> ids;
    EXPECT_EQ(0, helper.GetAndroidLogicalMultiCameraPhysicalIds(0, ids));
    EXPECT_EQ(0, helper.GetAndroidLogicalMultiCameraPhysicalIds(0, ids));
    EXPECT_EQ(expected, ids) << text;
  }
}

TEST_F(BaseTest, PhysicalRoleIdsSkipCamerasWithoutRole) {
  AddCamera(0, 1, {}, Ids("4|3|2|"));
  AddCamera(2, 1, {20}, "");
  AddCamera(3, 1, {}, "");
  AddCamera(4, 1, {40}, "");
  std::vector<int> roles{1};
  EXPECT_EQ(0, helper.GetAndroidLogicalMultiCameraPhysicalRoleIds(RequestFor(0), roles));
  EXPECT_EQ((std::vector<int>{1, 40, 20}), roles);
}

TEST_F(BaseTest, UnknownCamerasAndUndeclaredRoleList) {
  std::vector<int> ids;
  EXPECT_EQ(-1, helper.GetCameraRoleIds(RequestFor(7), ids));
  EXPECT_EQ(-1, helper.GetAndroidLogicalMultiCameraPhysicalRoleIds(RequestFor(7), ids));
  EXPECT_EQ((Lines{"V 2417 GetCameraRoleIds Get static meta for fwkCameraId 7 fail",
                   "V 2418 GetAndroidLogicalMultiCameraPhysicalIds Get static meta for fwkCameraId 7 fail",
                   R"(V 2419 GetAndroidLogicalMultiCameraPhysicalRoleIds "get phyCamFwkIds fail")"}),
            TakeLines());
  AddCamera(7, 1, {70}, "");
  MetaTagWrapper::getInstance().setTag(META_CAMERA_ROLE_IDS, MetaTagWrapper::kUndeclared);
  EXPECT_EQ(0, helper.GetCameraRoleIds(RequestFor(7), ids));
  EXPECT_TRUE(ids.empty());
  EXPECT_TRUE(TakeLines().empty());
}

TEST_F(BaseTest, RequestWithoutCameraAsksForCameraMinusOneAndCountsAsRear) {
  int role = 0;
  EXPECT_EQ(-1, helper.GetCameraRoleId(NewMeta(), &role));
  EXPECT_EQ(StaticMetadataWraper::kNoCamera, StaticMetadataWraper::getInstance()->lastRequestedCameraId());
  EXPECT_EQ(R"(V 2415 GetCameraRoleId "GetMetadata com.nuvaro.cameraid.role.cameraId err")",
            TakeLines().back());
  EXPECT_TRUE(helper.IsRearCamera(NewMeta()));
  EXPECT_EQ(R"(V 2421 GetAndroidLensFacing "GetMetadata ANDROID_LENS_FACING err1")", TakeLines().back());
}

TEST_F(BaseTest, CapabilityResultIsTheDataAddressOrZero) {
  MetaPtr meta = NewMeta();
  __bokehCapabilityInfoList caps{};
  EXPECT_EQ(0, helper.GetBokehCapabilityInfo(meta, &caps));
  EXPECT_EQ(R"(V 2411 GetBokehCapabilityInfo "GetMetadata com.nuvaro.camera.bokehCaps.info err1")",
            TakeLines().back());
  const Bytes stored(sizeof caps, 0x5C);
  PutBytes(*meta, "com.nuvaro.camera.bokehCaps.info", stored);
  const auto data = reinterpret_cast<uintptr_t>(meta->find("com.nuvaro.camera.bokehCaps.info").data.u8);
  const int lowBits = static_cast<int>(static_cast<uint32_t>(data));
  EXPECT_EQ(lowBits, helper.GetBokehCapabilityInfo(meta, nullptr));
  EXPECT_EQ(lowBits, helper.GetBokehCapabilityInfo(meta, &caps));
  EXPECT_EQ(0, std::memcmp(&caps, stored.data(), sizeof caps));
}

TEST_F(BaseTest, GainMapCopyWithoutTheByteTag) {
  MetaPtr source = NewMeta(), destination = NewMeta();
  Put(*source, META_GAINMAP_VALUES, std::vector<float>{1.5f, 2.5f});
  EXPECT_EQ(0, helper.UpdateGainMapMeta(source, destination));
  EXPECT_EQ(Lines{"I 2413 UpdateGainMapMeta get ultrahdr metadata failed."}, TakeLines());
  EXPECT_EQ(BytesOf<float>({1.5f, 2.5f}), Stored(*destination, "com.nuvaro.ultrahdr.gainmapValues"));
  Put(*source, META_GAINMAP_METADATA, std::vector<uint8_t>{1, 2, 3});
  EXPECT_EQ(0, helper.UpdateGainMapMeta(source, destination));
  EXPECT_EQ((Bytes{1, 2, 3}), Stored(*destination, "com.nuvaro.ultrahdr.gainmapMetadata"));
  MetaTagWrapper::getInstance().setTag(META_GAINMAP_METADATA, MetaTagWrapper::kUndeclared);
  EXPECT_EQ(0, helper.UpdateGainMapMeta(source, NewMeta()));
  EXPECT_TRUE(TakeLines().empty());  // an undeclared tag counts as copied
}

struct WriteCase {
  const char* op;
  std::function<int(H&, MetaPtr, bool withInput)> call;
  const char* tag;
  Bytes stored;
  Lines missingInput, emptyContainer;
};
void PrintTo(const WriteCase& c, std::ostream* os) { *os << c.op; }

const __bokehRequestInfoList kBokehRecord{{1, 0x02020202, 3, 0xFFFFFFFF}};
const char kCoreRefusal[] = R"(E 48 SetMetaData "pArg is null")";
// clang-format off
const WriteCase kWrites[] = {
  {"SetHazeratio", [](H& h, MetaPtr m, bool in) { float v = 0.75f; return h.SetHazeratio(m, in ? &v : nullptr); }, "com.nuvaro.3AAlgo.awbHazeRatio", BytesOf<float>({0.75f}),
   {R"(E 2338 SetHazeratio "arg err")"}, {kCoreRefusal, R"(V 2339 SetHazeratio "SetMetadata com.nuvaro.3AAlgo.awbHazeRatio err")"}},
  {"SetUseToneCurve", [](H& h, MetaPtr m, bool in) { uint8_t v = 1; return h.SetUseToneCurve(m, in ? &v : nullptr); }, "com.nuvaro.dng.useToneCurve", Bytes{1},
   {R"(V 2364 SetUseToneCurve "arg err")"}, {R"(V 2364 SetUseToneCurve "arg err")"}},
  {"SetLSC", [](H& h, MetaPtr m, bool in) { float g[] = {1, 2, 3, 4}; return h.SetLSC(m, in ? g : nullptr, 3); }, "android.statistics.lensShadingMap", BytesOf<float>({1, 2, 3}),
   {R"(E 2356 SetLSC "arg err")"}, {R"(E 2356 SetLSC "arg err")"}},
  {"SetAnchorFrameOrder", [](H& h, MetaPtr m, bool in) { std::vector<int> o; if (in) o = {2, 0, 1}; return h.SetAnchorFrameOrder(m, o); }, "com.nuvaro.nvvi2.anchorOutputOrder", BytesOf<int32_t>({2, 0, 1}),
   {R"(E 2426 SetAnchorFrameOrder "arg err")"}, {kCoreRefusal, R"(W 2427 SetAnchorFrameOrder "set com.nuvaro.nvvi2.anchorOutputOrder fail")"}},
  {"SetBokehRequestInfoList", [](H& h, MetaPtr m, bool in) { auto r = kBokehRecord; return h.SetBokehRequestInfoList(m, in ? &r : nullptr); }, "com.nuvaro.camera.bokehConfig.request", BytesOf({kBokehRecord}),
   {R"(E 2406 SetBokehRequestInfoList "arg err")"}, {kCoreRefusal, R"(W 2407 SetBokehRequestInfoList "SetMetadata com.nuvaro.camera.bokehConfig.request err")"}},
};
// clang-format on

class WriteFamily : public BaseTest, public ::testing::WithParamInterface<WriteCase> {};

TEST_P(WriteFamily, StoresExactlyTheInputOrReportsWhy) {
  const WriteCase& c = GetParam();
  MetaPtr meta = NewMeta();
  EXPECT_EQ(0, c.call(helper, meta, true));
  EXPECT_EQ(c.stored, Stored(*meta, c.tag));
  EXPECT_TRUE(TakeLines().empty());
  EXPECT_EQ(-1, c.call(helper, NewMeta(), false));
  EXPECT_EQ(c.missingInput, TakeLines());
  EXPECT_EQ(-1, c.call(helper, nullptr, true));
  EXPECT_EQ(c.emptyContainer, TakeLines());
}

INSTANTIATE_TEST_SUITE_P(Base, WriteFamily, ::testing::ValuesIn(kWrites), kByOp);

}  // namespace
