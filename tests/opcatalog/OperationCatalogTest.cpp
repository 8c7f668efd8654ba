// The operation catalogue against the slot table, the helpers and a sink.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <tuple>
#include <vector>

#include "CatalogTestSupport.h"
#include "MtkMetadataHelper.h"
#include "OperationCatalog.h"
#include "TestSupport.h"

namespace {

// Failures are expected by the hundred here: keep both logs quiet.
const bool kQuietLogs = [] {
  testsupport::LogCapture::SetSettings(7, 0, 7, 0, 0);
  return true;
}();

using cattest::RecordingSink;
using metahelper::MetaPtr;
using opcatalog::CallContext;
using opcatalog::Kind;
using opcatalog::Operation;
using testsupport::Put;

const std::vector<Operation>& AllOperations() {
  static const std::vector<Operation> operations = [] {
    size_t count = 0;
    const Operation* first = opcatalog::Operations(&count);
    return std::vector<Operation>(first, first + count);
  }();
  return operations;
}

// Reads before writes, so that no getter meets a tag a setter just wrote
// shorter than the getter's fixed-size copy.
std::vector<Operation> ReadsThenWrites() {
  std::vector<Operation> operations = AllOperations();
  std::stable_partition(operations.begin(), operations.end(),
                        [](const Operation& op) { return op.kind != Kind::Setter; });
  return operations;
}

const Operation& Find(const std::string& name) {
  for (const Operation& op : AllOperations())
    if (op.name == name) return op;
  ADD_FAILURE() << "no operation " << name;
  std::abort();
}

struct SlotRow {
  int slot;
  const char* returns;
  const char* name;
  const char* params;
};
const SlotRow kSlotTable[] = {
#define HELPER_SLOT(slot, ret, name, params, args) {slot, #ret, #name, #params},
#include "HelperSlots.def"
#undef HELPER_SLOT
};

TEST(OperationTable, FollowsTheSlotTableWithKindsAndAllocationsItsSignaturesImply) {
  const std::vector<Operation>& ops = AllOperations();
  ASSERT_EQ(std::size(kSlotTable), ops.size());
  for (size_t i = 0; i < ops.size(); ++i) {
    const SlotRow& row = kSlotTable[i];
    const Operation& op = ops[i];
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.slot, op.slot);
    EXPECT_STREQ(row.name, op.name);
    const std::string name = row.name;
    const Kind kind = std::string(row.returns).find("bool") != std::string::npos ? Kind::Query
                      : name.rfind("Set", 0) == 0 || name == "UpdateGainMapMeta" ? Kind::Setter
                                                                                 : Kind::Getter;
    EXPECT_EQ(kind, op.kind);
    const std::string params = row.params;
    EXPECT_EQ(params.find("std::") != std::string::npos, op.allocates);
    EXPECT_NE(nullptr, op.call);
  }
}

// The sink hears one balanced value exactly when an operation succeeded, and
// nothing under null outputs. Every container each operation may meet is the
// row sweep's.
TEST(EveryOperation, TheSinkHearsExactlyTheSuccesses) {
  StaticMetadataWraper::getInstance()->setStaticMetadata(testsupport::kFullCamera,
                                                         testsupport::FullContainer());
  metahelper::metadataHelperBase generic;
  metahelper::MtkMetadataHelper platform;
  for (metahelper::metadataHelperBase* helper :
       {&generic, static_cast<metahelper::metadataHelperBase*>(&platform)}) {
    for (const MetaPtr& request : {testsupport::FullContainer(), std::make_shared<NvMetadata>()}) {
      for (const bool nullOutputs : {false, true}) {
        for (const Operation& op : ReadsThenWrites()) {
          RecordingSink sink;
          CallContext context;
          context.request = request;
          context.cameraId = testsupport::kFullCamera;
          context.nullOutputs = nullOutputs;
          context.sink = &sink;
          const bool succeeded = opcatalog::Succeeded(op, op.call(*helper, context));
          EXPECT_TRUE(sink.Balanced()) << op.name;
          EXPECT_EQ(op.kind != Kind::Setter && succeeded && !nullOutputs, sink.events > 0) << op.name;
        }
      }
    }
  }
  StaticMetadataWraper::getInstance()->clear();
}

