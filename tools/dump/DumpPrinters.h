// The two output forms of a dump: an aligned table for people and a JSON
// array for programs.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "LogSession.h"
#include "ValueTree.h"

namespace dump {

// One operation as it ran.
struct OperationRun {
  int slot;
  std::string operation;
  int result;
  Value value;  // null when the call did not succeed
  std::vector<LogLine> log;
};

// One row per operation: slot, operation, result, value. A value too wide
// for its column continues on indented lines (a record one field a line,
// long arrays wrapped); with `withLog` the call's log lines follow its row.
void PrintTable(const std::vector<OperationRun>& runs, bool withLog, std::ostream& out);

// One JSON array with one object per operation, one object a line:
// slot, operation, result, value (null on failure) and, with `withLog`,
// log (level, file, line, function, text).
void PrintJson(const std::vector<OperationRun>& runs, bool withLog, std::ostream& out);

}  // namespace dump
