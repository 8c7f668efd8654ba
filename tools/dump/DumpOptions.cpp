#include "DumpOptions.h"

#include <strings.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <functional>

#include "OperationCatalog.h"

namespace dump {
namespace {

constexpr const char* kDescription =
    "Replays a camera request through the metadata helper and prints what every\n"
    "getter and query returns: slot, operation, result and the value, decoded by\n"
    "its type.\n"
    "REQUEST is the camera service's text dump of the request's metadata buffer;\n"
    "each --static gives the static metadata of one camera the same way.";

constexpr const char* kFooter =
    "Operations that take more than the request are asked about the request's\n"
    "own camera (its framework camera id), a sensor output of %ux%u without\n"
    "in-sensor zoom, and an output image of %ux%u.\n"
    "Log levels: error, warning, info, debug, verbose (or E, W, I, D, V); each\n"
    "shows its own lines and those of the levels above it.\n"
    "Exit status: 0 after a dump, 2 for bad usage or a bad input file\n"
    "(\"file:line: problem\" on stderr, nothing on stdout).\n"
    "Example:\n"
    "  metahelper-dump examples/rear_capture/request.txt \\\n"
    "      --static 0=examples/rear_capture/static_0.txt --log warning --only 'Get*Crop*'";

std::string Footer() {
  const opcatalog::CallContext defaults;
  char text[1024];
  std::snprintf(text, sizeof text, kFooter, defaults.sensorSize.width, defaults.sensorSize.height,
                defaults.imageSize.width, defaults.imageSize.height);
  return text;
}

struct LevelName {
  const char* name;
  const char* letter;
  uint32_t level;
};

constexpr LevelName kLevels[] = {
    {"error", "E", 6}, {"warning", "W", 5}, {"info", "I", 4}, {"debug", "D", 3}, {"verbose", "V", 2},
};

// "ID=FILE" with ID a camera id; false for anything else.
bool SplitStaticArgument(const std::string& argument, StaticFile* file) {
  const size_t equals = argument.find('=');
  if (equals == 0 || equals == std::string::npos || equals + 1 == argument.size()) return false;
  const std::string id = argument.substr(0, equals);
  if (id.find_first_not_of("0123456789") != std::string::npos) return false;
  errno = 0;
  const unsigned long long value = std::strtoull(id.c_str(), nullptr, 10);
  if (errno != 0 || value > 0xFFFFFFFFull) return false;
  *file = {static_cast<unsigned int>(value), argument.substr(equals + 1)};
  return true;
}

std::string CheckStaticArgument(const std::string& argument) {
  StaticFile file;
  if (SplitStaticArgument(argument, &file)) return {};
  return "expects ID=FILE (a camera id, '=', a file), got '" + argument + "'";
}

std::string CheckLogLevel(const std::string& name) {
  if (LogLevelFromName(name) != 0) return {};
  return "unknown level '" + name + "': use error, warning, info, debug or verbose (or E, W, I, D, V)";
}

std::string CheckFormat(const std::string& format) {
  if (format == "table" || format == "json") return {};
  return "unknown format '" + format + "': use table or json";
}

// A check that adds nothing to the option's line in --help.
CLI::Validator Check(std::function<std::string(const std::string&)> check) {
  return CLI::Validator(check, "");
}

// The same camera twice is refused: silently keeping one of the two files
// would replay something other than what the user asked for.
std::string FillStatics(const std::vector<std::string>& arguments, std::vector<StaticFile>* statics) {
  for (const std::string& argument : arguments) {
    StaticFile file;
    SplitStaticArgument(argument, &file);
    for (const StaticFile& earlier : *statics) {
      if (earlier.cameraId == file.cameraId)
        return "--static: camera " + std::to_string(file.cameraId) + " given twice";
    }
    statics->push_back(file);
  }
  return {};
}

void DeclareOptions(CLI::App& app, Options* options, std::vector<std::string>* statics, std::string* format,
                    std::string* level) {
  app.add_option("REQUEST", options->request, "text dump of the request's metadata")
      ->required()
      ->type_name("");
  app.add_option("--static", *statics, "static metadata of camera ID (repeatable)")
      ->type_name("ID=FILE")
      ->allow_extra_args(false)
      ->check(Check(CheckStaticArgument));
  app.add_option("--format", *format, "output form (default: table)")
      ->type_name("table|json")
      ->check(Check(CheckFormat));
  app.add_option("--log", *level, "also show the log lines each call emitted at LEVEL and above")
      ->type_name("LEVEL")
      ->check(Check(CheckLogLevel));
  app.add_option("--only", options->only, "only operations whose name matches this glob (repeatable)")
      ->type_name("PATTERN")
      ->allow_extra_args(false);
}

int ReportUsageError(const std::string& message, std::ostream& err) {
  err << "metahelper-dump: " << message << "\nRun 'metahelper-dump --help' for usage.\n";
  return kBadInput;
}

}  // namespace

uint32_t LogLevelFromName(const std::string& name) {
  for (const LevelName& level : kLevels) {
    if (strcasecmp(name.c_str(), level.name) == 0 || strcasecmp(name.c_str(), level.letter) == 0)
      return level.level;
  }
  return 0;
}

int ParseCommandLine(int argc, char** argv, std::ostream& out, std::ostream& err, Options* options) {
  CLI::App app(kDescription, "metahelper-dump");
  app.footer(Footer());
  std::vector<std::string> statics;
  std::string format = "table";
  std::string level;
  DeclareOptions(app, options, &statics, &format, &level);
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    out << app.help();
    return 0;
  } catch (const CLI::ParseError& error) {
    return ReportUsageError(error.what(), err);
  }
  const std::string problem = FillStatics(statics, &options->statics);
  if (!problem.empty()) return ReportUsageError(problem, err);
  options->format = format == "json" ? Format::kJson : Format::kTable;
  options->logLevel = level.empty() ? 0 : LogLevelFromName(level);
  return kRunDump;
}

}  // namespace dump
