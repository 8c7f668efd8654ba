// The registry's tag table with what the tests and fuzz targets need
// besides: element sizes, and a comparison of two containers tag by tag.
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

inline constexpr size_t kElementSize[NUM_TYPES] = {1, 4, 4, 8, 8, 8};  // by TYPE_* type

// The same tags holding the same elements.
inline bool SameContent(const NvMetadata& a, const NvMetadata& b) {
  if (a.tags() != b.tags()) return false;
  for (unsigned int tag : a.tags()) {
    const camera_metadata_ro_entry x = a.find(tag), y = b.find(tag);
    if (x.type != y.type || x.count != y.count) return false;
    if (x.count != 0 && std::memcmp(x.data.u8, y.data.u8, x.count * kElementSize[x.type]) != 0) return false;
  }
  return true;
}

}  // namespace tagtable
