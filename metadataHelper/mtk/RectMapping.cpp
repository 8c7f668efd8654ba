// Mapping of active-array rectangles into a caller's output image.
//
// The output image shows the crop scaled to fill one axis; along the other
// axis the crop overhangs the image and is cut evenly on both sides (the
// margin). Which axis fills is decided by comparing the active array's aspect
// with the output's.
#include "RectMapping.h"

#include <algorithm>
#include <cmath>

namespace metahelper::mtk {
namespace {

int32_t Signed(uint32_t field) { return static_cast<int32_t>(field); }

// Float to uint32 as the device's conversion does it: saturating, negatives
// and NaN to 0, fractions truncated.
uint32_t SaturateToUnsigned(float value) {
  if (!(value > 0.0f)) return 0;
  if (value >= 4294967296.0f) return UINT32_MAX;
  return static_cast<uint32_t>(value);
}

// Rounds half away from zero.
uint32_t RoundToUnsigned(float value) { return SaturateToUnsigned(std::round(value)); }

// One axis of the mapping: the output extent, the crop's extent and the
// rectangle's offset from the crop's origin along it.
struct Axis {
  int32_t output;
  int32_t crop;
  uint32_t offset;
};

struct Placement {
  float scale;
  uint32_t filledPos;
  uint32_t cutPos;
};

// `filled` is the axis the crop fills exactly; along `cut` only the middle of
// the crop is shown, and offsets inside the cut-off margin land on 0.
Placement Place(const Axis& filled, const Axis& cut) {
  const float scale = static_cast<float>(filled.output) / static_cast<float>(filled.crop);
  const int32_t shown = static_cast<int32_t>(int64_t{filled.crop} * cut.output / filled.output);
  const int32_t margin = static_cast<int32_t>(std::max((int64_t{cut.crop} - shown) / 2, int64_t{0}));
  const uint32_t cutPos =
      int64_t{cut.offset} > margin ? RoundToUnsigned(scale * static_cast<float>(cut.offset - margin)) : 0u;
  return {scale, RoundToUnsigned(scale * static_cast<float>(filled.offset)), cutPos};
}

// Scaled extent, cut at the image edge and made even.
uint32_t ScaledExtent(float scale, uint32_t extent, uint32_t position, int32_t output) {
  const uint32_t scaled = SaturateToUnsigned(scale * static_cast<float>(Signed(extent)));
  return std::min(scaled, static_cast<uint32_t>(output) - position) & ~1u;
}

}  // namespace

bool MapRect(const nvholder::ChiRect& rect, const nvholder::ChiRect& crop, int width, int height,
             const nvholder::ChiRect& active, __UtilsImage_Rect* out) {
  if (height < 1 || width < 1 || rect.width == 0 || rect.height == 0 || crop.width == 0 || crop.height == 0) {
    return false;
  }
  const uint32_t dx = rect.left >= crop.left ? rect.left - crop.left : 0;
  const uint32_t dy = rect.top > crop.top ? rect.top - crop.top : 0;
  const Axis x{width, Signed(crop.width), dx};
  const Axis y{height, Signed(crop.height), dy};
  const float activeAspect =
      static_cast<float>(Signed(active.width)) / static_cast<float>(Signed(active.height));
  const bool fillsWidth = activeAspect <= static_cast<float>(width) / static_cast<float>(height);

  const Placement p = fillsWidth ? Place(x, y) : Place(y, x);
  const uint32_t left = std::min(fillsWidth ? p.filledPos : p.cutPos, static_cast<uint32_t>(width - 1));
  const uint32_t top = std::min(fillsWidth ? p.cutPos : p.filledPos, static_cast<uint32_t>(height - 1));
  *out = {left, top, ScaledExtent(p.scale, rect.width, left, width),
          ScaledExtent(p.scale, rect.height, top, height)};
  return true;
}

int32_t AngleClass(int32_t rawAngle) {
  if (rawAngle >= 45 && rawAngle < 135) return 270;
  if (rawAngle >= 135 && rawAngle < 225) return 180;
  if (rawAngle >= 225 && rawAngle < 315) return 90;
  return 0;
}

int32_t ToInSensorZoom(int32_t coordinate, uint32_t activeExtent) {
  return static_cast<int32_t>((static_cast<uint32_t>(coordinate) - activeExtent / 4) * 2u);
}

nvholder::FDFaceBox FaceCorners(const int32_t* face, bool inSensorZoom, const nvholder::ChiRect& active) {
  if (!inSensorZoom) return {face[0], face[1], face[2], face[3]};
  return {ToInSensorZoom(face[0], active.width), ToInSensorZoom(face[1], active.height),
          ToInSensorZoom(face[2], active.width), ToInSensorZoom(face[3], active.height)};
}

nvholder::ChiRect BoxRect(const nvholder::FDFaceBox& box) {
  const auto x0 = static_cast<uint32_t>(box.x0), y0 = static_cast<uint32_t>(box.y0);
  return {x0, y0, static_cast<uint32_t>(box.x1) - x0, static_cast<uint32_t>(box.y1) - y0};
}

nvholder::FDFaceBox ScaledBox(const nvholder::FDFaceBox& box, uint32_t scale) {
  const auto times = [scale](int32_t corner) {
    return static_cast<int32_t>(static_cast<uint32_t>(corner) * scale);
  };
  return {times(box.x0), times(box.y0), times(box.x1), times(box.y1)};
}

__UtilsImage_point FaceCenter(const __UtilsImage_Rect& rect, int width, int height) {
  const auto x = static_cast<int32_t>(rect.left + rect.width / 2);
  const auto y = static_cast<int32_t>(rect.top + rect.height / 2);
  if (x > width || x < 1 || y < 1 || y > height) return {width / 2, height / 2};
  return {x, y};
}

__UtilsImage_point RegionCenter(const __UtilsImage_Rect& rect) {
  const auto x = static_cast<int32_t>(rect.left + rect.width / 2);
  const auto y = static_cast<int32_t>(rect.top + rect.height / 2);
  if (x == 0 && y == 0) return {static_cast<int32_t>(rect.width / 2), static_cast<int32_t>(rect.height / 2)};
  return {x, y};
}

}  // namespace metahelper::mtk
