// Name <-> number <-> type resolution of the built-in tag registry.
#include <gtest/gtest.h>

#include "NvMetadata.h"
#include "mtk/mtk_metadata_tag.h"

namespace {

struct TagRow {
  const char* name;
  uint32_t number;  // 0: any number of a vendor section
  int type;         // -1: the name is unknown
};

// Numbers fixed by the framework and MediaTek, vendor tags read by name, near misses.
const TagRow kTags[] = {
    {"android.colorCorrection.transform", 0x1, TYPE_RATIONAL},
    {"android.sensor.exposureTime", 0xE0000, TYPE_INT64},
    {"com.mediatek.3afeature.awbColorTemperature", 0x80060100, TYPE_FLOAT},
    {"android.logicalMultiCamera.physicalIds", 0x1A0000, TYPE_BYTE},
    {"com.mediatek.supernight.gammaInfo", 0x910000d9, TYPE_INT32},
    {"com.nuvaro.lens.info.ViewAngle", 0, TYPE_DOUBLE},
    {"com.nv.node.nvaihighlight.isHighLight", 0, TYPE_INT32},
    {"nuvaro.burst.last.preview.exposure.time", 0, TYPE_INT64},
    {"org.quic.camera.qtimer.startOfExposure", 0, TYPE_INT64},
    {"", 0, -1},
    {nullptr, 0, -1},
    {"android.sensor.exposureTim", 0, -1},
    {"android.sensor.exposureTimeX", 0, -1},
    {"Android.sensor.exposureTime", 0, -1},
    {"nuvaro.not.a.tag", 0, -1},
};

const TagRow kDeclaredTags[] = {
#define CAMERA_METADATA_TAG(constant, number, name, type) {name, constant, type},
#include "system/camera_metadata_tags.def"
#define MTK_METADATA_TAG(constant, number, name, type) {name, constant, type},
#include "mtk/mtk_metadata_tags.def"
};

void expectResolves(const TagRow& row) {
  unsigned int number = 1234;
  const bool known = row.type != -1;
  ASSERT_EQ(known, NvMetadata::getTagFromName(row.name, &number) == 0) << row.name;
  if (!known) {
    EXPECT_EQ(1234u, number) << row.name;  // a refused lookup leaves the output alone
    return;
  }
  EXPECT_TRUE(row.number ? number == row.number : number >= 0x80000000u) << row.name << std::hex << number;
  EXPECT_EQ(row.type, NvMetadata::getTagType(number)) << row.name;
  EXPECT_STREQ(row.name, NvMetadata::getTagName(number));
}

TEST(TagRegistry, NamesResolveToNumberTypeAndBack) {
  for (const TagRow& row : kTags) expectResolves(row);
  for (const TagRow& row : kDeclaredTags) expectResolves(row);
  for (uint32_t number : {0x0u, 0x3u, 0xE0003u, 0x80060002u, 0xA000FFFFu, 0xFFFFFFFFu}) {
    EXPECT_TRUE(NvMetadata::getTagType(number) == -1 && !NvMetadata::getTagName(number))
        << std::hex << number;
  }
}

}  // namespace
