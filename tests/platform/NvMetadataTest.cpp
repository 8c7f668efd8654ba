// Storage rules of the metadata container; lookups sit on every read, so they must not allocate.
// Random sequences of operations against a model are fuzz/ContainerFuzzer's; these are the
// fixed cases, and the tables holding every registered tag at once, which a fuzz run rarely builds.
#include <gtest/gtest.h>
#include <stdlib.h>
#include <string.h>

#include <atomic>
#include <new>
#include <string>
#include <tuple>
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
void ExpectStoredCopy(unsigned int tag, std::vector<T> values) {
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
  ExpectStoredCopy<uint8_t>(ANDROID_LENS_FACING, {1, 0, 255});
  ExpectStoredCopy<int32_t>(ANDROID_SCALER_CROP_REGION, {-4, 8, 4000, 3000});
  ExpectStoredCopy<float>(ANDROID_LENS_APERTURE, {1.8f, -0.5f});
  ExpectStoredCopy<int64_t>(ANDROID_SENSOR_EXPOSURE_TIME, {33333333LL, -(1LL << 40)});
  ExpectStoredCopy<double>(ANDROID_JPEG_GPS_COORDINATES, {48.85, 2.35, -12.5});
  ExpectStoredCopy<camera_metadata_rational>(ANDROID_SENSOR_NEUTRAL_COLOR_POINT, {{1, 2}, {-3, 4}, {5, 6}});
}

