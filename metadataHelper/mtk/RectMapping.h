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

// ---- Face and focus boxes ------------------------------------------------
// A face record of the face tag: x0 y0 x1 y1, unused, pitch, angle, pose, id.
inline constexpr uint32_t kFaceWords = 9;

// A face's corners, mapped into in-sensor-zoom mode when the frame is in it.
nvholder::FDFaceBox FaceCorners(const int32_t* face, bool inSensorZoom, const nvholder::ChiRect& active);

// The rectangle between two corners. Corners arrive as the producer sent
// them: extents are formed in unsigned arithmetic, so extreme values wrap as
// they do on the device instead of overflowing.
nvholder::ChiRect BoxRect(const nvholder::FDFaceBox& box);

// Every corner multiplied by `scale`, in the same wrapping arithmetic.
nvholder::FDFaceBox ScaledBox(const nvholder::FDFaceBox& box, uint32_t scale);

// The centre of a face in a width x height image; the image's centre when
// the face's lies outside it.
__UtilsImage_point FaceCenter(const __UtilsImage_Rect& rect, int width, int height);

// The centre of a focus region; half its size when its corner and centre sit
// at the origin.
__UtilsImage_point RegionCenter(const __UtilsImage_Rect& rect);

}  // namespace metahelper::mtk
