// The helper's virtual slot order, checked from a caller's side.
//
// Callers are compiled against a declaration of the slot table, not against
// this project's header. This test declares the table the way such a caller
// does (CallerHelper below, written from the slot table) and calls every slot
// through it on an object laid out by the project's header: a recorder whose
// every override notes which operation ran. Any reordering, missing overload
// or changed signature in the header makes a call land in the wrong slot.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "MtkMetadataHelper.h"
#include "TestSupport.h"

namespace {

using Meta = std::shared_ptr<NvMetadata>;

struct Args {
  FacesInfo faces{};
  std::vector<int> ids;
  std::string text;
};

// X(slot, return type, operation, parameter types, call arguments)
// clang-format off
#define HELPER_SLOTS(X) \
  X(  3, int , GetPhyCameraId, (Meta, unsigned char*), (Meta{}, nullptr)) \
  X(  4, int , GetSensorExposureTime, (Meta, long*), (Meta{}, nullptr)) \
  X(  5, int , GetSmartAeInfo, (Meta, NV_SMARTAE_SUPER::SmartAEProcOutput*), (Meta{}, nullptr)) \
  X(  6, int , GetAndroidJpegOrientation, (Meta, int*), (Meta{}, nullptr)) \
  X(  7, int , GetUIEV, (Meta, int*), (Meta{}, nullptr)) \
  X(  8, int , GetStylizationType, (Meta, unsigned char*), (Meta{}, nullptr)) \
  X(  9, int , GetSensorTimestamp, (Meta, unsigned long*), (Meta{}, nullptr)) \
  X( 10, int , GetHighlightAnchorOrder, (Meta, int*), (Meta{}, nullptr)) \
  X( 11, int , GetStreetModeEnable, (Meta, bool*), (Meta{}, nullptr)) \
  X( 12, int , GetEHDREnable, (Meta, int*), (Meta{}, nullptr)) \
  X( 13, int , GetTeleFusionEnable, (Meta, unsigned char*), (Meta{}, nullptr)) \
  X( 14, int , GetIsPzslDisplayMode, (Meta, int*), (Meta{}, nullptr)) \
  X( 15, int , GetLivephotoIspGainFactor, (Meta, float*), (Meta{}, nullptr)) \
  X( 16, int , GetStreetAnchorOrder, (Meta, int*), (Meta{}, nullptr)) \
  X( 17, int , GetPreviewBrightnessInfo, (Meta, nvholder::PreviewBrightnessInfo*), (Meta{}, nullptr)) \
  X( 18, int , GetColorCorrectionTransform, (Meta, float*), (Meta{}, nullptr)) \
  X( 19, int , GetAISceneResult, (Meta, nvholder::AIspSceneResult*), (Meta{}, nullptr)) \
  X( 20, int , GetAISceneIndoor, (Meta, int*), (Meta{}, nullptr)) \
  X( 21, int , GetWhiteBlackRatio, (Meta, float*), (Meta{}, nullptr)) \
  X( 22, int , GetPreviewDarkGainRatio, (Meta, float*), (Meta{}, nullptr)) \
  X( 23, int , GetPreviewAeRatio, (Meta, float*), (Meta{}, nullptr)) \
  X( 24, int , GetDisplayEnable, (Meta, unsigned char*), (Meta{}, nullptr)) \
  X( 25, int , GetSensorDynamicWhiteLevel, (Meta, int*), (Meta{}, nullptr)) \
  X( 26, int , GetSensorDynamicBlackLevel, (Meta, float*), (Meta{}, nullptr)) \
  X( 27, int , GetPreviewExposure, (Meta, float*), (Meta{}, nullptr)) \
  X( 28, int , GetPreviewISPGain, (Meta, float*), (Meta{}, nullptr)) \
  X( 29, int , GetAndroidTimeStamp, (Meta, unsigned long*), (Meta{}, nullptr)) \
  X( 30, int , GetselfieUnfold, (Meta, int*), (Meta{}, nullptr)) \
  X( 31, int , GetliveshotEnabled, (Meta, unsigned int*), (Meta{}, nullptr)) \
  X( 32, int , GetmotionCaptureEnabledIcon, (Meta, unsigned char*), (Meta{}, nullptr)) \
  X( 33, int , GetSkinScore, (Meta, nvholder::NUSkinScore*, unsigned char), (Meta{}, nullptr, 0)) \
  X( 34, int , GetMotionCaptureType, (Meta, unsigned int*), (Meta{}, nullptr)) \
  X( 35, int , GetMotionCaptureFrameType, (Meta, unsigned int*), (Meta{}, nullptr)) \
  X( 36, int , GetMotionVelocity, (Meta, nvholder::MotionVelocity*), (Meta{}, nullptr)) \
  X( 37, int , GetfocusDistCm, (Meta, float*), (Meta{}, nullptr)) \
  X( 38, int , GetSensitivity, (Meta, int*), (Meta{}, nullptr)) \
  X( 39, int , GetAFState, (Meta, unsigned int*), (Meta{}, nullptr)) \
  X( 40, int , GetAFMode, (Meta, unsigned int*), (Meta{}, nullptr)) \
  X( 41, int , GetLSC, (Meta, float*, nvholder::NULSCMapSize), (Meta{}, nullptr, nvholder::NULSCMapSize{})) \
  X( 42, int , GetIsZSLEnable, (Meta, int*), (Meta{}, nullptr)) \
  X( 43, int , GetANDROIDFlashMode, (Meta, int*), (Meta{}, nullptr)) \
  X( 44, int , GetNUFlashMode, (Meta, int*), (Meta{}, nullptr)) \
  X( 45, int , GetAndroidSensorFrameDuration, (Meta, unsigned long*), (Meta{}, nullptr)) \
  X( 46, int , GetNUPanshotFeatureEnable, (Meta, unsigned int*), (Meta{}, nullptr)) \
  X( 47, int , GetCropRegion, (Meta, nvholder::ChiRect*, nvholder::dimension, bool), (Meta{}, nullptr, nvholder::dimension{}, false)) \
  X( 48, int , GetAndroidCropRegion, (Meta, nvholder::ChiRect*), (Meta{}, nullptr)) \
  X( 49, int , GetAndroidZoomRatio, (Meta, float*), (Meta{}, nullptr)) \
  X( 50, int , GetApertureValue, (Meta, float*), (Meta{}, nullptr)) \
  X( 51, int , GetEcdStatus, (Meta, unsigned char*), (Meta{}, nullptr)) \
  X( 52, int , GetNUAihighlightIs, (Meta, int*), (Meta{}, nullptr)) \
  X( 53, int , GetSunsetScene, (Meta, nvholder::Sunset_Scene_t*), (Meta{}, nullptr)) \
  X( 54, int , SetISO, (Meta, int*), (Meta{}, nullptr)) \
  X( 55, int , GetISO, (Meta, int*), (Meta{}, nullptr)) \
  X( 56, int , SetIspGain, (Meta, float*), (Meta{}, nullptr)) \
  X( 57, int , SetHazeratio, (Meta, float*), (Meta{}, nullptr)) \
  X( 58, int , SetAIToneFlag, (Meta, int*), (Meta{}, nullptr)) \
  X( 59, int , SetAllinoneResult, (Meta, int*), (Meta{}, nullptr)) \
  X( 60, int , GetAppMode, (Meta, int*), (Meta{}, nullptr)) \
  X( 61, int , GetFaceLumaTarget, (Meta, float*), (Meta{}, nullptr)) \
  X( 62, int , GetNoFaceLumaTarget, (Meta, float*), (Meta{}, nullptr)) \
  X( 63, int , GetFrameLuma, (Meta, float*), (Meta{}, nullptr)) \
  X( 64, int , GetFrameLumaTarget, (Meta, float*), (Meta{}, nullptr)) \
  X( 65, int , GetTuningSensorMode, (Meta, int*), (Meta{}, nullptr)) \
  X( 66, int , GetPreAnchor, (Meta, int*), (Meta{}, nullptr)) \
  X( 67, int , GetAnchorFrameNum, (Meta, int*), (Meta{}, nullptr)) \
  X( 68, int , GetGammaOutput, (Meta, nvholder::GammaInfo*), (Meta{}, static_cast<nvholder::GammaInfo*>(nullptr))) \
  X( 69, int , GetGammaOutput, (Meta, nvholder::GammaTableInfo*), (Meta{}, static_cast<nvholder::GammaTableInfo*>(nullptr))) \
  X( 70, int , GetActiveSize, (Meta, nvholder::ChiRect*), (Meta{}, nullptr)) \
  X( 71, int , GetFwkCameraId, (Meta, int*), (Meta{}, nullptr)) \
  X( 72, int , GetRealAvailableMinDigitalZoom, (Meta, float*), (Meta{}, nullptr)) \
  X( 73, int , GetContinuousOpticalZoom, (Meta, float*), (Meta{}, nullptr)) \
  X( 74, int , GetAvailableMinDigitalZoom, (Meta, float*), (Meta{}, nullptr)) \
  X( 75, int , GetFaceAverageBrightness, (Meta, float*), (Meta{}, nullptr)) \
  X( 76, int , GetFacetargetAndConfidence, (Meta, float*), (Meta{}, nullptr)) \
  X( 77, int , GetConcertMode, (Meta, int*), (Meta{}, nullptr)) \
  X( 78, int , GetCurLuma, (Meta, float*), (Meta{}, nullptr)) \
  X( 79, int , GetTargetLuma, (Meta, float*), (Meta{}, nullptr)) \
  X( 80, int , GetIspGain, (Meta, float*), (Meta{}, nullptr)) \
  X( 81, int , GetCurSensorMode, (Meta, int*), (Meta{}, nullptr)) \
  X( 82, int , GetBlackLevelShift, (Meta, int*), (Meta{}, nullptr)) \
  X( 83, int , GetSensorSOF, (Meta, unsigned long*), (Meta{}, nullptr)) \
  X( 84, int , GetSensorReadOutTime, (Meta, unsigned long*), (Meta{}, nullptr)) \
  X( 85, int , GetShootingTimeStamp, (Meta, unsigned long*), (Meta{}, nullptr)) \
  X( 86, int , GetQTimerTimeStamp, (Meta, unsigned long*), (Meta{}, nullptr)) \
  X( 87, int , GetPanshotTrackerInfo, (Meta, unsigned int*), (Meta{}, nullptr)) \
  X( 88, int , GetPreviewADRCGain, (Meta, float*), (Meta{}, nullptr)) \
  X( 89, int , GetAeRatio, (Meta, float*), (Meta{}, nullptr)) \
  X( 90, int , GetIrRatio, (Meta, float*), (Meta{}, nullptr)) \
  X( 91, int , GetRealCCT, (Meta, unsigned int*), (Meta{}, nullptr)) \
  X( 92, int , GetImgName, (Meta, std::string*), (Meta{}, nullptr)) \
  X( 93, int , SetSnapshotReqInfo, (Meta, nvholder::SnapshotReqInfo*), (Meta{}, nullptr)) \
  X( 94, int , SetLSC, (Meta, float*, int), (Meta{}, nullptr, 0)) \
  X( 95, int , SetNeutralPoint, (Meta, camera_metadata_rational*, int), (Meta{}, nullptr, 0)) \
  X( 96, int , SetBlackLevel, (Meta, float*, int), (Meta{}, nullptr, 0)) \
  X( 97, int , SetPostRawGain, (Meta, float*), (Meta{}, nullptr)) \
  X( 98, int , SetUseToneCurve, (Meta, unsigned char*), (Meta{}, nullptr)) \
  X( 99, int , SetWhitelevel, (Meta, int*), (Meta{}, nullptr)) \
  X(100, int , SetWhitelevelScaleFactor, (Meta, float*), (Meta{}, nullptr)) \
  X(101, int , SetAWBParam, (Meta, unsigned char*, int), (Meta{}, nullptr, 0)) \
  X(102, int , SetMultiframeDebugData, (Meta, unsigned char*, int), (Meta{}, nullptr, 0)) \
  X(103, int , SetPanshotTruckInfo, (Meta, int*, int), (Meta{}, nullptr, 0)) \
  X(104, int , SetPanshotResult, (Meta, unsigned char*, int), (Meta{}, nullptr, 0)) \
  X(105, int , GetNuvaroSensorModeType, (Meta, nvholder::NVSENSORMODETYPE*), (Meta{}, nullptr)) \
  X(106, int , GetSensorBayerPatten, (Meta, unsigned char*), (Meta{}, nullptr)) \
  X(107, int , GetSDSRTrigger, (Meta, int*), (Meta{}, nullptr)) \
  X(108, int , GetDiffusionSRMode, (Meta, int*), (Meta{}, nullptr)) \
  X(109, int , GetAWBFrameControl, (Meta, nvholder::NUAWBFrameControl*), (Meta{}, nullptr)) \
  X(110, int , GetShiftDataFromHolder, (long, int, nvholder::ShiftData*), (0, 0, nullptr)) \
  X(111, int , GetFdData, (Meta, nvholder::NUNvFDRawSnapshotParam*), (Meta{}, nullptr)) \
  X(112, int , SetFdData, (Meta, nvholder::NUNvFDRawSnapshotParam*), (Meta{}, nullptr)) \
  X(113, int , GetGTMTable, (Meta, nvholder::GTMInfo*), (Meta{}, nullptr)) \
  X(114, int , GetAWBCustomSnapshotWBInfo, (Meta, nvholder::NUAWBOutSnapshotWbInfo*), (Meta{}, nullptr)) \
  X(115, int , GetAECFrameControl, (Meta, nvholder::NUAECFrameControl*), (Meta{}, nullptr)) \
  X(116, int , SetAECFrameControl, (Meta, nvholder::NUAECFrameControl*), (Meta{}, nullptr)) \
  X(117, int , GetSensorExpInfo, (Meta, nvholder::SensorMultiExposureInfo*), (Meta{}, nullptr)) \
  X(118, int , GetGyroInfo, (Meta, nvholder::ChiFrameGyro*), (Meta{}, nullptr)) \
  X(119, int , GetPanshotResData, (Meta, nvholder::panshotData*), (Meta{}, nullptr)) \
  X(120, int , GetMultiCameraIds, (Meta, nvholder::MultiCameraIds*), (Meta{}, nullptr)) \
  X(121, int , SetCropRegion, (Meta, nvholder::ChiRect*), (Meta{}, nullptr)) \
  X(122, int , GetSnapshotReqInfo, (Meta, nvholder::SnapshotReqInfo*), (Meta{}, nullptr)) \
  X(123, int , SetGainMapEvInfo, (Meta, nvholder::GainmapEvInfo*), (Meta{}, nullptr)) \
  X(124, int , GetActiveArraySize, (Meta, nvholder::ChiRect*), (Meta{}, nullptr)) \
  X(125, int , GetMaxActiveArraySize, (Meta, nvholder::ChiRect*), (Meta{}, nullptr)) \
  X(126, int , GetStaticMetaSensorCaps, (Meta, nvholder::SensorCaps*), (Meta{}, nullptr)) \
  X(127, int , GetSensorMetaDataSensorModeInfo, (Meta, nvholder::SensorModeInfo*), (Meta{}, nullptr)) \
  X(128, int , GetLongExpControl, (Meta, unsigned char*), (Meta{}, nullptr)) \
  X(129, int , GetLongExpMode, (Meta, unsigned char*), (Meta{}, nullptr)) \
  X(130, int , GetlongExposureMode, (Meta, unsigned char*), (Meta{}, nullptr)) \
  X(131, int , GetMFInputNum, (Meta, int*), (Meta{}, nullptr)) \
  X(132, int , GetLSCMapSize, (Meta, nvholder::NULSCMapSize*), (Meta{}, nullptr)) \
  X(133, int , GetAECompensation, (Meta, int*), (Meta{}, nullptr)) \
  X(134, int , GetJPEGGPSCoordinates, (Meta, double*), (Meta{}, nullptr)) \
  X(135, int , GetSensorViewAngle, (Meta, double*), (Meta{}, nullptr)) \
  X(136, int , GetRotationMatrix, (Meta, float*), (Meta{}, nullptr)) \
  X(137, int , GetTuningMode, (Meta, void*), (Meta{}, nullptr)) \
  X(138, int , GetNZSLWBInfo, (Meta, nvholder::AWBOutBpsWbFactor*), (Meta{}, nullptr)) \
  X(139, int , GetZSLQAlgoUpSup, (Meta, unsigned char*), (Meta{}, nullptr)) \
  X(140, int , GetAIspSelectAnchorOutput, (Meta, nvholder::AIspSelectAnchorOutput*), (Meta{}, nullptr)) \
  X(141, int , GetBandingSceneType, (Meta, int*), (Meta{}, nullptr)) \
  X(142, int , GetNuvaroDeviceOrientation, (Meta, int*), (Meta{}, nullptr)) \
  X(143, int , GetNuvaroThermalLevel, (Meta, int*), (Meta{}, nullptr)) \
  X(144, int , GetNuvaroThermalResult, (Meta, int*), (Meta{}, nullptr)) \
  X(145, int , GetAndroidAFRegion, (Meta, nvholder::ChiRect*), (Meta{}, nullptr)) \
  X(146, int , GetAndroidLensFocalLength, (Meta, float*), (Meta{}, nullptr)) \
  X(147, int , SetAndroidLensFocalLength, (Meta, float), (Meta{}, 0.0f)) \
  X(148, int , GetNuvaroEquivalentFocalLength, (Meta, float*), (Meta{}, nullptr)) \
  X(149, int , SetNuvaroEquivalentFocalLength, (Meta, float), (Meta{}, 0.0f)) \
  X(150, int , GetBokehRequestInfo, (Meta, __bokehRequestInfoList*), (Meta{}, nullptr)) \
  X(151, int , SetBokehRequestInfoList, (Meta, __bokehRequestInfoList*), (Meta{}, nullptr)) \
  X(152, int , GetBokehSessionParamInfo, (Meta, __bokehConfigStreamInfoList*), (Meta{}, nullptr)) \
  X(153, int , GetBokehCapabilityInfo, (Meta, __bokehCapabilityInfoList*), (Meta{}, nullptr)) \
  X(154, int , UpdateGainMapMeta, (Meta, Meta), (Meta{}, Meta{})) \
  X(155, int , GetCameraRoleId, (int, int*), (0, nullptr)) \
  X(156, int , GetCameraRoleId, (Meta, int*), (Meta{}, nullptr)) \
  X(157, int , GetCameraRoleIds, (Meta, std::vector<int>&), (Meta{}, a.ids)) \
  X(158, int , GetASDSmartScene, (Meta, nvholder::SmartScene*), (Meta{}, nullptr)) \
  X(159, int , GetAndroidLogicalMultiCameraPhysicalIds, (int, std::vector<int>&), (0, a.ids)) \
  X(160, int , GetAndroidLogicalMultiCameraPhysicalIds, (Meta, std::vector<int>&), (Meta{}, a.ids)) \
  X(161, int , GetAndroidLogicalMultiCameraPhysicalRoleIds, (Meta, std::vector<int>&), (Meta{}, a.ids)) \
  X(162, int , GetNuvaroFlipEnable, (Meta, signed char*), (Meta{}, nullptr)) \
  X(163, int , GetAndroidLensFacing, (Meta, unsigned char*), (Meta{}, nullptr)) \
  X(164, bool, IsRearCamera, (Meta), (Meta{})) \
  X(165, int , GetNuvaroAfInfoFocusedROIID, (Meta, int*), (Meta{}, nullptr)) \
  X(166, int , GetNuvaroFrameSyncTimestampGap, (Meta, long*), (Meta{}, nullptr)) \
  X(167, int , GetMxDebaningLbmfMode, (Meta, int*), (Meta{}, nullptr)) \
  X(168, int , GetNuvaroMxdebandingDetectResult, (Meta, int*), (Meta{}, nullptr)) \
  X(169, int , GetWhiteBlackOutput, (Meta, float*), (Meta{}, nullptr)) \
  X(170, int , GetSTAFDistanceInfo, (Meta, nvholder::STAFDistanceInfo*), (Meta{}, nullptr)) \
  X(171, int , GetComputeOpticsTrigger, (Meta, int*), (Meta{}, nullptr)) \
  X(172, int , GetZslSelectorInfoDetail, (Meta, std::string&), (Meta{}, a.text)) \
  X(173, int , SetZslSelectorInfoDetail, (Meta, std::string&), (Meta{}, a.text)) \
  X(174, int , GetLuxIndex, (Meta, int*), (Meta{}, nullptr)) \
  X(175, int , getPass1CropRegion, (Meta, nvholder::ChiRect*, int), (Meta{}, nullptr, 0)) \
  X(176, int , GetExpIndex, (Meta, long*), (Meta{}, nullptr)) \
  X(177, int , GetAdrcGain, (Meta, float*), (Meta{}, nullptr)) \
  X(178, int , GetSensorGain, (Meta, float*), (Meta{}, nullptr)) \
  X(179, int , GetZoomEisEffective, (Meta, float*), (Meta{}, nullptr)) \
  X(180, int , GetThermalLevel, (Meta, int*), (Meta{}, nullptr)) \
  X(181, int , GetAnchorFrameOrder, (Meta, std::vector<int>&), (Meta{}, a.ids)) \
  X(182, int , SetAnchorFrameOrder, (Meta, std::vector<int>&), (Meta{}, a.ids)) \
  X(183, int , SetAnchorFrameIndex, (Meta, int), (Meta{}, 0)) \
  X(184, int , GetVendorCameraId, (Meta, int*), (Meta{}, nullptr)) \
  X(185, int , GetMacroMode, (Meta, int*), (Meta{}, nullptr)) \
  X(186, int , GetNvAwbSpecialLightConfidence, (Meta, int*), (Meta{}, nullptr)) \
  X(187, int , GetFaceRect, (Meta, int, int, FacesInfo&, nvholder::NUNvFDRawSnapshotParam*), (Meta{}, 0, 0, a.faces, nullptr)) \
  X(188, int , GetFocusROI, (Meta, nvholder::dimension, __UtilsImage_Rect*, __UtilsImage_point*, bool, bool), (Meta{}, nvholder::dimension{}, nullptr, nullptr, false, false)) \
  X(189, int , SetFacesInfoHolder, (Meta, Meta), (Meta{}, Meta{})) \
  X(190, int , SetFocusROI, (Meta, Meta), (Meta{}, Meta{}))
// clang-format on

// What a caller compiles against: the slot table, nothing of the project's.
class CallerHelper {
 public:
  virtual ~CallerHelper() = default;  // slots 1 and 2
#define DECLARE_SLOT(slot, ret, name, params, args) virtual ret name params = 0;
  HELPER_SLOTS(DECLARE_SLOT)
#undef DECLARE_SLOT
};

class CallerMtkHelper : public CallerHelper {
 public:
  virtual int GetStgExpInfo(Meta, nvholder::SensorMultiExposureInfo*) = 0;  // slot 191
};

class CallerManager {
 public:
  virtual ~CallerManager() = default;  // slots 1 and 2
  virtual int Init() = 0;
  virtual std::shared_ptr<CallerHelper> GetMetadataHelper() = 0;
};

// Laid out by the project's header; every override records its slot.
class SlotRecorder : public metahelper::metadataHelperBase {
 public:
  int last = 0;
#define RECORD_SLOT(slot, ret, name, params, args) \
  ret name params override {                       \
    last = slot;                                   \
    return {};                                     \
  }
  HELPER_SLOTS(RECORD_SLOT)
#undef RECORD_SLOT
};

TEST(SlotOrder, EverySlotOfTheCallersTableRunsThatOperation) {
  SlotRecorder recorder;
  auto* caller = reinterpret_cast<CallerHelper*>(static_cast<metahelper::metadataHelperBase*>(&recorder));
  Args a;
  int calls = 0;
#define CALL_SLOT(slot, ret, name, params, args) \
  recorder.last = 0;                             \
  caller->name args;                             \
  EXPECT_EQ(slot, recorder.last) << #name;       \
  ++calls;
  HELPER_SLOTS(CALL_SLOT)
#undef CALL_SLOT
  EXPECT_EQ(188, calls);  // 190 slots less the two destructors
}

// The real library, reached the way a caller reaches it: dlopen, the
// unmangled GetInstance, and only the caller's declarations.
class LoadedLibrary : public ::testing::Test {
 protected:
  void SetUp() override {
    handle_ = dlopen("libmetadataHelper.so", RTLD_NOW);
    ASSERT_NE(nullptr, handle_) << dlerror();
    auto getInstance = reinterpret_cast<void* (*)()>(dlsym(handle_, "GetInstance"));
    ASSERT_NE(nullptr, getInstance);
    manager_ = static_cast<CallerManager*>(getInstance());
  }
  void TearDown() override {
    if (handle_ != nullptr) dlclose(handle_);
  }
  void* handle_ = nullptr;
  CallerManager* manager_ = nullptr;
};

TEST_F(LoadedLibrary, ManagerSlotsAndTheHandedOutHelper) {
  EXPECT_EQ(0, manager_->Init());
  std::shared_ptr<CallerHelper> helper = manager_->GetMetadataHelper();
  ASSERT_NE(nullptr, helper);
  testsupport::LogCapture log;
  // A not-supported slot names itself in its "arg err" line, so the function
  // printed tells which operation the caller's slot reached.
  EXPECT_EQ(-1, helper->GetSensorSOF(nullptr, nullptr));
  EXPECT_EQ(-1, helper->GetSkinScore(nullptr, nullptr, 0));
  EXPECT_EQ(-1, helper->GetWhiteBlackOutput(nullptr, nullptr));
  EXPECT_EQ(-1, static_cast<CallerMtkHelper*>(helper.get())->GetStgExpInfo(nullptr, nullptr));
  std::vector<std::string> functions;
  for (const auto& line : log.online) functions.push_back(line.function);
  EXPECT_EQ((std::vector<std::string>{"GetSensorSOF", "GetSkinScore", "GetWhiteBlackOutput", "GetStgExpInfo"}),
            functions);
}

}  // namespace
