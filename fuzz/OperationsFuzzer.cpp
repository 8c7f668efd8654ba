// Every helper operation on a request and static metadata built from the
// input: mostly the tags the operation rows read, with any count (around the
// rows' counts often), any values, now and then the wrong element type (which
// must be refused), some indices undeclared. Every catalogue operation runs
// with real outputs, null outputs and no request. A sanitizer report (a read
// past an entry's end among them), or a getter adding or removing entries,
// is a finding.
#include <MetaTagWrapper.h>
#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <vector>

#include "FuzzSupport.h"
#include "MetaHelperManagerImpl.h"
#include "OperationCatalog.h"
#include "common/BaseRows.h"
#include "mtk/MtkRows.h"

extern "C" void* GetInstance();

namespace {

using fuzzsupport::kElementSize;
using fuzzsupport::Require;
using metahelper::ops::Row;

uint32_t TagNumberOf(const metahelper::ops::TagRef& ref) {
  if (ref.index != META_NO_INDEX) return MetaTagWrapper::getInstance()(ref.index);
  if (ref.number != 0) return ref.number;
  unsigned int number = MetaTagWrapper::kUndeclared;  // an unknown name leaves it
  NvMetadata::getTagFromName(ref.name, &number);
  return number;
}

// Every tag any row of either table reads or writes, with the most elements
// a row relies on (0: the rows look at the count themselves); an entry
// shorter than that must give no data, never a read past its end. Resolved
// once, before any input undeclares an index.
const std::map<uint32_t, uint32_t>& ReliedCounts() {
  static const std::map<uint32_t, uint32_t> relied = [] {
    std::map<uint32_t, uint32_t> most;
    const auto note = [&most](const Row& row) {
      for (const auto& access : row.access) {
        if (!metahelper::ops::HasTag(access.tag)) continue;
        const uint32_t tag = TagNumberOf(access.tag);
        // A row names a tag the platform has, with the element type it registers.
        Require(NvMetadata::getTagType(tag) == access.elements.type);
        Require(access.elements.count != metahelper::ops::kRecord);  // a record count left unresolved
        most[tag] = std::max(most[tag], access.elements.count);
      }
    };
    for (const Row& row : metahelper::ops::kBaseRows) note(row);
    for (const Row& row : metahelper::ops::kMtkRows) note(row);
    return most;
  }();
  return relied;
}

// Three times in four a tag the rows read, else any registered one.
uint32_t PickTag(FuzzedDataProvider& in) {
  const std::map<uint32_t, uint32_t>& read = ReliedCounts();
  if (in.ConsumeIntegralInRange<int>(0, 3) == 0) return fuzzsupport::AnyRegisteredTag(in).tag;
  return std::next(read.begin(), in.ConsumeIntegralInRange<long>(0, read.size() - 1))->first;
}

// Any count, zero included; the boundaries around the rows' count come up
// often: 0, 1, count - 1, count, count + 1, or up to about twice the count
// (40 for a tag whose length no row relies on).
size_t PickCount(FuzzedDataProvider& in, uint32_t tag) {
  const size_t relied = ReliedCounts().count(tag) != 0 ? ReliedCounts().at(tag) : 0;
  const int pick = in.ConsumeIntegralInRange<int>(0, 5);
  if (pick < 2) return static_cast<size_t>(pick);
  if (relied > 0 && pick < 5) return relied + pick - 3;
  return in.ConsumeIntegralInRange<size_t>(0, std::max<size_t>(2 * relied, 40));
}

void WriteOneTag(FuzzedDataProvider& in, NvMetadata& meta) {
  const uint32_t tag = PickTag(in);
  const int registered = NvMetadata::getTagType(tag);
  const bool wrongType = in.ConsumeIntegralInRange<int>(0, 15) == 0;
  const int type =
      wrongType ? (registered + in.ConsumeIntegralInRange<int>(1, NUM_TYPES - 1)) % NUM_TYPES : registered;
  const size_t count = PickCount(in, tag);
  const std::vector<uint64_t> words = fuzzsupport::ConsumeElements(in, count * kElementSize[type]);
  // The container refuses another element type.
  Require(fuzzsupport::UpdateAs(meta, tag, type, words.data(), count) != 0 || !wrongType);
}

const META_TAG_INDEX kIndices[] = {
#define META_TAG_INDEX_ENTRY(enumerator, value, name) enumerator,
#include "MetaTagIndex.def"
#undef META_TAG_INDEX_ENTRY
};

opcatalog::CallContext ContextFrom(FuzzedDataProvider& in) {
  opcatalog::CallContext context;
  context.cameraId = in.ConsumeIntegralInRange<int>(-1, 4);
  context.index = in.ConsumeIntegral<int>();
  context.timestamp = in.ConsumeIntegral<long>();
  context.sensorSize = {in.ConsumeIntegral<uint32_t>(), in.ConsumeIntegral<uint32_t>()};
  context.inSensorZoom = in.ConsumeBool();
  context.imageSize = {in.ConsumeIntegralInRange<uint32_t>(0, 9000),
                       in.ConsumeIntegralInRange<uint32_t>(0, 7000)};
  context.lscMapSize = {in.ConsumeIntegralInRange<int32_t>(-1, 64),
                        in.ConsumeIntegralInRange<int32_t>(-1, 64)};
  return context;
}

// Folds every produced value into a checksum, so each one is read.
class ChecksumSink : public opcatalog::ValueSink {
 public:
  void Integer(const char*, long long value) override { Mix(static_cast<unsigned long long>(value)); }
  void Unsigned(const char*, unsigned long long value) override { Mix(value); }
  void Real(const char*, double value) override { Mix(std::hash<double>{}(value)); }
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

// The reads first, then the setters, into the request the next pass reads:
// an entry of any length is what every read must cope with anyway. Reads
// never add or drop entries of the metadata they read.
void RunEveryOperation(metahelper::metadataHelperBase& helper, const opcatalog::CallContext& context) {
  size_t count = 0;
  const opcatalog::Operation* operations = opcatalog::Operations(&count);
  for (const bool setters : {false, true}) {
    for (size_t i = 0; i < count; ++i) {
      if ((operations[i].kind == opcatalog::Kind::Setter) != setters) continue;
      const size_t entriesBefore = context.request ? context.request->entryCount() : 0;
      operations[i].call(helper, context);
      Require(setters || !context.request || context.request->entryCount() == entriesBefore);
    }
  }
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
  ReliedCounts();
  fuzzsupport::FormatLogsSilently(in.ConsumeBool());
  metahelper::metadataHelperBase& helper = PickHelper(in.ConsumeBool());
  opcatalog::CallContext context = ContextFrom(in);

  const auto request = std::make_shared<NvMetadata>();
  const auto staticMeta = std::make_shared<NvMetadata>();
  if (in.ConsumeBool())  // the request names the camera whose static metadata is set
    request->update(MetaTagWrapper::getInstance()(META_FWK_CAMERA_ID), &context.cameraId, 1);
  for (int i = in.ConsumeIntegralInRange<int>(0, 3); i > 0; --i)
    MetaTagWrapper::getInstance().setTag(in.PickValueInArray(kIndices), MetaTagWrapper::kUndeclared);
  for (size_t i = 0; i < 48 && in.remaining_bytes() > 0; ++i)
    WriteOneTag(in, in.ConsumeBool() ? *request : *staticMeta);
  StaticMetadataWraper::getInstance()->setStaticMetadata(static_cast<unsigned>(context.cameraId), staticMeta);

  ChecksumSink sink;
  context.sink = &sink;
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
