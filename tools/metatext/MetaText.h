// Reader of camera metadata as Android prints it: the platform's metadata
// printer (dump_indented_camera_metadata), framed by the camera service in
// `dumpsys media.camera`, inside a bug report, or line by line in logcat
// (CameraMetadataNative.dumpToLog). One buffer looks like this:
//
//   Dumping camera metadata array: 2 / 2 entries, 0 / 0 bytes of extra data.
//     Version: 1, Flags: 00000000
//     android.control.aeMode (10003): byte[1]
//       [ON_AUTO_FLASH ]
//     android.colorCorrection.transform (00001): rational[9]
//       [(256 / 256) (0 / 1) ]
//       ...
//
// Tags are identified by the names the dump prints, never by a vendor tag's
// number, which each device assigns at run time: a name the container's
// registry knows loads under the registry's number, and any other name is
// kept under the number and type the dump gives through a run-time vendor
// tag table. So a capture replays into exactly the entries the device had.
#pragma once

#include <NvMetadata.h>
#include <NvVendorTags.h>
#include <stdint.h>

#include <istream>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace metatext {

struct Problem {
  std::string file;
  unsigned line = 0;  // 1-based; 0 when about the whole file (cannot open)
  std::string text;
  std::string Message() const;  // "file:line: text" ("file: text" when line is 0)
};

// What a buffer holds, from the heading the camera service printed above it.
enum class Kind : uint8_t {
  kUnlabelled,       // a file holding one buffer, logcat, or a buffer under no heading the reader knows
  kStatic,           // "API2 camera characteristics:"
  kPhysicalStatic,   // "Physical camera %s characteristics:"
  kLatestResult,     // "Latest received frame:" (API1: "Latest captured frame:")
  kPhysicalResult,   // "Latest received frame for physical camera %s:"
  kLastRequest,      // "Last request sent:", "Logical request settings:" (API1: preview, recording,
                     // capture and ZSL capture requests)
  kPhysicalRequest,  // "Physical request settings for camera id %s:"
  kRequestTemplate,  // "HAL Request %s:"
};

// "buffer", "static characteristics", "physical camera characteristics",
// "latest result", "physical result", "last request", "physical request",
// "request template".
const char* KindName(Kind kind);

// Requests, results and unlabelled buffers: what a replay runs by default.
bool IsReplayedByDefault(Kind kind);

// One metadata buffer found in a text.
struct Buffer {
  std::string file;
  unsigned line = 0;   // its "Dumping camera metadata array" line (a buffer without one: its first line)
  std::string camera;  // camera id as the dump gives it ("0", "2", "10"); empty when nothing says
  Kind kind = Kind::kUnlabelled;
  std::string detail;  // what the heading adds: "TEMPLATE_PREVIEW", "Preview request", "HAL dumpState"
  bool stale = false;  // printed in the previous-session block: state of an earlier session
  std::shared_ptr<NvMetadata> meta;  // the entries; null when the buffer does not read
  Problem problem;                   // why not, when meta is null
  std::vector<uint32_t> cut;         // tags (as loaded) of entries the dump printed only in part, ascending
};

// Every buffer of one text, in the order they appear.
struct Capture {
  std::vector<Buffer> buffers;
  std::vector<Problem> notes;  // what the reader tolerated, in line order
  // False when the text holds one buffer and nothing else but blank lines
  // and comments: such a text is one buffer, and a problem in it is the
  // text's problem. True for a whole dump, a bug report or logcat output.
  bool wholeDump = false;
};

// Finds and reads every buffer of a text: one buffer (with or without its
// header lines), a whole `dumpsys media.camera` text, a bug report, or logcat
// output. Lines that are not part of a buffer are skipped. A buffer that does
// not read is kept with its problem and no entries; the others still load.
// Names the registry does not know are added to `vendorTags`, which must be
// the table installed with NvMetadata::setVendorTagTable; with null they are
// skipped with a note. Entries printed as unknownSection.unknownTag with a
// vendor number take the name the dump's own vendor tag section gives that
// number, once the whole text is read. A text without any "Dumping" line is
// one buffer from its first entry line on. The text is read line by line;
// only the loaded buffers and the one being read are kept. False, with
// *problem set, only when the text cannot be read at all (a file that does
// not open, a read error).
bool ReadText(std::istream& in, const std::string& fileName, NvVendorTagTable* vendorTags, Capture* capture,
              Problem* problem);
bool ReadFile(const std::string& path, NvVendorTagTable* vendorTags, Capture* capture, Problem* problem);

// Reads a text that holds exactly one buffer. On success replaces *meta's
// content and returns true; otherwise returns false, sets *problem and leaves
// *meta untouched (a text of several buffers is refused). `notes` (optional)
// receives what the reader tolerated. Vendor tags the registry does not know
// are skipped with a note.
bool ParseText(std::istream& in, const std::string& fileName, NvMetadata* meta, Problem* problem,
               std::vector<Problem>* notes = nullptr);
bool ParseFile(const std::string& path, NvMetadata* meta, Problem* problem,
               std::vector<Problem>* notes = nullptr);

// How the platform's printer prints: the forms changed between Android
// versions. The defaults print as Android 15 from its sixth release to its
// twentieth does, with the camera service's verbosity.
struct PrintStyle {
  int indentation = 0;                   // of the "Dumping" line; the service uses 4, 6 or 8
  int verbosity = 2;                     // below 2 long entries are cut to 16 values; below 1 no values
  bool keyNames = true;                  // Android 14+: "65536 (aeAntibandingMode)" in available*Keys
  bool everyStreamValueNamed = false;    // before 15.0.0_r6: every int32 of stream configurations named
  bool physicalIdsAsCharacters = false;  // 15.0.0_r20+: physicalIds as characters, NULs left out
};

// Prints a buffer exactly as the platform's printer does, entries in number
// order: header lines, one line per entry, values per line by type (16 byte,
// 4 int32, 8 float, 2 int64, 4 double, 2 rational), enum names for byte and
// int32 values of Android enum tags. Vendor tags print under the names the
// registry or the installed vendor tag table gives them. The header shows a
// buffer allocated to fit: capacities equal to the counts, the data bytes as
// the platform lays them out (an entry's data of more than 4 bytes goes to
// the data area, aligned to 8), version 1 and no flags.
void Print(const NvMetadata& meta, const PrintStyle& style, std::ostream& out);

}  // namespace metatext
