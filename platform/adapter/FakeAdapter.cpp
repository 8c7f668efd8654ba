// A stand-in for the vendor adapter library, steered and observed through FakeAdapterControl.h.
#include <memory>
#include <mutex>

#include "FakeAdapterControl.h"
#include "PlatformAdapter.h"

namespace fakeadapter {
namespace {

struct State {
  Mode mode = Mode::kHolder;
  adapter::CameraInfoTable cameras;
  bool found = false, evenOnly = false;
  nvholder::ShiftData answer{}, lastQuery{};
  int32_t lastInterval = 0;
  int queries = 0, initializations = 0, instanceRequests = 0;
};

std::mutex gMutex;
State gState;

// Every access to the state but the camera table, which the helper reads while no test writes it.
template <typename F>
auto Locked(F f) {
  std::lock_guard<std::mutex> lock(gMutex);
  return f(gState);
}

class FakeHolder : public adapter::PlatformInfoHolder {
 public:
  adapter::CameraInfoTable& getCameraInfoTable() override { return gState.cameras; }
  bool getShiftData(nvholder::ShiftData* shiftData, int32_t interval) override {
    return Locked([&](State& s) {
      ++s.queries;
      s.lastQuery = *shiftData;
      s.lastInterval = interval;
      if (!s.found || (s.evenOnly && shiftData->timestamp % 2 != 0)) return false;
      shiftData->shiftX = s.answer.shiftX;
      shiftData->shiftY = s.answer.shiftY;
      shiftData->isPreAnchor = s.answer.isPreAnchor;
      return true;
    });
  }
};

class FakeAdapter : public adapter::PlatformAdapter {
 public:
  int initialize() override {
    return Locked([](State& s) { return ++s.initializations, 0; });
  }
  int uninitialize() override { return 0; }
  std::shared_ptr<adapter::PlatformInfoHolder> getPlatformInfoHolder() override {
    if (Locked([](State& s) { return s.mode == Mode::kNoHolder; })) return nullptr;
    return std::make_shared<FakeHolder>();
  }
};

}  // namespace

void SetMode(Mode mode) {
  Locked([mode](State& s) { s.mode = mode; });
}
void SetCameraType(int32_t cameraId, int32_t type) {
  Locked([=](State& s) { s.cameras[cameraId] = {type, {}}; });
}
void ClearCameras() {
  Locked([](State& s) { s.cameras.clear(); });
}
void SetShiftAnswer(bool found, int32_t h, int32_t v, uint8_t isPreAnchor, bool evenOnly) {
  Locked([=](State& s) {
    s.found = found, s.evenOnly = evenOnly;
    s.answer.shiftX = h, s.answer.shiftY = v, s.answer.isPreAnchor = isPreAnchor;
  });
}
int QueryCount() {
  return Locked([](State& s) { return s.queries; });
}
nvholder::ShiftData LastQuery() {
  return Locked([](State& s) { return s.lastQuery; });
}
int32_t LastInterval() {
  return Locked([](State& s) { return s.lastInterval; });
}
int InitializeCount() {
  return Locked([](State& s) { return s.initializations; });
}
int GetInstanceCount() {
  return Locked([](State& s) { return s.instanceRequests; });
}
void Reset() {
  Locked([](State& s) { s = State{}; });
}

}  // namespace fakeadapter

extern "C" FAKEADAPTER_EXPORT adapter::PlatformAdapter* GetInstance() {
  static fakeadapter::FakeAdapter instance;
  using fakeadapter::State;
  return fakeadapter::Locked(
             [](State& s) { return ++s.instanceRequests, s.mode == fakeadapter::Mode::kNullInstance; })
             ? nullptr
             : &instance;
}
