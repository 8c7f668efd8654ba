// The metadata container under random sequences of operations, checked after
// each one against a plain model (a std::map of tag to type and bytes).
//
// Two containers take turns; the input picks each operation and its
// arguments. Besides what the model says each lookup must return, the
// container's own promises are checked: element data 8-byte aligned and
// zero-padded to whole words, writable in place, and never moved while other
// tags come and go. Any difference is a finding.
#include <NvMetadata.h>
#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
#include <cstring>
#include <iterator>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "FuzzSupport.h"

namespace {

using fuzzsupport::kElementSize;
using fuzzsupport::kRegisteredTags;
using fuzzsupport::RegisteredTag;
using fuzzsupport::Require;

struct ModelEntry {
  uint8_t type;
  size_t count;
  std::vector<uint8_t> bytes;
};

struct Subject {
  NvMetadata meta;
  std::map<uint32_t, ModelEntry> model;
  // Data pointers handed out since the tag was last written: the container
  // promises they stay put while other tags change.
  std::map<uint32_t, const uint8_t*> seen;

  void Forget() { seen.clear(); }
  void Reset() {
    model.clear();
    seen.clear();
  }
};

const RegisteredTag* Registered(uint32_t tag) {
  for (const RegisteredTag& known : kRegisteredTags)
    if (known.tag == tag) return &known;
  return nullptr;
}

const RegisteredTag* RegisteredByName(const char* name) {
  for (const RegisteredTag& known : kRegisteredTags)
    if (std::strcmp(known.name, name) == 0) return &known;
  return nullptr;
}

// ---- Checks ----------------------------------------------------------------
void CheckEntry(Subject& subject, uint32_t tag) {
  const camera_metadata_ro_entry entry = subject.meta.find(tag);
  const auto modelled = subject.model.find(tag);
  if (modelled == subject.model.end() || modelled->second.count == 0) {
    Require(entry.count == 0 && entry.data.u8 == nullptr);
    return;
  }
  const ModelEntry& expected = modelled->second;
  Require(entry.tag == tag && entry.type == expected.type && entry.count == expected.count);
  Require(reinterpret_cast<uintptr_t>(entry.data.u8) % 8 == 0);
  Require(std::memcmp(entry.data.u8, expected.bytes.data(), expected.bytes.size()) == 0);
  for (size_t padding = expected.bytes.size(); padding % 8 != 0; ++padding)
    Require(entry.data.u8[padding] == 0);
  const auto [previous, first] = subject.seen.emplace(tag, entry.data.u8);
  Require(first || previous->second == entry.data.u8);
}

void CheckAll(Subject& subject) {
  Require(subject.meta.entryCount() == subject.model.size());
  Require(subject.meta.isEmpty() == subject.model.empty());
  for (const auto& [tag, entry] : subject.model) CheckEntry(subject, tag);
}

// Name and number lookups of a registered tag find the same entry.
void CheckByName(Subject& subject, const RegisteredTag& tag) {
  const camera_metadata_ro_entry byName = subject.meta.find(tag.name);
  const camera_metadata_ro_entry byNumber = subject.meta.find(tag.tag);
  Require(byName.count == byNumber.count && byName.data.u8 == byNumber.data.u8);
}

// ---- Operations ------------------------------------------------------------
uint32_t AnyTag(FuzzedDataProvider& in) {
  if (in.ConsumeIntegralInRange<int>(0, 7) == 0) return in.ConsumeIntegral<uint32_t>();
  return fuzzsupport::AnyRegisteredTag(in).tag;
}

// One write through a typed or the untyped overload, sometimes with null
// data; the model says whether it must be taken.
void Update(FuzzedDataProvider& in, Subject& subject) {
  const uint32_t tag = AnyTag(in);
  const int asType = in.ConsumeIntegralInRange<int>(0, NUM_TYPES);  // NUM_TYPES: untyped
  const size_t count = in.ConsumeIntegralInRange<size_t>(0, 40);
  const bool nullData = in.ConsumeIntegralInRange<int>(0, 7) == 0;
  const RegisteredTag* known = Registered(tag);
  const int type = asType == NUM_TYPES ? (known != nullptr ? known->type : -1) : asType;
  const size_t bytes = type < 0 ? 0 : count * kElementSize[type];
  const std::vector<uint64_t> words = fuzzsupport::ConsumeElements(in, bytes);

  const int result =
      fuzzsupport::UpdateAs(subject.meta, tag, asType, nullData ? nullptr : words.data(), count);
  const bool accepted = known != nullptr && known->type == type && !(nullData && count != 0);
  Require((result == 0) == accepted);
  if (!accepted) return;
  const auto* first = reinterpret_cast<const uint8_t*>(words.data());
  subject.model[tag] = {static_cast<uint8_t>(type), count, std::vector<uint8_t>(first, first + bytes)};
  subject.seen.erase(tag);
}

void Erase(FuzzedDataProvider& in, Subject& subject) {
  const uint32_t tag = AnyTag(in);
  const bool present = subject.model.erase(tag) != 0;
  Require((subject.meta.erase(tag) == 0) == present);
  subject.seen.erase(tag);
}

// Callers may repair a value in the found data; the next lookup sees it.
void WriteInPlace(FuzzedDataProvider& in, Subject& subject) {
  if (subject.model.empty()) return;
  auto modelled = subject.model.begin();
  std::advance(modelled, in.ConsumeIntegralInRange<size_t>(0, subject.model.size() - 1));
  ModelEntry& expected = modelled->second;
  if (expected.bytes.empty()) return;
  const size_t at = in.ConsumeIntegralInRange<size_t>(0, expected.bytes.size() - 1);
  const uint8_t value = in.ConsumeIntegral<uint8_t>();
  const camera_metadata_ro_entry entry = subject.meta.find(modelled->first);
  Require(entry.count != 0);
  const_cast<uint8_t*>(entry.data.u8)[at] = value;
  expected.bytes[at] = value;
}

void Find(FuzzedDataProvider& in, Subject& subject) {
  const RegisteredTag& tag = fuzzsupport::AnyRegisteredTag(in);
  CheckEntry(subject, tag.tag);
  CheckByName(subject, tag);
  CheckEntry(subject, in.ConsumeIntegral<uint32_t>());
}

// Any text: found only when it is a registered name, and then as that tag.
void FindByAnyName(FuzzedDataProvider& in, Subject& subject) {
  const std::string name = in.ConsumeRandomLengthString(48);
  const RegisteredTag* known = RegisteredByName(name.c_str());
  unsigned int number = 0xDEADu;
  const int result = NvMetadata::getTagFromName(name.c_str(), &number);
  Require((result == 0) == (known != nullptr));
  Require(known != nullptr ? number == known->tag : number == 0xDEADu);
  if (known != nullptr) CheckByName(subject, *known);
  if (known == nullptr) Require(subject.meta.find(name.c_str()).count == 0);
}

void CheckRegistry(FuzzedDataProvider& in) {
  const uint32_t tag = AnyTag(in);
  const RegisteredTag* known = Registered(tag);
  Require(NvMetadata::getTagType(tag) == (known != nullptr ? known->type : -1));
  const char* name = NvMetadata::getTagName(tag);
  Require(known != nullptr ? name != nullptr && std::strcmp(name, known->name) == 0 : name == nullptr);
}

// Copies are independent: the source keeps its entries where they were.
void Copy(FuzzedDataProvider& in, Subject& from, Subject& to) {
  if (in.ConsumeBool()) {
    NvMetadata copy(from.meta);
    to.meta = copy;
  } else {
    to.meta = from.meta;
  }
  to.model = from.model;
  to.Forget();
}

// A moved-from container is cleared before it is used again.
void Move(FuzzedDataProvider& in, Subject& from, Subject& to) {
  if (in.ConsumeBool()) {
    NvMetadata moved(std::move(from.meta));
    to.meta = std::move(moved);
  } else {
    to.meta = std::move(from.meta);
  }
  from.meta.clear();
  to.model = std::move(from.model);
  from.Reset();
  to.Forget();
}

void Clear(Subject& subject) {
  subject.meta.clear();
  subject.Reset();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider in(data, size);
  Subject subjects[2];
  for (int step = 0; step < 256 && in.remaining_bytes() > 0; ++step) {
    const bool second = in.ConsumeBool();
    Subject& subject = subjects[second ? 1 : 0];
    Subject& other = subjects[second ? 0 : 1];
    switch (in.ConsumeIntegralInRange<int>(0, 9)) {
      case 0:
      case 1:
      case 2:
        Update(in, subject);
        break;
      case 3:
        Erase(in, subject);
        break;
      case 4:
        WriteInPlace(in, subject);
        break;
      case 5:
        Find(in, subject);
        break;
      case 6:
        FindByAnyName(in, subject);
        break;
      case 7:
        CheckRegistry(in);
        break;
      case 8:
        in.ConsumeBool() ? Copy(in, subject, other) : Move(in, subject, other);
        break;
      default:
        Clear(subject);
        break;
    }
    CheckAll(subject);
    CheckAll(other);
  }
  return 0;
}
