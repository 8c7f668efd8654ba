#include "TagRegistry.h"

#include <string.h>

#include <algorithm>
#include <array>

#include "NameTable.h"
#include "RegisteredTags.h"

namespace nvmetadata {
namespace {

constexpr const TagInfo* kTags = kRegisteredTags;
constexpr size_t kTagCount = kRegisteredTagCount;

// 0xFFFFFFFF means "not declared" to the index wrapper and "free slot" to the
// container's hash table; a tag with that number could never be stored.
constexpr bool noTagIsAllOnes() {
  for (const TagInfo& info : kRegisteredTags) {
    if (info.tag == 0xFFFFFFFFu) return false;
  }
  return true;
}
static_assert(noTagIsAllOnes(), "tag number 0xFFFFFFFF is reserved");

// Enum names are found by a binary search on the tag, so a tag's rows must
// follow each other and tags must come in number order.
constexpr bool enumNamesInTagOrder() {
  for (size_t i = 1; i < kEnumNameCount; ++i) {
    if (kEnumNames[i].tag < kEnumNames[i - 1].tag) return false;
  }
  return true;
}
static_assert(enumNamesInTagOrder(), "enum names must be grouped by tag, tags in number order");

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

constexpr size_t indexOfNumber(uint32_t tag) {
  size_t slot = numberSlot(tag);
  while (kNumberTable[slot].index != kFreeSlot && kNumberTable[slot].tag != tag)
    slot = (slot + 1) & kTableMask;
  return kNumberTable[slot].index;
}

// A repeated number would make the later tag unreachable, so the build stops
// rather than resolve it to the wrong tag. (A repeated name cannot get a slot
// of its own in the name table, whose own check stops the build.)
constexpr bool everyNumberFindsItsTag() {
  for (size_t i = 0; i < kTagCount; ++i) {
    if (indexOfNumber(kTags[i].tag) != i) return false;
  }
  return true;
}
static_assert(everyNumberFindsItsTag(), "tag registry repeats a tag number");

}  // namespace

const TagInfo* findTagByName(const char* name) { return names::find(name); }

const TagInfo* findTagByNumber(uint32_t tag) {
  for (size_t slot = numberSlot(tag);; slot = (slot + 1) & kTableMask) {
    const NumberSlot& entry = kNumberTable[slot];
    if (entry.index == kFreeSlot) return nullptr;
    if (entry.tag == tag) return &kTags[entry.index];
  }
}

const EnumName* enumNamesOf(uint32_t tag, size_t* count) {
  const EnumName* end = kEnumNames + kEnumNameCount;
  const auto byTag = [](const EnumName& row, uint32_t wanted) { return row.tag < wanted; };
  const EnumName* first = std::lower_bound(kEnumNames, end, tag, byTag);
  const EnumName* last = first;
  while (last != end && last->tag == tag) ++last;
  *count = static_cast<size_t>(last - first);
  return *count != 0 ? first : nullptr;
}

}  // namespace nvmetadata
