#include "TagRecorder.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace dump {
namespace {

std::string TagName(const NvMetadata::Lookup& lookup) {
  if (lookup.name != nullptr) return lookup.name;
  if (const char* name = NvMetadata::getTagName(lookup.tag)) return name;
  char number[16];
  std::snprintf(number, sizeof number, "0x%08x", lookup.tag);
  return number;
}

}  // namespace

TagRecorder::~TagRecorder() {
  for (const Source& source : sources_) source.meta->setLookupObserver(nullptr, nullptr);
}

void TagRecorder::Watch(NvMetadata& meta, std::string from, const std::vector<uint32_t>& cut) {
  sources_.push_back({&meta, std::move(from), &cut});
  meta.setLookupObserver(&TagRecorder::Observe, this);
}

std::vector<TagLookup> TagRecorder::Take() { return std::exchange(lookups_, {}); }

void TagRecorder::Observe(void* context, const NvMetadata& meta, const NvMetadata::Lookup& lookup) {
  auto* recorder = static_cast<TagRecorder*>(context);
  for (const Source& source : recorder->sources_) {
    if (source.meta == &meta) recorder->Record(source, lookup);
  }
}

void TagRecorder::Record(const Source& source, const NvMetadata::Lookup& lookup) {
  const std::string name = TagName(lookup);
  const auto same = [&](const TagLookup& earlier) {
    return earlier.tag == name && earlier.from == source.from;
  };
  if (std::any_of(lookups_.begin(), lookups_.end(), same)) return;
  const bool cut = lookup.present && std::binary_search(source.cut->begin(), source.cut->end(), lookup.tag);
  lookups_.push_back({name, source.from, lookup.present, cut});
}

}  // namespace dump
