// The metadata helper interface.
//
// Callers are built against this class: the order of the virtual operations
// below is the calling interface (slot 1 and 2 are the destructors) and must
// never change. New operations may only be appended.
#pragma once

#include <MetaTagWrapper.h>
#include <NvMetadata.h>
#include <system/camera_metadata.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "nvholder/NvHolderTypes.h"

#define METAHELPER_EXPORT __attribute__((visibility("default")))

namespace metahelper {

using MetaPtr = std::shared_ptr<NvMetadata>;

class METAHELPER_EXPORT metadataHelperBase {
 public:
  metadataHelperBase() = default;
  virtual ~metadataHelperBase();

  virtual int GetPhyCameraId(MetaPtr meta, unsigned char* out);
  virtual int GetSensorExposureTime(MetaPtr meta, long* out);
  virtual int GetSmartAeInfo(MetaPtr meta, NV_SMARTAE_SUPER::SmartAEProcOutput* out);
  virtual int GetAndroidJpegOrientation(MetaPtr meta, int* out);
  virtual int GetUIEV(MetaPtr meta, int* out);
  virtual int GetStylizationType(MetaPtr meta, unsigned char* out);
  virtual int GetSensorTimestamp(MetaPtr meta, unsigned long* out);
  virtual int GetHighlightAnchorOrder(MetaPtr meta, int* out);
  virtual int GetStreetModeEnable(MetaPtr meta, bool* out);
  virtual int GetEHDREnable(MetaPtr meta, int* out);  // slot 12
  virtual int GetTeleFusionEnable(MetaPtr meta, unsigned char* out);
  virtual int GetIsPzslDisplayMode(MetaPtr meta, int* out);
  virtual int GetLivephotoIspGainFactor(MetaPtr meta, float* out);
  virtual int GetStreetAnchorOrder(MetaPtr meta, int* out);
  virtual int GetPreviewBrightnessInfo(MetaPtr meta, nvholder::PreviewBrightnessInfo* out);
  virtual int GetColorCorrectionTransform(MetaPtr meta, float* out);
  virtual int GetAISceneResult(MetaPtr meta, nvholder::AIspSceneResult* out);
  virtual int GetAISceneIndoor(MetaPtr meta, int* out);
  virtual int GetWhiteBlackRatio(MetaPtr meta, float* out);
  virtual int GetPreviewDarkGainRatio(MetaPtr meta, float* out);  // slot 22
  virtual int GetPreviewAeRatio(MetaPtr meta, float* out);
  virtual int GetDisplayEnable(MetaPtr meta, unsigned char* out);
  virtual int GetSensorDynamicWhiteLevel(MetaPtr meta, int* out);
  virtual int GetSensorDynamicBlackLevel(MetaPtr meta, float* out);
  virtual int GetPreviewExposure(MetaPtr meta, float* out);
  virtual int GetPreviewISPGain(MetaPtr meta, float* out);
  virtual int GetAndroidTimeStamp(MetaPtr meta, unsigned long* out);
  virtual int GetselfieUnfold(MetaPtr meta, int* out);
  virtual int GetliveshotEnabled(MetaPtr meta, unsigned int* out);
  virtual int GetmotionCaptureEnabledIcon(MetaPtr meta, unsigned char* out);  // slot 32
  virtual int GetSkinScore(MetaPtr meta, nvholder::NUSkinScore* out, unsigned char index);
  virtual int GetMotionCaptureType(MetaPtr meta, unsigned int* out);
  virtual int GetMotionCaptureFrameType(MetaPtr meta, unsigned int* out);
  virtual int GetMotionVelocity(MetaPtr meta, nvholder::MotionVelocity* out);
  virtual int GetfocusDistCm(MetaPtr meta, float* out);
  virtual int GetSensitivity(MetaPtr meta, int* out);
  virtual int GetAFState(MetaPtr meta, unsigned int* out);
  virtual int GetAFMode(MetaPtr meta, unsigned int* out);
  virtual int GetLSC(MetaPtr meta, float* out, nvholder::NULSCMapSize mapSize);
  virtual int GetIsZSLEnable(MetaPtr meta, int* out);  // slot 42
  virtual int GetANDROIDFlashMode(MetaPtr meta, int* out);
  virtual int GetNUFlashMode(MetaPtr meta, int* out);
  virtual int GetAndroidSensorFrameDuration(MetaPtr meta, unsigned long* out);
  virtual int GetNUPanshotFeatureEnable(MetaPtr meta, unsigned int* out);
  virtual int GetCropRegion(MetaPtr meta, nvholder::ChiRect* crop, nvholder::dimension sensorSize,
                            bool isInSensorZoom);
  virtual int GetAndroidCropRegion(MetaPtr meta, nvholder::ChiRect* out);
  virtual int GetAndroidZoomRatio(MetaPtr meta, float* out);
  virtual int GetApertureValue(MetaPtr meta, float* out);
  virtual int GetEcdStatus(MetaPtr meta, unsigned char* out);
  virtual int GetNUAihighlightIs(MetaPtr meta, int* out);  // slot 52
  virtual int GetSunsetScene(MetaPtr meta, nvholder::Sunset_Scene_t* out);
  virtual int SetISO(MetaPtr meta, int* value);
  virtual int GetISO(MetaPtr meta, int* out);
  virtual int SetIspGain(MetaPtr meta, float* value);
  virtual int SetHazeratio(MetaPtr meta, float* value);
  virtual int SetAIToneFlag(MetaPtr meta, int* value);
  virtual int SetAllinoneResult(MetaPtr meta, int* value);
  virtual int GetAppMode(MetaPtr meta, int* out);
  virtual int GetFaceLumaTarget(MetaPtr meta, float* out);
  virtual int GetNoFaceLumaTarget(MetaPtr meta, float* out);  // slot 62
  virtual int GetFrameLuma(MetaPtr meta, float* out);
  virtual int GetFrameLumaTarget(MetaPtr meta, float* out);
  virtual int GetTuningSensorMode(MetaPtr meta, int* out);
  virtual int GetPreAnchor(MetaPtr meta, int* out);
  virtual int GetAnchorFrameNum(MetaPtr meta, int* out);
  virtual int GetGammaOutput(MetaPtr meta, nvholder::GammaInfo* out);
  virtual int GetGammaOutput(MetaPtr meta, nvholder::GammaTableInfo* out);
  virtual int GetActiveSize(MetaPtr meta, nvholder::ChiRect* out);
  virtual int GetFwkCameraId(MetaPtr meta, int* out);
  virtual int GetRealAvailableMinDigitalZoom(MetaPtr meta, float* out);  // slot 72
  virtual int GetContinuousOpticalZoom(MetaPtr meta, float* out);
  virtual int GetAvailableMinDigitalZoom(MetaPtr meta, float* out);
  virtual int GetFaceAverageBrightness(MetaPtr meta, float* out);
  virtual int GetFacetargetAndConfidence(MetaPtr meta, float* out);
  virtual int GetConcertMode(MetaPtr meta, int* out);
  virtual int GetCurLuma(MetaPtr meta, float* out);
  virtual int GetTargetLuma(MetaPtr meta, float* out);
  virtual int GetIspGain(MetaPtr meta, float* out);
  virtual int GetCurSensorMode(MetaPtr meta, int* out);
  virtual int GetBlackLevelShift(MetaPtr meta, int* out);  // slot 82
  virtual int GetSensorSOF(MetaPtr meta, unsigned long* out);
  virtual int GetSensorReadOutTime(MetaPtr meta, unsigned long* out);
  virtual int GetShootingTimeStamp(MetaPtr meta, unsigned long* out);
  virtual int GetQTimerTimeStamp(MetaPtr meta, unsigned long* out);
  virtual int GetPanshotTrackerInfo(MetaPtr meta, unsigned int* out);
  virtual int GetPreviewADRCGain(MetaPtr meta, float* out);
  virtual int GetAeRatio(MetaPtr meta, float* out);
  virtual int GetIrRatio(MetaPtr meta, float* out);
  virtual int GetRealCCT(MetaPtr meta, unsigned int* out);
  virtual int GetImgName(MetaPtr meta, std::string* out);  // slot 92
  virtual int SetSnapshotReqInfo(MetaPtr meta, nvholder::SnapshotReqInfo* info);
  virtual int SetLSC(MetaPtr meta, float* values, int count);
  virtual int SetNeutralPoint(MetaPtr meta, camera_metadata_rational* values, int count);
  virtual int SetBlackLevel(MetaPtr meta, float* values, int count);
  virtual int SetPostRawGain(MetaPtr meta, float* value);
  virtual int SetUseToneCurve(MetaPtr meta, unsigned char* value);
  virtual int SetWhitelevel(MetaPtr meta, int* value);
  virtual int SetWhitelevelScaleFactor(MetaPtr meta, float* value);
  virtual int SetAWBParam(MetaPtr meta, unsigned char* values, int count);
  virtual int SetMultiframeDebugData(MetaPtr meta, unsigned char* values, int count);  // slot 102
  virtual int SetPanshotTruckInfo(MetaPtr meta, int* values, int count);
  virtual int SetPanshotResult(MetaPtr meta, unsigned char* values, int count);
  virtual int GetNuvaroSensorModeType(MetaPtr meta, nvholder::NVSENSORMODETYPE* out);
  virtual int GetSensorBayerPatten(MetaPtr meta, unsigned char* out);
  virtual int GetSDSRTrigger(MetaPtr meta, int* out);
  virtual int GetDiffusionSRMode(MetaPtr meta, int* out);
  virtual int GetAWBFrameControl(MetaPtr meta, nvholder::NUAWBFrameControl* out);
  virtual int GetShiftDataFromHolder(long timestamp, int phyId, nvholder::ShiftData* shiftData);
  virtual int GetFdData(MetaPtr meta, nvholder::NUNvFDRawSnapshotParam* out);
  virtual int SetFdData(MetaPtr meta, nvholder::NUNvFDRawSnapshotParam* param);  // slot 112
  virtual int GetGTMTable(MetaPtr meta, nvholder::GTMInfo* out);
  virtual int GetAWBCustomSnapshotWBInfo(MetaPtr meta, nvholder::NUAWBOutSnapshotWbInfo* out);
  virtual int GetAECFrameControl(MetaPtr meta, nvholder::NUAECFrameControl* out);
  virtual int SetAECFrameControl(MetaPtr meta, nvholder::NUAECFrameControl* control);
  virtual int GetSensorExpInfo(MetaPtr meta, nvholder::SensorMultiExposureInfo* out);
  virtual int GetGyroInfo(MetaPtr meta, nvholder::ChiFrameGyro* out);
  virtual int GetPanshotResData(MetaPtr meta, nvholder::panshotData* out);
  virtual int GetMultiCameraIds(MetaPtr meta, nvholder::MultiCameraIds* out);
  virtual int SetCropRegion(MetaPtr meta, nvholder::ChiRect* crop);
  virtual int GetSnapshotReqInfo(MetaPtr meta, nvholder::SnapshotReqInfo* out);  // slot 122
  virtual int SetGainMapEvInfo(MetaPtr meta, nvholder::GainmapEvInfo* info);
  virtual int GetActiveArraySize(MetaPtr meta, nvholder::ChiRect* out);
  virtual int GetMaxActiveArraySize(MetaPtr meta, nvholder::ChiRect* out);
  virtual int GetStaticMetaSensorCaps(MetaPtr meta, nvholder::SensorCaps* out);
  virtual int GetSensorMetaDataSensorModeInfo(MetaPtr meta, nvholder::SensorModeInfo* out);
  virtual int GetLongExpControl(MetaPtr meta, unsigned char* out);
  virtual int GetLongExpMode(MetaPtr meta, unsigned char* out);
  virtual int GetlongExposureMode(MetaPtr meta, unsigned char* out);
  virtual int GetMFInputNum(MetaPtr meta, int* out);
  virtual int GetLSCMapSize(MetaPtr meta, nvholder::NULSCMapSize* out);  // slot 132
  virtual int GetAECompensation(MetaPtr meta, int* out);
  virtual int GetJPEGGPSCoordinates(MetaPtr meta, double* out);
  virtual int GetSensorViewAngle(MetaPtr meta, double* out);
  virtual int GetRotationMatrix(MetaPtr meta, float* out);
  virtual int GetTuningMode(MetaPtr meta, void* out);
  virtual int GetNZSLWBInfo(MetaPtr meta, nvholder::AWBOutBpsWbFactor* out);
  virtual int GetZSLQAlgoUpSup(MetaPtr meta, unsigned char* out);
  virtual int GetAIspSelectAnchorOutput(MetaPtr meta, nvholder::AIspSelectAnchorOutput* out);
  virtual int GetBandingSceneType(MetaPtr meta, int* out);
  virtual int GetNuvaroDeviceOrientation(MetaPtr meta, int* out);  // slot 142
  virtual int GetNuvaroThermalLevel(MetaPtr meta, int* out);
  virtual int GetNuvaroThermalResult(MetaPtr meta, int* out);
  virtual int GetAndroidAFRegion(MetaPtr meta, nvholder::ChiRect* out);
  virtual int GetAndroidLensFocalLength(MetaPtr meta, float* out);
  virtual int SetAndroidLensFocalLength(MetaPtr meta, float value);
  virtual int GetNuvaroEquivalentFocalLength(MetaPtr meta, float* out);
  virtual int SetNuvaroEquivalentFocalLength(MetaPtr meta, float value);
  virtual int GetBokehRequestInfo(MetaPtr meta, __bokehRequestInfoList* info);
  virtual int SetBokehRequestInfoList(MetaPtr meta, __bokehRequestInfoList* info);
  virtual int GetBokehSessionParamInfo(MetaPtr meta, __bokehConfigStreamInfoList* info);  // slot 152
  virtual int GetBokehCapabilityInfo(MetaPtr meta, __bokehCapabilityInfoList* info);
  virtual int UpdateGainMapMeta(MetaPtr source, MetaPtr destination);
  virtual int GetCameraRoleId(int fwkCameraId, int* roleId);
  virtual int GetCameraRoleId(MetaPtr meta, int* roleId);
  virtual int GetCameraRoleIds(MetaPtr meta, std::vector<int>& roleIds);
  virtual int GetASDSmartScene(MetaPtr meta, nvholder::SmartScene* out);
  virtual int GetAndroidLogicalMultiCameraPhysicalIds(int fwkCameraId, std::vector<int>& ids);
  virtual int GetAndroidLogicalMultiCameraPhysicalIds(MetaPtr meta, std::vector<int>& ids);
  virtual int GetAndroidLogicalMultiCameraPhysicalRoleIds(MetaPtr meta, std::vector<int>& roleIds);
  virtual int GetNuvaroFlipEnable(MetaPtr meta, signed char* out);  // slot 162
  virtual int GetAndroidLensFacing(MetaPtr meta, unsigned char* facing);
  virtual bool IsRearCamera(MetaPtr meta);
  virtual int GetNuvaroAfInfoFocusedROIID(MetaPtr meta, int* out);
  virtual int GetNuvaroFrameSyncTimestampGap(MetaPtr meta, long* out);
  virtual int GetMxDebaningLbmfMode(MetaPtr meta, int* out);
  virtual int GetNuvaroMxdebandingDetectResult(MetaPtr meta, int* out);
  virtual int GetWhiteBlackOutput(MetaPtr meta, float* out);
  virtual int GetSTAFDistanceInfo(MetaPtr meta, nvholder::STAFDistanceInfo* out);
  virtual int GetComputeOpticsTrigger(MetaPtr meta, int* out);
  virtual int GetZslSelectorInfoDetail(MetaPtr meta, std::string& detail);  // slot 172
  virtual int SetZslSelectorInfoDetail(MetaPtr meta, std::string& detail);
  virtual int GetLuxIndex(MetaPtr meta, int* out);
  virtual int getPass1CropRegion(MetaPtr meta, nvholder::ChiRect* crop, int sensorId);
  virtual int GetExpIndex(MetaPtr meta, long* out);
  virtual int GetAdrcGain(MetaPtr meta, float* out);
  virtual int GetSensorGain(MetaPtr meta, float* out);
  virtual int GetZoomEisEffective(MetaPtr meta, float* out);
  virtual int GetThermalLevel(MetaPtr meta, int* out);
  virtual int GetAnchorFrameOrder(MetaPtr meta, std::vector<int>& order);
  virtual int SetAnchorFrameOrder(MetaPtr meta, std::vector<int>& order);  // slot 182
  virtual int SetAnchorFrameIndex(MetaPtr meta, int index);
  virtual int GetVendorCameraId(MetaPtr meta, int* out);
  virtual int GetMacroMode(MetaPtr meta, int* out);
  virtual int GetNvAwbSpecialLightConfidence(MetaPtr meta, int* out);
  virtual int GetFaceRect(MetaPtr meta, int width, int height, FacesInfo& faces,
                          nvholder::NUNvFDRawSnapshotParam* param);
  virtual int GetFocusROI(MetaPtr meta, nvholder::dimension size, __UtilsImage_Rect* rect,
                          __UtilsImage_point* point, bool, bool);
  virtual int SetFacesInfoHolder(MetaPtr source, MetaPtr destination);
  virtual int SetFocusROI(MetaPtr source, MetaPtr destination);  // slot 190

