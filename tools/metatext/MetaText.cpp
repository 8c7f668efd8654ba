#include "MetaText.h"

#include <strings.h>

#include <cerrno>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <map>
#include <sstream>
#include <utility>

namespace metatext {
namespace {

// A real buffer holds a few thousand elements. The cap keeps a corrupt or
// hostile count (or an elided entry that would be zero-filled) from making the
// reader allocate without bound; it applies to the whole file.
constexpr size_t kMaxElements = size_t{1} << 20;

constexpr const char* kTypeNames[NUM_TYPES] = {"byte", "int32", "float", "int64", "double", "rational"};
constexpr size_t kElementSize[NUM_TYPES] = {1, 4, 4, 8, 8, 8};

// The names the dump prints instead of the numbers of the byte enums that
// the helper reads. Other tags' names are not known here and are rejected.
struct EnumName {
  uint32_t tag;
  const char* name;
  uint8_t value;
};
constexpr EnumName kEnumNames[] = {
    {ANDROID_LENS_FACING, "FRONT", 0},
    {ANDROID_LENS_FACING, "BACK", 1},
    {ANDROID_LENS_FACING, "EXTERNAL", 2},
    {ANDROID_SENSOR_INFO_COLOR_FILTER_ARRANGEMENT, "RGGB", 0},
    {ANDROID_SENSOR_INFO_COLOR_FILTER_ARRANGEMENT, "GRBG", 1},
    {ANDROID_SENSOR_INFO_COLOR_FILTER_ARRANGEMENT, "GBRG", 2},
    {ANDROID_SENSOR_INFO_COLOR_FILTER_ARRANGEMENT, "BGGR", 3},
    {ANDROID_SENSOR_INFO_COLOR_FILTER_ARRANGEMENT, "RGB", 4},
    {ANDROID_SENSOR_INFO_COLOR_FILTER_ARRANGEMENT, "MONO", 5},
    {ANDROID_SENSOR_INFO_COLOR_FILTER_ARRANGEMENT, "NIR", 6},
    {ANDROID_FLASH_MODE, "OFF", 0},
    {ANDROID_FLASH_MODE, "SINGLE", 1},
    {ANDROID_FLASH_MODE, "TORCH", 2},
    {ANDROID_CONTROL_ENABLE_ZSL, "FALSE", 0},
    {ANDROID_CONTROL_ENABLE_ZSL, "TRUE", 1},
};

bool FindEnumValue(uint32_t tag, const std::string& word, uint8_t* value) {
  for (const EnumName& e : kEnumNames) {
    if (e.tag == tag && word == e.name) {
      *value = e.value;
      return true;
    }
  }
  return false;
}

std::string EnumNamesOf(uint32_t tag) {
  std::string names;
  for (const EnumName& e : kEnumNames) {
    if (e.tag == tag) names += (names.empty() ? "" : ", ") + std::string(e.name);
  }
  return names;
}

bool IsSpace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\f' || c == '\v'; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsHexDigit(char c) { return IsDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }
bool AllDigits(const std::string& word) {
  for (char c : word)
    if (!IsDigit(c)) return false;
  return !word.empty();
}

// The line without its comment and surrounding blanks.
std::string Clean(const std::string& raw) {
  const std::string text = raw.substr(0, raw.find('#'));
  size_t first = 0, last = text.size();
  while (first < last && IsSpace(text[first])) ++first;
  while (last > first && IsSpace(text[last - 1])) --last;
  return text.substr(first, last - first);
}

// Enough of a line to recognise it in a message.
std::string Excerpt(const std::string& line) { return line.size() <= 60 ? line : line.substr(0, 57) + "..."; }

bool StartsWith(const std::string& text, const char* prefix) { return text.rfind(prefix, 0) == 0; }

bool IsHeader(const std::string& line) {
  return StartsWith(line, "Dumping camera metadata array:") || StartsWith(line, "Version:");
}

std::string Hex(uint32_t tag) {
  char text[16];
  snprintf(text, sizeof(text), "%05x", tag);
  return text;
}

// Reads one line left to right.
class Cursor {
 public:
  explicit Cursor(const std::string& text) : text_(text) {}

