// The registry's names as a perfect hash, built by the compiler. It sits in a
// header so that the container's find by name inlines the lookup: a name is
// resolved on every by-name read.
#ifndef PLATFORM_METADATAUTILS_NAMETABLE_H
#define PLATFORM_METADATAUTILS_NAMETABLE_H

#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include <algorithm>
#include <array>

#include "RegisteredTags.h"

namespace nvmetadata::names {

// Little-endian 8-byte read usable at build time; compilers fold it into a
// single unaligned load.
constexpr uint64_t load64(const char* p) {
  return uint64_t{static_cast<unsigned char>(p[0])} | uint64_t{static_cast<unsigned char>(p[1])} << 8 |
         uint64_t{static_cast<unsigned char>(p[2])} << 16 | uint64_t{static_cast<unsigned char>(p[3])} << 24 |
         uint64_t{static_cast<unsigned char>(p[4])} << 32 | uint64_t{static_cast<unsigned char>(p[5])} << 40 |
         uint64_t{static_cast<unsigned char>(p[6])} << 48 | uint64_t{static_cast<unsigned char>(p[7])} << 56;
}
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__,
              "load64 folds into a load only on little-endian targets");

constexpr size_t length(const char* name) {
  size_t length = 0;
  while (name[length] != '\0') ++length;
  return length;
}

// Names share long prefixes ("com.nuvaro.camera.") and long suffixes
// ("StreamConfigurationsMaximumResolution" of the depth and jpegr sections),
// so the hash samples the last eight bytes, eight from the middle and the
// eight after "android.", where section names differ, and mixes in the
// length, which tells apart names that differ only where no sample looks
// ("maxNumInputStreams", "maxNumOutputStreams"). Names under sixteen bytes,
// none of them registered, are hashed byte by byte.
constexpr size_t kShortName = 16;
constexpr uint64_t hash(const char* name, size_t length) {
  if (length >= kShortName)
    return (load64(name + length - 8) + length) * 0x9E3779B97F4A7C15ull ^
           (load64(name + (length - 8) / 2) + load64(name + 8)) * 0xC2B2AE3D27D4EB4Full;
  uint64_t hash = 0xCBF29CE484222325ull;
  for (size_t i = 0; i < length; ++i) hash = (hash ^ static_cast<unsigned char>(name[i])) * 0x100000001B3ull;
  return hash;
}

// A name's key: the hash with its low 16 bits replaced by the length, so one
// compare tests both before the texts are compared. A free slot's key is 0,
// which only the empty name has, and the empty name is not registered.
constexpr size_t kMaxLength = 0xFFFF;  // longer names are never registered
constexpr uint64_t key(const char* name, size_t length) {
  return (hash(name, length) & ~uint64_t{0xFFFF}) | length;
}

// ---- The table -----------------------------------------------------------
// Every registered name has a slot of its own, found without probing: the key
// picks a bucket, and the bucket's displacement (chosen at build time so that
// no two names share a slot) moves the key's slot. A name that is not
// registered lands on some slot and fails the key or the text compare.
constexpr size_t kTagCount = kRegisteredTagCount;
constexpr size_t kTableBits = registryTableBits();
constexpr size_t kTableSize = size_t{1} << kTableBits;
constexpr size_t kBucketBits = kTableBits - 1;
constexpr size_t kBucketCount = size_t{1} << kBucketBits;
constexpr uint16_t kNoDisplacement = 0xFFFF;

constexpr size_t bucketOf(uint64_t key) { return static_cast<size_t>(key >> (64 - kBucketBits)); }
// The bits below the bucket's, moved by the displacement; distinct keys of
// one bucket differ there (checked below), so no displacement joins them.
constexpr size_t slotOf(uint64_t key, uint16_t displacement) {
  return static_cast<size_t>((key >> (64 - kBucketBits - kTableBits)) ^ displacement) & (kTableSize - 1);
}

// A free slot has key 0 and no tag; no name has key 0 (checked below), so a
// free slot never matches and the build tells free slots by their key. Keys
// and tags sit in arrays of their own: a slot number then addresses both
// with an 8-byte scale, with no multiplication.
struct Table {
  std::array<uint64_t, kTableSize> keys;
  std::array<const TagInfo*, kTableSize> infos;
  std::array<uint16_t, kBucketCount> displacement;
};

constexpr std::array<uint64_t, kTagCount> registeredKeys() {
  std::array<uint64_t, kTagCount> keys{};
  for (size_t i = 0; i < kTagCount; ++i)
    keys[i] = key(kRegisteredTags[i].name, length(kRegisteredTags[i].name));
  return keys;
}
inline constexpr std::array<uint64_t, kTagCount> kKeys = registeredKeys();

// The registered names grouped by bucket: the names of bucket b are
// members[first[b]] .. members[first[b + 1] - 1]. Placing a bucket then looks
// at its own few names only, which keeps the build's evaluation short.
struct Buckets {
  std::array<size_t, kBucketCount + 1> first;
  std::array<uint16_t, kTagCount> members;
};

