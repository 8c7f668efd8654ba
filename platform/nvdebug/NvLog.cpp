#include "nvdebug/NvLog.h"

#include <android/log.h>
#include <ctype.h>
#include <errno.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <memory>
#include <mutex>

uint32_t gNvCamLogLevel = 6;
uint32_t gNvCamLogGroup = 0xFFFFFFFFu;
uint32_t gNvCamOfflineLogLevel = 6;
uint32_t gNvCamOfflineLogGroup = 0xFFFFFFFFu;
uint32_t gNvCamDebugMask = 0;

namespace nvdebug {
namespace {

using OnlineObserver = std::function<int(const LogRecord&)>;
using OfflineObserver = std::function<void(const LogRecord&)>;

struct Sinks {
  std::mutex lock;
  std::shared_ptr<const OnlineObserver> online;
  std::shared_ptr<const OfflineObserver> offline;
  std::mutex fileLock;  // keeps appended lines whole across threads
};

// Never destroyed: other libraries may still log from their own static
// destructors after this one would have gone.
Sinks& sinks() {
  static Sinks* instance = new Sinks;
  return *instance;
}

template <typename Observer>
std::shared_ptr<const Observer> current(const std::shared_ptr<const Observer>& slot) {
  std::lock_guard<std::mutex> guard(sinks().lock);
  return slot;
}

std::string formatMessage(const char* fmt, va_list args) {
  if (fmt == nullptr) return std::string();
  char small[256];
  va_list probe;
  va_copy(probe, args);
  const int length = vsnprintf(small, sizeof(small), fmt, probe);
  va_end(probe);
  if (length < 0) return std::string();
  if (static_cast<size_t>(length) < sizeof(small)) return std::string(small, length);
  std::string text(static_cast<size_t>(length), '\0');
  vsnprintf(&text[0], text.size() + 1, fmt, args);
  return text;
}

void appendToOfflineFile(const LogRecord& record) {
  const char* path = getenv("NVCAM_OFFLINE_LOG_FILE");
  if (path == nullptr || path[0] == '\0') return;
  std::lock_guard<std::mutex> guard(sinks().fileLock);
  FILE* out = fopen(path, "a");
  if (out == nullptr) return;
  fprintf(out, "%c %s %s:%d %s() %s\n", record.level, Log::nvaGroupToString(record.group), record.file,
          record.line, record.function != nullptr ? record.function : "", record.text.c_str());
  fclose(out);
}

// Accepts plain decimal or 0x-prefixed hex, nothing else (no sign, no blanks).
bool parseSetting(const char* text, uint32_t* value) {
  if (text == nullptr) return false;
  const bool hex = text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
  const char* digits = hex ? text + 2 : text;
  const unsigned char first = static_cast<unsigned char>(digits[0]);
  if (hex ? !isxdigit(first) : !isdigit(first)) return false;
  char* end = nullptr;
  errno = 0;
  const unsigned long long parsed = strtoull(digits, &end, hex ? 16 : 10);
  if (errno != 0 || *end != '\0' || parsed > 0xFFFFFFFFull) return false;
  *value = static_cast<uint32_t>(parsed);
  return true;
}

void overrideFromEnvironment(const char* name, uint32_t* setting) { parseSetting(getenv(name), setting); }

__attribute__((constructor)) void initialiseLogging() {
  overrideFromEnvironment("gNvCamLogLevel", &gNvCamLogLevel);
  overrideFromEnvironment("gNvCamLogGroup", &gNvCamLogGroup);
  overrideFromEnvironment("gNvCamOfflineLogLevel", &gNvCamOfflineLogLevel);
  overrideFromEnvironment("gNvCamOfflineLogGroup", &gNvCamOfflineLogGroup);
  overrideFromEnvironment("gNvCamDebugMask", &gNvCamDebugMask);
  // The host liblog drops everything below INFO by default; on the device
  // only the thresholds above decide, so let every priority through here.
  __android_log_set_minimum_priority(ANDROID_LOG_VERBOSE);
}

constexpr const char* kGroupNames[] = {"HAL", "ISP", "3A", "SENSOR", "PIPELINE", "MEMORY", "ALGO", "UTILS"};

}  // namespace

const char* Log::getFileName(const char* path) {
  if (path == nullptr) return "";
  const char* slash = strrchr(path, '/');
  return slash != nullptr ? slash + 1 : path;
}

const char* Log::nvaGroupToString(uint32_t group) {
  constexpr uint32_t kKnownGroups = sizeof(kGroupNames) / sizeof(kGroupNames[0]);
  const bool singleBit = group != 0 && (group & (group - 1)) == 0;
  if (!singleBit) return "UNKNOWN";
  const uint32_t bit = static_cast<uint32_t>(__builtin_ctz(group));
  return bit < kKnownGroups ? kGroupNames[bit] : "UNKNOWN";
}

int Log::secureLog(uint32_t group, const char* file, int line, const char* function, char level,
                   const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  const int consumed = secureLogV(group, file, line, function, level, fmt, args);
  va_end(args);
  return consumed;
}

int Log::secureLogV(uint32_t group, const char* file, int line, const char* function, char level,
                    const char* fmt, va_list args) {
  const auto observer = current(sinks().online);
  if (!observer) return 0;
  const LogRecord record{group, level, file, line, function, formatMessage(fmt, args)};
  return (*observer)(record);
}

void Log::logSystem(uint32_t group, const char* level, const char* file, const char* function, int line,
                    const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  logSystemV(group, level, file, function, line, fmt, args);
  va_end(args);
}

void Log::logSystemV(uint32_t group, const char* level, const char* file, const char* function, int line,
                     const char* fmt, va_list args) {
  const char letter = level != nullptr ? level[0] : '?';
  const auto observer = current(sinks().offline);
  if (!observer && getenv("NVCAM_OFFLINE_LOG_FILE") == nullptr) return;
  const LogRecord record{group, letter, file, line, function, formatMessage(fmt, args)};
  if (observer) {
    (*observer)(record);
  } else {
    appendToOfflineFile(record);
  }
}

void setOnlineObserver(std::function<int(const LogRecord&)> observer) {
  auto replacement = observer ? std::make_shared<const OnlineObserver>(std::move(observer)) : nullptr;
  std::lock_guard<std::mutex> guard(sinks().lock);
  sinks().online = std::move(replacement);
}

void setOfflineObserver(std::function<void(const LogRecord&)> observer) {
  auto replacement = observer ? std::make_shared<const OfflineObserver>(std::move(observer)) : nullptr;
  std::lock_guard<std::mutex> guard(sinks().lock);
  sinks().offline = std::move(replacement);
}

}  // namespace nvdebug
