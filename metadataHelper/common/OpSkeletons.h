// The shapes that most helper operations share, written once, and the rows
// that describe each operation.
//
// An operation is a row of its class's operation table (BaseOperations.def,
// MtkOperations.def): which tag it reads or writes and how many of its
// elements it relies on, which messages it reports at which levels and with
// which line ids, what it checks of its arguments. The skeletons below carry
// the row out; only the operations that really compute something are written
// by hand, and they take their tags and messages from their rows too.
//
// Message texts are built from string literals at compile time, so every
// message reaches the log as one complete literal format. Nothing here
// allocates; skeletons hold only the shared references the core read takes.
#pragma once

#include <MetaTagWrapper.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <type_traits>

#include "Log.h"
#include "metadataHelperBase.h"

namespace metahelper::ops {

using logging::Format;
using logging::Level;
using logging::Site;

// The levels by their short names, as the operation tables write them.
inline constexpr Level kError = Level::kError;
inline constexpr Level kWarning = Level::kWarning;
inline constexpr Level kInfo = Level::kInfo;
inline constexpr Level kDebug = Level::kDebug;
inline constexpr Level kVerbose = Level::kVerbose;

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
inline constexpr TagRef kNoTag{nullptr, META_NO_INDEX, 0};

constexpr bool HasTag(const TagRef& tag) {
  return tag.name != nullptr || tag.index != META_NO_INDEX || tag.number != 0;
}

// ---- Elements ------------------------------------------------------------
// How much of an entry an operation relies on: the tag's element type and
// the number of elements. An entry with fewer gives no data.
inline constexpr uint8_t kNoType = 0xFF;
// As many elements as the operation's output record holds.
inline constexpr uint32_t kRecord = 0xFFFFFFFFu;
// Whatever the entry holds: the operation looks at the count itself.
inline constexpr uint32_t kWholeEntry = 0;

struct Elements {
  uint8_t type;
  uint32_t count;
};
constexpr Elements Byte(uint32_t count = 1) { return {TYPE_BYTE, count}; }
constexpr Elements Int32(uint32_t count = 1) { return {TYPE_INT32, count}; }
constexpr Elements Float(uint32_t count = 1) { return {TYPE_FLOAT, count}; }
constexpr Elements Int64(uint32_t count = 1) { return {TYPE_INT64, count}; }
constexpr Elements Double(uint32_t count = 1) { return {TYPE_DOUBLE, count}; }
constexpr Elements Rational(uint32_t count = 1) { return {TYPE_RATIONAL, count}; }
inline constexpr Elements kNoElements{kNoType, 0};

constexpr size_t ElementSize(uint8_t type) {
  constexpr size_t kSizes[NUM_TYPES] = {1, 4, 4, 8, 8, 8};
  return type < NUM_TYPES ? kSizes[type] : 0;
}

template <uint8_t Type>
struct CTypeOf;
template <>
struct CTypeOf<TYPE_BYTE> {
  using type = uint8_t;
};
template <>
struct CTypeOf<TYPE_INT32> {
  using type = int32_t;
};
template <>
struct CTypeOf<TYPE_FLOAT> {
  using type = float;
};
template <>
struct CTypeOf<TYPE_INT64> {
  using type = int64_t;
};
template <>
struct CTypeOf<TYPE_DOUBLE> {
  using type = double;
};

// ---- Messages ------------------------------------------------------------
// The pair a read reports: the lookup failed, or it gave no data. A style
// without a second message leaves noData.text null; its one message then
// serves for both.
struct ReadMessages {
  Format lookupFailed;
  Format noData;
};

inline constexpr Format kNoMessage{nullptr, nullptr};
inline constexpr Format kArgErr = MH_FORMAT(MH_QUOTED("arg err"));
inline constexpr Format kFwkCameraIdFail = MH_FORMAT(MH_QUOTED("GetMetadata FwkCameraId fail"));
inline constexpr ReadMessages kNoMessages{kNoMessage, kNoMessage};

constexpr ReadMessages Messages(Format lookupFailed, Format noData) { return {lookupFailed, noData}; }
constexpr ReadMessages OneMessage(Format message) { return {message, kNoMessage}; }

// Calls rather than braces, so that messages pass through other macros'
// arguments whole.
#define MH_MESSAGES(first, second) \
  ::metahelper::ops::Messages(MH_FORMAT(MH_QUOTED(first)), MH_FORMAT(MH_QUOTED(second)))
#define MH_ONE_MESSAGE(first) ::metahelper::ops::OneMessage(MH_FORMAT(MH_QUOTED(first)))
// One message printed as it stands, without the quotes.
#define MH_PLAIN(text) ::metahelper::ops::OneMessage(MH_FORMAT(text))
// The message styles, from the name the messages print.
#define MH_ERR(label) MH_MESSAGES("GetMetadata " label " err", "get metadata " label " err")
#define MH_FAIL(label) MH_ONE_MESSAGE("GetMetadata " label " fail")
#define MH_FAIL2(label) MH_MESSAGES("GetMetadata " label " fail", "get metadata " label " fail")
#define MH_ERR12(label) MH_MESSAGES("GetMetadata " label " err1", "GetMetadata " label " err2")
#define MH_GENERIC MH_MESSAGES("GetMetadata err", "get metadata err")
// A single framed message, and the usual text of a failed write.
#define MH_MESSAGE(text) MH_FORMAT(MH_QUOTED(text))
#define MH_SET_ERR(label) ::metahelper::ops::WriteMessage(MH_MESSAGE("SetMetadata " label " err"))

constexpr ReadMessages WriteMessage(Format failed) { return {failed, kNoMessage}; }

// ---- Line ids ------------------------------------------------------------
// The id of a check that cannot fail or a message the style does not have.
inline constexpr int kNoLine = 0;

// Line ids of an operation's messages, by the check that reports them.
struct Lines {
  int arg;     // the arguments were refused
  int camera;  // static reads: the request names no camera
  int lookup;  // the lookup failed (writes: the write failed)
  int noData;  // the entry gave no data
};
// Reads and the unsupported forms: argument, lookup, no data.
constexpr Lines ReadLines(int arg, int lookup = kNoLine, int noData = kNoLine) {
  return {arg, kNoLine, lookup, noData};
}
// Static reads: argument, camera, lookup, no data.
constexpr Lines StaticLines(int arg, int camera, int lookup, int noData = kNoLine) {
  return {arg, camera, lookup, noData};
}
// Writes: argument, failed write.
constexpr Lines WriteLines(int arg, int failed) { return {arg, kNoLine, failed, kNoLine}; }

// ---- Rows ----------------------------------------------------------------
// What a read refuses before it looks at the metadata, and what it says then.
struct ArgCheck {
  Format message;
  bool needsContainer;  // an empty container is refused like a null output
};
inline constexpr ArgCheck kOutputChecked{kArgErr, false};
inline constexpr ArgCheck kOutputAndContainerChecked{kArgErr, true};

// One tag an operation reads or writes, and what it reports about it.
struct Access {
  TagRef tag;
  Elements elements;
  ReadMessages messages;
  Lines lines;
  Level level = Level::kVerbose;
};

inline constexpr Access kNoAccess{kNoTag, kNoElements, kNoMessages, {kNoLine, kNoLine, kNoLine, kNoLine}};

enum class Skeleton : uint8_t {
  kRead,                // copy the entry's elements
  kConvert,             // convert the first element
  kReadWith,            // hand the elements to the operation's own store
  kStaticRead,          // copy from the static metadata of the request's camera
  kNotSupported,        // form A: only the output pointer is looked at
  kNotSupportedRecord,  // form B: a record and a container are both expected
  kStub,                // does nothing on this platform
  kWrite,               // write the caller's values
  kCustom,              // written by hand, from the row's accesses
};

// What an operation dereferences without testing it first.
enum Needs : uint8_t {
  kNeedsNothing = 0,
  kNeedsRequest = 1,  // a non-null request container
  kNeedsOutput = 2,   // real outputs
};

inline constexpr size_t kMaxAccesses = 3;

struct Row {
  int slot;
  const char* name;
  Skeleton skeleton;
  // The operation's tags: the first is its own; hand-written operations
  // that read several list the others after it.
  Access access[kMaxAccesses];
  Level argLevel;
  ArgCheck argCheck;
  uint32_t outputs;     // values of the output type the operation writes
  uint8_t needs;        // Needs bits
  bool nonZeroSuccess;  // GetBokehCapabilityInfo: a non-zero result is success

