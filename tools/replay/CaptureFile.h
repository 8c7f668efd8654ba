// Captured camera metadata as text: one request and the static metadata of
// the cameras it names, loaded into the platform containers.
//
//   # comment
//   [request]
//   android.sensor.exposureTime = 33000000
//   nuvaro.snapshot.imageName = "IMG_0001"
//   android.colorCorrection.transform = 1/1 0/1 0/1 0/1 1/1 0/1 0/1 0/1 1/1
//   [static 0]
//   android.sensor.info.activeArraySize = 0 0 4000 3000
//
// Values are read as the tag's registered element type; a quoted string fills
// a byte tag with its characters and a terminating zero.
#pragma once

#include <NvMetadata.h>

#include <istream>
#include <map>
#include <memory>
#include <string>

namespace replay {

struct Capture {
  std::shared_ptr<NvMetadata> request = std::make_shared<NvMetadata>();
  std::map<unsigned int, std::shared_ptr<NvMetadata>> statics;  // by camera id
};

// Reads a whole capture. On a bad line returns false and sets `error` to
// "<file>:<line>: <problem>"; `capture` is then left as it was.
bool ReadCapture(std::istream& in, const std::string& fileName, Capture* capture, std::string* error);

}  // namespace replay