  bool AtEnd() {
    SkipSpaces();
    return pos_ == text_.size();
  }
  bool Take(char c) {
    SkipSpaces();
    if (pos_ == text_.size() || text_[pos_] != c) return false;
    ++pos_;
    return true;
  }
  bool TakeText(const char* text) {
    SkipSpaces();
    if (text_.compare(pos_, strlen(text), text) != 0) return false;
    pos_ += strlen(text);
    return true;
  }
  // The characters up to a blank or one of `stops`.
  std::string Word(const char* stops = "") {
    SkipSpaces();
    const size_t start = pos_;
    while (pos_ < text_.size() && !IsSpace(text_[pos_]) && !IsStop(text_[pos_], stops)) ++pos_;
    return text_.substr(start, pos_ - start);
  }

 private:
  static bool IsStop(char c, const char* stops) { return c != '\0' && strchr(stops, c) != nullptr; }
  void SkipSpaces() {
    while (pos_ < text_.size() && IsSpace(text_[pos_])) ++pos_;
  }

  const std::string& text_;
  size_t pos_ = 0;
};

enum class Verdict { kOk, kNotNumber, kOutOfRange };

bool IsInteger(const std::string& word) {
  const bool signed_ = !word.empty() && (word[0] == '-' || word[0] == '+');
  return AllDigits(signed_ ? word.substr(1) : word);
}

Verdict ParseInteger(const std::string& word, int64_t low, int64_t high, int64_t* value) {
  if (!IsInteger(word)) return Verdict::kNotNumber;
  errno = 0;
  const long long parsed = strtoll(word.c_str(), nullptr, 10);
  if (errno == ERANGE || parsed < low || parsed > high) return Verdict::kOutOfRange;
  *value = parsed;
  return Verdict::kOk;
}

// Decimal with optional fraction and exponent, as printf's %f and %e print.
bool IsDecimal(const std::string& word) {
  size_t i = (!word.empty() && (word[0] == '-' || word[0] == '+')) ? 1 : 0;
  size_t digits = 0;
  for (; i < word.size() && IsDigit(word[i]); ++i) ++digits;
  if (i < word.size() && word[i] == '.')
    for (++i; i < word.size() && IsDigit(word[i]); ++i) ++digits;
  if (digits == 0) return false;
  if (i < word.size() && (word[i] == 'e' || word[i] == 'E')) {
    if (++i < word.size() && (word[i] == '-' || word[i] == '+')) ++i;
    if (i == word.size()) return false;
    while (i < word.size() && IsDigit(word[i])) ++i;
  }
  return i == word.size();
}

// What printf prints for values that are not finite.
bool IsNonFinite(const std::string& word) {
  for (const char* name : {"nan", "-nan", "inf", "-inf"})
    if (strcasecmp(word.c_str(), name) == 0) return true;
  return false;
}

Verdict ParseReal(const std::string& word, double limit, double* value) {
  if (IsNonFinite(word)) {
    *value = strtod(word.c_str(), nullptr);
    return Verdict::kOk;
  }
  if (!IsDecimal(word)) return Verdict::kNotNumber;
  const double parsed = strtod(word.c_str(), nullptr);
  if (!(std::fabs(parsed) <= limit)) return Verdict::kOutOfRange;
  *value = parsed;
  return Verdict::kOk;
}

// `NAME (HEXTAG): TYPE[COUNT]`
struct EntryLine {
  std::string name;
  uint32_t tag = 0;
  int type = -1;
  std::string typeName;
  std::string count;
};

bool ReadEntryLine(const std::string& line, EntryLine* entry) {
  Cursor at(line);
  entry->name = at.Word("(");
  if (entry->name.empty() || !at.Take('(')) return false;
  const std::string hex = at.Word(")");
  if (hex.empty() || hex.size() > 8 || !at.Take(')') || !at.Take(':')) return false;
  for (char c : hex)
    if (!IsHexDigit(c)) return false;
  entry->tag = static_cast<uint32_t>(strtoul(hex.c_str(), nullptr, 16));
  entry->typeName = at.Word("[");
  if (entry->typeName.empty() || !at.Take('[')) return false;
  entry->count = at.Word("]");
  if (!at.Take(']') || !at.AtEnd()) return false;
  for (int type = 0; type < NUM_TYPES; ++type)
    if (entry->typeName == kTypeNames[type]) entry->type = type;
  return true;
}

// The entry whose values are being read.
struct Entry {
  std::string name;
  unsigned line = 0;
  uint32_t tag = 0;  // the registry's number
  int type = TYPE_BYTE;
  bool store = false;  // false: the registry does not know the tag
  size_t count = 0;
  size_t have = 0;
  std::vector<uint8_t> bytes;
};

class Loader {
 public:
  Loader(const std::string& fileName, std::vector<Problem>* notes) : fileName_(fileName), notes_(notes) {}

