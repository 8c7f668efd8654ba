// The MediaTek helper's pure computations: crop arithmetic, rectangle mapping, platform units and tables.
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <tuple>
#include <vector>

#include "mtk/CropMath.h"
#include "mtk/PlatformMath.h"
#include "mtk/RectMapping.h"

namespace {

namespace m = metahelper::mtk;
using nvholder::ChiRect;
using Quad = std::array<uint32_t, 4>;

Quad Q(const ChiRect& r) { return {r.left, r.top, r.width, r.height}; }
Quad Q(const __UtilsImage_Rect& r) { return {r.left, r.top, r.width, r.height}; }
using Corners = std::array<int32_t, 4>;
Corners C(const nvholder::FDFaceBox& b) { return {b.x0, b.y0, b.x1, b.y1}; }

constexpr nvholder::dimension kSensor{4080, 3060};  // differs from the active array to tell a fall-back apart

// Only whole entries of the words the table holds are searched, at most four.
TEST(FindSensorCrop, FirstMatchAmongTheFirstFourWholeEntriesWins) {
  std::vector<uint32_t> words;  // ids 7 and 9 appear twice, 11 only in a fifth entry
  for (uint32_t id : {7u, 9u, 7u, 9u, 11u}) {
    const auto n = static_cast<uint32_t>(words.size());
    words.insert(words.end(), {id, 1, 2, 3, 4, n, n + 1, n + 2, n + 3});
  }
  // Words searched, id; whether found (then the crop is the second entry's). The fifth entry is
  // not searched; with 17 words the second entry is one word short.
  const std::tuple<size_t, int32_t, bool> kCases[] = {{45, 9, true},  {45, 11, false}, {18, 9, true},
                                                      {17, 9, false}, {8, 7, false},   {0, 7, false}};
  for (const auto& [count, id, found] : kCases) {
    ChiRect crop{1, 1, 1, 1};
    EXPECT_EQ(found, m::FindSensorCrop(words.data(), count, id, &crop)) << count << " " << id;
    EXPECT_EQ((found ? Quad{9, 10, 11, 12} : Quad{1, 1, 1, 1}), Q(crop)) << count << " " << id;
  }
}

using RectCases = std::initializer_list<std::pair<ChiRect, Quad>>;

TEST(RemapForInSensorZoom, MapsOntoTheCentreHalfOrKeepsTheCrop) {
  for (const auto& [in, expected] : RectCases{
           {{1000, 750, 2000, 1500}, {0, 0, 4000, 3000}},     // the whole centre half
           {{1500, 750, 1500, 1500}, {1000, 0, 3000, 3000}},  // touching its right edge
           {{1200, 900, 1000, 800}, {400, 300, 2000, 1600}},
           {{900, 750, 2000, 1500}, {900, 750, 2000, 1500}},    // left of it
           {{1000, 750, 2001, 1500}, {1000, 750, 2001, 1500}},  // one pixel too wide
           {{1000, 800, 2000, 1500}, {1000, 800, 2000, 1500}},  // past its bottom
       })
    EXPECT_EQ(expected, Q(m::RemapForInSensorZoom(in, {4000, 3000})));
}

TEST(FitToActiveAspect, CentresOnTheOtherAxisAndFallsBackToTheSensorExtent) {
  for (const auto& [in, expected] : RectCases{
           {{0, 0, 4000, 2990}, {0, 0, 4000, 2990}},      // within the tolerance
           {{0, 500, 4000, 2250}, {0, 125, 4000, 3000}},  // too wide: taller, centred
           {{0, 500, 4000, 2251}, {0, 125, 4000, 3000}},  // odd margin rounds toward minus infinity
           {{0, 0, 4000, 2250}, {0, 0, 4000, 3060}},      // would start above the top: sensor height
           {{600, 0, 3000, 3000}, {100, 0, 4000, 3000}},  // too tall: wider, centred
           {{100, 0, 3000, 3000}, {0, 0, 4080, 3000}},    // would start left of the edge: sensor width
           {{500, 0, 2000, 1999}, {168, 0, 2664, 1999}},  // fitted width made even
       })
    EXPECT_EQ(expected, Q(m::FitToActiveAspect(in, {0, 0, 4000, 3000}, kSensor)));
}

TEST(Shift, ScaledBetweenPreAnchorAndInSensorZoomAndAppliedOnlyWhileTheCropStaysOnTheSensor) {
  const int scales[][4] = {{0, 0, -3, 5}, {0, 1, -6, 10}, {1, 0, -1, 2}, {1, 1, -3, 5}};  // flags, then x, y
  for (const auto& [preAnchor, inSensorZoom, x, y] : scales) {
    const m::Shift s = m::ScaleShift({-3, 5}, preAnchor, inSensorZoom);
    EXPECT_EQ((std::pair{x, y}), (std::pair{s.x, s.y})) << preAnchor << inSensorZoom;
  }
  const int cases[][3] = {{-100, -100, 1}, {1980, 1460, 1}, {-101, 0, 0},
                          {0, -101, 0},    {1981, 0, 0},    {0, 1461, 0}};
  for (const auto& [x, y, applied] : cases) {
    ChiRect crop{100, 100, 2000, 1500};
    EXPECT_EQ(applied == 1, m::ApplyShift(&crop, {x, y}, kSensor)) << x << "," << y;
    EXPECT_EQ((Quad{uint32_t(100 + x * applied), uint32_t(100 + y * applied), 2000, 1500}), Q(crop));
  }
}

constexpr ChiRect kFull{0, 0, 4000, 3000};  // the active array, and a crop showing all of it
constexpr ChiRect kRect{400, 300, 800, 600};
constexpr Quad kRefused{7, 7, 7, 7};  // what the output held before

TEST(MapRect, MapsIntoTheOutputImageOrRefusesEmptyArguments) {
  // Rect, crop, output width and height, the rect in the output.
  const std::tuple<ChiRect, ChiRect, int, int, Quad> cases[] = {
      {kRect, kFull, 1000, 750, {100, 75, 200, 150}},                                     // same aspect
      {{1400, 1300, 400, 300}, {400, 300, 2000, 1500}, 1000, 750, {500, 500, 200, 150}},  // crop offset
      {{100, 100, 800, 600}, {400, 300, 2000, 1500}, 1000, 750, {0, 0, 400, 300}},  // rect before the crop
      {{10, 2, 800, 600}, kFull, 1000, 750, {3, 1, 200, 150}},         // halves round away from zero
      {{0, 0, 804, 606}, kFull, 1000, 750, {0, 0, 200, 150}},          // odd extents made even
      {{3800, 2900, 800, 600}, kFull, 1000, 750, {950, 725, 50, 24}},  // cut at the right and bottom
      {{3999, 2999, 800, 600}, kFull, 1000, 750, {999, 749, 0, 0}},    // clamped to the last pixel
      {{400, 300, 800, 600}, {0, 0, 4000, 2000}, 1000, 750, {100, 75, 200, 150}},  // wider crop: not cut
      {{400, 300, uint32_t(-800), 600}, kFull, 1000, 750, {100, 75, 0, 150}},      // negative width saturates
      {{400, 1000, 800, 600}, kFull, 1600, 900, {160, 250, 320, 240}},             // wider output: rows cut
      {{400, 300, 800, 600}, kFull, 1600, 900, {160, 0, 320, 240}},                // inside the cut rows
      {{1000, 300, 500, 500}, kFull, 600, 600, {100, 60, 100, 100}},  // square output: columns cut
      {{400, 300, 500, 500}, kFull, 600, 600, {0, 60, 100, 100}},     // inside the cut columns
      // An empty output, rect or crop.
      {kRect, kFull, 0, 750, kRefused},
      {kRect, kFull, 1000, -1, kRefused},
      {{400, 300, 0, 600}, kFull, 1000, 750, kRefused},
      {{400, 300, 800, 0}, kFull, 1000, 750, kRefused},
      {kRect, {0, 0, 0, 3000}, 1000, 750, kRefused},
      {kRect, {0, 0, 4000, 0}, 1000, 750, kRefused}};
  for (const auto& [rect, crop, width, height, expected] : cases) {
    __UtilsImage_Rect out{7, 7, 7, 7};
    SCOPED_TRACE(testing::Message() << rect.left << "," << rect.top << " " << width << "x" << height);
    EXPECT_EQ(expected != kRefused, m::MapRect(rect, crop, width, height, kFull, &out));
    EXPECT_EQ(expected, Q(out));
  }
}

TEST(AngleClass, ClassBoundaries) {
  const int32_t cases[][2] = {{0, 0},    {44, 0},   {45, 270}, {134, 270}, {135, 180}, {224, 180},
                              {225, 90}, {314, 90}, {315, 0},  {359, 0},   {-1, 0},    {360, 0}};
  for (const auto& [angle, expected] : cases) EXPECT_EQ(expected, m::AngleClass(angle)) << angle;
}

// In in-sensor-zoom mode a corner c maps to (c - A/4) * 2, A the active extent (4003: quarter 1000).
TEST(FaceBoxes, CornersMapAndScaleInWrappingArithmetic) {
  const int32_t face[m::kFaceWords] = {900, 900, 1400, 1100, 0, 1, 2, 3, 4};
  const nvholder::FDFaceBox zoomed = m::ScaledBox(m::FaceCorners(face, true, {0, 0, 4003, 3000}), 2);
  EXPECT_EQ((Corners{-400, 600, 1600, 1400}), C(zoomed));
  // Extreme corners wrap modulo 2^32 rather than overflowing, doubled or as extents.
  const nvholder::FDFaceBox extreme{INT32_MAX, -1, INT32_MIN, 5};
  EXPECT_EQ((Corners{-2, -2, 0, 10}), C(m::ScaledBox(extreme, 2)));
  EXPECT_EQ((Quad{INT32_MAX, UINT32_MAX, 1, 6}), Q(m::BoxRect(extreme)));
}

// A face's centre falls back to the image's outside it; a region's to half its size at the origin.
TEST(Centres, FaceAndRegionCentresAndTheirFallBacks) {
  using P = std::pair<int32_t, int32_t>;
  // Rect, face centre in a 1920 x 1080 image, region centre.
  const std::tuple<__UtilsImage_Rect, P, P> kCases[] = {
      {{100, 100, 200, 100}, {200, 150}, {200, 150}},
      {{1900, 100, 100, 100}, {960, 540}, {1950, 150}},  // right of the image
      {{0, 0, 1, 1}, {960, 540}, {0, 0}},                // centre 0: neither side of 1
      {{1918, 1078, 4, 4}, {1920, 1080}, {1920, 1080}},  // on the edge still inside
  };
  for (const auto& [rect, faceCentre, regionCentre] : kCases) {
    const __UtilsImage_point face = m::FaceCenter(rect, 1920, 1080);
    const __UtilsImage_point region = m::RegionCenter(rect);
    EXPECT_EQ(faceCentre, P(face.x, face.y)) << rect.left << "," << rect.top;
    EXPECT_EQ(regionCentre, P(region.x, region.y)) << rect.left << "," << rect.top;
  }
}

TEST(AeRatioFromAdjust, ExponentBelowTenThousandRatioAbove) {
  const float cases[][2] = {{0, 1.0f},         {1000, 2.0f},  {-1000, 0.5f},
                            {2500, 5.656854f}, {10000, 0.1f}, {50000, 0.5f}};
  for (const auto& [value, expected] : cases)
    EXPECT_FLOAT_EQ(expected, m::AeRatioFromAdjust(int32_t(value))) << value;
  EXPECT_NEAR(1023.29f, m::AeRatioFromAdjust(9999), 0.005f);
}

TEST(FoldHistogram, SumsEachRunOfFourBins) {
  std::vector<uint32_t> bins(1024);
  for (uint32_t i = 0; i < bins.size(); ++i) bins[i] = i;
  bins[4] = 0xFFFFFFFFu;  // 32-bit sums wrap
  nvholder::PreviewBrightnessInfo out{};
  m::FoldHistogram(bins.data(), &out);
  EXPECT_EQ((std::vector<uint32_t>{256, 6, 5 + 6 + 7 - 1, 1020 + 1021 + 1022 + 1023}),
            (std::vector<uint32_t>{out.binCount, out.bins[0], out.bins[1], out.bins[255]}));
}

TEST(FillDefaultGammaTables, LinearAndGammaDefaults) {
  nvholder::GammaTableInfo out;
  std::memset(&out, 0xAB, sizeof(out));
  m::FillDefaultGammaTables(&out);
  EXPECT_EQ(0, out.isValid);
  const uint32_t linear[][2] = {{1, 2},     {127, 254},  {128, 256}, {191, 508},
                                {192, 512}, {255, 1016}, {256, 1023}};
  for (const auto& [i, expected] : linear) EXPECT_EQ(expected, out.linearTable[i]) << i;
  const uint32_t gamma[][2] = {{0, 0}, {1, 13}, {255, 1020}, {256, 1023}};  // the curve's ends, its end mark
  for (const auto& [i, expected] : gamma) EXPECT_EQ(expected, out.gammaTable[i]) << i;
  for (int i = 1; i < 256; ++i)
    EXPECT_LE(out.gammaTable[i - 1], out.gammaTable[i]) << "the curve rises at " << i;
}

}  // namespace
