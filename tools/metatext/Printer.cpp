// The platform's metadata printer (dump_indented_camera_metadata), written
// again for the host container: the samples, round-trip tests, fuzzer and
// benchmark inputs must look exactly like what devices print.
#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <string>

#include "MetaText.h"
#include "TextUtil.h"

namespace metatext {
namespace {

constexpr size_t kValuesPerLine[NUM_TYPES] = {16, 4, 8, 2, 4, 2};
// Entries whose data fits in 4 bytes keep it in the entry itself; larger
// data goes to the data area, each entry's aligned to 8 bytes.
constexpr size_t kInlineBytes = 4;
constexpr size_t kDataAlignment = 8;

// Since 15.0.0_r6 only the 4th int32 of each tuple of these is named.
constexpr uint32_t kStreamConfigurationTags[] = {
    ANDROID_SCALER_AVAILABLE_STREAM_CONFIGURATIONS,
    ANDROID_SCALER_AVAILABLE_STREAM_CONFIGURATIONS_MAXIMUM_RESOLUTION,
    ANDROID_SCALER_PHYSICAL_CAMERA_MULTI_RESOLUTION_STREAM_CONFIGURATIONS,
    ANDROID_DEPTH_AVAILABLE_DEPTH_STREAM_CONFIGURATIONS,
    ANDROID_DEPTH_AVAILABLE_DEPTH_STREAM_CONFIGURATIONS_MAXIMUM_RESOLUTION,
    ANDROID_DEPTH_AVAILABLE_DYNAMIC_DEPTH_STREAM_CONFIGURATIONS,
    ANDROID_DEPTH_AVAILABLE_DYNAMIC_DEPTH_STREAM_CONFIGURATIONS_MAXIMUM_RESOLUTION,
    ANDROID_HEIC_AVAILABLE_HEIC_STREAM_CONFIGURATIONS,
    ANDROID_HEIC_AVAILABLE_HEIC_STREAM_CONFIGURATIONS_MAXIMUM_RESOLUTION,
    ANDROID_JPEGR_AVAILABLE_JPEG_R_STREAM_CONFIGURATIONS,
    ANDROID_JPEGR_AVAILABLE_JPEG_R_STREAM_CONFIGURATIONS_MAXIMUM_RESOLUTION,
};
// Since Android 14 each key of these lists is followed by its name.
constexpr uint32_t kKeyListTags[] = {
    ANDROID_REQUEST_AVAILABLE_REQUEST_KEYS,
    ANDROID_REQUEST_AVAILABLE_RESULT_KEYS,
    ANDROID_REQUEST_AVAILABLE_SESSION_KEYS,
    ANDROID_REQUEST_AVAILABLE_CHARACTERISTICS_KEYS,
    ANDROID_REQUEST_AVAILABLE_PHYSICAL_CAMERA_REQUEST_KEYS,
};

template <size_t N>
bool IsOneOf(uint32_t tag, const uint32_t (&tags)[N]) {
  return std::find(tags, tags + N, tag) != tags + N;
}

size_t DataBytes(const camera_metadata_ro_entry& entry) {
  const size_t bytes = entry.count * kElementSize[entry.type];
  return bytes <= kInlineBytes ? 0 : (bytes + kDataAlignment - 1) / kDataAlignment * kDataAlignment;
}

class Printer {
 public:
  Printer(const PrintStyle& style, std::ostream& out) : style_(style), out_(out) {}

  void Buffer(const NvMetadata& meta) {
    const std::vector<unsigned int> tags = meta.tags();
    size_t data = 0;
    for (unsigned int tag : tags) data += DataBytes(meta.find(tag));
    const unsigned entries = static_cast<unsigned>(tags.size());
    const unsigned bytes = static_cast<unsigned>(data);
    Format("%*sDumping camera metadata array: %u / %u entries, %u / %u bytes of extra data.\n",
           style_.indentation, "", entries, entries, bytes, bytes);
    Format("%*sVersion: 1, Flags: 00000000\n", style_.indentation + 2, "");
    for (unsigned int tag : tags) {
      // An entry without elements comes back typeless from find.
      camera_metadata_ro_entry entry = meta.find(tag);
      entry.type = static_cast<uint8_t>(NvMetadata::getTagType(tag));
      Entry(tag, entry);
    }
  }

