// The operation catalogue against the slot table, the helpers and a sink.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <new>
#include <set>
#include <string>
#include <vector>

#include "CatalogTestSupport.h"
#include "MtkMetadataHelper.h"
#include "OperationCatalog.h"
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

const Operation& Find(const std::string& name, int slot = 0) {
  for (const Operation& op : AllOperations())
    if (op.name == name && (slot == 0 || op.slot == slot)) return op;
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

// The helpers and the containers every operation must survive.
struct Subject {
  const char* what;
  bool platform;  // the MediaTek helper, else the generic one
  int container;  // 0 none, 1 empty, 2 every tag
};
const Subject kSubjects[] = {{"GenericNoContainer", false, 0}, {"GenericEmpty", false, 1},
                             {"GenericFull", false, 2},        {"PlatformNoContainer", true, 0},
                             {"PlatformEmpty", true, 1},       {"PlatformFull", true, 2}};

class CatalogOnEverySubject : public ::testing::TestWithParam<Subject> {
 protected:
  void SetUp() override {
    StaticMetadataWraper::getInstance()->setStaticMetadata(cattest::kFullCamera, cattest::FullContainer());
    if (GetParam().container == 1) context_.request = std::make_shared<NvMetadata>();
    if (GetParam().container == 2) context_.request = cattest::FullContainer();
    context_.cameraId = cattest::kFullCamera;
  }
  void TearDown() override { StaticMetadataWraper::getInstance()->clear(); }
  metahelper::metadataHelperBase& Helper() {
    return GetParam().platform ? static_cast<metahelper::metadataHelperBase&>(platform_) : generic_;
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

TEST_P(CatalogOnEverySubject, NullOutputsFailQuietlyWhereAPointerWasNulled) {
  RecordingSink sink;
  context_.sink = &sink;
  context_.nullOutputs = true;
  context_.second = std::make_shared<NvMetadata>();
  for (const Operation& op : ReadsThenWrites()) {
    SCOPED_TRACE(op.name);
    const int result = op.call(Helper(), context_);
    if (kSucceedWithoutOutputs.count(op.name) == 0) EXPECT_FALSE(opcatalog::Succeeded(op, result)) << result;
  }
  EXPECT_EQ(0, sink.events);
}

TEST_P(CatalogOnEverySubject, SinkHearsOneBalancedValueExactlyWhenAGetterSucceeded) {
  context_.second = std::make_shared<NvMetadata>();
  for (const Operation& op : ReadsThenWrites()) {
    SCOPED_TRACE(op.name);
    RecordingSink sink;
    context_.sink = &sink;
    const bool succeeded = opcatalog::Succeeded(op, op.call(Helper(), context_));
    EXPECT_TRUE(sink.Balanced());
    EXPECT_EQ(op.kind != Kind::Setter && succeeded, sink.events > 0);
  }
}

INSTANTIATE_TEST_SUITE_P(Subjects, CatalogOnEverySubject, ::testing::ValuesIn(kSubjects),
                         [](const auto& info) { return std::string(info.param.what); });

// Without a container nothing can be read: only the query answers, the
// operations that ask by camera id (slots 155 and 159), and the platform's
// operations that fall back to a fixed value or need no metadata.
TEST(CatalogWithoutContainer, OnlyFallbacksSucceed) {
  const std::set<int> fallbackSlots = {155, 159, 164, 110, 115, 189};
  StaticMetadataWraper::getInstance()->setStaticMetadata(cattest::kFullCamera, cattest::FullContainer());
  metahelper::metadataHelperBase generic;
  metahelper::MtkMetadataHelper platform;
  CallContext context;
  context.cameraId = cattest::kFullCamera;
  context.second = std::make_shared<NvMetadata>();
  for (metahelper::metadataHelperBase* helper :
       {&generic, static_cast<metahelper::metadataHelperBase*>(&platform)}) {
    for (const Operation& op : AllOperations()) {
      if (opcatalog::Succeeded(op, op.call(*helper, context)))
        EXPECT_EQ(1u, fallbackSlots.count(op.slot)) << op.name << " succeeded without a container";
    }
  }
  StaticMetadataWraper::getInstance()->clear();
}

// ---- Values described against a hand-filled request -------------------------
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
  int Call(metahelper::metadataHelperBase& helper, const char* name, int slot = 0) {
    sink_.lines.clear();
    return Find(name, slot).call(helper, context_);
  }
  MetaPtr request_ = std::make_shared<NvMetadata>();
  RecordingSink sink_;
  CallContext context_;
  metahelper::metadataHelperBase generic_;
  metahelper::MtkMetadataHelper platform_;
};

TEST_F(DescribedValues, ScalarsArraysAndStringsKeepTypeOrderAndLength) {
  Put(*request_, ANDROID_SENSOR_EXPOSURE_TIME, std::vector<int64_t>{250000000});
  Put(*request_, ANDROID_SENSOR_DYNAMIC_BLACK_LEVEL, std::vector<float>{64, 65, 66, 67.5f});
  Put(*request_, "nuvaro.snapshot.imageName", std::vector<uint8_t>{'I', 'M', 'G', '_', '1', 0});
  Put(*request_, "com.nuvaro.nvvi2.anchorOutputOrder", std::vector<int32_t>{2, 0, 1});
  struct Case {
    const char* operation;
    std::vector<std::string> lines;
  };
  const Case cases[] = {
      {"GetSensorExposureTime", {"=250000000"}},
      {"GetSensorDynamicBlackLevel", {"#4", "0=64", "1=65", "2=66", "3=67.5"}},
      {"GetImgName", {"=\"IMG_1\\0\""}},
      {"GetAnchorFrameOrder", {"#3", "0=2", "1=0", "2=1"}},
      {"GetFwkCameraId", {"=0"}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(0, Call(generic_, c.operation)) << c.operation;
    EXPECT_EQ(c.lines, sink_.lines) << c.operation;
  }
}

TEST_F(DescribedValues, NestedRecordsNameEveryFieldAndIndexEveryElement) {
  Put(*request_, "nuvaro.bokeh.faceInfo", std::vector<int32_t>{1600, 1000, 2200, 1700, 0, 3, 100, 4, 7});
  ASSERT_EQ(0, Call(platform_, "GetFdData"));
  for (const char* line :
       {":nvholder::NUNvFDRawSnapshotParam", "faceCount=1", "faces#10", "faces.0:nvholder::FDFaceBox",
        "faces.0.x0=1600", "faces.0.y1=1700", "faces.9.x1=0", "pitch=3", "angle=270", "pose=4",
        "reserved1#428", "activeArray:nvholder::ChiRect", "activeArray.width=4000",
        "activeArray.height=3000"})
    EXPECT_TRUE(sink_.Has(line)) << line;
  EXPECT_EQ(1 + 2 + 1 + 10 * 5 + 3 + 1 + 428 + 5, sink_.lines.size());
}

TEST_F(DescribedValues, QueryAndNonZeroSuccessAreReported) {
  Put(*request_, "com.nuvaro.camera.bokehCaps.info",
      std::vector<uint8_t>(sizeof(__bokehCapabilityInfoList), 2));
  EXPECT_EQ(1, Call(generic_, "IsRearCamera"));  // facing unreadable: rear
  EXPECT_EQ(std::vector<std::string>{"=true"}, sink_.lines);
  EXPECT_NE(0, Call(generic_, "GetBokehCapabilityInfo"));
  EXPECT_TRUE(sink_.Has("words.6872=33686018"));  // 0x02020202
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
  struct MapCase {
    nvholder::NULSCMapSize size;
    int result;
    const char* firstLine;
  };
  for (const MapCase& c : {MapCase{{2, 3}, 0, "#24"}, MapCase{{0, 3}, 0, "#0"}, MapCase{{-1, 3}, -1, nullptr},
                           MapCase{{65, 64}, -1, nullptr}}) {
    context_.lscMapSize = c.size;
    EXPECT_EQ(c.result, Call(generic_, "GetLSC")) << c.size.width;
    EXPECT_EQ(c.firstLine == nullptr, sink_.lines.empty());
    if (c.firstLine != nullptr) EXPECT_EQ(c.firstLine, sink_.lines.front());
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
  RecordingSink sink;  // its own allocations are not the catalogue's
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
