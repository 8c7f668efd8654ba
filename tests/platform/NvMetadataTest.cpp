// Storage rules of the metadata container; lookups sit on every read, so they must not allocate.
#include <gtest/gtest.h>
#include <stdlib.h>
#include <string.h>

#include <atomic>
#include <new>
#include <utility>
#include <vector>

#include "NvMetadata.h"
#include "RegisteredTags.h"

static std::atomic<long> gAllocations{0};

void* operator new(size_t size) {
  gAllocations.fetch_add(1, std::memory_order_relaxed);
  if (void* block = malloc(size == 0 ? 1 : size)) return block;
  throw std::bad_alloc();
}
void operator delete(void* block) noexcept { free(block); }
void operator delete(void* block, size_t) noexcept {
  free(block);
}  // sized form too, or sanitizers see a mismatch

namespace {

template <typename T>
void expectStoredCopy(unsigned int tag, std::vector<T> values) {
  const std::vector<T> expected = values;
  NvMetadata meta;
  ASSERT_EQ(0, meta.update(tag, values.data(), values.size()));
  values.assign(values.size(), T{});  // the container must hold its own copy
  const camera_metadata_ro_entry entry = meta.find(tag);
  ASSERT_EQ(expected.size(), entry.count) << tag;
  EXPECT_TRUE(entry.tag == tag && entry.type == NvMetadata::getTagType(tag)) << tag;
  EXPECT_EQ(0u, reinterpret_cast<uintptr_t>(entry.data.u8) % 8) << "element data must be 8-byte aligned";
  EXPECT_EQ(0, memcmp(expected.data(), entry.data.u8, expected.size() * sizeof(T))) << tag;
}

TEST(NvMetadata, EachElementTypeStoresACopyThatFindReturns) {
  expectStoredCopy<uint8_t>(ANDROID_LENS_FACING, {1, 0, 255});
  expectStoredCopy<int32_t>(ANDROID_SCALER_CROP_REGION, {-4, 8, 4000, 3000});
  expectStoredCopy<float>(ANDROID_LENS_APERTURE, {1.8f, -0.5f});
  expectStoredCopy<int64_t>(ANDROID_SENSOR_EXPOSURE_TIME, {33333333LL, -(1LL << 40)});
  expectStoredCopy<double>(ANDROID_JPEG_GPS_COORDINATES, {48.85, 2.35, -12.5});
  expectStoredCopy<camera_metadata_rational>(ANDROID_SENSOR_NEUTRAL_COLOR_POINT, {{1, 2}, {-3, 4}, {5, 6}});
}

TEST(NvMetadata, RefusedUpdatesLeaveTheContainerUnchanged) {
  const int32_t crop[] = {1, 2, 3, 4}, ints[] = {7, 8};
  const float real = 1.5f;
  NvMetadata meta;
  ASSERT_EQ(0, meta.update(ANDROID_SCALER_CROP_REGION, crop, 4));
  const int refused[] = {
      meta.update(ANDROID_SENSOR_EXPOSURE_TIME, ints, 1),  // int32 into int64
      meta.update(ANDROID_SCALER_CROP_REGION, &real, 1),   // float into int32
      meta.update(0xE0003u, ints, 2),                      // unknown tag
      meta.update(0xFFFFFFFFu, static_cast<const void*>(ints), 1),
      meta.update(ANDROID_SCALER_CROP_REGION, static_cast<const int32_t*>(nullptr), 4),
      meta.update(ANDROID_SENSOR_FRAME_DURATION, static_cast<const void*>(ints), ~0ul / 4),  // size overflows
  };
  int attempt = 0;
  for (int result : refused) EXPECT_NE(0, result) << "attempt " << attempt++;
  const camera_metadata_ro_entry entry = meta.find(ANDROID_SCALER_CROP_REGION);
  EXPECT_TRUE(meta.entryCount() == 1 && entry.count == 4 && entry.data.i32[2] == 3);
}

TEST(NvMetadata, ReplacementsResizeTheEntryAndUntypedUpdatesUseTheRegisteredType) {
  const uint8_t previous[9] = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}, enabled = 1;
  const float gains[] = {1.f, 2.f, 2.f, 1.f};
  const int64_t timestamps[] = {1000000007LL, 2LL};
  NvMetadata meta;
  ASSERT_EQ(0, meta.update(ANDROID_CONTROL_ENABLE_ZSL, previous, 9));
  ASSERT_EQ(0, meta.update(ANDROID_CONTROL_ENABLE_ZSL, &enabled, 1));
  EXPECT_EQ(1, *meta.find("android.control.enableZsl").data.i32);  // one byte read as int32 is zero-extended
  ASSERT_EQ(0, meta.update(ANDROID_COLOR_CORRECTION_GAINS, gains, 4));
  ASSERT_EQ(0, meta.update(ANDROID_COLOR_CORRECTION_GAINS, gains, 0));  // empty reads as absent
  EXPECT_TRUE(meta.find(ANDROID_COLOR_CORRECTION_GAINS).count == 0 &&
              !meta.find(ANDROID_COLOR_CORRECTION_GAINS).data.u8);
  EXPECT_TRUE(meta.update(ANDROID_LENS_FACING, (const uint8_t*)nullptr, 0) == 0 &&
              meta.find(ANDROID_LENS_FACING).count == 0);
  ASSERT_EQ(0, meta.update(ANDROID_SENSOR_TIMESTAMP, static_cast<const void*>(timestamps), 2));
  const camera_metadata_ro_entry entry = meta.find(ANDROID_SENSOR_TIMESTAMP);
  EXPECT_TRUE(entry.count == 2 && entry.type == TYPE_INT64 && entry.data.i64[1] == 2);
}

