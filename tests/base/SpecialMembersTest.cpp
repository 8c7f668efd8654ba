// Operations that compute rather than copy: conversions, presence tests,
// camera identity chains through the virtual interface, appends, bokeh
// records, the gain-map copy and the setters.
#include <cmath>
#include <functional>

#include "BaseTestKit.h"

namespace basetest {
namespace {

using testsupport::NewMeta;
using testsupport::Put;
using Lines = std::vector<std::string>;

// ---- Conversions and presence tests ----------------------------------------
using Conversions = BaseTest;

TEST_F(Conversions, ZeroDenominatorIsRepairedInTheMetadata) {
  MetaPtr meta = NewMeta();
  std::vector<camera_metadata_rational> ccm(9, {1, 2});
  ccm[4] = {3, 0};
  Put(*meta, ANDROID_COLOR_CORRECTION_TRANSFORM, ccm);
  float out[9] = {};
  EXPECT_EQ(0, helper.GetColorCorrectionTransform(meta, out));
  EXPECT_EQ(0.5f, out[0]);
  EXPECT_EQ(3.0f, out[4]);
  EXPECT_EQ(1, meta->find(ANDROID_COLOR_CORRECTION_TRANSFORM).data.r[4].denominator);
  EXPECT_EQ(-1, helper.GetColorCorrectionTransform(meta, nullptr));
  EXPECT_EQ(-1, helper.GetColorCorrectionTransform(NewMeta(), out));
  EXPECT_EQ((Lines{R"(E 342 GetColorCorrectionTransform "arg err")",
                   "I 354 GetColorCorrectionTransform get ccm fail"}),
            TakeLines());
}

TEST_F(Conversions, FocusAtInfinityOrUnusableReadsAsTenMetres) {
  for (const float dioptres : {0.0f, -2.0f, std::nanf("")}) {
    MetaPtr meta = NewMeta();
    Put(*meta, ANDROID_LENS_FOCUS_DISTANCE, std::vector<float>{dioptres});
    float out = -1;
    EXPECT_EQ(0, helper.GetfocusDistCm(meta, &out));
    EXPECT_EQ(1000.0f, out) << dioptres;
  }
}

TEST_F(Conversions, LensShadingCopiesFourGainsPerGridPoint) {
  MetaPtr meta = NewMeta();
  std::vector<float> map(1000, 2.0f), out(1000, -1.0f);
  Put(*meta, ANDROID_STATISTICS_LENS_SHADING_MAP, map);
  EXPECT_EQ(0, helper.GetLSC(meta, out.data(), {17, 13}));
  EXPECT_EQ(2.0f, out[883]);
  EXPECT_EQ(-1.0f, out[884]);
}

TEST_F(Conversions, EyeClosureStatusOnlyTestsPresence) {
  MetaPtr meta = NewMeta();
  unsigned char out = 77;
  EXPECT_EQ(-1, helper.GetEcdStatus(meta, &out));
  EXPECT_EQ(R"(V 918 GetEcdStatus "GetMetadata com.nuvaro.nvvi2.eyeclosure.status fail")",
            TakeLines().back());
  Put(*meta, META_EYE_CLOSURE_STATUS, std::vector<int32_t>{1});
  EXPECT_EQ(0, helper.GetEcdStatus(meta, &out));
  EXPECT_EQ(0, helper.GetEcdStatus(meta, nullptr));
  EXPECT_EQ(77, out);
}

TEST_F(Conversions, ImageNameKeepsTheStoredTerminator) {
  MetaPtr meta = NewMeta();
  std::string name = "previous";
  EXPECT_EQ(-1, helper.GetImgName(meta, &name));
  EXPECT_EQ(Lines{"E 1239 GetImgName GetMetadata nuvaro.snapshot.imageName err"}, TakeLines());
  Put(*meta, META_SNAPSHOT_IMAGE_NAME, std::vector<uint8_t>{'I', 'M', 'G', '_', '1', 0});
  EXPECT_EQ(0, helper.GetImgName(meta, &name));
  EXPECT_EQ(std::string("IMG_1\0", 6), name);
}

TEST_F(Conversions, WhiteLevelIsLoggedOnlyWhenRead) {
  MetaPtr meta = NewMeta();
  int level = 0;
  EXPECT_EQ(-1, helper.GetSensorDynamicWhiteLevel(meta, &level));
  EXPECT_EQ(R"(V 471 GetSensorDynamicWhiteLevel "GetMetadata ANDROID_SENSOR_DYNAMIC_WHITE_LEVEL fail")",
            TakeLines().back());
  Put(*meta, ANDROID_SENSOR_DYNAMIC_WHITE_LEVEL, std::vector<int32_t>{1023});
  EXPECT_EQ(0, helper.GetSensorDynamicWhiteLevel(meta, &level));
  EXPECT_EQ(Lines{"I 473 GetSensorDynamicWhiteLevel ANDROID_SENSOR_DYNAMIC_WHITE_LEVEL: 1023"}, TakeLines());
}

TEST_F(Conversions, AnchorOrderIsAppended) {
  MetaPtr meta = NewMeta();
  std::vector<int> order{9};
  EXPECT_EQ(-1, helper.GetAnchorFrameOrder(nullptr, order));
  EXPECT_EQ(-1, helper.GetAnchorFrameOrder(meta, order));
  EXPECT_EQ((Lines{R"(E 2203 GetAnchorFrameOrder "meta is null")",
                   R"(W 2206 GetAnchorFrameOrder "find com.nuvaro.nvvi2.anchorOutputOrder fail")"}),
            TakeLines());
  Put(*meta, "com.nuvaro.nvvi2.anchorOutputOrder", std::vector<int32_t>{2, 0, 1});
  EXPECT_EQ(0, helper.GetAnchorFrameOrder(meta, order));
  EXPECT_EQ(0, helper.GetAnchorFrameOrder(meta, order));
  EXPECT_EQ((std::vector<int>{9, 2, 0, 1, 2, 0, 1}), order);
}

// ---- Camera identity -------------------------------------------------------
// A platform whose requests always belong to one camera.
class FixedCameraHelper : public metadataHelperBase {
 public:
  explicit FixedCameraHelper(int cameraId) : cameraId_(cameraId) {}
  int GetFwkCameraId(MetaPtr /*meta*/, int* out) override {
    *out = cameraId_;
    return 0;
  }

