// The registry's tag table with what the fuzz targets and the stress tests
// need besides: element sizes, and a comparison of two containers tag by tag.
#pragma once

#include <NvMetadata.h>
#include <system/camera_metadata.h>

#include <cstddef>
#include <cstring>

#include "RegisteredTags.h"

namespace tagtable {

using RegisteredTag = nvmetadata::TagInfo;
using nvmetadata::kRegisteredTagCount;
using nvmetadata::kRegisteredTags;

inline constexpr size_t kElementSize[NUM_TYPES] = {1, 4, 4, 8, 8, 8};

// Same entries with the same elements, compared tag by tag.
inline bool SameContent(const NvMetadata& a, const NvMetadata& b) {
  if (a.entryCount() != b.entryCount()) return false;
  for (const RegisteredTag& tag : kRegisteredTags) {
    const camera_metadata_ro_entry x = a.find(tag.tag);
    const camera_metadata_ro_entry y = b.find(tag.tag);
    if (x.count != y.count || x.type != y.type) return false;
    if (x.count != 0 && std::memcmp(x.data.u8, y.data.u8, x.count * kElementSize[x.type]) != 0) return false;
  }
  return true;
}

}  // namespace tagtable
