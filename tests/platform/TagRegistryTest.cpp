// Tag registry (name <-> number <-> type, enum names) against the platform's table,
// run-time vendor tags, index -> tag resolution, per-camera static metadata.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "MetaTagWrapper.h"
#include "NvMetadata.h"
#include "NvVendorTags.h"
#include "RegisteredTags.h"
#include "mtk/mtk_metadata_tag.h"

namespace {

// Numbers MediaTek fixed, a null name, numbers between and past the sections;
// fuzz/ContainerFuzzer looks up every registered name and number.
TEST(TagRegistry, FixedNumbersResolveAndNumbersOutsideTheSectionsDoNot) {
  const std::tuple<const char*, uint32_t, int> kFixed[] = {
      {"com.mediatek.3afeature.awbColorTemperature", 0x80060100, TYPE_FLOAT},
      {"com.mediatek.supernight.gammaInfo", 0x910000d9, TYPE_INT32}};
  for (const auto& [name, wanted, type] : kFixed) {
    unsigned int number = 0;
    EXPECT_TRUE(NvMetadata::getTagFromName(name, &number) == 0 && number == wanted) << name;
    EXPECT_EQ(type, NvMetadata::getTagType(number)) << name;
    EXPECT_STREQ(name, NvMetadata::getTagName(number));
  }
  unsigned int untouched = 1234;
  EXPECT_TRUE(NvMetadata::getTagFromName(nullptr, &untouched) != 0 && untouched == 1234);
  for (uint32_t number : {0x5u, 0x1003Cu, 0xE0023u, 0x230000u, 0x80060002u, 0xA000FFFFu, 0xFFFFFFFFu})
    EXPECT_TRUE(NvMetadata::getTagType(number) == -1 && !NvMetadata::getTagName(number))
        << std::hex << number;
}

// Every Android tag of the platform's table, under its name, number and type,
// with exactly the enum names its printer writes; and no Android tag besides.
TEST(TagRegistry, HoldsThePlatformTableRowByRow) {
  const char* const kTypes[NUM_TYPES] = {"byte", "int32", "float", "int64", "double", "rational"};
  std::ifstream in(METAHELPER_ANDROID_TAG_TABLE);
  std::string line;
  std::getline(in, line);  // column names
  size_t rows = 0;
  for (; std::getline(in, line); ++rows) {
    std::vector<std::string> field;
    std::istringstream columns(line);
    for (std::string text; std::getline(columns, text, '\t');) field.push_back(text);
    field.resize(10);
    const std::string& name = field[0];
    unsigned int number = 0;
    ASSERT_EQ(0, NvMetadata::getTagFromName(name.c_str(), &number)) << name;
    EXPECT_EQ(std::stoul(field[1], nullptr, 16), number) << name;
    const int type = NvMetadata::getTagType(number);
    EXPECT_TRUE(type >= 0 && type < NUM_TYPES && field[3] == kTypes[type]) << name;
    EXPECT_STREQ(name.c_str(), NvMetadata::getTagName(number));
    size_t registered = 0, listed = 0;
    for (const nvmetadata::EnumName& enumName : nvmetadata::kEnumNames) registered += enumName.tag == number;
    std::istringstream values(field[7]);
    for (std::string pair; std::getline(values, pair, ','); ++listed) {
      const std::string enumName = pair.substr(0, pair.find('='));
      const int64_t value = std::stoll(pair.substr(pair.find('=') + 1));
      int64_t found = value + 1;
      EXPECT_TRUE(NvMetadata::getTagEnumValue(number, enumName.data(), enumName.size(), &found) == 0 &&
                  found == value)
          << name << " " << enumName;
      EXPECT_STREQ(enumName.c_str(), NvMetadata::getTagEnumName(number, value)) << name;
    }
    EXPECT_EQ(listed, registered) << name;
  }
  EXPECT_EQ(333u, rows) << METAHELPER_ANDROID_TAG_TABLE;
  size_t android = 0;
  for (const nvmetadata::TagInfo& info : nvmetadata::kRegisteredTags) android += info.tag < 0x80000000u;
  EXPECT_EQ(rows, android);
}

// A prefix, a longer name, a name holding a NUL (once read past a shorter
// name), another tag's name: no name. Every real name is in the table above.
TEST(TagRegistry, EnumNamesBelongToTheirTag) {
  const std::pair<uint32_t, std::string> kNoName[] = {{ANDROID_CONTROL_AE_MODE, "ON_AUTO"},
                                                      {ANDROID_CONTROL_AE_MODE, "ON_AUTO_FLASH_X"},
                                                      {ANDROID_CONTROL_AE_MODE, {"ON\0FLASH", 8}},
                                                      {ANDROID_SENSOR_EXPOSURE_TIME, "OFF"},
                                                      {MTK_3A_FEATURE_AF_ROI, "OFF"}};
  int64_t value = 7;
  for (const auto& [tag, name] : kNoName)
    EXPECT_NE(0, NvMetadata::getTagEnumValue(tag, name.data(), name.size(), &value)) << name;
  EXPECT_EQ(7, value);
  EXPECT_EQ(nullptr, NvMetadata::getTagEnumName(ANDROID_CONTROL_AE_MODE, 7));
}

// Another device's vendor tags, added at run time, resolve like built-in ones
// while their table is installed, and never displace a built-in tag.
TEST(VendorTagTable, ResolvesWhileInstalledAndNeverShadowsTheRegistry) {
  NvVendorTagTable table;
  EXPECT_EQ(0, table.add("org.vendor.hist.buckets", 0x80070001u, TYPE_INT32));
  const std::tuple<const char*, unsigned int, int> kRefused[] = {
      {"org.vendor.hist.buckets", 0x80070002u, TYPE_INT32},       // name taken here
      {"org.vendor.other", 0x80070001u, TYPE_INT32},              // number taken here
      {"com.mediatek.3afeature.afRoi", 0x80070003u, TYPE_INT32},  // name built in
      {"org.vendor.other", MTK_3A_FEATURE_AF_ROI, TYPE_INT32},    // number built in
      {"org.vendor.other", 0xFFFFFFFFu, TYPE_INT32},              // reserved
      {"", 0x80070004u, TYPE_INT32},                              // no name
      {"org.vendor.other", 0x80070004u, NUM_TYPES},               // no type
  };
  for (const auto& [name, tag, type] : kRefused)
    EXPECT_NE(0, table.add(name, tag, static_cast<uint8_t>(type))) << name << std::hex << " " << tag;
  EXPECT_EQ(1u, table.size());

  unsigned int tag = 0;
  const int32_t values[] = {1, 2};
  NvMetadata meta;
  EXPECT_NE(0, NvMetadata::getTagFromName("org.vendor.hist.buckets", &tag));
  EXPECT_NE(0, meta.update(0x80070001u, values, 2));
  NvMetadata::setVendorTagTable(&table);
  EXPECT_TRUE(NvMetadata::getTagFromName("org.vendor.hist.buckets", &tag) == 0 && tag == 0x80070001u);
  EXPECT_EQ(TYPE_INT32, NvMetadata::getTagType(tag));
  EXPECT_STREQ("org.vendor.hist.buckets", NvMetadata::getTagName(tag));
  EXPECT_EQ(0, meta.update(tag, values, 2));
  EXPECT_EQ(2u, meta.find("org.vendor.hist.buckets").count);
  EXPECT_EQ(MTK_3A_FEATURE_AF_ROI, meta.find("com.mediatek.3afeature.afRoi").tag);
  const unsigned int spare = table.unusedTag();
  EXPECT_TRUE(spare >= 0x80000000u && spare != 0xFFFFFFFFu && NvMetadata::getTagType(spare) == -1);
  NvMetadata::setVendorTagTable(nullptr);
  EXPECT_EQ(nullptr, NvMetadata::getTagName(0x80070001u));
  EXPECT_EQ(0u, meta.find("org.vendor.hist.buckets").count);  // the entry stays, its name is unknown again
  EXPECT_EQ(2u, meta.find(0x80070001u).count);
}

const std::pair<META_TAG_INDEX, const char*> kDeclaredIndices[] = {
#define META_TAG_INDEX_ENTRY(enumerator, value, name) {enumerator, name},
#include "MetaTagIndex.def"
};

TEST(MetaTagWrapper, IndicesResolveToTheirTagsAndOverridesLastUntilReset) {
  MetaTagWrapper& wrapper = MetaTagWrapper::getInstance();
  for (const auto& [index, name] : kDeclaredIndices)
    EXPECT_STREQ(name, NvMetadata::getTagName(wrapper(index)));
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
