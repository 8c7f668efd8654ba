#include "Replay.h"

#include <MetaTagWrapper.h>

#include <memory>
#include <string>
#include <utility>

#include "LogSession.h"
#include "MetaHelperManagerImpl.h"
#include "TagRecorder.h"
#include "ValueTree.h"

namespace dump {
namespace {

using metahelper::metadataHelperBase;
using metahelper::MetaPtr;

// Puts static metadata in the process-wide store for the length of a
// replay, and what was there before back afterwards.
class StaticRegistration {
 public:
  explicit StaticRegistration(const StaticSet& statics) {
    StaticMetadataWraper* store = StaticMetadataWraper::getInstance();
    for (const auto& [cameraId, buffer] : statics) {
      previous_.emplace_back(cameraId, store->getStaticMetadata(cameraId));
      store->setStaticMetadata(cameraId, buffer->meta);
    }
  }
  ~StaticRegistration() {
    for (auto& [cameraId, meta] : previous_)
      StaticMetadataWraper::getInstance()->setStaticMetadata(cameraId, std::move(meta));
  }
  StaticRegistration(const StaticRegistration&) = delete;
  StaticRegistration& operator=(const StaticRegistration&) = delete;

 private:
  std::vector<std::pair<unsigned int, MetaPtr>> previous_;
};

// --camera, else the request's own framework id, else the camera the dump
// shows it under.
int CameraOf(metadataHelperBase& helper, const MetaPtr& request, const metatext::Buffer& buffer,
             const Options& options) {
  if (options.camera) return *options.camera;
  int cameraId = 0;
  if (helper.GetFwkCameraId(request, &cameraId) == 0) return cameraId;
  unsigned int fromDump = 0;
  return CameraNumber(buffer.camera, &fromDump) ? static_cast<int>(fromDump) : 0;
}

// The sensor's full output: its pixel array, else its active array.
nvholder::dimension SensorSizeOf(const StaticSet& statics, int cameraId, nvholder::dimension fallback) {
  const auto found = statics.find(static_cast<unsigned int>(cameraId));
  if (cameraId < 0 || found == statics.end()) return fallback;
  const NvMetadata& meta = *found->second->meta;
  const camera_metadata_ro_entry pixels = meta.find(ANDROID_SENSOR_INFO_PIXEL_ARRAY_SIZE);
  if (pixels.count == 2 && pixels.data.i32[0] > 0 && pixels.data.i32[1] > 0)
    return {static_cast<uint32_t>(pixels.data.i32[0]), static_cast<uint32_t>(pixels.data.i32[1])};
  const camera_metadata_ro_entry active = meta.find(ANDROID_SENSOR_INFO_ACTIVE_ARRAY_SIZE);
  if (active.count == 4 && active.data.i32[2] > 0 && active.data.i32[3] > 0)
    return {static_cast<uint32_t>(active.data.i32[2]), static_cast<uint32_t>(active.data.i32[3])};
  return fallback;
}

opcatalog::CallContext ContextFor(metadataHelperBase& helper, const MetaPtr& request,
                                  const NumberedBuffer& numbered, const Options& options) {
  opcatalog::CallContext context;
  context.request = request;
  context.cameraId = CameraOf(helper, request, *numbered.buffer, options);
  context.sensorSize =
      options.sensorSize.value_or(SensorSizeOf(*numbered.statics, context.cameraId, context.sensorSize));
  context.imageSize = options.imageSize.value_or(context.imageSize);
  context.inSensorZoom = options.inSensorZoom;
  return context;
}

OperationRun Run(const opcatalog::Operation& operation, metadataHelperBase& helper,
                 opcatalog::CallContext context, LogSession& log, TagRecorder& tags) {
  ValueTreeSink sink;
  context.sink = &sink;
  log.Take();
  tags.Take();
  const int result = operation.call(helper, context);
  return {operation.slot, operation.name, result, sink.Result(), log.Take(), tags.Take()};
}

}  // namespace

std::vector<OperationRun> Replay(const NumberedBuffer& numbered,
                                 const std::vector<const opcatalog::Operation*>& operations,
                                 const Options& options) {
  const StaticRegistration registration(*numbered.statics);
  LogSession log(options.logLevel);
  auto* manager = static_cast<metahelper::MetaHelperManagerImpl*>(GetInstance());
  const std::shared_ptr<metadataHelperBase> helper = manager->GetMetadataHelper();
  // A copy, so that a static buffer replayed as a request is watched as the
  // request and, registered, as its camera's statics.
  const auto request = std::make_shared<NvMetadata>(*numbered.buffer->meta);
  const opcatalog::CallContext context = ContextFor(*helper, request, numbered, options);
  TagRecorder tags;
  tags.Watch(*request, "request", numbered.buffer->cut);
  for (const auto& [cameraId, buffer] : *numbered.statics)
    tags.Watch(*buffer->meta, "static " + std::to_string(cameraId), buffer->cut);
  std::vector<OperationRun> runs;
  for (const opcatalog::Operation* operation : operations)
    runs.push_back(Run(*operation, *helper, context, log, tags));
  return runs;
}

}  // namespace dump