TEST(NvMetadata, RefusedUpdatesLeaveTheContainerUnchangedEmptyOnesReadAsAbsent) {
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
  ASSERT_EQ(0, meta.update(ANDROID_SCALER_CROP_REGION, crop, 0));
  EXPECT_TRUE(meta.find(ANDROID_SCALER_CROP_REGION).count == 0 &&
              !meta.find(ANDROID_SCALER_CROP_REGION).data.u8);
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

size_t CountOf(size_t position) { return 1 + position % 5; }

// Bytes that differ per tag and per version, so a value found under the
// wrong tag, or a stale one, shows.
std::vector<uint8_t> Pattern(size_t position, int version) {
  constexpr size_t kSizes[] = {1, 4, 4, 8, 8, 8};
  const uint32_t tag = kRegisteredTags[position].tag;
  std::vector<uint8_t> bytes(CountOf(position) * kSizes[NvMetadata::getTagType(tag)]);
  for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<uint8_t>(tag * 31 + i * 7 + version * 13);
  return bytes;
}

void Put(NvMetadata& meta, size_t position, int version = 0) {
  const std::vector<uint8_t> bytes = Pattern(position, version);
  ASSERT_EQ(0, meta.update(kRegisteredTags[position].tag, static_cast<const void*>(bytes.data()),
                           CountOf(position)));
}

void PutAll(NvMetadata& meta, int version = 0) {
  for (size_t i = 0; i < kTagCount; ++i) Put(meta, i, version);
}

::testing::AssertionResult Holds(const NvMetadata& meta, size_t position, int version = 0) {
  const camera_metadata_ro_entry entry = meta.find(kRegisteredTags[position].tag);
  const std::vector<uint8_t> expected = Pattern(position, version);
  if (entry.count != CountOf(position) || memcmp(entry.data.u8, expected.data(), expected.size()) != 0)
    return ::testing::AssertionFailure()
           << "tag 0x" << std::hex << kRegisteredTags[position].tag << " lost or changed its value";
  return ::testing::AssertionSuccess();
}

TEST(NvMetadataTable, EntriesSurviveErasesAroundThemAndComeBack) {
  for (const auto& [stride, backwards] : {std::pair{1, false}, {2, false}, {3, true}, {7, false}}) {
    SCOPED_TRACE(stride);
    NvMetadata meta;
    PutAll(meta);
    size_t erased = 0;
    for (size_t n = 0; n < kTagCount; ++n) {
      const size_t i = backwards ? kTagCount - 1 - n : n;
      if (i % stride != 0) continue;
      ASSERT_EQ(0, meta.erase(kRegisteredTags[i].tag));
      ++erased;
    }
    EXPECT_EQ(kTagCount - erased, meta.entryCount());
    for (size_t i = 0; i < kTagCount; ++i) {
      if (i % stride != 0) EXPECT_TRUE(Holds(meta, i));
      if (i % stride == 0)
        EXPECT_TRUE(meta.find(kRegisteredTags[i].tag).count == 0 && meta.erase(kRegisteredTags[i].tag) != 0);
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
  for (uint32_t tag : {0xFFFFFFFFu, 0xFFFFFFFEu, 0x5u, 0xA000FFFFu}) {
    for (NvMetadata* meta : {&empty, &full}) {
      EXPECT_TRUE(meta->find(tag).count == 0 && meta->find(tag).data.u8 == nullptr) << std::hex << tag;
      EXPECT_NE(0, meta->erase(tag)) << std::hex << tag;
      EXPECT_NE(0, meta->update(tag, &value, 1)) << std::hex << tag;
    }
  }
  EXPECT_EQ(kTagCount, full.entryCount());
}

// A tool learns every tag an answer rested on from the container it gave.
TEST(NvMetadata, LookupObserverHearsEveryFindOfItsOwnContainer) {
  using Lookup = NvMetadata::Lookup;
  struct Heard {
    std::vector<std::tuple<unsigned int, std::string, bool, size_t>> lookups;
  } heard;
  const auto listen = [](void* context, const NvMetadata&, const Lookup& lookup) {
    static_cast<Heard*>(context)->lookups.emplace_back(lookup.tag, lookup.name ? lookup.name : "-",
                                                       lookup.present, lookup.count);
  };
  NvMetadata meta;
  const int32_t crop[] = {0, 0, 40, 30};
  meta.update(ANDROID_SCALER_CROP_REGION, crop, 4);
  meta.update(ANDROID_SENSOR_SENSITIVITY, crop, 0);
  meta.setLookupObserver(listen, &heard);
  meta.find(ANDROID_SCALER_CROP_REGION);
  meta.find("android.sensor.sensitivity");
  meta.find("android.sensor.exposureTime");
  meta.find("no.such.tag");
  NvMetadata copy = meta;
  copy.find(ANDROID_SCALER_CROP_REGION);  // copies are not observed
  meta.setLookupObserver(nullptr, nullptr);
  meta.find(ANDROID_SCALER_CROP_REGION);
  const decltype(heard.lookups) expected = {
      {ANDROID_SCALER_CROP_REGION, "-", true, 4},
      {ANDROID_SENSOR_SENSITIVITY, "android.sensor.sensitivity", true, 0},
      {ANDROID_SENSOR_EXPOSURE_TIME, "android.sensor.exposureTime", false, 0},
      {NvMetadata::kUnknownTag, "no.such.tag", false, 0},
  };
  EXPECT_EQ(expected, heard.lookups);
}

TEST(NvMetadata, TagsListsEveryEntryInNumberOrder) {
  NvMetadata meta;
  const int32_t value = 1;
  for (unsigned int tag :
       {ANDROID_SENSOR_SENSITIVITY, ANDROID_CONTROL_AE_EXPOSURE_COMPENSATION, ANDROID_JPEG_ORIENTATION})
    meta.update(tag, &value, 1);
  meta.erase(ANDROID_JPEG_ORIENTATION);
  const std::vector<unsigned int> expected = {ANDROID_CONTROL_AE_EXPOSURE_COMPENSATION,
                                              ANDROID_SENSOR_SENSITIVITY};
  EXPECT_EQ(expected, meta.tags());
}

// A caller may keep an element pointer while other tags come and go and the
// table grows under it; only updating or erasing its own tag ends it.
TEST(NvMetadataTable, ElementPointersOutliveChangesToOtherTags) {
  NvMetadata meta;
  Put(meta, 0);
  const uint8_t* kept = meta.find(kRegisteredTags[0].tag).data.u8;
  for (size_t i = 1; i < kTagCount; ++i) {
    Put(meta, i);
    if (i % 2 == 0) ASSERT_EQ(0, meta.erase(kRegisteredTags[i].tag));
  }
  EXPECT_EQ(kept, meta.find(kRegisteredTags[0].tag).data.u8);
  EXPECT_TRUE(Holds(meta, 0));
}

TEST(NvMetadataTable, CopiesAndMovesOfAFullTableStandAlone) {
  NvMetadata original;
  PutAll(original);
  NvMetadata copy = original, assigned;
  Put(assigned, 3);
  assigned = original;
  PutAll(copy, 1);
  for (size_t i = 0; i < kTagCount; i += 2) ASSERT_EQ(0, assigned.erase(kRegisteredTags[i].tag));
  for (size_t i = 0; i < kTagCount; ++i) {
    EXPECT_TRUE(Holds(original, i));
    EXPECT_TRUE(Holds(copy, i, 1));
    if (i % 2 != 0) EXPECT_TRUE(Holds(assigned, i));
  }
  NvMetadata moved = std::move(copy);
  EXPECT_TRUE(copy.isEmpty() && copy.find(kRegisteredTags[0].tag).count == 0);  // NOLINT: reused
  EXPECT_TRUE(Holds(moved, 0, 1));
  Put(copy, 0);
  EXPECT_TRUE(Holds(copy, 0) && copy.entryCount() == 1);
  moved = std::move(original);
  EXPECT_TRUE(Holds(moved, 1) && moved.entryCount() == kTagCount && original.isEmpty());  // NOLINT: reused
}

}  // namespace
