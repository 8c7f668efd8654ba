#include "DumpOptions.h"

#include <strings.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <functional>

namespace dump {
namespace {

constexpr const char* kDescription =
    "Replays camera metadata through the metadata helper and prints what every\n"
    "getter and query returns: slot, operation, result and the value, decoded by\n"
    "its type.\n"
    "FILE is the camera service's text: a file holding one metadata buffer, a whole\n"
    "`dumpsys media.camera` text, a bug report, or logcat output. Every buffer found\n"
    "is numbered in input order, across files (--list shows them). By default every\n"
    "request and result is replayed, each with the static characteristics of its own\n"
    "camera taken from the same file.";

constexpr const char* kFooter =
    "Operations that take more than the request are given:\n"
    "  camera id    --camera, else the request's framework camera id, else the\n"
    "               buffer's camera in the dump when it is a number, else 0;\n"
    "  sensor size  --sensor-size, else that camera's android.sensor.info.pixelArraySize,\n"
    "               else the size of its android.sensor.info.activeArraySize, else %ux%u;\n"
    "  image size   --image-size, else %ux%u; in-sensor zoom only with --in-sensor-zoom.\n"
    "Log levels: error, warning, info, debug, verbose (or E, W, I, D, V); each\n"
    "shows its own lines and those of the levels above it.\n"
    "Exit status: 0 after a dump; 1 when a buffer of a whole dump does not read\n"
    "(\"file:line: problem\" on stderr, the other buffers replayed); 2 for bad usage\n"
    "or an input that does not read (\"file:line: problem\" on stderr, nothing on stdout).\n"
    "Examples:\n"
    "  metahelper-dump examples/camera_dump/media.camera.txt --list\n"
    "  metahelper-dump examples/camera_dump/media.camera.txt --buffer 3 --only 'Get*Crop*' --tags";

std::string Footer() {
  const opcatalog::CallContext defaults;
  char text[2048];
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

// A decimal number up to `limit`, digits only; false for anything else.
bool ReadNumber(const std::string& text, unsigned long long limit, unsigned long long* value) {
  if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos) return false;
  errno = 0;
  *value = std::strtoull(text.c_str(), nullptr, 10);
  return errno == 0 && *value <= limit;
}

// "ID=FILE" with ID a camera id; false for anything else.
bool SplitStaticArgument(const std::string& argument, StaticFile* file) {
  const size_t equals = argument.find('=');
  unsigned long long id = 0;
  if (equals == std::string::npos || equals + 1 == argument.size()) return false;
  if (!ReadNumber(argument.substr(0, equals), 0xFFFFFFFFull, &id)) return false;
  *file = {static_cast<unsigned int>(id), argument.substr(equals + 1)};
  return true;
}

// "WxH" with two sizes of at least 1.
bool ReadSize(const std::string& text, nvholder::dimension* size) {
  const size_t x = text.find_first_of("xX");
  unsigned long long width = 0, height = 0;
  if (x == std::string::npos || !ReadNumber(text.substr(0, x), 0xFFFFFFFFull, &width) ||
      !ReadNumber(text.substr(x + 1), 0xFFFFFFFFull, &height) || width == 0 || height == 0)
    return false;
  *size = {static_cast<uint32_t>(width), static_cast<uint32_t>(height)};
  return true;
}

std::string CheckStaticArgument(const std::string& argument) {
  StaticFile file;
  if (SplitStaticArgument(argument, &file)) return {};
  return "expects ID=FILE (a camera id, '=', a file), got '" + argument + "'";
}

std::string CheckSize(const std::string& text) {
  nvholder::dimension size;
  if (ReadSize(text, &size)) return {};
  return "expects WIDTHxHEIGHT (e.g. 4000x3000), got '" + text + "'";
}

std::string CheckNumber(const std::string& text, unsigned long long lowest) {
  unsigned long long value = 0;
  if (ReadNumber(text, INT_MAX, &value) && value >= lowest) return {};
  return "expects a number from " + std::to_string(lowest) + ", got '" + text + "'";
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

// What the options read as text before they are checked and converted.
struct RawOptions {
  std::vector<std::string> statics;
  std::string format = "table";
  std::string level;
  std::string camera;
  std::string sensorSize;
  std::string imageSize;
};

void DeclareInputs(CLI::App& app, Options* options, RawOptions* raw) {
  app.add_option("FILE", options->files, "camera metadata as the camera service prints it")
      ->required()
      ->type_name("");
  app.add_option("--static", raw->statics,
                 "static metadata of camera ID, instead of the one in the dump (repeatable); FILE holds one "
                 "buffer, or is a dump that holds camera ID's characteristics")
      ->type_name("ID=FILE")
      ->allow_extra_args(false)
      ->check(Check(CheckStaticArgument));
  app.add_flag("--list", options->list, "list the buffers found (number, file:line, camera, kind) and exit");
  app.add_option("--buffer", options->buffers, "replay buffer N of the list, whatever its kind (repeatable)")
      ->type_name("N")
      ->allow_extra_args(false)
      ->check(Check([](const std::string& text) { return CheckNumber(text, 1); }));
}

void DeclareContext(CLI::App& app, Options* options, RawOptions* raw) {
  app.add_option("--camera", raw->camera, "camera id given to the operations that take one")
      ->type_name("ID")
      ->check(Check([](const std::string& text) { return CheckNumber(text, 0); }));
  app.add_option("--sensor-size", raw->sensorSize, "sensor output size given to GetCropRegion")
      ->type_name("WxH")
      ->check(Check(CheckSize));
  app.add_option("--image-size", raw->imageSize, "output image size given to GetFaceRect and GetFocusROI")
      ->type_name("WxH")
      ->check(Check(CheckSize));
  app.add_flag("--in-sensor-zoom", options->inSensorZoom,
               "GetCropRegion: the sensor output is in-sensor zoomed");
}

void DeclareOutput(CLI::App& app, Options* options, RawOptions* raw) {
  app.add_option("--format", raw->format, "output form (default: table)")
      ->type_name("table|json")
      ->check(Check(CheckFormat));
  app.add_flag("--tags", options->tags, "table: list the tags each operation looked up (JSON always does)");
  app.add_option("--log", raw->level, "also show the log lines each call emitted at LEVEL and above")
      ->type_name("LEVEL")
      ->check(Check(CheckLogLevel));
  app.add_option("--only", options->only, "only operations whose name matches this glob (repeatable)")
      ->type_name("PATTERN")
      ->allow_extra_args(false);
}

// The checks have passed: every text converts.
void Convert(const RawOptions& raw, Options* options) {
  options->format = raw.format == "json" ? Format::kJson : Format::kTable;
  options->logLevel = raw.level.empty() ? 0 : LogLevelFromName(raw.level);
  if (!raw.camera.empty()) options->camera = std::atoi(raw.camera.c_str());
  nvholder::dimension size;
  if (ReadSize(raw.sensorSize, &size)) options->sensorSize = size;
  if (ReadSize(raw.imageSize, &size)) options->imageSize = size;
}

}  // namespace

int ReportUsageError(const std::string& message, std::ostream& err) {
  err << "metahelper-dump: " << message << "\nRun 'metahelper-dump --help' for usage.\n";
  return kBadInput;
}

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
  RawOptions raw;
  DeclareInputs(app, options, &raw);
  DeclareContext(app, options, &raw);
  DeclareOutput(app, options, &raw);
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    out << app.help();
    return 0;
  } catch (const CLI::ParseError& error) {
    return ReportUsageError(error.what(), err);
  }
  const std::string problem = FillStatics(raw.statics, &options->statics);
  if (!problem.empty()) return ReportUsageError(problem, err);
  Convert(raw, options);
  return kRunDump;
}

}  // namespace dump
