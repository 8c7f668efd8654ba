// The field tables of every record that the helper's operations read or
// write: one row per record, R(type, field list), and one field list per
// record naming its fields in declaration order. ValueDescription.cpp
// describes each record from its list and checks at build time that the list
// covers the record exactly, so a field added to a record and forgotten here
// breaks the build instead of going missing from every dump.
#pragma once

#include "nvholder/NvHolderTypes.h"

// clang-format off
#define OPCATALOG_RECORDS(R)                                          \
  R(nvholder::ChiRect, FIELDS_ChiRect)                                \
  R(nvholder::dimension, FIELDS_dimension)                            \
  R(nvholder::NULSCMapSize, FIELDS_NULSCMapSize)                      \
  R(nvholder::NUAWBFrameControl, FIELDS_NUAWBFrameControl)            \
  R(nvholder::NUAECFrameControl, FIELDS_NUAECFrameControl)            \
  R(nvholder::NUAWBOutSnapshotWbInfo, FIELDS_NUAWBOutSnapshotWbInfo)  \
  R(nvholder::AWBOutBpsWbFactor, FIELDS_gains)                        \
  R(nvholder::STAFDistanceInfo, FIELDS_values)                        \
  R(nvholder::AIspSceneResult, FIELDS_values)                         \
  R(nvholder::Sunset_Scene_t, FIELDS_values)                          \
  R(nvholder::AIspSelectAnchorOutput, FIELDS_values)                  \
  R(nvholder::SmartScene, FIELDS_values)                              \
  R(nvholder::PreviewBrightnessInfo, FIELDS_PreviewBrightnessInfo)    \
  R(nvholder::GammaInfo, FIELDS_GammaInfo)                            \
  R(nvholder::GammaTableInfo, FIELDS_GammaTableInfo)                  \
  R(nvholder::GTMInfo, FIELDS_GTMInfo)                                \
  R(nvholder::NUSkinScore, FIELDS_NUSkinScore)                        \
  R(nvholder::MotionVelocity, FIELDS_MotionVelocity)                  \
  R(nvholder::SensorMultiExposureInfo, FIELDS_SensorMultiExposureInfo)\
  R(nvholder::ChiFrameGyro, FIELDS_ChiFrameGyro)                      \
  R(nvholder::panshotData, FIELDS_panshotData)                        \
  R(nvholder::MultiCameraIds, FIELDS_MultiCameraIds)                  \
  R(nvholder::SnapshotReqInfo, FIELDS_SnapshotReqInfo)                \
  R(nvholder::GainmapEvInfo, FIELDS_GainmapEvInfo)                    \
  R(nvholder::SensorCaps, FIELDS_values)                              \
  R(nvholder::SensorModeInfo, FIELDS_values)                          \
  R(nvholder::FDFaceBox, FIELDS_FDFaceBox)                            \
  R(nvholder::NUNvFDRawSnapshotParam, FIELDS_NUNvFDRawSnapshotParam)  \
  R(nvholder::ShiftData, FIELDS_ShiftData)                            \
  R(NV_SMARTAE_SUPER::SmartAEProcOutput, FIELDS_words)                \
  R(__UtilsImage_Rect, FIELDS_ChiRect)                                \
  R(__UtilsImage_point, FIELDS_point)                                 \
  R(FaceEntry, FIELDS_FaceEntry)                                      \
  R(FacesInfo, FIELDS_FacesInfo)                                      \
  R(__bokehRequestInfoList, FIELDS_words)                             \
  R(__bokehConfigStreamInfoList, FIELDS_words)                        \
  R(__bokehCapabilityInfoList, FIELDS_words)

#define FIELDS_ChiRect(F)                 F(left) F(top) F(width) F(height)
#define FIELDS_dimension(F)               F(width) F(height)
#define FIELDS_NULSCMapSize(F)            F(width) F(height)
#define FIELDS_NUAWBFrameControl(F)       F(gains) F(colorTemperature)
#define FIELDS_NUAECFrameControl(F)       F(leading) F(luxIndex) F(trailing)
#define FIELDS_NUAWBOutSnapshotWbInfo(F)  F(gains) F(colorTemperature) F(reserved)
#define FIELDS_gains(F)                   F(gains)
#define FIELDS_values(F)                  F(values)
#define FIELDS_words(F)                   F(words)
#define FIELDS_PreviewBrightnessInfo(F)   F(binCount) F(bins)
#define FIELDS_GammaInfo(F)               F(isGammaValid) F(gamma)
#define FIELDS_GammaTableInfo(F)          F(isValid) F(linearTable) F(gammaTable)
#define FIELDS_GTMInfo(F)                 F(binNum) F(curve)
#define FIELDS_NUSkinScore(F)             F(score) F(faceIndex) F(reserved)
#define FIELDS_MotionVelocity(F)          F(reserved) F(velocity) F(trailing)
#define FIELDS_SensorMultiExposureInfo(F) F(exposureCount) F(exposureTime) F(gain)
#define FIELDS_ChiFrameGyro(F)            F(sampleCount) F(startTimestamp) F(endTimestamp) F(samples)
#define FIELDS_panshotData(F)             F(values) F(status) F(status64) F(statusFloat)
#define FIELDS_MultiCameraIds(F)          F(logicalCameraId) F(currentCameraId) F(physicalCameraIds)
#define FIELDS_SnapshotReqInfo(F)         F(requestId) F(frameCount) F(reserved)
#define FIELDS_GainmapEvInfo(F)           F(ev) F(count)
#define FIELDS_FDFaceBox(F)               F(x0) F(y0) F(x1) F(y1)
#define FIELDS_NUNvFDRawSnapshotParam(F)  F(faceCount) F(reserved0) F(faces) F(pitch) F(angle) F(pose) F(reserved1) \
                                          F(activeArray)
#define FIELDS_ShiftData(F)               F(timestamp) F(shiftX) F(shiftY) F(anchorTimestamp) F(scaleX) F(scaleY) \
                                          F(phyCameraId) F(isPreAnchor) F(reserved) F(nodeType) F(tail)
#define FIELDS_point(F)                   F(x) F(y)
#define FIELDS_FaceEntry(F)               F(rect) F(center) F(pitch) F(angle) F(pose) F(angleClass) F(faceId)
#define FIELDS_FacesInfo(F)               F(faceCount) F(mainFaceIndex) F(faces)
// clang-format on
