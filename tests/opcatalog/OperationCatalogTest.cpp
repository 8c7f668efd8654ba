// The operation catalogue against the slot table, the helpers and a sink.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "MtkMetadataHelper.h"
#include "OperationCatalog.h"
#include "RecordingSink.h"
#include "TestSupport.h"

namespace {

using Helper = metahelper::metadataHelperBase;
using opcatalog::CallContext;
using opcatalog::Kind;
using opcatalog::Operation;
using testsupport::Put;
using testsupport::RecordingSink;

std::vector<Operation> AllOperations() {
  size_t count = 0;
  const Operation* first = opcatalog::Operations(&count);
  return std::vector<Operation>(first, first + count);
}

// The catalogue's slots and names come from the operation tables; the caller's
// slot table is the independent account of both.
const std::pair<int, std::string> kSlotTable[] = {
#define HELPER_SLOT(slot, ret, name, params, args) {slot, #name},
#include "HelperSlots.def"
#undef HELPER_SLOT
};

TEST(OperationTable, FollowsTheCallersSlotTable) {
  const std::vector<Operation> ops = AllOperations();
  ASSERT_EQ(std::size(kSlotTable), ops.size());
  for (size_t i = 0; i < ops.size(); ++i)
    EXPECT_EQ(kSlotTable[i], std::make_pair(ops[i].slot, std::string(ops[i].name)));
}

// The sink hears one balanced value exactly when an operation succeeded, and nothing under null
// outputs; a null request is refused where it would be read through. Reads come first, so that no
// getter meets a tag a setter just wrote shorter than the getter's fixed-size copy.
TEST(EveryOperation, TheSinkHearsExactlyTheSuccesses) {
  testsupport::LogCapture::SetSettings(7, 0, 7, 0, 0);  // failures by the hundred: both logs quiet
  std::vector<Operation> ops = AllOperations();
  std::stable_partition(ops.begin(), ops.end(), [](const Operation& op) { return op.kind != Kind::Setter; });
  StaticMetadataWraper::getInstance()->setStaticMetadata(testsupport::kFullCamera,
                                                         testsupport::FullContainer());
  Helper generic;
  metahelper::MtkMetadataHelper platform;
  for (Helper* helper : {&generic, static_cast<Helper*>(&platform)})
    for (const metahelper::MetaPtr& request : {testsupport::FullContainer(), testsupport::NewMeta(), {}})
      for (const bool nullOutputs : {false, true})
        for (const Operation& op : ops) {
          RecordingSink sink;
          const CallContext context{request, nullptr, nullOutputs, &sink, testsupport::kFullCamera};
          const bool succeeded = opcatalog::Succeeded(op, op.call(*helper, context));
          EXPECT_TRUE(sink.Balanced()) << op.name;
          EXPECT_EQ(op.kind != Kind::Setter && succeeded && !nullOutputs, !sink.lines.empty()) << op.name;
        }
  StaticMetadataWraper::getInstance()->clear();
}

// A string keeps its length, a stored NUL included (numbers, arrays and records are the dump
// tool's tests'). Map sizes the output storage cannot hold are refused without a call.
TEST(DescribedValues, StringsKeepTheirLengthAndOversizedMapsAreRefused) {
  Helper helper;
  RecordingSink sink;
  CallContext context{testsupport::NewMeta(), nullptr, false, &sink};
  const auto call = [&](const std::string& name) {
    sink.lines.clear();
    const std::vector<Operation> ops = AllOperations();
    return std::find_if(ops.begin(), ops.end(), [&](const Operation& op) { return name == op.name; })
        ->call(helper, context);
  };
  Put(*context.request, "nuvaro.snapshot.imageName", std::vector<uint8_t>{'I', 'M', 'G', '_', '1', 0});
  EXPECT_EQ(0, call("GetImgName"));
  EXPECT_EQ(std::vector<std::string>{"=\"IMG_1\\0\""}, sink.lines);
  Put(*context.request, ANDROID_STATISTICS_LENS_SHADING_MAP, std::vector<float>(65 * 64 * 4, 1.5f));
  for (const nvholder::NULSCMapSize size : {nvholder::NULSCMapSize{-1, 3}, {65, 64}}) {
    context.lscMapSize = size;
    EXPECT_EQ(-1, call("GetLSC")) << size.width;
  }
}

}  // namespace