  bool Line(const std::string& raw, unsigned number) {
    line_ = number;
    const std::string line = Clean(raw);
    if (line.empty()) return true;
    if (IsHeader(line)) return EndEntry();
    if (line[0] == '[') return Values(line);
    EntryLine entry;
    if (!ReadEntryLine(line, &entry))
      return Fail("not an entry 'NAME (TAG): TYPE[COUNT]', values '[...]', header or comment: '" +
                  Excerpt(line) + "'");
    return EndEntry() && BeginEntry(entry);
  }

  bool Finish() {
    if (Open()) {
      return FailAt(entry_.line, "the file ends inside " + entry_.name + " after " +
                                     std::to_string(entry_.have) + " of its " + std::to_string(entry_.count) +
                                     " values");
    }
    return true;
  }

  NvMetadata& Loaded() { return loaded_; }
  const Problem& problem() const { return problem_; }

 private:
  bool Open() const { return started_ && entry_.have < entry_.count; }

  bool EndEntry() {
    if (!Open()) return true;
    return FailAt(entry_.line, entry_.name + " has " + std::to_string(entry_.have) +
                                   " values where its count is " + std::to_string(entry_.count));
  }

  bool BeginEntry(const EntryLine& line) {
    if (line.type < 0)
      return Fail("unknown type '" + line.typeName + "' (byte, int32, float, int64, double, rational)");
    size_t count = 0;
    if (!ReadCount(line, &count)) return false;
    entry_ = Entry{line.name, line_, line.tag, line.type, false, count, 0, {}};
    started_ = true;
    if (!Resolve(line)) return false;
    total_ += count;
    entry_.bytes.reserve(count * kElementSize[line.type]);
    return entry_.count == 0 ? Store() : true;
  }

  bool ReadCount(const EntryLine& line, size_t* count) {
    if (!AllDigits(line.count)) return Fail(line.name + ": count '" + line.count + "' is not a number");
    // Nine digits cannot overflow; anything longer is over the cap anyway.
    const uint64_t value = line.count.size() > 9 ? UINT64_MAX : strtoull(line.count.c_str(), nullptr, 10);
    if (value > kMaxElements - total_) {
      return Fail(line.name + ": a count of " + line.count + " takes the file past its limit of " +
                  std::to_string(kMaxElements) + " values");
    }
    *count = static_cast<size_t>(value);
    return true;
  }

  // Finds the tag in the registry by name, else by number; checks the type.
  bool Resolve(const EntryLine& line) {
    unsigned int byName = 0;
    if (NvMetadata::getTagFromName(line.name.c_str(), &byName) == 0) {
      if (byName != line.tag)
        return Fail(line.name + " is tag " + Hex(byName) + " in the registry, not " + Hex(line.tag));
    } else if (NvMetadata::getTagType(line.tag) >= 0) {
      Note(line_, "unknown name " + line.name + "; loaded as " + NvMetadata::getTagName(line.tag) + " (" +
                      Hex(line.tag) + ") by its number");
    } else {
      Note(line_, "unknown tag " + line.name + " (" + Hex(line.tag) + ") skipped");
      return true;
    }
    const int registered = NvMetadata::getTagType(line.tag);
    if (registered != line.type) {
      return Fail(line.name + " is " + kTypeNames[registered] + " in the registry, but the dump says " +
                  line.typeName);
    }
    const auto first = firstLines_.emplace(line.tag, line_);
    if (!first.second)
      return Fail(line.name + " is given twice; first at line " + std::to_string(first.first->second));
    entry_.store = true;
    return true;
  }

