// Control of the fake libnvcamera_adapter.so, which a test links and names in METAHELPER_ADAPTER_LIBRARY.
// Starting state (and Reset): kHolder, no cameras, a shift query that finds nothing, counts 0.
// Safe to use from many threads; set the cameras before they start.
#pragma once

#include <cstdint>

#include "nvholder/NvHolderTypes.h"

#define FAKEADAPTER_EXPORT __attribute__((visibility("default")))

namespace fakeadapter {

// kNullInstance: GetInstance returns null; kNoHolder: no holder handed out; kHolder: the fake's holder.
enum class Mode { kNullInstance, kNoHolder, kHolder };

FAKEADAPTER_EXPORT void SetMode(Mode mode);  // before the client's first use
FAKEADAPTER_EXPORT void SetCameraType(int32_t cameraId, int32_t type);
FAKEADAPTER_EXPORT void ClearCameras();
// When found (with evenOnly, for even timestamps only), the query writes H, V and the pre-anchor flag
// and returns true; else leaves the record.
FAKEADAPTER_EXPORT void SetShiftAnswer(bool found, int32_t h, int32_t v, uint8_t isPreAnchor,
                                       bool evenOnly = false);
FAKEADAPTER_EXPORT int QueryCount();
FAKEADAPTER_EXPORT nvholder::ShiftData LastQuery();  // as received, before the fake answered
FAKEADAPTER_EXPORT int32_t LastInterval();
FAKEADAPTER_EXPORT int InitializeCount();
FAKEADAPTER_EXPORT int GetInstanceCount();  // calls of the exported entry, null answers included
FAKEADAPTER_EXPORT void Reset();

}  // namespace fakeadapter