  // The one place where a tag is resolved and looked up. A tag is named by
  // full name, by Android tag number, or by META_TAG_INDEX (META_NO_INDEX
  // when one of the other two is used). On success *data points into the
  // container's storage; on failure *data is left as it was.
  int GetMetaData(MetaPtr meta, const char* tagName, META_TAG_INDEX index, uint32_t tag, void** data,
                  uint32_t* count);

  // The one place where values are written, tags named as for GetMetaData.
  // Instantiated for float, int, camera_metadata_rational, unsigned char,
  // and void (count elements of the tag's own registered type).
  template <typename T>
  int SetMetaData(MetaPtr meta, const char* tagName, META_TAG_INDEX index, uint32_t tag, T* data,
                  uint32_t count);
};

extern template int metadataHelperBase::SetMetaData<float>(MetaPtr, const char*, META_TAG_INDEX, uint32_t,
                                                           float*, uint32_t);
extern template int metadataHelperBase::SetMetaData<int>(MetaPtr, const char*, META_TAG_INDEX, uint32_t, int*,
                                                         uint32_t);
extern template int metadataHelperBase::SetMetaData<camera_metadata_rational>(MetaPtr, const char*,
                                                                              META_TAG_INDEX, uint32_t,
                                                                              camera_metadata_rational*,
                                                                              uint32_t);
extern template int metadataHelperBase::SetMetaData<unsigned char>(MetaPtr, const char*, META_TAG_INDEX,
                                                                   uint32_t, unsigned char*, uint32_t);
extern template int metadataHelperBase::SetMetaData<void>(MetaPtr, const char*, META_TAG_INDEX, uint32_t,
                                                          void*, uint32_t);

}  // namespace metahelper