class DescribedValues : public ::testing::Test {
 protected:
  void SetUp() override {
    context_.request = request_;
    context_.sink = &sink_;
    auto staticMeta = std::make_shared<NvMetadata>();
    Put(*staticMeta, ANDROID_SENSOR_INFO_ACTIVE_ARRAY_SIZE, std::vector<int32_t>{0, 0, 4000, 3000});
    testsupport::BindCamera(*request_, 0, staticMeta);
  }
  void TearDown() override { StaticMetadataWraper::getInstance()->clear(); }
  int Call(metahelper::metadataHelperBase& helper, const char* name) {
    sink_.lines.clear();
    return Find(name).call(helper, context_);
  }
  MetaPtr request_ = std::make_shared<NvMetadata>();
  RecordingSink sink_;
  CallContext context_;
  metahelper::metadataHelperBase generic_;
  metahelper::MtkMetadataHelper platform_;
};

// Numbers, arrays, records and vectors reach the dump tool's JSON, whose tests
// check them; a string keeps its length, a stored NUL included.
TEST_F(DescribedValues, StringsKeepTheirLength) {
  Put(*request_, "nuvaro.snapshot.imageName", std::vector<uint8_t>{'I', 'M', 'G', '_', '1', 0});
  EXPECT_EQ(0, Call(generic_, "GetImgName"));
  EXPECT_EQ(std::vector<std::string>{"=\"IMG_1\\0\""}, sink_.lines);
}

// Extra arguments come from the context; sizes the output storage cannot
// hold are refused before the call.
TEST_F(DescribedValues, ContextArgumentsReachTheOperation) {
  Put(*request_, "com.nuvaro.camera.sensorpolicy.cropregions",
      std::vector<int32_t>{0, 0, 0, 0, 0, 1, 1, 1, 1, 2, 0, 0, 0, 0, 20, 30, 400, 300,
                           3, 0, 0, 0, 0, 0, 0, 0, 0, 4, 0, 0, 0, 0, 0,  0,  0,   0});
  context_.cameraId = 2;
  ASSERT_EQ(0, Call(platform_, "getPass1CropRegion"));
  EXPECT_TRUE(sink_.Has("left=20") && sink_.Has("width=400")) << ::testing::PrintToString(sink_.lines);

  Put(*request_, ANDROID_STATISTICS_LENS_SHADING_MAP, std::vector<float>(2 * 3 * 4, 1.5f));
  const std::tuple<nvholder::NULSCMapSize, int, const char*> maps[] = {
      {{2, 3}, 0, "#24"}, {{0, 3}, 0, "#0"}, {{-1, 3}, -1, nullptr}, {{65, 64}, -1, nullptr}};
  for (const auto& [size, result, firstLine] : maps) {
    context_.lscMapSize = size;
    EXPECT_EQ(result, Call(generic_, "GetLSC")) << size.width;
    EXPECT_EQ(firstLine == nullptr, sink_.lines.empty());
    if (firstLine != nullptr) EXPECT_EQ(firstLine, sink_.lines.front());
  }

  context_.index = 5;
  ASSERT_EQ(0, Call(generic_, "SetAnchorFrameIndex"));
  ASSERT_EQ(0, Call(generic_, "GetAnchorFrameNum"));
  EXPECT_EQ(std::vector<std::string>{"=5"}, sink_.lines);
}

TEST_F(DescribedValues, TwoContainerOperationsWriteTheSecond) {
  Put(*request_, "com.nuvaro.ultrahdr.gainmapValues", std::vector<float>{0.5f, 2.0f});
  context_.second = std::make_shared<NvMetadata>();
  ASSERT_EQ(0, Call(generic_, "UpdateGainMapMeta"));
  EXPECT_EQ(2u, context_.second->find("com.nuvaro.ultrahdr.gainmapValues").count);
  context_.second.reset();
  EXPECT_EQ(0, Call(generic_, "UpdateGainMapMeta"));  // into a scratch container
  context_.request.reset();
  EXPECT_EQ(-1, Call(generic_, "UpdateGainMapMeta"));  // refused: it would read through null
}

}  // namespace
