// Running metahelper-dump in-process, as its main would, and reading what it
// printed.
#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "Dump.h"

namespace dumptest {

struct Outcome {
  int status;
  std::string out;
  std::string err;
};

// `args` after the program name.
inline Outcome RunTool(std::vector<std::string> args) {
  args.insert(args.begin(), "metahelper-dump");
  std::vector<char*> argv;
  for (std::string& arg : args) argv.push_back(arg.data());
  argv.push_back(nullptr);
  std::ostringstream out, err;
  const int status = dump::RunDump(static_cast<int>(args.size()), argv.data(), out, err);
  return {status, out.str(), err.str()};
}

inline std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

}  // namespace dumptest
