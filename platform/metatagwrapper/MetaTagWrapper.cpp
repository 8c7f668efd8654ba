#include "MetaTagWrapper.h"

namespace {

struct IndexName {
  META_TAG_INDEX index;
  const char* name;
};

constexpr IndexName kIndexNames[] = {
#define META_TAG_INDEX_ENTRY(enumerator, value, name) {enumerator, name},
#include "MetaTagIndex.def"
#undef META_TAG_INDEX_ENTRY
};

// Two rows on one value would silently shadow each other in the slot table.
constexpr bool indicesDistinctAndInRange() {
  for (const IndexName& a : kIndexNames) {
    if (static_cast<uint32_t>(a.index) >= static_cast<uint32_t>(META_NO_INDEX)) return false;
    for (const IndexName& b : kIndexNames) {
      if (&a != &b && a.index == b.index) return false;
    }
  }
  return true;
}
static_assert(indicesDistinctAndInRange(),
              "META_TAG_INDEX rows must have distinct values below META_NO_INDEX");

}  // namespace

// Constructed when the library is loaded, before any library or program that
// links it starts running; the tag registry it reads needs no construction.
MetaTagWrapper MetaTagWrapper::sInstance;

MetaTagWrapper::MetaTagWrapper() { resetTags(); }

void MetaTagWrapper::setTag(META_TAG_INDEX index, uint32_t tag) {
  const auto slot = static_cast<uint32_t>(index);
  if (slot < kSlots) mTags[slot].store(tag, std::memory_order_relaxed);
}

void MetaTagWrapper::resetTags() {
  for (std::atomic<uint32_t>& tag : mTags) tag.store(kUndeclared, std::memory_order_relaxed);
  for (const IndexName& row : kIndexNames) {
    unsigned int tag = kUndeclared;
    // A row naming a tag the registry lacks stays undeclared, as on a
    // platform that does not publish that tag.
    NvMetadata::getTagFromName(row.name, &tag);
    setTag(row.index, tag);
  }
}
