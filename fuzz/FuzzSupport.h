// What the fuzz targets share: tags and element data drawn from the input,
// writes through every overload, logging that formats and never prints.
#pragma once

#include <NvMetadata.h>
#include <fuzzer/FuzzedDataProvider.h>
#include <nvdebug/NvLog.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "TagTable.h"

namespace fuzzsupport {

using namespace tagtable;  // the registry's table is the targets' oracle

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

template <typename T>
int UpdateTyped(NvMetadata& meta, uint32_t tag, const void* data, unsigned long count) {
  return meta.update(tag, static_cast<const T*>(data), count);
}

// A write through the overload of element type `type`; any other value
// (NUM_TYPES) takes the untyped one, which uses the tag's registered type.
inline int UpdateAs(NvMetadata& meta, uint32_t tag, int type, const void* data, unsigned long count) {
  using Write = int (*)(NvMetadata&, uint32_t, const void*, unsigned long);
  constexpr Write kByType[NUM_TYPES] = {UpdateTyped<uint8_t>, UpdateTyped<int32_t>,
                                        UpdateTyped<float>,   UpdateTyped<int64_t>,
                                        UpdateTyped<double>,  UpdateTyped<camera_metadata_rational>};
  if (type < 0 || type >= NUM_TYPES) return meta.update(tag, data, count);
  return kByType[type](meta, tag, data, count);
}

// Every message formatted on fuzzed values by both sinks, never printed; or, faster, every level off.
inline void FormatLogsSilently(bool format) {
  gNvCamLogLevel = gNvCamOfflineLogLevel = format ? 0 : 7;
  gNvCamLogGroup = gNvCamOfflineLogGroup = 0xFFFFFFFFu;
  gNvCamDebugMask = 1;
  nvdebug::setOnlineObserver([](const nvdebug::LogRecord&) { return 1; });
  nvdebug::setOfflineObserver([](const nvdebug::LogRecord&) {});
}

}  // namespace fuzzsupport
