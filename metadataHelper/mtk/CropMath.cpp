// Crop-region arithmetic of the MediaTek helper.
//
// The record fields are unsigned, but the platform treats crops as signed
// 32-bit rectangles: offsets may go negative while a crop is being moved, and
// those cases must be caught by the sign tests below, so every field is read
// as int32 and sums are formed in 64 bits to keep them free of overflow.
#include "CropMath.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "PlatformMath.h"

namespace metahelper::mtk {
namespace {

constexpr size_t kEntryWords = 9;
constexpr size_t kSearchedEntries = 4;
constexpr int kCropWord = 5;
constexpr float kAspectTolerance = 0.01f;

int32_t Signed(uint32_t field) { return static_cast<int32_t>(field); }

// Doubles with the wrap of the device's 32-bit arithmetic, whatever shift a
// producer sends, where a signed multiplication could overflow.
int32_t Doubled(int32_t value) { return static_cast<int32_t>(static_cast<uint32_t>(value) * 2u); }

// Rounds toward minus infinity to an even number (clears the lowest bit).
int32_t DownToEven(int32_t value) { return value & ~1; }

bool FitsIn(int32_t offset, uint32_t extent, uint32_t limit) {
  return offset >= 0 && int64_t{offset} + extent <= limit;
}

// Fits one axis of the crop to `ratio` of the active extent, centred. When
// centring would move the crop past the edge, the crop takes the whole sensor
// extent from offset 0 instead.
void FitAxis(uint32_t* offset, uint32_t* extent, float ratio, uint32_t activeExtent, uint32_t sensorExtent) {
  const int32_t fitted = DownToEven(SaturateToInt32(ratio * static_cast<float>(Signed(activeExtent))));
  const int64_t margin = int64_t{Signed(*extent)} - fitted;
  const int64_t newOffset = Signed(*offset) + (margin >> 1);  // arithmetic: rounds toward minus infinity
  *extent = newOffset >= 0 ? static_cast<uint32_t>(fitted) : sensorExtent;
  *offset = static_cast<uint32_t>(newOffset >= 0 ? newOffset : 0);
}

}  // namespace

bool FindSensorCrop(const uint32_t* words, size_t count, int32_t sensorId, nvholder::ChiRect* crop) {
  const size_t entries = std::min<size_t>(kSearchedEntries, count / kEntryWords);
  for (size_t entry = 0; entry < entries; ++entry) {
    const uint32_t* e = words + entry * kEntryWords;
    if (e[0] != static_cast<uint32_t>(sensorId)) continue;
    const uint32_t* c = e + kCropWord;
    *crop = {c[0], c[1], c[2], c[3]};
    return true;
  }
  return false;
}

nvholder::ChiRect RemapForInSensorZoom(const nvholder::ChiRect& crop, nvholder::dimension sensor) {
  const int32_t left = static_cast<int32_t>((crop.left - sensor.width / 4) * 2u);
  const int32_t top = static_cast<int32_t>((crop.top - sensor.height / 4) * 2u);
  const uint32_t width = crop.width * 2u;
  const uint32_t height = crop.height * 2u;
  if (!FitsIn(left, width, sensor.width) || !FitsIn(top, height, sensor.height)) return crop;
  return {static_cast<uint32_t>(left), static_cast<uint32_t>(top), width, height};
}

nvholder::ChiRect FitToActiveAspect(const nvholder::ChiRect& crop, const nvholder::ChiRect& active,
                                    nvholder::dimension sensor) {
  const float rw = static_cast<float>(Signed(crop.width)) / static_cast<float>(Signed(active.width));
  const float rh = static_cast<float>(Signed(crop.height)) / static_cast<float>(Signed(active.height));
  nvholder::ChiRect fitted = crop;
  if (rh > rw + kAspectTolerance) {
    FitAxis(&fitted.left, &fitted.width, rh, active.width, sensor.width);
  } else if (rh + kAspectTolerance < rw) {
    FitAxis(&fitted.top, &fitted.height, rw, active.height, sensor.height);
  }
  return fitted;
}

Shift ScaleShift(Shift shift, bool isPreAnchor, bool isInSensorZoom) {
  if (!isPreAnchor && isInSensorZoom) return {Doubled(shift.x), Doubled(shift.y)};
  if (isPreAnchor && !isInSensorZoom) return {shift.x / 2, shift.y / 2};
  return shift;
}

bool ApplyShift(nvholder::ChiRect* crop, Shift shift, nvholder::dimension sensor) {
  const int64_t left = int64_t{Signed(crop->left)} + shift.x;
  const int64_t top = int64_t{Signed(crop->top)} + shift.y;
  if (left < 0 || top < 0 || left + crop->width > sensor.width || top + crop->height > sensor.height) {
    return false;
  }
  crop->left = static_cast<uint32_t>(left);
  crop->top = static_cast<uint32_t>(top);
  return true;
}

}  // namespace metahelper::mtk
