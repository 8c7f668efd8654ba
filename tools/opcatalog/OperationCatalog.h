// Every operation of the helper's slot table, callable without knowing its
// signature: with caller-owned outputs of the right size (or with null
// outputs), and with the value it produced described field by field to a
// sink. The dump tool, the benchmarks, the fuzzer and the stress test all
// walk this one table instead of keeping lists of their own.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include "metadataHelperBase.h"

namespace opcatalog {

enum class Kind : uint8_t {
  Getter,  // Get..., and the other reads that fill caller-owned outputs
  Query,   // IsRearCamera: the answer is the return value
  Setter,  // Set... and the operations that write into a container
};

// Receives one produced value. `name` is the field name inside a record and
// null for the top-level value and for array elements.
class ValueSink {
 public:
  virtual ~ValueSink() = default;
  virtual void Integer(const char* name, long long value) = 0;
  virtual void Unsigned(const char* name, unsigned long long value) = 0;
  virtual void Real(const char* name, double value) = 0;
  virtual void Boolean(const char* name, bool value) = 0;
  virtual void Text(const char* name, const char* text, size_t length) = 0;
  virtual void BeginArray(const char* name, size_t count) = 0;
  virtual void EndArray() = 0;
  virtual void BeginRecord(const char* name, const char* type) = 0;
  virtual void EndRecord() = 0;
};

struct CallContext {
  metahelper::MetaPtr request;  // what the operation reads, and setters write
  // Destination of two-container operations (UpdateGainMapMeta,
  // SetFacesInfoHolder, SetFocusROI). When null, a fresh empty container is
  // made for the call and dropped after it: pass one to keep what was
  // written, and to spare that allocation.
  metahelper::MetaPtr second;
  // Pass null for every output pointer, and for the pointer inputs of
  // setters; values passed by value, containers and references stay.
  bool nullOutputs = false;
  ValueSink* sink = nullptr;  // told the value when the call succeeded

  // Arguments that some operations take besides the container.
  // Framework camera asked about by GetCameraRoleId(int, ...) and
  // GetAndroidLogicalMultiCameraPhysicalIds(int, ...); also the physical id
  // of GetShiftDataFromHolder and the sensor id of getPass1CropRegion.
  int cameraId = 0;
  // GetSkinScore's face index (narrowed to unsigned char) and the index that
  // SetAnchorFrameIndex writes.
  int index = 0;
  long timestamp = 0;  // GetShiftDataFromHolder's frame timestamp
  // GetCropRegion's sensor output size and in-sensor-zoom flag.
  nvholder::dimension sensorSize{4000, 3000};
  bool inSensorZoom = false;
  // Output image of GetFaceRect (width, height) and GetFocusROI.
  nvholder::dimension imageSize{1920, 1080};
  // GetLSC's shading map: it fills width x height x 4 floats. A negative size,
  // or one above kMaxLensShadingValues values, is refused without a call.
  nvholder::NULSCMapSize lscMapSize{17, 13};
};

// Largest shading map output GetLSC is given storage for (64 x 64 points).
constexpr size_t kMaxLensShadingValues = 64 * 64 * 4;

// What an operation dereferences without testing it first: the catalogue
// does not call it when the context would break that (the call returns -1).
enum Needs : uint8_t {
  kNeedsNothing = 0,
  kNeedsRequest = 1,  // a non-null request container
  kNeedsOutput = 2,   // real outputs: refused under nullOutputs
};

struct Operation {
  int slot;          // virtual slot number, as the slot table numbers it
  const char* name;  // overloads share a name and differ in slot
  Kind kind;
  bool allocates;  // the output itself is heap storage (strings, vectors)
  // Calls the operation and returns its result as it returned it (IsRearCamera:
  // 1 or 0). The sink hears the value only when the operation's own
  // convention says it succeeded.
  int (*call)(metahelper::metadataHelperBase& helper, const CallContext& context);
  // Added: GetBokehCapabilityInfo succeeds with a non-zero result.
  bool succeedsNonZero;
  uint8_t needs;  // Needs bits
};

// Whether `result` is the operation's success under its own convention
// (a query always produces its answer).
bool Succeeded(const Operation& operation, int result);

// Every operation, in slot order.
const Operation* Operations(size_t* count);

}  // namespace opcatalog
