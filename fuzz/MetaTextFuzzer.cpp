// The dump reader and printer on arbitrary text. As one buffer (ParseText),
// loaded into a prefilled container: a refused text leaves it exactly as it
// was and names its file; an accepted one loads the same entries as into an
// empty container, since a load replaces the whole content. As a whole dump
// (ReadText, with a vendor tag table as the tool installs): every buffer that
// loads prints and reads back to the same text ("%0.8f" rounds, so values are
// compared as printed); one that does not names its file and line.
#include <MetaText.h>
#include <NvMetadata.h>
#include <NvVendorTags.h>
#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
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

// Not physicalIds as characters: the reader cannot always split them back
// into ids (it says so and skips them). A braced list consumes left to right.
metatext::PrintStyle AnyStyle(FuzzedDataProvider& in) {
  return {in.ConsumeIntegralInRange<int>(0, 8), in.ConsumeBool() ? 1 : 2, in.ConsumeBool(), in.ConsumeBool(),
          false};
}

bool Parse(const std::string& text, NvMetadata* meta, metatext::Problem* problem, bool withNotes) {
  std::istringstream stream(text);
  std::vector<metatext::Problem> notes;
  return metatext::ParseText(stream, kFileName, meta, problem, withNotes ? &notes : nullptr);
}

void CheckOneBuffer(const std::string& text, NvMetadata& meta, bool withNotes) {
  const NvMetadata before(meta);
  metatext::Problem problem;
  if (!Parse(text, &meta, &problem, withNotes)) {
    Require(tagtable::SameContent(meta, before));
    Require(problem.file == kFileName && !problem.text.empty());
    return;
  }
  NvMetadata fresh;
  Require(Parse(text, &fresh, &problem, withNotes));
  Require(tagtable::SameContent(meta, fresh));
}

std::string Printed(const NvMetadata& meta, const metatext::PrintStyle& style) {
  std::ostringstream out;
  metatext::Print(meta, style, out);
  return out.str();
}

void CheckReadsBack(const NvMetadata& meta, metatext::PrintStyle style, NvVendorTagTable& table) {
  // Long physicalIds cut to 16 values may read as characters: the reader skips them.
  if (meta.find(ANDROID_LOGICAL_MULTI_CAMERA_PHYSICAL_IDS).count > 16) style.verbosity = 2;
  const std::string printed = Printed(meta, style);
  std::istringstream stream(printed);
  metatext::Capture again;
  metatext::Problem problem;
  Require(metatext::ReadText(stream, kFileName, &table, &again, &problem));
  Require(again.buffers.size() == 1 && !again.wholeDump && again.buffers[0].meta != nullptr);
  Require(Printed(*again.buffers[0].meta, style) == printed);
}

void CheckWholeDump(const std::string& text, const metatext::PrintStyle& style) {
  NvVendorTagTable table;
  NvMetadata::setVendorTagTable(&table);
  std::istringstream stream(text);
  metatext::Capture capture;
  metatext::Problem problem;
  Require(metatext::ReadText(stream, kFileName, &table, &capture, &problem));
  for (const metatext::Buffer& buffer : capture.buffers) {
    Require(buffer.file == kFileName && buffer.line > 0);
    if (buffer.meta != nullptr)
      CheckReadsBack(*buffer.meta, style, table);
    else
      Require(buffer.problem.file == kFileName && buffer.problem.line > 0 && !buffer.problem.text.empty());
  }
  NvMetadata::setVendorTagTable(nullptr);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider in(data, size);
  const bool withNotes = in.ConsumeBool();
  NvMetadata meta;
  Prefill(in, meta);
  const metatext::PrintStyle style = AnyStyle(in);
  const std::string text = in.ConsumeRemainingBytesAsString();
  CheckOneBuffer(text, meta, withNotes);
  CheckWholeDump(text, style);
  return 0;
}
