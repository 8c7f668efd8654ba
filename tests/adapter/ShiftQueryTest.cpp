// The helper's sensor-shift query when the adapter library hands out no instance. The adapter client
// loads once per process, so each test runs in a process of its own (ctest starts one per test). A
// missing library is the concurrency tests' (tests/stress).
#include <gtest/gtest.h>

#include <array>
#include <cstring>

#include "FakeAdapterControl.h"
#include "MtkMetadataHelper.h"
#include "TestSupport.h"

namespace {

// The record of stale bytes comes back as passed, with nothing asked or reported; once the library
// hands out an instance, the next query loads it, and no later one reloads it.
TEST(ShiftQuery, NullInstanceLeavesTheRecordAndTheNextQueryRetriesTheLoad) {
  fakeadapter::SetMode(fakeadapter::Mode::kNullInstance);
  testsupport::LogCapture log;
  nvholder::ShiftData record;
  std::memset(&record, 0x5A, sizeof(record));
  const nvholder::ShiftData before = record;
  EXPECT_EQ(0, metahelper::MtkMetadataHelper().GetShiftDataFromHolder(123456789, 2, &record));
  EXPECT_EQ(0, std::memcmp(&before, &record, sizeof(record)));
  EXPECT_TRUE(fakeadapter::QueryCount() == 0 && log.online.empty());
  fakeadapter::SetMode(fakeadapter::Mode::kHolder);
  for (int query = 0; query < 2; ++query)
    EXPECT_EQ(0, metahelper::MtkMetadataHelper().GetShiftDataFromHolder(1, 2, &record));
  EXPECT_EQ((std::array<int, 3>{2, 1, 3}),
            (std::array<int, 3>{fakeadapter::QueryCount(), fakeadapter::InitializeCount(),
                                fakeadapter::GetInstanceCount()}))
      << "queries, initialisations, loads";
}

}  // namespace
