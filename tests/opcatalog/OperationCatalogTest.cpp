// The operation catalogue against the slot table, the helpers and a sink.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <tuple>
#include <vector>

#include "MtkMetadataHelper.h"
#include "OperationCatalog.h"
#include "RecordingSink.h"
#include "TestSupport.h"

namespace {

using metahelper::MetaPtr;
using opcatalog::CallContext;
using opcatalog::Kind;
using opcatalog::Operation;
using testsupport::Put;
using testsupport::RecordingSink;
using Lines = std::vector<std::string>;

std::vector<Operation> AllOperations() {
  size_t count = 0;
  const Operation* first = opcatalog::Operations(&count);
  return std::vector<Operation>(first, first + count);
}

// The catalogue's slots and names come from the operation tables; the
// caller's slot table is the independent account of both. (Kinds follow
// from the names by rule; restating the rule would prove nothing.)
const std::pair<int, std::string> kSlotTable[] = {
#define HELPER_SLOT(slot, ret, name, params, args) {slot, #name},
#include "HelperSlots.def"
#undef HELPER_SLOT
};

TEST(OperationTable, FollowsTheCallersSlotTable) {
  const std::vector<Operation> ops = AllOperations();
  ASSERT_EQ(std::size(kSlotTable), ops.size());
  for (size_t i = 0; i < ops.size(); ++i) {
    EXPECT_EQ(kSlotTable[i], std::make_pair(ops[i].slot, std::string(ops[i].name)));
    EXPECT_NE(nullptr, ops[i].call) << ops[i].name;
  }
}

// The sink hears one balanced value exactly when an operation succeeded, and
// nothing under null outputs. Reads come first, so that no getter meets a tag
// a setter just wrote shorter than the getter's fixed-size copy. Every
// container each operation may meet is the row sweep's.
TEST(EveryOperation, TheSinkHearsExactlyTheSuccesses) {
  testsupport::LogCapture::SetSettings(7, 0, 7, 0, 0);  // failures by the hundred: both logs quiet
  std::vector<Operation> ops = AllOperations();
  std::stable_partition(ops.begin(), ops.end(), [](const Operation& op) { return op.kind != Kind::Setter; });
  StaticMetadataWraper::getInstance()->setStaticMetadata(testsupport::kFullCamera,
                                                         testsupport::FullContainer());
  metahelper::metadataHelperBase generic;
  metahelper::MtkMetadataHelper platform;
  for (metahelper::metadataHelperBase* helper :
       {&generic, static_cast<metahelper::metadataHelperBase*>(&platform)}) {
    for (const MetaPtr& request : {testsupport::FullContainer(), std::make_shared<NvMetadata>()}) {
      for (const bool nullOutputs : {false, true}) {
        CallContext context;
        context.request = request;
        context.cameraId = testsupport::kFullCamera;
        context.nullOutputs = nullOutputs;
        for (const Operation& op : ops) {
          RecordingSink sink;
          context.sink = &sink;
          const bool succeeded = opcatalog::Succeeded(op, op.call(*helper, context));
          EXPECT_TRUE(sink.Balanced()) << op.name;
          EXPECT_EQ(op.kind != Kind::Setter && succeeded && !nullOutputs, !sink.lines.empty()) << op.name;
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
  }
  // What the sink heard from one call of the operation, which must return `result`.
  Lines Call(metahelper::metadataHelperBase& helper, const std::string& name, int result = 0) {
    sink_.lines.clear();
    for (const Operation& op : AllOperations()) {
      if (name != op.name) continue;
      EXPECT_EQ(result, op.call(helper, context_)) << name;
      return sink_.lines;
    }
    ADD_FAILURE() << "no operation " << name;
    return {};
  }
  MetaPtr request_ = std::make_shared<NvMetadata>();
  RecordingSink sink_;
  CallContext context_;
  metahelper::metadataHelperBase generic_;
  metahelper::MtkMetadataHelper platform_;
};

// Numbers, arrays, records and vectors reach the dump tool's JSON, whose tests
// check them; a string keeps its length, a stored NUL included. Extra
// arguments come from the context; sizes the output storage cannot hold are
// refused before the call.
TEST_F(DescribedValues, StringsKeepTheirLengthAndContextArgumentsReachTheOperation) {
  Put(*request_, "nuvaro.snapshot.imageName", std::vector<uint8_t>{'I', 'M', 'G', '_', '1', 0});
  EXPECT_EQ(Lines{"=\"IMG_1\\0\""}, Call(generic_, "GetImgName"));
  Put(*request_, "com.nuvaro.camera.sensorpolicy.cropregions",
      std::vector<int32_t>{0, 0, 0, 0, 0, 1, 1, 1, 1, 2, 0, 0, 0, 0, 20, 30, 400, 300,
                           3, 0, 0, 0, 0, 0, 0, 0, 0, 4, 0, 0, 0, 0, 0,  0,  0,   0});
  context_.cameraId = 2;
  EXPECT_EQ((Lines{":nvholder::ChiRect", "left=20", "top=30", "width=400", "height=300", "end"}),
            Call(platform_, "getPass1CropRegion"));

  Put(*request_, ANDROID_STATISTICS_LENS_SHADING_MAP, std::vector<float>(2 * 3 * 4, 1.5f));
  const std::tuple<nvholder::NULSCMapSize, int, std::string> maps[] = {
      {{2, 3}, 0, "#24"}, {{0, 3}, 0, "#0"}, {{-1, 3}, -1, ""}, {{65, 64}, -1, ""}};
  for (const auto& [size, result, firstLine] : maps) {
    context_.lscMapSize = size;
    const Lines lines = Call(generic_, "GetLSC", result);
    EXPECT_EQ(firstLine, lines.empty() ? "" : lines.front()) << size.width;
  }

  context_.index = 5;
  Call(generic_, "SetAnchorFrameIndex");
  EXPECT_EQ(Lines{"=5"}, Call(generic_, "GetAnchorFrameNum"));
}

TEST_F(DescribedValues, TwoContainerOperationsWriteTheSecond) {
  Put(*request_, "com.nuvaro.ultrahdr.gainmapValues", std::vector<float>{0.5f, 2.0f});
  context_.second = std::make_shared<NvMetadata>();
  Call(generic_, "UpdateGainMapMeta");
  EXPECT_EQ(2u, context_.second->find("com.nuvaro.ultrahdr.gainmapValues").count);
  context_.second.reset();
  Call(generic_, "UpdateGainMapMeta");  // into a scratch container
  context_.request.reset();
  Call(generic_, "UpdateGainMapMeta", -1);  // refused: it would read through null
}

}  // namespace
