// metahelper-dump: replays captured camera metadata through the helper that
// GetInstance hands out and prints every getter's and query's result and
// value, the tags each looked up, and optionally the log lines each call
// emitted.
#pragma once

#include <ostream>

namespace dump {

// The whole tool, callable in-process: argv as main receives it; the dump
// goes to `out`, problems, notes and usage errors to `err`. Returns the exit
// status: 0; 1 when a buffer of a whole dump did not read (the others are
// replayed); 2 for bad usage or an input that cannot be used (then `out`
// stays empty). Installs its own vendor tag table, registers static
// metadata with the process-wide store and takes the library's log settings
// over, each only for the length of the run (what was there before, and no
// observers, afterwards).
int RunDump(int argc, char** argv, std::ostream& out, std::ostream& err);

}  // namespace dump
