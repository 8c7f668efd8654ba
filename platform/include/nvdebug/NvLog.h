// Process-wide camera logging: level and group settings, the secure-log hook
// (online) and the offline log. Observers let tests and tools see exactly the
// records each sink receives.
#ifndef NVDEBUG_NVLOG_H
#define NVDEBUG_NVLOG_H

#include <stdarg.h>
#include <stdint.h>

#include <functional>
#include <string>

#define NVDEBUG_EXPORT __attribute__((visibility("default")))

// Thresholds and group masks. Host defaults: level 6, group 0xFFFFFFFF,
// offline level 6, offline group 0xFFFFFFFF, debug mask 0; each may be
// overridden at load by an environment variable of the same name (decimal or
// 0x-prefixed hex).
extern NVDEBUG_EXPORT uint32_t gNvCamLogLevel;
extern NVDEBUG_EXPORT uint32_t gNvCamLogGroup;
extern NVDEBUG_EXPORT uint32_t gNvCamOfflineLogLevel;
extern NVDEBUG_EXPORT uint32_t gNvCamOfflineLogGroup;
extern NVDEBUG_EXPORT uint32_t gNvCamDebugMask;

namespace nvdebug {

class NVDEBUG_EXPORT Log {
 public:
  // Part of `path` after its last '/'; points into `path`, never allocates.
  static const char* getFileName(const char* path);
  // Fixed printable name of a single group bit (64 -> "ALGO", 2 -> "ISP").
  static const char* nvaGroupToString(uint32_t group);

  // Secure-log hook: hands the formatted record to the online observer and
  // returns its result; 0 when no observer is set. Non-zero means the record
  // was consumed and must not be printed to the system log.
  static int secureLog(uint32_t group, const char* file, int line, const char* function, char level,
                       const char* fmt, ...);
  static int secureLogV(uint32_t group, const char* file, int line, const char* function, char level,
                        const char* fmt, va_list args);

  // Offline log: hands the formatted record to the offline observer if set;
  // otherwise appends a line to the file named by NVCAM_OFFLINE_LOG_FILE, or
  // drops the record when that is unset. `level` is "E", "W", "I", "D" or "V".
  static void logSystem(uint32_t group, const char* level, const char* file, const char* function, int line,
                        const char* fmt, ...);
  static void logSystemV(uint32_t group, const char* level, const char* file, const char* function, int line,
                         const char* fmt, va_list args);
};

// One record as a sink received it.
struct LogRecord {
  uint32_t group;
  char level;        // 'E', 'W', 'I', 'D' or 'V'
  const char* file;  // short file name as passed by the caller
  int line;
  const char* function;
  std::string text;  // message after printf formatting
};

// An empty function removes the observer.
NVDEBUG_EXPORT void setOnlineObserver(std::function<int(const LogRecord&)> observer);
NVDEBUG_EXPORT void setOfflineObserver(std::function<void(const LogRecord&)> observer);

}  // namespace nvdebug

#endif  // NVDEBUG_NVLOG_H
