// The operation table. Its entries come from the helper's own operation
// table (BaseOperations.def): slot, name, how many values each operation
// writes and what it dereferences untested (for either helper). The
// templates below know, from the operation's own signature, what output
// storage to give it (on the stack), which context fields its extra
// arguments come from, what a setter writes, and how to describe what it
// produced.
#include "OperationCatalog.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "ValueDescription.h"
#include "common/BaseRows.h"
#include "mtk/MtkRows.h"

namespace opcatalog {
namespace {

using metahelper::MetaPtr;
using metahelper::ops::Row;
using Helper = metahelper::metadataHelperBase;
using Call = int (*)(Helper&, const CallContext&);

// ---- What the rows say ------------------------------------------------------
// The MediaTek row's field of a slot, or `none` where the helper keeps the
// generic one. (No pointers: the sanitizers' checks of them are no
// constant expressions.)
template <typename Field>
constexpr Field MtkField(int slot, Field Row::*field, Field none) {
  for (const Row& row : metahelper::ops::kMtkRows) {
    if (row.slot == slot) return row.*field;
  }
  return none;
}

// Storage for the most values either helper writes.
constexpr uint32_t OutputsOf(int slot) {
  return std::max(metahelper::ops::BaseRow(slot).outputs, MtkField(slot, &Row::outputs, 0u));
}

// What either helper dereferences without testing it.
constexpr uint8_t NeedsOf(int slot) {
  return metahelper::ops::BaseRow(slot).needs | MtkField<uint8_t>(slot, &Row::needs, 0);
}

constexpr bool StartsWith(const char* text, const char* prefix) {
  for (; *prefix != '\0'; ++text, ++prefix) {
    if (*text != *prefix) return false;
  }
  return true;
}

// ---- What a signature says ------------------------------------------------
// Getters take (subject, output*, extra...) or (subject, output&); the
// subject is the request or a camera id.
template <typename Method>
struct Shape;
template <typename S, typename Out, typename... Extra>
struct Shape<int (Helper::*)(S, Out*, Extra...)> {
  using Subject = S;
  using Data = Out;
  static constexpr bool kByReference = false;
};
template <typename S, typename Out>
struct Shape<int (Helper::*)(S, Out&)> {
  using Subject = S;
  using Data = Out;
  static constexpr bool kByReference = true;
};

// Storage for an output; an untyped platform record gets raw 32-bit words.
template <typename T>
struct Storage {
  using Type = T;
  static constexpr size_t kMinimum = 1;
};
template <>
struct Storage<void> {
  using Type = uint32_t;
  static constexpr size_t kMinimum = 16;  // GetTuningMode's record
};

const MetaPtr& SubjectOf(const CallContext& context, const MetaPtr*) { return context.request; }
int SubjectOf(const CallContext& context, const int*) { return context.cameraId; }

// Extra arguments, from the context, by their type.
unsigned char ExtraArgument(const CallContext& context, const unsigned char*) {
  return static_cast<unsigned char>(context.index);
}
nvholder::dimension ExtraArgument(const CallContext& context, const nvholder::dimension*) {
  return context.sensorSize;
}
bool ExtraArgument(const CallContext& context, const bool*) { return context.inSensorZoom; }
int ExtraArgument(const CallContext& context, const int*) { return context.cameraId; }

// Tells the sink the produced value: one element as itself, more as an array.
template <typename T>
void Report(const CallContext& context, const T* values, size_t count) {
  if (context.sink == nullptr || context.nullOutputs) return;
  if (count == 1)
    Describe(*context.sink, nullptr, values[0]);
  else
    DescribeArray(*context.sink, nullptr, values, count);
}

// ---- Setter inputs --------------------------------------------------------
constexpr int kIso = 100;
constexpr float kIspGain = 1.5f;
constexpr float kHazeRatio = 0.25f;
constexpr int kFlagOn = 1;
constexpr unsigned char kByteOn = 1;
constexpr float kUnitGain = 1.0f;
constexpr int kWhiteLevel = 1023;
constexpr float kLensFocalLength = 4.71f;
constexpr float kEquivalentFocalLength = 26.0f;
constexpr nvholder::SnapshotReqInfo kSnapshotReqInfo{1, 4, {}};
constexpr nvholder::NUNvFDRawSnapshotParam kFdParam{};
constexpr nvholder::NUAECFrameControl kAecFrameControl{{}, 312.0f, {}};
constexpr nvholder::ChiRect kCropRegion{0, 0, 4000, 3000};
constexpr nvholder::GainmapEvInfo kGainmapEvInfo{{-2.0f, 0.0f, 2.0f}, 3};
constexpr __bokehRequestInfoList kBokehRequest{{1, 0, 1920, 1080}};
// A 2 x 2 shading map of unit gains, four channels per point.
constexpr std::array<float, 16> kShadingGains{1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
constexpr std::array<camera_metadata_rational, 3> kNeutralPoint{{{1, 2}, {1, 1}, {2, 3}}};
constexpr std::array<float, 4> kBlackLevels{64, 64, 64, 64};
constexpr std::array<unsigned char, 8> kAwbParam{1, 2, 3, 4, 5, 6, 7, 8};
constexpr std::array<unsigned char, 8> kDebugData{'m', 'f', 'n', 'r', 0, 1, 2, 3};
constexpr std::array<int, 6> kPanshotTracker{1, 0, 0, 1920, 1080, 0};
constexpr std::array<unsigned char, 4> kPanshotResult{1, 0, 0, 0};
constexpr std::string_view kZslDetail = "anchor:0";  // short enough to stay in the string itself
constexpr std::array<int, 3> kAnchorOrder{2, 0, 1};


// What each setter writes, by setter: fixed, plausible values.
template <auto Method>
inline constexpr int kInput = 0;  // every setter has its own below
template <>
inline constexpr auto kInput<&Helper::SetISO> = kIso;
template <>
inline constexpr auto kInput<&Helper::SetIspGain> = kIspGain;
template <>
inline constexpr auto kInput<&Helper::SetHazeratio> = kHazeRatio;
template <>
inline constexpr auto kInput<&Helper::SetAIToneFlag> = kFlagOn;
template <>
inline constexpr auto kInput<&Helper::SetAllinoneResult> = kFlagOn;
template <>
inline constexpr auto kInput<&Helper::SetSnapshotReqInfo> = kSnapshotReqInfo;
template <>
inline constexpr auto kInput<&Helper::SetLSC> = kShadingGains;
template <>
inline constexpr auto kInput<&Helper::SetNeutralPoint> = kNeutralPoint;
template <>
inline constexpr auto kInput<&Helper::SetBlackLevel> = kBlackLevels;
template <>
inline constexpr auto kInput<&Helper::SetPostRawGain> = kUnitGain;
template <>
inline constexpr auto kInput<&Helper::SetUseToneCurve> = kByteOn;
template <>
inline constexpr auto kInput<&Helper::SetWhitelevel> = kWhiteLevel;
template <>
inline constexpr auto kInput<&Helper::SetWhitelevelScaleFactor> = kUnitGain;
template <>
inline constexpr auto kInput<&Helper::SetAWBParam> = kAwbParam;
template <>
inline constexpr auto kInput<&Helper::SetMultiframeDebugData> = kDebugData;
template <>
inline constexpr auto kInput<&Helper::SetPanshotTruckInfo> = kPanshotTracker;
template <>
inline constexpr auto kInput<&Helper::SetPanshotResult> = kPanshotResult;
template <>
inline constexpr auto kInput<&Helper::SetFdData> = kFdParam;
template <>
inline constexpr auto kInput<&Helper::SetAECFrameControl> = kAecFrameControl;
template <>
inline constexpr auto kInput<&Helper::SetCropRegion> = kCropRegion;
template <>
inline constexpr auto kInput<&Helper::SetGainMapEvInfo> = kGainmapEvInfo;
template <>
inline constexpr auto kInput<&Helper::SetAndroidLensFocalLength> = [](const CallContext&) {
  return kLensFocalLength;
};
template <>
inline constexpr auto kInput<&Helper::SetNuvaroEquivalentFocalLength> = [](const CallContext&) {
  return kEquivalentFocalLength;
};
template <>
inline constexpr auto kInput<&Helper::SetBokehRequestInfoList> = kBokehRequest;
template <>
inline constexpr auto kInput<&Helper::SetZslSelectorInfoDetail> = kZslDetail;
template <>
inline constexpr auto kInput<&Helper::SetAnchorFrameOrder> = kAnchorOrder;
template <>
inline constexpr auto kInput<&Helper::SetAnchorFrameIndex> = [](const CallContext& context) {
  return context.index;
};

// ---- Call shapes ----------------------------------------------------------
template <typename S, typename T>
decltype(auto) OutputArgument(const CallContext& context, T* values) {
  if constexpr (S::kByReference)
    return (*values);
  else
    return context.nullOutputs ? nullptr : values;
}

template <typename Method>
struct ExtraArguments;
template <typename S, typename Out, typename... Extra>
struct ExtraArguments<int (Helper::*)(S, Out*, Extra...)> {
  static auto Of(const CallContext& context) {
    return std::make_tuple(ExtraArgument(context, static_cast<const Extra*>(nullptr))...);
  }
};
template <typename S, typename Out>
struct ExtraArguments<int (Helper::*)(S, Out&)> {
  static std::tuple<> Of(const CallContext&) { return {}; }
};

template <auto Method, size_t Count, bool NonZeroSuccess>
int Read(Helper& helper, const CallContext& context) {
  using S = Shape<decltype(Method)>;
  using Stored = Storage<typename S::Data>;
  constexpr size_t kValues = std::max(Count, Stored::kMinimum);
  typename Stored::Type values[kValues]{};
  const auto call = [&](auto... extra) {
    return (helper.*Method)(SubjectOf(context, static_cast<const typename S::Subject*>(nullptr)),
                            OutputArgument<S>(context, values), extra...);
  };
  const int result = std::apply(call, ExtraArguments<decltype(Method)>::Of(context));
  if (NonZeroSuccess ? result != 0 : result == 0) Report(context, values, Count);
  return result;
}

int ReadLensShading(Helper& helper, const CallContext& context) {
  const nvholder::NULSCMapSize size = context.lscMapSize;
  if (size.width < 0 || size.height < 0) return -1;
  const size_t count = static_cast<size_t>(size.width) * static_cast<size_t>(size.height) * 4;
  if (count > kMaxLensShadingValues) return -1;
  float gains[kMaxLensShadingValues];
  std::fill_n(gains, count, 0.0f);
  const int result = helper.GetLSC(context.request, context.nullOutputs ? nullptr : gains, size);
  if (result == 0) Report(context, gains, count);
  return result;
}

int ReadShiftData(Helper& helper, const CallContext& context) {
  nvholder::ShiftData shift{};
  const int result = helper.GetShiftDataFromHolder(context.timestamp, context.cameraId,
                                                   context.nullOutputs ? nullptr : &shift);
  if (result == 0) Report(context, &shift, 1);
  return result;
}

// The face record is a reference, so it is always passed; the raw face
// parameter record is an input the operation may ignore.
int ReadFaceRect(Helper& helper, const CallContext& context) {
  FacesInfo faces{};
  nvholder::NUNvFDRawSnapshotParam param{};
  const int result = helper.GetFaceRect(context.request, static_cast<int>(context.imageSize.width),
                                        static_cast<int>(context.imageSize.height), faces,
                                        context.nullOutputs ? nullptr : &param);
  if (result == 0) Report(context, &faces, 1);
  return result;
}

// Two outputs, described as one record of both.
int ReadFocusRoi(Helper& helper, const CallContext& context) {
  __UtilsImage_Rect rect{};
  __UtilsImage_point point{};
  const bool null = context.nullOutputs;
  const int result = helper.GetFocusROI(context.request, context.imageSize, null ? nullptr : &rect,
                                        null ? nullptr : &point, false, false);
  if (result != 0 || context.sink == nullptr || null) return result;
  context.sink->BeginRecord(nullptr, "FocusROI");
  Describe(*context.sink, "rect", rect);
  Describe(*context.sink, "point", point);
  context.sink->EndRecord();
  return result;
}

int AskRearCamera(Helper& helper, const CallContext& context) {
  const bool rear = helper.IsRearCamera(context.request);
  Report(context, &rear, 1);
  return rear ? 1 : 0;
}

// Setters write a copy of a fixed value: the operations take non-const
// pointers.
template <auto Method>
int WriteValue(Helper& helper, const CallContext& context) {
  auto input = kInput<Method>;
  return (helper.*Method)(context.request, context.nullOutputs ? nullptr : &input);
}

template <auto Method>
int WriteArray(Helper& helper, const CallContext& context) {
  auto inputs = kInput<Method>;
  return (helper.*Method)(context.request, context.nullOutputs ? nullptr : inputs.data(),
                          static_cast<int>(inputs.size()));
}

template <auto Method>
int WriteArgument(Helper& helper, const CallContext& context) {
  return (helper.*Method)(context.request, kInput<Method>(context));
}

// A reference cannot be null: under nullOutputs the container goes empty.
template <auto Method, typename Container>
int WriteContainer(Helper& helper, const CallContext& context) {
  Container input;
  const auto& values = kInput<Method>;
  if (!context.nullOutputs) input.assign(std::begin(values), std::end(values));
  return (helper.*Method)(context.request, input);
}

template <auto Method>
int Transfer(Helper& helper, const CallContext& context) {
  const MetaPtr destination = context.second ? context.second : std::make_shared<NvMetadata>();
  return (helper.*Method)(context.request, destination);
}

template <uint8_t Needs, Call Inner>
int Guarded(Helper& helper, const CallContext& context) {
  if ((Needs & kNeedsRequest) != 0 && !context.request) return -1;
  if ((Needs & kNeedsOutput) != 0 && context.nullOutputs) return -1;
  return Inner(helper, context);
}

// ---- From a signature to a call ----------------------------------------------
template <typename T>
struct IsContainer : std::false_type {};
template <typename T>
struct IsContainer<std::vector<T>> : std::true_type {};
template <>
struct IsContainer<std::string> : std::true_type {};

// Which operation a slot holds, by its row's name: pointers to virtual
// members have no value a constant expression may compare (clang refuses).
template <int Slot>
constexpr bool Holds(const char* name) {
  return metahelper::ops::SameText(metahelper::ops::BaseRow(Slot).name, name);
}

// Getters by their shape; a few have calls of their own.
template <auto Method, int Slot>
constexpr Call GetterCall() {
  if constexpr (Holds<Slot>("GetLSC")) {
    return ReadLensShading;
  } else if constexpr (Holds<Slot>("GetShiftDataFromHolder")) {
    return ReadShiftData;
  } else if constexpr (Holds<Slot>("GetFaceRect")) {
    return ReadFaceRect;
  } else if constexpr (Holds<Slot>("GetFocusROI")) {
    return ReadFocusRoi;
  } else {
    return Read<Method, OutputsOf(Slot), metahelper::ops::BaseRow(Slot).nonZeroSuccess>;
  }
}

// Setters by their shape: a value, an array with its count, a string or
// vector, a value passed by value, or a second container.
template <typename M>
struct SetterShape;
template <typename T>
struct SetterShape<int (Helper::*)(MetaPtr, T*)> {
  template <auto Method>
  static constexpr Call kCall = WriteValue<Method>;
};
template <typename T>
struct SetterShape<int (Helper::*)(MetaPtr, T*, int)> {
  template <auto Method>
  static constexpr Call kCall = WriteArray<Method>;
};
template <typename T>
struct SetterShape<int (Helper::*)(MetaPtr, T&)> {
  template <auto Method>
  static constexpr Call kCall = WriteContainer<Method, T>;
};
template <>
struct SetterShape<int (Helper::*)(MetaPtr, MetaPtr)> {
  template <auto Method>
  static constexpr Call kCall = Transfer<Method>;
};
template <>
struct SetterShape<int (Helper::*)(MetaPtr, float)> {
  template <auto Method>
  static constexpr Call kCall = WriteArgument<Method>;
};
template <>
struct SetterShape<int (Helper::*)(MetaPtr, int)> {
  template <auto Method>
  static constexpr Call kCall = WriteArgument<Method>;
};

// Whether the output is heap storage: a string or vector crosses the call.
template <typename M>
struct Allocation : std::false_type {};
template <typename S, typename T>
struct Allocation<int (Helper::*)(S, T&)> : IsContainer<T> {};
template <typename S>
struct Allocation<int (Helper::*)(S, std::string*)> : std::true_type {};

template <auto Method, int Slot>
constexpr Operation Entry() {
  constexpr const Row& row = metahelper::ops::BaseRow(Slot);
  constexpr bool kSetter = StartsWith(row.name, "Set") || StartsWith(row.name, "Update");
  constexpr uint8_t kNeeds = NeedsOf(Slot);
  Call call = nullptr;
  if constexpr (kSetter) {
    call = &Guarded<kNeeds, SetterShape<decltype(Method)>::template kCall<Method>>;
  } else {
    call = &Guarded<kNeeds, GetterCall<Method, Slot>()>;
  }
  return Operation{Slot,
                   row.name,
                   kSetter ? Kind::Setter : Kind::Getter,
                   Allocation<decltype(Method)>::value,
                   call,
                   row.nonZeroSuccess,
                   kNeeds};
}

template <int Slot>
constexpr Operation QueryEntry() {
  return Operation{Slot, metahelper::ops::BaseRow(Slot).name, Kind::Query, false, &AskRearCamera, false, 0};
}

// ---- The table ------------------------------------------------------------
#include "common/FormsReset.h"
#define MH_ENTRY(slot, name, params, ...) Entry<MH_METHOD(Helper, name, params), slot>(),
#define MH_READ(...) MH_ENTRY(__VA_ARGS__)
#define MH_CONVERT(...) MH_ENTRY(__VA_ARGS__)
#define MH_READ_WITH(...) MH_ENTRY(__VA_ARGS__)
#define MH_STATIC(...) MH_ENTRY(__VA_ARGS__)
#define MH_UNSUPPORTED(...) MH_ENTRY(__VA_ARGS__)
#define MH_UNSUPPORTED_RECORD(...) MH_ENTRY(__VA_ARGS__)
#define MH_STUB(...) MH_ENTRY(__VA_ARGS__)
#define MH_WRITE(...) MH_ENTRY(__VA_ARGS__)
#define MH_WRITE_ARRAY(...) MH_ENTRY(__VA_ARGS__)
#define MH_WRITE_BY_VALUE(...) MH_ENTRY(__VA_ARGS__)
#define MH_WRITE_RECORD(...) MH_ENTRY(__VA_ARGS__)
#define MH_CUSTOM(...) MH_ENTRY(__VA_ARGS__)
#define MH_QUERY(slot, name, params) QueryEntry<slot>(),
constexpr Operation kOperations[] = {
#include "common/BaseOperations.def"
};

}  // namespace

bool Succeeded(const Operation& operation, int result) {
  if (operation.kind == Kind::Query) return true;
  return operation.succeedsNonZero ? result != 0 : result == 0;
}

const Operation* Operations(size_t* count) {
  if (count != nullptr) *count = std::size(kOperations);
  return kOperations;
}

}  // namespace opcatalog
