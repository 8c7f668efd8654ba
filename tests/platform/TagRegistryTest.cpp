// Tag registry (name <-> number <-> type, enum names) against the platform's
// own tag table, run-time vendor tags, index -> tag resolution, per-camera
// static metadata.
#include <gtest/gtest.h>

#include <fstream>
#include <set>
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

// Numbers MediaTek fixed, a null name, and numbers between and past the
// sections. Every registered name is looked up as it is and one edit away
// by fuzz/ContainerFuzzer, every tag an operation reads with its element
// type by fuzz/OperationsFuzzer, every Android tag by the platform table.
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

// One row of the platform's table of Android tags.
struct AndroidTag {
  std::string name;
  uint32_t tag;
  std::string type;
  std::vector<std::pair<std::string, int64_t>> enums;
  bool printedAsName;
};

std::vector<AndroidTag> ReadPlatformTable() {
  std::ifstream in(METAHELPER_ANDROID_TAG_TABLE);
  std::vector<AndroidTag> rows;
  std::string line;
  std::getline(in, line);  // column names
  while (std::getline(in, line)) {
    std::vector<std::string> field;
    std::istringstream columns(line);
    for (std::string text; std::getline(columns, text, '\t');) field.push_back(text);
    field.resize(10);
    AndroidTag row{
        field[0], static_cast<uint32_t>(std::stoul(field[1], nullptr, 16)), field[3], {}, field[8] == "yes"};
    std::istringstream values(field[7]);
    for (std::string pair; std::getline(values, pair, ',');) {
      const size_t equals = pair.find('=');
      row.enums.emplace_back(pair.substr(0, equals), std::stoll(pair.substr(equals + 1)));
    }
    rows.push_back(row);
  }
  return rows;
}

// Every Android tag of the platform's table, under its name, number and type,
// with exactly the enum names its printer writes; and no Android tag besides.
TEST(TagRegistry, HoldsThePlatformTableRowByRow) {
  const char* const kTypes[NUM_TYPES] = {"byte", "int32", "float", "int64", "double", "rational"};
  const std::vector<AndroidTag> rows = ReadPlatformTable();
  ASSERT_EQ(333u, rows.size()) << METAHELPER_ANDROID_TAG_TABLE;
  for (const AndroidTag& row : rows) {
    unsigned int number = 0;
    ASSERT_EQ(0, NvMetadata::getTagFromName(row.name.c_str(), &number)) << row.name;
    EXPECT_EQ(row.tag, number) << row.name;
    const int type = NvMetadata::getTagType(number);
    EXPECT_TRUE(type >= 0 && type < NUM_TYPES && row.type == kTypes[type]) << row.name;
    EXPECT_STREQ(row.name.c_str(), NvMetadata::getTagName(number));
    size_t names = 0;
    for (const nvmetadata::EnumName& enumName : nvmetadata::kEnumNames) names += enumName.tag == number;
    EXPECT_EQ(row.enums.size(), names) << row.name;
    for (const auto& [name, value] : row.enums) {
      int64_t found = value + 1;
      EXPECT_TRUE(NvMetadata::getTagEnumValue(number, name.data(), name.size(), &found) == 0 &&
                  found == value)
          << row.name << " " << name;
      EXPECT_STREQ(name.c_str(), NvMetadata::getTagEnumName(number, value)) << row.name;
    }
    // The reader and the printer name byte and int32 values only.
    EXPECT_EQ(row.printedAsName, !row.enums.empty() && (row.type == "byte" || row.type == "int32"))
        << row.name;
  }
  size_t android = 0;
  for (const nvmetadata::TagInfo& info : nvmetadata::kRegisteredTags) android += info.tag < 0x80000000u;
  EXPECT_EQ(rows.size(), android);
}

TEST(TagRegistry, EnumNamesBelongToTheirTag) {
  int64_t value = 7;
  // TRUE is 1 for one tag and 0 for another; a prefix or another tag's name is no name.
  EXPECT_TRUE(NvMetadata::getTagEnumValue(ANDROID_CONTROL_AE_LOCK_AVAILABLE, "TRUE", 4, &value) == 0 &&
              value == 1);
  EXPECT_TRUE(NvMetadata::getTagEnumValue(ANDROID_EFV_AUTO_ZOOM, "TRUE", 4, &value) == 0 && value == 0);
  EXPECT_NE(0, NvMetadata::getTagEnumValue(ANDROID_CONTROL_AE_MODE, "ON_AUTO", 7, &value));
  EXPECT_NE(0, NvMetadata::getTagEnumValue(ANDROID_CONTROL_AE_MODE, "ON_AUTO_FLASH_X", 15, &value));
  EXPECT_NE(
      0, NvMetadata::getTagEnumValue(ANDROID_CONTROL_AE_MODE, std::string("ON\0FLASH", 8).data(), 8, &value));
  EXPECT_NE(0, NvMetadata::getTagEnumValue(ANDROID_SENSOR_EXPOSURE_TIME, "OFF", 3, &value));
  EXPECT_NE(0, NvMetadata::getTagEnumValue(MTK_3A_FEATURE_AF_ROI, "OFF", 3, &value));
  EXPECT_EQ(0, value);
  EXPECT_EQ(nullptr, NvMetadata::getTagEnumName(ANDROID_CONTROL_AE_MODE, 7));
  EXPECT_STREQ("UNKNOWN", NvMetadata::getTagEnumName(ANDROID_SYNC_MAX_LATENCY, -1));
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
