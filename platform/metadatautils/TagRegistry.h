// Built-in table of every tag the metadata container knows: number, full name
// and element type, and the names the platform's metadata printer writes for
// the values of enum tags. Android, MediaTek and framework vendor tags all
// come from their .def files, so each tag is declared exactly once.
#ifndef PLATFORM_METADATAUTILS_TAGREGISTRY_H
#define PLATFORM_METADATAUTILS_TAGREGISTRY_H

#include <stddef.h>
#include <stdint.h>

namespace nvmetadata {

struct TagInfo {
  uint32_t tag;
  const char* name;
  uint8_t type;
};

struct EnumName {
  uint32_t tag;
  const char* name;
  int64_t value;
};

// Null when unknown. Neither lookup allocates.
const TagInfo* findTagByName(const char* name);
const TagInfo* findTagByNumber(uint32_t tag);

// The enum value names of a tag in the platform's order; *count 0 (and null)
// for a tag without any.
const EnumName* enumNamesOf(uint32_t tag, size_t* count);

}  // namespace nvmetadata

#endif  // PLATFORM_METADATAUTILS_TAGREGISTRY_H
