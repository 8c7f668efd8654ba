// The helper's virtual slot order, checked from a caller's side. Callers are
// compiled against a declaration of the slot table, not against this
// project's header: CallerHelper below declares it from HelperSlots.def, and
// every slot is called through it on a recorder laid out by the project's
// header. Any reordering, missing overload or changed signature in the header
// makes a call land in the wrong slot.
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
  auto* caller =
      reinterpret_cast<caller::CallerHelper*>(static_cast<metahelper::metadataHelperBase*>(&recorder));
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
  auto* manager = static_cast<caller::CallerManager*>(getInstance());
  ASSERT_EQ(manager, getInstance());
  std::shared_ptr<caller::CallerHelper> helper = manager->GetMetadataHelper();
  ASSERT_NE(nullptr, helper);
  const long owners = helper.use_count();
  EXPECT_EQ(owners + 1, manager->GetMetadataHelper().use_count()) << "one helper, shared";
  EXPECT_EQ(0, manager->Init());
  EXPECT_EQ(helper, manager->GetMetadataHelper());
  testsupport::LogCapture log;
  // A not-supported slot names itself in its "arg err" line, so the function
  // printed tells which operation the caller's slot reached: a late base slot
  // and the platform's own slot past the base table.
  EXPECT_EQ(-1, helper->GetWhiteBlackOutput(nullptr, nullptr));
  EXPECT_EQ(-1, static_cast<caller::CallerMtkHelper*>(helper.get())->GetStgExpInfo(nullptr, nullptr));
  ASSERT_EQ(2u, log.online.size());
  EXPECT_EQ("GetWhiteBlackOutput", log.online[0].function);
  EXPECT_EQ("GetStgExpInfo", log.online[1].function);
  helper.reset();
  dlclose(handle);
}

}  // namespace
