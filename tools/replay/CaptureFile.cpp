#include "CaptureFile.h"

#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <set>
#include <sstream>
#include <vector>

namespace replay {
namespace {

std::string Trim(const std::string& text) {
  const size_t first = text.find_first_not_of(" \t\r");
  if (first == std::string::npos) return "";
  return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

bool ParseInteger(const std::string& word, int64_t low, int64_t high, int64_t* value) {
  errno = 0;
  char* end = nullptr;
  const long long parsed = std::strtoll(word.c_str(), &end, 0);
  if (word.empty() || *end != '\0' || errno != 0 || parsed < low || parsed > high) return false;
  *value = parsed;
  return true;
}

bool ParseReal(const std::string& word, double* value) {
  char* end = nullptr;
  *value = std::strtod(word.c_str(), &end);
  return !word.empty() && *end == '\0';
}

// The bytes of one value list, laid out as `type` elements.
class Values {
 public:
  explicit Values(int type) : type_(type) {}

  // Appends one word; false with a reason when it does not fit the type.
  bool Add(const std::string& word, std::string* why) {
    int64_t integer = 0;
    double real = 0;
    switch (type_) {
      case TYPE_BYTE:
        if (!ParseInteger(word, -128, 255, &integer)) return Fail(why, "a byte (-128..255)", word);
        return Append(static_cast<uint8_t>(integer));
      case TYPE_INT32:
        if (!ParseInteger(word, INT32_MIN, UINT32_MAX, &integer)) return Fail(why, "a 32-bit integer", word);
        return Append(static_cast<int32_t>(static_cast<uint32_t>(integer)));
      case TYPE_INT64:
        if (!ParseInteger(word, INT64_MIN, INT64_MAX, &integer)) return Fail(why, "a 64-bit integer", word);
        return Append(integer);
      case TYPE_FLOAT:
        if (!ParseReal(word, &real)) return Fail(why, "a number", word);
        return Append(static_cast<float>(real));
      case TYPE_DOUBLE:
        if (!ParseReal(word, &real)) return Fail(why, "a number", word);
        return Append(real);
      case TYPE_RATIONAL:
        return AddRational(word, why);
      default:
        return Fail(why, "a supported element type", word);
    }
  }

  // A quoted string for a byte tag: its characters and a terminating zero.
  bool AddString(const std::string& text, std::string* why) {
    if (type_ != TYPE_BYTE) {
      *why = "a quoted string only fills a byte tag";
      return false;
    }
    for (char c : text) Append(static_cast<uint8_t>(c));
    return Append(uint8_t{0});
  }

  const void* data() const { return bytes_.data(); }
  size_t count() const { return count_; }

 private:
  bool AddRational(const std::string& word, std::string* why) {
    const size_t slash = word.find('/');
    int64_t numerator = 0, denominator = 0;
    if (slash == std::string::npos || !ParseInteger(word.substr(0, slash), INT32_MIN, INT32_MAX, &numerator) ||
        !ParseInteger(word.substr(slash + 1), INT32_MIN, INT32_MAX, &denominator))
      return Fail(why, "a rational n/d", word);
    const camera_metadata_rational value{static_cast<int32_t>(numerator), static_cast<int32_t>(denominator)};
    return Append(value);
  }

  template <typename T>
  bool Append(const T& value) {
    const auto* raw = reinterpret_cast<const uint8_t*>(&value);
    bytes_.insert(bytes_.end(), raw, raw + sizeof(T));
    ++count_;
    return true;
  }

  static bool Fail(std::string* why, const char* expected, const std::string& word) {
    *why = std::string("expected ") + expected + ", got '" + word + "'";
    return false;
  }

  int type_;
  std::vector<uint8_t> bytes_;
  size_t count_ = 0;
};

class Reader {
 public:
  Reader(const std::string& fileName, Capture* capture) : fileName_(fileName), capture_(capture) {}

  bool Line(const std::string& raw, int number, std::string* error) {
    number_ = number;
    const std::string line = Trim(raw);
    if (line.empty() || line[0] == '#') return true;
    if (line[0] == '[') return Section(line, error);
    return Entry(line, error);
  }

 private:
  bool Section(const std::string& line, std::string* error) {
    if (line.back() != ']') return Error(error, "section header must end with ']'");
    std::istringstream words(line.substr(1, line.size() - 2));
    std::string kind, extra;
    int64_t camera = 0;
    words >> kind;
    if (kind == "request" && !(words >> extra)) {
      target_ = capture_->request.get();
      keys_ = "request";
    } else if (kind == "static" && words >> extra && ParseInteger(extra, 0, UINT32_MAX, &camera) &&
               !(words >> extra)) {
      auto& slot = capture_->statics[static_cast<unsigned>(camera)];
      if (!slot) slot = std::make_shared<NvMetadata>();
      target_ = slot.get();
      keys_ = "static " + std::to_string(camera);
    } else {
      return Error(error, "unknown section '" + line + "' (use [request] or [static <camera id>])");
    }
    return true;
  }

  bool Entry(const std::string& line, std::string* error) {
    const size_t equals = line.find('=');
    if (equals == std::string::npos) return Error(error, "expected '<tag name> = <values>'");
    const std::string name = Trim(line.substr(0, equals));
    const std::string rest = Trim(line.substr(equals + 1));
    unsigned int tag = 0;
    if (NvMetadata::getTagFromName(name.c_str(), &tag) != 0) return Error(error, "unknown tag '" + name + "'");
    if (!seen_.insert(keys_ + "/" + name).second) return Error(error, "tag '" + name + "' given twice");
    Values values(NvMetadata::getTagType(tag));
    std::string why;
    if (!Fill(rest, &values, &why)) return Error(error, name + ": " + why);
    if (target_->update(tag, values.data(), values.count()) != 0)
      return Error(error, name + ": the container refused the values");
    return true;
  }

  static bool Fill(const std::string& rest, Values* values, std::string* why) {
    if (!rest.empty() && rest[0] == '"') {
      if (rest.size() < 2 || rest.back() != '"') {
        *why = "unterminated string";
        return false;
      }
      return values->AddString(rest.substr(1, rest.size() - 2), why);
    }
    std::istringstream words(rest);
    std::string word;
    while (words >> word)
      if (!values->Add(word, why)) return false;
    if (values->count() == 0) *why = "no values";
    return values->count() != 0;
  }

  bool Error(std::string* error, const std::string& problem) const {
    *error = fileName_ + ":" + std::to_string(number_) + ": " + problem;
    return false;
  }

  std::string fileName_;
  Capture* capture_;
  NvMetadata* target_ = capture_->request.get();
  std::string keys_ = "request";
  std::set<std::string> seen_;
  int number_ = 0;
};

}  // namespace

bool ReadCapture(std::istream& in, const std::string& fileName, Capture* capture, std::string* error) {
  Capture loaded;
  Reader reader(fileName, &loaded);
  std::string line;
  for (int number = 1; std::getline(in, line); ++number)
    if (!reader.Line(line, number, error)) return false;
  *capture = std::move(loaded);
  return true;
}

}  // namespace replay
