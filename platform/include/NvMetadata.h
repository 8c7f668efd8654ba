// Camera metadata container of the maker's camera framework: a set of tagged
// entries, each an array of one element type. Tags are Android standard tags,
// MediaTek tags or the framework's own vendor tags, all resolvable by number
// and by full name through one built-in tag registry.
#ifndef NVMETADATA_H
#define NVMETADATA_H

#include <stddef.h>
#include <stdint.h>

#include <vector>

#include "system/camera_metadata.h"

#define NVMETADATA_EXPORT __attribute__((visibility("default")))

class NVMETADATA_EXPORT NvMetadata {
 public:
  NvMetadata() = default;
  NvMetadata(const NvMetadata&) = default;
  NvMetadata& operator=(const NvMetadata&) = default;
  NvMetadata(NvMetadata&&) noexcept = default;
  NvMetadata& operator=(NvMetadata&&) noexcept = default;
  ~NvMetadata() = default;

  // Entry of the tag; count 0 and null data when the tag is absent, unknown or
  // stored with no elements. The data stays valid until the tag is next
  // updated or erased, or the container is destroyed.
  camera_metadata_ro_entry find(const char* name) const;
  camera_metadata_ro_entry find(unsigned int tag) const;

  // 0 and the tag number for a registered name (vendor full name or Android
  // dotted name); non-zero otherwise, leaving *tag untouched.
  static int getTagFromName(const char* name, unsigned int* tag);
  // TYPE_* code of a registered tag, -1 for an unknown one.
  static int getTagType(unsigned int tag);
  // Registered full name of a tag, or null for an unknown one.
  static const char* getTagName(unsigned int tag);

  // Replace or add the tag's entry with a copy of `count` elements. Non-zero,
  // container unchanged, when the tag is unknown, its registered type differs
  // from the element type, or data is null with a non-zero count.
  int update(unsigned int tag, const uint8_t* data, unsigned long count);
  int update(unsigned int tag, const int32_t* data, unsigned long count);
  int update(unsigned int tag, const float* data, unsigned long count);
  int update(unsigned int tag, const int64_t* data, unsigned long count);
  int update(unsigned int tag, const double* data, unsigned long count);
  int update(unsigned int tag, const camera_metadata_rational* data, unsigned long count);
  // Untyped form: `count` elements of the tag's registered type.
  int update(unsigned int tag, const void* data, unsigned long count);

  // 0 when an entry was removed, non-zero when the tag had none.
  int erase(unsigned int tag);
  size_t entryCount() const;
  bool isEmpty() const { return mEntries.empty(); }
  void clear() { mEntries.clear(); }

 private:
  struct Entry {
    uint32_t tag;
    uint8_t type;
    size_t count;
    // Whole 8-byte words: aligned for every element type, zero-padded past
    // the last element, and writable by callers that repair values in place.
    std::vector<uint64_t> words;
  };

  int store(unsigned int tag, uint8_t type, const void* data, unsigned long count);
  const Entry* lookup(uint32_t tag) const;

  std::vector<Entry> mEntries;  // sorted by tag
};

#endif  // NVMETADATA_H
