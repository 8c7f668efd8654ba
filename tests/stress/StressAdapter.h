// A vendor adapter library that may be used from many threads at once: its
// answers are fixed functions of the query, its counters atomic. The stress
// tests link it to read the counters and name it in METAHELPER_ADAPTER_LIBRARY.
#pragma once

#include <cstdint>

#include "nvholder/NvHolderTypes.h"

#define STRESSADAPTER_EXPORT __attribute__((visibility("default")))

namespace stressadapter {

// Cameras 0 to 7 are known; camera 1 is of the zoom-EIS type.
constexpr int32_t kKnownCameras = 8;

// What the holder writes for a query: a shift derived from the timestamp,
// found for even timestamps only.
struct Answer {
  bool found;
  int32_t shiftX;
  int32_t shiftY;
};
STRESSADAPTER_EXPORT Answer AnswerFor(int64_t timestamp);

STRESSADAPTER_EXPORT int EntryCalls();       // calls of the exported GetInstance
STRESSADAPTER_EXPORT int Initializations();  // calls of the adapter's initialise

}  // namespace stressadapter
