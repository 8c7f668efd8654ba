// Takes the library's log over for the length of a dump: off stderr always,
// and with a level, the lines each call emits are collected for the output.
#pragma once

#include <stdint.h>

#include <string>
#include <vector>

namespace dump {

struct LogLine {
  char level;  // E, W, I, D or V
  std::string file;
  int line;
  std::string function;
  std::string text;
};

// Only one may be alive at a time: the logging library has one observer per
// sink. The previous settings are restored when it ends.
class LogSession {
 public:
  // `level`: the lowest level collected (error 6 ... verbose 2), or 0 to
  // collect nothing.
  explicit LogSession(uint32_t level);
  ~LogSession();
  LogSession(const LogSession&) = delete;
  LogSession& operator=(const LogSession&) = delete;

  // The lines collected since the last call, oldest first.
  std::vector<LogLine> Take();

 private:
  uint32_t saved_[5];
  std::vector<LogLine> lines_;
};

}  // namespace dump