constexpr Buckets groupByBucket() {
  Buckets buckets{};
  for (uint64_t key : kKeys) ++buckets.first[bucketOf(key) + 1];
  for (size_t b = 0; b < kBucketCount; ++b) buckets.first[b + 1] += buckets.first[b];
  std::array<size_t, kBucketCount> filled{};
  for (size_t i = 0; i < kTagCount; ++i) {
    const size_t b = bucketOf(kKeys[i]);
    buckets.members[buckets.first[b] + filled[b]++] = static_cast<uint16_t>(i);
  }
  return buckets;
}

// Whether every name of the bucket finds a free slot, each a different one.
constexpr bool bucketFits(const Table& table, const Buckets& buckets, size_t bucket, uint16_t displacement) {
  for (size_t m = buckets.first[bucket]; m < buckets.first[bucket + 1]; ++m) {
    const size_t slot = slotOf(kKeys[buckets.members[m]], displacement);
    if (table.keys[slot] != 0) return false;
    for (size_t earlier = buckets.first[bucket]; earlier < m; ++earlier) {
      if (slotOf(kKeys[buckets.members[earlier]], displacement) == slot) return false;
    }
  }
  return true;
}

constexpr void placeBucket(Table& table, const Buckets& buckets, size_t bucket) {
  for (uint16_t displacement = 0; displacement < kTableSize; ++displacement) {
    if (!bucketFits(table, buckets, bucket, displacement)) continue;
    table.displacement[bucket] = displacement;
    for (size_t m = buckets.first[bucket]; m < buckets.first[bucket + 1]; ++m) {
      const size_t i = buckets.members[m];
      table.keys[slotOf(kKeys[i], displacement)] = kKeys[i];
      table.infos[slotOf(kKeys[i], displacement)] = &kRegisteredTags[i];
    }
    return;
  }
}

// Fullest buckets first, while the table is emptiest. A bucket no name uses
// keeps kNoDisplacement, which is as good as any: no key there can match.
constexpr Table buildTable() {
  Table table{};
  for (uint16_t& displacement : table.displacement) displacement = kNoDisplacement;
  const Buckets buckets = groupByBucket();
  size_t largest = 0;
  for (size_t b = 0; b < kBucketCount; ++b)
    largest = std::max(largest, buckets.first[b + 1] - buckets.first[b]);
  for (size_t size = largest; size > 0; --size) {
    for (size_t bucket = 0; bucket < kBucketCount; ++bucket) {
      if (buckets.first[bucket + 1] - buckets.first[bucket] == size) placeBucket(table, buckets, bucket);
    }
  }
  return table;
}
inline constexpr Table kTable = buildTable();

constexpr bool everyNameHasItsSlot() {
  for (size_t i = 0; i < kTagCount; ++i) {
    const uint16_t displacement = kTable.displacement[bucketOf(kKeys[i])];
    if (length(kRegisteredTags[i].name) >= kMaxLength || displacement == kNoDisplacement ||
        kTable.keys[slotOf(kKeys[i], displacement)] != kKeys[i] ||
        kTable.infos[slotOf(kKeys[i], displacement)]->tag != kRegisteredTags[i].tag)
      return false;
  }
  return true;
}
static_assert(key("", 0) != 0, "the empty name's key must not match a free slot");
static_assert(everyNameHasItsSlot(), "a registered name is too long or shares its key: change the hash");

inline size_t slotFor(uint64_t key) { return slotOf(key, kTable.displacement[bucketOf(key)]); }

// The slot's tag when the name is its tag's whole name, else null. The key
// holds the length, so a match means both texts have `length` bytes.
inline const TagInfo* confirm(size_t slot, uint64_t wanted, const char* name, size_t length) {
  if (kTable.keys[slot] != wanted) return nullptr;
  const TagInfo* info = kTable.infos[slot];
  return memcmp(info->name, name, length) == 0 ? info : nullptr;
}

// Names under sixteen bytes, and names too long to register, off the common
// path.
__attribute__((noinline)) inline const TagInfo* findUncommon(const char* name, size_t length) {
  if (length >= kMaxLength) return nullptr;
  const uint64_t wanted = key(name, length);
  return confirm(slotFor(wanted), wanted, name, length);
}

// The registered tag of that name, or null. Neither allocates nor locks.
inline const TagInfo* find(const char* name) {
  if (name == nullptr) return nullptr;
  const size_t length = strlen(name);
  // One unsigned compare sends both short and overlong names aside.
  if (length - kShortName >= kMaxLength - kShortName) return findUncommon(name, length);
  const uint64_t wanted = key(name, length);
  return confirm(slotFor(wanted), wanted, name, length);
}

}  // namespace nvmetadata::names

#endif  // PLATFORM_METADATAUTILS_NAMETABLE_H
