// Every tag of the registry in one table: number, full name, element type;
// and the names of enum values.
// Android, MediaTek and framework vendor tags all come from their .def
// files, so each tag is declared exactly once. The registry's lookups are
// built from this table; tools and tests that walk every tag read it too.
#ifndef PLATFORM_METADATAUTILS_REGISTEREDTAGS_H
#define PLATFORM_METADATAUTILS_REGISTEREDTAGS_H

#include <stddef.h>

#include "TagRegistry.h"
#include "mtk/mtk_metadata_tag.h"
#include "system/camera_metadata.h"

namespace nvmetadata {

inline constexpr TagInfo kRegisteredTags[] = {
#define CAMERA_METADATA_TAG(constant, number, name, type) {number, name, type},
#include "system/camera_metadata_tags.def"
#undef CAMERA_METADATA_TAG
#define MTK_METADATA_TAG(constant, number, name, type) {number, name, type},
#include "mtk/mtk_metadata_tags.def"
#undef MTK_METADATA_TAG
#define NV_VENDOR_TAG(number, name, type) {number, name, type},
#include "nv_vendor_tags.def"
#undef NV_VENDOR_TAG
};
inline constexpr size_t kRegisteredTagCount = sizeof(kRegisteredTags) / sizeof(kRegisteredTags[0]);

// The printer's names for the values of Android enum tags; vendor tags have
// none. The rows of a tag follow each other, tags in number order.
inline constexpr EnumName kEnumNames[] = {
#define CAMERA_METADATA_ENUM(constant, name, value) {constant, name, value},
#include "camera_metadata_enums.def"
#undef CAMERA_METADATA_ENUM
};
inline constexpr size_t kEnumNameCount = sizeof(kEnumNames) / sizeof(kEnumNames[0]);

// Bits of a lookup table with a slot for every tag, at most half full.
constexpr size_t registryTableBits() {
  size_t bits = 4;
  while ((size_t{1} << bits) < 2 * kRegisteredTagCount) ++bits;
  return bits;
}

}  // namespace nvmetadata

#endif  // PLATFORM_METADATAUTILS_REGISTEREDTAGS_H
