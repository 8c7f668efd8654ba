// Index -> tag resolution and the per-camera static metadata store.
#include <gtest/gtest.h>

#include <set>
#include <utility>

#include "MetaTagWrapper.h"

namespace {

constexpr uint32_t kUndeclared = 0xFFFFFFFFu;

// Callers are built against these values.
static_assert(META_BOKEH_CONFIG_STREAM == 7 && META_FWK_CAMERA_ID == 110 &&
              META_DNG_WHITELEVEL_SCALE_FACTOR == 460);

const std::pair<META_TAG_INDEX, const char*> kDeclaredIndices[] = {
#define META_TAG_INDEX_ENTRY(enumerator, value, name) {enumerator, name},
#include "MetaTagIndex.def"
};

TEST(MetaTagWrapper, IndicesResolveToTheirOwnTags) {
  MetaTagWrapper& wrapper = MetaTagWrapper::getInstance();
  EXPECT_STREQ("nuvaro.snapshot.fwkCameraId", NvMetadata::getTagName(wrapper(META_FWK_CAMERA_ID)));
  std::set<uint32_t> seen;
  for (const auto& [index, name] : kDeclaredIndices) {
    EXPECT_STREQ(name, NvMetadata::getTagName(wrapper(index)));
    EXPECT_TRUE(seen.insert(wrapper(index)).second) << name << " shares its tag with another index";
  }
}

TEST(MetaTagWrapper, UndeclaredIndicesAndOverridesUntilReset) {
  MetaTagWrapper& wrapper = MetaTagWrapper::getInstance();
  for (int value : {0, 1, 8, 200, 467, 468, 469, 511})
    EXPECT_EQ(kUndeclared, wrapper(static_cast<META_TAG_INDEX>(value))) << value;
  const uint32_t builtIn = wrapper(META_FWK_CAMERA_ID);
  const auto index5 = static_cast<META_TAG_INDEX>(5);
  wrapper.setTag(META_FWK_CAMERA_ID, kUndeclared);
  wrapper.setTag(index5, ANDROID_SENSOR_TIMESTAMP);
  wrapper.setTag(META_NO_INDEX, ANDROID_SENSOR_TIMESTAMP);
  EXPECT_EQ(kUndeclared, wrapper(META_FWK_CAMERA_ID));
  EXPECT_EQ(uint32_t{ANDROID_SENSOR_TIMESTAMP}, wrapper(index5));
  EXPECT_EQ(kUndeclared, wrapper(META_NO_INDEX));
  wrapper.resetTags();
  EXPECT_EQ(builtIn, wrapper(META_FWK_CAMERA_ID));
  EXPECT_EQ(kUndeclared, wrapper(index5));
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
