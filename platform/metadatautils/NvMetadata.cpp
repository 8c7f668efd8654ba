#include "NvMetadata.h"

#include <string.h>

#include <algorithm>

#include "TagRegistry.h"

namespace {

constexpr int kFailure = -1;

template <typename T>
struct ElementType;
template <>
struct ElementType<uint8_t> {
  static constexpr uint8_t code = TYPE_BYTE;
};
template <>
struct ElementType<int32_t> {
  static constexpr uint8_t code = TYPE_INT32;
};
template <>
struct ElementType<float> {
  static constexpr uint8_t code = TYPE_FLOAT;
};
template <>
struct ElementType<int64_t> {
  static constexpr uint8_t code = TYPE_INT64;
};
template <>
struct ElementType<double> {
  static constexpr uint8_t code = TYPE_DOUBLE;
};
template <>
struct ElementType<camera_metadata_rational> {
  static constexpr uint8_t code = TYPE_RATIONAL;
};

constexpr size_t kElementSize[NUM_TYPES] = {1, 4, 4, 8, 8, 8};
static_assert(sizeof(camera_metadata_rational) == 8, "rational is two 32-bit integers");

camera_metadata_ro_entry absentEntry(uint32_t tag) {
  camera_metadata_ro_entry entry{};
  entry.tag = tag;
  entry.data.u8 = nullptr;
  return entry;
}

}  // namespace

camera_metadata_ro_entry NvMetadata::find(const char* name) const {
  const nvmetadata::TagInfo* info = nvmetadata::findTagByName(name);
  return info != nullptr ? find(info->tag) : absentEntry(0);
}

camera_metadata_ro_entry NvMetadata::find(unsigned int tag) const {
  const Entry* entry = lookup(tag);
  if (entry == nullptr || entry->count == 0) return absentEntry(tag);
  camera_metadata_ro_entry result{};
  result.index = static_cast<size_t>(entry - mEntries.data());
  result.tag = entry->tag;
  result.type = entry->type;
  result.count = entry->count;
  result.data.u8 = reinterpret_cast<const uint8_t*>(entry->words.data());
  return result;
}

int NvMetadata::getTagFromName(const char* name, unsigned int* tag) {
  const nvmetadata::TagInfo* info = nvmetadata::findTagByName(name);
  if (info == nullptr || tag == nullptr) return kFailure;
  *tag = info->tag;
  return 0;
}

int NvMetadata::getTagType(unsigned int tag) {
  const nvmetadata::TagInfo* info = nvmetadata::findTagByNumber(tag);
  return info != nullptr ? info->type : -1;
}

const char* NvMetadata::getTagName(unsigned int tag) {
  const nvmetadata::TagInfo* info = nvmetadata::findTagByNumber(tag);
  return info != nullptr ? info->name : nullptr;
}

int NvMetadata::update(unsigned int tag, const uint8_t* data, unsigned long count) {
  return store(tag, ElementType<uint8_t>::code, data, count);
}

int NvMetadata::update(unsigned int tag, const int32_t* data, unsigned long count) {
  return store(tag, ElementType<int32_t>::code, data, count);
}

int NvMetadata::update(unsigned int tag, const float* data, unsigned long count) {
  return store(tag, ElementType<float>::code, data, count);
}

int NvMetadata::update(unsigned int tag, const int64_t* data, unsigned long count) {
  return store(tag, ElementType<int64_t>::code, data, count);
}

int NvMetadata::update(unsigned int tag, const double* data, unsigned long count) {
  return store(tag, ElementType<double>::code, data, count);
}

int NvMetadata::update(unsigned int tag, const camera_metadata_rational* data, unsigned long count) {
  return store(tag, ElementType<camera_metadata_rational>::code, data, count);
}

int NvMetadata::update(unsigned int tag, const void* data, unsigned long count) {
  const int type = getTagType(tag);
  return type < 0 ? kFailure : store(tag, static_cast<uint8_t>(type), data, count);
}

int NvMetadata::erase(unsigned int tag) {
  const Entry* entry = lookup(tag);
  if (entry == nullptr) return kFailure;
  mEntries.erase(mEntries.begin() + (entry - mEntries.data()));
  return 0;
}

size_t NvMetadata::entryCount() const { return mEntries.size(); }

int NvMetadata::store(unsigned int tag, uint8_t type, const void* data, unsigned long count) {
  if (getTagType(tag) != type) return kFailure;  // also covers unknown tags
  if (data == nullptr && count != 0) return kFailure;
  const size_t elementSize = kElementSize[type];
  if (count > (SIZE_MAX - sizeof(uint64_t)) / elementSize) return kFailure;

  const size_t bytes = count * elementSize;
  Entry fresh{tag, type, count, std::vector<uint64_t>((bytes + sizeof(uint64_t) - 1) / sizeof(uint64_t))};
  if (bytes != 0) memcpy(fresh.words.data(), data, bytes);

  auto at = std::lower_bound(mEntries.begin(), mEntries.end(), tag,
                             [](const Entry& e, uint32_t t) { return e.tag < t; });
  if (at != mEntries.end() && at->tag == tag) {
    *at = std::move(fresh);
  } else {
    mEntries.insert(at, std::move(fresh));
  }
  return 0;
}

const NvMetadata::Entry* NvMetadata::lookup(uint32_t tag) const {
  auto at = std::lower_bound(mEntries.begin(), mEntries.end(), tag,
                             [](const Entry& e, uint32_t t) { return e.tag < t; });
  return at != mEntries.end() && at->tag == tag ? &*at : nullptr;
}
