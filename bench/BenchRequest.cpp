#include "BenchRequest.h"

#include <MetaTagWrapper.h>

#include <cstdio>
#include <cstdlib>

#include "MetaText.h"
#include "RegisteredTags.h"

namespace bench {
namespace {

const std::string kDump = "examples/camera_dump/media.camera.txt";

[[noreturn]] void Fail(const std::string& message) {
  std::fprintf(stderr, "getter_bench: %s\n", message.c_str());
  std::exit(2);
}

// Camera 0's buffer of that kind in the current session (not the block of a
// previous one).
const metatext::Buffer& CurrentOfCamera0(const metatext::Capture& capture, metatext::Kind kind) {
  for (const metatext::Buffer& buffer : capture.buffers) {
    if (buffer.kind == kind && buffer.camera == "0" && !buffer.stale && buffer.meta != nullptr) return buffer;
  }
  Fail(kDump + ": no " + metatext::KindName(kind) + " of camera 0");
}

}  // namespace

std::vector<uint32_t> RegisteredTags() {
  std::vector<uint32_t> tags;
  for (const nvmetadata::TagInfo& info : nvmetadata::kRegisteredTags) tags.push_back(info.tag);
  return tags;
}

BenchInputs LoadInputs() {
  metatext::Capture capture;
  metatext::Problem problem;
  if (!metatext::ReadFile(std::string(METAHELPER_SOURCE_DIR) + "/" + kDump, nullptr, &capture, &problem))
    Fail(problem.Message());
  const metatext::Buffer& request = CurrentOfCamera0(capture, metatext::Kind::kLastRequest);
  BenchInputs inputs{request.meta, CurrentOfCamera0(capture, metatext::Kind::kStatic).meta,
                     kDump + ":" + std::to_string(request.line) + ", the last request of camera 0"};
  StaticMetadataWraper::getInstance()->setStaticMetadata(kCameraId, inputs.staticMeta);
  return inputs;
}

}  // namespace bench
