// Two metadata containers under operations the input picks, checked against a
// plain model (a std::map of tag to type and bytes), and for the container's
// own promises: element data 8-byte aligned, zero-padded to whole words,
// writable in place and never moved while other tags come and go (past a
// hundred tags too); entries in number order; overflowing counts refused.
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

using namespace fuzzsupport;

struct ModelEntry {
  uint8_t type;
  size_t count;
  std::vector<uint8_t> bytes;
};

struct Subject {
  NvMetadata meta;
  std::map<uint32_t, ModelEntry> model;
  // Data pointers handed out since the tag was last written (every write
  // forgets its tag's): they must stay put while other tags change.
  std::map<uint32_t, const uint8_t*> seen;
};

// The table's entry for a number, or for a name.
const RegisteredTag* Registered(uint32_t tag, const char* name = nullptr) {
  for (const RegisteredTag& known : kRegisteredTags)
    if (name != nullptr ? std::strcmp(known.name, name) == 0 : known.tag == tag) return &known;
  return nullptr;
}

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
  std::vector<unsigned int> tags;
  for (const auto& [tag, entry] : subject.model) tags.push_back(tag);
  Require(subject.meta.tags() == tags);
  for (const auto& [tag, entry] : subject.model) CheckEntry(subject, tag);
}

// The name lookup hashes only part of a name: a name is found only when it is
// a registered one, and then as that tag, finding the same entry.
void CheckByName(Subject& subject, const std::string& name) {
  const RegisteredTag* known = Registered(0, name.c_str());
  unsigned int number = 0xDEADu;  // no tag, left as it is by an unknown name
  Require((NvMetadata::getTagFromName(name.c_str(), &number) == 0) == (known != nullptr));
  Require(number == (known != nullptr ? known->tag : 0xDEADu));
  const camera_metadata_ro_entry byName = subject.meta.find(name.c_str());
  const camera_metadata_ro_entry byNumber = subject.meta.find(number);
  Require(byName.count == byNumber.count && byName.data.u8 == byNumber.data.u8);
}

// Mostly a registered tag; else any number, the table's free-slot marker
// (all ones) often among them.
uint32_t AnyTag(FuzzedDataProvider& in) {
  if (in.ConsumeIntegralInRange<int>(0, 7) != 0) return AnyRegisteredTag(in).tag;
  return in.ConsumeBool() ? 0xFFFFFFFFu : in.ConsumeIntegral<uint32_t>();
}

// One write through a typed or the untyped overload, sometimes with null
// data or a count whose size in bytes overflows; the model says whether it
// must be taken.
void Update(FuzzedDataProvider& in, Subject& subject, Subject&) {
  const uint32_t tag = AnyTag(in);
  const int asType = in.ConsumeIntegralInRange<int>(0, NUM_TYPES);  // NUM_TYPES: untyped
  const RegisteredTag* known = Registered(tag);
  const int type = asType == NUM_TYPES ? (known != nullptr ? known->type : -1) : asType;
  const bool overflows = in.ConsumeIntegralInRange<int>(0, 31) == 0;
  const size_t count =
      overflows ? in.ConsumeIntegralInRange<size_t>(SIZE_MAX / kElementSize[type < 0 ? 0 : type], SIZE_MAX)
                : in.ConsumeIntegralInRange<size_t>(0, 40);
  const bool nullData = in.ConsumeIntegralInRange<int>(0, 7) == 0;
  const size_t bytes = type < 0 || overflows ? 0 : count * kElementSize[type];
  const std::vector<uint64_t> words = ConsumeElements(in, bytes);

  const int result = UpdateAs(subject.meta, tag, asType, nullData ? nullptr : words.data(), count);
  const bool accepted = known != nullptr && known->type == type && !overflows && !(nullData && count != 0);
  Require((result == 0) == accepted);
  if (!accepted) return;
  const auto* first = reinterpret_cast<const uint8_t*>(words.data());
  subject.model[tag] = {static_cast<uint8_t>(type), count, std::vector<uint8_t>(first, first + bytes)};
  subject.seen.erase(tag);
}

// A hundred registered tags more, from one the input picks: far more than
// the first table holds, so it grows several times and many tags share
// probe runs, while the entries already held must stay where they are.
void AddAHundredTags(FuzzedDataProvider& in, Subject& subject, Subject&) {
  if (in.ConsumeIntegralInRange<int>(0, 15) != 0) return;  // rarely: it is slow
  const size_t first = in.ConsumeIntegralInRange<size_t>(0, kRegisteredTagCount - 1);
  for (size_t i = 0; i < 100; ++i) {
    const RegisteredTag& tag = kRegisteredTags[(first + i) % kRegisteredTagCount];
    const size_t count = 1 + (tag.tag + first) % 5;
    std::vector<uint8_t> bytes(count * kElementSize[tag.type]);
    for (size_t at = 0; at < bytes.size(); ++at)
      bytes[at] = static_cast<uint8_t>(tag.tag * 31 + at * 7 + first);
    Require(subject.meta.update(tag.tag, static_cast<const void*>(bytes.data()), count) == 0);
    subject.model[tag.tag] = {tag.type, count, std::move(bytes)};
    subject.seen.erase(tag.tag);
  }
}

