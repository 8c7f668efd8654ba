// Every helper operation on metadata built from the input.
//
// The input fills a request and one camera's static metadata with tags drawn
// from the registry (any count, arbitrary values, now and then a write of the
// wrong element type, which the container must refuse), may take indices away
// from the tag wrapper, and picks the operations' extra arguments. Then every
// operation of the catalogue runs with real outputs, with null outputs, and
// without a request. A crash, a sanitizer report, a refused-type write that
// was accepted, or a getter that adds or removes entries is a finding.
#include <MetaTagWrapper.h>
#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <memory>
#include <vector>

#include "FuzzSupport.h"
#include "MetaHelperManagerImpl.h"
#include "OperationCatalog.h"

extern "C" void* GetInstance();

namespace {

using fuzzsupport::kElementSize;
using fuzzsupport::RegisteredTag;
using fuzzsupport::Require;
using metahelper::MetaPtr;

// ---- What producers guarantee ---------------------------------------------
// The operations reading these tags copy a fixed number of elements (a
// record, a table, a run of entries) without looking at the count, as the
// producers always send at least that much. Tags are written at least this
// long; everything else may come with any count, zero included.
struct FixedLength {
  const char* name;
  size_t bytes;
};

constexpr size_t kSensorPolicyCropEntries = 4 * 9;
constexpr size_t kSensorPolicyFrameResultWords = 96 + 4 * 80;
constexpr size_t kHistogramBins = 1024;
constexpr size_t kGtmWords = 289;
constexpr size_t kAfRoiWords = 11;  // type, count, then two regions of five

// clang-format off
constexpr FixedLength kFixedLengths[] = {
    {"com.nuvaro.smartae.procOutput",                         sizeof(NV_SMARTAE_SUPER::SmartAEProcOutput)},
    {"nuvaro.ai.asd.algoSceneDetectedAIResult",               sizeof(nvholder::AIspSceneResult)},
    {"nuvaro.ai.asd.SunsetScene",                             sizeof(nvholder::Sunset_Scene_t)},
    {"com.nuvaro.statsawb.AWBFrameControl",                   sizeof(nvholder::NUAWBFrameControl)},
    {"com.nuvaro.statsaec.AECFrameControl",                   sizeof(nvholder::NUAECFrameControl)},
    {"com.nuvaro.aisp.NV_EXT_CTRL_AISP_SELECTANCHOR_OUTPUT",  sizeof(nvholder::AIspSelectAnchorOutput)},
    {"com.nuvaro.camera.asd.smartScene",                      sizeof(nvholder::SmartScene)},
    {"nuvaro.sat.afSceneResult.afDistanceInfo",               sizeof(nvholder::STAFDistanceInfo)},
    {"android.lens.info.shadingMapSize",                      sizeof(nvholder::NULSCMapSize)},
    {"android.sensor.info.activeArraySize",                   sizeof(nvholder::ChiRect)},
    {"android.sensor.info.activeArraySizeMaximumResolution",  sizeof(nvholder::ChiRect)},
    {"nuvaro.snapshot.cropRegion",                            sizeof(nvholder::ChiRect)},
    {"android.scaler.cropRegion",                             sizeof(nvholder::ChiRect)},
    {"android.control.afRegions",                             4 * sizeof(int32_t)},
    {"android.sensor.dynamicBlackLevel",                      4 * sizeof(float)},
    {"android.colorCorrection.transform",                     9 * sizeof(camera_metadata_rational)},
    {"android.colorCorrection.gains",                         4 * sizeof(float)},
    {"android.jpeg.gpsCoordinates",                           3 * sizeof(double)},
    {"com.nuvaro.lens.info.ViewAngle",                        2 * sizeof(double)},
    {"com.nuvaro.sensor.rotationMatrix",                      9 * sizeof(float)},
    {"com.nuvaro.statsaec.faceBright",                        10 * sizeof(float)},
    {"com.nuvaro.panshotTruck.Rslt4Snapshot",                 offsetof(nvholder::panshotData, status) + sizeof(int32_t)},
    {"com.nuvaro.camera.bokehConfig.request",                 sizeof(__bokehRequestInfoList)},
    {"com.nuvaro.camera.bokehConfig.stream",                  sizeof(__bokehConfigStreamInfoList)},
    {"com.nuvaro.camera.bokehCaps.info",                      sizeof(__bokehCapabilityInfoList)},
    {"nuvaro.histogram.stats",                                kHistogramBins * sizeof(uint32_t)},
    {"com.mediatek.supernight.gammaInfo",                     sizeof(nvholder::GammaInfo::gamma)},
    {"nuvaro.hdr.gtm.curve",                                  kGtmWords * sizeof(int32_t)},
    {"nuvaro.nvvi.ellc.gyro",                                 sizeof(nvholder::ChiFrameGyro)},
    {"com.nuvaro.camera.sensorpolicy.cropregions",            kSensorPolicyCropEntries * sizeof(uint32_t)},
    {"com.nuvaro.camera.sensorpolicy.frameresult",            kSensorPolicyFrameResultWords * sizeof(int32_t)},
    {"com.mediatek.3afeature.afRoi",                          kAfRoiWords * sizeof(int32_t)},
    {"nuvaro.streaming.sensormode",                           2 * sizeof(int32_t)},
};
// clang-format on

const META_TAG_INDEX kIndices[] = {
#define META_TAG_INDEX_ENTRY(enumerator, value, name) enumerator,
#include "MetaTagIndex.def"
#undef META_TAG_INDEX_ENTRY
};

struct ResolvedLength {
  uint32_t tag;
  size_t bytes;
};

std::vector<ResolvedLength> ResolveFixedLengths() {
  std::vector<ResolvedLength> resolved;
  for (const FixedLength& fixed : kFixedLengths) {
    unsigned int number = 0;
    Require(NvMetadata::getTagFromName(fixed.name, &number) == 0);  // else the table names a lost tag
    resolved.push_back({number, fixed.bytes});
  }
  return resolved;
}

// Shortest byte length the registered tag is written with.
size_t MinimumBytes(uint32_t tag, const opcatalog::CallContext& context) {
  static const std::vector<ResolvedLength> lengths = ResolveFixedLengths();
  if (tag == ANDROID_STATISTICS_LENS_SHADING_MAP) {  // sized by the caller's map
    const nvholder::NULSCMapSize map = context.lscMapSize;
    return map.width < 0 || map.height < 0 ? 0
                                           : static_cast<size_t>(map.width) * map.height * 4 * sizeof(float);
  }
  size_t bytes = 0;
  for (const ResolvedLength& fixed : lengths)
    if (fixed.tag == tag) bytes = std::max(bytes, fixed.bytes);
  return bytes;
}

// ---- Building the metadata --------------------------------------------------
constexpr size_t kMaxEntries = 48;
constexpr size_t kMaxFreeCount = 40;

void WriteOneTag(FuzzedDataProvider& in, NvMetadata& meta, const opcatalog::CallContext& context) {
  const RegisteredTag& tag = fuzzsupport::AnyRegisteredTag(in);
  const bool wrongType = in.ConsumeIntegralInRange<int>(0, 15) == 0;
  const uint8_t type =
      wrongType
          ? static_cast<uint8_t>((tag.type + in.ConsumeIntegralInRange<int>(1, NUM_TYPES - 1)) % NUM_TYPES)
          : tag.type;
  const size_t size = kElementSize[type];
  size_t count = in.ConsumeIntegralInRange<size_t>(0, kMaxFreeCount);
  if (!wrongType) count = std::max(count, (MinimumBytes(tag.tag, context) + size - 1) / size);
  const std::vector<uint64_t> words = fuzzsupport::ConsumeElements(in, count * size);
  const int result = fuzzsupport::UpdateAs(meta, tag.tag, type, words.data(), count);
  Require(!wrongType || result != 0);  // the container refuses another element type
}

void UndeclareSomeIndices(FuzzedDataProvider& in) {
  const int undeclared = in.ConsumeIntegralInRange<int>(0, 3);
  for (int i = 0; i < undeclared; ++i) {
    const META_TAG_INDEX index = kIndices[in.ConsumeIntegralInRange<size_t>(0, std::size(kIndices) - 1)];
    MetaTagWrapper::getInstance().setTag(index, MetaTagWrapper::kUndeclared);
  }
}

opcatalog::CallContext ContextFrom(FuzzedDataProvider& in) {
  opcatalog::CallContext context;
  context.cameraId = in.ConsumeIntegralInRange<int>(-1, 4);
  context.index = in.ConsumeIntegral<int>();
  context.timestamp = in.ConsumeIntegral<long>();
  context.sensorSize = {in.ConsumeIntegral<uint32_t>(), in.ConsumeIntegral<uint32_t>()};
  context.inSensorZoom = in.ConsumeBool();
  context.imageSize = {in.ConsumeIntegralInRange<uint32_t>(0, 9000),
                       in.ConsumeIntegralInRange<uint32_t>(0, 7000)};
  const int32_t mapWidth = in.ConsumeIntegralInRange<int32_t>(-1, 64);
  const int32_t mapHeight = in.ConsumeIntegralInRange<int32_t>(-1, 64);
  context.lscMapSize = {mapWidth, mapHeight};
  return context;
}

// ---- Running the catalogue ---------------------------------------------------
// Folds every produced value into a checksum, so each one is read.
class ChecksumSink : public opcatalog::ValueSink {
 public:
  void Integer(const char*, long long value) override { Mix(static_cast<unsigned long long>(value)); }
  void Unsigned(const char*, unsigned long long value) override { Mix(value); }
  void Real(const char*, double value) override {
    unsigned long long bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    Mix(bits);
  }
  void Boolean(const char*, bool value) override { Mix(value ? 1 : 0); }
  void Text(const char*, const char* text, size_t length) override {
    for (size_t i = 0; i < length; ++i) Mix(static_cast<unsigned char>(text[i]));
  }
  void BeginArray(const char*, size_t count) override { Mix(count); }
  void EndArray() override {}
  void BeginRecord(const char*, const char*) override {}
  void EndRecord() override {}

