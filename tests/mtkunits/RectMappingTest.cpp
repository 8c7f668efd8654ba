// Mapping of active-array rectangles into an output image.
#include "mtk/RectMapping.h"

#include <gtest/gtest.h>

#include "RectEq.h"

namespace {

using nvholder::ChiRect;

constexpr ChiRect kFullCrop{0, 0, 4000, 3000};
constexpr ChiRect kActive{0, 0, 4000, 3000};

struct MapCase {
  const char* what;
  ChiRect rect;
  ChiRect crop;
  int width;
  int height;
  __UtilsImage_Rect expected;
};

const MapCase kMapCases[] = {
    {"same aspect", {400, 300, 800, 600}, kFullCrop, 1000, 750, {100, 75, 200, 150}},
    {"crop offset", {1400, 1300, 400, 300}, {400, 300, 2000, 1500}, 1000, 750, {500, 500, 200, 150}},
    {"rect before the crop", {100, 100, 800, 600}, {400, 300, 2000, 1500}, 1000, 750, {0, 0, 400, 300}},
    {"halves round away from zero", {10, 2, 800, 600}, kFullCrop, 1000, 750, {3, 1, 200, 150}},
    {"odd extents made even", {0, 0, 804, 606}, kFullCrop, 1000, 750, {0, 0, 200, 150}},
    {"cut at the right and bottom", {3800, 2900, 800, 600}, kFullCrop, 1000, 750, {950, 725, 50, 24}},
    {"clamped to the last pixel", {3999, 2999, 800, 600}, kFullCrop, 1000, 750, {999, 749, 0, 0}},
    // The crop is wider than the output's aspect: nothing is cut, the scale
    // still comes from the width.
    {"crop wider than the output", {400, 300, 800, 600}, {0, 0, 4000, 2000}, 1000, 750, {100, 75, 200, 150}},
    {"negative width saturates",
     {400, 300, static_cast<uint32_t>(-800), 600},
     kFullCrop,
     1000,
     750,
     {100, 75, 0, 150}},
    // Wider output: the crop fills the width, 375 rows are cut above and below.
    {"wide output", {400, 1000, 800, 600}, kFullCrop, 1600, 900, {160, 250, 320, 240}},
    {"wide output, inside the cut rows", {400, 300, 800, 600}, kFullCrop, 1600, 900, {160, 0, 320, 240}},
    // Square output: the crop fills the height, 500 columns are cut each side.
    {"square output", {1000, 300, 500, 500}, kFullCrop, 600, 600, {100, 60, 100, 100}},
    {"square output, inside the cut columns", {400, 300, 500, 500}, kFullCrop, 600, 600, {0, 60, 100, 100}},
};

TEST(MapRect, MapsIntoTheOutputImage) {
  for (const MapCase& c : kMapCases) {
    __UtilsImage_Rect out{};
    ASSERT_TRUE(metahelper::mtk::MapRect(c.rect, c.crop, c.width, c.height, kActive, &out)) << c.what;
    EXPECT_EQ(c.expected, out) << c.what;
  }
}

TEST(MapRect, RejectsEmptyArgumentsWithoutWriting) {
  const ChiRect rect{400, 300, 800, 600};
  const MapCase cases[] = {
      {"no width", rect, kFullCrop, 0, 750, {}},
      {"no height", rect, kFullCrop, 1000, 0, {}},
      {"negative height", rect, kFullCrop, 1000, -1, {}},
      {"empty rect width", {400, 300, 0, 600}, kFullCrop, 1000, 750, {}},
      {"empty rect height", {400, 300, 800, 0}, kFullCrop, 1000, 750, {}},
      {"empty crop width", rect, {0, 0, 0, 3000}, 1000, 750, {}},
      {"empty crop height", rect, {0, 0, 4000, 0}, 1000, 750, {}},
  };
  for (const MapCase& c : cases) {
    __UtilsImage_Rect out{7, 7, 7, 7};
    EXPECT_FALSE(metahelper::mtk::MapRect(c.rect, c.crop, c.width, c.height, kActive, &out)) << c.what;
    EXPECT_EQ((__UtilsImage_Rect{7, 7, 7, 7}), out) << c.what;
  }
}

TEST(AngleClass, ClassBoundaries) {
  const int32_t cases[][2] = {{0, 0},    {44, 0},   {45, 270}, {134, 270}, {135, 180}, {224, 180},
                              {225, 90}, {314, 90}, {315, 0},  {359, 0},   {-1, 0},    {360, 0}};
  for (const auto& [angle, expected] : cases)
    EXPECT_EQ(expected, metahelper::mtk::AngleClass(angle)) << angle;
}

TEST(ToInSensorZoom, DoublesTheOffsetFromTheQuarter) {
  const int32_t cases[][3] = {{1000, 4000, 0}, {2500, 4000, 3000}, {900, 4000, -200}, {1000, 4003, 0}};
  for (const auto& [c, extent, expected] : cases) {
    EXPECT_EQ(expected, metahelper::mtk::ToInSensorZoom(c, static_cast<uint32_t>(extent)))
        << c << "/" << extent;
  }
}

}  // namespace
