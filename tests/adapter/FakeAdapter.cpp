// A stand-in for the vendor adapter library, steered and observed through FakeAdapterControl.h.
#include <memory>

#include "FakeAdapterControl.h"
#include "PlatformAdapter.h"

namespace fakeadapter {
namespace {

struct State {
  Mode mode = Mode::kHolder;
  adapter::CameraInfoTable cameras;
  bool found = false;
  nvholder::ShiftData answer{}, lastQuery{};
  int32_t lastInterval = 0;
  int queries = 0, initializations = 0, instanceRequests = 0;
};

State& TheState() {
  static State state;
  return state;
}

class FakeHolder : public adapter::PlatformInfoHolder {
 public:
  adapter::CameraInfoTable& getCameraInfoTable() override { return TheState().cameras; }
  bool getShiftData(nvholder::ShiftData* shiftData, int32_t interval) override {
    State& s = TheState();
    ++s.queries;
    s.lastQuery = *shiftData;
    s.lastInterval = interval;
    if (!s.found) return false;
    shiftData->shiftX = s.answer.shiftX;
    shiftData->shiftY = s.answer.shiftY;
    shiftData->isPreAnchor = s.answer.isPreAnchor;
    return true;
  }
};

class FakeAdapter : public adapter::PlatformAdapter {
 public:
  int initialize() override { return ++TheState().initializations, 0; }
  int uninitialize() override { return 0; }
  std::shared_ptr<adapter::PlatformInfoHolder> getPlatformInfoHolder() override {
    return TheState().mode == Mode::kNoHolder ? nullptr : std::make_shared<FakeHolder>();
  }
};

}  // namespace

void SetMode(Mode mode) { TheState().mode = mode; }
void SetCameraType(int32_t cameraId, int32_t type) { TheState().cameras[cameraId] = {type, {}}; }
void ClearCameras() { TheState().cameras.clear(); }
void SetShiftAnswer(bool found, int32_t h, int32_t v, uint8_t isPreAnchor) {
  State& s = TheState();
  s.found = found, s.answer.shiftX = h, s.answer.shiftY = v, s.answer.isPreAnchor = isPreAnchor;
}
int QueryCount() { return TheState().queries; }
nvholder::ShiftData LastQuery() { return TheState().lastQuery; }
int32_t LastInterval() { return TheState().lastInterval; }
int InitializeCount() { return TheState().initializations; }
int GetInstanceCount() { return TheState().instanceRequests; }
void Reset() { TheState() = State{}; }

}  // namespace fakeadapter

extern "C" FAKEADAPTER_EXPORT adapter::PlatformAdapter* GetInstance() {
  static fakeadapter::FakeAdapter instance;
  ++fakeadapter::TheState().instanceRequests;
  return fakeadapter::TheState().mode == fakeadapter::Mode::kNullInstance ? nullptr : &instance;
}
