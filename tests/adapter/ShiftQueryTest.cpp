// The helper's sensor-shift query without a usable adapter. The adapter client loads once per
// process, so each test runs in a process of its own (ctest starts one per test).
#include <gtest/gtest.h>

#include <array>
#include <cstring>

#include "FakeAdapterControl.h"
#include "MtkMetadataHelper.h"
#include "TestSupport.h"

namespace {

// A record of stale bytes comes back as passed, with nothing asked or reported.
void ExpectRecordReturnedAsPassed() {
  testsupport::LogCapture log;
  nvholder::ShiftData record;
  std::memset(&record, 0x5A, sizeof(record));
  const nvholder::ShiftData before = record;
  EXPECT_EQ(0, metahelper::MtkMetadataHelper().GetShiftDataFromHolder(123456789, 2, &record));
  EXPECT_EQ(0, std::memcmp(&before, &record, sizeof(record)));
  EXPECT_TRUE(fakeadapter::QueryCount() == 0 && log.online.empty());
}

// METAHELPER_ADAPTER_LIBRARY names a path where no library exists.
TEST(ShiftQueryWithoutAdapter, RecordComesBackAsPassed) {
  ExpectRecordReturnedAsPassed();
  EXPECT_EQ(0, fakeadapter::GetInstanceCount()) << "the fake linked into the test must not be reached";
}

TEST(ShiftQuery, NullInstanceLeavesTheRecordAndTheNextQueryRetriesTheLoad) {
  fakeadapter::SetMode(fakeadapter::Mode::kNullInstance);
  ExpectRecordReturnedAsPassed();
  fakeadapter::SetMode(fakeadapter::Mode::kHolder);
  nvholder::ShiftData record{};
  for (int query = 0; query < 2; ++query)
    EXPECT_EQ(0, metahelper::MtkMetadataHelper().GetShiftDataFromHolder(1, 2, &record));
  EXPECT_EQ((std::array<int, 3>{2, 1, 3}),
            (std::array<int, 3>{fakeadapter::QueryCount(), fakeadapter::InitializeCount(),
                                fakeadapter::GetInstanceCount()}))
      << "queries, initialisations, loads: first use, one retry, then no reload once loaded";
}

}  // namespace
