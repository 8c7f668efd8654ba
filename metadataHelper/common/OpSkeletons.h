// The shapes that most helper operations share, written once.
//
// An operation is a descriptor (which tag, which messages, at which levels,
// with which line ids) plus one of the skeletons below. A descriptor row reads
// as the operation's whole contract:
//
//   {ByNumber(ANDROID_SENSOR_EXPOSURE_TIME), MH_ERR("ANDROID_SENSOR_EXPOSURE_TIME"), {88, 94, 95}}
//
// Message texts are built from string literals at compile time, so every
// message reaches the log as one complete literal format. Nothing here
// allocates; skeletons hold only the shared references the core read takes.
#pragma once

#include <MetaTagWrapper.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "Log.h"
#include "metadataHelperBase.h"

namespace metahelper::ops {

using logging::Format;
using logging::Level;
using logging::Site;

// ---- Naming a tag --------------------------------------------------------
// Exactly one of the three forms is used per tag.
struct TagRef {
  const char* name;
  META_TAG_INDEX index;
  uint32_t number;
};
constexpr TagRef ByIndex(META_TAG_INDEX index) { return {nullptr, index, 0}; }
constexpr TagRef ByNumber(uint32_t number) { return {nullptr, META_NO_INDEX, number}; }
constexpr TagRef ByName(const char* name) { return {name, META_NO_INDEX, 0}; }

// ---- Messages ------------------------------------------------------------
// The pair a read reports: the lookup failed, or it gave no data. A style
// without a second message leaves noData.text null.
struct ReadMessages {
  Format lookupFailed;
  Format noData;
};

inline constexpr Format kNoMessage{nullptr, nullptr};
inline constexpr Format kArgErr = MH_FORMAT(MH_QUOTED("arg err"));
inline constexpr Format kFwkCameraIdFail = MH_FORMAT(MH_QUOTED("GetMetadata FwkCameraId fail"));

#define MH_MESSAGES(first, second) \
  ::metahelper::ops::ReadMessages { MH_FORMAT(MH_QUOTED(first)), MH_FORMAT(MH_QUOTED(second)) }
#define MH_ONE_MESSAGE(first) \
  ::metahelper::ops::ReadMessages { MH_FORMAT(MH_QUOTED(first)), ::metahelper::ops::kNoMessage }
// The message styles, from the name the messages print.
#define MH_ERR(label) MH_MESSAGES("GetMetadata " label " err", "get metadata " label " err")
#define MH_FAIL(label) MH_ONE_MESSAGE("GetMetadata " label " fail")
#define MH_FAIL2(label) MH_MESSAGES("GetMetadata " label " fail", "get metadata " label " fail")
#define MH_ERR12(label) MH_MESSAGES("GetMetadata " label " err1", "GetMetadata " label " err2")
#define MH_GENERIC MH_MESSAGES("GetMetadata err", "get metadata err")
// A single framed message, and the usual text of a failed write.
#define MH_MESSAGE(text) MH_FORMAT(MH_QUOTED(text))
#define MH_SET_ERR(label) MH_MESSAGE("SetMetadata " label " err")

// ---- Descriptors ---------------------------------------------------------
// The id of a check that cannot fail or a message the style does not have.
inline constexpr int kNoLine = 0;

// Line ids in the order of the checks.
struct ReadLines {
  int arg;
  int lookup;
  int noData = kNoLine;
};

// What a read refuses before it looks at the metadata, and what it says then.
struct ArgCheck {
  Format message;
  bool needsContainer;  // an empty container is refused like a null output
};
inline constexpr ArgCheck kOutputChecked{kArgErr, false};
inline constexpr ArgCheck kOutputAndContainerChecked{kArgErr, true};

struct ReadOp {
  TagRef tag;
  ReadMessages messages;
  ReadLines lines;
  Level messageLevel = Level::kVerbose;
  Level argLevel = Level::kError;
  ArgCheck argCheck = kOutputChecked;
};

// A read from the static metadata of the request's camera.
struct StaticLines {
  int arg;
  int camera;
  int lookup;
  int noData = kNoLine;
};

struct StaticReadOp {
  TagRef tag;
  ReadMessages messages;
  StaticLines lines;
  Level messageLevel = Level::kVerbose;
};

struct WriteLines {
  int arg;
  int failed;
};

struct WriteOp {
  TagRef tag;
  Format failed;
  WriteLines lines;
  bool checksContainer = true;  // array setters also refuse an empty container
  Level failLevel = Level::kVerbose;
  Level argLevel = Level::kError;
};

// ---- Small utilities -----------------------------------------------------
MH_ALWAYS_INLINE void Report(Level level, const Site& site, int line, const Format& format) {
  logging::Emit(level, logging::kHelperGroup, site, line, format);
}

// Element data may sit at any alignment the container chose; copy, don't cast.
template <typename T>
T Element(const void* data, size_t index = 0) {
  T value;
  std::memcpy(&value, static_cast<const unsigned char*>(data) + index * sizeof(T), sizeof(T));
  return value;
}

// Static metadata of a camera; empty when the camera is unknown.
inline MetaPtr StaticMetaOf(int cameraId) {
  return StaticMetadataWraper::getInstance()->getStaticMetadata(static_cast<unsigned>(cameraId));
}

// The request's framework camera id through the virtual interface, so that an
// override changes every operation built on it; -1 when the request has none.
inline int FwkCameraIdOf(metadataHelperBase& helper, MetaPtr meta) {
  int cameraId = -1;
  helper.GetFwkCameraId(std::move(meta), &cameraId);
  return cameraId;
}

// The usual output check: a null output is reported as "arg err".
MH_ALWAYS_INLINE bool MissingOutput(const void* out, const Site& site, int line,
                                    Level level = Level::kError) {
  if (out != nullptr) return false;
  Report(level, site, line, kArgErr);
  return true;
}

// ---- Skeletons -----------------------------------------------------------
// The element pointer a read returns points into the container, so whoever
// uses it keeps its own reference to the container until it is done: hand
// ReadTag a copy, never the last reference (a caller may pass a temporary).

// Where the core read reports a tag it found without data, and the text;
// GetMetaData and the inline path below report through these same two.
extern const Site kCoreReadSite;
extern const Format kCoreReadNoData;
inline constexpr int kCoreReadNoDataLine = 36;

// What the inline read could not settle: GetMetaData runs and reports it.
inline constexpr int kNeedsCoreRead = 1;

// The core read's common path, inline: the same lookup GetMetaData makes,
// and an absent entry reported as it reports one. Anything else (no
// container, no tag, an undeclared index) is left to GetMetaData. The
// operation's own parameter keeps the container alive, so unlike
// GetMetaData this takes no further reference.
MH_ALWAYS_INLINE int FindQuickly(const MetaPtr& meta, const TagRef& tag, const void** data, uint32_t* count) {
  if (!meta) return kNeedsCoreRead;
  camera_metadata_ro_entry entry;
  if (tag.index != META_NO_INDEX) {
    const uint32_t number = MetaTagWrapper::getInstance()(tag.index);
    if (number == MetaTagWrapper::kUndeclared) return kNeedsCoreRead;
    entry = meta->find(number);
  } else if (tag.name != nullptr) {
    entry = meta->find(tag.name);
  } else if (tag.number != 0) {
    entry = meta->find(tag.number);
  } else {
    return kNeedsCoreRead;
  }
  if (entry.count == 0) {
    Report(Level::kVerbose, kCoreReadSite, kCoreReadNoDataLine, kCoreReadNoData);
    return -1;
  }
  if (count != nullptr) *count = static_cast<uint32_t>(entry.count);
  *data = entry.data.u8;
  return 0;
}

// A read the inline path could not settle: GetMetaData, then the
// descriptor's messages. Out of line, so the common path keeps few registers.
__attribute__((noinline, cold)) inline int FinishRead(metadataHelperBase& helper, const Site& site,
                                                      const ReadMessages& messages, const TagRef& tag,
                                                      Level level, int lookupLine, int noDataLine,
                                                      const MetaPtr& meta, const void** data,
                                                      uint32_t* count) {
  void* found = nullptr;
  const int result = helper.GetMetaData(meta, tag.name, tag.index, tag.number, &found, count);
  if (result != 0) {
    Report(level, site, lookupLine, messages.lookupFailed);
    return result;
  }
  if (found == nullptr) {
    if (messages.noData.text != nullptr) Report(level, site, noDataLine, messages.noData);
    return -1;
  }
  *data = found;
  return 0;
}

// Resolves and reads the tag; on failure logs the descriptor's message and
// returns the failure, on success stores the element pointer. The container
// is taken by reference: the data points into it, so the caller's reference
// must outlive every use of the data.
MH_ALWAYS_INLINE int ReadTag(metadataHelperBase& helper, const Site& site, const ReadMessages& messages,
                             const TagRef& tag, Level level, int lookupLine, int noDataLine,
                             const MetaPtr& meta, const void** data, uint32_t* count = nullptr) {
  const int result = FindQuickly(meta, tag, data, count);
  if (__builtin_expect(result == 0, true)) return 0;
  if (result != kNeedsCoreRead) {
    Report(level, site, lookupLine, messages.lookupFailed);
    return result;
  }
  return FinishRead(helper, site, messages, tag, level, lookupLine, noDataLine, meta, data, count);
}

MH_ALWAYS_INLINE int ReadTag(metadataHelperBase& helper, const Site& site, const ReadOp& op,
                             const MetaPtr& meta, const void** data, uint32_t* count = nullptr) {
  return ReadTag(helper, site, op.messages, op.tag, op.messageLevel, op.lines.lookup, op.lines.noData, meta,
                 data, count);
}

// Reports a refused argument the way the descriptor says; always -1.
inline int RefuseArgument(const Site& site, const ReadOp& op) {
  Report(op.argLevel, site, op.lines.arg, op.argCheck.message);
  return -1;
}

// The standard read: check the arguments, read, hand the data to `store`.
// The operation's own by-value parameter keeps the container alive for the
// whole call, so the skeletons borrow it: moving it in would only add a
// release on the path of every read.
template <typename Out, typename Store>
MH_ALWAYS_INLINE int ReadWith(metadataHelperBase& helper, const Site& site, const ReadOp& op,
                              const MetaPtr& meta, Out* out, Store store) {
  if (out == nullptr || (op.argCheck.needsContainer && !meta)) return RefuseArgument(site, op);
  const void* data;  // set by a successful read, the only one that uses it
  const int result = ReadTag(helper, site, op, meta, &data);
  if (result != 0) return result;
  store(data, out);
  return 0;
}

// Copies `bytes` (by default one Out) from the tag's data as it stands.
template <typename Out>
MH_ALWAYS_INLINE int ReadCopy(metadataHelperBase& helper, const Site& site, const ReadOp& op,
                              const MetaPtr& meta, Out* out, size_t bytes = sizeof(Out)) {
  return ReadWith(helper, site, op, meta, out,
                  [bytes](const void* data, Out* target) { std::memcpy(target, data, bytes); });
}

// Converts the first element, read as Element, into the output.
template <typename Element_, typename Out, typename Convert>
MH_ALWAYS_INLINE int ReadConverted(metadataHelperBase& helper, const Site& site, const ReadOp& op,
                                   const MetaPtr& meta, Out* out, Convert convert) {
  return ReadWith(helper, site, op, meta, out,
                  [&convert](const void* data, Out* target) { *target = convert(Element<Element_>(data)); });
}

// Per-camera values: the request names the camera, its static metadata holds
// the value. The camera id comes through the virtual GetFwkCameraId so that an
// override changes every static read.
template <typename Out>
int ReadStaticCopy(metadataHelperBase& helper, const Site& site, const StaticReadOp& op, MetaPtr meta,
                   Out* out, size_t bytes = sizeof(Out)) {
  if (MissingOutput(out, site, op.lines.arg)) return -1;
  int cameraId = -1;
  const int idResult = helper.GetFwkCameraId(std::move(meta), &cameraId);
  if (idResult != 0) {
    Report(op.messageLevel, site, op.lines.camera, kFwkCameraIdFail);
    return idResult;
  }
  MetaPtr staticMeta = StaticMetaOf(cameraId);
  const void* data = nullptr;
  const int result = ReadTag(helper, site, op.messages, op.tag, op.messageLevel, op.lines.lookup,
                             op.lines.noData, staticMeta, &data);
  if (result != 0) return result;
  std::memcpy(out, data, bytes);
  return 0;
}

// Not supported, form A: only the output pointer is looked at.
inline int NotSupported(const Site& site, int line, const void* out) {
  MissingOutput(out, site, line);
  return -1;
}

// Not supported, form B: a record and a container are both expected.
inline int NotSupported(const Site& site, int line, const void* record, const MetaPtr& meta) {
  if (record == nullptr || !meta) Report(Level::kError, site, line, kArgErr);
  return -1;
}

// The result of an operation that does nothing on this platform.
inline constexpr int kStub = -1;

// Setters: check, write `count` elements, report a failed write, pass the
// write's own result through.
template <typename T>
int Write(metadataHelperBase& helper, const Site& site, const WriteOp& op, MetaPtr meta, T* values,
          uint32_t count) {
  if (values == nullptr || (op.checksContainer && !meta)) {
    Report(op.argLevel, site, op.lines.arg, kArgErr);
    return -1;
  }
  const int result =
      helper.SetMetaData<T>(std::move(meta), op.tag.name, op.tag.index, op.tag.number, values, count);
  if (result != 0) Report(op.failLevel, site, op.lines.failed, op.failed);
  return result;
}

}  // namespace metahelper::ops
