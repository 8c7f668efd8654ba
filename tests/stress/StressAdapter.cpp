#include "StressAdapter.h"

#include <atomic>
#include <memory>

#include "PlatformAdapter.h"

namespace stressadapter {
namespace {

std::atomic<int> gEntryCalls{0};
std::atomic<int> gInitializations{0};

adapter::CameraInfoTable KnownCameras() {
  adapter::CameraInfoTable cameras;
  for (int32_t id = 0; id < kKnownCameras; ++id) cameras[id] = {id == 1 ? 20 : 1, {}};
  return cameras;
}

// The table is filled once and only read afterwards.
class Holder : public adapter::PlatformInfoHolder {
 public:
  adapter::CameraInfoTable& getCameraInfoTable() override {
    static adapter::CameraInfoTable cameras = KnownCameras();
    return cameras;
  }
  bool getShiftData(nvholder::ShiftData* shiftData, int32_t /*interval*/) override {
    const Answer answer = AnswerFor(shiftData->timestamp);
    if (!answer.found) return false;
    shiftData->shiftX = answer.shiftX;
    shiftData->shiftY = answer.shiftY;
    return true;
  }
};

class Adapter : public adapter::PlatformAdapter {
 public:
  int initialize() override { return ++gInitializations, 0; }
  int uninitialize() override { return 0; }
  std::shared_ptr<adapter::PlatformInfoHolder> getPlatformInfoHolder() override {
    return std::make_shared<Holder>();
  }
};

}  // namespace

Answer AnswerFor(int64_t timestamp) {
  return {timestamp % 2 == 0, static_cast<int32_t>(timestamp % 5) - 2,
          static_cast<int32_t>(timestamp % 3) - 1};
}
int EntryCalls() { return gEntryCalls.load(); }
int Initializations() { return gInitializations.load(); }

}  // namespace stressadapter

extern "C" STRESSADAPTER_EXPORT adapter::PlatformAdapter* GetInstance() {
  static stressadapter::Adapter instance;
  ++stressadapter::gEntryCalls;
  return &instance;
}