TEST(NvMetadata, CopiesAreIndependentAndEraseRemovesOnlyItsTag) {
  const int32_t original = 100, changed = 200;
  const int64_t duration = 5;
  NvMetadata first;
  ASSERT_EQ(0, first.update(ANDROID_SENSOR_SENSITIVITY, &original, 1));
  ASSERT_EQ(0, first.update(ANDROID_SENSOR_FRAME_DURATION, &duration, 1));
  NvMetadata second = first, third;
  ASSERT_EQ(0, second.update(ANDROID_SENSOR_SENSITIVITY, &changed, 1));
  *const_cast<int32_t*>(first.find(ANDROID_SENSOR_SENSITIVITY).data.i32) += 1;  // repaired in place
  third = second;
  ASSERT_EQ(0, second.erase(ANDROID_SENSOR_SENSITIVITY));
  EXPECT_NE(0, second.erase(ANDROID_SENSOR_SENSITIVITY));
  EXPECT_EQ(101, *first.find(ANDROID_SENSOR_SENSITIVITY).data.i32);
  EXPECT_EQ(200, *third.find(ANDROID_SENSOR_SENSITIVITY).data.i32);
  EXPECT_TRUE(second.find(ANDROID_SENSOR_SENSITIVITY).count == 0 && second.entryCount() == 1 &&
              *second.find(ANDROID_SENSOR_FRAME_DURATION).data.i64 == 5);
}

TEST(Lookups, DoNotAllocate) {
  const int32_t crop[] = {0, 0, 64, 48};
  NvMetadata meta;
  ASSERT_EQ(0, meta.update(ANDROID_SCALER_CROP_REGION, crop, 4));
  unsigned int tag = 0;
  for (int pass = 0; pass < 2; ++pass) {  // the first pass may build the lookup tables
    const long before = gAllocations.load();
    EXPECT_EQ(4u, meta.find(ANDROID_SCALER_CROP_REGION).count);
    EXPECT_EQ(4u, meta.find("android.scaler.cropRegion").count);
    EXPECT_EQ(0u, meta.find("no.such.tag").count);
    EXPECT_EQ(0, NvMetadata::getTagFromName("nuvaro.ae.mid.tonegain", &tag));
    if (pass == 1) EXPECT_EQ(before, gAllocations.load());
  }
}

// ---- The hash table behind the container -----------------------------------
// Every registered tag at once: far more entries than the first table holds,
// so the table grows several times and many tags share probe runs.
using nvmetadata::kRegisteredTags;
constexpr size_t kTagCount = nvmetadata::kRegisteredTagCount;

size_t ElementSize(uint32_t tag) {
  constexpr size_t kSizes[] = {1, 4, 4, 8, 8, 8};
  return kSizes[NvMetadata::getTagType(tag)];
}

