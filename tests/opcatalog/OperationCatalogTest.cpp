// The operation catalogue against the slot table, the helpers and a sink.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <new>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "CatalogTestSupport.h"
#include "MtkMetadataHelper.h"
#include "OperationCatalog.h"
#include "TagTable.h"
#include "TestSupport.h"

// Counts heap allocations while `gCounting` is set.
namespace {
bool gCounting = false;
int gAllocations = 0;
}  // namespace

void* operator new(size_t size) {
  if (gCounting) ++gAllocations;
  void* block = std::malloc(size == 0 ? 1 : size);
  if (block == nullptr) std::abort();
  return block;
}
void* operator new(size_t size, const std::nothrow_t&) noexcept {
  if (gCounting) ++gAllocations;
  return std::malloc(size == 0 ? 1 : size);
}
void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, size_t) noexcept { std::free(block); }

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

// Every operation on both helpers and on every container it may meet, bad
// ones included. Run under the sanitizers, any overflow or stray read in an
// operation stops the test.
MetaPtr EveryTagWithoutElements() {
  auto meta = std::make_shared<NvMetadata>();
  for (const tagtable::RegisteredTag& tag : tagtable::kRegisteredTags)
    meta->update(tag.tag, static_cast<const void*>(nullptr), 0);
  return meta;
}

MetaPtr FullNaming(int32_t cameraId) {
  MetaPtr meta = cattest::FullContainer();
  Put(*meta, META_FWK_CAMERA_ID, std::vector<int32_t>{cameraId});
  return meta;
}

struct Subject {
  const char* what;
  MetaPtr (*request)();
  int cameraId;
  bool undeclared;  // no tag index declared
};
const Subject kSubjects[] = {
    {"NoContainer", [] { return MetaPtr(); }, cattest::kFullCamera, false},
    {"Empty", [] { return std::make_shared<NvMetadata>(); }, cattest::kFullCamera, false},
    {"EveryTagWithoutElements", EveryTagWithoutElements, 0, false},
    {"Full", cattest::FullContainer, cattest::kFullCamera, false},
    {"FullNamingUnknownCamera", [] { return FullNaming(99); }, 99, false},
    {"FullNamingCameraMinusOne", [] { return FullNaming(-1); }, -1, false},
    {"FullWithoutDeclaredIndices", [] { return FullNaming(99); }, 99, true},
};
void PrintTo(const Subject& subject, std::ostream* os) { *os << subject.what; }

class EveryOperation : public ::testing::TestWithParam<std::tuple<bool, Subject>> {
 protected:
  void SetUp() override {
    StaticMetadataWraper::getInstance()->setStaticMetadata(cattest::kFullCamera, cattest::FullContainer());
    StaticMetadataWraper::getInstance()->setStaticMetadata(0, EveryTagWithoutElements());
    const Subject& subject = std::get<1>(GetParam());
    context_.request = subject.request();
    context_.cameraId = subject.cameraId;
    context_.second = std::make_shared<NvMetadata>();
    for (int i = 0; subject.undeclared && i < META_NO_INDEX; ++i)
      MetaTagWrapper::getInstance().setTag(static_cast<META_TAG_INDEX>(i), MetaTagWrapper::kUndeclared);
  }
  void TearDown() override {
    MetaTagWrapper::getInstance().resetTags();
    StaticMetadataWraper::getInstance()->clear();
  }
  metahelper::metadataHelperBase& Helper() {
    return std::get<0>(GetParam()) ? static_cast<metahelper::metadataHelperBase&>(platform_) : generic_;
  }
  CallContext context_;
  metahelper::metadataHelperBase generic_;
  metahelper::MtkMetadataHelper platform_;
};

// Operations that can still succeed when every output pointer is null: their
// output is a reference or absent, or (the eye-closure status, the bokeh
// capability) a null output only skips the copy.
// clang-format off
const std::set<std::string> kSucceedWithoutOutputs = {
    "GetEcdStatus", "GetBokehCapabilityInfo", "UpdateGainMapMeta", "GetCameraRoleIds",
    "GetAndroidLogicalMultiCameraPhysicalIds", "GetAndroidLogicalMultiCameraPhysicalRoleIds", "IsRearCamera",
    "GetAnchorFrameOrder", "GetFaceRect", "SetAndroidLensFocalLength", "SetNuvaroEquivalentFocalLength",
    "SetAnchorFrameIndex", "SetFacesInfoHolder", "SetFocusROI"};
// clang-format on

TEST_P(EveryOperation, NullOutputsFailQuietlyWhereAPointerWasNulled) {
  RecordingSink sink;
  context_.sink = &sink;
  context_.nullOutputs = true;
  for (const Operation& op : ReadsThenWrites()) {
    const int result = op.call(Helper(), context_);
    if (kSucceedWithoutOutputs.count(op.name) == 0) EXPECT_FALSE(opcatalog::Succeeded(op, result)) << op.name;
  }
  EXPECT_EQ(0, sink.events);
}

