// Every row of both helpers' operation tables, swept over the states its
// skeleton tells apart, with expectations taken from the row itself; a few
// literal texts check the tables themselves against what callers see.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <tuple>
#include <vector>

#include "MtkMetadataHelper.h"
#include "TestSupport.h"
#include "common/BaseRows.h"
#include "mtk/MtkRows.h"

namespace {

using namespace metahelper;       // NOLINT(google-build-using-namespace)
using namespace metahelper::ops;  // NOLINT(google-build-using-namespace): the rows read as tables
using testsupport::NewMeta;
using Bytes = std::vector<uint8_t>;
using Log = std::vector<std::string>;

constexpr int kCamera = testsupport::kFullCamera;  // every int argument, the camera of static reads
constexpr int kWriteCount = 3;                     // values an array write is given
constexpr uint8_t kCanary = 0xA5;                  // fills output storage before each call
constexpr size_t kSlack = 32;                      // canary bytes past the output
constexpr size_t kRoom = 4096;                     // output storage of hand-written operations

// An array write is given kWriteCount values from the buffer, a by-value one its one value.
enum class Form : uint8_t { kAny, kArray, kByValue };

// The request is the first container, the buffer (output, or a write's input)
// the first pointer; others are fresh containers, scratch storage, plausible values.
template <typename T, Form kForm>
T Argument(size_t position, size_t firstPointer, const MetaPtr& request, void* buffer) {
  alignas(16) static unsigned char scratch[kRoom];
  if constexpr (std::is_same_v<T, MetaPtr>) {
    return position == 0 ? request : NewMeta();
  } else if constexpr (kForm == Form::kByValue) {
    T value;
    std::memcpy(&value, buffer, sizeof value);
    return value;
  } else if constexpr (std::is_pointer_v<T>) {
    using Pointee = std::remove_pointer_t<T>;
    if constexpr (!std::is_void_v<Pointee> && !std::is_trivially_copyable_v<Pointee>) {
      static Pointee object;  // a string: no raw storage
      return buffer != nullptr ? &object : nullptr;
    } else {
      return static_cast<T>(position == firstPointer ? buffer : buffer != nullptr ? scratch : nullptr);
    }
  } else if constexpr (std::is_same_v<T, int>) {
    return kForm == Form::kArray ? kWriteCount : kCamera;
  } else if constexpr (std::is_same_v<T, nvholder::dimension>) {
    return {4000, 3000};
  } else if constexpr (std::is_same_v<T, nvholder::NULSCMapSize>) {
    return {2, 2};
  } else {
    return T{};
  }
}

struct Entry {
  int (*call)(metadataHelperBase&, MetaPtr, void*);
  size_t unit;         // bytes of one value the buffer holds
  uint32_t values;     // values a write is given
  bool pointerOutput;  // the operation takes a pointer
};

template <typename... P>
constexpr size_t FirstPointer() {
  constexpr bool kPointers[] = {std::is_pointer_v<P>..., true};
  size_t i = 0;
  while (!kPointers[i]) ++i;
  return i;
}

template <Form kForm, typename C, typename R, typename... P, size_t... I>
int CallWith(R (C::*method)(P...), metadataHelperBase& helper, const MetaPtr& request, void* buffer,
             std::index_sequence<I...>) {
  std::tuple<std::decay_t<P>...> args{
      Argument<std::decay_t<P>, kForm>(I, FirstPointer<P...>(), request, buffer)...};
  return static_cast<int>((static_cast<C&>(helper).*method)(std::get<I>(args)...));
}

template <auto Method, Form kForm, typename C, typename R, typename... P>
constexpr Entry Describe(R (C::*)(P...)) {
  decltype(Entry::call) call = [](metadataHelperBase& helper, MetaPtr request, void* buffer) {
    return CallWith<kForm>(Method, helper, request, buffer, std::index_sequence_for<P...>{});
  };
  if constexpr (kForm == Form::kByValue) {
    return {call, sizeof(std::tuple_element_t<1, std::tuple<P...>>), 1, false};
  } else {
    using Out = typename OutputOf<R (C::*)(P...)>::type;
    return {call, SizeOf<Out>(), kForm == Form::kArray ? kWriteCount : 1u,
            FirstPointer<P...>() < sizeof...(P)};
  }
}

// The tables' forms as entries; array and by-value writes take their values differently.
#include "common/RowForms.h"
#undef MH_ROW
#undef MH_WRITE_ARRAY
#undef MH_WRITE_BY_VALUE
#undef MH_QUERY
#define SWEEP_MAKE(method, form) Describe<method, form>(method),
#define SWEEP_ENTRY(form, slot, name, params, ...) \
  SWEEP_MAKE(MH_METHOD(SWEEP_CLASS, name, params), Form::form)
#define MH_ROW(skeleton, ...) SWEEP_ENTRY(kAny, __VA_ARGS__)
#define MH_WRITE_ARRAY(...) SWEEP_ENTRY(kArray, __VA_ARGS__)
#define MH_WRITE_BY_VALUE(...) SWEEP_ENTRY(kByValue, __VA_ARGS__)
#define MH_QUERY(slot, name, params) \
  SWEEP_MAKE(static_cast<bool(SWEEP_CLASS::*) params>(&SWEEP_CLASS::name), Form::kAny)
#define SWEEP_CLASS metadataHelperBase
constexpr Entry kBaseEntries[] = {
#include "common/BaseOperations.def"
};
#undef SWEEP_CLASS
#define SWEEP_CLASS MtkMetadataHelper
constexpr Entry kMtkEntries[] = {
#include "mtk/MtkOperations.def"
};
#undef SWEEP_CLASS

metadataHelperBase gGeneric;
MtkMetadataHelper gMtk;
struct Helper {
  const char* name;  // its operations report from name.cpp
  const Row* rows;
  const Entry* entries;
  size_t count;
  metadataHelperBase* object;
};
const Helper kHelpers[] = {
    {"metadataHelperBase", kBaseRows, kBaseEntries, std::size(kBaseEntries), &gGeneric},
    {"MtkMetadataHelper", kMtkRows, kMtkEntries, std::size(kMtkEntries), &gMtk},
};
void PrintTo(const Helper& helper, std::ostream* os) { *os << helper.name; }
static_assert(std::size(kBaseEntries) == std::size(kBaseRows) &&
              std::size(kMtkEntries) == std::size(kMtkRows));

uint32_t TagOf(const TagRef& tag) {
  unsigned number = tag.number;
  if (tag.index != META_NO_INDEX) return MetaTagWrapper::getInstance()(tag.index);
  if (tag.name != nullptr && NvMetadata::getTagFromName(tag.name, &number) != 0) ADD_FAILURE() << tag.name;
  return number;
}
uint32_t Needed(const Access& access) { return std::max<uint32_t>(access.elements.count, 1); }

// Bytes that are neither zero nor the canary, and differ by seed.
Bytes Pattern(size_t size, int seed = 0) {
  Bytes bytes(size);
  for (size_t i = 0; i < size; ++i) bytes[i] = static_cast<uint8_t>(1 + (i + seed) % 61);
  return bytes;
}
Bytes Pattern(const Access& access, uint32_t count, int seed = 0) {
  return Pattern(count * ElementSize(access.elements.type), seed);
}
// The row's element type must be the tag's registered one.
void Store(NvMetadata& meta, const Access& access, const Bytes& bytes) {
  const uint32_t tag = TagOf(access.tag);
  ASSERT_EQ(access.elements.type, NvMetadata::getTagType(tag)) << "tag 0x" << std::hex << tag;
  ASSERT_EQ(0, meta.update(tag, static_cast<const void*>(bytes.data()),
                           bytes.size() / ElementSize(access.elements.type)));
}

std::string Record(char level, const std::string& file, int line, const std::string& function,
                   const std::string& text) {
  return std::string(1, level) + " " + file + ":" + std::to_string(line) + " " + function + " " + text;
}
const char kCoreFile[] = "metadataHelperBase.cpp";
const std::string kCoreNoData = Record('V', kCoreFile, 36, "GetMetaData", R"("GetMetadata err")");
const std::string kCoreNoContainer = Record('E', kCoreFile, 13, "GetMetaData", R"("pArg is null")");
const std::string kWriteNoContainer = Record('E', kCoreFile, 48, "SetMetaData", R"("pArg is null")");
std::string Undeclared(const Row& row) {
  const bool writes = row.skeleton == Skeleton::kWrite;
  return Record('E', kCoreFile, writes ? 57 : 23, writes ? "SetMetaData" : "GetMetaData",
                "metadata not declared, tagindex " + std::to_string(row.main().tag.index));
}

std::string Said(const Helper& h, const Row& row, Level level, int line, const Format& format) {
  return Record("EWIDV"[static_cast<int>(level)], std::string(h.name) + ".cpp", line, row.name, format.text);
}
std::string Arg(const Helper& h, const Row& row) {
  return Said(h, row, row.argLevel, row.main().lines.arg, row.argCheck.message);
}
std::string Lookup(const Helper& h, const Row& row) {
  return Said(h, row, row.main().level, row.main().lines.lookup, row.main().messages.lookupFailed);
}
// A style with one message reports it for a short entry too.
std::string NoData(const Helper& h, const Row& row) {
  const Access& a = row.main();
  if (a.messages.noData.text == nullptr) return Lookup(h, row);
  return Said(h, row, a.level, a.lines.noData, a.messages.noData);
}
// Static reads ask the generic GetFwkCameraId (no helper overrides it) first.
Log NoCamera(const Helper& h, const Row& row, const std::string& first) {
  return {first, Lookup(kHelpers[0], BaseRow(71)),
          Said(h, row, row.main().level, row.main().lines.camera, kFwkCameraIdFail)};
}

// clang-format off
enum class State { kPresent, kLonger, kAbsent, kZeroCount, kShort, kUndeclared, kNullOutput, kNullContainer,
                   kNoCamera, kNoStatic };
const char* const kStateNames[] = {"present", "one element more", "absent", "zero count", "one short",
                                   "undeclared index", "null output", "no container", "no camera",
                                   "no static metadata"};
// clang-format on

uint32_t CountIn(State state, uint32_t needed) {
  if (state == State::kLonger) return needed + 1;
  if (state == State::kShort) return needed - 1;
  return state == State::kZeroCount ? 0 : needed;
}
bool IsStatic(const Row& row) { return row.skeleton == Skeleton::kStaticRead; }
bool IsRead(const Row& row) {
  const Skeleton s = row.skeleton;
  return s == Skeleton::kRead || s == Skeleton::kConvert || s == Skeleton::kReadWith || IsStatic(row);
}

// What each skeleton says in each state.
Log Expected(const Helper& h, const Row& row, State state) {
  const Skeleton skeleton = row.skeleton;
  if (skeleton == Skeleton::kStub) return {};
  if (skeleton == Skeleton::kNotSupported)  // form A looks only at the output
    return state == State::kNullOutput ? Log{Arg(h, row)} : Log{};
  if (skeleton == Skeleton::kNotSupportedRecord)  // form B at the record and the container
    return state == State::kPresent ? Log{} : Log{Arg(h, row)};
  if (skeleton == Skeleton::kCustom)  // their row's short-entry rule, and their refusals
    return {state == State::kShort ? NoData(h, row) : Arg(h, row)};
  const bool writes = skeleton == Skeleton::kWrite;
  if (state == State::kPresent || state == State::kLonger) return {};
  if (state == State::kAbsent || state == State::kZeroCount) return {kCoreNoData, Lookup(h, row)};
  if (state == State::kShort) return {NoData(h, row)};
  if (state == State::kUndeclared && writes) return {Undeclared(row), Lookup(h, row)};
  if (state == State::kUndeclared) return {Undeclared(row), kCoreNoData, Lookup(h, row)};
  if (state == State::kNoCamera) return NoCamera(h, row, kCoreNoData);
  if (state == State::kNoStatic) return {kCoreNoContainer, Lookup(h, row)};
  if (state == State::kNullContainer && IsStatic(row)) return NoCamera(h, row, kCoreNoContainer);
  if (state == State::kNullContainer && !row.argCheck.needsContainer)
    return {writes ? kWriteNoContainer : kCoreNoContainer, Lookup(h, row)};
  return {Arg(h, row)};
}

// Whether the row's skeleton tells the state apart.
bool Applies(const Row& row, const Entry& entry, State state) {
  const Access& a = row.main();
  const bool custom = row.skeleton == Skeleton::kCustom, writes = row.skeleton == Skeleton::kWrite;
  if (state == State::kPresent) return !custom;
  if (state == State::kLonger || state == State::kAbsent || state == State::kZeroCount) return IsRead(row);
  if (state == State::kShort) return (IsRead(row) || custom) && Needed(a) > 1;
  if (state == State::kUndeclared) return (IsRead(row) || writes) && a.tag.index != META_NO_INDEX;
  if (state == State::kNullOutput && custom)
    return entry.pointerOutput && a.lines.arg != kNoLine && (row.needs & kNeedsOutput) == 0;
  if (state == State::kNullOutput) return !writes || entry.pointerOutput;
  if (state == State::kNullContainer) return !custom || row.argCheck.needsContainer;
  return IsStatic(row);  // no camera, no static metadata
}

// One message per skeleton and state family exactly as callers see it.
using Literal = std::tuple<const char*, int, State, Log>;  // helper, slot, state, log
// clang-format off
const Literal kLiterals[] = {
  {"metadataHelperBase", 4, State::kAbsent, {R"(V metadataHelperBase.cpp:36 GetMetaData "GetMetadata err")", R"(V metadataHelperBase.cpp:94 GetSensorExposureTime "GetMetadata ANDROID_SENSOR_EXPOSURE_TIME err")"}},
  {"metadataHelperBase", 76, State::kShort, {R"(W metadataHelperBase.cpp:1116 GetFacetargetAndConfidence "get metadata faceBright err")"}},
  {"metadataHelperBase", 14, State::kNullOutput, {R"(V metadataHelperBase.cpp:267 GetIsPzslDisplayMode "arg err")"}},
  {"metadataHelperBase", 185, State::kNullContainer, {R"(E metadataHelperBase.cpp:2245 GetMacroMode "meta is null")"}},
  {"metadataHelperBase", 162, State::kNullOutput, {R"(E metadataHelperBase.cpp:2026 GetNuvaroFlipEnable "flip is null!")"}},
  {"metadataHelperBase", 106, State::kNoCamera, {R"(V metadataHelperBase.cpp:36 GetMetaData "GetMetadata err")", R"(V metadataHelperBase.cpp:2348 GetFwkCameraId "GetMetadata nuvaro.snapshot.fwkCameraId err")", R"(V metadataHelperBase.cpp:1576 GetSensorBayerPatten "GetMetadata FwkCameraId fail")"}},
  {"metadataHelperBase", 7, State::kNullOutput, {R"(E metadataHelperBase.cpp:182 GetUIEV "arg err")"}},
  {"metadataHelperBase", 57, State::kUndeclared, {"E metadataHelperBase.cpp:57 SetMetaData metadata not declared, tagindex " + std::to_string(META_AWB_HAZE_RATIO), R"(V metadataHelperBase.cpp:2339 SetHazeratio "SetMetadata com.nuvaro.3AAlgo.awbHazeRatio err")"}},
  {"metadataHelperBase", 18, State::kShort, {"I metadataHelperBase.cpp:354 GetColorCorrectionTransform get ccm fail"}},
  {"MtkMetadataHelper", 7, State::kAbsent, {R"(V metadataHelperBase.cpp:36 GetMetaData "GetMetadata err")", R"(W MtkMetadataHelper.cpp:141 GetUIEV "GetMetadata nuvaro.supernight.real.manualev err")"}},
  {"MtkMetadataHelper", 135, State::kNoStatic, {R"(E metadataHelperBase.cpp:13 GetMetaData "pArg is null")", R"(W MtkMetadataHelper.cpp:2702 GetSensorViewAngle "GetMetadata ViewAngle err")"}},
  {"MtkMetadataHelper", 183, State::kNullContainer, {R"(E metadataHelperBase.cpp:48 SetMetaData "pArg is null")", R"(W MtkMetadataHelper.cpp:3661 SetAnchorFrameIndex "SetMetadata MTK_MFNR_FEATURE_BSS_GOLDEN_INDEX err")"}},
};
// clang-format on

class RowSweep : public ::testing::TestWithParam<Helper> {
 protected:
  void TearDown() override { Reset(); }
  static void Reset() {
    MetaTagWrapper::getInstance().resetTags();
    StaticMetadataWraper::getInstance()->clear();
  }
  const Helper& H() const { return GetParam(); }
  std::string Where(const Row& row, const std::string& state) const {
    return std::string(H().name) + " slot " + std::to_string(row.slot) + " " + row.name + ", " + state;
  }
  int Call(const Entry& entry, MetaPtr meta, Bytes* buffer) {
    log.Clear();
    return entry.call(*H().object, std::move(meta), buffer != nullptr ? buffer->data() : nullptr);
  }