// Bytes that differ per tag and per version, so a value found under the
// wrong tag, or a stale one, shows.
std::vector<uint8_t> Pattern(uint32_t tag, size_t count, int version = 0) {
  std::vector<uint8_t> bytes(count * ElementSize(tag));
  for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<uint8_t>(tag * 31 + i * 7 + version * 13);
  return bytes;
}

size_t CountOf(size_t position) { return 1 + position % 5; }

void PutAll(NvMetadata& meta, int version = 0) {
  for (size_t i = 0; i < kTagCount; ++i) {
    const std::vector<uint8_t> bytes = Pattern(kRegisteredTags[i].tag, CountOf(i), version);
    ASSERT_EQ(0, meta.update(kRegisteredTags[i].tag, static_cast<const void*>(bytes.data()), CountOf(i)))
        << kRegisteredTags[i].tag;
  }
}

::testing::AssertionResult Holds(const NvMetadata& meta, size_t position, int version = 0) {
  const uint32_t tag = kRegisteredTags[position].tag;
  const camera_metadata_ro_entry entry = meta.find(tag);
  const std::vector<uint8_t> expected = Pattern(tag, CountOf(position), version);
  if (entry.tag != tag || entry.count != CountOf(position) ||
      memcmp(entry.data.u8, expected.data(), expected.size()) != 0)
    return ::testing::AssertionFailure() << "tag 0x" << std::hex << tag << " lost or changed its value";
  return ::testing::AssertionSuccess();
}

struct EraseOrder {
  const char* name;
  size_t stride;  // erase the tags at positions that are multiples of it
  bool backwards;
};

TEST(NvMetadataTable, EntriesSurviveErasesAroundThemAndComeBack) {
  const EraseOrder kOrders[] = {{"every tag", 1, false},
                                {"every other tag", 2, false},
                                {"every third tag, last first", 3, true},
                                {"every seventh tag", 7, false}};
  for (const EraseOrder& order : kOrders) {
    SCOPED_TRACE(order.name);
    NvMetadata meta;
    PutAll(meta);
    size_t erased = 0;
    for (size_t n = 0; n < kTagCount; ++n) {
      const size_t i = order.backwards ? kTagCount - 1 - n : n;
      if (i % order.stride != 0) continue;
      ASSERT_EQ(0, meta.erase(kRegisteredTags[i].tag));
      ++erased;
    }
    EXPECT_EQ(kTagCount - erased, meta.entryCount());
    for (size_t i = 0; i < kTagCount; ++i) {
      if (i % order.stride == 0) {
        EXPECT_TRUE(meta.find(kRegisteredTags[i].tag).count == 0 && meta.erase(kRegisteredTags[i].tag) != 0)
            << kRegisteredTags[i].tag;
      } else {
        EXPECT_TRUE(Holds(meta, i));
      }
    }
    PutAll(meta, 1);
    EXPECT_EQ(kTagCount, meta.entryCount());
    for (size_t i = 0; i < kTagCount; ++i) EXPECT_TRUE(Holds(meta, i, 1));
  }
}

// The free-slot marker and unregistered numbers are never entries, whatever
// the table holds around them.
TEST(NvMetadataTable, NumbersThatAreNoTagAreNeverFound) {
  NvMetadata empty, full;
  PutAll(full);
  const int32_t value = 1;
  for (uint32_t tag : {0xFFFFFFFFu, 0xFFFFFFFEu, 0x4u, 0xA000FFFFu}) {
    for (NvMetadata* meta : {&empty, &full}) {
      EXPECT_TRUE(meta->find(tag).count == 0 && meta->find(tag).data.u8 == nullptr) << std::hex << tag;
      EXPECT_NE(0, meta->erase(tag)) << std::hex << tag;
      EXPECT_NE(0, meta->update(tag, &value, 1)) << std::hex << tag;
    }
  }
  EXPECT_EQ(kTagCount, full.entryCount());
}

