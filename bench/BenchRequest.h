// The request the benchmarks read: the last request of the rear main camera
// in the shipped camera service dump, and the static metadata of its camera.
#pragma once

#include <NvMetadata.h>

#include <memory>
#include <string>
#include <vector>

namespace bench {

using MetaPtr = std::shared_ptr<NvMetadata>;

struct BenchInputs {
  MetaPtr request;
  MetaPtr staticMeta;  // of camera kCameraId, registered with the static store
  std::string source;  // where the request came from, for the report
};

inline constexpr unsigned kCameraId = 0;

// Loads the inputs and registers the static metadata; ends the process with
// a message naming the file when one cannot be read.
BenchInputs LoadInputs();

// Every tag number the registry knows, in registry order.
std::vector<uint32_t> RegisteredTags();

}  // namespace bench
