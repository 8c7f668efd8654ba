// Host build of the Android camera metadata types that the camera stack uses:
// the read-only entry returned by metadata lookups, the element type codes and
// the standard tag numbers. Layouts and values match the Android framework so
// code built against this header behaves the same on the device.
#ifndef SYSTEM_CAMERA_METADATA_H
#define SYSTEM_CAMERA_METADATA_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct camera_metadata_rational {
  int32_t numerator;
  int32_t denominator;
} camera_metadata_rational_t;

// One metadata entry as seen by a reader. `count` is the number of elements;
// `data` points at the first element, interpreted per `type`.
typedef struct camera_metadata_ro_entry {
  size_t index;
  uint32_t tag;
  uint8_t type;
  size_t count;
  union {
    const uint8_t* u8;
    const int32_t* i32;
    const float* f;
    const int64_t* i64;
    const double* d;
    const camera_metadata_rational_t* r;
  } data;
} camera_metadata_ro_entry_t;

enum {
  TYPE_BYTE = 0,
  TYPE_INT32 = 1,
  TYPE_FLOAT = 2,
  TYPE_INT64 = 3,
  TYPE_DOUBLE = 4,
  TYPE_RATIONAL = 5,
  NUM_TYPES
};

typedef enum camera_metadata_tag {
#define CAMERA_METADATA_TAG(constant, number, name, type) constant = number,
#include "system/camera_metadata_tags.def"
#undef CAMERA_METADATA_TAG
} camera_metadata_tag_t;

#ifdef __cplusplus
}
#endif

#endif  // SYSTEM_CAMERA_METADATA_H
