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
  NvMetadata(NvMetadata&& other) noexcept;
  NvMetadata& operator=(NvMetadata&& other) noexcept;
  ~NvMetadata() = default;

  // Entry of the tag; count 0 and null data when the tag is absent, unknown or
  // stored with no elements. The data is 8-byte aligned, zero-padded to whole
  // 8-byte words, and stays valid until the tag is next updated or erased, or
  // the container is destroyed (other tags coming and going do not move it).
  // Neither lookup allocates; the number lookup takes constant time.
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
  size_t entryCount() const { return mEntryCount; }
  bool isEmpty() const { return mEntryCount == 0; }
  void clear();

 private:
  // Marks a free slot; the tag registry never hands out this number.
  static constexpr uint32_t kFreeTag = 0xFFFFFFFFu;

  struct Entry {
    uint32_t tag = kFreeTag;
    uint8_t type = 0;
    size_t count = 0;
    // Whole 8-byte words: aligned for every element type, zero-padded past
    // the last element, and writable by callers that repair values in place.
    // Their own heap block, so moving the entry between slots never moves them.
    std::vector<uint64_t> words;
  };

  static constexpr size_t kNoSlot = ~size_t{0};

  int store(unsigned int tag, uint8_t type, const void* data, unsigned long count);
  size_t slotOf(uint32_t tag) const;
  size_t homeSlot(uint32_t tag) const;
  size_t freeSlotFor(uint32_t tag) const;
  void reserveOneMore();
  void removeSlot(size_t hole);

  // Open addressing with linear probing: a power-of-two number of slots, at
  // most half of them used, so a probe always ends at a free slot and a
  // lookup rarely looks past its first.
  std::vector<Entry> mSlots;
  size_t mEntryCount = 0;
  size_t mMask = 0;     // slot count - 1
  unsigned mShift = 0;  // 32 - log2(slot count): the hash keeps its top bits
};

#endif  // NVMETADATA_H
