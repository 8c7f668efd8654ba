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

// Names share long prefixes ("com.nuvaro.camera."), so the hash samples the
// last eight bytes and eight from the middle; names under eight bytes are
// hashed byte by byte.
constexpr uint64_t hash(const char* name, size_t length) {
  if (length >= 8)
    return load64(name + length - 8) * 0x9E3779B97F4A7C15ull ^
           load64(name + (length - 8) / 2) * 0xC2B2AE3D27D4EB4Full;
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
// free slot never matches and the build tells free slots by their key.
struct Slot {
  uint64_t key;
  const TagInfo* info;
};

struct Table {
  std::array<Slot, kTableSize> slots;
  std::array<uint16_t, kBucketCount> displacement;
};

constexpr std::array<uint64_t, kTagCount> registeredKeys() {
  std::array<uint64_t, kTagCount> keys{};
  for (size_t i = 0; i < kTagCount; ++i)
    keys[i] = key(kRegisteredTags[i].name, length(kRegisteredTags[i].name));
  return keys;
}
inline constexpr std::array<uint64_t, kTagCount> kKeys = registeredKeys();

// Whether every name of the bucket finds a free slot, each a different one.
constexpr bool bucketFits(const Table& table, size_t bucket, uint16_t displacement) {
  std::array<bool, kTableSize> taken{};
  for (uint64_t key : kKeys) {
    if (bucketOf(key) != bucket) continue;
    const size_t slot = slotOf(key, displacement);
    if (table.slots[slot].key != 0 || taken[slot]) return false;
    taken[slot] = true;
  }
  return true;
}

constexpr void placeBucket(Table& table, size_t bucket) {
  for (uint16_t displacement = 0; displacement < kTableSize; ++displacement) {
    if (!bucketFits(table, bucket, displacement)) continue;
    table.displacement[bucket] = displacement;
    for (size_t i = 0; i < kTagCount; ++i) {
      if (bucketOf(kKeys[i]) == bucket)
        table.slots[slotOf(kKeys[i], displacement)] = {kKeys[i], &kRegisteredTags[i]};
    }
    return;
  }
}

// Fullest buckets first, while the table is emptiest. A bucket no name uses
// keeps kNoDisplacement, which is as good as any: no key there can match.
constexpr Table buildTable() {
  Table table{};
  for (uint16_t& displacement : table.displacement) displacement = kNoDisplacement;
  std::array<size_t, kBucketCount> sizes{};
  size_t largest = 0;
  for (uint64_t key : kKeys) largest = std::max(largest, ++sizes[bucketOf(key)]);
  for (size_t size = largest; size > 0; --size) {
    for (size_t bucket = 0; bucket < kBucketCount; ++bucket) {
      if (sizes[bucket] == size) placeBucket(table, bucket);
    }
  }
  return table;
}
inline constexpr Table kTable = buildTable();

constexpr bool everyNameHasItsSlot() {
  for (size_t i = 0; i < kTagCount; ++i) {
    const uint16_t displacement = kTable.displacement[bucketOf(kKeys[i])];
    if (length(kRegisteredTags[i].name) >= kMaxLength || displacement == kNoDisplacement ||
        kTable.slots[slotOf(kKeys[i], displacement)].key != kKeys[i] ||
        kTable.slots[slotOf(kKeys[i], displacement)].info->tag != kRegisteredTags[i].tag)
      return false;
  }
  return true;
}
static_assert(key("", 0) != 0, "the empty name's key must not match a free slot");
static_assert(everyNameHasItsSlot(), "a registered name is too long or shares its key: change the hash");

inline const Slot& slotFor(uint64_t key) {
  return kTable.slots[slotOf(key, kTable.displacement[bucketOf(key)])];
}

// The slot's tag when the name is its tag's whole name, else null. The key
// holds the length, so a match means both texts have `length` bytes.
inline const TagInfo* confirm(const Slot& slot, uint64_t wanted, const char* name, size_t length) {
  if (slot.key != wanted) return nullptr;
  return memcmp(slot.info->name, name, length) == 0 ? slot.info : nullptr;
}

// Names under eight bytes, off the common path.
__attribute__((noinline)) inline const TagInfo* findShort(const char* name, size_t length) {
  const uint64_t wanted = key(name, length);
  return confirm(slotFor(wanted), wanted, name, length);
}

// The registered tag of that name, or null. Neither allocates nor locks.
inline const TagInfo* find(const char* name) {
  if (name == nullptr) return nullptr;
  const size_t length = strlen(name);
  if (length < 8) return findShort(name, length);
  if (length >= kMaxLength) return nullptr;
  const uint64_t wanted = key(name, length);
  return confirm(slotFor(wanted), wanted, name, length);
}

}  // namespace nvmetadata::names

#endif  // PLATFORM_METADATAUTILS_NAMETABLE_H
