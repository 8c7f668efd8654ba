// The generic helper: the core read and write, and every operation as the
// platform-neutral implementation has it. Most operations are defined from
// their rows in BaseOperations.def; the ones below the table compute
// something of their own.
#include "metadataHelperBase.h"

#include <MetaTagWrapper.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "BaseRows.h"
#include "Log.h"
#include "OpSkeletons.h"

namespace metahelper {

using namespace ops;  // NOLINT(google-build-using-namespace): rows read as tables

namespace {

constexpr char kSourceFile[] = __FILE__;
constexpr uint32_t kUndeclaredTag = 0xFFFFFFFFu;
constexpr unsigned char kLensFacingBack = 1;  // ANDROID_LENS_FACING_BACK

// The messages of this file's hand-written code. Their line ids and the rows'
// are one set: no two messages share an id unless they are the same message.
// clang-format off
#define MH_BASE_MESSAGES(X)                                                                          \
  X(kNoContainer,          kHelper, kError,   13,   MH_QUOTED("pArg is null"))                               \
  X(kNoTagNamed,           kHelper, kError,   16,   MH_QUOTED("pArg is null"))                               \
  X(kReadUndeclared,       kHelper, kError,   23,   "metadata not declared, tagindex %d")                    \
  X(kCoreReadNoDataMessage, kHelper, kVerbose, kCoreReadNoDataLine, MH_QUOTED("GetMetadata err"))            \
  X(kNoContainerToWrite,   kHelper, kError,   48,   MH_QUOTED("pArg is null"))                               \
  X(kNoTagToWrite,         kHelper, kError,   51,   MH_QUOTED("pArg is null"))                               \
  X(kWriteUndeclared,      kHelper, kError,   57,   "metadata not declared, tagindex %d")                    \
  X(kWhiteLevelRead,       kHelper, kInfo,    473,  "ANDROID_SENSOR_DYNAMIC_WHITE_LEVEL: %d")                \
  X(kNoStaticForRoles,     kHelper, kVerbose, 2417, "Get static meta for fwkCameraId %d fail")               \
  X(kNoStaticForIds,       kHelper, kVerbose, 2418, "Get static meta for fwkCameraId %d fail")               \
  X(kNoPhysicalIds,        kHelper, kVerbose, 2419, MH_QUOTED("get phyCamFwkIds fail"))
// clang-format on
MH_BASE_MESSAGES(MH_DECLARE_MESSAGE)
constexpr LineText kBaseMessages[] = {MH_BASE_MESSAGES(MH_LIST_MESSAGE)};
static_assert(LineIdsUnique(kBaseRows, kBaseMessages), "two messages of this file share a line id");

// Takes the entry the container found; a count of zero means absent.
int TakeEntry(const camera_metadata_ro_entry& entry, void** data, uint32_t* count) {
  if (entry.count == 0) return -1;
  *data = const_cast<uint8_t*>(entry.data.u8);
  if (count != nullptr) *count = static_cast<uint32_t>(entry.count);
  return 0;
}

}  // namespace

metadataHelperBase::~metadataHelperBase() = default;

const Site ops::kCoreReadSite{kSourceFile, "GetMetaData"};
const Format ops::kCoreReadNoData = kCoreReadNoDataMessage.format;

// ---- Core read -----------------------------------------------------------
// A stale non-null *data from the caller suppresses the final message; the
// result is still the lookup's. The missing-tag check sits in the last branch
// of the tag forms, where it gives the same result as checking it first,
// without a test on the path of every read.
int metadataHelperBase::GetMetaData(MetaPtr meta, const char* tagName, META_TAG_INDEX index, uint32_t tag,
                                    void** data, uint32_t* count) {
  if (!meta) {
    MH_SAY(kNoContainer);
    return -1;
  }
  camera_metadata_ro_entry entry;
  entry.count = 0;  // absent unless found
  if (index != META_NO_INDEX) {
    const uint32_t resolved = MetaTagWrapper::getInstance()(index);
    if (resolved == kUndeclaredTag)
      MH_SAY(kReadUndeclared, static_cast<int>(index));
    else
      entry = meta->find(resolved);
  } else if (tagName != nullptr) {
    entry = meta->find(tagName);
  } else if (tag != 0) {
    entry = meta->find(tag);
  } else {
    MH_SAY(kNoTagNamed);
    return -1;
  }
  const int result = TakeEntry(entry, data, count);
  if (*data != nullptr) return result;
  Report(Level::kVerbose, kCoreReadSite, kCoreReadNoDataLine, kCoreReadNoData);
  return -1;
}

// ---- Core write ----------------------------------------------------------
// An unknown name fails silently here: the calling setter reports it.
template <typename T>
int metadataHelperBase::SetMetaData(MetaPtr meta, const char* tagName, META_TAG_INDEX index, uint32_t tag,
                                    T* data, uint32_t count) {
  if (!meta) {
    MH_SAY(kNoContainerToWrite);
    return -1;
  }
  if (index == META_NO_INDEX && tagName == nullptr && tag == 0) {
    MH_SAY(kNoTagToWrite);
    return -1;
  }
  if (index != META_NO_INDEX) {
    const uint32_t resolved = MetaTagWrapper::getInstance()(index);
    if (resolved == kUndeclaredTag) {
      MH_SAY(kWriteUndeclared, static_cast<int>(index));
      return -1;
    }
    return meta->update(resolved, data, count);
  }
  if (tagName == nullptr) return meta->update(tag, data, count);
  unsigned int number = 0;
  if (NvMetadata::getTagFromName(tagName, &number) != 0) return -1;
  return meta->update(number, data, count);
}

template int metadataHelperBase::SetMetaData<float>(MetaPtr, const char*, META_TAG_INDEX, uint32_t, float*,
                                                    uint32_t);
template int metadataHelperBase::SetMetaData<int>(MetaPtr, const char*, META_TAG_INDEX, uint32_t, int*,
                                                  uint32_t);
template int metadataHelperBase::SetMetaData<camera_metadata_rational>(MetaPtr, const char*, META_TAG_INDEX,
                                                                       uint32_t, camera_metadata_rational*,
                                                                       uint32_t);
template int metadataHelperBase::SetMetaData<unsigned char>(MetaPtr, const char*, META_TAG_INDEX, uint32_t,
                                                            unsigned char*, uint32_t);
template int metadataHelperBase::SetMetaData<void>(MetaPtr, const char*, META_TAG_INDEX, uint32_t, void*,
                                                   uint32_t);

namespace {

// ---- What the special members compute --------------------------------------
camera_metadata_ro_entry FindByIndex(const NvMetadata& meta, META_TAG_INDEX index) {
  const uint32_t tag = MetaTagWrapper::getInstance()(index);
  return tag == kUndeclaredTag ? camera_metadata_ro_entry{} : meta.find(tag);
}

void AppendInts(const camera_metadata_ro_entry& entry, std::vector<int>& values) {
  values.insert(values.end(), entry.data.i32, entry.data.i32 + entry.count);
}

// One id, parsed from a terminated copy: the entry itself may end at the end
// of the data without a NUL, where atoi would read on past it.
int ParsePhysicalId(const char* text, size_t length) {
  char digits[32] = {};
  std::memcpy(digits, text, std::min(length, sizeof digits - 1));
  return std::atoi(digits);
}

// The ids are decimal strings, each closed by a NUL, back to back; a
// non-numeric entry reads as 0. A last entry without its NUL still ends the
// walk at the end of the data.
void AppendPhysicalIds(const char* text, size_t remaining, std::vector<int>& ids) {
  while (remaining != 0) {
    const size_t length = strnlen(text, remaining);
    ids.push_back(ParsePhysicalId(text, length));
    const size_t step = std::min(length + 1, remaining);
    text += step;
    remaining -= step;
  }
}

// Copies a tag between containers. False when the source lacks it; a tag this
// platform does not declare is skipped as if copied.
template <typename T>
bool CopyDeclaredTag(META_TAG_INDEX index, const NvMetadata& source, NvMetadata& destination) {
  const uint32_t tag = MetaTagWrapper::getInstance()(index);
  if (tag == kUndeclaredTag) return true;
  const camera_metadata_ro_entry entry = source.find(tag);
  if (entry.count == 0) return false;
  destination.update(tag, reinterpret_cast<const T*>(entry.data.u8), entry.count);
  return true;
}

// Dioptres to centimetres; infinity focus (0) and unusable values read as 10 m.
float FocusDistanceCm(float dioptres) {
  return dioptres > 0 ? static_cast<float>(100.0 / dioptres) : 1000.0f;
}

int ZeroExtended(uint8_t value) { return value; }

// One gain per colour channel and grid point.
size_t LensShadingValues(nvholder::NULSCMapSize size) {
  return static_cast<size_t>(size.width) * static_cast<size_t>(size.height) * 4;
}

// Android regions are (xmin, ymin, xmax, ymax, weight) with inclusive bounds.
// The extents are formed in unsigned arithmetic: inverted or extreme bounds
// wrap as they do on the device instead of overflowing.
void StoreAfRegion(const void* data, nvholder::ChiRect* rect) {
  const auto xMin = Element<uint32_t>(data, 0);
  const auto yMin = Element<uint32_t>(data, 1);
  const auto xMax = Element<uint32_t>(data, 2);
  const auto yMax = Element<uint32_t>(data, 3);
  *rect = {xMin, yMin, xMax - xMin + 1, yMax - yMin + 1};
}

}  // namespace

// ---- Operations from their rows --------------------------------------------
#define MH_BODY_CLASS metadataHelperBase
#define MH_BODY_ROW(slot) BaseRow(slot)
#include "BodyForms.h"
// The table itself, after the forms it is written in.
#include "BaseOperations.def"

// ---- Operations that compute, in slot order ----------------------------------
// Looked up directly: the conversion writes the repaired denominators back.
int metadataHelperBase::GetColorCorrectionTransform(MetaPtr meta, float* out) {
  static constexpr const Row& kRow = BaseRow(18);
  if (out == nullptr) return RefuseArgument(MH_SITE, kRow);
  return ReadColorTransform(MH_SITE, kRow.main(), *meta, out);
}
int metadataHelperBase::GetSensorDynamicWhiteLevel(MetaPtr meta, int* out) {
  const int result = ReadCopy(*this, MH_SITE, BaseRow(25), meta, out);
  if (result == 0) MH_SAY(kWhiteLevelRead, *out);
  return result;
}
// Sized by the caller's map, not by the count the tag reports.
int metadataHelperBase::GetLSC(MetaPtr meta, float* out, nvholder::NULSCMapSize mapSize) {
  static constexpr const Row& kRow = BaseRow(41);
  if (out == nullptr) return RefuseArgument(MH_SITE, kRow);
  const void* data = nullptr;
  uint32_t count = 0;
  const int result = ReadTag(*this, MH_SITE, kRow.main(), meta, &data, &count);
  if (result != 0) return result;
  const size_t values = LensShadingValues(mapSize);
  if (count < values) return RefuseShortEntry(MH_SITE, kRow.main());
  std::memcpy(out, data, values * sizeof(float));
  return 0;
}
// A presence test of the tag: callers look only at the result, so the output
// is neither checked nor written.
int metadataHelperBase::GetEcdStatus(MetaPtr meta, unsigned char* /*out*/) {
  const void* data = nullptr;
  return ReadTag(*this, MH_SITE, BaseRow(51).main(), meta, &data);
}
// The whole byte array becomes the string, a stored terminating zero included.
// Both arguments must be valid: neither is checked.
int metadataHelperBase::GetImgName(MetaPtr meta, std::string* out) {
  static constexpr const Access& kName = BaseRow(92).main();
  const camera_metadata_ro_entry entry = FindByIndex(*meta, kName.tag.index);
  if (entry.count == 0) {
    Report(kName.level, MH_SITE, kName.lines.lookup, kName.messages.lookupFailed);
    return -1;
  }
  *out = std::string(reinterpret_cast<const char*>(entry.data.u8), entry.count);
  return 0;
}
// Callers test this result for non-zero: it is the low 32 bits of the tag's
// data address on success and 0 on failure. A null record only skips the copy.
int metadataHelperBase::GetBokehCapabilityInfo(MetaPtr meta, __bokehCapabilityInfoList* info) {
  const void* data = nullptr;
  if (ReadTag(*this, MH_SITE, BaseRow(153).main(), meta, &data) != 0) return 0;
  if (info != nullptr) std::memcpy(info, data, sizeof(*info));
  return static_cast<int>(static_cast<uint32_t>(reinterpret_cast<uintptr_t>(data)));
}
// Both containers must be valid. The results of the writes do not matter to
// callers: the operation always succeeds.
int metadataHelperBase::UpdateGainMapMeta(MetaPtr source, MetaPtr destination) {
  static constexpr const Row& kRow = BaseRow(154);
  if (!CopyDeclaredTag<uint8_t>(kRow.access[0].tag.index, *source, *destination))
    Report(kRow.main().level, MH_SITE, kRow.main().lines.lookup, kRow.main().messages.lookupFailed);
  CopyDeclaredTag<float>(kRow.access[1].tag.index, *source, *destination);
  return 0;
}
int metadataHelperBase::GetCameraRoleId(int fwkCameraId, int* roleId) {
  static constexpr const Row& kRow = BaseRow(155);
  if (roleId == nullptr) return RefuseArgument(MH_SITE, kRow);
  return ReadCopy(*this, MH_SITE, kRow, StaticMetaOf(fwkCameraId), roleId);
}
// A request without a framework id asks for camera -1.
int metadataHelperBase::GetCameraRoleId(MetaPtr meta, int* roleId) {
  return GetCameraRoleId(FwkCameraIdOf(*this, std::move(meta)), roleId);
}
// Appends; a platform without the role list, or a camera without one, adds
// nothing and still succeeds.
int metadataHelperBase::GetCameraRoleIds(MetaPtr meta, std::vector<int>& roleIds) {
  const int cameraId = FwkCameraIdOf(*this, std::move(meta));
  const MetaPtr staticMeta = StaticMetaOf(cameraId);
  if (!staticMeta) {
    MH_SAY(kNoStaticForRoles, cameraId);
    return -1;
  }
  AppendInts(FindByIndex(*staticMeta, BaseRow(157).main().tag.index), roleIds);
  return 0;
}
// Appends; a camera without the tag adds nothing and still succeeds.
int metadataHelperBase::GetAndroidLogicalMultiCameraPhysicalIds(int fwkCameraId, std::vector<int>& ids) {
  const MetaPtr staticMeta = StaticMetaOf(fwkCameraId);
  if (!staticMeta) {
    MH_SAY(kNoStaticForIds, fwkCameraId);
    return -1;
  }
  const camera_metadata_ro_entry entry = staticMeta->find(BaseRow(159).main().tag.number);
  AppendPhysicalIds(reinterpret_cast<const char*>(entry.data.u8), entry.count, ids);
  return 0;
}
int metadataHelperBase::GetAndroidLogicalMultiCameraPhysicalIds(MetaPtr meta, std::vector<int>& ids) {
  return GetAndroidLogicalMultiCameraPhysicalIds(FwkCameraIdOf(*this, std::move(meta)), ids);
}
// Physical cameras whose role cannot be read are left out.
int metadataHelperBase::GetAndroidLogicalMultiCameraPhysicalRoleIds(MetaPtr meta, std::vector<int>& roleIds) {
  std::vector<int> physicalIds;
  if (GetAndroidLogicalMultiCameraPhysicalIds(std::move(meta), physicalIds) != 0) {
    MH_SAY(kNoPhysicalIds);
    return -1;
  }
  for (const int physicalId : physicalIds) {
    int roleId = -1;
    if (GetCameraRoleId(physicalId, &roleId) == 0) roleIds.push_back(roleId);
  }
  return 0;
}
// Always the static facing of the request's camera, never a request value.
int metadataHelperBase::GetAndroidLensFacing(MetaPtr meta, unsigned char* facing) {
  static constexpr const Row& kRow = BaseRow(163);
  if (facing == nullptr) return RefuseArgument(MH_SITE, kRow);
  return ReadCopy(*this, MH_SITE, kRow, StaticMetaOf(FwkCameraIdOf(*this, std::move(meta))), facing);
}
// A camera whose facing cannot be read counts as a rear camera.
bool metadataHelperBase::IsRearCamera(MetaPtr meta) {
  unsigned char facing = kLensFacingBack;
  GetAndroidLensFacing(std::move(meta), &facing);
  return facing == kLensFacingBack;
}
// Appends to what the caller's vector already holds.
int metadataHelperBase::GetAnchorFrameOrder(MetaPtr meta, std::vector<int>& order) {
  static constexpr const Row& kRow = BaseRow(181);
  if (!meta) return RefuseArgument(MH_SITE, kRow);
  const Access& access = kRow.main();
  const camera_metadata_ro_entry entry = meta->find(access.tag.name);
  if (entry.count == 0) {
    Report(access.level, MH_SITE, access.lines.lookup, access.messages.lookupFailed);
    return -1;
  }
  AppendInts(entry, order);
  return 0;
}
// An empty order is refused as a missing argument; any failed write is -1.
int metadataHelperBase::SetAnchorFrameOrder(MetaPtr meta, std::vector<int>& order) {
  int* values = order.empty() ? nullptr : order.data();
  const int result =
      Write(*this, MH_SITE, BaseRow(182), std::move(meta), values, static_cast<uint32_t>(order.size()));
  return result == 0 ? 0 : -1;
}

}  // namespace metahelper
