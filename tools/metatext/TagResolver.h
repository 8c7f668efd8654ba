// Which tag an entry of a dump loads into. Tags are found by the name the
// dump prints, never by its number: vendor tags carry numbers each device
// assigns at run time, so a dumped number may belong to another tag here.
#pragma once

#include <NvVendorTags.h>
#include <stdint.h>

#include <string>

namespace metatext {

class TagResolver {
 public:
  enum class Outcome {
    kLoad,    // into *tag; *text says something worth a note when not empty
    kSkip,    // the entry is left out; *text is the note
    kRefuse,  // the buffer does not read; *text is the problem
  };

  // `vendorTags` (may be null) receives the names the registry does not know.
  explicit TagResolver(NvVendorTagTable* vendorTags) : vendorTags_(vendorTags) {}

  Outcome Resolve(const char* name, uint32_t number, int type, uint32_t* tag, std::string* text) const;

 private:
  Outcome Known(const char* name, uint32_t number, int type, uint32_t known, std::string* text) const;
  Outcome Add(const char* name, uint32_t number, int type, uint32_t* tag, std::string* text) const;

  NvVendorTagTable* vendorTags_;
};

}  // namespace metatext
