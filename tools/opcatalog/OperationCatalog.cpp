// The operation table. Each row names its slot and operation and the shape
// of its call; the templates below know, from the operation's own signature,
// what output storage to give it (on the stack), which context fields its
// extra arguments come from, and how to describe what it produced.
#include "OperationCatalog.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "ValueDescription.h"

namespace opcatalog {
namespace {

using metahelper::MetaPtr;
using Helper = metahelper::metadataHelperBase;
using Call = int (*)(Helper&, const CallContext&);

// Row traits: the Needs bits, then two of the catalogue's own.
enum Trait : uint8_t {
  kPlain = 0,
  kAllocates = 4,       // a string or vector crosses the call
  kNonZeroSuccess = 8,  // success is a non-zero result
};
constexpr uint8_t kNeedsMask = kNeedsRequest | kNeedsOutput;

// ---- What a signature says ------------------------------------------------
// Getters take (subject, output*, extra...) or (subject, output&); the
// subject is the request or a camera id.
template <typename Method>
struct Shape;
template <typename S, typename Out, typename... Extra>
struct Shape<int (Helper::*)(S, Out*, Extra...)> {
  using Subject = S;
  using Data = Out;
  static constexpr bool kByReference = false;
};
template <typename S, typename Out>
struct Shape<int (Helper::*)(S, Out&)> {
  using Subject = S;
  using Data = Out;
  static constexpr bool kByReference = true;
};

// Storage for an output; an untyped platform record gets raw 32-bit words.
template <typename T>
struct Storage {
  using Type = T;
};
template <>
struct Storage<void> {
  using Type = uint32_t;
};
constexpr size_t kTuningModeWords = 16;

const MetaPtr& SubjectOf(const CallContext& context, const MetaPtr*) { return context.request; }
int SubjectOf(const CallContext& context, const int*) { return context.cameraId; }

// Extra arguments, from the context.
unsigned char SkinScoreIndex(const CallContext& context) { return static_cast<unsigned char>(context.index); }
nvholder::dimension SensorSize(const CallContext& context) { return context.sensorSize; }
bool InSensorZoom(const CallContext& context) { return context.inSensorZoom; }
int CameraId(const CallContext& context) { return context.cameraId; }
int AnchorIndex(const CallContext& context) { return context.index; }

constexpr bool IsZero(int result) { return result == 0; }
constexpr bool IsNonZero(int result) { return result != 0; }

// Tells the sink the produced value: one element as itself, more as an array.
template <typename T>
void Report(const CallContext& context, const T* values, size_t count) {
  if (context.sink == nullptr || context.nullOutputs) return;
  if (count == 1)
    Describe(*context.sink, nullptr, values[0]);
  else
    DescribeArray(*context.sink, nullptr, values, count);
}

// ---- Call shapes ----------------------------------------------------------
template <typename S, typename T>
decltype(auto) OutputArgument(const CallContext& context, T* values) {
  if constexpr (S::kByReference)
    return (*values);
  else
    return context.nullOutputs ? nullptr : values;
}

template <auto Method, size_t Count, bool (*Succeeded)(int), auto... Extra>
int Read(Helper& helper, const CallContext& context) {
  using S = Shape<decltype(Method)>;
  typename Storage<typename S::Data>::Type values[Count]{};
  const int result = (helper.*Method)(SubjectOf(context, static_cast<const typename S::Subject*>(nullptr)),
                                      OutputArgument<S>(context, values), Extra(context)...);
  if (Succeeded(result)) Report(context, values, Count);
  return result;
}

int ReadLensShading(Helper& helper, const CallContext& context) {
  const nvholder::NULSCMapSize size = context.lscMapSize;
  if (size.width < 0 || size.height < 0) return -1;
  const size_t count = static_cast<size_t>(size.width) * static_cast<size_t>(size.height) * 4;
  if (count > kMaxLensShadingValues) return -1;
  float gains[kMaxLensShadingValues];
  std::fill_n(gains, count, 0.0f);
  const int result = helper.GetLSC(context.request, context.nullOutputs ? nullptr : gains, size);
  if (result == 0) Report(context, gains, count);
  return result;
}

int ReadShiftData(Helper& helper, const CallContext& context) {
  nvholder::ShiftData shift{};
  const int result = helper.GetShiftDataFromHolder(context.timestamp, context.cameraId,
                                                   context.nullOutputs ? nullptr : &shift);
  if (result == 0) Report(context, &shift, 1);
  return result;
}

// The face record is a reference, so it is always passed; the raw face
// parameter record is an input the operation may ignore.
int ReadFaceRect(Helper& helper, const CallContext& context) {
  FacesInfo faces{};
  nvholder::NUNvFDRawSnapshotParam param{};
  const int result = helper.GetFaceRect(context.request, static_cast<int>(context.imageSize.width),
                                        static_cast<int>(context.imageSize.height), faces,
                                        context.nullOutputs ? nullptr : &param);
  if (result == 0) Report(context, &faces, 1);
  return result;
}

// Two outputs, described as one record of both.
int ReadFocusRoi(Helper& helper, const CallContext& context) {
  __UtilsImage_Rect rect{};
  __UtilsImage_point point{};
  const bool null = context.nullOutputs;
  const int result = helper.GetFocusROI(context.request, context.imageSize, null ? nullptr : &rect,
                                        null ? nullptr : &point, false, false);
  if (result != 0 || context.sink == nullptr || null) return result;
  context.sink->BeginRecord(nullptr, "FocusROI");
  Describe(*context.sink, "rect", rect);
  Describe(*context.sink, "point", point);
  context.sink->EndRecord();
  return result;
}

int AskRearCamera(Helper& helper, const CallContext& context) {
  const bool rear = helper.IsRearCamera(context.request);
  Report(context, &rear, 1);
  return rear ? 1 : 0;
}

// Setters write a copy of a fixed value: the operations take non-const
// pointers.
template <auto Method, const auto& Value>
int WriteValue(Helper& helper, const CallContext& context) {
  auto input = Value;
  return (helper.*Method)(context.request, context.nullOutputs ? nullptr : &input);
}

template <auto Method, const auto& Values>
int WriteArray(Helper& helper, const CallContext& context) {
  auto inputs = Values;
  return (helper.*Method)(context.request, context.nullOutputs ? nullptr : inputs.data(),
                          static_cast<int>(inputs.size()));
}

template <auto Method, auto ArgumentOf>
int WriteArgument(Helper& helper, const CallContext& context) {
  return (helper.*Method)(context.request, ArgumentOf(context));
}

// A reference cannot be null: under nullOutputs the container goes empty.
template <auto Method, typename Container, const auto& Values>
int WriteContainer(Helper& helper, const CallContext& context) {
  Container input;
  if (!context.nullOutputs) input.assign(std::begin(Values), std::end(Values));
  return (helper.*Method)(context.request, input);
}

template <auto Method>
int Transfer(Helper& helper, const CallContext& context) {
  const MetaPtr destination = context.second ? context.second : std::make_shared<NvMetadata>();
  return (helper.*Method)(context.request, destination);
}

template <uint8_t Needs, Call Inner>
int Guarded(Helper& helper, const CallContext& context) {
  if ((Needs & kNeedsRequest) != 0 && !context.request) return -1;
  if ((Needs & kNeedsOutput) != 0 && context.nullOutputs) return -1;
  return Inner(helper, context);
}

// ---- Setter inputs --------------------------------------------------------
constexpr int kIso = 100;
constexpr float kIspGain = 1.5f;
constexpr float kHazeRatio = 0.25f;
constexpr int kFlagOn = 1;
constexpr unsigned char kByteOn = 1;
constexpr float kUnitGain = 1.0f;
constexpr int kWhiteLevel = 1023;
constexpr float kLensFocalLength = 4.71f;
constexpr float kEquivalentFocalLength = 26.0f;
constexpr nvholder::SnapshotReqInfo kSnapshotReqInfo{1, 4, {}};
constexpr nvholder::NUNvFDRawSnapshotParam kFdParam{};
constexpr nvholder::NUAECFrameControl kAecFrameControl{{}, 312.0f, {}};
constexpr nvholder::ChiRect kCropRegion{0, 0, 4000, 3000};
constexpr nvholder::GainmapEvInfo kGainmapEvInfo{{-2.0f, 0.0f, 2.0f}, 3};
constexpr __bokehRequestInfoList kBokehRequest{{1, 0, 1920, 1080}};
// A 2 x 2 shading map of unit gains, four channels per point.
constexpr std::array<float, 16> kShadingGains{1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
constexpr std::array<camera_metadata_rational, 3> kNeutralPoint{{{1, 2}, {1, 1}, {2, 3}}};
constexpr std::array<float, 4> kBlackLevels{64, 64, 64, 64};
constexpr std::array<unsigned char, 8> kAwbParam{1, 2, 3, 4, 5, 6, 7, 8};
constexpr std::array<unsigned char, 8> kDebugData{'m', 'f', 'n', 'r', 0, 1, 2, 3};
constexpr std::array<int, 6> kPanshotTracker{1, 0, 0, 1920, 1080, 0};
constexpr std::array<unsigned char, 4> kPanshotResult{1, 0, 0, 0};
constexpr std::string_view kZslDetail = "anchor:0";  // short enough to stay in the string itself
constexpr std::array<int, 3> kAnchorOrder{2, 0, 1};

float LensFocalLength(const CallContext&) { return kLensFocalLength; }
float EquivalentFocalLength(const CallContext&) { return kEquivalentFocalLength; }

// ---- The table ------------------------------------------------------------
constexpr Operation MakeOperation(int slot, const char* name, Kind kind, uint8_t traits, Call call) {
  return Operation{slot,
                   name,
                   kind,
                   (traits & kAllocates) != 0,
                   call,
                   (traits & kNonZeroSuccess) != 0,
                   static_cast<uint8_t>(traits & kNeedsMask)};
}

#define ENTRY(slot, name, kind, traits, ...) \
  MakeOperation(slot, #name, Kind::kind, traits, &Guarded<(traits)&kNeedsMask, __VA_ARGS__>)
#define GET(slot, name) ENTRY(slot, name, Getter, kPlain, Read<&Helper::name, 1, IsZero>)
#define GET_N(slot, name, count) ENTRY(slot, name, Getter, kPlain, Read<&Helper::name, count, IsZero>)
#define GET_WITH(slot, name, ...) \
  ENTRY(slot, name, Getter, kPlain, Read<&Helper::name, 1, IsZero, __VA_ARGS__>)
#define GET_LIST(slot, name) ENTRY(slot, name, Getter, kAllocates, Read<&Helper::name, 1, IsZero>)
#define GET_AS(slot, name, traits, params) \
  ENTRY(slot, name, Getter, traits, Read<static_cast<int(Helper::*) params>(&Helper::name), 1, IsZero>)
#define SET(slot, name, value) ENTRY(slot, name, Setter, kPlain, WriteValue<&Helper::name, value>)
#define SET_ARRAY(slot, name, values) ENTRY(slot, name, Setter, kPlain, WriteArray<&Helper::name, values>)
#define SET_BY_VALUE(slot, name, argument) \
  ENTRY(slot, name, Setter, kPlain, WriteArgument<&Helper::name, argument>)
#define TRANSFER(slot, name, traits) ENTRY(slot, name, Setter, traits, Transfer<&Helper::name>)

// clang-format off
constexpr Operation kOperations[] = {
    GET(3, GetPhyCameraId),
    GET(4, GetSensorExposureTime),
    GET(5, GetSmartAeInfo),
    GET(6, GetAndroidJpegOrientation),
    GET(7, GetUIEV),
    GET(8, GetStylizationType),
    GET(9, GetSensorTimestamp),
    GET(10, GetHighlightAnchorOrder),
    GET(11, GetStreetModeEnable),
    GET(12, GetEHDREnable),
    GET(13, GetTeleFusionEnable),
    GET(14, GetIsPzslDisplayMode),
    GET(15, GetLivephotoIspGainFactor),
    GET(16, GetStreetAnchorOrder),
    GET(17, GetPreviewBrightnessInfo),
    // Reads the container without testing it; one helper writes the output untested too.
    ENTRY(18, GetColorCorrectionTransform, Getter, kNeedsRequest | kNeedsOutput, Read<&Helper::GetColorCorrectionTransform, 9, IsZero>),
    GET(19, GetAISceneResult),
    GET(20, GetAISceneIndoor),
    GET(21, GetWhiteBlackRatio),
    GET(22, GetPreviewDarkGainRatio),
    GET(23, GetPreviewAeRatio),
    GET(24, GetDisplayEnable),
    GET(25, GetSensorDynamicWhiteLevel),
    GET_N(26, GetSensorDynamicBlackLevel, 4),
    GET(27, GetPreviewExposure),
    GET(28, GetPreviewISPGain),
    GET(29, GetAndroidTimeStamp),
    GET(30, GetselfieUnfold),
    GET(31, GetliveshotEnabled),
    GET(32, GetmotionCaptureEnabledIcon),
    GET_WITH(33, GetSkinScore, SkinScoreIndex),
    GET(34, GetMotionCaptureType),
    GET(35, GetMotionCaptureFrameType),
    GET(36, GetMotionVelocity),
    GET(37, GetfocusDistCm),
    GET(38, GetSensitivity),
    GET(39, GetAFState),
    GET(40, GetAFMode),
    ENTRY(41, GetLSC, Getter, kPlain, ReadLensShading),
    GET(42, GetIsZSLEnable),
    GET(43, GetANDROIDFlashMode),
    GET(44, GetNUFlashMode),
    GET(45, GetAndroidSensorFrameDuration),
    GET(46, GetNUPanshotFeatureEnable),
    GET_WITH(47, GetCropRegion, SensorSize, InSensorZoom),
    GET(48, GetAndroidCropRegion),
    GET(49, GetAndroidZoomRatio),
    GET(50, GetApertureValue),
    GET(51, GetEcdStatus),
    GET(52, GetNUAihighlightIs),
    GET(53, GetSunsetScene),
    SET(54, SetISO, kIso),
    GET(55, GetISO),
    SET(56, SetIspGain, kIspGain),
    SET(57, SetHazeratio, kHazeRatio),
    SET(58, SetAIToneFlag, kFlagOn),
    SET(59, SetAllinoneResult, kFlagOn),
    GET(60, GetAppMode),
    GET(61, GetFaceLumaTarget),
    GET(62, GetNoFaceLumaTarget),
    GET(63, GetFrameLuma),
    GET(64, GetFrameLumaTarget),
    GET(65, GetTuningSensorMode),
    GET(66, GetPreAnchor),
    GET(67, GetAnchorFrameNum),
    GET_AS(68, GetGammaOutput, kPlain, (MetaPtr, nvholder::GammaInfo*)),
    GET_AS(69, GetGammaOutput, kPlain, (MetaPtr, nvholder::GammaTableInfo*)),
    GET(70, GetActiveSize),
    GET(71, GetFwkCameraId),
    GET(72, GetRealAvailableMinDigitalZoom),
    GET(73, GetContinuousOpticalZoom),
    GET(74, GetAvailableMinDigitalZoom),
    GET(75, GetFaceAverageBrightness),
    GET_N(76, GetFacetargetAndConfidence, 10),
    GET(77, GetConcertMode),
    GET(78, GetCurLuma),
    GET(79, GetTargetLuma),
    GET(80, GetIspGain),
    GET(81, GetCurSensorMode),
    GET(82, GetBlackLevelShift),
    GET(83, GetSensorSOF),
    GET(84, GetSensorReadOutTime),
    GET(85, GetShootingTimeStamp),
    GET(86, GetQTimerTimeStamp),
    GET_N(87, GetPanshotTrackerInfo, 6),
    GET(88, GetPreviewADRCGain),
    GET(89, GetAeRatio),
    GET(90, GetIrRatio),
    GET(91, GetRealCCT),
    // Dereferences both the container and the string without a test.
    ENTRY(92, GetImgName, Getter, kAllocates | kNeedsRequest | kNeedsOutput, Read<&Helper::GetImgName, 1, IsZero>),
    SET(93, SetSnapshotReqInfo, kSnapshotReqInfo),
    SET_ARRAY(94, SetLSC, kShadingGains),
    SET_ARRAY(95, SetNeutralPoint, kNeutralPoint),
    SET_ARRAY(96, SetBlackLevel, kBlackLevels),
    SET(97, SetPostRawGain, kUnitGain),
    SET(98, SetUseToneCurve, kByteOn),
    SET(99, SetWhitelevel, kWhiteLevel),
    SET(100, SetWhitelevelScaleFactor, kUnitGain),
    SET_ARRAY(101, SetAWBParam, kAwbParam),
    SET_ARRAY(102, SetMultiframeDebugData, kDebugData),
    SET_ARRAY(103, SetPanshotTruckInfo, kPanshotTracker),
    SET_ARRAY(104, SetPanshotResult, kPanshotResult),
    GET(105, GetNuvaroSensorModeType),
    GET(106, GetSensorBayerPatten),
    GET(107, GetSDSRTrigger),
    GET(108, GetDiffusionSRMode),
    GET(109, GetAWBFrameControl),
    ENTRY(110, GetShiftDataFromHolder, Getter, kPlain, ReadShiftData),
    GET(111, GetFdData),
    SET(112, SetFdData, kFdParam),
    GET(113, GetGTMTable),
    GET(114, GetAWBCustomSnapshotWBInfo),
    GET(115, GetAECFrameControl),
    SET(116, SetAECFrameControl, kAecFrameControl),
    GET(117, GetSensorExpInfo),
    GET(118, GetGyroInfo),
    GET(119, GetPanshotResData),
    GET(120, GetMultiCameraIds),
    SET(121, SetCropRegion, kCropRegion),
    GET(122, GetSnapshotReqInfo),
    SET(123, SetGainMapEvInfo, kGainmapEvInfo),
    GET(124, GetActiveArraySize),
    GET(125, GetMaxActiveArraySize),
    GET(126, GetStaticMetaSensorCaps),
    GET(127, GetSensorMetaDataSensorModeInfo),
    GET(128, GetLongExpControl),
    GET(129, GetLongExpMode),
    GET(130, GetlongExposureMode),
    GET(131, GetMFInputNum),
    GET(132, GetLSCMapSize),
    GET(133, GetAECompensation),
    GET_N(134, GetJPEGGPSCoordinates, 3),
    GET_N(135, GetSensorViewAngle, 2),
    GET_N(136, GetRotationMatrix, 9),
    GET_N(137, GetTuningMode, kTuningModeWords),
    GET(138, GetNZSLWBInfo),
    GET(139, GetZSLQAlgoUpSup),
    GET(140, GetAIspSelectAnchorOutput),
    GET(141, GetBandingSceneType),
    GET(142, GetNuvaroDeviceOrientation),
    GET(143, GetNuvaroThermalLevel),
    GET(144, GetNuvaroThermalResult),
    GET(145, GetAndroidAFRegion),
    GET(146, GetAndroidLensFocalLength),
    SET_BY_VALUE(147, SetAndroidLensFocalLength, LensFocalLength),
    GET(148, GetNuvaroEquivalentFocalLength),
    SET_BY_VALUE(149, SetNuvaroEquivalentFocalLength, EquivalentFocalLength),
    GET(150, GetBokehRequestInfo),
    SET(151, SetBokehRequestInfoList, kBokehRequest),
    GET(152, GetBokehSessionParamInfo),
    ENTRY(153, GetBokehCapabilityInfo, Getter, kNonZeroSuccess, Read<&Helper::GetBokehCapabilityInfo, 1, IsNonZero>),
    TRANSFER(154, UpdateGainMapMeta, kNeedsRequest),  // reads the source without a test
    GET_AS(155, GetCameraRoleId, kPlain, (int, int*)),
    GET_AS(156, GetCameraRoleId, kPlain, (MetaPtr, int*)),
    GET_LIST(157, GetCameraRoleIds),
    GET(158, GetASDSmartScene),
    GET_AS(159, GetAndroidLogicalMultiCameraPhysicalIds, kAllocates, (int, std::vector<int>&)),
    GET_AS(160, GetAndroidLogicalMultiCameraPhysicalIds, kAllocates, (MetaPtr, std::vector<int>&)),
    GET_LIST(161, GetAndroidLogicalMultiCameraPhysicalRoleIds),
    GET(162, GetNuvaroFlipEnable),
    GET(163, GetAndroidLensFacing),
    ENTRY(164, IsRearCamera, Query, kPlain, AskRearCamera),
    GET(165, GetNuvaroAfInfoFocusedROIID),
    GET(166, GetNuvaroFrameSyncTimestampGap),
    GET(167, GetMxDebaningLbmfMode),
    GET(168, GetNuvaroMxdebandingDetectResult),
    GET(169, GetWhiteBlackOutput),
    GET(170, GetSTAFDistanceInfo),
    GET(171, GetComputeOpticsTrigger),
    GET_LIST(172, GetZslSelectorInfoDetail),
    ENTRY(173, SetZslSelectorInfoDetail, Setter, kAllocates, WriteContainer<&Helper::SetZslSelectorInfoDetail, std::string, kZslDetail>),
    GET(174, GetLuxIndex),
    // One helper reads the container without a test once the output is there.
    ENTRY(175, getPass1CropRegion, Getter, kNeedsRequest, Read<&Helper::getPass1CropRegion, 1, IsZero, CameraId>),
    GET(176, GetExpIndex),
    GET(177, GetAdrcGain),
    GET(178, GetSensorGain),
    GET(179, GetZoomEisEffective),
    GET(180, GetThermalLevel),
    GET_LIST(181, GetAnchorFrameOrder),
    ENTRY(182, SetAnchorFrameOrder, Setter, kAllocates, WriteContainer<&Helper::SetAnchorFrameOrder, std::vector<int>, kAnchorOrder>),
    SET_BY_VALUE(183, SetAnchorFrameIndex, AnchorIndex),
    GET(184, GetVendorCameraId),
    GET(185, GetMacroMode),
    GET(186, GetNvAwbSpecialLightConfidence),
    ENTRY(187, GetFaceRect, Getter, kPlain, ReadFaceRect),
    ENTRY(188, GetFocusROI, Getter, kPlain, ReadFocusRoi),
    TRANSFER(189, SetFacesInfoHolder, kPlain),
    TRANSFER(190, SetFocusROI, kPlain),
};
// clang-format on

}  // namespace

bool Succeeded(const Operation& operation, int result) {
  if (operation.kind == Kind::Query) return true;
  return operation.succeedsNonZero ? result != 0 : result == 0;
}

const Operation* Operations(size_t* count) {
  if (count != nullptr) *count = std::size(kOperations);
  return kOperations;
}

}  // namespace opcatalog
