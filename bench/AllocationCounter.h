// Heap use of this process through operator new, which is replaced in its
// own file, where the compiler cannot pair it with a caller's delete.
#pragma once

#include <stddef.h>

namespace bench {

// Allocations made so far.
long Allocations();

// Bytes in blocks allocated and not yet freed, and the most there were
// since the last ResetPeak (or the start).
size_t LiveBytes();
size_t PeakBytes();
void ResetPeak();

}  // namespace bench
