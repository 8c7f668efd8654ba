// Heap allocations made by this process so far (operator new replaced in its
// own file, where the compiler cannot pair it with a caller's delete).
#pragma once

namespace bench {
long Allocations();
}