  bool Values(const std::string& line) {
    if (!started_) return Fail("values before any entry line");
    if (line.back() != ']') return Fail("values line does not end with ']'");
    const std::string inside = line.substr(1, line.size() - 2);
    Cursor at(inside);
    while (!at.AtEnd()) {
      if (at.TakeText("...")) return Elide(at);
      if (entry_.have == entry_.count) {
        return Fail("more values than the " + std::to_string(entry_.count) + " that " + entry_.name +
                    " at line " + std::to_string(entry_.line) + " declares");
      }
      if (!Element(at)) return false;
      if (++entry_.have == entry_.count && !Store()) return false;
    }
    return true;
  }

  // The dump cuts long entries short with "..."; the rest reads as 0.
  bool Elide(Cursor& at) {
    if (!at.AtEnd()) return Fail("'...' must end the values line");
    if (entry_.have == entry_.count) return true;
    const size_t missing = entry_.count - entry_.have;
    Note(line_, entry_.name + ": " + std::to_string(missing) + " of " + std::to_string(entry_.count) +
                    " values elided by the dump; read as 0");
    entry_.bytes.resize(entry_.count * kElementSize[entry_.type], 0);
    entry_.have = entry_.count;
    return Store();
  }

  bool Element(Cursor& at) {
    switch (entry_.type) {
      case TYPE_BYTE:
        return Byte(at.Word());
      case TYPE_INT32:
        return Integer<int32_t>(at.Word());
      case TYPE_INT64:
        return Integer<int64_t>(at.Word());
      case TYPE_FLOAT:
        return Real<float>(at.Word(), FLT_MAX);
      case TYPE_DOUBLE:
        return Real<double>(at.Word(), DBL_MAX);
      default:
        return Rational(at);
    }
  }

  bool Byte(const std::string& word) {
    uint8_t value = 0;
    if (FindEnumValue(entry_.tag, word, &value)) return Append(value);
    int64_t number = 0;
    const Verdict verdict = ParseInteger(word, 0, UINT8_MAX, &number);
    if (verdict == Verdict::kNotNumber && !EnumNamesOf(entry_.tag).empty()) {
      return Fail(entry_.name + ": '" + Excerpt(word) + "' is neither a number nor one of " +
                  EnumNamesOf(entry_.tag));
    }
    return Check(verdict, word) && Append(static_cast<uint8_t>(number));
  }

  template <typename T>
  bool Integer(const std::string& word) {
    int64_t value = 0;
    const Verdict verdict =
        ParseInteger(word, std::numeric_limits<T>::min(), std::numeric_limits<T>::max(), &value);
    return Check(verdict, word) && Append(static_cast<T>(value));
  }

  template <typename T>
  bool Real(const std::string& word, double limit) {
    double value = 0;
    return Check(ParseReal(word, limit, &value), word) && Append(static_cast<T>(value));
  }

  // `(n / d)`, blanks optional.
  bool Rational(Cursor& at) {
    int64_t numerator = 0, denominator = 0;
    if (!at.Take('('))
      return Fail(entry_.name + ": malformed rational at '" + Excerpt(at.Word()) + "' (expected '(n / d)')");
    const std::string top = at.Word("/)");
    if (!at.Take('/')) return Fail(entry_.name + ": malformed rational '(" + top + "' (expected '(n / d)')");
    const std::string bottom = at.Word(")");
    if (!at.Take(')'))
      return Fail(entry_.name + ": malformed rational '(" + top + " / " + bottom + "' (expected '(n / d)')");
    if (!Check(ParseInteger(top, INT32_MIN, INT32_MAX, &numerator), top) ||
        !Check(ParseInteger(bottom, INT32_MIN, INT32_MAX, &denominator), bottom))
      return false;
    return Append(
        camera_metadata_rational{static_cast<int32_t>(numerator), static_cast<int32_t>(denominator)});
  }