  // Each of the row's tags, its own in the state's count; static reads find them
  // in the camera's static metadata, with another value in the request as a decoy.
  static void Fill(const Row& row, State state, const MetaPtr& request) {
    const MetaPtr holder = IsStatic(row) ? NewMeta() : request;
    for (size_t i = kMaxAccesses; i-- > 0;) {  // the row's own tag last: it may repeat
      const Access& access = row.access[i];
      if (HasTag(access.tag) && (i > 0 || state != State::kAbsent))
        Store(*holder, access, Pattern(access, i > 0 ? Needed(access) : CountIn(state, Needed(access))));
    }
    if (!IsStatic(row)) return;
    Store(*request, row.main(), Pattern(row.main(), Needed(row.main()), 7));
    if (state != State::kNoCamera)
      testsupport::Put(*request, META_FWK_CAMERA_ID, std::vector<int32_t>{kCamera});
    if (state != State::kNoStatic) StaticMetadataWraper::getInstance()->setStaticMetadata(kCamera, holder);
  }

  // One state of one row: its result, log and what it wrote. Hand-written
  // operations may write on a failure: only their result and log count.
  void Sweep(const Row& row, const Entry& entry, State state) {
    SCOPED_TRACE(Where(row, kStateNames[static_cast<int>(state)]));
    const Access& a = row.main();
    const bool writes = row.skeleton == Skeleton::kWrite, custom = row.skeleton == Skeleton::kCustom;
    const MetaPtr request = state == State::kNullContainer ? nullptr : NewMeta();
    if (request != nullptr && !writes) Fill(row, state, request);
    if (state == State::kUndeclared)
      MetaTagWrapper::getInstance().setTag(a.tag.index, MetaTagWrapper::kUndeclared);
    const size_t outputBytes = row.outputs * entry.unit;
    Bytes buffer = writes ? Pattern(entry.values * entry.unit, row.slot)
                          : Bytes(custom ? std::max(kRoom, outputBytes) : outputBytes + kSlack, kCanary);
    const Bytes before = buffer;
    const int result = Call(entry, request, state == State::kNullOutput ? nullptr : &buffer);
    Reset();
    Log taken;
    for (const testsupport::LogLine& l : log.offline)
      taken.push_back(Record(l.level, l.file, l.line, l.function, l.text));
    EXPECT_EQ(Expected(H(), row, state), taken);
    for (const auto& [helper, slot, literalState, literal] : kLiterals) {
      if (helper == std::string(H().name) && slot == row.slot && literalState == state) {
        EXPECT_EQ(literal, taken) << "as callers read it";
        ++literalsChecked;
      }
    }
    if (custom) {
      EXPECT_EQ(row.nonZeroSuccess, result == 0) << "result " << result;
      return;
    }
    const bool succeeds = (IsRead(row) || writes) && (state == State::kPresent || state == State::kLonger);
    EXPECT_EQ(succeeds ? 0 : -1, result);
    // A write stores exactly its input with the row's element type; a failed one nothing.
    if (writes && succeeds) {
      const camera_metadata_ro_entry stored = request->find(TagOf(a.tag));
      EXPECT_EQ(a.elements.type, stored.type);
      EXPECT_EQ(before, Bytes(stored.data.u8, stored.data.u8 + stored.count * ElementSize(stored.type)));
    } else if (writes) {
      EXPECT_TRUE(request == nullptr || request->entryCount() == 0) << "written on a failure";
    }
    if (writes || !succeeds) {
      EXPECT_EQ(before, buffer) << "the buffer written on a failure, or a write's input changed";
      return;
    }
    // Copies hand over the stored bytes (padded with zeros), other reads write something.
    const Bytes written(buffer.begin(), buffer.end() - kSlack);
    EXPECT_EQ(Bytes(kSlack, kCanary), Bytes(buffer.end() - kSlack, buffer.end()))
        << "written past the output";
    Bytes stored = Pattern(a, CountIn(state, Needed(a)));
    stored.resize(written.size());
    if (row.skeleton == Skeleton::kRead || IsStatic(row))
      EXPECT_EQ(stored, written);
    else
      EXPECT_NE(Bytes(written.size(), kCanary), written) << "nothing written";
  }

