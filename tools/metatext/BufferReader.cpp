#include "BufferReader.h"

#include <strings.h>

#include <algorithm>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <version>

#include "TextUtil.h"

namespace metatext {
namespace {

// A real buffer holds a few thousand values. The cap keeps a corrupt or
// hostile count (or a cut entry that is zero-filled) from making the reader
// allocate without bound. It is per buffer: a bug report holds many.
constexpr size_t kMaxValues = size_t{1} << 20;
// The printer's name for a type code it does not know.
constexpr int kUnknownType = NUM_TYPES;

// Value names are letters, digits and '_' (the platform's lookup must not
// see a NUL inside a word: it would compare past the name's end).
bool IsValueName(std::string_view word) {
  for (char c : word)
    if (!IsDigit(c) && !(c >= 'A' && c <= 'Z') && !(c >= 'a' && c <= 'z') && c != '_') return false;
  return !word.empty();
}

bool IsHexDigit(char c) { return IsDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

// Reads a line left to right.
struct Scanner {
  std::string_view text;
  size_t pos = 0;

  void SkipBlanks() {
    while (pos < text.size() && IsBlank(text[pos])) ++pos;
  }
  bool Take(char c) {
    SkipBlanks();
    if (pos == text.size() || text[pos] != c) return false;
    ++pos;
    return true;
  }
  // The characters up to a blank or `stop`.
  std::string_view Word(char stop) {
    SkipBlanks();
    const size_t start = pos;
    while (pos < text.size() && !IsBlank(text[pos]) && text[pos] != stop) ++pos;
    return text.substr(start, pos - start);
  }
  bool AtEnd() {
    SkipBlanks();
    return pos == text.size();
  }
};

int TypeCode(std::string_view name) {
  for (int type = 0; type < NUM_TYPES; ++type)
    if (name == kTypeNames[type]) return type;
  return name == "unknown" ? kUnknownType : -1;
}

Verdict ParseInteger(std::string_view word, int64_t low, int64_t high, int64_t* value) {
  if (word.size() > 1 && word[0] == '+' && word[1] != '-') word.remove_prefix(1);
  int64_t parsed = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), parsed);
  if (word.empty() || end != word.data() + word.size()) return Verdict::kNotNumber;
  if (error != std::errc() || parsed < low || parsed > high) return Verdict::kOutOfRange;
  *value = parsed;
  return Verdict::kOk;
}

// Decimal with optional fraction and exponent, as printf's %f and %e print.
bool IsDecimal(std::string_view word) {
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
bool NonFinite(std::string_view word, double* value) {
  const bool negative = !word.empty() && word[0] == '-';
  if (negative || (!word.empty() && word[0] == '+')) word.remove_prefix(1);
  double magnitude = 0;
  if (word.size() == 3 && strncasecmp(word.data(), "nan", 3) == 0)
    magnitude = std::numeric_limits<double>::quiet_NaN();
  else if (word.size() == 3 && strncasecmp(word.data(), "inf", 3) == 0)
    magnitude = std::numeric_limits<double>::infinity();
  else
    return false;
  *value = std::copysign(magnitude, negative ? -1.0 : 1.0);
  return true;
}

// strtod needs a terminated copy; only huge or tiny values come here when
// the standard library parses doubles itself.
double ParseWithStrtod(std::string_view word) {
  const std::string copy(word);
  return strtod(copy.c_str(), nullptr);
}

double ParseDecimal(std::string_view word) {
#if defined(__cpp_lib_to_chars)
  if (word[0] == '+') word.remove_prefix(1);
  double value = 0;
  const auto result = std::from_chars(word.data(), word.data() + word.size(), value);
  if (result.ec == std::errc()) return value;
#endif
  return ParseWithStrtod(word);
}

Verdict ParseReal(std::string_view word, double limit, double* value) {
  if (NonFinite(word, value)) return Verdict::kOk;
  if (!IsDecimal(word)) return Verdict::kNotNumber;
  const double parsed = ParseDecimal(word);
  if (!(std::fabs(parsed) <= limit)) return Verdict::kOutOfRange;
  *value = parsed;
  return Verdict::kOk;
}

}  // namespace

bool ParseEntryLine(std::string_view text, EntryLine* entry) {
  size_t nameEnd = 0;
  while (nameEnd < text.size() && IsTagNameCharacter(text[nameEnd])) ++nameEnd;
  Scanner at{text, nameEnd};
  if (nameEnd == 0 || !at.Take('(')) return false;
  const std::string_view hex = at.Word(')');
  if (hex.empty() || hex.size() > 8 || !std::all_of(hex.begin(), hex.end(), IsHexDigit)) return false;
  if (!at.Take(')') || !at.Take(':')) return false;
  entry->type = at.Word('[');
  if (entry->type.empty() || !at.Take('[')) return false;
  entry->count = at.Word(']');
  if (!at.Take(']') || !at.AtEnd()) return false;
  entry->name = text.substr(0, nameEnd);
  std::from_chars(hex.data(), hex.data() + hex.size(), entry->number, 16);
  return true;
}

void BufferReader::Begin(size_t buffer) {
  buffer_ = buffer;
  failed_ = false;
  problem_ = Problem{};
  meta_.clear();
  total_ = 0;
  seen_.clear();
  cut_.clear();
  pending_.clear();
  open_ = false;
  afterCut_ = false;
}

void BufferReader::Line(std::string_view line, unsigned number) {
  if (failed_) return;
  line_ = number;
  const std::string_view text = Trim(WithoutComment(line));
  if (text.empty()) return;
  if (text == "...") return CutMarker();
  if (text[0] == '[') return Values(text);
  EntryLine entry;
  if (!ParseEntryLine(text, &entry)) {
    // The header's second line; a vendor tag's name may start so too.
    if (StartsWith(text, "Version:")) return;
    return Fail("not an entry 'NAME (TAG): TYPE[COUNT]', values '[...]', header or comment: '" +
                Excerpt(text) + "'");
  }
  EndEntry();
  if (!failed_) BeginEntry(entry);
}

void BufferReader::Finish(Buffer* buffer, std::vector<PendingEntry>* pending) {
  if (!failed_) EndEntry();
  if (failed_) {
    buffer->meta = nullptr;
    buffer->problem = problem_;
    return;
  }
  buffer->meta = std::make_shared<NvMetadata>(std::move(meta_));
  std::sort(cut_.begin(), cut_.end());
  buffer->cut = cut_;
  for (PendingEntry& entry : pending_) pending->push_back(std::move(entry));
}

// A person cut the dump here: what follows still loads.
void BufferReader::CutMarker() {
  Note(line_, "a line '...' leaves part of the dump out; what follows still loads");
  if (open_) entry_.cutMarked = true;
  EndEntry();
  afterCut_ = true;
}

void BufferReader::BeginEntry(const EntryLine& line) {
  afterCut_ = false;
  const int type = TypeCode(line.type);
  if (type < 0)
    return Fail("unknown type '" + std::string(line.type) +
                "' (byte, int32, float, int64, double, rational)");
  size_t count = 0;
  if (!ReadCount(line, &count)) return;
  entry_.name.assign(line.name.data(), line.name.size());
  entry_.line = line_;
  entry_.type = type;
  entry_.count = count;
  entry_.have = entry_.rows = 0;
  entry_.cutMarked = false;
  entry_.allCharacters = true;
  entry_.characters.clear();
  entry_.badValue.clear();
  bytes_.clear();
  open_ = ChooseMode(line, type);
  entry_.physicalIds = entry_.mode == Mode::kLoad && entry_.tag == ANDROID_LOGICAL_MULTI_CAMERA_PHYSICAL_IDS;
  if (open_ && count == 0) EndEntry();
}

bool BufferReader::ReadCount(const EntryLine& line, size_t* count) {
  const std::string_view name = line.name;
  if (line.count.empty() || !std::all_of(line.count.begin(), line.count.end(), IsDigit)) {
    Fail(std::string(name) + ": count '" + std::string(line.count) + "' is not a number");
    return false;
  }
  // Nine digits cannot overflow; anything longer is over the cap anyway.
  uint64_t value = UINT64_MAX;
  if (line.count.size() <= 9)
    std::from_chars(line.count.data(), line.count.data() + line.count.size(), value);
  if (value > kMaxValues - total_) {
    Fail(std::string(name) + ": a count of " + std::string(line.count) +
         " takes the buffer past its limit of " + std::to_string(kMaxValues) + " values");
    return false;
  }
  total_ += value;
  *count = static_cast<size_t>(value);
  return true;
}

// Whether the entry's values load, wait for a name, or are passed over.
bool BufferReader::ChooseMode(const EntryLine& line, int type) {
  entry_.mode = Mode::kSkip;
  const auto where = [&] { return entry_.name + " (" + Hex(line.number) + ")"; };
  if (type == kUnknownType) {
    Note(line_, where() + ": the printer did not know its type; skipped");
    return true;
  }
  if (IsUnnamed(line.name)) {
    entry_.tag = line.number;
    if (line.number >= kVendorTagStart)
      entry_.mode = Mode::kPending;
    else
      Note(line_, where() + ": the dump does not name this tag; skipped");
    return true;
  }
  switch (resolver_.Resolve(entry_.name.c_str(), line.number, type, &entry_.tag, &text_)) {
    case TagResolver::Outcome::kRefuse:
      Fail(text_);
      return false;
    case TagResolver::Outcome::kSkip:
      Note(line_, text_);
      return true;
    case TagResolver::Outcome::kLoad:
      if (!text_.empty()) Note(line_, text_);
      if (!FirstTime(entry_.tag)) return false;
      entry_.mode = Mode::kLoad;
      return true;
  }
  return true;
}

bool BufferReader::FirstTime(uint32_t tag) {
  const auto at = std::lower_bound(seen_.begin(), seen_.end(), std::make_pair(tag, 0u));
  if (at != seen_.end() && at->first == tag) {
    Fail(entry_.name + " is given twice; first at line " + std::to_string(at->second));
    return false;
  }
  seen_.insert(at, {tag, line_});
  return true;
}

// Ends the open entry: complete, cut by the printer or a person, or short.
void BufferReader::EndEntry() {
  if (!open_) return;
  open_ = false;
  if (entry_.mode == Mode::kSkip) return;
  if (entry_.physicalIds && IdsAsCharacters()) return;
  if (!entry_.badValue.empty())
    return FailAt(entry_.badLine, entry_.name + ": '" + Excerpt(entry_.badValue) + "' is not a number");
  if (entry_.have < entry_.count) {
    const bool printerCut = entry_.have == kVerbosityCut && entry_.count > kVerbosityCut;
    if (!entry_.cutMarked && !printerCut) {
      return FailAt(entry_.line, entry_.name + " has " + std::to_string(entry_.have) +
                                     " values where its count is " + std::to_string(entry_.count));
    }
    Note(entry_.line, entry_.name + ": " + std::to_string(entry_.have) + " of " +
                          std::to_string(entry_.count) + " values printed; the rest read as 0");
    bytes_.resize(entry_.count * kElementSize[entry_.type], 0);
  }
  Keep();
}

// Newer printers write physicalIds as characters and leave the NULs out:
// "0\0" "2\0" prints as [0 2 ]. The ids can be rebuilt only when the
// characters split evenly between them; a wrong split would load wrong ids.
bool BufferReader::IdsAsCharacters() {
  if (!entry_.allCharacters || entry_.rows == 0 || entry_.cutMarked || entry_.have >= entry_.count)
    return false;
  const size_t characters = entry_.characters.size();
  const size_t ids = entry_.count - characters;
  // Sixteen one-character values of a longer entry read as well as numbers
  // cut by verbosity 1: neither reading can be told right.
  if (characters == kVerbosityCut) {
    Note(entry_.line,
         entry_.name + ": 16 one-character values printed for " + std::to_string(entry_.count) +
             ": a cut list of numbers or ids without their NULs, which cannot be known; skipped");
    return true;
  }
  if (characters % ids != 0) {
    Note(entry_.line, entry_.name + ": " + std::to_string(characters) + " characters printed for " +
                          std::to_string(ids) + " ids; where each id ends cannot be known, so it is skipped");
    return true;
  }
  bytes_.clear();
  const size_t length = characters / ids;
  for (size_t id = 0; id < ids; ++id) {
    bytes_.insert(bytes_.end(), entry_.characters.begin() + id * length,
                  entry_.characters.begin() + (id + 1) * length);
    bytes_.push_back(0);
  }
  entry_.have = entry_.count;
  Keep();
  return true;
}

// Stores the finished entry, or keeps it until its name is known.
void BufferReader::Keep() {
  const bool cut = entry_.have < entry_.count;
  if (entry_.mode == Mode::kPending) {
    pending_.push_back(
        PendingEntry{entry_.name, buffer_, entry_.line, entry_.tag, entry_.type, entry_.count, cut, bytes_});
    return;
  }
  const void* data = bytes_.data();
  if (meta_.update(entry_.tag, data, entry_.count) != 0)
    return FailAt(entry_.line, entry_.name + ": the container refused the values");
  if (cut) cut_.push_back(entry_.tag);
}

void BufferReader::Values(std::string_view row) {
  if (!open_) {
    if (!afterCut_) Fail("values before any entry line");
    return;
  }
  if (row.back() != ']') return Fail("values line does not end with ']'");
  if (entry_.mode == Mode::kSkip) return;
  ++entry_.rows;
  std::string_view rest = row.substr(1, row.size() - 2);
  for (rest = Trim(rest); !rest.empty(); rest = Trim(rest)) {
    if (EndsRow(rest)) return;
    if (entry_.have == entry_.count) {
      return Fail("more values than the " + std::to_string(entry_.count) + " that " + entry_.name +
                  " at line " + std::to_string(entry_.line) + " declares");
    }
    if (!Element(rest)) return;
    ++entry_.have;
  }
}

// Old hand-made files end a row with "..." where they cut an entry short.
bool BufferReader::EndsRow(std::string_view rest) {
  if (!StartsWith(rest, "...")) return false;
  if (!Trim(rest.substr(3)).empty()) {
    Fail("'...' must end the values line");
    return true;
  }
  entry_.cutMarked = true;
  EndEntry();
  afterCut_ = true;
  return true;
}

// Reads one value off the front of `rest`.
bool BufferReader::Element(std::string_view& rest) {
  if (entry_.type == TYPE_RATIONAL) return Rational(rest);
  size_t end = 0;
  while (end < rest.size() && !IsBlank(rest[end])) ++end;
  const std::string_view word = rest.substr(0, end);
  rest.remove_prefix(end);
  switch (entry_.type) {
    case TYPE_BYTE:
      return entry_.physicalIds ? PhysicalId(word) : Enumerated(word, 0, UINT8_MAX);
    case TYPE_INT32:
      return Enumerated(word, INT32_MIN, INT32_MAX) && SkipKeyName(rest);
    case TYPE_INT64:
      return Integer(word, INT64_MIN, INT64_MAX);
    default:
      return Real(word);
  }
}

bool BufferReader::Check(Verdict verdict, std::string_view word) {
  if (verdict == Verdict::kNotNumber) Fail(entry_.name + ": '" + Excerpt(word) + "' is not a number");
  if (verdict == Verdict::kOutOfRange)
    Fail(entry_.name + ": " + Excerpt(word) + " is out of range for " + kTypeNames[entry_.type]);
  return verdict == Verdict::kOk;
}

bool BufferReader::Integer(std::string_view word, int64_t low, int64_t high) {
  int64_t value = 0;
  if (!Check(ParseInteger(word, low, high, &value), word)) return false;
  if (entry_.type == TYPE_BYTE)
    Append(static_cast<uint8_t>(value));
  else if (entry_.type == TYPE_INT32)
    Append(static_cast<int32_t>(value));
  else
    Append(value);
  return true;
}

// byte and int32 values of Android enum tags print as the tag's value names.
// int32 names may stand for negative values (the printer compares as
// uint32), so the name's value is taken as it is.
bool BufferReader::Enumerated(std::string_view word, int64_t low, int64_t high) {
  int64_t value = 0;
  if (ParseInteger(word, low, high, &value) == Verdict::kNotNumber && entry_.mode == Mode::kLoad &&
      IsValueName(word) && NvMetadata::getTagEnumValue(entry_.tag, word.data(), word.size(), &value) == 0) {
    if (entry_.type == TYPE_BYTE)
      Append(static_cast<uint8_t>(value));
    else
      Append(static_cast<int32_t>(value));
    return true;
  }
  if (!word.empty() && !IsDigit(word[0]) && word[0] != '-' && word[0] != '+') {
    Fail(entry_.name + ": '" + Excerpt(word) + "' is neither a number nor one of the tag's value names");
    return false;
  }
  return Integer(word, low, high);
}

// Collected both ways until the entry ends and its count tells which form
// the printer used.
bool BufferReader::PhysicalId(std::string_view word) {
  if (word.size() == 1)
    entry_.characters.push_back(word[0]);
  else
    entry_.allCharacters = false;
  int64_t value = 0;
  if (ParseInteger(word, 0, UINT8_MAX, &value) != Verdict::kOk && entry_.badValue.empty()) {
    entry_.badValue.assign(word.data(), word.size());
    entry_.badLine = line_;
  }
  Append(static_cast<uint8_t>(value));
  return true;
}

bool BufferReader::Real(std::string_view word) {
  double value = 0;
  const double limit = entry_.type == TYPE_FLOAT ? FLT_MAX : DBL_MAX;
  if (!Check(ParseReal(word, limit, &value), word)) return false;
  if (entry_.type == TYPE_FLOAT)
    Append(static_cast<float>(value));
  else
    Append(value);
  return true;
}

// `(n / d)`, blanks optional.
bool BufferReader::Rational(std::string_view& rest) {
  Scanner at{rest};
  const auto malformed = [&](const std::string& seen) {
    Fail(entry_.name + ": malformed rational " + seen + " (expected '(n / d)')");
    return false;
  };
  if (!at.Take('(')) return malformed("at '" + Excerpt(at.Word('\0')) + "'");
  const std::string_view top = at.Word('/');
  if (!at.Take('/')) return malformed("'(" + Excerpt(top) + "'");
  const std::string_view bottom = at.Word(')');
  if (!at.Take(')')) return malformed("'(" + std::string(top) + " / " + Excerpt(bottom) + "'");
  int64_t numerator = 0, denominator = 0;
  if (!Check(ParseInteger(top, INT32_MIN, INT32_MAX, &numerator), top) ||
      !Check(ParseInteger(bottom, INT32_MIN, INT32_MAX, &denominator), bottom))
    return false;
  Append(camera_metadata_rational{static_cast<int32_t>(numerator), static_cast<int32_t>(denominator)});
  rest.remove_prefix(at.pos);
  return true;
}

// Android 14 and later follow each key of the available*Keys lists with the
// key's name: "65536 (aeAntibandingMode)". The name is no value.
bool BufferReader::SkipKeyName(std::string_view& rest) {
  rest = Trim(rest);
  if (rest.empty() || rest[0] != '(') return true;
  const size_t close = rest.find(')');
  if (close == std::string_view::npos) {
    Fail(entry_.name + ": a key name '" + Excerpt(rest) + "' without its ')'");
    return false;
  }
  rest.remove_prefix(close + 1);
  return true;
}

template <typename T>
void BufferReader::Append(T value) {
  const size_t at = bytes_.size();
  bytes_.resize(at + sizeof(T));
  memcpy(bytes_.data() + at, &value, sizeof(T));
}

void BufferReader::Note(unsigned line, std::string text) {
  if (notes_ != nullptr) notes_->push_back(Problem{file_, line, std::move(text)});
}

void BufferReader::FailAt(unsigned line, std::string text) {
  failed_ = true;
  open_ = false;
  problem_ = Problem{file_, line, std::move(text)};
}

}  // namespace metatext
