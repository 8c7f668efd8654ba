// The command line of metahelper-dump.
#pragma once

#include <stdint.h>

#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "OperationCatalog.h"

namespace dump {

enum class Format { kTable, kJson };

struct StaticFile {
  unsigned int cameraId;
  std::string path;
};

struct Options {
  std::vector<std::string> files;  // dumps, in the order given
  std::vector<StaticFile> statics;
  bool list = false;
  std::vector<unsigned> buffers;  // --buffer numbers (1-based) in the order given; empty: the default set
  std::optional<int> camera;
  std::optional<nvholder::dimension> sensorSize;
  std::optional<nvholder::dimension> imageSize;
  bool inSensorZoom = false;
  bool tags = false;
  Format format = Format::kTable;
  // Lowest level whose log lines are shown, as the logging library numbers
  // levels (error 6 ... verbose 2); 0 keeps the log off.
  uint32_t logLevel = 0;
  std::vector<std::string> only;  // glob patterns on the operation name; empty: all
};

// Exit status for a dump in which some buffer did not read.
constexpr int kSomeBuffersBad = 1;
// Exit status for bad usage and bad input.
constexpr int kBadInput = 2;
// ParseCommandLine's answer when the dump should go ahead.
constexpr int kRunDump = -1;

// Parses argv (as main receives it) into *options. Returns kRunDump, or the
// exit status to end with: 0 after --help (printed to `out`), kBadInput after
// a usage error (its message printed to `err`).
int ParseCommandLine(int argc, char** argv, std::ostream& out, std::ostream& err, Options* options);

// Prints a usage error found after parsing; returns kBadInput.
int ReportUsageError(const std::string& message, std::ostream& err);

// Level number of a --log argument: a level name or its letter, in any case;
// 0 for anything else.
uint32_t LogLevelFromName(const std::string& name);

}  // namespace dump
