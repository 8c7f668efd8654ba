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

class NvVendorTagTable;

class NVMETADATA_EXPORT NvMetadata {
 public:
  NvMetadata() = default;
  NvMetadata(const NvMetadata& other);
  NvMetadata& operator=(const NvMetadata& other);
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

  // The names the platform's metadata printer writes for the values of
  // Android enum tags (android.control.aeMode: "ON_AUTO_FLASH" is 2). 0 and
  // the value for one of the tag's names; non-zero otherwise, leaving *value
  // untouched. Vendor tags have no names.
  static int getTagEnumValue(unsigned int tag, const char* name, size_t length, int64_t* value);
  // The name of one of the tag's enum values, or null.
  static const char* getTagEnumName(unsigned int tag, int64_t value);

  // Tags a device defines at run time beyond the built-in registry. While a
  // table is installed, every lookup of a tag's name, number or type (and so
  // find by name and update) consults it after the registry; null removes
  // it. Process-wide, like the platform container's global vendor tag
  // descriptor: install it before containers are shared between threads,
  // keep it alive while installed, and change it only while no other thread
  // looks tags up.
  static void setVendorTagTable(const NvVendorTagTable* table);
  static const NvVendorTagTable* getVendorTagTable();

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
  // Every stored tag, in number order.
  std::vector<unsigned int> tags() const;

  // One find on the container: what was asked for and what was there, for
  // tools that report which tags an answer rests on.
  static constexpr unsigned int kUnknownTag = 0xFFFFFFFFu;
  struct Lookup {
    unsigned int tag;  // kUnknownTag for a name that no table knows
    const char* name;  // the name asked for; null for a lookup by number
    bool present;      // the container holds an entry, maybe without elements
    size_t count;      // its elements
  };
  using LookupObserver = void (*)(void* context, const NvMetadata& meta, const Lookup& lookup);
  // Tells `observer` of every find on this container from now on; null stops
  // it. It belongs to this object: copies and moves do not take it along.
  void setLookupObserver(LookupObserver observer, void* context);

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
  camera_metadata_ro_entry entryOf(uint32_t tag) const;
  __attribute__((noinline)) camera_metadata_ro_entry findObserved(unsigned int tag, const char* name) const;
  void copyEntries(const NvMetadata& other);
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
  LookupObserver mObserver = nullptr;
  void* mObserverContext = nullptr;
};

#endif  // NVMETADATA_H
