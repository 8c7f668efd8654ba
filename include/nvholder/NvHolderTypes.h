// Records shared between the metadata helper and its callers.
//
// Most of these are copied to or from metadata tags as packed blocks of
// 32-bit fields, so their size and field offsets are a binary contract with
// the producers and consumers of those tags. Every layout that crosses the
// library boundary is pinned with static_asserts at the bottom of this file.
#pragma once

#include <cstddef>
#include <cstdint>

namespace nvholder {

// Rectangle in pixels: left, top, width, height.
struct ChiRect {
  uint32_t left;
  uint32_t top;
  uint32_t width;
  uint32_t height;
};

// Image size in pixels, passed by value.
struct dimension {
  uint32_t width;
  uint32_t height;
};

// Lens-shading map grid size.
struct NULSCMapSize {
  int32_t width;
  int32_t height;
};

struct NUAWBFrameControl {
  float gains[3];  // red, green, blue
  float colorTemperature;
};

// Auto-exposure frame control block; only the lux index has a meaning this
// library relies on, the rest travels through untouched.
struct NUAECFrameControl {
  uint32_t leading[24];
  float luxIndex;
  uint32_t trailing[5];
};

struct NUAWBOutSnapshotWbInfo {
  float gains[4];
  float colorTemperature;
  uint32_t reserved[3];
};

struct AWBOutBpsWbFactor {
  float gains[4];
};

struct STAFDistanceInfo {
  int32_t values[10];
};

struct AIspSceneResult {
  int32_t values[4];
};

struct Sunset_Scene_t {
  int32_t values[2];
};

struct AIspSelectAnchorOutput {
  int32_t values[34];
};

struct SmartScene {
  int32_t values[3];
};

struct PreviewBrightnessInfo {
  uint32_t binCount;
  uint32_t bins[256];
};

struct GammaInfo {
  int32_t isGammaValid;
  uint32_t gamma[256];
};

// Two 257-entry tone tables: a linear one and a gamma curve.
struct GammaTableInfo {
  int32_t isValid;
  uint32_t linearTable[257];
  uint32_t gammaTable[257];
};

struct GTMInfo {
  int32_t binNum;
  uint32_t curve[288];
};

struct NUSkinScore {
  float score;
  int32_t faceIndex;
  uint32_t reserved[2];
};

struct MotionVelocity {
  int32_t reserved[4];
  float velocity;  // the fifth 32-bit field
  int32_t trailing[3];
};

// Platform sensor mode type as a plain 32-bit value.
using NVSENSORMODETYPE = int32_t;

struct SensorMultiExposureInfo {
  uint32_t exposureCount;
  uint64_t exposureTime[3];
  float gain[3];
};

// Gyro samples of one frame: a count, two timestamps and four sample blocks.
struct ChiFrameGyro {
  int32_t sampleCount;
  int64_t startTimestamp;
  int64_t endTimestamp;
  uint8_t samples[4][800];
};

struct panshotData {
  double values[9];
  int32_t status;
  int64_t status64;
  float statusFloat;
};

struct MultiCameraIds {
  uint32_t logicalCameraId;
  uint32_t currentCameraId;
  uint32_t physicalCameraIds[8];
};

struct SnapshotReqInfo {
  uint32_t requestId;
  uint32_t frameCount;
  uint32_t reserved[6];
};

struct GainmapEvInfo {
  float ev[8];
  uint32_t count;
};

struct SensorCaps {
  uint32_t values[16];
};

struct SensorModeInfo {
  uint32_t values[16];
};

// Face boxes as the face-detection side exchanges them: corners, not sizes.
struct FDFaceBox {
  int32_t x0;
  int32_t y0;
  int32_t x1;
  int32_t y1;
};

struct NUNvFDRawSnapshotParam {
  int32_t faceCount;
  int32_t reserved0;
  FDFaceBox faces[10];
  int32_t pitch;
  int32_t angle;
  int32_t pose;
  uint8_t reserved1[428];
  ChiRect activeArray;
};

// Sensor shift query exchanged with the platform info holder.
struct ShiftData {
  int64_t timestamp;
  int32_t shiftX;
  int32_t shiftY;
  int64_t anchorTimestamp;
  double scaleX;
  double scaleY;
  int32_t phyCameraId;
  uint8_t isPreAnchor;
  uint8_t reserved[3];
  int32_t nodeType;
  int32_t tail;
};

}  // namespace nvholder

namespace NV_SMARTAE_SUPER {
struct SmartAEProcOutput {
  uint32_t words[866];
};
}  // namespace NV_SMARTAE_SUPER

struct __UtilsImage_Rect {
  uint32_t left;
  uint32_t top;
  uint32_t width;
  uint32_t height;
};

struct __UtilsImage_point {
  int32_t x;
  int32_t y;
};

struct FaceEntry {
  __UtilsImage_Rect rect;
  __UtilsImage_point center;
  int32_t pitch;
  int32_t angle;
  int32_t pose;
  int32_t angleClass;  // 0, 90, 180 or 270
  int32_t faceId;
};

