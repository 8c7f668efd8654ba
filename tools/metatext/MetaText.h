// Reader of the camera service's text dump of one metadata buffer, as the
// service prints it into bug reports and `dumpsys media.camera`:
//
//   Dumping camera metadata array: 2 / 2 entries, 0 / 0 bytes of extra data.
//     Version: 1, Flags: 00000000
//     android.sensor.exposureTime (e0000): int64[1]
//       [10000000 ]
//     android.colorCorrection.transform (00001): rational[9]
//       [(256 / 256) (0 / 1) (0 / 1) ]
//       ...
//
// Tags are resolved through the metadata container's registry, so a capture
// replays into exactly the entries the camera pipeline produced.
#pragma once

#include <NvMetadata.h>

#include <istream>
#include <string>
#include <vector>

namespace metatext {

struct Problem {
  std::string file;
  unsigned line = 0;  // 1-based; 0 when about the whole file (cannot open)
  std::string text;
  std::string Message() const;  // "file:line: text" ("file: text" when line is 0)
};

// Reads the camera service's text dump of one metadata buffer. On success
// replaces *meta's content and returns true; on failure returns false, sets
// *problem, and leaves *meta untouched. `notes` (optional) receives problems
// that did not stop the load (an unknown tag skipped, values elided by the dump).
bool ParseText(std::istream& in, const std::string& fileName, NvMetadata* meta, Problem* problem,
               std::vector<Problem>* notes = nullptr);
bool ParseFile(const std::string& path, NvMetadata* meta, Problem* problem,
               std::vector<Problem>* notes = nullptr);

}  // namespace metatext