 private:
  void Mix(unsigned long long value) { sum_ = sum_ * 31 + value; }
  volatile unsigned long long sum_ = 0;
};

// Reads never add or drop entries of the metadata they read.
void RunReads(metahelper::metadataHelperBase& helper, const opcatalog::CallContext& context) {
  size_t count = 0;
  const opcatalog::Operation* operations = opcatalog::Operations(&count);
  for (size_t i = 0; i < count; ++i) {
    if (operations[i].kind == opcatalog::Kind::Setter) continue;
    const size_t entriesBefore = context.request ? context.request->entryCount() : 0;
    operations[i].call(helper, context);
    Require(!context.request || context.request->entryCount() == entriesBefore);
  }
}

// Setters write values of the caller's choosing, not what a producer of the
// tag guarantees, so they write into a copy the reads never see.
void RunWrites(metahelper::metadataHelperBase& helper, opcatalog::CallContext context) {
  if (context.request) context.request = std::make_shared<NvMetadata>(*context.request);
  size_t count = 0;
  const opcatalog::Operation* operations = opcatalog::Operations(&count);
  for (size_t i = 0; i < count; ++i)
    if (operations[i].kind == opcatalog::Kind::Setter) operations[i].call(helper, context);
}

void RunEveryOperation(metahelper::metadataHelperBase& helper, const opcatalog::CallContext& context) {
  RunReads(helper, context);
  RunWrites(helper, context);
}

metahelper::metadataHelperBase& PickHelper(bool generic) {
  static const std::shared_ptr<metahelper::metadataHelperBase> platformHelper =
      static_cast<metahelper::MetaHelperManagerImpl*>(GetInstance())->GetMetadataHelper();
  static metahelper::metadataHelperBase genericHelper;
  return generic ? genericHelper : *platformHelper;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider in(data, size);
  const bool formatLogs = in.ConsumeBool();
  const bool generic = in.ConsumeBool();
  if (formatLogs)
    fuzzsupport::FormatLogsSilently();
  else
    fuzzsupport::SilenceLogs();
  opcatalog::CallContext context = ContextFrom(in);

  const MetaPtr request = std::make_shared<NvMetadata>();
  const MetaPtr staticMeta = std::make_shared<NvMetadata>();
  if (in.ConsumeBool()) {  // the request names the camera whose static metadata is set
    const int32_t cameraId = context.cameraId;
    request->update(MetaTagWrapper::getInstance()(META_FWK_CAMERA_ID), &cameraId, 1);
  }
  UndeclareSomeIndices(in);
  for (size_t i = 0; i < kMaxEntries && in.remaining_bytes() > 0; ++i)
    WriteOneTag(in, in.ConsumeBool() ? *request : *staticMeta, context);
  StaticMetadataWraper::getInstance()->setStaticMetadata(static_cast<unsigned>(context.cameraId), staticMeta);

  ChecksumSink sink;
  context.sink = &sink;
  metahelper::metadataHelperBase& helper = PickHelper(generic);
  context.request = request;
  RunEveryOperation(helper, context);
  context.nullOutputs = true;
  RunEveryOperation(helper, context);
  context.request = nullptr;
  RunEveryOperation(helper, context);

  MetaTagWrapper::getInstance().resetTags();
  StaticMetadataWraper::getInstance()->clear();
  return 0;
}
