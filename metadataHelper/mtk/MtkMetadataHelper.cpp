// The MediaTek platform helper. Most operations are defined from their rows
// in MtkOperations.def; the ones below the table compute something of their
// own, from the tags and messages their rows name.
#include "MtkMetadataHelper.h"

#include <mtk/mtk_metadata_tag.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <memory>

#include "common/Log.h"
#include "common/OpSkeletons.h"
#include "mtk/AdapterClient.h"
#include "mtk/CropMath.h"
#include "mtk/MtkRows.h"
#include "mtk/PlatformMath.h"
#include "mtk/RectMapping.h"

namespace metahelper {

using namespace ops;  // NOLINT(google-build-using-namespace): rows read as tables

namespace {

constexpr char kSourceFile[] = __FILE__;

// The messages of this file's hand-written code. Their line ids and the rows'
// are one set: no two messages share an id unless they are the same message.
// clang-format off
#define MH_MTK_MESSAGES(X)                                                                                        \
  X(kActiveArrayFailed, kHelper, kWarning, 941,  "GetMetadata GetActiveArraySize ret = %d err")                  \
  X(kCropFromPolicy,    kHelper, kInfo,    944,  "get crop region from SAT camId = %d cropregion: [%d %d %d %d]") \
  X(kCropFromPolicyZoom, kHelper, kInfo,   945,  "get crop region from SAT camId = %d isInSensorZoom = %d cropregion: [%d %d %d %d]") \
  X(kCropRemapped,      kHelper, kInfo,    946,  "get after isInSensorZoom = %d sensorsize(%d, %d) cropregion: [%d %d %d %d]") \
  X(kCropFitted,        kIsp,    kInfo,    947,  "input crop (%d, %d, %d, %d) output crop (%d, %d, %d, %d)")      \
  X(kTimestampRead,     kHelper, kInfo,    948,  "[camera id:%d] tag ANDROID_SENSOR_TIMESTAMP %ld")               \
  X(kTimestampMissing,  kHelper, kInfo,    949,  "[camera id:%d] tag ANDROID_SENSOR_TIMESTAMP not found!")       \
  X(kShiftFound,        kHelper, kInfo,    950,  "shiftFlag = %d")                                               \
  X(kShiftTagRead,      kHelper, kInfo,    951,  "get shift successful shift(%d, %d) isPreAnchor = %d size = %u, from nuvaro.sr.shift.value ") \
  X(kShiftTagMissing,   kHelper, kInfo,    952,  "get shift failed size = %u, from nuvaro.sr.shift.value...")    \
  X(kZoomShift,         kHelper, kInfo,    953,  "zoom shift (%d,%d) timestamp = %ld cameraId = %d anchorTimeStamp = %ld subTimestamp = %ld isIsz = %d " \
                                                  "isFromMeta = %d shiftData.nodeType = %d zoomEisEffective = %f zoomRatio = %f") \
  X(kZoomShiftScaled,   kHelper, kInfo,    954,  "zoom after isInSensorZoom = %d shift (%d,%d) ")                 \
  X(kShiftApplied,      kHelper, kInfo,    955,  "using zoom eis shift (%d,%d)")                                 \
  X(kShiftNotApplied,   kHelper, kInfo,    956,  "not using zoom eis shift (%d,%d)")                             \
  X(kFinalCrop,         kHelper, kInfo,    957,  "get final crop = cropregion: [%d %d %d %d] ret = %d metaSuccess = %d") \
  X(kGammaInfoValid,    kIsp,    kDebug,   1362, "gammaInfo.isGammaValid = %d")                                  \
  X(kGammaTableValid,   kIsp,    kDebug,   1382, "gammaInfo.isGammaValid = %d")                                  \
  X(kIspGainRecount,    kHelper, kInfo,    1603, "GetIspGain recountEnale = %d oldIspGain = %f *ispGain = %f retIspGain = %d.") \
  X(kAdjustRatioZero,   kHelper, kWarning, 1782, MH_QUOTED("GetMetadata nuvaro.hdr.custom.adjustratio = 0"))    \
  X(kSensorModeType,    kHelper, kDebug,   2103, "fwkId: %d, sensorModeType %d => %d")                           \
  X(kHolderShift,       kHelper, kInfo,    2201, "[getShift] phyId:%d, timestamp:%ld, H,V = (%d,%d)")            \
  X(kFdFace,            kHelper, kInfo,    2223, "GetFdData faces[%d/%d]:[%d %d %dx%d] pitch:%d angle:%d pose:%d") \
  X(kGtmCurveRead,      kHelper, kDebug,   2263, "gtm curve, binNum:%d (%d, %d)")                                \
  X(kPass1Fallback,     kHelper, kDebug,   3501, MH_QUOTED("get cropRegion error,force set cropRegion[0 0 4096 3072]")) \
  X(kPass1Crop,         kHelper, kDebug,   3502, "sensorid:%d, l,t,w,h = [%d %d %d %d]")                         \
  X(kNoActiveOrCrop,    kHelper, kWarning, 3741, MH_QUOTED("get active/crop size err"))                          \
  X(kNoFace,            kHelper, kWarning, 3742, MH_QUOTED("no face"))                                           \
  X(kFaceMapped,        kHelper, kDebug,   3743, "faces[%d/%d]:[%d %d %dx%d] point:[%d %d] angle:%d faceId:%d") \
  X(kFocusNoCrop,       kHelper, kWarning, 3761, MH_QUOTED("GetCropRegion err"))                                 \
  X(kFocusNoActive,     kHelper, kWarning, 3762, MH_QUOTED("GetActiveArraySize err"))                            \
  X(kNoAfRegion,        kHelper, kDebug,   3763, MH_QUOTED("fail to read AF region"))                            \
  X(kBadAfRegion,       kHelper, kDebug,   3764, "incorrect AF region %d %d")                                    \
  X(kAfRegion,          kHelper, kDebug,   3765, "af roi, info:[t:%d, n:%d, vs:%d, tlx:%d, tly:%d, brx:%d, bry:%d]") \
  X(kNoFacesToCopy,     kHelper, kWarning, 3781, "GetMetadata nuvaro.bokeh.faceInfo err")                        \
  X(kMapRectRefused,    kHelper, kWarning, 3840, MH_QUOTED("arg err"))
// clang-format on
MH_MTK_MESSAGES(MH_DECLARE_MESSAGE)
constexpr LineText kMtkMessages[] = {MH_MTK_MESSAGES(MH_LIST_MESSAGE)};
static_assert(LineIdsUnique(kMtkRows, kMtkMessages), "two messages of this file share a line id");

// The tags the hand-written operations read besides their own, named from
// their rows.
constexpr const Access& kRawBitDepth = MtkRow(26).access[1];
constexpr const Access& kSensorPolicyCrops = MtkRow(47).main();
constexpr const Access& kShiftTag = MtkRow(47).access[1];
constexpr const Access& kFaceLumaToneGain = MtkRow(61).access[1];
constexpr const Access& kSafeExposure = MtkRow(61).access[2];
constexpr const Access& kIspGainRecountEnable = MtkRow(80).access[1];
constexpr const Access& kIspGainOrigin = MtkRow(80).access[2];
constexpr const Access& kAwbColorTemperature = MtkRow(109).access[1];
constexpr const Access& kInSensorZoomStatus = MtkRow(111).access[1];
constexpr const Access& kFaceInfo = MtkRow(187).main();
constexpr const Access& kAfRoi = MtkRow(188).main();
constexpr const Access& kAfRoiWrite = MtkRow(190).access[1];

constexpr int32_t kHalfScaleFaceMode = 17;  // a sensor mode type whose faces arrive at half scale
constexpr int32_t kHolderShiftInterval = 60000000;
constexpr int32_t kCropShiftInterval = 1500000000;
constexpr int32_t kZoomEisCameraType = 20;
constexpr int32_t kPlainNode = 1;
constexpr int32_t kZoomEisNode = 2;
constexpr nvholder::ChiRect kPass1FallbackCrop{0, 0, 4096, 3072};

// The crop computation's steps log under the name its platform code gives them.
constexpr const char kCropStep[] = "operator()";
constexpr Site kCropStepSite{kSourceFile, kCropStep};
#define MH_CROP_SAY(message, ...) MH_SAY_AS(kCropStep, message, ##__VA_ARGS__)
#define MH_RECT_ARGS(r) (r).left, (r).top, (r).width, (r).height

// ---- Small pieces shared by the hand-written operations -------------------
// The standard check and read, handing back the element data.
template <typename Out>
int ReadData(metadataHelperBase& helper, const Site& site, const Row& row, const MetaPtr& meta, Out* out,
             const void** data) {
  return ReadWith(helper, site, row, meta, out, [data](const void* found, Out*) { *data = found; });
}

// A read that reports nothing itself (the core read still does); an entry
// without data, or with fewer elements than the access relies on, counts as
// absent.
int ReadQuietly(metadataHelperBase& helper, const MetaPtr& meta, const Access& access, void** data,
                uint32_t* count = nullptr) {
  void* found = nullptr;
  uint32_t held = 0;
  const TagRef& tag = access.tag;
  if (helper.GetMetaData(meta, tag.name, tag.index, tag.number, &found, &held) != 0 || found == nullptr ||
      IsShort(held, access.elements.count))
    return -1;
  *data = found;
  if (count != nullptr) *count = held;
  return 0;
}

template <typename T>
float AsFloat(T value) {
  return static_cast<float>(value);
}

float NonNegativeLuma(int32_t luma) { return static_cast<float>(std::max(luma, 0)); }

// The stores of the operations defined from their rows.
void StoreHistogram(const void* bins, nvholder::PreviewBrightnessInfo* info) {
  mtk::FoldHistogram(static_cast<const uint32_t*>(bins), info);
}
void StoreVelocity(const void* velocity, nvholder::MotionVelocity* motion) {
  motion->velocity = static_cast<float>(Element<int32_t>(velocity));
}
// The tag holds the streaming mode first, the tuning mode second.
void StoreTuningMode(const void* modes, int* mode) { *mode = Element<int32_t>(modes, 1); }
// The second value is a fixed confidence.
void StoreFaceTarget(const void* luma, float* target) {
  target[0] = NonNegativeLuma(Element<int32_t>(luma));
  target[1] = 0.9f;
}

// Bit depths whose black levels the platform reports at 8-bit scale.
float BlackLevelScale(int32_t bitDepth) {
  if (bitDepth == 10) return 16.0f;
  if (bitDepth == 12) return 4.0f;
  return 1.0f;
}

void CopyGyro(const void* data, nvholder::ChiFrameGyro* out) {
  const auto* bytes = static_cast<const unsigned char*>(data);
  std::memcpy(&out->sampleCount, bytes, sizeof out->sampleCount);
  std::memcpy(&out->startTimestamp, bytes + offsetof(nvholder::ChiFrameGyro, startTimestamp),
              sizeof out->startTimestamp + sizeof out->endTimestamp);
  std::memcpy(out->samples, bytes + offsetof(nvholder::ChiFrameGyro, samples), sizeof out->samples);
}

// The status after the nine doubles is handed out in three widths.
void CopyPanshot(const void* data, nvholder::panshotData* out) {
  std::memcpy(out->values, data, sizeof out->values);
  int32_t status = 0;
  std::memcpy(&status, static_cast<const unsigned char*>(data) + sizeof out->values, sizeof status);
  out->status = status;
  out->status64 = status;
  out->statusFloat = static_cast<float>(status);
}

// The tone gain and the safe-exposure flag. The flag is read into the tone
// gain's data pointer: when its tag is missing the pointer still designates
// the tone gain, whose first byte then serves as the flag.
struct SafeToneGain {
  float gain;
  bool safeExposure;
  int flagResult;
};

int ReadSafeToneGain(metadataHelperBase& helper, const Site& site, const Access& tone, const MetaPtr& meta,
                     SafeToneGain* out) {
  const void* value = nullptr;
  const int result = ReadTag(helper, site, tone, meta, &value);
  if (result != 0) return result;
  out->gain = mtk::ToneGainFromFixed(Element<int32_t>(value));
  void* flag = const_cast<void*>(value);
  const TagRef& safe = kSafeExposure.tag;
  out->flagResult = helper.GetMetaData(meta, safe.name, safe.index, safe.number, &flag, nullptr);
  out->safeExposure = *static_cast<const uint8_t*>(flag) != 0;
  return 0;
}

// The platform may let a custom pipeline recount the ISP gain.
struct IspGainRecount {
  bool enabled;
  int lastResult;  // of the last read made
  bool hasOrigin;
  float gain;
};

IspGainRecount ReadIspGainRecount(metadataHelperBase& helper, const MetaPtr& meta) {
  IspGainRecount recount{false, 0, false, 0.0f};
  void* enable = nullptr;
  recount.lastResult = ReadQuietly(helper, meta, kIspGainRecountEnable, &enable);
  recount.enabled = recount.lastResult == 0 && Element<int32_t>(enable) == 1;
  if (!recount.enabled) return recount;
  void* origin = nullptr;
  recount.lastResult = ReadQuietly(helper, meta, kIspGainOrigin, &origin);
  recount.hasOrigin = recount.lastResult == 0;
  if (recount.hasOrigin) recount.gain = mtk::IspGainFromFixed(Element<int32_t>(origin));
  return recount;
}

// A failed read reports; a found entry without data is not a failure here,
// but one shorter than the curve gives no data.
int ReadGammaCurve(metadataHelperBase& helper, const Site& site, const Access& access, const MetaPtr& meta,
                   const void** curve) {
  void* found = nullptr;
  uint32_t count = 0;
  const TagRef& tag = access.tag;
  const int result = helper.GetMetaData(meta, tag.name, tag.index, tag.number, &found, &count);
  if (result != 0) Report(access.level, site, access.lines.lookup, access.messages.lookupFailed);
  if (result == 0 && found != nullptr && IsShort(count, access.elements.count))
    return RefuseShortEntry(site, access);
  *curve = found;
  return result;
}

// Writes `count` elements of the tag's own type; null data with count 0
// stores an empty entry.
int WriteRaw(metadataHelperBase& helper, const Site& site, const Access& access, MetaPtr destination,
             void* data, uint32_t count) {
  const TagRef& tag = access.tag;
  if (helper.SetMetaData<void>(std::move(destination), tag.name, tag.index, tag.number, data, count) == 0)
    return 0;
  Report(access.level, site, access.lines.lookup, access.messages.lookupFailed);
  return -1;
}

// ---- Face and focus geometry ---------------------------------------------
int MapRectToInput(nvholder::ChiRect rect, nvholder::ChiRect crop, int width, int height,
                   nvholder::ChiRect active, __UtilsImage_Rect* out) {
  if (mtk::MapRect(rect, crop, width, height, active, out)) return 0;
  MH_SAY(kMapRectRefused);
  return -1;
}

bool InSensorZoom(const NvMetadata& meta) {
  const camera_metadata_ro_entry status = meta.find(kInSensorZoomStatus.tag.name);
  return status.count >= 1 && status.data.i32[0] != 0;
}

// The record holds ten faces; a producer sending more would overrun it.
template <typename Array>
int FacesToVisit(int32_t faceCount, const Array& entries) {
  return std::min<int>(faceCount, static_cast<int>(std::size(entries)));
}

// ---- Crop region ---------------------------------------------------------
struct CropContext {
  int32_t cameraId;
  nvholder::dimension sensor;
  bool isInSensorZoom;
};

struct ZoomShift {
  mtk::Shift shift;
  bool isPreAnchor;
};

struct ZoomValues {
  float eisEffective;
  float ratio;
};

// An unknown camera ends the process as the platform's own lookup does: at()
// on the table, built without exceptions against libc++, which prints its
// out_of_range message and aborts. Under libc++ this is that very at(). Only
// libstdc++ builds (the host's) print libc++'s message here: their at() throws
// from inside the prebuilt libstdc++ and terminates with a text of its own.
int32_t CameraTypeOf(adapter::PlatformInfoHolder& holder, int32_t cameraId) {
  const adapter::CameraInfoTable& table = holder.getCameraInfoTable();
#ifdef _LIBCPP_VERSION
  return table.at(cameraId).cameraType;
#else
  const auto entry = table.find(cameraId);
  if (entry == table.end()) {
    std::fputs(
        "out_of_range was thrown in -fno-exceptions mode with message \"unordered_map::at: key not found\"\n",
        stderr);
    std::abort();
  }
  return entry->second.cameraType;
#endif
}

// The sensor's crop as the sensor policy chose it, on the delivered image.
nvholder::ChiRect SensorPolicyCrop(metadataHelperBase& helper, const MetaPtr& meta,
                                   const CropContext& context) {
  nvholder::ChiRect crop{};
  const void* table = nullptr;
  uint32_t count = 0;
  if (ReadTag(helper, kCropStepSite, kSensorPolicyCrops, meta, &table, &count) != 0) return crop;
  nvholder::ChiRect found{};
  if (mtk::FindSensorCrop(static_cast<const uint32_t*>(table), count, context.cameraId, &found)) {
    crop = found;
    MH_CROP_SAY(kCropFromPolicy, context.cameraId, MH_RECT_ARGS(crop));
  }
  MH_CROP_SAY(kCropFromPolicyZoom, context.cameraId, context.isInSensorZoom, MH_RECT_ARGS(crop));
  if (!context.isInSensorZoom) return crop;
  crop = mtk::RemapForInSensorZoom(crop, context.sensor);
  MH_CROP_SAY(kCropRemapped, context.isInSensorZoom, context.sensor.width, context.sensor.height,
              MH_RECT_ARGS(crop));
  return crop;
}

nvholder::ChiRect FitCrop(const nvholder::ChiRect& crop, const nvholder::ChiRect& active,
                          const CropContext& context) {
  const nvholder::ChiRect fitted = mtk::FitToActiveAspect(crop, active, context.sensor);
  MH_CROP_SAY(kCropFitted, MH_RECT_ARGS(crop), MH_RECT_ARGS(fitted));
  return fitted;
}

// The zoom-EIS rate is a per-camera value: it comes from static metadata.
ZoomValues ReadZoomValues(metadataHelperBase& helper, const MetaPtr& meta, int32_t cameraId) {
  ZoomValues zoom{0.0f, 0.0f};
  MetaPtr staticMeta = StaticMetaOf(cameraId);
  if (staticMeta && helper.GetZoomEisEffective(std::move(staticMeta), &zoom.eisEffective) != 0)
    zoom.eisEffective = 0.0f;
  if (helper.GetAndroidZoomRatio(meta, &zoom.ratio) != 0) zoom.ratio = 0.0f;
  return zoom;
}

bool QueryHolderShift(const CropContext& context, unsigned long timestamp, const ZoomValues& zoom,
                      nvholder::ShiftData* record, ZoomShift* shift) {
  const std::shared_ptr<adapter::PlatformInfoHolder> holder =
      adapter::AdapterClient::getInstance().getPlatformInfoHolder();
  if (!holder) return false;
  record->timestamp = static_cast<int64_t>(timestamp);
  record->scaleX = 1.0;
  record->scaleY = 1.0;
  record->phyCameraId = context.cameraId;
  const bool followsZoomEis =
      CameraTypeOf(*holder, context.cameraId) == kZoomEisCameraType && zoom.ratio >= zoom.eisEffective;
  record->nodeType = followsZoomEis ? kZoomEisNode : kPlainNode;
  const bool found = holder->getShiftData(record, kCropShiftInterval);
  MH_CROP_SAY(kShiftFound, found);
  if (found) *shift = {{record->shiftX, record->shiftY}, record->isPreAnchor != 0};
  return found;
}

bool ReadShiftTag(metadataHelperBase& helper, const MetaPtr& meta, ZoomShift* shift) {
  void* values = nullptr;
  uint32_t count = 0;
  if (ReadQuietly(helper, meta, kShiftTag, &values, &count) != 0 || count != 4) {
    MH_CROP_SAY(kShiftTagMissing, count);
    return false;
  }
  *shift = {
      {mtk::SaturateToInt32(Element<float>(values, 0)), mtk::SaturateToInt32(Element<float>(values, 1))},
      Element<float>(values, 2) != 0.0f};
  MH_CROP_SAY(kShiftTagRead, shift->shift.x, shift->shift.y, shift->isPreAnchor, count);
  return true;
}

// Moves the crop by the frame's zoom-stabilisation shift; returns the
// timestamp read's result, which is the operation's.
int ApplyZoomShift(metadataHelperBase& helper, const MetaPtr& meta, const CropContext& context,
                   nvholder::ChiRect* crop, bool* isFromMeta) {
  unsigned long timestamp = 0;
  const int timestampResult = helper.GetAndroidTimeStamp(meta, &timestamp);
  if (timestampResult == 0)
    MH_CROP_SAY(kTimestampRead, context.cameraId, static_cast<long>(timestamp));
  else
    MH_CROP_SAY(kTimestampMissing, context.cameraId);
  const ZoomValues zoom = ReadZoomValues(helper, meta, context.cameraId);
  nvholder::ShiftData record{};
  ZoomShift shift{{0, 0}, false};
  *isFromMeta =
      !QueryHolderShift(context, timestamp, zoom, &record, &shift) && ReadShiftTag(helper, meta, &shift);
  MH_CROP_SAY(kZoomShift, shift.shift.x, shift.shift.y, static_cast<long>(timestamp), context.cameraId,
              static_cast<long>(record.anchorTimestamp), static_cast<long>(record.timestamp),
              context.isInSensorZoom, *isFromMeta, record.nodeType, zoom.eisEffective, zoom.ratio);
  const mtk::Shift scaled = mtk::ScaleShift(shift.shift, shift.isPreAnchor, context.isInSensorZoom);
  MH_CROP_SAY(kZoomShiftScaled, context.isInSensorZoom, scaled.x, scaled.y);
  if (timestampResult != 0) return timestampResult;
  if (mtk::ApplyShift(crop, scaled, context.sensor))
    MH_CROP_SAY(kShiftApplied, scaled.x, scaled.y);
  else
    MH_CROP_SAY(kShiftNotApplied, scaled.x, scaled.y);
  return timestampResult;
}

}  // namespace

MtkMetadataHelper::~MtkMetadataHelper() = default;

// ---- Operations from their rows --------------------------------------------
#define MH_BODY_CLASS MtkMetadataHelper
#define MH_BODY_ROW(slot) MtkRow(slot)
#include "common/BodyForms.h"
// The table itself, after the forms it is written in.
#include "MtkOperations.def"

// ---- Operations that compute, in slot order ----------------------------------
// No test of the container or the output: callers always pass both.
int MtkMetadataHelper::GetColorCorrectionTransform(MetaPtr meta, float* out) {
  return ReadColorTransform(MH_SITE, MtkRow(18).main(), *meta, out);
}

// The unscaled levels stay written when the bit depth cannot be read.
int MtkMetadataHelper::GetSensorDynamicBlackLevel(MetaPtr meta, float* out) {
  static constexpr const Row& kRow = MtkRow(26);
  const void* levels = nullptr;
  const int result = ReadData(*this, MH_SITE, kRow, meta, out, &levels);
  if (result != 0) return result;
  std::memcpy(out, levels, kRow.outputs * sizeof(float));
  void* bitDepth = nullptr;
  if (ReadQuietly(*this, meta, kRawBitDepth, &bitDepth) != 0) return -1;
  const float scale = BlackLevelScale(Element<int32_t>(bitDepth));
  for (uint32_t i = 0; i < kRow.outputs; ++i) out[i] *= scale;
  return 0;
}

// The crop the pipeline applies to the sensor image: the sensor policy's
// crop, fitted to the active array's aspect, moved by the zoom shift.
int MtkMetadataHelper::GetCropRegion(MetaPtr meta, nvholder::ChiRect* crop, nvholder::dimension sensorSize,
                                     bool isInSensorZoom) {
  if (crop == nullptr) return RefuseArgument(MH_SITE, MtkRow(47));
  nvholder::ChiRect active{};
  const int activeResult = GetActiveArraySize(meta, &active);
  if (activeResult != 0) {
    MH_SAY(kActiveArrayFailed, activeResult);
    return activeResult;
  }
  const CropContext context{FwkCameraIdOf(*this, meta), sensorSize, isInSensorZoom};
  nvholder::ChiRect region = FitCrop(SensorPolicyCrop(*this, meta, context), active, context);
  int result = 0;
  bool isFromMeta = false;
  if (region.width != 0 && region.height != 0)
    result = ApplyZoomShift(*this, meta, context, &region, &isFromMeta);
  else
    region = nvholder::ChiRect{};
  *crop = region;
  MH_SAY(kFinalCrop, MH_RECT_ARGS(region), result, isFromMeta);
  return result;
}

// Scaled by the tone gain unless safe exposure is on; the result is the
// safe-exposure read's.
int MtkMetadataHelper::GetFaceLumaTarget(MetaPtr meta, float* out) {
  const void* luma = nullptr;
  const int result = ReadData(*this, MH_SITE, MtkRow(61), meta, out, &luma);
  if (result != 0) return result;
  *out = NonNegativeLuma(Element<int32_t>(luma));
  SafeToneGain tone{};
  const int toneResult = ReadSafeToneGain(*this, MH_SITE, kFaceLumaToneGain, meta, &tone);
  if (toneResult != 0) return toneResult;
  if (!tone.safeExposure) *out *= tone.gain;
  return tone.flagResult;
}

int MtkMetadataHelper::GetGammaOutput(MetaPtr meta, nvholder::GammaInfo* out) {
  static constexpr const Row& kRow = MtkRow(68);
  if (out == nullptr) return RefuseArgument(MH_SITE, kRow);
  const void* curve = nullptr;
  const int result = ReadGammaCurve(*this, MH_SITE, kRow.main(), meta, &curve);
  if (result != 0 || curve == nullptr) return result;
  std::memcpy(out->gamma, curve, sizeof out->gamma);
  out->isGammaValid = 1;
  MH_SAY(kGammaInfoValid, out->isGammaValid);
  return 0;
}

// Without the platform's curve the defaults stay, marked not valid.
int MtkMetadataHelper::GetGammaOutput(MetaPtr meta, nvholder::GammaTableInfo* out) {
  static constexpr const Row& kRow = MtkRow(69);
  if (out == nullptr) return RefuseArgument(MH_SITE, kRow);
  mtk::FillDefaultGammaTables(out);
  const void* curve = nullptr;
  const int result = ReadGammaCurve(*this, MH_SITE, kRow.main(), meta, &curve);
  if (result != 0 || curve == nullptr) return result;
  std::memcpy(out->gammaTable, curve, mtk::kGammaTableWords * sizeof(uint32_t));
  out->gammaTable[mtk::kGammaTableWords] = 1023;
  out->isValid = 1;
  MH_SAY(kGammaTableValid, out->isValid);
  return 0;
}

// The platform's gain, or the recounted one; asking for the sensor mode type
// afterwards leaves its debug line next to the gain's.
int MtkMetadataHelper::GetIspGain(MetaPtr meta, float* out) {
  const void* value = nullptr;
  const int result = ReadData(*this, MH_SITE, MtkRow(80), meta, out, &value);
  if (result != 0) return result;
  const float platformGain = mtk::IspGainFromFixed(Element<int32_t>(value));
  const IspGainRecount recount = ReadIspGainRecount(*this, meta);
  *out = recount.hasOrigin ? recount.gain : platformGain;
  MH_SAY(kIspGainRecount, recount.enabled, platformGain, *out, recount.lastResult);
  nvholder::NVSENSORMODETYPE modeType = 0;
  GetNuvaroSensorModeType(std::move(meta), &modeType);
  return 0;
}

// 1.0 stays written when the ratio cannot be read.
int MtkMetadataHelper::GetAeRatio(MetaPtr meta, float* out) {
  static constexpr const Row& kRow = MtkRow(89);
  if (out == nullptr) return RefuseArgument(MH_SITE, kRow);
  *out = 1.0f;
  const void* adjust = nullptr;
  const int result = ReadTag(*this, MH_SITE, kRow.main(), meta, &adjust);
  if (result != 0) return result;
  const auto value = Element<int32_t>(adjust);
  if (value == 0) MH_SAY(kAdjustRatioZero);
  *out = mtk::AeRatioFromAdjust(value);
  return 0;
}

// The sensor policy's frame result names each camera's platform mode.
int MtkMetadataHelper::GetNuvaroSensorModeType(MetaPtr meta, nvholder::NVSENSORMODETYPE* out) {
  const void* frameResult = nullptr;
  const int result = ReadData(*this, MH_SITE, MtkRow(105), meta, out, &frameResult);
  if (result != 0) return result;
  const int cameraId = FwkCameraIdOf(*this, meta);
  const int32_t mode =
      cameraId == -1 ? 0 : mtk::PlatformSensorMode(static_cast<const int32_t*>(frameResult), cameraId);
  *out = mtk::SensorModeTypeFromPlatformMode(mode);
  MH_SAY(kSensorModeType, cameraId, mode, *out);
  return 0;
}

// The platform publishes four gains; blue is the fourth.
int MtkMetadataHelper::GetAWBFrameControl(MetaPtr meta, nvholder::NUAWBFrameControl* out) {
  const void* gains = nullptr;
  const int result = ReadData(*this, MH_SITE, MtkRow(109), meta, out, &gains);
  if (result != 0) return result;
  const void* temperature = nullptr;
  const int temperatureResult = ReadTag(*this, MH_SITE, kAwbColorTemperature, meta, &temperature);
  if (temperatureResult != 0) return temperatureResult;
  out->gains[0] = Element<float>(gains, 0);
  out->gains[1] = Element<float>(gains, 1);
  out->gains[2] = Element<float>(gains, 3);
  out->colorTemperature = Element<float>(temperature);
  return 0;
}

// Without a holder the record is left as passed: callers preset H and V.
int MtkMetadataHelper::GetShiftDataFromHolder(long timestamp, int phyId, nvholder::ShiftData* shiftData) {
  if (shiftData == nullptr) return RefuseArgument(MH_SITE, MtkRow(110));
  const std::shared_ptr<adapter::PlatformInfoHolder> holder =
      adapter::AdapterClient::getInstance().getPlatformInfoHolder();
  if (!holder) return 0;
  shiftData->timestamp = timestamp;
  shiftData->phyCameraId = phyId;
  shiftData->nodeType = 0;
  holder->getShiftData(shiftData, kHolderShiftInterval);
  MH_SAY(kHolderShift, phyId, timestamp, shiftData->shiftX, shiftData->shiftY);
  return 0;
}

// Face boxes for the face-detection side, in active-array corners; pitch,
// angle class and pose are kept once, for the last face.
int MtkMetadataHelper::GetFdData(MetaPtr meta, nvholder::NUNvFDRawSnapshotParam* out) {
  static constexpr const Row& kRow = MtkRow(111);
  if (out == nullptr) return RefuseArgument(MH_SITE, kRow);
  const void* data = nullptr;
  uint32_t count = 0;
  const int result = ReadTag(*this, MH_SITE, kRow.main(), meta, &data, &count);
  if (result != 0) return result;
  nvholder::ChiRect active{};
  GetActiveArraySize(meta, &active);
  const bool inSensorZoom = InSensorZoom(*meta);
  nvholder::NVSENSORMODETYPE modeType = 0;
  GetNuvaroSensorModeType(meta, &modeType);
  out->faceCount = static_cast<int32_t>(count / mtk::kFaceWords);
  const uint32_t scale = modeType == kHalfScaleFaceMode ? 2 : 1;
  for (int i = 0; i < FacesToVisit(out->faceCount, out->faces); ++i) {
    const int32_t* face = static_cast<const int32_t*>(data) + i * mtk::kFaceWords;
    const nvholder::FDFaceBox box = mtk::FaceCorners(face, inSensorZoom, active);
    out->faces[i] = mtk::ScaledBox(box, scale);
    out->pitch = face[5];
    out->angle = mtk::AngleClass(face[6]);
    out->pose = face[7];
    out->activeArray = active;
    const nvholder::ChiRect stored = mtk::BoxRect(out->faces[i]);
    MH_SAY(kFdFace, i + 1, out->faceCount, MH_RECT_ARGS(stored), out->pitch, out->angle, out->pose);
  }
  return 0;
}

// Only a diagnostic: the record itself is never written.
int MtkMetadataHelper::GetGTMTable(MetaPtr meta, nvholder::GTMInfo* out) {
  const void* curve = nullptr;
  const int result = ReadData(*this, MH_SITE, MtkRow(113), meta, out, &curve);
  if (result != 0) return result;
  MH_SAY(kGtmCurveRead, Element<int32_t>(curve, 0), Element<int32_t>(curve, 32),
         Element<int32_t>(curve, 288));
  return 0;
}

// Only the lux index is known on this platform; 0 when it cannot be read.
int MtkMetadataHelper::GetAECFrameControl(MetaPtr meta, nvholder::NUAECFrameControl* out) {
  if (out == nullptr) return RefuseArgument(MH_SITE, MtkRow(115));
  int luxIndex = 0;
  GetLuxIndex(std::move(meta), &luxIndex);
  out->luxIndex = static_cast<float>(luxIndex);
  return 0;
}

// The raw per-sensor crop; a frame without the sensor policy's table gets
// the full 4096 x 3072 field.
int MtkMetadataHelper::getPass1CropRegion(MetaPtr meta, nvholder::ChiRect* crop, int sensorId) {
  static constexpr const Row& kRow = MtkRow(175);
  if (crop == nullptr) return RefuseArgument(MH_SITE, kRow);
  const camera_metadata_ro_entry table = meta->find(kRow.main().tag.name);
  if (table.count == 0) {
    *crop = kPass1FallbackCrop;
    MH_SAY(kPass1Fallback);
    return 0;
  }
  nvholder::ChiRect found{};
  if (!mtk::FindSensorCrop(reinterpret_cast<const uint32_t*>(table.data.i32), table.count, sensorId, &found))
    return 0;
  *crop = found;
  MH_SAY(kPass1Crop, sensorId, MH_RECT_ARGS(found));
  return 0;
}

int MtkMetadataHelper::GetAdrcGain(MetaPtr meta, float* out) {
  static constexpr const Row& kRow = MtkRow(177);
  if (out == nullptr) return RefuseArgument(MH_SITE, kRow);
  SafeToneGain tone{};
  const int result = ReadSafeToneGain(*this, MH_SITE, kRow.main(), meta, &tone);
  if (result != 0) return result;
  *out = tone.safeExposure ? 1.0f : tone.gain;
  return 0;
}

// Faces mapped into the caller's width x height image. Large outputs map
// each later face with twice the active size of the one before: callers
// depend on that cumulative scaling.
int MtkMetadataHelper::GetFaceRect(MetaPtr meta, int width, int height, FacesInfo& faces,
                                   nvholder::NUNvFDRawSnapshotParam* /*param*/) {
  faces = FacesInfo{};
  nvholder::ChiRect crop{};
  nvholder::ChiRect active{};
  if (GetAndroidCropRegion(meta, &crop) != 0 || GetActiveArraySize(meta, &active) != 0) {
    MH_SAY(kNoActiveOrCrop);
    return -1;
  }
  void* data = nullptr;
  uint32_t count = 0;
  if (ReadQuietly(*this, meta, kFaceInfo, &data, &count) != 0 || count < mtk::kFaceWords) {
    MH_SAY(kNoFace);
    return -1;
  }
  const bool inSensorZoom = InSensorZoom(*meta);
  const bool doublesActive = width > 5000 && height > 4000;
  faces.faceCount = static_cast<int32_t>(count / mtk::kFaceWords);
  uint64_t largestArea = 0;
  for (int i = 0; i < FacesToVisit(faces.faceCount, faces.faces); ++i) {
    const int32_t* words = static_cast<const int32_t*>(data) + i * mtk::kFaceWords;
    FaceEntry& face = faces.faces[i];
    face.pitch = words[5];
    face.angle = words[6];
    face.pose = words[7];
    face.faceId = words[8];
    const nvholder::FDFaceBox box = mtk::FaceCorners(words, inSensorZoom, active);
    if (doublesActive) {
      active.width *= 2;
      active.height *= 2;
    }
    MapRectToInput(mtk::BoxRect(box), crop, width, height, active, &face.rect);
    face.angleClass = mtk::AngleClass(face.angle);
    face.center = mtk::FaceCenter(face.rect, width, height);
    const uint64_t area = static_cast<uint64_t>(face.rect.width) * face.rect.height;
    if (area > largestArea) {
      largestArea = area;
      faces.mainFaceIndex = i;
    }
    MH_SAY(kFaceMapped, i + 1, faces.faceCount, MH_RECT_ARGS(face.rect), face.center.x, face.center.y,
           face.angle, face.faceId);
  }
  return 0;
}

// The focus region (the second one when there are two) in the caller's
// image. An entry that does not hold the region it announces has none.
int MtkMetadataHelper::GetFocusROI(MetaPtr meta, nvholder::dimension size, __UtilsImage_Rect* rect,
                                   __UtilsImage_point* point, bool, bool) {
  if (rect == nullptr || point == nullptr || !meta) return RefuseArgument(MH_SITE, MtkRow(188));
  nvholder::ChiRect crop{};
  const int cropResult = GetAndroidCropRegion(meta, &crop);
  if (cropResult != 0) {
    MH_SAY(kFocusNoCrop);
    return cropResult;
  }
  nvholder::ChiRect active{};
  const int activeResult = GetActiveArraySize(meta, &active);
  if (activeResult != 0) {
    MH_SAY(kFocusNoActive);
    return activeResult;
  }
  void* data = nullptr;
  uint32_t count = 0;
  if (ReadQuietly(*this, meta, kAfRoi, &data, &count) != 0 || count < 2) {
    MH_SAY(kNoAfRegion);
    return -1;
  }
  const int32_t* roi = static_cast<const int32_t*>(data);
  const int32_t type = roi[0];
  const int32_t regions = roi[1];
  if (regions != 1 && regions != 2) {
    MH_SAY(kBadAfRegion, type, regions);
    return -1;
  }
  const int start = regions == 1 ? 2 : 7;
  if (count < static_cast<uint32_t>(start) + 4) {
    MH_SAY(kNoAfRegion);
    return -1;
  }
  const nvholder::FDFaceBox corners{roi[start], roi[start + 1], roi[start + 2], roi[start + 3]};
  MH_SAY(kAfRegion, type, regions, start, corners.x0, corners.y0, corners.x1, corners.y1);
  const int result = MapRectToInput(mtk::BoxRect(corners), crop, static_cast<int>(size.width),
                                    static_cast<int>(size.height), active, rect);
  *point = mtk::RegionCenter(*rect);
  return result;
}

// Copies the faces as they are; a source without faces leaves an empty tag.
int MtkMetadataHelper::SetFacesInfoHolder(MetaPtr source, MetaPtr destination) {
  void* data = nullptr;
  uint32_t count = 0;
  if (ReadQuietly(*this, source, kFaceInfo, &data, &count) != 0) {
    count = 0;
    MH_SAY(kNoFacesToCopy);
  }
  return WriteRaw(*this, MH_SITE, MtkRow(189).main(), std::move(destination), data, count);
}
int MtkMetadataHelper::SetFocusROI(MetaPtr source, MetaPtr destination) {
  const void* data = nullptr;
  uint32_t count = 0;
  const int result = ReadTag(*this, MH_SITE, MtkRow(190).main(), source, &data, &count);
  if (result != 0) return result;
  return WriteRaw(*this, MH_SITE, kAfRoiWrite, std::move(destination), const_cast<void*>(data), count);
}

}  // namespace metahelper
