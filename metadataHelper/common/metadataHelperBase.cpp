// The generic helper: the core read and write, and every operation as the
// platform-neutral implementation has it.
#include "metadataHelperBase.h"

#include <MetaTagWrapper.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "Log.h"
#include "OpSkeletons.h"

namespace metahelper {

using namespace ops;  // NOLINT(google-build-using-namespace): descriptors read as tables

namespace {

constexpr uint32_t kUndeclaredTag = 0xFFFFFFFFu;
constexpr unsigned char kLensFacingBack = 1;  // ANDROID_LENS_FACING_BACK

// Takes the entry the container found; a count of zero means absent.
int TakeEntry(const camera_metadata_ro_entry& entry, void** data, uint32_t* count) {
  if (entry.count == 0) return -1;
  *data = const_cast<uint8_t*>(entry.data.u8);
  if (count != nullptr) *count = static_cast<uint32_t>(entry.count);
  return 0;
}

}  // namespace

metadataHelperBase::~metadataHelperBase() = default;

const Site ops::kCoreReadSite{__FILE__, "GetMetaData"};
const Format ops::kCoreReadNoData = MH_FORMAT(MH_QUOTED("GetMetadata err"));

// ---- Core read -----------------------------------------------------------
// A stale non-null *data from the caller suppresses the final message; the
// result is still the lookup's. The missing-tag check sits in the last branch
// of the tag forms, where it gives the same result as checking it first,
// without a test on the path of every read.
int metadataHelperBase::GetMetaData(MetaPtr meta, const char* tagName, META_TAG_INDEX index, uint32_t tag,
                                    void** data, uint32_t* count) {
  if (!meta) {
    MH_LOG(kError, 13, MH_QUOTED("pArg is null"));
    return -1;
  }
  camera_metadata_ro_entry entry;
  entry.count = 0;  // absent unless found
  if (index != META_NO_INDEX) {
    const uint32_t resolved = MetaTagWrapper::getInstance()(index);
    if (resolved == kUndeclaredTag)
      MH_LOG(kError, 23, "metadata not declared, tagindex %d", static_cast<int>(index));
    else
      entry = meta->find(resolved);
  } else if (tagName != nullptr) {
    entry = meta->find(tagName);
  } else if (tag != 0) {
    entry = meta->find(tag);
  } else {
    MH_LOG(kError, 16, MH_QUOTED("pArg is null"));
    return -1;
  }
  const int result = TakeEntry(entry, data, count);
  if (*data != nullptr) return result;
  Report(Level::kVerbose, kCoreReadSite, kCoreReadNoDataLine, kCoreReadNoData);
  return -1;
}

// ---- Core write ----------------------------------------------------------
// An unknown name fails silently here: the calling setter reports it.
template <typename T>
int metadataHelperBase::SetMetaData(MetaPtr meta, const char* tagName, META_TAG_INDEX index, uint32_t tag,
                                    T* data, uint32_t count) {
  if (!meta) {
    MH_LOG(kError, 48, MH_QUOTED("pArg is null"));
    return -1;
  }
  if (index == META_NO_INDEX && tagName == nullptr && tag == 0) {
    MH_LOG(kError, 51, MH_QUOTED("pArg is null"));
    return -1;
  }
  if (index != META_NO_INDEX) {
    const uint32_t resolved = MetaTagWrapper::getInstance()(index);
    if (resolved == kUndeclaredTag) {
      MH_LOG(kError, 57, "metadata not declared, tagindex %d", static_cast<int>(index));
      return -1;
    }
    return meta->update(resolved, data, count);
  }
  if (tagName == nullptr) return meta->update(tag, data, count);
  unsigned int number = 0;
  if (NvMetadata::getTagFromName(tagName, &number) != 0) return -1;
  return meta->update(number, data, count);
}

template int metadataHelperBase::SetMetaData<float>(MetaPtr, const char*, META_TAG_INDEX, uint32_t, float*,
                                                    uint32_t);
template int metadataHelperBase::SetMetaData<int>(MetaPtr, const char*, META_TAG_INDEX, uint32_t, int*,
                                                  uint32_t);
template int metadataHelperBase::SetMetaData<camera_metadata_rational>(MetaPtr, const char*, META_TAG_INDEX,
                                                                       uint32_t, camera_metadata_rational*,
                                                                       uint32_t);
template int metadataHelperBase::SetMetaData<unsigned char>(MetaPtr, const char*, META_TAG_INDEX, uint32_t,
                                                            unsigned char*, uint32_t);
template int metadataHelperBase::SetMetaData<void>(MetaPtr, const char*, META_TAG_INDEX, uint32_t, void*,
                                                   uint32_t);

// ---- Operation descriptors -----------------------------------------------
// One row per operation: the tag, the messages, their line ids in the order
// of the checks, then levels and argument checks where they differ from the
// usual (verbose messages, "arg err" at error level, output pointer only).
// Messages without a catalogued line id take ids from 2320 upward, in slot
// order, consecutive within an operation.
namespace {

constexpr ArgCheck kFlipIsNull{MH_MESSAGE("flip is null!"), false};
constexpr ArgCheck kMetaIsNull{MH_MESSAGE("meta is null"), true};
// The focal-length read reports with the focus-region texts on purpose.
constexpr ReadMessages kAfRegionMessages = MH_MESSAGES("GetMetadata ANDROID_CONTROL_AF_REGIONS err1",
                                                       "GetMetadata  ANDROID_CONTROL_AF_REGIONS err2");

constexpr Level kWarning = Level::kWarning;
constexpr Level kVerbose = Level::kVerbose;
constexpr Level kError = Level::kError;

// clang-format off
// Sensor and timing.
constexpr ReadOp kSensorExposureTime         {ByNumber(ANDROID_SENSOR_EXPOSURE_TIME),        MH_ERR("ANDROID_SENSOR_EXPOSURE_TIME"),                   {88, 94, 95}};
constexpr ReadOp kSensorTimestamp            {ByIndex(META_SENSOR_TIMESTAMP),                MH_GENERIC,                                               {203, 208, 209}};
constexpr ReadOp kSensorDynamicWhiteLevel    {ByNumber(ANDROID_SENSOR_DYNAMIC_WHITE_LEVEL),  MH_FAIL("ANDROID_SENSOR_DYNAMIC_WHITE_LEVEL"),            {465, 471}};
constexpr ReadOp kSensorDynamicBlackLevel    {ByNumber(ANDROID_SENSOR_DYNAMIC_BLACK_LEVEL),  MH_FAIL("ANDROID_SENSOR_DYNAMIC_BLACK_LEVEL"),            {479, 485}};
constexpr ReadOp kAndroidTimeStamp           {ByNumber(ANDROID_SENSOR_TIMESTAMP),            MH_FAIL("ANDROID_SENSOR_TIMESTAMP"),                      {519, 524}};
constexpr ReadOp kSensitivity                {ByNumber(ANDROID_SENSOR_SENSITIVITY),          MH_ERR("ANDROID_SENSOR_SENSITIVITY"),                     {643, 649, 650}};
constexpr ReadOp kAndroidSensorFrameDuration {ByNumber(ANDROID_SENSOR_FRAME_DURATION),       MH_FAIL("ANDROID_SENSOR_FRAME_DURATION"),                 {768, 774}};
constexpr ReadOp kSensorSOF                  {ByIndex(META_QTIMER_START_OF_EXPOSURE),        MH_ERR("org.quic.camera.qtimer.startOfExposure"),         {101, 108, 110}};
constexpr ReadOp kSensorReadOutTime          {ByNumber(ANDROID_SENSOR_ROLLING_SHUTTER_SKEW), MH_ERR("ANDROID_SENSOR_ROLLING_SHUTTER_SKEW"),            {116, 123, 125}};
constexpr ReadOp kShootingTimeStamp          {ByIndex(META_SHOOTING_TIMESTAMP),              MH_ERR("nuvaro.shootingtime.timestamp"),                  {132, 138, 140}};
constexpr ReadOp kLongExpControl             {ByIndex(META_LONG_EXPOSURE_CONTROL),           MH_FAIL("com.nuvaro.camera.longExposureControl"),         {1619, 1625}};
constexpr ReadOp kLongExpMode                {ByIndex(META_LONG_EXPOSURE_MODE),              MH_FAIL("com.nuvaro.camera.longExposureMode"),            {1633, 1639}};
constexpr ReadOp kLongExposureMode           {ByIndex(META_LONGEXPOSURE_MODE),               MH_FAIL("com.nuvaro.longexposure.mode"),                  {1753, 1757}};
constexpr ReadOp kMFInputNum                 {ByIndex(META_MULTIFRAME_INPUT_NUM),            MH_FAIL("nuvaro.multiframe.inputNum"),                    {1647, 1651}};
constexpr ReadOp kFrameSyncTimestampGap      {ByIndex(META_FRAMESYNC_TIMESTAMP),             MH_ERR12("com.nuvaro.sensor.framesync.timestamp"),        {2092, 2097, 2099}};

// Exposure, luma and colour.
constexpr ReadOp kSmartAeInfo                {ByIndex(META_SMART_AE_RESULT),                 MH_GENERIC,                                               {156, 161, 162}};
constexpr ReadOp kLivephotoIspGainFactor     {ByIndex(META_LIVEPHOTO_ISP_GAIN_FACTOR),       MH_GENERIC,                                               {280, 286, 287}, kVerbose, kVerbose};
constexpr ReadOp kWhiteBlackRatio            {ByIndex(META_AEC_WHITE_BLACK_RATIO),           MH_ERR("AECWhiteBlackRatio"),                             {407, 413, 414}};
constexpr ReadOp kPreviewDarkGainRatio       {ByIndex(META_PREVIEW_DARK_GAIN_RATIO),         MH_ERR("previewDarkGainRatio"),                           {422, 427, 428}};
constexpr ReadOp kPreviewAeRatio             {ByIndex(META_PREVIEW_AE_RATIO),                MH_ERR("previewAeRatio"),                                 {436, 441, 442}, kWarning};
constexpr ReadOp kPreviewExposure            {ByIndex(META_PREVIEW_EXPOSURE),                MH_ERR("PreviewExposure"),                                {492, 497, 498}};
constexpr ReadOp kFocusDistCm                {ByNumber(ANDROID_LENS_FOCUS_DISTANCE),         MH_ERR("ANDROID_LENS_FOCUS_DISTANCE"),                    {628, 634, 635}};
constexpr ReadOp kAFState                    {ByNumber(ANDROID_CONTROL_AF_STATE),            MH_ERR("ANDROID_CONTROL_AF_STATE"),                       {657, 663, 664}};
constexpr ReadOp kAFMode                     {ByNumber(ANDROID_CONTROL_AF_MODE),             MH_ERR("ANDROID_CONTROL_AF_MODE"),                        {670, 676, 677}};
constexpr ReadOp kLSC                        {ByNumber(ANDROID_STATISTICS_LENS_SHADING_MAP), MH_FAIL("ANDROID_STATISTICS_LENS_SHADING_MAP"),           {684, 690}};
constexpr ReadOp kAndroidFlashMode           {ByNumber(ANDROID_FLASH_MODE),                  MH_FAIL("ANDROID_FLASH_MODE"),                            {746, 751}};
constexpr ReadOp kNUFlashMode                {ByIndex(META_NU_FLASH_MODE),                   MH_FAIL("nuvaro.flash.mode"),                             {757, 761}};
constexpr ReadOp kEcdStatus                  {ByIndex(META_EYE_CLOSURE_STATUS),              MH_FAIL("com.nuvaro.nvvi2.eyeclosure.status"),            {kNoLine, 918}};
constexpr ReadOp kFaceAverageBrightness      {ByIndex(META_FACE_BRIGHT),                     MH_ERR("faceBright"),                                     {1096, 1101, 1102}};
constexpr ReadOp kFacetargetAndConfidence    {ByIndex(META_FACE_BRIGHT),                     MH_ERR("faceBright"),                                     {1110, 1115, 1116}, kWarning};
constexpr ReadOp kIspGain                    {ByIndex(META_SENSOR_BPS_GAIN),                 MH_ONE_MESSAGE("get com.qti.sensorbps.gain fail"),        {1189, 1195}};
constexpr ReadOp kBlackLevelShift            {ByIndex(META_HDR_BLACKLEVEL_SHIFT),            MH_ERR("nuvaro.hdr.blacklevelShift"),                     {953, 958, 959}};
constexpr ReadOp kAeRatio                    {ByIndex(META_TFNR_EXP_RATIO),                  MH_ERR("com.qti.chi.statsaec.TFNRExpRatio"),              {983, 990, 992}};
constexpr ReadOp kIrRatio                    {ByIndex(META_SPECTRAL_IR_RATIO),               MH_ERR("com.nuvaro.camera.statsawb.spectralSensorIrRatio"), {1016, 1023, 1025}};
constexpr ReadOp kRealCCT                    {ByIndex(META_REAL_CCT),                        MH_ERR("com.nuvaro.camera.statsawb.realCCT"),             {1000, 1007, 1009}};
constexpr ReadOp kAWBFrameControl            {ByIndex(META_AWB_FRAME_CONTROL),               MH_ERR("AWBFrameControl"),                                {1124, 1129, 1130}};
constexpr ReadOp kAECFrameControl            {ByIndex(META_AEC_FRAME_CONTROL),               MH_ERR("AECFrameControl"),                                {1160, 1165, 1166}};
constexpr ReadOp kLSCMapSize                 {ByNumber(ANDROID_LENS_INFO_SHADING_MAP_SIZE),  MH_FAIL("ANDROID_LENS_INFO_SHADING_MAP_SIZE"),            {1660, 1666}};
constexpr ReadOp kAECompensation             {ByNumber(ANDROID_CONTROL_AE_EXPOSURE_COMPENSATION), MH_FAIL("ANDROID_CONTROL_AE_EXPOSURE_COMPENSATION"), {1675, 1681}};
constexpr ReadOp kSTAFDistanceInfo           {ByIndex(META_AF_DISTANCE_INFO),                MH_ERR("nuvaro.sat.afSceneResult.afDistanceInfo"),        {2107, 2112, 2114}};
constexpr ReadOp kNvAwbSpecialLightConfidence{ByName("com.nuvaro.camera.statsawb.specialLightConfidence"),
                                                MH_MESSAGES("GetMetadata nvawb specialLightConfidence err", "get metadata nvawb specialLightConfidence err"),
                                                                                                                                                         {2260, 2265, 2266}, kWarning, kError, kMetaIsNull};

// Scene, AI and capture features.
constexpr ReadOp kStylizationType            {ByIndex(META_STYLIZATION_TYPE),                MH_GENERIC,                                               {189, 195, 196}};
constexpr ReadOp kHighlightAnchorOrder       {ByIndex(META_HIGHLIGHT_ANCHOR_ORDER),          MH_GENERIC,                                               {216, 222, 223}};
constexpr ReadOp kStreetModeEnable           {ByIndex(META_STREET_MODE),                     MH_GENERIC,                                               {229, 234, 235}};
constexpr ReadOp kEHDREnable                 {ByIndex(META_EHDR_ENABLE),                     MH_GENERIC,                                               {241, 246, 247}};
constexpr ReadOp kTeleFusionEnable           {ByName("nuvaro.capturefusion.isSetWAndTFusion"), MH_GENERIC,                                             {253, 259, 260}, kWarning};
constexpr ReadOp kIsPzslDisplayMode          {ByIndex(META_PZSL_DISPLAY_MODE),               MH_GENERIC,                                               {267, 272, 273}, kVerbose, kVerbose};
constexpr ReadOp kStreetAnchorOrder          {ByIndex(META_STREET_ANCHOR_ORDER),             MH_GENERIC,                                               {293, 299, 300}};
constexpr ReadOp kAISceneResult              {ByIndex(META_AI_SCENE_RESULT),                 MH_ERR("nuvaro.ai.asd.algoSceneDetectedAIResult"),        {362, 369, 371}};
constexpr ReadOp kAISceneIndoor              {ByIndex(META_AI_SCENE_INDOOR),                 MH_ERR("nuvaro.ai.asd.algoSceneDetectedIndoor"),          {391, 398, 400}};
constexpr ReadOp kDisplayEnable              {ByIndex(META_DISPLAY_ENABLE),                  MH_ERR("displayEnable"),                                  {450, 456, 457}, kWarning};
constexpr ReadOp kSelfieUnfold               {ByIndex(META_SELFIE_UNFOLD),                   MH_ERR("com.nuvaro.sessionparams.selfieUnfold"),          {530, 537, 539}};
constexpr ReadOp kLiveshotEnabled            {ByIndex(META_LIVESHOT_ENABLED),                MH_ERR("com.nuvaro.liveshot.enabled"),                    {546, 551, 552}};
constexpr ReadOp kMotionCaptureEnabledIcon   {ByIndex(META_MOTION_CAPTURE_ENABLED_ICON),     MH_ERR("nuvaro.ai.nvsd.motionCaptureEnabledIcon"),        {559, 566, 568}};
constexpr ReadOp kMotionCaptureType          {ByIndex(META_MOTION_CAPTURE_TYPE),             MH_ERR("nuvaro.ai.nvsd.motionCaptureType"),               {582, 589, 591}};
constexpr ReadOp kMotionCaptureFrameType     {ByIndex(META_MOTION_CAPTURE_FRAME_TYPE),       MH_ERR("nuvaro.ai.nvsd.motionCaptureFrameType"),          {598, 605, 607}};
constexpr ReadOp kIsZSLEnable                {ByNumber(ANDROID_CONTROL_ENABLE_ZSL),          MH_FAIL("ANDROID_CONTROL_ENABLE_ZSL"),                    {734, 739}};
constexpr ReadOp kNUPanshotFeatureEnable     {ByIndex(META_PANSHOT_FEATURE_ENABLE),          MH_FAIL("com.nuvaro.panshotTruck.FeatureEnable"),         {781, 787}};
constexpr ReadOp kNUAihighlightIs            {ByIndex(META_AI_HIGHLIGHT),                    MH_ERR("com.nv.node.nvaihighlight.isHighLight"),          {924, 931, 933}};
constexpr ReadOp kSunsetScene                {ByIndex(META_SUNSET_SCENE),                    MH_ERR("nuvaro.ai.asd.SunsetScene"),                      {378, 383, 384}};
constexpr ReadOp kAppMode                    {ByIndex(META_APP_MODULE),                      MH_ERR("nuvaro.app.module"),                              {940, 945, 946}};
constexpr ReadOp kPreAnchor                  {ByIndex(META_PRE_ANCHOR_PROC),                 MH_ERR("com.nuvaro.nvvi2.preAnchorProc"),                 {306, 312, 314}};
constexpr ReadOp kAnchorFrameNum             {ByIndex(META_ANCHOR_FRAME_NUM),                MH_ERR("com.nuvaro.nvvi2.anchorFrameNum"),                {320, 326, 328}};
constexpr ReadOp kConcertMode                {ByIndex(META_CONCERT_SCENE),                   MH_FAIL2("nuvaro.ai.asd.ConcertScene"),                   {721, 726, 727}};
constexpr ReadOp kPanshotTrackerInfo         {ByIndex(META_PANSHOT_TRUCK_RSLT4SNAPSHOT),     MH_FAIL("com.nuvaro.panshotTruck.Rslt4Snapshot"),         {1210, 1216}};
constexpr ReadOp kSDSRTrigger                {ByIndex(META_SDSR_TRIGGER),                    MH_FAIL("nuvaro.ai.asd.SDSRTrigger"),                     {1592, 1596}};
constexpr ReadOp kDiffusionSRMode            {ByIndex(META_DIFFUSION_SR_MODE),               MH_FAIL("com.nuvaro.stableDiffusionSR.mode"),             {1604, 1610}};
constexpr ReadOp kZSLQAlgoUpSup              {ByIndex(META_ZSLQ_ALGOUP_SUPPORTED),           MH_FAIL("nuvaro.nvvi.zslq.algoup.supported"),             {1765, 1771}};
constexpr ReadOp kAIspSelectAnchorOutput     {ByIndex(META_AISP_SELECTANCHOR_OUTPUT),        MH_ERR("NV_EXT_CTRL_AISP_SELECTANCHOR_OUTPUT"),           {1779, 1786, 1788}};
constexpr ReadOp kBandingSceneType           {ByIndex(META_BANDING_SCENE_TYPE),              MH_ERR12("nuvaro.ai.nvsd.bandingSceneType"),              {614, 620, 622}};
constexpr ReadOp kNuvaroDeviceOrientation    {ByIndex(META_DEVICE_ORIENTATION),              MH_ERR12("nuvaro.device.orientation"),                    {1796, 1800, 1801}};
constexpr ReadOp kNuvaroThermalLevel         {ByIndex(META_THERMAL_LEVEL),                   MH_ERR12("NV_THERMAL_LEVEL"),                             {1809, 1813, 1814}};
constexpr ReadOp kNuvaroThermalResult        {ByIndex(META_THERMAL_RESUIT),                  MH_ERR12("NV_THERMAL_RESUIT"),                            {1822, 1826, 1827}};
constexpr ReadOp kASDSmartScene              {ByIndex(META_ASD_SMART_SCENE),                 MH_ERR("com.nuvaro.camera.asd.smartScene"),               {2078, 2082, 2084}, kVerbose, kVerbose};
constexpr ReadOp kNuvaroFlipEnable           {ByIndex(META_FLIP_ENABLED),                    MH_ERR12("nuvaro.flip.enabled"),                          {2026, 2029, 2030}, kVerbose, kError, kFlipIsNull};
constexpr ReadOp kNuvaroAfInfoFocusedROIID   {ByIndex(META_AF_FOCUSED_ROI_ID),
                                                MH_MESSAGES("com.nuvaro.afinfo.FocusedROIID err", "get com.nuvaro.afinfo.FocusedROIID err"), {2065, 2069, 2070}};
constexpr ReadOp kComputeOpticsTrigger       {ByIndex(META_COMPUTE_OPTICS_TRIGGER),          MH_ERR("nuvaro.ai.asd.ComputeOpticsTrigger"),             {2122, 2128, 2130}};
constexpr ReadOp kThermalLevel               {ByName("nuvaro.thermal.thermalLevel"),
                                                MH_MESSAGES("GetMetadata thermalLevel err", "get metadata thermalLevel err"),       {2189, 2194, 2195}, kWarning};
constexpr ReadOp kMacroMode                  {ByName("nuvaro.MacroMode.enabled"),
                                                MH_MESSAGES("GetMetadata macroMode err", "get metadata macroMode err"),             {2245, 2250, 2251}, kWarning, kError, kMetaIsNull};

// Geometry, zoom and lens.
constexpr ReadOp kAndroidJpegOrientation     {ByNumber(ANDROID_JPEG_ORIENTATION),            MH_GENERIC,                                               {2323, 2324, 2325}};
constexpr ReadOp kCropRegion                 {ByIndex(META_SNAPSHOT_CROP_REGION),            MH_ERR("nuvaro.snapshot.cropRegion"),                     {2326, 2327, 2328}, kVerbose, kError, kOutputAndContainerChecked};
constexpr ReadOp kAndroidCropRegion          {ByNumber(ANDROID_SCALER_CROP_REGION),          MH_ERR("ANDROID_SCALER_CROP_REGION"),                     {2329, 2330, 2331}};
constexpr ReadOp kAndroidZoomRatio           {ByNumber(ANDROID_CONTROL_ZOOM_RATIO),
                                                MH_MESSAGES("GetMetaData ANDROID_CONTROL_ZOOM_RATIO fail", "get ANDROID_CONTROL_ZOOM_RATIO err"), {2332, 2333, 2334}};
constexpr ReadOp kApertureValue              {ByNumber(ANDROID_LENS_APERTURE),               MH_ERR("ANDROID_LENS_APERTURE"),                          {2335, 2336, 2337}};
constexpr ReadOp kActiveSize                 {ByNumber(ANDROID_SENSOR_INFO_ACTIVE_ARRAY_SIZE), MH_ERR("ANDROID_SENSOR_INFO_ACTIVE_ARRAY_SIZE"),        {2344, 2345, 2346}};
constexpr ReadOp kRealAvailableMinDigitalZoom{ByIndex(META_REAL_AVAILABLE_MIN_DIGITAL_ZOOM), MH_FAIL("com.nuvaro.scaler.realAvailableMinDigitalZoom"), {2350, 2351}};
constexpr ReadOp kContinuousOpticalZoom      {ByIndex(META_OPTICAL_ZOOM_CURRENT_RATIO),      MH_FAIL("com.nuvaro.optical.zoom.opticalZoomCurrentRatio"), {2352, 2353}};
constexpr ReadOp kAvailableMinDigitalZoom    {ByIndex(META_AVAILABLE_MIN_DIGITAL_ZOOM),      MH_FAIL("com.nuvaro.scaler.availableMinDigitalZoom"),     {2354, 2355}};
constexpr ReadOp kJPEGGPSCoordinates         {ByNumber(ANDROID_JPEG_GPS_COORDINATES),        MH_FAIL("ANDROID_JPEG_GPS_COORDINATES"),                  {2384, 2385}};
constexpr ReadOp kRotationMatrix             {ByIndex(META_ROTATION_MATRIX),                 MH_FAIL("rotationMatrix"),                                {2390, 2391}};
constexpr ReadOp kAndroidAFRegion            {ByNumber(ANDROID_CONTROL_AF_REGIONS),          kAfRegionMessages,                                        {2392, 2393, 2394}};
constexpr ReadOp kAndroidLensFocalLength     {ByNumber(ANDROID_LENS_FOCAL_LENGTH),           kAfRegionMessages,                                        {2395, 2396, 2397}};
constexpr ReadOp kNuvaroEquivalentFocalLength{ByIndex(META_FOCAL_LENGTH_35MM),               MH_ERR12("com.nuvaro.sensor.info.focalLength35mm"),       {2399, 2400, 2401}};
constexpr ReadOp kZoomEisEffective           {ByName("com.nuvaro.camera.zoomeis.effectiverate"),
                                                MH_MESSAGES("GetMetaData com.nuvaro.camera.zoomeis.effectiverate fail", "get com.nuvaro.camera.zoomeis.effectiverate err"), {2423, 2424, 2425}};

// Per-camera values from the static metadata: output, camera id, lookup, no data.
constexpr StaticReadOp kSensorBayerPatten    {ByNumber(ANDROID_SENSOR_INFO_COLOR_FILTER_ARRANGEMENT), MH_FAIL("ANDROID_SENSOR_INFO_COLOR_FILTER_ARRANGEMENT"), {1571, 1576, 1584}};
constexpr StaticReadOp kActiveArraySize      {ByNumber(ANDROID_SENSOR_INFO_ACTIVE_ARRAY_SIZE), MH_ONE_MESSAGE("Get ACTIVE_ARRAY_SIZE err"),      {2378, 2379, 2380}};
constexpr StaticReadOp kMaxActiveArraySize   {ByNumber(ANDROID_SENSOR_INFO_ACTIVE_ARRAY_SIZE_MAXIMUM_RESOLUTION),
                                                MH_ONE_MESSAGE("Get ANDROID_SENSOR_INFO_ACTIVE_ARRAY_SIZE_MAXIMUM_RESOLUTION err"),               {2381, 2382, 2383}};
constexpr StaticReadOp kSensorViewAngle      {ByIndex(META_VIEW_ANGLE),                      MH_ERR("ViewAngle"),                                      {2386, 2387, 2388, 2389}};

// Camera identity; role and facing are read from the static metadata.
constexpr ReadOp kPhyCameraId                {ByIndex(META_PHYS_CAMERA_ID),                  MH_ERR("nuvaro.snapshot.physCameraId"),                   {2320, 2321, 2322}};
constexpr ReadOp kFwkCameraId                {ByIndex(META_FWK_CAMERA_ID),                   MH_ERR("nuvaro.snapshot.fwkCameraId"),                    {2347, 2348, 2349}};
constexpr ReadOp kCameraRoleId               {ByIndex(META_CAMERA_ROLE_ID),
                                                MH_MESSAGES("GetMetadata com.nuvaro.cameraid.role.cameraId err", "GetMetadata com.nuvaro.cameraid.role.cameraId err"), {2414, 2415, 2416}};
constexpr ReadOp kAndroidLensFacing          {ByNumber(ANDROID_LENS_FACING),
                                                MH_MESSAGES("GetMetadata ANDROID_LENS_FACING err1", "GetMetadata  ANDROID_LENS_FACING err2"), {2420, 2421, 2422}};

// Bokeh records.
constexpr ReadOp kBokehRequestInfo           {ByIndex(META_BOKEH_CONFIG_REQUEST),            MH_ERR12("com.nuvaro.camera.bokehConfig.request"),        {2403, 2404, 2405}};
constexpr ReadOp kBokehSessionParamInfo      {ByIndex(META_BOKEH_CONFIG_STREAM),             MH_ERR12("com.nuvaro.camera.bokehConfig.stream"),         {2408, 2409, 2410}};
constexpr ReadOp kBokehCapabilityInfo        {ByIndex(META_BOKEH_CAPS_INFO),                 MH_ERR12("com.nuvaro.camera.bokehCaps.info"),             {kNoLine, 2411, 2412}};

// Writes: tag, failure message, {argument, failure} lines, whether an empty
// container is refused up front, failure level, argument level.
constexpr WriteOp kSetHazeratio              {ByIndex(META_AWB_HAZE_RATIO),                  MH_SET_ERR("com.nuvaro.3AAlgo.awbHazeRatio"),             {2338, 2339}, false};
constexpr WriteOp kSetAIToneFlag             {ByIndex(META_AEC_AI_TONE_FLAG),                MH_SET_ERR("com.nuvaro.3AAlgo.aecAItoneFlag"),            {2340, 2341}, false};
constexpr WriteOp kSetAllinoneResult         {ByIndex(META_ALLINONE_RESULT),                 MH_SET_ERR("nuvaro.snapshot.allinoneResult"),             {2342, 2343}, false, kVerbose, kVerbose};
constexpr WriteOp kSetLSC                    {ByNumber(ANDROID_STATISTICS_LENS_SHADING_MAP), MH_SET_ERR("ANDROID_STATISTICS_LENS_SHADING_MAP"),        {2356, 2357}};
constexpr WriteOp kSetNeutralPoint           {ByNumber(ANDROID_SENSOR_NEUTRAL_COLOR_POINT),  MH_SET_ERR("ANDROID_SENSOR_NEUTRAL_COLOR_POINT"),         {2358, 2359}};
constexpr WriteOp kSetBlackLevel             {ByNumber(ANDROID_SENSOR_DYNAMIC_BLACK_LEVEL),  MH_SET_ERR("ANDROID_SENSOR_DYNAMIC_BLACK_LEVEL"),         {2360, 2361}};
constexpr WriteOp kSetPostRawGain            {ByIndex(META_DNG_POST_RAW_GAIN),               MH_SET_ERR("com.nuvaro.dng.postRawGain"),                 {2362, 2363}};
constexpr WriteOp kSetUseToneCurve           {ByIndex(META_DNG_USE_TONE_CURVE),              MH_SET_ERR("com.nuvaro.dng.postRawGain"),                 {2364, 2365}, true, kVerbose, kVerbose};
constexpr WriteOp kSetWhitelevel             {ByNumber(ANDROID_SENSOR_DYNAMIC_WHITE_LEVEL),  MH_SET_ERR("ANDROID_SENSOR_DYNAMIC_WHITE_LEVEL"),         {2366, 2367}};
constexpr WriteOp kSetWhitelevelScaleFactor  {ByIndex(META_DNG_WHITELEVEL_SCALE_FACTOR),     MH_MESSAGE("SetMetadata com.nuvaro.dng.whitelevelScaleFactorerr"), {2368, 2369}};
constexpr WriteOp kSetAWBParam               {ByIndex(META_AWB_PARAM),                       MH_SET_ERR("ANDROID_SENSOR_DYNAMIC_WHITE_LEVEL"),         {2370, 2371}};
constexpr WriteOp kSetMultiframeDebugData    {ByIndex(META_MULTIFRAME_DEBUG_DATA),           MH_SET_ERR("nuvaro.multiframe.debugData"),                {2372, 2373}};
constexpr WriteOp kSetPanshotTruckInfo       {ByIndex(META_PANSHOT_TRUCK_RSLT4SNAPSHOT),     MH_SET_ERR("com.nuvaro.panshotTruck.Rslt4Snapshot"),      {2374, 2375}};
constexpr WriteOp kSetPanshotResult          {ByIndex(META_PANSHOT_RESULT),                  MH_SET_ERR("com.nuvaro.panshot.panshotResult"),           {2376, 2377}};
constexpr WriteOp kSetAndroidLensFocalLength {ByNumber(ANDROID_LENS_FOCAL_LENGTH),           MH_SET_ERR("ANDROID_LENS_FOCAL_LENGTH"),                  {kNoLine, 2398}, false};
constexpr WriteOp kSetNuvaroEquivalentFocalLength{ByIndex(META_FOCAL_LENGTH_35MM),           MH_SET_ERR("com.nuvaro.sensor.info.focalLength35mm"),     {kNoLine, 2402}, false};
constexpr WriteOp kSetBokehRequestInfoList   {ByName("com.nuvaro.camera.bokehConfig.request"), MH_SET_ERR("com.nuvaro.camera.bokehConfig.request"),    {2406, 2407}, false, kWarning};
constexpr WriteOp kSetAnchorFrameOrder       {ByName("com.nuvaro.nvvi2.anchorOutputOrder"),  MH_MESSAGE("set com.nuvaro.nvvi2.anchorOutputOrder fail"), {2426, 2427}, false, kWarning};
constexpr WriteOp kSetAnchorFrameIndex       {ByName("com.nuvaro.nvvi2.anchorFrameNum"),     MH_SET_ERR("com.nuvaro.nvvi2.anchorFrameNum"),            {kNoLine, 2428}, false, kWarning};
// clang-format on

// ---- What the special members compute --------------------------------------
camera_metadata_ro_entry FindByIndex(const NvMetadata& meta, META_TAG_INDEX index) {
  const uint32_t tag = MetaTagWrapper::getInstance()(index);
  return tag == kUndeclaredTag ? camera_metadata_ro_entry{} : meta.find(tag);
}

void AppendInts(const camera_metadata_ro_entry& entry, std::vector<int>& values) {
  values.insert(values.end(), entry.data.i32, entry.data.i32 + entry.count);
}

// One id, parsed from a terminated copy: the entry itself may end at the end
// of the data without a NUL, where atoi would read on past it.
int ParsePhysicalId(const char* text, size_t length) {
  char digits[32] = {};
  std::memcpy(digits, text, std::min(length, sizeof digits - 1));
  return std::atoi(digits);
}

// The ids are decimal strings, each closed by a NUL, back to back; a
// non-numeric entry reads as 0. A last entry without its NUL still ends the
// walk at the end of the data.
void AppendPhysicalIds(const char* text, size_t remaining, std::vector<int>& ids) {
  while (remaining != 0) {
    const size_t length = strnlen(text, remaining);
    ids.push_back(ParsePhysicalId(text, length));
    const size_t step = std::min(length + 1, remaining);
    text += step;
    remaining -= step;
  }
}

// Copies a tag between containers. False when the source lacks it; a tag this
// platform does not declare is skipped as if copied.
template <typename T>
bool CopyDeclaredTag(META_TAG_INDEX index, const NvMetadata& source, NvMetadata& destination) {
  const uint32_t tag = MetaTagWrapper::getInstance()(index);
  if (tag == kUndeclaredTag) return true;
  const camera_metadata_ro_entry entry = source.find(tag);
  if (entry.count == 0) return false;
  destination.update(tag, reinterpret_cast<const T*>(entry.data.u8), entry.count);
  return true;
}

// Dioptres to centimetres; infinity focus (0) and unusable values read as 10 m.
float FocusDistanceCm(float dioptres) {
  return dioptres > 0 ? static_cast<float>(100.0 / dioptres) : 1000.0f;
}

int ZeroExtended(uint8_t value) { return value; }

// One gain per colour channel and grid point.
size_t LensShadingBytes(nvholder::NULSCMapSize size) {
  return static_cast<size_t>(size.width) * static_cast<size_t>(size.height) * 4 * sizeof(float);
}

// Android regions are (xmin, ymin, xmax, ymax, weight) with inclusive bounds.
// The extents are formed in unsigned arithmetic: inverted or extreme bounds
// wrap as they do on the device instead of overflowing.
void StoreAfRegion(const void* data, nvholder::ChiRect* rect) {
  const auto xMin = Element<uint32_t>(data, 0);
  const auto yMin = Element<uint32_t>(data, 1);
  const auto xMax = Element<uint32_t>(data, 2);
  const auto yMax = Element<uint32_t>(data, 3);
  *rect = {xMin, yMin, xMax - xMin + 1, yMax - yMin + 1};
}

// Row-major 3 x 3 rationals. A zero denominator is repaired to 1 in the
// metadata itself, so later readers of the same request never divide by zero.
void ConvertColorTransform(camera_metadata_rational* matrix, float* out) {
  for (int i = 0; i < 9; ++i) {
    if (matrix[i].denominator == 0) matrix[i].denominator = 1;
    out[i] = static_cast<float>(matrix[i].numerator) / static_cast<float>(matrix[i].denominator);
  }
}

}  // namespace

// ---- Operations, in slot order -------------------------------------------
int metadataHelperBase::GetPhyCameraId(MetaPtr meta, unsigned char* out) {
  return ReadCopy(*this, MH_HERE, kPhyCameraId, std::move(meta), out);
}
int metadataHelperBase::GetSensorExposureTime(MetaPtr meta, long* out) {
  return ReadCopy(*this, MH_HERE, kSensorExposureTime, std::move(meta), out);
}
int metadataHelperBase::GetSmartAeInfo(MetaPtr meta, NV_SMARTAE_SUPER::SmartAEProcOutput* out) {
  return ReadCopy(*this, MH_HERE, kSmartAeInfo, std::move(meta), out);
}
int metadataHelperBase::GetAndroidJpegOrientation(MetaPtr meta, int* out) {
  return ReadCopy(*this, MH_HERE, kAndroidJpegOrientation, std::move(meta), out);
}
int metadataHelperBase::GetUIEV(MetaPtr /*meta*/, int* out) { return NotSupported(MH_HERE, 182, out); }
int metadataHelperBase::GetStylizationType(MetaPtr meta, unsigned char* out) {
  return ReadCopy(*this, MH_HERE, kStylizationType, std::move(meta), out);
}
int metadataHelperBase::GetSensorTimestamp(MetaPtr meta, unsigned long* out) {
  return ReadCopy(*this, MH_HERE, kSensorTimestamp, std::move(meta), out);
}
int metadataHelperBase::GetHighlightAnchorOrder(MetaPtr meta, int* out) {
  return ReadCopy(*this, MH_HERE, kHighlightAnchorOrder, std::move(meta), out);
}
// The stored byte is handed over as it stands, without folding it to 0/1.
int metadataHelperBase::GetStreetModeEnable(MetaPtr meta, bool* out) {
  return ReadCopy(*this, MH_HERE, kStreetModeEnable, std::move(meta), out);
}
int metadataHelperBase::GetEHDREnable(MetaPtr meta, int* out) {
  return ReadCopy(*this, MH_HERE, kEHDREnable, std::move(meta), out);
}
int metadataHelperBase::GetTeleFusionEnable(MetaPtr meta, unsigned char* out) {
  return ReadCopy(*this, MH_HERE, kTeleFusionEnable, std::move(meta), out);
}
int metadataHelperBase::GetIsPzslDisplayMode(MetaPtr meta, int* out) {
  return ReadCopy(*this, MH_HERE, kIsPzslDisplayMode, std::move(meta), out);
}
int metadataHelperBase::GetLivephotoIspGainFactor(MetaPtr meta, float* out) {
  return ReadCopy(*this, MH_HERE, kLivephotoIspGainFactor, std::move(meta), out);
}
int metadataHelperBase::GetStreetAnchorOrder(MetaPtr meta, int* out) {
  return ReadCopy(*this, MH_HERE, kStreetAnchorOrder, std::move(meta), out);
}
int metadataHelperBase::GetPreviewBrightnessInfo(MetaPtr /*meta*/, nvholder::PreviewBrightnessInfo* out) {
  return NotSupported(MH_HERE, 335, out);
}
// Looked up directly: the conversion writes the repaired denominators back.
int metadataHelperBase::GetColorCorrectionTransform(MetaPtr meta, float* out) {
  if (out == nullptr) {
    MH_LOG(kError, 342, MH_QUOTED("arg err"));
    return -1;
  }
  const camera_metadata_ro_entry entry = meta->find(ANDROID_COLOR_CORRECTION_TRANSFORM);
  if (entry.count == 0) {
    MH_LOG(kInfo, 354, "get ccm fail");
    return -1;
  }
  ConvertColorTransform(const_cast<camera_metadata_rational*>(entry.data.r), out);
  return 0;
}
int metadataHelperBase::GetAISceneResult(MetaPtr meta, nvholder::AIspSceneResult* out) {
  return ReadCopy(*this, MH_HERE, kAISceneResult, std::move(meta), out);
}
int metadataHelperBase::GetAISceneIndoor(MetaPtr meta, int* out) {
  return ReadCopy(*this, MH_HERE, kAISceneIndoor, std::move(meta), out);
}
int metadataHelperBase::GetWhiteBlackRatio(MetaPtr meta, float* out) {
  return ReadCopy(*this, MH_HERE, kWhiteBlackRatio, std::move(meta), out);
}
int metadataHelperBase::GetPreviewDarkGainRatio(MetaPtr meta, float* out) {
  return ReadCopy(*this, MH_HERE, kPreviewDarkGainRatio, std::move(meta), out);
}
int metadataHelperBase::GetPreviewAeRatio(MetaPtr meta, float* out) {
  return ReadCopy(*this, MH_HERE, kPreviewAeRatio, std::move(meta), out);
}
int metadataHelperBase::GetDisplayEnable(MetaPtr meta, unsigned char* out) {
  return ReadCopy(*this, MH_HERE, kDisplayEnable, std::move(meta), out);
}
int metadataHelperBase::GetSensorDynamicWhiteLevel(MetaPtr meta, int* out) {
  const int result = ReadCopy(*this, MH_HERE, kSensorDynamicWhiteLevel, std::move(meta), out);
  if (result == 0) MH_LOG(kInfo, 473, "ANDROID_SENSOR_DYNAMIC_WHITE_LEVEL: %d", *out);
  return result;
}
// One level per colour channel; the caller's array holds four.
int metadataHelperBase::GetSensorDynamicBlackLevel(MetaPtr meta, float* out) {
  return ReadCopy(*this, MH_HERE, kSensorDynamicBlackLevel, std::move(meta), out, 4 * sizeof(float));
}
int metadataHelperBase::GetPreviewExposure(MetaPtr meta, float* out) {
  return ReadCopy(*this, MH_HERE, kPreviewExposure, std::move(meta), out);
}
int metadataHelperBase::GetPreviewISPGain(MetaPtr /*meta*/, float* out) {
  return NotSupported(MH_HERE, 505, out);
}
int metadataHelperBase::GetAndroidTimeStamp(MetaPtr meta, unsigned long* out) {
  return ReadCopy(*this, MH_HERE, kAndroidTimeStamp, std::move(meta), out);
}
int metadataHelperBase::GetselfieUnfold(MetaPtr meta, int* out) {
  return ReadCopy(*this, MH_HERE, kSelfieUnfold, std::move(meta), out);
}
int metadataHelperBase::GetliveshotEnabled(MetaPtr meta, unsigned int* out) {
  return ReadCopy(*this, MH_HERE, kLiveshotEnabled, std::move(meta), out);
}
int metadataHelperBase::GetmotionCaptureEnabledIcon(MetaPtr meta, unsigned char* out) {
  return ReadCopy(*this, MH_HERE, kMotionCaptureEnabledIcon, std::move(meta), out);
}
int metadataHelperBase::GetSkinScore(MetaPtr /*meta*/, nvholder::NUSkinScore* out, unsigned char /*index*/) {
  return NotSupported(MH_HERE, 575, out);
}
int metadataHelperBase::GetMotionCaptureType(MetaPtr meta, unsigned int* out) {
  return ReadCopy(*this, MH_HERE, kMotionCaptureType, std::move(meta), out);
}
int metadataHelperBase::GetMotionCaptureFrameType(MetaPtr meta, unsigned int* out) {
  return ReadCopy(*this, MH_HERE, kMotionCaptureFrameType, std::move(meta), out);
}
int metadataHelperBase::GetMotionVelocity(MetaPtr /*meta*/, nvholder::MotionVelocity* /*out*/) {
  return kStub;
}
int metadataHelperBase::GetfocusDistCm(MetaPtr meta, float* out) {
  return ReadConverted<float>(*this, MH_HERE, kFocusDistCm, std::move(meta), out, FocusDistanceCm);
}
int metadataHelperBase::GetSensitivity(MetaPtr meta, int* out) {
  return ReadCopy(*this, MH_HERE, kSensitivity, std::move(meta), out);
}
int metadataHelperBase::GetAFState(MetaPtr meta, unsigned int* out) {
  return ReadCopy(*this, MH_HERE, kAFState, std::move(meta), out);
}
int metadataHelperBase::GetAFMode(MetaPtr meta, unsigned int* out) {
  return ReadCopy(*this, MH_HERE, kAFMode, std::move(meta), out);
}
// Sized by the caller's map, not by the count the tag reports.
int metadataHelperBase::GetLSC(MetaPtr meta, float* out, nvholder::NULSCMapSize mapSize) {
  return ReadCopy(*this, MH_HERE, kLSC, std::move(meta), out, LensShadingBytes(mapSize));
}
int metadataHelperBase::GetIsZSLEnable(MetaPtr meta, int* out) {
  return ReadConverted<uint8_t>(*this, MH_HERE, kIsZSLEnable, std::move(meta), out, ZeroExtended);
}
int metadataHelperBase::GetANDROIDFlashMode(MetaPtr meta, int* out) {
  return ReadConverted<uint8_t>(*this, MH_HERE, kAndroidFlashMode, std::move(meta), out, ZeroExtended);
}
int metadataHelperBase::GetNUFlashMode(MetaPtr meta, int* out) {
  return ReadCopy(*this, MH_HERE, kNUFlashMode, std::move(meta), out);
}
int metadataHelperBase::GetAndroidSensorFrameDuration(MetaPtr meta, unsigned long* out) {
  return ReadCopy(*this, MH_HERE, kAndroidSensorFrameDuration, std::move(meta), out);
}
int metadataHelperBase::GetNUPanshotFeatureEnable(MetaPtr meta, unsigned int* out) {
  return ReadCopy(*this, MH_HERE, kNUPanshotFeatureEnable, std::move(meta), out);
}
// The size and the in-sensor-zoom flag matter only where the platform
// computes the crop itself.
int metadataHelperBase::GetCropRegion(MetaPtr meta, nvholder::ChiRect* crop,
                                      nvholder::dimension /*sensorSize*/, bool /*isInSensorZoom*/) {
  return ReadCopy(*this, MH_HERE, kCropRegion, std::move(meta), crop);
}
int metadataHelperBase::GetAndroidCropRegion(MetaPtr meta, nvholder::ChiRect* out) {
  return ReadCopy(*this, MH_HERE, kAndroidCropRegion, std::move(meta), out);
}
int metadataHelperBase::GetAndroidZoomRatio(MetaPtr meta, float* out) {
  return ReadCopy(*this, MH_HERE, kAndroidZoomRatio, std::move(meta), out);
}
int metadataHelperBase::GetApertureValue(MetaPtr meta, float* out) {
  return ReadCopy(*this, MH_HERE, kApertureValue, std::move(meta), out);
}
// A presence test of the tag: callers look only at the result, so the output
// is neither checked nor written.
int metadataHelperBase::GetEcdStatus(MetaPtr meta, unsigned char* /*out*/) {
  const void* data = nullptr;
  return ReadTag(*this, MH_HERE, kEcdStatus, std::move(meta), &data);
}
int metadataHelperBase::GetNUAihighlightIs(MetaPtr meta, int* out) {
  return ReadCopy(*this, MH_HERE, kNUAihighlightIs, std::move(meta), out);
}
int metadataHelperBase::GetSunsetScene(MetaPtr meta, nvholder::Sunset_Scene_t* out) {
  return ReadCopy(*this, MH_HERE, kSunsetScene, std::move(meta), out);
}
int metadataHelperBase::SetISO(MetaPtr /*meta*/, int* /*value*/) { return kStub; }
int metadataHelperBase::GetISO(MetaPtr /*meta*/, int* /*out*/) { return kStub; }
int metadataHelperBase::SetIspGain(MetaPtr /*meta*/, float* /*value*/) { return kStub; }
int metadataHelperBase::SetHazeratio(MetaPtr meta, float* value) {
  return Write(*this, MH_HERE, kSetHazeratio, std::move(meta), value, 1);
}
int metadataHelperBase::SetAIToneFlag(MetaPtr meta, int* value) {
  return Write(*this, MH_HERE, kSetAIToneFlag, std::move(meta), value, 1);
}
int metadataHelperBase::SetAllinoneResult(MetaPtr meta, int* value) {
  return Write(*this, MH_HERE, kSetAllinoneResult, std::move(meta), value, 1);
}
int metadataHelperBase::GetAppMode(MetaPtr meta, int* out) {
  return ReadCopy(*this, MH_HERE, kAppMode, std::move(meta), out);
}
int metadataHelperBase::GetFaceLumaTarget(MetaPtr /*meta*/, float* out) {
  return NotSupported(MH_HERE, 1033, out);
}
int metadataHelperBase::GetNoFaceLumaTarget(MetaPtr /*meta*/, float* out) {
  return NotSupported(MH_HERE, 1049, out);
}
int metadataHelperBase::GetFrameLuma(MetaPtr /*meta*/, float* out) {
  return NotSupported(MH_HERE, 1064, out);
}
int metadataHelperBase::GetFrameLumaTarget(MetaPtr /*meta*/, float* out) {
  return NotSupported(MH_HERE, 1057, out);
}
int metadataHelperBase::GetTuningSensorMode(MetaPtr /*meta*/, int* out) {
  return NotSupported(MH_HERE, 1072, out);
}
int metadataHelperBase::GetPreAnchor(MetaPtr meta, int* out) {
  return ReadCopy(*this, MH_HERE, kPreAnchor, std::move(meta), out);
}
int metadataHelperBase::GetAnchorFrameNum(MetaPtr meta, int* out) {
  return ReadCopy(*this, MH_HERE, kAnchorFrameNum, std::move(meta), out);
}
int metadataHelperBase::GetGammaOutput(MetaPtr /*meta*/, nvholder::GammaInfo* out) {
  return NotSupported(MH_HERE, 698, out);
}
int metadataHelperBase::GetGammaOutput(MetaPtr /*meta*/, nvholder::GammaTableInfo* out) {
  return NotSupported(MH_HERE, 706, out);
}
// The active array as the request carries it; GetActiveArraySize reads the
// camera's static value instead.
int metadataHelperBase::GetActiveSize(MetaPtr meta, nvholder::ChiRect* out) {
  return ReadCopy(*this, MH_HERE, kActiveSize, std::move(meta), out);
}
int metadataHelperBase::GetFwkCameraId(MetaPtr meta, int* out) {
  return ReadCopy(*this, MH_HERE, kFwkCameraId, std::move(meta), out);
}
int metadataHelperBase::GetRealAvailableMinDigitalZoom(MetaPtr meta, float* out) {
  return ReadCopy(*this, MH_HERE, kRealAvailableMinDigitalZoom, std::move(meta), out);
}
int metadataHelperBase::GetContinuousOpticalZoom(MetaPtr meta, float* out) {
  return ReadCopy(*this, MH_HERE, kContinuousOpticalZoom, std::move(meta), out);
}
int metadataHelperBase::GetAvailableMinDigitalZoom(MetaPtr meta, float* out) {
  return ReadCopy(*this, MH_HERE, kAvailableMinDigitalZoom, std::move(meta), out);
}
int metadataHelperBase::GetFaceAverageBrightness(MetaPtr meta, float* out) {
  return ReadCopy(*this, MH_HERE, kFaceAverageBrightness, std::move(meta), out);
}
int metadataHelperBase::GetFacetargetAndConfidence(MetaPtr meta, float* out) {
  return ReadCopy(*this, MH_HERE, kFacetargetAndConfidence, std::move(meta), out, 10 * sizeof(float));
}
int metadataHelperBase::GetConcertMode(MetaPtr meta, int* out) {
  return ReadCopy(*this, MH_HERE, kConcertMode, std::move(meta), out);
}
int metadataHelperBase::GetCurLuma(MetaPtr /*meta*/, float* out) { return NotSupported(MH_HERE, 1145, out); }
int metadataHelperBase::GetTargetLuma(MetaPtr /*meta*/, float* out) {
  return NotSupported(MH_HERE, 1152, out);
}
int metadataHelperBase::GetIspGain(MetaPtr meta, float* out) {
  return ReadCopy(*this, MH_HERE, kIspGain, std::move(meta), out);
}
int metadataHelperBase::GetCurSensorMode(MetaPtr /*meta*/, int* out) {
  return NotSupported(MH_HERE, 81, out);
}
int metadataHelperBase::GetBlackLevelShift(MetaPtr meta, int* out) {
  return ReadCopy(*this, MH_HERE, kBlackLevelShift, std::move(meta), out);
}
int metadataHelperBase::GetSensorSOF(MetaPtr meta, unsigned long* out) {
  return ReadCopy(*this, MH_HERE, kSensorSOF, std::move(meta), out);
}
int metadataHelperBase::GetSensorReadOutTime(MetaPtr meta, unsigned long* out) {
  return ReadCopy(*this, MH_HERE, kSensorReadOutTime, std::move(meta), out);
}
int metadataHelperBase::GetShootingTimeStamp(MetaPtr meta, unsigned long* out) {
  return ReadCopy(*this, MH_HERE, kShootingTimeStamp, std::move(meta), out);
}
int metadataHelperBase::GetQTimerTimeStamp(MetaPtr /*meta*/, unsigned long* out) {
  return NotSupported(MH_HERE, 148, out);
}
int metadataHelperBase::GetPanshotTrackerInfo(MetaPtr meta, unsigned int* out) {
  return ReadCopy(*this, MH_HERE, kPanshotTrackerInfo, std::move(meta), out, 6 * sizeof(unsigned int));
}
int metadataHelperBase::GetPreviewADRCGain(MetaPtr /*meta*/, float* out) {
  return NotSupported(MH_HERE, 512, out);
}
int metadataHelperBase::GetAeRatio(MetaPtr meta, float* out) {
  return ReadCopy(*this, MH_HERE, kAeRatio, std::move(meta), out);
}
int metadataHelperBase::GetIrRatio(MetaPtr meta, float* out) {
  return ReadCopy(*this, MH_HERE, kIrRatio, std::move(meta), out);
}
int metadataHelperBase::GetRealCCT(MetaPtr meta, unsigned int* out) {
  return ReadCopy(*this, MH_HERE, kRealCCT, std::move(meta), out);
}
// The whole byte array becomes the string, a stored terminating zero included.
// Both arguments must be valid: neither is checked.
int metadataHelperBase::GetImgName(MetaPtr meta, std::string* out) {
  const camera_metadata_ro_entry entry = FindByIndex(*meta, META_SNAPSHOT_IMAGE_NAME);
  if (entry.count == 0) {
    MH_LOG(kError, 1239, "GetMetadata nuvaro.snapshot.imageName err");
    return -1;
  }
  *out = std::string(reinterpret_cast<const char*>(entry.data.u8), entry.count);
  return 0;
}
int metadataHelperBase::SetSnapshotReqInfo(MetaPtr meta, nvholder::SnapshotReqInfo* info) {
  return NotSupported(MH_HERE, 2305, info, meta);
}
int metadataHelperBase::SetLSC(MetaPtr meta, float* values, int count) {
  return Write(*this, MH_HERE, kSetLSC, std::move(meta), values, static_cast<uint32_t>(count));
}
int metadataHelperBase::SetNeutralPoint(MetaPtr meta, camera_metadata_rational* values, int count) {
  return Write(*this, MH_HERE, kSetNeutralPoint, std::move(meta), values, static_cast<uint32_t>(count));
}
int metadataHelperBase::SetBlackLevel(MetaPtr meta, float* values, int count) {
  return Write(*this, MH_HERE, kSetBlackLevel, std::move(meta), values, static_cast<uint32_t>(count));
}
int metadataHelperBase::SetPostRawGain(MetaPtr meta, float* value) {
  return Write(*this, MH_HERE, kSetPostRawGain, std::move(meta), value, 1);
}
int metadataHelperBase::SetUseToneCurve(MetaPtr meta, unsigned char* value) {
  return Write(*this, MH_HERE, kSetUseToneCurve, std::move(meta), value, 1);
}
int metadataHelperBase::SetWhitelevel(MetaPtr meta, int* value) {
  return Write(*this, MH_HERE, kSetWhitelevel, std::move(meta), value, 1);
}
int metadataHelperBase::SetWhitelevelScaleFactor(MetaPtr meta, float* value) {
  return Write(*this, MH_HERE, kSetWhitelevelScaleFactor, std::move(meta), value, 1);
}
int metadataHelperBase::SetAWBParam(MetaPtr meta, unsigned char* values, int count) {
  return Write(*this, MH_HERE, kSetAWBParam, std::move(meta), values, static_cast<uint32_t>(count));
}
int metadataHelperBase::SetMultiframeDebugData(MetaPtr meta, unsigned char* values, int count) {
  return Write(*this, MH_HERE, kSetMultiframeDebugData, std::move(meta), values,
               static_cast<uint32_t>(count));
}
int metadataHelperBase::SetPanshotTruckInfo(MetaPtr meta, int* values, int count) {
  return Write(*this, MH_HERE, kSetPanshotTruckInfo, std::move(meta), values, static_cast<uint32_t>(count));
}
int metadataHelperBase::SetPanshotResult(MetaPtr meta, unsigned char* values, int count) {
  return Write(*this, MH_HERE, kSetPanshotResult, std::move(meta), values, static_cast<uint32_t>(count));
}
int metadataHelperBase::GetNuvaroSensorModeType(MetaPtr /*meta*/, nvholder::NVSENSORMODETYPE* /*out*/) {
  return kStub;
}
int metadataHelperBase::GetSensorBayerPatten(MetaPtr meta, unsigned char* out) {
  return ReadStaticCopy(*this, MH_HERE, kSensorBayerPatten, std::move(meta), out);
}
int metadataHelperBase::GetSDSRTrigger(MetaPtr meta, int* out) {
  return ReadCopy(*this, MH_HERE, kSDSRTrigger, std::move(meta), out);
}
int metadataHelperBase::GetDiffusionSRMode(MetaPtr meta, int* out) {
  return ReadCopy(*this, MH_HERE, kDiffusionSRMode, std::move(meta), out);
}
int metadataHelperBase::GetAWBFrameControl(MetaPtr meta, nvholder::NUAWBFrameControl* out) {
  return ReadCopy(*this, MH_HERE, kAWBFrameControl, std::move(meta), out);
}
int metadataHelperBase::GetShiftDataFromHolder(long /*timestamp*/, int /*phyId*/,
                                               nvholder::ShiftData* /*shiftData*/) {
  return kStub;
}
int metadataHelperBase::GetFdData(MetaPtr /*meta*/, nvholder::NUNvFDRawSnapshotParam* out) {
  return NotSupported(MH_HERE, 1080, out);
}
int metadataHelperBase::SetFdData(MetaPtr meta, nvholder::NUNvFDRawSnapshotParam* param) {
  return NotSupported(MH_HERE, 1088, param, meta);
}
int metadataHelperBase::GetGTMTable(MetaPtr /*meta*/, nvholder::GTMInfo* out) {
  return NotSupported(MH_HERE, 714, out);
}
int metadataHelperBase::GetAWBCustomSnapshotWBInfo(MetaPtr /*meta*/, nvholder::NUAWBOutSnapshotWbInfo* out) {
  return NotSupported(MH_HERE, 1138, out);
}
int metadataHelperBase::GetAECFrameControl(MetaPtr meta, nvholder::NUAECFrameControl* out) {
  return ReadCopy(*this, MH_HERE, kAECFrameControl, std::move(meta), out);
}
int metadataHelperBase::SetAECFrameControl(MetaPtr meta, nvholder::NUAECFrameControl* control) {
  return NotSupported(MH_HERE, 2307, control, meta);
}
int metadataHelperBase::GetSensorExpInfo(MetaPtr meta, nvholder::SensorMultiExposureInfo* out) {
  return NotSupported(MH_HERE, 1182, out, meta);
}
int metadataHelperBase::GetGyroInfo(MetaPtr /*meta*/, nvholder::ChiFrameGyro* out) {
  return NotSupported(MH_HERE, 1203, out);
}
int metadataHelperBase::GetPanshotResData(MetaPtr /*meta*/, nvholder::panshotData* /*out*/) { return kStub; }
int metadataHelperBase::GetMultiCameraIds(MetaPtr /*meta*/, nvholder::MultiCameraIds* /*out*/) {
  return kStub;
}
int metadataHelperBase::SetCropRegion(MetaPtr meta, nvholder::ChiRect* crop) {
  return NotSupported(MH_HERE, 2303, crop, meta);
}
int metadataHelperBase::GetSnapshotReqInfo(MetaPtr /*meta*/, nvholder::SnapshotReqInfo* /*out*/) {
  return kStub;
}
int metadataHelperBase::SetGainMapEvInfo(MetaPtr meta, nvholder::GainmapEvInfo* info) {
  return NotSupported(MH_HERE, 2309, info, meta);
}
int metadataHelperBase::GetActiveArraySize(MetaPtr meta, nvholder::ChiRect* out) {
  return ReadStaticCopy(*this, MH_HERE, kActiveArraySize, std::move(meta), out);
}
int metadataHelperBase::GetMaxActiveArraySize(MetaPtr meta, nvholder::ChiRect* out) {
  return ReadStaticCopy(*this, MH_HERE, kMaxActiveArraySize, std::move(meta), out);
}
int metadataHelperBase::GetStaticMetaSensorCaps(MetaPtr /*meta*/, nvholder::SensorCaps* /*out*/) {
  return kStub;
}
int metadataHelperBase::GetSensorMetaDataSensorModeInfo(MetaPtr /*meta*/, nvholder::SensorModeInfo* /*out*/) {
  return kStub;
}
int metadataHelperBase::GetLongExpControl(MetaPtr meta, unsigned char* out) {
  return ReadCopy(*this, MH_HERE, kLongExpControl, std::move(meta), out);
}
int metadataHelperBase::GetLongExpMode(MetaPtr meta, unsigned char* out) {
  return ReadCopy(*this, MH_HERE, kLongExpMode, std::move(meta), out);
}
int metadataHelperBase::GetlongExposureMode(MetaPtr meta, unsigned char* out) {
  return ReadCopy(*this, MH_HERE, kLongExposureMode, std::move(meta), out);
}
int metadataHelperBase::GetMFInputNum(MetaPtr meta, int* out) {
  return ReadCopy(*this, MH_HERE, kMFInputNum, std::move(meta), out);
}
int metadataHelperBase::GetLSCMapSize(MetaPtr meta, nvholder::NULSCMapSize* out) {
  return ReadCopy(*this, MH_HERE, kLSCMapSize, std::move(meta), out);
}
int metadataHelperBase::GetAECompensation(MetaPtr meta, int* out) {
  return ReadCopy(*this, MH_HERE, kAECompensation, std::move(meta), out);
}
// Latitude, longitude, altitude.
int metadataHelperBase::GetJPEGGPSCoordinates(MetaPtr meta, double* out) {
  return ReadCopy(*this, MH_HERE, kJPEGGPSCoordinates, std::move(meta), out, 3 * sizeof(double));
}
int metadataHelperBase::GetSensorViewAngle(MetaPtr meta, double* out) {
  return ReadStaticCopy(*this, MH_HERE, kSensorViewAngle, std::move(meta), out, 2 * sizeof(double));
}
// A 3 x 3 matrix as stored.
int metadataHelperBase::GetRotationMatrix(MetaPtr meta, float* out) {
  return ReadCopy(*this, MH_HERE, kRotationMatrix, std::move(meta), out, 9 * sizeof(float));
}
int metadataHelperBase::GetTuningMode(MetaPtr /*meta*/, void* /*out*/) { return kStub; }
int metadataHelperBase::GetNZSLWBInfo(MetaPtr /*meta*/, nvholder::AWBOutBpsWbFactor* /*out*/) {
  return kStub;
}
int metadataHelperBase::GetZSLQAlgoUpSup(MetaPtr meta, unsigned char* out) {
  return ReadCopy(*this, MH_HERE, kZSLQAlgoUpSup, std::move(meta), out);
}
int metadataHelperBase::GetAIspSelectAnchorOutput(MetaPtr meta, nvholder::AIspSelectAnchorOutput* out) {
  return ReadCopy(*this, MH_HERE, kAIspSelectAnchorOutput, std::move(meta), out);
}
int metadataHelperBase::GetBandingSceneType(MetaPtr meta, int* out) {
  return ReadCopy(*this, MH_HERE, kBandingSceneType, std::move(meta), out);
}
int metadataHelperBase::GetNuvaroDeviceOrientation(MetaPtr meta, int* out) {
  return ReadCopy(*this, MH_HERE, kNuvaroDeviceOrientation, std::move(meta), out);
}
int metadataHelperBase::GetNuvaroThermalLevel(MetaPtr meta, int* out) {
  return ReadCopy(*this, MH_HERE, kNuvaroThermalLevel, std::move(meta), out);
}
int metadataHelperBase::GetNuvaroThermalResult(MetaPtr meta, int* out) {
  return ReadCopy(*this, MH_HERE, kNuvaroThermalResult, std::move(meta), out);
}
int metadataHelperBase::GetAndroidAFRegion(MetaPtr meta, nvholder::ChiRect* out) {
  return ReadWith(*this, MH_HERE, kAndroidAFRegion, std::move(meta), out, StoreAfRegion);
}
int metadataHelperBase::GetAndroidLensFocalLength(MetaPtr meta, float* out) {
  return ReadCopy(*this, MH_HERE, kAndroidLensFocalLength, std::move(meta), out);
}
int metadataHelperBase::SetAndroidLensFocalLength(MetaPtr meta, float value) {
  return Write(*this, MH_HERE, kSetAndroidLensFocalLength, std::move(meta), &value, 1);
}
int metadataHelperBase::GetNuvaroEquivalentFocalLength(MetaPtr meta, float* out) {
  return ReadCopy(*this, MH_HERE, kNuvaroEquivalentFocalLength, std::move(meta), out);
}
int metadataHelperBase::SetNuvaroEquivalentFocalLength(MetaPtr meta, float value) {
  return Write(*this, MH_HERE, kSetNuvaroEquivalentFocalLength, std::move(meta), &value, 1);
}
int metadataHelperBase::GetBokehRequestInfo(MetaPtr meta, __bokehRequestInfoList* info) {
  return ReadCopy(*this, MH_HERE, kBokehRequestInfo, std::move(meta), info);
}
// The record travels as an opaque block of bytes, its size as the count.
int metadataHelperBase::SetBokehRequestInfoList(MetaPtr meta, __bokehRequestInfoList* info) {
  return Write<void>(*this, MH_HERE, kSetBokehRequestInfoList, std::move(meta), info, sizeof(*info));
}
int metadataHelperBase::GetBokehSessionParamInfo(MetaPtr meta, __bokehConfigStreamInfoList* info) {
  return ReadCopy(*this, MH_HERE, kBokehSessionParamInfo, std::move(meta), info);
}
// Callers test this result for non-zero: it is the low 32 bits of the tag's
// data address on success and 0 on failure. A null record only skips the copy.
int metadataHelperBase::GetBokehCapabilityInfo(MetaPtr meta, __bokehCapabilityInfoList* info) {
  const void* data = nullptr;
  if (ReadTag(*this, MH_HERE, kBokehCapabilityInfo, meta, &data) != 0) return 0;
  if (info != nullptr) std::memcpy(info, data, sizeof(*info));
  return static_cast<int>(static_cast<uint32_t>(reinterpret_cast<uintptr_t>(data)));
}
// Both containers must be valid. The results of the writes do not matter to
// callers: the operation always succeeds.
int metadataHelperBase::UpdateGainMapMeta(MetaPtr source, MetaPtr destination) {
  if (!CopyDeclaredTag<uint8_t>(META_GAINMAP_METADATA, *source, *destination))
    MH_LOG(kInfo, 2413, "get ultrahdr metadata failed.");
  CopyDeclaredTag<float>(META_GAINMAP_VALUES, *source, *destination);
  return 0;
}
int metadataHelperBase::GetCameraRoleId(int fwkCameraId, int* roleId) {
  if (roleId == nullptr) return RefuseArgument(MH_HERE, kCameraRoleId);
  return ReadCopy(*this, MH_HERE, kCameraRoleId, StaticMetaOf(fwkCameraId), roleId);
}
// A request without a framework id asks for camera -1.
int metadataHelperBase::GetCameraRoleId(MetaPtr meta, int* roleId) {
  return GetCameraRoleId(FwkCameraIdOf(*this, std::move(meta)), roleId);
}
// Appends; a platform without the role list, or a camera without one, adds
// nothing and still succeeds.
int metadataHelperBase::GetCameraRoleIds(MetaPtr meta, std::vector<int>& roleIds) {
  const int cameraId = FwkCameraIdOf(*this, std::move(meta));
  const MetaPtr staticMeta = StaticMetaOf(cameraId);
  if (!staticMeta) {
    MH_LOG(kVerbose, 2417, "Get static meta for fwkCameraId %d fail", cameraId);
    return -1;
  }
  AppendInts(FindByIndex(*staticMeta, META_CAMERA_ROLE_IDS), roleIds);
  return 0;
}
int metadataHelperBase::GetASDSmartScene(MetaPtr meta, nvholder::SmartScene* out) {
  return ReadCopy(*this, MH_HERE, kASDSmartScene, std::move(meta), out);
}
// Appends; a camera without the tag adds nothing and still succeeds.
int metadataHelperBase::GetAndroidLogicalMultiCameraPhysicalIds(int fwkCameraId, std::vector<int>& ids) {
  const MetaPtr staticMeta = StaticMetaOf(fwkCameraId);
  if (!staticMeta) {
    MH_LOG(kVerbose, 2418, "Get static meta for fwkCameraId %d fail", fwkCameraId);
    return -1;
  }
  const camera_metadata_ro_entry entry = staticMeta->find(ANDROID_LOGICAL_MULTI_CAMERA_PHYSICAL_IDS);
  AppendPhysicalIds(reinterpret_cast<const char*>(entry.data.u8), entry.count, ids);
  return 0;
}
int metadataHelperBase::GetAndroidLogicalMultiCameraPhysicalIds(MetaPtr meta, std::vector<int>& ids) {
  return GetAndroidLogicalMultiCameraPhysicalIds(FwkCameraIdOf(*this, std::move(meta)), ids);
}
// Physical cameras whose role cannot be read are left out.
int metadataHelperBase::GetAndroidLogicalMultiCameraPhysicalRoleIds(MetaPtr meta, std::vector<int>& roleIds) {
  std::vector<int> physicalIds;
  if (GetAndroidLogicalMultiCameraPhysicalIds(std::move(meta), physicalIds) != 0) {
    MH_LOG(kVerbose, 2419, MH_QUOTED("get phyCamFwkIds fail"));
    return -1;
  }
  for (const int physicalId : physicalIds) {
    int roleId = -1;
    if (GetCameraRoleId(physicalId, &roleId) == 0) roleIds.push_back(roleId);
  }
  return 0;
}
int metadataHelperBase::GetNuvaroFlipEnable(MetaPtr meta, signed char* out) {
  return ReadCopy(*this, MH_HERE, kNuvaroFlipEnable, std::move(meta), out);
}
// Always the static facing of the request's camera, never a request value.
int metadataHelperBase::GetAndroidLensFacing(MetaPtr meta, unsigned char* facing) {
  if (facing == nullptr) return RefuseArgument(MH_HERE, kAndroidLensFacing);
  return ReadCopy(*this, MH_HERE, kAndroidLensFacing, StaticMetaOf(FwkCameraIdOf(*this, std::move(meta))),
                  facing);
}
// A camera whose facing cannot be read counts as a rear camera.
bool metadataHelperBase::IsRearCamera(MetaPtr meta) {
  unsigned char facing = kLensFacingBack;
  GetAndroidLensFacing(std::move(meta), &facing);
  return facing == kLensFacingBack;
}
int metadataHelperBase::GetNuvaroAfInfoFocusedROIID(MetaPtr meta, int* out) {
  return ReadCopy(*this, MH_HERE, kNuvaroAfInfoFocusedROIID, std::move(meta), out);
}
int metadataHelperBase::GetNuvaroFrameSyncTimestampGap(MetaPtr meta, long* out) {
  return ReadCopy(*this, MH_HERE, kFrameSyncTimestampGap, std::move(meta), out);
}
int metadataHelperBase::GetMxDebaningLbmfMode(MetaPtr /*meta*/, int* /*out*/) { return kStub; }
int metadataHelperBase::GetNuvaroMxdebandingDetectResult(MetaPtr /*meta*/, int* /*out*/) { return kStub; }
int metadataHelperBase::GetWhiteBlackOutput(MetaPtr /*meta*/, float* /*out*/) { return kStub; }
int metadataHelperBase::GetSTAFDistanceInfo(MetaPtr meta, nvholder::STAFDistanceInfo* out) {
  return ReadCopy(*this, MH_HERE, kSTAFDistanceInfo, std::move(meta), out);
}
int metadataHelperBase::GetComputeOpticsTrigger(MetaPtr meta, int* out) {
  return ReadCopy(*this, MH_HERE, kComputeOpticsTrigger, std::move(meta), out);
}
int metadataHelperBase::GetZslSelectorInfoDetail(MetaPtr /*meta*/, std::string& /*detail*/) { return kStub; }
int metadataHelperBase::SetZslSelectorInfoDetail(MetaPtr /*meta*/, std::string& /*detail*/) { return kStub; }
int metadataHelperBase::GetLuxIndex(MetaPtr /*meta*/, int* /*out*/) { return kStub; }
int metadataHelperBase::getPass1CropRegion(MetaPtr /*meta*/, nvholder::ChiRect* crop, int /*sensorId*/) {
  return NotSupported(MH_HERE, 2301, crop);
}
int metadataHelperBase::GetExpIndex(MetaPtr /*meta*/, long* /*out*/) { return kStub; }
int metadataHelperBase::GetAdrcGain(MetaPtr /*meta*/, float* /*out*/) { return kStub; }
int metadataHelperBase::GetSensorGain(MetaPtr /*meta*/, float* /*out*/) { return kStub; }
int metadataHelperBase::GetZoomEisEffective(MetaPtr meta, float* out) {
  return ReadCopy(*this, MH_HERE, kZoomEisEffective, std::move(meta), out);
}
int metadataHelperBase::GetThermalLevel(MetaPtr meta, int* out) {
  return ReadCopy(*this, MH_HERE, kThermalLevel, std::move(meta), out);
}
// Appends to what the caller's vector already holds.
int metadataHelperBase::GetAnchorFrameOrder(MetaPtr meta, std::vector<int>& order) {
  if (!meta) {
    MH_LOG(kError, 2203, MH_QUOTED("meta is null"));
    return -1;
  }
  const camera_metadata_ro_entry entry = meta->find("com.nuvaro.nvvi2.anchorOutputOrder");
  if (entry.count == 0) {
    MH_LOG(kWarning, 2206, MH_QUOTED("find com.nuvaro.nvvi2.anchorOutputOrder fail"));
    return -1;
  }
  AppendInts(entry, order);
  return 0;
}
// An empty order is refused as a missing argument; any failed write is -1.
int metadataHelperBase::SetAnchorFrameOrder(MetaPtr meta, std::vector<int>& order) {
  int* values = order.empty() ? nullptr : order.data();
  const int result = Write(*this, MH_HERE, kSetAnchorFrameOrder, std::move(meta), values,
                           static_cast<uint32_t>(order.size()));
  return result == 0 ? 0 : -1;
}
int metadataHelperBase::SetAnchorFrameIndex(MetaPtr meta, int index) {
  return Write(*this, MH_HERE, kSetAnchorFrameIndex, std::move(meta), &index, 1);
}
int metadataHelperBase::GetVendorCameraId(MetaPtr /*meta*/, int* /*out*/) { return kStub; }
int metadataHelperBase::GetMacroMode(MetaPtr meta, int* out) {
  return ReadCopy(*this, MH_HERE, kMacroMode, std::move(meta), out);
}
int metadataHelperBase::GetNvAwbSpecialLightConfidence(MetaPtr meta, int* out) {
  return ReadCopy(*this, MH_HERE, kNvAwbSpecialLightConfidence, std::move(meta), out);
}
int metadataHelperBase::GetFaceRect(MetaPtr /*meta*/, int /*width*/, int /*height*/, FacesInfo& /*faces*/,
                                    nvholder::NUNvFDRawSnapshotParam* /*param*/) {
  return kStub;
}
int metadataHelperBase::GetFocusROI(MetaPtr /*meta*/, nvholder::dimension /*size*/,
                                    __UtilsImage_Rect* /*rect*/, __UtilsImage_point* /*point*/, bool, bool) {
  return kStub;
}
int metadataHelperBase::SetFacesInfoHolder(MetaPtr /*source*/, MetaPtr /*destination*/) { return kStub; }
int metadataHelperBase::SetFocusROI(MetaPtr /*source*/, MetaPtr /*destination*/) { return kStub; }

}  // namespace metahelper
