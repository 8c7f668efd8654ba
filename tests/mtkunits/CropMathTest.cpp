// Crop arithmetic: sensor-crop lookup, in-sensor-zoom remapping, aspect fit
// and the zoom-stabilisation shift.
#include "mtk/CropMath.h"

#include <gtest/gtest.h>

#include <vector>

#include "RectEq.h"

namespace {

using metahelper::mtk::Shift;
using nvholder::ChiRect;
using nvholder::dimension;

constexpr ChiRect kActive{0, 0, 4000, 3000};
constexpr dimension kSensor{4080, 3060};  // differs from the active array to tell a fall-back apart

// Five 9-word entries; ids 7 and 9 appear twice, 11 only in the fifth entry.
std::vector<uint32_t> SensorPolicyTable() {
  std::vector<uint32_t> words;
  for (uint32_t id : {7u, 9u, 7u, 9u, 11u}) {
    const uint32_t n = static_cast<uint32_t>(words.size());
    words.insert(words.end(), {id, 1, 2, 3, 4, n, n + 1, n + 2, n + 3});
  }
  return words;
}

TEST(FindSensorCrop, FirstMatchOfTheFirstFourEntriesWins) {
  const std::vector<uint32_t> words = SensorPolicyTable();
  ChiRect crop{1, 1, 1, 1};
  ASSERT_TRUE(metahelper::mtk::FindSensorCrop(words.data(), 9, &crop));
  EXPECT_EQ((ChiRect{9, 10, 11, 12}), crop);
  EXPECT_FALSE(metahelper::mtk::FindSensorCrop(words.data(), 11, &crop)) << "the fifth entry is not searched";
  EXPECT_EQ((ChiRect{9, 10, 11, 12}), crop) << "no match leaves the crop alone";
}

struct RemapCase {
  ChiRect crop;
  ChiRect expected;
};

TEST(RemapForInSensorZoom, MapsOntoTheCentreHalfOrKeepsTheCrop) {
  const dimension sensor{4000, 3000};
  const RemapCase cases[] = {
      {{1000, 750, 2000, 1500}, {0, 0, 4000, 3000}},     // the whole centre half
      {{1500, 750, 1500, 1500}, {1000, 0, 3000, 3000}},  // touching the right edge
      {{1200, 900, 1000, 800}, {400, 300, 2000, 1600}},
      {{900, 750, 2000, 1500}, {900, 750, 2000, 1500}},    // left of the centre half
      {{1000, 700, 2000, 1500}, {1000, 700, 2000, 1500}},  // above it
      {{1000, 750, 2001, 1500}, {1000, 750, 2001, 1500}},  // one pixel too wide
      {{1000, 800, 2000, 1500}, {1000, 800, 2000, 1500}},  // past the bottom
  };
  for (const RemapCase& c : cases) {
    EXPECT_EQ(c.expected, metahelper::mtk::RemapForInSensorZoom(c.crop, sensor)) << "crop " << c.crop;
  }
}

TEST(FitToActiveAspect, CentresOnTheOtherAxisAndFallsBackToTheSensorExtent) {
  const RemapCase cases[] = {
      {{0, 0, 4000, 3000}, {0, 0, 4000, 3000}},      // same aspect
      {{0, 0, 4000, 2990}, {0, 0, 4000, 2990}},      // within the tolerance
      {{0, 500, 4000, 2250}, {0, 125, 4000, 3000}},  // too wide: taller, centred
      {{0, 500, 4000, 2251}, {0, 125, 4000, 3000}},  // odd margin rounds toward minus infinity
      {{0, 0, 4000, 2250}, {0, 0, 4000, 3060}},      // would start above the top: sensor height
      {{600, 0, 3000, 3000}, {100, 0, 4000, 3000}},  // too tall: wider, centred
      {{100, 0, 3000, 3000}, {0, 0, 4080, 3000}},    // would start left of the edge: sensor width
      {{500, 0, 2000, 1999}, {168, 0, 2664, 1999}},  // fitted width made even
  };
  for (const RemapCase& c : cases) {
    EXPECT_EQ(c.expected, metahelper::mtk::FitToActiveAspect(c.crop, kActive, kSensor)) << "crop " << c.crop;
  }
}

TEST(ScaleShift, ConvertsBetweenPreAnchorAndInSensorZoomScales) {
  struct Case {
    bool isPreAnchor;
    bool isInSensorZoom;
    Shift expected;
  };
  const Case cases[] = {
      {false, false, {-3, 5}}, {false, true, {-6, 10}}, {true, false, {-1, 2}}, {true, true, {-3, 5}}};
  for (const Case& c : cases) {
    const Shift s = metahelper::mtk::ScaleShift({-3, 5}, c.isPreAnchor, c.isInSensorZoom);
    EXPECT_EQ(c.expected.x, s.x) << c.isPreAnchor << c.isInSensorZoom;
    EXPECT_EQ(c.expected.y, s.y) << c.isPreAnchor << c.isInSensorZoom;
  }
}

TEST(ApplyShift, MovesTheCropOnlyWhileItStaysOnTheSensor) {
  struct Case {
    Shift shift;
    bool applied;
  };
  const Case cases[] = {{{-100, -100}, true}, {{1980, 1460}, true}, {{-101, 0}, false},
                        {{0, -101}, false},   {{1981, 0}, false},   {{0, 1461}, false}};
  for (const Case& c : cases) {
    ChiRect crop{100, 100, 2000, 1500};
    EXPECT_EQ(c.applied, metahelper::mtk::ApplyShift(&crop, c.shift, kSensor))
        << c.shift.x << "," << c.shift.y;
    const ChiRect expected =
        c.applied ? ChiRect{100u + c.shift.x, 100u + c.shift.y, 2000, 1500} : ChiRect{100, 100, 2000, 1500};
    EXPECT_EQ(expected, crop);
  }
}

}  // namespace
