// Tag registry (name <-> number <-> type), index -> tag resolution, per-camera static metadata.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <tuple>
#include <utility>

#include "MetaTagWrapper.h"
#include "NvMetadata.h"
#include "RegisteredTags.h"
#include "mtk/mtk_metadata_tag.h"

namespace {

// Name, number (kAnyVendor: any number of a vendor section), type (-1: the name is unknown).
using TagRow = std::tuple<const char*, uint32_t, int>;
constexpr uint32_t kAnyVendor = 0xFFFFFFFFu;

// Numbers fixed by the framework and MediaTek, vendor tags read by name, near misses.
const TagRow kTags[] = {
    {"android.colorCorrection.transform", 0x1, TYPE_RATIONAL},
    {"com.mediatek.3afeature.awbColorTemperature", 0x80060100, TYPE_FLOAT},
    {"com.mediatek.supernight.gammaInfo", 0x910000d9, TYPE_INT32},
    {"com.nuvaro.lens.info.ViewAngle", kAnyVendor, TYPE_DOUBLE},
    {"com.nv.node.nvaihighlight.isHighLight", kAnyVendor, TYPE_INT32},
    {"org.quic.camera.qtimer.startOfExposure", kAnyVendor, TYPE_INT64},
    {"", 0, -1},
    {nullptr, 0, -1},
    {"android.sensor.exposureTim", 0, -1},
    {"android.sensor.exposureTimeX", 0, -1},
    {"nuvaro.not.a.tag", 0, -1},
#define CAMERA_METADATA_TAG(constant, number, name, type) {name, constant, type},
#include "system/camera_metadata_tags.def"
#define MTK_METADATA_TAG(constant, number, name, type) {name, constant, type},
#include "mtk/mtk_metadata_tags.def"
};

TEST(TagRegistry, NamesResolveToNumberTypeAndBack) {
  for (const auto& [name, wanted, type] : kTags) {
    unsigned int number = 1234;
    ASSERT_EQ(type != -1, NvMetadata::getTagFromName(name, &number) == 0) << name;
    if (type == -1) {
      EXPECT_EQ(1234u, number) << name;  // a refused lookup leaves the output alone
      continue;
    }
    EXPECT_TRUE(wanted != kAnyVendor ? number == wanted : number >= 0x80000000u) << name << std::hex << number;
    EXPECT_EQ(type, NvMetadata::getTagType(number)) << name;
    EXPECT_STREQ(name, NvMetadata::getTagName(number));
  }
  for (uint32_t number : {0x4u, 0x5u, 0xE0003u, 0x80060002u, 0xA000FFFFu, 0xFFFFFFFFu})
    EXPECT_TRUE(NvMetadata::getTagType(number) == -1 && !NvMetadata::getTagName(number))
        << std::hex << number;
}

TEST(TagRegistry, EveryRegisteredTagResolvesBothWays) {
  for (const nvmetadata::TagInfo& info : nvmetadata::kRegisteredTags) {
    unsigned int found = 0;
    EXPECT_TRUE(NvMetadata::getTagFromName(info.name, &found) == 0 && found == info.tag) << info.name;
    EXPECT_STREQ(info.name, NvMetadata::getTagName(info.tag));
  }
}

// The name lookup hashes only part of a name, so names that differ anywhere
// else must still be told apart by the full compare.
TEST(TagRegistry, NamesOneEditAwayFromARegisteredNameAreNotIt) {
  using Edit = std::string (*)(std::string);
  const std::pair<const char*, Edit> kEdits[] = {
      {"first character changed", [](std::string s) { return s.replace(0, 1, "#"); }},
      {"middle character changed", [](std::string s) { return s.replace(s.size() / 2, 1, "#"); }},
      {"last character changed", [](std::string s) { return s.replace(s.size() - 1, 1, "#"); }},
      {"last character dropped", [](std::string s) { return s.substr(0, s.size() - 1); }},
      {"character appended", [](std::string s) { return s + "x"; }},
      {"first character dropped", [](std::string s) { return s.substr(1); }},
  };
  for (const auto& [what, edit] : kEdits) {
    for (const nvmetadata::TagInfo& info : nvmetadata::kRegisteredTags) {
      const std::string edited = edit(info.name);
      unsigned int found = 0;
      if (NvMetadata::getTagFromName(edited.c_str(), &found) != 0) continue;
      EXPECT_STREQ(edited.c_str(), NvMetadata::getTagName(found)) << what << ": " << info.name;
    }
  }
}

const std::pair<META_TAG_INDEX, const char*> kDeclaredIndices[] = {
#define META_TAG_INDEX_ENTRY(enumerator, value, name) {enumerator, name},
#include "MetaTagIndex.def"
};

TEST(MetaTagWrapper, IndicesResolveToTheirOwnTags) {
  MetaTagWrapper& wrapper = MetaTagWrapper::getInstance();
  std::set<uint32_t> seen;
  for (const auto& [index, name] : kDeclaredIndices) {
    EXPECT_STREQ(name, NvMetadata::getTagName(wrapper(index)));
    EXPECT_TRUE(seen.insert(wrapper(index)).second) << name << " shares its tag with another index";
  }
}

TEST(MetaTagWrapper, UndeclaredIndicesAndOverridesUntilReset) {
  MetaTagWrapper& wrapper = MetaTagWrapper::getInstance();
  for (int value : {0, 8, 467, 468, 469, 511})
    EXPECT_EQ(MetaTagWrapper::kUndeclared, wrapper(static_cast<META_TAG_INDEX>(value))) << value;
  const uint32_t builtIn = wrapper(META_FWK_CAMERA_ID);
  const auto index5 = static_cast<META_TAG_INDEX>(5);
  wrapper.setTag(META_FWK_CAMERA_ID, MetaTagWrapper::kUndeclared);
  wrapper.setTag(index5, ANDROID_SENSOR_TIMESTAMP);
  wrapper.setTag(META_NO_INDEX, ANDROID_SENSOR_TIMESTAMP);
  EXPECT_EQ(MetaTagWrapper::kUndeclared, wrapper(META_FWK_CAMERA_ID));
  EXPECT_EQ(uint32_t{ANDROID_SENSOR_TIMESTAMP}, wrapper(index5));
  EXPECT_EQ(MetaTagWrapper::kUndeclared, wrapper(META_NO_INDEX));
  wrapper.resetTags();
  EXPECT_EQ(builtIn, wrapper(META_FWK_CAMERA_ID));
  EXPECT_EQ(MetaTagWrapper::kUndeclared, wrapper(index5));
}

TEST(StaticMetadataWraper, KeepsOneContainerPerCameraAndRecordsRequests) {
  StaticMetadataWraper* store = StaticMetadataWraper::getInstance();
  store->clear();
  auto back = std::make_shared<NvMetadata>();
  store->setStaticMetadata(0, back);
  EXPECT_EQ(nullptr, store->getStaticMetadata(0xFFFFFFFFu));
  EXPECT_TRUE(store->lastRequestedCameraId() == 0xFFFFFFFFu && store->requestCount() == 1);
  EXPECT_EQ(back, store->getStaticMetadata(0));
  EXPECT_TRUE(store->lastRequestedCameraId() == 0 && store->requestCount() == 2);
}

}  // namespace
