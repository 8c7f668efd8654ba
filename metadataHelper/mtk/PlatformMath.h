// Platform units and tables of the MediaTek helper, as pure functions.
#pragma once

#include <cstdint>

#include "nvholder/NvHolderTypes.h"

namespace metahelper::mtk {

// How much of the platform's tables the operations rely on, in 32-bit words.
inline constexpr uint32_t kHistogramBins = 1024;  // folded into 256
inline constexpr uint32_t kGammaInfoWords = sizeof(nvholder::GammaInfo::gamma) / sizeof(uint32_t);
inline constexpr uint32_t kGammaTableWords = 256;  // the gamma table's entries before its fixed end
inline constexpr uint32_t kGtmCurveWords = 289;    // the bin count and its curve
// Sensor-policy frame result: four per-camera entries of 80 words from word 96.
inline constexpr uint32_t kFirstCameraEntry = 96;
inline constexpr uint32_t kCameraEntryWords = 80;
inline constexpr uint32_t kCameraEntries = 4;
inline constexpr uint32_t kFrameResultWords = kFirstCameraEntry + kCameraEntries * kCameraEntryWords;

// Float to int32 as the device's conversion does it: saturating, NaN to 0,
// fractions truncated toward zero. A plain cast of an out-of-range value is
// undefined, and producers may send any float.
int32_t SaturateToInt32(float value);

// ISP gain: 12 fractional bits, converted in double and narrowed.
float IspGainFromFixed(int32_t value);
// Tone (ADRC) gain and sensor gain: 10 fractional bits.
float ToneGainFromFixed(int32_t value);
// The HDR adjust ratio: 2^(v/1000) below 10000, v/100000 from there; 0 means 1.
float AeRatioFromAdjust(int32_t value);

// Folds 1024 histogram bins into 256 by summing each run of four.
void FoldHistogram(const uint32_t* bins1024, nvholder::PreviewBrightnessInfo* out);

// Fills both 257-entry tables with the defaults (linear and gamma curve,
// entry 256 = 1023) and clears the valid flag.
void FillDefaultGammaTables(nvholder::GammaTableInfo* out);

// The platform sensor mode of `cameraId` in the sensor-policy frame result
// (four 80-word entries from word 96: word 0 camera id, word 4 mode; a later
// match overrides an earlier one), 0 when none matches.
int32_t PlatformSensorMode(const int32_t* frameResult, int32_t cameraId);
// The maker's sensor mode type for a platform sensor mode.
int32_t SensorModeTypeFromPlatformMode(int32_t mode);

}  // namespace metahelper::mtk
