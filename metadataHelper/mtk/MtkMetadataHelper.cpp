// The MediaTek platform helper.
//
// Line ids in this file: an operation's messages carry 20 x its slot number
// plus the position of the check (GetUIEV, slot 7: 140, 141, ...), so every
// message keeps its id wherever the code around it moves.
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
#include "mtk/PlatformMath.h"
#include "mtk/RectMapping.h"

namespace metahelper {

using namespace ops;  // NOLINT(google-build-using-namespace): descriptors read as tables

namespace {

// The platform's operations report read and write failures as warnings.
constexpr Level kFailureLevel = Level::kWarning;

// ---- Descriptors, in slot order ------------------------------------------
// Some messages name another tag than the one read: callers grep for them.
// clang-format off
constexpr ReadOp kUIEV                    {ByName("nuvaro.ae.exposureCompensation"),           MH_ERR("nuvaro.supernight.real.manualev"),           {140, 141, 142}, kFailureLevel};
constexpr ReadOp kSensorTimestamp         {ByNumber(ANDROID_SENSOR_TIMESTAMP),                 MH_FAIL("ANDROID_SENSOR_TIMESTAMP"),                 {180, 181, 182}, kFailureLevel};
constexpr ReadOp kTeleFusionEnable        {ByName("nuvaro.telefusion.enabled"),                MH_GENERIC,                                          {260, 261, 262}, kFailureLevel};
constexpr ReadOp kHistogram               {ByName("nuvaro.histogram.stats"),                   MH_ERR("nuvaro.histogram.stats"),                    {340, 341, 342}, kFailureLevel};
constexpr ReadOp kDarkToneGain            {ByName("nuvaro.ae.dark.tonegain"),                  MH_ERR("previewDarkGainRatio"),                      {440, 441, 442}, kFailureLevel};
constexpr ReadOp kDynamicBlackLevel       {ByNumber(ANDROID_SENSOR_DYNAMIC_BLACK_LEVEL),       MH_FAIL("ANDROID_SENSOR_DYNAMIC_BLACK_LEVEL"),       {520, 521, 522}, kFailureLevel};
constexpr ReadOp kPreviewExposure         {ByName("nuvaro.burst.last.preview.exposure.time"),  MH_ERR("PreviewExposure"),                           {540, 541, 542}, kFailureLevel};
constexpr ReadOp kPreviewIspGain          {ByName("nuvaro.burst.last.preview.ispGain"),        MH_ERR("nuvaro.burst.last.preview.ispGain"),         {560, 561, 562}, kFailureLevel};
constexpr ReadOp kMotionVelocity          {ByName("nuvaro.ai.nvsd.motionVelocity"),            MH_MESSAGES("GetMetadata motionVelocity err",
                                                                                                             "get metadata motionVelocity Fail"),     {720, 721, 722}, kFailureLevel};
constexpr ReadOp kSensorPolicyCrops       {ByName("com.nuvaro.camera.sensorpolicy.cropregions"), MH_MESSAGES("GetMetadata com.nuvaro.camera.sensorpolicy.cropregions ret err",
                                                                                                               "get metadata com.nuvaro.camera.sensorpolicy.cropregions null err"), {940, 942, 943}, kFailureLevel};
constexpr ReadOp kFaceLuma                {ByName("nuvaro.ae.average.face.luma"),              MH_ERR("nuvaro.ae.average.face.luma"),               {1220, 1221, 1222}, kFailureLevel};
constexpr ReadOp kFaceLumaToneGain        {ByName("nuvaro.ae.mid.tonegain"),                   MH_ERR12("nuvaro.ae.mid.tonegain"),                  {1220, 1223, 1224}, kFailureLevel};
constexpr ReadOp kNoFaceLuma              {ByName("nuvaro.longexposure.cwr"),                  MH_ERR("nuvaro.longexposure.cwr"),                   {1240, 1241, 1242}, kFailureLevel};
constexpr ReadOp kFrameLuma               {ByName("nuvaro.ae.average.frame.luma"),             MH_ERR("nuvaro.ae.average.frame.luma"),              {1260, 1261, 1262}, kFailureLevel};
constexpr ReadOp kTuningSensorMode        {ByName("nuvaro.streaming.sensormode"),              MH_ERR("nuvaro.streaming.sensormode"),               {1300, 1301, 1302}, kFailureLevel};
constexpr ReadOp kGammaInfo               {ByNumber(MTK_SUPERNIGHT_GAMMA_INFO),                MH_ONE_MESSAGE("GetMetadata nuvaro.supernight.gammainfo fail 1"), {1360, 1361, 1362}, kFailureLevel};
constexpr ReadOp kGammaTable              {ByNumber(MTK_SUPERNIGHT_GAMMA_INFO),                MH_ONE_MESSAGE("GetMetadata nuvaro.supernight.gammainfo fail 1"), {1380, 1381, 1382}, kFailureLevel};
constexpr ReadOp kFaceAverageBrightness   {ByName("nuvaro.ai.asd.FaceAverageBrightness"),      MH_ERR("FaceAverageBrightness"),                     {1500, 1501, 1502}, kFailureLevel};
constexpr ReadOp kFaceTarget              {ByName("nuvaro.ae.average.face.luma"),              MH_ERR("faceBright"),                                {1520, 1521, 1522}, kFailureLevel};
constexpr ReadOp kCurLuma                 {ByName("nuvaro.ae.average.frame.luma"),             MH_ERR("nuvaro.ae.average.frame.luma"),              {1560, 1561, 1562}, kFailureLevel};
constexpr ReadOp kIspGain                 {ByNumber(MTK_3A_FEATURE_AE_ISP_GAIN_VALUE),         MH_ERR("MTK_3A_FEATURE_AE_ISP_GAIN_VALUE"),          {1600, 1601, 1602}, kFailureLevel};
constexpr ReadOp kQTimerTimeStamp         {ByName("com.nuvaro.mtk.p1node.frameinfo"),          MH_ERR("com.nuvaro.mtk.p1node.frameinfo"),           {1720, 1721, 1722}, kFailureLevel};
constexpr ReadOp kPreviewAdrcGain         {ByName("nuvaro.ae.mid.tonegain"),                   MH_ERR("PreviewAdrcGain"),                           {1760, 1761, 1762}, kFailureLevel};
constexpr ReadOp kAeAdjustRatio           {ByName("nuvaro.hdr.custom.adjustratio"),            MH_FAIL("nuvaro.hdr.custom.adjustratio"),            {1780, 1781, 1782}, kFailureLevel};
constexpr ReadOp kSensorModeFrameResult   {ByName("com.nuvaro.camera.sensorpolicy.frameresult"), MH_ERR("com.nuvaro.camera.sensorpolicy.frameresult"), {2100, 2101, 2102}, kFailureLevel, Level::kWarning};
constexpr ReadOp kAwbGains                {ByNumber(ANDROID_COLOR_CORRECTION_GAINS),           MH_ERR("MTK_COLOR_CORRECTION_GAINS"),                {2180, 2181, 2182}, kFailureLevel};
constexpr ReadOp kAwbColorTemperature     {ByName("com.mediatek.3afeature.awbColorTemperature"), MH_ERR("com.mediatek.3afeature.awbColorTemperature"), {2180, 2183, 2184}, kFailureLevel};
constexpr ReadOp kFdFaceInfo              {ByName("nuvaro.bokeh.faceInfo"),                    MH_ERR("nuvaro.bokeh.faceInfo"),                     {2220, 2221, 2222}, kFailureLevel};
constexpr ReadOp kGtmCurve                {ByName("nuvaro.hdr.gtm.curve"),                     MH_GENERIC,                                          {2260, 2261, 2262}, kFailureLevel};
constexpr ReadOp kGyro                    {ByName("nuvaro.nvvi.ellc.gyro"),                    MH_ONE_MESSAGE("get nuvaro.nvvi.ellc.gyro fail"),    {2360, 2361, 2362}, kFailureLevel};
constexpr ReadOp kPanshotResult           {ByName("com.nuvaro.panshotTruck.Rslt4Snapshot"),    MH_FAIL("com.nuvaro.panshotTruck.Rslt4Snapshot"),    {2380, 2381, 2382}, kFailureLevel};
constexpr StaticReadOp kActiveArraySize   {ByNumber(ANDROID_SENSOR_INFO_ACTIVE_ARRAY_SIZE),    MH_ONE_MESSAGE("Get ACTIVE_ARRAY_SIZE err"),         {2480, 2481, 2482, 2483}, kFailureLevel};
constexpr StaticReadOp kMaxActiveArraySize{ByNumber(ANDROID_SENSOR_INFO_ACTIVE_ARRAY_SIZE_MAXIMUM_RESOLUTION),
                                             MH_ONE_MESSAGE("Get ANDROID_SENSOR_INFO_ACTIVE_ARRAY_SIZE_MAXIMUM_RESOLUTION err"),                       {2500, 2501, 2502, 2503}, kFailureLevel};
constexpr StaticReadOp kShadingMapSize    {ByNumber(ANDROID_LENS_INFO_SHADING_MAP_SIZE),       MH_FAIL("ANDROID_LENS_INFO_SHADING_MAP_SIZE"),       {2640, 2641, 2642, 2643}, kFailureLevel};
constexpr StaticReadOp kViewAngle         {ByName("com.nuvaro.lens.info.ViewAngle"),           MH_ERR("ViewAngle"),                                 {2700, 2701, 2702, 2703}, kFailureLevel};
constexpr ReadOp kFrameSyncTimestampGap   {ByName("com.nuvaro.mtk.p1node.frameinfo"),          MH_ERR("com.nuvaro.mtk.p1node.frameinfo"),           {3320, 3321, 3322}, kFailureLevel};
constexpr ReadOp kMxdebandingDetectResult {ByName("com.nuvaro.nvvi2.mxdebanding.detectResult"), MH_ERR12("com.nuvaro.nvvi2.mxdebanding.detectResult"), {3360, 3361, 3362}, kFailureLevel};
constexpr ReadOp kLuxIndex                {ByName("com.nuvaro.statsconfigs.AecInfo"),          MH_ERR12("com.nuvaro.statsconfigs.AecInfo"),         {3480, 3481, 3482}, kFailureLevel};
constexpr ReadOp kExpIndex                {ByNumber(ANDROID_SENSOR_EXPOSURE_TIME),             MH_ERR("ANDROID_SENSOR_EXPOSURE_TIME"),              {3520, 3521, 3522}, kFailureLevel};
constexpr ReadOp kAdrcToneGain            {ByName("nuvaro.ae.mid.tonegain"),                   MH_ERR12("nuvaro.ae.mid.tonegain"),                  {3540, 3541, 3542}, kFailureLevel};
constexpr ReadOp kSensorGain              {ByNumber(MTK_3A_FEATURE_AE_SENSOR_GAIN_VALUE),      MH_ERR12("MTK_3A_FEATURE_AE_SENSOR_GAIN_VALUE"),     {3560, 3561, 3562}, kFailureLevel};
constexpr WriteOp kBssGoldenIndex         {ByNumber(MTK_MFNR_FEATURE_BSS_GOLDEN_INDEX),
                                             MH_FORMAT(MH_QUOTED("SetMetadata MTK_MFNR_FEATURE_BSS_GOLDEN_INDEX err")), {3660, 3661}, false, kFailureLevel};
constexpr ReadOp kAfRoiSource             {ByNumber(MTK_3A_FEATURE_AF_ROI),                    MH_ERR("MTK_3A_FEATURE_AF_ROI"),                     {3800, 3801, 3802}, kFailureLevel};
// clang-format on

// Tags read without a message of their own.
constexpr TagRef kRawBitDepth = ByName("nuvaro.algoengine.input.raw.bpp");
constexpr TagRef kSafeExposure = ByName("nuvaro.safe.exposure.enabled");
constexpr TagRef kIspGainRecountEnable = ByName("nuvaro.custom.ispgain.recount.enable");
constexpr TagRef kIspGainOrigin = ByName("nuvaro.custom.ispgain.origin.value");
constexpr TagRef kShiftTag = ByName("nuvaro.sat.output.shift");
constexpr TagRef kFaceInfo = ByName("nuvaro.bokeh.faceInfo");
constexpr TagRef kAfRoi = ByNumber(MTK_3A_FEATURE_AF_ROI);
constexpr const char kInSensorZoomStatus[] = "nuvaro.insensorzoom.status";
constexpr const char kSensorPolicyCropsName[] = "com.nuvaro.camera.sensorpolicy.cropregions";

constexpr Format kFaceInfoWriteFailed = MH_FORMAT(MH_QUOTED("SetMetaData nuvaro.bokeh.faceInfo err"));
constexpr Format kAfRoiWriteFailed = MH_FORMAT(MH_QUOTED("SetMetaData MTK_3A_FEATURE_AF_ROI err"));

constexpr int kMapRectLine = 3840;
constexpr uint32_t kFaceWords = 9;          // x0 y0 x1 y1, unused, pitch, angle, pose, id
constexpr int32_t kHalfScaleFaceMode = 17;  // a sensor mode type whose faces arrive at half scale
constexpr int32_t kHolderShiftInterval = 60000000;
constexpr int32_t kCropShiftInterval = 1500000000;
constexpr int32_t kZoomEisCameraType = 20;
constexpr int32_t kPlainNode = 1;
constexpr int32_t kZoomEisNode = 2;
constexpr nvholder::ChiRect kPass1FallbackCrop{0, 0, 4096, 3072};

// The crop computation's steps log under the name its platform code gives them.
constexpr const char kCropStep[] = "operator()";
constexpr Site kCropStepSite{__FILE__, kCropStep};
#define MH_CROP_LOG(group, level, line, fmt, ...) MH_LOG_AS(group, kCropStep, level, line, fmt, ##__VA_ARGS__)
#define MH_RECT_ARGS(r) (r).left, (r).top, (r).width, (r).height

// ---- Small pieces shared by the hand-written operations -------------------
// The standard check and read, handing back the element data.
template <typename Out>
int ReadData(metadataHelperBase& helper, const Site& site, const ReadOp& op, const MetaPtr& meta, Out* out,
             const void** data) {
  return ReadWith(helper, site, op, meta, out, [data](const void* found, Out*) { *data = found; });
}

// A read that reports nothing itself (the core read still does); an entry
// without data counts as absent.
int ReadQuietly(metadataHelperBase& helper, const MetaPtr& meta, const TagRef& tag, void** data,
                uint32_t* count = nullptr) {
  void* found = nullptr;
  if (helper.GetMetaData(meta, tag.name, tag.index, tag.number, &found, count) != 0 || found == nullptr)
    return -1;
  *data = found;
  return 0;
}

template <typename T>
float AsFloat(T value) {
  return static_cast<float>(value);
}

float NonNegativeLuma(int32_t luma) { return static_cast<float>(std::max(luma, 0)); }

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

int ReadSafeToneGain(metadataHelperBase& helper, const Site& site, const ReadOp& op, const MetaPtr& meta,
                     SafeToneGain* tone) {
  const void* value = nullptr;
  const int result = ReadTag(helper, site, op, meta, &value);
  if (result != 0) return result;
  tone->gain = mtk::ToneGainFromFixed(Element<int32_t>(value));
  void* flag = const_cast<void*>(value);
  tone->flagResult =
      helper.GetMetaData(meta, kSafeExposure.name, kSafeExposure.index, kSafeExposure.number, &flag, nullptr);
  tone->safeExposure = *static_cast<const uint8_t*>(flag) != 0;
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

// A failed read reports; a found entry without data is not a failure here.
int ReadGammaCurve(metadataHelperBase& helper, const Site& site, const ReadOp& op, const MetaPtr& meta,
                   const void** curve) {
  void* found = nullptr;
  const int result = helper.GetMetaData(meta, op.tag.name, op.tag.index, op.tag.number, &found, nullptr);
  if (result != 0) Report(op.messageLevel, site, op.lines.lookup, op.messages.lookupFailed);
  *curve = found;
  return result;
}

// Writes `count` elements of the tag's own type; null data with count 0
// stores an empty entry.
int WriteRaw(metadataHelperBase& helper, const Site& site, const TagRef& tag, const Format& failed, int line,
             MetaPtr destination, void* data, uint32_t count) {
  if (helper.SetMetaData<void>(std::move(destination), tag.name, tag.index, tag.number, data, count) == 0)
    return 0;
  Report(kFailureLevel, site, line, failed);
  return -1;
}

// ---- Face and focus geometry ---------------------------------------------
int MapRectToInput(nvholder::ChiRect rect, nvholder::ChiRect crop, int width, int height,
                   nvholder::ChiRect active, __UtilsImage_Rect* out) {
  if (mtk::MapRect(rect, crop, width, height, active, out)) return 0;
  MH_LOG(kWarning, kMapRectLine, MH_QUOTED("arg err"));
  return -1;
}

bool InSensorZoom(const NvMetadata& meta) {
  const camera_metadata_ro_entry status = meta.find(kInSensorZoomStatus);
  return status.count >= 1 && status.data.i32[0] != 0;
}

nvholder::FDFaceBox FaceCorners(const int32_t* face, bool inSensorZoom, const nvholder::ChiRect& active) {
  if (!inSensorZoom) return {face[0], face[1], face[2], face[3]};
  return {mtk::ToInSensorZoom(face[0], active.width), mtk::ToInSensorZoom(face[1], active.height),
          mtk::ToInSensorZoom(face[2], active.width), mtk::ToInSensorZoom(face[3], active.height)};
}

// Corners arrive as the producer sent them: extents and scaled corners are
// formed in unsigned arithmetic, so extreme values wrap as they do on the
// device instead of overflowing.
nvholder::ChiRect BoxRect(const nvholder::FDFaceBox& box) {
  const auto x0 = static_cast<uint32_t>(box.x0), y0 = static_cast<uint32_t>(box.y0);
  return {x0, y0, static_cast<uint32_t>(box.x1) - x0, static_cast<uint32_t>(box.y1) - y0};
}

nvholder::FDFaceBox ScaledBox(const nvholder::FDFaceBox& box, uint32_t scale) {
  const auto times = [scale](int32_t corner) {
    return static_cast<int32_t>(static_cast<uint32_t>(corner) * scale);
  };
  return {times(box.x0), times(box.y0), times(box.x1), times(box.y1)};
}

__UtilsImage_point FaceCenter(const __UtilsImage_Rect& rect, int width, int height) {
  const auto x = static_cast<int32_t>(rect.left + rect.width / 2);
  const auto y = static_cast<int32_t>(rect.top + rect.height / 2);
  if (x > width || x < 1 || y < 1 || y > height) return {width / 2, height / 2};
  return {x, y};
}

__UtilsImage_point RegionCenter(const __UtilsImage_Rect& rect) {
  const auto x = static_cast<int32_t>(rect.left + rect.width / 2);
  const auto y = static_cast<int32_t>(rect.top + rect.height / 2);
  if (x == 0 && y == 0) return {static_cast<int32_t>(rect.width / 2), static_cast<int32_t>(rect.height / 2)};
  return {x, y};
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
  if (ReadTag(helper, kCropStepSite, kSensorPolicyCrops, meta, &table) != 0) return crop;
  nvholder::ChiRect found{};
  if (mtk::FindSensorCrop(static_cast<const uint32_t*>(table), context.cameraId, &found)) {
    crop = found;
    MH_CROP_LOG(logging::kHelperGroup, kInfo, 944,
                "get crop region from SAT camId = %d cropregion: [%d %d %d %d]", context.cameraId,
                MH_RECT_ARGS(crop));
  }
  MH_CROP_LOG(logging::kHelperGroup, kInfo, 945,
              "get crop region from SAT camId = %d isInSensorZoom = %d cropregion: [%d %d %d %d]",
              context.cameraId, context.isInSensorZoom, MH_RECT_ARGS(crop));
  if (!context.isInSensorZoom) return crop;
  crop = mtk::RemapForInSensorZoom(crop, context.sensor);
  MH_CROP_LOG(logging::kHelperGroup, kInfo, 946,
              "get after isInSensorZoom = %d sensorsize(%d, %d) cropregion: [%d %d %d %d]",
              context.isInSensorZoom, context.sensor.width, context.sensor.height, MH_RECT_ARGS(crop));
  return crop;
}

nvholder::ChiRect FitCrop(const nvholder::ChiRect& crop, const nvholder::ChiRect& active,
                          const CropContext& context) {
  const nvholder::ChiRect fitted = mtk::FitToActiveAspect(crop, active, context.sensor);
  MH_CROP_LOG(logging::kIspGroup, kInfo, 947, "input crop (%d, %d, %d, %d) output crop (%d, %d, %d, %d)",
              MH_RECT_ARGS(crop), MH_RECT_ARGS(fitted));
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
  MH_CROP_LOG(logging::kHelperGroup, kInfo, 950, "shiftFlag = %d", found);
  if (found) *shift = {{record->shiftX, record->shiftY}, record->isPreAnchor != 0};
  return found;
}

bool ReadShiftTag(metadataHelperBase& helper, const MetaPtr& meta, ZoomShift* shift) {
  void* values = nullptr;
  uint32_t count = 0;
  if (ReadQuietly(helper, meta, kShiftTag, &values, &count) != 0 || count != 4) {
    MH_CROP_LOG(logging::kHelperGroup, kInfo, 952,
                "get shift failed size = %u, from nuvaro.sr.shift.value...", count);
    return false;
  }
  *shift = {
      {mtk::SaturateToInt32(Element<float>(values, 0)), mtk::SaturateToInt32(Element<float>(values, 1))},
      Element<float>(values, 2) != 0.0f};
  MH_CROP_LOG(logging::kHelperGroup, kInfo, 951,
              "get shift successful shift(%d, %d) isPreAnchor = %d size = %u, from nuvaro.sr.shift.value ",
              shift->shift.x, shift->shift.y, shift->isPreAnchor, count);
  return true;
}

// Moves the crop by the frame's zoom-stabilisation shift; returns the
// timestamp read's result, which is the operation's.
int ApplyZoomShift(metadataHelperBase& helper, const MetaPtr& meta, const CropContext& context,
                   nvholder::ChiRect* crop, bool* isFromMeta) {
  unsigned long timestamp = 0;
  const int timestampResult = helper.GetAndroidTimeStamp(meta, &timestamp);
  if (timestampResult == 0)
    MH_CROP_LOG(logging::kHelperGroup, kInfo, 948, "[camera id:%d] tag ANDROID_SENSOR_TIMESTAMP %ld",
                context.cameraId, static_cast<long>(timestamp));
  else
    MH_CROP_LOG(logging::kHelperGroup, kInfo, 949, "[camera id:%d] tag ANDROID_SENSOR_TIMESTAMP not found!",
                context.cameraId);
  const ZoomValues zoom = ReadZoomValues(helper, meta, context.cameraId);
  nvholder::ShiftData record{};
  ZoomShift shift{{0, 0}, false};
  *isFromMeta =
      !QueryHolderShift(context, timestamp, zoom, &record, &shift) && ReadShiftTag(helper, meta, &shift);
  MH_CROP_LOG(
      logging::kHelperGroup, kInfo, 953,
      "zoom shift (%d,%d) timestamp = %ld cameraId = %d anchorTimeStamp = %ld subTimestamp = %ld isIsz = %d "
      "isFromMeta = %d shiftData.nodeType = %d zoomEisEffective = %f zoomRatio = %f",
      shift.shift.x, shift.shift.y, static_cast<long>(timestamp), context.cameraId,
      static_cast<long>(record.anchorTimestamp), static_cast<long>(record.timestamp), context.isInSensorZoom,
      *isFromMeta, record.nodeType, zoom.eisEffective, zoom.ratio);
  const mtk::Shift scaled = mtk::ScaleShift(shift.shift, shift.isPreAnchor, context.isInSensorZoom);
  MH_CROP_LOG(logging::kHelperGroup, kInfo, 954, "zoom after isInSensorZoom = %d shift (%d,%d) ",
              context.isInSensorZoom, scaled.x, scaled.y);
  if (timestampResult != 0) return timestampResult;
  if (mtk::ApplyShift(crop, scaled, context.sensor))
    MH_CROP_LOG(logging::kHelperGroup, kInfo, 955, "using zoom eis shift (%d,%d)", scaled.x, scaled.y);
  else
    MH_CROP_LOG(logging::kHelperGroup, kInfo, 956, "not using zoom eis shift (%d,%d)", scaled.x, scaled.y);
  return timestampResult;
}

}  // namespace

MtkMetadataHelper::~MtkMetadataHelper() = default;

// ---- Operations, in slot order -------------------------------------------
int MtkMetadataHelper::GetUIEV(MetaPtr meta, int* out) {
  return ReadCopy(*this, MH_HERE, kUIEV, std::move(meta), out);
}
int MtkMetadataHelper::GetSensorTimestamp(MetaPtr meta, unsigned long* out) {
  return ReadCopy(*this, MH_HERE, kSensorTimestamp, std::move(meta), out);
}
int MtkMetadataHelper::GetTeleFusionEnable(MetaPtr meta, unsigned char* out) {
  return ReadCopy(*this, MH_HERE, kTeleFusionEnable, std::move(meta), out);
}
int MtkMetadataHelper::GetPreviewBrightnessInfo(MetaPtr meta, nvholder::PreviewBrightnessInfo* out) {
  return ReadWith(*this, MH_HERE, kHistogram, std::move(meta), out, [](const void* bins, auto* info) {
    mtk::FoldHistogram(static_cast<const uint32_t*>(bins), info);
  });
}

// No test of the container or the output: callers always pass both.
int MtkMetadataHelper::GetColorCorrectionTransform(MetaPtr meta, float* out) {
  const camera_metadata_ro_entry transform = meta->find(ANDROID_COLOR_CORRECTION_TRANSFORM);
  if (transform.count == 0) {
    MH_LOG(kInfo, 361, "get ccm fail");
    return -1;
  }
  // A zero denominator is repaired in place so later readers of the same
  // metadata never divide by zero.
  auto* ratios = const_cast<camera_metadata_rational*>(transform.data.r);
  for (int i = 0; i < 9; ++i) {
    if (ratios[i].denominator == 0) ratios[i].denominator = 1;
    out[i] = static_cast<float>(ratios[i].numerator) / static_cast<float>(ratios[i].denominator);
  }
  return 0;
}
int MtkMetadataHelper::GetPreviewDarkGainRatio(MetaPtr meta, float* out) {
  return ReadConverted<int32_t>(*this, MH_HERE, kDarkToneGain, std::move(meta), out, mtk::ToneGainFromFixed);
}

// The unscaled levels stay written when the bit depth cannot be read.
int MtkMetadataHelper::GetSensorDynamicBlackLevel(MetaPtr meta, float* out) {
  const void* levels = nullptr;
  const int result = ReadData(*this, MH_HERE, kDynamicBlackLevel, meta, out, &levels);
  if (result != 0) return result;
  std::memcpy(out, levels, 4 * sizeof(float));
  void* bitDepth = nullptr;
  if (ReadQuietly(*this, meta, kRawBitDepth, &bitDepth) != 0) return -1;
  const float scale = BlackLevelScale(Element<int32_t>(bitDepth));
  for (int i = 0; i < 4; ++i) out[i] *= scale;
  return 0;
}
int MtkMetadataHelper::GetPreviewExposure(MetaPtr meta, float* out) {
  return ReadConverted<int64_t>(*this, MH_HERE, kPreviewExposure, std::move(meta), out, AsFloat<int64_t>);
}
int MtkMetadataHelper::GetPreviewISPGain(MetaPtr meta, float* out) {
  return ReadConverted<int32_t>(*this, MH_HERE, kPreviewIspGain, std::move(meta), out, mtk::IspGainFromFixed);
}
int MtkMetadataHelper::GetSkinScore(MetaPtr /*meta*/, nvholder::NUSkinScore* out, unsigned char /*index*/) {
  return NotSupported(MH_HERE, 660, out);
}
int MtkMetadataHelper::GetMotionVelocity(MetaPtr meta, nvholder::MotionVelocity* out) {
  return ReadWith(*this, MH_HERE, kMotionVelocity, std::move(meta), out,
                  [](const void* velocity, auto* motion) {
                    motion->velocity = static_cast<float>(Element<int32_t>(velocity));
                  });
}

// The crop the pipeline applies to the sensor image: the sensor policy's
// crop, fitted to the active array's aspect, moved by the zoom shift.
int MtkMetadataHelper::GetCropRegion(MetaPtr meta, nvholder::ChiRect* crop, nvholder::dimension sensorSize,
                                     bool isInSensorZoom) {
  if (MissingOutput(crop, MH_HERE, 940)) return -1;
  nvholder::ChiRect active{};
  const int activeResult = GetActiveArraySize(meta, &active);
  if (activeResult != 0) {
    MH_LOG(kWarning, 941, "GetMetadata GetActiveArraySize ret = %d err", activeResult);
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
  MH_LOG(kInfo, 957, "get final crop = cropregion: [%d %d %d %d] ret = %d metaSuccess = %d",
         MH_RECT_ARGS(region), result, isFromMeta);
  return result;
}
int MtkMetadataHelper::SetIspGain(MetaPtr /*meta*/, float* value) {
  return NotSupported(MH_HERE, 1120, value);
}

// Scaled by the tone gain unless safe exposure is on; the result is the
// safe-exposure read's.
int MtkMetadataHelper::GetFaceLumaTarget(MetaPtr meta, float* out) {
  const void* luma = nullptr;
  const int result = ReadData(*this, MH_HERE, kFaceLuma, meta, out, &luma);
  if (result != 0) return result;
  *out = NonNegativeLuma(Element<int32_t>(luma));
  SafeToneGain tone{};
  const int toneResult = ReadSafeToneGain(*this, MH_HERE, kFaceLumaToneGain, meta, &tone);
  if (toneResult != 0) return toneResult;
  if (!tone.safeExposure) *out *= tone.gain;
  return tone.flagResult;
}
int MtkMetadataHelper::GetNoFaceLumaTarget(MetaPtr meta, float* out) {
  return ReadConverted<int32_t>(*this, MH_HERE, kNoFaceLuma, std::move(meta), out, AsFloat<int32_t>);
}
int MtkMetadataHelper::GetFrameLuma(MetaPtr meta, float* out) {
  return ReadConverted<int32_t>(*this, MH_HERE, kFrameLuma, std::move(meta), out, AsFloat<int32_t>);
}
int MtkMetadataHelper::GetFrameLumaTarget(MetaPtr /*meta*/, float* out) {
  return NotSupported(MH_HERE, 1280, out);
}
// The tag holds the streaming mode first, the tuning mode second.
int MtkMetadataHelper::GetTuningSensorMode(MetaPtr meta, int* out) {
  return ReadWith(*this, MH_HERE, kTuningSensorMode, std::move(meta), out,
                  [](const void* modes, int* mode) { *mode = Element<int32_t>(modes, 1); });
}
int MtkMetadataHelper::GetGammaOutput(MetaPtr meta, nvholder::GammaInfo* out) {
  if (MissingOutput(out, MH_HERE, 1360)) return -1;
  const void* curve = nullptr;
  const int result = ReadGammaCurve(*this, MH_HERE, kGammaInfo, meta, &curve);
  if (result != 0 || curve == nullptr) return result;
  std::memcpy(out->gamma, curve, sizeof out->gamma);
  out->isGammaValid = 1;
  MH_LOG_GROUP(logging::kIspGroup, kDebug, 1362, "gammaInfo.isGammaValid = %d", out->isGammaValid);
  return 0;
}

// Without the platform's curve the defaults stay, marked not valid.
int MtkMetadataHelper::GetGammaOutput(MetaPtr meta, nvholder::GammaTableInfo* out) {
  if (MissingOutput(out, MH_HERE, 1380)) return -1;
  mtk::FillDefaultGammaTables(out);
  const void* curve = nullptr;
  const int result = ReadGammaCurve(*this, MH_HERE, kGammaTable, meta, &curve);
  if (result != 0 || curve == nullptr) return result;
  std::memcpy(out->gammaTable, curve, 256 * sizeof(uint32_t));
  out->gammaTable[256] = 1023;
  out->isValid = 1;
  MH_LOG_GROUP(logging::kIspGroup, kDebug, 1382, "gammaInfo.isGammaValid = %d", out->isValid);
  return 0;
}
int MtkMetadataHelper::GetFaceAverageBrightness(MetaPtr meta, float* out) {
  return ReadCopy(*this, MH_HERE, kFaceAverageBrightness, std::move(meta), out);
}
// The second value is a fixed confidence.
int MtkMetadataHelper::GetFacetargetAndConfidence(MetaPtr meta, float* out) {
  return ReadWith(*this, MH_HERE, kFaceTarget, std::move(meta), out, [](const void* luma, float* target) {
    target[0] = NonNegativeLuma(Element<int32_t>(luma));
    target[1] = 0.9f;
  });
}
int MtkMetadataHelper::GetCurLuma(MetaPtr meta, float* out) {
  return ReadConverted<int32_t>(*this, MH_HERE, kCurLuma, std::move(meta), out, AsFloat<int32_t>);
}
int MtkMetadataHelper::GetTargetLuma(MetaPtr /*meta*/, float* out) {
  return NotSupported(MH_HERE, 1580, out);
}

// The platform's gain, or the recounted one; asking for the sensor mode type
// afterwards leaves its debug line next to the gain's.
int MtkMetadataHelper::GetIspGain(MetaPtr meta, float* out) {
  const void* value = nullptr;
  const int result = ReadData(*this, MH_HERE, kIspGain, meta, out, &value);
  if (result != 0) return result;
  const float platformGain = mtk::IspGainFromFixed(Element<int32_t>(value));
  const IspGainRecount recount = ReadIspGainRecount(*this, meta);
  *out = recount.hasOrigin ? recount.gain : platformGain;
  MH_LOG(kInfo, 1603, "GetIspGain recountEnale = %d oldIspGain = %f *ispGain = %f retIspGain = %d.",
         recount.enabled, platformGain, *out, recount.lastResult);
  nvholder::NVSENSORMODETYPE modeType = 0;
  GetNuvaroSensorModeType(std::move(meta), &modeType);
  return 0;
}
int MtkMetadataHelper::GetCurSensorMode(MetaPtr /*meta*/, int* out) {
  return NotSupported(MH_HERE, 1620, out);
}
int MtkMetadataHelper::GetBlackLevelShift(MetaPtr /*meta*/, int* out) {
  return NotSupported(MH_HERE, 1640, out);
}
int MtkMetadataHelper::GetSensorSOF(MetaPtr /*meta*/, unsigned long* out) {
  return NotSupported(MH_HERE, 1660, out);
}
int MtkMetadataHelper::GetQTimerTimeStamp(MetaPtr meta, unsigned long* out) {
  return ReadCopy(*this, MH_HERE, kQTimerTimeStamp, std::move(meta), out);
}
int MtkMetadataHelper::GetPreviewADRCGain(MetaPtr meta, float* out) {
  return ReadConverted<int32_t>(*this, MH_HERE, kPreviewAdrcGain, std::move(meta), out,
                                mtk::ToneGainFromFixed);
}

// 1.0 stays written when the ratio cannot be read.
int MtkMetadataHelper::GetAeRatio(MetaPtr meta, float* out) {
  if (MissingOutput(out, MH_HERE, 1780)) return -1;
  *out = 1.0f;
  const void* adjust = nullptr;
  const int result = ReadTag(*this, MH_HERE, kAeAdjustRatio, meta, &adjust);
  if (result != 0) return result;
  const auto value = Element<int32_t>(adjust);
  if (value == 0) MH_LOG(kWarning, 1782, MH_QUOTED("GetMetadata nuvaro.hdr.custom.adjustratio = 0"));
  *out = mtk::AeRatioFromAdjust(value);
  return 0;
}
int MtkMetadataHelper::SetSnapshotReqInfo(MetaPtr meta, nvholder::SnapshotReqInfo* info) {
  return NotSupported(MH_HERE, 1860, info, meta);
}

// The sensor policy's frame result names each camera's platform mode.
int MtkMetadataHelper::GetNuvaroSensorModeType(MetaPtr meta, nvholder::NVSENSORMODETYPE* out) {
  const void* frameResult = nullptr;
  const int result = ReadData(*this, MH_HERE, kSensorModeFrameResult, meta, out, &frameResult);
  if (result != 0) return result;
  const int cameraId = FwkCameraIdOf(*this, meta);
  const int32_t mode =
      cameraId == -1 ? 0 : mtk::PlatformSensorMode(static_cast<const int32_t*>(frameResult), cameraId);
  *out = mtk::SensorModeTypeFromPlatformMode(mode);
  MH_LOG(kDebug, 2103, "fwkId: %d, sensorModeType %d => %d", cameraId, mode, *out);
  return 0;
}

// The platform publishes four gains; blue is the fourth.
int MtkMetadataHelper::GetAWBFrameControl(MetaPtr meta, nvholder::NUAWBFrameControl* out) {
  const void* gains = nullptr;
  const int result = ReadData(*this, MH_HERE, kAwbGains, meta, out, &gains);
  if (result != 0) return result;
  const void* temperature = nullptr;
  const int temperatureResult = ReadTag(*this, MH_HERE, kAwbColorTemperature, meta, &temperature);
  if (temperatureResult != 0) return temperatureResult;
  out->gains[0] = Element<float>(gains, 0);
  out->gains[1] = Element<float>(gains, 1);
  out->gains[2] = Element<float>(gains, 3);
  out->colorTemperature = Element<float>(temperature);
  return 0;
}

// Without a holder the record is left as passed: callers preset H and V.
int MtkMetadataHelper::GetShiftDataFromHolder(long timestamp, int phyId, nvholder::ShiftData* shiftData) {
  if (MissingOutput(shiftData, MH_HERE, 2200)) return -1;
  const std::shared_ptr<adapter::PlatformInfoHolder> holder =
      adapter::AdapterClient::getInstance().getPlatformInfoHolder();
  if (!holder) return 0;
  shiftData->timestamp = timestamp;
  shiftData->phyCameraId = phyId;
  shiftData->nodeType = 0;
  holder->getShiftData(shiftData, kHolderShiftInterval);
  MH_LOG(kInfo, 2201, "[getShift] phyId:%d, timestamp:%ld, H,V = (%d,%d)", phyId, timestamp,
         shiftData->shiftX, shiftData->shiftY);
  return 0;
}

// Face boxes for the face-detection side, in active-array corners; pitch,
// angle class and pose are kept once, for the last face.
int MtkMetadataHelper::GetFdData(MetaPtr meta, nvholder::NUNvFDRawSnapshotParam* out) {
  if (MissingOutput(out, MH_HERE, 2220)) return -1;
  const void* data = nullptr;
  uint32_t count = 0;
  const int result = ReadTag(*this, MH_HERE, kFdFaceInfo, meta, &data, &count);
  if (result != 0) return result;
  nvholder::ChiRect active{};
  GetActiveArraySize(meta, &active);
  const bool inSensorZoom = InSensorZoom(*meta);
  nvholder::NVSENSORMODETYPE modeType = 0;
  GetNuvaroSensorModeType(meta, &modeType);
  out->faceCount = static_cast<int32_t>(count / kFaceWords);
  const uint32_t scale = modeType == kHalfScaleFaceMode ? 2 : 1;
  for (int i = 0; i < FacesToVisit(out->faceCount, out->faces); ++i) {
    const int32_t* face = static_cast<const int32_t*>(data) + i * kFaceWords;
    const nvholder::FDFaceBox box = FaceCorners(face, inSensorZoom, active);
    out->faces[i] = ScaledBox(box, scale);
    out->pitch = face[5];
    out->angle = mtk::AngleClass(face[6]);
    out->pose = face[7];
    out->activeArray = active;
    const nvholder::ChiRect stored = BoxRect(out->faces[i]);
    MH_LOG(kInfo, 2223, "GetFdData faces[%d/%d]:[%d %d %dx%d] pitch:%d angle:%d pose:%d", i + 1,
           out->faceCount, MH_RECT_ARGS(stored), out->pitch, out->angle, out->pose);
  }
  return 0;
}
int MtkMetadataHelper::SetFdData(MetaPtr meta, nvholder::NUNvFDRawSnapshotParam* param) {
  return NotSupported(MH_HERE, 2240, param, meta);
}

// Only a diagnostic: the record itself is never written.
int MtkMetadataHelper::GetGTMTable(MetaPtr meta, nvholder::GTMInfo* out) {
  const void* curve = nullptr;
  const int result = ReadData(*this, MH_HERE, kGtmCurve, meta, out, &curve);
  if (result != 0) return result;
  MH_LOG(kDebug, 2263, "gtm curve, binNum:%d (%d, %d)", Element<int32_t>(curve, 0),
         Element<int32_t>(curve, 32), Element<int32_t>(curve, 288));
  return 0;
}
int MtkMetadataHelper::GetAWBCustomSnapshotWBInfo(MetaPtr /*meta*/, nvholder::NUAWBOutSnapshotWbInfo* out) {
  return NotSupported(MH_HERE, 2280, out);
}

// Only the lux index is known on this platform; 0 when it cannot be read.
int MtkMetadataHelper::GetAECFrameControl(MetaPtr meta, nvholder::NUAECFrameControl* out) {
  if (MissingOutput(out, MH_HERE, 2300)) return -1;
  int luxIndex = 0;
  GetLuxIndex(std::move(meta), &luxIndex);
  out->luxIndex = static_cast<float>(luxIndex);
  return 0;
}
int MtkMetadataHelper::GetGyroInfo(MetaPtr meta, nvholder::ChiFrameGyro* out) {
  return ReadWith(*this, MH_HERE, kGyro, std::move(meta), out, CopyGyro);
}
int MtkMetadataHelper::GetPanshotResData(MetaPtr meta, nvholder::panshotData* out) {
  return ReadWith(*this, MH_HERE, kPanshotResult, std::move(meta), out, CopyPanshot);
}
int MtkMetadataHelper::GetMultiCameraIds(MetaPtr /*meta*/, nvholder::MultiCameraIds* /*out*/) {
  return kStub;
}
int MtkMetadataHelper::SetCropRegion(MetaPtr meta, nvholder::ChiRect* crop) {
  return NotSupported(MH_HERE, 2420, crop, meta);
}
int MtkMetadataHelper::GetSnapshotReqInfo(MetaPtr /*meta*/, nvholder::SnapshotReqInfo* /*out*/) {
  return kStub;
}
int MtkMetadataHelper::SetGainMapEvInfo(MetaPtr meta, nvholder::GainmapEvInfo* info) {
  return NotSupported(MH_HERE, 2460, info, meta);
}
int MtkMetadataHelper::GetActiveArraySize(MetaPtr meta, nvholder::ChiRect* out) {
  return ReadStaticCopy(*this, MH_HERE, kActiveArraySize, std::move(meta), out);
}
int MtkMetadataHelper::GetMaxActiveArraySize(MetaPtr meta, nvholder::ChiRect* out) {
  return ReadStaticCopy(*this, MH_HERE, kMaxActiveArraySize, std::move(meta), out);
}
int MtkMetadataHelper::GetStaticMetaSensorCaps(MetaPtr /*meta*/, nvholder::SensorCaps* /*out*/) {
  return kStub;
}
int MtkMetadataHelper::GetSensorMetaDataSensorModeInfo(MetaPtr /*meta*/, nvholder::SensorModeInfo* /*out*/) {
  return kStub;
}
int MtkMetadataHelper::GetLSCMapSize(MetaPtr meta, nvholder::NULSCMapSize* out) {
  return ReadStaticCopy(*this, MH_HERE, kShadingMapSize, std::move(meta), out);
}
int MtkMetadataHelper::GetSensorViewAngle(MetaPtr meta, double* out) {
  return ReadStaticCopy(*this, MH_HERE, kViewAngle, std::move(meta), out, 2 * sizeof(double));
}
int MtkMetadataHelper::GetTuningMode(MetaPtr /*meta*/, void* out) { return NotSupported(MH_HERE, 2740, out); }
int MtkMetadataHelper::GetNZSLWBInfo(MetaPtr /*meta*/, nvholder::AWBOutBpsWbFactor* out) {
  return NotSupported(MH_HERE, 2760, out);
}
// Same value as GetQTimerTimeStamp on this platform.
int MtkMetadataHelper::GetNuvaroFrameSyncTimestampGap(MetaPtr meta, long* out) {
  return ReadCopy(*this, MH_HERE, kFrameSyncTimestampGap, std::move(meta), out);
}
int MtkMetadataHelper::GetMxDebaningLbmfMode(MetaPtr /*meta*/, int* out) {
  return NotSupported(MH_HERE, 3340, out);
}
int MtkMetadataHelper::GetNuvaroMxdebandingDetectResult(MetaPtr meta, int* out) {
  return ReadCopy(*this, MH_HERE, kMxdebandingDetectResult, std::move(meta), out);
}
int MtkMetadataHelper::GetWhiteBlackOutput(MetaPtr /*meta*/, float* out) {
  return NotSupported(MH_HERE, 3380, out);
}
int MtkMetadataHelper::GetLuxIndex(MetaPtr meta, int* out) {
  return ReadConverted<float>(*this, MH_HERE, kLuxIndex, std::move(meta), out, mtk::SaturateToInt32);
}

// The raw per-sensor crop; a frame without the sensor policy's table gets
// the full 4096 x 3072 field.
int MtkMetadataHelper::getPass1CropRegion(MetaPtr meta, nvholder::ChiRect* crop, int sensorId) {
  if (MissingOutput(crop, MH_HERE, 3500)) return -1;
  const camera_metadata_ro_entry table = meta->find(kSensorPolicyCropsName);
  if (table.count == 0) {
    *crop = kPass1FallbackCrop;
    MH_LOG(kDebug, 3501, MH_QUOTED("get cropRegion error,force set cropRegion[0 0 4096 3072]"));
    return 0;
  }
  nvholder::ChiRect found{};
  if (table.data.i32 == nullptr ||
      !mtk::FindSensorCrop(reinterpret_cast<const uint32_t*>(table.data.i32), sensorId, &found))
    return 0;
  *crop = found;
  MH_LOG(kDebug, 3502, "sensorid:%d, l,t,w,h = [%d %d %d %d]", sensorId, MH_RECT_ARGS(found));
  return 0;
}
int MtkMetadataHelper::GetExpIndex(MetaPtr meta, long* out) {
  return ReadCopy(*this, MH_HERE, kExpIndex, std::move(meta), out);
}
int MtkMetadataHelper::GetAdrcGain(MetaPtr meta, float* out) {
  if (MissingOutput(out, MH_HERE, 3540)) return -1;
  SafeToneGain tone{};
  const int result = ReadSafeToneGain(*this, MH_HERE, kAdrcToneGain, meta, &tone);
  if (result != 0) return result;
  *out = tone.safeExposure ? 1.0f : tone.gain;
  return 0;
}
int MtkMetadataHelper::GetSensorGain(MetaPtr meta, float* out) {
  return ReadConverted<int32_t>(*this, MH_HERE, kSensorGain, std::move(meta), out, mtk::ToneGainFromFixed);
}
int MtkMetadataHelper::SetAnchorFrameIndex(MetaPtr meta, int index) {
  return Write<int>(*this, MH_HERE, kBssGoldenIndex, std::move(meta), &index, 1);
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
    MH_LOG(kWarning, 3741, MH_QUOTED("get active/crop size err"));
    return -1;
  }
  void* data = nullptr;
  uint32_t count = 0;
  if (ReadQuietly(*this, meta, kFaceInfo, &data, &count) != 0 || count < kFaceWords) {
    MH_LOG(kWarning, 3742, MH_QUOTED("no face"));
    return -1;
  }
  const bool inSensorZoom = InSensorZoom(*meta);
  const bool doublesActive = width > 5000 && height > 4000;
  faces.faceCount = static_cast<int32_t>(count / kFaceWords);
  uint64_t largestArea = 0;
  for (int i = 0; i < FacesToVisit(faces.faceCount, faces.faces); ++i) {
    const int32_t* words = static_cast<const int32_t*>(data) + i * kFaceWords;
    FaceEntry& face = faces.faces[i];
    face.pitch = words[5];
    face.angle = words[6];
    face.pose = words[7];
    face.faceId = words[8];
    const nvholder::FDFaceBox box = FaceCorners(words, inSensorZoom, active);
    if (doublesActive) {
      active.width *= 2;
      active.height *= 2;
    }
    MapRectToInput(BoxRect(box), crop, width, height, active, &face.rect);
    face.angleClass = mtk::AngleClass(face.angle);
    face.center = FaceCenter(face.rect, width, height);
    const uint64_t area = static_cast<uint64_t>(face.rect.width) * face.rect.height;
    if (area > largestArea) {
      largestArea = area;
      faces.mainFaceIndex = i;
    }
    MH_LOG(kDebug, 3743, "faces[%d/%d]:[%d %d %dx%d] point:[%d %d] angle:%d faceId:%d", i + 1,
           faces.faceCount, MH_RECT_ARGS(face.rect), face.center.x, face.center.y, face.angle, face.faceId);
  }
  return 0;
}

// The focus region (the second one when there are two) in the caller's image.
int MtkMetadataHelper::GetFocusROI(MetaPtr meta, nvholder::dimension size, __UtilsImage_Rect* rect,
                                   __UtilsImage_point* point, bool, bool) {
  if (rect == nullptr || point == nullptr || !meta) {
    MH_LOG(kError, 3760, MH_QUOTED("arg err"));
    return -1;
  }
  nvholder::ChiRect crop{};
  const int cropResult = GetAndroidCropRegion(meta, &crop);
  if (cropResult != 0) {
    MH_LOG(kWarning, 3761, MH_QUOTED("GetCropRegion err"));
    return cropResult;
  }
  nvholder::ChiRect active{};
  const int activeResult = GetActiveArraySize(meta, &active);
  if (activeResult != 0) {
    MH_LOG(kWarning, 3762, MH_QUOTED("GetActiveArraySize err"));
    return activeResult;
  }
  void* data = nullptr;
  if (ReadQuietly(*this, meta, kAfRoi, &data) != 0) {
    MH_LOG(kDebug, 3763, MH_QUOTED("fail to read AF region"));
    return -1;
  }
  const int32_t* roi = static_cast<const int32_t*>(data);
  const int32_t type = roi[0];
  const int32_t regions = roi[1];
  if (regions != 1 && regions != 2) {
    MH_LOG(kDebug, 3764, "incorrect AF region %d %d", type, regions);
    return -1;
  }
  const int start = regions == 1 ? 2 : 7;
  const nvholder::FDFaceBox corners{roi[start], roi[start + 1], roi[start + 2], roi[start + 3]};
  MH_LOG(kDebug, 3765, "af roi, info:[t:%d, n:%d, vs:%d, tlx:%d, tly:%d, brx:%d, bry:%d]", type, regions,
         start, corners.x0, corners.y0, corners.x1, corners.y1);
  const int result = MapRectToInput(BoxRect(corners), crop, static_cast<int>(size.width),
                                    static_cast<int>(size.height), active, rect);
  *point = RegionCenter(*rect);
  return result;
}

// Copies the faces as they are; a source without faces leaves an empty tag.
int MtkMetadataHelper::SetFacesInfoHolder(MetaPtr source, MetaPtr destination) {
  void* data = nullptr;
  uint32_t count = 0;
  if (ReadQuietly(*this, source, kFaceInfo, &data, &count) != 0) {
    count = 0;
    MH_LOG(kWarning, 3781, "GetMetadata nuvaro.bokeh.faceInfo err");
  }
  return WriteRaw(*this, MH_HERE, kFaceInfo, kFaceInfoWriteFailed, 3782, std::move(destination), data, count);
}
int MtkMetadataHelper::SetFocusROI(MetaPtr source, MetaPtr destination) {
  const void* data = nullptr;
  uint32_t count = 0;
  const int result = ReadTag(*this, MH_HERE, kAfRoiSource, source, &data, &count);
  if (result != 0) return result;
  return WriteRaw(*this, MH_HERE, kAfRoi, kAfRoiWriteFailed, 3803, std::move(destination),
                  const_cast<void*>(data), count);
}
int MtkMetadataHelper::GetStgExpInfo(MetaPtr /*meta*/, nvholder::SensorMultiExposureInfo* out) {
  return NotSupported(MH_HERE, 3820, out);
}

}  // namespace metahelper