 private:
  void Entry(uint32_t tag, const camera_metadata_ro_entry& entry) {
    const char* name = NvMetadata::getTagName(tag);
    line_.assign(style_.indentation + 2, ' ');
    line_ += name != nullptr ? name : "unknownSection.unknownTag";
    line_ += " (" + Hex(tag) + "): " + kTypeNames[entry.type];
    Number(static_cast<int64_t>(entry.count), "[");
    line_ += "]\n";
    out_.write(line_.data(), static_cast<std::streamsize>(line_.size()));
    if (style_.verbosity < 1) return;
    const size_t count = style_.verbosity < 2 ? std::min(entry.count, kVerbosityCut) : entry.count;
    const size_t perLine = kValuesPerLine[entry.type];
    for (size_t first = 0; first < count; first += perLine) {
      line_.assign(style_.indentation + 4, ' ');
      line_ += '[';
      for (size_t i = first; i < std::min(count, first + perLine); ++i) Value(tag, entry, i);
      line_ += "]\n";
      out_.write(line_.data(), static_cast<std::streamsize>(line_.size()));
    }
  }

  void Value(uint32_t tag, const camera_metadata_ro_entry& entry, size_t i) {
    switch (entry.type) {
      case TYPE_BYTE:
        if (tag == ANDROID_LOGICAL_MULTI_CAMERA_PHYSICAL_IDS && style_.physicalIdsAsCharacters) {
          if (entry.data.u8[i] != 0) line_ += {static_cast<char>(entry.data.u8[i]), ' '};
          return;
        }
        return Integer(tag, entry.data.u8[i], true);
      case TYPE_INT32:
        Integer(tag, entry.data.i32[i], IsNamed(tag, i));
        return KeyName(tag, entry.data.i32[i]);
      case TYPE_FLOAT:
        return Real(entry.data.f[i]);
      case TYPE_INT64:
        return Integer(tag, entry.data.i64[i], false);
      case TYPE_DOUBLE:
        return Real(entry.data.d[i]);
      default:
        Number(entry.data.r[i].numerator, "(");
        Number(entry.data.r[i].denominator, " / ");
        line_ += ") ";
    }
  }

  bool IsNamed(uint32_t tag, size_t i) const {
    return style_.everyStreamValueNamed || i % 4 == 3 || !IsOneOf(tag, kStreamConfigurationTags);
  }

  // int32 values are named as the platform compares them, as uint32.
  void Integer(uint32_t tag, int64_t value, bool named) {
    const char* name = named ? NvMetadata::getTagEnumName(tag, value) : nullptr;
    if (name != nullptr) {
      line_ += name;
      line_ += ' ';
    } else {
      Number(value, "");
      line_ += ' ';
    }
  }

  void KeyName(uint32_t tag, int32_t key) {
    if (!style_.keyNames || !IsOneOf(tag, kKeyListTags)) return;
    const char* name = NvMetadata::getTagName(static_cast<uint32_t>(key));
    if (name == nullptr) return;
    const char* dot = strrchr(name, '.');
    line_ += '(';
    line_ += dot != nullptr ? dot + 1 : name;
    line_ += ") ";
  }

  void Number(int64_t value, const char* before) {
    line_ += before;
    char text[24];
    const auto result = std::to_chars(text, text + sizeof text, value);
    line_.append(text, result.ptr);
  }

  void Real(double value) {
    char text[512];  // DBL_MAX has 309 digits before the point
    const int length = snprintf(text, sizeof text, "%0.8f ", value);
    line_.append(text, static_cast<size_t>(length));
  }

  template <typename... Args>
  void Format(const char* format, Args... args) {
    char text[512];
    const int length = snprintf(text, sizeof text, format, args...);
    out_.write(text, std::min<std::streamsize>(length, sizeof text - 1));
  }

  const PrintStyle& style_;
  std::ostream& out_;
  std::string line_;
};

}  // namespace

void Print(const NvMetadata& meta, const PrintStyle& style, std::ostream& out) {
  Printer(style, out).Buffer(meta);
}

}  // namespace metatext
