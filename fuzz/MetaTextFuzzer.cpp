// The metadata text parser on arbitrary text.
//
// The input's first bytes put a few entries into the container the text is
// loaded into; the rest is the text. A refused text must leave that
// container exactly as it was and name its file; an accepted one must load
// the same entries as into an empty container, since a load replaces the
// whole content. Any difference is a finding.
#include <MetaText.h>
#include <NvMetadata.h>
#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include "FuzzSupport.h"

namespace {

using fuzzsupport::kElementSize;
using fuzzsupport::RegisteredTag;
using fuzzsupport::Require;

constexpr const char kFileName[] = "fuzz.meta";

void Prefill(FuzzedDataProvider& in, NvMetadata& meta) {
  const int entries = in.ConsumeIntegralInRange<int>(0, 3);
  for (int i = 0; i < entries; ++i) {
    const RegisteredTag& tag = fuzzsupport::AnyRegisteredTag(in);
    const size_t count = in.ConsumeIntegralInRange<size_t>(1, 4);
    const std::vector<uint64_t> words = fuzzsupport::ConsumeElements(in, count * kElementSize[tag.type]);
    meta.update(tag.tag, static_cast<const void*>(words.data()), count);
  }
}

bool Parse(const std::string& text, NvMetadata* meta, metatext::Problem* problem, bool withNotes) {
  std::istringstream stream(text);
  std::vector<metatext::Problem> notes;
  return metatext::ParseText(stream, kFileName, meta, problem, withNotes ? &notes : nullptr);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider in(data, size);
  const bool withNotes = in.ConsumeBool();
  NvMetadata meta;
  Prefill(in, meta);
  const NvMetadata before(meta);
  const std::string text = in.ConsumeRemainingBytesAsString();

  metatext::Problem problem;
  if (!Parse(text, &meta, &problem, withNotes)) {
    Require(tagtable::SameContent(meta, before));
    Require(problem.file == kFileName && !problem.text.empty());
    Require(problem.Message().compare(0, std::strlen(kFileName), kFileName) == 0);
    return 0;
  }
  NvMetadata fresh;
  metatext::Problem unused;
  Require(Parse(text, &fresh, &unused, withNotes));
  Require(tagtable::SameContent(meta, fresh));
  return 0;
}
