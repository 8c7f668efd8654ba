// Platform units, default tables and the sensor-mode lookup.
#include "mtk/PlatformMath.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

namespace {

TEST(FixedPoint, GainConversions) {
  const struct {
    int32_t value;
    float isp;
    float tone;
  } cases[] = {{4096, 1.0f, 4.0f},  {6144, 1.5f, 6.0f},    {1, 0.000244140625f, 0.0009765625f},
               {512, 0.125f, 0.5f}, {-4096, -1.0f, -4.0f}, {0, 0.0f, 0.0f}};
  for (const auto& c : cases) {
    EXPECT_FLOAT_EQ(c.isp, metahelper::mtk::IspGainFromFixed(c.value)) << c.value;
    EXPECT_FLOAT_EQ(c.tone, metahelper::mtk::ToneGainFromFixed(c.value)) << c.value;
  }
}

TEST(AeRatioFromAdjust, ExponentBelowTenThousandRatioAbove) {
  const struct {
    int32_t value;
    float expected;
  } cases[] = {{0, 1.0f}, {1000, 2.0f}, {-1000, 0.5f}, {2500, 5.656854f}, {10000, 0.1f}, {50000, 0.5f}};
  for (const auto& c : cases)
    EXPECT_FLOAT_EQ(c.expected, metahelper::mtk::AeRatioFromAdjust(c.value)) << c.value;
  EXPECT_NEAR(1023.29f, metahelper::mtk::AeRatioFromAdjust(9999), 0.005f);
}

TEST(FoldHistogram, SumsEachRunOfFourBins) {
  std::vector<uint32_t> bins(1024);
  for (uint32_t i = 0; i < bins.size(); ++i) bins[i] = i;
  bins[4] = 0xFFFFFFFFu;  // 32-bit sums wrap
  nvholder::PreviewBrightnessInfo out{};
  metahelper::mtk::FoldHistogram(bins.data(), &out);
  EXPECT_EQ(256u, out.binCount);
  EXPECT_EQ(6u, out.bins[0]);
  EXPECT_EQ(5u + 6 + 7 - 1, out.bins[1]);
  EXPECT_EQ(1020u + 1021 + 1022 + 1023, out.bins[255]);
}

TEST(FillDefaultGammaTables, LinearAndGammaDefaults) {
  nvholder::GammaTableInfo out;
  memset(&out, 0xAB, sizeof(out));
  metahelper::mtk::FillDefaultGammaTables(&out);
  EXPECT_EQ(0, out.isValid);
  const uint32_t linear[][2] = {{0, 0},     {1, 2},     {127, 254},  {128, 256},
                                {191, 508}, {192, 512}, {255, 1016}, {256, 1023}};
  for (const auto& [i, expected] : linear) EXPECT_EQ(expected, out.linearTable[i]) << i;
  const uint32_t gamma[][2] = {{0, 0},      {1, 13},     {2, 27},     {128, 802},
                               {244, 1014}, {254, 1019}, {255, 1020}, {256, 1023}};
  for (const auto& [i, expected] : gamma) EXPECT_EQ(expected, out.gammaTable[i]) << i;
  for (int i = 1; i < 256; ++i)
    EXPECT_LE(out.gammaTable[i - 1], out.gammaTable[i]) << "the curve rises at " << i;
}

TEST(SensorModeType, PlatformModeTable) {
  const int32_t types[] = {0, 18, 0, 2, 6, 11, 17, 16, 4, 0, 0};
  for (int32_t mode = 0; mode < 11; ++mode) {
    EXPECT_EQ(types[mode], metahelper::mtk::SensorModeTypeFromPlatformMode(mode)) << mode;
  }
  EXPECT_EQ(0, metahelper::mtk::SensorModeTypeFromPlatformMode(-1));
}

TEST(PlatformSensorMode, LaterMatchingEntryWins) {
  std::vector<int32_t> frame(96 + 4 * 80, -1);
  const int32_t entries[][2] = {{3, 3}, {-1, 7}, {3, 5}, {6, 8}};  // camera id, mode
  for (int k = 0; k < 4; ++k) {
    frame[96 + 80 * k] = entries[k][0];
    frame[96 + 80 * k + 4] = entries[k][1];
  }
  const int32_t cases[][2] = {{3, 5}, {6, 8}, {9, 0}, {-1, 0}};  // an unknown camera (-1) has no mode
  for (const auto& [id, mode] : cases)
    EXPECT_EQ(mode, metahelper::mtk::PlatformSensorMode(frame.data(), id)) << id;
}

}  // namespace
