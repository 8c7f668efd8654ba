#include "NvVendorTags.h"

#include "NvMetadata.h"
#include "TagRegistry.h"

namespace {

constexpr int kFailure = -1;
constexpr unsigned int kReservedTag = 0xFFFFFFFFu;
constexpr unsigned int kVendorSectionStart = 0x80000000u;

bool registered(unsigned int tag) { return nvmetadata::findTagByNumber(tag) != nullptr; }

}  // namespace

int NvVendorTagTable::add(const char* name, unsigned int tag, uint8_t type) {
  if (name == nullptr || *name == '\0' || tag == kReservedTag || type >= NUM_TYPES) return kFailure;
  if (nvmetadata::findTagByName(name) != nullptr || registered(tag)) return kFailure;
  if (mByNumber.count(tag) != 0 || mByName.find(name) != mByName.end()) return kFailure;
  mByName.emplace(name, tag);
  mByNumber.emplace(tag, Tag{name, type});
  return 0;
}

int NvVendorTagTable::tagOf(const char* name, unsigned int* tag) const {
  if (name == nullptr || tag == nullptr) return kFailure;
  const auto found = mByName.find(name);
  if (found == mByName.end()) return kFailure;
  *tag = found->second;
  return 0;
}

int NvVendorTagTable::typeOf(unsigned int tag) const {
  const auto found = mByNumber.find(tag);
  return found != mByNumber.end() ? found->second.type : -1;
}

const char* NvVendorTagTable::nameOf(unsigned int tag) const {
  const auto found = mByNumber.find(tag);
  return found != mByNumber.end() ? found->second.name.c_str() : nullptr;
}

unsigned int NvVendorTagTable::unusedTag() const {
  for (unsigned int tag = kReservedTag - 1; tag >= kVendorSectionStart; --tag) {
    if (!registered(tag) && mByNumber.count(tag) == 0) return tag;
  }
  return 0;
}
