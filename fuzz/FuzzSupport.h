// What the fuzz targets share: drawing tags and element data from the
// input, writes through every overload, and logging that formats every
// message without printing it.
#pragma once

#include <NvMetadata.h>
#include <fuzzer/FuzzedDataProvider.h>
#include <nvdebug/NvLog.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "TagTable.h"

namespace fuzzsupport {

using tagtable::kElementSize;
using tagtable::kRegisteredTagCount;
using tagtable::kRegisteredTags;
using tagtable::RegisteredTag;

// A broken promise is a finding: stop with a crash libFuzzer reports.
inline void Require(bool condition) {
  if (!condition) std::abort();
}

inline const RegisteredTag& AnyRegisteredTag(FuzzedDataProvider& in) {
  return kRegisteredTags[in.ConsumeIntegralInRange<size_t>(0, kRegisteredTagCount - 1)];
}

// `bytes` of element data from the input, zero-filled where the input ran
// out, in whole 8-byte words so every element type is aligned.
inline std::vector<uint64_t> ConsumeElements(FuzzedDataProvider& in, size_t bytes) {
  std::vector<uint64_t> words(bytes / 8 + 1);
  const std::vector<uint8_t> values = in.ConsumeBytes<uint8_t>(bytes);
  if (!values.empty()) std::memcpy(words.data(), values.data(), values.size());
  return words;
}

// A write through the overload of element type `type`; any other value
// (NUM_TYPES) takes the untyped one, which uses the tag's registered type.
inline int UpdateAs(NvMetadata& meta, uint32_t tag, int type, const void* data, unsigned long count) {
  switch (type) {
    case TYPE_BYTE:
      return meta.update(tag, static_cast<const uint8_t*>(data), count);
    case TYPE_INT32:
      return meta.update(tag, static_cast<const int32_t*>(data), count);
    case TYPE_FLOAT:
      return meta.update(tag, static_cast<const float*>(data), count);
    case TYPE_INT64:
      return meta.update(tag, static_cast<const int64_t*>(data), count);
    case TYPE_DOUBLE:
      return meta.update(tag, static_cast<const double*>(data), count);
    case TYPE_RATIONAL:
      return meta.update(tag, static_cast<const camera_metadata_rational*>(data), count);
    default:
      return meta.update(tag, data, count);
  }
}

// Every message formatted, on fuzzed values, by both sinks, observed and
// never printed; or, faster, every level off.
inline void FormatLogsSilently(bool format) {
  gNvCamLogLevel = gNvCamOfflineLogLevel = format ? 0 : 7;
  gNvCamLogGroup = gNvCamOfflineLogGroup = 0xFFFFFFFFu;
  gNvCamDebugMask = 1;
  nvdebug::setOnlineObserver([](const nvdebug::LogRecord&) { return 1; });
  nvdebug::setOfflineObserver([](const nvdebug::LogRecord&) {});
}

}  // namespace fuzzsupport
