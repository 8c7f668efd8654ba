// Name <-> number <-> type resolution of the built-in tag registry.
#include <gtest/gtest.h>

#include <string>

#include "NvMetadata.h"
#include "mtk/mtk_metadata_tag.h"

namespace {

struct TagRow {
  const char* name;
  uint32_t number;
  int type;
};

// Numbers fixed by the Android framework and the MediaTek pipeline: the
// device's metadata carries these, so a wrong row would read the wrong value.
const TagRow kFixedTags[] = {
    {"android.colorCorrection.transform", 0x1, TYPE_RATIONAL},
    {"android.control.afRegions", 0x10008, TYPE_INT32},
    {"android.jpeg.gpsCoordinates", 0x70000, TYPE_DOUBLE},
    {"android.lens.info.shadingMapSize", 0x90006, TYPE_INT32},
    {"android.sensor.exposureTime", 0xE0000, TYPE_INT64},
    {"android.sensor.neutralColorPoint", 0xE0012, TYPE_RATIONAL},
    {"android.statistics.lensShadingMap", 0x11000B, TYPE_FLOAT},
    {"android.logicalMultiCamera.physicalIds", 0x1A0000, TYPE_BYTE},
    {"com.mediatek.3afeature.aeIspGainValue", 0x80060011, TYPE_INT32},
    {"com.mediatek.3afeature.awbColorTemperature", 0x80060100, TYPE_FLOAT},
    {"com.mediatek.supernight.gammaInfo", 0x910000d9, TYPE_INT32},
};

// Every Android and MediaTek row, as declared, must resolve both ways.
const TagRow kDeclaredTags[] = {
#define CAMERA_METADATA_TAG(constant, number, name, type) {name, constant, type},
#include "system/camera_metadata_tags.def"
#undef CAMERA_METADATA_TAG
#define MTK_METADATA_TAG(constant, number, name, type) {name, constant, type},
#include "mtk/mtk_metadata_tags.def"
#undef MTK_METADATA_TAG
};

// Framework tags the helper reads by name, with the type it reads them as.
const std::pair<const char*, int> kVendorTags[] = {
    {"nuvaro.capturefusion.isSetWAndTFusion", TYPE_BYTE},
    {"com.nuvaro.camera.zoomeis.effectiverate", TYPE_FLOAT},
    {"nuvaro.sat.output.shift", TYPE_FLOAT},
    {"nuvaro.burst.last.preview.exposure.time", TYPE_INT64},
    {"com.nuvaro.mtk.p1node.frameinfo", TYPE_INT64},
    {"nuvaro.telefusion.enabled", TYPE_BYTE},
    {"com.nuvaro.lens.info.ViewAngle", TYPE_DOUBLE},
    {"com.nv.node.nvaihighlight.isHighLight", TYPE_INT32},
    {"com.qti.sensorbps.gain", TYPE_FLOAT},
    {"org.quic.camera.qtimer.startOfExposure", TYPE_INT64},
};

TEST(TagRegistry, FixedNumbersAndTypes) {
  for (const TagRow& row : kFixedTags) {
    unsigned int number = 0;
    ASSERT_EQ(0, NvMetadata::getTagFromName(row.name, &number)) << row.name;
    EXPECT_EQ(row.number, number) << row.name;
    EXPECT_EQ(row.type, NvMetadata::getTagType(number)) << row.name;
  }
}

TEST(TagRegistry, DeclaredRowsRoundTrip) {
  for (const TagRow& row : kDeclaredTags) {
    unsigned int number = 0;
    ASSERT_EQ(0, NvMetadata::getTagFromName(row.name, &number)) << row.name;
    EXPECT_EQ(row.number, number) << row.name;
    EXPECT_EQ(row.type, NvMetadata::getTagType(number)) << row.name;
    EXPECT_STREQ(row.name, NvMetadata::getTagName(number));
  }
}

TEST(TagRegistry, VendorTagsLiveInVendorSections) {
  for (const auto& [name, type] : kVendorTags) {
    unsigned int number = 0;
    ASSERT_EQ(0, NvMetadata::getTagFromName(name, &number)) << name;
    EXPECT_GE(number, 0x80000000u) << name;
    EXPECT_EQ(type, NvMetadata::getTagType(number)) << name;
    EXPECT_STREQ(name, NvMetadata::getTagName(number));
  }
}

TEST(TagRegistry, UnknownNamesAreRefusedAndLeaveOutputAlone) {
  const char* const unknown[] = {"",
                                 "android.sensor",
                                 "android.sensor.exposureTim",
                                 "android.sensor.exposureTimeX",
                                 "Android.sensor.exposureTime",
                                 "ANDROID_SENSOR_EXPOSURE_TIME",
                                 "nuvaro.not.a.tag",
                                 "zzz",
                                 nullptr};
  for (const char* name : unknown) {
    unsigned int number = 1234;
    EXPECT_NE(0, NvMetadata::getTagFromName(name, &number)) << (name ? name : "(null)");
    EXPECT_EQ(1234u, number);
  }
}

TEST(TagRegistry, UnknownNumbersHaveNoType) {
  for (uint32_t number : {0x0u, 0x3u, 0xE0003u, 0x80060002u, 0xA000FFFFu, 0xFFFFFFFFu}) {
    EXPECT_EQ(-1, NvMetadata::getTagType(number)) << std::hex << number;
    EXPECT_EQ(nullptr, NvMetadata::getTagName(number));
  }
}

}  // namespace
