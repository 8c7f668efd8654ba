#include "TagRegistry.h"

#include <string.h>

#include <array>

#include "NameTable.h"
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
// Numbers: an open-addressed hash table at most half full, computed at build
// time: no locks, no initialisation order, no allocation, and a lookup costs
// one hash and usually one probe. Names have their own table (NameTable.h).
constexpr size_t kTableBits = registryTableBits();
constexpr size_t kTableSize = size_t{1} << kTableBits;
constexpr size_t kTableMask = kTableSize - 1;
constexpr uint16_t kFreeSlot = 0xFFFF;
static_assert(kTagCount < kFreeSlot, "tag indices must fit the tables' 16-bit slots");

constexpr size_t numberSlot(uint32_t tag) { return (tag * 0x9E3779B1u) >> (32 - kTableBits); }

struct NumberSlot {
  uint32_t tag;
  uint16_t index;
};

using NumberTable = std::array<NumberSlot, kTableSize>;

constexpr size_t freeNumberSlot(size_t slot, const NumberTable& table) {
  while (table[slot].index != kFreeSlot) slot = (slot + 1) & kTableMask;
  return slot;
}

constexpr NumberTable buildNumberTable() {
  NumberTable table{};
  for (NumberSlot& slot : table) slot = {0, kFreeSlot};
  for (size_t i = 0; i < kTagCount; ++i)
    table[freeNumberSlot(numberSlot(kTags[i].tag), table)] = {kTags[i].tag, static_cast<uint16_t>(i)};
  return table;
}

constexpr NumberTable kNumberTable = buildNumberTable();

}  // namespace

const TagInfo* findTagByName(const char* name) { return names::find(name); }

const TagInfo* findTagByNumber(uint32_t tag) {
  for (size_t slot = numberSlot(tag);; slot = (slot + 1) & kTableMask) {
    const NumberSlot& entry = kNumberTable[slot];
    if (entry.index == kFreeSlot) return nullptr;
    if (entry.tag == tag) return &kTags[entry.index];
  }
}

}  // namespace nvmetadata
