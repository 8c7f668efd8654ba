// The operation table of metadataHelperBase: one Row per slot, in slot order,
// built by the compiler from BaseOperations.def. The helper defines its
// operations from these rows; the operation catalogue, the fuzzer and the
// tests read them too.
#pragma once

#include "OpSkeletons.h"
#include "metadataHelperBase.h"

namespace metahelper::ops {

// Argument checks and messages that several rows share.
inline constexpr ArgCheck kFlipIsNull{MH_MESSAGE("flip is null!"), false};
inline constexpr ArgCheck kMetaIsNull{MH_MESSAGE("meta is null"), true};
// The focal-length read reports with the focus-region texts on purpose.
inline constexpr ReadMessages kAfRegionMessages = MH_MESSAGES("GetMetadata ANDROID_CONTROL_AF_REGIONS err1",
                                                              "GetMetadata  ANDROID_CONTROL_AF_REGIONS err2");

#define MH_ROW_CLASS metadataHelperBase
#include "RowForms.h"
inline constexpr Row kBaseRows[] = {
#include "BaseOperations.def"
};
#undef MH_ROW_CLASS

inline constexpr int kFirstSlot = 3;
inline constexpr int kLastBaseSlot = 190;

constexpr bool EverySlotInOrder() {
  int slot = kFirstSlot;
  for (const Row& row : kBaseRows) {
    if (row.slot != slot++) return false;
  }
  return slot == kLastBaseSlot + 1;
}
static_assert(EverySlotInOrder(), "BaseOperations.def must hold every slot once, in slot order");

constexpr const Row& BaseRow(int slot) { return kBaseRows[slot - kFirstSlot]; }

}  // namespace metahelper::ops