void Erase(FuzzedDataProvider& in, Subject& subject, Subject&) {
  const uint32_t tag = AnyTag(in);
  Require((subject.meta.erase(tag) == 0) == (subject.model.erase(tag) != 0));
}

// Callers may repair a value in the found data; the next lookup sees it.
void WriteInPlace(FuzzedDataProvider& in, Subject& subject, Subject&) {
  if (subject.model.empty()) return;
  const auto modelled =
      std::next(subject.model.begin(), in.ConsumeIntegralInRange<long>(0, subject.model.size() - 1));
  ModelEntry& expected = modelled->second;
  if (expected.bytes.empty()) return;
  const size_t at = in.ConsumeIntegralInRange<size_t>(0, expected.bytes.size() - 1);
  const uint8_t value = in.ConsumeIntegral<uint8_t>();
  const_cast<uint8_t*>(subject.meta.find(modelled->first).data.u8)[at] = value;
  expected.bytes[at] = value;
}

// Any text, or a registered name as it is or with one character changed,
// dropped or added.
void FindByAnyName(FuzzedDataProvider& in, Subject& subject, Subject&) {
  if (in.ConsumeBool()) return CheckByName(subject, in.ConsumeRandomLengthString(48));
  std::string name = AnyRegisteredTag(in).name;
  const size_t at = in.ConsumeIntegralInRange<size_t>(0, name.size() - 1);
  const int edit = in.ConsumeIntegralInRange<int>(0, 3);
  if (edit == 0) name[at] = in.ConsumeIntegral<char>();
  if (edit == 1) name.erase(at, 1);
  if (edit == 2) name.insert(in.ConsumeBool() ? name.size() : at, 1, in.ConsumeIntegral<char>());
  CheckByName(subject, name);
}

// A lookup by number, and by name when the tag is registered; the registry
// knows the number exactly when the table holds it.
void Find(FuzzedDataProvider& in, Subject& subject, Subject&) {
  const uint32_t tag = AnyTag(in);
  CheckEntry(subject, tag);
  const RegisteredTag* known = Registered(tag);
  Require(NvMetadata::getTagType(tag) == (known != nullptr ? known->type : -1));
  const char* name = NvMetadata::getTagName(tag);
  Require(known != nullptr ? name != nullptr && std::strcmp(name, known->name) == 0 : name == nullptr);
  if (known != nullptr) CheckByName(subject, known->name);
}

// Copies are independent: the source keeps its entries where they were. A
// moved-from container is left empty, and usable.
void CopyOrMove(FuzzedDataProvider& in, Subject& from, Subject& to) {
  const bool move = in.ConsumeBool();
  if (in.ConsumeBool()) {  // through a constructed copy or move
    NvMetadata made = move ? NvMetadata(std::move(from.meta)) : NvMetadata(from.meta);
    to.meta = std::move(made);
  } else if (move) {
    to.meta = std::move(from.meta);
  } else {
    to.meta = from.meta;
  }
  to.model = from.model;
  to.seen.clear();
  if (move) from.model.clear();
}

void Clear(FuzzedDataProvider&, Subject& subject, Subject&) {
  subject.meta.clear();
  subject.model.clear();
}

using Step = void (*)(FuzzedDataProvider& in, Subject& subject, Subject& other);
// Writes are the most frequent step.
constexpr Step kSteps[] = {Update, Update,        Update,     Erase, WriteInPlace,
                           Find,   FindByAnyName, CopyOrMove, Clear, AddAHundredTags};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider in(data, size);
  Subject subjects[2];
  for (int step = 0; step < 256 && in.remaining_bytes() > 0; ++step) {
    const int first = in.ConsumeIntegralInRange<int>(0, 1);
    in.PickValueInArray(kSteps)(in, subjects[first], subjects[1 - first]);
    // Every step while a container is small; once it holds most tags, every
    // eighth (and at the end), which keeps the runs fast.
    for (Subject& subject : subjects)
      if (subject.model.size() < 64 || step % 8 == 0) CheckAll(subject);
  }
  for (Subject& subject : subjects) CheckAll(subject);
  return 0;
}