struct FacesInfo {
  int32_t faceCount;
  int32_t mainFaceIndex;
  FaceEntry faces[10];
};

// Bokeh records are opaque to this library; only their sizes are fixed.
struct __bokehRequestInfoList {
  uint32_t words[31];
};
struct __bokehConfigStreamInfoList {
  uint32_t words[32];
};
struct __bokehCapabilityInfoList {
  uint32_t words[6873];
};

// --- Binary layout checks -------------------------------------------------
#define NVHOLDER_LAYOUT(type, bytes) static_assert(sizeof(type) == (bytes), #type " size")
#define NVHOLDER_FIELD(type, field, offset) \
  static_assert(offsetof(type, field) == (offset), #type "::" #field " offset")

NVHOLDER_LAYOUT(nvholder::ChiRect, 16);
NVHOLDER_LAYOUT(nvholder::dimension, 8);
NVHOLDER_LAYOUT(nvholder::NULSCMapSize, 8);
NVHOLDER_LAYOUT(nvholder::NUAWBFrameControl, 4 * 4);
NVHOLDER_LAYOUT(nvholder::NUAECFrameControl, 30 * 4);
NVHOLDER_FIELD(nvholder::NUAECFrameControl, luxIndex, 24 * 4);
NVHOLDER_LAYOUT(nvholder::STAFDistanceInfo, 10 * 4);
NVHOLDER_LAYOUT(nvholder::AIspSceneResult, 4 * 4);
NVHOLDER_LAYOUT(nvholder::Sunset_Scene_t, 2 * 4);
NVHOLDER_LAYOUT(nvholder::AIspSelectAnchorOutput, 34 * 4);
NVHOLDER_LAYOUT(nvholder::SmartScene, 3 * 4);
NVHOLDER_LAYOUT(nvholder::PreviewBrightnessInfo, 257 * 4);
NVHOLDER_LAYOUT(nvholder::GammaInfo, 257 * 4);
NVHOLDER_FIELD(nvholder::GammaTableInfo, linearTable, 4);
NVHOLDER_FIELD(nvholder::GammaTableInfo, gammaTable, 4 + 257 * 4);
NVHOLDER_FIELD(nvholder::MotionVelocity, velocity, 16);
NVHOLDER_FIELD(nvholder::ChiFrameGyro, startTimestamp, 8);
NVHOLDER_FIELD(nvholder::ChiFrameGyro, endTimestamp, 16);
NVHOLDER_FIELD(nvholder::ChiFrameGyro, samples, 24);
NVHOLDER_LAYOUT(nvholder::ChiFrameGyro, 24 + 4 * 800);
NVHOLDER_FIELD(nvholder::panshotData, status, 72);
NVHOLDER_FIELD(nvholder::panshotData, status64, 80);
NVHOLDER_FIELD(nvholder::panshotData, statusFloat, 88);
NVHOLDER_FIELD(nvholder::NUNvFDRawSnapshotParam, faces, 8);
NVHOLDER_FIELD(nvholder::NUNvFDRawSnapshotParam, pitch, 168);
NVHOLDER_FIELD(nvholder::NUNvFDRawSnapshotParam, angle, 172);
NVHOLDER_FIELD(nvholder::NUNvFDRawSnapshotParam, pose, 176);
NVHOLDER_FIELD(nvholder::NUNvFDRawSnapshotParam, activeArray, 608);
NVHOLDER_LAYOUT(nvholder::NUNvFDRawSnapshotParam, 624);
NVHOLDER_FIELD(nvholder::ShiftData, timestamp, 0);
NVHOLDER_FIELD(nvholder::ShiftData, shiftX, 8);
NVHOLDER_FIELD(nvholder::ShiftData, shiftY, 12);
NVHOLDER_FIELD(nvholder::ShiftData, anchorTimestamp, 16);
NVHOLDER_FIELD(nvholder::ShiftData, scaleX, 24);
NVHOLDER_FIELD(nvholder::ShiftData, scaleY, 32);
NVHOLDER_FIELD(nvholder::ShiftData, phyCameraId, 40);
NVHOLDER_FIELD(nvholder::ShiftData, isPreAnchor, 44);
NVHOLDER_FIELD(nvholder::ShiftData, nodeType, 48);
NVHOLDER_LAYOUT(NV_SMARTAE_SUPER::SmartAEProcOutput, 3464);
NVHOLDER_LAYOUT(__UtilsImage_Rect, 16);
NVHOLDER_LAYOUT(__UtilsImage_point, 8);
NVHOLDER_LAYOUT(FaceEntry, 11 * 4);
NVHOLDER_FIELD(FacesInfo, faces, 8);
NVHOLDER_LAYOUT(FacesInfo, 8 + 10 * 11 * 4);
NVHOLDER_LAYOUT(__bokehRequestInfoList, 124);
NVHOLDER_LAYOUT(__bokehConfigStreamInfoList, 128);
NVHOLDER_LAYOUT(__bokehCapabilityInfoList, 27492);

#undef NVHOLDER_LAYOUT
#undef NVHOLDER_FIELD
