// Crop-region arithmetic of the MediaTek helper, as pure functions.
#pragma once

#include <cstddef>
#include <cstdint>

#include "nvholder/NvHolderTypes.h"

namespace metahelper::mtk {

// The sensor-policy crop table holds entries of nine 32-bit words: word 0 a
// sensor id, words 5..8 that sensor's crop. Only the first four entries are
// searched, and only whole entries of the `count` words the table holds; the
// first match wins.
bool FindSensorCrop(const uint32_t* words, size_t count, int32_t sensorId, nvholder::ChiRect* crop);

// In in-sensor-zoom mode the sensor delivers the centre half of the field at
// twice the scale; maps a full-field crop onto it, or returns it unchanged
// when the mapped crop would leave the sensor.
nvholder::ChiRect RemapForInSensorZoom(const nvholder::ChiRect& crop, nvholder::dimension sensor);

// Fits the crop to the active array's aspect ratio (tolerance 0.01), centred;
// falls back to the full sensor width or height when centring would push the
// crop past the left or top edge.
nvholder::ChiRect FitToActiveAspect(const nvholder::ChiRect& crop, const nvholder::ChiRect& active,
                                    nvholder::dimension sensor);

struct Shift {
  int32_t x;
  int32_t y;
};

// A shift measured at one scale applied at the other: doubled when measured
// before the anchor but applied in in-sensor-zoom mode, halved (toward zero)
// in the opposite case.
Shift ScaleShift(Shift shift, bool isPreAnchor, bool isInSensorZoom);

// Moves the crop by the shift when the result stays inside the sensor.
bool ApplyShift(nvholder::ChiRect* crop, Shift shift, nvholder::dimension sensor);

}  // namespace metahelper::mtk