  bool Check(Verdict verdict, const std::string& word) {
    if (verdict == Verdict::kNotNumber)
      return Fail(entry_.name + ": '" + Excerpt(word) + "' is not a number");
    if (verdict == Verdict::kOutOfRange) {
      return Fail(entry_.name + ": " + Excerpt(word) + " is out of range for " + kTypeNames[entry_.type]);
    }
    return true;
  }

  template <typename T>
  bool Append(const T& value) {
    const auto* raw = reinterpret_cast<const uint8_t*>(&value);
    entry_.bytes.insert(entry_.bytes.end(), raw, raw + sizeof(T));
    return true;
  }

  bool Store() {
    if (!entry_.store) return true;
    // Untyped: the bytes are already laid out as the registered type.
    const void* data = entry_.bytes.data();
    if (loaded_.update(entry_.tag, data, entry_.count) != 0)
      return FailAt(entry_.line, entry_.name + ": the container refused the values");
    entry_.bytes = {};
    return true;
  }

  void Note(unsigned line, std::string text) {
    if (notes_ != nullptr) notes_->push_back(Problem{fileName_, line, std::move(text)});
  }
  bool Fail(std::string text) { return FailAt(line_, std::move(text)); }
  bool FailAt(unsigned line, std::string text) {
    problem_ = Problem{fileName_, line, std::move(text)};
    return false;
  }

  const std::string& fileName_;
  std::vector<Problem>* notes_;
  NvMetadata loaded_;
  Problem problem_;
  Entry entry_;
  bool started_ = false;
  unsigned line_ = 0;
  size_t total_ = 0;
  std::map<uint32_t, unsigned> firstLines_;  // tag -> line of its entry
};

}  // namespace

std::string Problem::Message() const {
  return line == 0 ? file + ": " + text : file + ":" + std::to_string(line) + ": " + text;
}

bool ParseText(std::istream& in, const std::string& fileName, NvMetadata* meta, Problem* problem,
               std::vector<Problem>* notes) {
  Problem unused;
  if (problem == nullptr) problem = &unused;
  if (meta == nullptr) {
    *problem = Problem{fileName, 0, "no container to load into"};
    return false;
  }
  std::vector<Problem> found;
  Loader loader(fileName, &found);
  std::string raw;
  unsigned number = 0;
  bool good = true;
  while (good && std::getline(in, raw)) good = loader.Line(raw, ++number);
  if (good) good = loader.Finish();
  if (!good) {
    *problem = loader.problem();
    return false;
  }
  if (in.bad()) {
    *problem = Problem{fileName, 0, "cannot read the file"};
    return false;
  }
  *meta = std::move(loader.Loaded());
  if (notes != nullptr) notes->insert(notes->end(), found.begin(), found.end());
  return true;
}

// The file is read whole through the C library, whose error flag reports a
// failed read (a directory, an I/O error) with every standard library: a file
// stream sets bad() for it under libstdc++, but libc++ takes it for the end of
// an empty file.
bool ParseFile(const std::string& path, NvMetadata* meta, Problem* problem, std::vector<Problem>* notes) {
  std::FILE* file = std::fopen(path.c_str(), "r");
  if (file == nullptr) {
    if (problem != nullptr) *problem = Problem{path, 0, std::string("cannot open: ") + strerror(errno)};
    return false;
  }
  std::string text;
  char chunk[4096];
  for (size_t n; (n = std::fread(chunk, 1, sizeof chunk, file)) > 0;) text.append(chunk, n);
  const bool readFailed = std::ferror(file) != 0;
  std::fclose(file);
  if (readFailed) {
    if (problem != nullptr) *problem = Problem{path, 0, "cannot read the file"};
    return false;
  }
  std::istringstream in(text);
  return ParseText(in, path, meta, problem, notes);
}

}  // namespace metatext
