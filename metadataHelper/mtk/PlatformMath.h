// Platform units and tables of the MediaTek helper, as pure functions.
#pragma once

#include <cstdint>

#include "nvholder/NvHolderTypes.h"

namespace metahelper::mtk {

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
