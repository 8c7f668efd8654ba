// The two output forms of a dump: an aligned table for people and a JSON
// array for programs; and the list of the buffers found.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "DumpInput.h"
#include "LogSession.h"
#include "TagRecorder.h"
#include "ValueTree.h"

namespace dump {

// One operation as it ran.
struct OperationRun {
  int slot;
  std::string operation;
  int result;
  Value value;  // null when the call did not succeed
  std::vector<LogLine> log;
  std::vector<TagLookup> tags;
};

// One buffer as it was replayed.
struct BufferRun {
  NumberedBuffer buffer;
  std::vector<OperationRun> operations;
};

struct TableShows {
  bool log = false;   // each call's log lines under its row
  bool tags = false;  // each call's tag lookups under its row
};

// Per buffer a heading line (number, file:line, camera, kind, entries), then
// one row per operation: slot, operation, result, value. A value too wide
// for its column continues on indented lines (a record one field a line,
// long arrays wrapped); the call's tag lookups and log lines follow its row
// when asked for. An answer that rests on an entry the dump cut short is
// marked whatever is asked for.
void PrintTable(const std::vector<BufferRun>& runs, TableShows shows, std::ostream& out);

// One JSON array with one object per buffer: buffer, file, line, camera,
// kind, detail, stale, entries and operations, one object a line: slot,
// operation, result, value (null on failure), tags (tag, from, found, and
// cut when true) and, with `withLog`, log (level, file, line, function, text).
void PrintJson(const std::vector<BufferRun>& runs, bool withLog, std::ostream& out);

// One line per buffer found: number, file:line, camera, kind (and detail),
// stale, entries ("unreadable" for a buffer that does not read). JSON: one
// array with an object per buffer as PrintJson describes it, without
// operations, with `problem` for a buffer that does not read.
void PrintList(const std::vector<NumberedBuffer>& buffers, Format format, std::ostream& out);

}  // namespace dump
