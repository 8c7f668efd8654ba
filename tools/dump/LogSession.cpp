#include "LogSession.h"

#include <nvdebug/NvLog.h>

#include <utility>

namespace dump {
namespace {

// A threshold above every level: the sink takes nothing.
constexpr uint32_t kNothing = 7;

void Apply(const uint32_t (&settings)[5]) {
  gNvCamLogLevel = settings[0];
  gNvCamLogGroup = settings[1];
  gNvCamOfflineLogLevel = settings[2];
  gNvCamOfflineLogGroup = settings[3];
  gNvCamDebugMask = settings[4];
}

}  // namespace

LogSession::LogSession(uint32_t level)
    : saved_{gNvCamLogLevel, gNvCamLogGroup, gNvCamOfflineLogLevel, gNvCamOfflineLogGroup, gNvCamDebugMask} {
  // Lines are taken from the offline sink: it alone tells verbose ("V")
  // from debug, and with an observer set it writes nowhere else. The online
  // sink, which prints to stderr, is shut.
  Apply({kNothing, 0, level == 0 ? kNothing : level, 0xFFFFFFFFu, 1});
  if (level == 0) return;
  nvdebug::setOfflineObserver([this](const nvdebug::LogRecord& record) {
    lines_.push_back({record.level, record.file != nullptr ? record.file : "", record.line,
                      record.function != nullptr ? record.function : "", record.text});
  });
}

LogSession::~LogSession() {
  nvdebug::setOfflineObserver({});
  Apply(saved_);
}

std::vector<LogLine> LogSession::Take() { return std::exchange(lines_, {}); }

}  // namespace dump
