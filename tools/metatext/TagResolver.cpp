#include "TagResolver.h"

#include <NvMetadata.h>

#include "TextUtil.h"

namespace metatext {

TagResolver::Outcome TagResolver::Resolve(const char* name, uint32_t number, int type, uint32_t* tag,
                                          std::string* text) const {
  text->clear();
  unsigned int known = 0;
  if (NvMetadata::getTagFromName(name, &known) == 0) {
    *tag = known;
    return Known(name, number, type, known, text);
  }
  if (vendorTags_ == nullptr) {
    *text = std::string("unknown tag ") + name + " (" + Hex(number) + ") skipped";
    return Outcome::kSkip;
  }
  return Add(name, number, type, tag, text);
}

// A name the registry (or a vendor tag read before) knows: its number here
// wins. A type that differs is a wrong dump for an Android tag, and for a
// vendor tag another device's tag of the same name.
TagResolver::Outcome TagResolver::Known(const char* name, uint32_t number, int type, uint32_t known,
                                        std::string* text) const {
  const int knownType = NvMetadata::getTagType(known);
  const bool readBefore = vendorTags_ != nullptr && vendorTags_->typeOf(known) >= 0;
  if (knownType != type) {
    *text = std::string(name) + " is " + TypeName(knownType) +
            (readBefore ? " in the vendor tags read before" : " in the registry") + ", but the dump says " +
            TypeName(type);
    if (known < kVendorTagStart) return Outcome::kRefuse;
    *text += "; left out";
    return Outcome::kSkip;
  }
  if (known < kVendorTagStart && known != number)
    *text = std::string(name) + " is tag " + Hex(known) + " in the registry, not " + Hex(number) +
            "; loaded by name";
  return Outcome::kLoad;
}

// A name nobody here knows: kept under the dump's number and type, or under
// a spare number when another tag has the dump's.
TagResolver::Outcome TagResolver::Add(const char* name, uint32_t number, int type, uint32_t* tag,
                                      std::string* text) const {
  const uint8_t code = static_cast<uint8_t>(type);
  if (vendorTags_->add(name, number, code) == 0) {
    *tag = number;
    return Outcome::kLoad;
  }
  const unsigned int spare = vendorTags_->unusedTag();
  if (spare == 0 || vendorTags_->add(name, spare, code) != 0) {
    *text = std::string(name) + " (" + Hex(number) + ") cannot be added to the vendor tags; skipped";
    return Outcome::kSkip;
  }
  const char* owner = NvMetadata::getTagName(number);
  *text = std::string(name) + ": its number " + Hex(number) + " is " +
          (owner != nullptr ? owner : "reserved") + " here; loaded as " + Hex(spare);
  *tag = spare;
  return Outcome::kLoad;
}

}  // namespace metatext
