#include "TagRegistry.h"

#include <string.h>

#include <algorithm>
#include <array>

#include "mtk/mtk_metadata_tag.h"
#include "system/camera_metadata.h"

namespace nvmetadata {
namespace {

constexpr TagInfo kTags[] = {
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
constexpr size_t kTagCount = sizeof(kTags) / sizeof(kTags[0]);

constexpr bool sameName(const char* a, const char* b) {
  while (*a != '\0' && *a == *b) {
    ++a;
    ++b;
  }
  return *a == *b;
}

// A repeated number or name would make one of the two tags unreachable, so
// reject the table at build time rather than resolve to the wrong tag.
constexpr bool allTagsDistinct() {
  for (size_t i = 0; i < kTagCount; ++i) {
    for (size_t j = i + 1; j < kTagCount; ++j) {
      if (kTags[i].tag == kTags[j].tag || sameName(kTags[i].name, kTags[j].name)) return false;
    }
  }
  return true;
}
static_assert(allTagsDistinct(), "tag registry repeats a tag number or name");

using TagIndex = std::array<const TagInfo*, kTagCount>;

bool nameLess(const TagInfo* a, const char* name) { return strcmp(a->name, name) < 0; }
bool numberLess(const TagInfo* a, uint32_t tag) { return a->tag < tag; }

// Sorted views of the table, built once on first use in static storage.
struct SortedTags {
  TagIndex byName;
  TagIndex byNumber;

  SortedTags() {
    for (size_t i = 0; i < kTagCount; ++i) byName[i] = byNumber[i] = &kTags[i];
    std::sort(byName.begin(), byName.end(),
              [](const TagInfo* a, const TagInfo* b) { return strcmp(a->name, b->name) < 0; });
    std::sort(byNumber.begin(), byNumber.end(),
              [](const TagInfo* a, const TagInfo* b) { return a->tag < b->tag; });
  }
};

const SortedTags& sortedTags() {
  static const SortedTags sorted;
  return sorted;
}

}  // namespace

const TagInfo* findTagByName(const char* name) {
  if (name == nullptr) return nullptr;
  const TagIndex& index = sortedTags().byName;
  auto it = std::lower_bound(index.begin(), index.end(), name, nameLess);
  return it != index.end() && strcmp((*it)->name, name) == 0 ? *it : nullptr;
}

const TagInfo* findTagByNumber(uint32_t tag) {
  const TagIndex& index = sortedTags().byNumber;
  auto it = std::lower_bound(index.begin(), index.end(), tag, numberLess);
  return it != index.end() && (*it)->tag == tag ? *it : nullptr;
}

}  // namespace nvmetadata
