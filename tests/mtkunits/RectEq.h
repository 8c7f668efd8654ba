// Rectangle comparison with readable failure output.
#pragma once

#include <ostream>

#include "nvholder/NvHolderTypes.h"

namespace nvholder {
inline bool operator==(const ChiRect& a, const ChiRect& b) {
  return a.left == b.left && a.top == b.top && a.width == b.width && a.height == b.height;
}
inline std::ostream& operator<<(std::ostream& os, const ChiRect& r) {
  return os << "(" << static_cast<int32_t>(r.left) << ", " << static_cast<int32_t>(r.top) << ", " << r.width
            << ", " << r.height << ")";
}
}  // namespace nvholder

inline bool operator==(const __UtilsImage_Rect& a, const __UtilsImage_Rect& b) {
  return a.left == b.left && a.top == b.top && a.width == b.width && a.height == b.height;
}
inline std::ostream& operator<<(std::ostream& os, const __UtilsImage_Rect& r) {
  return os << "(" << r.left << ", " << r.top << ", " << r.width << ", " << r.height << ")";
}
