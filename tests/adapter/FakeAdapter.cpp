// A stand-in for the vendor adapter library: an adapter and an info holder
// whose answers the test sets through FakeAdapterControl.h, recording what
// the helper asked.
#include <memory>

#include "FakeAdapterControl.h"
#include "PlatformAdapter.h"

namespace fakeadapter {
namespace {

struct ShiftAnswer {
  bool found = false;
  int32_t h = 0;
  int32_t v = 0;
  uint8_t isPreAnchor = 0;
};

struct State {
  Mode mode = Mode::kHolder;
  adapter::CameraInfoTable cameras;
  ShiftAnswer answer;
  int queries = 0;
  nvholder::ShiftData lastQuery{};
  int32_t lastInterval = 0;
  int initializations = 0;
  int instanceRequests = 0;
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
    if (!s.answer.found) return false;
    shiftData->shiftX = s.answer.h;
    shiftData->shiftY = s.answer.v;
    shiftData->isPreAnchor = s.answer.isPreAnchor;
    return true;
  }
};

class FakeAdapter : public adapter::PlatformAdapter {
 public:
  int initialize() override {
    ++TheState().initializations;
    return 0;
  }
  int uninitialize() override { return 0; }
  std::shared_ptr<adapter::PlatformInfoHolder> getPlatformInfoHolder() override {
    if (TheState().mode == Mode::kNoHolder) return {};
    return std::make_shared<FakeHolder>();
  }
};

}  // namespace

void SetMode(Mode mode) { TheState().mode = mode; }
void SetCameraType(int32_t cameraId, int32_t type) { TheState().cameras[cameraId] = {type, {}}; }
void ClearCameras() { TheState().cameras.clear(); }
void SetShiftAnswer(bool found, int32_t h, int32_t v, uint8_t isPreAnchor) {
  TheState().answer = {found, h, v, isPreAnchor};
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
  fakeadapter::State& s = fakeadapter::TheState();
  ++s.instanceRequests;
  return s.mode == fakeadapter::Mode::kNullInstance ? nullptr : &instance;
}
