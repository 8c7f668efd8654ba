// What the metadata container promises besides what fuzz/ContainerFuzzer
// checks against its model (every element type, refused and overflowing
// writes, a table grown past a hundred tags, copies, moves, data that
// stays put, number order) and tests/perf (no lookup allocates, since every
// getter's does not): a lookup observer hears every find of its own container.
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "NvMetadata.h"

namespace {

// A tool learns every tag an answer rested on from the container it gave.
TEST(NvMetadata, LookupObserverHearsEveryFindOfItsOwnContainer) {
  using Lookup = NvMetadata::Lookup;
  struct Heard {
    std::vector<std::tuple<unsigned int, std::string, bool, size_t>> lookups;
  } heard;
  const auto listen = [](void* context, const NvMetadata&, const Lookup& lookup) {
    static_cast<Heard*>(context)->lookups.emplace_back(lookup.tag, lookup.name ? lookup.name : "-",
                                                       lookup.present, lookup.count);
  };
  NvMetadata meta;
  const int32_t crop[] = {0, 0, 40, 30};
  meta.update(ANDROID_SCALER_CROP_REGION, crop, 4);
  meta.update(ANDROID_SENSOR_SENSITIVITY, crop, 0);
  meta.setLookupObserver(listen, &heard);
  meta.find(ANDROID_SCALER_CROP_REGION);
  meta.find("android.sensor.sensitivity");
  meta.find("android.sensor.exposureTime");
  meta.find("no.such.tag");
  NvMetadata copy = meta;
  copy.find(ANDROID_SCALER_CROP_REGION);  // copies are not observed
  meta.setLookupObserver(nullptr, nullptr);
  meta.find(ANDROID_SCALER_CROP_REGION);
  const decltype(heard.lookups) expected = {
      {ANDROID_SCALER_CROP_REGION, "-", true, 4},
      {ANDROID_SENSOR_SENSITIVITY, "android.sensor.sensitivity", true, 0},
      {ANDROID_SENSOR_EXPOSURE_TIME, "android.sensor.exposureTime", false, 0},
      {NvMetadata::kUnknownTag, "no.such.tag", false, 0},
  };
  EXPECT_EQ(expected, heard.lookups);
}

}  // namespace