TEST(NvMetadataTable, ResizedEntriesStayZeroPaddedToWholeWords) {
  struct Resize {
    uint32_t tag;
    size_t from;
    size_t to;
  };
  const Resize kResizes[] = {{ANDROID_LENS_FACING, 9, 3},          {ANDROID_LENS_FACING, 3, 17},
                             {ANDROID_SCALER_CROP_REGION, 5, 1},   {ANDROID_SCALER_CROP_REGION, 1, 64},
                             {ANDROID_SENSOR_EXPOSURE_TIME, 2, 1}, {ANDROID_LENS_APERTURE, 7, 2}};
  for (const Resize& resize : kResizes) {
    NvMetadata meta;
    const std::vector<uint8_t> before = Pattern(resize.tag, resize.from, 0),
                               after = Pattern(resize.tag, resize.to, 1);
    ASSERT_EQ(0, meta.update(resize.tag, static_cast<const void*>(before.data()), resize.from));
    ASSERT_EQ(0, meta.update(resize.tag, static_cast<const void*>(after.data()), resize.to));
    const camera_metadata_ro_entry entry = meta.find(resize.tag);
    ASSERT_EQ(resize.to, entry.count) << resize.tag;
    EXPECT_EQ(0, memcmp(entry.data.u8, after.data(), after.size())) << resize.tag;
    const size_t padded = (after.size() + 7) / 8 * 8;
    for (size_t i = after.size(); i < padded; ++i)
      EXPECT_EQ(0, entry.data.u8[i]) << resize.tag << " byte " << i;
  }
}

// A caller may keep an element pointer while other tags come and go and the
// table grows under it; only updating or erasing its own tag ends it.
TEST(NvMetadataTable, ElementPointersOutliveChangesToOtherTags) {
  NvMetadata meta;
  const int64_t exposure = 33000000;
  ASSERT_EQ(0, meta.update(ANDROID_SENSOR_EXPOSURE_TIME, &exposure, 1));
  const int64_t* kept = meta.find(ANDROID_SENSOR_EXPOSURE_TIME).data.i64;
  for (size_t i = 0; i < kTagCount; ++i) {
    if (kRegisteredTags[i].tag == ANDROID_SENSOR_EXPOSURE_TIME) continue;
    const std::vector<uint8_t> bytes = Pattern(kRegisteredTags[i].tag, CountOf(i));
    ASSERT_EQ(0, meta.update(kRegisteredTags[i].tag, static_cast<const void*>(bytes.data()), CountOf(i)));
    if (i % 2 == 0) ASSERT_EQ(0, meta.erase(kRegisteredTags[i].tag));
  }
  EXPECT_EQ(kept, meta.find(ANDROID_SENSOR_EXPOSURE_TIME).data.i64);
  EXPECT_EQ(exposure, *kept);
  for (size_t i = 0; i < kTagCount; ++i) {
    const camera_metadata_ro_entry entry = meta.find(kRegisteredTags[i].tag);
    EXPECT_EQ(0u, reinterpret_cast<uintptr_t>(entry.data.u8) % 8)
        << "tag " << kRegisteredTags[i].tag << " misaligned";
  }
}

TEST(NvMetadataTable, CopiesAndMovesOfAFullTableStandAlone) {
  NvMetadata original;
  PutAll(original);
  NvMetadata copy = original;
  NvMetadata assigned;
  assigned.update(ANDROID_SENSOR_SENSITIVITY, std::vector<int32_t>{1}.data(), 1);
  assigned = original;
  PutAll(copy, 1);
  for (size_t i = 0; i < kTagCount; i += 2) ASSERT_EQ(0, assigned.erase(kRegisteredTags[i].tag));
  for (size_t i = 0; i < kTagCount; ++i) {
    EXPECT_TRUE(Holds(original, i));
    EXPECT_TRUE(Holds(copy, i, 1));
    if (i % 2 != 0) EXPECT_TRUE(Holds(assigned, i));
  }

  NvMetadata moved = std::move(copy);
  EXPECT_TRUE(copy.isEmpty() && copy.entryCount() == 0 &&
              copy.find(kRegisteredTags[0].tag).count == 0);  // NOLINT: reused
  EXPECT_TRUE(Holds(moved, 0, 1));
  const std::vector<uint8_t> bytes = Pattern(kRegisteredTags[0].tag, CountOf(0));
  EXPECT_EQ(0, copy.update(kRegisteredTags[0].tag, static_cast<const void*>(bytes.data()), CountOf(0)));
  EXPECT_TRUE(Holds(copy, 0) && copy.entryCount() == 1);
  moved = std::move(original);
  EXPECT_TRUE(Holds(moved, 1) && moved.entryCount() == kTagCount && original.isEmpty());  // NOLINT: reused
}

}  // namespace
