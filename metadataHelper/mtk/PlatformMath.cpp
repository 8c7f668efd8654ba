// Platform units and tables of the MediaTek helper.
#include "PlatformMath.h"

#include <cmath>
#include <cstddef>

namespace metahelper::mtk {
namespace {

constexpr int kTableEntries = 256;
constexpr uint32_t kTableEnd = 1023;  // entry 256 of both tone tables

// The platform's default gamma curve, already truncated to integers (the
// curve itself is defined in single precision with fractions).
constexpr uint16_t kDefaultGamma[kTableEntries] = {
    0,    13,   27,   41,   54,   67,   80,   93,   105,  117,  130,  142,  153,  165,  177,  188,
    199,  210,  221,  232,  242,  252,  263,  273,  282,  292,  302,  311,  321,  330,  339,  348,
    356,  365,  374,  382,  390,  398,  406,  414,  422,  429,  437,  444,  452,  459,  466,  473,
    480,  486,  493,  500,  506,  512,  519,  525,  531,  537,  543,  548,  554,  560,  565,  570,
    576,  581,  586,  591,  596,  601,  606,  611,  616,  620,  625,  630,  634,  638,  643,  647,
    651,  655,  660,  664,  668,  671,  675,  679,  683,  687,  690,  694,  697,  701,  704,  708,
    711,  715,  718,  721,  724,  728,  731,  734,  737,  740,  743,  746,  749,  752,  755,  758,
    760,  763,  766,  769,  771,  774,  777,  779,  782,  785,  787,  790,  792,  795,  797,  800,
    802,  805,  807,  810,  812,  814,  817,  819,  821,  824,  826,  828,  831,  833,  835,  837,
    840,  842,  844,  846,  849,  851,  853,  855,  857,  859,  862,  864,  866,  868,  870,  872,
    874,  877,  879,  881,  883,  885,  887,  889,  891,  893,  895,  897,  899,  901,  903,  905,
    907,  909,  911,  913,  915,  917,  919,  921,  923,  925,  927,  929,  931,  933,  935,  937,
    939,  941,  943,  944,  946,  948,  950,  952,  954,  956,  957,  959,  961,  963,  964,  966,
    968,  970,  971,  973,  975,  976,  978,  979,  981,  983,  984,  986,  987,  989,  990,  991,
    993,  994,  996,  997,  998,  999,  1001, 1002, 1003, 1004, 1005, 1006, 1007, 1008, 1009, 1010,
    1011, 1012, 1013, 1014, 1014, 1015, 1016, 1016, 1017, 1017, 1018, 1018, 1019, 1019, 1019, 1020,
};

// The default linear table: slope 2 up to 128, then 4, then 8 from 192.
uint32_t DefaultLinear(uint32_t i) {
  if (i < 128) return 2 * i;
  if (i < 192) return 256 + 4 * (i - 128);
  return 512 + 8 * (i - 192);
}

constexpr int kModeWord = 4;  // of a frame result's per-camera entry
constexpr int32_t kNoCamera = -1;

// The maker's sensor mode type, indexed by platform sensor mode.
constexpr int32_t kSensorModeTypes[] = {0, 18, 0, 2, 6, 11, 17, 16, 4};

}  // namespace

int32_t SaturateToInt32(float value) {
  if (!(value == value)) return 0;
  if (value <= -2147483648.0f) return INT32_MIN;
  if (value >= 2147483648.0f) return INT32_MAX;
  return static_cast<int32_t>(value);
}

float IspGainFromFixed(int32_t value) { return static_cast<float>(value * 0.000244140625); }

float ToneGainFromFixed(int32_t value) { return static_cast<float>(value) / 1024.0f; }

float AeRatioFromAdjust(int32_t value) {
  if (value == 0) return 1.0f;
  if (value < 10000)
    return static_cast<float>(std::exp2(static_cast<double>(static_cast<float>(value) / 1000.0f)));
  return static_cast<float>(value) / 100000.0f;
}

void FoldHistogram(const uint32_t* bins1024, nvholder::PreviewBrightnessInfo* out) {
  out->binCount = kTableEntries;
  for (int i = 0; i < kTableEntries; ++i) {
    const uint32_t* run = bins1024 + 4 * i;
    out->bins[i] = run[0] + run[1] + run[2] + run[3];
  }
}

void FillDefaultGammaTables(nvholder::GammaTableInfo* out) {
  out->isValid = 0;
  for (uint32_t i = 0; i < kTableEntries; ++i) {
    out->linearTable[i] = DefaultLinear(i);
    out->gammaTable[i] = kDefaultGamma[i];
  }
  out->linearTable[kTableEntries] = kTableEnd;
  out->gammaTable[kTableEntries] = kTableEnd;
}

// An unknown camera (-1) has no mode: the entries are not looked at, so a
// short frame result is never read past its end for it.
int32_t PlatformSensorMode(const int32_t* frameResult, int32_t cameraId) {
  int32_t mode = 0;
  if (cameraId == kNoCamera) return mode;
  for (uint32_t k = 0; k < kCameraEntries; ++k) {
    const int32_t* entry = frameResult + kFirstCameraEntry + k * kCameraEntryWords;
    if (entry[0] == cameraId) mode = entry[kModeWord];  // a later entry overrides
  }
  return mode;
}

int32_t SensorModeTypeFromPlatformMode(int32_t mode) {
  constexpr size_t kKnownModes = sizeof(kSensorModeTypes) / sizeof(kSensorModeTypes[0]);
  return static_cast<uint32_t>(mode) < kKnownModes ? kSensorModeTypes[mode] : 0;
}

}  // namespace metahelper::mtk
