// The MediaTek platform helper: the object GetMetadataHelper hands out.
//
// It replaces the operations whose values live in other tags, other units, or
// in the platform info holder on a MediaTek platform; everything else is the
// generic implementation of metadataHelperBase.
#pragma once

#include "metadataHelperBase.h"

namespace metahelper {

class METAHELPER_EXPORT MtkMetadataHelper : public metadataHelperBase {
 public:
  MtkMetadataHelper() = default;
  ~MtkMetadataHelper() override;

  int GetUIEV(MetaPtr meta, int* out) override;
  int GetSensorTimestamp(MetaPtr meta, unsigned long* out) override;
  int GetTeleFusionEnable(MetaPtr meta, unsigned char* out) override;
  int GetPreviewBrightnessInfo(MetaPtr meta, nvholder::PreviewBrightnessInfo* out) override;
  int GetColorCorrectionTransform(MetaPtr meta, float* out) override;
  int GetPreviewDarkGainRatio(MetaPtr meta, float* out) override;
  int GetSensorDynamicBlackLevel(MetaPtr meta, float* out) override;
  int GetPreviewExposure(MetaPtr meta, float* out) override;
  int GetPreviewISPGain(MetaPtr meta, float* out) override;
  int GetSkinScore(MetaPtr meta, nvholder::NUSkinScore* out, unsigned char index) override;
  int GetMotionVelocity(MetaPtr meta, nvholder::MotionVelocity* out) override;
  int GetCropRegion(MetaPtr meta, nvholder::ChiRect* crop, nvholder::dimension sensorSize,
                    bool isInSensorZoom) override;
  int SetIspGain(MetaPtr meta, float* value) override;
  int GetFaceLumaTarget(MetaPtr meta, float* out) override;
  int GetNoFaceLumaTarget(MetaPtr meta, float* out) override;
  int GetFrameLuma(MetaPtr meta, float* out) override;
  int GetFrameLumaTarget(MetaPtr meta, float* out) override;
  int GetTuningSensorMode(MetaPtr meta, int* out) override;
  int GetGammaOutput(MetaPtr meta, nvholder::GammaInfo* out) override;
  int GetGammaOutput(MetaPtr meta, nvholder::GammaTableInfo* out) override;
  int GetFaceAverageBrightness(MetaPtr meta, float* out) override;
  int GetFacetargetAndConfidence(MetaPtr meta, float* out) override;
  int GetCurLuma(MetaPtr meta, float* out) override;
  int GetTargetLuma(MetaPtr meta, float* out) override;
  int GetIspGain(MetaPtr meta, float* out) override;
  int GetCurSensorMode(MetaPtr meta, int* out) override;
  int GetBlackLevelShift(MetaPtr meta, int* out) override;
  int GetSensorSOF(MetaPtr meta, unsigned long* out) override;
  int GetQTimerTimeStamp(MetaPtr meta, unsigned long* out) override;
  int GetPreviewADRCGain(MetaPtr meta, float* out) override;
  int GetAeRatio(MetaPtr meta, float* out) override;
  int SetSnapshotReqInfo(MetaPtr meta, nvholder::SnapshotReqInfo* info) override;
  int GetNuvaroSensorModeType(MetaPtr meta, nvholder::NVSENSORMODETYPE* out) override;
  int GetAWBFrameControl(MetaPtr meta, nvholder::NUAWBFrameControl* out) override;
  int GetShiftDataFromHolder(long timestamp, int phyId, nvholder::ShiftData* shiftData) override;
  int GetFdData(MetaPtr meta, nvholder::NUNvFDRawSnapshotParam* out) override;
  int SetFdData(MetaPtr meta, nvholder::NUNvFDRawSnapshotParam* param) override;
  int GetGTMTable(MetaPtr meta, nvholder::GTMInfo* out) override;
  int GetAWBCustomSnapshotWBInfo(MetaPtr meta, nvholder::NUAWBOutSnapshotWbInfo* out) override;
  int GetAECFrameControl(MetaPtr meta, nvholder::NUAECFrameControl* out) override;
  int GetGyroInfo(MetaPtr meta, nvholder::ChiFrameGyro* out) override;
  int GetPanshotResData(MetaPtr meta, nvholder::panshotData* out) override;
  int GetMultiCameraIds(MetaPtr meta, nvholder::MultiCameraIds* out) override;
  int SetCropRegion(MetaPtr meta, nvholder::ChiRect* crop) override;
  int GetSnapshotReqInfo(MetaPtr meta, nvholder::SnapshotReqInfo* out) override;
  int SetGainMapEvInfo(MetaPtr meta, nvholder::GainmapEvInfo* info) override;
  int GetActiveArraySize(MetaPtr meta, nvholder::ChiRect* out) override;
  int GetMaxActiveArraySize(MetaPtr meta, nvholder::ChiRect* out) override;
  int GetStaticMetaSensorCaps(MetaPtr meta, nvholder::SensorCaps* out) override;
  int GetSensorMetaDataSensorModeInfo(MetaPtr meta, nvholder::SensorModeInfo* out) override;
  int GetLSCMapSize(MetaPtr meta, nvholder::NULSCMapSize* out) override;
  int GetSensorViewAngle(MetaPtr meta, double* out) override;
  int GetTuningMode(MetaPtr meta, void* out) override;
  int GetNZSLWBInfo(MetaPtr meta, nvholder::AWBOutBpsWbFactor* out) override;
  int GetNuvaroFrameSyncTimestampGap(MetaPtr meta, long* out) override;
  int GetMxDebaningLbmfMode(MetaPtr meta, int* out) override;
  int GetNuvaroMxdebandingDetectResult(MetaPtr meta, int* out) override;
  int GetWhiteBlackOutput(MetaPtr meta, float* out) override;
  int GetLuxIndex(MetaPtr meta, int* out) override;
  int getPass1CropRegion(MetaPtr meta, nvholder::ChiRect* crop, int sensorId) override;
  int GetExpIndex(MetaPtr meta, long* out) override;
  int GetAdrcGain(MetaPtr meta, float* out) override;
  int GetSensorGain(MetaPtr meta, float* out) override;
  int SetAnchorFrameIndex(MetaPtr meta, int index) override;
  int GetFaceRect(MetaPtr meta, int width, int height, FacesInfo& faces,
                  nvholder::NUNvFDRawSnapshotParam* param) override;
  int GetFocusROI(MetaPtr meta, nvholder::dimension size, __UtilsImage_Rect* rect, __UtilsImage_point* point,
                  bool, bool) override;
  int SetFacesInfoHolder(MetaPtr source, MetaPtr destination) override;
  int SetFocusROI(MetaPtr source, MetaPtr destination) override;

  // Declared after every inherited slot so that it moves none of them.
  virtual int GetStgExpInfo(MetaPtr meta, nvholder::SensorMultiExposureInfo* out);
};

}  // namespace metahelper
