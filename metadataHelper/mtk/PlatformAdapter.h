// Interfaces of the vendor adapter library (libnvcamera_adapter.so).
//
// The adapter library defines these objects; this library only calls them, so
// the order of their virtual operations is the binary interface with it.
// Positions count the two destructor slots, as the vendor's own tables do.
#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>

#include "nvholder/NvHolderTypes.h"

namespace adapter {

// Per-camera record of the holder's camera table.
struct PlatformCameraInfo {
  int32_t cameraType;  // 20: a camera whose shift depends on the zoom-EIS ratio
  int32_t reserved[15];
};

using CameraInfoTable = std::unordered_map<int32_t, PlatformCameraInfo>;

class PlatformInfoHolder {
 public:
  virtual ~PlatformInfoHolder() = default;  // positions 1 and 2
  // Positions 3 to 37: holder operations this library never calls.
  virtual void reserved03() {}
  virtual void reserved04() {}
  virtual void reserved05() {}
  virtual void reserved06() {}
  virtual void reserved07() {}
  virtual void reserved08() {}
  virtual void reserved09() {}
  virtual void reserved10() {}
  virtual void reserved11() {}
  virtual void reserved12() {}
  virtual void reserved13() {}
  virtual void reserved14() {}
  virtual void reserved15() {}
  virtual void reserved16() {}
  virtual void reserved17() {}
  virtual void reserved18() {}
  virtual void reserved19() {}
  virtual void reserved20() {}
  virtual void reserved21() {}
  virtual void reserved22() {}
  virtual void reserved23() {}
  virtual void reserved24() {}
  virtual void reserved25() {}
  virtual void reserved26() {}
  virtual void reserved27() {}
  virtual void reserved28() {}
  virtual void reserved29() {}
  virtual void reserved30() {}
  virtual void reserved31() {}
  virtual void reserved32() {}
  virtual void reserved33() {}
  virtual void reserved34() {}
  virtual void reserved35() {}
  virtual void reserved36() {}
  virtual void reserved37() {}
  // Position 38: the per-camera table, keyed by framework camera id.
  virtual CameraInfoTable& getCameraInfoTable() = 0;
  // Positions 39 to 45: not used here.
  virtual void reserved39() {}
  virtual void reserved40() {}
  virtual void reserved41() {}
  virtual void reserved42() {}
  virtual void reserved43() {}
  virtual void reserved44() {}
  virtual void reserved45() {}
  // Position 46: fills H, V (and more) of the record for the frame whose
  // timestamp it carries, matching within `interval`; true when found.
  virtual bool getShiftData(nvholder::ShiftData* shiftData, int32_t interval) = 0;
};

class PlatformAdapter {
 public:
  virtual ~PlatformAdapter() = default;  // positions 1 and 2
  virtual int initialize() = 0;           // position 3
  virtual int uninitialize() = 0;         // position 4, not used here
  virtual std::shared_ptr<PlatformInfoHolder> getPlatformInfoHolder() = 0;  // position 5
};

}  // namespace adapter
