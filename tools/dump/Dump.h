// metahelper-dump: replays a captured request through the helper that
// GetInstance hands out and prints every getter's and query's result and
// value, and optionally the log lines each call emitted.
#pragma once

#include <ostream>

namespace dump {

// The whole tool, callable in-process: argv as main receives it; the dump
// goes to `out`, problems, notes and usage errors to `err`. Returns the exit
// status: 0, or 2 for bad usage or bad input (then `out` stays empty).
// Registers the --static files with the process-wide static metadata store
// for the length of the run only, and takes the library's log settings over
// for that long (the previous ones, and no observers, afterwards).
int RunDump(int argc, char** argv, std::ostream& out, std::ostream& err);

}  // namespace dump
