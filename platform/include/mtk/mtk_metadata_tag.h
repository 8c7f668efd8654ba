// MediaTek vendor tag numbers. The rows live in mtk_metadata_tags.def so the
// numbers here and the names the metadata container resolves cannot drift.
#ifndef MTK_MTK_METADATA_TAG_H
#define MTK_MTK_METADATA_TAG_H

#include <stdint.h>

enum mtk_camera_metadata_tag : uint32_t {
#define MTK_METADATA_TAG(constant, number, name, type) constant = number,
#include "mtk/mtk_metadata_tags.def"
#undef MTK_METADATA_TAG
};

#endif  // MTK_MTK_METADATA_TAG_H
