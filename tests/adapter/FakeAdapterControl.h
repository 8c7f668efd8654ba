// Control of the fake vendor adapter library (libnvcamera_adapter.so) that
// host tests load in place of the vendor's. A test process links the fake
// and points METAHELPER_ADAPTER_LIBRARY at it, so the adapter client opens
// the very object whose state these functions set and observe.
//
// The fake starts in kHolder mode with an empty camera table and a shift
// query that finds nothing. Set the mode before the client's first use.
#pragma once

#include <cstdint>

#include "nvholder/NvHolderTypes.h"

#define FAKEADAPTER_EXPORT __attribute__((visibility("default")))

namespace fakeadapter {

enum class Mode {
  kNullInstance,  // GetInstance returns null
  kNoHolder,      // the adapter loads but hands out no holder
  kHolder,        // the adapter hands out a holder backed by this fake
};

FAKEADAPTER_EXPORT void SetMode(Mode mode);
// Entry of the holder's camera table (the platform's camera type of an id).
FAKEADAPTER_EXPORT void SetCameraType(int32_t cameraId, int32_t type);
FAKEADAPTER_EXPORT void ClearCameras();
// What the shift query answers: when found, it writes H, V and the
// pre-anchor flag into the record and returns true; otherwise it leaves the
// record alone and returns false.
FAKEADAPTER_EXPORT void SetShiftAnswer(bool found, int32_t h, int32_t v, uint8_t isPreAnchor);
FAKEADAPTER_EXPORT int QueryCount();
// The record of the last query as received, before the fake answered.
FAKEADAPTER_EXPORT nvholder::ShiftData LastQuery();
FAKEADAPTER_EXPORT int32_t LastInterval();
FAKEADAPTER_EXPORT int InitializeCount();
// Calls of the exported GetInstance entry, null answers included.
FAKEADAPTER_EXPORT int GetInstanceCount();
// Back to the starting state: kHolder, no cameras, nothing found, counts 0.
FAKEADAPTER_EXPORT void Reset();

}  // namespace fakeadapter
