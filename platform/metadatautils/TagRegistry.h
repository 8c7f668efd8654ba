// Built-in table of every tag the metadata container knows: number, full name
// and element type. Android, MediaTek and framework vendor tags all come from
// their .def files, so each tag is declared exactly once.
#ifndef PLATFORM_METADATAUTILS_TAGREGISTRY_H
#define PLATFORM_METADATAUTILS_TAGREGISTRY_H

#include <stdint.h>

namespace nvmetadata {

struct TagInfo {
  uint32_t tag;
  const char* name;
  uint8_t type;
};

// Null when unknown. Neither lookup allocates.
const TagInfo* findTagByName(const char* name);
const TagInfo* findTagByNumber(uint32_t tag);

}  // namespace nvmetadata

#endif  // PLATFORM_METADATAUTILS_TAGREGISTRY_H
