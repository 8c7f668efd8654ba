// Shared test support: capture of both log sinks and the Android print, and
// small builders for metadata containers.
#pragma once

#include <MetaTagWrapper.h>
#include <NvMetadata.h>
#include <android/log.h>
#include <gtest/gtest.h>
#include <nvdebug/NvLog.h>

#include <RegisteredTags.h>

#include "TagTable.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace testsupport {

struct LogLine {
  char level;        // letter the sink received
  std::string file;  // short file name
  int line;
  std::string function;
  std::string text;  // formatted message, without the online prefix
};

struct AndroidLine {
  int priority;
  std::string tag;
  std::string message;  // the whole printed line, prefix included
};

// While alive, every message of every level and group reaches both sinks and
// is recorded; the settings and sinks are restored afterwards. With
// consumeOnline the secure-log hook swallows online messages, as a device
// hook may.
class LogCapture {
 public:
  explicit LogCapture(bool consumeOnline = false)
      : saved_{gNvCamLogLevel, gNvCamLogGroup, gNvCamOfflineLogLevel, gNvCamOfflineLogGroup,
               gNvCamDebugMask} {
    current_ = this;
    SetSettings(0, 0xFF, 0, 0xFF, 1);
    nvdebug::setOnlineObserver([this, consumeOnline](const nvdebug::LogRecord& r) {
      online.push_back(ToLine(r));
      return consumeOnline ? 1 : 0;
    });
    nvdebug::setOfflineObserver([this](const nvdebug::LogRecord& r) { offline.push_back(ToLine(r)); });
    __android_log_set_logger(&LogCapture::AndroidLogger);
  }

  ~LogCapture() {
    nvdebug::setOnlineObserver({});
    nvdebug::setOfflineObserver({});
    __android_log_set_logger(&__android_log_stderr_logger);
    SetSettings(saved_[0], saved_[1], saved_[2], saved_[3], saved_[4]);
    current_ = nullptr;
  }

  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;

  static void SetSettings(uint32_t level, uint32_t group, uint32_t offlineLevel, uint32_t offlineGroup,
                          uint32_t mask) {
    gNvCamLogLevel = level;
    gNvCamLogGroup = group;
    gNvCamOfflineLogLevel = offlineLevel;
    gNvCamOfflineLogGroup = offlineGroup;
    gNvCamDebugMask = mask;
  }

  void Clear() {
    online.clear();
    offline.clear();
    android.clear();
  }

  // "level line text" of every online message, in order: compact to compare.
  std::vector<std::string> Summary() const {
    std::vector<std::string> out;
    for (const LogLine& l : online)
      out.push_back(std::string(1, l.level) + " " + std::to_string(l.line) + " " + l.text);
    return out;
  }

  std::vector<LogLine> online;
  std::vector<LogLine> offline;
  std::vector<AndroidLine> android;

 private:
  static LogLine ToLine(const nvdebug::LogRecord& r) {
    return {r.level, r.file ? r.file : "", r.line, r.function ? r.function : "", r.text};
  }
  static void AndroidLogger(const __android_logger_data* data, const char* message) {
    if (current_ != nullptr)
      current_->android.push_back({data->priority, data->tag ? data->tag : "", message});
  }

  static inline LogCapture* current_ = nullptr;
  uint32_t saved_[5];
};

// Framed message text as the library emits it.
inline std::string Quoted(const std::string& text) { return "\"" + text + "\""; }

inline std::shared_ptr<NvMetadata> NewMeta() { return std::make_shared<NvMetadata>(); }

template <typename T>
void Put(NvMetadata& meta, uint32_t tag, const std::vector<T>& values) {
  ASSERT_EQ(0, meta.update(tag, values.data(), values.size())) << "tag 0x" << std::hex << tag;
}

template <typename T>
void Put(NvMetadata& meta, const char* name, const std::vector<T>& values) {
  unsigned int tag = 0;
  ASSERT_EQ(0, NvMetadata::getTagFromName(name, &tag)) << name;
  Put(meta, tag, values);
}

template <typename T>
void Put(NvMetadata& meta, META_TAG_INDEX index, const std::vector<T>& values) {
  Put(meta, MetaTagWrapper::getInstance()(index), values);
}

// Registers `staticMeta` as the static metadata of `cameraId` and names that
// camera in `request`, for operations that read per-camera values.
inline void BindCamera(NvMetadata& request, int32_t cameraId, std::shared_ptr<NvMetadata> staticMeta) {
  Put(request, META_FWK_CAMERA_ID, std::vector<int32_t>{cameraId});
  StaticMetadataWraper::getInstance()->setStaticMetadata(static_cast<unsigned>(cameraId),
                                                         std::move(staticMeta));
}

using tagtable::kElementSize;
using tagtable::SameContent;

// `count` elements of value one of a TYPE_* type: plausible counts, ids and
// sizes wherever an operation computes with them. The integer types take the
// low bytes of a 64-bit one (little-endian hosts).
inline std::vector<uint8_t> Ones(uint8_t type, size_t count) {
  static const int64_t kInteger = 1;
  static const float kFloat = 1;
  static const double kDouble = 1;
  static const camera_metadata_rational kRational{1, 1};
  const void* const one[NUM_TYPES] = {&kInteger, &kInteger, &kFloat, &kInteger, &kDouble, &kRational};
  std::vector<uint8_t> bytes(count * kElementSize[type]);
  for (size_t i = 0; i < bytes.size(); i += kElementSize[type])
    std::memcpy(&bytes[i], one[type], kElementSize[type]);
  return bytes;
}

// Every registered tag with 32 KiB of ones, more than the largest fixed-size
// copy any operation makes; the physical-id list holds one id so that its
// NUL-separated parse ends. Every int32 tag, the framework id included, names
// camera kFullCamera.
constexpr int kFullCamera = 1;
inline std::shared_ptr<NvMetadata> FullContainer() {
  auto meta = NewMeta();
  for (const nvmetadata::TagInfo& tag : nvmetadata::kRegisteredTags) {
    const size_t count = 32768 / kElementSize[tag.type];
    meta->update(tag.tag, static_cast<const void*>(Ones(tag.type, count).data()), count);
  }
  const uint8_t physicalIds[] = {'1', '\0'};
  meta->update(ANDROID_LOGICAL_MULTI_CAMERA_PHYSICAL_IDS, physicalIds, sizeof(physicalIds));
  return meta;
}

}  // namespace testsupport
