#include "NvMetadata.h"

#include <string.h>

#include <algorithm>
#include <atomic>
#include <utility>

#include "NameTable.h"
#include "NvVendorTags.h"
#include "TagRegistry.h"

namespace {

constexpr int kFailure = -1;
constexpr size_t kInitialSlots = 16;

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

// Consulted only after the built-in registry missed, so registered tags never
// pay for it.
std::atomic<const NvVendorTagTable*> gVendorTags{nullptr};

const NvVendorTagTable* vendorTags() { return gVendorTags.load(std::memory_order_acquire); }

}  // namespace

NvMetadata::NvMetadata(const NvMetadata& other) { copyEntries(other); }

NvMetadata& NvMetadata::operator=(const NvMetadata& other) {
  if (this != &other) copyEntries(other);
  return *this;
}

// The observer stays with the object it was set on.
void NvMetadata::copyEntries(const NvMetadata& other) {
  mSlots = other.mSlots;
  mEntryCount = other.mEntryCount;
  mMask = other.mMask;
  mShift = other.mShift;
}

// The count and the table's shape travel with the table, so the container
// moved from is left empty and usable, never with a count but no slots.
NvMetadata::NvMetadata(NvMetadata&& other) noexcept { *this = std::move(other); }

NvMetadata& NvMetadata::operator=(NvMetadata&& other) noexcept {
  if (this != &other) {
    mSlots = std::move(other.mSlots);
    mEntryCount = std::exchange(other.mEntryCount, 0);
    mMask = std::exchange(other.mMask, 0);
    mShift = std::exchange(other.mShift, 0);
    other.mSlots.clear();
  }
  return *this;
}

// A name the registry does not know, off the common path: the vendor table,
// if one is installed.
__attribute__((noinline)) static unsigned int vendorTagOfName(const char* name) {
  unsigned int tag = NvMetadata::kUnknownTag;
  const NvVendorTagTable* table = vendorTags();
  if (table != nullptr && name != nullptr) table->tagOf(name, &tag);
  return tag;
}

static unsigned int tagOfName(const char* name) {
  const nvmetadata::TagInfo* info = nvmetadata::names::find(name);
  return info != nullptr ? info->tag : vendorTagOfName(name);
}

// Both finds test for an observer first and leave the observed lookup out of
// line, so an unobserved find, every getter's, pays one compare for it.
camera_metadata_ro_entry NvMetadata::find(const char* name) const {
  if (__builtin_expect(mObserver != nullptr, 0)) return findObserved(tagOfName(name), name);
  if (const nvmetadata::TagInfo* info = nvmetadata::names::find(name)) return entryOf(info->tag);
  const unsigned int tag = vendorTagOfName(name);
  return tag != kUnknownTag ? entryOf(tag) : absentEntry(0);
}

camera_metadata_ro_entry NvMetadata::find(unsigned int tag) const {
  if (__builtin_expect(mObserver == nullptr, 1)) return entryOf(tag);
  return findObserved(tag, nullptr);
}

void NvMetadata::setLookupObserver(LookupObserver observer, void* context) {
  mObserver = observer;
  mObserverContext = context;
}

camera_metadata_ro_entry NvMetadata::findObserved(unsigned int tag, const char* name) const {
  const bool known = tag != kUnknownTag;
  const camera_metadata_ro_entry entry = known ? entryOf(tag) : absentEntry(0);
  mObserver(mObserverContext, *this, Lookup{tag, name, known && slotOf(tag) != kNoSlot, entry.count});
  return entry;
}

std::vector<unsigned int> NvMetadata::tags() const {
  std::vector<unsigned int> tags;
  tags.reserve(mEntryCount);
  for (const Entry& entry : mSlots) {
    if (entry.tag != kFreeTag) tags.push_back(entry.tag);
  }
  std::sort(tags.begin(), tags.end());
  return tags;
}

camera_metadata_ro_entry NvMetadata::entryOf(uint32_t tag) const {
  const size_t slot = slotOf(tag);
  if (slot == kNoSlot || mSlots[slot].count == 0) return absentEntry(tag);  // a free slot has no count
  const Entry& entry = mSlots[slot];
  camera_metadata_ro_entry result;
  result.index = slot;
  result.tag = entry.tag;
  result.type = entry.type;
  result.count = entry.count;
  result.data.u8 = reinterpret_cast<const uint8_t*>(entry.words.data());
  return result;
}

int NvMetadata::getTagFromName(const char* name, unsigned int* tag) {
  if (name == nullptr || tag == nullptr) return kFailure;
  const nvmetadata::TagInfo* info = nvmetadata::names::find(name);
  if (info != nullptr) {
    *tag = info->tag;
    return 0;
  }
  const NvVendorTagTable* table = vendorTags();
  return table != nullptr ? table->tagOf(name, tag) : kFailure;
}

int NvMetadata::getTagType(unsigned int tag) {
  const nvmetadata::TagInfo* info = nvmetadata::findTagByNumber(tag);
  if (info != nullptr) return info->type;
  const NvVendorTagTable* table = vendorTags();
  return table != nullptr ? table->typeOf(tag) : -1;
}