 private:
  int cameraId_;
};

class Identity : public BaseTest {
 protected:
  static MetaPtr AddCamera(int id, uint8_t facing, const std::vector<int32_t>& roles,
                           const std::string& physicalIds) {
    MetaPtr meta = NewMeta();
    Put(*meta, ANDROID_LENS_FACING, std::vector<uint8_t>{facing});
    Put(*meta, ANDROID_SENSOR_INFO_ACTIVE_ARRAY_SIZE, std::vector<int32_t>{0, 0, id * 100, id * 10});
    if (!roles.empty()) Put(*meta, META_CAMERA_ROLE_ID, std::vector<int32_t>{roles[0]});
    if (!roles.empty()) Put(*meta, META_CAMERA_ROLE_IDS, roles);
    if (!physicalIds.empty())
      Put(*meta, ANDROID_LOGICAL_MULTI_CAMERA_PHYSICAL_IDS,
          std::vector<uint8_t>(physicalIds.begin(), physicalIds.end()));
    StaticMetadataWraper::getInstance()->setStaticMetadata(static_cast<unsigned>(id), meta);
    return meta;
  }
  static MetaPtr RequestFor(int32_t cameraId) {
    MetaPtr request = NewMeta();
    Put(*request, META_FWK_CAMERA_ID, std::vector<int32_t>{cameraId});
    return request;
  }
};

TEST_F(Identity, OverriddenFrameworkIdRedirectsEveryPerCameraRead) {
  AddCamera(1, 1, {10}, std::string("2\0", 2));
  AddCamera(5, 0, {50, 51},
            std::string("6\0"
                        "7\0",
                        4));
  MetaPtr request = RequestFor(1);
  Put(*request, ANDROID_LENS_FACING, std::vector<uint8_t>{0});  // the request's own facing never counts
  FixedCameraHelper cameraFive(5);
  for (metadataHelperBase* h :
       {static_cast<metadataHelperBase*>(&helper), static_cast<metadataHelperBase*>(&cameraFive)}) {
    const bool five = h == &cameraFive;
    int role = -1;
    std::vector<int> roles, physical;
    nvholder::ChiRect active{};
    EXPECT_EQ(0, h->GetCameraRoleId(request, &role));
    EXPECT_EQ(0, h->GetCameraRoleIds(request, roles));
    EXPECT_EQ(0, h->GetAndroidLogicalMultiCameraPhysicalIds(request, physical));
    EXPECT_EQ(0, h->GetActiveArraySize(request, &active));
    EXPECT_EQ(five ? 50 : 10, role);
    EXPECT_EQ((five ? std::vector<int>{50, 51} : std::vector<int>{10}), roles);
    EXPECT_EQ((five ? std::vector<int>{6, 7} : std::vector<int>{2}), physical);
    EXPECT_EQ(five ? 500u : 100u, active.width);
    EXPECT_EQ(!five, h->IsRearCamera(request));
  }
}

TEST_F(Identity, PhysicalIdsAreParsedAndAppended) {
  const std::pair<std::string, std::vector<int>> cases[] = {
      {std::string("2\0"
                   "3\0",
                   4),
       {2, 3, 2, 3}},
      {std::string("x\0"
                   "12\0",
                   5),
       {0, 12, 0, 12}},
      {std::string("4\0"
                   "15",
                   4),
       {4, 15, 4, 15}},     // the last id without its NUL
      {std::string(), {}},  // no tag at all
  };
  for (const auto& [text, expected] : cases) {
    AddCamera(0, 1, {}, text);
    std::vector<int> ids;
    EXPECT_EQ(0, helper.GetAndroidLogicalMultiCameraPhysicalIds(0, ids));
    EXPECT_EQ(0, helper.GetAndroidLogicalMultiCameraPhysicalIds(0, ids));
    EXPECT_EQ(expected, ids) << text;
  }
  EXPECT_TRUE(TakeLines().empty());
}

TEST_F(Identity, PhysicalRoleIdsSkipCamerasWithoutRole) {
  AddCamera(0, 1, {},
            std::string("4\0"
                        "3\0"
                        "2\0",
                        6));
  AddCamera(2, 1, {20}, "");
  AddCamera(3, 1, {}, "");
  AddCamera(4, 1, {40}, "");
  std::vector<int> roles{1};
  EXPECT_EQ(0, helper.GetAndroidLogicalMultiCameraPhysicalRoleIds(RequestFor(0), roles));
  EXPECT_EQ((std::vector<int>{1, 40, 20}), roles);
}

TEST_F(Identity, UnknownCamerasAndUndeclaredRoleList) {
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

TEST_F(Identity, RequestWithoutCameraAsksForCameraMinusOneAndCountsAsRear) {
  int role = 0;
  EXPECT_EQ(-1, helper.GetCameraRoleId(NewMeta(), &role));
  EXPECT_EQ(StaticMetadataWraper::kNoCamera, StaticMetadataWraper::getInstance()->lastRequestedCameraId());
  EXPECT_EQ(R"(V 2415 GetCameraRoleId "GetMetadata com.nuvaro.cameraid.role.cameraId err")",
            TakeLines().back());
  EXPECT_TRUE(helper.IsRearCamera(NewMeta()));
  EXPECT_EQ(R"(V 2421 GetAndroidLensFacing "GetMetadata ANDROID_LENS_FACING err1")", TakeLines().back());
}

// ---- Records and setters ---------------------------------------------------
using Records = BaseTest;

TEST_F(Records, CapabilityResultIsTheDataAddressOrZero) {
  MetaPtr meta = NewMeta();
  __bokehCapabilityInfoList caps;
  std::memset(&caps, 0x11, sizeof caps);
  EXPECT_EQ(0, helper.GetBokehCapabilityInfo(meta, &caps));
  EXPECT_EQ(R"(V 2411 GetBokehCapabilityInfo "GetMetadata com.nuvaro.camera.bokehCaps.info err1")",
            TakeLines().back());
  EXPECT_EQ(0x11111111u, caps.words[0]);

  Bytes stored(sizeof caps);
  for (size_t i = 0; i < stored.size(); ++i) stored[i] = static_cast<uint8_t>(i * 13);
  PutBytes(*meta, "com.nuvaro.camera.bokehCaps.info", stored);
  const auto data = reinterpret_cast<uintptr_t>(meta->find("com.nuvaro.camera.bokehCaps.info").data.u8);
  const int lowBits = static_cast<int>(static_cast<uint32_t>(data));
  EXPECT_EQ(lowBits, helper.GetBokehCapabilityInfo(meta, nullptr));
  EXPECT_EQ(lowBits, helper.GetBokehCapabilityInfo(meta, &caps));
  EXPECT_EQ(0, std::memcmp(&caps, stored.data(), sizeof caps));
}

TEST_F(Records, GainMapCopyWithoutTheByteTag) {
  MetaPtr source = NewMeta(), destination = NewMeta();
  Put(*source, META_GAINMAP_VALUES, std::vector<float>{1.5f, 2.5f});
  EXPECT_EQ(0, helper.UpdateGainMapMeta(source, destination));
  EXPECT_EQ(Lines{"I 2413 UpdateGainMapMeta get ultrahdr metadata failed."}, TakeLines());
  EXPECT_EQ(2u, destination->find(MetaTagWrapper::getInstance()(META_GAINMAP_VALUES)).count);

  MetaTagWrapper::getInstance().setTag(META_GAINMAP_METADATA, MetaTagWrapper::kUndeclared);
  EXPECT_EQ(0, helper.UpdateGainMapMeta(source, destination));
  EXPECT_TRUE(TakeLines().empty());
  MetaTagWrapper::getInstance().resetTags();
  Put(*source, META_GAINMAP_METADATA, std::vector<uint8_t>{1, 2, 3});
  EXPECT_EQ(0, helper.UpdateGainMapMeta(source, destination));
  EXPECT_EQ(3u, destination->find(MetaTagWrapper::getInstance()(META_GAINMAP_METADATA)).count);
}

TEST_F(Records, SettersRoundTripThroughTheirGetters) {
  MetaPtr meta = NewMeta();
  float focal = 0, scale = 1.25f;
  int anchor = 0;
  __bokehRequestInfoList request, readRequest{};
  for (uint32_t i = 0; i < 31; ++i) request.words[i] = i * 0x01010101u;
  EXPECT_EQ(0, helper.SetAndroidLensFocalLength(meta, 4.7f));
  EXPECT_EQ(0, helper.SetAnchorFrameIndex(meta, 3));
  EXPECT_EQ(0, helper.SetBokehRequestInfoList(meta, &request));
  EXPECT_EQ(0, helper.SetWhitelevelScaleFactor(meta, &scale));
  EXPECT_EQ(0, helper.GetAndroidLensFocalLength(meta, &focal));
  EXPECT_EQ(0, helper.GetAnchorFrameNum(meta, &anchor));
  EXPECT_EQ(0, helper.GetBokehRequestInfo(meta, &readRequest));
  EXPECT_EQ(4.7f, focal);
  EXPECT_EQ(3, anchor);
  EXPECT_EQ(0, std::memcmp(&request, &readRequest, sizeof request));
  EXPECT_EQ(1u, meta->find("com.nuvaro.dng.whitelevelScaleFactor").count);
}

// A setter refuses a missing input (and, where it checks, an empty container)
// itself; otherwise the core write reports and the setter adds its message.
using WriteCall = std::function<int(metadataHelperBase&, MetaPtr, bool withInput)>;
struct WriteCase {
  const char* op;
  WriteCall call;
  Lines missingInput;
  Lines emptyContainer;
};
void PrintTo(const WriteCase& c, std::ostream* os) { *os << c.op; }

template <typename T>
WriteCall Single(int (metadataHelperBase::*op)(MetaPtr, T*)) {
  return [op](metadataHelperBase& h, MetaPtr m, bool withInput) {
    T value{};
    return (h.*op)(std::move(m), withInput ? &value : nullptr);
  };
}
WriteCall AnchorOrder() {
  return [](metadataHelperBase& h, MetaPtr m, bool withInput) {
    std::vector<int> order(withInput ? 2 : 0);
    return h.SetAnchorFrameOrder(std::move(m), order);
  };
}
WriteCall ShadingMap() {
  return [](metadataHelperBase& h, MetaPtr m, bool withInput) {
    float gains[2] = {};
    return h.SetLSC(std::move(m), withInput ? gains : nullptr, 2);
  };
}

const char kCoreRefusal[] = R"(E 48 SetMetaData "pArg is null")";
// clang-format off
const WriteCase kWrites[] = {
  {"SetHazeratio", Single(&metadataHelperBase::SetHazeratio), {R"(E 2338 SetHazeratio "arg err")"},
   {kCoreRefusal, R"(V 2339 SetHazeratio "SetMetadata com.nuvaro.3AAlgo.awbHazeRatio err")"}},
  {"SetAllinoneResult", Single(&metadataHelperBase::SetAllinoneResult), {R"(V 2342 SetAllinoneResult "arg err")"},
   {kCoreRefusal, R"(V 2343 SetAllinoneResult "SetMetadata nuvaro.snapshot.allinoneResult err")"}},
  {"SetUseToneCurve", Single(&metadataHelperBase::SetUseToneCurve), {R"(V 2364 SetUseToneCurve "arg err")"}, {R"(V 2364 SetUseToneCurve "arg err")"}},
  {"SetLSC", ShadingMap(), {R"(E 2356 SetLSC "arg err")"}, {R"(E 2356 SetLSC "arg err")"}},
  {"SetBokehRequestInfoList", Single(&metadataHelperBase::SetBokehRequestInfoList), {R"(E 2406 SetBokehRequestInfoList "arg err")"},
   {kCoreRefusal, R"(W 2407 SetBokehRequestInfoList "SetMetadata com.nuvaro.camera.bokehConfig.request err")"}},
  {"SetAnchorFrameOrder", AnchorOrder(), {R"(E 2426 SetAnchorFrameOrder "arg err")"},
   {kCoreRefusal, R"(W 2427 SetAnchorFrameOrder "set com.nuvaro.nvvi2.anchorOutputOrder fail")"}},
};
// clang-format on

class WriteFamily : public BaseTest, public ::testing::WithParamInterface<WriteCase> {};

TEST_P(WriteFamily, RefusalsAndCoreFailures) {
  const WriteCase& c = GetParam();
  EXPECT_EQ(-1, c.call(helper, NewMeta(), false));
  EXPECT_EQ(c.missingInput, TakeLines());
  EXPECT_EQ(-1, c.call(helper, nullptr, true));
  EXPECT_EQ(c.emptyContainer, TakeLines());
}

INSTANTIATE_TEST_SUITE_P(Operations, WriteFamily, ::testing::ValuesIn(kWrites),
                         [](const auto& info) { return std::string(info.param.op); });

TEST_F(Records, WriteFailuresCarryTheSettersOwnTexts) {
  MetaTagWrapper::getInstance().setTag(META_DNG_WHITELEVEL_SCALE_FACTOR, MetaTagWrapper::kUndeclared);
  MetaTagWrapper::getInstance().setTag(META_AWB_PARAM, MetaTagWrapper::kUndeclared);
  float factor = 1.0f;
  unsigned char awb[3] = {};
  EXPECT_EQ(-1, helper.SetWhitelevelScaleFactor(NewMeta(), &factor));
  EXPECT_EQ(-1, helper.SetAWBParam(NewMeta(), awb, 3));
  EXPECT_EQ(-1, helper.SetAnchorFrameIndex(nullptr, 3));
  EXPECT_EQ((Lines{"E 57 SetMetaData metadata not declared, tagindex 460",
                   R"(V 2369 SetWhitelevelScaleFactor "SetMetadata com.nuvaro.dng.whitelevelScaleFactorerr")",
                   "E 57 SetMetaData metadata not declared, tagindex 451",
                   R"(V 2371 SetAWBParam "SetMetadata ANDROID_SENSOR_DYNAMIC_WHITE_LEVEL err")", kCoreRefusal,
                   R"(W 2428 SetAnchorFrameIndex "SetMetadata com.nuvaro.nvvi2.anchorFrameNum err")"}),
            TakeLines());
}

}  // namespace
}  // namespace basetest
