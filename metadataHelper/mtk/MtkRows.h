// The operation table of MtkMetadataHelper: one Row per operation it
// overrides, in slot order, built by the compiler from MtkOperations.def.
#pragma once

#include <mtk/mtk_metadata_tag.h>

#include <cstddef>

#include "MtkMetadataHelper.h"
#include "common/OpSkeletons.h"
#include "mtk/PlatformMath.h"

namespace metahelper::ops {

// The platform's operations report read and write failures as warnings.
inline constexpr Level kFailureLevel = Level::kWarning;
// The panshot result: nine doubles, then a 32-bit status.
inline constexpr uint32_t kPanshotWords =
    (offsetof(nvholder::panshotData, status) + sizeof(int32_t)) / sizeof(int32_t);

#define MH_ROW_CLASS MtkMetadataHelper
#include "common/RowForms.h"
inline constexpr Row kMtkRows[] = {
#include "MtkOperations.def"
};
#undef MH_ROW_CLASS

constexpr bool SlotsAscend(const Row* rows, size_t count) {
  for (size_t i = 1; i < count; ++i) {
    if (rows[i].slot <= rows[i - 1].slot) return false;
  }
  return true;
}
static_assert(SlotsAscend(kMtkRows, sizeof(kMtkRows) / sizeof(kMtkRows[0])),
              "MtkOperations.def must hold each slot once, in slot order");

constexpr const Row& MtkRow(int slot) { return RowOf(kMtkRows, slot); }

}  // namespace metahelper::ops
