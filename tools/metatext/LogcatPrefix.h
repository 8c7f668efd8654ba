// Takes logcat's prefix off a line: every `-v` format logcat prints
// (threadtime with its uid, year, usec/nsec, zone, epoch and monotonic
// variants, brief, time, process, tag, thread, long), with or without
// colour. What remains is the logged message with its leading blanks, and
// the source it came from, so that lines of other tags and threads can be
// told apart from a dump's.
#pragma once

#include <string>
#include <string_view>

namespace metatext {

struct LogcatLine {
  bool logcat = false;   // the line had a prefix
  bool header = false;   // `-v long`'s header line: no message, the next line has it
  std::string_view tag;  // empty when the format prints none
  int pid = -1;          // -1 when the format prints none
  int tid = -1;
  std::string_view message;  // the whole line when there is no prefix
};

class LogcatSplitter {
 public:
  // The views point into `line`, or into this splitter for a `-v long`
  // message's tag, until the next call.
  LogcatLine Split(std::string_view line);

 private:
  bool longHeader_ = false;  // the previous line was a `-v long` header
  std::string longTag_;
  int longPid_ = -1;
  int longTid_ = -1;
};

}  // namespace metatext
