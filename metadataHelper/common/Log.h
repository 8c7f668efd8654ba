// The library's one logging macro.
//
// Every message goes first to the Android log (through the secure-log hook,
// which may consume it) and then to the offline log, each sink gated by its
// own level threshold and group mask owned by the logging library. A line id
// is part of each message's identity, so it is always passed explicitly and
// never taken from where the statement happens to sit.
#pragma once

#include <android/log.h>
#include <nvdebug/NvLog.h>

#include <cstdint>

namespace metahelper::logging {

enum class Level : uint8_t { kError, kWarning, kInfo, kDebug, kVerbose };

// All messages of this library belong to the helper group, except a few gamma
// and crop diagnostics that belong to the ISP group.
inline constexpr uint32_t kHelperGroup = 64;
inline constexpr uint32_t kIspGroup = 2;
inline constexpr const char* kAndroidTag = "NvAlgoEngine";

struct LevelTraits {
  uint32_t threshold;         // a sink prints when its level setting is <= this
  int androidPriority;        // verbose deliberately prints at debug priority
  char hookLetter;            // what the secure-log hook receives
  const char* offlineLetter;  // what the offline log receives
  bool needsDebugMask;        // offline copy below error needs gNvCamDebugMask
};

inline constexpr LevelTraits kLevelTraits[] = {
    {6, ANDROID_LOG_ERROR, 'E', "E", false}, {5, ANDROID_LOG_WARN, 'W', "W", true},
    {4, ANDROID_LOG_INFO, 'I', "I", true},   {3, ANDROID_LOG_DEBUG, 'D', "D", true},
    {2, ANDROID_LOG_DEBUG, 'D', "V", true},
};

// Everything a disabled message runs is forced inline: with the level and
// group known at the call, the gates fold into compares of the settings, and
// the message's site and format are only built on the path that prints.
#define MH_ALWAYS_INLINE __attribute__((always_inline)) inline

MH_ALWAYS_INLINE const LevelTraits& TraitsOf(Level level) { return kLevelTraits[static_cast<int>(level)]; }

// A printf format, and the same format with the online prefix joined in front
// of it at build time. Built only through MH_FORMAT so the two never drift.
// Both this and Site live in static storage at every use (MH_HERE, MH_LOG):
// passing them costs one address, and nothing is built on the stack of a
// call that prints nothing.
struct Format {
  const char* text;
  const char* online;
};
constexpr Format MakeFormat(const char* text, const char* online) { return {text, online}; }

// Where a message comes from: the compile-time source path and the function.
struct Site {
  const char* file;
  const char* function;
};

MH_ALWAYS_INLINE bool OnlineEnabled(Level level, uint32_t group) {
  return gNvCamLogLevel <= TraitsOf(level).threshold && (gNvCamLogGroup & 0xFFu & group) != 0;
}

MH_ALWAYS_INLINE bool OfflineEnabled(Level level, uint32_t group) {
  const LevelTraits& traits = TraitsOf(level);
  return gNvCamOfflineLogLevel <= traits.threshold && (gNvCamOfflineLogGroup & 0xFFu & group) != 0 &&
         (!traits.needsDebugMask || gNvCamDebugMask != 0);
}

template <typename... Args>
__attribute__((noinline, cold)) void EmitOnline(Level level, uint32_t group, const Site& site, int line,
                                                const Format& format, Args... args) {
  const LevelTraits& traits = TraitsOf(level);
  const char* file = nvdebug::Log::getFileName(site.file);
  if (nvdebug::Log::secureLog(group, file, line, site.function, traits.hookLetter, format.text, args...) != 0)
    return;
  __android_log_print(traits.androidPriority, kAndroidTag, format.online,
                      nvdebug::Log::nvaGroupToString(group), nvdebug::Log::getFileName(site.file), line,
                      site.function, args...);
}

template <typename... Args>
__attribute__((noinline, cold)) void EmitOffline(Level level, uint32_t group, const Site& site, int line,
                                                 const Format& format, Args... args) {
  nvdebug::Log::logSystem(group, TraitsOf(level).offlineLetter, nvdebug::Log::getFileName(site.file),
                          site.function, line, format.text, args...);
}

// The gates are tested inline, so a disabled message costs only the reads of
// the settings; the settings are read again for the offline step because they
// may change in between.
template <typename... Args>
MH_ALWAYS_INLINE void Emit(Level level, uint32_t group, const Site& site, int line, const Format& format,
                           Args... args) {
  if (__builtin_expect(OnlineEnabled(level, group), false))
    EmitOnline(level, group, site, line, format, args...);
  if (__builtin_expect(OfflineEnabled(level, group), false))
    EmitOffline(level, group, site, line, format, args...);
}

// Never called: lets the compiler check a literal format against its arguments.
__attribute__((format(printf, 1, 2))) inline void CheckFormat(const char*, ...) {}

}  // namespace metahelper::logging

#define MH_ONLINE_PREFIX "%s %s:%d %s()"
// A call rather than braces, so that a format passes through other macros'
// arguments whole.
#define MH_FORMAT(literal) ::metahelper::logging::MakeFormat(literal, MH_ONLINE_PREFIX literal)
// Most messages are emitted inside a pair of double-quote characters.
#define MH_QUOTED(text) "\"" text "\""
// The calling function's site as a constant in static storage.
#define MH_HERE                                                               \
  (*({                                                                        \
    static constexpr ::metahelper::logging::Site kMhHere{__FILE__, __func__}; \
    &kMhHere;                                                                 \
  }))

// MH_LOG(kError, 13, MH_QUOTED("pArg is null"));
// MH_LOG(kInfo, 200, "value %d", value);
#define MH_LOG(level, line, fmt, ...) \
  MH_LOG_GROUP(::metahelper::logging::kHelperGroup, level, line, fmt, ##__VA_ARGS__)

#define MH_LOG_GROUP(group, level, line, fmt, ...) MH_LOG_AS(group, __func__, level, line, fmt, ##__VA_ARGS__)

// For messages that must carry a function name other than the caller's.
#define MH_LOG_AS(group, function, level, line, fmt, ...)                                             \
  do {                                                                                                \
    if (false) ::metahelper::logging::CheckFormat(fmt, ##__VA_ARGS__);                                \
    static constexpr ::metahelper::logging::Site kMhSite{__FILE__, function};                         \
    static constexpr ::metahelper::logging::Format kMhFormat = MH_FORMAT(fmt);                        \
    ::metahelper::logging::Emit(::metahelper::logging::Level::level, group, kMhSite, line, kMhFormat, \
                                ##__VA_ARGS__);                                                       \
  } while (0)