// Without a container nothing can be read: only the query answers, the
// operations that ask by camera id (slots 155 and 159), and the platform's
// operations that fall back to a fixed value or need no metadata.
const std::set<int> kFallbackSlots = {155, 159, 164, 110, 115, 189};

// Reads leave the request as it was and give the same outcome when repeated;
// the sink hears one balanced value exactly when a getter succeeded.
TEST_P(EveryOperation, ReadsAreRepeatableAndReportExactlyTheirSuccesses) {
  const NvMetadata before = context_.request ? *context_.request : NvMetadata();
  bool readsChecked = false;
  for (const Operation& op : ReadsThenWrites()) {
    SCOPED_TRACE(op.name);
    if (op.kind == Kind::Setter && !readsChecked && context_.request) {
      EXPECT_TRUE(tagtable::SameContent(before, *context_.request)) << "a read changed the request";
      readsChecked = true;
    }
    RecordingSink sink, again;
    context_.sink = &sink;
    const int result = op.call(Helper(), context_);
    const bool succeeded = opcatalog::Succeeded(op, result);
    EXPECT_TRUE(sink.Balanced());
    EXPECT_EQ(op.kind != Kind::Setter && succeeded, sink.events > 0);
    if (!context_.request && succeeded) EXPECT_EQ(1u, kFallbackSlots.count(op.slot)) << "without a container";
    if (op.kind == Kind::Setter) continue;
    context_.sink = &again;
    EXPECT_EQ(result, op.call(Helper(), context_));
    EXPECT_EQ(sink.lines, again.lines);
  }
}

INSTANTIATE_TEST_SUITE_P(Subjects, EveryOperation,
                         ::testing::Combine(::testing::Bool(), ::testing::ValuesIn(kSubjects)),
                         [](const auto& info) {
                           return std::string(std::get<0>(info.param) ? "Platform" : "Generic") +
                                  std::get<1>(info.param).what;
                         });

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

TEST_F(DescribedValues, ScalarsArraysStringsAndQueriesKeepTypeOrderAndLength) {
  Put(*request_, ANDROID_SENSOR_EXPOSURE_TIME, std::vector<int64_t>{250000000});
  Put(*request_, ANDROID_SENSOR_DYNAMIC_BLACK_LEVEL, std::vector<float>{64, 65, 66, 67.5f});
  Put(*request_, "nuvaro.snapshot.imageName", std::vector<uint8_t>{'I', 'M', 'G', '_', '1', 0});
  Put(*request_, "com.nuvaro.nvvi2.anchorOutputOrder", std::vector<int32_t>{2, 0, 1});
  const std::pair<const char*, std::vector<std::string>> cases[] = {
      {"GetSensorExposureTime", {"=250000000"}},
      {"GetSensorDynamicBlackLevel", {"#4", "0=64", "1=65", "2=66", "3=67.5"}},
      {"GetImgName", {"=\"IMG_1\\0\""}},
      {"GetAnchorFrameOrder", {"#3", "0=2", "1=0", "2=1"}},
      {"GetFwkCameraId", {"=0"}},
  };
  for (const auto& [operation, lines] : cases) {
    EXPECT_EQ(0, Call(generic_, operation)) << operation;
    EXPECT_EQ(lines, sink_.lines) << operation;
  }
  EXPECT_EQ(1, Call(generic_, "IsRearCamera"));  // facing unreadable: rear
  EXPECT_EQ(std::vector<std::string>{"=true"}, sink_.lines);
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

// Getters and the query keep the library's promise of no heap allocation;
// the catalogue adds none on top.
TEST(CatalogAllocations, NoneForGettersWhoseOutputIsNotHeapStorage) {
  StaticMetadataWraper::getInstance()->setStaticMetadata(cattest::kFullCamera, cattest::FullContainer());
  metahelper::metadataHelperBase generic;
  metahelper::MtkMetadataHelper platform;
  CallContext context;
  context.request = cattest::FullContainer();
  context.cameraId = cattest::kFullCamera;
  for (metahelper::metadataHelperBase* helper :
       {&generic, static_cast<metahelper::metadataHelperBase*>(&platform)}) {
    for (const Operation& op : AllOperations()) {
      if (op.allocates || op.kind == Kind::Setter) continue;
      op.call(*helper, context);  // first use may set up platform singletons
      gAllocations = 0;
      gCounting = true;
      op.call(*helper, context);
      gCounting = false;
      EXPECT_EQ(0, gAllocations) << op.name;
    }
  }
  StaticMetadataWraper::getInstance()->clear();
}

}  // namespace
