// The helper's slot order as callers see it: they compile against HelperSlots.def, not this project's
// header, so any reordering, missing overload or changed signature lands a call in the wrong slot.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "MtkMetadataHelper.h"
#include "TestSupport.h"

// External linkage on purpose: in an anonymous namespace, with no concrete subclass, the
// optimiser turns every call through the caller's classes into a pure-virtual call.
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
  // As in a real caller, hide the object's origin from the optimiser.
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

// The real library as a caller reaches it: dlopen, GetInstance, the caller's declarations.
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
  EXPECT_EQ(0, manager->Init());
  const long owners = helper.use_count();  // a second control block for the same helper would not share it
  EXPECT_EQ(owners + 1, manager->GetMetadataHelper().use_count()) << "one helper, shared";
  testsupport::LogCapture log;
  // A not-supported slot names itself: a late base slot, and the platform's own past the base table.
  EXPECT_EQ(-1, helper->GetWhiteBlackOutput(nullptr, nullptr));
  EXPECT_EQ(-1, static_cast<CallerMtkHelper*>(helper.get())->GetStgExpInfo(nullptr, nullptr));
  ASSERT_EQ(2u, log.online.size());
  EXPECT_EQ("GetWhiteBlackOutput", log.online[0].function);
  EXPECT_EQ("GetStgExpInfo", log.online[1].function);
  helper.reset();
  dlclose(handle);
}

}  // namespace caller