const char* NvMetadata::getTagName(unsigned int tag) {
  const nvmetadata::TagInfo* info = nvmetadata::findTagByNumber(tag);
  if (info != nullptr) return info->name;
  const NvVendorTagTable* table = vendorTags();
  return table != nullptr ? table->nameOf(tag) : nullptr;
}

int NvMetadata::getTagEnumValue(unsigned int tag, const char* name, size_t length, int64_t* value) {
  size_t count = 0;
  const nvmetadata::EnumName* names = nvmetadata::enumNamesOf(tag, &count);
  if (name == nullptr || value == nullptr) return kFailure;
  for (size_t i = 0; i < count; ++i) {
    if (strlen(names[i].name) == length && memcmp(names[i].name, name, length) == 0) {
      *value = names[i].value;
      return 0;
    }
  }
  return kFailure;
}

const char* NvMetadata::getTagEnumName(unsigned int tag, int64_t value) {
  size_t count = 0;
  const nvmetadata::EnumName* names = nvmetadata::enumNamesOf(tag, &count);
  for (size_t i = 0; i < count; ++i) {
    if (names[i].value == value) return names[i].name;
  }
  return nullptr;
}

void NvMetadata::setVendorTagTable(const NvVendorTagTable* table) {
  gVendorTags.store(table, std::memory_order_release);
}

const NvVendorTagTable* NvMetadata::getVendorTagTable() { return vendorTags(); }

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
  const size_t slot = tag != kFreeTag ? slotOf(tag) : kNoSlot;
  if (slot == kNoSlot) return kFailure;
  removeSlot(slot);
  --mEntryCount;
  return 0;
}

void NvMetadata::clear() {
  mSlots.clear();
  mEntryCount = 0;
  mMask = 0;
  mShift = 0;
}

int NvMetadata::store(unsigned int tag, uint8_t type, const void* data, unsigned long count) {
  if (getTagType(tag) != type) return kFailure;  // also covers unknown tags
  if (data == nullptr && count != 0) return kFailure;
  const size_t elementSize = kElementSize[type];
  if (count > (SIZE_MAX - sizeof(uint64_t)) / elementSize) return kFailure;

  // Copied before the old entry goes: `data` may point into it.
  const size_t bytes = count * elementSize;
  std::vector<uint64_t> words((bytes + sizeof(uint64_t) - 1) / sizeof(uint64_t));
  if (bytes != 0) memcpy(words.data(), data, bytes);

  size_t slot = slotOf(tag);
  if (slot == kNoSlot) {
    reserveOneMore();
    slot = freeSlotFor(tag);
    mSlots[slot].tag = tag;
    ++mEntryCount;
  }
  Entry& entry = mSlots[slot];
  entry.type = type;
  entry.count = count;
  entry.words = std::move(words);
  return 0;
}

// Fibonacci hashing: tags differ mostly in their low bits (the index within a
// section), and the multiplication spreads those into the top bits kept here.
size_t NvMetadata::homeSlot(uint32_t tag) const { return (tag * 0x9E3779B1u) >> mShift; }

// The slot holding the tag, or kNoSlot. A match is tested first, as most
// lookups are hits; a search for kFreeTag itself stops at a free slot, which
// callers see as an entry without elements.
size_t NvMetadata::slotOf(uint32_t tag) const {
  if (mEntryCount == 0) return kNoSlot;
  for (size_t slot = homeSlot(tag);; slot = (slot + 1) & mMask) {
    const uint32_t held = mSlots[slot].tag;
    if (held == tag) return slot;
    if (held == kFreeTag) return kNoSlot;
  }
}

size_t NvMetadata::freeSlotFor(uint32_t tag) const {
  size_t slot = homeSlot(tag);
  while (mSlots[slot].tag != kFreeTag) slot = (slot + 1) & mMask;
  return slot;
}

// Doubles the table before it would pass half full; entries move between
// slots, their element words stay where they are.
void NvMetadata::reserveOneMore() {
  if ((mEntryCount + 1) * 2 <= mSlots.size()) return;
  std::vector<Entry> old = std::move(mSlots);
  const size_t size = old.empty() ? kInitialSlots : old.size() * 2;
  mSlots = std::vector<Entry>(size);
  mMask = size - 1;
  mShift = 32 - static_cast<unsigned>(__builtin_ctzll(size));
  for (Entry& entry : old) {
    if (entry.tag != kFreeTag) mSlots[freeSlotFor(entry.tag)] = std::move(entry);
  }
}

// Backward-shift deletion: later entries of the same probe run move up into
// the hole, so lookups never need tombstones and stay as short as before.
void NvMetadata::removeSlot(size_t hole) {
  for (size_t next = (hole + 1) & mMask; mSlots[next].tag != kFreeTag; next = (next + 1) & mMask) {
    // The entry may fill the hole when the hole lies on its probe path.
    if (((next - homeSlot(mSlots[next].tag)) & mMask) >= ((next - hole) & mMask)) {
      mSlots[hole] = std::move(mSlots[next]);
      hole = next;
    }
  }
  mSlots[hole] = Entry{};
}