  constexpr const Access& main() const { return access[0]; }
};

// Row options, given after a row's fixed fields.
struct MessageLevel {
  Level level;
};
struct ArgLevel {
  Level level;
};
struct Outputs {
  uint32_t count;
};
struct Untested {
  uint8_t needs;
};
struct NonZeroSuccess {};
// A further tag of a hand-written operation.
struct AlsoReads {
  Access access;
};
constexpr AlsoReads Also(TagRef tag, Elements elements, ReadMessages messages, Lines lines,
                         Level level = Level::kVerbose) {
  return {{tag, elements, messages, lines, level}};
}

constexpr void Apply(Row& row, MessageLevel option) { row.access[0].level = option.level; }
constexpr void Apply(Row& row, ArgLevel option) { row.argLevel = option.level; }
constexpr void Apply(Row& row, ArgCheck option) { row.argCheck = option; }
constexpr void Apply(Row& row, Outputs option) { row.outputs = option.count; }
constexpr void Apply(Row& row, Untested option) { row.needs = option.needs; }
constexpr void Apply(Row& row, NonZeroSuccess) { row.nonZeroSuccess = true; }
constexpr void Apply(Row& row, AlsoReads option) {
  size_t free = 1;
  while (free < kMaxAccesses && HasTag(row.access[free].tag)) ++free;
  if (free < kMaxAccesses) row.access[free] = option.access;
}

// The output an operation's signature hands it: the pointee of its second
// parameter, or void when it has none.
template <typename Method>
struct OutputOf {
  using type = void;
};
template <typename C, typename R, typename Subject, typename Out, typename... Extra>
struct OutputOf<R (C::*)(Subject, Out*, Extra...)> {
  using type = Out;
};

template <typename Out>
constexpr size_t SizeOf() {
  if constexpr (std::is_void_v<Out>) {
    return 0;
  } else {
    return sizeof(Out);
  }
}

// A record's element count follows from its size; the output count follows
// from what is copied (a single scalar read wider than its element, such as a
// byte enum read into an unsigned int, is still one output).
template <typename Out>
constexpr Elements Resolved(Elements elements) {
  if (elements.count == kRecord)
    elements.count = static_cast<uint32_t>(SizeOf<Out>() / ElementSize(elements.type));
  return elements;
}

template <typename Out>
constexpr uint32_t OutputsOf(const Elements& elements) {
  constexpr size_t kOut = SizeOf<Out>();
  if (kOut == 0 || elements.type == kNoType || elements.count == kWholeEntry) return 1;
  const size_t copied = elements.count * ElementSize(elements.type) / kOut;
  return copied > 1 ? static_cast<uint32_t>(copied) : 1;
}

template <auto Method, typename... Options>
constexpr Row MakeRow(int slot, const char* name, Skeleton skeleton, Access access, Options... options) {
  using Out = typename OutputOf<decltype(Method)>::type;
  access.elements = Resolved<Out>(access.elements);
  // Copies write what they copy; every other operation one value unless its
  // row says otherwise.
  const bool copies = skeleton == Skeleton::kRead || skeleton == Skeleton::kStaticRead;
  Row row{slot,
          name,
          skeleton,
          {access, kNoAccess, kNoAccess},
          Level::kError,
          kOutputChecked,
          copies ? OutputsOf<Out>(access.elements) : 1,
          kNeedsNothing,
          false};
  (Apply(row, options), ...);
  return row;
}

// The operation of a helper class with this name and parameter list, as a
// pointer to member: the parameter list tells overloads apart.
#define MH_METHOD(Class, name, params) static_cast<int(Class::*) params>(&Class::name)

// ---- Line ids unique by construction ---------------------------------------
// Every message of a source file: its line id and its text. Two messages of
// one file may share an id only when they are the same message.
struct LineText {
  int line;
  const char* text;
};

constexpr bool SameText(const char* a, const char* b) {
  if (a == nullptr || b == nullptr) return a == b;
  while (*a != '\0' && *a == *b) {
    ++a;
    ++b;
  }
  return *a == *b;
}

// The messages a row can report, with their ids (kNoLine where none).
constexpr size_t kMessagesPerRow = 4 * kMaxAccesses;
struct RowMessages {
  LineText messages[kMessagesPerRow];
};

constexpr RowMessages MessagesOf(const Row& row) {
  RowMessages out{};
  size_t next = 0;
  const auto add = [&](int line, const char* text) { out.messages[next++] = {line, text}; };
  for (const Access& access : row.access) {
    add(access.lines.lookup, access.messages.lookupFailed.text);
    add(access.lines.noData, access.messages.noData.text);
    add(access.lines.camera, kFwkCameraIdFail.text);
  }
  add(row.main().lines.arg, row.argCheck.message.text);
  return out;
}

// A line id given where the style has no message to report with it would
// take an id some other message may use.
constexpr bool EveryLineHasItsMessage(const Row& row) {
  for (const Access& access : row.access) {
    if (access.lines.noData != kNoLine && access.messages.noData.text == nullptr) return false;
    if (access.lines.lookup != kNoLine && access.messages.lookupFailed.text == nullptr) return false;
  }
  return true;
}

template <size_t RowCount, size_t FreeCount>
constexpr bool LineIdsUnique(const Row (&rows)[RowCount], const LineText (&free)[FreeCount]) {
  // Collected first, then compared pairwise.
  LineText all[RowCount * kMessagesPerRow + FreeCount]{};
  size_t count = 0;
  for (const Row& row : rows) {
    if (!EveryLineHasItsMessage(row)) return false;
    for (const LineText& message : MessagesOf(row).messages) {
      if (message.line != kNoLine && message.text != nullptr) all[count++] = message;
    }
  }
  for (const LineText& message : free) all[count++] = message;
  for (size_t i = 0; i < count; ++i) {
    for (size_t j = i + 1; j < count; ++j) {
      if (all[i].line == all[j].line && !SameText(all[i].text, all[j].text)) return false;
    }
  }
  return true;
}

// Not constexpr: a table without the slot asked for stops the build.
[[noreturn]] inline const Row& NoSuchSlot() { std::abort(); }

// The row of a slot.
template <size_t Count>
constexpr const Row& RowOf(const Row (&rows)[Count], int slot) {
  for (const Row& row : rows) {
    if (row.slot == slot) return row;
  }
  return NoSuchSlot();
}

// ---- Messages of hand-written code ----------------------------------------
// A message the hand-written code of a file reports, with its level and line
// id; each file lists all of its own, so that their ids are checked with
// the rows' ones.
struct Message {
  Level level;
  int line;
  Format format;
  uint32_t group = logging::kHelperGroup;
};

// A file's list of messages is an X-macro of rows
//   X(name, group, level, line id, text)
// declared with MH_DECLARE_MESSAGE and listed for the check with MH_LIST_MESSAGE.
inline constexpr uint32_t kHelper = logging::kHelperGroup;
inline constexpr uint32_t kIsp = logging::kIspGroup;
#define MH_DECLARE_MESSAGE(name, group, level, line, text)                                   \
  constexpr ::metahelper::ops::Message name{::metahelper::ops::level, line, MH_FORMAT(text), \
                                            ::metahelper::ops::group};
#define MH_LIST_MESSAGE(name, group, level, line, text) ::metahelper::ops::LineText{line, text},

// Whether a text prints as it stands: no printf conversion in it.
constexpr bool HasNoConversion(const char* text) {
  for (; *text != '\0'; ++text) {
    if (*text == '%') return false;
  }
  return true;
}

// MH_SAY(kMessage, args...): reports a file's message from the calling
// function; the compiler checks the arguments against the text.
#define MH_SAY(message, ...) MH_SAY_AS(__func__, message, ##__VA_ARGS__)
#define MH_SAY_AS(function, message, ...)                                                              \
  do {                                                                                                 \
    __VA_OPT__(if (false)::metahelper::logging::CheckFormat((message).format.text, __VA_ARGS__);)      \
    static_assert(__VA_OPT__(true ||)::metahelper::ops::HasNoConversion((message).format.text),       \
                  "a message with conversions needs its arguments");                                   \
    static constexpr ::metahelper::logging::Site kMhSite{kSourceFile, function};                      \
    ::metahelper::logging::Emit((message).level, (message).group, kMhSite, (message).line, (message).format, \
                                ##__VA_ARGS__);                                                        \
  } while (0)

// The site of the calling operation in its source file; its rows are
// expanded from the table, whose own name __FILE__ would give.
#define MH_SITE                                                                  \
  (*({                                                                           \
    static constexpr ::metahelper::logging::Site kMhHere{kSourceFile, __func__}; \
    &kMhHere;                                                                    \
  }))

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
// The entry holds fewer elements than the operation relies on.
inline constexpr int kShortEntry = 2;

MH_ALWAYS_INLINE bool IsShort(size_t count, uint32_t needed) { return needed > 1 && count < needed; }

// The core read's common path, inline: the same lookup GetMetaData makes,
// and an absent entry reported as it reports one. Anything else (no
// container, no tag, an undeclared index) is left to GetMetaData. The
// operation's own parameter keeps the container alive, so unlike
// GetMetaData this takes no further reference.
MH_ALWAYS_INLINE int FindQuickly(const MetaPtr& meta, const TagRef& tag, uint32_t needed, const void** data,
                                 uint32_t* count) {
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
  if (IsShort(entry.count, needed)) return kShortEntry;
  if (count != nullptr) *count = static_cast<uint32_t>(entry.count);
  *data = entry.data.u8;
  return 0;
}

// A short entry gives no data: the access's no-data message, or its one
// message where it has only one.
__attribute__((noinline, cold)) inline int RefuseShortEntry(const Site& site, const Access& access) {
  if (access.messages.noData.text != nullptr)
    Report(access.level, site, access.lines.noData, access.messages.noData);
  else
    Report(access.level, site, access.lines.lookup, access.messages.lookupFailed);
  return -1;
}

// A read the inline path could not settle: GetMetaData, then the access's
// messages. Out of line, so the common path keeps few registers.
__attribute__((noinline, cold)) inline int FinishRead(metadataHelperBase& helper, const Site& site,
                                                      const Access& access, const MetaPtr& meta,
                                                      const void** data, uint32_t* count) {
  void* found = nullptr;
  uint32_t held = 0;
  const TagRef& tag = access.tag;
  const int result = helper.GetMetaData(meta, tag.name, tag.index, tag.number, &found, &held);
  if (result != 0) {
    Report(access.level, site, access.lines.lookup, access.messages.lookupFailed);
    return result;
  }
  if (found == nullptr) {
    if (access.messages.noData.text != nullptr)
      Report(access.level, site, access.lines.noData, access.messages.noData);
    return -1;
  }
  if (IsShort(held, access.elements.count)) return RefuseShortEntry(site, access);
  if (count != nullptr) *count = held;
  *data = found;
  return 0;
}

// Resolves and reads the tag; on failure logs the access's message and
// returns the failure, on success stores the element pointer. The container
// is taken by reference: the data points into it, so the caller's reference
// must outlive every use of the data.
MH_ALWAYS_INLINE int ReadTag(metadataHelperBase& helper, const Site& site, const Access& access,
                             const MetaPtr& meta, const void** data, uint32_t* count = nullptr) {
  const int result = FindQuickly(meta, access.tag, access.elements.count, data, count);
  if (__builtin_expect(result == 0, true)) return 0;
  if (result == kShortEntry) return RefuseShortEntry(site, access);
  if (result != kNeedsCoreRead) {
    Report(access.level, site, access.lines.lookup, access.messages.lookupFailed);
    return result;
  }
  return FinishRead(helper, site, access, meta, data, count);
}

// Reports a refused argument the way the row says; always -1.
inline int RefuseArgument(const Site& site, const Row& row) {
  Report(row.argLevel, site, row.main().lines.arg, row.argCheck.message);
  return -1;
}

// The standard read: check the arguments, read, hand the data to `store`.
// The operation's own by-value parameter keeps the container alive for the
// whole call, so the skeletons borrow it: moving it in would only add a
// release on the path of every read.
template <typename Out, typename Store>
MH_ALWAYS_INLINE int ReadWith(metadataHelperBase& helper, const Site& site, const Row& row,
                              const MetaPtr& meta, Out* out, Store store) {
  if (out == nullptr || (row.argCheck.needsContainer && !meta)) return RefuseArgument(site, row);
  const void* data;  // set by a successful read, the only one that uses it
  const int result = ReadTag(helper, site, row.main(), meta, &data);
  if (result != 0) return result;
  store(data, out);
  return 0;
}

// Copies the row's outputs from the tag's data as it stands.
template <typename Out>
MH_ALWAYS_INLINE int ReadCopy(metadataHelperBase& helper, const Site& site, const Row& row,
                              const MetaPtr& meta, Out* out) {
  const size_t bytes = row.outputs * SizeOf<Out>();
  return ReadWith(helper, site, row, meta, out,
                  [bytes](const void* data, Out* target) { std::memcpy(target, data, bytes); });
}

// Converts the first element, read as the row's element type, into the output.
template <uint8_t Type, typename Out, typename Convert>
MH_ALWAYS_INLINE int ReadConverted(metadataHelperBase& helper, const Site& site, const Row& row,
                                   const MetaPtr& meta, Out* out, Convert convert) {
  using Stored = typename CTypeOf<Type>::type;
  return ReadWith(helper, site, row, meta, out,
                  [&convert](const void* data, Out* target) { *target = convert(Element<Stored>(data)); });
}

// Per-camera values: the request names the camera, its static metadata holds
// the value. The camera id comes through the virtual GetFwkCameraId so that an
// override changes every static read.
template <typename Out>
int ReadStaticCopy(metadataHelperBase& helper, const Site& site, const Row& row, MetaPtr meta, Out* out) {
  const Access& access = row.main();
  if (MissingOutput(out, site, access.lines.arg)) return -1;
  int cameraId = -1;
  const int idResult = helper.GetFwkCameraId(std::move(meta), &cameraId);
  if (idResult != 0) {
    Report(access.level, site, access.lines.camera, kFwkCameraIdFail);
    return idResult;
  }
  MetaPtr staticMeta = StaticMetaOf(cameraId);
  const void* data = nullptr;
  const int result = ReadTag(helper, site, access, staticMeta, &data);
  if (result != 0) return result;
  std::memcpy(out, data, row.outputs * sizeof(Out));
  return 0;
}

// Row-major 3 x 3 rationals, as many as the access relies on; an absent or
// short entry gets the access's one message. A zero denominator is repaired
// to 1 in the metadata itself, so later readers of the same request never
// divide by zero.
inline int ReadColorTransform(const Site& site, const Access& access, const NvMetadata& meta, float* out) {
  const camera_metadata_ro_entry entry = meta.find(access.tag.number);
  if (entry.count < access.elements.count) {
    Report(access.level, site, access.lines.lookup, access.messages.lookupFailed);
    return -1;
  }
  auto* matrix = const_cast<camera_metadata_rational*>(entry.data.r);
  for (uint32_t i = 0; i < access.elements.count; ++i) {
    if (matrix[i].denominator == 0) matrix[i].denominator = 1;
    out[i] = static_cast<float>(matrix[i].numerator) / static_cast<float>(matrix[i].denominator);
  }
  return 0;
}

// Not supported, form A: only the output pointer is looked at.
inline int NotSupported(const Site& site, const Row& row, const void* out) {
  MissingOutput(out, site, row.main().lines.arg);
  return -1;
}

// Not supported, form B: a record and a container are both expected.
inline int NotSupported(const Site& site, const Row& row, const void* record, const MetaPtr& meta) {
  if (record == nullptr || !meta) Report(Level::kError, site, row.main().lines.arg, kArgErr);
  return -1;
}

// The result of an operation that does nothing on this platform.
inline constexpr int kStub = -1;

// Setters: check, write `count` elements, report a failed write, pass the
// write's own result through.
template <typename T>
int Write(metadataHelperBase& helper, const Site& site, const Row& row, MetaPtr meta, T* values,
          uint32_t count) {
  const Access& access = row.main();
  if (values == nullptr || (row.argCheck.needsContainer && !meta)) {
    Report(row.argLevel, site, access.lines.arg, kArgErr);
    return -1;
  }
  const TagRef& tag = access.tag;
  const int result = helper.SetMetaData<T>(std::move(meta), tag.name, tag.index, tag.number, values, count);
  if (result != 0) Report(access.level, site, access.lines.lookup, access.messages.lookupFailed);
  return result;
}

}  // namespace metahelper::ops
