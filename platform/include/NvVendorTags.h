// Tags that a device defines at run time beyond the container's built-in
// registry: vendor tags of another device, known only from a capture of it.
// Installed with NvMetadata::setVendorTagTable, as the platform's own
// container consults its global vendor tag descriptor.
#ifndef NVVENDORTAGS_H
#define NVVENDORTAGS_H

#include <stddef.h>
#include <stdint.h>

#include <functional>
#include <map>
#include <string>

#define NVVENDORTAGS_EXPORT __attribute__((visibility("default")))

class NVVENDORTAGS_EXPORT NvVendorTagTable {
 public:
  // 0 on success. Non-zero, table unchanged, when the name or the number is
  // taken (by the built-in registry or by this table), the number is the
  // reserved 0xFFFFFFFF, the name is empty or the type is no TYPE_* code.
  int add(const char* name, unsigned int tag, uint8_t type);

  // 0 and the number for a name of this table; non-zero otherwise, leaving
  // *tag untouched.
  int tagOf(const char* name, unsigned int* tag) const;
  int typeOf(unsigned int tag) const;          // -1 when not in this table
  const char* nameOf(unsigned int tag) const;  // null when not in this table
  size_t size() const { return mByNumber.size(); }

  // A number that neither the registry nor this table uses, for a tag whose
  // own number belongs to another tag here. Taken from the top of the vendor
  // range, where no platform assigns numbers; 0 when none is left.
  unsigned int unusedTag() const;

 private:
  struct Tag {
    std::string name;
    uint8_t type;
  };
  std::map<unsigned int, Tag> mByNumber;
  std::map<std::string, unsigned int, std::less<>> mByName;  // finds a const char* without a copy
};

#endif  // NVVENDORTAGS_H
