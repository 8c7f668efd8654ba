#include "TagRegistry.h"

#include <string.h>

#include <array>

#include "RegisteredTags.h"

namespace nvmetadata {
namespace {

constexpr const TagInfo* kTags = kRegisteredTags;
constexpr size_t kTagCount = kRegisteredTagCount;

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

// 0xFFFFFFFF means "not declared" to the index wrapper and "free slot" to the
// container's hash table; a tag with that number could never be stored.
constexpr bool noTagIsAllOnes() {
  for (const TagInfo& info : kRegisteredTags) {
    if (info.tag == 0xFFFFFFFFu) return false;
  }
  return true;
}
static_assert(noTagIsAllOnes(), "tag number 0xFFFFFFFF is reserved");

// ---- Lookup tables, built by the compiler --------------------------------
// Both lookups are open-addressed hash tables at most half full, computed at
// build time: no locks, no initialisation order, no allocation, and a lookup
// costs one hash and usually one probe.
constexpr size_t tableBits() {
  size_t bits = 4;
  while ((size_t{1} << bits) < 2 * kTagCount) ++bits;
  return bits;
}
constexpr size_t kTableBits = tableBits();
constexpr size_t kTableSize = size_t{1} << kTableBits;
constexpr size_t kTableMask = kTableSize - 1;
constexpr uint16_t kFreeSlot = 0xFFFF;
static_assert(kTagCount < kFreeSlot, "tag indices must fit the tables' 16-bit slots");

constexpr size_t numberSlot(uint32_t tag) { return (tag * 0x9E3779B1u) >> (32 - kTableBits); }

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

// Names share long prefixes ("com.nuvaro.camera."), so the hash samples the
// length, the last eight bytes and eight from the middle; the full compare
// after it settles the rare collision.
constexpr uint64_t nameHash(const char* name, size_t length) {
  uint64_t hash = length * 0x9E3779B97F4A7C15ull;
  if (length >= 8) {
    hash = (hash ^ load64(name + length - 8)) * 0xC2B2AE3D27D4EB4Full;
    hash = (hash ^ (hash >> 29) ^ load64(name + (length - 8) / 2)) * 0x165667B19E3779F9ull;
    return hash;
  }
  for (size_t i = 0; i < length; ++i) hash = (hash ^ static_cast<unsigned char>(name[i])) * 0x100000001B3ull;
  return hash;
}

constexpr size_t nameLength(const char* name) {
  size_t length = 0;
  while (name[length] != '\0') ++length;
  return length;
}

// A name slot's key: the hash with its low 16 bits replaced by the length,
// so one compare tests both before the names themselves are compared.
constexpr size_t kMaxNameLength = 0xFFFF;  // longer names are never registered
constexpr uint64_t kFreeKey = ~uint64_t{0};
constexpr uint64_t nameKey(const char* name, size_t length) {
  return (nameHash(name, length) & ~uint64_t{0xFFFF}) | length;
}
// Names under eight characters hash byte by byte, off the common path.
__attribute__((noinline)) uint64_t shortNameKey(const char* name, size_t length) {
  return nameKey(name, length);
}

constexpr size_t nameSlot(uint64_t key) { return static_cast<size_t>(key >> (64 - kTableBits)); }

struct NumberSlot {
  uint32_t tag;
  uint16_t index;
};

struct NameSlot {
  uint64_t key;
  const TagInfo* info;
};

struct Tables {
  std::array<NumberSlot, kTableSize> byNumber;
  std::array<NameSlot, kTableSize> byName;
};

constexpr size_t freeNumberSlot(size_t slot, const Tables& tables) {
  while (tables.byNumber[slot].index != kFreeSlot) slot = (slot + 1) & kTableMask;
  return slot;
}

constexpr size_t freeNameSlot(size_t slot, const Tables& tables) {
  while (tables.byName[slot].key != kFreeKey) slot = (slot + 1) & kTableMask;
  return slot;
}

constexpr Tables buildTables() {
  Tables tables{};
  for (size_t slot = 0; slot < kTableSize; ++slot) {
    tables.byNumber[slot] = {0, kFreeSlot};
    tables.byName[slot] = {kFreeKey, nullptr};
  }
  for (size_t i = 0; i < kTagCount; ++i) {
    tables.byNumber[freeNumberSlot(numberSlot(kTags[i].tag), tables)] = {kTags[i].tag,
                                                                         static_cast<uint16_t>(i)};
    const uint64_t key = nameKey(kTags[i].name, nameLength(kTags[i].name));
    tables.byName[freeNameSlot(nameSlot(key), tables)] = {key, &kTags[i]};
  }
  return tables;
}

constexpr bool namesFitTheKey() {
  for (const TagInfo& info : kRegisteredTags) {
    if (nameLength(info.name) >= kMaxNameLength) return false;
  }
  return true;
}
static_assert(namesFitTheKey(), "a registered name is too long for the name table's key");

constexpr Tables kTables = buildTables();

}  // namespace

const TagInfo* findTagByName(const char* name) {
  if (name == nullptr) return nullptr;
  const size_t length = strlen(name);
  if (length >= kMaxNameLength) return nullptr;
  const uint64_t key = length >= 8 ? nameKey(name, length) : shortNameKey(name, length);
  // Key matches are all but certain to be the name itself: the probe stops at
  // the first, and only a mismatch (a shared key) looks further.
  size_t slot = nameSlot(key);
  for (;;) {
    while (kTables.byName[slot].key != key) {
      if (kTables.byName[slot].key == kFreeKey) return nullptr;
      slot = (slot + 1) & kTableMask;
    }
    const TagInfo* info = kTables.byName[slot].info;
    if (memcmp(info->name, name, length) == 0) return info;
    slot = (slot + 1) & kTableMask;
  }
}

const TagInfo* findTagByNumber(uint32_t tag) {
  for (size_t slot = numberSlot(tag);; slot = (slot + 1) & kTableMask) {
    const NumberSlot& entry = kTables.byNumber[slot];
    if (entry.index == kFreeSlot) return nullptr;
    if (entry.tag == tag) return &kTags[entry.index];
  }
}

}  // namespace nvmetadata
