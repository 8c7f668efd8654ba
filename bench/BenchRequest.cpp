#include "BenchRequest.h"

#include <MetaTagWrapper.h>

#include <cstdio>
#include <cstdlib>

#include "MetaText.h"
#include "RegisteredTags.h"

namespace bench {
namespace {

const std::string kExample = std::string(METAHELPER_SOURCE_DIR) + "/examples/rear_capture/";

MetaPtr Parse(const std::string& file) {
  auto meta = std::make_shared<NvMetadata>();
  metatext::Problem problem;
  if (metatext::ParseFile(kExample + file, meta.get(), &problem)) return meta;
  std::fprintf(stderr, "getter_bench: %s\n", problem.Message().c_str());
  std::exit(2);
}

}  // namespace

std::vector<uint32_t> RegisteredTags() {
  std::vector<uint32_t> tags;
  for (const nvmetadata::TagInfo& info : nvmetadata::kRegisteredTags) tags.push_back(info.tag);
  return tags;
}

BenchInputs LoadInputs() {
  BenchInputs inputs{Parse("request.txt"), Parse("static_0.txt"), "examples/rear_capture/request.txt"};
  StaticMetadataWraper::getInstance()->setStaticMetadata(kCameraId, inputs.staticMeta);
  return inputs;
}

}  // namespace bench
