// The helper's virtual slot order, checked from a caller's side.
//
// Callers are compiled against a declaration of the slot table, not against
// this project's header. This test declares the table the way such a caller
// does (CallerHelper below, written from the slot table) and calls every slot
// through it on an object laid out by the project's header: a recorder whose
// every override notes which operation ran. Any reordering, missing overload
// or changed signature in the header makes a call land in the wrong slot.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "MtkMetadataHelper.h"
#include "TestSupport.h"

// What a caller compiles against: the slot table, nothing of the project's.
// These have external linkage on purpose: a class in an anonymous namespace
// with no concrete subclass lets the optimiser turn every call through it
// into a pure-virtual call.
namespace caller {

using Meta = std::shared_ptr<NvMetadata>;
class CallerHelper {
 public:
  virtual ~CallerHelper() = default;  // slots 1 and 2
#define HELPER_SLOT(slot, ret, name, params, args) virtual ret name params = 0;
#include "HelperSlots.def"
#undef HELPER_SLOT
};

class CallerMtkHelper : public CallerHelper {
 public:
  virtual int GetStgExpInfo(Meta, nvholder::SensorMultiExposureInfo*) = 0;  // slot 191
};

class CallerManager {
 public:
  virtual ~CallerManager() = default;  // slots 1 and 2
  virtual int Init() = 0;
  virtual std::shared_ptr<CallerHelper> GetMetadataHelper() = 0;
};

}  // namespace caller

namespace {

using caller::CallerHelper;
using caller::CallerManager;
using caller::CallerMtkHelper;
using Meta = std::shared_ptr<NvMetadata>;

struct Args {
  FacesInfo faces{};
  std::vector<int> ids;
  std::string text;
};

// Laid out by the project's header; every override records its slot.
class SlotRecorder : public metahelper::metadataHelperBase {
 public:
  int last = 0;
#define HELPER_SLOT(slot, ret, name, params, args) \
  ret name params override {                       \
    last = slot;                                   \
    return {};                                     \
  }
#include "HelperSlots.def"
#undef HELPER_SLOT
};

TEST(SlotOrder, EverySlotOfTheCallersTableRunsThatOperation) {
  SlotRecorder recorder;
  auto* caller = reinterpret_cast<CallerHelper*>(static_cast<metahelper::metadataHelperBase*>(&recorder));
  // As in a real caller, nothing about the object may be known beyond the
  // pointer: hide its origin from the optimiser.
  asm volatile("" : "+r"(caller));
  Args a;
  int calls = 0;
#define HELPER_SLOT(slot, ret, name, params, args) \
  recorder.last = 0;                               \
  caller->name args;                               \
  EXPECT_EQ(slot, recorder.last) << #name;         \
  ++calls;
#include "HelperSlots.def"
#undef HELPER_SLOT
  EXPECT_EQ(188, calls);  // 190 slots less the two destructors
}

// The real library, reached the way a caller reaches it: dlopen, the
// unmangled GetInstance, and only the caller's declarations.
TEST(LoadedLibrary, ManagerSlotsAndTheHandedOutHelper) {
  void* handle = dlopen("libmetadataHelper.so", RTLD_NOW);
  ASSERT_NE(nullptr, handle) << dlerror();
  auto getInstance = reinterpret_cast<void* (*)()>(dlsym(handle, "GetInstance"));
  ASSERT_NE(nullptr, getInstance);
  // One manager and one helper for every caller, no Init needed first.
  auto* manager = static_cast<CallerManager*>(getInstance());
  ASSERT_EQ(manager, getInstance());
  std::shared_ptr<CallerHelper> helper = manager->GetMetadataHelper();
  ASSERT_NE(nullptr, helper);
  const long owners = helper.use_count();
  EXPECT_EQ(owners + 1, manager->GetMetadataHelper().use_count()) << "one helper, shared";
  EXPECT_EQ(0, manager->Init());
  EXPECT_EQ(helper, manager->GetMetadataHelper());
  testsupport::LogCapture log;
  // A not-supported slot names itself in its "arg err" line, so the function
  // printed tells which operation the caller's slot reached.
  EXPECT_EQ(-1, helper->GetSensorSOF(nullptr, nullptr));
  EXPECT_EQ(-1, helper->GetSkinScore(nullptr, nullptr, 0));
  EXPECT_EQ(-1, helper->GetWhiteBlackOutput(nullptr, nullptr));
  EXPECT_EQ(-1, static_cast<CallerMtkHelper*>(helper.get())->GetStgExpInfo(nullptr, nullptr));
  std::vector<std::string> functions;
  for (const auto& line : log.online) functions.push_back(line.function);
  EXPECT_EQ(
      (std::vector<std::string>{"GetSensorSOF", "GetSkinScore", "GetWhiteBlackOutput", "GetStgExpInfo"}),
      functions);
  helper.reset();
  dlclose(handle);
}

}  // namespace