  testsupport::LogCapture log;
  long literalsChecked = 0;
};

TEST_P(RowSweep, EveryRowInEveryStateItsSkeletonTellsApart) {
  for (size_t i = 0; i < H().count; ++i)
    for (size_t state = 0; state < std::size(kStateNames); ++state)
      if (Applies(H().rows[i], H().entries[i], State(state)))
        Sweep(H().rows[i], H().entries[i], State(state));
  const auto ofThisHelper = [this](const Literal& l) { return std::get<0>(l) == std::string(H().name); };
  EXPECT_EQ(std::count_if(std::begin(kLiterals), std::end(kLiterals), ofThisHelper), literalsChecked)
      << "a literal names a state its row does not tell apart";
}

// Every count of each of their tags, the other tags full: under the sanitizers
// a read outside an entry stops the test; no call may crash.
TEST_P(RowSweep, HandWrittenOperationsStayInsideEveryEntry) {
  testsupport::LogCapture::SetSettings(7, 0, 7, 0, 0);  // thousands of calls: both logs quiet
  for (size_t i = 0; i < H().count; ++i) {
    const Row& row = H().rows[i];
    const Entry& entry = H().entries[i];
    if (row.skeleton != Skeleton::kCustom) continue;
    Bytes out(std::max(kRoom, row.outputs * entry.unit));
    for (const Access& access : row.access) {
      if (!HasTag(access.tag)) continue;
      const MetaPtr full = testsupport::FullContainer();
      StaticMetadataWraper::getInstance()->setStaticMetadata(kCamera, full);
      std::vector<uint32_t> counts{Needed(access) - 1, Needed(access), Needed(access) + 1};
      for (uint32_t count = 0; count <= 40; ++count) counts.push_back(count);
      for (uint32_t count : counts) {
        SCOPED_TRACE(
            Where(row, NvMetadata::getTagName(TagOf(access.tag)) + (" with " + std::to_string(count))));
        Store(*full, access, testsupport::Ones(access.elements.type, count));
        Call(entry, full, &out);
        if ((row.needs & kNeedsOutput) == 0) Call(entry, full, nullptr);
      }
      full->erase(TagOf(access.tag));
      Call(entry, full, &out);
    }
    if ((row.needs & kNeedsRequest) == 0) Call(entry, nullptr, &out);
  }
}

INSTANTIATE_TEST_SUITE_P(Helpers, RowSweep, ::testing::ValuesIn(kHelpers),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
