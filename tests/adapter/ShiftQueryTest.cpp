// The helper's sensor-shift query without an adapter. The adapter client loads
// once per process, so every test runs in a process of its own (ctest starts
// one per test) and sets the fake's mode first.
#include <gtest/gtest.h>

#include <cstring>

#include "FakeAdapterControl.h"
#include "MtkMetadataHelper.h"
#include "TestSupport.h"

namespace {

// A record of stale bytes comes back as passed, with nothing asked or reported.
void ExpectRecordReturnedAsPassed() {
  testsupport::LogCapture log;
  nvholder::ShiftData record, before;
  std::memset(&record, 0x5A, sizeof(record));
  before = record;
  EXPECT_EQ(0, metahelper::MtkMetadataHelper().GetShiftDataFromHolder(123456789, 2, &record));
  EXPECT_EQ(0, std::memcmp(&before, &record, sizeof(record)));
  EXPECT_EQ(0, fakeadapter::QueryCount());
  EXPECT_TRUE(log.online.empty());
}

// METAHELPER_ADAPTER_LIBRARY names a path where no library exists.
TEST(ShiftQueryWithoutAdapter, RecordComesBackAsPassed) {
  ExpectRecordReturnedAsPassed();
  EXPECT_EQ(0, fakeadapter::GetInstanceCount()) << "the fake linked into the test must not be reached";
}

// From here on METAHELPER_ADAPTER_LIBRARY names the fake.
TEST(ShiftQuery, NullInstanceLeavesTheRecordAndTheNextQueryRetriesTheLoad) {
  fakeadapter::SetMode(fakeadapter::Mode::kNullInstance);
  ExpectRecordReturnedAsPassed();
  fakeadapter::SetMode(fakeadapter::Mode::kHolder);
  metahelper::MtkMetadataHelper helper;
  nvholder::ShiftData record{};
  EXPECT_EQ(0, helper.GetShiftDataFromHolder(1, 2, &record));
  EXPECT_EQ(0, helper.GetShiftDataFromHolder(1, 2, &record));
  EXPECT_EQ((std::array<int, 3>{2, 1, 3}),
            (std::array<int, 3>{fakeadapter::QueryCount(), fakeadapter::InitializeCount(),
                                fakeadapter::GetInstanceCount()}))
      << "queries, initialisations, loads: first use, one retry, then no reload once loaded";
}

}  // namespace
