// The helper's sensor-shift query in each state of the adapter library. The
// adapter client loads once per process, so every test runs in a process of
// its own (ctest starts one per test) and sets the fake's mode first.
#include <gtest/gtest.h>

#include <cstring>
#include <memory>

#include "FakeAdapterControl.h"
#include "MtkMetadataHelper.h"
#include "TestSupport.h"

namespace {

constexpr long kTimestamp = 123456789;
constexpr int kPhyId = 2;

// A record as a caller may pass it: stale bytes everywhere, H = V = 7.
nvholder::ShiftData StaleRecord() {
  nvholder::ShiftData record;
  memset(&record, 0x5A, sizeof(record));
  record.shiftX = 7;
  record.shiftY = 7;
  return record;
}

int Query(nvholder::ShiftData* record) {
  metahelper::MtkMetadataHelper helper;
  return helper.GetShiftDataFromHolder(kTimestamp, kPhyId, record);
}

void ExpectUntouchedWithResultZero() {
  testsupport::LogCapture log;
  nvholder::ShiftData record = StaleRecord();
  const nvholder::ShiftData before = record;
  EXPECT_EQ(0, Query(&record));
  EXPECT_EQ(0, memcmp(&before, &record, sizeof(record)));
  EXPECT_EQ(0, fakeadapter::QueryCount());
  EXPECT_TRUE(log.online.empty());
}

// METAHELPER_ADAPTER_LIBRARY names a path where no library exists.
TEST(ShiftQueryWithoutAdapter, RecordComesBackAsPassed) {
  ExpectUntouchedWithResultZero();
  EXPECT_EQ(0, fakeadapter::GetInstanceCount()) << "the fake linked into the test must not be reached";
}

// From here on METAHELPER_ADAPTER_LIBRARY names the fake.
TEST(ShiftQuery, AdapterWithoutHolderLeavesTheRecordAsPassed) {
  fakeadapter::SetMode(fakeadapter::Mode::kNoHolder);
  ExpectUntouchedWithResultZero();
}

TEST(ShiftQuery, NullInstanceLeavesTheRecordAndTheNextQueryRetriesTheLoad) {
  fakeadapter::SetMode(fakeadapter::Mode::kNullInstance);
  ExpectUntouchedWithResultZero();
  fakeadapter::SetMode(fakeadapter::Mode::kHolder);
  nvholder::ShiftData record = StaleRecord();
  EXPECT_EQ(0, Query(&record));
  EXPECT_EQ(1, fakeadapter::QueryCount());
  EXPECT_EQ(1, fakeadapter::InitializeCount());
  EXPECT_EQ(0, Query(&record));
  EXPECT_EQ(3, fakeadapter::GetInstanceCount()) << "first use, one retry, then no reload once loaded";
}

TEST(ShiftQuery, HolderGetsTheCallersTimestampAndIdAndFillsTheShift) {
  fakeadapter::SetShiftAnswer(true, 4, -6, 1);
  testsupport::LogCapture log;
  nvholder::ShiftData record = StaleRecord();
  record.nodeType = 99;
  const nvholder::ShiftData before = record;
  ASSERT_EQ(0, Query(&record));

  ASSERT_EQ(1, fakeadapter::QueryCount());
  const nvholder::ShiftData asked = fakeadapter::LastQuery();
  EXPECT_EQ(kTimestamp, asked.timestamp);
  EXPECT_EQ(kPhyId, asked.phyCameraId);
  EXPECT_EQ(0, asked.nodeType);
  EXPECT_EQ(7, asked.shiftX) << "H and V are the holder's to write";
  EXPECT_EQ(0, memcmp(&before.anchorTimestamp, &asked.anchorTimestamp, 24))
      << "holder-owned bytes passed as given";
  EXPECT_EQ(60000000, fakeadapter::LastInterval());
  EXPECT_EQ(4, record.shiftX);
  EXPECT_EQ(-6, record.shiftY);
  ASSERT_EQ(1u, log.online.size());
  EXPECT_EQ('I', log.online[0].level);
  EXPECT_EQ("[getShift] phyId:2, timestamp:123456789, H,V = (4,-6)", log.online[0].text);
}

TEST(ShiftQuery, NullRecordIsRefusedWithoutLoadingTheAdapter) {
  testsupport::LogCapture log;
  EXPECT_EQ(-1, Query(nullptr));
  EXPECT_EQ(0, fakeadapter::GetInstanceCount());
  ASSERT_EQ(1u, log.online.size());
  EXPECT_EQ('E', log.online[0].level);
  EXPECT_EQ(testsupport::Quoted("arg err"), log.online[0].text);
}

}  // namespace
