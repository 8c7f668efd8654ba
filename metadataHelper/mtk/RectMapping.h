// Mapping of active-array rectangles into a caller's output image.
#pragma once

#include <cstdint>

#include "nvholder/NvHolderTypes.h"

namespace metahelper::mtk {

// Maps `rect` (active-array pixels) into the width x height output image that
// shows `crop`; `active` supplies only the aspect ratio. Returns false, and
// writes nothing, when the output size or either rectangle is empty.
bool MapRect(const nvholder::ChiRect& rect, const nvholder::ChiRect& crop, int width, int height,
             const nvholder::ChiRect& active, __UtilsImage_Rect* out);

// 270 for 45 <= a < 135, 180 for 135 <= a < 225, 90 for 225 <= a < 315, else 0.
int32_t AngleClass(int32_t rawAngle);

// A coordinate on the full field mapped into in-sensor-zoom mode: (c - A/4) * 2
// with A the active extent along that axis.
int32_t ToInSensorZoom(int32_t coordinate, uint32_t activeExtent);

}  // namespace metahelper::mtk
